#include "host/browser/browserprocess.h"

#include "host/browser/pipetransport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QThread>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

constexpr int startLimitMs = 10000;
constexpr int endNewsLimitMs = 2000;
constexpr int killLimitMs = 2000;
constexpr int endLimitMs = 2000;
constexpr int pollPauseMs = 10;
constexpr qsizetype keptOutputBytes = 16 * 1024;
constexpr qsizetype shownOutputLines = 5;
constexpr const char *browserVariable = "PAGEPROBE_BROWSER";
constexpr auto temporaryFolderVariable = "TMPDIR"_L1;
constexpr std::array wellKnownNames{"chromium"_L1, "chromium-browser"_L1, "google-chrome"_L1};

// The descriptors on which the browser expects commands and writes its answers.
constexpr int commandDescriptor = 3;
constexpr int answerDescriptor = 4;

FunctionCallResult<QString> findNamed(const QString &program, const QString &source)
{
    const QString found = QStandardPaths::findExecutable(program);
    if (found.isEmpty())
        return Failure(u"The browser '%1' (%2) is not there or cannot be run"_s.arg(program, source));
    return found;
}

struct Pipe
{
    int readEnd = -1;
    int writeEnd = -1;

    bool open()
    {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return false;
        readEnd = ends[0];
        writeEnd = ends[1];
        return true;
    }
    void close() const
    {
        for (int end : {readEnd, writeEnd}) {
            if (end >= 0)
                ::close(end);
        }
    }
};

// While this lives, no descriptor that is opened gets one of the numbers that the child's pipes will take.
// Without it QProcess could keep its own reporting pipe there, and the child would overwrite it.
class ReservedDescriptors
{
public:
    ReservedDescriptors()
    {
        for (;;) {
            const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
            if (descriptor < 0 || descriptor > answerDescriptor) {
                if (descriptor >= 0)
                    close(descriptor);
                return;
            }
            m_descriptors.push_back(descriptor);
        }
    }
    ~ReservedDescriptors()
    {
        for (int descriptor : m_descriptors)
            close(descriptor);
    }
    Q_DISABLE_COPY_MOVE(ReservedDescriptors)

private:
    std::vector<int> m_descriptors;
};

QByteArray readProcessFile(const QString &process, const QString &name)
{
    QFile file(u"/proc/%1/%2"_s.arg(process, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Fields behind the name of /proc/<id>/stat, which stands in brackets and may hold anything: state, parent,
// group. Dead processes that nobody has waited for still count as members for the system, for seconds in
// containers whose first process is in no hurry.
bool isLivingMember(const QString &process, qint64 group)
{
    const QByteArray status = readProcessFile(process, u"stat"_s);
    const QList<QByteArray> fields = status.mid(status.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 2 && fields.at(0) != "Z" && fields.at(0) != "X"
        && fields.at(2).toLongLong() == group;
}

// A browser's crash handlers leave its group for a session of their own, and their parent, too. What they
// keep is their environment; a dead process has none.
bool cameFromBrowser(const QString &process, const QString &profile)
{
    const QByteArray variable = QFile::encodeName(u"%1=%2"_s.arg(temporaryFolderVariable, profile));
    return readProcessFile(process, u"environ"_s).split('\0').contains(variable);
}

QStringList livingProcesses(qint64 group, const QString &profile)
{
    QStringList processes = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    processes.removeIf([&](const QString &process) {
        return !isLivingMember(process, group) && !cameFromBrowser(process, profile);
    });
    return processes;
}

/// Ends all processes of a browser, also those that start meanwhile. Blocks until they are gone, but not for
/// long.
void endProcesses(qint64 group, const QString &profile)
{
    kill(pid_t(-group), SIGKILL);
    QElapsedTimer elapsed;
    elapsed.start();
    QStringList living = livingProcesses(group, profile);
    while (!living.isEmpty() && elapsed.elapsed() < endLimitMs) {
        for (const QString &process : std::as_const(living))
            kill(pid_t(process.toLongLong()), SIGKILL);
        QThread::msleep(pollPauseMs);
        living = livingProcesses(group, profile);
    }
}

} // namespace

FunctionCallResult<QString> findBrowser(const QString &explicitPath)
{
    if (!explicitPath.isEmpty())
        return findNamed(explicitPath, u"given by option"_s);
    const QString fromEnvironment = qEnvironmentVariable(browserVariable);
    if (!fromEnvironment.isEmpty())
        return findNamed(fromEnvironment, u"given by %1"_s.arg(QLatin1StringView(browserVariable)));

    QStringList lookedFor;
    for (QLatin1StringView name : wellKnownNames) {
        const QString found = QStandardPaths::findExecutable(name);
        if (!found.isEmpty())
            return found;
        lookedFor.append(name);
    }
    return Failure(u"No browser was found: neither an option nor %1 names one, and PATH has none of %2"_s.arg(
        QLatin1StringView(browserVariable), lookedFor.join(", "_L1)));
}

BrowserProcess::BrowserProcess(QObject *parent) : QObject(parent)
{
    connect(&m_process, &QProcess::finished, this, &BrowserProcess::ended);
    connect(&m_process, &QProcess::readyReadStandardError, this, [this] {
        m_lastOutput += m_process.readAllStandardError();
        m_lastOutput = m_lastOutput.last(qMin(keptOutputBytes, m_lastOutput.size()));
    });
}

BrowserProcess::~BrowserProcess()
{
    disconnect(&m_process, nullptr, this, nullptr);
    stop();
}

FunctionCallResult<std::unique_ptr<Transport>> BrowserProcess::start(
    const QString &executable, const QStringList &arguments)
{
    m_profile = std::make_unique<Profile>();
    if (!m_profile->isValid())
        return Failure(
            u"Could not make a temporary profile for the browser in '%1'"_s.arg(m_profile->path()));

    const ReservedDescriptors reserved;
    Pipe commands;
    Pipe answers;
    if (!commands.open() || !answers.open()) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        commands.close();
        return Failure(u"Could not make the pipes to the browser: %1"_s.arg(reason));
    }

    m_process.setProgram(executable);
    m_process.setArguments(
        QStringList{u"--remote-debugging-pipe"_s, u"--user-data-dir=%1"_s.arg(m_profile->path())}
        + arguments);
    // What the browser keeps in the temporary directory goes with the profile, too, even if it is killed.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(temporaryFolderVariable, m_profile->path());
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    // Runs between fork and exec: system calls only. The group of its own keeps a Ctrl-C at the terminal,
    // which is the host's to handle, away from the browser, and lets stop() reach every process of it.
    m_process.setChildProcessModifier([commands, answers] {
        setpgid(0, 0);
        dup2(commands.readEnd, commandDescriptor);
        dup2(answers.writeEnd, answerDescriptor);
    });
    m_process.start();
    const bool started = m_process.waitForStarted(startLimitMs);
    ::close(commands.readEnd);
    ::close(answers.writeEnd);
    auto transport = std::make_unique<PipeTransport>(answers.readEnd, commands.writeEnd);
    if (!started)
        return Failure(u"Could not start the browser '%1': %2"_s.arg(executable, m_process.errorString()));
    m_group = m_process.processId();
    m_profile->noteBrowser(m_group);
    return std::unique_ptr<Transport>(std::move(transport));
}

// A browser that closes by itself spends most of that time on putting its profile in order, which goes
// anyway.
void BrowserProcess::stop()
{
    if (m_group > 0) {
        endProcesses(m_group, profilePath());
        if (isRunning())
            m_process.waitForFinished(killLimitMs);
        m_group = 0;
    }
    m_profile.reset();
}

void BrowserProcess::cleanUpAfter(qint64 processId)
{
    const QList<LeftProfile> profiles = profilesLeftBy(processId);
    for (const LeftProfile &profile : profiles) {
        if (profile.browserGroup > 0)
            endProcesses(profile.browserGroup, profile.path);
        removeProfile(profile.path);
    }
}

bool BrowserProcess::waitForEnd()
{
    return !isRunning() || m_process.waitForFinished(endNewsLimitMs);
}

QString BrowserProcess::describeEnd() const
{
    QString text = m_process.exitStatus() == QProcess::CrashExit
        ? u"it was ended by signal %1"_s.arg(m_process.exitCode())
        : u"its exit code was %1"_s.arg(m_process.exitCode());
    const QStringList lines = QString::fromLocal8Bit(m_lastOutput).split(u'\n', Qt::SkipEmptyParts);
    if (!lines.isEmpty())
        text += u"; its last words:\n%1"_s.arg(lines.last(qMin(lines.size(), shownOutputLines)).join(u'\n'));
    return text;
}

} // namespace Ostrel::Host
