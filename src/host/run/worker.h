// The worker: runs one script in this process and tells its runner by event lines on standard output.
#pragma once

#include "host/script/testsession.h"

#include <QString>

namespace Ostrel::Host {

struct WorkerTask
{
    QString script;
    SessionOptions session;
    bool keepOpen = false; ///< the browser stays until the user closes it or the worker is interrupted
    QString namesFile; ///< of the symbolic names; empty for the one beside the script
};

/// Runs the script in a browser of its own. The framework knows one session a process, so that scripts that
/// run side by side are processes. A worker that has told the script's end has done its work, however that
/// was.
void runWorker(const WorkerTask &task);

} // namespace Ostrel::Host
