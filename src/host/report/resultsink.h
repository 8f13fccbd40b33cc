// ResultSink: what a running script tells about itself. Progress, the reports and the pipe from a worker to
// its runner all hear the same.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace Ostrel::Host {

/// A line of a script. No line (0) where none is known.
struct ScriptPlace
{
    QString file;
    int line = 0;

    bool operator==(const ScriptPlace &) const = default;
};

/// A statement as it begins, such as clickButton("save") or HTML_CheckBox.checked = true, at its place.
struct StatementBegin
{
    QString text;
    ScriptPlace place;
};

/// A comparison that a script asked for.
struct Verification
{
    bool passed = false;
    QString message; ///< what is verified, in the script's words; may be empty
    QString actual; ///< as text; both are empty where nothing was compared, as in verify(condition)
    QString expected;
    ScriptPlace place;
};

/// A picture that the script took, or one that was taken because something failed.
struct Screenshot
{
    QString title;
    QByteArray png;
};

/// How a script ended.
enum class Outcome {
    Passed, ///< It ran to its end, and each verification held.
    Failed, ///< It ran to its end, but a verification did not hold.
    Error, ///< It ended before its time: an error, a limit, a lost browser.
    Unusable, ///< It could not begin: no browser, say.
    NotRun, ///< It was not tried: the run had ended before its turn.
};

/// The end of a script. The sink counts the verifications by itself, so a script that ran to its end says
/// Passed.
struct ScriptEnd
{
    Outcome outcome = Outcome::Passed;
    QString message; ///< of an error, word for word
    ScriptPlace place;
    QStringList callers; ///< "function (file:line)", the innermost first
};

/// Receives what a script reports, in the order in which it happens and on the script's own thread. Nothing
/// is asked back, so that each operation may be left out. Statements may nest (a statement that calls a
/// function of the script); sections do, and every begin has its end, but for a script that was cut short.
class ResultSink
{
public:
    ResultSink() = default;
    virtual ~ResultSink() = default;
    Q_DISABLE_COPY_MOVE(ResultSink)

    virtual void scriptBegan(const QString &) { }
    virtual void scriptEnded(const ScriptEnd &) { }

    virtual void sectionBegan(const QString & /*title*/, const ScriptPlace &) { }
    virtual void sectionEnded() { }

    virtual void statementBegan(const StatementBegin &) { }
    /// `error` is the statement's failure, which the script may yet catch; empty for none.
    virtual void statementEnded(double /*milliseconds*/, const QString & /*error*/) { }

    virtual void verified(const Verification &) { }
    virtual void logged(const QString & /*text*/) { }
    virtual void screenshotTaken(const Screenshot &) { }
    /// The tree of the page's objects where something failed, as XML.
    virtual void objectTreeTaken(const QString & /*xml*/) { }
};

} // namespace Ostrel::Host
