// ClassTable: a reflection class as a table of facts.
//
//     constexpr PropertyRow properties[] = {
//         property<&HTML_CheckBox::checked, &HTML_CheckBox::setChecked>("checked"),
//     };
//     constexpr MethodRow methods[] = {
//         method<&HTML_CheckBox::setChecked>("setChecked", "b"),
//         method<&HTML_CheckBox::checked>("checked"),
//     };
//     constexpr ClassTable checkBox { "HTML_CheckBox", "HTML_ButtonBase", properties, methods };
//
// Types and conversions come from the operation itself. No setter means read-only. Values that a method of
// the table fills in for its last parameters stand behind the operation: method<&HTML_Object::click, 0, 0, 0,
// 1>. Properties, methods, the dispatch, the script's view and the printed catalogue all come from the same
// table.
#pragma once

#include "ostrelhook/scriptvalue.h"

#include <array>
#include <span>
#include <tuple>

namespace Ostrel {

using CallResult = FunctionCallResult<SharedPtr<Object>>;

constexpr std::size_t maxParameters = 5;

/// Stands in a method row where a parameter has no name.
inline constexpr const char *unnamed = "";

struct ParameterRow
{
    const char *name = nullptr;
    TypeName type;
};

struct PropertyRow
{
    const char *name;
    TypeName type;
    CallResult (*read)(void *wrapper);
    /// Null for read-only properties.
    FunctionCallResult<void> (*write)(void *wrapper, const SharedPtr<Object> &value);
};

struct MethodRow
{
    const char *name;
    TypeName result;
    std::array<ParameterRow, maxParameters> parameters;
    std::size_t parameterCount;
    CallResult (*call)(void *wrapper, const ObjectList &arguments);
};

struct EnumRow
{
    const char *name;
    int value;
};

/// What all classes of a family of wrappers share: when a wrapper is dead, what a script then reads, and how
/// a wrapper is freed.
struct WrapperFamily
{
    bool (*isAlive)(void *wrapper);
    const char16_t *deadMessage;
    void (*destroy)(void *wrapper);
};

struct ClassTable
{
    const char *name;
    /// The script name of the base class; null for a root.
    const char *base;
    std::span<const PropertyRow> properties;
    std::span<const MethodRow> methods;
};

/// A class that is nothing but its table.
class OSTRELHOOK_EXPORT TableClass : public Class
{
public:
    /// Both outlive the class; they are static tables.
    TableClass(const ClassTable &table, const WrapperFamily &family, Namespace *home);

    const ClassTable &table() const { return m_table; }

    SharedPtr<Object> invoke(int index, const SharedPtr<Object> &object, const ObjectList &arguments,
        const Method *method) override;
    bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value) override;
    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) override;
    void deleteObjectData(Object *object) override;

protected:
    void initSuperClass() const override;
    std::unique_ptr<Method> createMethod(int index) const override;
    std::unique_ptr<Property> createProperty(int index) const override;

private:
    /// The wrapper of a live object; raises the script error and gives null otherwise.
    void *liveWrapper(const SharedPtr<Object> &object, const QString &member) const;

    const ClassTable &m_table;
    const WrapperFamily &m_family;
};

namespace Detail {

/// The class, the parameters and the value of an operation.
template <typename Operation>
struct OperationTraits;

template <typename C, typename R, typename... Args>
struct OperationTraits<FunctionCallResult<R> (C::*)(Args...)>
{
    using Wrapper = C;
    using Result = R;
    using Parameters = std::tuple<std::decay_t<Args>...>;
};

template <typename C, typename R, typename... Args>
struct OperationTraits<FunctionCallResult<R> (C::*)(Args...) const>
    : OperationTraits<FunctionCallResult<R> (C::*)(Args...)>
{
};

/// A free function or lambda row takes the wrapper as its first parameter.
template <typename C, typename R, typename... Args>
struct OperationTraits<FunctionCallResult<R> (*)(C &, Args...)>
    : OperationTraits<FunctionCallResult<R> (C::*)(Args...)>
{
};

template <auto Operation>
using OperationOf = OperationTraits<std::remove_cv_t<decltype(Operation)>>;

template <typename Result>
CallResult scriptResult(FunctionCallResult<Result> result)
{
    if (result.failed())
        return Failure(result.error);
    if constexpr (std::is_void_v<Result>)
        return Inspector::self()->createVoid();
    else
        return ScriptValue<Result>::toObject(std::move(result.value));
}

/// Calls `Operation` on the wrapper with the script's arguments, then with the filled-in ones.
template <auto Operation, auto... Filled>
struct Call
{
    using Traits = OperationOf<Operation>;
    using Parameters = typename Traits::Parameters;
    static constexpr std::size_t given = std::tuple_size_v<Parameters> - sizeof...(Filled);

    template <std::size_t I>
    using Value = ScriptValue<std::tuple_element_t<I, Parameters>>;

    static CallResult run(void *data, const ObjectList &arguments)
    {
        auto *wrapper = wrapperFrom<typename Traits::Wrapper>(data);
        if (!wrapper)
            return Failure(QStringLiteral("The object is not of the class of this member."));
        return [&]<std::size_t... I>(std::index_sequence<I...>)
        {
            const std::tuple held{Value<I>::hold(arguments.at(qsizetype(I)))...};
            return scriptResult(
                std::invoke(Operation, *wrapper, Value<I>::take(std::get<I>(held))..., Filled...));
        }
        (std::make_index_sequence<given>());
    }
};

template <auto Setter>
FunctionCallResult<void> writeProperty(void *data, const SharedPtr<Object> &value)
{
    const CallResult result = Call<Setter>::run(data, {value});
    if (result.failed())
        return Failure(result.error);
    return {};
}

template <auto Getter>
CallResult readProperty(void *data)
{
    return Call<Getter>::run(data, {});
}

} // namespace Detail

/// A property with its getter and, unless it is read-only, its setter.
template <auto Getter, auto Setter = nullptr>
constexpr PropertyRow property(const char *name)
{
    PropertyRow row{name, ScriptValue<typename Detail::OperationOf<Getter>::Result>::type,
        &Detail::readProperty<Getter>, nullptr};
    if constexpr (!std::is_null_pointer_v<decltype(Setter)>)
        row.write = &Detail::writeProperty<Setter>;
    return row;
}

/// A method; `names` are the names of the parameters that a script gives.
template <auto Operation, auto... Filled, typename... Names>
constexpr MethodRow method(const char *name, Names... names)
{
    using Call = Detail::Call<Operation, Filled...>;
    static_assert(sizeof...(names) == Call::given, "name every parameter that is not filled in");
    const std::array<const char *, sizeof...(names)> given{names...};
    MethodRow row{name, ScriptValue<typename Call::Traits::Result>::type, {}, Call::given, &Call::run};
    [&]<std::size_t... I>(std::index_sequence<I...>)
    {
        ((row.parameters[I] = ParameterRow{given[I], Call::template Value<I>::type}), ...);
    }
    (std::make_index_sequence<Call::given>());
    return row;
}

/// Chooses an overload of an operation by its type: overload<FunctionCallResult<void>(const char *,
/// int)>(&X::f).
template <typename Function, typename C>
constexpr auto overload(Function C::*operation)
{
    return operation;
}

/// The arguments as a table row names their types.
OSTRELHOOK_EXPORT Argument argumentOf(const TypeName &type, const char *name = nullptr);

} // namespace Ostrel
