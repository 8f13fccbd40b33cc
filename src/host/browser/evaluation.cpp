#include "host/browser/evaluation.h"

#include <QJsonValue>
#include <QStringEncoder>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

/// In units, for scripts and values.
constexpr qsizetype longestPart = 1024 * 1024;

// Indirect eval runs the script as top-level code: functions and variables become globals of the page, and
// its completion value is the result. `${value}` is String(value) for all but symbols, and needs no name that
// the page could have replaced. The copies of a value on its way to the host take it longer than its parts.
const QString evaluationHead = uR"((function (script) {
    function text(value) {
        return typeof value === 'symbol' ? value.toString() : `${value}`;
    }
    try {
        var value = text((0, eval)(script)), waiting;
        if (value.length <= %1) {
            return { value: value };
        }
        waiting = window.__ostrel__longValues = window.__ostrel__longValues || [];
        waiting[waiting.length] = value;
        return { size: value.length, place: waiting.length - 1 };
    } catch (exception) {
        return { thrown: text(exception) };
    }
})()"_s.arg(longestPart);

// A character of two units goes with the part behind it.
const QString valuePartTemplate = uR"((function (waiting, place, from, to) {
    var text = waiting[place];
    function cut(at) {
        var before = text.charCodeAt(at - 1);
        return at < text.length && before >= 0xD800 && before < 0xDC00 ? at - 1 : at;
    }
    if (to >= text.length) {
        delete waiting[place];
    }
    return { value: text.slice(cut(from), cut(to)) };
})(window.__ostrel__longValues, %1, %2, %3))"_s;

/// Takes a long script from where its parts were put together.
const QString takingTemplate = uR"((function () {
    var text = `${%1}`;
    delete %1;
    if (text.length !== %2) {
        throw new Error('A part of the script has not arrived');
    }
    return text;
})())"_s;

const QString partsVariable = u"window.__ostrel__scriptParts"_s;

bool isLong(const QString &script)
{
    return script.size() > longestPart;
}

/// Whether the unit may stand in a literal as it is. Of the surrogates only a pair may.
bool standsForItself(char16_t unit)
{
    return unit >= u' ' && unit != u'"' && unit != u'\\' && unit != 0x2028 && unit != 0x2029
        && !QChar::isSurrogate(unit);
}

/// How a unit is written that does not stand for itself.
QString escaped(char16_t unit)
{
    if (unit == u'"' || unit == u'\\')
        return u"\\%1"_s.arg(QChar(unit));
    return unit == u'\n' ? u"\\n"_s : u"\\u%1"_s.arg(int(unit), 4, 16, QLatin1Char('0'));
}

/// Takes what is between the quotes of a text's literal to pieces: runs of units that stand for themselves,
/// and escapes. A dump's script has some ten million units, nearly all of which are in long runs.
template <typename Run, typename Escape>
void forEachPieceOfLiteral(QStringView text, const Run &onRun, const Escape &onEscape)
{
    const char16_t *run = text.utf16();
    const char16_t *const end = run + text.size();
    const char16_t *unit = run;
    while (unit != end) {
        if (standsForItself(*unit)) {
            ++unit;
        } else if (QChar::isHighSurrogate(*unit) && unit + 1 != end && QChar::isLowSurrogate(unit[1])) {
            unit += 2;
        } else {
            onRun(QStringView(run, unit));
            onEscape(escaped(*unit));
            run = ++unit;
        }
    }
    onRun(QStringView(run, end));
}

/// Appends UTF-8 without a text in between.
void appendUtf8(QByteArray &to, QStringView text)
{
    // An encoder asks for room for the longest units, so that it is given large texts in parts.
    constexpr qsizetype part = 16 * 1024;
    QStringEncoder encoder(QStringEncoder::Utf8);
    for (qsizetype from = 0; from < text.size(); from += part) {
        const QStringView next = text.mid(from, part);
        const qsizetype size = to.size();
        to.resize(size + encoder.requiredSpace(next.size()));
        to.truncate(encoder.appendToBuffer(to.data() + size, next) - to.constData());
    }
}

/// Appends what a JSON text holds between its quotes for `text`, which escapes as a script literal does.
void appendAsJson(QByteArray &to, QStringView text)
{
    forEachPieceOfLiteral(
        text, [&to](QStringView run) { appendUtf8(to, run); },
        [&to](const QString &escape) { appendUtf8(to, escape); });
}

/// Appends what a JSON text holds between its quotes for the literal of `text`.
void appendQuoted(QByteArray &to, QStringView text)
{
    to += R"(\")";
    forEachPieceOfLiteral(
        text, [&to](QStringView run) { appendUtf8(to, run); },
        [&to](const QString &escape) { appendAsJson(to, escape); });
    to += R"(\")";
}

/// The beginning of parameters with an expression, and room for one with a text of that size.
QByteArray expressionHead(qsizetype size)
{
    constexpr qsizetype restOfText = 2048;
    QByteArray text;
    text.reserve(size + size / 16 + restOfText);
    text += R"({"expression":")";
    return text;
}

/// Parameters with that expression.
CommandParameters endedExpression(QByteArray text, int limitMs)
{
    // A page that forbids eval by its security policy forbids it to itself, not to its tester.
    text += R"(","returnByValue":true,"allowUnsafeEvalBlockedByCSP":true,"timeout":)";
    text += QByteArray::number(limitMs);
    text += '}';
    return CommandParameters::fromText(std::move(text));
}

/// What the function gave that carries out an evaluation.
QJsonObject valueIn(const QJsonObject &answer)
{
    return answer.value("result"_L1).toObject().value("value"_L1).toObject();
}

} // namespace

QString scriptLiteral(const QString &text)
{
    QString literal;
    literal.reserve(text.size() + text.size() / 16 + 2);
    literal += u'"';
    const auto append = [&literal](QStringView piece) { literal += piece; };
    forEachPieceOfLiteral(text, append, append);
    literal += u'"';
    return literal;
}

QList<CommandParameters> scriptParts(const QString &script)
{
    QList<CommandParameters> parts;
    for (qsizetype from = 0; isLong(script) && from < script.size(); from += longestPart) {
        const QStringView part = QStringView(script).mid(from, longestPart);
        QByteArray text = expressionHead(part.size());
        appendAsJson(text, from == 0 ? partsVariable + u" = "_s : partsVariable + u" += "_s);
        appendQuoted(text, part);
        appendAsJson(text, u"; 0");
        text += R"("})";
        parts.append(CommandParameters::fromText(std::move(text)));
    }
    return parts;
}

CommandParameters evaluationParameters(const QString &script, int limitMs)
{
    QByteArray text = expressionHead(isLong(script) ? 0 : script.size());
    appendAsJson(text, evaluationHead);
    if (isLong(script))
        appendAsJson(text, takingTemplate.arg(partsVariable, QString::number(script.size())));
    else
        appendQuoted(text, script);
    text += ')';
    return endedExpression(std::move(text), limitMs);
}

QList<CommandParameters> valueParts(const LongValue &value, int limitMs)
{
    QList<CommandParameters> parts;
    for (qsizetype from = 0; from < value.size; from += longestPart) {
        QByteArray text = expressionHead(0);
        appendAsJson(text, valuePartTemplate.arg(value.place).arg(from).arg(from + longestPart));
        parts.append(endedExpression(std::move(text), limitMs));
    }
    return parts;
}

std::optional<LongValue> readLongValue(const QJsonObject &answer)
{
    const QJsonObject value = valueIn(answer);
    if (!value.value("size"_L1).isDouble())
        return {};
    return LongValue{value.value("size"_L1).toInteger(), value.value("place"_L1).toInt()};
}

WebWrapper::HTMLComponent::EvalResult readEvaluation(const QJsonObject &answer)
{
    const QJsonObject value = valueIn(answer);
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
