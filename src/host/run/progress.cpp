#include "host/run/progress.h"

#include "host/report/failuretext.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// To the start of the line, which is then emptied.
const QString clearLine = u"\r\x1B[K"_s;

QString seconds(double milliseconds)
{
    return u"%1 s"_s.arg(milliseconds / 1000, 0, 'f', 1);
}

/// A text in one line of a terminal, without what would move its cursor.
QString inOneLine(QString text, int columns)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    // A text that reaches the last column may begin the next line.
    const qsizetype room = columns - 1;
    return text.size() <= room ? text : text.first(qMax<qsizetype>(0, room - 1)) + u'…';
}

QString describe(const Attempt &attempt)
{
    switch (attempt.end.outcome) {
    case Outcome::Passed:
        return u"passed"_s;
    case Outcome::Failed:
        return u"failed, %1"_s.arg(attempt.end.message);
    case Outcome::Error:
        return u"error"_s;
    case Outcome::Unusable:
        return u"could not begin"_s;
    case Outcome::NotRun:
        return u"not run"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

Progress::Progress(QStringList scripts, ProgressOptions options)
    : m_scripts(std::move(scripts)), m_options(std::move(options))
{
}

QString Progress::number(int script) const
{
    return u"[%1/%2]"_s.arg(QString::number(script + 1), QString::number(m_scripts.size()));
}

void Progress::attemptBegan(int script)
{
    showStatus(u"%1 %2"_s.arg(number(script), m_scripts.at(script)));
}

void Progress::statementBegan(int script, const StatementBegin &statement)
{
    const QString text = textAt(statement.place, statement.text);
    showStatus(u"%1 %2"_s.arg(number(script), text));
}

void Progress::attemptEnded(int script, const Attempt &attempt, bool again)
{
    showStatus({});
    if (attempt.end.outcome == Outcome::Unusable)
        print(m_options.error, u"pageprobe run: %1\n"_s.arg(attempt.end.message));
    else if (attempt.end.outcome == Outcome::Error)
        print(m_options.error, errorText(attempt.end) + u'\n');
    if (m_options.results)
        print(m_options.out,
            u"%1 %2: %3 (%4)%5\n"_s.arg(number(script), m_scripts.at(script), describe(attempt),
                seconds(attempt.milliseconds), again ? u", trying again"_s : QString()));
}

void Progress::verified(int, const Verification &verification)
{
    if (!verification.passed)
        print(m_options.error, textAt(verification.place, failureText(verification)) + u'\n');
}

void Progress::logged(int script, const QString &text)
{
    print(m_options.out, m_scripts.size() > 1 ? u"%1 %2\n"_s.arg(number(script), text) : text + u'\n');
}

void Progress::diagnosticsWritten(int, const QString &lines)
{
    print(m_options.error, lines);
}

void Progress::browserKept(int)
{
    print(m_options.out, u"The browser stays open. Close it or press Ctrl+C to end.\n"_s);
}

void Progress::printTotals(const RunResult &run)
{
    showStatus({});
    if (!m_options.results)
        return;
    struct Total
    {
        int count;
        QString word;
    };
    const Total totals[] = {
        {run.count(Outcome::Passed) - run.flaky(), u"passed"_s},
        {run.flaky(), u"flaky"_s},
        {run.count(Outcome::Failed), u"failed"_s},
        {run.count(Outcome::Error), u"with errors"_s},
        {run.count(Outcome::Unusable), u"could not begin"_s},
        {run.count(Outcome::NotRun), u"not run"_s},
    };
    QStringList words;
    for (const Total &total : totals) {
        if (total.count > 0)
            words.append(u"%1 %2"_s.arg(QString::number(total.count), total.word));
    }
    print(m_options.out,
        u"%1 %2: %3 (%4)\n"_s.arg(QString::number(run.scripts.size()),
            run.scripts.size() == 1 ? u"script"_s : u"scripts"_s, words.join(u", "_s),
            seconds(run.milliseconds)));
}

// The line of the status makes room for the text and comes back behind it.
void Progress::print(const ProgressOptions::Write &stream, const QString &text)
{
    const QString status = m_status;
    showStatus({});
    stream(text);
    showStatus(status);
}

void Progress::showStatus(const QString &text)
{
    if (m_options.columns <= 0 || text == m_status)
        return;
    m_status = text;
    m_options.out(text.isEmpty() ? clearLine : clearLine + inOneLine(text, m_options.columns));
}

} // namespace Ostrel::Host
