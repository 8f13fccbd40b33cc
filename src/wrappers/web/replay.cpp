#include "wrappers/web/replay.h"

#include "ostrelhook/globalclass.h"
#include "ostrelhook/hook.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/gentlesleep.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/scripttext.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// What cannot be asked counts as visible: the action that follows then tells what is wrong.
bool seemsVisible(const HTML_Object &object)
{
    const HTMLComponent::EvalResult answer = object.component()->evaluateJavaScript(
        script(
            u" try { __ostrel__isVisible(%1); } catch( e ) { false;e.message; }", Expr{object.jsReference()}),
        0);
    return answer.failed || answer.threw || answer.result == "true"_L1;
}

using DesktopPoint = Point<1>;

constexpr auto pointerMoves = "mousemove"_L1;
constexpr auto buttonIsReleased = "mouseup"_L1;
constexpr std::array mouseEvents{
    "mousedown"_L1, buttonIsReleased, "mouseover"_L1, "mouseout"_L1, "click"_L1, pointerMoves};

NativeInterface *devices()
{
    return Hook::instance()->nativeInterface();
}

/// What a mouse event does beyond the page: the pointer of the desktop goes where the event is. Whether the
/// devices obey is not looked at: there may be none.
FunctionCallResult<void> usePointer(const QString &event, const HTML_Object *element, int x, int y)
{
    if (event != pointerMoves && event != buttonIsReleased)
        return {};
    const FunctionCallResult<QRect> rect = getScreenRect(element, true);
    if (rect.failed())
        return Failure(message(u"Error sending %1: %2", event, rect.error));
    const DesktopPoint position{1, rect.value.x() + x, rect.value.y() + y, -1};
    if (event == pointerMoves)
        static_cast<void>(devices()->movePointer(position));
    else
        static_cast<void>(devices()->pointerClick(MouseButton::Primary, position));
    return {};
}

FunctionCallResult<void> sendMouseEvent(
    const QString &event, const HTML_Object *element, const ObjectList &arguments)
{
    // The page function takes a missing element without a word, and the bridge may be gone.
    if (!element->hasValidReference())
        return Failure(QString::fromUtf16(deadElementMessage));
    if (std::find(mouseEvents.begin(), mouseEvents.end(), event) == mouseEvents.end())
        return Failure(message(u"Unknown event type: %1", event));
    const auto coordinate = [&arguments](int index) {
        const SharedPtr<Object> argument = arguments.value(index);
        return argument ? argument->toInt() : 0;
    };
    const int x = coordinate(0);
    const int y = coordinate(1);
    const FunctionCallResult<void> pointed = usePointer(event, element, x, y);
    if (pointed.failed())
        return pointed;
    const HTMLComponent::EvalResult answer = element->component()->evaluateJavaScript(
        script(u"__ostrel__sendMouseEvent(%1,'%2', false, false, false, %3, %4);",
            Expr{element->jsReference()}, QuotedLine{event}, x, y),
        0);
    // Only this flag counts here: a page handler that throws has got its event.
    if (answer.failed)
        return Failure(answer.result);
    return {};
}

FunctionCallResult<void> checkUpload(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return Failure(message(u"Error automating file upload field, file at '%1' does not exist.", path));
    if (!file.isFile())
        return Failure(message(u"Error automating file upload field, file at '%1' is not a file.", path));
    if (!file.isReadable())
        return Failure(message(u"Error automating file upload field, file at '%1' is not readable.", path));
    return {};
}

/// Where browsers draw the button of an upload field.
FunctionCallResult<DesktopPoint> browseButtonOf(const HTML_Object *field)
{
    const FunctionCallResult<QRect> rect = getScreenRect(field, true);
    if (rect.failed()) {
        return Failure(
            message(u"Cannot click on file upload field, obtaining screen rect failed: %1", rect.error));
    }
    const int width = rect.value.width();
    const int height = rect.value.height();
    if (width == 0 || height == 0) {
        // Kept as is: the spelling and the missing blank; scripts match on this text.
        return Failure(message(
            u"Error automating file upload field, the elements width (%1) or height (%2) is 0. The "
            u"nececssary click will likely end up in the wrong place.If your website uses a button to open "
            u"the file dialog, please consider using mouseClick and chooseFile instead.",
            QString::number(width), QString::number(height)));
    }
    constexpr int fromRightEdge = 20;
    constexpr int fromTopEdge = 5;
    return DesktopPoint{1, rect.value.x() + width - fromRightEdge, rect.value.y() + fromTopEdge, -1};
}

FunctionCallResult<void> uploadThroughDialog(const HTML_Object *field, const QString &path)
{
    const FunctionCallResult<void> uploadable = checkUpload(path);
    if (uploadable.failed())
        return uploadable;
    const FunctionCallResult<DesktopPoint> button = browseButtonOf(field);
    if (button.failed())
        return Failure(button.error);

    static_cast<void>(devices()->movePointer(button.value));
    const FunctionCallResult<void> clicked = devices()->pointerClick(MouseButton::Left, button.value);
    if (clicked.failed()) {
        return Failure(message(u"Click on upload field to open the file dialog failed: %1", clicked.error));
    }
    constexpr int dialogOpens = 3000; // milliseconds
    gentleSleep(dialogOpens);
    return automateFileDialog(path);
}

} // namespace

FunctionCallResult<bool> isObjectReady(HTML_Object *object)
{
    if (!object)
        return true;
    const FunctionCallResult<QString> tagName = object->tagName();
    if (tagName.failed()) {
        // Kept as is: the spelling; scripts match on this text.
        return Failure(message(u"Cannot determine readyness, failed to obtain tagname: %1", tagName.error));
    }
    if (QLatin1String(object->className()) == "HTML_Document"_L1 || tagName.value == "HTML"_L1)
        return true;
    if (!seemsVisible(*object))
        return false;
    const auto *field = dynamic_cast<HTML_FormElement *>(object);
    if (!field)
        return true;
    const FunctionCallResult<bool> disabled = field->disabled();
    if (disabled.failed())
        return Failure(disabled.error);
    return !disabled.value;
}

ApplicationEventDelegate::ApplicationEventDelegate() : SendEventDelegate(u"HTML_Object"_s) { }

ApplicationEventDelegate::~ApplicationEventDelegate() = default;

bool ApplicationEventDelegate::sendEvent(
    const Event *event, SharedPtr<Object> object, const ObjectList &arguments) const
{
    if (!object || !object->objectClass()->inherits(objectModelHtmlObjectClass()))
        return false;
    const HTML_Object *element = retrieveObject(object);
    if (!element)
        return false;
    const FunctionCallResult<void> sent = sendMouseEvent(event->name(), element, arguments);
    if (sent.failed())
        Inspector::self()->raiseError(sent.error);
    return !sent.failed();
}

FunctionCallResult<void> selectFileToUpload(HTML_TextBase *object, const QString &path)
{
    return uploadThroughDialog(object, path);
}

FunctionCallResult<void> selectFileToUpload(HTML_CustomText *object, const QString &path)
{
    return uploadThroughDialog(object, path);
}

FunctionCallResult<void> automateFileDialog(const QString &path)
{
    // What stands in the dialog's field is selected first, so that the path replaces it.
    const struct
    {
        QString keys;
        int pause; // milliseconds
    } steps[] = {
        {u"<Home>"_s, 750},
        {u"<Shift+End>"_s, 750},
        {QDir::toNativeSeparators(path), 750},
        {u"<Return>"_s, 1000},
    };
    for (const auto &step : steps) {
        static_cast<void>(devices()->typeKeys(step.keys));
        gentleSleep(step.pause);
    }
    return {};
}

} // namespace Ostrel::WebWrapper
