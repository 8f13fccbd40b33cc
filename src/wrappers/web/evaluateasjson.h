// evaluateAsJson: the only route by which structured values leave a page.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QString>

#include <json/value.h>

#include <optional>
#include <string>
#include <vector>

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// Evaluates an expression and gives its value through JSON; `undefined` gives a null value and no error. A
/// failure of the bridge comes back word for word, an exception of the page with its name and message.
FunctionCallResult<Json::Value> evaluateAsJson(
    const HTMLComponent *component, QString expression, unsigned int timeoutMs);

/// Like evaluateAsJson(), for an answer that may be nested deeper than the thousand levels that do elsewhere,
/// as the elements of a page are. One deeper than `levels` is a failure that says so.
FunctionCallResult<Json::Value> evaluateAsDeepJson(
    const HTMLComponent *component, QString expression, unsigned int timeoutMs, int levels);

/// A JSON value as a C++ value. Null gives the default; a value of another kind is a failure that shows it.
template <typename T>
FunctionCallResult<T> fromJson(const Json::Value &value);

template <>
FunctionCallResult<QString> fromJson(const Json::Value &value);
template <>
FunctionCallResult<int> fromJson(const Json::Value &value);
template <>
FunctionCallResult<bool> fromJson(const Json::Value &value);
template <>
FunctionCallResult<std::vector<int>> fromJson(const Json::Value &value);
template <>
FunctionCallResult<std::vector<std::string>> fromJson(const Json::Value &value);

/// What came of parsing an answer of a page.
struct ParsedJson
{
    enum class Outcome {
        Parsed, ///< `root` holds the value
        Malformed, ///< `error` is what the parser says
        Threw, ///< `error` is the text of the parser's exception
    };

    Outcome outcome = Outcome::Parsed;
    Json::Value root;
    QString error;
};

/// Parses the text up to its first NUL.
ParsedJson parseJson(const QString &text);
/// The same for text of that many nested levels at most; a deeper one throws.
ParsedJson parseDeepJson(const QString &text, int levels);

/// The error object that a page answers with when an expression threw. The two callers write its parts with
/// different punctuation.
struct PageException
{
    QString name;
    QString message;
    /// These three only where the browser gives them.
    std::optional<QString> file;
    std::optional<QString> line;
    std::optional<QString> stack;

    /// Reads the members.
    static PageException fromJson(const Json::Value &error);
};

} // namespace Ostrel::WebWrapper
