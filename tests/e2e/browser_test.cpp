// A real browser behind BrowserPage: values, errors, limits, dialogs, crashes, injection and the page
// channel.
#include "host/browser/browser.h"
#include "host/browser/evaluation.h"
#include "host/browser/listfolding.h"
#include "host/channel/fetchcarrier.h"
#include "host/channel/loopbackcarrier.h"
#include "host/channel/pagechannel.h"
#include "host/staticserver.h"
#include "support/printqt.h"
#include "support/waitfor.h"
#include "wrappers/web/wrapperconfig.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;

namespace Ostrel::Host {
namespace {

const QByteArray strictPolicy
    = "Content-Security-Policy: default-src 'self'; require-trusted-types-for 'script'\r\n";

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(content);
}

// The living processes (not the dead ones that nobody has waited for) whose command line holds `text`.
QStringList processesWith(const QString &text)
{
    QStringList found;
    const QStringList ids = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    for (const QString &id : ids) {
        QFile commandLine(u"/proc/%1/cmdline"_s.arg(id));
        if (commandLine.open(QIODevice::ReadOnly) && commandLine.readAll().contains(text.toUtf8()))
            found.append(id);
    }
    return found;
}

// The pages of the tests, served on the loopback address, and one browser for all tests of the suite that
// need nothing special. A test that kills its browser starts one of its own.
class BrowserTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        auto started = Browser::start({});
        ASSERT_FALSE(started.failed()) << started.error.toStdString();
        browser = std::move(started.value);
    }
    static void TearDownTestSuite() { browser.reset(); }

    void SetUp() override
    {
        ASSERT_TRUE(browser);
        serve(u"blank.html"_s, "<!DOCTYPE html><title>blank</title><body></body>");
        auto opened = browser->openPage();
        ASSERT_FALSE(opened.failed()) << opened.error.toStdString();
        page = opened.value;
    }
    void TearDown() override
    {
        if (page && page->isPageAvailable()) {
            EXPECT_EQ(page->close().error, QString());
        }
    }

    void serve(const QString &name, const QByteArray &content)
    {
        ASSERT_TRUE(QDir(files.path()).mkpath(QFileInfo(name).path()));
        writeFile(files.filePath(name), content);
    }
    void open(const QString &name) { ASSERT_EQ(page->navigate(server.url(name)).error, QString()); }

    // The value as text, or the flags and the message.
    static QString evaluate(const BrowserPage *in, const QString &script, unsigned int limitMs = 0)
    {
        const auto evaluated = in->evaluateJavaScript(script, limitMs);
        if (evaluated.failed || evaluated.threw)
            return u"%1%2: %3"_s.arg(evaluated.failed ? u"failed"_s : QString(),
                evaluated.threw ? u" threw"_s : QString(), evaluated.result);
        return evaluated.result;
    }
    QString evaluate(const QString &script, unsigned int limitMs = 0)
    {
        return evaluate(page, script, limitMs);
    }

    static std::unique_ptr<Browser> browser;
    QTemporaryDir files;
    StaticServer server{files.path()};
    BrowserPage *page = nullptr;
};

std::unique_ptr<Browser> BrowserTest::browser;

struct ValueRow
{
    const char *name;
    QString script;
    QString expected;
};

TEST_F(BrowserTest, GivesEveryKindOfValueAsText)
{
    const QList<ValueRow> rows{
        {"undefined", u"undefined"_s, u"undefined"_s},
        {"null", u"null"_s, u"null"_s},
        {"no script at all", u""_s, u"undefined"_s},
        {"a statement without value", u"var a = 1;"_s, u"undefined"_s},
        {"true", u"1 === 1"_s, u"true"_s},
        {"an integer", u"6 * 7"_s, u"42"_s},
        {"minus zero", u"-0"_s, u"0"_s},
        {"a fraction", u"0.1 + 0.2"_s, u"0.30000000000000004"_s},
        {"a huge number", u"1e21"_s, u"1e+21"_s},
        {"not a number", u"0 / 0"_s, u"NaN"_s},
        {"infinity", u"-1 / 0"_s, u"-Infinity"_s},
        {"a long integer", u"12345678901234567890n"_s, u"12345678901234567890"_s},
        {"a text", u"'a' + \"b\""_s, u"ab"_s},
        {"an empty text", u"''"_s, u""_s},
        {"an object", u"({a: 1})"_s, u"[object Object]"_s},
        {"an object with a text of its own", u"({toString: function() { return 'mine'; }})"_s, u"mine"_s},
        {"an object with a number of its own",
            u"({valueOf: function() { return 5; }, toString: function() { return 'text'; }})"_s, u"text"_s},
        {"an array", u"[1, [2, 3], null]"_s, u"1,2,3,"_s},
        {"a function", u"(function f(a) { return a; })"_s, u"function f(a) { return a; }"_s},
        {"an element", u"document.body"_s, u"[object HTMLBodyElement]"_s},
        {"a symbol", u"Symbol('s')"_s, u"Symbol(s)"_s},
        {"the value of the last statement", u"var b = 2; if (b) { b + 1; }"_s, u"3"_s},
        {"a block, not an object", u"{ a: 1 }"_s, u"1"_s},
        {"the top window as this", u"this === window.top"_s, u"true"_s},
    };
    open(u"blank.html"_s);

    for (const ValueRow &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(evaluate(row.script), row.expected);
    }
}

TEST_F(BrowserTest, KeepsWhatAScriptDefines)
{
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"function twice(n) { return 2 * n; } var three = 3;"_s), u"undefined"_s);
    EXPECT_EQ(evaluate(u"twice(three)"_s), u"6"_s);
    EXPECT_EQ(evaluate(u"let own = 1; own"_s), u"1"_s);
    EXPECT_EQ(evaluate(u"let own = 2; own"_s), u"2"_s) << "a second script may use the same name";
}

TEST_F(BrowserTest, SetsBothFlagsOnAnException)
{
    const QList<ValueRow> rows{
        {"an error", u"throw new TypeError('broken')"_s, u"failed threw: TypeError: broken"_s},
        {"a text", u"throw 'plain'"_s, u"failed threw: plain"_s},
        {"nothing", u"throw undefined"_s, u"failed threw: undefined"_s},
        {"an empty text", u"throw ''"_s, u"failed threw: The script raised an exception without a text"_s},
        {"a name that is not there", u"noSuchName"_s,
            u"failed threw: ReferenceError: noSuchName is not defined"_s},
        {"no valid script", u"1 +"_s, u"failed threw: SyntaxError: Unexpected end of input"_s},
        {"a value without a text", u"Object.create(null)"_s,
            u"failed threw: TypeError: Cannot convert object to primitive value"_s},
        {"a text that throws", u"({toString: function() { throw new Error('no text'); }})"_s,
            u"failed threw: Error: no text"_s},
        {"an exception without a text", u"throw Object.create(null)"_s,
            u"failed threw: TypeError: Cannot convert object to primitive value"_s},
        {"too deep a recursion", u"(function f() { f(); })()"_s,
            u"failed threw: RangeError: Maximum call stack size exceeded"_s},
    };
    open(u"blank.html"_s);

    for (const ValueRow &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(evaluate(row.script), row.expected);
    }
}

TEST_F(BrowserTest, CarriesEveryTextBothWays)
{
    const QString nul(QChar::Null);
    const QList<ValueRow> rows{
        {"quotes and backslashes", u"\"'\\\\n\\"_s, {}},
        {"line breaks", u"a\nb\r\nc\rd"_s, {}},
        {"the line ends of Unicode", u"\u2028\u2029"_s, {}},
        {"a NUL", u"a%1b"_s.arg(nul), {}},
        {"control characters", u"\u0001\u001f\u007f\u0085"_s, {}},
        {"a character outside the basic plane", u"\U0001F600"_s, {}},
        {"a lone high surrogate", QString(QChar(0xD83D)) + u'x', {}},
        {"a lone low surrogate", u'x' + QString(QChar(0xDE00)), {}},
        {"surrogates the wrong way round", QString(QChar(0xDE00)) + QChar(0xD83D), {}},
        {"placeholders", u"%1 %2 %n"_s, {}},
        {"the end of a script element", u"</script><!-- -->"_s, {}},
    };
    open(u"blank.html"_s);

    for (const ValueRow &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(evaluate(scriptLiteral(row.script)), row.script);
        EXPECT_EQ(evaluate(scriptLiteral(row.script) + u".length"_s), QString::number(row.script.size()));
    }
}

TEST_F(BrowserTest, CarriesTenMegabytesBothWays)
{
    const QString large = u"0123456789abcde\u20AC"_s.repeated(640 * 1024);
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(scriptLiteral(large)), large);
}

// A long value comes in parts of a million units, which end before or behind a character.
TEST_F(BrowserTest, FetchesValuesOfAnyLength)
{
    constexpr qsizetype part = 1024 * 1024;
    open(u"blank.html"_s);

    for (const qsizetype before : {part - 2, part - 1, part, 2 * part - 1}) {
        for (const qsizetype after : {qsizetype(0), qsizetype(1), part - 2, part - 1, part}) {
            const QString expected = QString(before, u'a') + u"\U0001F600"_s + QString(after, u'b');
            EXPECT_TRUE(evaluate(u"'a'.repeat(%1) + '\\u{1F600}' + 'b'.repeat(%2)"_s.arg(before).arg(after))
                == expected)
                << before << " and " << after;
        }
    }
    EXPECT_EQ(evaluate(u"Object.keys(window.__ostrel__longValues).length"_s), u"0"_s);
    EXPECT_EQ(
        evaluate(u"throw 'a'.repeat(%1)"_s.arg(part + 1)).size(), part + 1 + u"failed threw: "_s.size());
    EXPECT_EQ(evaluate(u"String.prototype.slice = null; 'a'.repeat(%1)"_s.arg(part + 1)),
        u"failed: A part of the value has not arrived"_s);
}

// A long script goes to the page in parts of a million units. The browser itself takes no message of 100 MB.
TEST_F(BrowserTest, EvaluatesScriptsOfAnyLength)
{
    constexpr qsizetype part = 1024 * 1024;
    constexpr qsizetype longest = 110 * 1000 * 1000;
    open(u"blank.html"_s);

    const QString atTheCut = u"'"_s + QString(part - 2, u'a') + u"\U0001F600\\n\"'"_s;
    EXPECT_EQ(evaluate(atTheCut + u".codePointAt(%1)"_s.arg(part - 2)), QString::number(0x1F600));
    EXPECT_EQ(evaluate(atTheCut + u".length"_s), QString::number(part + 2));
    EXPECT_EQ(evaluate(u"throw 'late' //"_s + QString(part, u'x')), u"failed threw: late"_s);
    EXPECT_EQ(evaluate(u"1 + 1 //"_s + QString(longest, u'x')), u"2"_s);
    EXPECT_EQ(evaluate(u"Object.keys(window).filter(name => name.endsWith('Parts')).length"_s), u"0"_s);
}

// A long list of like elements goes to the page in a shorter form, which nobody can tell from the result.
TEST_F(BrowserTest, EvaluatesLongListsOfLikeElements)
{
    open(u"blank.html"_s);
    ASSERT_EQ(evaluate(u"store = []; for (let i = 0; i < 3000; ++i) store[i] = { text: 'item ' + i }; 0"_s),
        u"0"_s);
    QStringList read;
    QStringList expected;
    for (int i = 0; i < 3000; ++i) {
        read.append(
            u"{ at: function() { return store[%1].text.replace( /item /, '' ); }, 'mine': this === window, "
            "of: [[%1], '[1]'.length] }"_s.arg(i));
        expected.append(u"%1 true %1 3"_s.arg(i));
    }
    const QString list = read.join(u',');
    ASSERT_EQ(
        evaluate(
            u"function texts(list) { return list.map(item => [item.at(), item.mine, ...item.of].join(' ')); "
            "} 0"_s),
        u"0"_s);

    const QString call = u"JSON.stringify( texts( [%1] ) )"_s.arg(list);
    ASSERT_TRUE(foldedList(call).has_value());
    EXPECT_EQ(evaluate(call), u"[\""_s + expected.join(u"\",\""_s) + u"\"]"_s);
    EXPECT_EQ(evaluate(u"texts( [%1,store[3000].text] )"_s.arg(list)),
        u"failed threw: TypeError: Cannot read properties of undefined (reading 'text')"_s);
    EXPECT_EQ(evaluate(u"texts( [%1,a b] )"_s.arg(list)),
        u"failed threw: SyntaxError: Unexpected identifier 'b'"_s);
}

TEST_F(BrowserTest, EndsAScriptThatRunsForeverAndGoesOn)
{
    open(u"blank.html"_s);
    QElapsedTimer elapsed;
    elapsed.start();

    EXPECT_EQ(evaluate(u"while (true) {}"_s, 500), u"failed: The page did not answer within 0.5 s"_s);

    EXPECT_LT(elapsed.elapsed(), 5000);
    EXPECT_EQ(evaluate(u"1 + 1"_s), u"2"_s);
}

TEST_F(BrowserTest, AScriptCannotCatchTheEndOfItsTime)
{
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"for (;;) { try { for (;;) {} } catch (e) {} finally { for (;;) {} } }"_s, 300),
        u"failed: The page did not answer within 0.3 s"_s);
    EXPECT_EQ(evaluate(u"1 + 1"_s), u"2"_s);
}

TEST_F(BrowserTest, TheDefaultLimitCanBeSet)
{
    open(u"blank.html"_s);
    page->setDefaultLimit(200);

    EXPECT_EQ(evaluate(u"while (true) {}"_s), u"failed: The page did not answer within 0.2 s"_s);
}

TEST_F(BrowserTest, WorksOnAPageWithAStrictPolicy)
{
    server.setExtraHeaders(strictPolicy);
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"'a' + 1"_s), u"a1"_s);
}

TEST_F(BrowserTest, DoesNotDependOnNamesThatThePageHasReplaced)
{
    serve(u"hostile.html"_s, R"(<!DOCTYPE html><script>
        String = JSON = Symbol = Error = Object = undefined;
        Array.prototype.toString = function () { return 'mine'; };
        Object = { prototype: null };
        </script>)");
    open(u"hostile.html"_s);

    EXPECT_EQ(evaluate(u"1 + 1"_s), u"2"_s);
    EXPECT_EQ(evaluate(u"noSuchName"_s), u"failed threw: ReferenceError: noSuchName is not defined"_s);
}

TEST_F(BrowserTest, APageWithoutEvalGivesAnError)
{
    serve(u"noeval.html"_s, "<!DOCTYPE html><script>window.eval = undefined;</script>");
    serve(u"hiddeneval.html"_s, "<!DOCTYPE html><script>window.eval = function () { for (;;) {} };</script>");

    open(u"noeval.html"_s);
    EXPECT_EQ(evaluate(u"1 + 1"_s), u"failed threw: TypeError: (0 , eval) is not a function"_s);
    open(u"hiddeneval.html"_s);
    EXPECT_EQ(evaluate(u"1 + 1"_s, 300), u"failed: The page did not answer within 0.3 s"_s);
}

TEST_F(BrowserTest, ReportsAPageThatWasClosedDuringTheCall)
{
    open(u"blank.html"_s);
    QTimer::singleShot(100, page, [&] {
        page->connection()->send({}, u"Target.closeTarget"_s, {{u"targetId"_s, page->targetId()}});
    });

    EXPECT_EQ(evaluate(u"while (true) {}"_s, 10000), u"failed: The page was closed or has crashed"_s);
    EXPECT_FALSE(page->isPageAvailable());
    EXPECT_EQ(evaluate(u"1"_s), u"failed: The page was closed or has crashed"_s);
}

TEST_F(BrowserTest, ReportsAPageThatCrashedAndCanOpenTheNext)
{
    open(u"blank.html"_s);
    QTimer::singleShot(100, page, [&] { page->connection()->send(page->sessionId(), u"Page.crash"_s); });

    EXPECT_EQ(evaluate(u"while (true) {}"_s, 10000), u"failed: The page was closed or has crashed"_s);
    EXPECT_FALSE(page->isPageAvailable());
    open(u"blank.html"_s);
    EXPECT_TRUE(page->isPageAvailable());
    EXPECT_EQ(evaluate(u"document.title"_s), u"blank"_s);
}

TEST_F(BrowserTest, ReportsANavigationUnderTheCall)
{
    open(u"blank.html"_s);
    page->connection()->send(page->sessionId(), u"Page.navigate"_s, {{u"url"_s, u"about:blank?next"_s}});
    const QString state = evaluate(u"location.href"_s);

    // Either document may be asked, but the answer is always one of the three.
    EXPECT_TRUE(state == u"failed: The page navigated away while the script was running"
        || state == server.url(u"blank.html"_s) || state == u"about:blank?next")
        << state.toStdString();
}

TEST_F(BrowserTest, AScriptThatNavigatesGetsItsValueAndTheDocumentGoes)
{
    serve(u"second.html"_s, "<!DOCTYPE html><title>second</title>");
    open(u"blank.html"_s);
    QStringList gone;
    QObject scope;
    QObject::connect(
        page, &BrowserPage::documentGone, &scope, [&](const QString &address) { gone.append(address); });

    EXPECT_EQ(evaluate(u"location.href = 'second.html'; 'on its way'"_s), u"on its way"_s);

    ASSERT_TRUE(waitFor([&] { return !gone.isEmpty(); }));
    EXPECT_EQ(gone, QStringList{server.url(u"second.html"_s)});
    EXPECT_TRUE(waitFor([&] { return evaluate(u"document.title"_s) == u"second"; }));
}

TEST_F(BrowserTest, ADialogEndsTheCallAndIsDismissed)
{
    const QList<ValueRow> rows{
        {"alert", u"alert('stop \"here\"'); 1"_s,
            u"failed: The page is blocked by an alert: 'stop \"here\"'"_s},
        {"confirm", u"confirm('sure?')"_s, u"failed: The page is blocked by a confirm: 'sure?'"_s},
        {"prompt", u"prompt('who?', 'me')"_s, u"failed: The page is blocked by a prompt: 'who?'"_s},
    };
    open(u"blank.html"_s);

    for (const ValueRow &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(evaluate(row.script), row.expected);
        EXPECT_EQ(evaluate(u"'usable'"_s), u"usable"_s);
    }
}

TEST_F(BrowserTest, ADialogBetweenCallsIsReportedOnce)
{
    open(u"blank.html"_s);
    EXPECT_EQ(
        evaluate(
            u"window.answer = 'none'; setTimeout(function() { window.answer = confirm('late'); }, 10); 1"_s),
        u"1"_s);
    ASSERT_TRUE(waitFor([&] { return page->openDialog().has_value(); }));

    EXPECT_EQ(evaluate(u"1"_s), u"failed: The page is blocked by a confirm: 'late'"_s);

    EXPECT_EQ(evaluate(u"window.answer"_s), u"false"_s);
}

class AcceptingPolicy : public DialogPolicy
{
public:
    std::optional<DialogAnswer> opened(const Dialog &dialog) override
    {
        messages.append(dialog.message);
        return DialogAnswer{true, u"typed"_s};
    }
    QStringList messages;
};

TEST_F(BrowserTest, APolicyAnswersDialogsSoThatTheCallGoesOn)
{
    open(u"blank.html"_s);
    auto policy = std::make_shared<AcceptingPolicy>();
    page->setDialogPolicy(policy);

    EXPECT_EQ(evaluate(u"alert('a'); [confirm('b'), prompt('c', 'd')].join()"_s), u"true,typed"_s);
    EXPECT_EQ(policy->messages, (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

TEST_F(BrowserTest, APageThatAsksBeforeItIsLeftIsLeft)
{
    serve(u"asks.html"_s,
        "<!DOCTYPE html><script>window.onbeforeunload = function (e) { e.preventDefault(); return 'stay'; "
        "}</script>");
    open(u"asks.html"_s);

    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"document.title"_s), u"blank"_s);
}

TEST_F(BrowserTest, RefusesToEvaluateWhileThePageWaitsForTheHost)
{
    open(u"blank.html"_s);
    {
        const BrowserPage::Refusal refusal(*page, u"The page waits for an answer of the host"_s);
        EXPECT_EQ(evaluate(u"1"_s), u"failed: The page waits for an answer of the host"_s);
    }
    EXPECT_EQ(evaluate(u"1"_s), u"1"_s);
}

TEST_F(BrowserTest, EvaluationsNest)
{
    open(u"blank.html"_s);
    QString inner;
    QTimer::singleShot(0, page, [&] { inner = evaluate(u"'inner'"_s); });

    EXPECT_EQ(evaluate(u"'outer'"_s), u"outer"_s);
    EXPECT_EQ(inner, u"inner"_s);
}

TEST_F(BrowserTest, ExplainsWhyAnAddressCannotBeOpened)
{
    EXPECT_EQ(page->navigate(u"http://no-such-host.invalid/"_s).error,
        u"Could not open 'http://no-such-host.invalid/': the host name is not known (net::ERR_NAME_NOT_RESOLVED)"_s);
    quint16 closedPort = 0;
    {
        StaticServer shortLived(files.path());
        closedPort = shortLived.port();
    }
    const QString closed = u"http://127.0.0.1:%1/"_s.arg(closedPort);
    EXPECT_EQ(page->navigate(closed).error,
        u"Could not open '%1': nothing answers at that address and port (net::ERR_CONNECTION_REFUSED)"_s.arg(
            closed));
    EXPECT_EQ(page->navigate(u"nonsense"_s).error,
        u"Could not open 'nonsense': Page.navigate: Cannot navigate to invalid URL"_s);
    EXPECT_EQ(page->navigate(u"file:///no/such/file"_s).error,
        u"Could not open 'file:///no/such/file': there is no such file (net::ERR_FILE_NOT_FOUND)"_s);
}

TEST_F(BrowserTest, ADownloadIsNoPage)
{
    serve(u"data.bin"_s, "bytes");
    open(u"blank.html"_s);
    const QString address = server.url(u"data.bin"_s);

    EXPECT_EQ(page->navigate(address).error,
        u"Could not open '%1': it is a download or has no content, so there is no page to show (net::ERR_ABORTED)"_s
            .arg(address));
    EXPECT_EQ(evaluate(u"document.title"_s), u"blank"_s);
}

TEST_F(BrowserTest, NavigationHasALimit)
{
    HttpServer silent([](const HttpRequest &) -> HttpResponse { return {}; });
    QTcpServer deaf;
    ASSERT_TRUE(deaf.listen(QHostAddress::LocalHost));
    const QString address = u"http://127.0.0.1:%1/"_s.arg(deaf.serverPort());

    EXPECT_EQ(
        page->navigate(address, 500).error, u"Could not open '%1': no answer within 0.5 s"_s.arg(address));

    open(u"blank.html"_s);
    EXPECT_EQ(evaluate(u"document.title"_s), u"blank"_s);
}

TEST_F(BrowserTest, FollowsAPageThatSendsOnToTheNextWhileItLoads)
{
    serve(u"first.html"_s, "<!DOCTYPE html><script>location.replace('last.html')</script>");
    serve(u"last.html"_s, "<!DOCTYPE html><title>last</title>");

    open(u"first.html"_s);

    EXPECT_TRUE(waitFor([&] { return evaluate(u"document.title"_s) == u"last"; }));
}

TEST_F(BrowserTest, AMoveWithinTheDocumentIsNoNewDocument)
{
    open(u"blank.html"_s);
    int gone = 0;
    QObject scope;
    QObject::connect(page, &BrowserPage::documentGone, &scope, [&] { ++gone; });

    open(u"blank.html#part"_s);

    EXPECT_EQ(gone, 0);
    EXPECT_EQ(evaluate(u"location.hash"_s), u"#part"_s);
}

TEST_F(BrowserTest, PutsAFileIntoAnUploadField)
{
    serve(u"upload.html"_s,
        "<!DOCTYPE html><input id=f type=file onchange=\"window.changed = true\"><p id=p>text</p>");
    serve(u"letter.txt"_s, "dear");
    open(u"upload.html"_s);
    const QString field = u"document.getElementById('f')"_s;

    EXPECT_EQ(page->setUploadFile(field, files.filePath(u"letter.txt"_s)).error, QString());

    EXPECT_EQ(
        evaluate(u"document.getElementById('f').files[0].name + window.changed"_s), u"letter.txttrue"_s);
    EXPECT_EQ(page->setUploadFile(u"document.getElementById('p')"_s, files.filePath(u"letter.txt"_s)).error,
        u"The element is not an upload field: DOM.setFileInputFiles: Node is not a file input element"_s);
    EXPECT_EQ(page->setUploadFile(field, u"/no/such/file"_s).error,
        u"The file '/no/such/file' to upload does not exist"_s);
    EXPECT_EQ(page->setUploadFile(u"undefined"_s, files.filePath(u"letter.txt"_s)).error,
        u"Could not find the upload field: 'undefined' is no element of the page"_s);
}

TEST_F(BrowserTest, FindsTheUploadFieldOfALabelAndOfAWidget)
{
    serve(u"upload.html"_s,
        "<!DOCTYPE html><input id=labelled type=file><label id=label for=labelled>Choose</label>"
        "<div id=around><input type=text><input id=inside type=file></div><div id=host></div><script>"
        "document.getElementById('host').attachShadow({mode: 'open'}).innerHTML = '<input "
        "type=file>';</script>");
    serve(u"letter.txt"_s, "dear");
    open(u"upload.html"_s);
    const QString inPage = u"document.getElementById('%1')"_s;
    const QList<QStringList> rows{{u"label"_s, inPage.arg(u"labelled"_s)},
        {u"around"_s, inPage.arg(u"inside"_s)},
        {u"host"_s, inPage.arg(u"host"_s) + u".shadowRoot.firstChild"_s}};
    for (const QStringList &row : rows) {
        SCOPED_TRACE(row.first().toStdString());

        EXPECT_EQ(
            page->setUploadFile(inPage.arg(row.first()), files.filePath(u"letter.txt"_s)).error, QString());

        EXPECT_EQ(evaluate(row.last() + u".files[0].name"_s), u"letter.txt"_s);
    }
}

TEST_F(BrowserTest, GrabsTheWholePage)
{
    serve(u"tall.html"_s,
        "<!DOCTYPE html><body style='margin:0'><div style='height:3000px;background:#00ff00'></div></body>");
    open(u"tall.html"_s);

    const auto shot = page->grabPageScreenshot();

    EXPECT_EQ(shot.error, QString());
    EXPECT_EQ(shot.value.height(), 3000);
    EXPECT_EQ(shot.value.pixelColor(10, 2900), QColor(0, 255, 0));
    EXPECT_EQ(page->zoomFactor().value, 1.0);
}

Injection exampleInjection()
{
    return {u"window.trace = [window.__ostrel__port]; top.__ostrel = {};"_s,
        {{u"window.__ostrel__port"_s, u"1/s"_s}},
        u"function fromPayload() { return 'payload'; }\ntrace.push(window.__ostrel__port, fromPayload());"_s};
}

TEST_F(BrowserTest, InjectsInOrderBeforeThePagesOwnScripts)
{
    server.setExtraHeaders(strictPolicy);
    serve(u"own.js"_s, "trace.push('page');");
    serve(u"injected.html"_s, "<!DOCTYPE html><script src=own.js></script>");
    ASSERT_EQ(page->setInjection(exampleInjection(), false).error, QString());

    open(u"injected.html"_s);

    EXPECT_EQ(evaluate(u"trace.join()"_s), u",1/s,payload,page"_s);
    EXPECT_EQ(evaluate(u"fromPayload.toString()"_s), u"function fromPayload() { return 'payload'; }"_s);
}

TEST_F(BrowserTest, InjectsIntoTheTopWindowOnly)
{
    serve(u"outer.html"_s, "<!DOCTYPE html><iframe src=blank.html></iframe>");
    ASSERT_EQ(page->setInjection(exampleInjection(), false).error, QString());

    open(u"outer.html"_s);

    EXPECT_EQ(evaluate(u"typeof window.fromPayload"_s), u"function"_s);
    EXPECT_EQ(evaluate(u"typeof frames[0].fromPayload + frames[0].document.title"_s), u"undefinedblank"_s);
}

TEST_F(BrowserTest, InjectsIntoAPageThatIsAlreadyThere)
{
    open(u"blank.html"_s);

    ASSERT_EQ(page->setInjection(exampleInjection(), true).error, QString());

    EXPECT_EQ(evaluate(u"trace.join()"_s), u",1/s,payload"_s);
}

TEST_F(BrowserTest, APageVariableHoldsForTheNextDocumentsToo)
{
    ASSERT_EQ(page->setInjection(exampleInjection(), false).error, QString());
    open(u"blank.html"_s);

    ASSERT_EQ(page->setPageVariable(u"window.__ostrel__recording"_s, true).error, QString());

    EXPECT_EQ(evaluate(u"window.__ostrel__recording"_s), u"true"_s);
    open(u"blank.html?again"_s);
    EXPECT_EQ(evaluate(u"window.__ostrel__recording + trace.join()"_s), u"true,1/s,payload"_s);
}

TEST_F(BrowserTest, AFieldThatGetsTheFocusTellsThePage)
{
    serve(u"focus.html"_s,
        "<input id='a'><input id='b'><script>var seen = [];"
        "['focus', 'blur'].forEach(function (type) { document.addEventListener(type, function (event) {"
        "seen.push(type + ' ' + event.target.id); }, true); });</script>");
    open(u"focus.html"_s);

    EXPECT_EQ(evaluate(u"document.hasFocus()"_s), u"true"_s) << "before any input of a device";
    EXPECT_EQ(evaluate(u"document.getElementById('a').focus(); document.getElementById('b').focus();"
                       "seen.join(', ')"_s),
        u"focus a, blur a, focus b"_s);
}

TEST_F(BrowserTest, WindowsThatAPageOpensArePagesAndGetThePayload)
{
    BrowserPage *popup = nullptr;
    QObject scope;
    QObject::connect(browser.get(), &Browser::pageOpened, &scope, [&](BrowserPage *opened) {
        popup = opened;
        ASSERT_EQ(opened->setInjection(exampleInjection(), false).error, QString());
    });
    serve(u"popup.html"_s,
        "<!DOCTYPE html><title>popup</title><script>window.before = typeof fromPayload;</script>");
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"setTimeout(function() { window.open('popup.html'); }, 0); 1"_s), u"1"_s);

    ASSERT_TRUE(waitFor([&] { return popup && evaluate(popup, u"document.title"_s) == u"popup"; }));
    EXPECT_EQ(evaluate(popup, u"window.before"_s), u"function"_s);
    // A browser may keep the window of the empty page before; what the payload has put on that document is
    // then put on this one, too.
    EXPECT_TRUE(waitFor(
        [&] { return evaluate(popup, u"window.__ostrel__injectedDocument === document"_s) == u"true"; }));
    EXPECT_EQ(evaluate(popup, u"trace.slice(1).join()"_s), u"1/s,payload"_s);
    EXPECT_TRUE(browser->pages().contains(popup));
    bool closed = false;
    QObject::connect(popup, &BrowserPage::closed, &scope, [&] { closed = true; });
    EXPECT_EQ(evaluate(popup, u"setTimeout(function() { window.close(); }, 0); 1"_s), u"1"_s);
    EXPECT_TRUE(waitFor([&] { return closed; }));
    EXPECT_FALSE(browser->pages().contains(popup));
}

// What the payload sends, by the same call.
QString sendScript(const QString &method, const QString &query, const QString &body, bool async)
{
    return u"(function() { var x = new XMLHttpRequest(); x.open('%1', 'http://127.0.0.1:' + "
           u"window.__ostrel__port "
           "+ '/?' + %2, %3); x.send(%4); return x.responseText; }())"_s.arg(method, scriptLiteral(query),
               async ? u"true"_s : u"false"_s, body.isNull() ? u"null"_s : scriptLiteral(body));
}

// Both carriers must carry the same requests to the same signals.
void expectTheChannelToWork(BrowserPage *page, PageChannel &channel)
{
    QStringList events;
    QStringList notices;
    QStringList lines;
    QObject::connect(
        &channel, &PageChannel::eventLogged, page, [&](const QString &text) { events.append(text); });
    QObject::connect(&channel, &PageChannel::eventHandlerCalled, page,
        [&](const QString &name, const QMap<QString, QString> &parameters) {
            notices.append(name + u' ' + parameters.value(u"location"_s));
        });
    QObject::connect(
        &channel, &PageChannel::debugLineLogged, page, [&](const QString &line) { lines.append(line); });
    channel.setConfirmAnswer([] { return u"true"_s; });
    channel.setPromptAnswer([] { return promptResult(u"gr\u00FC\u00DFe"_s); });
    const auto run = [&](const QString &script) {
        const auto evaluated = page->evaluateJavaScript(script, 0);
        return evaluated.failed ? u"failed: "_s + evaluated.result : evaluated.result;
    };

    EXPECT_EQ(run(sendScript(u"GET"_s, u"waitForConfirm1700000000000"_s, {}, false)), u"true"_s);
    EXPECT_EQ(run(sendScript(u"GET"_s, u"waitForPrompt&1700000000000"_s, {}, false)),
        u"__ostrel__promptResult: gr\u00FC\u00DFe"_s);
    EXPECT_EQ(
        run(sendScript(u"GET"_s, u"logevent1700000000000&event=click&object=a%20b"_s, {}, true)), QString());
    EXPECT_EQ(
        run(sendScript(u"POST"_s, u"logevent1700000000001&"_s, u"event=keyup&value=\u00E4\u20AC"_s, true)),
        QString());
    EXPECT_EQ(run(sendScript(
                  u"GET"_s, u"eventHandler1700000000002&name=BodyUnloaded&location=http%3A//x/"_s, {}, true)),
        QString());
    EXPECT_EQ(run(sendScript(u"GET"_s, u"debuglog=a \u00E4 b"_s, {}, true)), QString());

    EXPECT_TRUE(waitFor([&] { return events.size() == 2 && notices.size() == 1 && lines.size() == 1; }));
    events.sort();
    EXPECT_EQ(events,
        (QStringList{u"logevent1700000000000&event=click&object=a%20b"_s,
            u"logevent1700000000001&event=keyup&value=\u00E4\u20AC"_s}));
    EXPECT_EQ(notices, QStringList{u"BodyUnloaded http://x/"_s});
    EXPECT_EQ(lines, QStringList{u"a \u00E4 b"_s});
}

TEST_F(BrowserTest, TheChannelWorksByInterceptionOnAPageWithAStrictPolicy)
{
    server.setExtraHeaders(strictPolicy);
    PageChannel channel;
    const ChannelAddress address = FetchCarrier::makeAddress();
    const FetchCarrier *carrier = new FetchCarrier(page, &channel, address);
    Injection injection = exampleInjection();
    injection.setVariable(u"window.__ostrel__port"_s, address.portText());
    ASSERT_EQ(page->setInjection(injection, false).error, QString());
    open(u"blank.html"_s);

    expectTheChannelToWork(page, channel);

    delete carrier;
}

TEST_F(BrowserTest, TheChannelWorksOverLoopback)
{
    PageChannel channel;
    LoopbackCarrier carrier(&channel);
    const auto address = carrier.start();
    ASSERT_FALSE(address.failed()) << address.error.toStdString();
    Injection injection = exampleInjection();
    injection.setVariable(u"window.__ostrel__port"_s, address.value.portText());
    ASSERT_EQ(page->setInjection(injection, false).error, QString());
    open(u"blank.html"_s);

    // A blocking request needs the server while the evaluation waits, which the nested event loop gives.
    expectTheChannelToWork(page, channel);
}

TEST_F(BrowserTest, AReceiverOfAnEventMayEvaluateInThePage)
{
    PageChannel channel;
    const ChannelAddress address = FetchCarrier::makeAddress();
    new FetchCarrier(page, &channel, address);
    Injection injection = exampleInjection();
    injection.setVariable(u"window.__ostrel__port"_s, address.portText());
    ASSERT_EQ(page->setInjection(injection, false).error, QString());
    open(u"blank.html"_s);
    QString title;
    QObject::connect(
        &channel, &PageChannel::eventLogged, page, [&] { title = evaluate(u"document.title"_s); });

    EXPECT_EQ(evaluate(sendScript(u"GET"_s, u"logevent1700000000000&event=click"_s, {}, false)), QString());

    EXPECT_TRUE(waitFor([&] { return title == u"blank"; }));
}

TEST_F(BrowserTest, AnAnswerFunctionThatEvaluatesIsRefusedInsteadOfBlocking)
{
    PageChannel channel;
    const ChannelAddress address = FetchCarrier::makeAddress();
    new FetchCarrier(page, &channel, address);
    Injection injection = exampleInjection();
    injection.setVariable(u"window.__ostrel__port"_s, address.portText());
    ASSERT_EQ(page->setInjection(injection, false).error, QString());
    open(u"blank.html"_s);
    channel.setConfirmAnswer([&] { return evaluate(u"1"_s); });

    EXPECT_EQ(evaluate(sendScript(u"GET"_s, u"waitForConfirm1700000000000"_s, {}, false)),
        u"failed: The page waits for an answer of the host"_s);
}

TEST_F(BrowserTest, AnotherAddressOfTheSamePortIsNotIntercepted)
{
    PageChannel channel;
    new FetchCarrier(page, &channel, FetchCarrier::makeAddress());
    int events = 0;
    QObject::connect(&channel, &PageChannel::eventLogged, page, [&] { ++events; });
    open(u"blank.html"_s);

    EXPECT_EQ(evaluate(u"window.__ostrel__port = '49151/guess'; 1"_s), u"1"_s);
    EXPECT_TRUE(evaluate(sendScript(u"GET"_s, u"logevent1&event=click"_s, {}, false))
                    .startsWith(u"failed threw: NetworkError"));
    EXPECT_EQ(events, 0);
}

// From here on: browsers that start badly or end badly.

std::unique_ptr<Browser> startOwnBrowser()
{
    auto started = Browser::start({});
    EXPECT_FALSE(started.failed()) << started.error.toStdString();
    return std::move(started.value);
}

TEST(BrowserLifetime, NothingIsLeftBehind)
{
    auto browser = startOwnBrowser();
    ASSERT_TRUE(browser);
    const QString profile = browser->profilePath();
    ASSERT_FALSE(processesWith(profile).isEmpty());
    ASSERT_TRUE(QFileInfo::exists(profile));

    browser.reset();

    EXPECT_EQ(processesWith(profile), QStringList());
    EXPECT_FALSE(QFileInfo::exists(profile));
}

TEST(BrowserLifetime, AKilledBrowserEndsTheCallAndLeavesNothing)
{
    auto browser = startOwnBrowser();
    ASSERT_TRUE(browser);
    const QString profile = browser->profilePath();
    BrowserPage *page = browser->openPage().value;
    ASSERT_TRUE(page);
    QString reason;
    QObject::connect(
        browser.get(), &Browser::lost, browser.get(), [&](const QString &text) { reason = text; });
    QTimer::singleShot(200, browser.get(), [&] { ::kill(pid_t(browser->processId()), SIGKILL); });
    QElapsedTimer elapsed;
    elapsed.start();

    const auto evaluated = page->evaluateJavaScript(u"while (true) {}"_s, 20000);

    EXPECT_TRUE(evaluated.failed);
    EXPECT_FALSE(evaluated.threw);
    EXPECT_EQ(evaluated.result, u"The browser has closed or crashed"_s);
    EXPECT_LT(elapsed.elapsed(), 5000);
    EXPECT_TRUE(waitFor([&] { return reason == u"The browser has closed or crashed"; }));
    EXPECT_FALSE(page->isPageAvailable());
    EXPECT_EQ(page->evaluateJavaScript(u"1"_s, 0).result, u"The browser has closed or crashed"_s);
    EXPECT_EQ(browser->openPage().error,
        u"Could not open a new page: Target.createTarget: The browser has closed or crashed"_s);
    browser->stop();
    EXPECT_EQ(processesWith(profile), QStringList());
    EXPECT_FALSE(QFileInfo::exists(profile));
}

TEST(BrowserLifetime, StoppingEndsACallThatWaits)
{
    auto browser = startOwnBrowser();
    ASSERT_TRUE(browser);
    BrowserPage *page = browser->openPage().value;
    QTimer::singleShot(200, browser.get(), [&] { browser->stop(); });

    EXPECT_EQ(
        page->evaluateJavaScript(u"while (true) {}"_s, 20000).result, u"The browser has closed or crashed"_s);
}

// The host of the next test: says where its browser's profile is and waits to be killed.
TEST(BrowserLifetime, DISABLED_HostThatWaitsToBeKilled)
{
    auto browser = startOwnBrowser();
    ASSERT_TRUE(browser);
    std::printf("profile=%s\n", qPrintable(browser->profilePath()));
    std::fflush(stdout);
    waitFor([] { return false; }, 60000);
}

TEST(BrowserLifetime, ABrowserEndsByItselfWhenItsHostIsKilled)
{
    QProcess host;
    host.start(QCoreApplication::applicationFilePath(),
        {u"--gtest_also_run_disabled_tests"_s, u"--gtest_filter=*DISABLED_HostThatWaitsToBeKilled"_s});
    QString profile;
    ASSERT_TRUE(waitFor(
        [&] {
            const QString output = QString::fromLocal8Bit(host.peek(100000));
            profile = output.section(u"profile="_s, 1).section(u'\n', 0, 0);
            return output.contains(u"profile="_s) && !profile.isEmpty();
        },
        30000));
    ASSERT_FALSE(processesWith(profile).isEmpty());

    host.kill();

    EXPECT_TRUE(host.waitForFinished());
    EXPECT_TRUE(waitFor([&] { return processesWith(profile).isEmpty(); }))
        << processesWith(profile).join(u' ').toStdString();
    // The next profile that is made later on would remove this one; here it is still too young.
    EXPECT_TRUE(QDir(profile).removeRecursively());
}

TEST(BrowserLifetime, AMissingExecutableIsNamed)
{
    BrowserOptions options;
    options.executable = u"/no/such/browser"_s;

    EXPECT_EQ(Browser::start(options).error,
        u"The browser '/no/such/browser' (given by option) is not there or cannot be run"_s);
}

TEST(BrowserLifetime, ABrowserThatEndsAtOnceIsExplained)
{
    QTemporaryDir directory;
    const QString program = directory.filePath(u"browser"_s);
    writeFile(program, "#!/bin/sh\necho first >&2\necho 'cannot open display' >&2\nexit 7\n");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    BrowserOptions options;
    options.executable = program;

    EXPECT_EQ(Browser::start(options).error,
        u"The browser '%1' ended while it was starting: its exit code was 7; its last words:\nfirst\ncannot "
        u"open "
        "display"_s.arg(program));
}

TEST(BrowserLifetime, ABrowserThatNeverAnswersIsEnded)
{
    QTemporaryDir directory;
    const QString program = directory.filePath(u"browser"_s);
    writeFile(program, "#!/bin/sh\nexec sleep 60\n");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    BrowserOptions options;
    options.executable = program;
    options.startLimitMs = 300;

    EXPECT_EQ(Browser::start(options).error,
        u"The browser '%1' did not start: Browser.getVersion: The browser did not answer within 0.3 s"_s.arg(
            program));
}

} // namespace
} // namespace Ostrel::Host
