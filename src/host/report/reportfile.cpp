#include "host/report/reportfile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

Failure unwritable(const QString &fileName, const QString &reason)
{
    return Failure(u"Cannot write the report '%1': %2."_s.arg(fileName, reason));
}

/// Flushing tells of a disk that is full, by its name.
bool writeAll(QFileDevice &file, const QByteArray &content)
{
    return file.write(content) == content.size() && file.flush();
}

} // namespace

FunctionCallResult<void> probeReportFile(const QString &fileName)
{
    QFile file(fileName);
    // To read, too, so that what is there stays.
    if (!file.open(QIODevice::ReadWrite))
        return unwritable(fileName, file.errorString());
    return {};
}

FunctionCallResult<void> writeWhole(const QString &fileName, const QByteArray &content)
{
    const QFileInfo target(fileName);
    // What is no file on a disk, as a terminal or a pipe, is written to and never replaced.
    if (target.exists() && !target.isFile()) {
        QFile device(fileName);
        return device.open(QIODevice::WriteOnly) && writeAll(device, content) ? FunctionCallResult<void>()
                                                                              : Failure(device.errorString());
    }
    QSaveFile file(fileName);
    // In a folder in which nothing can be made, the file itself may still be written.
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly) || !writeAll(file, content) || !file.commit())
        return Failure(file.errorString());
    return {};
}

FunctionCallResult<void> writeReportFile(
    const QString &fileName, const std::function<void(QIODevice *device)> &write)
{
    QBuffer content;
    content.open(QIODevice::WriteOnly);
    write(&content);
    const FunctionCallResult<void> written = writeWhole(fileName, content.data());
    if (written.failed())
        return unwritable(fileName, written.error);
    return {};
}

} // namespace Ostrel::Host
