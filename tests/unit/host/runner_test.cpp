// Runs of many scripts, with shell scripts in the place of workers: what happens when, and what becomes of
// workers that do not behave.
#include "host/run/failurewitness.h"
#include "host/run/progress.h"
#include "host/run/runner.h"
#include "host/run/scriptlist.h"
#include "support/printqt.h"
#include "support/samplerun.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <csignal>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {
namespace {

using namespace Host;

// What a worker says at its end.
const QString passes = u"echo '{\"event\":\"scriptEnded\",\"outcome\":\"passed\"}'\n"_s;
const QString fails = u"echo '{\"event\":\"verified\",\"passed\":false,\"text\":\"it holds\"}'\n"_s + passes;
const QString begins = u"echo '{\"event\":\"statementBegan\",\"text\":\"snooze(9)\","
                       "\"file\":\"inner.js\",\"line\":7}'\n"_s;
const QString waits = u"sleep 600 & wait\n"_s;

// Writes down what it hears.
class Notes : public RunListener
{
public:
    void attemptBegan(int script) override { add(u"%1 begins"_s.arg(script)); }
    void attemptEnded(int script, const Attempt &attempt, bool again) override
    {
        add(u"%1 ends: %2%3"_s.arg(
            QString::number(script), attempt.end.message, again ? u", again"_s : QString()));
    }
    void statementBegan(int script, const StatementBegin &statement) override
    {
        add(u"%1 %2"_s.arg(QString::number(script), statement.text));
    }
    void verified(int script, const Verification &verification) override
    {
        add(u"%1 verifies %2"_s.arg(QString::number(script), verification.message));
    }
    void logged(int script, const QString &text) override
    {
        add(u"%1 %2"_s.arg(QString::number(script), text));
    }
    void diagnosticsWritten(int script, const QString &text) override
    {
        add(u"%1 ! %2"_s.arg(QString::number(script), text.trimmed()));
    }
    void browserKept(int script) override { add(u"%1 keeps its browser"_s.arg(script)); }

    QStringList lines;
    std::function<void()> heard = [] {};

private:
    void add(const QString &line)
    {
        lines.append(line);
        heard();
    }
};

class RunnerTest : public ::testing::Test
{
protected:
    // The shell runs `body` with the script's name as "$1", in a folder of this test.
    WorkerCommand worker(const QString &body) const
    {
        return {u"/bin/sh"_s, {u"-c"_s, u"cd '%1'\n"_s.arg(folder.path()) + body, u"worker"_s}, endLimitMs};
    }
    RunResult run(const RunPlan &plan, const QString &body)
    {
        Runner runner(plan, worker(body), notes);
        return runner.run();
    }
    static QStringList ends(const RunResult &run)
    {
        QStringList texts;
        for (const ScriptResult &script : run.scripts) {
            for (const Attempt &attempt : script.attempts)
                texts.append(u"%1 %2 %3"_s.arg(
                    QString::number(int(attempt.end.outcome)), attempt.end.place.file, attempt.end.message));
        }
        return texts;
    }
    static QString end(Outcome outcome, const QString &file, const QString &message)
    {
        return u"%1 %2 %3"_s.arg(QString::number(int(outcome)), file, message);
    }

    QTemporaryDir folder;
    Notes notes;
    int endLimitMs = 15000;
};

TEST_F(RunnerTest, ScriptsRunInTheirOrder)
{
    const RunResult result = run({{u"a.js"_s, u"b.js"_s}},
        u"echo \"{\\\"event\\\":\\\"logged\\\",\\\"text\\\":\\\"$1\\\"}\"\n"_s + passes);

    EXPECT_TRUE(result.passed());
    EXPECT_TRUE(result.began.isValid());
    EXPECT_EQ(notes.lines,
        (QStringList{u"0 begins"_s, u"0 a.js"_s, u"0 ends: "_s, u"1 begins"_s, u"1 b.js"_s, u"1 ends: "_s}));
    EXPECT_EQ(result.scripts.at(1).script, u"b.js"_s);
    EXPECT_TRUE(result.scripts.at(1).attempts.at(0).began.isValid());
    EXPECT_GT(result.scripts.at(1).milliseconds(), 0);
}

TEST_F(RunnerTest, AsManyRunSideBySideAsThereAreJobs)
{
    // Each waits for a second one to be there, which would never come without it.
    RunPlan plan{{u"a.js"_s, u"b.js"_s, u"c.js"_s, u"d.js"_s}};
    plan.jobs = 2;
    int running = 0;
    int most = 0;
    notes.heard = [&] {
        running += notes.lines.last().endsWith(u"begins"_s) ? 1
            : notes.lines.last().contains(u"ends:"_s)       ? -1
                                                            : 0;
        most = qMax(most, running);
    };

    const RunResult result
        = run(plan, u"touch here.$1\nwhile [ $(ls | wc -l) -lt 2 ]; do sleep 0.02; done\n"_s + passes);

    EXPECT_TRUE(result.passed());
    EXPECT_EQ(most, 2);
}

TEST_F(RunnerTest, APassAfterARetryIsFlaky)
{
    RunPlan plan{{u"a.js"_s, u"b.js"_s}};
    plan.retries = 2;
    const RunResult result = run(plan, u"if mkdir $1 2>/dev/null; then\n%1else\n%2fi\n"_s.arg(fails, passes));

    EXPECT_TRUE(result.passed());
    EXPECT_EQ(result.flaky(), 2);
    EXPECT_EQ(notes.lines,
        (QStringList{u"0 begins"_s, u"0 verifies it holds"_s, u"0 ends: 1 of 1 verifications failed, again"_s,
            u"0 begins"_s, u"0 ends: "_s, u"1 begins"_s, u"1 verifies it holds"_s,
            u"1 ends: 1 of 1 verifications failed, again"_s, u"1 begins"_s, u"1 ends: "_s}));
}

TEST_F(RunnerTest, RetriesComeToAnEnd)
{
    RunPlan plan{{u"a.js"_s}};
    plan.retries = 2;
    const RunResult result = run(plan, fails);

    EXPECT_EQ(result.count(Outcome::Failed), 1);
    EXPECT_EQ(ends(result), QStringList(3, end(Outcome::Failed, {}, u"1 of 1 verifications failed"_s)));
}

struct BadWorker
{
    const char *name;
    QString body;
    QString file; ///< the place of the error
    QString message;
};

TEST_F(RunnerTest, AWorkerThatEndsWithoutAWordIsTheScriptsFailureAndTheNextScriptRuns)
{
    const BadWorker rows[] = {
        {"a crash", u"kill -SEGV $$\n"_s, u"a.js"_s, u"The script's process was ended by signal 11"_s},
        {"a crash during a statement", begins + u"kill -KILL $$\n"_s, u"inner.js"_s,
            u"The script's process was ended by signal 9"_s},
        {"an exit", u"exit 3\n"_s, u"a.js"_s, u"The script's process ended with exit code 3"_s},
        {"a crash behind the script's end", passes + u"kill -ABRT $$\n"_s, u"a.js"_s,
            u"The script's process was ended by signal 6"_s},
        {"half a line", u"printf '{\"event\":\"scriptEn'\n"_s, u"a.js"_s,
            u"The script's process ended with exit code 0"_s},
    };
    for (const BadWorker &row : rows) {
        SCOPED_TRACE(row.name);
        const RunResult result = run(
            {{u"a.js"_s, u"b.js"_s}}, u"if [ $1 = a.js ]; then\n%1exit\nfi\n%2"_s.arg(row.body, passes));

        EXPECT_EQ(ends(result),
            (QStringList{end(Outcome::Error, row.file, row.message), end(Outcome::Passed, {}, {})}));
    }
}

TEST_F(RunnerTest, AWorkerThatCannotBeStartedIsSaid)
{
    Runner runner({{u"a.js"_s}}, {u"/no/such/program"_s, {}}, notes);

    const RunResult result = runner.run();

    EXPECT_EQ(result.count(Outcome::Error), 1);
    EXPECT_TRUE(ends(result).first().startsWith(
        end(Outcome::Error, u"a.js"_s, u"Could not start a process for the script: "_s)))
        << ends(result).first().toStdString();
}

TEST_F(RunnerTest, OtherOutputIsDiagnostics)
{
    const RunResult result = run({{u"a.js"_s}}, u"echo noise\necho trouble >&2\n"_s + passes);

    EXPECT_TRUE(result.passed());
    QStringList lines = result.scripts.at(0).attempts.at(0).diagnostics.split(u'\n', Qt::SkipEmptyParts);
    lines.sort();
    EXPECT_EQ(lines, (QStringList{u"noise"_s, u"trouble"_s}));
    EXPECT_TRUE(notes.lines.contains(u"0 ! noise"_s));
    EXPECT_TRUE(notes.lines.contains(u"0 ! trouble"_s));
}

TEST_F(RunnerTest, AScriptEndsAtItsLimitAndTheNextOneRuns)
{
    RunPlan plan{{u"a.js"_s, u"b.js"_s}};
    plan.scriptLimitMs = 300;
    const RunResult result
        = run(plan, u"if [ $1 = a.js ]; then\n%1exec sleep 600\nfi\n%2"_s.arg(begins, passes));

    EXPECT_EQ(ends(result),
        (QStringList{end(Outcome::Error, u"inner.js"_s, u"The script did not end within 0.3 s"_s),
            end(Outcome::Passed, {}, {})}));
}

TEST_F(RunnerTest, AWorkerThatDoesNotListenIsKilled)
{
    endLimitMs = 200;
    RunPlan plan{{u"a.js"_s}};
    plan.scriptLimitMs = 300;
    QElapsedTimer elapsed;
    elapsed.start();

    const RunResult result = run(plan, u"trap '' ALRM\nwhile true; do sleep 0.05; done\n"_s);

    EXPECT_EQ(
        ends(result), QStringList{end(Outcome::Error, u"a.js"_s, u"The script did not end within 0.3 s"_s)});
    EXPECT_LT(elapsed.elapsed(), 30000);
}

TEST_F(RunnerTest, AWorkerThatHangsBehindItsScriptsEndKeepsItsResult)
{
    endLimitMs = 200;
    const RunResult result = run({{u"a.js"_s}}, passes + u"exec sleep 600\n"_s);

    EXPECT_TRUE(result.passed());
}

TEST_F(RunnerTest, TheRunEndsAtItsLimit)
{
    RunPlan plan{{u"a.js"_s, u"b.js"_s, u"c.js"_s}};
    plan.runLimitMs = 500;
    const RunResult result = run(plan, u"if [ $1 = b.js ]; then exec sleep 600; fi\n"_s + passes);

    const QString reason = u"The run's limit of 0.5 s is over"_s;
    EXPECT_EQ(ends(result),
        (QStringList{end(Outcome::Passed, {}, {}), end(Outcome::Error, u"b.js"_s, reason),
            end(Outcome::NotRun, {}, reason)}));
}

TEST_F(RunnerTest, AStoppedRunTriesNothingAgain)
{
    RunPlan plan{{u"a.js"_s, u"b.js"_s}};
    plan.retries = 5;
    Runner runner(plan, worker(begins + u"exec sleep 600\n"_s), notes);
    notes.heard = [&] {
        if (notes.lines.last() == "0 snooze(9)"_L1)
            QTimer::singleShot(0, &runner, [&] { runner.stop(u"enough"_s); });
    };

    const RunResult result = runner.run();

    EXPECT_EQ(ends(result),
        (QStringList{
            end(Outcome::Error, u"inner.js"_s, u"enough"_s), end(Outcome::NotRun, {}, u"enough"_s)}));
}

TEST_F(RunnerTest, WithoutABrowserNothingElseIsTried)
{
    RunPlan plan{{u"a.js"_s, u"b.js"_s}};
    plan.retries = 2;
    const RunResult result = run(
        plan, u"echo '{\"event\":\"scriptEnded\",\"outcome\":\"unusable\",\"text\":\"no browser\"}'\n"_s);

    EXPECT_EQ(ends(result),
        (QStringList{end(Outcome::Unusable, {}, u"no browser"_s),
            end(Outcome::NotRun, {}, u"The run could not begin"_s)}));
}

TEST_F(RunnerTest, ABrowserThatIsKeptOpenIsWaitedFor)
{
    endLimitMs = 50;
    RunPlan plan{{u"a.js"_s}};
    plan.keepOpen = true;
    notes.heard = [&] {
        if (notes.lines.last() == "0 keeps its browser"_L1)
            QFile(folder.filePath(u"closed"_s)).open(QIODevice::WriteOnly);
    };

    const RunResult result
        = run(plan, passes + u"while [ ! -e closed ]; do sleep 0.02; done\nsleep 0.2\necho done >&2\n"_s);

    EXPECT_TRUE(result.passed());
    EXPECT_EQ(result.scripts.at(0).attempts.at(0).diagnostics, u"done\n"_s);
}

TEST_F(RunnerTest, ABrowserThatWasNeverThereIsNotKept)
{
    RunPlan plan{{u"a.js"_s}};
    plan.keepOpen = true;
    run(plan, u"echo '{\"event\":\"scriptEnded\",\"outcome\":\"unusable\",\"text\":\"no browser\"}'\n"_s);

    EXPECT_EQ(notes.lines, (QStringList{u"0 begins"_s, u"0 ends: no browser"_s}));
}

TEST_F(RunnerTest, AWorkerOutlivesNeitherItsOwnerNorTheRunner)
{
    {
        WorkerProcess process(
            worker(u"echo $$ > id.new; mv id.new id\nexec sleep 600\n"_s), u"a.js"_s, 0, notes);
        ASSERT_TRUE(waitFor([&] { return QFile::exists(folder.filePath(u"id"_s)); }));
    }
    QFile id(folder.filePath(u"id"_s));
    ASSERT_TRUE(id.open(QIODevice::ReadOnly));
    EXPECT_NE(::kill(id.readAll().trimmed().toInt(), 0), 0);
}

// From here on: what the page looked like at a failure.

class WitnessTest : public ::testing::Test
{
protected:
    FunctionCallResult<QByteArray> screenshot()
    {
        ++looks;
        return pageIsThere ? FunctionCallResult<QByteArray>("png") : Failure(u"There is no open page."_s);
    }
    FunctionCallResult<QString> objectTree() const
    {
        return pageIsThere ? FunctionCallResult<QString>(u"tree"_s) : Failure(u"There is no open page."_s);
    }
    QStringList kinds() const
    {
        QStringList names;
        for (const QByteArray &line : lines)
            names.append(QString::fromUtf8(line).section(u"\"event\":\""_s, 1).section(u'"', 0, 0));
        return names;
    }

    bool pageIsThere = true;
    bool isCalm = true;
    int looks = 0;
    QList<QByteArray> lines;
    FailureWitness witness{[this](const QByteArray &line) { lines.append(line); },
        {[this] { return screenshot(); }, [this] { return objectTree(); }, [this] { return isCalm; }}};
};

TEST_F(WitnessTest, ShowsThePageBehindAFailedVerificationAndBeforeAnError)
{
    witness.verified({true, {}, {}, {}, {}});
    witness.verified({false, {}, {}, {}, {}});
    witness.scriptEnded({Outcome::Error, u"lost"_s, {}, {}});

    EXPECT_EQ(kinds(),
        (QStringList{u"verified"_s, u"verified"_s, u"screenshot"_s, u"objectTree"_s, u"screenshot"_s,
            u"objectTree"_s, u"scriptEnded"_s}));
}

TEST_F(WitnessTest, APassAndAScriptThatCouldNotBeginShowNothing)
{
    witness.scriptEnded({});
    witness.scriptEnded({Outcome::Unusable, u"no browser"_s, {}, {}});

    EXPECT_EQ(looks, 0);
}

TEST_F(WitnessTest, WhatCannotBeSeenIsLeftOut)
{
    pageIsThere = false;
    witness.verified({false, {}, {}, {}, {}});

    EXPECT_EQ(kinds(), QStringList{u"verified"_s});
}

TEST_F(WitnessTest, AFailureInALoopDoesNotFillTheReport)
{
    for (int i = 0; i < 100; ++i)
        witness.verified({false, {}, {}, {}, {}});

    EXPECT_EQ(looks, FailureWitness::mostViews);
    EXPECT_EQ(kinds().count(u"verified"_s), 100);

    witness.scriptEnded({Outcome::Error, u"and then"_s, {}, {}});

    EXPECT_EQ(looks, FailureWitness::mostViews + 1) << "the end is always shown";
}

TEST_F(WitnessTest, APageThatCannotBeFreedIsNotLookedAt)
{
    isCalm = false;
    witness.scriptEnded({Outcome::Error, u"stuck"_s, {}, {}});

    EXPECT_EQ(kinds(), QStringList{u"scriptEnded"_s});
    EXPECT_EQ(looks, 0);
}

// From here on: which scripts.

class ScriptListTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (const QString &name :
            {u"b.js"_s, u"a.js"_s, u"notes.txt"_s, u"B.JS"_s, u"inner/c.js"_s, u"empty/x"_s}) {
            QDir(folder.path()).mkpath(QFileInfo(name).path());
            QFile(folder.filePath(name)).open(QIODevice::WriteOnly);
        }
    }
    QString path(const QString &name) const { return folder.filePath(name); }

    QTemporaryDir folder;
};

TEST_F(ScriptListTest, AFolderStandsForItsScriptsSorted)
{
    EXPECT_EQ(listScripts({path(u"inner/c.js"_s), folder.path(), path(u"notes.txt"_s)}).value,
        (QStringList{path(u"inner/c.js"_s), path(u"a.js"_s), path(u"b.js"_s), path(u"notes.txt"_s)}));
}

TEST_F(ScriptListTest, WhatIsMissingIsNamed)
{
    EXPECT_EQ(listScripts({u"nowhere.js"_s}).error, u"there is no script 'nowhere.js'."_s);
    EXPECT_EQ(listScripts({path(u"empty"_s)}).error,
        u"there is no script in the folder '%1'."_s.arg(path(u"empty"_s)));
}

struct FilterRow
{
    QString pattern;
    QStringList left;
};

TEST(ScriptFilter, MatchesAnywhereInThePath)
{
    const QStringList scripts{u"shop/buy.js"_s, u"shop/look.js"_s, u"other/buy.js"_s};
    const FilterRow rows[] = {
        {{}, scripts},
        {u"buy"_s, {u"shop/buy.js"_s, u"other/buy.js"_s}},
        {u"shop/*.js"_s, {u"shop/buy.js"_s, u"shop/look.js"_s}},
        {u"l??k"_s, {u"shop/look.js"_s}},
        {u"[bl]*k.js"_s, {u"shop/look.js"_s}},
        {u"re:^shop/b"_s, {u"shop/buy.js"_s}},
        {u"re:(buy|look)\\.js$"_s, scripts},
    };
    for (const FilterRow &row : rows)
        EXPECT_EQ(filterScripts(scripts, row.pattern).value, row.left) << row.pattern.toStdString();
}

TEST(ScriptFilter, SaysWhenNothingIsLeftAndWhenItIsNone)
{
    EXPECT_EQ(filterScripts({u"a.js"_s}, u"b"_s).error, u"no script matches the filter 'b'."_s);
    EXPECT_EQ(filterScripts({u"a.js"_s}, u"re:("_s).error,
        u"the filter 're:(' is no regular expression: missing closing parenthesis."_s);
}

// From here on: what the user sees.

class ProgressTest : public ::testing::Test
{
protected:
    Progress progress(const QStringList &scripts, int columns = 0, bool results = true)
    {
        return Progress(scripts,
            {[this](const QString &text) { shown += text; },
                [this](const QString &text) { shown += u"!"_s + text; }, columns, results});
    }
    static Attempt ended(Outcome outcome, const QString &message = {})
    {
        return attempt({outcome, message, {u"a.js"_s, 3}, {}}, 1234);
    }

    QString shown;
};

TEST_F(ProgressTest, ASingleScriptInAPipeIsWhatItLogsAndWhatFails)
{
    Progress lines = progress({u"a.js"_s}, 0, false);
    lines.attemptBegan(0);
    lines.statementBegan(0, {u"click()"_s, {u"a.js"_s, 1}});
    lines.logged(0, u"hello"_s);
    lines.verified(0, {true, u"fine"_s, {}, {}, {u"a.js"_s, 2}});
    lines.verified(0, {false, u"the total"_s, u"2"_s, u"3"_s, {u"a.js"_s, 2}});
    lines.diagnosticsWritten(0, u"a warning\n"_s);
    lines.attemptEnded(0, ended(Outcome::Error, u"lost"_s), false);
    lines.printTotals({});

    EXPECT_EQ(shown,
        u"hello\n!a.js:2: Verification failed: the total (actual: 2; expected: 3)\n!a warning\n!a.js:3: lost\n"_s);
}

TEST_F(ProgressTest, SeveralScriptsAreNumberedAndHaveALineEach)
{
    Progress lines = progress({u"a.js"_s, u"b.js"_s});
    lines.attemptBegan(0);
    lines.attemptBegan(1);
    lines.logged(1, u"hello %1"_s);
    lines.attemptEnded(1, ended(Outcome::Passed), false);
    lines.attemptEnded(0, ended(Outcome::Failed, u"1 of 2 verifications failed"_s), true);
    lines.attemptEnded(0, ended(Outcome::Unusable, u"no browser"_s), false);
    lines.printTotals(sampleRun());

    EXPECT_EQ(shown, uR"([2/2] hello %1
[2/2] b.js: passed (1.2 s)
[1/2] a.js: failed, 1 of 2 verifications failed (1.2 s), trying again
!pageprobe run: no browser
[1/2] a.js: could not begin (1.2 s)
5 scripts: 1 passed, 1 flaky, 1 failed, 1 with errors, 1 not run (65.4 s)
)"_s);
}

TEST_F(ProgressTest, OnATerminalTheLastLineTellsWhatRunsNow)
{
    Progress lines = progress({u"a.js"_s, u"b.js"_s}, 40);
    lines.attemptBegan(0);
    lines.statementBegan(0, {u"click(\"a\nb\")"_s, {u"a.js"_s, 12}});
    lines.logged(0, u"hello"_s);
    lines.statementBegan(0, {u"click(\"a\nb\")"_s, {u"a.js"_s, 12}});
    lines.statementBegan(0, {u"typeText(\"a long text that does not fit\")"_s, {u"a.js"_s, 13}});
    lines.attemptEnded(0, ended(Outcome::Passed), false);
    lines.printTotals({});

    const QStringList pieces{u""_s, u"[1/2] a.js"_s, u"[1/2] a.js:12: click(\"a b\")"_s, u"[1/2] hello\n"_s,
        u"[1/2] a.js:12: click(\"a b\")"_s, u"[1/2] a.js:13: typeText(\"a long text t…"_s,
        u"[1/2] a.js: passed (1.2 s)\n0 scripts:  (0.0 s)\n"_s};
    EXPECT_EQ(shown, pieces.join(u"\r\x1B[K"_s));
}

TEST_F(ProgressTest, ABrowserThatStaysOpenIsSaid)
{
    progress({u"a.js"_s}, 0, false).browserKept(0);

    EXPECT_EQ(shown, u"The browser stays open. Close it or press Ctrl+C to end.\n"_s);
}

} // namespace
} // namespace Ostrel::Test
