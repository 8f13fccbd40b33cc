// ScriptEngine: runs test scripts in JavaScript. It knows nothing but the reflection frame: every registered
// class, enum and global method shows up in scripts without code of its own.
#pragma once

#include "host/report/resultsink.h"
#include "ostrelhook/object.h"

#include <QJSEngine>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace Ostrel::Host {

/// Why a script ended before its time.
struct ScriptError
{
    QString message; ///< what failed, word for word
    QString file;
    int line = 0;
    QStringList callers; ///< "function (file:line)", the innermost first

    /// "file:line: message", as a compiler would write it.
    QString text() const;
};

/// A script error or nothing.
struct ScriptOutcome
{
    bool failed = false;
    ScriptError error;
};

class ScriptBridge;

/// One engine, with globals of its own. Classes and global methods are those registered at its construction.
/// Lives on the thread that drives the bridge.
class ScriptEngine
{
public:
    /// `results` hears of each statement; it must outlive the engine.
    explicit ScriptEngine(ResultSink &results);
    /// For scripts of which nobody wants to hear.
    ScriptEngine();
    ~ScriptEngine();
    Q_DISABLE_COPY_MOVE(ScriptEngine)

    /// Reads and runs a file; a file that cannot be read is an error without a line.
    ScriptOutcome runFile(const QString &fileName);

    /// Runs a text; `fileName` is what errors name.
    ScriptOutcome run(const QString &source, const QString &fileName);

    /// Ends the running script at its next step. May be called from another thread.
    void interrupt();

private:
    QJSEngine m_engine;
    std::unique_ptr<ScriptBridge> m_bridge;
};

} // namespace Ostrel::Host
