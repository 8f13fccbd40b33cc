// The installation's folder: where the library finds its extension scripts and its settings.
#pragma once

#include <QString>

namespace Ostrel::App {

/// The folder of the installation that a program in `programDirectory` belongs to, which is the parent of
/// that directory when it holds lib/extensions/web; empty when it does not.
QString installationPrefix(const QString &programDirectory);

/// Sets OSTREL_PREFIX for this process to the installation that a program in `programDirectory` belongs to. A
/// value that the user gave stays, and so does an unset variable where there is no installation. Called
/// before anything reads the variable and before there are threads.
void provideInstallationPrefix(const QString &programDirectory);

} // namespace Ostrel::App
