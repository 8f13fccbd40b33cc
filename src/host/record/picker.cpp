#include "host/record/picker.h"

#include "ostrelhook/class.h"
#include "ostrelhook/hook.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QTimer>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// The identifier of the front end that this process is itself.
constexpr int ownSpyId = 1;

QJsonObject color(int red, int green, int blue, double opacity)
{
    return {{u"r"_s, red}, {u"g"_s, green}, {u"b"_s, blue}, {u"a"_s, opacity}};
}

/// The rectangle of the element under the pointer, "x,y,width,height" in pixels of the viewport, if it is the
/// one that is at this place of the screen; else empty.
QString rectangleInViewport(const ScreenRectangle &screen)
{
    return uR"((function () {
    if (!window.__ostrel__pickObject || !__ostrel__mouseElement ||
            __ostrel__getScreenRect(__ostrel__mouseElement) !== "%1,%2,%3,%4") {
        return "";
    }
    var corner = __ostrel__getViewportScreenPosition(document, window),
        ratio = __ostrel__needToApplyDevicePixelRatio(window) ? window.devicePixelRatio : 1;
    return [%1 - corner.x, %2 - corner.y, %3, %4].map(function (n) { return Math.round(n / ratio); }).join(",");
}()))"_s.arg(QString::number(screen.x), QString::number(screen.y), QString::number(screen.width),
        QString::number(screen.height));
}

} // namespace

QString PickedObject::text() const
{
    QString text
        = u"class: %1\nreal name: %2\nhierarchical name: %3\n"_s.arg(className, realName, hierarchicalName);
    for (const PickedProperty &property : properties)
        text += u"    %1 = %2\n"_s.arg(property.name, property.value);
    return text;
}

Picker::Picker(TestSession *session) : m_session(session)
{
    connect(session->channel(), &PageChannel::eventLogged, this,
        [this](const QString &text) { m_logger.handle(text, {}); });
    connect(session->channel(), &PageChannel::highlightRequested, this, &Picker::highlight);
    Hook::hook->fallbackSpyId = ownSpyId;
    Hook::hook->setReceiver([this](int target, const QString &message, const ArgumentList &arguments) {
        if (target != ownSpyId || message != "objectPicked"_L1)
            return false;
        Q_EMIT picked(arguments.value(0).toString());
        return true;
    });
}

Picker::~Picker()
{
    Inspector::self()->setPicking(false);
    Hook::hook->setReceiver(nullptr);
    Hook::hook->fallbackSpyId = -1;
}

FunctionCallResult<void> Picker::start()
{
    Inspector::self()->setPicking(true);
    return m_session->setPageVariable(u"window.__ostrel__pickObject"_s, true);
}

void Picker::highlight(const ScreenRectangle &rectangle, const QString &name)
{
    for (BrowserPage *page : m_session->browser()->pages()) {
        const auto answer = page->evaluateJavaScript(rectangleInViewport(rectangle), 0);
        const QStringList numbers = answer.result.split(u',');
        if (answer.failed || numbers.size() != 4)
            continue;
        const QRect place(
            numbers.at(0).toInt(), numbers.at(1).toInt(), numbers.at(2).toInt(), numbers.at(3).toInt());
        if (m_highlighted && m_highlighted != page)
            m_highlighted->connection()->send(m_highlighted->sessionId(), u"Overlay.hideHighlight"_s);
        if (m_highlighted != page) {
            // The overlay works only together with the browser's view of the document.
            page->connection()->send(page->sessionId(), u"DOM.enable"_s);
            page->connection()->send(page->sessionId(), u"Overlay.enable"_s);
        }
        m_highlighted = page;
        page->connection()->send(page->sessionId(), u"Overlay.highlightRect"_s,
            {{u"x"_s, place.x()}, {u"y"_s, place.y()}, {u"width"_s, place.width()},
                {u"height"_s, place.height()}, {u"color"_s, color(30, 110, 220, 0.35)},
                {u"outlineColor"_s, color(30, 110, 220, 1)}});
        Q_EMIT highlighted(place, name);
        return;
    }
}

FunctionCallResult<void> Picker::pick(const QString &name, int limitMs)
{
    const FunctionCallResult<SharedPtr<Object>> found = m_session->lookup()->find(name);
    if (found.failed())
        return Failure(found.error);
    const WebWrapper::HTML_Object *element = WebWrapper::retrieveObject(found.value);
    if (!element)
        return Failure(u"'%1' is no element of a page."_s.arg(name));
    const FunctionCallResult<QRect> place = WebWrapper::getScreenRect(element, true);
    if (place.failed())
        return Failure(place.error);
    if (!place.value.isValid())
        return Failure(u"'%1' cannot be seen."_s.arg(name));

    const QPoint middle = place.value.center();
    Point<1> position;
    position.x = middle.x();
    position.y = middle.y();
    NativeInterface *devices = Hook::hook->nativeInterface();
    QEventLoop untilHighlighted;
    bool isHighlighted = false;
    connect(this, &Picker::highlighted, &untilHighlighted, [&] {
        isHighlighted = true;
        untilHighlighted.quit();
    });
    QTimer::singleShot(limitMs, &untilHighlighted, &QEventLoop::quit);
    if (const FunctionCallResult<void> moved = devices->movePointer(position); moved.failed())
        return moved;
    if (!isHighlighted)
        untilHighlighted.exec();
    if (!isHighlighted)
        return Failure(u"The page has not answered the pointer on '%1'."_s.arg(name));
    return devices->pointerClick(MouseButton::Left, position);
}

FunctionCallResult<QImage> Picker::picture() const
{
    if (!m_highlighted)
        return Failure(u"No page shows a highlight."_s);
    const CommandResult shot = m_highlighted->call(u"Page.captureScreenshot"_s);
    if (shot.failed())
        return Failure(u"Error taking a picture of the highlight: %1"_s.arg(shot.error));
    return QImage::fromData(QByteArray::fromBase64(shot.value.value("data"_L1).toString().toLatin1()), "PNG");
}

FunctionCallResult<PickedObject> Picker::describe(const QString &name) const
{
    const FunctionCallResult<SharedPtr<Object>> found = m_session->lookup()->find(name);
    if (found.failed())
        return Failure(found.error);
    Class *type = found.value->objectClass();
    PickedObject object{type->name(), name, {}, {}};
    if (const WebWrapper::HTML_Object *element = WebWrapper::retrieveObject(found.value))
        object.hierarchicalName = element->hierarchicalQualifiedName().value;
    for (int i = 0; i < type->numProperties(); ++i) {
        const Property *property = type->property(i);
        const SharedPtr<Object> value = type->read(found.value, property);
        // What cannot be read of this element, or is an object of its own, is not shown.
        const QString error = Inspector::self()->takeError();
        if (error.isEmpty() && value && value->isPrimitive())
            object.properties.append({property->name(), value->toQString().simplified()});
    }
    return object;
}

} // namespace Ostrel::Host
