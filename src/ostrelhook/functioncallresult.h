// FunctionCallResult: the value-or-error result of every operation that may fail.
//
//     FunctionCallResult<int> r = element.width();
//     if (r.failed())
//         return Failure(u"Error measuring: %1"_s.arg(r.error));
//     use(r.value);
#pragma once

#include <QString>

#include <utility>

namespace Ostrel {

/// The failed half of a result: converts to a FunctionCallResult of any type. A failure always has a text.
struct Failure
{
    explicit Failure(QString message)
        : text(message.isEmpty() ? QStringLiteral("Unknown error") : std::move(message))
    {
    }

    QString text;
};

/// A value or an error text, never both: failed() exactly when `error` is not empty.
template <typename T>
struct [[nodiscard]] FunctionCallResult
{
    FunctionCallResult() = default;
    FunctionCallResult(T result) : value(std::move(result)) { }
    FunctionCallResult(Failure failure) : error(std::move(failure.text)) { }

    bool failed() const { return !error.isEmpty(); }

    T value{};
    QString error;
};

template <>
struct [[nodiscard]] FunctionCallResult<void>
{
    FunctionCallResult() = default;
    FunctionCallResult(Failure failure) : error(std::move(failure.text)) { }

    bool failed() const { return !error.isEmpty(); }

    QString error;
};

} // namespace Ostrel
