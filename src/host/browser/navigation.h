// Navigation: the browser's network error codes in words that a tester understands.
#pragma once

#include <QString>

namespace Ostrel::Host {

/// Why `address` could not be opened, with the browser's own code ("net::ERR_...") behind it in brackets. An
/// unknown code stands for itself.
QString describeNavigationError(const QString &address, const QString &code);

} // namespace Ostrel::Host
