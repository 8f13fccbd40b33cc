#include "wrappers/web/webtopleveldelegate.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/findobjectwithjsfunction.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webutilities.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr auto documentName = "DOCUMENT"_L1;

/// The document that was wrapped last, shared by all toplevel objects.
SharedPtr<Object> &documentReference()
{
    static auto *const reference = new SharedPtr<Object>;
    return *reference;
}

/// What stands between the first "[" and the first "]".
QString contextIn(const QString &name)
{
    const qsizetype open = name.indexOf(u'[') + 1;
    return name.mid(open, name.indexOf(u']') - open);
}

} // namespace

FunctionCallResult<HTML_Object *> documentOfContext(HTMLComponent *component)
{
    return htmlObjectFromJavaScriptResult(component,
        u"(function() { if( !window.__ostrel__ctxwin ) { window.__ostrel__ctxwin = window } return "
        "window.__ostrel__ctxwin.document; }());"_s,
        {}, 0);
}

WebToplevelDelegate::WebToplevelDelegate(const QString &className) : ObjectHierarchyDelegate(className) { }

int WebToplevelDelegate::numChildren(SharedPtr<Object>) const
{
    return 1;
}

SharedPtr<Object> WebToplevelDelegate::child(SharedPtr<Object> object, int index) const
{
    HTMLComponent *component = htmlComponentFor(object);
    if (!component || !component->isPageAvailable() || index != 0)
        return {};

    if (const HTML_Object *known = retrieveObject(documentReference())) {
        if (keepsDocumentReference() || known->component() == component)
            return documentReference();
        clearDocumentReference();
    }

    const FunctionCallResult<HTML_Object *> document = documentOfContext(component);
    if (document.failed()) {
        Inspector::self()->raiseError(message(
            u"Failed to retrieve child object number %1: %2", QString::number(index), document.error));
        return {};
    }
    if (!document.value)
        return {};
    documentReference() = wrapObject(document.value);
    return documentReference();
}

SharedPtr<Object> WebToplevelDelegate::childByName(SharedPtr<Object> object, const QString &name) const
{
    if (name == documentName)
        return child(object, 0);
    HTMLComponent *component = htmlComponentFor(object);
    if (!component || !component->isPageAvailable())
        return {};
    if (!name.startsWith(documentName)) {
        return findObjectWithJsFunction(
            script(u"__ostrel__findObjectByHeuristic(\"%1\");", DoubleQuoted{name}), name, component);
    }

    // Kept as is: "DOCUMENTS" counts as a document with a context too, though there is none to be found.
    const FunctionCallResult<HTML_Object *> document = htmlObjectFromJavaScriptResult(
        component, script(u"__ostrel__documentOfContext('%1');", Expr{contextIn(name)}), {}, 0);
    if (document.failed()) {
        Inspector::self()->raiseError(
            message(u"Failed to retrieve child object with name %1: %2", name, document.error));
        return {};
    }
    if (!document.value)
        return {};
    Inspector::self()->removeUnmatchedProperties(unescape(name));
    return wrapObject(document.value);
}

SharedPtr<Object> WebToplevelDelegate::objectByQualifiedName(
    SharedPtr<Object> object, const ObjectName &name) const
{
    QList<ObjectName> chain = containerChain(name);
    if (chain.size() < 2) {
        HTMLComponent *component = htmlComponentFor(object);
        if (!component)
            return {};
        return findObjectWithJsFunction(
            script(u"__ostrel__findObject(\"%1\");", DoubleQuoted{name.qualifiedName()}),
            name.qualifiedName(), component);
    }

    const SharedPtr<Object> container
        = objectByQualifiedName(object, ObjectName(chain.takeFirst().qualifiedName()));
    if (!container) {
        PROBELOG_TRACE(
            "WebObjectSearch", message(u"Could not find container for name: %1", name.qualifiedName()));
        Inspector::self()->addUnmatchedProperty(name.qualifiedName(), u"container"_s);
        return {};
    }
    const auto *delegate = DelegateFactory::self()->delegate<ObjectHierarchyDelegate>(container);
    if (!delegate || delegate == this) {
        PROBELOG_TRACE("WebObjectSearch",
            message(u"No container delegate or container delegate is webwrapper: %1",
                delegate ? delegate->className() : u"null"_s));
        return {};
    }
    const ObjectName nested = nestedContainerName(chain);
    PROBELOG_TRACE("WebObjectSearch",
        message(
            u"Looking up child object: %1 In delegate: %2", nested.qualifiedName(), delegate->className()));
    return delegate->objectByQualifiedName(container, nested);
}

QString WebToplevelDelegate::name(SharedPtr<Object>) const
{
    return {};
}

QString WebToplevelDelegate::qualifiedName(SharedPtr<Object>) const
{
    return {};
}

ObjectList WebToplevelDelegate::children(SharedPtr<Object> object) const
{
    ObjectList all;
    for (int i = 0; i < numChildren(object); ++i)
        all.append(child(object, i));
    return all;
}

SharedPtr<Object> WebToplevelDelegate::parent(SharedPtr<Object>) const
{
    return {};
}

ObjectHierarchyDelegate::WrapperType WebToplevelDelegate::wrapperType() const
{
    return Web;
}

void WebToplevelDelegate::clearDocumentReference() const
{
    if (HTML_Object *document = retrieveObject(documentReference()))
        document->invalidate();
    documentReference().reset();
}

} // namespace Ostrel::WebWrapper
