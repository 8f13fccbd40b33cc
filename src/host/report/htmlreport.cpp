#include "host/report/htmlreport.h"
#include "host/resourcetext.h"

#include "host/report/failuretext.h"
#include "host/report/htmltext.h"
#include "host/report/objecttreehtml.h"
#include "host/report/xmltext.h"

#include <QFile>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

struct OutcomeWords
{
    Outcome outcome;
    QLatin1StringView style;
    QLatin1StringView word;
};

constexpr OutcomeWords words[] = {
    {Outcome::Passed, "passed"_L1, "passed"_L1},
    {Outcome::Failed, "failed"_L1, "failed"_L1},
    {Outcome::Error, "error"_L1, "error"_L1},
    {Outcome::Unusable, "error"_L1, "could not begin"_L1},
    {Outcome::NotRun, "notrun"_L1, "not run"_L1},
};

const OutcomeWords &wordsOf(Outcome outcome)
{
    return *std::find_if(std::begin(words), std::end(words),
        [outcome](const OutcomeWords &row) { return row.outcome == outcome; });
}

Html badge(const QString &style, const QString &word)
{
    return html(u"<span class=\"badge %1\">%2</span>"_s, style, word);
}

QString duration(double milliseconds)
{
    if (milliseconds < 1000)
        return u"%1 ms"_s.arg(qRound(milliseconds));
    if (milliseconds < 60000)
        return u"%1 s"_s.arg(milliseconds / 1000, 0, 'f', 1);
    const int seconds = qRound(milliseconds / 1000);
    return u"%1 min %2 s"_s.arg(QString::number(seconds / 60), QString::number(seconds % 60));
}

class Writer
{
public:
    explicit Writer(const SourceLine &source) : m_source(source) { }

    Html page(const RunResult &run) const
    {
        Html scripts;
        for (std::size_t i = 0; i < run.scripts.size(); ++i)
            scripts += scriptHtml(run.scripts[i], anchorOf(i));
        const QString title = u"Test report: %1"_s.arg(run.passed() ? u"passed"_s : u"failed"_s);
        return html(uR"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'"/>
<title>%1</title>
<style>
%2</style>
</head>
<body>
%3<main>
%4</main>
</body>
</html>
)"_s,
            title, Html{resourceText(u"report.css"_s)}, summary(run) + overview(run), scripts);
    }

private:
    Html summary(const RunResult &run) const
    {
        struct Total
        {
            int count;
            QString style;
            QString word;
        };
        const Total totals[] = {
            {run.count(Outcome::Passed) - run.flaky(), u"passed"_s, u"passed"_s},
            {run.flaky(), u"flaky"_s, u"flaky"_s},
            {run.count(Outcome::Failed), u"failed"_s, u"failed"_s},
            {run.count(Outcome::Error) + run.count(Outcome::Unusable), u"error"_s, u"with errors"_s},
            {run.count(Outcome::NotRun), u"notrun"_s, u"not run"_s},
        };
        Html counts;
        Html bar;
        for (const Total &total : totals) {
            if (total.count == 0)
                continue;
            counts += html(u"<li class=\"%1\"><b>%2</b> %3</li>\n"_s, total.style, total.count, total.word);
            bar += html(u"<span class=\"%1\" style=\"flex-grow:%2\"></span>"_s, total.style, total.count);
        }
        return html(uR"(<header class="%1">
<h1>Test report</h1>
<p>%2 · %3 · %4</p>
<ul class="totals">
%5</ul>
<div class="bar">%6</div>
</header>
)"_s,
            run.passed() ? u"passed"_s : u"failed"_s,
            run.scripts.size() == 1 ? u"1 script"_s : u"%1 scripts"_s.arg(run.scripts.size()),
            run.began.toString(u"yyyy-MM-dd HH:mm:ss"_s), duration(run.milliseconds), counts, bar);
    }

    static QString anchorOf(std::size_t script) { return u"script-%1"_s.arg(script + 1); }

    /// What went wrong in which script, first of all: a run may have hundreds of scripts.
    static Html overview(const RunResult &run)
    {
        Html items;
        for (std::size_t i = 0; i < run.scripts.size(); ++i) {
            const ScriptResult &script = run.scripts[i];
            if (script.outcome() == Outcome::Passed || script.outcome() == Outcome::NotRun)
                continue;
            const QString failure = failureTexts(script.attempts.back()).first().section(u'\n', 0, 0);
            items += html(u"<li><a href=\"#%1\">%2</a> %3</li>\n"_s, anchorOf(i), script.script, failure);
        }
        const bool hasOrder = run.scripts.size() > 1 && !items.text.isEmpty();
        return hasOrder ? html(u"<ol class=\"failures\">\n%1</ol>\n"_s, items) : Html();
    }

    Html scriptHtml(const ScriptResult &script, const QString &anchor) const
    {
        const OutcomeWords &outcome = wordsOf(script.outcome());
        const bool isOpen = script.outcome() != Outcome::Passed && script.outcome() != Outcome::NotRun;
        const Html state
            = script.isFlaky() ? badge(u"flaky"_s, u"flaky"_s) : badge(outcome.style, outcome.word);
        Html attempts;
        const qint64 last = qint64(script.attempts.size());
        for (qint64 number = 1; number <= last; ++number) {
            const Attempt &attempt = script.attempts.at(std::size_t(number - 1));
            attempts += last == 1 ? attemptHtml(attempt) : tryHtml(attempt, number, number == last);
        }
        return html(uR"(<details class="script" id="%1"%2>
<summary>%3 <span class="name">%4</span><span class="time">%5</span></summary>
%6</details>
)"_s,
            anchor, isOpen ? Html{u" open=\"\""_s} : Html(), state, script.script,
            script.outcome() == Outcome::NotRun ? QString() : duration(script.milliseconds()), attempts);
    }

    Html tryHtml(const Attempt &attempt, qint64 number, bool isLast) const
    {
        const OutcomeWords &outcome = wordsOf(attempt.end.outcome);
        return html(uR"(<details class="try"%1>
<summary>%2 Try %3<span class="time">%4</span></summary>
%5</details>
)"_s,
            isLast ? Html{u" open=\"\""_s} : Html(), badge(outcome.style, outcome.word), number,
            duration(attempt.milliseconds), attemptHtml(attempt));
    }

    Html attemptHtml(const Attempt &attempt) const
    {
        Html body;
        if (!attempt.passed() && !attempt.end.message.isEmpty())
            body += problemHtml(attempt);
        if (!attempt.steps.empty())
            body += stepsHtml(attempt.steps);
        if (!attempt.diagnostics.isEmpty())
            body += html(
                u"<details class=\"diagnostics\"><summary>Standard error</summary><pre>%1</pre></details>\n"_s,
                attempt.diagnostics);
        return body;
    }

    /// How the script ended, and what did not hold on the way.
    Html problemHtml(const Attempt &attempt) const
    {
        const ScriptEnd &end = attempt.end;
        QStringList failures = failureTexts(attempt);
        if (end.outcome != Outcome::Failed)
            failures.removeLast();
        Html failed;
        for (const QString &failure : std::as_const(failures))
            failed += html(u"<div class=\"place\">%1</div>\n"_s, failure);
        Html callers;
        // The first caller is the place itself.
        for (qsizetype i = 1; i < end.callers.size(); ++i)
            callers += html(u"<div class=\"place\">called from %1</div>\n"_s, end.callers.at(i));
        return html(u"<div class=\"problem\">\n<p>%1</p>\n%2%3%4</div>\n"_s, end.message,
            placeHtml(end.place), callers, failed);
    }

    /// The place with its source line, which is left out where it is the text that stands above it already.
    Html placeHtml(const ScriptPlace &place, const QString &above = {}) const
    {
        if (place.file.isEmpty())
            return {};
        QString source = m_source(place).trimmed();
        if (source == above || source == above + u';')
            source.clear();
        return html(u"<div class=\"place\">%1%2</div>\n"_s, placeText(place),
            source.isEmpty() ? Html() : html(u" <code>%1</code>"_s, source));
    }

    Html stepsHtml(const std::vector<Step> &steps) const
    {
        Html items;
        for (const Step &step : steps)
            items += stepHtml(step);
        return html(u"<ol class=\"steps\">\n%1</ol>\n"_s, items);
    }

    Html stepHtml(const Step &step) const
    {
        switch (step.kind) {
        case Step::Kind::Statement:
            return statementHtml(step);
        case Step::Kind::Section:
            return html(
                u"<li class=\"section\"><details open=\"\"><summary>%1</summary>\n%2%3</details></li>\n"_s,
                step.text, placeHtml(step.place), stepsHtml(step.steps));
        case Step::Kind::Verification:
            return verificationHtml(step);
        case Step::Kind::Log:
            return html(u"<li class=\"log\">%1</li>\n"_s, step.text);
        case Step::Kind::Screenshot:
            // The box behind the picture keeps whether it is shown in its full size.
            return html(u"<li class=\"picture\"><figure><figcaption>%1</figcaption>"
                        "<label><input type=\"checkbox\" aria-label=\"Full size\"/>"
                        "<img alt=\"%1\" src=\"data:image/png;base64,%2\"/></label></figure></li>\n"_s,
                step.text, QString::fromLatin1(step.png.toBase64()));
        case Step::Kind::ObjectTree:
            return html(u"<li class=\"tree\"><details><summary>Object tree</summary>\n%1</details></li>\n"_s,
                objectTreeHtml(step.text));
        }
        Q_UNREACHABLE();
    }

    Html statementHtml(const Step &step) const
    {
        const QString time = step.ended ? duration(step.milliseconds) : u"cut short"_s;
        const bool isBad = !step.ended || !step.error.isEmpty();
        return html(
            u"<li class=\"statement%1\"><span class=\"time\">%2</span><code>%3</code>\n%4%5%6</li>\n"_s,
            isBad ? u" bad"_s : QString(), time, step.text, placeHtml(step.place, step.text),
            step.error.isEmpty() ? Html() : html(u"<p class=\"wrong\">%1</p>\n"_s, step.error),
            step.steps.empty() ? Html() : stepsHtml(step.steps));
    }

    Html verificationHtml(const Step &step) const
    {
        const QString message = step.text.isEmpty() ? u"Verification"_s : step.text;
        const bool isCompared = !step.actual.isEmpty() || !step.expected.isEmpty();
        const Html values = isCompared && !step.passed
            ? html(u"<dl><dt>actual</dt><dd>%1</dd><dt>expected</dt><dd>%2</dd></dl>\n"_s, step.actual,
                step.expected)
            : Html();
        return html(u"<li class=\"verification %1\"><span class=\"mark\">%2</span>%3\n%4%5</li>\n"_s,
            step.passed ? u"good"_s : u"bad"_s, step.passed ? u"✓"_s : u"✗"_s, message, placeHtml(step.place),
            values);
    }

    const SourceLine &m_source;
};

} // namespace

QString SourceFiles::line(const ScriptPlace &place)
{
    auto found = m_files.find(place.file);
    if (found == m_files.end()) {
        QFile file(place.file);
        QStringList lines;
        if (file.open(QIODevice::ReadOnly))
            lines = QString::fromUtf8(file.readAll()).split(u'\n');
        found = m_files.insert(place.file, lines);
    }
    return found->value(place.line - 1);
}

void writeHtmlReport(const RunResult &run, const SourceLine &source, QIODevice *device)
{
    device->write(withoutForbiddenCharacters(Writer(source).page(run).text).toUtf8());
}

} // namespace Ostrel::Host
