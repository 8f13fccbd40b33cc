#include "wrappers/web/findobjectwithjsfunction.h"

#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webutilities.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

const QString containerProperty = u"container"_s;

unsigned int lookupLimit()
{
    constexpr unsigned int defaultLimit = 5000;
    bool ok = false;
    const unsigned int limit = qEnvironmentVariable("OSTREL_WEB_OBJECT_LOOKUP_TIMEOUT").toUInt(&ok);
    return ok ? limit : defaultLimit;
}

} // namespace

SharedPtr<Object> findObjectWithJsFunction(
    const QString &function, const QString &name, HTMLComponent *component)
{
    Inspector *inspector = Inspector::self();
    const FunctionCallResult<HTML_Object *> found
        = htmlObjectFromJavaScriptResult(component, function, name, lookupLimit());
    PROBELOG_TRACE("WebObjectDelegate",
        message(u"Generated html object for name %1: %2", name,
            found.value ? found.value->jsReference() : u"null"_s));
    if (found.failed()) {
        inspector->raiseError(message(
            u"Failed to lookup object name '%1' with function '%2': %3", name, function, found.error));
        return {};
    }
    if (!found.value)
        return {};
    inspector->removeUnmatchedProperties(unescape(name));
    return wrapObject(found.value);
}

SharedPtr<Object> findObjectInContainer(
    HTMLComponent *component, const SharedPtr<Object> &container, const ObjectName &name)
{
    const HTML_Object *wrapper = retrieveObject(container);
    if (!component || !component->isPageAvailable() || !wrapper)
        return {};
    if (name.isMultiProperty() && !name.hasProperty(u"tagName"_s))
        return {};
    const QString function = script(u"__ostrel__findObjectByProps( %1, \"%2\");",
        Expr{wrapper->jsReference()}, DoubleQuoted{name.qualifiedName()});
    return findObjectWithJsFunction(function, name.qualifiedName(), component);
}

QList<ObjectName> containerChain(ObjectName name)
{
    if (!name.hasProperty(containerProperty))
        return {name};
    const QString container = ObjectMap::self()->realName(name.property(containerProperty).stringValue());
    QList<ObjectName> chain = containerChain(ObjectName(container));
    name.removeProperty(containerProperty);
    chain.append(name);
    return chain;
}

ObjectName nestedContainerName(const QList<ObjectName> &chain)
{
    QString nested;
    for (const ObjectName &member : chain) {
        QString name = member.qualifiedName();
        if (!nested.isEmpty())
            name.insert(1, message(u"container=%1 ", nested));
        nested = name;
    }
    return ObjectName(nested);
}

ObjectName setObjectNameContainer(ObjectName name, const QString &container)
{
    if (!name.isMultiProperty())
        return ObjectName(message(u"%1.%2", container, name.qualifiedName()));
    if (!name.hasProperty(containerProperty)) {
        name.setProperty(
            containerProperty, PropertyValue(container, PropertyValue::Strict, PropertyValue::Quoted));
        return name;
    }
    const PropertyValue inner = name.property(containerProperty);
    const ObjectName deeper = setObjectNameContainer(ObjectName(inner.stringValue()), container);
    name.setProperty(
        containerProperty, PropertyValue(deeper.qualifiedName(), inner.matchKind(), inner.form()));
    return name;
}

} // namespace Ostrel::WebWrapper
