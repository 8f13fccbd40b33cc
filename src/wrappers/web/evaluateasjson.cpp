#include "wrappers/web/evaluateasjson.h"

#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/jsonenvelope.h"
#include "wrappers/web/scripttext.h"

#include <json/json.h>

#include <memory>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// A long expression as it stands in messages: its beginning and its end.
QString shortForm(const QString &expression)
{
    if (expression.size() < 100)
        return expression;
    return expression.left(50) + u"..."_s + expression.right(50);
}

QString detailText(const PageException &exception)
{
    QString text = message(u"%1: %2", exception.name, exception.message);
    if (exception.file) {
        text += message(u" at %1", *exception.file);
        if (exception.line)
            text += message(u": %1", *exception.line);
    }
    text += u'.';
    if (exception.stack)
        text += message(u" Stacktrace: %1", *exception.stack);
    return text;
}

QString textOf(const Json::Value &value)
{
    return value.isConvertibleTo(Json::stringValue) ? QString::fromStdString(value.asString()) : QString();
}

std::optional<QString> memberText(const Json::Value &object, const char *name)
{
    return object.isMember(name) ? std::optional(textOf(object[name])) : std::nullopt;
}

Failure unexpectedType(const char *expected, const Json::Value &value)
{
    return Failure(message(u"Unexpected type of JSON value, expected %1 but got: %2",
        QString::fromLatin1(expected), QString::fromStdString(value.toStyledString()).trimmed()));
}

/// The message is a fixed one: what a page has in place of a list may be of any length.
template <typename Item>
FunctionCallResult<std::vector<Item>> listFromJson(QStringView expected, const Json::Value &value)
{
    const Failure notSuchAList(message(u"Unexpected type of JSON value, expected a list of %1", expected));
    if (!value.isArray())
        return notSuchAList;
    std::vector<Item> items;
    for (const Json::Value &element : value) {
        if constexpr (std::is_same_v<Item, int>) {
            if (!element.isInt())
                return notSuchAList;
            items.push_back(element.asInt());
        } else {
            if (!element.isString())
                return notSuchAList;
            items.push_back(element.asString());
        }
    }
    return items;
}

/// Runs a parser, which gives whether it has read all, over the text up to its first NUL.
template <typename Parser>
ParsedJson parseBy(const QString &text, const Parser &parser)
{
    ParsedJson parsed;
    const QByteArray bytes = text.toUtf8();
    const char *const begin = bytes.constData();
    try {
        if (!parser(begin, begin + qstrlen(begin), parsed))
            parsed.outcome = ParsedJson::Outcome::Malformed;
    } catch (const Json::RuntimeError &error) {
        parsed.outcome = ParsedJson::Outcome::Threw;
        parsed.error = QString::fromUtf8(error.what());
    }
    return parsed;
}

HTMLComponent::EvalResult evaluateInEnvelope(
    const HTMLComponent *component, QString expression, unsigned int timeoutMs)
{
    enclose(expression, envelopeHead, envelopeTail);
    return component->evaluateJavaScript(expression, timeoutMs);
}

/// What an answer says, once it is parsed.
FunctionCallResult<Json::Value> valueOf(const QString &call, const QString &answer, ParsedJson &parsed)
{
    if (parsed.outcome != ParsedJson::Outcome::Parsed) {
        return Failure(
            message(u"Calling %1 failed to parse JSON return value '%2': %3", call, answer, parsed.error));
    }
    if (!parsed.root.isObject())
        return Failure(message(u"Calling %1 JSON return value is not an object: %2", call, answer));
    if (parsed.root.isMember("error")) {
        return Failure(message(u"Calling %1: Error evaluating JavaScript: %3", call,
            detailText(PageException::fromJson(parsed.root["error"]))));
    }
    // The value of a dump is large: it is taken out of the answer rather than copied from it.
    Json::Value value;
    parsed.root.removeMember("result", &value);
    return value;
}

} // namespace

ParsedJson parseJson(const QString &text)
{
    // The reader that reports errors in the form that our messages show.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    Json::Reader reader;
    QT_WARNING_POP
    return parseBy(text, [&reader](const char *begin, const char *end, ParsedJson &parsed) {
        const bool read = reader.parse(begin, end, parsed.root, true);
        parsed.error = QString::fromStdString(reader.getFormattedErrorMessages());
        return read;
    });
}

ParsedJson parseDeepJson(const QString &text, int levels)
{
    Json::CharReaderBuilder builder;
    builder["stackLimit"] = levels;
    return parseBy(text, [&builder](const char *begin, const char *end, ParsedJson &parsed) {
        std::string error;
        const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
        const bool read = reader->parse(begin, end, &parsed.root, &error);
        parsed.error = QString::fromStdString(error);
        return read;
    });
}

PageException PageException::fromJson(const Json::Value &error)
{
    if (!error.isObject())
        return {{}, textOf(error), {}, {}, {}};
    return {textOf(error["name"]), textOf(error["message"]), memberText(error, "file"),
        memberText(error, "line"), memberText(error, "stack")};
}

FunctionCallResult<Json::Value> evaluateAsJson(
    const HTMLComponent *component, QString expression, unsigned int timeoutMs)
{
    const QString call = shortForm(expression);
    const HTMLComponent::EvalResult answer = evaluateInEnvelope(component, std::move(expression), timeoutMs);
    if (answer.failed || answer.threw)
        return Failure(answer.result);

    ParsedJson parsed = parseJson(answer.result);
    return valueOf(call, answer.result, parsed);
}

FunctionCallResult<Json::Value> evaluateAsDeepJson(
    const HTMLComponent *component, QString expression, unsigned int timeoutMs, int levels)
{
    const QString call = shortForm(expression);
    const HTMLComponent::EvalResult answer = evaluateInEnvelope(component, std::move(expression), timeoutMs);
    if (answer.failed || answer.threw)
        return Failure(answer.result);

    ParsedJson parsed = parseDeepJson(answer.result, levels);
    if (parsed.outcome == ParsedJson::Outcome::Threw) {
        return Failure(message(
            u"Calling %1: The answer is nested deeper than %2 levels", call, QString::number(levels)));
    }
    return valueOf(call, answer.result, parsed);
}

template <>
FunctionCallResult<QString> fromJson(const Json::Value &value)
{
    if (!value.isConvertibleTo(Json::stringValue))
        return unexpectedType("a text", value);
    // Most values are texts, and a dump has very many of them.
    const char *begin = nullptr;
    const char *end = nullptr;
    if (value.getString(&begin, &end))
        return QString::fromUtf8(begin, end - begin);
    return QString::fromStdString(value.asString());
}

template <>
FunctionCallResult<int> fromJson(const Json::Value &value)
{
    if (!value.isConvertibleTo(Json::intValue))
        return unexpectedType("a number", value);
    return value.asInt();
}

template <>
FunctionCallResult<bool> fromJson(const Json::Value &value)
{
    if (!value.isConvertibleTo(Json::booleanValue))
        return unexpectedType("a boolean", value);
    return value.asBool();
}

template <>
FunctionCallResult<std::vector<int>> fromJson(const Json::Value &value)
{
    return listFromJson<int>(u"numbers", value);
}

template <>
FunctionCallResult<std::vector<std::string>> fromJson(const Json::Value &value)
{
    return listFromJson<std::string>(u"texts", value);
}

} // namespace Ostrel::WebWrapper
