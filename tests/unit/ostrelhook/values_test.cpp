// Tests of script values: primitives and how they turn into each other, arrays, dates and rectangles.
#include "ostrelhook/arrayclass.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/valueclasses.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

const Inspector *inspector()
{
    return Inspector::self();
}

struct Conversion
{
    const char *name;
    SharedPtr<Object> value;
    std::optional<QString> text;
    std::optional<int> integer;
    std::optional<bool> boolean;
    std::optional<double> number;
};

void PrintTo(const Conversion &conversion, std::ostream *out)
{
    *out << conversion.name;
}

class Conversions : public testing::TestWithParam<Conversion>
{
};

template <typename T>
std::optional<T> converted(const Object &object, T (Object::*conversion)(bool *) const)
{
    bool ok = false;
    const T result = (object.*conversion)(&ok);
    EXPECT_TRUE(ok || result == T());
    return ok ? std::optional(result) : std::nullopt;
}

TEST_P(Conversions, AreAsTheTableSays)
{
    const Conversion &row = GetParam();

    EXPECT_EQ(converted(*row.value, &Object::toQString), row.text);
    EXPECT_EQ(converted(*row.value, &Object::toInt), row.integer);
    EXPECT_EQ(converted(*row.value, &Object::toBool), row.boolean);
    EXPECT_EQ(converted(*row.value, &Object::toDouble), row.number);
}

const Conversion conversions[] = {
    {"an int", inspector()->createPrimitive(42), u"42"_s, 42, true, 42.0},
    {"zero", inspector()->createPrimitive(0), u"0"_s, 0, false, 0.0},
    {"true", inspector()->createPrimitive(true), u"true"_s, 1, true, 1.0},
    {"false", inspector()->createPrimitive(false), u"false"_s, 0, false, 0.0},
    {"a fraction", inspector()->createPrimitive(0.1), u"0.1"_s, std::nullopt, true, 0.1},
    {"an integral double", inspector()->createPrimitive(-2147483648.0), u"-2147483648"_s, -2147483648, true,
        -2147483648.0},
    {"text of a number", inspector()->createPrimitive(u" 12 "_s), u" 12 "_s, 12, std::nullopt, 12.0},
    {"text of a boolean", inspector()->createPrimitive(u"true"_s), u"true"_s, std::nullopt, true,
        std::nullopt},
    {"other text", inspector()->createPrimitive(u"a\"'\\"_s), u"a\"'\\"_s, std::nullopt, std::nullopt,
        std::nullopt},
    {"void", inspector()->createVoid(), std::nullopt, std::nullopt, std::nullopt, std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(Values, Conversions, testing::ValuesIn(conversions));

TEST(Values, PrimitivesKnowTheirClass)
{
    EXPECT_EQ(inspector()->createPrimitive(1)->objectClass(), inspector()->primitiveClass(PrimitiveType(1)));
    EXPECT_EQ(
        inspector()->createPrimitive(true)->objectClass(), inspector()->primitiveClass(PrimitiveType(3)));
    EXPECT_EQ(
        inspector()->createPrimitive(u"x"_s)->objectClass(), inspector()->primitiveClass(PrimitiveType(4)));
    EXPECT_EQ(
        inspector()->createPrimitive(1.5)->objectClass(), inspector()->primitiveClass(PrimitiveType(5)));
    EXPECT_EQ(inspector()->createVoid()->objectClass(), inspector()->primitiveClass(PrimitiveType(7)));
    EXPECT_EQ(inspector()->primitiveClass(PrimitiveType(4))->name(), u"String"_s);
    EXPECT_EQ(inspector()->findClass(u"void"_s), inspector()->primitiveClass(PrimitiveType::Void));
    EXPECT_FALSE(inspector()->createPrimitive(u""_s)->isNull());
}

TEST(Values, ArraysKeepTheirItems)
{
    const SharedPtr<Object> inner = ArrayClass::wrapObject({inspector()->createPrimitive(7)});
    const SharedPtr<Object> array
        = ArrayClass::wrapObject({inspector()->createPrimitive(u"a"_s), nullptr, inner});

    bool ok = false;
    const ObjectList items = ArrayClass::unwrapObject(array, &ok);

    EXPECT_TRUE(ok);
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items.at(0)->toQString(), u"a"_s);
    EXPECT_EQ(items.at(1), nullptr);
    EXPECT_EQ(ArrayClass::unwrapObject(items.at(2)).constFirst()->toInt(), 7);
}

TEST(Values, WhatIsNoArrayHasNoItems)
{
    bool ok = true;
    EXPECT_TRUE(ArrayClass::unwrapObject(inspector()->createPrimitive(u"abc"_s), &ok).isEmpty());
    EXPECT_FALSE(ok);
    ok = true;
    EXPECT_TRUE(ArrayClass::unwrapObject(nullptr, &ok).isEmpty());
    EXPECT_FALSE(ok);
}

TEST(Values, AnArrayParameterIsOfTheArrayClass)
{
    const Argument argument = ArrayClass::arrayClassArg(u"items"_s);

    EXPECT_EQ(argument.name(), u"items"_s);
    EXPECT_EQ(argument.type(), inspector()->findClass(u"Array"_s));
    EXPECT_EQ(argument.attribute(), ObjectAttribute::Pointer());
}

TEST(Values, DatesAreCopied)
{
    const DateTime moment(QDate(2024, 2, 29), QTime(23, 59, 58));

    const SharedPtr<Object> object = wrapDateTime(moment);

    EXPECT_EQ(object->objectClass(), objectModelDateTimeClass());
    EXPECT_EQ(unwrapDateTime(object), moment);
    EXPECT_FALSE(unwrapDateTime(inspector()->createPrimitive(1)).isValid());
    EXPECT_FALSE(unwrapDateTime(nullptr).isValid());
}

TEST(Values, RectanglesShowTheirSidesAndAreReadOnly)
{
    const SharedPtr<Object> object = wrapScreenRectangle({1, 2, 30, 40});
    Class *type = object->objectClass();

    QStringList sides;
    for (int i = 0; i < type->numProperties(); ++i)
        sides.append(type->property(i)->name() + u'=' + type->read(object, type->property(i))->toQString());

    EXPECT_EQ(sides, (QStringList{u"x=1"_s, u"y=2"_s, u"width=30"_s, u"height=40"_s}));
    EXPECT_FALSE(type->write(object, type->findProperty(u"x"_s), inspector()->createPrimitive(1)));
    EXPECT_EQ(Inspector::self()->takeError(), u"Cannot set read-only property x."_s);
    EXPECT_EQ(unwrapScreenRectangle(nullptr), (ScreenRectangle{-1, -1, -1, -1}));
}

} // namespace
