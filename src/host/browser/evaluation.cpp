#include "host/browser/evaluation.h"

#include <QJsonValue>

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

void appendEscaped(QString &literal, char16_t unit)
{
    literal += u"\\u%1"_s.arg(int(unit), 4, 16, QLatin1Char('0'));
}

bool isLineEnd(char16_t unit)
{
    return unit == 0x2028 || unit == 0x2029;
}

} // namespace

QString scriptLiteral(const QString &text)
{
    QString literal;
    literal.reserve(text.size() + text.size() / 16 + 2);
    literal += u'"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            literal += unit;
            literal += text.at(++i);
        } else if (unit == u'"' || unit == u'\\') {
            literal += u'\\';
            literal += unit;
        } else if (unit == u'\n') {
            literal += u"\\n";
        } else if (unit < u' ' || unit.isSurrogate() || isLineEnd(unit.unicode())) {
            appendEscaped(literal, unit.unicode());
        } else {
            literal += unit;
        }
    }
    literal += u'"';
    return literal;
}

QString evaluationExpression(const QString &script)
{
    return evaluationTemplate + scriptLiteral(script) + u')';
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
