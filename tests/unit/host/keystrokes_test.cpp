// Tests of key sequences: characters, named keys, modifiers and what is no key.
#include "host/input/keystrokes.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

void PrintTo(const KeyStroke &stroke, std::ostream *stream)
{
    *stream << stroke.key.toStdString() << " code " << stroke.code.toStdString() << ' ' << stroke.keyCode
            << " text '" << stroke.text.toStdString() << "' modifiers " << stroke.modifiers;
}

namespace {

TEST(KeyStrokes, CharactersStandForThemselves)
{
    EXPECT_EQ(keyStrokes(u"aB7 é"_s).value,
        (QList<KeyStroke>{{u"a"_s, u"KeyA"_s, 65, u"a"_s, 0}, {u"B"_s, u"KeyB"_s, 66, u"B"_s, ShiftModifier},
            {u"7"_s, u"Digit7"_s, 55, u"7"_s, 0}, {u" "_s, u"Space"_s, 32, u" "_s, 0},
            {u"é"_s, {}, 0, u"é"_s, 0}}));
}

TEST(KeyStrokes, ACharacterOfTwoUnitsIsOneStroke)
{
    EXPECT_EQ(
        keyStrokes(u"\U0001F600"_s).value, (QList<KeyStroke>{{u"\U0001F600"_s, {}, 0, u"\U0001F600"_s, 0}}));
}

TEST(KeyStrokes, LineEndsAreTheReturnKey)
{
    const KeyStroke enter{u"Enter"_s, u"Enter"_s, 13, u"\r"_s, 0};

    EXPECT_EQ(keyStrokes(u"\n"_s).value, QList<KeyStroke>{enter});
    EXPECT_EQ(keyStrokes(u"\r\n"_s).value, QList<KeyStroke>{enter});
    EXPECT_EQ(keyStrokes(u"<Return>"_s).value, QList<KeyStroke>{enter});
    EXPECT_EQ(keyStrokes(u"<enter>"_s).value, QList<KeyStroke>{enter});
}

TEST(KeyStrokes, NamedKeysTypeNothing)
{
    EXPECT_EQ(keyStrokes(u"<Home><PageDown>"_s).value,
        (QList<KeyStroke>{{u"Home"_s, u"Home"_s, 36, {}, 0}, {u"PageDown"_s, u"PageDown"_s, 34, {}, 0}}));
}

TEST(KeyStrokes, ModifiersStandInFront)
{
    EXPECT_EQ(keyStrokes(u"<Shift+End><Ctrl+Shift+Left><Ctrl+A>"_s).value,
        (QList<KeyStroke>{{u"End"_s, u"End"_s, 35, {}, ShiftModifier},
            {u"ArrowLeft"_s, u"ArrowLeft"_s, 37, {}, ControlModifier | ShiftModifier},
            {u"a"_s, u"KeyA"_s, 65, {}, ControlModifier}}));
}

TEST(KeyStrokes, BracketsAroundNoNameStandForThemselves)
{
    const QList<KeyStroke> strokes = keyStrokes(u"1 < 2 <>"_s).value;

    QString typed;
    for (const KeyStroke &stroke : strokes)
        typed += stroke.text;
    EXPECT_EQ(typed, u"1 < 2 <>"_s);
}

TEST(KeyStrokes, InATextBracketsHaveNoMeaning)
{
    QString typed;
    for (const KeyStroke &stroke : textStrokes(u"<Home>\U0001F600\n"_s))
        typed += stroke.text;
    EXPECT_EQ(typed, u"<Home>\U0001F600\r"_s);
}

TEST(KeyStrokes, AnUnknownKeyIsAnError)
{
    EXPECT_EQ(keyStrokes(u"abc<Retrun>"_s).error, u"There is no key '<Retrun>'."_s);
    EXPECT_EQ(keyStrokes(u"<Hyper+A>"_s).error, u"There is no key '<Hyper+A>'."_s);
    EXPECT_EQ(keyStrokes(u"<b>"_s).error, u"There is no key '<b>'."_s);
}

} // namespace
} // namespace Ostrel::Host
