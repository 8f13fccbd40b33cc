// The results of a run as values: what the reports are written from.
#pragma once

#include "host/report/resultsink.h"

#include <QDateTime>

#include <vector>

namespace Ostrel::Host {

/// One thing that a script did. Which of the members mean something depends on the kind.
struct Step
{
    enum class Kind {
        Statement, ///< `text` is the statement with its arguments, `error` its failure
        Section, ///< `text` is its title; what happened in it lies below
        Verification, ///< `text` is its message
        Log, ///< `text` is the line
        Screenshot, ///< `text` is its title, `png` the picture
        ObjectTree, ///< `text` is the XML
    };

    Kind kind = Kind::Statement;
    QString text;
    ScriptPlace place;
    bool ended = true; ///< false for a statement or a section in whose middle the script was cut short
    bool passed = true; ///< of a verification
    QString actual;
    QString expected;
    QString error;
    QByteArray png;
    double milliseconds = 0; ///< of a statement
    std::vector<Step> steps; ///< below a section or a statement
};

/// One try of a script.
struct Attempt
{
    ScriptEnd end{Outcome::NotRun, {}, {}, {}};
    QDateTime began; ///< invalid when it was not tried
    double milliseconds = 0;
    std::vector<Step> steps;
    QString diagnostics; ///< what the script and its worker wrote to standard error

    bool passed() const { return end.outcome == Outcome::Passed; }
};

/// A script with all its tries, the last of which decides.
struct ScriptResult
{
    QString script; ///< its path, as the user gave or found it
    std::vector<Attempt> attempts;

    Outcome outcome() const { return attempts.empty() ? Outcome::NotRun : attempts.back().end.outcome; }
    /// It passed, but not at once.
    bool isFlaky() const { return outcome() == Outcome::Passed && attempts.size() > 1; }
    double milliseconds() const;
};

/// A whole run, with its scripts in the order in which they were given.
struct RunResult
{
    QDateTime began;
    double milliseconds = 0;
    std::vector<ScriptResult> scripts;

    int count(Outcome outcome) const; ///< flaky ones count as passed
    int flaky() const;
    bool passed() const { return count(Outcome::Passed) == int(scripts.size()); }
};

/// All verifications of a tree of steps, in their order.
std::vector<const Step *> verificationsOf(const std::vector<Step> &steps);

} // namespace Ostrel::Host
