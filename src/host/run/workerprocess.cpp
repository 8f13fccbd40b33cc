#include "host/run/workerprocess.h"

#include "host/browser/browserprocess.h"
#include "host/inseconds.h"
#include "host/report/eventlines.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

constexpr int killLimitMs = 5000;
constexpr qsizetype keptDiagnostics = 64 * 1024;

// Runs between fork and exec. The runner alone decides what Ctrl+C at the terminal does; a worker whose
// runner dies cleans up and ends.
void detachFromTerminal()
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

} // namespace

void WorkerProcess::News::scriptEnded(const ScriptEnd &end)
{
    ResultCollector::scriptEnded(end);
    m_owner.noteScriptEnd(end.outcome);
}

void WorkerProcess::News::statementBegan(const StatementBegin &statement)
{
    ResultCollector::statementBegan(statement);
    m_owner.m_listener.statementBegan(m_owner.m_number, statement);
}

void WorkerProcess::News::verified(const Verification &verification)
{
    ResultCollector::verified(verification);
    m_owner.m_listener.verified(m_owner.m_number, verification);
}

void WorkerProcess::News::logged(const QString &text)
{
    ResultCollector::logged(text);
    m_owner.m_listener.logged(m_owner.m_number, text);
}

WorkerProcess::WorkerProcess(
    const WorkerCommand &command, const QString &script, int number, RunListener &listener)
    : m_script(script), m_number(number), m_listener(listener), m_news(*this),
      m_endLimitMs(command.endLimitMs), m_began(QDateTime::currentDateTime())
{
    m_limit.setSingleShot(true);
    m_endLimit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this,
        [this] { stopAtLimit(u"The script did not end within %1"_s.arg(inSeconds(m_limit.interval()))); });
    connect(&m_endLimit, &QTimer::timeout, this, [this] {
        m_killed = true;
        m_process.kill();
    });
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &WorkerProcess::readEvents);
    connect(&m_process, &QProcess::readyReadStandardError, this, &WorkerProcess::readDiagnostics);
    connect(&m_process, &QProcess::finished, this, &WorkerProcess::noteFinished);
    connect(
        &m_process, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                noteFinished();
        },
        Qt::QueuedConnection);

    m_elapsed.start();
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier(detachFromTerminal);
    m_process.start(command.program, command.arguments + QStringList{script});
    m_processId = m_process.processId();
}

WorkerProcess::~WorkerProcess()
{
    disconnect(&m_process, nullptr, this, nullptr);
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(killLimitMs);
    BrowserProcess::cleanUpAfter(m_processId);
}

void WorkerProcess::setLimit(int limitMs)
{
    if (limitMs > 0)
        m_limit.start(limitMs);
}

void WorkerProcess::stop(const QString &reason)
{
    stopBySignal(reason, SIGTERM);
}

void WorkerProcess::stopAtLimit(const QString &reason)
{
    stopBySignal(reason, SIGALRM);
}

void WorkerProcess::stopBySignal(const QString &reason, int signal)
{
    if (m_finished || !m_stopReason.isEmpty())
        return;
    m_stopReason = reason;
    m_stopPlace = m_news.openPlace();
    m_limit.stop();
    m_endLimit.start(m_endLimitMs);
    if (m_process.processId() > 0)
        kill(pid_t(m_process.processId()), signal);
}

void WorkerProcess::readEvents()
{
    m_partialLine += m_process.readAllStandardOutput();
    for (qsizetype end = m_partialLine.indexOf('\n'); end >= 0; end = m_partialLine.indexOf('\n')) {
        const QByteArray line = m_partialLine.first(end + 1);
        m_partialLine.remove(0, end + 1);
        if (!deliverEvent(line, m_news))
            addDiagnostics(line);
    }
}

void WorkerProcess::readDiagnostics()
{
    addDiagnostics(m_process.readAllStandardError());
}

void WorkerProcess::addDiagnostics(const QByteArray &lines)
{
    if (lines.isEmpty())
        return;
    m_diagnostics += lines;
    m_diagnostics = m_diagnostics.last(qMin(keptDiagnostics, m_diagnostics.size()));
    m_listener.diagnosticsWritten(m_number, QString::fromUtf8(lines));
}

void WorkerProcess::noteScriptEnd(Outcome outcome)
{
    m_milliseconds = double(m_elapsed.nsecsElapsed()) / 1e6;
    m_limit.stop();
    if (m_keepOpen && outcome != Outcome::Unusable && m_stopReason.isEmpty())
        m_listener.browserKept(m_number);
    else
        m_endLimit.start(m_endLimitMs);
}

void WorkerProcess::noteFinished()
{
    if (m_finished)
        return;
    readEvents();
    readDiagnostics();
    m_finished = true;
    m_limit.stop();
    m_endLimit.stop();
    if (m_process.exitStatus() == QProcess::CrashExit)
        BrowserProcess::cleanUpAfter(m_processId);
    Q_EMIT ended();
}

// The script's place is that of the statement which was running.
ScriptEnd WorkerProcess::endWithoutWord() const
{
    ScriptEnd end{Outcome::Error, {}, m_news.openPlace(), {}};
    if (end.place.file.isEmpty())
        end.place.file = m_script;
    if (m_process.error() == QProcess::FailedToStart)
        end.message = u"Could not start a process for the script: %1"_s.arg(m_process.errorString());
    else if (m_process.exitStatus() == QProcess::CrashExit)
        end.message = u"The script's process was ended by signal %1"_s.arg(m_process.exitCode());
    else
        end.message = u"The script's process ended with exit code %1"_s.arg(m_process.exitCode());
    return end;
}

Attempt WorkerProcess::takeAttempt()
{
    const bool crashed = m_process.exitStatus() == QProcess::CrashExit && !m_killed;
    if (!m_news.hasEnded() || crashed)
        m_news.ResultCollector::scriptEnded(endWithoutWord());
    Attempt attempt = m_news.take();
    if (!m_stopReason.isEmpty() && attempt.end.outcome == Outcome::Error) {
        attempt.end.message = m_stopReason;
        if (attempt.end.place.line == 0 && m_stopPlace.line > 0)
            attempt.end.place = m_stopPlace;
    }
    attempt.began = m_began;
    attempt.milliseconds = m_milliseconds > 0 ? m_milliseconds : double(m_elapsed.nsecsElapsed()) / 1e6;
    attempt.diagnostics = QString::fromUtf8(m_diagnostics);
    return attempt;
}

} // namespace Ostrel::Host
