// FunctionClass: functions of a script as arguments, and values of any type.
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/scriptvalue.h"

#include <functional>

namespace Ostrel {

/// A function of a script. Errors that it throws are failures. Called on the script's thread while the
/// script's engine lives.
using ScriptFunction = std::function<FunctionCallResult<SharedPtr<Object>>(const ObjectList &arguments)>;

/// The class of a script's functions. An object owns its function.
class OSTRELHOOK_EXPORT FunctionClass : public Class
{
public:
    explicit FunctionClass(Namespace *home);

    static SharedPtr<Object> wrapObject(const ScriptFunction &function);
    /// The function of such an object; an empty one for anything else.
    static ScriptFunction unwrapObject(const SharedPtr<Object> &object);

    void deleteObjectData(Object *object) override;
};

template <>
struct ScriptValue<ScriptFunction>
{
    static constexpr TypeName type{"Function", nullptr, true};
    using Holder = ScriptFunction;
    static Holder hold(const SharedPtr<Object> &object) { return FunctionClass::unwrapObject(object); }
    static const ScriptFunction &take(const Holder &held) { return held; }
};

/// A value of whatever type the script gives or gets: a null pointer for `null` and `undefined`.
struct AnyValue
{
    SharedPtr<Object> object;
};

template <>
struct ScriptValue<AnyValue>
{
    static constexpr TypeName type{"any", nullptr, true};
    using Holder = AnyValue;
    static Holder hold(const SharedPtr<Object> &object) { return {object}; }
    static const AnyValue &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const AnyValue &value) { return value.object; }
};

} // namespace Ostrel
