// addGlobalFunction: makes a C++ function callable by scripts; types come from the function itself.
//
//     addGlobalFunction("loadUrl", { "url" }, [this](const QString &url) { return open(url); });
#pragma once

#include "ostrelhook/classtable.h"
#include "ostrelhook/globalclass.h"

#include <initializer_list>

namespace Ostrel {

namespace Detail {

template <typename Function>
struct FunctorTraits : FunctorTraits<decltype(&Function::operator())>
{
};

template <typename F, typename R, typename... Args>
struct FunctorTraits<FunctionCallResult<R> (F::*)(Args...) const>
{
    using Result = R;
    using Parameters = std::tuple<std::decay_t<Args>...>;
    static constexpr std::size_t count = sizeof...(Args);
};

} // namespace Detail

/// Registers a function object that takes script values and returns a FunctionCallResult. The returned method
/// belongs to the global class; its owner takes it away with GlobalClass::removeMethod() before it goes.
template <typename Function>
GlobalMethod *addGlobalFunction(
    const char *name, std::initializer_list<const char *> parameterNames, Function function)
{
    using Traits = Detail::FunctorTraits<Function>;
    Q_ASSERT(parameterNames.size() == Traits::count);
    return [&]<std::size_t... I>(std::index_sequence<I...>)
    {
        const QList<Argument> parameters{
            argumentOf(ScriptValue<std::tuple_element_t<I, typename Traits::Parameters>>::type,
                parameterNames.begin()[I])...};
        auto call = [function](const ObjectList &arguments) -> CallResult {
            const std::tuple held{ScriptValue<std::tuple_element_t<I, typename Traits::Parameters>>::hold(
                arguments.at(qsizetype(I)))...};
            return Detail::scriptResult(
                function(ScriptValue<std::tuple_element_t<I, typename Traits::Parameters>>::take(
                    std::get<I>(held))...));
        };
        return Inspector::self()->globalClass()->addMethod(
            std::make_unique<GlobalMethod>(QString::fromLatin1(name), Signature(parameters),
                argumentOf(ScriptValue<typename Traits::Result>::type), std::move(call)));
    }
    (std::make_index_sequence<Traits::count>());
}

} // namespace Ostrel
