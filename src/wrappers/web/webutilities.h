// Small free functions that hosts and the whole library use.
#pragma once

#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

/// Undoes the page's escape(): %uXXXX and %XX sequences, then the entity of the ampersand. Malformed digits
/// count as 0; a sequence that the end of the text cuts off does no harm.
PAGEPROBELIB_EXPORT QString unescape(const QString &text);

/// Puts "http://" in front of an address without one of the known schemes; see the tests for the exceptions.
PAGEPROBELIB_EXPORT QString addSchemeIfMissing(const QString &address);

/// Milliseconds since the epoch.
PAGEPROBELIB_EXPORT quint64 now();

} // namespace Ostrel::WebWrapper
