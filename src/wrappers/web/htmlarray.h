// HTML_Array: a list that stays in the page.
#pragma once

#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

/// A page collection; its reference is any expression that has a length and members by index.
class PAGEPROBELIB_EXPORT HTML_Array : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Array";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> length() const;
    /// A new wrapper, owned by the caller; an error out of bounds, in which case the page is asked for the
    /// length only.
    FunctionCallResult<HTML_Object *> at(int index) const;
};

} // namespace Ostrel::WebWrapper
