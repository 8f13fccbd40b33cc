// Where an error goes that nobody can receive.
#pragma once

#include <QString>

namespace Ostrel::WebWrapper {

/// Writes a text and a line end to standard error: for operations whose callers cannot take an error.
void reportToStandardError(const QString &text);

} // namespace Ostrel::WebWrapper
