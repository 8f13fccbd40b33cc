// Runner: runs scripts in worker processes, several at a time, and again where they fail.
#pragma once

#include "host/run/workerprocess.h"

#include <QEventLoop>
#include <QObject>

#include <deque>
#include <memory>
#include <vector>

namespace Ostrel::Host {

struct RunPlan
{
    QStringList scripts;
    int jobs = 1; ///< how many run side by side
    int retries = 0; ///< how often a script that did not pass is tried again
    int scriptLimitMs = 0; ///< of one try; 0 for none
    int runLimitMs = 0; ///< of all; 0 for none
    bool keepOpen = false; ///< the browser of a script stays until the user closes it
};

/// One run. Whatever happens to a script is that script's failure, and the next one runs; only when the first
/// of all cannot begin, for want of a browser, say, are the others not tried.
class Runner : public QObject
{
    Q_OBJECT

public:
    /// The listener must outlive the runner.
    Runner(RunPlan plan, WorkerCommand command, RunListener &listener);

    /// Runs all scripts, in an event loop.
    RunResult run();

    /// Ends the running scripts with `reason` as their error, and tries no other. May be called from the
    /// event loop at any time.
    void stop(const QString &reason);

private:
    /// How a worker is ended.
    using StopWorker = void (WorkerProcess::*)(const QString &reason);

    void endAll(const QString &reason, StopWorker stopWorker);
    void startWorkers();
    void startWorker(int script);
    void noteEnded(WorkerProcess *worker);
    void dropQueue(const QString &reason);
    bool mayTryAgain(const ScriptResult &script) const;

    RunPlan m_plan;
    WorkerCommand m_command;
    RunListener &m_listener;
    RunResult m_result;
    std::deque<int> m_queue;
    std::vector<std::unique_ptr<WorkerProcess>> m_workers;
    QEventLoop m_loop;
    bool m_stopped = false;
    bool m_anyBegan = false; ///< some script had a browser
};

} // namespace Ostrel::Host
