// CustomViewItemPropertyDelegate: the framework's way through the items of item views.
#pragma once

#include "ostrelhook/delegates.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

/// Items are no children in the page's tree: a toolkit's extension tells which there are and what they are
/// called. Nothing is kept, so that each call asks the page. What fails goes to standard error and gives an
/// empty result.
class PAGEPROBELIB_EXPORT CustomViewItemPropertyDelegate : public ObjectHierarchyDelegate
{
public:
    CustomViewItemPropertyDelegate();

    int numChildren(SharedPtr<Object> object) const override;
    /// Null for an index that is out of range.
    SharedPtr<Object> child(SharedPtr<Object> object, int index) const override;
    SharedPtr<Object> childByName(SharedPtr<Object> object, const QString &name) const override;
    /// The name in the view; empty for an item that belongs to no view and no other item.
    QString name(SharedPtr<Object> object) const override;
    /// "__noimpl__": an item is named through its view and a path of child names.
    QString qualifiedName(SharedPtr<Object> object) const override;
    ObjectList children(SharedPtr<Object> object) const override;
    WrapperType wrapperType() const override;
};

} // namespace Ostrel::WebWrapper
