// Platform: what the settings store asks the operating system for.
#pragma once

#include <QString>

namespace Ostrel::Platform {

/// The value of an environment variable; empty when it is not set.
QString environmentValue(const QString &name);

/// The folder in which programs keep the data of this user; empty when the system names none.
QString applicationDataDirectory();

} // namespace Ostrel::Platform
