// Tests of what every operation on a page rests on: results, the bridge, values through JSON, and text into
// and out of script.
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/gentlesleep.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webutilities.h"

#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/pagescript.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

/// The script that carries an expression's value out of the page.
QString enveloped(const QString &expression)
{
    return u"(function() {\n  try {\n    return JSON.stringify({'result': "_s + expression
        + u"});\n  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
          u"e['message'], "
          "'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});\n  }\n}());"_s;
}

/// The failure of an evaluation of "f()" that gave this answer.
QString errorOf(const QString &answer)
{
    FakePage page;
    page.answer(answer);
    return evaluateAsJson(&page, u"f()"_s, 0).error;
}

} // namespace

// Results

TEST(FunctionCallResult, FailsExactlyWhenThereIsAnError)
{
    const FunctionCallResult<int> success(7);
    const FunctionCallResult<int> failure(Failure(u"no such thing"_s));

    EXPECT_FALSE(success.failed());
    EXPECT_EQ(success.value, 7);
    EXPECT_EQ(success.error, QString());
    EXPECT_TRUE(failure.failed());
    EXPECT_EQ(failure.value, 0);
    EXPECT_EQ(failure.error, u"no such thing"_s);
}

TEST(FunctionCallResult, FailureWithoutATextInventsOne)
{
    const FunctionCallResult<void> failure(Failure{QString()});

    EXPECT_TRUE(failure.failed());
    EXPECT_EQ(failure.error, u"Unknown error"_s);
}

TEST(FunctionCallResult, FailureHoldsTheDefaultOfItsType)
{
    const Failure failure(u"x"_s);

    EXPECT_EQ(FunctionCallResult<bool>(failure).value, false);
    EXPECT_EQ(FunctionCallResult<double>(failure).value, 0.0);
    EXPECT_EQ(FunctionCallResult<QString>(failure).value, QString());
    EXPECT_EQ(FunctionCallResult<HTML_Object *>(failure).value, nullptr);
    EXPECT_TRUE(FunctionCallResult<Json::Value>(failure).value.isNull());
    EXPECT_EQ(FunctionCallResult<QRect>(failure).value, QRect());
    EXPECT_EQ(FunctionCallResult<ScreenRectangle>(failure).value, (ScreenRectangle{-1, -1, -1, -1}));
    EXPECT_EQ(FunctionCallResult<HTML_Object::PropertyId>(failure).value, HTML_Object::Id);
}

// The bridge

TEST(HtmlComponent, EvaluatesWithTheLimitOfTheBridge)
{
    FakePage page;
    page.answer(u"2"_s);

    const HTMLComponent::EvalResult answer = page.evaluateJavaScriptWithResult(u"1 + 1"_s);

    EXPECT_EQ(answer.result, u"2"_s);
    ASSERT_EQ(page.calls().size(), 1);
    EXPECT_EQ(page.calls().first().script, u"1 + 1"_s);
    EXPECT_EQ(page.calls().first().timeoutMs, 0U);
}

TEST(HtmlComponent, HasNoPicturesAndNoZoomByItself)
{
    const FakePage page;

    EXPECT_FALSE(page.supportsPageScreenshot());
    EXPECT_FALSE(page.grabPageScreenshot().failed());
    EXPECT_TRUE(page.grabPageScreenshot().value.isNull());
    EXPECT_FALSE(page.zoomFactor().failed());
    EXPECT_EQ(page.zoomFactor().value, 1.0);
}

TEST(HtmlComponent, MeasuresAnElementOnTheScreen)
{
    FakePage page;
    page.answer(u"10,20,30,40"_s);
    const HTML_Object element({}, u"el"_s, &page);

    const FunctionCallResult<ScreenRectangle> rect = page.getScreenRect(&element, false);

    EXPECT_EQ(rect.error, QString());
    EXPECT_EQ(rect.value, (ScreenRectangle{10, 20, 30, 40}));
    EXPECT_EQ(
        page.scripts(), QStringList{u"__ostrel__getRectAsString(__ostrel__getScreenRectAsObject(el) );"_s});
}

TEST(HtmlComponent, FailedMeasuringGivesFourMinusOnesAndTheSameMessage)
{
    FakePage page;
    page.fail(u"gone"_s);
    const HTML_Object element({}, u"el"_s, &page);

    const FunctionCallResult<ScreenRectangle> rect = page.getScreenRect(&element, false);

    EXPECT_EQ(rect.value, (ScreenRectangle{-1, -1, -1, -1}));
    EXPECT_EQ(rect.error,
        u"Error while obtaining rectangle with function '__ostrel__getScreenRectAsObject': gone"_s);
}

TEST(HtmlComponent, CannotMeasureANullObject)
{
    const FakePage page;

    const FunctionCallResult<ScreenRectangle> rect = page.getScreenRect(nullptr, true);

    EXPECT_EQ(rect.value, (ScreenRectangle{-1, -1, -1, -1}));
    EXPECT_EQ(rect.error, u"No valid HTML object provided to getScreenRect function"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

// Values through JSON

TEST(EvaluateAsJson, PutsTheExpressionIntoTheEnvelope)
{
    FakePage page;
    page.answerJson(u"{\"a\":[1,\"two\"]}"_s);

    const FunctionCallResult<Json::Value> value = evaluateAsJson(&page, u"f('%1 %2')"_s, 60000);

    EXPECT_EQ(value.error, QString());
    EXPECT_EQ(value.value["a"][0].asInt(), 1);
    EXPECT_EQ(value.value["a"][1].asString(), "two");
    ASSERT_EQ(page.calls().size(), 1);
    EXPECT_EQ(page.calls().first().script, enveloped(u"f('%1 %2')"_s));
    EXPECT_EQ(page.calls().first().timeoutMs, 60000U);
}

TEST(EvaluateAsJson, BridgeFailureComesBackUnchanged)
{
    for (const auto &[failed, threw] :
        {std::pair(true, false), std::pair(false, true), std::pair(true, true)}) {
        FakePage page;
        page.failWith(u"no connection"_s, failed, threw);

        const FunctionCallResult<Json::Value> value = evaluateAsJson(&page, u"f()"_s, 0);

        EXPECT_EQ(value.error, u"no connection"_s);
        EXPECT_TRUE(value.value.isNull());
    }
}

TEST(EvaluateAsJson, BridgeFailureWithoutATextStillFails)
{
    FakePage page;
    page.fail(QString());

    EXPECT_EQ(evaluateAsJson(&page, u"f()"_s, 0).error, u"Unknown error"_s);
}

TEST(EvaluateAsJson, UndefinedGivesNullAndNoError)
{
    FakePage page;
    page.answer(u"{}"_s);

    const FunctionCallResult<Json::Value> value = evaluateAsJson(&page, u"undefined"_s, 0);

    EXPECT_EQ(value.error, QString());
    EXPECT_TRUE(value.value.isNull());
}

TEST(EvaluateAsJson, ShortensLongExpressionsInMessages)
{
    const auto shown = [](const QString &expression) {
        FakePage page;
        page.answer(u"[]"_s);
        return evaluateAsJson(&page, expression, 0).error;
    };
    const QString front(50, u'a');
    const QString back(50, u'b');

    EXPECT_EQ(shown(front + back.left(49)),
        u"Calling %1 JSON return value is not an object: []"_s.arg(front + back.left(49)));
    EXPECT_EQ(
        shown(front + back), u"Calling %1...%2 JSON return value is not an object: []"_s.arg(front, back));
    EXPECT_EQ(shown(front + u"middle"_s + back),
        u"Calling %1...%2 JSON return value is not an object: []"_s.arg(front, back));
}

TEST(EvaluateAsJson, AnswerThatIsNoJsonIsReportedWithTheParsersText)
{
    EXPECT_EQ(errorOf(u"oops"_s),
        u"Calling f() failed to parse JSON return value 'oops': * Line 1, Column 1\n"
        "  Syntax error: value, object or array expected.\n"_s);
    EXPECT_EQ(errorOf(u"{\"result\":%2"_s),
        u"Calling f() failed to parse JSON return value '{\"result\":%2': * Line 1, Column 11\n"
        "  Syntax error: value, object or array expected.\n"_s);
}

TEST(EvaluateAsJson, ExceptionOfTheParserIsReportedAlike)
{
    const QString nested(2000, u'[');

    EXPECT_EQ(errorOf(nested),
        u"Calling f() failed to parse JSON return value '%1': Exceeded stackLimit in readValue()."_s.arg(
            nested));
}

TEST(EvaluateAsJson, AnAnswerMayBeNestedDeeplyWhereItIsSaidSo)
{
    const QString nested = QString(2000, u'[') + QString(2000, u']');
    FakePage page;
    page.answerJson(nested);
    page.answerJson(nested);

    const auto read = evaluateAsDeepJson(&page, u"f()"_s, 7, 2001);
    const auto refused = evaluateAsDeepJson(&page, u"f()"_s, 7, 2000);

    EXPECT_EQ(read.error, QString());
    EXPECT_TRUE(read.value.isArray());
    EXPECT_EQ(page.calls().at(0).timeoutMs, 7U);
    EXPECT_EQ(refused.error, u"Calling f(): The answer is nested deeper than 2000 levels"_s);
}

TEST(EvaluateAsJson, AnswerThatIsNoObjectIsReported)
{
    for (const QString &answer : {u"[1,2]"_s, u"\"text\""_s, u"7"_s, u"null"_s, u"true"_s})
        EXPECT_EQ(errorOf(answer), u"Calling f() JSON return value is not an object: %1"_s.arg(answer));
}

TEST(EvaluateAsJson, ReadsTheAnswerUpToItsFirstNul)
{
    FakePage page;
    page.answer(u"{\"result\":5}"_s + QChar(u'\0') + u"rest"_s);

    const FunctionCallResult<Json::Value> value = evaluateAsJson(&page, u"f()"_s, 0);

    EXPECT_EQ(value.error, QString());
    EXPECT_EQ(value.value.asInt(), 5);
}

TEST(EvaluateAsJson, TellsAnExceptionOfThePageWithWhatTheBrowserGives)
{
    struct Row
    {
        const char *name;
        QString members;
        QString detail;
    };
    const Row rows[] = {
        {"name and message only", u""_s, u"TypeError: no el."_s},
        {"file", u",\"file\":\"a.js\""_s, u"TypeError: no el at a.js."_s},
        {"file and line", u",\"file\":\"a.js\",\"line\":7"_s, u"TypeError: no el at a.js: 7."_s},
        {"line without a file", u",\"line\":7"_s, u"TypeError: no el."_s},
        {"stack", u",\"stack\":\"f@a.js\""_s, u"TypeError: no el. Stacktrace: f@a.js"_s},
        {"all", u",\"file\":\"a.js\",\"line\":7,\"stack\":\"f@a.js\""_s,
            u"TypeError: no el at a.js: 7. Stacktrace: f@a.js"_s},
        {"empty file", u",\"file\":\"\""_s, u"TypeError: no el at ."_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);

        EXPECT_EQ(errorOf(u"{\"error\":{\"name\":\"TypeError\",\"message\":\"no el\"%1}}"_s.arg(row.members)),
            u"Calling f(): Error evaluating JavaScript: "_s + row.detail);
    }
}

TEST(EvaluateAsJson, ThrownThingsThatAreNoErrorsDoNoHarm)
{
    EXPECT_EQ(errorOf(u"{\"error\":{}}"_s), u"Calling f(): Error evaluating JavaScript: : ."_s);
    EXPECT_EQ(errorOf(u"{\"error\":{\"name\":{},\"message\":[1]}}"_s),
        u"Calling f(): Error evaluating JavaScript: : ."_s);
    EXPECT_EQ(errorOf(u"{\"error\":\"text\"}"_s), u"Calling f(): Error evaluating JavaScript: : text."_s);
}

TEST(EvaluateAsJson, PlaceholdersInPageTextStay)
{
    FakePage page;
    page.answer(u"{\"error\":{\"name\":\"%1\",\"message\":\"%2 %3\",\"stack\":\"%1\"}}"_s);

    EXPECT_EQ(evaluateAsJson(&page, u"g('%2%3')"_s, 0).error,
        u"Calling g('%2%3'): Error evaluating JavaScript: %1: %2 %3. Stacktrace: %1"_s);
}

TEST(EvaluateAsJson, EnvelopeWorksInAScriptEngine)
{
    PageScript engine;
    const auto valueOf = [&engine](const QString &expression) {
        FakePage page;
        (void)evaluateAsJson(&page, expression, 0);
        const QJSValue answer = engine.run(page.scripts().first());
        page.answer(answer.toString());
        return evaluateAsJson(&page, expression, 0);
    };

    EXPECT_EQ(valueOf(u"6 * 7"_s).value.asInt(), 42);
    EXPECT_EQ(valueOf(u"'it\\'s'"_s).value.asString(), "it's");
    EXPECT_TRUE(valueOf(u"undefined"_s).value.isNull());
    EXPECT_EQ(valueOf(u"undefined"_s).error, QString());
    EXPECT_TRUE(
        valueOf(u"missing()"_s)
            .error.startsWith(
                u"Calling missing(): Error evaluating JavaScript: ReferenceError: missing is not defined"_s));
    EXPECT_TRUE(valueOf(u"(function() { var a = {}; a.a = a; return a; }())"_s)
                    .error.contains(u"Error evaluating JavaScript: TypeError: "_s))
        << "what JSON cannot hold is an exception too";
}

TEST(FromJson, ConvertsWhatFitsAndNamesWhatDoesNot)
{
    EXPECT_EQ(fromJson<QString>(Json::Value("text")).value, u"text"_s);
    EXPECT_EQ(fromJson<QString>(Json::Value(12)).value, u"12"_s);
    EXPECT_EQ(fromJson<QString>(Json::Value()).value, QString());
    EXPECT_EQ(fromJson<QString>(Json::Value(Json::arrayValue)).error,
        u"Unexpected type of JSON value, expected a text but got: []"_s);

    EXPECT_EQ(fromJson<int>(Json::Value(12)).value, 12);
    EXPECT_EQ(fromJson<int>(Json::Value(12.75)).value, 12);
    EXPECT_EQ(fromJson<int>(Json::Value()).value, 0);
    EXPECT_EQ(fromJson<int>(Json::Value(1e12)).error,
        u"Unexpected type of JSON value, expected a number but got: 1000000000000.0"_s);
    EXPECT_EQ(fromJson<int>(Json::Value("12")).error,
        u"Unexpected type of JSON value, expected a number but got: \"12\""_s);

    EXPECT_EQ(fromJson<bool>(Json::Value(true)).value, true);
    EXPECT_EQ(fromJson<bool>(Json::Value()).value, false);
    EXPECT_EQ(fromJson<bool>(Json::Value("true")).error,
        u"Unexpected type of JSON value, expected a boolean but got: \"true\""_s);
}

// Text into script

TEST(ScriptText, EscapesForSingleQuotes)
{
    EXPECT_EQ(escapeForScriptString(u"plain"_s), u"plain"_s);
    EXPECT_EQ(escapeForScriptString(u"a\\b"_s), u"a\\\\b"_s);
    EXPECT_EQ(escapeForScriptString(u"it's"_s), u"it\\'s"_s);
    EXPECT_EQ(escapeForScriptString(u"a\nb"_s), u"a\\nb"_s);
    EXPECT_EQ(escapeForScriptString(u"a\r\nb\rc"_s), u"a\\nbc"_s);
    EXPECT_EQ(escapeForScriptString(u"\\'\n"_s), u"\\\\\\'\\n"_s);
    EXPECT_EQ(
        escapeForScriptString(u"\"%1\"\U0001F600\u2028</script>"_s), u"\"%1\"\U0001F600\u2028</script>"_s);
}

TEST(ScriptText, ShortEscapeLeavesLineBreaks)
{
    EXPECT_EQ(escapeQuotes(u"it's \\ \"so\""_s), u"it\\'s \\\\ \"so\""_s);
    EXPECT_EQ(escapeQuotes(u"a\r\nb"_s), u"a\r\nb"_s);
}

TEST(ScriptText, EscapesForDoubleQuotes)
{
    EXPECT_EQ(escapeForDoubleQuotes(u"//a[@title=\"it's \\ \"]"_s), u"//a[@title=\\\"it's \\\\ \\\"]"_s);
    EXPECT_EQ(escapeForDoubleQuotes(u"a\r\nb"_s), u"a\\r\\nb"_s);
}

TEST(ScriptText, EscapedTextReadsBackInAScript)
{
    for (const HostileText &hostile : hostileTexts()) {
        SCOPED_TRACE(hostile.name);
        PageScript engine;

        EXPECT_EQ(engine.run(script(u"'%1'", Quoted{hostile.text})).toString(),
            QString(hostile.text).remove(u'\r'));
        EXPECT_EQ(engine.error(), QString());
        EXPECT_EQ(engine.run(script(u"\"%1\"", DoubleQuoted{hostile.text})).toString(), hostile.text);
        if (hostile.hasLineBreak())
            continue;
        EXPECT_EQ(engine.run(script(u"'%1'", QuotedLine{hostile.text})).toString(), hostile.text);
    }
}

TEST(ScriptText, PiecesFillTheShapeAtOnce)
{
    EXPECT_EQ(
        script(u"%1.f('%2', %3, %4, %5);", Expr{u"top.store[7]"_s}, Quoted{u"%1 %3"_s}, -12, true, false),
        u"top.store[7].f('%1 %3', -12, true, false);"_s);
    EXPECT_EQ(script(u"%1[%1.length]", Expr{u"el"_s}), u"el[el.length]"_s);
}

TEST(ScriptText, MessagesFillTheirShapeAtOnce)
{
    EXPECT_EQ(message(u"Error in '%1': %2", u"%2"_s, u"%1"_s), u"Error in '%2': %1"_s);
    EXPECT_EQ(message(u"Calling %1: %3", u"a"_s, u"b"_s), u"Calling a: b"_s) << "a number may be skipped";
}

TEST(ScriptText, DeferredActionsRunAfterAHundredMilliseconds)
{
    EXPECT_EQ(deferred(u"f('%1');"_s), u"setTimeout(function(e){f('%1');}, 100);"_s);
}

// Text out of script

TEST(Unescape, UndoesTheEncodingOfThePage)
{
    struct Row
    {
        const char *name;
        QString encoded;
        QString text;
    };
    const QChar nul(u'\0');
    const Row rows[] = {
        {"empty", QString(), QString()},
        {"nothing encoded", u"plain & simple"_s, u"plain & simple"_s},
        {"both sequences and an entity", u"%u0041%42&amp;"_s, u"AB&"_s},
        {"blank", u"a%20b"_s, u"a b"_s},
        {"small digits", u"%2f%u00e4"_s, u"/ä"_s},
        {"two code units", u"%uD83D%uDE00"_s, u"\U0001F600"_s},
        {"no digits", u"%zz"_s, QString(nul)},
        {"one digit", u"%z1"_s, QString(QChar(1))},
        {"no digits behind u", u"%uzzzzx"_s, nul + u"x"_s},
        {"encoded percent sign", u"%2541"_s, u"%41"_s},
        {"entity that was encoded", u"%26amp;"_s, u"&"_s},
        {"only this entity", u"&lt;&amp;amp;"_s, u"&lt;&amp;"_s},
        {"percent sign at the end", u"a%"_s, u"a"_s + nul},
        {"one digit at the end", u"a%4"_s, u"a@"_s},
        {"u at the end", u"a%u"_s, u"a"_s + nul},
        {"three digits behind u at the end", u"a%u004"_s, u"a@"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);

        EXPECT_EQ(unescape(row.encoded), row.text);
    }
}

TEST(AddSchemeIfMissing, PutsHttpInFrontOfWhatHasNone)
{
    struct Row
    {
        const char *name;
        QString address;
        QString complete;
    };
    const Row rows[] = {
        {"empty", QString(), QString()},
        {"bare host and path", u"shop.example/cart"_s, u"http://shop.example/cart"_s},
        {"http", u"http://shop.example"_s, u"http://shop.example"_s},
        {"https", u"https://shop.example"_s, u"https://shop.example"_s},
        {"file", u"file:///tmp/a.html"_s, u"file:///tmp/a.html"_s},
        {"upper-case scheme", u"HTTP://shop.example"_s, u"http://HTTP://shop.example"_s},
        {"another scheme", u"ftp://shop.example"_s, u"http://ftp://shop.example"_s},
        {"escaped drive path", u"C:\\\\pages\\\\a.html"_s, u"C:\\\\pages\\\\a.html"_s},
        {"plain drive path", u"C:\\pages\\a.html"_s, u"http://C:\\pages\\a.html"_s},
        {"no letter in front", u"1:\\\\pages"_s, u"http://1:\\\\pages"_s},
        {"two letters in front", u"CC:\\\\pages"_s, u"http://CC:\\\\pages"_s},
        {"placeholder", u"shop.example/%1"_s, u"http://shop.example/%1"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);

        EXPECT_EQ(addSchemeIfMissing(row.address), row.complete);
    }
}

// Time

TEST(Now, CountsMillisecondsSinceTheEpoch)
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const quint64 time = now();
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    EXPECT_GE(qint64(time), before);
    EXPECT_LE(qint64(time), after);
}

TEST(GentleSleep, LetsEventsFlowWhileItWaits)
{
    int events = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&events] { ++events; });
    timer.start(5);
    QElapsedTimer clock;
    clock.start();

    gentleSleep(50);

    EXPECT_GE(clock.elapsed(), 47) << "timers may be 5 % early";
    EXPECT_GE(events, 1);
}
