// RecordedScript: the lines of a recording, kept in a file that is whole at any time.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Ostrel::Host {

/// Where a line came from, as far as later events have a say in it.
enum class LineOrigin {
    Other,
    Press, ///< a press, which the double click behind it may take back
    Remark, ///< what no statement can express
};

struct ScriptLine
{
    QString text;
    QString object; ///< empty where there is none
    LineOrigin origin = LineOrigin::Other;
};

class RecordedScript
{
public:
    void append(const ScriptLine &line) { m_lines.push_back(line); }

    /// Puts a line in front of the last statement; at the end when there is none.
    void insertBeforeLast(const ScriptLine &line);

    /// Takes back the presses on an object that stand at the end, `most` at the most.
    void takeBackPresses(const QString &object, int most);

    /// Adds a remark, unless the same one stands at the end already.
    void remark(const QString &text);

    qsizetype size() const { return qsizetype(m_lines.size()); }
    QStringList lines() const;

    /// The whole script: a line that tells what it is, and the statements.
    QString text() const;

    /// Replaces the file in one step, so that a crash leaves either the old script or the new one.
    FunctionCallResult<void> save(const QString &fileName) const;

private:
    std::vector<ScriptLine> m_lines;
};

} // namespace Ostrel::Host
