// The scripts of a run: what the user names, and what a filter leaves of it.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QStringList>

namespace Ostrel::Host {

/// The scripts behind files and folders, in the order in which they were named; those of a folder are its
/// *.js files, sorted by name. Fails for what is not there and for a folder without scripts.
FunctionCallResult<QStringList> listScripts(const QStringList &named);

/// Those whose path matches: a text with the wildcards "*", "?" and "[...]", which may match anywhere in the
/// path, or behind "re:" a regular expression. An empty pattern leaves all. Fails for a pattern that is none
/// and when nothing is left.
FunctionCallResult<QStringList> filterScripts(const QStringList &scripts, const QString &pattern);

} // namespace Ostrel::Host
