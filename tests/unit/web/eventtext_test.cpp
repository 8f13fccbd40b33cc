// Tests of the reader of event texts.
#include "wrappers/web/eventtext.h"

#include "support/printers.h"
#include "support/tracecapture.h"

#include <gtest/gtest.h>

#include <QDateTime>

using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

constexpr quint64 now = 1600000000123;

QString localText(quint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(milliseconds)).toString(u"MM/dd/yyyy hh:mm:ss:zzz");
}

struct ReadingCase
{
    const char *name;
    QString text;
    EventMap event;
};

class EventReading : public testing::TestWithParam<ReadingCase>
{
};

TEST_P(EventReading, Gives)
{
    EXPECT_EQ(traceText(parseEvent(GetParam().text, now)), traceText(GetParam().event));
}

const QString nowText = QString::number(now);

INSTANTIATE_TEST_SUITE_P(EventTexts, EventReading,
    testing::Values(
        ReadingCase{"APrefixWithATime", u"logevent1700000000000&event=keyup&value=a%26b"_s,
            {{u"timestamp"_s, u"1700000000000"_s}, {u"event"_s, u"keyup"_s}, {u"value"_s, u"a&b"_s}}},
        ReadingCase{"ATimeWithoutAPrefix", u"1700000000000&event=keyup"_s,
            {{u"timestamp"_s, u"1700000000000"_s}, {u"event"_s, u"keyup"_s}}},
        ReadingCase{"NoTime", u"event=startBrowser&url=x"_s,
            {{u"timestamp"_s, nowText}, {u"event"_s, u"startBrowser"_s}, {u"url"_s, u"x"_s}}},
        ReadingCase{"APrefixOnly", u"logevent&event=x"_s,
            {{u"timestamp"_s, nowText}, {u"logevent"_s, u"logevent"_s}, {u"event"_s, u"x"_s}}},
        ReadingCase{"TwoPrefixes",
            u"logevent1700000000000&logevent1700000000000&event=unload&object=[Window]"_s,
            {{u"timestamp"_s, u"1700000000000"_s}, {u"event"_s, u"unload"_s},
                {u"logevent1700000000000"_s, u"logevent1700000000000"_s}, {u"object"_s, u"[Window]"_s}}},
        ReadingCase{"ATimeThatIsNoDate", u"logevent18446744073709551615&event=x"_s,
            {{u"timestamp"_s, nowText}, {u"event"_s, u"x"_s},
                {u"logevent18446744073709551615"_s, u"logevent18446744073709551615"_s}}},
        ReadingCase{"ATimeThatIsTooLarge", u"logevent184467440737095516150&event=x"_s,
            {{u"timestamp"_s, nowText}, {u"event"_s, u"x"_s},
                {u"logevent184467440737095516150"_s, u"logevent184467440737095516150"_s}}},
        ReadingCase{"ATimeOfZero", u"logevent0&event=x"_s,
            {{u"timestamp"_s, nowText}, {u"event"_s, u"x"_s}, {u"logevent0"_s, u"logevent0"_s}}},
        ReadingCase{"ANegativeTime", u"logevent-5&event=x"_s,
            {{u"timestamp"_s, nowText}, {u"event"_s, u"x"_s}, {u"logevent-5"_s, u"logevent-5"_s}}},
        ReadingCase{"ATimeAlone", u"logevent1700000000000"_s, {{u"timestamp"_s, u"1700000000000"_s}}},
        ReadingCase{"ABareKeySeveralTimes", u"logevent1&clickHandler&clickHandler"_s,
            {{u"timestamp"_s, u"1"_s}, {u"clickHandler"_s, u"clickHandler"_s}}},
        ReadingCase{"ABareKeyInPlaceOfAValue", u"logevent1&value=a&value"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"value"_s}}},
        ReadingCase{"ABareKeyAsItStands", u"logevent1&%7BtagName%20"_s,
            {{u"timestamp"_s, u"1"_s}, {u"%7BtagName%20"_s, u"%7BtagName%20"_s}}},
        ReadingCase{
            "AKeyAsItStands", u"logevent1&a%20b=c%20d"_s, {{u"timestamp"_s, u"1"_s}, {u"a%20b"_s, u"c d"_s}}},
        ReadingCase{"TheFirstSignSeparates", u"logevent1&value=a=b=c"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"a=b=c"_s}}},
        ReadingCase{
            "NeitherKeyNorValue", u"logevent1&="_s, {{u"timestamp"_s, u"1"_s}, {QString(), QString()}}},
        ReadingCase{"TheLaterOfTwo", u"logevent1&x=1&x=2"_s, {{u"timestamp"_s, u"1"_s}, {u"x"_s, u"2"_s}}},
        ReadingCase{"ANameThatWasEscapedTwice", u"logevent1&object=%257BtagName%253D%2527A%2527"_s,
            {{u"timestamp"_s, u"1"_s}, {u"object"_s, u"{tagName%3D%27A%27"_s}}},
        ReadingCase{"ANameOfWhichTheStartWasEscapedTwice", u"logevent1&object=%257BtagName%3D%27A%27"_s,
            {{u"timestamp"_s, u"1"_s}, {u"object"_s, u"{tagName='A'"_s}}},
        ReadingCase{"ANameOfAnotherStart", u"logevent1&object=%257Btagname%253D"_s,
            {{u"timestamp"_s, u"1"_s}, {u"object"_s, u"%7Btagname%3D"_s}}},
        ReadingCase{"AnAnswerToAPromptThatWasNotEscaped", u"logevent1&event=prompt&ret=a&b"_s,
            {{u"timestamp"_s, u"1"_s}, {u"event"_s, u"prompt"_s}, {u"ret"_s, u"a"_s}, {u"b"_s, u"b"_s}}},
        ReadingCase{"ATimeAmongTheMembers", u"logevent1&timestamp=2"_s, {{u"timestamp"_s, u"2"_s}}},
        ReadingCase{"TheEntityOfTheAmpersand", u"logevent1&value=a%26amp%3Bb"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"a&b"_s}}},
        ReadingCase{"WideCharacters", u"logevent1&value=%u20ac%E4"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"€ä"_s}}},
        ReadingCase{"ASequenceThatTheEndCutsOff", u"logevent1&value=a%u2"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"a\u2000"_s}}},
        ReadingCase{"EmptyParts", u"&&logevent1&&x=1&"_s, {{u"timestamp"_s, u"1"_s}, {u"x"_s, u"1"_s}}},
        ReadingCase{"OptionsWithASeparator", u"logevent1&value=a%2Cb%3Bc%3B"_s,
            {{u"timestamp"_s, u"1"_s}, {u"value"_s, u"a,b;c;"_s}}},
        ReadingCase{"NoText", QString(), {}}, ReadingCase{"NoParts", u"&&&"_s, {}}),
    [](const auto &row) { return row.param.name; });

TEST(EventReadingTraces, TellAboutATimeThatCameWithTheText)
{
    TraceCapture traces(u"WebEventCompression"_s);

    parseEvent(u"logevent1700000000000&event=keyup&value=a"_s, now);

    EXPECT_EQ(traces.lines(),
        (QStringList{u"Parsing event data: 'logevent1700000000000&event=keyup&value=a'"_s,
            u"converted timestamp string: 'event=keyup' as integer: 1700000000000 as qdatetime: %1"_s.arg(
                localText(1700000000000)),
            u"Parsed data: {event='keyup', timestamp='1700000000000', value='a'}"_s}));
}

TEST(EventReadingTraces, TellAboutATimeOfOurOwn)
{
    TraceCapture traces(u"WebEventCompression"_s);

    parseEvent(u"event=keyup"_s, now);

    EXPECT_EQ(traces.lines(),
        (QStringList{u"Parsing event data: 'event=keyup'"_s,
            u"using current date/time as timestamp; as integer: 1600000000123 as qdatetime: %1"_s.arg(
                localText(now)),
            u"Parsed data: {event='keyup', timestamp='1600000000123'}"_s}));
}

TEST(EventReadingTraces, EndWithTheTextWhereThereIsNoPart)
{
    TraceCapture traces(u"WebEventCompression"_s);

    parseEvent(u"&"_s, now);

    EXPECT_EQ(traces.lines(), QStringList{u"Parsing event data: '&'"_s});
}

TEST(EventTime, IsThatOfTheEvent)
{
    EXPECT_EQ(timeOfDay({{u"timestamp"_s, u"1700000000456"_s}}, now),
        QDateTime::fromMSecsSinceEpoch(1700000000456).time());
}

TEST(EventTime, IsThatOfNowWithoutOne)
{
    const QTime expected = QDateTime::fromMSecsSinceEpoch(now).time();

    EXPECT_EQ(timeOfDay({}, now), expected);
    EXPECT_EQ(timeOfDay({{u"timestamp"_s, u"noon"_s}}, now), expected);
    EXPECT_EQ(timeOfDay({{u"timestamp"_s, u"18446744073709551615"_s}}, now), expected);
}

TEST(EventState, HasABitForEachModifierAndTheRightButton)
{
    EXPECT_EQ(modifierState({{u"altKey"_s, u"true"_s}}), 1);
    EXPECT_EQ(modifierState({{u"ctrlKey"_s, u"true"_s}}), 2);
    EXPECT_EQ(modifierState({{u"shiftKey"_s, u"true"_s}}), 4);
    EXPECT_EQ(modifierState({{u"button"_s, u"2"_s}}), 16);
    EXPECT_EQ(modifierState({{u"altKey"_s, u"true"_s}, {u"ctrlKey"_s, u"true"_s}, {u"shiftKey"_s, u"true"_s},
                  {u"button"_s, u"2"_s}}),
        23);
}

TEST(EventState, IsEmptyForAnythingElse)
{
    EXPECT_EQ(modifierState({}), 0);
    EXPECT_EQ(modifierState({{u"altKey"_s, u"false"_s}, {u"ctrlKey"_s, u"True"_s}, {u"shiftKey"_s, u"1"_s},
                  {u"button"_s, u"1"_s}, {u"metaKey"_s, u"true"_s}}),
        0);
}

TEST(EventState, OfATouchHasNoButton)
{
    EXPECT_EQ(
        modifierState(parseEvent(
            u"logevent1&event=touchend&x=1&y=2&altKey=false&ctrlKey=false&shiftKey=false&button=0&keyCode=undefined"_s,
            now)),
        0);
}

} // namespace
