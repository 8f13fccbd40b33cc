// Tests of colours: what scripts make of them, how styles give them, and their text forms.
#include "wrappers/web/reflection/csscolor.h"

#include "wrappers/web/csspropertynames.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/webobject.h"

#include "support/fakepage.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include "ostrelhook/delegates.h"
#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

class Classes : public ::testing::Environment
{
public:
    void SetUp() override { createWebObjectClasses(); }
};

const auto *const classes = ::testing::AddGlobalTestEnvironment(new Classes);

/// Notes the traces of a category while it lives.
class TraceCapture
{
public:
    explicit TraceCapture(const QString &category)
    {
        ProbeLog::setTraceReceiver([this](const ProbeLog::TracePoint &point, const QString &text,
                                       const ProbeLog::VariableSnapshot &) {
            texts.append(QString::fromLatin1(point.category()) + u": "_s + text);
        });
        ProbeLog::setActiveCategories({category});
    }
    ~TraceCapture()
    {
        ProbeLog::setActiveCategories({});
        ProbeLog::setTraceReceiver({});
    }

    QStringList texts;
};

/// Calls a static method of the class as a script does.
template <typename... Arguments>
ScriptAnswer make(const QString &factory, const Arguments &...arguments)
{
    const ObjectList list{argument(arguments)...};
    Class *type = objectModelCssColorClass();
    const FunctionCallResult<Method *> method = type->resolve(factory, list);
    if (method.failed())
        return {{}, method.error};
    SharedPtr<Object> value = type->call({}, list, method.value);
    return {value, Inspector::self()->takeError()};
}

/// Calls it with arguments that no overload was chosen for.
ScriptAnswer makeFrom(const QString &factory, const ObjectList &arguments)
{
    Class *type = objectModelCssColorClass();
    SharedPtr<Object> value = type->call({}, arguments, type->findMethods(factory).constFirst());
    return {value, Inspector::self()->takeError()};
}

ScriptAnswer asText(const SharedPtr<Object> &color)
{
    const Class *text = Inspector::self()->primitiveClass(PrimitiveType::String);
    SharedPtr<Object> value = objectModelCssColorClass()->convertTo(color, text);
    return {value, Inspector::self()->takeError()};
}

SharedPtr<Object> invalidColor()
{
    return wrapCssColor(CssColor());
}

} // namespace

// Making colours

TEST(CssColor, IsMadeOfThreeComponents)
{
    const ScriptAnswer color = make(u"fromRgb"_s, 0, 128, 255);

    EXPECT_EQ(color.error, QString());
    EXPECT_TRUE(readProperty(color.value, u"isValid"_s).value->toBool());
    EXPECT_EQ(readProperty(color.value, u"red"_s).value->toInt(), 0);
    EXPECT_EQ(readProperty(color.value, u"green"_s).value->toInt(), 128);
    EXPECT_EQ(readProperty(color.value, u"blue"_s).value->toInt(), 255);
    EXPECT_EQ(readProperty(color.value, u"alpha"_s).value->toDouble(), 1.0);
}

TEST(CssColor, IsMadeOfFourComponents)
{
    const ScriptAnswer color = make(u"fromRgba"_s, 1, 2, 3, 0.25);

    EXPECT_EQ(color.error, QString());
    EXPECT_TRUE(readProperty(color.value, u"isValid"_s).value->toBool());
    EXPECT_EQ(readProperty(color.value, u"alpha"_s).value->toDouble(), 0.25);
    EXPECT_EQ(make(u"fromRgba"_s, 1, 2, 3, 0).error, QString()) << "whole numbers are numbers too";
    EXPECT_EQ(make(u"fromRgba"_s, 1, 2, 3, 1).error, QString());
}

TEST(CssColor, ComponentsMustBeInRange)
{
    const QString range = u"Invalid argument, value needs to be between 0 and 255 (inclusive), was: %1"_s;
    struct Row
    {
        int red;
        int green;
        int blue;
        QString component;
        int value;
    };
    const Row rows[] = {
        {-1, 0, 0, u"red"_s, -1},
        {256, 300, 300, u"red"_s, 256},
        {0, 256, -1, u"green"_s, 256},
        {0, -7, 0, u"green"_s, -7},
        {0, 0, 256, u"blue"_s, 256},
        {255, 255, -1, u"blue"_s, -1},
    };
    for (const Row &row : rows) {
        TraceCapture trace(u"WebObject"_s);
        const QString error = range.arg(row.value);

        const ScriptAnswer color = make(u"fromRgb"_s, row.red, row.green, row.blue);
        const ScriptAnswer withAlpha = make(u"fromRgba"_s, row.red, row.green, row.blue, 2.0);

        EXPECT_EQ(color.value, nullptr);
        EXPECT_EQ(color.error, u"Error for %1 component: %2"_s.arg(row.component, error));
        EXPECT_EQ(withAlpha.error, color.error) << "the first component in order is reported";
        EXPECT_EQ(trace.texts,
            QStringList(2, u"WebObject: Error constructing CssColor for %1: %2"_s.arg(row.component, error)));
    }
}

TEST(CssColor, AlphaMustBeBetweenZeroAndOne)
{
    for (const auto &[alpha, shown] : {std::pair(1.5, u"1.5"_s), std::pair(-0.25, u"-0.25"_s)}) {
        TraceCapture trace(u"WebObject"_s);
        const QString error
            = u"Invalid argument, alpha value needs to be between 0 and 1 (inclusive), was: "_s + shown;

        const ScriptAnswer color = make(u"fromRgba"_s, 1, 2, 3, alpha);

        EXPECT_EQ(color.value, nullptr);
        EXPECT_EQ(color.error, u"Error for alpha component: "_s + error);
        EXPECT_EQ(trace.texts, QStringList{u"WebObject: Error constructing CssColor for alpha: "_s + error});
    }
}

TEST(CssColor, ComponentsMustBeNumbers)
{
    EXPECT_EQ(makeFrom(u"fromRgb"_s, {argument(u"red %1"_s), argument(0), argument(0)}).error,
        u"Error for red component: Invalid argument, value needs to be between 0 and 255 (inclusive), was: red %1"_s);
    EXPECT_EQ(makeFrom(u"fromRgb"_s, {argument(0), nullptr, argument(0)}).error,
        u"Error for green component: Invalid argument, value needs to be between 0 and 255 (inclusive), was: null"_s);
    EXPECT_EQ(makeFrom(u"fromRgba"_s, {argument(0), argument(0), argument(0), argument(u"half"_s)}).error,
        u"Error for alpha component: Invalid argument, alpha value needs to be between 0 and 1 (inclusive), "
        u"was: "
        "half"_s);
}

TEST(CssColor, NumberOfComponentsIsFixed)
{
    EXPECT_EQ(makeFrom(u"fromRgb"_s, {argument(0)}).error,
        u"CssColor.fromRgb takes 3 arguments, but 1 were given."_s);
}

// Reading and changing colours

TEST(CssColor, ComponentsCanBeSet)
{
    const SharedPtr<Object> color = make(u"fromRgb"_s, 0, 0, 0).value;

    EXPECT_EQ(writeProperty(color, u"red"_s, 10), QString());
    EXPECT_EQ(writeProperty(color, u"green"_s, 20), QString());
    EXPECT_EQ(writeProperty(color, u"blue"_s, 30), QString());
    EXPECT_EQ(writeProperty(color, u"alpha"_s, 0.5), QString());

    EXPECT_EQ(asText(color).text(), u"rgba(10,20,30,0.5)"_s);
}

TEST(CssColor, SettingChecksLikeMaking)
{
    const SharedPtr<Object> color = make(u"fromRgb"_s, 1, 2, 3).value;
    TraceCapture trace(u"WebObject"_s);

    EXPECT_EQ(writeProperty(color, u"red"_s, 256),
        u"Error for red component: Invalid argument, value needs to be between 0 and 255 (inclusive), was: 256"_s);
    EXPECT_EQ(writeProperty(color, u"alpha"_s, -1),
        u"Error for alpha component: Invalid argument, alpha value needs to be between 0 and 1 (inclusive), was: -1"_s);

    EXPECT_EQ(asText(color).text(), u"rgba(1,2,3,1)"_s) << "nothing has changed";
    EXPECT_EQ(trace.texts,
        QStringList({u"WebObject: Error constructing CssColor for red: Invalid argument, value needs to be "
                     u"between 0 and "
                     "255 (inclusive), was: 256"_s,
            u"WebObject: Error constructing CssColor for alpha: Invalid argument, alpha value needs to be "
            u"between 0 and 1 "
            "(inclusive), was: -1"_s}));
}

TEST(CssColor, ValidityIsReadOnly)
{
    const QString error = u"Cannot set read-only property 'isValid' on CssColor"_s;

    EXPECT_EQ(writeProperty(make(u"fromRgb"_s, 1, 2, 3).value, u"isValid"_s, false), error);
    EXPECT_EQ(writeProperty(invalidColor(), u"isValid"_s, true), error);
}

TEST(CssColor, InvalidColorHasNoComponents)
{
    const SharedPtr<Object> color = invalidColor();

    const ScriptAnswer validity = readProperty(color, u"isValid"_s);

    EXPECT_EQ(validity.error, QString());
    EXPECT_FALSE(validity.value->toBool());
    for (const QString &name : {u"red"_s, u"green"_s, u"blue"_s, u"alpha"_s}) {
        EXPECT_EQ(readProperty(color, name).error, u"Invalid color, cannot access %1 property"_s.arg(name));
        EXPECT_EQ(writeProperty(color, name, 1), u"Cannot set properties on invalid color."_s);
    }
}

TEST(CssColor, UnknownPropertyIsReported)
{
    Class *type = objectModelCssColorClass();
    const Property unknown(
        type, Argument(u"int"_s, ObjectAttribute::Value()), u"cyan"_s, Property::ReadWrite, 99);

    EXPECT_EQ(type->getProperty(make(u"fromRgb"_s, 1, 2, 3).value, &unknown), nullptr);
    EXPECT_EQ(Inspector::self()->takeError(), u"Invalid property of CssColor accessed: cyan"_s);
}

// Text

TEST(CssColor, TurnsIntoTextOnly)
{
    const Class *type = objectModelCssColorClass();
    const Inspector *inspector = Inspector::self();

    EXPECT_TRUE(type->canConvertTo(inspector->primitiveClass(PrimitiveType::String)));
    EXPECT_FALSE(type->canConvertTo(inspector->primitiveClass(PrimitiveType::Int)));
    EXPECT_FALSE(type->canConvertTo(type));
    EXPECT_EQ(
        type->convertTo(make(u"fromRgb"_s, 1, 2, 3).value, inspector->primitiveClass(PrimitiveType::Int)),
        nullptr);
}

TEST(CssColor, TextHoldsAllComponents)
{
    EXPECT_EQ(objectAsText(make(u"fromRgb"_s, 1, 2, 3).value), u"rgba(1,2,3,1)"_s) << "as a script prints it";
    EXPECT_EQ(asText(make(u"fromRgb"_s, 1, 2, 3).value).text(), u"rgba(1,2,3,1)"_s);
    EXPECT_EQ(asText(make(u"fromRgba"_s, 0, 255, 16, 0.1).value).text(), u"rgba(0,255,16,0.1)"_s);
    EXPECT_EQ(asText(make(u"fromRgba"_s, 0, 0, 0, 0).value).text(), u"rgba(0,0,0,0)"_s);
    EXPECT_EQ(asText(make(u"fromRgba"_s, 0, 0, 0, 1e-7).value).text(), u"rgba(0,0,0,1e-07)"_s);
}

TEST(CssColor, InvalidColorHasNoText)
{
    const ScriptAnswer text = asText(invalidColor());

    EXPECT_EQ(text.value, nullptr);
    EXPECT_EQ(text.error, u"Invalid color cannot be converted to a string."_s);
}

// Native use

TEST(CssColor, WrappingCopies)
{
    CssColor color{1, 2, 3, 0.5, 1};

    const SharedPtr<Object> object = wrapCssColor(color);
    color.red = 99;

    ASSERT_NE(unwrapCssColor(object), nullptr);
    EXPECT_EQ(unwrapCssColor(object)->red, 1);
    EXPECT_TRUE(object->isOwning());
    EXPECT_EQ(object->objectClass(), objectModelCssColorClass());
    EXPECT_EQ(unwrapCssColor(nullptr), nullptr);
    EXPECT_EQ(unwrapCssColor(argument(1)), nullptr);
}

TEST(CssColor, NewColorHoldsNothing)
{
    const CssColor color;

    EXPECT_EQ(color.valid, 0);
    EXPECT_EQ(sizeof color.red, 1U);
    EXPECT_EQ(sizeof color.valid, 4U);
}

TEST(ConvertRgbToHashHex, WritesHexadecimalDigits)
{
    struct Row
    {
        const char *name;
        QString text;
        QString converted;
    };
    const Row rows[] = {
        {"blanks", u"rgb(255, 0, 10)"_s, u"#ff000a"_s},
        {"no blanks", u"rgb(1,2,3)"_s, u"#010203"_s},
        {"only the brackets count", u"(16,17,255) solid"_s, u"#1011ff"_s},
        {"a number beyond a byte", u"rgb(300,0,0)"_s, u"#12c0000"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        TraceCapture trace(u"WebObject"_s);

        EXPECT_EQ(convertRgbToHashHex(row.text), row.converted);
        EXPECT_EQ(trace.texts, QStringList());
    }
}

TEST(ConvertRgbToHashHex, LeavesOtherTextAndSaysWhy)
{
    struct Row
    {
        const char *name;
        QString text;
        QStringList traces;
    };
    const Row rows[] = {
        {"keyword", u"transparent"_s, {}},
        {"hexadecimal already", u"#fff"_s, {}},
        {"empty", QString(), {}},
        {"no number for red", u"rgb(x,0,0)"_s,
            {u"WebObject: Unable to convert red value: Could not convert 'x' to unsigned int"_s}},
        {"negative green", u"rgb(0, -1,0)"_s,
            {u"WebObject: Unable to convert green value: Could not convert ' -1' to unsigned int"_s}},
        {"no end of red", u"rgb(0"_s,
            {u"WebObject: Unable to convert red value: End character ',' not found in 'rgb(0' starting at 4."_s}},
        {"no end of green", u"rgb(%1,0)"_s.arg(0),
            {u"WebObject: Unable to convert green value: End character ',' not found in 'rgb(0,0)' starting at 6."_s}},
        {"no end of blue", u"rgb(0,0,0"_s,
            {u"WebObject: Unable to convert blue value: End character ')' not found in 'rgb(0,0,0' starting at 8."_s}},
        {"four components", u"rgba(1, 2, 3, 0.5)"_s,
            {u"WebObject: Unable to convert blue value: Could not convert ' 3, 0.5' to unsigned int"_s}},
        {"placeholder", u"rgb(%2,0,0)"_s,
            {u"WebObject: Unable to convert red value: Could not convert '%2' to unsigned int"_s}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        TraceCapture trace(u"WebObject"_s);

        EXPECT_EQ(convertRgbToHashHex(row.text), row.text);
        EXPECT_EQ(trace.texts, row.traces);
    }
}

// Styles of elements

TEST(CssProperties, GivesColorsAndTexts)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.answerJson(
        u"{\"borderTopColor\":{\"red\":1,\"green\":2,\"blue\":3,\"alpha\":0.5},\"display\":\"block\","
        "\"outlineColor\":\"invert\",\"borderColor\":\"rgb(1, 2, 3) rgb(4, 5, 6)\",\"zIndex\":5,"
        "\"caretColor\":{\"red\":255,\"green\":0,\"blue\":0,\"alpha\":1}}"_s);

    const SharedPtr<Object> css = readProperty(element, u"css"_s).value;

    ASSERT_NE(css, nullptr);
    EXPECT_EQ(css->objectClass()->name(), u"CSSProperties"_s);
    EXPECT_TRUE(css->isOwning());
    const SharedPtr<Object> border = readProperty(css, u"borderTopColor"_s).value;
    ASSERT_NE(border, nullptr);
    EXPECT_EQ(border->objectClass(), objectModelCssColorClass());
    EXPECT_EQ(asText(border).text(), u"rgba(1,2,3,0.5)"_s);
    EXPECT_EQ(unwrapCssColor(border)->valid, 1);
    EXPECT_EQ(readProperty(css, u"outlineColor"_s).text(), u"invert"_s);
    EXPECT_EQ(asText(readProperty(css, u"caretColor"_s).value).text(), u"rgba(255,0,0,1)"_s);
    EXPECT_EQ(readProperty(css, u"display"_s).text(), u"block"_s);
    EXPECT_EQ(readProperty(css, u"borderColor"_s).text(), u"rgb(1, 2, 3) rgb(4, 5, 6)"_s);
    EXPECT_EQ(readProperty(css, u"zIndex"_s).text(), u"5"_s);
    EXPECT_EQ(page.scripts().size(), 1) << "all values come in one call";
}

TEST(CssProperties, OnlyAColorByNameAndByValueIsOne)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.answerJson(
        u"{\"display\":{\"red\":1,\"green\":2,\"blue\":3,\"alpha\":1},\"outlineColor\":{\"green\":2}}"_s);

    const SharedPtr<Object> css = readProperty(element, u"css"_s).value;

    const Class *text = Inspector::self()->primitiveClass(PrimitiveType::String);
    EXPECT_EQ(readProperty(css, u"display"_s).value->objectClass(), text);
    EXPECT_EQ(readProperty(css, u"outlineColor"_s).value->objectClass(), text);
}

// The names that scripts see are a fixed table, in which this one is missing. The object still holds what the
// page gave.
TEST(CssProperties, AColorIsGivenByAnyNameThatThePageKnows)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.answerJson(
        u"{\"backgroundColor\":{\"red\":1,\"green\":2,\"blue\":3,\"alpha\":1},\"display\":\"flex\"}"_s);
    const SharedPtr<Object> css = readProperty(element, u"css"_s).value;
    ASSERT_NE(css, nullptr);
    Class *type = css->objectClass();
    const Property background(
        type, Argument(u"String"_s, ObjectAttribute::Pointer()), u"backgroundColor"_s, Property::ReadOnly, 0);

    const SharedPtr<Object> color = type->getProperty(css, &background);

    EXPECT_EQ(asText(color).text(), u"rgba(1,2,3,1)"_s);
    EXPECT_EQ(readProperty(css, u"display"_s).text(), u"flex"_s);
    EXPECT_FALSE(cssPropertyNames().contains(u"backgroundColor"_s));
    EXPECT_EQ(cssPropertyNames().size(), 218);
}

TEST(CssProperties, PropertyWithoutAValueIsUnknown)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.answerJson(u"{\"display\":\"block\"}"_s);

    const SharedPtr<Object> css = readProperty(element, u"css"_s).value;

    EXPECT_EQ(readProperty(css, u"zIndex"_s).error, u"Unknown CSS property 'zIndex'."_s);
}

TEST(CssProperties, AreReadOnly)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.answerJson(u"{\"display\":\"block\"}"_s);

    const SharedPtr<Object> css = readProperty(element, u"css"_s).value;

    EXPECT_EQ(writeProperty(css, u"display"_s, u"none"_s), u"Cannot set read-only property display."_s);
    EXPECT_EQ(page.scripts().size(), 1);
}

TEST(CssProperties, FailureIsAScriptError)
{
    FakePage page;
    const SharedPtr<Object> element = wrapObject(new HTML_Object({}, u"el"_s, &page));
    page.fail(u"gone"_s);

    const ScriptAnswer css = readProperty(element, u"css"_s);

    EXPECT_EQ(css.error, u"Error obtaining CSS properties: gone"_s);
    EXPECT_EQ(css.value, nullptr);
}

TEST(CssPropertyNames, AreTwoHundredAndEighteenInOrder)
{
    const QStringList &names = cssPropertyNames();

    ASSERT_EQ(names.size(), 218);
    EXPECT_EQ(names.first(), u"alignContent"_s);
    EXPECT_EQ(names.last(), u"zIndex"_s);
    QStringList sorted = names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(names, sorted);
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
}
