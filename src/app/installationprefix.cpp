#include "app/installationprefix.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Ostrel::App {

using namespace Qt::StringLiterals;

namespace {

constexpr char variable[] = "OSTREL_PREFIX";

} // namespace

QString installationPrefix(const QString &programDirectory)
{
    const QString prefix = QDir::cleanPath(programDirectory + "/.."_L1);
    return QFileInfo(prefix + "/lib/extensions/web"_L1).isDir() ? prefix : QString();
}

void provideInstallationPrefix(const QString &programDirectory)
{
    // An empty value names no folder.
    if (!qEnvironmentVariableIsEmpty(variable))
        return;
    const QString prefix = installationPrefix(programDirectory);
    if (!prefix.isEmpty())
        qputenv(variable, QFile::encodeName(prefix));
}

} // namespace Ostrel::App
