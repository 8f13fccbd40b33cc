// The commands that record and pick, as processes of their own.
#include "commandrun.h"

#include "support/printers.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <csignal>

using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

class RecordCommand : public testing::Test
{
protected:
    void SetUp() override { page = run.write(u"a.html"_s, "<button id='b'>Do</button>"); }
    QString address() const { return QUrl::fromLocalFile(page).toString(); }
    QString expectedScript() const
    {
        return u"// Recorded by pageprobe. Run it with: pageprobe run FILE\nstartBrowser(\"%1\");\n"_s.arg(
            address());
    }
    static QString contentOf(const QString &fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"no file"_s;
    }

    CommandRun run;
    QString page;
};

TEST_F(RecordCommand, WritesAScriptThatRunsUnchanged)
{
    const QString script = run.path(u"out.js"_s);

    const Ended recorded = run.run({u"record"_s, page, u"-o"_s, script, u"--for"_s, u"1"_s});

    EXPECT_EQ(recorded.exitCode, 0);
    EXPECT_EQ(recorded.out, u"startBrowser(\"%1\");\n"_s.arg(address()));
    EXPECT_EQ(recorded.err, QString());
    EXPECT_EQ(contentOf(script), expectedScript());
    EXPECT_TRUE(waitFor([this] { return run.leftProcesses().isEmpty(); }));
    EXPECT_EQ(run.run({u"run"_s, script}).exitCode, 0);
}

TEST_F(RecordCommand, EndsWithTheScriptWhenItIsInterrupted)
{
    const QString script = run.path(u"out.js"_s);
    run.start({u"record"_s, page, u"-o"_s, script});
    ASSERT_TRUE(run.waitForOutput(u"startBrowser"_s));

    kill(pid_t(run.processId()), SIGINT);
    const Ended recorded = run.finish();

    EXPECT_EQ(recorded.exitCode, 0);
    EXPECT_EQ(contentOf(script), expectedScript());
    EXPECT_TRUE(waitFor([this] { return run.leftProcesses().isEmpty(); }));
}

TEST_F(RecordCommand, HasTheScriptOnDiskWhenItIsKilled)
{
    const QString script = run.path(u"out.js"_s);
    run.start({u"record"_s, page, u"-o"_s, script});
    ASSERT_TRUE(run.waitForOutput(u"startBrowser"_s));

    kill(pid_t(run.processId()), SIGKILL);
    run.finish();

    EXPECT_EQ(contentOf(script), expectedScript());
    EXPECT_TRUE(waitFor([this] { return run.leftProcesses().isEmpty(); }));
}

TEST_F(RecordCommand, TellsThatThePageCannotBeOpened)
{
    const Ended recorded = run.run({u"record"_s, u"http://127.0.0.1:1/"_s, u"-o"_s, run.path(u"out.js"_s)});

    EXPECT_EQ(recorded.exitCode, 2);
    EXPECT_TRUE(recorded.err.startsWith(u"pageprobe record: Could not open 'http://127.0.0.1:1/'"_s))
        << qPrintable(recorded.err);
    EXPECT_FALSE(QFile::exists(run.path(u"out.js"_s)));
}

TEST_F(RecordCommand, TellsThatTheScriptCannotBeWritten)
{
    const Ended recorded = run.run({u"record"_s, page, u"-o"_s, u"/nowhere/out.js"_s});

    EXPECT_EQ(recorded.exitCode, 2);
    EXPECT_TRUE(recorded.err.startsWith(u"pageprobe record: Cannot write the script '/nowhere/out.js'"_s))
        << qPrintable(recorded.err);
}

TEST_F(RecordCommand, DismissesADialogThatNobodyAnswers)
{
    const QString asking = run.write(u"asking.html"_s, "<script>confirm('Sure?')</script>");
    const QString script = run.path(u"out.js"_s);

    const Ended recorded
        = run.run({u"record"_s, asking, u"-o"_s, script, u"--for"_s, u"3"_s, u"--dialog-limit"_s, u"0.5"_s});

    EXPECT_EQ(recorded.exitCode, 0);
    EXPECT_EQ(recorded.err, u"Nobody answered a confirm: 'Sure?' within 0.5 s; it was dismissed.\n"_s);
    EXPECT_EQ(contentOf(script),
        u"// Recorded by pageprobe. Run it with: pageprobe run FILE\nanswerConfirm(false);\nstartBrowser(\"%1\");\n"_s
            .arg(QUrl::fromLocalFile(asking).toString()));
    EXPECT_EQ(run.run({u"run"_s, script}).err, QString());
}

TEST_F(RecordCommand, TellsOfAFaultyNamesFile)
{
    const QString names = run.write(u"shop.names"_s, "pay BUTTON\n");

    const Ended recorded = run.run({u"record"_s, page, u"--names"_s, names});

    EXPECT_EQ(recorded.exitCode, 2);
    EXPECT_EQ(recorded.err,
        u"pageprobe record: %1:1: A symbolic name, a tab and a name with properties expected.\n"_s.arg(
            names));
}

TEST_F(RecordCommand, NamesOfARecordingAreThoseOfItsRun)
{
    const QString names = run.write(u"shared.names"_s, "Do (button)\t{tagName='BUTTON' id='b'}\n");
    const QString script = run.write(u"out.js"_s,
        u"startBrowser(\"%1\");\nlog(findObject(\"Do (button)\").innerText);\n"_s.arg(address()).toUtf8());

    const Ended ended = run.run({u"run"_s, script, u"--names"_s, names});

    EXPECT_EQ(ended.err, QString());
    EXPECT_EQ(ended.out, u"Do\n"_s);
}

/// The picture in a file, whose middle lies on the button.
QColor middleOf(const QString &fileName)
{
    const QImage picture(fileName);
    return picture.isNull() ? QColor() : picture.pixelColor(picture.rect().center());
}

const QByteArray bigButton
    = "<body style='margin:0'><button id='b' type='button' style='position:fixed;inset:20%;border:0;"
      "background:white' onclick='document.title=\"clicked\"'></button>";

TEST_F(RecordCommand, PickShowsTheHighlight)
{
    page = run.write(u"b.html"_s, bigButton);
    const QString picture = run.path(u"highlight.png"_s);

    const Ended picked
        = run.run({u"pick"_s, page, u"--object"_s, u"{tagName='BUTTON' id='b'}"_s, u"--picture"_s, picture});

    EXPECT_EQ(picked.err, QString());
    EXPECT_TRUE(picked.out.startsWith(
        u"class: HTML_Button\nreal name: {visible='true' tagName='BUTTON' type='button' id='b'}\n"
        "hierarchical name: DOCUMENT.HTML1.BODY1.BUTTON1\n"_s))
        << qPrintable(picked.out);
    EXPECT_TRUE(picked.out.contains(u"    title = \n"_s)) << qPrintable(picked.out);
    EXPECT_GT(middleOf(picture).blue(), middleOf(picture).red() + 30);
    EXPECT_EQ(QImage(picture).pixelColor(2, 2), QColor(Qt::white));
}

TEST_F(RecordCommand, PickTellsThatThereIsNoSuchObject)
{
    const Ended picked = run.run({u"pick"_s, page, u"--object"_s, u"{tagName='BUTTON' id='no'}"_s});

    EXPECT_EQ(picked.exitCode, 1);
    EXPECT_TRUE(picked.err.startsWith(
        u"pageprobe pick: Object not found: {tagName='BUTTON' id='no'}: found 1 BUTTON"_s))
        << qPrintable(picked.err);
}

TEST_F(RecordCommand, TheInfoOverlayIsSeen)
{
    page = run.write(u"b.html"_s, bigButton);
    run.write(CommandRun::userSettings(), "[General]\nEnableObjectInfoOverlay = TRUE\n");
    const QString before = run.path(u"before.png"_s);
    const QString after = run.path(u"after.png"_s);
    const QString script = run.write(u"overlay.js"_s,
        uR"js(startBrowser("%1");
const button = waitForObject("{tagName='BUTTON' id='b'}");
const rect = button.boundingClientRect;
saveScreenshot("%2");
mouseClick(button, HTML_Event.ControlAlt, Math.round(rect.width / 2) - 20, Math.round(rect.height / 2) - 40);
log(waitForObject("{tagName='TEXTAREA' name='__ostrel__info__domPath'}").value);
log(waitForObject("{tagName='TEXTAREA' name='__ostrel__info__name'}").value);
saveScreenshot("%3");
log(evaluateInPage("document.title"));
)js"_s.arg(address(), before, after)
            .toUtf8());

    const Ended ended = run.run({u"run"_s, script});

    EXPECT_EQ(ended.err, QString());
    EXPECT_EQ(ended.out,
        u"DOCUMENT.HTML1.BODY1.BUTTON1\n{visible='true' tagName='BUTTON' type='button' id='b'}\nclicked\n"_s);
    const QImage without(before);
    const QImage with(after);
    ASSERT_EQ(without.size(), with.size());
    const QPoint button = without.rect().center();
    int changed = 0;
    for (int y = button.y() - 50; y < button.y() + 150; ++y) {
        for (int x = button.x() - 30; x < button.x() + 300; ++x)
            changed += without.pixel(x, y) != with.pixel(x, y) ? 1 : 0;
    }
    EXPECT_GT(changed, 1000);
    EXPECT_EQ(with.pixelColor(2, 2), QColor(Qt::white));
}

TEST_F(RecordCommand, PickTellsThatNothingWasPicked)
{
    run.start({u"pick"_s, page});
    ASSERT_TRUE(run.waitForOutput(u"Point at an element"_s));

    kill(pid_t(run.processId()), SIGINT);
    const Ended picked = run.finish();

    EXPECT_EQ(picked.exitCode, 1);
    EXPECT_EQ(picked.err, u"pageprobe pick: nothing was picked.\n"_s);
    EXPECT_TRUE(waitFor([this] { return run.leftProcesses().isEmpty(); }));
}

} // namespace
