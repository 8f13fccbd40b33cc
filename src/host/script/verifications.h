// Verifications: what a script tells about its own results: comparisons and sections.
#pragma once

#include "host/report/resultsink.h"
#include "host/script/scriptfunctions.h"

namespace Ostrel::Host {

/// The innermost line of a script in the text of an engine's stack, or no place when there is none.
ScriptPlace innermostPlace(const QString &stack);

/// The script functions behind verify(), compare() and section(), which the script side defines on top of
/// them: reportVerification(passed, message, actual, expected, stack), beginSection(title, stack) and
/// endSection(). A verification that fails is told, and the script goes on.
class Verifications
{
public:
    /// `results` is not owned and must outlive this.
    explicit Verifications(ResultSink &results);

private:
    ScriptFunctions m_functions;
};

} // namespace Ostrel::Host
