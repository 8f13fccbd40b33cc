// WorkerProcess: one try of a script as a process of its own, seen from the runner.
#pragma once

#include "host/report/resultcollector.h"
#include "host/run/runlistener.h"

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTimer>

namespace Ostrel::Host {

/// How to start a worker; the script's path is added as the last argument.
struct WorkerCommand
{
    QString program;
    QStringList arguments;
    /// How long it may take to end, once the script has ended or was told to; to end the browser and to
    /// remove the profile takes a moment, and a busy page a few.
    int endLimitMs = 15000;
};

/// Starts the process when made. It ends with its owner at the latest, and nothing of it is left then: no
/// browser and no profile, however it ended.
class WorkerProcess : public QObject
{
    Q_OBJECT

public:
    /// `number` is the script's, for the listener, which must outlive this object.
    WorkerProcess(const WorkerCommand &command, const QString &script, int number, RunListener &listener);
    ~WorkerProcess() override;

    int number() const { return m_number; }

    /// Ends the script at a limit; 0 for none. Counts from now on.
    void setLimit(int limitMs);
    /// Leaves a browser alone that is kept open behind the script's end.
    void keepOpen() { m_keepOpen = true; }

    /// Ends the script as soon as it has cleaned up; `reason` is its error then. Does nothing for one that
    /// has ended.
    void stop(const QString &reason);

    /// The same for a script whose time is over: it shows its page before.
    void stopAtLimit(const QString &reason);

    /// The result, after ended(); once.
    Attempt takeAttempt();

Q_SIGNALS:
    void ended();

private:
    /// Collects what comes and hands on what the listener wants to hear.
    class News : public ResultCollector
    {
    public:
        explicit News(WorkerProcess &owner) : m_owner(owner) { }
        void scriptEnded(const ScriptEnd &end) override;
        void statementBegan(const StatementBegin &statement) override;
        void verified(const Verification &verification) override;
        void logged(const QString &text) override;

    private:
        WorkerProcess &m_owner;
    };

    void stopBySignal(const QString &reason, int signal);
    void readEvents();
    void readDiagnostics();
    void addDiagnostics(const QByteArray &lines);
    void noteScriptEnd(Outcome outcome);
    void noteFinished();
    ScriptEnd endWithoutWord() const;

    QString m_script;
    int m_number;
    RunListener &m_listener;
    News m_news;
    QProcess m_process;
    qint64 m_processId = 0;
    QTimer m_limit; ///< of the script
    int m_endLimitMs;
    QTimer m_endLimit; ///< of the process, once its end is due
    QDateTime m_began;
    QElapsedTimer m_elapsed;
    double m_milliseconds = 0;
    QByteArray m_partialLine;
    QByteArray m_diagnostics;
    QString m_stopReason;
    ScriptPlace m_stopPlace; ///< of the statement that ran then
    bool m_keepOpen = false;
    bool m_killed = false;
    bool m_finished = false;
};

} // namespace Ostrel::Host
