#include "host/input/protocoldevices.h"

#include "host/input/pageinput.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

Failure noPage()
{
    return Failure(u"There is no open page."_s);
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
    BrowserPage *page = m_target();
    if (!page)
        return noPage();
    const PageInput input(page);
    const FunctionCallResult<QPointF> inViewport = input.fromScreen(position.x, position.y);
    if (inViewport.failed())
        return Failure(inViewport.error);
    return input.movePointer(inViewport.value);
}

FunctionCallResult<void> ProtocolDevices::pointerClick(MouseButton::Value button, const Point<1> &position)
{
    BrowserPage *page = m_target();
    if (!page)
        return noPage();
    const PageInput input(page);
    const FunctionCallResult<QPointF> inViewport = input.fromScreen(position.x, position.y);
    if (inViewport.failed())
        return Failure(inViewport.error);
    return input.click(inViewport.value, button);
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
