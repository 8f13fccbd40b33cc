// The delegates that belong to every element class: what a script prints for an element and when two are
// equal.
#pragma once

#include "ostrelhook/delegates.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

/// Turns an element into text: its reference expression, not its name or content. Nothing turns into an
/// element.
class PAGEPROBELIB_EXPORT HTML_Object_CastToStringDelegate : public CastDelegate
{
public:
    explicit HTML_Object_CastToStringDelegate(const QString &className);

    /// True for the String primitive only.
    bool canCast(const Class *target) const override;
    SharedPtr<Object> cast(SharedPtr<Object> object, const Class *target) const override;
};

/// Compares elements by asking the page. A failure of that goes to standard error and means that they differ.
class PAGEPROBELIB_EXPORT HTML_Object_ComparisonDelegate : public ComparisonDelegate
{
public:
    explicit HTML_Object_ComparisonDelegate(const QString &className);

    /// Two objects without elements are equal; one with and one without are not.
    bool compare(SharedPtr<Object> a, SharedPtr<Object> b) const override;
};

/// Makes one of each for all element classes; they live as long as the process.
void registerObjectDelegates();

} // namespace Ostrel::WebWrapper
