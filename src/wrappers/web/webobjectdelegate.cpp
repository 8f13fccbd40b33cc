#include "wrappers/web/webobjectdelegate.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/controls/customitemviews.h"
#include "wrappers/web/controls/menustabscalendars.h"
#include "wrappers/web/diagnostics.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/findobjectwithjsfunction.h"
#include "wrappers/web/itemlist.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webutilities.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// The limit of fetching children, in milliseconds.
constexpr unsigned int childrenLimit = 60000;

QString memberText(const Json::Value &record, const char *name)
{
    return fromJson<QString>(record.get(name, Json::Value())).value;
}

ObjectList itemViewChildren(HTMLComponent *component, const HTML_CustomItemView &view)
{
    return fetchItems(component,
        script(u"try{__ostrel__fetchItemViewChildren(%1, %2Extension );}catch(e){'[err]';}",
            Expr{view.jsReference()}, Expr{view.realType().value}));
}

/// The items that a control counts and gives by index; one that fails is told and left out.
template <typename Item, typename ItemError>
ObjectList numberedChildren(
    const FunctionCallResult<int> &count, QStringView countError, Item item, ItemError itemError)
{
    ObjectList objects;
    if (count.failed()) {
        reportToStandardError(message(countError, count.error));
        return objects;
    }
    for (int i = 0; i < count.value; ++i) {
        const auto found = item(i);
        if (found.failed())
            reportToStandardError(itemError(i, found.error));
        else
            objects.append(wrapObject(found.value));
    }
    return objects;
}

/// What an element shows below its DOM children. Asked anew each time: these have no place in the page's
/// tree.
ObjectList virtualChildren(const HTML_Object *wrapper)
{
    const QLatin1StringView className(wrapper->className());
    if (className == "HTML_CustomItemView"_L1)
        return itemViewChildren(wrapper->component(), static_cast<const HTML_CustomItemView &>(*wrapper));
    if (className == "HTML_Menu"_L1) {
        const auto &menu = static_cast<const HTML_Menu &>(*wrapper);
        return numberedChildren(
            menu.numItems(), u"Error obtaining number of menu items: %1",
            [&menu](int i) { return menu.itemAt(i); }, [](int, const QString &error) { return error; });
    }
    if (className == "HTML_CalendarView"_L1) {
        const auto &calendar = static_cast<const HTML_CalendarView &>(*wrapper);
        return numberedChildren(
            calendar.numVisibleEvents(), u"Error obtaining number of events: %1",
            [&calendar](int i) { return calendar.visibleEventAt(i); },
            [](int i, const QString &error) {
                return message(u"Error obtaining event at %1: %2", QString::number(i), error);
            });
    }
    return {};
}

} // namespace

HTMLObjectHierarchyDelegate::HTMLObjectHierarchyDelegate() : ObjectHierarchyDelegate(u"HTML_Object"_s) { }

HTMLObjectHierarchyDelegate *HTMLObjectHierarchyDelegate::registered()
{
    const Class *elements = objectModelHtmlObjectClass();
    return elements ? dynamic_cast<HTMLObjectHierarchyDelegate *>(
               DelegateFactory::self()->delegate<ObjectHierarchyDelegate>(elements))
                    : nullptr;
}

int HTMLObjectHierarchyDelegate::numChildren(SharedPtr<Object> object) const
{
    return int(children(object).size());
}

SharedPtr<Object> HTMLObjectHierarchyDelegate::child(SharedPtr<Object> object, int index) const
{
    const ObjectList all = children(object);
    return index >= 0 && index < all.size() ? all.at(index) : nullptr;
}

SharedPtr<Object> HTMLObjectHierarchyDelegate::childByName(
    SharedPtr<Object> object, const QString &name) const
{
    for (const SharedPtr<Object> &candidate : children(object)) {
        if (nameOfObject(candidate) == name)
            return candidate;
    }
    return {};
}

SharedPtr<Object> HTMLObjectHierarchyDelegate::objectByQualifiedName(
    SharedPtr<Object> object, const ObjectName &name) const
{
    Inspector *inspector = Inspector::self();
    if (name.isMultiProperty() && name.hasProperty(u"context"_s)) {
        inspector->raiseError(
            message(u"Invalid object name '%1'. Cannot lookup objects that have a context and a container "
                    u"property, please "
                    "make sure the context property is set only on the 'top-most' object name",
                name.qualifiedName()));
        PROBELOG_TRACE_VALUES("WebObjectSearch", u"Found object name with context and container: "_s,
            {{u"objectName.qualifiedName()"_s, name.qualifiedName()}});
        return {};
    }

    QList<ObjectName> chain = containerChain(name);
    if (chain.size() < 2) {
        const HTML_Object *wrapper = retrieveObject(object);
        return findObjectInContainer(wrapper ? wrapper->component() : nullptr, object, name);
    }

    const DelegateFactory *delegates = DelegateFactory::self();
    const ObjectName outermost = chain.takeFirst();
    const auto *own = delegates->delegate<ObjectHierarchyDelegate>(object);
    const SharedPtr<Object> container = own ? own->objectByQualifiedName(object, outermost) : nullptr;
    if (!container) {
        inspector->addUnmatchedProperty(name.qualifiedName(), u"container"_s);
        return {};
    }
    const auto *inner = delegates->delegate<ObjectHierarchyDelegate>(container);
    if (!inner) {
        inspector->raiseError(message(u"No container delegate found for type '%1' from object name: %2",
            container->objectClass()->name(), outermost.qualifiedName()));
        return {};
    }
    return inner->objectByQualifiedName(container, nestedContainerName(chain));
}

QString HTMLObjectHierarchyDelegate::name(SharedPtr<Object> object) const
{
    const HTML_Object *wrapper = retrieveObject(object);
    if (!wrapper)
        return {};
    const FunctionCallResult<QString> name = wrapper->name();
    if (name.failed())
        reportToStandardError(name.error);
    return name.value;
}

QString HTMLObjectHierarchyDelegate::qualifiedName(SharedPtr<Object> object) const
{
    const HTML_Object *wrapper = retrieveObject(object);
    if (!wrapper)
        return {};
    const HTMLComponent::EvalResult answer = wrapper->component()->evaluateJavaScript(
        script(u"__ostrel__nameOf(%1);", Expr{wrapper->jsReference()}), 0);
    if (answer.failed || answer.threw) {
        reportToStandardError(message(u"Error obtaining qualified name of object: %1", answer.result));
        return {};
    }
    return unescape(answer.result);
}

ObjectList HTMLObjectHierarchyDelegate::children(SharedPtr<Object> object) const
{
    const HTML_Object *wrapper = retrieveObject(object);
    if (!wrapper || !wrapper->component() || !wrapper->component()->isPageAvailable())
        return {};
    // An element without children is asked again at each call.
    if (m_children.value(object).isEmpty()) {
        const FunctionCallResult<void> fetched = getChildInfo(object);
        if (fetched.failed())
            reportToStandardError(fetched.error);
    }
    return m_children.value(object) + virtualChildren(wrapper);
}

FunctionCallResult<void> HTMLObjectHierarchyDelegate::getChildInfo(const SharedPtr<Object> &object) const
{
    const HTML_Object *wrapper = retrieveObject(object);
    HTMLComponent *component = wrapper->component();
    const FunctionCallResult<Json::Value> records = evaluateAsJson(component,
        script(u"window.top.__ostrel.childObjectAndInfo( %1 )", Expr{wrapper->jsReference()}), childrenLimit);
    if (records.failed()) {
        return Failure(message(
            u"Failed to retrieve children for html object %1: %2\n", wrapper->name().value, records.error));
    }
    ObjectList found;
    if (records.value.isArray()) {
        for (const Json::Value &record : records.value) {
            HTML_Object *element = record.isObject()
                ? htmlObjectFromReferenceInfo(component, memberText(record, "typeString"),
                    memberText(record, "reference"), memberText(record, "nameInLeaf"))
                : nullptr;
            if (element)
                found.append(wrapObject(element));
        }
    }
    m_children.insert(object, found);
    return {};
}

SharedPtr<Object> HTMLObjectHierarchyDelegate::parent(SharedPtr<Object> object) const
{
    HTML_Object *wrapper = retrieveObject(object);
    if (!wrapper)
        return {};
    if (dynamic_cast<HTML_Document *>(wrapper)) {
        const HTMLComponent::EvalResult answer = wrapper->component()->evaluateJavaScript(
            script(u"__ostrel__contextOf( %1 );", Expr{wrapper->jsReference()}), 0);
        const bool failed = answer.failed || answer.threw;
        if (failed)
            reportToStandardError(message(u"Error obtaining context of html document: %1", answer.result));
        if (failed || !answer.result.contains("FRAME"_L1))
            return ObjectHierarchyDelegate::parent(object);
    }
    const FunctionCallResult<HTML_Object *> parentElement = wrapper->parentElement();
    if (parentElement.failed()) {
        Inspector::self()->raiseError(parentElement.error);
        return {};
    }
    return parentElement.value ? wrapObject(parentElement.value) : nullptr;
}

ObjectHierarchyDelegate::WrapperType HTMLObjectHierarchyDelegate::wrapperType() const
{
    return Web;
}

void HTMLObjectHierarchyDelegate::clearAllJSReferences(HTMLComponent *component) const
{
    LiveObjects::self().invalidate(component);
    clearChildCache();
}

void HTMLObjectHierarchyDelegate::invalidateAllReferencedObjects() const
{
    LiveObjects::self().invalidateAll();
    clearChildCache();
}

void HTMLObjectHierarchyDelegate::clearChildCache() const
{
    m_children.clear();
}

} // namespace Ostrel::WebWrapper
