// resourceText(): what the program carries within itself, such as scripts for pages.
#pragma once

#include <QFile>
#include <QString>

namespace Ostrel::Host {

/// The text of a file below ":/pageprobe/". One that is missing is a fault of the build and ends the program.
inline QString resourceText(const QString &name)
{
    QFile file(QStringLiteral(":/pageprobe/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("A resource is missing: %s", qUtf8Printable(name));
    return QString::fromUtf8(file.readAll());
}

} // namespace Ostrel::Host
