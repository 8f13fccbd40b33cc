// Contest: measures contestants by turns, so that the noise of a busy machine hits all of them alike.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QList>

#include <functional>

namespace Ostrel::Bench {

/// Does the work once and tells how many milliseconds it took, or why it could not be done.
using Turn = std::function<FunctionCallResult<double>()>;

struct Rounds
{
    int count = 1;
    /// Turns of each contestant in one round, whose times are added up. Many short turns spread the noise
    /// more evenly than few long ones.
    int turns = 1;
    /// Makes ready for a round, which is not measured; nothing to do when empty.
    std::function<FunctionCallResult<void>()> prepare = {};
};

/// The median over the rounds of each contestant's time, in milliseconds. A round that does not count goes
/// before, and every other time the order is reversed: nobody always comes behind the same neighbour. The
/// first failure ends the contest.
FunctionCallResult<QList<double>> medianTimes(const QList<Turn> &contestants, const Rounds &rounds);

/// Milliseconds that `work` took, or its failure.
FunctionCallResult<double> timed(const std::function<FunctionCallResult<void>()> &work);

} // namespace Ostrel::Bench
