// The command as users and CI servers run it: a process with arguments, environment, output, exit code and
// signals, which leaves neither a browser nor a profile behind.
#include "e2e/commandrun.h"
#include "host/channel/httpserver.h"
#include "support/printqt.h"
#include "support/scopedvariable.h"
#include "support/waitfor.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/wrapperconfig.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>

#include <csignal>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {
namespace {

const QString demoFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo");
const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/pages");

// A run that was interrupted must not take the time of what it was waiting for.
constexpr qint64 promptlyMs = 15000;

const QByteArray openForm = "startBrowser(serverAddress() + 'form.html');\n"
                            "var page = activeDocument(), heading = page.getElementById('heading');\n";

class RunTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(run.leftProcesses(), QStringList());
        EXPECT_EQ(run.leftFiles(), QStringList());
    }

    static void expectEnded(const Ended &ended, int exitCode, const QString &out, const QString &err)
    {
        EXPECT_EQ(ended.exitCode, exitCode);
        EXPECT_EQ(ended.out, out);
        EXPECT_EQ(ended.err, err);
    }

    CommandRun run;
};

TEST_F(RunTest, AShopIsSearchedAndSomethingIsBought)
{
    const Ended ended = run.runScript(R"(
        startBrowser(serverAddress());
        var shop = activeDocument();
        log(shop.getElementById('welcome').innerText);

        shop.getElementById('search').value = 'lamp';
        shop.getElementById('search-form').invoke('requestSubmit');
        log(shop.getElementById('goods-title').innerText);

        loadUrl(serverAddress() + 'product.html?id=pellow-mug');
        shop = activeDocument();
        log(shop.getElementById('name').innerText + ' costs ' + shop.getElementById('together').innerText);
        shop.getElementById('quantity').value = '2';
        shop.getElementById('add').click();
        log('in the cart: ' + shop.getElementById('cart-count').innerText);

        loadUrl(serverAddress() + 'cart.html');
        shop = activeDocument();
        log('rows: ' + shop.getElementsByTagName('tr').length);
        log('total: ' + shop.getElementById('total').innerText);
    )",
        demoFolder);

    expectEnded(ended, 0, uR"(Slow things for quick days.
1 thing for “lamp”
Pellow Mug costs €18.00
in the cart: 2
rows: 2
total: €40.90
)"_s,
        u""_s);
}

TEST_F(RunTest, ElementsAreFoundReadSetInvokedAndClicked)
{
    const Ended ended = run.runScript(openForm + R"(
        var list = page.getElementsByTagName('li');
        log([heading.className(), heading.tagName, heading.id, heading.title, heading.visible].join());
        log([list.length, list.at(0).innerText, list.at(2).innerText].join());
        log(page.getElementById('nowhere') === null);

        heading.setProperty('title', 'set by "us"');
        log(heading.property('title'));
        log(heading.invoke('join', "'a%1'", '2 + 3'));

        var agree = page.getElementById('agree');
        agree.checked = true;
        log(agree.checked);
        agree.click();
        log(agree.checked);

        page.getElementById('name').value = 'Ada & "Bob"';
        page.getElementById('colour').selectedOption = 'green';
        page.getElementById('send').click();
        log(heading.innerText);
        log(page.getElementById('colour').selectedOption);
        log(sameObject(heading, page.getElementsByTagName('h1').at(0)));
    )",
        pagesFolder);

    expectEnded(ended, 0, uR"(HTML_Object,H1,heading,What this is,true
3,one,three
true
set by "us"
heading+a%1+5
true
false
Thank you, Ada & "Bob"
green
true
)"_s,
        u""_s);
}

struct FailingScript
{
    const char *name;
    QByteArray script;
    QString out;
    QString err;
};

TEST_F(RunTest, AFailingScriptSaysWhatAndWhere)
{
    const FailingScript rows[] = {
        {"a call that the page answers with an exception",
            openForm
                + "function ask() {\n    heading.invoke('fail');\n}\nlog('before');\nask();\nlog('after');\n",
            u"before\n"_s,
            u"script.js:4: Error invoking function 'fail': Error: no \"way\" out\n"
            "    called from script (script.js:7)\n"_s},
        {"a syntax error", "log('never');\nlog('either'\n", u""_s,
            u"script.js:3: SyntaxError: Expected token `)'\n"_s},
        {"a value of its own", "log('before');\n\nthrow 'enough';\n", u"before\n"_s,
            u"script.js:3: enough\n"_s},
    };
    for (const FailingScript &row : rows) {
        SCOPED_TRACE(row.name);
        expectEnded(run.runScript(row.script, pagesFolder), 1, row.out, row.err);
    }
}

TEST_F(RunTest, AScriptCanCatchEveryError)
{
    QTcpServer unused;
    ASSERT_TRUE(unused.listen(QHostAddress::LocalHost));
    const QString refusing = u"http://127.0.0.1:%1/"_s.arg(unused.serverPort());
    unused.close();
    // No name has a part of more than 63 characters, so nobody is asked for it.
    const QString unknown = u"http://%1.test/"_s.arg(QString(64, u'x'));

    const Ended ended = run.runScript(openForm + R"(
        function attempt(statement) {
            try {
                log(statement());
            } catch (error) {
                log(error instanceof Error ? error.message : 'thrown: ' + error);
            }
        }
        attempt(() => heading.titel);
        attempt(() => { heading.title = 'x'; });
        attempt(() => page.getElementById());
        attempt(() => heading.evaluateXPath('//li['));
        attempt(() => serverAddress(1));
        attempt(() => saveScreenshot('/no/such/folder/picture.png'));
        attempt(() => snooze(-1));
        attempt(() => startBrowser(')"
            + refusing.toUtf8() + R"('));
        attempt(() => startBrowser(')"
            + unknown.toUtf8() + R"('));
        attempt(() => startBrowser('file:///no/such/file.html'));
        attempt(() => heading.title);
    )",
        pagesFolder);

    expectEnded(ended, 0, uR"(HTML_Object has no property or method 'titel'.
Cannot set read-only property title.
No overload fits the call HTML_Document.getElementById(). Expected: getElementById(String id).
Error evaluating xpath '//li[': XPath parse error Unexpected token in: //li[
No overload fits the call serverAddress(int). Expected: serverAddress().
Cannot write the screenshot '/no/such/folder/picture.png': No such file or directory.
Cannot wait for -1 seconds.
Could not open '%1': nothing answers at that address and port (net::ERR_CONNECTION_REFUSED)
Could not open '%2': the host name is not known (net::ERR_NAME_NOT_RESOLVED)
Could not open 'file:///no/such/file.html': there is no such file (net::ERR_FILE_NOT_FOUND)
Object reference deleted in browser already, please obtain a new reference using waitForObject or findObject
)"_s.arg(refusing, unknown),
        u""_s);
}

TEST_F(RunTest, ACallEndsAtTheLimitOfTheOption)
{
    const Ended ended = run.runScript(openForm + "page.getElementById('spinner').invoke('spin');\n",
        pagesFolder, {u"--timeout"_s, u"3.5"_s});

    expectEnded(ended, 1, u""_s,
        u"script.js:3: Error invoking function 'spin': The page did not answer within 3.5 s\n"_s);
}

// From here on: what is missing or broken around the script.

TEST_F(RunTest, AMissingScriptIsNamed)
{
    expectEnded(run.run({u"run"_s, u"nowhere.js"_s}), 2, u""_s,
        u"pageprobe run: there is no script 'nowhere.js'.\n"_s);
    expectEnded(
        run.run({u"run"_s, u"/"_s}), 2, u""_s, u"pageprobe run: there is no script in the folder '/'.\n"_s);
}

TEST_F(RunTest, AMissingBrowserIsNamed)
{
    expectEnded(run.runScript("log(1)", {}, {u"--browser-path"_s, u"/no/such/browser"_s}), 2, u""_s,
        u"pageprobe run: The browser '/no/such/browser' (given by option) is not there or cannot be run\n"_s);

    run.setVariable(u"PAGEPROBE_BROWSER"_s, u"/none/either"_s);
    expectEnded(run.runScript("log(1)"), 2, u""_s,
        u"pageprobe run: The browser '/none/either' (given by PAGEPROBE_BROWSER) is not there or cannot be "
        "run\n"_s);
}

TEST_F(RunTest, ABrowserThatDiesAtItsStartIsExplained)
{
    const QString browser = run.write(u"browser"_s, "#!/bin/sh\necho 'no display' >&2\nexit 3\n");
    ASSERT_TRUE(QFile::setPermissions(browser, QFile::ReadOwner | QFile::ExeOwner));

    expectEnded(run.runScript("log(1)", {}, {u"--browser-path"_s, browser}), 2, u""_s,
        u"pageprobe run: The browser '%1' ended while it was starting: its exit code was 3; its last words:\n"
        "no display\n"_s.arg(browser));
}

TEST_F(RunTest, AMissingServedFolderIsNamed)
{
    expectEnded(run.runScript("log(1)", u"/no/such/folder"_s), 2, u""_s,
        u"pageprobe run: Cannot serve the folder '/no/such/folder'.\n"_s);
}

TEST_F(RunTest, AnExtensionScriptThatDoesNotLoadStopsTheRun)
{
    run.write(u"prefix/lib/extensions/web/broken.js"_s, "function (");
    expectEnded(run.runScript("log(1)"), 2, u""_s,
        u"pageprobe run: Could not bring the payload into the page: SyntaxError: Function "
        "statements require a function name\n"_s);

    run.write(u"prefix/lib/extensions/web/broken.js"_s, "throw new Error('not today');");
    expectEnded(run.runScript("log(1)"), 2, u""_s,
        u"pageprobe run: Could not bring the payload into the page: Error: not today\n"_s);
}

TEST_F(RunTest, AnExtensionScriptJoinsThePayload)
{
    run.write(u"prefix/lib/extensions/web/own.js"_s, "window.ownExtension = typeof Ostrel;");

    expectEnded(run.runScript("startBrowser(serverAddress() + 'form.html');\n"
                              "log(activeDocument().evaluateXPath('string(//h1)').stringValue);\n"
                              "log(activeDocument().getElementById('heading').property("
                              "'ownerDocument.defaultView.ownExtension'));\n",
                    pagesFolder),
        0, u"Nothing yet\nobject\n"_s, u""_s);
}

// From here on: signals and lost browsers.

// Serves the pages as the command would, and knows when a page has begun to spin.
class SpinningServer
{
public:
    SpinningServer() : m_server([this](const Host::HttpRequest &request) { return respond(request); })
    {
        EXPECT_TRUE(m_server.listen());
    }
    QByteArray address() const { return "http://127.0.0.1:" + QByteArray::number(m_server.port()) + '/'; }

    /// A script that calls a function of the page which never returns.
    QByteArray script() const
    {
        return "startBrowser('" + address()
            + "form.html');\n"
              "var spinner = activeDocument().getElementById('spinner');\n"
              "spinner.invoke('spin');\n";
    }
    bool waitForSpinning()
    {
        return waitFor([this] { return m_spinning; }, CommandRun::defaultLimitMs);
    }

private:
    Host::HttpResponse respond(const Host::HttpRequest &request)
    {
        Host::HttpResponse response;
        m_spinning = m_spinning || request.path() == "/spinning";
        QFile file(pagesFolder + QString::fromUtf8(request.path()));
        if (!file.open(QIODevice::ReadOnly))
            return response;
        response.contentType = "text/html; charset=utf-8";
        response.body = file.readAll();
        return response;
    }

    bool m_spinning = false;
    Host::HttpServer m_server;
};

TEST_F(RunTest, ABrowserThatIsKilledDuringACallEndsTheScript)
{
    SpinningServer server;
    run.startScript(server.script());
    ASSERT_TRUE(server.waitForSpinning());
    const QList<qint64> browsers = run.browsers();
    ASSERT_EQ(browsers.size(), 1);
    QElapsedTimer elapsed;
    elapsed.start();

    ::kill(pid_t(browsers.first()), SIGKILL);

    expectEnded(run.finish(), 1, u""_s,
        u"script.js:3: Error invoking function 'spin': The browser has closed or crashed\n"_s);
    EXPECT_LT(elapsed.elapsed(), promptlyMs);
}

TEST_F(RunTest, AnInterruptEndsACallIntoThePage)
{
    for (int signal : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(signal);
        SpinningServer server;
        run.startScript(server.script());
        ASSERT_TRUE(server.waitForSpinning());
        QElapsedTimer elapsed;
        elapsed.start();

        ::kill(pid_t(run.processId()), signal);

        expectEnded(run.finish(), 1, u""_s, u"script.js:3: The script was interrupted.\n"_s);
        EXPECT_LT(elapsed.elapsed(), promptlyMs);
    }
}

TEST_F(RunTest, AnInterruptEndsALongScript)
{
    struct Row
    {
        QByteArray longOne;
        QString place;
    };
    for (const Row &row : {Row{"while (true) { }", u"script.js"_s}, {"snooze(600);", u"script.js:2"_s}}) {
        SCOPED_TRACE(row.longOne.toStdString());
        run.startScript("log('begun');\n" + row.longOne + '\n');
        ASSERT_TRUE(run.waitForOutput(u"begun\n"_s));
        QElapsedTimer elapsed;
        elapsed.start();

        ::kill(pid_t(run.processId()), SIGINT);

        expectEnded(run.finish(), 1, u"begun\n"_s, row.place + u": The script was interrupted.\n"_s);
        EXPECT_LT(elapsed.elapsed(), promptlyMs);
    }
}

TEST_F(RunTest, AnInterruptDuringTheStartOfTheBrowserLeavesNothing)
{
    run.startScript("log('begun');");
    ASSERT_TRUE(waitFor([&] { return !run.browsers().isEmpty(); }));

    ::kill(pid_t(run.processId()), SIGINT);

    expectEnded(run.finish(), 1, u""_s, u"script.js: The script was interrupted.\n"_s);
}

// From here on: settings and what needs no browser.

struct SettingsFault
{
    const char *name;
    QByteArray content;
    QString warning; ///< with the file's path at %1
    QString stillRead; ///< a line of the output
};

TEST_F(RunTest, EachFaultOfASettingsFileIsAWarning)
{
    const SettingsFault rows[] = {
        {"an entry above any group", "ProxyStartBrowser = 0\n[General]\nProxyDebugOutput = 1\n",
            u"Ostrel::Settings::parse: in file %1: line `ProxyStartBrowser = 0' not in a group\n"_s,
            u"ProxyDebugOutput = false (default)\n"_s},
        {"a line that is no entry", "[General]\nProxyDebugOutput = 1\nno entry\nProxyStartBrowser = 0\n",
            u"Ostrel::Settings::parse: in file %1: corrupted line `no entry' in group `General'\n"_s,
            u"ProxyStartBrowser = true (default)\n"_s},
        {"a text without quotes", "[General]\nProxyListenAddress = localhost:9000\nProxyDebugOutput = 1\n",
            u"Ostrel::Settings: entry is not a string in %1\n"_s, u"ProxyDebugOutput = true (user file)\n"_s},
        {"two texts", "[General]\nProxyListenAddress = \"a\" \"b\"\n",
            u"Ostrel::Settings: entry is not a string in %1\n"_s,
            u"ProxyListenAddress = localhost:8001 (default)\n"_s},
        {"a text that is not closed", "[General]\nProxyListenAddress = \"localhost\n",
            u"Ostrel::Settings: string not delimited by quotes in %1\n"_s,
            u"ProxyListenAddress = localhost:8001 (default)\n"_s},
        {"an unknown escape", "[General]\nProxyListenAddress = \"a\\qb\"\n",
            u"Ostrel::Settings: unknown quoted character 'q' (0x71) in %1\n"_s,
            u"ProxyListenAddress = localhost:8001 (default)\n"_s},
        {"an unknown escape beyond Latin-1", "[General]\nProxyListenAddress = \"\\\u03A9\"\n",
            u"Ostrel::Settings: unknown quoted character with hex code 0x3a9 in %1\n"_s,
            u"ProxyListenAddress = localhost:8001 (default)\n"_s},
    };
    for (const SettingsFault &row : rows) {
        SCOPED_TRACE(row.name);
        const QString file = run.write(CommandRun::userSettings(), row.content);

        const Ended ended = run.run({u"config"_s});

        EXPECT_EQ(ended.exitCode, 0);
        EXPECT_EQ(ended.err, row.warning.arg(file));
        EXPECT_TRUE(ended.out.contains(row.stillRead)) << ended.out.toStdString();
    }
}

TEST_F(RunTest, AScriptRunsInSpiteOfFaultySettings)
{
    const QString globalFile = run.write(CommandRun::globalSettings(), "HookNewWindows = 1\n");
    // Not even a superuser can read a folder as a file.
    run.write(CommandRun::userSettings() + u"/in-the-way"_s, "");

    expectEnded(run.runScript("log('goes on');"), 0, u"goes on\n"_s,
        u"Ostrel::Settings::parse: in file %1: line `HookNewWindows = 1' not in a group\n"
        "Ostrel::Settings::parse: could not open file `%2' for reading\n"_s.arg(
            globalFile, run.path(CommandRun::userSettings())));
}

TEST_F(RunTest, ConfigTellsEachValueAndItsSource)
{
    const QString globalFile = run.write(CommandRun::globalSettings(),
        "[General]\nInternetExplorerReadyStateTimeout = 1000\nProxyListenAddress = \"global:1\"\n"
        "OpenFirefoxWithConsole = TRUE\nHookNewWindows = 0\n");
    const QString userFile = run.write(CommandRun::userSettings(),
        "[General]\nInternetExplorerReadyStateTimeout = 2000\nProxyListenAddress = user:2\n"
        "DynamicTextNodeFilter = false\n");
    run.setVariable(u"OSTREL_WEB_NEWWINDOWHOOK"_s, u"1"_s);

    expectEnded(run.run({u"config"_s}), 0, uR"(# global file: %1
# user file: %2
EnableObjectInfoOverlay = false (default)
DynamicTextNodeFilter = false (user file)
ProxyListenAddress = global:1 (global file)
ProxyConnectAddress = localhost:8000 (default)
ProxyStartBrowser = true (default)
ProxyDebugOutput = false (default)
ProxyImplicitStart = true (default)
HookNewWindows = true (environment)
DebugJavaScriptExecution = false (default)
CaseInsensitiveXPathNodeNameMatching = true (default)
BackwardsCompatibleVisiblePropertyForHTML_Object = false (default)
InternetExplorerReadyStateTimeout = 2000 (user file)
OpenFirefoxWithConsole = true (global file)
ImprovedTabAndWindowSupport = true (default)
SupportSinglePropertyNaming = false (default)
ThrowErrorOnUnknownContextNames = true (default)
EnableBrowserDebugging = false (default)
ChromeDriverForChromiumBasedApps = chromedriver (default)
IncludeIdPropertyInGeneratedNames = true (default)
UseSessionStorageForEvents = false (default)
)"_s.arg(globalFile, userFile),
        u"Ostrel::Settings: entry is not a string in %1\n"_s.arg(userFile));
}

TEST_F(RunTest, PayloadPrintsWhatTheLibraryGives)
{
    run.write(u"prefix/lib/extensions/web/own.js"_s, "window.own = '\u20AC';\n");
    const ScopedVariable prefix("OSTREL_PREFIX", run.path(u"prefix"_s));
    WebWrapper::MemoryBasedConfig config;

    EXPECT_TRUE(run.run({u"payload"_s}).out == WebWrapper::getJSCode(config));
    expectEnded(
        run.run({u"payload"_s, u"--namespace"_s}), 0, WebWrapper::getOstrelJsNamespaceInitCode(), u""_s);

    run.write(CommandRun::userSettings(), "[General]\nCaseInsensitiveXPathNodeNameMatching = 0\n");
    config.setCaseInsensitiveXPathNodeNameMatching(false);
    const Ended ended = run.run({u"payload"_s});
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, QString());
    EXPECT_TRUE(ended.out == WebWrapper::getJSCode(config));
    EXPECT_EQ(ended.out.section(u'\n', -1), u"top.__ostrel__xpath__caseInSensitiveMatching = 0;"_s);
}

TEST_F(RunTest, EveryCommandExplainsItself)
{
    const Ended overview = run.run({u"--help"_s});
    EXPECT_EQ(overview.exitCode, 0);
    EXPECT_EQ(overview.err, QString());
    const QRegularExpression row(u"^  ([a-z]+) +(.+)$"_s, QRegularExpression::MultilineOption);
    QStringList commands;
    auto found = row.globalMatch(overview.out.section(u"Subcommands:"_s, 1));
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        SCOPED_TRACE(match.captured(1).toStdString());
        commands.append(match.captured(1));

        const Ended help = run.run({match.captured(1), u"--help"_s});

        EXPECT_EQ(help.exitCode, 0);
        EXPECT_EQ(help.err, QString());
        EXPECT_EQ(help.out.section(u'\n', 0, 0), match.captured(2));
        EXPECT_TRUE(help.out.contains(u"pageprobe %1 [OPTIONS]"_s.arg(match.captured(1))));
        EXPECT_TRUE(help.out.contains(u"-h,--help"_s));
    }
    for (const QString &command : {u"run"_s, u"payload"_s, u"config"_s})
        EXPECT_TRUE(commands.contains(command)) << command.toStdString();
}

TEST_F(RunTest, WrongUsageIsRefused)
{
    const QList<QStringList> rows{
        {},
        {u"walk"_s},
        {u"--unknown"_s},
        {u"run"_s},
        {u"run"_s, u"a.js"_s, u"--jobs"_s, u"0"_s},
        {u"run"_s, u"a.js"_s, u"--retries"_s, u"-1"_s},
        {u"run"_s, u"a.js"_s, u"--script-timeout"_s, u"0"_s},
        {u"run"_s, u"a.js"_s, u"--run-timeout"_s, u"never"_s},
        {u"run"_s, u"a.js"_s, u"--unknown"_s},
        {u"run"_s, u"a.js"_s, u"--timeout"_s},
        {u"run"_s, u"a.js"_s, u"--timeout"_s, u"0"_s},
        {u"run"_s, u"a.js"_s, u"--timeout"_s, u"soon"_s},
        {u"payload"_s, u"superfluous"_s},
        {u"config"_s, u"--namespace"_s},
    };
    for (const QStringList &arguments : rows) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());

        const Ended ended = run.run(arguments);

        EXPECT_EQ(ended.exitCode, 2);
        EXPECT_EQ(ended.out, QString());
        EXPECT_TRUE(ended.err.endsWith(u"\nRun with --help for more information.\n"_s))
            << ended.err.toStdString();
    }
}

} // namespace
} // namespace Ostrel::Test
