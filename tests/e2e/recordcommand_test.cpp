// The commands that record and pick, as processes of their own.
#include "commandrun.h"

#include "support/printers.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QFile>
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
