// Tests of the element wrapper: what each operation sends to the page, and what it says when that fails.
#include "wrappers/web/webobject.h"

#include "wrappers/web/csspropertynames.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/pagevalues.h"

#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/pagescript.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <functional>
#include <memory>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString reference = u"top.__ostrel__globalObjectRefStore[7]"_s;

/// The 200 ms that a deferred action is waited for; timers may be 5 % early.
constexpr int deferredWait = 190;

/// An element whose protected composing functions can be called.
class Element : public HTML_Object
{
public:
    explicit Element(FakePage &page, const QString &name = {}, const QString &itsReference = reference)
        : HTML_Object(name, itsReference, &page)
    {
    }

    using HTML_Object::clickOn;
    using HTML_Object::dblClickOn;
    using HTML_Object::evaluateJS;
};

/// The script that carries an expression's value out of the page.
QString enveloped(const QString &expression)
{
    return u"(function() {\n  try {\n    return JSON.stringify({'result': "_s + expression
        + u"});\n  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
          u"e['message'], "
          "'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});\n  }\n}());"_s;
}

/// The script that identifies an expression's value as an element.
QString identifying(const QString &expression)
{
    return u"(function() {\n  try {\n    var dummy = "_s + expression
        + u";\n    if ( !dummy ) {\n        return JSON.stringify({'refName': null, 'type': '[unknown]'});\n "
          u"   }\n"
          "    var globalRefName = __ostrel__idForObject( dummy );\n"
          "    return JSON.stringify({'refName': globalRefName, 'type': __ostrel__typeOf( dummy ) });\n"
          "  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
          "e['message'], "
          "'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});  }\n})();"_s;
}

/// "%1" is the reference.
QString onElement(const QString &shape)
{
    return QString(shape).replace(u"%1"_s, reference);
}

QString getterOf(const QString &path)
{
    return onElement(u"window.top.__ostrel.getPropertyValue( %1, '"_s + path + u"' ).replace(/\\s*$/, '')"_s);
}

QString sideOf(const QString &side)
{
    return onElement(u"window.top.__ostrel.getElementRectAsObject( %1 )."_s + side);
}

/// Value as text, and the error.
using Outcome = std::pair<QString, QString>;

template <typename T>
Outcome outcomeOf(const FunctionCallResult<T> &result)
{
    if constexpr (std::is_void_v<T>)
        return {QString(), result.error};
    else if constexpr (std::is_same_v<T, QString>)
        return {result.value, result.error};
    else if constexpr (std::is_same_v<T, bool>)
        return {result.value ? u"true"_s : u"false"_s, result.error};
    else
        return {QString::number(result.value), result.error};
}

template <auto Operation>
Outcome call(Element &element)
{
    return outcomeOf((element.*Operation)());
}

struct PropertyRow
{
    const char16_t *name;
    HTML_Object::PropertyId id;
    QString code;
};

const QList<PropertyRow> &propertyRows()
{
    static const QList<PropertyRow> rows{
        {u"id", HTML_Object::Id, getterOf(u"id"_s)},
        {u"innerText", HTML_Object::InnerText, getterOf(u"innerText"_s)},
        {u"innerHTML", HTML_Object::InnerHtml, getterOf(u"innerHTML"_s)},
        {u"x", HTML_Object::X, sideOf(u"x"_s)},
        {u"y", HTML_Object::Y, sideOf(u"y"_s)},
        {u"width", HTML_Object::Width, sideOf(u"width"_s)},
        {u"height", HTML_Object::Height, sideOf(u"height"_s)},
        {u"tagName", HTML_Object::TagName, getterOf(u"tagName"_s)},
        {u"title", HTML_Object::Title, getterOf(u"title"_s)},
        {u"styleDisplay", HTML_Object::StyleDisplay, getterOf(u"style.display"_s)},
        {u"domClassName", HTML_Object::DomClassName, getterOf(u"className"_s)},
        {u"domPath", HTML_Object::DomPath,
            onElement(u"__ostrel__qualifiedName( %1 ).replace(/\\s*$/, '')"_s)},
        {u"numChildren", HTML_Object::NumChildren, onElement(u"__ostrelDOMAPI.numChildren( %1 )"_s)},
        {u"visible", HTML_Object::Visible, onElement(u"__ostrel__isVisible( %1 )"_s)},
        {u"simplifiedInnerText", HTML_Object::SimplifiedInnerText,
            onElement(u"window.top.__ostrel.getSimplifiedInnerText( %1 )"_s)},
        {u"selectedText", HTML_Object::SelectedText,
            onElement(u"window.top.__ostrel.getSelectedText( %1 )"_s)},
    };
    return rows;
}

} // namespace

// Readable properties

TEST(HtmlObjectPropertyId, HasSixteenNumberedNames)
{
    ASSERT_EQ(propertyRows().size(), 16);
    FakePage page;
    const Element element(page);
    int number = 0;
    for (const PropertyRow &row : propertyRows()) {
        const QString name = QString::fromUtf16(row.name);
        SCOPED_TRACE(name.toStdString());

        const FunctionCallResult<HTML_Object::PropertyId> id = HTML_Object::parsePropertyIdString(name);

        EXPECT_EQ(id.error, QString());
        EXPECT_EQ(id.value, row.id);
        EXPECT_EQ(int(id.value), number++);
        EXPECT_TRUE(HTML_Object::isJavaScriptPropertyReadSupported(name));
        EXPECT_EQ(element.propertyGetterCode(row.id), row.code);
    }
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(HtmlObjectPropertyId, UnknownNameIsAFailure)
{
    for (const QString &name : {u"ID"_s, u"value"_s, u" id"_s, QString()}) {
        const FunctionCallResult<HTML_Object::PropertyId> id = HTML_Object::parsePropertyIdString(name);

        EXPECT_EQ(id.error, u"Unknown property name '%1', cannot convert to enum."_s.arg(name));
        EXPECT_EQ(int(id.value), 0);
        EXPECT_FALSE(HTML_Object::isJavaScriptPropertyReadSupported(name));
    }
}

TEST(HtmlObjectPropertyId, UnknownNumberHasNoCodeAndIsReported)
{
    FakePage page;
    const Element element(page);
    testing::internal::CaptureStderr();

    const QString above = element.propertyGetterCode(HTML_Object::PropertyId(16));

    EXPECT_EQ(above, QString());
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(), "Unknown property name passed to propertyGetterCode: 16\n");
}

struct GetterRow
{
    const char *name;
    Outcome (*read)(Element &);
    QString expression;
    /// What the page gives, and what the operation makes of it.
    QString json;
    QString value;
    QString error;
    QString nothing;
};

TEST(HtmlObject, ReadsPropertiesThroughJson)
{
    const auto code = [](HTML_Object::PropertyId id) { return propertyRows().at(int(id)).code; };
    const QString text = u"\"a \\\"b\\\"\""_s;
    const QString itsText = u"a \"b\""_s;
    const GetterRow rows[] = {
        {"id", call<&Element::id>, code(HTML_Object::Id), text, itsText, u"Error retrieving id: %1"_s, {}},
        {"innerText", call<&Element::innerText>, code(HTML_Object::InnerText), text, itsText,
            u"Error retrieving innerText: %1"_s, {}},
        {"innerHTML", call<&Element::innerHTML>, code(HTML_Object::InnerHtml), text, itsText,
            u"Error retrieving innerHTML: %1"_s, {}},
        {"x", call<&Element::x>, code(HTML_Object::X), u"-12"_s, u"-12"_s, u"Error retrieving x: %1"_s,
            u"0"_s},
        {"y", call<&Element::y>, code(HTML_Object::Y), u"10.5"_s, u"10"_s, u"Error retrieving y: %1"_s,
            u"0"_s},
        {"width", call<&Element::width>, code(HTML_Object::Width), u"300"_s, u"300"_s,
            u"Error retrieving width: %1"_s, u"0"_s},
        {"height", call<&Element::height>, code(HTML_Object::Height), u"20"_s, u"20"_s,
            u"Error retrieving height: %1"_s, u"0"_s},
        {"tagName", call<&Element::tagName>, code(HTML_Object::TagName), u"\"DIV\""_s, u"DIV"_s,
            u"Error retrieving tagName: %1"_s, {}},
        {"title", call<&Element::title>, code(HTML_Object::Title), text, itsText,
            u"Error retrieving title: %1"_s, {}},
        {"styleDisplay", call<&Element::styleDisplay>, code(HTML_Object::StyleDisplay), u"\"none\""_s,
            u"none"_s, u"Error retrieving styleDisplay: %1"_s, {}},
        {"domClassName", call<&Element::domClassName>, code(HTML_Object::DomClassName), text, itsText,
            u"Error retrieving domClassName: %1"_s, {}},
        {"hierarchicalQualifiedName", call<&Element::hierarchicalQualifiedName>, code(HTML_Object::DomPath),
            text, itsText, u"Error while generating hierarchical name: %1"_s, {}},
        {"numChildren", call<&Element::numChildren>, code(HTML_Object::NumChildren), u"3"_s, u"3"_s,
            u"Error retrieving numChildren: %1"_s, u"0"_s},
        {"simplifiedInnerText", call<&Element::simplifiedInnerText>, code(HTML_Object::SimplifiedInnerText),
            text, itsText, u"Error retrieving simplifiedInnerText: %1"_s, {}},
        {"visible", call<&Element::visible>, code(HTML_Object::Visible), u"true"_s, u"true"_s,
            u"Error determining visibility: %1"_s, u"false"_s},
    };
    for (const GetterRow &row : rows) {
        SCOPED_TRACE(row.name);
        FakePage page;
        Element element(page);

        page.answerJson(row.json);
        EXPECT_EQ(row.read(element), Outcome(row.value, QString()));
        page.answer(u"{}"_s);
        EXPECT_EQ(row.read(element), Outcome(row.nothing, QString())) << "an undefined value is no failure";
        page.fail(u"gone %1"_s);
        EXPECT_EQ(row.read(element), Outcome(row.nothing, row.error.arg(u"gone %1"_s)));

        EXPECT_EQ(page.scripts(), QStringList(3, enveloped(row.expression)));
        for (const FakePage::Call &evaluation : page.calls())
            EXPECT_EQ(evaluation.timeoutMs, 0U);
    }
}

TEST(HtmlObject, ExceptionOfThePageGrowsThePrefixOnce)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answer(u"{\"error\":{\"name\":\"TypeError\",\"message\":\"el is null\"}}"_s);

    EXPECT_EQ(element.numChildren().error,
        u"Error retrieving numChildren: Calling __ostrelDOMAPI.numChildren( el ): Error evaluating "
        u"JavaScript: "
        "TypeError: el is null."_s);
}

// Raw properties

TEST(HtmlObject, ReadsAnyPropertyAsRawText)
{
    FakePage page;
    const Element element(page);
    page.answer(u" raw "_s);

    const FunctionCallResult<QString> value = element.property("dataset.key");

    EXPECT_EQ(outcomeOf(value), Outcome(u" raw "_s, QString()));
    EXPECT_EQ(page.scripts(),
        QStringList{onElement(u"window.top.__ostrel.getPropertyValue( %1, 'dataset.key');"_s)});
}

TEST(HtmlObject, PropertyNameIsPastedAsItStands)
{
    FakePage page;
    const Element element(page);

    (void)element.property("it's");

    EXPECT_EQ(
        page.scripts(), QStringList{onElement(u"window.top.__ostrel.getPropertyValue( %1, 'it's');"_s)});
}

TEST(HtmlObject, OnlyRawReadsHaveALimitInBrowsersOfKindTwo)
{
    for (const auto &[kind, limit] : {std::pair(0, 0U), std::pair(2, 5000U), std::pair(5, 0U)}) {
        FakePage page;
        page.kind = kind;
        const Element element(page);

        (void)element.property("value");
        (void)element.styleVisibility();
        (void)element.id();

        ASSERT_EQ(page.calls().size(), 3);
        EXPECT_EQ(page.calls()[0].timeoutMs, limit);
        EXPECT_EQ(page.calls()[1].timeoutMs, limit);
        EXPECT_EQ(page.calls()[2].timeoutMs, 0U);
    }
}

TEST(HtmlObject, FailedRawReadNamesTheProperty)
{
    for (const auto &[failed, threw] : {std::pair(true, false), std::pair(false, true)}) {
        FakePage page;
        const Element element(page);
        page.failWith(u"gone %1"_s, failed, threw);

        EXPECT_EQ(element.property("%2").error, u"Error while obtaining property '%2': gone %1"_s);
    }
}

TEST(HtmlObject, StyleVisibilityIsARawRead)
{
    FakePage page;
    const Element element(page);
    page.answer(u"hidden"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(outcomeOf(element.styleVisibility()), Outcome(u"hidden"_s, QString()));
    EXPECT_EQ(element.styleVisibility().error, u"Error while obtaining property 'style.visibility': gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList(2, onElement(u"window.top.__ostrel.getPropertyValue( %1, 'style.visibility');"_s)));
}

TEST(HtmlObject, SetsPropertiesOfEachType)
{
    FakePage page;
    Element element(page, {}, u"el"_s);
    page.answer(u"x"_s);
    page.answer(u"x"_s);
    page.answer(u"x"_s);

    EXPECT_EQ(element.setProperty("value", "it's\nso\\").error, QString());
    EXPECT_EQ(element.setProperty("maxLength", -12).error, QString());
    EXPECT_EQ(element.setProperty("checked", true).error, QString());
    EXPECT_EQ(element.setProperty("checked", false).error, QString());

    EXPECT_EQ(page.scripts(),
        QStringList({u"el.value='it\\'s\\nso\\\\';"_s, u"el.maxLength=-12;"_s, u"el.checked=true;"_s,
            u"el.checked=false;"_s}));
}

TEST(HtmlObject, SetPropertyUsesBracketsUnlessTheNameIsAnIdentifier)
{
    struct Row
    {
        const char *reason;
        QString name;
        QString target;
    };
    const Row rows[] = {
        {"letters, digits and underscores", u"a_1B"_s, u"el.a_1B"_s},
        {"dollar sign", u"$a$"_s, u"el.$a$"_s},
        {"underscore first", u"_"_s, u"el._"_s},
        {"letters of other scripts", u"größe"_s, u"el.größe"_s},
        {"letter outside the basic plane", u"\U00010400a"_s, u"el.\U00010400a"_s},
        {"combining mark behind a letter", u"e\u0301"_s, u"el.e\u0301"_s},
        {"zero width joiner", u"a\u200Db"_s, u"el.a\u200Db"_s},
        {"empty", QString(), u"el['']"_s},
        {"hyphen", u"data-id"_s, u"el['data-id']"_s},
        {"digit first", u"1a"_s, u"el['1a']"_s},
        {"combining mark first", u"\u0301e"_s, u"el['\u0301e']"_s},
        {"zero width joiner first", u"\u200Da"_s, u"el['\u200Da']"_s},
        {"dot", u"style.color"_s, u"el['style.color']"_s},
        {"blank", u"a b"_s, u"el['a b']"_s},
        {"emoji", u"a\U0001F600"_s, u"el['a\U0001F600']"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.reason);
        FakePage page;
        Element element(page, {}, u"el"_s);

        (void)element.setProperty(row.name.toUtf8().constData(), 1);

        EXPECT_EQ(page.scripts(), QStringList{row.target + u"=1;"_s});
    }
}

TEST(HtmlObject, FailedSetPropertyShowsTheValue)
{
    FakePage page;
    Element element(page);
    for (int i = 0; i < 3; ++i)
        page.failWith(u"gone %1"_s, i != 1, i != 0);

    EXPECT_EQ(element.setProperty("value", "it's %2").error,
        u"Error setting property 'value' to value 'it's %2': gone %1"_s);
    EXPECT_EQ(
        element.setProperty("tabIndex", 5).error, u"Error setting property 'tabIndex' to value 5: gone %1"_s);
    EXPECT_EQ(element.setProperty("checked", true).error,
        u"Error setting property 'checked' to value true: gone %1"_s);
}

TEST(HtmlObject, AnyTextArrivesThroughSetProperty)
{
    for (const HostileText &hostile : hostileTexts()) {
        SCOPED_TRACE(hostile.name);
        FakePage page;
        Element element(page, {}, u"el"_s);
        PageScript engine;

        (void)element.setProperty("value", hostile.text.toUtf8().constData());
        engine.run(page.scripts().first());

        EXPECT_EQ(engine.error(), QString());
        EXPECT_EQ(engine.run(u"el.value"_s).toString(), QString(hostile.text).remove(u'\r'));
    }
}

// Methods of the page object

TEST(HtmlObject, InvokesWithExpressionsAsArguments)
{
    FakePage page;
    Element element(page, {}, u"el"_s);
    for (const auto &text : {u"1"_s, u"2"_s, u"3"_s})
        page.answer(text);

    EXPECT_EQ(outcomeOf(element.invoke("focus")), Outcome(u"1"_s, QString()));
    EXPECT_EQ(outcomeOf(element.invoke("getAttribute", "'id'")), Outcome(u"2"_s, QString()));
    EXPECT_EQ(outcomeOf(element.invoke("f", "it's", "%1")), Outcome(u"3"_s, QString()));

    EXPECT_EQ(
        page.scripts(), QStringList({u"el.focus();"_s, u"el.getAttribute('id');"_s, u"el.f(it's, %1);"_s}));
}

TEST(HtmlObject, FailedInvokeShowsTheCall)
{
    FakePage page;
    Element element(page);
    for (int i = 0; i < 3; ++i)
        page.failWith(u"no %3"_s, i != 1, i != 0);

    EXPECT_EQ(element.invoke("f").error, u"Error invoking function 'f': no %3"_s);
    EXPECT_EQ(element.invoke("f", "'a'").error, u"Error invoking function 'f('a')': no %3"_s);
    EXPECT_EQ(element.invoke("f", "%2", "b").error, u"Error invoking function 'f(%2, b)': no %3"_s);
}

// Visibility, focus, name, identity

TEST(HtmlObject, CompatibleVisibilityIsARawRead)
{
    FakePage page;
    page.memoryConfig.setBackwardsCompatibleVisiblePropertyForHTML_Object(true);
    const Element element(page);
    page.answer(u"true"_s);
    page.answer(u"TRUE"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(outcomeOf(element.visible()), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(element.visible()), Outcome(u"false"_s, QString()));
    EXPECT_EQ(element.visible().error,
        u"Error determining visibility: Error while obtaining property 'visible': gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList(3, onElement(u"window.top.__ostrel.getPropertyValue( %1, 'visible');"_s)));
}

TEST(HtmlObject, FocusIsABooleanAndNothingElse)
{
    FakePage page;
    const Element element(page);
    page.answerJson(u"true"_s);
    page.answerJson(u"false"_s);
    page.fail(u"gone"_s);
    page.answerJson(u"\"yes\""_s);
    page.answer(u"{}"_s);

    EXPECT_EQ(outcomeOf(element.hasFocus()), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(element.hasFocus()), Outcome(u"false"_s, QString()));
    EXPECT_EQ(element.hasFocus().error, u"Error obtaining focus state: gone"_s);
    EXPECT_EQ(
        element.hasFocus().error, u"Error: Json object '\"yes\"\n' has unexpected type (expected bool): 4"_s);
    EXPECT_EQ(
        element.hasFocus().error, u"Error: Json object 'null\n' has unexpected type (expected bool): 0"_s);
    EXPECT_EQ(page.scripts(), QStringList(5, enveloped(onElement(u"window.top.__ostrel.hasFocus( %1 )"_s))));
}

TEST(HtmlObject, KnownNameMakesNoPageCall)
{
    FakePage page;
    const Element element(page, u"save"_s);

    EXPECT_EQ(outcomeOf(element.name()), Outcome(u"save"_s, QString()));
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(HtmlObject, NameIsAskedOfThePageOnce)
{
    FakePage page;
    const Element element(page);
    page.fail(u"gone"_s);
    page.answer(u"save"_s);

    EXPECT_EQ(element.name().error, u"Error obtaining name: gone"_s);
    EXPECT_EQ(outcomeOf(element.name()), Outcome(u"save"_s, QString()));
    EXPECT_EQ(outcomeOf(element.name()), Outcome(u"save"_s, QString()));
    EXPECT_EQ(page.scripts(), QStringList(2, onElement(u"__ostrel__uniqueNameInLeaf(%1);"_s)));
}

TEST(HtmlObject, EqualReferencesAreTheSameWithoutAPageCall)
{
    FakePage page;
    const Element element(page);
    Element twin(page);

    EXPECT_EQ(outcomeOf(element.sameAs(&twin)), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(twin.sameAs(&twin)), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(element.sameAs(nullptr)), Outcome(u"false"_s, QString()));
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(HtmlObject, ThePageComparesOtherReferences)
{
    FakePage page;
    const Element element(page, {}, u"a"_s);
    Element other(page, {}, u"b"_s);
    page.answer(u"true"_s);
    page.answer(u"false"_s);
    page.failWith(u"gone"_s, true, false);

    EXPECT_EQ(outcomeOf(element.sameAs(&other)), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(element.sameAs(&other)), Outcome(u"false"_s, QString()));
    EXPECT_EQ(element.sameAs(&other).error, u"Error comparing javascript reference 'a' to 'b': gone"_s);
    EXPECT_EQ(page.scripts(), QStringList(3, u"a === b"_s));
}

TEST(HtmlObject, ComparisonReadsAnAnswerThatThrew)
{
    FakePage page;
    const Element element(page, {}, u"a"_s);
    Element other(page, {}, u"b"_s);
    page.failWith(u"true"_s, false, true);
    page.failWith(u"gone"_s, false, true);

    EXPECT_EQ(outcomeOf(element.sameAs(&other)), Outcome(u"true"_s, QString()));
    EXPECT_EQ(outcomeOf(element.sameAs(&other)), Outcome(u"false"_s, QString()));
}

// Navigation

TEST(HtmlObject, NavigatesToNewWrappers)
{
    struct Row
    {
        const char *name;
        std::function<FunctionCallResult<HTML_Object *>(Element &)> go;
        QString expression;
        QString error;
    };
    const Row rows[] = {
        {"firstChild", [](Element &e) { return e.firstChild(); }, u"__ostrelDOMAPI.firstChild(%1);"_s,
            u"Error obtaining first child: %1"_s},
        {"lastChild", [](Element &e) { return e.lastChild(); }, u"__ostrelDOMAPI.lastChild(%1);"_s,
            u"Error obtaining last child: %1"_s},
        {"nextSibling", [](Element &e) { return e.nextSibling(); }, u"__ostrelDOMAPI.nextSibling(%1);"_s,
            u"Error obtaining next sibling: %1"_s},
        {"previousSibling", [](Element &e) { return e.previousSibling(); },
            u"__ostrelDOMAPI.previousSibling(%1);"_s, u"Error obtaining previous sibling: %1"_s},
        {"parentElement", [](Element &e) { return e.parentElement(); }, u"%1.parentNode;"_s,
            u"Error obtaining parent element: %1"_s},
        {"shadowRoot", [](Element &e) { return e.shadowRoot(); }, u"%1.shadowRoot;"_s,
            u"Error obtaining shadow root element: %1"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        FakePage page;
        Element element(page);
        page.answerObject(u"checkbox"_s, u"top.store[8]"_s);
        page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);
        page.fail(u"gone %1"_s);

        const FunctionCallResult<HTML_Object *> found = row.go(element);
        const std::unique_ptr<HTML_Object> wrapper(found.value);
        const FunctionCallResult<HTML_Object *> missing = row.go(element);
        const FunctionCallResult<HTML_Object *> failed = row.go(element);

        EXPECT_EQ(found.error, QString());
        ASSERT_NE(wrapper, nullptr);
        EXPECT_STREQ(wrapper->className(), "HTML_CheckBox");
        EXPECT_EQ(wrapper->jsReference(), u"top.store[8]"_s);
        EXPECT_EQ(wrapper->component(), &page);
        EXPECT_EQ(missing.error, QString());
        EXPECT_EQ(missing.value, nullptr);
        EXPECT_EQ(failed.error, row.error.arg(u"gone %1"_s));
        EXPECT_EQ(failed.value, nullptr);
        EXPECT_EQ(page.scripts(), QStringList(3, identifying(onElement(row.expression))));
        EXPECT_EQ(page.calls().first().timeoutMs, 0U);
    }
}

// Helper objects in the page

TEST(HtmlObject, StyleAndXPathResultTakeTheNextPageVariables)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    const int number = nextPageVariable().mid(int(qstrlen("window.__ostrel__object__C"))).toInt();
    const auto variable = [number](int n) { return u"window.__ostrel__object__C%1"_s.arg(number + n); };

    const FunctionCallResult<HTML_Style *> style = element.style();
    const FunctionCallResult<HTML_XPathResult *> first = element.evaluateXPath("//a[@title=\"it's\\\"]");
    const FunctionCallResult<HTML_XPathResult *> second = element.evaluateXPath("%3 %1");
    const std::unique_ptr<HTML_Style> ownedStyle(style.value);
    const std::unique_ptr<HTML_XPathResult> ownedFirst(first.value);
    const std::unique_ptr<HTML_XPathResult> ownedSecond(second.value);
    (void)ownedStyle->value("color");
    (void)ownedFirst->stringValue();
    (void)ownedSecond->stringValue();

    EXPECT_EQ(page.scripts(),
        QStringList({variable(1) + u" = new __ostrel__styleInfo(el); 'done';"_s,
            variable(2) + u" = xpathDomEval( \"//a[@title=\\\"it's\\\\\\\"]\", el );true;"_s,
            variable(3) + u" = xpathDomEval( \"%3 %1\", el );true;"_s,
            variable(1) + u".styleProperty('color');"_s, variable(2) + u".stringValue()"_s,
            variable(3) + u".stringValue()"_s}));
}

TEST(HtmlObject, FailedStyleAndXPathAreReported)
{
    for (const auto &[failed, threw] : {std::pair(true, false), std::pair(false, true)}) {
        FakePage page;
        const Element element(page);
        page.failWith(u"gone %1"_s, failed, threw);
        page.failWith(u"gone %1"_s, failed, threw);

        const FunctionCallResult<HTML_Style *> style = element.style();
        const FunctionCallResult<HTML_XPathResult *> xpath = element.evaluateXPath("//a[\"%2\"]");

        EXPECT_EQ(style.error, u"Error obtaining style object: gone %1"_s);
        EXPECT_EQ(style.value, nullptr);
        EXPECT_EQ(xpath.error, u"Error evaluating xpath '//a[\"%2\"]': gone %1"_s);
        EXPECT_EQ(xpath.value, nullptr);
    }
}

TEST(HtmlObject, AnyStatementArrivesInXPath)
{
    for (const HostileText &hostile : hostileTexts()) {
        SCOPED_TRACE(hostile.name);
        FakePage page;
        const Element element(page, {}, u"el"_s);
        PageScript engine({u"xpathDomEval"_s});

        const FunctionCallResult<HTML_XPathResult *> result
            = element.evaluateXPath(hostile.text.toUtf8().constData());
        const std::unique_ptr<HTML_XPathResult> owned(result.value);
        engine.run(page.scripts().first());

        EXPECT_EQ(engine.error(), QString());
        EXPECT_EQ(engine.arguments(), QVariantList({hostile.text}));
    }
}

TEST(HtmlObject, ReadsAllCssPropertiesInOneCall)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answerJson(u"{\"display\":\"block\",\"color\":{\"red\":1,\"green\":2,\"blue\":3,\"alpha\":0.5}}"_s);

    const FunctionCallResult<QMap<QString, Json::Value>> css = element.cssProperties();

    EXPECT_EQ(css.error, QString());
    EXPECT_EQ(css.value.keys(), QStringList({u"color"_s, u"display"_s}));
    EXPECT_EQ(css.value.value(u"display"_s).asString(), "block");
    EXPECT_EQ(css.value.value(u"color"_s)["blue"].asInt(), 3);
    EXPECT_EQ(page.scripts(),
        QStringList{enveloped(
            u"__ostrel__allCSSProperties( el, ['"_s + cssPropertyNames().join(u"', '"_s) + u"'] )"_s)});
    EXPECT_EQ(page.calls().first().timeoutMs, 0U);
}

TEST(HtmlObject, CssPropertiesMustBeAnObject)
{
    FakePage page;
    const Element element(page);
    page.fail(u"gone"_s);
    page.answerJson(u"[1]"_s);
    page.answer(u"{}"_s);

    EXPECT_EQ(element.cssProperties().error, u"Error obtaining CSS properties: gone"_s);
    EXPECT_EQ(element.cssProperties().error,
        u"Unexpected type of json object for CSS properties, expected object got: [\n\t1\n]\n"_s);
    EXPECT_EQ(element.cssProperties().error,
        u"Unexpected type of json object for CSS properties, expected object got: null\n"_s);
}

// Geometry

TEST(HtmlObject, ScreenRectangleComesFromTheBridge)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answer(u"1,2,3,4"_s);
    page.fail(u"gone"_s);

    const FunctionCallResult<ScreenRectangle> rect = element.screenRect();
    const FunctionCallResult<ScreenRectangle> failed = element.screenRect();

    EXPECT_EQ(rect.value, (ScreenRectangle{1, 2, 3, 4}));
    EXPECT_EQ(failed.value, (ScreenRectangle{-1, -1, -1, -1}));
    EXPECT_EQ(failed.error,
        u"Error while obtaining rectangle with function '__ostrel__getScreenRectAsObject': gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList(2, u"__ostrel__getRectAsString(__ostrel__getScreenRectAsObject(el) );"_s));
}

TEST(HtmlObject, BoundingRectangleIsThatOfTheViewport)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answer(u"1,-2,3,4"_s);
    page.fail(u"gone"_s);

    const FunctionCallResult<ScreenRectangle> rect = element.boundingClientRect();
    const FunctionCallResult<ScreenRectangle> failed = element.boundingClientRect();

    EXPECT_EQ(rect.value, (ScreenRectangle{1, -2, 3, 4}));
    EXPECT_EQ(failed.value, (ScreenRectangle{-1, -1, -1, -1}));
    EXPECT_EQ(failed.error,
        u"Error while obtaining rectangle with function '__ostrel__getClientBoundingRect': gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList(2, u"__ostrel__getRectAsString(__ostrel__getClientBoundingRect(el) );"_s));
}

TEST(GetScreenRect, ReadsFourNumbersAtLeast)
{
    struct Row
    {
        const char *name;
        QString answer;
        QRect rect;
        QString error;
    };
    const QString invalid = u"Rectangle string '%1' obtained has invalid format."_s;
    const Row rows[] = {
        {"four", u"1,2,3,4"_s, QRect(1, 2, 3, 4), {}},
        {"blanks", u" 1, 2, 3, 4"_s, QRect(1, 2, 3, 4), {}},
        {"five use the first four", u"1,2,3,4,5"_s, QRect(1, 2, 3, 4), {}},
        {"empty parts do not count", u"1,,2,3,4"_s, QRect(1, 2, 3, 4), {}},
        {"no numbers", u"a,2.5,3,4"_s, QRect(0, 0, 3, 4), {}},
        {"three", u"1,2,3"_s, QRect(), invalid.arg(u"1,2,3"_s)},
        {"three and an empty part", u"1,,2,3"_s, QRect(), invalid.arg(u"1,,2,3"_s)},
        {"none", u"undefined"_s, QRect(), invalid.arg(u"undefined"_s)},
        {"empty", QString(), QRect(), invalid.arg(QString())},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        FakePage page;
        const Element element(page);
        page.answer(row.answer);

        const FunctionCallResult<QRect> rect = getScreenRect(&element, false);

        EXPECT_EQ(rect.value, row.rect);
        EXPECT_EQ(rect.error, row.error);
    }
}

TEST(GetScreenRect, ScrollsFirstWhenAskedTo)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answer(u"undefined"_s);
    page.answer(u"1,2,3,4"_s);

    const FunctionCallResult<QRect> rect = getScreenRect(&element, true);

    EXPECT_EQ(rect.error, QString());
    EXPECT_EQ(rect.value, QRect(1, 2, 3, 4));
    EXPECT_EQ(page.scripts(),
        QStringList({u"__ostrel__scrollToElement(el,1);"_s,
            u"__ostrel__getRectAsString(__ostrel__getScreenRectAsObject(el) );"_s}));
}

TEST(GetScreenRect, DoesNotMeasureWhatCannotBeScrolled)
{
    FakePage page;
    const Element element(page);
    page.fail(u"gone"_s);

    EXPECT_EQ(getScreenRect(&element, true).error,
        u"Error while making object visible to fetch screen rectangle: Error while scrolling to element: gone"_s);
    EXPECT_EQ(page.scripts().size(), 1);
}

TEST(GetScreenRect, NeedsAnElementAndABridge)
{
    const HTML_Object orphan({}, u"el"_s, nullptr);

    EXPECT_EQ(
        getScreenRect(nullptr, false).error, u"No valid HTML object provided to getScreenRect function"_s);
    EXPECT_EQ(
        getScreenRect(&orphan, false).error, u"HTML object has no component, cannot obtain rectangle"_s);
    EXPECT_EQ(orphan.boundingClientRect().error, u"HTML object has no component, cannot obtain rectangle"_s);
}

TEST(HtmlObject, ScrollsToTheTopOrToTheBottom)
{
    FakePage page;
    const Element element(page, {}, u"el"_s);
    page.answer(u"undefined"_s);
    page.answer(u"undefined"_s);
    page.failWith(u"gone"_s, false, true);

    EXPECT_EQ(element.scrollTo(true).error, QString());
    EXPECT_EQ(element.scrollTo(false).error, QString());
    EXPECT_EQ(element.scrollTo(true).error, u"Error while scrolling to element: gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList({u"__ostrel__scrollToElement(el,1);"_s, u"__ostrel__scrollToElement(el,0);"_s,
            u"__ostrel__scrollToElement(el,1);"_s}));
}

// Clicks

TEST(HtmlObject, ComposesClicksWithModifiersAndButton)
{
    struct Row
    {
        const char *name;
        int modifier;
        int button;
        QString arguments;
    };
    const Row rows[] = {
        {"plain", 0, 1, u"false, false, false, 3, -4, 1"_s},
        {"alt", AltKey, 1, u"false, false, true, 3, -4, 1"_s},
        {"control", ControlKey, 1, u"true, false, false, 3, -4, 1"_s},
        {"shift", ShiftKey, 1, u"false, true, false, 3, -4, 1"_s},
        {"control and alt", ControlAlt, 1, u"true, false, true, 3, -4, 1"_s},
        {"shift and alt", ShiftAlt, 1, u"false, true, true, 3, -4, 1"_s},
        {"control and shift", ControlShift, 1, u"true, true, false, 3, -4, 1"_s},
        {"right button wins over the number", RightButton, 1, u"false, false, false, 3, -4, 2"_s},
        {"right button and a key", RightButton | ShiftKey, 4, u"false, true, false, 3, -4, 2"_s},
        {"middle button", 0, 4, u"false, false, false, 3, -4, 4"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const QString doubled = row.modifier & RightButton
            ? row.arguments
            : row.arguments.left(row.arguments.size() - 1) + u"1"_s;

        EXPECT_EQ(Element::clickOn("el.part", row.modifier, 3, -4, row.button),
            u"setTimeout(function(e){__ostrel__click(el.part, "_s + row.arguments + u");}, 100);"_s);
        EXPECT_EQ(Element::dblClickOn("el.part", row.modifier, 3, -4),
            u"setTimeout(function(e){__ostrel__dblclick(el.part, "_s + doubled + u");}, 100);"_s);
    }
}

TEST(HtmlObject, ClickIsDeferredAndWaitedFor)
{
    FakePage page;
    Element element(page, {}, u"el"_s);
    QElapsedTimer clock;
    clock.start();

    EXPECT_EQ(element.click(RightButton, 3, 4, 1).error, QString());

    EXPECT_GE(clock.elapsed(), deferredWait);
    EXPECT_EQ(page.scripts(),
        QStringList{u"setTimeout(function(e){__ostrel__click(el, false, false, false, 3, 4, 2);}, 100);"_s});
}

TEST(HtmlObject, FailedClickIsWaitedForToo)
{
    FakePage page;
    Element element(page);
    page.failWith(u"gone %1"_s, false, true);
    QElapsedTimer clock;
    clock.start();

    EXPECT_EQ(element.click(0, 0, 0, 1).error, u"Error occurred while clicking on object: gone %1"_s);

    EXPECT_GE(clock.elapsed(), deferredWait);
}

TEST(HtmlObject, DoubleClickIsDeferredAndWaitedFor)
{
    FakePage page;
    Element element(page, {}, u"el"_s);
    page.fail(u"gone %1"_s);
    QElapsedTimer clock;
    clock.start();

    EXPECT_EQ(element.doubleClick(ShiftKey, 3, 4).error,
        u"Error occurred while double-clicking on object at relative position 3/4 with modifier 4: gone %1"_s);

    EXPECT_GE(clock.elapsed(), deferredWait);
    EXPECT_EQ(page.scripts(),
        QStringList{
            u"setTimeout(function(e){__ostrel__dblclick(el, false, true, false, 3, 4, 1);}, 100);"_s});
}

TEST(HtmlObject, ContextMenuIsDeferredAndWaitedFor)
{
    FakePage page;
    Element element(page, {}, u"el"_s);
    page.failWith(u"gone"_s, true, false);
    QElapsedTimer clock;
    clock.start();

    EXPECT_EQ(element.openContextMenu().error, u"Error opening context menu: gone"_s);

    EXPECT_GE(clock.elapsed(), deferredWait);
    EXPECT_EQ(
        page.scripts(), QStringList{u"setTimeout(function(e){__ostrel__openContextMenu(el);}, 100);"_s});
}

// Life

TEST(HtmlObject, TellsItsClassAndItsReference)
{
    FakePage page;
    const Element element(page);

    EXPECT_STREQ(element.className(), "HTML_Object");
    EXPECT_EQ(element.jsReference(), reference);
    EXPECT_EQ(element.component(), &page);
    EXPECT_TRUE(element.hasValidReference());
}

TEST(HtmlObject, EvaluatesWithTheLimitOfTheBridge)
{
    FakePage page;
    page.failWith(u"text"_s, false, true);
    const Element element(page);

    const HTMLComponent::EvalResult answer = element.evaluateJS(u"1"_s);

    EXPECT_EQ(answer.result, u"text"_s);
    EXPECT_FALSE(answer.failed);
    EXPECT_TRUE(answer.threw);
    EXPECT_EQ(page.calls().first().timeoutMs, 0U);
}

TEST(HtmlObject, InvalidatedWrapperSendsUndefined)
{
    FakePage page;
    Element element(page, u"save"_s);

    element.invalidate();
    (void)element.property("value");

    EXPECT_FALSE(element.hasValidReference());
    EXPECT_EQ(element.jsReference(), u"undefined"_s);
    EXPECT_EQ(outcomeOf(element.name()), Outcome(u"save"_s, QString()));
    EXPECT_EQ(page.scripts(), QStringList{u"window.top.__ostrel.getPropertyValue( undefined, 'value');"_s});
}

TEST(LiveObjects, InvalidationReachesTheWrappersOfOnePageOnly)
{
    FakePage page;
    FakePage otherPage;
    Element element(page);
    HTML_Style style(u"window.s"_s, &page);
    HTML_XPathResult xpath(u"window.x"_s, &page);
    Element elsewhere(otherPage);
    HTML_Style otherStyle(u"window.s"_s, &otherPage);

    LiveObjects::self().invalidate(&page);

    EXPECT_FALSE(element.hasValidReference());
    EXPECT_FALSE(style.hasValidReference());
    EXPECT_FALSE(xpath.hasValidReference());
    EXPECT_TRUE(elsewhere.hasValidReference());
    EXPECT_TRUE(otherStyle.hasValidReference());
    EXPECT_FALSE(LiveObjects::self().objects.contains(&element)) << "an invalid wrapper is forgotten";
    EXPECT_TRUE(LiveObjects::self().objects.contains(&elsewhere));
}

TEST(LiveObjects, InvalidateAllReachesEveryPage)
{
    FakePage page;
    FakePage otherPage;
    Element element(page);
    Element elsewhere(otherPage);

    LiveObjects::self().invalidateAll();

    EXPECT_FALSE(element.hasValidReference());
    EXPECT_FALSE(elsewhere.hasValidReference());
    EXPECT_TRUE(LiveObjects::self().objects.isEmpty());
    EXPECT_TRUE(LiveObjects::self().styles.isEmpty());
    EXPECT_TRUE(LiveObjects::self().xpathResults.isEmpty());
}

TEST(LiveObjects, CopiesStayUsable)
{
    FakePage page;
    Element original(page, u"save"_s);
    const HTML_Object copy(original);
    HTML_Object assigned({}, u"other"_s, nullptr);
    assigned = original;

    LiveObjects::self().invalidate(&page);

    EXPECT_FALSE(original.hasValidReference());
    EXPECT_TRUE(copy.hasValidReference());
    EXPECT_EQ(copy.jsReference(), reference);
    EXPECT_EQ(copy.component(), &page);
    EXPECT_EQ(outcomeOf(copy.name()), Outcome(u"save"_s, QString()));
    EXPECT_FALSE(assigned.hasValidReference()) << "it was registered by its own constructor";
    EXPECT_EQ(assigned.component(), &page);
}

TEST(LiveObjects, DestroyedWrappersLeave)
{
    FakePage page;
    const qsizetype before = LiveObjects::self().objects.size();
    {
        const Element element(page);
        const HTML_Object copy(element);

        EXPECT_EQ(LiveObjects::self().objects.size(), before + 1);
    }

    EXPECT_EQ(LiveObjects::self().objects.size(), before);
}

TEST(LiveObjects, PageVariablesCountUp)
{
    const QString first = nextPageVariable();
    const QString second = nextPageVariable();

    const QString prefix = u"window.__ostrel__object__C"_s;
    ASSERT_TRUE(first.startsWith(prefix));
    EXPECT_EQ(second, prefix + QString::number(first.mid(prefix.size()).toInt() + 1));
}
