// BrowserPage over a played browser: what goes out for an evaluation, and what each way of not answering
// says.
#include "host/browser/browser.h"
#include "host/browser/browserpage.h"
#include "host/browser/evaluation.h"
#include "host/browser/injection.h"
#include "host/browser/navigation.h"
#include "support/faketransport.h"
#include "support/printqt.h"
#include "wrappers/web/wrapperconfig.h"

#include <gtest/gtest.h>

#include <QTimer>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

class BrowserPageTest : public ::testing::Test
{
protected:
    // The setup commands of the page are no matter of these tests.
    void SetUp() override { setupCount = transport->texts().size(); }

    QStringList methods() const { return transport->methods().mid(setupCount); }
    QJsonObject lastParameters() const { return transport->lastCommand().value("params"_L1).toObject(); }

    // Plays `message` with the id of the last command as soon as the page waits.
    void answerLater(QJsonObject message)
    {
        transport->onCommand = [this, message](const QJsonObject &command) {
            QJsonObject answer = message;
            answer.insert("id"_L1, command.value("id"_L1));
            answer.insert("sessionId"_L1, u"S"_s);
            QTimer::singleShot(0, transport, [this, answer] { transport->receive(answer); });
        };
    }
    void answerValue(const QJsonObject &value)
    {
        answerLater({{u"result"_s, QJsonObject{{u"result"_s, QJsonObject{{u"value"_s, value}}}}}});
    }
    void answerError(const QString &message)
    {
        answerLater({{u"error"_s, QJsonObject{{u"message"_s, message}}}});
    }
    void playLater(const QJsonObject &event)
    {
        QTimer::singleShot(0, transport, [this, event] { transport->receive(event); });
    }
    static QJsonObject valueFor(const QJsonObject &command, const QJsonObject &value)
    {
        return {{u"id"_s, command.value("id"_L1)}, {u"sessionId"_s, u"S"_s},
            {u"result"_s, QJsonObject{{u"result"_s, QJsonObject{{u"value"_s, value}}}}}};
    }
    static QJsonObject valueFor(const QJsonObject &command, const QString &value)
    {
        return valueFor(command, QJsonObject{{u"value"_s, value}});
    }
    static QJsonObject longValueFor(const QJsonObject &command, qsizetype size, int place)
    {
        return valueFor(command, QJsonObject{{u"size"_s, size}, {u"place"_s, place}});
    }
    void showDocument(const QString &loader)
    {
        const QJsonObject frame{{u"id"_s, u"T"_s}, {u"loaderId"_s, loader}, {u"url"_s, u"http://x/"_s}};
        transport->receive(QJsonObject{{u"method"_s, u"Page.frameNavigated"_s}, {u"sessionId"_s, u"S"_s},
            {u"params"_s, QJsonObject{{u"frame"_s, frame}}}});
    }
    void openDialog(const QString &kind, const QString &message)
    {
        transport->receive(
            QJsonObject{{u"method"_s, u"Page.javascriptDialogOpening"_s}, {u"sessionId"_s, u"S"_s},
                {u"params"_s, QJsonObject{{u"type"_s, kind}, {u"message"_s, message}}}});
    }

    FakeTransport *transport = new FakeTransport;
    Connection connection{std::unique_ptr<Transport>(transport)};
    BrowserPage page{&connection, u"S"_s, u"T"_s};
    qsizetype setupCount = 0;
};

TEST_F(BrowserPageTest, AnEvaluationIsOneRoundTrip)
{
    answerValue({{u"value"_s, u"2"_s}});

    const auto evaluated = page.evaluateJavaScript(u"1 + 1"_s, 5000);

    EXPECT_EQ(evaluated.result, u"2"_s);
    EXPECT_FALSE(evaluated.failed);
    EXPECT_FALSE(evaluated.threw);
    EXPECT_EQ(methods(), QStringList{u"Runtime.evaluate"_s});
    EXPECT_EQ(lastParameters().value("timeout"_L1).toInt(), 5000);
    EXPECT_TRUE(lastParameters().value("expression"_L1).toString().endsWith(u"(\"1 + 1\")"_s));
}

TEST_F(BrowserPageTest, ZeroMeansTheDefaultLimit)
{
    answerValue({{u"value"_s, u""_s}});

    page.evaluateJavaScript(u""_s, 0);
    EXPECT_EQ(lastParameters().value("timeout"_L1).toInt(), 20000);

    page.setDefaultLimit(1500);
    page.evaluateJavaScript(u""_s, 0);
    EXPECT_EQ(lastParameters().value("timeout"_L1).toInt(), 1500);
}

TEST_F(BrowserPageTest, AnExceptionSetsBothFlags)
{
    answerValue({{u"thrown"_s, u"TypeError: broken"_s}});

    const auto evaluated = page.evaluateJavaScript(u"x"_s, 0);

    EXPECT_EQ(evaluated.result, u"TypeError: broken"_s);
    EXPECT_TRUE(evaluated.failed);
    EXPECT_TRUE(evaluated.threw);
}

struct ErrorRow
{
    const char *name;
    QString fromBrowser;
    QString told;
};

TEST_F(BrowserPageTest, SaysInWordsWhyThereIsNoAnswer)
{
    const QList<ErrorRow> rows{
        {"the browser ended the script", u"Execution was terminated"_s,
            u"The page did not answer within 5 s"_s},
        {"the document went", u"Inspected target navigated or closed"_s,
            u"The page navigated away while the script was running"_s},
        {"the context went", u"Execution context was destroyed."_s,
            u"The page navigated away while the script was running"_s},
        {"the tab went", u"Session with given id not found."_s, u"The page was closed or has crashed"_s},
        {"the tab's process went", u"Target crashed"_s, u"The page was closed or has crashed"_s},
        {"anything else", u"Internal error"_s, u"Runtime.evaluate: Internal error"_s},
    };
    for (const ErrorRow &row : rows) {
        SCOPED_TRACE(row.name);
        answerError(row.fromBrowser);
        const auto evaluated = page.evaluateJavaScript(u"x"_s, 5000);
        EXPECT_EQ(evaluated.result, row.told);
        EXPECT_TRUE(evaluated.failed);
        EXPECT_FALSE(evaluated.threw);
    }
}

// What was asked of one document and answered by the next one is no answer: references stand for other
// elements there.
TEST_F(BrowserPageTest, AnAnswerOfTheNextDocumentIsNone)
{
    showDocument(u"first"_s);
    transport->onCommand = [this](const QJsonObject &command) {
        QTimer::singleShot(0, transport, [this, command] {
            showDocument(u"second"_s);
            transport->receive(valueFor(command, u"of the second"_s));
        });
    };

    const auto evaluated = page.evaluateJavaScript(u"x"_s, 5000);

    EXPECT_EQ(evaluated.result, u"The page navigated away while the script was running"_s);
    EXPECT_TRUE(evaluated.failed);
}

TEST_F(BrowserPageTest, AnAnswerThatCameBeforeTheNextDocumentCounts)
{
    showDocument(u"first"_s);
    transport->onCommand = [this](const QJsonObject &command) {
        QTimer::singleShot(0, transport, [this, command] {
            transport->receive(valueFor(command, u"of the first"_s));
            showDocument(u"second"_s);
        });
    };

    const auto evaluated = page.evaluateJavaScript(u"x"_s, 5000);

    EXPECT_EQ(evaluated.result, u"of the first"_s);
    EXPECT_FALSE(evaluated.failed);
}

TEST_F(BrowserPageTest, ABrowserThatNeverAnswersEndsWithTheLimitAndAGrace)
{
    const auto evaluated = page.evaluateJavaScript(u"x"_s, 50);

    EXPECT_EQ(evaluated.result, u"The page did not answer within 0.05 s"_s);
    EXPECT_TRUE(evaluated.failed);
}

TEST_F(BrowserPageTest, ALostBrowserEndsTheCall)
{
    QTimer::singleShot(0, transport, [&] { transport->drop(); });

    EXPECT_EQ(page.evaluateJavaScript(u"x"_s, 5000).result, u"The browser has closed or crashed"_s);
    EXPECT_EQ(page.evaluateJavaScript(u"x"_s, 5000).result, u"The browser has closed or crashed"_s);
    EXPECT_FALSE(page.isPageAvailable());
}

TEST_F(BrowserPageTest, APageThatGoesEndsTheCall)
{
    QTimer::singleShot(0, transport, [&] { page.setGone(WaitState::PageGone); });

    EXPECT_EQ(page.evaluateJavaScript(u"x"_s, 5000).result, u"The page was closed or has crashed"_s);
    EXPECT_FALSE(page.isPageAvailable());
}

TEST_F(BrowserPageTest, ADialogEndsTheCallAndIsDismissedOnlyThen)
{
    QTimer::singleShot(0, transport, [&] { openDialog(u"alert"_s, u"it's %1"_s); });

    EXPECT_EQ(page.evaluateJavaScript(u"x"_s, 5000).result, u"The page is blocked by an alert: 'it's %1'"_s);

    EXPECT_EQ(methods(), (QStringList{u"Runtime.evaluate"_s, u"Page.handleJavaScriptDialog"_s}));
    EXPECT_EQ(lastParameters(), (QJsonObject{{u"accept"_s, false}}));
    EXPECT_FALSE(page.openDialog());
}

TEST_F(BrowserPageTest, ADialogThatIsOpenAlreadyIsReportedWithoutAskingThePage)
{
    openDialog(u"prompt"_s, u"name?"_s);
    EXPECT_EQ(methods(), QStringList());

    EXPECT_EQ(page.evaluateJavaScript(u"x"_s, 5000).result, u"The page is blocked by a prompt: 'name?'"_s);

    EXPECT_EQ(methods(), QStringList{u"Page.handleJavaScriptDialog"_s});
}

TEST_F(BrowserPageTest, TheQuestionWhetherToLeaveIsAnsweredAtOnce)
{
    openDialog(u"beforeunload"_s, u""_s);

    EXPECT_EQ(methods(), QStringList{u"Page.handleJavaScriptDialog"_s});
    EXPECT_EQ(lastParameters(), (QJsonObject{{u"accept"_s, true}}));
}

TEST_F(BrowserPageTest, ALateAnswerIsNotTakenForTheNextOne)
{
    EXPECT_EQ(page.evaluateJavaScript(u"slow"_s, 10).result, u"The page did not answer within 0.01 s"_s);
    const int slowId = transport->lastCommand().value("id"_L1).toInt();
    QTimer::singleShot(0, transport, [&] {
        transport->receive(QJsonObject{{u"id"_s, slowId}, {u"result"_s, QJsonObject()}});
    });

    EXPECT_EQ(page.evaluateJavaScript(u"next"_s, 10).result, u"The page did not answer within 0.01 s"_s);
}

TEST_F(BrowserPageTest, SendsALongScriptInParts)
{
    constexpr qsizetype part = 1024 * 1024;
    QStringList expressions;
    transport->onCommand = [&](const QJsonObject &command) {
        expressions.append(command.value("params"_L1).toObject().value("expression"_L1).toString());
        if (expressions.size() == 3)
            QTimer::singleShot(0, transport, [=, this] { transport->receive(valueFor(command, u"done"_s)); });
    };

    EXPECT_EQ(page.evaluateJavaScript(QString(part, u'a') + u"\"b"_s, 0).result, u"done"_s);

    ASSERT_EQ(expressions.size(), 3);
    EXPECT_EQ(expressions.at(0), u"window.__ostrel__scriptParts = \""_s + QString(part, u'a') + u"\"; 0"_s);
    EXPECT_EQ(expressions.at(1), u"window.__ostrel__scriptParts += \"\\\"b\"; 0"_s);
    EXPECT_TRUE(expressions.at(2).contains(u"if (text.length !== %1) {"_s.arg(part + 2)));
}

TEST_F(BrowserPageTest, FetchesALongValueInParts)
{
    constexpr qsizetype part = 1024 * 1024;
    QStringList calls;
    transport->onCommand = [&](const QJsonObject &command) {
        const QString expression = command.value("params"_L1).toObject().value("expression"_L1).toString();
        calls.append(expression.mid(expression.lastIndexOf(u'(')));
        const QJsonObject answer = calls.size() == 1
            ? longValueFor(command, 2 * part + 5, 7)
            : valueFor(command, QString::number(calls.size()).repeated(calls.size() < 4 ? part : 5));
        QTimer::singleShot(0, transport, [=, this] { transport->receive(answer); });
    };

    const auto evaluated = page.evaluateJavaScript(u"x"_s, 0);

    EXPECT_FALSE(evaluated.failed);
    EXPECT_EQ(evaluated.result, QString(part, u'2') + QString(part, u'3') + u"44444"_s);
    EXPECT_EQ(calls,
        (QStringList{u"(\"x\")"_s, u"(window.__ostrel__longValues, 7, 0, 1048576)"_s,
            u"(window.__ostrel__longValues, 7, 1048576, 2097152)"_s,
            u"(window.__ostrel__longValues, 7, 2097152, 3145728)"_s}));
}

TEST_F(BrowserPageTest, ALongValueOfADocumentThatIsGoneIsNone)
{
    showDocument(u"first"_s);
    transport->onCommand = [this, asked = 0](const QJsonObject &command) mutable {
        const bool isFirst = ++asked == 1;
        const QJsonObject answer = isFirst ? longValueFor(command, 3000000, 0) : valueFor(command, QString());
        if (!isFirst)
            QTimer::singleShot(0, transport, [this] { showDocument(u"second"_s); });
        QTimer::singleShot(0, transport, [=, this] { transport->receive(answer); });
    };

    const auto evaluated = page.evaluateJavaScript(u"x"_s, 0);

    EXPECT_EQ(evaluated.result, u"The page navigated away while the script was running"_s);
    EXPECT_TRUE(evaluated.failed);
}

TEST_F(BrowserPageTest, RefusesToNestWithoutEnd)
{
    QString deepest;
    transport->onCommand = [&](const QJsonObject &) {
        QTimer::singleShot(0, transport, [&] {
            const QString result = page.evaluateJavaScript(u"x"_s, 10).result;
            if (deepest.isEmpty())
                deepest = result;
        });
    };

    page.evaluateJavaScript(u"x"_s, 10);

    EXPECT_EQ(deepest, u"Too many evaluations wait for the page already"_s);
}

TEST(ScriptLiteral, EscapesWhatAStringCannotHold)
{
    EXPECT_EQ(scriptLiteral(u"a\"b\\c\nd\re"_s), u"\"a\\\"b\\\\c\\nd\\u000de\""_s);
    EXPECT_EQ(scriptLiteral(u"\u2028\u2029"_s), u"\"\\u2028\\u2029\""_s);
    EXPECT_EQ(scriptLiteral(QString(QChar::Null)), u"\"\\u0000\""_s);
    EXPECT_EQ(scriptLiteral(u"\U0001F600"_s), u"\"\U0001F600\""_s);
    EXPECT_EQ(scriptLiteral(QString(QChar(0xD83D))), u"\"\\ud83d\""_s);
    EXPECT_EQ(scriptLiteral(QString(QChar(0xDE00)) + QChar(0xD83D)), u"\"\\ude00\\ud83d\""_s);
    EXPECT_EQ(scriptLiteral(u"\u00E4\u20AC%1"_s), u"\"\u00E4\u20AC%1\""_s);
}

TEST(NavigationError, IsToldInWords)
{
    EXPECT_EQ(describeNavigationError(u"http://a/"_s, u"net::ERR_NAME_NOT_RESOLVED"_s),
        u"Could not open 'http://a/': the host name is not known (net::ERR_NAME_NOT_RESOLVED)"_s);
    EXPECT_EQ(describeNavigationError(u"http://a/"_s, u"net::ERR_CONNECTION_REFUSED"_s),
        u"Could not open 'http://a/': nothing answers at that address and port (net::ERR_CONNECTION_REFUSED)"_s);
    EXPECT_EQ(describeNavigationError(u"https://a/"_s, u"net::ERR_CERT_AUTHORITY_INVALID"_s),
        u"Could not open 'https://a/': the server's certificate is not trusted (net::ERR_CERT_AUTHORITY_INVALID)"_s);
    EXPECT_EQ(describeNavigationError(u"https://a/"_s, u"net::ERR_SSL_PROTOCOL_ERROR"_s),
        u"Could not open 'https://a/': no secure connection could be made (net::ERR_SSL_PROTOCOL_ERROR)"_s);
    EXPECT_EQ(describeNavigationError(u"http://a/%1"_s, u"net::ERR_NEW_ONE"_s),
        u"Could not open 'http://a/%1': net::ERR_NEW_ONE"_s);
}

QStringList assignments(const WebWrapper::WrapperConfig &config)
{
    QStringList statements;
    for (const PageVariable &variable : pageVariables(config, {120, u"49151/secret"_s}))
        statements.append(assignment(variable));
    return statements;
}

TEST(Injection, SetsTheVariablesThatThePayloadReads)
{
    EXPECT_EQ(assignments(WebWrapper::MemoryBasedConfig()),
        (QStringList{
            u"window.__ostrel__googlechrome = true;"_s,
            u"window.__ostrel__chromiumbased = true;"_s,
            u"window.__ostrel__os = \"Linux\";"_s,
            u"window.top.__ostrel.browsermajorversion = 120;"_s,
            u"window.__ostrel__filter__non__element__nodes = true;"_s,
            u"window.top.__ostrel.includeIdPropertyInGeneratedNames = true;"_s,
            u"window.__ostrel__namegen__scheme = \"multiprop\";"_s,
            u"window.__ostrel__namegen__singleprop = \"singleprop\";"_s,
            u"window.__ostrel__namegen__hierarchical = \"hierarchical\";"_s,
            u"window.__ostrel__throwErrorForUnknownContextName = true;"_s,
            u"window.__ostrel__improvedTabAndWindowSupport = true;"_s,
            u"window.top.__ostrel.useSessionStorageForEvents = false;"_s,
            u"window.__ostrel__enableObjectInfoOverlay = false;"_s,
            u"window.__ostrel__port = \"49151/secret\";"_s,
            u"window.__ostrel__asynclog = true;"_s,
            u"window.__ostrel__backbase__descriptors = null;"_s,
            u"window.__ostrel__backbase__className = \"\";"_s,
        }));
}

TEST(Injection, FollowsTheConfiguration)
{
    WebWrapper::MemoryBasedConfig config;
    config.setSupportSinglePropertyNaming(true);
    config.setHookNewWindows(true);
    config.setFilterNonElementNodes(false);

    const QStringList statements = assignments(config);

    EXPECT_TRUE(statements.contains(u"window.__ostrel__namegen__scheme = \"singleprop\";"_s));
    EXPECT_TRUE(statements.contains(u"window.__ostrel__newwindowhook = true;"_s));
    EXPECT_TRUE(statements.contains(u"window.__ostrel__filter__non__element__nodes = false;"_s));
}

TEST(Injection, KeepsTheOrderAndEveryByte)
{
    Injection injection{u"names();"_s, {{u"window.a"_s, 1}}, u"pay(\"%1 %2\");\r\n// end"_s};
    injection.setVariable(u"window.a"_s, true);
    injection.setVariable(u"window.b"_s, u"x\"y"_s);

    EXPECT_EQ(injection.script(),
        u"names();\nwindow.a = true;\nwindow.b = \"x\\\"y\";\npay(\"%1 %2\");\r\n// end"_s);
    EXPECT_EQ(injection.newDocumentScript(),
        u"if (window === window.top) {\n(0, eval)(\"names();\");\n"
        "(0, eval)(\"window.a = true;\\nwindow.b = \\\"x\\\\\\\"y\\\";\");\n"
        "(0, eval)(\"pay(\\\"%1 %2\\\");\\u000d\\n// end\");\nwindow.__ostrel__injectedDocument = document;\n}"_s);

    injection.companion = u"help()"_s;
    EXPECT_TRUE(injection.script().endsWith(u"\r\n// end\nhelp()"_s));
    EXPECT_TRUE(injection.newDocumentScript().contains(
        u"// end\");\n(0, eval)(\"help()\");\nwindow.__ostrel__injectedDocument"_s));
}

TEST(BrowserArguments, KeepTheSandboxButForRoot)
{
    const QStringList asUser = browserArguments({}, false);
    EXPECT_FALSE(asUser.contains(u"--no-sandbox"_s));
    EXPECT_TRUE(asUser.contains(u"--headless=new"_s));
    EXPECT_TRUE(browserArguments({}, true).contains(u"--no-sandbox"_s));
}

TEST(BrowserArguments, AHeadedBrowserUsesItsGraphics)
{
    BrowserOptions options;
    options.headless = false;
    options.extraArguments = QStringList{u"--lang=de"_s};

    const QStringList arguments = browserArguments(options, false);

    EXPECT_FALSE(arguments.contains(u"--headless=new"_s));
    EXPECT_FALSE(arguments.contains(u"--disable-gpu"_s));
    EXPECT_EQ(arguments.last(2), (QStringList{u"--lang=de"_s, u"about:blank"_s}));
}

} // namespace
} // namespace Ostrel::Host
