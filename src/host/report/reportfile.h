// Report files: written whole, or with a message that says why not.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QIODevice>
#include <QString>

#include <functional>

namespace Ostrel::Host {

/// Tells before a run whether its report can be written: opens the file, which is made when it is not there.
FunctionCallResult<void> probeReportFile(const QString &fileName);

/// Writes a file whole or, as on a full disk, not at all: then what was there before stays. The error is the
/// reason alone.
FunctionCallResult<void> writeWhole(const QString &fileName, const QByteArray &content);

/// Writes a report file by `write`, whole or not at all.
FunctionCallResult<void> writeReportFile(
    const QString &fileName, const std::function<void(QIODevice *device)> &write);

} // namespace Ostrel::Host
