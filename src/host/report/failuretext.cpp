#include "host/report/failuretext.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

QString placeText(const ScriptPlace &place)
{
    return place.line > 0 ? u"%1:%2"_s.arg(place.file, QString::number(place.line)) : place.file;
}

QString textAt(const ScriptPlace &place, const QString &text)
{
    return place.file.isEmpty() ? text : u"%1: %2"_s.arg(placeText(place), text);
}

QString failureText(const Verification &verification)
{
    QString text = u"Verification failed"_s;
    if (!verification.message.isEmpty())
        text += u": "_s + verification.message;
    if (!verification.actual.isEmpty() || !verification.expected.isEmpty())
        text += u" (actual: %1; expected: %2)"_s.arg(verification.actual, verification.expected);
    return text;
}

QString errorText(const ScriptEnd &end)
{
    QString text = textAt(end.place, end.message);
    // The first caller is the place itself.
    for (qsizetype i = 1; i < end.callers.size(); ++i)
        text += u"\n    called from %1"_s.arg(end.callers.at(i));
    return text;
}

QStringList failureTexts(const Attempt &attempt)
{
    QStringList texts;
    for (const Step *step : verificationsOf(attempt.steps)) {
        if (!step->passed)
            texts.append(textAt(
                step->place, failureText({false, step->text, step->actual, step->expected, step->place})));
    }
    if (attempt.end.outcome != Outcome::Failed && !attempt.passed())
        texts.append(errorText(attempt.end));
    return texts;
}

QString loggedText(const std::vector<Step> &steps)
{
    QString text;
    for (const Step &step : steps) {
        if (step.kind == Step::Kind::Log)
            text += step.text + u'\n';
        text += loggedText(step.steps);
    }
    return text;
}

} // namespace Ostrel::Host
