#include "host/run/runner.h"
#include "host/inseconds.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

Runner::Runner(RunPlan plan, WorkerCommand command, RunListener &listener)
    : m_plan(std::move(plan)), m_command(std::move(command)), m_listener(listener)
{
    for (const QString &script : std::as_const(m_plan.scripts)) {
        m_queue.push_back(int(m_result.scripts.size()));
        m_result.scripts.push_back({script, {}});
    }
}

RunResult Runner::run()
{
    m_result.began = QDateTime::currentDateTime();
    QElapsedTimer elapsed;
    elapsed.start();
    if (m_plan.runLimitMs > 0) {
        const QString reason = u"The run's limit of %1 is over"_s.arg(inSeconds(m_plan.runLimitMs));
        QTimer::singleShot(
            m_plan.runLimitMs, this, [this, reason] { endAll(reason, &WorkerProcess::stopAtLimit); });
    }
    startWorkers();
    if (!m_workers.empty())
        m_loop.exec();
    m_result.milliseconds = double(elapsed.nsecsElapsed()) / 1e6;
    return std::move(m_result);
}

void Runner::stop(const QString &reason)
{
    endAll(reason, &WorkerProcess::stop);
}

void Runner::endAll(const QString &reason, StopWorker stopWorker)
{
    m_stopped = true;
    dropQueue(reason);
    for (const std::unique_ptr<WorkerProcess> &worker : m_workers)
        std::invoke(stopWorker, *worker, reason);
}

// A script that waits to be tried again keeps the result that it has.
void Runner::dropQueue(const QString &reason)
{
    for (int script : m_queue) {
        std::vector<Attempt> &attempts = m_result.scripts.at(std::size_t(script)).attempts;
        if (attempts.empty())
            attempts.emplace_back().end = {Outcome::NotRun, reason, {}, {}};
    }
    m_queue.clear();
}

void Runner::startWorkers()
{
    while (!m_queue.empty() && int(m_workers.size()) < m_plan.jobs) {
        const int script = m_queue.front();
        m_queue.pop_front();
        startWorker(script);
    }
}

void Runner::startWorker(int script)
{
    m_listener.attemptBegan(script);
    m_workers.push_back(
        std::make_unique<WorkerProcess>(m_command, m_plan.scripts.at(script), script, m_listener));
    WorkerProcess *worker = m_workers.back().get();
    worker->setLimit(m_plan.scriptLimitMs);
    if (m_plan.keepOpen)
        worker->keepOpen();
    // Queued: the worker is deleted there.
    connect(
        worker, &WorkerProcess::ended, this, [this, worker] { noteEnded(worker); }, Qt::QueuedConnection);
}

void Runner::noteEnded(WorkerProcess *worker)
{
    const int number = worker->number();
    ScriptResult &script = m_result.scripts.at(std::size_t(number));
    script.attempts.push_back(worker->takeAttempt());
    std::erase_if(m_workers, [worker](const auto &each) { return each.get() == worker; });

    const Attempt &attempt = script.attempts.back();
    if (attempt.end.outcome != Outcome::Unusable)
        m_anyBegan = true;
    else if (!m_anyBegan)
        dropQueue(u"The run could not begin"_s);
    const bool again = mayTryAgain(script);
    if (again)
        m_queue.push_front(number);
    m_listener.attemptEnded(number, attempt, again);

    startWorkers();
    if (m_workers.empty())
        m_loop.quit();
}

bool Runner::mayTryAgain(const ScriptResult &script) const
{
    const bool mayPass = script.outcome() == Outcome::Failed || script.outcome() == Outcome::Error;
    return mayPass && !m_stopped && int(script.attempts.size()) <= m_plan.retries;
}

} // namespace Ostrel::Host
