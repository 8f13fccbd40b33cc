// complain(): how a command tells the user what went wrong.
#pragma once

#include "app/exitcodes.h"

#include <QString>
#include <QTextStream>

namespace Ostrel::App {

/// Writes a line to standard error, behind the name of the command that it comes from. Gives `code` back.
inline ExitCode complain(const char *command, const QString &text, ExitCode code = Unusable)
{
    QTextStream(stderr) << "pageprobe " << command << ": " << text << Qt::endl;
    return code;
}

} // namespace Ostrel::App
