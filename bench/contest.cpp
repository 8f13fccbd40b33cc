#include "contest.h"

#include <QElapsedTimer>

#include <algorithm>

namespace Ostrel::Bench {

namespace {

constexpr double nanosecondsInMillisecond = 1e6;

double median(QList<double> times)
{
    std::sort(times.begin(), times.end());
    const qsizetype middle = times.size() / 2;
    return times.size() % 2 ? times.at(middle) : (times.at(middle - 1) + times.at(middle)) / 2;
}

} // namespace

FunctionCallResult<QList<double>> medianTimes(const QList<Turn> &contestants, int rounds)
{
    QList<QList<double>> times(contestants.size());
    constexpr int warmUp = -1;
    for (int round = warmUp; round < qMax(1, rounds); ++round) {
        for (qsizetype turn = 0; turn < contestants.size(); ++turn) {
            const qsizetype next = round % 2 ? contestants.size() - 1 - turn : turn;
            const FunctionCallResult<double> time = contestants.at(next)();
            if (time.failed())
                return Failure(time.error);
            if (round != warmUp)
                times[next].append(time.value);
        }
    }
    QList<double> medians;
    for (const QList<double> &list : std::as_const(times))
        medians.append(median(list));
    return medians;
}

FunctionCallResult<double> timed(const std::function<FunctionCallResult<void>()> &work)
{
    QElapsedTimer clock;
    clock.start();
    const FunctionCallResult<void> done = work();
    const double time = double(clock.nsecsElapsed()) / nanosecondsInMillisecond;
    if (done.failed())
        return Failure(done.error);
    return time;
}

} // namespace Ostrel::Bench
