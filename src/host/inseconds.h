// inSeconds(): a time limit as messages show it.
#pragma once

#include <QString>

namespace Ostrel::Host {

/// "2.5 s" for 2500.
inline QString inSeconds(int milliseconds)
{
    return QStringLiteral("%1 s").arg(milliseconds / 1000.0);
}

} // namespace Ostrel::Host
