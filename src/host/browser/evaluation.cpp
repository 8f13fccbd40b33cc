#include "host/browser/evaluation.h"

#include <QJsonValue>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

// Indirect eval runs the script as top-level code: functions and variables become globals of the page, and
// its completion value is the result. `${value}` is String(value) for all but symbols, and needs no name that
// the page could have replaced.
const QString evaluationTemplate = uR"((function (script) {
    function text(value) {
        return typeof value === 'symbol' ? value.toString() : `${value}`;
    }
    try {
        return { value: text((0, eval)(script)) };
    } catch (exception) {
        return { thrown: text(exception) };
    }
})()"_s;

/// Whether the unit may stand in a literal as it is. Of the surrogates only a pair may.
bool standsForItself(char16_t unit)
{
    return unit >= u' ' && unit != u'"' && unit != u'\\' && unit != 0x2028 && unit != 0x2029
        && !QChar::isSurrogate(unit);
}

/// Writes a unit that does not stand for itself.
void appendEscaped(QString &literal, char16_t unit)
{
    literal += u'\\';
    if (unit == u'"' || unit == u'\\')
        literal += QChar(unit);
    else if (unit == u'\n')
        literal += u'n';
    else
        literal += u"u%1"_s.arg(int(unit), 4, 16, QLatin1Char('0'));
}

/// Appends the literal of a text. A dump's script has some ten million units, nearly all of which stand for
/// themselves, so these are copied in runs.
void appendLiteral(QString &to, QStringView text)
{
    to += u'"';
    const char16_t *rest = text.utf16();
    const char16_t *const end = rest + text.size();
    for (;;) {
        const char16_t *const special = std::find_if_not(rest, end, standsForItself);
        to += QStringView(rest, special);
        if (special == end)
            break;
        const bool isPair
            = QChar::isHighSurrogate(*special) && special + 1 != end && QChar::isLowSurrogate(special[1]);
        if (isPair)
            to += QStringView(special, 2);
        else
            appendEscaped(to, *special);
        rest = special + (isPair ? 2 : 1);
    }
    to += u'"';
}

} // namespace

QString scriptLiteral(const QString &text)
{
    QString literal;
    literal.reserve(text.size() + text.size() / 16 + 2);
    appendLiteral(literal, text);
    return literal;
}

QString evaluationExpression(const QString &script)
{
    QString expression = evaluationTemplate;
    expression.reserve(expression.size() + script.size() + script.size() / 16 + 3);
    appendLiteral(expression, script);
    expression += u')';
    return expression;
}

QJsonObject evaluationParameters(const QString &script, int limitMs)
{
    return {
        {u"expression"_s, evaluationExpression(script)},
        {u"returnByValue"_s, true},
        {u"timeout"_s, limitMs},
        // A page that forbids eval by its security policy forbids it to itself, not to its tester.
        {u"allowUnsafeEvalBlockedByCSP"_s, true},
    };
}

WebWrapper::HTMLComponent::EvalResult readEvaluation(const QJsonObject &answer)
{
    const QJsonObject value = answer.value("result"_L1).toObject().value("value"_L1).toObject();
    if (value.value("value"_L1).isString())
        return {value.value("value"_L1).toString(), false, false};
    if (value.value("thrown"_L1).isString()) {
        const QString thrown = value.value("thrown"_L1).toString();
        return {thrown.isEmpty() ? u"The script raised an exception without a text"_s : thrown, true, true};
    }
    // The conversion itself failed: an exception that cannot be turned into text, or a page that has put
    // something of its own in the place of eval's answer.
    const QString description = answer.value("exceptionDetails"_L1)
                                    .toObject()
                                    .value("exception"_L1)
                                    .toObject()
                                    .value("description"_L1)
                                    .toString()
                                    .section(u'\n', 0, 0);
    return {description.isEmpty() ? u"The page gave no answer that can be read"_s : description, true, true};
}

} // namespace Ostrel::Host
