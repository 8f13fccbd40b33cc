// Tests of object names: how they are read, what is wrong with bad ones, and how they are written.
#include "ostrelhook/objectname.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

/// "name operator text" of each property; nested names in brackets.
QStringList shown(const ObjectName &name)
{
    static constexpr QChar operators[] = {u'=', u'~', u'?'};
    QStringList parts;
    for (const ObjectName::Property &property : name.properties()) {
        const PropertyValue &value = property.value;
        const QString text
            = value.form() == PropertyValue::Nested ? u'[' + value.stringValue() + u']' : value.stringValue();
        parts.append(u"%1 %2 %3"_s.arg(property.name, QString(operators[value.matchKind()]), text));
    }
    return parts;
}

struct Good
{
    const char *name;
    QString text;
    QStringList properties;
};

void PrintTo(const Good &row, std::ostream *out)
{
    *out << row.name;
}

class GoodNames : public testing::TestWithParam<Good>
{
};

TEST_P(GoodNames, AreReadAndKeepTheirText)
{
    const FunctionCallResult<ObjectName> parsed = ObjectName::parse(GetParam().text);

    EXPECT_EQ(parsed.error, QString());
    EXPECT_TRUE(parsed.value.isMultiProperty());
    EXPECT_EQ(shown(parsed.value), GetParam().properties);
    EXPECT_EQ(parsed.value.qualifiedName(), GetParam().text);
    EXPECT_EQ(parsed.value, ObjectName(GetParam().text));
}

TEST_P(GoodNames, MeanTheSameWhenWrittenAnew)
{
    ObjectName name(GetParam().text);

    name.setProperty(u"added"_s, PropertyValue(u"x"_s));
    name.removeProperty(u"added"_s);

    EXPECT_EQ(shown(ObjectName(name.qualifiedName())), GetParam().properties);
}

const Good good[] = {
    {"a recorded name", u"{visible='true' tagName='INPUT' name='q' type='text'}"_s,
        {u"visible = true"_s, u"tagName = INPUT"_s, u"name = q"_s, u"type = text"_s}},
    {"no properties", u"{}"_s, {}},
    {"blanks only", u"{ \t }"_s, {}},
    {"an empty value", u"{a=''}"_s, {u"a = "_s}},
    {"a wildcard", u"{img_src?='*logo.png'}"_s, {u"img_src ? *logo.png"_s}},
    {"a regular expression", u"{id~='^b\\\\d+$'}"_s, {u"id ~ ^b\\d+$"_s}},
    {"tabs between properties", u"{a='b'\tc='d'}"_s, {u"a = b"_s, u"c = d"_s}},
    {"no blank between properties", u"{value='x'simplifiedInnerText='y' }"_s,
        {u"value = x"_s, u"simplifiedInnerText = y"_s}},
    {"escaped quotes and backslashes", u"{a='it\\'s' b='\\\\' c='\\x'}"_s,
        {u"a = it's"_s, u"b = \\"_s, u"c = x"_s}},
    {"braces and operators in quotes", u"{a='}{' b='=~?' c='\"'}"_s,
        {u"a = }{"_s, u"b = =~?"_s, u"c = \""_s}},
    {"line breaks in quotes", u"{a='1\n2\r\t'}"_s, {u"a = 1\n2\r\t"_s}},
    {"characters outside the basic plane", u"{a='\U0001f600 \u05d0'}"_s, {u"a = \U0001f600 \u05d0"_s}},
    {"placeholders", u"{a='%1 %2'}"_s, {u"a = %1 %2"_s}},
    {"a property of a member", u"{style.color='red'}"_s, {u"style.color = red"_s}},
    {"the last of several demands counts", u"{a='1' b='2' a~='3'}"_s, {u"a ~ 3"_s, u"b = 2"_s}},
    {"a nested name", u"{container={visible='true' tagName='X'} tagName='A'}"_s,
        {u"container = [{visible='true' tagName='X'}]"_s, u"tagName = A"_s}},
    {"nested names in nested names", u"{container={container={a='1'} b='2'}c='3'}"_s,
        {u"container = [{container={a='1'} b='2'}]"_s, u"c = 3"_s}},
    {"braces in quotes of a nested name", u"{container={title='}' id='{\\''} a='b'}"_s,
        {u"container = [{title='}' id='{\\''}]"_s, u"a = b"_s}},
    {"an operator before a nested name means nothing", u"{container~={a='b'}}"_s,
        {u"container = [{a='b'}]"_s}},
    {"a nested name in quotes is text", u"{container='{a=\\'b\\'}'}"_s, {u"container = {a='b'}"_s}},
    {"a long text", u"{a='"_s + QString(100 * 1024, u'x') + u"'}"_s, {u"a = "_s + QString(100 * 1024, u'x')}},
    {"many escapes", u"{a='"_s + u"\\'\\\\"_s.repeated(25 * 1024) + u"'}"_s,
        {u"a = "_s + u"'\\"_s.repeated(25 * 1024)}},
};

INSTANTIATE_TEST_SUITE_P(ObjectNames, GoodNames, testing::ValuesIn(good));

struct Bad
{
    const char *name;
    QString text;
    QString error;
};

void PrintTo(const Bad &row, std::ostream *out)
{
    *out << row.name;
}

class BadNames : public testing::TestWithParam<Bad>
{
};

TEST_P(BadNames, AreRefusedWithThePlaceOfTheFault)
{
    const FunctionCallResult<ObjectName> parsed = ObjectName::parse(GetParam().text);

    EXPECT_EQ(parsed.error, GetParam().error);
}

TEST_P(BadNames, CountAsPlainTextOtherwise)
{
    const ObjectName name(GetParam().text);

    EXPECT_FALSE(name.isMultiProperty());
    EXPECT_TRUE(name.properties().isEmpty());
    EXPECT_EQ(name.qualifiedName(), GetParam().text);
}

const Bad bad[] = {
    {"nothing", u""_s, u"The object name is empty."_s},
    {"a value without quotes", u"{tagName='A' name=x}"_s,
        u"Invalid object name '{tagName='A' name=x}': value in quotes or braces expected at character 19."_s},
    {"a blank before the operator", u"{a = 'b'}"_s,
        u"Invalid object name '{a = 'b'}': '=', '?=' or '~=' expected at character 3."_s},
    {"a blank behind the operator", u"{a= 'b'}"_s,
        u"Invalid object name '{a= 'b'}': value in quotes or braces expected at character 4."_s},
    {"no closing brace", u"{a='b'"_s, u"Invalid object name '{a='b'': '}' expected at character 7."_s},
    {"only an opening brace", u"{"_s, u"Invalid object name '{': '}' expected at character 2."_s},
    {"no closing quote", u"{a='b}"_s,
        u"Invalid object name '{a='b}': closing quote expected at character 7."_s},
    {"a backslash at the end", u"{a='b\\"_s,
        u"Invalid object name '{a='b\\': closing quote expected at character 7."_s},
    {"no property name", u"{='b'}"_s,
        u"Invalid object name '{='b'}': property name expected at character 2."_s},
    {"only a property name", u"{a}"_s,
        u"Invalid object name '{a}': '=', '?=' or '~=' expected at character 3."_s},
    {"a question mark alone", u"{a?'b'}"_s, u"Invalid object name '{a?'b'}': '=' expected at character 4."_s},
    {"a tilde alone", u"{a~'b'}"_s, u"Invalid object name '{a~'b'}': '=' expected at character 4."_s},
    {"text behind the name", u"{a='b'} "_s,
        u"Invalid object name '{a='b'} ': text behind the closing brace at character 8."_s},
    {"a second closing brace", u"{a='b'}}"_s,
        u"Invalid object name '{a='b'}}': text behind the closing brace at character 8."_s},
    {"a line break between properties", u"{a='b'\nc='d'}"_s,
        u"Invalid object name '{a='b'\nc='d'}': property name expected at character 7."_s},
    {"a fault in a nested name", u"{container={a=b} c='d'}"_s,
        u"Invalid object name '{container={a=b} c='d'}': value in quotes or braces expected at character 15."_s},
    {"a nested name without an end", u"{container={a='b' "_s,
        u"Invalid object name '{container={a='b' ': '}' expected at character 19."_s},
    {"endless nesting", u"{a="_s.repeated(30000),
        u"Invalid object name '"_s + u"{a="_s.repeated(67).left(200)
            + u"...': names nested too deeply at character 304."_s},
};

INSTANTIATE_TEST_SUITE_P(ObjectNames, BadNames, testing::ValuesIn(bad));

TEST(ObjectName, TextWithoutBracesIsAPlainName)
{
    for (const QString &text :
        {u"Save"_s, u"DOCUMENT.HTML1.BODY1"_s, u"a {b='c'}"_s, u"[Window]"_s, u" {a='b'}"_s}) {
        const FunctionCallResult<ObjectName> parsed = ObjectName::parse(text);

        EXPECT_EQ(parsed.error, QString());
        EXPECT_FALSE(parsed.value.isMultiProperty());
        EXPECT_EQ(parsed.value.qualifiedName(), text);
    }
}

TEST(ObjectName, TellsWhatItDemandsOfAProperty)
{
    const ObjectName name(u"{tagName='A' id~='x'}"_s);

    EXPECT_TRUE(name.hasProperty(u"id"_s));
    EXPECT_FALSE(name.hasProperty(u"Id"_s));
    EXPECT_EQ(name.property(u"id"_s), PropertyValue(u"x"_s, PropertyValue::RegularExpression));
    EXPECT_EQ(name.property(u"none"_s).stringValue(), QString());
}

TEST(ObjectName, ChangedNamesAreWrittenInOneForm)
{
    ObjectName name(u"{ tagName='A'\tvalue='x'title='y' }"_s);

    name.setProperty(u"value"_s, PropertyValue(u"it's \\"_s, PropertyValue::Wildcard));
    EXPECT_EQ(name.qualifiedName(), u"{tagName='A' value?='it\\'s \\\\' title='y'}"_s);

    name.setProperty(
        u"container"_s, PropertyValue(u"{a='b'}"_s, PropertyValue::Strict, PropertyValue::Nested));
    EXPECT_EQ(name.qualifiedName(), u"{tagName='A' value?='it\\'s \\\\' title='y' container={a='b'}}"_s);

    name.setProperty(
        u"container"_s, PropertyValue(u"{a='b'}"_s, PropertyValue::MatchKind(0), PropertyValue::Form(1)));
    name.removeProperty(u"value"_s);
    EXPECT_EQ(name.qualifiedName(), u"{tagName='A' title='y' container='{a=\\'b\\'}'}"_s);
    EXPECT_EQ(name.property(u"container"_s).stringValue(), u"{a='b'}"_s);
}

TEST(ObjectName, RemovingWhatIsNotThereKeepsTheText)
{
    ObjectName name(u"{ tagName='A' }"_s);

    name.removeProperty(u"container"_s);

    EXPECT_EQ(name.qualifiedName(), u"{ tagName='A' }"_s);
}

TEST(ObjectName, APlainNameTakesNoProperties)
{
    ObjectName name(u"Save"_s);

    name.setProperty(u"a"_s, PropertyValue(u"b"_s));
    name.removeProperty(u"a"_s);

    EXPECT_EQ(name.qualifiedName(), u"Save"_s);
    EXPECT_FALSE(name.isMultiProperty());
}

TEST(ObjectName, AnEmptyNameGrowsProperties)
{
    ObjectName name;

    name.setProperty(u"a"_s, PropertyValue(u"b"_s));

    EXPECT_TRUE(name.isMultiProperty());
    EXPECT_EQ(name.qualifiedName(), u"{a='b'}"_s);
}

TEST(ObjectName, AnyValueSurvivesWritingAndReading)
{
    const QStringList hostile{u"'"_s, u"\\"_s, u"\\'"_s, u"'\\"_s, u"}"_s, u"{a='b'}"_s, u"\""_s, u"\n"_s,
        u"%1"_s, u"</script>"_s, u"\U0001f600"_s, QString(QChar(0xd83d)), QString(QChar(0)),
        QString(100 * 1024, u'\'')};

    for (const QString &text : hostile) {
        ObjectName name;
        name.setProperty(u"a"_s, PropertyValue(text));
        name.setProperty(u"b"_s, PropertyValue(text, PropertyValue::RegularExpression));

        const FunctionCallResult<ObjectName> back = ObjectName::parse(name.qualifiedName());

        EXPECT_EQ(back.error, QString());
        EXPECT_EQ(back.value.properties(), name.properties());
    }
}

} // namespace
