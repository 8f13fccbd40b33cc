// Pages that make it hard for us: huge ones, ones that raise, that take the browser's own functions away,
// that leave, ask or hang in the middle of a call. Nothing crashes or hangs; what cannot work gives an error
// text.
#include "host/script/scriptengine.h"
#include "host/script/testsession.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/pages/hostile");

// Each line of what a script logs is a name and a value, or a name and the first line of an error.
const QString helpers = uR"(
    function attempt(name, statement) {
        try {
            log(name + ': ' + (String(statement()) || '(empty)'));
        } catch (error) {
            log(name + '! ' + error.message.split('\n')[0].replace(serverAddress(), '/'));
        }
    }
    var page, heading, button;
    function open(address) {
        startBrowser(serverAddress() + address);
        page = activeDocument();
        heading = page.getElementById('heading');
        button = page.getElementById('button');
        return heading.className() + ' ' + button.className();
    }
)"_s;

const QString use = uR"(
    attempt('title', () => heading.title);
    attempt('text', () => heading.innerText);
    attempt('visible', () => heading.visible);
    attempt('set', () => { heading.setProperty('title', 'new'); return heading.property('title'); });
    attempt('click', () => { button.click(); return button.innerText; });
    attempt('items', () => page.getElementsByTagName('li').length);
    attempt('second', () => page.getElementsByTagName('li').at(1).innerText);
    attempt('xpath', () => page.evaluateXPath('count(//li)').numberValue);
    attempt('path', () => heading.domPath);
)"_s;

const QString allWorks = uR"(open: HTML_Object HTML_Button
title: the title
text: Text of the heading
visible: true
set: new
click: 1
items: 2
second: two
xpath: 2
path: DOCUMENT.HTML1.BODY1.H11
)"_s;

class LogLines : public ResultSink
{
public:
    void logged(const QString &text) override { lines += text + u'\n'; }

    QString lines;
};

class HostileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SessionOptions options;
        options.servedDirectory = pagesFolder;
        auto started = TestSession::start(options, m_results);
        ASSERT_EQ(started.error, QString());
        session = std::move(started.value);
    }
    void TearDown() override
    {
        const QString profile = session ? session->browser()->profilePath() : QString();
        session.reset();
        EXPECT_FALSE(QFileInfo::exists(profile));
    }

    // What the script logs, with the error behind it if it did not come to its end.
    QString run(const QString &script)
    {
        m_results.lines.clear();
        ScriptEngine engine;
        const ScriptOutcome outcome = engine.run(helpers + script, u"script.js"_s);
        return outcome.failed ? m_results.lines + outcome.error.text() : m_results.lines;
    }

    void limitCalls(int limitMs) { session->activePage()->setDefaultLimit(limitMs); }

private:
    LogLines m_results;

protected:
    std::unique_ptr<TestSession> session;
};

TEST_F(HostileTest, APageOfFiftyThousandElements)
{
    EXPECT_EQ(run(uR"(
        startBrowser(serverAddress() + 'large.html');
        page = activeDocument();
        attempt('all', () => page.getElementsByTagName('*').length > 50000);
        attempt('last', () => page.getElementsByTagName('span').at(24999).innerText);
        attempt('children', () => page.getElementById('all').numChildren);
        attempt('text', () => page.getElementById('all').innerText.length);
        attempt('path', () => page.getElementById('p24999').domPath);
        attempt('xpath', () => page.evaluateXPath('count(//span)').numberValue);
        attempt('click', () => { page.getElementById('p24999').click(); return page.getElementById('p24999').title; });
    )"_s),
        uR"(all: true
last: number 25000
children: 25000
text: 338892
path: DOCUMENT.HTML1.BODY1.DIV1.P24999
xpath: 25000
click: clicked
)"_s);
}

TEST_F(HostileTest, ElementsThatRaiseInEveryGetter)
{
    EXPECT_EQ(run(uR"(
        attempt('open', () => open('getters.html'));
        attempt('items', () => page.getElementsByTagName('li').length);
        attempt('second', () => page.getElementsByTagName('li').at(1).innerText);
        attempt('first of its tag', () => page.getElementsByTagName('h1').at(0));
        attempt('xpath', () => page.evaluateXPath('count(//li)').numberValue);
    )"_s),
        uR"(open! Error fetching element with id 'heading': Error evaluating JavaScript to retrieve HTML Object: Error: nodeType is nobody's business. Stacktrace: Error: nodeType is nobody's business
items: 2
second: two
first of its tag! Could not get reference for array element at '0': Error evaluating JavaScript to retrieve HTML Object: Error: nodeType is nobody's business. Stacktrace: Error: nodeType is nobody's business
xpath! Error evaluating xpath 'count(//li)': Error: nodeType is nobody's business
)"_s);
}

struct Deed
{
    const char *name; ///< what the page does, as its query
    QString logged;
};

TEST_F(HostileTest, PagesThatTakeFunctionsAway)
{
    const Deed rows[] = {
        {"nothing", allWorks},
        {"noJson", u"open! TypeError: Cannot read properties of undefined (reading 'stringify')\n"_s},
        {"ownJson", u"open! Failed to parse JSON return value 'nonsense':* Line 1, Column 1\n"_s},
        {"arrayMembers",
            QString(allWorks).replace(u"xpath: 2"_s,
                u"xpath! Error evaluating xpath 'count(//li)': XPath parse error nonsense in: "
                "count(//li)"_s)},
        {"failingArrayMembers",
            QString(allWorks).replace(
                u"xpath: 2"_s, u"xpath! Error evaluating xpath 'count(//li)': Error: taken away"_s)},
        {"extraArrayMembers", allWorks},
        // A property that cannot be read is an empty text; texts are read without what the page took away.
        {"callAndApply", uR"(open: HTML_Object HTML_Button
title: the title
text: Text of the heading
visible: true
set: new
click: 1
items! Could not convert length of array '' to number
second! Cannot retrieve element at '1', length check failed: Could not convert length of array '' to number
xpath! Error evaluating xpath 'count(//li)': Error: taken away
path: DOCUMENT.HTML1.BODY1.H11
)"_s},
        {"string",
            QString(allWorks).replace(u"xpath: 2"_s,
                u"xpath! Error converting number value of xpath resultset window.__ostrel__object__C* to "
                u"double, "
                "received value is 'NaN'"_s)},
        {"noEval", u"open! TypeError: (0 , eval) is not a function\n"_s},
        {"ownEval", u"open! Failed to parse JSON return value 'nonsense':* Line 1, Column 1\n"_s},
        {"defineProperty", allWorks},
        {"frozenNamespace", allWorks},
        {"ownReferences",
            u"open! Error fetching element with id 'heading': Error evaluating JavaScript to retrieve HTML "
            "Object: TypeError: nonsense.getElementById is not a function. Stacktrace: TypeError: "
            "nonsense.getElementById is not a function\n"_s},
        {"noStore",
            u"open! Error evaluating JavaScript to retrieve HTML Object: TypeError: Cannot read properties "
            "of undefined (reading 'length'). Stacktrace: TypeError: Cannot read properties of undefined "
            "(reading 'length')\n"_s},
    };
    for (const Deed &row : rows) {
        SCOPED_TRACE(row.name);
        const QString opening
            = u"attempt('open', () => open('redefined.html?%1'));"_s.arg(QLatin1String(row.name));

        static const QRegularExpression counter(u"(object__C)[0-9]+"_s);
        EXPECT_EQ(run(opening + u"if (heading) {"_s + use + u'}').replace(counter, u"\\1*"_s), row.logged);
    }
}

TEST_F(HostileTest, APageThatTakesOurNamespaceAway)
{
    EXPECT_EQ(run(u"attempt('open', () => open('redefined.html?noNamespace'));"
                  "attempt('property', () => heading.property('title'));"
                  "attempt('visible', () => heading.visible);"_s),
        uR"(open: HTML_Object HTML_Button
property! Error while obtaining property 'title': TypeError: Cannot read properties of undefined (reading 'getPropertyValue')
visible: true
)"_s);
    EXPECT_EQ(run(u"attempt('open', () => open('redefined.html?ownNamespace'));"
                  "attempt('property', () => heading.property('title'));"
                  "attempt('screen', () => heading.screenRect);"_s),
        uR"(open: HTML_Object HTML_Button
property: nonsense
screen! Error while obtaining rectangle with function '__ostrel__getScreenRectAsObject': TypeError: window.top.__ostrel.getViewPortSize is not a function
)"_s);
}

TEST_F(HostileTest, APageWithAStrictPolicy)
{
    EXPECT_EQ(run(u"attempt('open', () => open('policy.html'));"_s + use), allWorks);
}

TEST_F(HostileTest, APageThatLeavesDuringACall)
{
    limitCalls(3000);

    const QString left = run(u"open('leaving.html'); attempt('leave', () => heading.invoke('leave'));"_s);

    // The page is busy until its end, and that end or the limit comes first.
    EXPECT_TRUE(left == "leave! Error invoking function 'leave': The page did not answer within 3 s\n"_L1
        || left
            == "leave! Error invoking function 'leave': The page navigated away while the script was running\n"_L1)
        << left.toStdString();
    EXPECT_EQ(run(u"attempt('next', () => open('redefined.html?nothing'));"_s + use),
        QString(allWorks).replace(u"open: "_s, u"next: "_s));
}

TEST_F(HostileTest, APageThatLeavesAfterAClick)
{
    EXPECT_EQ(run(uR"(
        open('leaving.html');
        button.click();
        for (var tries = 0; tries < 200; tries++) {
            try {
                heading.title;
                snooze(0.05);
            } catch (error) {
                log(/deleted in browser already|navigated away/.test(error.message));
                break;
            }
        }
        attempt('new', () => activeDocument().getElementsByTagName('li').length);
    )"_s),
        u"true\nnew: 2\n"_s);
}

TEST_F(HostileTest, DialogsDuringACall)
{
    EXPECT_EQ(run(uR"(
        open('dialogs.html');
        ['alert', 'confirm', 'prompt'].forEach(kind => {
            attempt(kind, () => heading.invoke(kind));
            attempt('then', () => heading.title);
        });
        button.click();
        attempt('after the click', () => { for (var tries = 0; tries < 500; tries++) { heading.title; snooze(0.02); } });
        attempt('then', () => heading.title);
    )"_s),
        uR"(alert! Error invoking function 'alert': The page is blocked by an alert: 'stop "here"'
then: the title
confirm! Error invoking function 'confirm': The page is blocked by a confirm: 'sure?'
then: the title
prompt! Error invoking function 'prompt': The page is blocked by a prompt: 'who?'
then: the title
after the click! Error retrieving title: The page is blocked by an alert: 'clicked'
then: the title
)"_s);
}

TEST_F(HostileTest, APageThatIsWrittenAnew)
{
    EXPECT_EQ(run(uR"(
        open('overwritten.html');
        attempt('rewrite', () => heading.invoke('rewrite'));
        attempt('the old heading', () => heading.innerText);
        attempt('the new heading', () => activeDocument().getElementById('heading').innerText);
        attempt('visible', () => activeDocument().getElementsByTagName('p').at(0).visible);
        attempt('the old button', () => activeDocument().getElementById('button') === null);
    )"_s),
        uR"(rewrite: undefined
the old heading: Text of the heading
the new heading: Written anew
visible: true
the old button: true
)"_s);
}

TEST_F(HostileTest, AHandlerThatNeverReturns)
{
    run(u"open('endless.html');"_s);
    limitCalls(1000);
    QElapsedTimer elapsed;
    elapsed.start();

    const QString logged = run(uR"(
        page = activeDocument();
        heading = page.getElementById('heading');
        attempt('click', () => page.getElementById('button').click());
        attempt('title', () => heading.title);
        attempt('open', () => loadUrl(serverAddress() + 'policy.html'));
    )"_s);

    EXPECT_EQ(logged, uR"(click: undefined
title! Error retrieving title: The page did not answer within 1 s
open! '/policy.html' did not finish loading in time
)"_s);
    EXPECT_LT(elapsed.elapsed(), 10000);
}

} // namespace
} // namespace Ostrel::Host
