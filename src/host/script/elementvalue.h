// How script functions of the host take and give elements that are script objects already.
#pragma once

#include "ostrelhook/scriptvalue.h"

namespace Ostrel {

template <>
struct ScriptValue<SharedPtr<Object>>
{
    static constexpr TypeName type{"HTML_Object", nullptr, true};
    using Holder = SharedPtr<Object>;
    static Holder hold(const SharedPtr<Object> &object) { return object; }
    static const SharedPtr<Object> &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const SharedPtr<Object> &object) { return object; }
};

} // namespace Ostrel
