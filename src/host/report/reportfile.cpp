#include "host/report/reportfile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

Failure unwritable(const QString &fileName, const QString &reason)
{
    return Failure(u"Cannot write the report '%1': %2."_s.arg(fileName, reason));
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
    QFile file(fileName);
    const bool opened = file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    const bool written = opened && file.write(content) == content.size() && file.flush();
    QString reason = file.errorString();
    // Some file systems tell only now.
    file.close();
    if (written && file.error() == QFileDevice::NoError)
        return {};
    if (written)
        reason = file.errorString();
    // A device, such as a pipe, is not ours to remove.
    if (opened && QFileInfo(fileName).isFile())
        QFile::remove(fileName);
    return Failure(reason);
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
