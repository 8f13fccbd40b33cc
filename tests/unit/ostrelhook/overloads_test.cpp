// Tests of overload resolution: which method a call means, and what it says when it means none.
#include "samplewidgets.h"

#include "ostrelhook/overloads.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

SharedPtr<Object> value(auto primitive)
{
    return Inspector::self()->createPrimitive(primitive);
}

SharedPtr<Object> nullOf(const char *className)
{
    sampleClasses();
    return Inspector::self()
        ->findClass(QString::fromLatin1(className))
        ->wrap(nullptr, ObjectAttribute::Pointer());
}

struct Choice
{
    const char *name;
    std::function<SharedPtr<Object>()> argument;
    QString taken;
};

void PrintTo(const Choice &choice, std::ostream *out)
{
    *out << choice.name;
}

class ChosenOverload : public testing::TestWithParam<Choice>
{
};

TEST_P(ChosenOverload, IsTheNearest)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    const SharedPtr<Object> result = callByName(widget, u"take"_s, {GetParam().argument()});

    EXPECT_EQ(Inspector::self()->takeError(), QString());
    ASSERT_TRUE(result);
    EXPECT_EQ(result->toQString(), GetParam().taken);
}

const Choice choices[] = {
    {"an int", [] { return value(3); }, u"int"_s},
    {"a boolean", [] { return value(true); }, u"bool"_s},
    {"a number with a fraction", [] { return value(0.5); }, u"double"_s},
    {"an integral double goes to double", [] { return value(3.0); }, u"double"_s},
    {"a text", [] { return value(u"3"_s); }, u"text 3"_s},
    {"a text beyond Latin", [] { return value(u"\u00e9\U0001f600"_s); }, u"text \u00e9\U0001f600"_s},
    {"an object of the class", [] { return wrapped(new Widget); }, u"widget Sample_Widget"_s},
    {"an object of a derived class", [] { return wrapped(new Button); }, u"widget Sample_Button"_s},
    {"the null object of the class", [] { return nullOf("Sample_Button"); }, u"no widget"_s},
    {"no object at all", [] { return SharedPtr<Object>(); }, u"no widget"_s},
};

INSTANTIATE_TEST_SUITE_P(Overloads, ChosenOverload, testing::ValuesIn(choices));

struct Distance
{
    const char *name;
    QString wanted;
    std::function<SharedPtr<Object>()> given;
    std::optional<int> distance;
};

void PrintTo(const Distance &distance, std::ostream *out)
{
    *out << distance.name;
}

class CallDistance : public testing::TestWithParam<Distance>
{
};

TEST_P(CallDistance, IsAsTheTableSays)
{
    const Argument wanted(u"a"_s, GetParam().wanted, ObjectAttribute::Value(), nullptr);

    EXPECT_EQ(callDistance(Signature({wanted}), {GetParam().given()}), GetParam().distance);
}

const Distance distances[] = {
    {"int for int", u"int"_s, [] { return value(1); }, 0},
    {"int for double", u"double"_s, [] { return value(1); }, 1},
    {"int for text", u"String"_s, [] { return value(1); }, 20},
    {"int for bool", u"bool"_s, [] { return value(1); }, std::nullopt},
    {"double for int when it is integral", u"int"_s, [] { return value(-2147483648.0); }, 1},
    {"double for int with a fraction", u"int"_s, [] { return value(1.5); }, std::nullopt},
    {"double for int out of range", u"int"_s, [] { return value(2147483648.0); }, std::nullopt},
    {"no number for int", u"int"_s, [] { return value(std::numeric_limits<double>::quiet_NaN()); },
        std::nullopt},
    {"infinity for int", u"int"_s, [] { return value(std::numeric_limits<double>::infinity()); },
        std::nullopt},
    {"double for text", u"String"_s, [] { return value(1.5); }, 20},
    {"bool for int", u"int"_s, [] { return value(true); }, std::nullopt},
    {"bool for double", u"double"_s, [] { return value(true); }, std::nullopt},
    {"bool for text", u"String"_s, [] { return value(true); }, 20},
    {"text for int", u"int"_s, [] { return value(u"1"_s); }, std::nullopt},
    {"text for bool", u"bool"_s, [] { return value(u"true"_s); }, std::nullopt},
    {"text for an object", u"Sample_Widget"_s, [] { return value(u"1"_s); }, std::nullopt},
    {"object of the class", u"Sample_Button"_s, [] { return nullOf("Sample_Button"); }, 0},
    {"object of a derived class", u"Sample_Widget"_s, [] { return nullOf("Sample_Button"); }, 1},
    {"object for any object", u"Object"_s, [] { return nullOf("Sample_Button"); }, 2},
    {"object of the base class", u"Sample_Button"_s, [] { return nullOf("Sample_Widget"); }, std::nullopt},
    {"object for text", u"String"_s, [] { return nullOf("Sample_Widget"); }, std::nullopt},
    {"nothing for an object", u"Sample_Button"_s, [] { return SharedPtr<Object>(); }, 0},
    {"nothing for text", u"String"_s, [] { return SharedPtr<Object>(); }, std::nullopt},
    {"nothing for int", u"int"_s, [] { return SharedPtr<Object>(); }, std::nullopt},
    {"array for array", u"Array"_s, [] { return ArrayClass::wrapObject({}); }, 0},
};

INSTANTIATE_TEST_SUITE_P(Overloads, CallDistance, testing::ValuesIn(distances));

TEST(Overloads, TheNumberOfArgumentsMustFit)
{
    const Argument wanted(u"a"_s, u"int"_s, ObjectAttribute::Value(), nullptr);

    EXPECT_EQ(callDistance(Signature({wanted}), {}), std::nullopt);
    EXPECT_EQ(callDistance(Signature(), argumentList(1)), std::nullopt);
    EXPECT_EQ(callDistance(Signature(), {}), 0);
}

TEST(Overloads, AnUnknownMethodIsNamed)
{
    const FunctionCallResult<Method *> found = sampleClasses().button->resolve(u"vanish"_s, {});

    EXPECT_EQ(found.error, u"Sample_Button has no method 'vanish'."_s);
}

TEST(Overloads, ACallThatFitsNoneListsAllCandidates)
{
    const FunctionCallResult<Method *> found
        = sampleClasses().button->resolve(u"moveTo"_s, {value(u"left"_s), nullptr, nullOf("Sample_Button")});

    EXPECT_EQ(found.error,
        u"No overload fits the call Sample_Button.moveTo(String, null, Sample_Button). Expected: moveTo() or "
        "moveTo(int x) or moveTo(int x, int y) or moveTo(int x, int y, bool animated)."_s);
}

TEST(Overloads, NothingIsConvertedToABooleanSilently)
{
    const FunctionCallResult<Method *> found
        = sampleClasses().widget->resolve(u"onlyBool"_s, argumentList(1));

    EXPECT_EQ(found.error,
        u"No overload fits the call Sample_Widget.onlyBool(int). Expected: onlyBool(bool value)."_s);
}

} // namespace
