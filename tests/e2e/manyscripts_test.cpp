// Many scripts in one run: side by side, again, chosen, limited; what goes wrong in one is that one's
// failure, and nothing is left behind. With the reports of such runs.
#include "e2e/commandrun.h"
#include "host/channel/httpserver.h"
#include "support/printqt.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTcpServer>
#include <QXmlStreamReader>

#include <csignal>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {
namespace {

const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/pages");

const QByteArray openForm = "startBrowser(serverAddress() + 'form.html');\n"
                            "var heading = activeDocument().getElementById('heading');\n";
const QByteArray good = openForm + "log(heading.title);\n";
const QByteArray bad = openForm + "heading.titel;\n";
const QString shownPage = u"<img alt=\"The page at the failure\" src=\"data:image/png;base64,iVBOR"_s;

class ManyScriptsTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(run.leftProcesses(), QStringList());
        EXPECT_EQ(run.leftFiles(), QStringList());
    }

    // "scripts/a.js" and so on, one for each content.
    void write(const QList<QByteArray> &scripts)
    {
        char name = 'a';
        for (const QByteArray &script : scripts)
            run.write(u"scripts/%1.js"_s.arg(QLatin1Char(name++)), script);
    }
    static QStringList arguments(const QStringList &options)
    {
        return QStringList{u"run"_s, u"scripts"_s, u"--serve"_s, pagesFolder} + options;
    }
    Ended runAll(const QStringList &options = {}) { return run.run(arguments(options)); }

    // The lines without their times.
    static QStringList lines(const QString &output)
    {
        static const QRegularExpression time(u"\\([0-9.]+ s\\)"_s);
        return QString(output).replace(time, u"(TIME)"_s).split(u'\n', Qt::SkipEmptyParts);
    }
    static QStringList sortedLines(const QString &output)
    {
        QStringList sorted = lines(output);
        sorted.sort();
        return sorted;
    }
    QString read(const QString &name) const
    {
        QFile file(run.path(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    CommandRun run;
};

TEST_F(ManyScriptsTest, SixScriptsInTwoJobs)
{
    write({good, bad, good, good, "throw 'enough';\n", good});

    const Ended ended = runAll({u"--jobs"_s, u"2"_s, u"--junit"_s, u"report.xml"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(sortedLines(ended.out),
        (QStringList{
            u"6 scripts: 4 passed, 2 with errors (TIME)"_s,
            u"[1/6] What this is"_s,
            u"[1/6] scripts/a.js: passed (TIME)"_s,
            u"[2/6] scripts/b.js: error (TIME)"_s,
            u"[3/6] What this is"_s,
            u"[3/6] scripts/c.js: passed (TIME)"_s,
            u"[4/6] What this is"_s,
            u"[4/6] scripts/d.js: passed (TIME)"_s,
            u"[5/6] scripts/e.js: error (TIME)"_s,
            u"[6/6] What this is"_s,
            u"[6/6] scripts/f.js: passed (TIME)"_s,
        }));
    EXPECT_EQ(sortedLines(ended.err),
        (QStringList{u"scripts/b.js:3: HTML_Object has no property or method 'titel'."_s,
            u"scripts/e.js:1: enough"_s}));
    QXmlStreamReader report(read(u"report.xml"_s));
    ASSERT_TRUE(report.readNextStartElement());
    EXPECT_EQ(report.attributes().value(u"tests"_s), u"6"_s);
    EXPECT_EQ(report.attributes().value(u"errors"_s), u"2"_s);
}

// Serves a page whose heading tells how often it was asked for.
class CountingServer
{
public:
    CountingServer() : m_server([this](const Host::HttpRequest &request) { return respond(request); })
    {
        EXPECT_TRUE(m_server.listen());
    }
    QByteArray address() const { return "http://127.0.0.1:" + QByteArray::number(m_server.port()) + '/'; }

private:
    Host::HttpResponse respond(const Host::HttpRequest &request)
    {
        m_requests += request.path() == "/" ? 1 : 0;
        Host::HttpResponse response;
        response.contentType = "text/html";
        response.body
            = "<!DOCTYPE html><h1 id=\"heading\" title=\"" + QByteArray::number(m_requests) + "\">x</h1>";
        return response;
    }

    int m_requests = 0;
    Host::HttpServer m_server;
};

TEST_F(ManyScriptsTest, APassAfterARetryIsFlaky)
{
    CountingServer server;
    write({"startBrowser('" + server.address()
        + "');\nvar title = activeDocument().getElementById('heading').title;\n"
          "if (title < 3) {\n    throw new Error('too early: ' + title);\n}\n"});

    run.start(
        arguments({u"--retries"_s, u"3"_s, u"--junit"_s, u"report.xml"_s, u"--html"_s, u"report.html"_s}));
    // The server answers meanwhile.
    ASSERT_TRUE(run.waitForOutput(u"1 script: "_s));
    const Ended ended = run.finish();

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(lines(ended.out),
        (QStringList{u"[1/1] scripts/a.js: error (TIME), trying again"_s,
            u"[1/1] scripts/a.js: error (TIME), trying again"_s, u"[1/1] scripts/a.js: passed (TIME)"_s,
            u"1 script: 1 flaky (TIME)"_s}));
    EXPECT_EQ(read(u"report.xml"_s).count(u"<flakyError message=\"scripts/a.js:4: too early: "_s), 2);
    EXPECT_TRUE(read(u"report.html"_s).contains(u"<span class=\"badge flaky\">flaky</span>"_s));
}

TEST_F(ManyScriptsTest, OnlyChosenScriptsRun)
{
    write({bad, "log('b');", "log('c');"});

    const Ended ended = runAll({u"--filter"_s, u"re:/[bc]\\.js$"_s});

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(lines(ended.out),
        (QStringList{u"[1/2] b"_s, u"[1/2] scripts/b.js: passed (TIME)"_s, u"[2/2] c"_s,
            u"[2/2] scripts/c.js: passed (TIME)"_s, u"2 scripts: 2 passed (TIME)"_s}));

    const Ended none = runAll({u"--filter"_s, u"z*.js"_s});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(none.err, u"pageprobe run: no script matches the filter 'z*.js'.\n"_s);
}

TEST_F(ManyScriptsTest, AScriptThatTakesTooLongIsEndedAndTheNextOneRuns)
{
    write({openForm + "while (true) { }\n", openForm + "snooze(600);\n",
        openForm + "activeDocument().getElementById('spinner').invoke('spin');\n", "log('d');\n"});

    const Ended ended = runAll({u"--script-timeout"_s, u"10"_s, u"--html"_s, u"report.html"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.err,
        u"scripts/a.js: The script did not end within 10 s\n"
        "scripts/b.js:3: The script did not end within 10 s\n"
        "scripts/c.js:3: The script did not end within 10 s\n"_s);
    EXPECT_EQ(lines(ended.out).last(2),
        (QStringList{
            u"[4/4] scripts/d.js: passed (TIME)"_s, u"4 scripts: 1 passed, 3 with errors (TIME)"_s}));
    // Also of the page that was busy.
    const QString page = read(u"report.html"_s);
    EXPECT_EQ(page.count(shownPage), 3);
    EXPECT_EQ(page.count(u"<summary>Object tree</summary>"_s), 3);
    EXPECT_EQ(page.count(u"<i>id</i>=<q>heading</q>"_s), 3);
}

TEST_F(ManyScriptsTest, ARunThatTakesTooLongEnds)
{
    write({"log('a');\n", "snooze(600);\n", "log('c');\n"});

    const Ended ended = runAll({u"--run-timeout"_s, u"12"_s, u"--junit"_s, u"report.xml"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.err, u"scripts/b.js:1: The run's limit of 12 s is over\n"_s);
    EXPECT_EQ(lines(ended.out).last(), u"3 scripts: 1 passed, 1 with errors, 1 not run (TIME)"_s);
    EXPECT_TRUE(read(u"report.xml"_s).contains(u"<skipped message=\"The run's limit of 12 s is over\"/>"_s));
}

TEST_F(ManyScriptsTest, AnInterruptEndsAllScripts)
{
    write({"log('begun');\nsnooze(600);\n", "log('begun');\nwhile (true) { }\n", "log('never');\n"});
    run.start(arguments({u"--jobs"_s, u"2"_s, u"--junit"_s, u"report.xml"_s}));
    ASSERT_TRUE(run.waitForOutput(u"[1/3] begun"_s));
    ASSERT_TRUE(run.waitForOutput(u"[2/3] begun"_s));

    ::kill(pid_t(run.processId()), SIGINT);
    const Ended ended = run.finish();

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(sortedLines(ended.err),
        (QStringList{u"scripts/a.js:2: The script was interrupted."_s,
            u"scripts/b.js: The script was interrupted."_s}));
    EXPECT_FALSE(ended.out.contains(u"never"_s));
    EXPECT_EQ(read(u"report.xml"_s).count(u"<testcase"_s), 3);
}

TEST_F(ManyScriptsTest, ARunThatIsKilledLeavesNothing)
{
    write({"log('begun');\nsnooze(600);\n", "log('begun');\nwhile (true) { }\n"});
    run.start(arguments({u"--jobs"_s, u"2"_s}));
    ASSERT_TRUE(run.waitForOutput(u"[1/2] begun"_s));
    ASSERT_TRUE(run.waitForOutput(u"[2/2] begun"_s));

    ::kill(pid_t(run.processId()), SIGKILL);
    run.finish();

    EXPECT_TRUE(waitFor([&] { return run.leftProcesses().isEmpty(); }));
}

// From here on: each bad thing is one script's failure, and the next script runs.

class MishapTest : public ManyScriptsTest
{
protected:
    // Waits until the first script says that it has begun, lets the mishap happen, and gives the run's end,
    // in which the second script must have passed.
    Ended runWith(const std::function<void()> &mishap)
    {
        write({openForm + "log('begun');\nsnooze(600);\nlog(heading.title);\n", good});
        run.start(arguments({u"--timeout"_s, u"5"_s}));
        EXPECT_TRUE(run.waitForOutput(u"[1/2] begun"_s));
        mishap();
        Ended ended = run.finish();
        expectOneOfTwo(ended);
        return ended;
    }
    static void expectOneOfTwo(const Ended &ended)
    {
        EXPECT_EQ(ended.exitCode, 1);
        EXPECT_EQ(lines(ended.out).last(2),
            (QStringList{
                u"[2/2] scripts/b.js: passed (TIME)"_s, u"2 scripts: 1 passed, 1 with errors (TIME)"_s}));
    }
};

TEST_F(MishapTest, AKilledBrowser)
{
    const Ended ended = runWith([this] {
        const QList<qint64> browsers = run.browsers();
        ASSERT_EQ(browsers.size(), 1);
        ::kill(pid_t(browsers.first()), SIGKILL);
    });

    EXPECT_EQ(ended.err, u"scripts/a.js:4: The browser has closed or crashed\n"_s);
}

TEST_F(MishapTest, AClosedTab)
{
    write({openForm + "closeWindow('[Window]');\nlog(heading.title);\n", good});

    const Ended ended = runAll();

    expectOneOfTwo(ended);
    EXPECT_EQ(ended.err,
        u"scripts/a.js:4: Object reference deleted in browser already, please obtain a new reference using "
        "waitForObject or findObject\n"_s);
}

TEST_F(MishapTest, AKilledWorker)
{
    for (int signal : {SIGKILL, SIGSEGV}) {
        SCOPED_TRACE(signal);
        const Ended ended = runWith([&] {
            const QList<qint64> workers = run.workers();
            ASSERT_EQ(workers.size(), 1);
            ::kill(pid_t(workers.first()), signal);
        });

        EXPECT_EQ(ended.err, u"scripts/a.js:4: The script's process was ended by signal %1\n"_s.arg(signal));
        EXPECT_EQ(run.leftProcesses(), QStringList());
        EXPECT_EQ(run.leftFiles(), QStringList());
    }
}

TEST_F(MishapTest, APageThatAlertsInALoop)
{
    const QString page = run.write(
        u"alerts.html"_s, "<!DOCTYPE html><h1>x</h1><script>for (;;) { alert('again'); }</script>");
    write({"startBrowser('file://" + page.toUtf8() + "');\n", good});

    const Ended ended = runAll({u"--html"_s, u"report.html"_s});

    expectOneOfTwo(ended);
    EXPECT_EQ(ended.err,
        u"scripts/a.js:1: Could not open 'file://%1': The page is blocked by an alert: 'again'\n"_s.arg(
            page));
    EXPECT_EQ(read(u"report.html"_s).count(shownPage), 1);
}

TEST_F(MishapTest, ABrowserThatIsKilledWhileADialogIsOpen)
{
    const QString page = run.write(
        u"asks.html"_s, "<!DOCTYPE html><script>setTimeout(() => confirm('Sure?'), 500);</script>");
    write({"installEventHandler('ConfirmOpened', () => log('asked'));\nstartBrowser('file://" + page.toUtf8()
            + "');\nsnooze(600);\n",
        good});
    run.start(arguments({}));
    ASSERT_TRUE(run.waitForOutput(u"[1/2] asked"_s));
    const QList<qint64> browsers = run.browsers();
    ASSERT_EQ(browsers.size(), 1);

    ::kill(pid_t(browsers.first()), SIGKILL);

    const Ended ended = run.finish();
    expectOneOfTwo(ended);
    EXPECT_EQ(ended.err, u"scripts/a.js:3: The browser has closed or crashed\n"_s);
}

TEST_F(MishapTest, AScriptThatCannotBeRead)
{
    write({good, good});
    // A file that not even a superuser can read.
    const QString script = run.path(u"scripts/a.js"_s);
    ASSERT_TRUE(QFile::remove(script) && QFile::link(u"/proc/self/mem"_s, script));

    const Ended ended = runAll();

    expectOneOfTwo(ended);
    EXPECT_EQ(ended.err, u"scripts/a.js: Cannot read the script: Input/output error.\n"_s);
}

TEST_F(MishapTest, AScriptThatThrowsWhatIsNoError)
{
    write({"throw { code: 7 };\n", "var a = {};\na.a = a;\nthrow a;\n", "throw null;\n", "throw undefined;\n",
        "throw [1, 2];\n", "throw function f() { };\n", "throw Symbol('s');\n", good});

    const Ended ended = runAll();

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.err,
        u"scripts/a.js:1: {\"code\":7}\nscripts/b.js:3: [object Object]\nscripts/c.js:1: null\n"
        "scripts/d.js:1: undefined\nscripts/e.js:1: 1,2\nscripts/f.js:1: function f() { [native code] }\n"
        "scripts/g.js:1: Symbol(s)\n"_s);
    EXPECT_EQ(lines(ended.out).last(), u"8 scripts: 1 passed, 7 with errors (TIME)"_s);
}

TEST_F(MishapTest, APageThatNeverBecomesReady)
{
    QTcpServer silent; // takes the request and says nothing
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const QString address = u"http://127.0.0.1:%1/"_s.arg(silent.serverPort());
    write({"startBrowser('" + address.toUtf8() + "');\n", good});

    const Ended ended = runAll({u"--timeout"_s, u"3"_s});

    expectOneOfTwo(ended);
    EXPECT_EQ(ended.err, u"scripts/a.js:1: Could not open '%1': no answer within 3 s\n"_s.arg(address));
}

TEST_F(MishapTest, APageThatSpins)
{
    write({openForm + "activeDocument().getElementById('spinner').invoke('spin');\n", good});

    const Ended ended = runAll({u"--timeout"_s, u"3"_s});

    expectOneOfTwo(ended);
    EXPECT_EQ(
        ended.err, u"scripts/a.js:3: Error invoking function 'spin': The page did not answer within 3 s\n"_s);
}

TEST_F(MishapTest, AFullDiskUnderAScreenshot)
{
    ASSERT_TRUE(QFile::link(u"/dev/full"_s, run.path(u"full.png"_s)));
    write({openForm + "saveScreenshot('full.png');\n", good});

    const Ended ended = runAll();

    expectOneOfTwo(ended);
    EXPECT_EQ(
        ended.err, u"scripts/a.js:3: Cannot write the screenshot 'full.png': No space left on device.\n"_s);
}

// From here on: reports.

TEST_F(ManyScriptsTest, PicturesOnDemandAndActionsAreInTheReport)
{
    write({openForm
        + "section('Look', function () {\n    saveScreenshot('shop.jpg');\n});\n"
          "heading.setProperty('title', 'new');\nactiveDocument().getElementById('agree').checked = "
          "true;\n"});

    const Ended ended = runAll({u"--html"_s, u"report.html"_s});

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_TRUE(QFileInfo(run.path(u"shop.jpg"_s)).size() > 0);
    const QString page = read(u"report.html"_s);
    EXPECT_EQ(page.count(u"<img alt=\"shop.jpg\" src=\"data:image/png;base64,iVBOR"_s), 1);
    EXPECT_TRUE(page.contains(u"<code>HTML_Object.setProperty(&quot;title&quot;, &quot;new&quot;)</code>\n"
                              "<div class=\"place\">scripts/a.js:6 <code>heading.setProperty('title', "
                              "'new');</code></div>"_s));
    EXPECT_TRUE(page.contains(u"<code>HTML_CheckBox.checked = true</code>"_s));
}

TEST_F(ManyScriptsTest, AFailureIsReportedWithThePageAndItsSource)
{
    write({openForm
            + "section('The form', function () {\n    compare(heading.title, 'Something', 'the "
              "title');\n});\n"
            + "objectExists('nothing');\nheading.titel;\n",
        good});

    const Ended ended = runAll({u"--html"_s, u"report.html"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.err,
        u"scripts/a.js:4: Verification failed: the title (actual: What this is; expected: Something)\n"
        "scripts/a.js:7: HTML_Object has no property or method 'titel'.\n"_s);
    const QString page = read(u"report.html"_s);
    EXPECT_TRUE(page.contains(u"<code>startBrowser(&quot;http://127.0.0.1:"_s));
    EXPECT_TRUE(page.contains(u"<div class=\"place\">scripts/a.js:1 <code>startBrowser(serverAddress() + "
                              "'form.html');</code></div>"_s));
    EXPECT_TRUE(
        page.contains(u"<code>objectExists(&quot;nothing&quot;)</code>\n"
                      "<div class=\"place\">scripts/a.js:6 <code>objectExists('nothing');</code></div>"_s));
    EXPECT_TRUE(page.contains(u"<summary>The form</summary>\n<div class=\"place\">scripts/a.js:3 "_s));
    EXPECT_TRUE(
        page.contains(u"<dl><dt>actual</dt><dd>What this is</dd><dt>expected</dt><dd>Something</dd></dl>"_s));
    EXPECT_TRUE(page.contains(u"<p>HTML_Object has no property or method 'titel'.</p>\n"
                              "<div class=\"place\">scripts/a.js:7 <code>heading.titel;</code></div>"_s))
        << page.left(6000).toStdString();
    // At the failed verification and at the error.
    EXPECT_EQ(page.count(shownPage), 2);
    EXPECT_EQ(page.count(u"<summary>Object tree</summary>"_s), 2);
    EXPECT_TRUE(page.contains(u"<i>id</i>=<q>heading</q>"_s));
    QXmlStreamReader reader(page);
    while (!reader.atEnd())
        reader.readNext();
    EXPECT_EQ(reader.errorString(), QString());
}

TEST_F(ManyScriptsTest, AFullDiskIsSaidAndTheResultsAreNotLost)
{
    write({good, bad});

    const Ended ended = runAll({u"--html"_s, u"/dev/full"_s, u"--junit"_s, u"report.xml"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(lines(ended.out).last(), u"2 scripts: 1 passed, 1 with errors (TIME)"_s);
    EXPECT_EQ(ended.err,
        u"scripts/b.js:3: HTML_Object has no property or method 'titel'.\n"
        "pageprobe run: Cannot write the report '/dev/full': No space left on device.\n"_s);
    EXPECT_EQ(read(u"report.xml"_s).count(u"<testcase"_s), 2);
}

TEST_F(ManyScriptsTest, AReportThatCannotBeWrittenIsSaidBeforeAnythingRuns)
{
    write({good});

    const Ended ended = runAll({u"--junit"_s, u"nowhere/report.xml"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.out, QString());
    EXPECT_EQ(ended.err,
        u"pageprobe run: Cannot write the report 'nowhere/report.xml': No such file or directory.\n"_s);
}

TEST_F(ManyScriptsTest, KeepOpenTakesASingleScript)
{
    write({good, good});

    const Ended ended = runAll({u"--keep-open"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.err, u"pageprobe run: --keep-open takes a single script.\n"_s);
}

TEST_F(ManyScriptsTest, OnATerminalTheLastLineIsRewritten)
{
    write({"log('a');\n", "log('b');\n"});
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        const QByteArray folder = QFile::encodeName(run.path({}));
        qputenv("TMPDIR", folder + "/tmp");
        if (::chdir(folder.constData()) == 0)
            ::execl(PAGEPROBE_COMMAND, PAGEPROBE_COMMAND, "run", "scripts", nullptr);
        ::_exit(127);
    }
    ASSERT_GT(child, 0);
    QByteArray shown;
    char piece[4096];
    for (ssize_t size = 1; size > 0;) {
        size = ::read(terminal, piece, sizeof(piece));
        shown.append(piece, qMax<ssize_t>(0, size));
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    ::close(terminal);

    EXPECT_EQ(status, 0);
    const QString text = QString::fromUtf8(shown).remove(u'\r');
    const QString clear = u"\x1B[K"_s;
    EXPECT_EQ(lines(text).join(u'\n'),
        QStringList(
            {u""_s, u"[1/2] scripts/a.js"_s, u"[1/2] a\n"_s, u"[1/2] scripts/a.js"_s,
                u"[1/2] scripts/a.js: passed (TIME)\n"_s, u"[2/2] scripts/b.js"_s, u"[2/2] b\n"_s,
                u"[2/2] scripts/b.js"_s, u"[2/2] scripts/b.js: passed (TIME)\n2 scripts: 2 passed (TIME)"_s})
            .join(clear));
}

// How much memory a process has in use.
qint64 residentPages(qint64 process)
{
    QFile file(u"/proc/%1/statm"_s.arg(process));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
}

qsizetype openDescriptors(qint64 process)
{
    return QDir(u"/proc/%1/fd"_s.arg(process))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

// The long form, with more scripts, is bench/manyscripts.
TEST_F(ManyScriptsTest, ALongRunDoesNotGrow)
{
    constexpr int usualScripts = 20;
    const int asked = qEnvironmentVariableIntValue("PAGEPROBE_STRESS_SCRIPTS");
    const int scripts = asked > 0 ? asked : usualScripts;
    const int early = scripts / 5;
    for (int i = 0; i < scripts; ++i)
        run.write(u"scripts/%1.js"_s.arg(i, 4, 10, QChar(u'0')), good);
    run.start(arguments({u"--jobs"_s, u"2"_s}));
    const auto countEnded = [&] { return run.output().count(u"passed ("_s); };
    const int limitMs = scripts * 10000;

    ASSERT_TRUE(waitFor([&] { return countEnded() >= early; }, limitMs));
    const qint64 memoryEarly = residentPages(run.processId());
    const qsizetype descriptorsEarly = openDescriptors(run.processId());
    // The last two still run, so that the run is what it was then.
    ASSERT_TRUE(waitFor([&] { return countEnded() >= scripts - 2; }, limitMs));
    const qint64 memoryLate = residentPages(run.processId());
    const qsizetype descriptorsLate = openDescriptors(run.processId());
    EXPECT_LE(run.workers().size(), 2);
    const Ended ended = run.finish(limitMs);

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, QString());
    RecordProperty("pages of memory early and late",
        QStringLiteral("%1 %2").arg(memoryEarly).arg(memoryLate).toStdString());
    ASSERT_GT(memoryEarly, 0);
    EXPECT_LE(memoryLate, memoryEarly * 11 / 10);
    // A worker that starts or ends may have its pipes open or not.
    EXPECT_LE(descriptorsLate, descriptorsEarly + 8);
}

} // namespace
} // namespace Ostrel::Test
