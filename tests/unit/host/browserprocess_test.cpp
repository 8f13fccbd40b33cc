// Finding, starting and ending the browser program, tried on shell scripts.
#include "host/browser/browserprocess.h"
#include "support/printqt.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;

namespace Ostrel::Host {
namespace {

// An environment variable that is put back at the end.
class ScopedVariable
{
public:
    ScopedVariable(const char *name, const QByteArray &value)
        : m_name(name), m_before(qgetenv(name)), m_wasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~ScopedVariable() { m_wasSet ? qputenv(m_name, m_before) : qunsetenv(m_name); }

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};

class BrowserProcessTest : public ::testing::Test
{
protected:
    QString program(const QString &name, const QByteArray &script) const
    {
        QFile file(directory.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }
    QTemporaryDir directory;
};

TEST_F(BrowserProcessTest, TheOptionComesBeforeTheEnvironmentAndThatBeforePath)
{
    const QString given = program(u"given"_s, "");
    const QString fromVariable = program(u"variable"_s, "");
    const QString wellKnown = program(u"chromium-browser"_s, "");
    const ScopedVariable path("PATH", directory.path().toLocal8Bit());
    {
        const ScopedVariable variable("PAGEPROBE_BROWSER", fromVariable.toLocal8Bit());
        EXPECT_EQ(findBrowser(given).value, given);
        EXPECT_EQ(findBrowser({}).value, fromVariable);
    }
    const ScopedVariable variable("PAGEPROBE_BROWSER", "");
    EXPECT_EQ(findBrowser({}).value, wellKnown);
}

TEST_F(BrowserProcessTest, SaysWhereItHasLooked)
{
    const ScopedVariable path("PATH", directory.path().toLocal8Bit());
    const ScopedVariable variable("PAGEPROBE_BROWSER", "");

    EXPECT_EQ(findBrowser({}).error,
        u"No browser was found: neither an option nor PAGEPROBE_BROWSER names one, and PATH has none of "
        u"chromium, "
        "chromium-browser, google-chrome"_s);
    EXPECT_EQ(findBrowser(u"/no/such"_s).error,
        u"The browser '/no/such' (given by option) is not there or cannot be run"_s);

    const ScopedVariable wrong("PAGEPROBE_BROWSER", "/no/such/either");
    EXPECT_EQ(findBrowser({}).error,
        u"The browser '/no/such/either' (given by PAGEPROBE_BROWSER) is not there or cannot be run"_s);
}

TEST_F(BrowserProcessTest, TalksOverTheTwoDescriptors)
{
    BrowserProcess process;
    const auto started = process.start(program(u"echo"_s, "exec cat <&3 >&4\n"), {});
    ASSERT_FALSE(started.failed()) << started.error.toStdString();
    QByteArrayList received;
    QObject::connect(started.value.get(), &Transport::textReceived, &process,
        [&](const QByteArray &text) { received.append(text); });

    started.value->send("hello");

    EXPECT_TRUE(waitFor([&] { return received == QByteArrayList{"hello"}; }));
    started.value->close();
    process.stop();
}

TEST_F(BrowserProcessTest, GivesProfileAndArgumentsInOrder)
{
    BrowserProcess process;
    QSignalSpy ended(&process, &BrowserProcess::ended);
    const auto started
        = process.start(program(u"args"_s, "echo \"$@\" >&2\nexit 3\n"), {u"--one"_s, u"--two"_s});
    ASSERT_FALSE(started.failed());
    const QString profile = process.profilePath();
    EXPECT_TRUE(QDir(profile).exists());

    ASSERT_TRUE(waitFor([&] { return ended.count() == 1; }));

    EXPECT_EQ(process.describeEnd(),
        u"its exit code was 3; its last words:\n--remote-debugging-pipe --user-data-dir=%1 --one --two"_s.arg(
            profile));
    process.stop();
    EXPECT_FALSE(QDir(profile).exists());
}

// A dead process that nobody has waited for has no command line any more.
bool isAlive(const QByteArray &process)
{
    QFile commandLine(u"/proc/%1/cmdline"_s.arg(QString::fromLatin1(process)));
    return commandLine.open(QIODevice::ReadOnly) && !commandLine.readAll().isEmpty();
}

// What a program has written to a file: the number of a process.
QByteArray waitForNumber(const QString &fileName)
{
    QByteArray content;
    EXPECT_TRUE(waitFor([&] {
        QFile file(fileName);
        content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return content.endsWith('\n');
    }));
    return content.trimmed();
}

// Programs that start a process which ignores polite requests and writes its number to %1.
const QByteArray stubbornLoop = "trap '' TERM HUP; echo $$ > '%1'; while :; do sleep 0.1; done";
const QByteArray ownGroup = "sh -c \"" + QByteArray(stubbornLoop).replace("$", "\\$") + "\" &\n";
// As crash handlers do: neither the group nor the parent is the browser's.
const QByteArray ownSession = "(setsid sh -c \"" + QByteArray(stubbornLoop).replace("$", "\\$") + "\" &)\n";
const QByteArray waiting = "trap '' TERM\nwhile :; do sleep 0.1; done\n";

TEST_F(BrowserProcessTest, KillsAllProcessesOfABrowserThatDoesNotListen)
{
    for (const QByteArray &helper : {ownGroup, ownSession}) {
        SCOPED_TRACE(helper.toStdString());
        const QString numberFile = directory.filePath(u"number"_s);
        QFile::remove(numberFile);
        BrowserProcess process;
        const auto started = process.start(
            program(u"stubborn"_s, QByteArray(helper).replace("%1", numberFile.toLocal8Bit()) + waiting), {});
        ASSERT_FALSE(started.failed());
        const QByteArray child = waitForNumber(numberFile);
        ASSERT_TRUE(isAlive(child));

        process.stop();

        EXPECT_FALSE(process.isRunning());
        EXPECT_FALSE(isAlive(child));
    }
}

TEST_F(BrowserProcessTest, KillsWhatABrowserLeavesThatHasDied)
{
    const QString numberFile = directory.filePath(u"number"_s);
    BrowserProcess process;
    QSignalSpy ended(&process, &BrowserProcess::ended);
    const auto started = process.start(
        program(u"crashing"_s, QByteArray(ownSession).replace("%1", numberFile.toLocal8Bit()) + "exit 1\n"),
        {});
    ASSERT_FALSE(started.failed());
    const QByteArray child = waitForNumber(numberFile);
    ASSERT_TRUE(waitFor([&] { return ended.count() == 1; }));
    ASSERT_TRUE(isAlive(child));

    process.stop();

    EXPECT_FALSE(isAlive(child));
}

TEST_F(BrowserProcessTest, KeepsItsDescriptorsWhenLowNumbersAreFree)
{
    // Whoever starts the host may have left it any descriptors.
    const int lowest = open("/dev/null", O_RDONLY);
    close(lowest);
    BrowserProcess process;

    const auto started = process.start(program(u"open"_s, "echo ok >&4\nprintf '\\0' >&4\nread x <&3\n"), {});

    ASSERT_FALSE(started.failed());
    QByteArrayList received;
    QObject::connect(started.value.get(), &Transport::textReceived, &process,
        [&](const QByteArray &text) { received.append(text); });
    EXPECT_TRUE(waitFor([&] { return received == QByteArrayList{"ok\n"}; }));
    started.value->close();
    process.stop();
}

// Makes a profile directory as a host leaves it that was killed some time ago.
QString makeAbandonedProfile(const QTemporaryDir &parent, const QString &name)
{
    const QString path = parent.filePath(name);
    EXPECT_TRUE(QDir().mkpath(path));
    QFile lock(path + u"/pageprobe.lock"_s);
    EXPECT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.close();
    const timespec longAgo{QDateTime::currentSecsSinceEpoch() - 3600, 0};
    const timespec times[]{longAgo, longAgo};
    EXPECT_EQ(utimensat(AT_FDCWD, path.toLocal8Bit().constData(), times, 0), 0);
    return path;
}

TEST(Profile, RemovesItself)
{
    QTemporaryDir parent;
    QString path;
    {
        const Profile profile(parent.path());
        path = profile.path();
        EXPECT_TRUE(QDir(path).exists());
    }
    EXPECT_FALSE(QDir(path).exists());
}

TEST(Profile, RemovesThoseOfHostsThatWereKilled)
{
    QTemporaryDir parent;
    const QString abandoned = makeAbandonedProfile(parent, u"pageprobe-profile-abcdef"_s);
    const QString locked = makeAbandonedProfile(parent, u"pageprobe-profile-locked"_s);
    const QString foreign = makeAbandonedProfile(parent, u"somebody-elses"_s);
    const int lock = open((locked + u"/pageprobe.lock"_s).toLocal8Bit().constData(), O_RDWR);
    ASSERT_EQ(flock(lock, LOCK_EX | LOCK_NB), 0);

    const Profile profile(parent.path());

    EXPECT_FALSE(QDir(abandoned).exists());
    EXPECT_TRUE(QDir(locked).exists()) << "its host lives";
    EXPECT_TRUE(QDir(foreign).exists());
    close(lock);
}

} // namespace
} // namespace Ostrel::Host
