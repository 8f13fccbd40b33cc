#include "wrappers/web/htmlobjectdumpobjecttreedelegate.h"

#include "ostrelhook/class.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"

#include <QPainter>

#include <algorithm>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

using UIAbstraction::UIElement;

namespace {

/// What the snapshot holds beside properties.
constexpr auto screenRectKey = "screenRect"_L1;
constexpr auto documentRectKey = "__ostrel__elementRectangleInDocument"_L1;
const QString textContentKey = u"__ostrel__textContent"_s;

/// The limit of the two large calls: none, since a page may be of any size.
constexpr unsigned int noLimit = 0;

/// Levels of the tree as it comes from the page, two for a level of elements. Dumping recurses, so that the
/// stack sets the limit.
constexpr int deepestTree = 9000;

/// The element with the page that it belongs to; null where one is missing.
HTML_Object *reachableElement(const SharedPtr<Object> &object)
{
    HTML_Object *wrapper = retrieveObject(object);
    return wrapper && wrapper->component() ? wrapper : nullptr;
}

QString textOf(const Json::Value &value)
{
    return fromJson<QString>(value).value;
}

Rect<2> toBounds(const ScreenRectangle &rectangle)
{
    return {rectangle.x, rectangle.y, rectangle.width, rectangle.height, -1};
}

/// The part of the page's picture that shows the rectangle; transparent beyond its edges.
FunctionCallResult<QImage> cutFromPage(const HTMLComponent &component, const ScreenRectangle &rectangle)
{
    FunctionCallResult<QImage> page = component.grabPageScreenshot();
    if (page.failed())
        return page;
    if (page.value.isNull())
        return Failure(u"Invalid image obtained for html page screenshot."_s);

    QImage image(rectangle.width, rectangle.height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage(
        QPoint(), page.value, QRect(rectangle.x, rectangle.y, rectangle.width, rectangle.height));
    painter.end();
    return image;
}

} // namespace

ScreenRectangle screenRectangleFromJson(const Json::Value &rectangle)
{
    ScreenRectangle sides;
    if (!rectangle.isObject())
        return sides;
    int *const targets[] = {&sides.x, &sides.y, &sides.width, &sides.height};
    const char *const names[] = {"x", "y", "width", "height"};
    for (int i = 0; i < 4; ++i) {
        const Json::Value &side = rectangle[names[i]];
        if (!side.isNumeric() || !side.isConvertibleTo(Json::intValue))
            return {};
        *targets[i] = side.asInt();
    }
    return sides;
}

/// A snapshot in the making.
class HtmlObjectDumpObjectTreeDelegate::Snapshot
{
public:
    explicit Snapshot(const DumpFilters &filters) : m_filters(filters) { }

    /// Fetches the tree below an element and all values.
    FunctionCallResult<void> take(const SharedPtr<Object> &root);

    std::map<const HTML_Object *, ObjectDumpData> entries;

private:
    FunctionCallResult<void> add(const SharedPtr<Object> &object, const Json::Value &childRecords);
    struct WantedProperty
    {
        QString name;
        HTML_Object::PropertyId id;
    };
    using WantedProperties = std::vector<WantedProperty>;

    const WantedProperties &wantedOf(const SharedPtr<Object> &object);
    FunctionCallResult<QString> getters(const SharedPtr<Object> &object);
    FunctionCallResult<void> fetchPropertyValues();
    void store(const Json::Value &values, ObjectDumpData &data);
    const QString &propertyName(const Json::ValueConstIterator &value);

    const DumpFilters &m_filters;
    /// The elements as they stand in the page.
    QList<const HTML_Object *> m_inPageOrder;
    /// The script that reads what a dump asks of them, without its end, until it is sent. One text from the
    /// beginning: it may have many megabytes.
    QString m_reading = u"window.top.__ostrel.readPropertiesFromObjects( ["_s;
    std::map<const Class *, WantedProperties> m_wanted;
    /// The names of the values: the same few come back with every element.
    std::map<std::string, QString, std::less<>> m_names;
};

FunctionCallResult<void> HtmlObjectDumpObjectTreeDelegate::Snapshot::take(const SharedPtr<Object> &root)
{
    const HTML_Object *wrapper = reachableElement(root);
    if (!wrapper)
        return Failure(u"The object belongs to no page"_s);
    const FunctionCallResult<Json::Value> tree = evaluateAsDeepJson(wrapper->component(),
        script(u"window.top.__ostrel.objectTreeInformation( %1 )", Expr{wrapper->jsReference()}), noLimit,
        deepestTree);
    if (tree.failed())
        return Failure(tree.error);
    FunctionCallResult<void> added = add(root, tree.value);
    if (added.failed())
        return added;
    return fetchPropertyValues();
}

/// Adds the entries of an element and of all below it.
FunctionCallResult<void> HtmlObjectDumpObjectTreeDelegate::Snapshot::add(
    const SharedPtr<Object> &object, const Json::Value &childRecords)
{
    const HTML_Object *wrapper = retrieveObject(object);
    // References into a map stay good when entries are added.
    ObjectDumpData &data = entries[wrapper];
    m_inPageOrder.append(wrapper);
    const FunctionCallResult<QString> wanted = getters(object);
    if (wanted.failed())
        return Failure(wanted.error);
    if (m_inPageOrder.size() > 1)
        m_reading += u',';
    m_reading += script(
        u"{ 'object': %1, 'propertyGetters': { %2} }", Expr{wrapper->jsReference()}, Expr{wanted.value});

    if (!childRecords.isArray())
        return {};
    for (const Json::Value &record : childRecords) {
        HTML_Object *element = record.isObject()
            ? htmlObjectFromReferenceInfo(wrapper->component(), textOf(record["typeString"]),
                textOf(record["reference"]), textOf(record["nameInLeaf"]))
            : nullptr;
        if (!element)
            continue;
        const SharedPtr<Object> child = wrapObject(element);
        data.children.append(child);
        FunctionCallResult<void> added = add(child, record["children"]);
        if (added.failed())
            return added;
    }
    return {};
}

/// What a dump will ask of the elements of a class that the page can tell, which is the same for all of them.
const HtmlObjectDumpObjectTreeDelegate::Snapshot::WantedProperties &
HtmlObjectDumpObjectTreeDelegate::Snapshot::wantedOf(const SharedPtr<Object> &object)
{
    const Class *type = object->objectClass();
    const auto known = m_wanted.find(type);
    if (known != m_wanted.end())
        return known->second;

    const FilterObject filter = filterObjectForOstrelObject(object, m_filters);
    WantedProperties &wanted = m_wanted[type];
    for (int index = 0; index < type->numProperties(); ++index) {
        const Property *property = type->property(index);
        const QString &name = property->name();
        // The bounds depend on whether an element is visible, so that is always asked.
        if (name != "visible"_L1 && !filter.isMatchedProperty(name))
            continue;
        if (!property->type().isPrimitive())
            continue;
        const auto id = HTML_Object::parsePropertyIdString(name);
        if (!id.failed())
            wanted.push_back({name, id.value});
    }
    return wanted;
}

/// How the page reads what a dump will ask of an element: functions by name.
FunctionCallResult<QString> HtmlObjectDumpObjectTreeDelegate::Snapshot::getters(
    const SharedPtr<Object> &object)
{
    const HTML_Object *wrapper = retrieveObject(object);
    QStringList wanted;
    const auto want = [&wanted](const QString &name, const QString &expression) {
        wanted.append(script(u"'%1': function() { return %2; }", Expr{name}, Expr{expression}));
    };
    for (const WantedProperty &property : wantedOf(object))
        want(property.name, wrapper->propertyGetterCode(property.id));

    const FunctionCallResult<double> zoom = wrapper->component()->zoomFactor();
    if (zoom.failed())
        return Failure(message(u"Error obtaining needed zoom factor in browser tab: %1", zoom.error));
    const Expr reference{wrapper->jsReference()};
    want(screenRectKey, script(u"__ostrel__getScreenRectAsObject( %1 )", reference));
    want(textContentKey, script(u"window.top.__ostrel.getTextContent( %1 )", reference));
    want(documentRectKey,
        script(u"window.top.__ostrel.getElementRectangleInDocument( %1, %2 )", reference,
            Expr{QString::number(zoom.value)}));
    return wanted.join(u',');
}

/// Reads the values of all entries in one call.
FunctionCallResult<void> HtmlObjectDumpObjectTreeDelegate::Snapshot::fetchPropertyValues()
{
    m_reading += u"] )"_s;
    FunctionCallResult<Json::Value> values
        = evaluateAsJson(m_inPageOrder.first()->component(), std::exchange(m_reading, {}), noLimit);
    if (values.failed())
        return Failure(message(u"Error fetching property values: %1", values.error));
    if (!values.value.isObject())
        return Failure(message(u"Error fetching property values: %1", u"The page gave no object"_s));
    for (const HTML_Object *wrapper : std::as_const(m_inPageOrder)) {
        // Taken out, so that what is stored has the place of what has been: there are a million values.
        Json::Value ofElement;
        values.value.removeMember(wrapper->jsReference().toStdString(), &ofElement);
        store(ofElement, entries[wrapper]);
    }
    return {};
}

void HtmlObjectDumpObjectTreeDelegate::Snapshot::store(const Json::Value &values, ObjectDumpData &data)
{
    if (!values.isObject())
        return;
    for (auto value = values.begin(); value != values.end(); ++value) {
        const QString &name = propertyName(value);
        if (name == screenRectKey) {
            data.screenRectangle = screenRectangleFromJson(*value);
        } else if (name == documentRectKey) {
            data.documentRectangle = screenRectangleFromJson(*value);
        } else {
            const QString text = textOf(*value);
            PROBELOG_TRACE(
                "WebObjectDump", message(u"Storing fetched value for property: %1 = %2", name, text));
            // They come in the order of their names.
            data.values.emplace_back(name, text);
        }
    }
}

const QString &HtmlObjectDumpObjectTreeDelegate::Snapshot::propertyName(const Json::ValueConstIterator &value)
{
    const char *end = nullptr;
    const char *const begin = value.memberName(&end);
    const std::string_view name(begin, std::size_t(end - begin));
    auto known = m_names.find(name);
    if (known == m_names.end())
        known = m_names.emplace(name, QString::fromUtf8(name)).first;
    return known->second;
}

const QString *HtmlObjectDumpObjectTreeDelegate::ObjectDumpData::value(QStringView name) const
{
    const auto isOfName = [name](const auto &value) { return value.first == name; };
    const auto found = std::find_if(values.begin(), values.end(), isOfName);
    return found != values.end() ? &found->second : nullptr;
}

HtmlObjectDumpObjectTreeDelegate::HtmlObjectDumpObjectTreeDelegate(LogInterface *log)
    : DumpObjectTreeDelegate(u"HTML_Object"_s), m_log(log)
{
}

bool HtmlObjectDumpObjectTreeDelegate::enterDump(
    SharedPtr<Object> root, const std::map<std::string, DumpFilter *> &filters, QString *error) const
{
    if (m_nesting++ > 0)
        return true;
    Snapshot snapshot(filters);
    const FunctionCallResult<void> taken = snapshot.take(root);
    if (taken.failed()) {
        *error = message(u"Error preparing object dump for '%1': %2",
            root ? root->objectClass()->name() : QString(), taken.error);
        QString ignored;
        leaveDump(&ignored);
        return false;
    }
    m_snapshot = std::move(snapshot.entries);
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::leaveDump(QString *) const
{
    if (m_nesting > 0)
        --m_nesting;
    if (m_nesting == 0)
        m_snapshot.clear();
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::dumpObject(SharedPtr<Object> object, bool recursive,
    UIElement **element, const std::map<std::string, DumpFilter *> &filters, QString *) const
{
    *element = dumpObjectTreeImpl(object, recursive, filters);
    if (!*element)
        return true;
    if (const ObjectDumpData *data = dataOf(object)) {
        if (const QString *text = data->value(textContentKey))
            (*element)->setConcreteProperty(u"textContent"_s, *text);
    }
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::takeScreenshot(SharedPtr<Object> object, UIElement *element) const
{
    const HTML_Object *wrapper = reachableElement(object);
    const ObjectDumpData *data = dataOf(object);
    if (!wrapper || !data)
        return false;
    if (!wrapper->component()->supportsPageScreenshot()) {
        m_log->log(1,
            "Falling back to desktop screenshot grabbing for Object Dump as the browser does not support "
            "full page grabs.");
        return false;
    }
    const FunctionCallResult<QImage> image = cutFromPage(*wrapper->component(), data->documentRectangle);
    if (image.failed())
        m_log->log(1, "Failed to retrieve object screenshot: %s\n", image.error.toUtf8().constData());
    else
        element->setImage(image.value);
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::setProperty(
    const Property *property, SharedPtr<Object> object, UIElement *element, bool identifying) const
{
    if (!property->type().isPrimitive())
        return false;
    const ObjectDumpData *data = dataOf(object);
    if (!data)
        return false;
    const QString *value = data->value(property->name());
    if (!value)
        return false;
    if (identifying)
        element->setIdentifyingProperty(property->name(), *value);
    else
        element->setConcreteProperty(property->name(), *value);
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::children(SharedPtr<Object> object, ObjectList *children) const
{
    const ObjectDumpData *data = dataOf(object);
    if (!data)
        return false;
    *children = data->children;
    return true;
}

bool HtmlObjectDumpObjectTreeDelegate::visibleGlobalBounds(SharedPtr<Object> object, Rect<2> *bounds) const
{
    const HTML_Object *wrapper = reachableElement(object);
    const ObjectDumpData *data = dataOf(object);
    if (!wrapper || !data)
        return false;
    const QString *visible = data->value(u"visible");
    if (visible && *visible == "false"_L1)
        *bounds = {0, 0, -1, -1, -1};
    else if (wrapper->component()->supportsPageScreenshot())
        *bounds = toBounds(data->documentRectangle);
    else
        *bounds = toBounds(data->screenRectangle);
    return true;
}

const HtmlObjectDumpObjectTreeDelegate::ObjectDumpData *HtmlObjectDumpObjectTreeDelegate::dataOf(
    const SharedPtr<Object> &object) const
{
    const auto data = m_snapshot.find(retrieveObject(object));
    return data != m_snapshot.end() ? &data->second : nullptr;
}

} // namespace Ostrel::WebWrapper
