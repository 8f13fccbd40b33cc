// TraceCapture: collects what the trace points of one category say while it lives.
//
//     TraceCapture traces(u"WebObject"_s);
//     control.label();
//     EXPECT_EQ(traces.lines(), QStringList{u"..."_s});
#pragma once

#include "probelog/tracepoint.h"

#include <QStringList>

namespace Ostrel::Test {

class TraceCapture
{
public:
    explicit TraceCapture(const QString &category)
    {
        ProbeLog::setTraceReceiver([this](const ProbeLog::TracePoint &, const QString &text,
                                       const ProbeLog::VariableSnapshot &) { m_lines.append(text); });
        ProbeLog::setActiveCategories({category});
    }
    ~TraceCapture()
    {
        ProbeLog::setActiveCategories({});
        ProbeLog::setTraceReceiver(nullptr);
    }
    TraceCapture(const TraceCapture &) = delete;
    TraceCapture &operator=(const TraceCapture &) = delete;

    const QStringList &lines() const { return m_lines; }

private:
    QStringList m_lines;
};

} // namespace Ostrel::Test
