// Trace points: what the library tells about its work, by category, built only when somebody looks.
//
//     PROBELOG_TRACE("WebObjectSearch", u"Looking up child object: %1"_s.arg(name));
//     PROBELOG_TRACE_VALUES("WebObject", u"Set value"_s, {{u"index"_s, QString::number(i)}});
//
// Categories are switched on by the environment variable PROBELOG, a comma separated list of category names
// ("*" for all), or by setActiveCategories().
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <atomic>
#include <functional>

#ifdef PROBELOG_BUILD
#define PROBELOG_EXPORT Q_DECL_EXPORT
#else
#define PROBELOG_EXPORT Q_DECL_IMPORT
#endif

namespace Ostrel::ProbeLog {

/// The name and value of a variable at a trace point, as text.
struct VariableValue
{
    QString name;
    QString value;
};

/// The variables that a trace point shows.
using VariableSnapshot = QList<VariableValue>;

class TracePoint;

/// Receives what active trace points say. Called on the thread that passes the point.
using TraceReceiver
    = std::function<void(const TracePoint &point, const QString &text, const VariableSnapshot &values)>;

/// A place in the code that can say what happens there. It is a function-local static of that place.
class PROBELOG_EXPORT TracePoint
{
public:
    TracePoint(const char *category, const char *file, int line, const char *function);

    const char *category() const { return m_category; }
    const char *file() const { return m_file; }
    int line() const { return m_line; }
    const char *function() const { return m_function; }
    /// How often the point was passed while its category was active.
    int visits() const { return m_visits.load(std::memory_order_relaxed); }

    /// Counts the visit and tells whether anybody looks. Cheap when nobody does.
    bool advanceVisit();

private:
    const char *m_category;
    const char *m_file;
    int m_line;
    const char *m_function;
    std::atomic<int> m_visits{0};
    std::atomic<int> m_generation{-1};
    std::atomic<bool> m_active{false};
};

/// Hands a visit to the receiver.
PROBELOG_EXPORT void visitTracePoint(
    const TracePoint &point, const QString &text, const VariableSnapshot &values = {});

/// Switches categories on; "*" stands for all, the empty list switches tracing off. Thread-safe.
PROBELOG_EXPORT void setActiveCategories(const QStringList &categories);

/// Sets who receives traces; without a receiver they go to standard error as "category: text". Thread-safe.
PROBELOG_EXPORT void setTraceReceiver(TraceReceiver receiver);

} // namespace Ostrel::ProbeLog

#define PROBELOG_TRACE_VALUES(category, text, ...)                                                           \
    do {                                                                                                     \
        static ::Ostrel::ProbeLog::TracePoint tracePoint(category, __FILE__, __LINE__, __func__);            \
        if (tracePoint.advanceVisit())                                                                       \
            ::Ostrel::ProbeLog::visitTracePoint(tracePoint, text, __VA_ARGS__);                              \
    } while (false)

#define PROBELOG_TRACE(category, text) PROBELOG_TRACE_VALUES(category, text, {})
