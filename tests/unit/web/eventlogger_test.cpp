// Tests of the event logger's pipeline: queue, filters, contexts, reports that need no recording.
#include "eventrecorder.h"

#include "ostrelhook/hook.h"

#include "support/messagecapture.h"
#include "support/tracecapture.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

class Logger : public testing::Test
{
protected:
    ~Logger() override
    {
        Hook::hook->setReceiver(nullptr);
        Hook::hook->preferredSpyId = -1;
        Hook::hook->fallbackSpyId = -1;
    }
    /// What the spy gets from here on.
    void listenToSpy()
    {
        Hook::hook->setReceiver([this](int target, const QString &message, const ArgumentList &arguments) {
            picked.append(u"%1 %2 %3"_s.arg(QString::number(target), message, arguments.value(0).toString()));
            return true;
        });
    }
    static QString link(const QString &object, const QString &more = {})
    {
        return text(u"mousedown"_s, u"A"_s, object, more);
    }

    static inline EventTexts text;
    QStringList picked;
    MessageCapture messages;
    EventRecorder recorder;
};

using Blocking = Logger;
using Duplicates = Logger;
using Queue = Logger;
using Names = Logger;
using Contexts = Logger;
using Reports = Logger;
using Starting = Logger;
using Copies = Logger;

TEST_F(Blocking, LosesTheEventsOfPages)
{
    recorder.enableLogEventBlocking();
    recorder.logEvent(link(u"lost"_s));
    recorder.disableLogEventBlocking();
    recorder.logEvent(link(u"kept"_s));

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('kept')"_s});
}

TEST_F(Blocking, ForgetsWhatItLost)
{
    const QString press = link(u"again"_s);
    recorder.enableLogEventBlocking();
    recorder.logEvent(press);
    recorder.disableLogEventBlocking();
    recorder.logEvent(press);

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('again')"_s});
}

TEST_F(Blocking, LeavesNoTrace)
{
    recorder.enableLogEventBlocking();
    TraceCapture traces(u"*"_s);

    recorder.logEvent(link(u"lost"_s));

    EXPECT_EQ(traces.lines(), QStringList());
}

TEST_F(Blocking, LetsAnswersPass)
{
    recorder.enableLogEventBlocking();

    recorder.logEvent(u"logevent1&event=evalAnswer&x=1"_s);

    EXPECT_EQ(
        messages.take(), QStringList{u"convertEvent: unhandled event 'logevent1&event=evalAnswer&x=1'"_s});
}

TEST_F(Duplicates, AreDropped)
{
    const QString press = link(u"once"_s);

    recorder.logEvent(press);
    recorder.logEvent(press);

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('once')"_s});
}

TEST_F(Duplicates, AreThoseOfTheSameTimeOnly)
{
    recorder.logEvent(link(u"twice"_s));
    recorder.logEvent(link(u"twice"_s));

    EXPECT_EQ(recorder.take(), (QStringList{u"mouseClick('twice')"_s, u"mouseClick('twice')"_s}));
}

TEST_F(Duplicates, AreOnlyLookedForRightBehind)
{
    const QString first = link(u"first"_s);

    recorder.logEvent(first);
    recorder.logEvent(link(u"second"_s));
    recorder.logEvent(first);

    EXPECT_EQ(recorder.take(),
        (QStringList{u"mouseClick('first')"_s, u"mouseClick('second')"_s, u"mouseClick('first')"_s}));
}

TEST_F(Duplicates, OfAnUnloadWithoutAPrefixAreKept)
{
    recorder.logEvent(u"event=unload&object=w"_s);
    recorder.logEvent(u"event=unload&object=w"_s);

    EXPECT_EQ(recorder.take(), (QStringList{u"closeWindow('w')"_s, u"closeWindow('w')"_s}));
}

TEST_F(Duplicates, AreNoneBehindAnUnload)
{
    const QString press = link(u"o"_s);

    recorder.logEvent(press);
    recorder.logEvent(u"event=unload&object=w"_s);
    recorder.logEvent(press);

    EXPECT_EQ(
        recorder.take(), (QStringList{u"mouseClick('o')"_s, u"closeWindow('w')"_s, u"mouseClick('o')"_s}));
}

TEST_F(Duplicates, OfAnUnloadWithAPrefixAreDropped)
{
    const QString unload = text(u"unload"_s, QString(), u"w"_s);

    recorder.logEvent(unload);
    recorder.logEvent(unload);

    EXPECT_EQ(recorder.take(), QStringList{u"closeWindow('w')"_s});
}

TEST_F(Duplicates, AreRememberedByAllLoggersTogether)
{
    const QString press = link(u"shared"_s);
    EventRecorder other;

    recorder.logEvent(press);
    other.logEvent(press);

    EXPECT_EQ(other.take(), QStringList());
}

TEST_F(Duplicates, OfTextsFromBeforeTheRecordingAreDropped)
{
    const QString press = link(u"early"_s);

    Inspector::self()->setRecording(false);
    recorder.logEvent(press);
    Inspector::self()->setRecording(true);
    recorder.logEvent(press);

    EXPECT_EQ(recorder.take(), QStringList());
}

TEST_F(Duplicates, OfAnUnloadAreKnownByTheirBeginning)
{
    const QString press = link(u"o"_s, u"note=event=unload"_s);

    recorder.logEvent(press);
    recorder.logEvent(press);

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('o')"_s});
}

TEST_F(Duplicates, OfPickedObjectsAreDroppedToo)
{
    listenToSpy();
    const QString pick = text(u"pickedObject"_s, QString(), u"thing"_s);

    recorder.logEvent(pick);
    recorder.logEvent(pick);

    EXPECT_EQ(picked, QStringList{u"-1 objectPicked thing"_s});
}

TEST_F(Queue, KeepsATextThatArrivesMeanwhileForLater)
{
    QStringList atReturn;
    recorder.whileRecording = [&] {
        recorder.logEvent(link(u"second"_s));
        recorder.logEvent(link(u"third"_s));
        atReturn = recorder.lines;
    };

    recorder.logEvent(link(u"first"_s));

    EXPECT_EQ(atReturn, QStringList{u"mouseClick('first')"_s});
    EXPECT_EQ(recorder.take(),
        (QStringList{u"mouseClick('first')"_s, u"mouseClick('second')"_s, u"mouseClick('third')"_s}));
}

TEST_F(Names, AreAdaptedBeforeAnythingElse)
{
    recorder.adaptsNames = true;
    listenToSpy();

    recorder.logEvent(link(u"a"_s));
    recorder.logEvent(text(u"pickedObject"_s, QString(), u"b"_s));

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('<a>')"_s});
    EXPECT_EQ(picked, QStringList{u"-1 objectPicked <b>"_s});
}

TEST_F(Names, AreLeftEmptyWhereThereIsNone)
{
    recorder.adaptsNames = true;

    recorder.logEvent(text(u"touchend"_s, u"A"_s, QString()));

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('')"_s});
}

TEST_F(Names, AreTracedBeforeAndAfter)
{
    recorder.adaptsNames = true;
    TraceCapture traces(u"WebEventLogger"_s);

    recorder.logEvent(link(u"a"_s));

    EXPECT_EQ(traces.lines(), (QStringList{u"Adapting qualified name: a"_s, u"Adapted qname: <a>"_s}));
}

TEST_F(Names, AreTakenOutOfTheData)
{
    TraceCapture traces(u"WebEventCompression"_s);

    const QString press = link(u"a"_s);
    recorder.logEvent(press);

    EXPECT_EQ(traces.lines().mid(3),
        (QStringList{u"Received event to record: %1"_s.arg(press),
            u"Consider compressing event 'mousedown' for object name: 'a' data: {event='mousedown', "
            u"timestamp='%1', type='A'}"_s.arg(text.time())}));
}

TEST_F(Contexts, AreWaitedForWhenTheyChange)
{
    recorder.logEvent(link(u"a"_s, u"context=one"_s));
    recorder.logEvent(link(u"b"_s, u"context=one"_s));
    recorder.logEvent(link(u"c"_s, u"context=two"_s));

    EXPECT_EQ(recorder.take(),
        (QStringList{u"waitForContextExists('one')"_s, u"mouseClick('a')"_s, u"mouseClick('b')"_s,
            u"waitForContextExists('two')"_s, u"mouseClick('c')"_s}));
    EXPECT_FALSE(recorder.times.at(0).isValid());
    EXPECT_TRUE(recorder.times.at(1).isValid());
}

TEST_F(Contexts, ThatAreEmptyChangeNothing)
{
    recorder.logEvent(link(u"a"_s, u"context=three"_s));
    recorder.take();

    recorder.logEvent(link(u"b"_s, u"context="_s));
    recorder.logEvent(link(u"c"_s, u"context=three"_s));

    EXPECT_EQ(recorder.take(), (QStringList{u"mouseClick('b')"_s, u"mouseClick('c')"_s}));
}

TEST_F(Contexts, GetTheTextThatWasTypedInTheOldOneFirst)
{
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=abc&context=four"_s));
    recorder.logEvent(link(u"a"_s, u"context=five"_s));

    EXPECT_EQ(recorder.take(),
        (QStringList{u"waitForContextExists('four')"_s, u"typeText('field', 'abc')"_s,
            u"waitForContextExists('five')"_s, u"mouseClick('a')"_s}));
}

TEST_F(Contexts, AreNotWaitedForWhereTheHostDoesNotWantIt)
{
    recorder.recordsContexts = false;
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=abc&context=six"_s));

    recorder.logEvent(text(u"ignoreEvent"_s, QString(), u"a"_s, u"context=seven"_s));

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'abc')"_s});
}

TEST_F(Contexts, AreKeptFromOneRecordingToTheNext)
{
    recorder.logEvent(link(u"a"_s, u"context=eight"_s));
    EventRecorder next;

    next.logEvent(link(u"b"_s, u"context=eight"_s));

    EXPECT_EQ(next.take(), QStringList{u"mouseClick('b')"_s});
}

TEST_F(Contexts, OfUnknownEventsDoNotCount)
{
    const QString unknown = text(u"hover"_s, QString(), u"a"_s, u"context=nine"_s);
    recorder.logEvent(unknown);
    recorder.logEvent(link(u"b"_s, u"context=nine"_s));

    EXPECT_EQ(recorder.take(), (QStringList{u"waitForContextExists('nine')"_s, u"mouseClick('b')"_s}));
    EXPECT_EQ(messages.take(), QStringList{u"convertEvent: unhandled event '%1'"_s.arg(unknown)});
}

TEST_F(Reports, OfPickedObjectsReachTheSpyWithoutRecording)
{
    Inspector::self()->setRecording(false);
    listenToSpy();
    Hook::hook->fallbackSpyId = 4;

    recorder.logEvent(text(u"pickedObject"_s, QString(), u"%7BtagName%3D'A'%7D"_s));
    Hook::hook->preferredSpyId = 7;
    recorder.logEvent(text(u"pickedObject"_s, QString(), QString()));

    EXPECT_EQ(picked, (QStringList{u"4 objectPicked {tagName='A'}"_s, u"7 objectPicked "_s}));
    EXPECT_EQ(recorder.take(), QStringList());
}

TEST_F(Reports, OfPickedObjectsAreTraced)
{
    TraceCapture traces(u"WebEventLogger"_s);

    recorder.logEvent(text(u"pickedObject"_s, QString(), u"a"_s));

    EXPECT_EQ(traces.lines(),
        (QStringList{
            u"Adapting qualified name: a"_s, u"Adapted qname: a"_s, u"Sending picked event to spy for a"_s}));
}

TEST_F(Reports, OfPickedObjectsAreTracedWithTheirTarget)
{
    Hook::hook->preferredSpyId = 3;
    TraceCapture traces(u"WebWrapper"_s);

    recorder.logEvent(text(u"pickedObject"_s, QString(), u"a"_s));

    EXPECT_EQ(traces.lines(), QStringList{u"Sending object name \"a\" to spy: 3"_s});
}

TEST_F(Reports, OfUnmatchedPropertiesArriveWithoutRecording)
{
    Inspector::self()->setRecording(false);

    recorder.logEvent(u"logevent1&event=addUnmatchedProperty&name=%7Bid%3D'a'%7D&property=id"_s);
    recorder.logEvent(u"logevent2&event=removeUnmatchedProperties&name=%7Bid%3D'a'%7D"_s);

    EXPECT_EQ(recorder.take(),
        (QStringList{u"addUnmatchedProperty {id='a'} id"_s, u"removeUnmatchedProperties {id='a'}"_s}));
}

TEST_F(Reports, AreAllThatPassesWhileNothingIsRecorded)
{
    Inspector::self()->setRecording(false);
    recorder.logEvent(link(u"a"_s));
    Inspector::self()->setRecording(true);
    Inspector::self()->setRecorderAttached(false);
    recorder.logEvent(link(u"b"_s));
    recorder.logEvent(u"logevent3&event=unheardOf"_s);

    EXPECT_EQ(recorder.take(), QStringList());
}

TEST_F(Starting, IsAStatementAndAWarning)
{
    recorder.logEvent(u"event=startBrowser&url=http%3A//shop/"_s);

    EXPECT_EQ(recorder.take(), QStringList{u"startBrowser('http://shop/')"_s});
    EXPECT_FALSE(recorder.times.constLast().isValid());
    EXPECT_EQ(messages.take(),
        QStringList{u"convertEvent: unhandled event 'event=startBrowser&url=http%3A//shop/'"_s});
}

TEST_F(Starting, WarnsBeforeAnythingIsFlushed)
{
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=abc"_s));

    recorder.logEvent(u"logevent5&event=unheardOf&context=ten"_s);

    EXPECT_EQ(recorder.take(), QStringList());
    EXPECT_EQ(messages.take(),
        QStringList{u"convertEvent: unhandled event 'logevent5&event=unheardOf&context=ten'"_s});
}

TEST_F(Starting, OfNothingIsAWarning)
{
    recorder.logEvent(u"%1"_s.arg(text.time()));

    EXPECT_EQ(recorder.take(), QStringList());
    EXPECT_EQ(messages.take(), QStringList{u"convertEvent: unhandled event '%1'"_s.arg(text.time())});
}

TEST_F(Copies, GatherIntoOneText)
{
    EventRecorder copy(recorder);
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=ab"_s));
    copy.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=abc"_s));

    recorder.flushRecordedTextInput();
    copy.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'abc')"_s});
    EXPECT_EQ(copy.take(), QStringList());
}

TEST_F(Copies, KeepTheBlocking)
{
    recorder.enableLogEventBlocking();
    EventRecorder copy(recorder);

    copy.logEvent(link(u"a"_s));

    EXPECT_EQ(copy.take(), QStringList());
}

TEST_F(Copies, KnowOfTheSubmitButtonThatWasPressed)
{
    recorder.logEvent(text(u"mousedown"_s, u"submit"_s, u"b"_s));
    EventRecorder copy(recorder);
    copy.take();

    copy.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"keyCode=13"_s));
    copy.flushRecordedTextInput();

    EXPECT_EQ(copy.take(), QStringList());
}

TEST_F(Copies, ByAssignmentDoTheSame)
{
    EventRecorder copy;
    recorder.enableLogEventBlocking();
    copy = recorder;
    recorder.disableLogEventBlocking();
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=ab"_s));

    copy.logEvent(link(u"lost"_s));
    copy.flushRecordedTextInput();

    EXPECT_EQ(copy.take(), QStringList{u"typeText('field', 'ab')"_s});
}

TEST_F(Copies, LoseTheirTextWhenOneOfThemGoes)
{
    {
        EventRecorder copy(recorder);
        recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"value=ab"_s));
    }
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList());
}

/// A host that answers only what it has to.
class BareLogger : public WebWrapper::EventLogger
{
public:
    using EventLogger::adaptQualifiedName;
    using EventLogger::compressedNonRecordingEventData;
    using EventLogger::doCheckWindowClosedOrHook;
    using EventLogger::recordClickOnTextField;
    using EventLogger::shouldRecordWaitForContextExists;

    void recordMethodCall(const QString &, const char *, const ObjectList &, const QTime *) override { }
    void addUnmatchedProperty(const QString &, const QString &) override { }
    void removeUnmatchedProperties(const QString &) override { }
    void noteDoubleClick(const QString &, const QMap<QString, QString> &) override { }
    void noteKeyUp(const QString &) override { }
    EventData lastRecordedEventData() override { return {}; }
    void noteOptionChoice() override { }
    bool isRecordedAlready(const QString &, const QString &) override { return false; }
};

TEST(LoggerDefaults, AreThoseOfAHostWithoutWishes)
{
    BareLogger logger;

    logger.doCheckWindowClosedOrHook();

    EXPECT_EQ(logger.adaptQualifiedName(u"{id='a'}"_s, {{u"event"_s, u"click"_s}}), u"{id='a'}"_s);
    EXPECT_TRUE(logger.shouldRecordWaitForContextExists());
    EXPECT_FALSE(logger.recordClickOnTextField());
}

TEST(LoggerDefaults, TakeFourEventsThatNeedNoRecording)
{
    BareLogger logger;
    QStringList taken;

    for (const char *event :
        {"clear", "pickedObject", "addUnmatchedProperty", "removeUnmatchedProperties", "alert", "confirm",
            "prompt", "disableFallbackWrapper", "enableFallbackWrapper", "mousedown", "Clear", ""}) {
        const QString name = QString::fromLatin1(event);
        if (logger.compressedNonRecordingEventData(u"o"_s, {{u"event"_s, name}}))
            taken.append(name);
    }

    EXPECT_EQ(taken,
        (QStringList{
            u"clear"_s, u"pickedObject"_s, u"addUnmatchedProperty"_s, u"removeUnmatchedProperties"_s}));
    EXPECT_FALSE(logger.compressedNonRecordingEventData(u"o"_s, {}));
}

} // namespace
