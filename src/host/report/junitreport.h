// The JUnit report: results for CI servers.
#pragma once

#include "host/report/results.h"

#include <QIODevice>

namespace Ostrel::Host {

/// Writes a run as JUnit XML: a suite for each folder, a case for each script. A pass after a retry is marked
/// by what failed before it (flakyFailure, flakyError), further tries of a failed script by rerunFailure and
/// rerunError. Errors of the device stay in the device.
void writeJUnitReport(const RunResult &run, QIODevice *device);

} // namespace Ostrel::Host
