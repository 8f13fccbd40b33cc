// Lookups as scripts and the commands "find" and "names" use them, in real pages: what is found, what a miss
// says, and how long a wait takes.
#include "e2e/commandrun.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {
namespace {

const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/pages/lookup");

class LookupTest : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(run.leftProcesses(), QStringList()); }

    /// Runs a script on the lookup page and gives what it logged; a script error fails the test.
    QString logOf(const QByteArray &script)
    {
        const Ended ended = run.runScript("startBrowser(serverAddress());\n" + script, pagesFolder);
        EXPECT_EQ(ended.err, u""_s);
        EXPECT_EQ(ended.exitCode, 0);
        return ended.out;
    }

    /// The message of the error that an expression of a script throws.
    QString errorOf(const QByteArray &expression)
    {
        return logOf("waitForObject(\"{tagName='BUTTON' simplifiedInnerText='Framed'}\");\ntry { "
            + expression + "; log('no error'); } catch (error) { log(error.message); }");
    }

    CommandRun run;
};

TEST_F(LookupTest, ElementsAreFoundInThePageInFramesAndInShadowTrees)
{
    EXPECT_EQ(logOf(R"js(
        log(findObject("{tagName='BUTTON' simplifiedInnerText='Pay now'}").id);
        log(findObject("{tagName='BUTTON' simplifiedInnerText='Framed'}").innerText);
        log(findObject("{tagName='BUTTON' container={tagName='X-PANEL'}}").innerText);
        log(findObject("{tagName='BUTTON' simplifiedInnerText='Cancel' occurrence='2'}").visible);
        log(findObject("pay").tagName);
        log(findObject("DOCUMENT.HTML1.BODY1.BUTTON2").innerText);
        log(findAllObjects("{tagName='BUTTON' simplifiedInnerText='Cancel'}").length);
    )js"),
        uR"(pay
Framed
Inside
false
BUTTON
Cancel
3
)"_s);
}

TEST_F(LookupTest, WhetherSomethingExistsIsAskedWithoutAnError)
{
    EXPECT_EQ(logOf(R"js(
        log(objectExists("{tagName='BUTTON' simplifiedInnerText='Pay now'}"));
        log(objectExists("{tagName='BUTTON' simplifiedInnerText='Pay later'}"));
        try { objectExists("{tagName='BUTTON"); } catch (error) { log(error.message); }
    )js"),
        uR"(true
false
Invalid object name '{tagName='BUTTON': closing quote expected at character 17.
)"_s);
}

TEST_F(LookupTest, AMissSaysWhatDidNotMatchAndWhatComesNear)
{
    EXPECT_EQ(errorOf(R"(findObject("{tagName='BUTTON' simplifiedInnerText='Pay' visible='true'}"))"),
        uR"(Object not found: {tagName='BUTTON' simplifiedInnerText='Pay' visible='true'}: found 5 BUTTON, none with simplifiedInnerText 'Pay'
    nearest: {visible='true' tagName='BUTTON' type='submit' id='pay' simplifiedInnerText='Pay now'}, where simplifiedInnerText is 'Pay now'
    nearest: {visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}, where simplifiedInnerText is 'Cancel'
    nearest: {context='index.html.FRAME1' visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Framed'}, where simplifiedInnerText is 'Framed'
)"_s);
}

struct MissCase
{
    const char *what;
    QByteArray expression;
    QString message;
};

void PrintTo(const MissCase &row, std::ostream *out)
{
    *out << row.what;
}

class Miss : public LookupTest, public ::testing::WithParamInterface<MissCase>
{
};

TEST_P(Miss, SaysWhy)
{
    EXPECT_EQ(errorOf(GetParam().expression), GetParam().message + u'\n');
}

INSTANTIATE_TEST_SUITE_P(Names, Miss,
    ::testing::Values(MissCase{"NoSuchTag", R"(findObject("{tagName='CANVAS'}"))",
                          u"Object not found: {tagName='CANVAS'}: found no CANVAS"_s},
        MissCase{"AllAtOnce",
            R"(findObject("{tagName='BUTTON' id='pay' simplifiedInnerText='Framed' visible='false'}"))",
            uR"(Object not found: {tagName='BUTTON' id='pay' simplifiedInnerText='Framed' visible='false'}: found 5 BUTTON, none with all of these properties at once
    nearest: {visible='true' tagName='BUTTON' type='submit' id='pay' simplifiedInnerText='Pay now'}, where simplifiedInnerText is 'Pay now' and visible is 'true'
    nearest: {visible='false' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}, where id is '' and simplifiedInnerText is 'Cancel'
    nearest: {context='index.html.FRAME1' visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Framed'}, where id is '' and visible is 'true')"_s},
        MissCase{"Occurrence",
            R"(findObject("{tagName='BUTTON' simplifiedInnerText='Cancel' occurrence='9'}"))",
            u"Object not found: {tagName='BUTTON' simplifiedInnerText='Cancel' occurrence='9'}: found 3 BUTTON with these properties, not as many as its occurrence asks for"_s},
        MissCase{"Container", R"(findObject("{tagName='BUTTON' container={tagName='X-CARD'}}"))",
            u"Object not found: {tagName='BUTTON' container={tagName='X-CARD'}}: its container {tagName='X-CARD'} was not found: found no X-CARD"_s},
        MissCase{"Context", R"(findObject("{tagName='BUTTON' context='cart.html'}"))",
            u"Object not found: {tagName='BUTTON' context='cart.html'}: there is no window or frame 'cart.html'"_s},
        MissCase{"NoTag", R"(findObject("{id='pay'}"))",
            u"Object not found: {id='pay'}: the name has no tagName, which every search needs"_s},
        MissCase{"BadPattern", R"(findObject("{tagName='BUTTON' simplifiedInnerText~='['}"))",
            u"Object not found: {tagName='BUTTON' simplifiedInnerText~='['}: Invalid regular expression: /[/: Unterminated character class"_s},
        MissCase{"PlainName", R"(findObject("nowhere"))",
            u"Object not found: nowhere: nothing has this id, name, text or path"_s},
        MissCase{"Empty", R"(findObject(""))", u"The object name is empty."_s},
        MissCase{"Unquoted", R"(findObject("{tagName=BUTTON}"))",
            u"Invalid object name '{tagName=BUTTON}': value in quotes or braces expected at character 10."_s},
        MissCase{"Waited", R"(waitForObjectExists("{tagName='CANVAS'}", 300))",
            u"Object not found within 0.3 s: {tagName='CANVAS'}: found no CANVAS"_s},
        MissCase{"Disabled", R"(waitForObject("{tagName='BUTTON' id='pay'}", 300))",
            u"Object not ready within 0.3 s: {tagName='BUTTON' id='pay'}: it is there, but hidden or disabled"_s},
        MissCase{"NoWindow", R"(waitForContextExists("cart.html", 300))",
            u"There was no window or frame 'cart.html' within 0.3 s; open windows: index.html"_s}),
    [](const auto &row) { return std::string(row.param.what); });

TEST_F(LookupTest, WaitsEndWhenWhatTheyWaitForComes)
{
    EXPECT_EQ(logOf(R"js(
        findObject("bring").click();
        log(waitForObject("{tagName='P'}").innerText);
        findObject("enable").click();
        log(waitForObject("{tagName='BUTTON' id='pay'}").disabled);
        log(waitForObject(findObject("pay"), 100).id);
    )js"),
        u"Late\nfalse\npay\n"_s);
}

TEST_F(LookupTest, WindowsAreFoundByTheirContextAndInvalidateWhatTheyHeld)
{
    EXPECT_EQ(logOf(R"js(
        findObject("{tagName='A' simplifiedInnerText='Open'}").click();
        waitForContextExists("popup.html");
        var close = waitForObject("{tagName='BUTTON' simplifiedInnerText='Close me'}");
        log(findAllObjects("{tagName='BUTTON' simplifiedInnerText='Cancel'}").length);
        log(findObject("{tagName='BUTTON' simplifiedInnerText='Cancel'}").parentElement().innerText.indexOf('Close me') >= 0);
        log(findObject("{tagName='BUTTON' context='index.html.FRAME1' simplifiedInnerText='Cancel'}").visible);

        waitForContextExists("popup.html");
        close.click();
        while (objectExists("{tagName='BUTTON' simplifiedInnerText='Close me'}"))
            snooze(0.02);
        try { close.click(); } catch (error) { log(error.message); }

        findObject("{tagName='A' simplifiedInnerText='Open another'}").click();
        waitForContextExists("index.html<2>");
        waitForContextExists("index.html<2>.FRAME1");
        log(findObject("{tagName='BUTTON' context='index.html<2>' simplifiedInnerText='Pay now'}").id);
    )js"),
        uR"(4
true
true
Object reference deleted in browser already, please obtain a new reference using waitForObject or findObject
pay
)"_s);
}

TEST_F(LookupTest, PathsStartInTheContextThatWasWaitedFor)
{
    EXPECT_EQ(logOf(R"js(
        function firstButton() { return findObject("DOCUMENT.HTML1.BODY1.BUTTON1").innerText; }
        log(firstButton());
        waitForContextExists("index.html.FRAME1");
        log(firstButton());
        waitForContextExists("index.html");
        log(firstButton());
    )js"),
        u"Pay now\nFramed\nPay now\n"_s);
}

TEST_F(LookupTest, SymbolicNamesStandInAFileBesideTheScript)
{
    run.write(u"script.names"_s,
        "# The shop's buttons\npay button\t{tagName='BUTTON' id='pay'}\npanel\t{tagName='X-PANEL'}\n"
        "inside\t{tagName='BUTTON' container='panel'}\n");

    EXPECT_EQ(logOf("log(findObject('pay button').innerText); log(findObject('inside').innerText);"),
        u"Pay now\nInside\n"_s);
}

TEST_F(LookupTest, AFaultyNamesFileEndsTheRunBeforeItBegins)
{
    run.write(u"script.names"_s, "pay button {tagName='BUTTON'}\n");

    const Ended ended = run.runScript("log('never')", pagesFolder);

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.out, u""_s);
    EXPECT_EQ(ended.err,
        u"pageprobe run: ./script.names:1: A symbolic name, a tab and a name with properties expected.\n"_s);
}

// A wait must neither keep the page busy nor keep it from going on.
TEST_F(LookupTest, AWaitLetsThePagesOwnTimersRun)
{
    EXPECT_EQ(logOf(R"js(
        findObject("tick").click();
        try { waitForObject("{tagName='CANVAS'}", 1000); } catch (error) { }
        findObject("ticked").click();
        log(waitForObject("{tagName='P'}").innerText);
    )js"),
        u"true\n"_s);
}

TEST_F(LookupTest, FindPrintsEveryMatchWithTypeRectangleAndName)
{
    const Ended ended = run.run({u"find"_s, u"--serve"_s, pagesFolder, u"index.html"_s,
        u"{tagName='BUTTON' simplifiedInnerText='Cancel'}"_s});

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, u""_s);
    QStringList lines = ended.out.split(u'\n');
    for (QString &line : lines)
        line.replace(QRegularExpression(u"-?\\d+,-?\\d+ \\d+x\\d+"_s), u"RECT"_s);
    EXPECT_EQ(lines,
        (QStringList{
            u"HTML_Button  RECT  {visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}"_s,
            u"HTML_Button  -1,-1 -1x-1  {visible='false' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}"_s,
            u"HTML_Button  RECT  {context='index.html.FRAME1' visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}"_s,
            u""_s}));
}

TEST_F(LookupTest, FindSaysWhyThereIsNothing)
{
    const Ended ended
        = run.run({u"find"_s, u"--serve"_s, pagesFolder, u"index.html"_s, u"{tagName='CANVAS'}"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.out, u""_s);
    EXPECT_EQ(ended.err, u"Object not found: {tagName='CANVAS'}: found no CANVAS\n"_s);
}

TEST_F(LookupTest, FindRefusesWhatIsNoNameBeforeItOpensAnything)
{
    const Ended ended = run.run({u"find"_s, u"--serve"_s, pagesFolder, u"index.html"_s, u"{tagName}"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.out, u""_s);
    EXPECT_TRUE(ended.err.startsWith(u"pageprobe find: Invalid object name '{tagName}'"_s))
        << ended.err.toStdString();
}

TEST_F(LookupTest, NamesPrintsEveryElementInTreeOrder)
{
    const Ended ended = run.run({u"names"_s, u"--serve"_s, pagesFolder, u"popup.html"_s});

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, u""_s);
    EXPECT_EQ(ended.out, uR"(DOCUMENT.HTML1
DOCUMENT.HTML1.HEAD1
DOCUMENT.HTML1.HEAD1.TITLE1
DOCUMENT.HTML1.BODY1
{visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Close me'}
{visible='true' tagName='BUTTON' type='submit' simplifiedInnerText='Cancel'}
)"_s);
}

} // namespace
} // namespace Ostrel::Test
