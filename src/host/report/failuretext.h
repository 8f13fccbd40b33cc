// What went wrong, in lines of text: the same on the terminal and in the reports.
#pragma once

#include "host/report/results.h"

namespace Ostrel::Host {

/// "script.js:12", or without a line the file alone.
QString placeText(const ScriptPlace &place);

/// "script.js:12: text"; the text alone where no place is known.
QString textAt(const ScriptPlace &place, const QString &text);

/// "Verification failed: message (actual: a; expected: b)".
QString failureText(const Verification &verification);

/// The error of a script with its place and, in lines of their own, its callers.
QString errorText(const ScriptEnd &end);

/// One text for each thing that went wrong: failed verifications, then the error. Not empty for an attempt
/// that did not pass.
QStringList failureTexts(const Attempt &attempt);

/// All that was logged, a line each.
QString loggedText(const std::vector<Step> &steps);

} // namespace Ostrel::Host
