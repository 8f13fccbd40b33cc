// Contest: measures contestants by turns, so that the noise of a busy machine hits all of them alike.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QList>

#include <functional>

namespace Ostrel::Bench {

/// Does the work once and tells how many milliseconds it took, or why it could not be done.
using Turn = std::function<FunctionCallResult<double>()>;

/// The median time of each contestant over `rounds` rounds (at least one), in milliseconds. A round that does not
/// count goes before, and every other round runs backwards: nobody always comes behind the same neighbour. The
/// first failure ends the contest.
FunctionCallResult<QList<double>> medianTimes(const QList<Turn> &contestants, int rounds);

/// Milliseconds that `work` took, or its failure.
FunctionCallResult<double> timed(const std::function<FunctionCallResult<void>()> &work);

} // namespace Ostrel::Bench
