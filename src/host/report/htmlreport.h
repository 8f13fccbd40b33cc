// The HTML report: one page for people, which needs nothing but itself.
#pragma once

#include "host/report/results.h"

#include <QHash>
#include <QIODevice>
#include <QStringList>

#include <functional>

namespace Ostrel::Host {

/// Gives the source line at a place; empty when there is none.
using SourceLine = std::function<QString(const ScriptPlace &place)>;

/// Reads source lines from the scripts' files, each of which is read once.
class SourceFiles
{
public:
    QString line(const ScriptPlace &place);

private:
    QHash<QString, QStringList> m_files;
};

/// Writes a run as an HTML page: totals, and each script with its steps, times, source lines and, where it
/// failed, the screenshot and the object tree. The page holds its style and pictures itself, runs no script
/// and follows the reader's choice of light and dark. It is well-formed XML, too. Errors of the device stay
/// in the device.
void writeHtmlReport(const RunResult &run, const SourceLine &source, QIODevice *device);

} // namespace Ostrel::Host
