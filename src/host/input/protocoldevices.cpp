#include "host/input/protocoldevices.h"

#include "host/input/pageinput.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

Failure noPage()
{
    return Failure(u"There is no open page."_s);
}

/// Lets `act` work at a position of the desktop; it gets the page's input and the position in the viewport.
template <typename Action>
FunctionCallResult<void> actAt(BrowserPage *page, const Point<1> &position, const Action &act)
{
    if (!page)
        return noPage();
    const PageInput input(page);
    const FunctionCallResult<QPointF> inViewport = input.fromScreen(position.x, position.y);
    if (inViewport.failed())
        return Failure(inViewport.error);
    return act(input, inViewport.value);
}

} // namespace

ProtocolDevices::ProtocolDevices(std::function<BrowserPage *()> target) : m_target(std::move(target))
{
    Hook::instance()->setNativeInterface(this);
}

ProtocolDevices::~ProtocolDevices()
{
    if (Hook::instance()->nativeInterface() == this)
        Hook::instance()->setNativeInterface(nullptr);
}

FunctionCallResult<void> ProtocolDevices::movePointer(const Point<1> &position)
{
    return actAt(m_target(), position,
        [](const PageInput &input, const QPointF &inViewport) { return input.movePointer(inViewport); });
}

FunctionCallResult<void> ProtocolDevices::pointerClick(MouseButton::Value button, const Point<1> &position)
{
    return actAt(m_target(), position, [button](const PageInput &input, const QPointF &inViewport) {
        return input.click(inViewport, button);
    });
}

FunctionCallResult<void> ProtocolDevices::typeKeys(const QString &keys)
{
    BrowserPage *page = m_target();
    if (!page)
        return noPage();
    const FunctionCallResult<QList<KeyStroke>> strokes = keyStrokes(keys);
    if (strokes.failed())
        return Failure(strokes.error);
    return PageInput(page).type(strokes.value);
}

} // namespace Ostrel::Host
