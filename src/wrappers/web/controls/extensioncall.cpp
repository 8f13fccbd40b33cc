#include "wrappers/web/controls/extensioncall.h"

#include "probelog/tracepoint.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr auto undefinedText = "undefined"_L1;

} // namespace

QString wordOf(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

FunctionCallResult<bool> isTrue(const FunctionCallResult<QString> &answer)
{
    if (answer.failed())
        return Failure(answer.error);
    return answer.value == "true"_L1;
}

FunctionCallResult<bool> isTrueInAnyCase(FunctionCallResult<QString> answer)
{
    answer.value = answer.value.toLower();
    return isTrue(answer);
}

FunctionCallResult<QString> cleaned(const FunctionCallResult<QString> &answer)
{
    if (answer.failed())
        return Failure(answer.error);
    return definedText(answer.value.trimmed().remove("\r\n"_L1));
}

FunctionCallResult<QString> definedText(const FunctionCallResult<QString> &answer)
{
    if (!answer.failed() && answer.value == undefinedText)
        return QString();
    return answer;
}

FunctionCallResult<int> toNumber(const FunctionCallResult<QString> &answer, QStringView error)
{
    if (answer.failed())
        return Failure(answer.error);
    bool ok = false;
    const int number = answer.value.toInt(&ok);
    if (!ok)
        return Failure(message(error, answer.value));
    return number;
}

QString optionalAnswer(const HTMLComponent *component, const QString &script, QStringView traced)
{
    const HTMLComponent::EvalResult answer = component->evaluateJavaScript(script, 0);
    if (!answer.failed && !answer.threw)
        return answer.result;
    if (!traced.isEmpty())
        PROBELOG_TRACE("WebObject", message(traced, answer.result));
    return {};
}

} // namespace Ostrel::WebWrapper
