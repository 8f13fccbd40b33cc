// waitFor(): waits for a condition while events flow, never for time.
#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace Ostrel::Test {

/// True as soon as `condition` holds, false when it does not within the limit.
template <typename Condition>
bool waitFor(Condition condition, int limitMs = 10000)
{
    const QDeadlineTimer deadline(limitMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

} // namespace Ostrel::Test
