// Where elements are on the screen, and whether two wrappers stand for one element.
#pragma once

#include "ostrelhook/delegates.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

/// Bounds of elements. What fails goes to standard error and gives a rectangle with a width and a height of
/// -1.
class PAGEPROBELIB_EXPORT WebObjectGeometryDelegate : public GeometryDelegate
{
public:
    WebObjectGeometryDelegate();

    /// The page is not scrolled for it.
    Rect<2> globalBounds(SharedPtr<Object> object) const override;
    /// Always null: hit testing is the page's matter.
    SharedPtr<Object> childAt(SharedPtr<Object> object, int x, int y) const override;
    SharedPtr<Object> focusProxy(SharedPtr<Object> object) const override;
};

/// Elements are the same when the page says so; those of different pages never are.
class PAGEPROBELIB_EXPORT WebObjectComparisonDelegate : public ComparisonDelegate
{
public:
    WebObjectComparisonDelegate();

    bool compare(SharedPtr<Object> a, SharedPtr<Object> b) const override;
    bool sameObjects(SharedPtr<Object> a, SharedPtr<Object> b) const override;
};

} // namespace Ostrel::WebWrapper
