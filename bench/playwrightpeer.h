// PlaywrightPeer: another library that does the same work, in a process of its own with a browser of its own.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QProcess>
#include <QString>

namespace Ostrel::Bench {

/// Runs playwright-peer.js. The peer measures by its own clock, so that talking to it costs nothing.
class PlaywrightPeer
{
public:
    ~PlaywrightPeer();

    /// Starts the script and waits until it is ready.
    FunctionCallResult<void> start();

    /// Sends one line and waits for the milliseconds that the work took.
    FunctionCallResult<double> ask(const QString &command);

private:
    FunctionCallResult<QString> answer();

    QProcess m_process;
};

} // namespace Ostrel::Bench
