// Tests of styles and XPath results: helper objects that live in a page variable.
#include "wrappers/web/pagevalues.h"

#include "wrappers/web/liveobjects.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/webobject.h"

#include "support/fakepage.h"
#include "support/freshprocess.h"
#include "support/hostiletexts.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString variable = u"window.__ostrel__object__C7"_s;

class Classes : public ::testing::Environment
{
public:
    void SetUp() override { createWebObjectClasses(); }
};

const auto *const classes = ::testing::AddGlobalTestEnvironment(new Classes);

/// A script object that owns the value.
template <typename Value>
SharedPtr<Object> scriptObject(Value *value)
{
    return ScriptValue<Value *>::toObject(value);
}

} // namespace

// Styles

TEST(Style, AsksThePageObjectForAProperty)
{
    FakePage page;
    const HTML_Style style(variable, &page);
    page.answer(u" 12px "_s);

    const FunctionCallResult<QString> value = style.value("borderLeftWidth");

    EXPECT_EQ(value.value, u" 12px "_s);
    EXPECT_EQ(value.error, QString());
    EXPECT_EQ(page.scripts(), QStringList{variable + u".styleProperty('borderLeftWidth');"_s});
    EXPECT_EQ(page.calls().first().timeoutMs, 0U);
}

TEST(Style, FailureIsThatOfTheBridge)
{
    FakePage page;
    const HTML_Style style(variable, &page);
    page.failWith(u"gone %1"_s, false, true);

    EXPECT_EQ(style.value("color").error, u"gone %1"_s);
}

TEST(Style, AnyPropertyNameArrives)
{
    for (const HostileText &hostile : hostileTexts()) {
        SCOPED_TRACE(hostile.name);
        FakePage page;
        const HTML_Style style(u"el"_s, &page);
        PageScript engine({u"el.styleProperty"_s});

        (void)style.value(hostile.text.toUtf8().constData());
        engine.run(page.scripts().first());

        EXPECT_EQ(engine.error(), QString());
        EXPECT_EQ(engine.arguments(), QVariantList({QString(hostile.text).remove(u'\r')}));
    }
}

// XPath results

TEST(XPathResult, ReadsBooleans)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    for (const QString &answer : {u"true"_s, u"false"_s, u"TRUE"_s})
        page.answer(answer);
    page.failWith(u"gone %1"_s, false, true);

    EXPECT_TRUE(result.booleanValue().value);
    EXPECT_FALSE(result.booleanValue().value);
    EXPECT_FALSE(result.booleanValue().value);
    EXPECT_EQ(result.booleanValue().error,
        u"Error obtaining boolean value of xpath resultset window.__ostrel__object__C7: gone %1"_s);
    EXPECT_EQ(page.scripts(), QStringList(4, variable + u".booleanValue()"_s));
}

TEST(XPathResult, ReadsNumbers)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    page.answer(u"-2.5e3"_s);
    page.answer(u"some text"_s);
    page.answer(u"NaN"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(result.numberValue().value, -2500.0);
    EXPECT_EQ(result.numberValue().error,
        u"Error converting number value of xpath resultset window.__ostrel__object__C7 to double, received "
        u"value is "
        "'some text'"_s);
    EXPECT_EQ(result.numberValue().error,
        u"Error converting number value of xpath resultset window.__ostrel__object__C7 to double, received "
        u"value is 'NaN'"_s);
    EXPECT_EQ(result.numberValue().error,
        u"Error obtaining number value of xpath resultset window.__ostrel__object__C7: gone"_s);
    EXPECT_EQ(page.scripts(), QStringList(4, variable + u".numberValue()"_s));
}

TEST(XPathResult, ReadsTextAsItStands)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    page.answer(u" %1 \n"_s);
    page.failWith(u"gone"_s, true, false);

    EXPECT_EQ(result.stringValue().value, u" %1 \n"_s);
    EXPECT_EQ(result.stringValue().error,
        u"Error obtaining string value of xpath resultset window.__ostrel__object__C7: gone"_s);
    EXPECT_EQ(page.scripts(), QStringList(2, variable + u".stringValue()"_s));
}

TEST(XPathResult, CountsItsNodes)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    for (const QString &answer : {u"3"_s, u"-1"_s, u"0x3"_s})
        page.answer(answer);
    page.fail(u"gone"_s);

    EXPECT_EQ(result.snapshotLength().value, 3);
    EXPECT_EQ(result.snapshotLength().value, -1);
    EXPECT_EQ(result.snapshotLength().error,
        u"Error converting snapshot length of xpath resultset window.__ostrel__object__C7 to integer, "
        u"received value "
        "is '0x3'"_s);
    EXPECT_EQ(result.snapshotLength().error,
        u"Error obtaining snapshot length of xpath resultset window.__ostrel__object__C7: gone"_s);
    EXPECT_EQ(
        page.scripts(), QStringList(4, u"__ostrel__xpath__snapshotLength(window.__ostrel__object__C7);"_s));
}

TEST(XPathResult, GivesItsNodesAsWrappers)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    page.answerObject(u"a"_s, u"top.store[2]"_s);
    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);
    page.fail(u"gone %2"_s);

    const std::unique_ptr<HTML_Object> item(result.snapshotItem(4).value);
    const FunctionCallResult<HTML_Object *> missing = result.snapshotItem(-1);
    const FunctionCallResult<HTML_Object *> failed = result.snapshotItem(5);

    ASSERT_NE(item, nullptr);
    EXPECT_STREQ(item->className(), "HTML_Anchor");
    EXPECT_EQ(missing.error, QString());
    EXPECT_EQ(missing.value, nullptr);
    EXPECT_EQ(failed.error,
        u"Error obtaining snapshot item 5 from xpath result window.__ostrel__object__C7: gone %2"_s);
    const QStringList scripts = page.scripts();
    EXPECT_TRUE(scripts.at(0).contains(
        u"    var dummy = __ostrel__xpath__snapshotItem(window.__ostrel__object__C7, 4);;\n"_s));
    EXPECT_TRUE(scripts.at(1).contains(
        u"    var dummy = __ostrel__xpath__snapshotItem(window.__ostrel__object__C7, -1);;\n"_s));
    EXPECT_EQ(page.calls().first().timeoutMs, 0U);
}

TEST(XPathResult, SingleNodeIsTheFirstItem)
{
    FakePage page;
    const HTML_XPathResult result(variable, &page);
    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);
    page.fail(u"gone"_s);

    const FunctionCallResult<HTML_Object *> missing = result.singleNodeValue();
    const FunctionCallResult<HTML_Object *> failed = result.singleNodeValue();

    EXPECT_EQ(missing.error, QString());
    EXPECT_EQ(missing.value, nullptr);
    EXPECT_EQ(failed.error,
        u"Error obtaining snapshot item 0 from xpath result window.__ostrel__object__C7: gone"_s);
    EXPECT_TRUE(page.scripts().first().contains(
        u"    var dummy = __ostrel__xpath__snapshotItem(window.__ostrel__object__C7, 0);;\n"_s));
}

// Life

static_assert(!std::is_polymorphic_v<HTML_Style> && !std::is_polymorphic_v<HTML_XPathResult>);

TEST(PageValues, VariablesAreCountedFromZero)
{
    EXPECT_EQ(inFreshProcess([] {
        return QStringList{nextPageVariable(), nextPageVariable()};
    }),
        QStringList({u"window.__ostrel__object__C0"_s, u"window.__ostrel__object__C1"_s}));
}

TEST(PageValues, InvalidationEmptiesTheReference)
{
    FakePage page;
    HTML_Style style(variable, &page);
    HTML_XPathResult result(variable, &page);

    EXPECT_TRUE(style.hasValidReference());
    EXPECT_TRUE(result.hasValidReference());
    EXPECT_EQ(style.component(), &page);
    EXPECT_EQ(result.component(), &page);

    style.invalidate();
    result.invalidate();
    (void)style.value("color");

    EXPECT_FALSE(style.hasValidReference());
    EXPECT_FALSE(result.hasValidReference());
    EXPECT_EQ(page.scripts(), QStringList{u".styleProperty('color');"_s});
}

TEST(PageValues, AreRegisteredWhileTheyLive)
{
    FakePage page;
    const LiveObjects &live = LiveObjects::self();
    const qsizetype styles = live.styles.size();
    const qsizetype results = live.xpathResults.size();
    {
        const HTML_Style style(variable, &page);
        const HTML_XPathResult result(variable, &page);

        EXPECT_EQ(live.styles.size(), styles + 1);
        EXPECT_EQ(live.xpathResults.size(), results + 1);
    }

    EXPECT_EQ(live.styles.size(), styles);
    EXPECT_EQ(live.xpathResults.size(), results);
}

TEST(PageValues, CopiesStayUsable)
{
    FakePage page;
    const HTML_Style style(variable, &page);
    const HTML_Style copy(style);
    const HTML_XPathResult result(variable, &page);
    HTML_XPathResult assigned(u"other"_s, nullptr);
    assigned = result;

    LiveObjects::self().invalidate(&page);

    EXPECT_FALSE(style.hasValidReference());
    EXPECT_TRUE(copy.hasValidReference());
    EXPECT_FALSE(assigned.hasValidReference()) << "it was registered by its own constructor";
}

// What scripts see

TEST(XPathResultInScripts, PropertiesAndMethodsReadAlike)
{
    FakePage page;
    const SharedPtr<Object> result = scriptObject(new HTML_XPathResult(variable, &page));
    for (const QString &answer :
        {u"true"_s, u"true"_s, u"2.5"_s, u"2.5"_s, u"text"_s, u"text"_s, u"3"_s, u"3"_s})
        page.answer(answer);

    EXPECT_TRUE(readProperty(result, u"booleanValue"_s).value->toBool());
    EXPECT_TRUE(callMethod(result, u"booleanValue"_s).value->toBool());
    EXPECT_EQ(readProperty(result, u"numberValue"_s).value->toDouble(), 2.5);
    EXPECT_EQ(callMethod(result, u"numberValue"_s).value->toDouble(), 2.5);
    EXPECT_EQ(readProperty(result, u"stringValue"_s).text(), u"text"_s);
    EXPECT_EQ(callMethod(result, u"stringValue"_s).text(), u"text"_s);
    EXPECT_EQ(readProperty(result, u"snapshotLength"_s).value->toInt(), 3);
    EXPECT_EQ(callMethod(result, u"snapshotLength"_s).value->toInt(), 3);
}

TEST(XPathResultInScripts, MissingNodeIsANullObject)
{
    FakePage page;
    const SharedPtr<Object> result = scriptObject(new HTML_XPathResult(variable, &page));
    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);

    const ScriptAnswer node = callMethod(result, u"singleNodeValue"_s);

    EXPECT_EQ(node.error, QString());
    ASSERT_NE(node.value, nullptr);
    EXPECT_TRUE(node.value->isNull());
    EXPECT_EQ(node.value->objectClass()->name(), u"HTML_Object"_s);
}

TEST(XPathResultInScripts, DeadReferenceSaysHowToGetANewOne)
{
    FakePage page;
    const SharedPtr<Object> result = scriptObject(new HTML_XPathResult(variable, &page));
    LiveObjects::self().invalidate(&page);
    const QString dead
        = u"XPathResult reference deleted in browser already, please obtain a new reference using the "
          "obj.evaluateXPath() function."_s;

    for (const QString &name : {u"booleanValue"_s, u"numberValue"_s, u"stringValue"_s, u"snapshotLength"_s}) {
        EXPECT_EQ(readProperty(result, name).error, dead);
        EXPECT_EQ(callMethod(result, name).error, dead);
    }
    EXPECT_EQ(callMethod(result, u"singleNodeValue"_s).error, dead);
    EXPECT_EQ(callMethod(result, u"snapshotItem"_s, 0).error, dead);
    EXPECT_EQ(writeProperty(result, u"stringValue"_s, u"a"_s), dead);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(XPathResultInScripts, IsReadOnly)
{
    FakePage page;
    const SharedPtr<Object> result = scriptObject(new HTML_XPathResult(variable, &page));

    for (const QString &name : {u"booleanValue"_s, u"numberValue"_s, u"stringValue"_s, u"snapshotLength"_s})
        EXPECT_EQ(writeProperty(result, name, 1), u"Cannot set read-only property %1."_s.arg(name));
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(StyleInScripts, ReadsValuesUntilThePageGoes)
{
    FakePage page;
    const SharedPtr<Object> style = scriptObject(new HTML_Style(variable, &page));
    page.answer(u"red"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(callMethod(style, u"value"_s, u"color"_s).text(), u"red"_s);
    EXPECT_EQ(callMethod(style, u"value"_s, u"color"_s).error, u"gone"_s);
    LiveObjects::self().invalidate(&page);
    EXPECT_EQ(callMethod(style, u"value"_s, u"color"_s).error,
        u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
        "findObject"_s);
    EXPECT_EQ(page.scripts().size(), 2);
}

TEST(PageValuesInScripts, ScriptObjectOwnsItsValue)
{
    FakePage page;
    const LiveObjects &live = LiveObjects::self();
    const qsizetype styles = live.styles.size();
    const qsizetype results = live.xpathResults.size();

    SharedPtr<Object> style = scriptObject(new HTML_Style(variable, &page));
    SharedPtr<Object> result = scriptObject(new HTML_XPathResult(variable, &page));
    EXPECT_EQ(live.styles.size(), styles + 1);
    EXPECT_EQ(live.xpathResults.size(), results + 1);
    style.reset();
    result.reset();

    EXPECT_EQ(live.styles.size(), styles);
    EXPECT_EQ(live.xpathResults.size(), results);
}
