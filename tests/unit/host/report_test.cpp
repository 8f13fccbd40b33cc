// What a run tells about itself: events, the values made of them, and the reports written from these.
#include "host/report/eventlines.h"
#include "host/report/failuretext.h"
#include "host/report/htmlreport.h"
#include "host/report/junitreport.h"
#include "host/report/reportfile.h"
#include "host/report/resultcollector.h"
#include "host/report/xmltext.h"
#include "support/hostiletexts.h"
#include "support/printqt.h"
#include "support/samplerun.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {
namespace {

using namespace Host;
using Kind = Step::Kind;

const ScriptPlace place{u"script.js"_s, 12};

// Everything that a script can report, once; `text` stands wherever a text may.
void reportEverything(ResultSink &sink, const QString &text)
{
    sink.scriptBegan(text);
    sink.sectionBegan(text, place);
    sink.statementBegan({text, place});
    sink.statementEnded(1.5, text);
    sink.verified({false, text, text, text, place});
    sink.logged(text);
    sink.screenshotTaken({text, "\x89PNG"});
    sink.objectTreeTaken(text);
    sink.sectionEnded();
    sink.scriptEnded({Outcome::Error, text, place, {text, text}});
}

QList<QByteArray> linesOf(const std::function<void(ResultSink &)> &report)
{
    QList<QByteArray> lines;
    EventWriter writer([&](const QByteArray &line) { lines.append(line); });
    report(writer);
    return lines;
}

TEST(EventLines, EachEventIsALineOfJson)
{
    const QList<QByteArray> lines = linesOf([](ResultSink &sink) { reportEverything(sink, u"t"_s); });

    EXPECT_EQ(lines,
        (QList<QByteArray>{
            "{\"event\":\"scriptBegan\",\"text\":\"t\"}\n",
            "{\"event\":\"sectionBegan\",\"file\":\"script.js\",\"line\":12,\"text\":\"t\"}\n",
            "{\"event\":\"statementBegan\",\"file\":\"script.js\",\"line\":12,\"text\":"
            "\"t\"}\n",
            "{\"error\":\"t\",\"event\":\"statementEnded\",\"ms\":1.5}\n",
            "{\"actual\":\"t\",\"event\":\"verified\",\"expected\":\"t\",\"file\":\"script.js\",\"line\":12,"
            "\"passed\":false,\"text\":\"t\"}\n",
            "{\"event\":\"logged\",\"text\":\"t\"}\n",
            "{\"event\":\"screenshot\",\"png\":\"iVBORw==\",\"text\":\"t\"}\n",
            "{\"event\":\"objectTree\",\"text\":\"t\"}\n",
            "{\"event\":\"sectionEnded\"}\n",
            "{\"callers\":[\"t\",\"t\"],\"event\":\"scriptEnded\",\"file\":\"script.js\",\"line\":12,"
            "\"outcome\":\"error\",\"text\":\"t\"}\n",
        }));
}

TEST(EventLines, AnyTextArrivesAsItWas)
{
    for (const HostileText &row : hostileTexts()) {
        SCOPED_TRACE(row.name);
        const QList<QByteArray> lines = linesOf([&](ResultSink &sink) { reportEverything(sink, row.text); });

        const QList<QByteArray> again = linesOf([&](ResultSink &sink) {
            for (const QByteArray &line : lines)
                EXPECT_TRUE(deliverEvent(line, sink));
        });

        EXPECT_EQ(again, lines);
    }
}

TEST(EventLines, EveryOutcomeArrives)
{
    for (Outcome outcome :
        {Outcome::Passed, Outcome::Failed, Outcome::Error, Outcome::Unusable, Outcome::NotRun}) {
        const QList<QByteArray> lines = linesOf([&](ResultSink &sink) {
            sink.scriptEnded({outcome, {}, {}, {}});
        });
        ResultCollector collector;

        EXPECT_TRUE(deliverEvent(lines.first(), collector));

        EXPECT_EQ(collector.take().end.outcome, outcome);
    }
}

TEST(EventLines, OtherLinesAreNoEvents)
{
    ResultSink sink;
    for (const QByteArray &line :
        {QByteArray(), QByteArray("\n"), QByteArray("a warning\n"), QByteArray("{\"event\":\"unheard\"}\n"),
            QByteArray("[\"event\"]\n"), QByteArray("{\"event\":\"logged\",\"te")})
        EXPECT_FALSE(deliverEvent(line, sink)) << line.toStdString();
}

// The steps as lines, indented by what they lie in.
QStringList outline(const std::vector<Step> &steps, const QString &indent = {})
{
    QStringList lines;
    for (const Step &each : steps) {
        const QString open = each.ended ? QString() : u" (open)"_s;
        const QString failed = each.passed ? QString() : u" (failed)"_s;
        lines.append(indent + each.text + failed + open);
        lines += outline(each.steps, indent + u"  "_s);
    }
    return lines;
}

TEST(ResultCollector, WhatHappensInASectionLiesInIt)
{
    ResultCollector collector;
    collector.logged(u"before"_s);
    collector.sectionBegan(u"outer"_s, place);
    collector.statementBegan({u"click(\"a\", 1)"_s, place});
    collector.statementEnded(3, u"no such button"_s);
    collector.sectionBegan(u"inner"_s, place);
    collector.verified({true, u"holds"_s, {}, {}, place});
    collector.sectionEnded();
    collector.sectionEnded();
    collector.logged(u"behind"_s);
    collector.scriptEnded({});

    const Attempt attempt = collector.take();

    EXPECT_EQ(outline(attempt.steps),
        (QStringList{
            u"before"_s, u"outer"_s, u"  click(\"a\", 1)"_s, u"  inner"_s, u"    holds"_s, u"behind"_s}));
    const Step &statement = attempt.steps.at(1).steps.at(0);
    EXPECT_EQ(statement.kind, Kind::Statement);
    EXPECT_EQ(statement.place, place);
    EXPECT_EQ(statement.milliseconds, 3);
    EXPECT_EQ(statement.error, u"no such button"_s);
    EXPECT_TRUE(attempt.passed());
}

TEST(ResultCollector, AStatementThatCallsTheScriptHoldsWhatThatDoes)
{
    ResultCollector collector;
    collector.statementBegan({u"waitFor(function)"_s, place});
    collector.statementBegan({u"findObject()"_s, place});
    collector.statementEnded(1, {});
    collector.statementEnded(2, {});

    EXPECT_EQ(outline(collector.take().steps), (QStringList{u"waitFor(function)"_s, u"  findObject()"_s}));
}

TEST(ResultCollector, WhatWasCutShortStaysOpenAndTellsItsPlace)
{
    ResultCollector collector;
    EXPECT_EQ(collector.openPlace(), ScriptPlace());
    collector.sectionBegan(u"section"_s, {u"script.js"_s, 1});
    EXPECT_EQ(collector.openPlace(), ScriptPlace());
    collector.statementBegan({u"snooze(9)"_s, place});

    EXPECT_EQ(collector.openPlace(), place);
    EXPECT_FALSE(collector.hasEnded());
    const Attempt attempt = collector.take();
    EXPECT_EQ(outline(attempt.steps), (QStringList{u"section (open)"_s, u"  snooze(9) (open)"_s}));
    EXPECT_EQ(attempt.end.outcome, Outcome::NotRun);
}

TEST(ResultCollector, AnEndWithoutABeginIsIgnored)
{
    ResultCollector collector;
    collector.sectionEnded();
    collector.statementEnded(1, {});
    collector.sectionBegan(u"section"_s, place);
    collector.statementEnded(1, {});
    collector.logged(u"inside"_s);

    EXPECT_EQ(outline(collector.take().steps), (QStringList{u"section (open)"_s, u"  inside"_s}));
}

TEST(ResultCollector, AFailedVerificationFailsAScriptThatRanToItsEnd)
{
    ResultCollector collector;
    collector.verified({false, u"one"_s, {}, {}, place});
    collector.verified({true, u"two"_s, {}, {}, place});
    collector.scriptEnded({});

    const Attempt failed = collector.take();
    EXPECT_EQ(failed.end.outcome, Outcome::Failed);
    EXPECT_EQ(failed.end.message, u"1 of 2 verifications failed"_s);

    collector.verified({false, u"one"_s, {}, {}, place});
    collector.scriptEnded({Outcome::Error, u"lost"_s, place, {}});
    const Attempt error = collector.take();
    EXPECT_EQ(error.end.outcome, Outcome::Error);
    EXPECT_EQ(error.end.message, u"lost"_s);
}

TEST(ResultCollector, KeepsTheFirstStepsOfAnEndlessScriptAndItsFailures)
{
    ResultCollector collector;
    for (int i = 0; i < ResultCollector::mostSteps; ++i)
        collector.logged(u"line"_s);
    collector.sectionBegan(u"left out"_s, place);
    collector.statementBegan({u"left out"_s, place});
    collector.statementEnded(1, {});
    collector.verified({false, u"kept"_s, {}, {}, place});
    collector.sectionEnded();
    collector.scriptEnded({});

    const Attempt attempt = collector.take();

    EXPECT_EQ(int(attempt.steps.size()), ResultCollector::mostSteps + 2);
    EXPECT_EQ(outline(attempt.steps).last(2),
        (QStringList{u"kept (failed)"_s, u"(2 further steps are left out)"_s}));
    EXPECT_EQ(attempt.end.outcome, Outcome::Failed);
}

TEST(ResultCollector, KeepsTheFirstPictures)
{
    ResultCollector collector;
    for (int i = 0; i <= ResultCollector::mostPictures; ++i)
        collector.screenshotTaken({u"picture %1"_s.arg(i), "png"});

    const Attempt attempt = collector.take();

    ASSERT_EQ(int(attempt.steps.size()), ResultCollector::mostPictures + 1);
    EXPECT_EQ(attempt.steps.at(99).png, "png");
    EXPECT_EQ(attempt.steps.at(100).kind, Step::Kind::Log);
    EXPECT_EQ(attempt.steps.at(100).text, u"(the picture 'picture 100' is left out)"_s);
}

TEST(Results, TheLastTryDecides)
{
    const RunResult run = sampleRun();

    EXPECT_EQ(run.count(Outcome::Passed), 2);
    EXPECT_EQ(run.flaky(), 1);
    EXPECT_EQ(run.count(Outcome::Failed), 1);
    EXPECT_EQ(run.count(Outcome::Error), 1);
    EXPECT_EQ(run.count(Outcome::NotRun), 1);
    EXPECT_FALSE(run.passed());
    EXPECT_EQ(run.scripts.at(3).milliseconds(), 5000);
}

TEST(FailureText, SaysWhatAndWhere)
{
    EXPECT_EQ(failureText({false, {}, {}, {}, place}), u"Verification failed"_s);
    EXPECT_EQ(failureText({false, u"it holds"_s, {}, {}, place}), u"Verification failed: it holds"_s);
    EXPECT_EQ(failureText({false, u"%1"_s, u"%2"_s, {}, place}),
        u"Verification failed: %1 (actual: %2; expected: )"_s);
    EXPECT_EQ(textAt(place, u"text"_s), u"script.js:12: text"_s);
    EXPECT_EQ(textAt({u"script.js"_s, 0}, u"text"_s), u"script.js: text"_s);
    EXPECT_EQ(textAt({}, u"text"_s), u"text"_s);
    EXPECT_EQ(
        errorText({Outcome::Error, u"text"_s, place, {u"f (script.js:12)"_s, u"script (script.js:20)"_s}}),
        u"script.js:12: text\n    called from script (script.js:20)"_s);
}

// From here on: reports.

QString written(const std::function<void(QIODevice *device)> &write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    write(&buffer);
    return QString::fromUtf8(buffer.data());
}

QString junit(const RunResult &run)
{
    return written([&](QIODevice *device) { writeJUnitReport(run, device); });
}

QString htmlPage(const RunResult &run)
{
    const auto source = [](const ScriptPlace &at) { return u"  line %1 < 9;"_s.arg(at.line); };
    return written([&](QIODevice *device) { writeHtmlReport(run, source, device); });
}

// All text of an XML document, and an error when it is none.
QString textIn(const QString &xml)
{
    QXmlStreamReader reader(xml);
    QString text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes)
                text += attribute.value().toString() + u'\n';
        } else if (reader.isCharacters()) {
            text += reader.text().toString() + u'\n';
        }
    }
    return reader.hasError() ? u"no XML: "_s + reader.errorString() : text;
}

TEST(JUnitReport, TellsAllThatHappened)
{
    EXPECT_EQ(junit(sampleRun()), uR"xml(<?xml version="1.0" encoding="UTF-8"?>
<testsuites name="pageprobe" tests="5" failures="1" errors="1" skipped="1" time="65.432">
  <testsuite name="shop" tests="3" failures="1" errors="0" skipped="0" time="2.350" timestamp="2024-02-29T13:05:09Z">
    <testcase name="buy.js" classname="shop" file="shop/buy.js" time="1.500"/>
    <testcase name="again.js" classname="shop" file="shop/again.js" time="0.350">
      <flakyFailure message="shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)" type="verification">
        <stackTrace>shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)</stackTrace>
      </flakyFailure>
    </testcase>
    <testcase name="look.js" classname="shop" file="shop/look.js" time="0.500">
      <failure message="shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)" type="verification">shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)</failure>
      <system-out>looking around
</system-out>
      <system-err>a warning
</system-err>
    </testcase>
  </testsuite>
  <testsuite name="other" tests="2" failures="0" errors="1" skipped="1" time="5.000" timestamp="2024-02-29T13:05:09Z">
    <testcase name="wait.js" classname="other" file="other/wait.js" time="5.000">
      <error message="other/wait.js:2: The browser has closed or crashed" type="script">other/wait.js:2: The browser has closed or crashed
    called from script (other/wait.js:5)</error>
      <rerunError message="other/wait.js:2: The browser has closed or crashed" type="script">
        <stackTrace>other/wait.js:2: The browser has closed or crashed
    called from script (other/wait.js:5)</stackTrace>
      </rerunError>
    </testcase>
    <testcase name="late.js" classname="other" file="other/late.js" time="0.000">
      <skipped message="The run's limit of 60 s is over"/>
    </testcase>
  </testsuite>
</testsuites>
)xml"_s);
}

TEST(JUnitReport, ARunWithoutScriptsIsADocument)
{
    EXPECT_EQ(junit({}), uR"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites name="pageprobe" tests="0" failures="0" errors="0" skipped="0" time="0.000"/>
)"_s);
}

TEST(JUnitReport, CharactersThatXmlForbidsAreLeftOut)
{
    EXPECT_EQ(withoutForbiddenCharacters(u"a\tb\nc\rd"_s), u"a\tb\nc\rd"_s);
    EXPECT_EQ(withoutForbiddenCharacters(u"\x1B[31mred\x1B[0m \x07"_s), u"[31mred[0m "_s);
    EXPECT_EQ(withoutForbiddenCharacters(QString(QChar::Null) + u'x'), u"x"_s);
    EXPECT_EQ(withoutForbiddenCharacters(u"\U0001F600\u20AC\uFFFD"_s), u"\U0001F600\u20AC\uFFFD"_s);
    EXPECT_EQ(withoutForbiddenCharacters(QString(QChar(0xD83D)) + u'x' + QChar(0xDE00) + QChar(0xFFFE)
                  + QChar(0xFFFF) + QChar(0xD83D)),
        u"x"_s);
}

// A run that says `text` wherever a text comes from a script or a page.
RunResult runSaying(const QString &text)
{
    Step verification = step(Kind::Verification, text, {text, 1});
    verification.passed = false;
    verification.actual = verification.expected = text;
    Step section = step(Kind::Section, text, {text, 1});
    section.steps = {verification, step(Kind::Log, text)};
    Step statement = step(Kind::Statement, text, {text, 1});
    statement.error = text;
    Attempt made = attempt({Outcome::Error, text, {text, 1}, {text, text}}, 1,
        {section, statement, step(Kind::Screenshot, text), step(Kind::ObjectTree, text)});
    made.diagnostics = text;
    RunResult run;
    run.scripts = {{text, {made, made}}};
    return run;
}

TEST(Reports, NoTextBreaksThem)
{
    for (const HostileText &row : hostileTexts()) {
        SCOPED_TRACE(row.name);
        const RunResult run = runSaying(row.text + u"\x01<i>&amp;]]>"_s);
        // What white space becomes in attributes is for the XML reader to say.
        const QString shown = row.hasLineBreak() ? u"<i>&amp;]]>"_s : row.text + u"<i>&amp;]]>"_s;

        for (const QString &report : {junit(run), htmlPage(run)}) {
            const QString text = textIn(report);
            EXPECT_FALSE(text.startsWith(u"no XML"_s)) << text.toStdString();
            EXPECT_TRUE(text.contains(shown)) << report.toStdString();
            EXPECT_FALSE(report.contains(u"<script"_s));
        }
    }
}

TEST(HtmlReport, TellsAllThatHappened)
{
    static const QRegularExpression style(
        u"<style>.*</style>"_s, QRegularExpression::DotMatchesEverythingOption);

    EXPECT_EQ(htmlPage(sampleRun()).replace(style, u"<style></style>"_s), uR"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'"/>
<title>Test report: failed</title>
<style></style>
</head>
<body>
<header class="failed">
<h1>Test report</h1>
<p>5 scripts · 2024-02-29 13:05:09 · 1 min 5 s</p>
<ul class="totals">
<li class="passed"><b>1</b> passed</li>
<li class="flaky"><b>1</b> flaky</li>
<li class="failed"><b>1</b> failed</li>
<li class="error"><b>1</b> with errors</li>
<li class="notrun"><b>1</b> not run</li>
</ul>
<div class="bar"><span class="passed" style="flex-grow:1"></span><span class="flaky" style="flex-grow:1"></span><span class="failed" style="flex-grow:1"></span><span class="error" style="flex-grow:1"></span><span class="notrun" style="flex-grow:1"></span></div>
</header>
<ol class="failures">
<li><a href="#script-3">shop/look.js</a> shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)</li>
<li><a href="#script-4">other/wait.js</a> other/wait.js:2: The browser has closed or crashed</li>
</ol>
<main>
<details class="script" id="script-1">
<summary><span class="badge passed">passed</span> <span class="name">shop/buy.js</span><span class="time">1.5 s</span></summary>
<ol class="steps">
<li class="statement"><span class="time">1.2 s</span><code>startBrowser(&quot;shop&quot;)</code>
<div class="place">shop/buy.js:1 <code>line 1 &lt; 9;</code></div>
</li>
<li class="section"><details open=""><summary>The &lt;cart&gt;</summary>
<div class="place">shop/buy.js:2 <code>line 2 &lt; 9;</code></div>
<ol class="steps">
<li class="statement"><span class="time">12 ms</span><code>clickButton(&quot;save&quot;)</code>
<div class="place">shop/buy.js:3 <code>line 3 &lt; 9;</code></div>
</li>
<li class="verification good"><span class="mark">✓</span>the total
<div class="place">shop/buy.js:4 <code>line 4 &lt; 9;</code></div>
</li>
</ol>
</details></li>
</ol>
</details>
<details class="script" id="script-2">
<summary><span class="badge flaky">flaky</span> <span class="name">shop/again.js</span><span class="time">350 ms</span></summary>
<details class="try">
<summary><span class="badge failed">failed</span> Try 1<span class="time">250 ms</span></summary>
<div class="problem">
<p>1 of 1 verifications failed</p>
<div class="place">shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)</div>
</div>
<ol class="steps">
<li class="verification bad"><span class="mark">✗</span>the &quot;title&quot;
<div class="place">shop/look.js:7 <code>line 7 &lt; 9;</code></div>
<dl><dt>actual</dt><dd>&lt;b&gt; &amp; %1&lt;/b&gt;</dd><dt>expected</dt><dd>it's</dd></dl>
</li>
</ol>
</details>
<details class="try" open="">
<summary><span class="badge passed">passed</span> Try 2<span class="time">100 ms</span></summary>
</details>
</details>
<details class="script" id="script-3" open="">
<summary><span class="badge failed">failed</span> <span class="name">shop/look.js</span><span class="time">500 ms</span></summary>
<div class="problem">
<p>1 of 1 verifications failed</p>
<div class="place">shop/look.js:7: Verification failed: the &quot;title&quot; (actual: &lt;b&gt; &amp; %1&lt;/b&gt;; expected: it's)</div>
</div>
<ol class="steps">
<li class="log">looking around</li>
<li class="verification bad"><span class="mark">✗</span>the &quot;title&quot;
<div class="place">shop/look.js:7 <code>line 7 &lt; 9;</code></div>
<dl><dt>actual</dt><dd>&lt;b&gt; &amp; %1&lt;/b&gt;</dd><dt>expected</dt><dd>it's</dd></dl>
</li>
<li class="picture"><figure><figcaption>The page at the failure</figcaption><label><input type="checkbox" aria-label="Full size"/><img alt="The page at the failure" src="data:image/png;base64,cG5n"/></label></figure></li>
<li class="tree"><details><summary>Object tree</summary>
<details open=""><summary><b title="DOCUMENT">HTML_Document</b></summary>
<div class="leaf"><b title="">HTML_Button</b> <i>id</i>=<q>save</q> <small>8,9 60×22</small></div>
</details>
</details></li>
</ol>
<details class="diagnostics"><summary>Standard error</summary><pre>a warning
</pre></details>
</details>
<details class="script" id="script-4" open="">
<summary><span class="badge error">error</span> <span class="name">other/wait.js</span><span class="time">5.0 s</span></summary>
<details class="try">
<summary><span class="badge error">error</span> Try 1<span class="time">3.0 s</span></summary>
<div class="problem">
<p>The browser has closed or crashed</p>
<div class="place">other/wait.js:2 <code>line 2 &lt; 9;</code></div>
<div class="place">called from script (other/wait.js:5)</div>
</div>
<ol class="steps">
<li class="statement bad"><span class="time">cut short</span><code>waitForObject(&quot;late&quot;)</code>
<div class="place">other/wait.js:2 <code>line 2 &lt; 9;</code></div>
</li>
</ol>
</details>
<details class="try" open="">
<summary><span class="badge error">error</span> Try 2<span class="time">2.0 s</span></summary>
<div class="problem">
<p>The browser has closed or crashed</p>
<div class="place">other/wait.js:2 <code>line 2 &lt; 9;</code></div>
<div class="place">called from script (other/wait.js:5)</div>
</div>
</details>
</details>
<details class="script" id="script-5">
<summary><span class="badge notrun">not run</span> <span class="name">other/late.js</span><span class="time"></span></summary>
<div class="problem">
<p>The run's limit of 60 s is over</p>
</div>
</details>
</main>
</body>
</html>
)html"_s);
}

TEST(HtmlReport, NeedsNothingButItself)
{
    const QString page = htmlPage(sampleRun());

    EXPECT_TRUE(page.contains(u":root {"_s));
    EXPECT_TRUE(page.contains(u"prefers-color-scheme: dark"_s));
    for (const QString &reference : {u"http:"_s, u"https:"_s, u"url("_s, u"@import"_s, u"<link"_s})
        EXPECT_FALSE(page.contains(reference)) << reference.toStdString();
}

// A page with the object tree `xml`.
QString pageWithTree(const QString &xml)
{
    RunResult run;
    run.scripts = {{u"a.js"_s, {attempt({}, 1, {step(Kind::ObjectTree, xml)})}}};
    return htmlPage(run);
}

TEST(HtmlReport, AnObjectTreeThatIsNoDumpIsShownAsItStands)
{
    for (const QString &text : {u"<open>broken"_s, u"<dump><element>"_s, u"<other/>"_s, u"<dump/>"_s})
        EXPECT_TRUE(pageWithTree(text).contains(u"<pre>%1</pre>"_s.arg(text.toHtmlEscaped())));
}

TEST(HtmlReport, AnObjectTreeIsCutOffWhereBrowsersGiveUp)
{
    constexpr int depth = 1000;

    const QString page = pageWithTree(u"<dump>"_s + u"<element class=\"A\">"_s.repeated(depth)
        + u"</element>"_s.repeated(depth) + u"</dump>"_s);

    EXPECT_EQ(page.count(u"<b title=\"\">A</b>"_s), 150);
}

TEST(SourceFiles, GivesTheLineOfAPlace)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"script.js"_s);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("first();\n  second(\"\xC3\xA9\");\n");
    file.close();
    SourceFiles sources;

    EXPECT_EQ(sources.line({name, 2}), u"  second(\"é\");"_s);
    EXPECT_EQ(sources.line({name, 0}), QString());
    EXPECT_EQ(sources.line({name, 99}), QString());
    EXPECT_EQ(sources.line({folder.filePath(u"nowhere.js"_s), 1}), QString());
}

TEST(ReportFile, IsWrittenWhole)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"report.xml"_s);
    EXPECT_EQ(probeReportFile(name).error, QString());
    for (const QByteArray &content : {QByteArray("a long text"), QByteArray("short")}) {
        EXPECT_EQ(writeReportFile(name, [&](QIODevice *device) { device->write(content); }).error, QString());

        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), content);
    }
}

TEST(ReportFile, AProbeKeepsTheReportOfTheRunBefore)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"report.xml"_s);
    ASSERT_EQ(writeReportFile(name, [](QIODevice *device) { device->write("old"); }).error, QString());

    EXPECT_EQ(probeReportFile(name).error, QString());

    EXPECT_EQ(QFileInfo(name).size(), 3);
}

TEST(ReportFile, SaysWhyItCannotBeWritten)
{
    const auto write = [](QIODevice *device) { device->write("text"); };
    const QString unreachable = u"/no/such/folder/report.xml"_s;

    EXPECT_EQ(probeReportFile(unreachable).error,
        u"Cannot write the report '/no/such/folder/report.xml': No such file or directory."_s);
    EXPECT_EQ(writeReportFile(unreachable, write).error, probeReportFile(unreachable).error);
    EXPECT_EQ(probeReportFile(u"/"_s).error, u"Cannot write the report '/': Is a directory."_s);
    EXPECT_EQ(probeReportFile(u"/dev/full"_s).error, QString());
    EXPECT_EQ(writeReportFile(u"/dev/full"_s, write).error,
        u"Cannot write the report '/dev/full': No space left on device."_s);
    EXPECT_EQ(writeReportFile(
                  u"/dev/full"_s, [](QIODevice *device) { device->write(QByteArray(1024 * 1024, 'x')); })
                  .error,
        u"Cannot write the report '/dev/full': No space left on device."_s);
    EXPECT_TRUE(QFileInfo::exists(u"/dev/full"_s));
}

} // namespace
} // namespace Ostrel::Test
