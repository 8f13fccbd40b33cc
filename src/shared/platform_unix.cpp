// Platform: the environment and the configuration folder of the desktop, by way of Qt.
#include "shared/platform.h"

#include <QStandardPaths>

namespace Ostrel::Platform {

QString environmentValue(const QString &name)
{
    return qEnvironmentVariable(name.toLocal8Bit().constData());
}

QString applicationDataDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

} // namespace Ostrel::Platform
