#include "wrappers/web/gentlesleep.h"

#include <QEventLoop>
#include <QTimer>

namespace Ostrel::WebWrapper {

void gentleSleep(int milliseconds)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(milliseconds);
    loop.exec();
}

} // namespace Ostrel::WebWrapper
