// Tests of the recorder's parts that need no browser: statements as text, the script, and what the logger
// knows better than a page.
#include "host/record/recordedscript.h"
#include "host/record/recordinglogger.h"
#include "host/record/statementtext.h"
#include "host/script/vocabulary.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/valueclasses.h"
#include "wrappers/web/webevents.h"
#include "wrappers/web/webutilities.h"

#include "support/hostiletexts.h"
#include "support/messagecapture.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJSEngine>
#include <QTemporaryDir>

using namespace Ostrel;
using namespace Ostrel::Host;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

SharedPtr<Object> value(const auto &plain)
{
    return Inspector::self()->createPrimitive(plain);
}

TEST(StatementText, WritesEachKindOfArgument)
{
    EXPECT_EQ(statementText(u"clickButton"_s, u"{id='a'}"_s), u"clickButton(\"{id='a'}\");"_s);
    EXPECT_EQ(statementText(u"mouseClick"_s, u"o"_s, {value(2), value(3), value(-4)}),
        u"mouseClick(\"o\", 2, 3, -4);"_s);
    EXPECT_EQ(statementText(u"typeText"_s, u"o"_s, {value(u"a\nb"_s)}), u"typeText(\"o\", \"a\\nb\");"_s);
    EXPECT_EQ(
        statementText(u"chooseDate"_s, u"o"_s, {wrapDateTime(DateTime(QDate(2024, 2, 29), QTime(0, 0)))}),
        u"chooseDate(\"o\", \"2024-02-29\");"_s);
    EXPECT_EQ(statementText(u"answerConfirm"_s, {}, {value(true)}), u"answerConfirm(true);"_s);
    EXPECT_EQ(statementText(u"startBrowser"_s, u"http://a/x?y"_s), u"startBrowser(\"http://a/x?y\");"_s);
    EXPECT_EQ(statementText(u"startBrowser"_s, u"http://a:1/x?y"_s, {}, u"http://a:1/"_s),
        u"startBrowser(serverAddress() + \"x?y\");"_s);
    EXPECT_EQ(statementText(u"answerPrompt"_s, {}), u"answerPrompt();"_s);
    EXPECT_EQ(statementText(u"startBrowser"_s, u"http://a/"_s), u"startBrowser(\"http://a/\");"_s);
}

TEST(StatementText, OfEveryStatementReadsBackAsItWas)
{
    for (const Statement &statement : vocabulary()) {
        for (const HostileText &hostile : hostileTexts()) {
            if (statement.subject == Subject::Nothing)
                continue;
            const QString name = QString::fromLatin1(statement.name);
            QJSEngine engine;
            engine.evaluate(u"var seen; function %1(name) { seen = name; }"_s.arg(name));

            const QJSValue result = engine.evaluate(statementText(name, hostile.text));

            EXPECT_FALSE(result.isError()) << statement.name;
            EXPECT_EQ(engine.globalObject().property(u"seen"_s).toString(), hostile.text)
                << statement.name << hostile.name;
        }
    }
}

TEST(RemarkText, StaysOnOneLine)
{
    EXPECT_EQ(remarkText(u"a\nalert(1)\u2028b"_s), u"// a alert(1) b"_s);
}

ScriptLine press(const QString &object)
{
    return {u"press %1"_s.arg(object), object, LineOrigin::Press};
}

TEST(RecordedScript, TakesBackThePressesOfADoubleClick)
{
    RecordedScript script;
    for (const QString &object : {u"a"_s, u"b"_s, u"b"_s, u"b"_s})
        script.append(press(object));

    script.takeBackPresses(u"b"_s, 2);
    EXPECT_EQ(script.lines(), (QStringList{u"press a"_s, u"press b"_s}));

    script.takeBackPresses(u"b"_s, 2);
    EXPECT_EQ(script.lines(), QStringList{u"press a"_s});
}

TEST(RecordedScript, PutsAnswersInFrontOfTheStatementThatNeedsThem)
{
    RecordedScript script;
    const ScriptLine answer{u"answer"_s, {}, LineOrigin::Other};

    script.insertBeforeLast(answer);
    EXPECT_EQ(script.lines(), QStringList{u"answer"_s});

    script.append(press(u"a"_s));
    script.remark(u"wheel"_s);
    script.insertBeforeLast(answer);
    EXPECT_EQ(script.lines(), (QStringList{u"answer"_s, u"answer"_s, u"press a"_s, u"// wheel"_s}));
}

TEST(RecordedScript, SaysTheSameRemarkOnce)
{
    RecordedScript script;

    script.remark(u"wheel"_s);
    script.remark(u"wheel"_s);

    EXPECT_EQ(script.lines(), QStringList{u"// wheel"_s});
}

TEST(RecordedScript, ReplacesItsFileWhole)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(u"script.js"_s);
    RecordedScript script;
    script.append(press(u"a"_s));
    ASSERT_FALSE(script.save(name).failed());
    script.append(press(u"b"_s));
    ASSERT_FALSE(script.save(name).failed());

    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()),
        u"// Recorded by pageprobe. Run it with: pageprobe run FILE\npress a\npress b\n"_s);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"script.js"_s});
}

TEST(RecordedScript, TellsWhenItCannotBeWritten)
{
    EXPECT_EQ(RecordedScript().save(u"/nowhere/script.js"_s).error.section(u':', 0, 0),
        u"Cannot write the script '/nowhere/script.js'"_s);
}

TEST(EscapedMember, IsWhatAPageWouldWrite)
{
    EXPECT_EQ(escapedMember(u"a1 &=%ä€"_s), u"a1%20%26%3d%25%e4%u20ac"_s);
}

InputEvent inputEvent(const QString &kind, const QString &target = {}, const QString &key = {})
{
    InputEvent event;
    event.kind = kind;
    event.target = target;
    event.key = key;
    return event;
}

class Logger : public testing::Test
{
protected:
    Logger()
    {
        static const bool once = (initWebEvents(), true);
        Q_UNUSED(once)
        Inspector::self()->setRecording(true);
        Inspector::self()->setRecorderAttached(true);
    }
    ~Logger() override
    {
        Inspector::self()->setRecording(false);
        Inspector::self()->setRecorderAttached(false);
    }

    /// What became of an event of the first tab.
    QString handle(const QString &event, const QString &rest, const InputEvent &input = {})
    {
        return logger
            .handle(u"logevent%1&event=%2&%3&tabId=t"_s.arg(QString::number(++time), event, rest), input)
            .text();
    }
    static InputEvent key(const QString &name, const QString &before = {}, bool changed = false)
    {
        InputEvent event = inputEvent(u"keyup"_s, u"INPUT"_s, name);
        event.value = before;
        event.isText = true;
        event.changed = changed;
        return event;
    }

    // Shortly before the texts that the logger makes itself, whose time is now.
    static inline quint64 time = WebWrapper::now() - 1000;
    MessageCapture messages;
    RecordedScript script;
    RecordingLogger logger{&script};
};

const QString field = u"object=f&type=text&readonly=false"_s;

TEST_F(Logger, LeavesDialogsAndUnloadsToTheBrowser)
{
    EXPECT_EQ(handle(u"alert"_s, u"x=1"_s), u"merged: the browser itself tells how a dialog ended"_s);
    EXPECT_EQ(handle(u"prompt"_s, u"ret=a&b"_s), u"merged: the browser itself tells how a dialog ended"_s);
    EXPECT_EQ(handle(u"unload"_s, u"object=[Window]"_s),
        u"left out: a page that goes is no window that closes, of which the browser tells"_s);
    EXPECT_EQ(script.lines(), QStringList());
}

TEST_F(Logger, RecordsTheClosingOfAWindow)
{
    logger.recordClosing(u"logger-popup.html"_s);

    EXPECT_EQ(script.lines(),
        (QStringList{u"waitForContextExists(\"logger-popup.html\");"_s, u"closeWindow(\"[Window]\");"_s}));
}

TEST_F(Logger, LeavesOutKeysThatChangeNoText)
{
    EXPECT_EQ(handle(u"keyup"_s, field + u"&value=old&keyCode=9"_s, key(u"Tab"_s)),
        u"left out: the key has changed no text"_s);
    EXPECT_EQ(handle(u"keyup"_s, field + u"&value=oldx&keyCode=88"_s, key(u"x"_s, {}, true)),
        u"merged: typed text is one statement, at its end"_s);
    logger.flushRecordedTextInput();

    EXPECT_EQ(script.lines(), QStringList{u"typeText(\"f\", \"oldx\");"_s});
}

TEST_F(Logger, TakesTheReturnThatPressesAButtonForOneThing)
{
    logger.noteKeyDown(u"t"_s, key(u"Enter"_s));
    EXPECT_EQ(handle(u"click"_s, u"object=b&type=submit"_s), u"statement: clickButton(\"b\");"_s);
    EXPECT_EQ(handle(u"keyup"_s, field + u"&value=a&keyCode=13"_s, key(u"Enter"_s)),
        u"merged: the Return has pressed the button that is recorded"_s);
    logger.flushRecordedTextInput();

    EXPECT_EQ(script.lines(), QStringList{u"clickButton(\"b\");"_s});
}

TEST_F(Logger, RecordsAKeyboardClickAsAPress)
{
    logger.noteKeyDown(u"t"_s, {});
    EXPECT_EQ(handle(u"click"_s, u"object=c&type=checkbox"_s), u"statement: clickButton(\"c\");"_s);

    logger.notePress();
    EXPECT_EQ(handle(u"click"_s, u"object=c&type=checkbox"_s, inputEvent(u"click"_s)),
        u"merged: the press has told it"_s);
}

TEST_F(Logger, AsksNoSecondStatementOfAClickWithModifiers)
{
    logger.notePress();
    handle(u"mousedown"_s, u"object=b&type=submit&ctrlKey=true"_s);
    handle(u"click"_s, u"object=b&type=submit&ctrlKey=true"_s);
    logger.notePress();
    handle(u"mousedown"_s, u"object=b&type=submit"_s);
    handle(u"click"_s, u"object=b&type=submit"_s);

    EXPECT_EQ(script.lines(), (QStringList{u"mouseClick(\"b\", 2);"_s, u"clickButton(\"b\");"_s}));
}

TEST_F(Logger, TellsWhatTheLastKeysOfAPageCouldNot)
{
    handle(u"keyup"_s, field + u"&value=wo&keyCode=79"_s, key(u"o"_s, {}, true));
    logger.noteKeyDown(u"t"_s, key(u"Enter"_s, u"wool"_s));
    logger.notePageGone(u"t"_s);
    logger.flushRecordedTextInput();

    EXPECT_EQ(
        script.lines(), (QStringList{u"typeText(\"f\", \"wool\");"_s, u"typeText(\"f\", \"<Return>\");"_s}));
}

TEST_F(Logger, TellsNothingOfAPageThatGoesWithoutAKey)
{
    handle(u"keyup"_s, field + u"&value=wo&keyCode=79"_s, key(u"o"_s, {}, true));
    logger.notePageGone(u"t"_s);
    logger.flushRecordedTextInput();

    EXPECT_EQ(script.lines(), QStringList{u"typeText(\"f\", \"wo\");"_s});
}

TEST_F(Logger, TypesATextThatNoKeyHasTold)
{
    InputEvent press = inputEvent(u"mousedown"_s, u"INPUT#f"_s);
    press.isText = true;
    press.field = u"first"_s;
    handle(u"mousedown"_s, field + u"&value=1"_s, press);
    press.field = u"second"_s;
    handle(u"mousedown"_s, u"object=g&type=text&readonly=false&value="_s, press);
    InputEvent input = inputEvent(u"input"_s, u"INPUT#f"_s);
    input.isText = true;
    input.field = u"first"_s;
    input.value = u"2"_s;

    EXPECT_EQ(logger.noteChange(u"t"_s, input).text(), u"merged: a text that no key has told is typed"_s);
    input.kind = u"change"_s;
    EXPECT_EQ(logger.noteChange(u"t"_s, input).text(), u"merged: the text is told as it comes"_s);
    logger.flushRecordedTextInput();

    EXPECT_EQ(script.lines(),
        (QStringList{u"setFocus(\"f\");"_s, u"setFocus(\"g\");"_s, u"typeText(\"f\", \"2\");"_s}));
}

TEST_F(Logger, NamesAFieldOfWhichThePageHasToldNothing)
{
    InputEvent input = inputEvent(u"input"_s, u"INPUT#f"_s);
    input.isText = true;
    input.field = u"filled"_s;
    input.value = u"2"_s;

    EXPECT_EQ(
        logger.noteChange(u"t"_s, input).text(), u"remark: the page has not told the name of the field"_s);

    EXPECT_EQ(script.lines(), QStringList{u"// not recorded: INPUT#f was set to '2'"_s});
}

TEST_F(Logger, NamesAFieldThatNoStatementSets)
{
    InputEvent change = inputEvent(u"change"_s, u"INPUT#day"_s);
    change.value = u"2031-03-14"_s;

    EXPECT_EQ(logger.noteChange(u"t"_s, change).text(), u"remark: no statement sets a field of this type"_s);

    EXPECT_EQ(script.lines(), QStringList{u"// not recorded: INPUT#day was set to '2031-03-14'"_s});
}

TEST_F(Logger, PutsTheAnswerOfADialogInFrontOfItsStatement)
{
    logger.notePress();
    handle(u"mousedown"_s, u"object=a&type=button"_s);
    logger.notePress();
    handle(u"mousedown"_s, u"object=b&type=button"_s);

    logger.recordAnswer(u"answerConfirm"_s, {value(false)});

    EXPECT_EQ(script.lines(),
        (QStringList{u"clickButton(\"a\");"_s, u"answerConfirm(false);"_s, u"clickButton(\"b\");"_s}));
}

TEST_F(Logger, MakesADoubleClickOfTwoPresses)
{
    for (int i = 0; i < 2; ++i) {
        logger.notePress();
        handle(u"mousedown"_s, u"object=a&type=A"_s);
        handle(u"click"_s, u"object=a&type=A"_s);
    }
    handle(u"dblclick"_s, u"object=a&type=A&x=3&y=4"_s);

    EXPECT_EQ(script.lines(), QStringList{u"doubleClick(\"a\", 3, 4);"_s});
}

TEST_F(Logger, NotesUnmatchedProperties)
{
    handle(u"addUnmatchedProperty"_s, u"name=n&property=p"_s);
    EXPECT_EQ(Inspector::self()->unmatchedProperties(u"n"_s), QStringList{u"p"_s});

    handle(u"removeUnmatchedProperties"_s, u"name=n"_s);
    EXPECT_EQ(Inspector::self()->unmatchedProperties(u"n"_s), QStringList());
}

} // namespace
