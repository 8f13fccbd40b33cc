// Progress: what the user sees of a run while it goes on.
#pragma once

#include "host/run/runlistener.h"

#include <QStringList>

#include <functional>

namespace Ostrel::Host {

/// How progress is shown.
struct ProgressOptions
{
    using Write = std::function<void(const QString &text)>;

    Write out; ///< standard output, as it stands
    Write error; ///< standard error
    /// The columns of the terminal that standard output is; 0 when it is none.
    int columns = 0;
    /// Whether each script's result is a line of its own, as for several scripts or tries.
    bool results = false;
};

/// Prints what scripts log to standard output and what goes wrong to standard error, at once. On a terminal
/// the last line tells which script and which statement run, and is rewritten.
class Progress : public RunListener
{
public:
    Progress(QStringList scripts, ProgressOptions options);

    void attemptBegan(int script) override;
    void attemptEnded(int script, const Attempt &attempt, bool again) override;
    void statementBegan(int script, const StatementBegin &statement) override;
    void verified(int script, const Verification &verification) override;
    void logged(int script, const QString &text) override;
    void diagnosticsWritten(int script, const QString &lines) override;
    void browserKept(int script) override;

    /// The totals, as the last line.
    void printTotals(const RunResult &run);

private:
    /// "[2/6]", the script's number in the run.
    QString number(int script) const;
    void print(const ProgressOptions::Write &stream, const QString &text);
    void showStatus(const QString &text);

    QStringList m_scripts;
    ProgressOptions m_options;
    QString m_status; ///< what stands in the last line of the terminal
};

} // namespace Ostrel::Host
