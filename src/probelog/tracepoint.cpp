#include "probelog/tracepoint.h"

#include <QMutex>

#include <cstdio>

namespace Ostrel::ProbeLog {

using namespace Qt::StringLiterals;

namespace {

void writeToStandardError(const TracePoint &point, const QString &text, const VariableSnapshot &values)
{
    QString line = u"%1: %2"_s.arg(QString::fromLatin1(point.category()), text);
    for (const VariableValue &value : values)
        line += u" %1=%2"_s.arg(value.name, value.value);
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}

struct State
{
    QMutex mutex;
    QStringList categories;
    TraceReceiver receiver = &writeToStandardError;
    /// Grows at each change of the categories, so that trace points notice with one comparison.
    std::atomic<int> generation{0};

    State() : categories(qEnvironmentVariable("PROBELOG").split(u',', Qt::SkipEmptyParts)) { }
};

State &state()
{
    // Never destroyed: what runs at the end of the process may still pass trace points.
    static auto *const instance = new State;
    return *instance;
}

} // namespace

TracePoint::TracePoint(const char *category, const char *file, int line, const char *function)
    : m_category(category), m_file(file), m_line(line), m_function(function)
{
}

bool TracePoint::advanceVisit()
{
    State &shared = state();
    const int generation = shared.generation.load(std::memory_order_acquire);
    if (m_generation.load(std::memory_order_acquire) != generation) {
        const QMutexLocker lock(&shared.mutex);
        m_active
            = shared.categories.contains(u"*"_s) || shared.categories.contains(QLatin1StringView(m_category));
        m_generation.store(generation, std::memory_order_release);
    }
    if (!m_active.load(std::memory_order_relaxed))
        return false;
    m_visits.fetch_add(1, std::memory_order_relaxed);
    return true;
}

void visitTracePoint(const TracePoint &point, const QString &text, const VariableSnapshot &values)
{
    TraceReceiver receiver;
    {
        const QMutexLocker lock(&state().mutex);
        receiver = state().receiver;
    }
    receiver(point, text, values);
}

void setActiveCategories(const QStringList &categories)
{
    const QMutexLocker lock(&state().mutex);
    state().categories = categories;
    ++state().generation;
}

void setTraceReceiver(TraceReceiver receiver)
{
    const QMutexLocker lock(&state().mutex);
    state().receiver = receiver ? std::move(receiver) : TraceReceiver(&writeToStandardError);
}

} // namespace Ostrel::ProbeLog
