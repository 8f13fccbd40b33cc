#include "wrappers/web/gentlesleep.h"

#include <QEventLoop>
#include <QTimer>

namespace Ostrel::WebWrapper {

void gentleSleep(int milliseconds)
{
    QEventLoop loop;
    QTimer timer;
    // A coarse timer may fire early, and what is waited for takes its time.
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(milliseconds);
    loop.exec();
}

} // namespace Ostrel::WebWrapper
