// WebToplevelDelegate: the browser as the framework sees it, the one object above the pages.
#pragma once

#include "ostrelhook/delegates.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

class HTML_Object;
class HTMLComponent;

/// A new wrapper of the document of the window that lookups in a page start in; that is the page's own window
/// at first. Null when the page has none.
PAGEPROBELIB_EXPORT FunctionCallResult<HTML_Object *> documentOfContext(HTMLComponent *component);

/// Its only child is the document of the context window; all lookups that start at the top pass through it. A
/// host derives from it and says which page an object stands for. Used from one thread.
class PAGEPROBELIB_EXPORT WebToplevelDelegate : public ObjectHierarchyDelegate
{
public:
    explicit WebToplevelDelegate(const QString &className = QStringLiteral("Ostrel::ToplevelWeb"));

    int numChildren(SharedPtr<Object> object) const override;
    SharedPtr<Object> child(SharedPtr<Object> object, int index) const override;
    SharedPtr<Object> childByName(SharedPtr<Object> object, const QString &name) const override;
    SharedPtr<Object> objectByQualifiedName(SharedPtr<Object> object, const ObjectName &name) const override;
    QString name(SharedPtr<Object> object) const override;
    QString qualifiedName(SharedPtr<Object> object) const override;
    ObjectList children(SharedPtr<Object> object) const override;
    SharedPtr<Object> parent(SharedPtr<Object> object) const override;
    WrapperType wrapperType() const override;

    /// The bridge to the page of a toplevel object, or null.
    virtual HTMLComponent *htmlComponentFor(SharedPtr<Object> object) const = 0;
    /// Whether the document that was wrapped once is kept even when the page is another.
    virtual bool keepsDocumentReference() const = 0;

    /// Invalidates and forgets the document; for hosts, when the page changes.
    void clearDocumentReference() const;
};

} // namespace Ostrel::WebWrapper
