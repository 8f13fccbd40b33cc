// The CSS properties that scripts can read, by their camel-case names.
#pragma once

#include <QStringList>

namespace Ostrel::WebWrapper {

/// All names, in the order in which scripts see them.
const QStringList &cssPropertyNames();

} // namespace Ostrel::WebWrapper
