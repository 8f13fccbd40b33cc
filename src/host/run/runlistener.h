// RunListener: what a run tells while it goes on.
#pragma once

#include "host/report/results.h"

namespace Ostrel::Host {

/// Hears of the scripts by their number in the run, from 0 on. Scripts that run side by side are heard of in
/// turns. Each operation may be left out.
class RunListener
{
public:
    RunListener() = default;
    virtual ~RunListener() = default;
    Q_DISABLE_COPY_MOVE(RunListener)

    virtual void attemptBegan(int /*script*/) { }
    /// `again` tells that the script will be tried once more.
    virtual void attemptEnded(int /*script*/, const Attempt &, bool /*again*/) { }

    virtual void statementBegan(int /*script*/, const StatementBegin &) { }
    virtual void verified(int /*script*/, const Verification &) { }
    virtual void logged(int /*script*/, const QString & /*text*/) { }
    /// Whole lines that the script's process wrote to standard error.
    virtual void diagnosticsWritten(int /*script*/, const QString & /*lines*/) { }
    /// The script has ended, and its browser stays open until the user closes it.
    virtual void browserKept(int /*script*/) { }
};

} // namespace Ostrel::Host
