// HTMLObjectHierarchyDelegate: the framework's way through the elements of a page.
#pragma once

#include "ostrelhook/delegates.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

#include <QMap>

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// Children, parents, names and lookups below the document. The children of an element are fetched once, with
/// all that is needed to wrap them, and kept until a clear: between two clears a walk sees the tree as it
/// was, which is what makes dumps cheap. Also the one place that discards the wrappers of a page that goes.
/// Used from one thread.
class PAGEPROBELIB_EXPORT HTMLObjectHierarchyDelegate : public ObjectHierarchyDelegate
{
public:
    HTMLObjectHierarchyDelegate();

    /// The one that is registered with the framework; null before createWebObjectClasses().
    static HTMLObjectHierarchyDelegate *registered();

    int numChildren(SharedPtr<Object> object) const override;
    SharedPtr<Object> child(SharedPtr<Object> object, int index) const override;
    SharedPtr<Object> childByName(SharedPtr<Object> object, const QString &name) const override;
    SharedPtr<Object> objectByQualifiedName(SharedPtr<Object> object, const ObjectName &name) const override;
    QString name(SharedPtr<Object> object) const override;
    QString qualifiedName(SharedPtr<Object> object) const override;
    ObjectList children(SharedPtr<Object> object) const override;
    SharedPtr<Object> parent(SharedPtr<Object> object) const override;
    WrapperType wrapperType() const override;

    /// Invalidates the wrappers of one page, which is about to go, and forgets all children that were
    /// fetched.
    virtual void clearAllJSReferences(HTMLComponent *component) const;
    /// The same for all pages.
    virtual void invalidateAllReferencedObjects() const;

    /// Forgets the children that were fetched, so that the next walk sees the page as it is.
    void clearChildCache() const;

protected:
    /// Fetches the children of an element in one call and keeps them.
    FunctionCallResult<void> getChildInfo(const SharedPtr<Object> &object) const;

private:
    mutable QMap<SharedPtr<Object>, ObjectList> m_children;
};

} // namespace Ostrel::WebWrapper
