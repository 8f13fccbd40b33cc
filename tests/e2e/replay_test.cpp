// Scripts that act on pages of a real browser as recordings do: fields of every kind, dialogs, windows, keys
// and the events that the pages see of it.
#include "host/script/scriptengine.h"
#include "host/script/testsession.h"
#include "host/script/vocabulary.h"
#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "support/printqt.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/pages/replay");

// `events` are those that the fields have seen since the last question; an event that no user's device has
// caused has a star.
const QString helpers = uR"js(
    function element(tag, id) { return "{tagName='" + tag + "' id='" + id + "'}"; }
    function input(id) { return element("INPUT", id); }
    function button(id) { return element("BUTTON", id); }
    function inPage(id, member) { return evaluateInPage("document.getElementById('" + id + "')." + member); }
    // Where the pointer comes from and what lies on its way is a matter of the page's layout.
    function events() {
        return evaluateInPage("happened()").replace(/mouse(over|out) \w+(, )?/g, "").replace(/, $/, "");
    }
    function errorOf(statement) {
        try { statement(); } catch (error) { return error.message.split("\n")[0]; }
        return "no error";
    }
    function open(page) { startBrowser(serverAddress() + page); }
)js"_s;

/// What a script reports, one a line.
class Lines : public ResultSink
{
public:
    void logged(const QString &text) override { lines += text + u'\n'; }
    void sectionBegan(const QString &title, const ScriptPlace &place) override
    {
        lines += u"section %1 at %2:%3\n"_s.arg(title, place.file, QString::number(place.line));
    }
    void sectionEnded() override { lines += u"end of section\n"_s; }
    void verified(const Verification &verification) override
    {
        lines += u"%1 '%2' actual '%3' expected '%4' at %5:%6\n"_s.arg(
            verification.passed ? u"passed"_s : u"failed"_s, verification.message, verification.actual,
            verification.expected, verification.place.file, QString::number(verification.place.line));
    }

    QString lines;
};

class ReplayTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Where the page scripts of standard fields lie.
        prefix.set(QStringLiteral(PAGEPROBE_SOURCE_DIR));
        SessionOptions options;
        options.servedDirectory = pagesFolder;
        auto started = TestSession::start(options, results);
        ASSERT_EQ(started.error, QString());
        session = std::move(started.value);
    }
    static void TearDownTestSuite() { session.reset(); }

    // What the script reports, with the error behind it if it did not come to its end.
    static QString run(const QString &script)
    {
        results.lines.clear();
        ScriptEngine engine;
        const ScriptOutcome first = engine.run(helpers, u"helpers.js"_s);
        EXPECT_FALSE(first.failed) << first.error.text().toStdString();
        const ScriptOutcome outcome = engine.run(script, u"script.js"_s);
        return outcome.failed ? results.lines + outcome.error.text() : results.lines;
    }

    static inline ScopedVariable prefix{"OSTREL_PREFIX"};
    static inline Lines results;
    static inline std::unique_ptr<TestSession> session;
};

using PageValues = ReplayTest;
using Fields = ReplayTest;
using Dialogs = ReplayTest;
using Windows = ReplayTest;
using Verifying = ReplayTest;

TEST_F(ReplayTest, EveryStatementThatARecorderWritesHasAFunction)
{
    const GlobalClass *global = Inspector::self()->globalClass();
    for (const Statement &statement : vocabulary()) {
        QStringList known;
        for (const GlobalMethod *method : global->findGlobalMethods(QString::fromLatin1(statement.name)))
            known.append(QString::number(method->signature().count()));
        for (const QStringList &parameters : parameterLists(statement))
            EXPECT_TRUE(known.contains(QString::number(parameters.size())))
                << statement.name << " with " << parameters.size();
    }
}

// Values of a page

TEST_F(PageValues, OfEachTypeComeBackOrSayWhyNot)
{
    EXPECT_EQ(run(uR"js(
        open("left.html");
        function value(code) {
            try {
                const result = evaluateInPage(code);
                log(code + " => " + typeof result + " '" + result + "'");
            } catch (error) {
                log(code + " =! " + error.message.split("\n")[0]);
            }
        }
        ["undefined", "null", "1+1", "0.5", "-0", "1e400", "'text'", "''", "true", "[1,2]", "({a:1})", "/x/",
            "document.body", "new Date(0)", "(function f() {})", "Symbol('s')", "10n", "throw 'boo'",
            "throw new RangeError('too far')", "nobody", "1 +", "new Proxy({}, {})",
            "Proxy.revocable({}, {}).proxy",
            "var r = Proxy.revocable({}, {}); r.revoke(); r.proxy"].forEach(value);
    )js"_s),
        uR"js(undefined => undefined 'undefined'
null => object 'null'
1+1 => number '2'
0.5 => number '0.5'
-0 => number '0'
1e400 =! Json object is null: >>{"type":"number","object":null}<<
'text' => string 'text'
'' => string ''
true => boolean 'true'
[1,2] => object '[JsObject]'
({a:1}) => object '[JsObject]'
/x/ => object '[JsObject]'
document.body => object '[JsObject]'
new Date(0) =! Failed to retrieve Javascript Object, code threw exception: Error: Unsupported Javascript type: undefined for object: Thu Jan 01 1970 00:00:00 GMT+0000 (Coordinated Universal Time)
(function f() {}) =! Failed to retrieve Javascript Object, code threw exception: Error: Unsupported Javascript type: undefined for object: function f() {}
Symbol('s') =! Failed to retrieve Javascript Object, code threw exception: TypeError: Cannot convert a Symbol value to a string
10n =! Failed to retrieve Javascript Object, code threw exception: Error: Unsupported Javascript type: undefined for object: 10
throw 'boo' =! Failed to retrieve Javascript Object, code threw exception: : boo
throw new RangeError('too far') =! Failed to retrieve Javascript Object, code threw exception: RangeError: too far
nobody =! Failed to retrieve Javascript Object, code threw exception: ReferenceError: nobody is not defined
1 + =! Failed to retrieve Javascript Object, code threw exception: SyntaxError: Unexpected end of input
new Proxy({}, {}) => object '[JsObject]'
Proxy.revocable({}, {}).proxy => object '[JsObject]'
var r = Proxy.revocable({}, {}); r.revoke(); r.proxy =! Failed to retrieve Javascript Object, code threw exception: TypeError: Cannot perform 'get' on a proxy that has been revoked
)js"_s);
}

TEST_F(PageValues, AreReadAndCalledInThePage)
{
    EXPECT_EQ(run(uR"js(
        open("left.html");
        log(evaluateInPage("[1,[2,[3,[4]]]]").property("1").property("1").property("0"));
        log(evaluateInPage("var o = { n: 5 }; o.self = o; o").property("self").property("self").property("n"));
        log(evaluateInPage("({ 'data-id': 7 })").property("data-id"));
    log(evaluateInPage("({ 'a\"b': 8 })").property('a"b'));
    log(evaluateInPage("document.body").property("tagName"));
    log(evaluateInPage("new Proxy({}, { get: function () { return 9; } })").property("any"));
    log(errorOf(() => evaluateInPage("({ get x() { throw new Error('no \"x\"'); } })").property("x")));
    log(evaluateInPage("({ f: function () { return this.n; }, n: 1 })").call("f"));
    log(evaluateInPage("({ f: function (a, b, c) { return a + b.length + c[1]; } })").call("f", [1, "a\nb\"\\", [2, 3]]));
    const list = evaluateInPage("[3, 1, 2]");
    log(evaluateInPage("({ f: function (a, e) { return a.sort().join() + e.tagName; } })").call("f", [list, findObject("{tagName='P' id='arrived'}")]));
    log(errorOf(() => list.property(1)));
    log(errorOf(() => list.call("nothing")));
    loadUrl(serverAddress() + "left.html");
    log(errorOf(() => list.property("length")));
    )js"_s),
        uR"js(3
5
7
8
BODY
9
Failed to retrieve Javascript Object, code threw exception: Error: no \"x\"
1
9
1,2,3P
JsObject::property: Requires a string argument
Failed to retrieve Javascript Object, code threw exception: TypeError: top.__ostrel__jsobjects[13].nothing is not a function
Failed to retrieve Javascript Object, code threw exception: TypeError: Cannot read properties of undefined (reading 'length')
)js"_s);
}

TEST_F(PageValues, TextsComeBackAsTheyAre)
{
    EXPECT_EQ(run(uR"js(
        open("left.html");
        log(evaluateInPage("'x'.repeat(10 * 1024 * 1024)").length);
    log(evaluateInPage("'a\u2028b'") === "a\u2028b");
    log(evaluateInPage("'a\\u0000b'") === "a\u0000b");
    log(evaluateInPage("'\\ud83d\\ude00'") === "\ud83d\ude00");
    log(evaluateInPage("var a = 'first';\nvar b = 'second'; // a comment\r\na + b"));
    log(errorOf(() => evaluateInPage("'\\ud800'")).slice(0, 26));
    log(errorOf(() => evaluateInPage("'\\udc00'")));
    )js"_s),
        uR"js(10485760
true
true
true
firstsecond
Cannot parse JSon value: >
Cannot convert json object to a string: >>{"type":"string","object":"\udc00"}<<
)js"_s);
}

// Fields: what they hold afterwards and what the page has seen

TEST_F(Fields, OfTextAreTypedIntoKeyByKey)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        typeText(input("text"), "ab");
        log(inPage("text", "value") + ": " + events());
        typeText(input("text"), "");
        log(inPage("text", "value") + ": " + events());
        typeText(element("TEXTAREA", "area"), "a\nB");
        log(inPage("area", "value") + ": " + events());
        typeText(element("DIV", "editable"), "é");
        log(inPage("editable", "textContent") + ": " + events());
    )js"_s),
        uR"js(ab: focus text, keydown:a text, keypress:a text, input text, keyup:a text, keydown:b text, keypress:b text, input text, keyup:b text
: keydown:Delete text, input text, keyup:Delete text
a
B: change text, blur text, focus area, keydown:a area, keypress:a area, input area, keyup:a area, keydown:Enter area, keypress:Enter area, input area, keyup:Enter area, keydown:B area, keypress:B area, input area, keyup:B area
é: change area, blur area, focus editable, keydown:a editable, keyup:a editable, keydown:é editable, keypress:é editable, input editable, keyup:é editable
)js"_s);
}

TEST_F(Fields, OfEveryTextTypeTakeTheirText)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        const texts = { text: "<Home> \\ '\"", untyped: "ü€😀", email: "a@b.org", number: "-4.5", url: "http://a.org/?b=c",
            tel: "+44 1", password: "secret", search: "two words" };
        Object.keys(texts).forEach(id => {
            typeText(input(id), texts[id]);
            log(id + " " + inPage(id, "value"));
        });
    )js"_s),
        uR"js(text <Home> \ '"
untyped ü€😀
email a@b.org
number -4.5
url http://a.org/?b=c
tel +44 1
password secret
search two words
)js"_s);
}

TEST_F(Fields, OfEveryTextTypeSeeEachKeyOnce)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        ["untyped", "email", "url", "tel", "password", "search"].forEach(id => {
            typeText(input(id), "x");
            log(events());
        });
        typeText(input("number"), "-7");
        log(events());
    )js"_s),
        uR"js(focus untyped, keydown:x untyped, keypress:x untyped, input untyped, keyup:x untyped
change untyped, blur untyped, focus email, keydown:x email, keypress:x email, input email, keyup:x email
change email, blur email, focus url, keydown:x url, keypress:x url, input url, keyup:x url
change url, blur url, focus tel, keydown:x tel, keypress:x tel, input tel, keyup:x tel
change tel, blur tel, focus password, keydown:x password, keypress:x password, input password, keyup:x password
change password, blur password, focus search, keydown:x search, keypress:x search, input search, keyup:x search
change search, blur search, focus number, keydown:- number, keypress:- number, input number, keyup:- number, keydown:7 number, keypress:7 number, input number, keyup:7 number
)js"_s);
}

TEST_F(Fields, OfOtherTypesAreSetAndToldOnce)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        const values = { date: "2026-03-04", time: "10:30", month: "2026-03", week: "2026-W12",
            moment: "2026-03-04T10:30", color: "#A0B0C0", range: "80" };
        Object.keys(values).forEach(id => {
            setText(input(id), values[id]);
            log(inPage(id, "value") + ": " + events().replace(/^blur \w+, /, ""));
        });
        chooseDate(input("date"), "2027-01-02");
        chooseColor(input("color"), "#010203");
        log(inPage("date", "value") + " " + inPage("color", "value"));
        events();
        log(errorOf(() => setText(input("date"), "soon")) + " " + inPage("date", "value"));
        log(errorOf(() => typeText(input("range"), "1000")) + " " + inPage("range", "value"));
        log(errorOf(() => chooseDate(input("date"), "2 January")));
        log(events());
    )js"_s),
        uR"js(2026-03-04: focus date, input* date, change* date
10:30: focus time, input* time, change* time
2026-03: focus month, input* month, change* month
2026-W12: focus week, input* week, change* week
2026-03-04T10:30: focus moment, input* moment, change* moment
#a0b0c0: focus color, input* color, change* color
80: focus range, input* range, change* range
2027-01-02 #010203
setText: {tagName='INPUT' id='date'}: The field does not take 'soon'. 2027-01-02
typeText: {tagName='INPUT' id='range'}: The field does not take '1000'. 80
chooseDate: {tagName='INPUT' id='date'}: '2 January' is no date of the form yyyy-MM-dd.
blur color, focus date, blur date, focus range
)js"_s);
}

TEST_F(Fields, ThatAreClickedSeeTheOrderOfThePayload)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        clickButton(input("box"));
        log(inPage("box", "checked") + ": " + events());
        clickButton(input("two"));
        log(inPage("two", "checked") + " " + inPage("one", "checked") + ": " + events());
        clickButton(button("button"));
        log(events());
        mouseClick(button("button"), 2);
        log(events());
        mouseClick(button("button"), 16, 3, 4);
        log(events());
        doubleClick(button("button"), 3, 4);
        log(events());
        mouseClick(element("A", "link"));
        log(evaluateInPage("location.hash") + ": " + events());
        mouseClick(element("DIV", "editable"), 1, 2);
        log(events());
        setFocus(input("text"));
        log(events());
    )js"_s),
        uR"js(true: focus box, mousedown* box, click* box, input box, change box, mouseup* box, mouseout* box, change* box
true false: blur box, focus two, mousedown* two, click* two, input two, change two, mouseup* two, mouseout* two, change* two
blur two, focus button, mousedown* button, click* button, mouseup* button, mouseout* button
mousedown* button, click* button, mouseup* button, mouseout* button
mousedown* button, click* button, mouseup* button, mouseout* button
mouseover* button, mousedown* button, click* button, mouseup* button, mousedown* button, click* button, dblclick* button, mouseup* button, mouseout* button
#there: mouseover* link, mousedown* link, click* link, mouseup* link, mouseout* link
blur button, focus editable, mouseover* editable, mousedown* editable, click* editable, mouseup* editable, mouseout* editable
blur editable, focus text
)js"_s);
}

TEST_F(Fields, SeeTheTrueDevicesOfNativeStatements)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        nativeMouseClick(button("button"), 3, 4, 1);
        log(events());
        nativeMouseClick(button("button"), 3, 4, 2);
        log(events());
        nativeMouseClick(input("far"), 5, 5, 1);
        log(events());
        nativeType(input("text"), "<Ctrl+A>ab<Left><Shift+Home>c<Tab>");
        log(inPage("text", "value") + ": " + events());
        log(errorOf(() => nativeType(input("text"), "<Retrun>")));
        log(errorOf(() => nativeMouseClick(button("button"), 1, 1, 9)));
    )js"_s),
        uR"js(mousedown button, focus button, mouseup button, click button
mousedown button, contextmenu button, mouseup button
mousedown far, blur button, focus far, mouseup far, click far
cb: blur far, focus text, keydown:a text, keyup:a text, keydown:a text, keypress:a text, input text, keyup:a text, keydown:b text, keypress:b text, input text, keyup:b text, keydown:ArrowLeft text, keyup:ArrowLeft text, keydown:Home text, keyup:Home text, keydown:c text, keypress:c text, input text, keyup:c text, keydown:Tab text, change text, blur text, focus untyped, keyup:Tab untyped
nativeType: {tagName='INPUT' id='text'}: There is no key '<Retrun>'.
nativeMouseClick: {tagName='BUTTON' id='button'}: There is no mouse button 9.
)js"_s);
}

TEST_F(Fields, TellTheirChangeWhenTheUserTurnsElsewhere)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        typeText(input("text"), "a");
        typeText(input("text"), "b");
        log(events().replace(/key\w+:\w \w+, /g, "").replace(/, key\w+:\w \w+/g, ""));
        mouseClick(element("A", "link"));
        log(events());
        typeText(input("text"), "c");
        events();
        selectOption(element("SELECT", "single"), 'two, or "2"');
        log(events());
        typeText(input("text"), "d");
        events();
        mouseClick(element("DIV", "host"));
        log(events());
    )js"_s),
        uR"js(focus text, input text, input text
change text, blur text, focus link, mouseover* link, mousedown* link, click* link, mouseup* link, mouseout* link
change text, blur text, focus single, change* single
change text, blur text, mouseover* host, mousedown* host, click* host, mouseup* host, mouseout* host
)js"_s);
}

TEST_F(Fields, SubmitTheirFormByTheReturnKey)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        typeText(input("text"), "a");
        events();
        typeText(input("text"), "<Return>");
        log(evaluateInPage("document.title") + ": " + events());
    )js"_s),
        uR"js(submitted: keydown:Enter text, keypress:Enter text, change text, click submit, submit form, keyup:Enter text
)js"_s);
}

TEST_F(Fields, ThatCannotBeChangedSaySo)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        log(errorOf(() => typeText(input("readonly"), "x")) + " " + inPage("readonly", "value"));
        log(errorOf(() => waitForObject(input("disabled"), 200)));
        log(errorOf(() => clickTab(input("text"), "x")));
        log(errorOf(() => mouseClick(null)));
        log(events());
    )js"_s),
        uR"js(typeText: {tagName='INPUT' id='readonly'}: The field is read-only. fixed
Object not ready within 0.2 s: {tagName='INPUT' id='disabled'}: it is there, but hidden or disabled
clickTab: {tagName='INPUT' id='text'}: HTML_Text has no method 'clickTab'.
mouseClick: null: There is no object.

)js"_s);
}

TEST_F(Fields, OfChoicesTakeTextsValuesAndIndexes)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        const single = findObject(element("SELECT", "single")), multiple = findObject(element("SELECT", "multiple"));
        selectOption(element("SELECT", "single"), 'two, or "2"');
        log(single.selectedOption + ": " + events());
        selectOption(single, "it's three");
        log(single.selectedOption + ": " + events());
        single.setSelectedOptionByValue("2");
        log(single.selectedIndex + ": " + events());
        single.selectedIndexes = [0];
        log(JSON.stringify([single.selectedTexts, single.selectedLabels, single.selectedValues]) + ": " + events());
        log(errorOf(() => selectOption(single, "four")).replace(/\d+/, "N") + " " + single.selectedOption);
        selectOption(multiple, "A;B, b;");
        log(JSON.stringify([multiple.selectedTexts, multiple.selectedIndexes]) + ": " + events());
        multiple.setSelectedOptionsByValue(["b", "c"]);
        log(JSON.stringify(multiple.selectedValues) + ": " + events());
        multiple.deselectByIndexes([1]);
        log(JSON.stringify(multiple.selectedValues));
    )js"_s),
        uR"js(two, or "2": change* single
it's three: change* single
1: change* single
[["one"],["The first"],["1"]]: change* single
selectOption: HTML_Select top.__ostrel__globalObjectRefStore[N]: Could not find item with text 'four'. one
[["A","B, b"],[0,1]]: change* multiple
["b","c"]: change* multiple
["c"]
)js"_s);
}

TEST_F(Fields, InShadowTreesAndFramesAreReached)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        const shadowed = activeDocument().getElementById("host").shadowRoot.firstChild();
        typeText(shadowed, "ab");
        log(shadowed.value + ": " + events());
        nativeMouseClick(shadowed.nextSibling(), 3, 3, 1);
        log(events());
        typeText("{tagName='INPUT' id='framed' context='fields.html.FRAME1'}", "ab");
        log(findObject("{tagName='INPUT' id='framed'}").value + ": " + events());
        nativeMouseClick("{tagName='INPUT' id='framebox'}", 3, 3, 1);
        log(findObject("{tagName='INPUT' id='framebox'}").checked + ": " + events());
        selectOption("{tagName='SELECT' id='framesingle'}", "y");
        log(findObject("{tagName='SELECT' id='framesingle'}").selectedOption + ": " + events());
    )js"_s),
        uR"js(ab: focus shadowed, keydown:a shadowed, keypress:a shadowed, input shadowed, keyup:a shadowed, keydown:b shadowed, keypress:b shadowed, input shadowed, keyup:b shadowed
mousedown shadowbutton, mouseup shadowbutton, click shadowbutton
ab: blur shadowbutton, focus framed, keydown:a framed, keypress:a framed, input framed, keyup:a framed, keydown:b framed, keypress:b framed, input framed, keyup:b framed
true: mousedown framebox, change framed, blur framed, focus framebox, mouseup framebox, click framebox, input framebox, change framebox
y: change* framesingle
)js"_s);
}

TEST_F(Fields, ThatAreButtonsDoTheirWork)
{
    EXPECT_EQ(run(uR"js(
        open("controls.html");
        function click(locator) {
            clickButton(locator);
            log(evaluateInPage("document.title") + ": " + events());
            evaluateInPage("document.title = 'Controls'");
        }
        click(input("submit"));
        click(button("implicit"));
        click(input("plain"));
        click(input("image"));
        typeText(input("first"), "new");
        events();
        click(input("reset"));
        log(inPage("first", "value"));
    )js"_s),
        uR"js(submitted by submit: focus submit, mousedown* submit, click* submit, submit form, mouseup* submit, mouseout* submit
submitted by implicit: blur submit, focus implicit, mousedown* implicit, click* implicit, submit form, mouseup* implicit, mouseout* implicit
plain: blur implicit, focus plain, mousedown* plain, click* plain, mouseup* plain, mouseout* plain
submitted by image: blur plain, focus image, mousedown* image, click* image, submit form, mouseup* image, mouseout* image
Controls: change first, blur first, focus reset, mouseover* reset, mousedown* reset, click* reset, reset form, mouseup* reset, mouseout* reset
old
)js"_s);
}

TEST_F(Fields, AreReachedByTheirLabels)
{
    EXPECT_EQ(run(uR"js(
        open("controls.html");
        mouseClick(element("LABEL", "boxlabel"));
        log(inPage("box", "checked") + ": " + events());
        mouseClick(element("SPAN", "word"));
        log(inPage("radio", "checked") + ": " + events());
        mouseClick(element("LABEL", "firstlabel"));
        log(events());
    )js"_s),
        uR"js(true: focus box, mouseover* boxlabel, mousedown* boxlabel, click* boxlabel, click* box, input box, change box, mouseup* boxlabel, mouseout* boxlabel
true: mouseover* word, mousedown* word, click* word, blur box, focus radio, click* radio, input radio, change radio, mouseup* word, mouseout* word
blur radio, focus first, mouseover* firstlabel, mousedown* firstlabel, click* firstlabel, click* first, mouseup* firstlabel, mouseout* firstlabel
)js"_s);
}

TEST_F(Fields, InGroupsAndBoxesAreSelectedAndFixedOnesStay)
{
    EXPECT_EQ(run(uR"js(
        open("controls.html");
        selectOption(element("SELECT", "grouped"), "two");
        log(inPage("grouped", "value") + ": " + events());
        selectOption(element("SELECT", "list"), "y");
        log(inPage("list", "value") + ": " + events());
        log(errorOf(() => waitForObject(element("SELECT", "disabledselect"), 200)));
        log(errorOf(() => waitForObject(input("disabledbox"), 200)));
        log(errorOf(() => waitForObject(input("hidden"), 200)) + " " + inPage("hidden", "value"));
        log(errorOf(() => typeText(element("TEXTAREA", "readonlyarea"), "x")) + " " + inPage("readonlyarea", "value"));
        log(errorOf(() => chooseDate(input("readonlydate"), "2026-02-02")) + " " + inPage("readonlydate", "value"));
        log(events());
    )js"_s),
        uR"js(2: change* grouped
y: change* list, keydown* list, keypress* list, keyup* list
Object not ready within 0.2 s: {tagName='SELECT' id='disabledselect'}: it is there, but hidden or disabled
Object not ready within 0.2 s: {tagName='INPUT' id='disabledbox'}: it is there, but hidden or disabled
Object not ready within 0.2 s: {tagName='INPUT' id='hidden'}: it is there, but hidden or disabled kept
typeText: {tagName='TEXTAREA' id='readonlyarea'}: The field is read-only. fixed
chooseDate: {tagName='INPUT' id='readonlydate'}: The field is read-only. 2026-01-01

)js"_s);
}

TEST_F(Fields, OfNestedShadowTreesAreReached)
{
    EXPECT_EQ(run(uR"js(
        open("controls.html");
        const text = activeDocument().getElementById("host").shadowRoot.firstChild().shadowRoot.firstChild();
        const box = text.nextSibling(), select = box.nextSibling(), editable = select.nextSibling();
        typeText(text, "a");
        log(text.value + ": " + events());
        clickButton(box);
        log(box.checked + ": " + events());
        selectOption(select, "y");
        log(select.selectedOption + ": " + events());
        typeText(editable, "b");
        log(editable.innerText + ": " + events());
    )js"_s),
        uR"js(a: focus deeptext, keydown:a deeptext, keypress:a deeptext, input deeptext, keyup:a deeptext
true: change deeptext, mousedown* deepbox, click* deepbox, input deepbox, change deepbox, mouseup* deepbox, mouseout* deepbox, change* deepbox
y: change* deepselect
b: keydown:a deepeditable, keyup:a deepeditable, keydown:b deepeditable, keypress:b deepeditable, input deepeditable, keyup:b deepeditable
)js"_s);
}

TEST_F(Fields, OfNestedFramesAreReached)
{
    EXPECT_EQ(run(uR"js(
        open("controls.html");
        const context = "' context='controls.html.FRAME1.FRAME1";
        typeText(element("TEXTAREA", "innerarea" + context), "a");
        log(findObject(element("TEXTAREA", "innerarea" + context)).value + ": " + events());
        chooseDate(input("innerdate" + context), "2026-03-04");
        log(findObject(input("innerdate" + context)).property("value") + ": " + events());
        selectOption(element("SELECT", "innerlist" + context), "x,y,");
        log(findObject(element("SELECT", "innerlist" + context)).selectedTexts + ": " + events());
        const shadowed = findObject(element("DIV", "framehost" + context)).shadowRoot.firstChild();
        typeText(shadowed, "b");
        log(shadowed.value + ": " + events());
    )js"_s),
        uR"js(a: focus innerarea, keydown:a innerarea, keypress:a innerarea, input innerarea, keyup:a innerarea
2026-03-04: change innerarea, blur innerarea, focus innerdate, input* innerdate, change* innerdate
x,y: change* innerlist
b: blur innerdate, focus frameshadow, keydown:b frameshadow, keypress:b frameshadow, input frameshadow, keyup:b frameshadow
)js"_s);
}

TEST_F(Fields, ThatUsersReachThoughTheyAreUnseenNeedNoWait)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"card.png"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QElapsedTimer elapsed;
    elapsed.start();

    EXPECT_EQ(run(uR"js(
        open("controls.html");
        mouseClick(activeDocument().getElementById("area"));
        log(evaluateInPage("location.hash") + ": " + events());
        setText(activeDocument().getElementById("file"), "%1");
        log(inPage("file", "files[0].name") + ": " + events());
    )js"_s.arg(file.fileName())),
        uR"js(#area: mouseover* area, mousedown* area, click* area, focus area, mouseup* area, mouseout* area
card.png: input file, change file
)js"_s);
    EXPECT_LT(elapsed.elapsed(), BrowserPage::defaultLimitMs);
}

TEST_F(Fields, OfFilesGetTheirFile)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"it's a file.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));

    EXPECT_EQ(run(uR"js(
        open("fields.html");
        setText(input("file"), "%1");
        log(inPage("file", "files[0].name") + ": " + events());
        log(errorOf(() => setText(input("file"), "/no/such/file")));
    )js"_s.arg(file.fileName())),
        uR"js(it's a file.txt: input file, change file
setText: {tagName='INPUT' id='file'}: The file '/no/such/file' to upload does not exist
)js"_s);
}

// Dialogs

TEST_F(Dialogs, AreAnsweredBeforehandInOrder)
{
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        function result(id) { clickButton(button(id)); return inPage("result", "textContent"); }
        answerAlert();
        log(result("alert"));
        answerConfirm(true);
        log(result("confirm"));
        answerConfirm(false);
        log(result("confirm"));
        answerPrompt("it's \"Bob\"");
        log(result("prompt"));
        answerPrompt();
        log(result("prompt"));
        answerConfirm(false);
        answerConfirm(true);
        log(result("twice"));
    )js"_s),
        uR"js(alert
confirm true
confirm false
prompt "it's \"Bob\""
prompt null
false true
)js"_s);
}

TEST_F(Dialogs, AreAnsweredByHandlers)
{
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        function result(id) { clickButton(button(id)); return inPage("result", "textContent"); }
        onAlert(text => log("said " + text));
        log(result("alert"));
        onConfirm(text => text === "Sure?");
        log(result("confirm"));
        onConfirm(false);
        log(result("confirm"));
        answerConfirm(true);
        log(result("confirm") + ", and then " + result("confirm"));
        onPrompt((text, offered) => text + offered);
        log(result("prompt"));
        onPrompt("Eve");
        log(result("prompt"));
        onPrompt(() => null);
        log(result("prompt"));
        onConfirm(() => { throw new Error("cannot decide"); });
        log(errorOf(() => result("confirm")) + " " + inPage("result", "textContent"));
        onConfirm(() => evaluateInPage("1"));
        log(errorOf(() => result("confirm")));
        onAlert(null); onConfirm(null); onPrompt(null);
        log(errorOf(() => result("alert")));
    )js"_s),
        uR"js(said Hello
alert
confirm true
confirm false
confirm true, and then confirm false
prompt "Name?Ann"
prompt "Eve"
prompt null
The handler of a confirm: 'Sure?' failed: cannot decide confirm false
The handler of a confirm: 'Sure?' failed: The page waits for the answer to a confirm: 'Sure?'
clickButton: {tagName='BUTTON' id='alert'}: It opened an alert: 'Hello', which nobody answers.
)js"_s);
}

TEST_F(Dialogs, WithoutAnAnswerFailTheStatementAndGo)
{
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        log(errorOf(() => clickButton(button("prompt"))) + " " + inPage("result", "textContent"));
        answerConfirm(true);
        log(errorOf(() => clickButton(button("twice"))) + " " + inPage("result", "textContent"));
        log(errorOf(() => clickButton(button("slow"))) + " " + inPage("result", "textContent"));
    )js"_s),
        uR"js(clickButton: {tagName='BUTTON' id='prompt'}: It opened a prompt: 'Name?', which nobody answers. prompt null
clickButton: {tagName='BUTTON' id='twice'}: It opened a confirm: 'Second?', which nobody answers. true false
clickButton: {tagName='BUTTON' id='slow'}: It opened an alert: 'At last', which nobody answers. slow
)js"_s);
}

TEST_F(Dialogs, ThatBlockNoStatementAreDismissedAtTheLimit)
{
    session->dialogs()->setDismissalLimit(300);
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        clickButton(button("later"));
        snooze(1.5);
        log(inPage("result", "textContent"));
    )js"_s),
        uR"js(Nobody answered an alert: 'Late' within 0.3 s; it was dismissed.
late
)js"_s);
    session->dialogs()->setDismissalLimit(DialogAnswers::dismissalMs);
}

TEST_F(Dialogs, AreToldToEventHandlers)
{
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        installEventHandler("ConfirmOpened", () => log("a confirm opened"));
        installEventHandler("BodyUnloaded", (location, context) => log(context + " is left"));
        answerConfirm(true);
        clickButton(button("confirm"));
        waitForObject(button("leave"));
        clickButton(button("leave"));
        waitForObject("{tagName='P' id='arrived'}");
        installEventHandler("ConfirmOpened", null);
        installEventHandler("BodyUnloaded", null);
        log(errorOf(() => installEventHandler("Nothing", () => 1)));
    )js"_s),
        uR"js(a confirm opened
dialogs.html is left
installEventHandler: there is no event 'Nothing'. Events are AlertOpened, ConfirmOpened, PromptOpened, WindowOpened, BodyUnloaded.
)js"_s);
}

// Windows

TEST_F(Windows, OpenCloseAndAreLeft)
{
    EXPECT_EQ(run(uR"js(
        open("dialogs.html");
        clickButton(button("popup"));
        waitForContextExists("popup.html");
        clickButton(button("choose"));
        closeWindow("[Window]"); // it has closed by itself
        log(inPage("result", "textContent"));
        clickButton(button("popup"));
        waitForContextExists("popup.html");
        closeWindow("[Window]");
        log(evaluateInPage("document.title"));
        clickButton(button("popup"));
        waitForContextExists("popup.html");
        closeWindow("popup.html");
        log(errorOf(() => closeWindow("popup.html")));
        clickButton(button("leave"));
        log(findObject("{tagName='P' id='arrived'}").innerText); // without a wait
    )js"_s),
        uR"js(chosen
Dialogs
closeWindow: popup.html: There is no such window.
Arrived
)js"_s);
}

// Recordings

class RecordingReplay : public ::testing::TestWithParam<int>
{
};

TEST_P(RecordingReplay, OfAShopVisitBuysWhatTheUserBought)
{
    SessionOptions options;
    options.servedDirectory = QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo");
    Lines results;
    const auto started = TestSession::start(options, results);
    ASSERT_EQ(started.error, QString());
    QFile recording(QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/data/recordings/shop-visit.js"));
    ASSERT_TRUE(recording.open(QIODevice::ReadOnly));
    QString script = QString::fromUtf8(recording.readAll());
    script.replace("\"http://127.0.0.1:PORT/index.html\""_L1, "serverAddress() + \"index.html\""_L1);
    script.replace("SOURCES"_L1, QStringLiteral(PAGEPROBE_SOURCE_DIR));
    script += uR"js(
        const state = JSON.parse(evaluateInPage("JSON.stringify(shopState())"));
        const order = state.order;
        order.cart.forEach(line => log([line.quantity, line.id, line.size, line.wrapping].join(" ")));
        log(order.total + " for " + order.values.fullName + ", " + order.values.street + ", " + order.values.country);
        log(order.values.method + ": " + order.values.note);
        log(state.wishlist.map(wish => wish.label).join(", "));
        log(state.log.slice(10).join("; "));
    )js"_s;
    ScriptEngine engine;

    const ScriptOutcome outcome = engine.run(script, u"shop-visit.js"_s);

    EXPECT_FALSE(outcome.failed) << outcome.error.text().toStdString();
    EXPECT_EQ(results.lines, uR"js(2 pellow-mug Small none
3 pellow-mug Medium paper
9855 for Ilse Marrow, 7 Harbour Lane, vell
pickup: The blue
door
Orrin Lamp, Quill Vase, Brook Watering Can, My mug, Tea
size guide Medium; add pellow-mug x3; notify hinkle-clock; board Renamed to “My mug”.; board “Vassel Teapot” selected.; board Renamed to “Tea”.; topic returns; useful returns Yes; status refreshed; question When?; question And why?; voucher unknown WRONG; voucher QUIET10; empty cart refused; quantity pellow-mug 2; check 1; check 1; check 0; order OD-1001 express
)js"_s);
}

INSTANTIATE_TEST_SUITE_P(Times, RecordingReplay, ::testing::Range(0, 3));

// What counts as a step

/// The statements that a report would show, one a line.
class Steps : public ResultSink
{
public:
    void statementBegan(const StatementBegin &statement) override
    {
        lines += u"%1 at %2"_s.arg(statement.text, QString::number(statement.place.line));
    }
    void statementEnded(double milliseconds, const QString &error) override
    {
        EXPECT_GT(milliseconds, 0);
        lines += error.isEmpty() ? u"\n"_s : u": %1\n"_s.arg(error);
    }

    QString lines;
};

TEST_F(ReplayTest, WhatAScriptDoesWithObjectsIsAStepAndWhatItAsksIsNot)
{
    Steps steps;
    ScriptEngine engine(steps);

    const ScriptOutcome outcome = engine.run(uR"js(startBrowser(serverAddress() + "fields.html");
const page = activeDocument(), box = page.getElementById("box"), field = page.getElementById("text");
const single = page.getElementById("single");
box.checked = true;
if (box.checked && box.property("checked") === "true" && box.length !== 3)
    box.setChecked(false);
field.value = "it's \"Ada\"";
single.selectedIndexes = [1];
single.setSelectedOptionByValue("2");
page.getElementById("button").click(2);
field.invoke("select");
callMethod(field, "setValue", "x");
callMethod(field, "value");
try { box.title = "x"; } catch (error) { }
try { single.setSelectedOption("four"); } catch (error) { }
try { single.setSelectedOption(); } catch (error) { }
try { box.colour = "red"; } catch (error) { }
)js"_s,
        u"script.js"_s);

    EXPECT_FALSE(outcome.failed) << outcome.error.text().toStdString();
    static const QRegularExpression port(u":\\d+/"_s);
    EXPECT_EQ(steps.lines.replace(port, u"/"_s), uR"js(serverAddress() at 1
startBrowser("http://127.0.0.1/fields.html") at 1
activeDocument() at 2
HTML_CheckBox.checked = true at 4
HTML_CheckBox.setChecked(false) at 6
HTML_Text.value = "it's \"Ada\"" at 7
HTML_Select.selectedIndexes = [...] at 8
HTML_Select.setSelectedOptionByValue("2") at 9
HTML_Button.click(2) at 10
HTML_Text.invoke("select") at 11
HTML_Text.setValue("x") at 12
HTML_CheckBox.title = "x" at 14: Cannot set read-only property title.
HTML_Select.setSelectedOption("four") at 15
)js"_s);
}

// Verifications

TEST_F(Verifying, GoesOnAfterAFailure)
{
    EXPECT_EQ(run(uR"js(verify(1 === 1, "one is one");
log(verify(0));
compare([1, { a: ["x"] }], [1, { a: ["x"] }], "deep");
compare("2", 2, "types");
compare(NaN, NaN);
compare(new Date(5), new Date(6), "dates");
compare(undefined, null);
log(section("outer", () => {
    section("inner", () => verify(true));
    return "value";
}));
section("broken", () => { throw new Error("stop"); });
)js"_s),
        uR"js(passed 'one is one' actual '' expected '' at script.js:1
failed '' actual '' expected '' at script.js:2
false
passed 'deep' actual '[1, {a: ["x"]}]' expected '[1, {a: ["x"]}]' at script.js:3
failed 'types' actual '2 (string)' expected '2 (number)' at script.js:4
passed '' actual 'NaN' expected 'NaN' at script.js:5
failed 'dates' actual '1970-01-01T00:00:00.005Z' expected '1970-01-01T00:00:00.006Z' at script.js:6
failed '' actual 'undefined' expected 'null' at script.js:7
section outer at script.js:8
section inner at script.js:9
passed '' actual '' expected '' at script.js:9
end of section
end of section
value
section broken at script.js:12
end of section
script.js:12: stop)js"_s);
}

TEST_F(Verifying, ComparesElementsByWhatTheyStandFor)
{
    EXPECT_EQ(run(uR"js(
        open("fields.html");
        const one = findObject(input("text")), same = findObject(input("text")), other = findObject(input("email"));
        log(compare(one, same) + " " + compare(one, other) + " " + compare([one], [same]));
    )js"_s)
                  .section(u'\n', -2),
        u"true false true\n"_s);
}

} // namespace
} // namespace Ostrel::Host
