#include "host/dump/pagedump.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "wrappers/web/htmlobjectdumpobjecttreedelegate.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTransform>

#include <optional>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

const QString pathProperty = u"domPath"_s;

class Log : public LogInterface
{
public:
    explicit Log(std::function<void(const QString &)> receiver) : m_receiver(std::move(receiver)) { }

protected:
    void write(int, const QString &text) override
    {
        if (m_receiver)
            m_receiver(text.trimmed());
    }

private:
    std::function<void(const QString &)> m_receiver;
};

/// The plain values among the properties of all element classes.
QStringList plainProperties()
{
    QStringList names;
    for (const Class *type : Inspector::self()->globalNamespace()->classes()) {
        if (!type->inherits(objectModelHtmlObjectClass()))
            continue;
        for (int i = type->superClassOffset(Class::Properties); i < type->numProperties(); ++i) {
            const Property *property = type->property(i);
            if (property->type().isPrimitive() && !names.contains(property->name()))
                names.append(property->name());
        }
    }
    return names;
}

FunctionCallResult<QString> evaluate(const BrowserPage &page, const QString &script)
{
    const BrowserPage::EvalResult answer = page.evaluateJavaScript(script, 0);
    if (answer.failed || answer.threw)
        return Failure(answer.result);
    return answer.result;
}

FunctionCallResult<SharedPtr<Object>> documentOf(BrowserPage *page)
{
    const FunctionCallResult<HTML_Object *> document
        = htmlObjectFromJavaScriptResult(page, u"window.document"_s, {}, 0);
    if (document.failed())
        return Failure(document.error);
    if (!document.value)
        return Failure(u"The page has no document."_s);
    return wrapObject(document.value);
}

/// Tells where the document of a node lies in the picture of the page: [scale x, scale y, x, y] and the part
/// of the picture that shows it, [x, y, width, height]. Null for what belongs to the page itself. A frame may
/// be scrolled, be drawn at another size, and lie in a frame. Nothing for one that is turned or mirrored: its
/// elements stand upright in its own document and in the picture do not.
const QString framePlaceScript = uR"((function (node) {
    var win = (node.ownerDocument || node).defaultView,
        ratio = top.devicePixelRatio,
        scale = [1, 1], corner = [0, 0], shown = [-Infinity, -Infinity, Infinity, Infinity],
        turning = ['m12', 'm13', 'm14', 'm21', 'm23', 'm24', 'm31', 'm32', 'm34'];

    function isTurned(style) {
        var matrix = new DOMMatrix(style.transform);
        return turning.some(function (name) { return Math.abs(matrix[name]) > 1e-6; }) ||
            matrix.m11 < 0 || matrix.m22 < 0 || /[1-9]/.test(style.rotate) || /-/.test(style.scale) ||
            !/^(none)?$/.test(style.offsetPath || '');
    }
    function standsUpright(element) {
        for (; element; element = element.assignedSlot || element.parentElement || element.getRootNode().host) {
            if (isTurned(element.ownerDocument.defaultView.getComputedStyle(element))) {
                return false;
            }
        }
        return true;
    }

    if (!win || win === top) {
        return null;
    }
    for (; win !== top; win = win.parent) {
        var frame = win.frameElement;
        if (!standsUpright(frame)) {
            return [];
        }
        var style = win.parent.getComputedStyle(frame),
            box = frame.getBoundingClientRect(),
            stretch = [box.width / frame.offsetWidth, box.height / frame.offsetHeight],
            inside = [box.left + (frame.clientLeft + parseFloat(style.paddingLeft)) * stretch[0] + win.parent.scrollX,
                box.top + (frame.clientTop + parseFloat(style.paddingTop)) * stretch[1] + win.parent.scrollY],
            scrolled = [win.scrollX, win.scrollY],
            size = [win.innerWidth, win.innerHeight];

        for (var i = 0; i < 2; i++) {
            scale[i] *= stretch[i];
            corner[i] = inside[i] + (corner[i] - scrolled[i]) * stretch[i];
            shown[i] = Math.max(inside[i], inside[i] + (shown[i] - scrolled[i]) * stretch[i]);
            shown[i + 2] = Math.min(inside[i] + size[i] * stretch[i],
                inside[i] + (shown[i + 2] - scrolled[i]) * stretch[i]);
        }
    }
    return JSON.stringify([scale, corner.map(function (side) { return side * ratio; }),
        [shown[0], shown[1], shown[2] - shown[0], shown[3] - shown[1]].map(function (side) { return side * ratio; })]);
}(%1)))"_s;

/// Where the elements of a frame's document are in the picture of the page.
struct FramePlace
{
    QTransform toPicture;
    /// The part of the picture that shows the frame.
    QRectF shown;
};

/// Nothing for an element of the page's own document. What has no place in the picture, and why, goes to the
/// log.
FunctionCallResult<std::optional<FramePlace>> framePlaceOf(
    const BrowserPage &page, const HTML_Object &root, LogInterface &log)
{
    const FunctionCallResult<QString> answer = evaluate(page, framePlaceScript.arg(root.jsReference()));
    if (answer.failed())
        return Failure(u"Cannot find the place of the frame: %1"_s.arg(answer.error));
    if (answer.value == "null"_L1)
        return std::optional<FramePlace>();
    const QJsonArray place = QJsonDocument::fromJson(answer.value.toUtf8()).array();
    if (place.isEmpty()) {
        log.log(1, "The frame is turned or mirrored: its elements have no place in the picture.");
        return std::optional(FramePlace());
    }
    const auto number = [&place](int list, int index) { return place.at(list)[index].toDouble(); };
    return std::optional(FramePlace{QTransform(number(0, 0), 0, 0, number(0, 1), number(1, 0), number(1, 1)),
        QRectF(number(2, 0), number(2, 1), number(2, 2), number(2, 3))});
}

/// Moves a dump from the frame's document into the picture. What the frame does not show has no bounds.
void moveIntoPicture(UIAbstraction::UIElement &element, const FramePlace &place, const QImage &picture)
{
    const Rect<2> &bounds = element.bounds();
    if (bounds.isValid()) {
        const QRectF moved = place.toPicture.mapRect(QRectF(bounds.x, bounds.y, bounds.width, bounds.height));
        const QRectF seen = moved & place.shown;
        const QRect pixels(seen.topLeft().toPoint(), seen.bottomRight().toPoint() - QPoint(1, 1));
        element.setBounds(pixels.isValid()
                ? Rect<2>{pixels.x(), pixels.y(), pixels.width(), pixels.height(), -1}
                : Rect<2>{0, 0, -1, -1, -1});
        if (!element.image().isNull())
            element.setImage(pixels.isValid() ? picture.copy(pixels) : QImage());
    }
    for (const auto &child : element.children())
        moveIntoPicture(*child, place, picture);
}

} // namespace

QStringList quickProperties()
{
    QStringList names = plainProperties();
    names.removeIf([](const QString &name) { return !HTML_Object::isJavaScriptPropertyReadSupported(name); });
    return names;
}

FunctionCallResult<void> checkProperties(const QStringList &names)
{
    const QStringList known = plainProperties();
    for (const QString &name : names) {
        if (!known.contains(name))
            return Failure(u"There is no property '%1' that a dump can show."_s.arg(name));
    }
    return {};
}

FunctionCallResult<PageDump> dumpPage(
    BrowserPage *page, const SharedPtr<Object> &element, const PageDumpOptions &options)
{
    PageDump dump;
    dump.address = page->address();
    FunctionCallResult<QString> title = evaluate(*page, u"document.title"_s);
    if (title.failed())
        return Failure(u"Cannot read the title of the page: %1"_s.arg(title.error));
    dump.title = title.value;

    SharedPtr<Object> root = element;
    if (!root) {
        const FunctionCallResult<SharedPtr<Object>> document = documentOf(page);
        if (document.failed())
            return Failure(document.error);
        root = document.value;
    }

    const BrowserPage::KeptPicture keptPicture(*page);
    if (options.picture) {
        const FunctionCallResult<QImage> picture = page->grabPageScreenshot();
        if (picture.failed())
            return Failure(picture.error);
        dump.picture = picture.value;
    }
    // Nothing is asked behind the dump itself: the page may have gone on by then.
    Log log(options.log);
    const auto framePlace = framePlaceOf(*page, *retrieveObject(root), log);
    if (framePlace.failed())
        return Failure(framePlace.error);
    const HtmlObjectDumpObjectTreeDelegate delegate(&log);
    DumpFilter wanted(DumpFilter::Only, options.properties.isEmpty() ? quickProperties() : options.properties,
        {pathProperty});
    DumpOptions dumpOptions;
    dumpOptions.screenshots = options.screenshots;
    dumpOptions.log = &log;
    auto tree = dumpObjectTree(root, {{"HTML_Object", &wanted}}, dumpOptions);
    if (tree.failed())
        return Failure(tree.error);
    dump.root = std::move(tree.value);

    if (framePlace.value) {
        const FunctionCallResult<QImage> picture
            = options.screenshots ? page->grabPageScreenshot() : QImage();
        if (picture.failed())
            return Failure(picture.error);
        moveIntoPicture(*dump.root, *framePlace.value,
            picture.value.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
    return dump;
}

QString nameOf(const UIAbstraction::UIElement &element)
{
    for (const UIAbstraction::UIElement::Property &property : element.identifyingProperties()) {
        if (property.name == pathProperty)
            return property.value;
    }
    return {};
}

} // namespace Ostrel::Host
