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

/// Adds the time of one turn of each contestant to `times`.
FunctionCallResult<void> takeTurns(const QList<Turn> &contestants, bool backwards, QList<double> &times)
{
    for (qsizetype i = 0; i < contestants.size(); ++i) {
        const qsizetype next = backwards ? contestants.size() - 1 - i : i;
        const FunctionCallResult<double> time = contestants.at(next)();
        if (time.failed())
            return Failure(time.error);
        times[next] += time.value;
    }
    return {};
}

} // namespace

FunctionCallResult<QList<double>> medianTimes(const QList<Turn> &contestants, const Rounds &rounds)
{
    QList<QList<double>> times(contestants.size());
    constexpr int warmUp = -1;
    for (int round = warmUp; round < rounds.count; ++round) {
        if (rounds.prepare) {
            if (const auto prepared = rounds.prepare(); prepared.failed())
                return Failure(prepared.error);
        }
        QList<double> sums(contestants.size());
        for (int turn = 0; turn < rounds.turns; ++turn) {
            if (const auto taken = takeTurns(contestants, (round + turn) % 2, sums); taken.failed())
                return Failure(taken.error);
        }
        for (qsizetype i = 0; round != warmUp && i < contestants.size(); ++i)
            times[i].append(sums.at(i));
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
