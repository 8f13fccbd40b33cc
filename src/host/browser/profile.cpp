#include "host/browser/profile.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

constexpr int removalLimitMs = 2000;
constexpr int removalPauseMs = 20;
// Between making a directory and locking it lies a moment in which it looks abandoned.
constexpr qint64 youngestAbandonedSeconds = 60;
const QString lockName = u"/pageprobe.lock"_s;
const QString namePrefix = u"pageprobe-profile-"_s;

// The lock goes with the process that holds it, however that ends. -1 when another process holds it or when
// there is no lock file.
int takeLock(const QString &directory, int extraFlags)
{
    const QByteArray file = QFile::encodeName(directory + lockName);
    const int descriptor = open(file.constData(), O_RDWR | O_CLOEXEC | extraFlags, 0600);
    if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

void removeAbandonedProfiles(const QString &parentDirectory)
{
    const QDateTime newest = QDateTime::currentDateTime().addSecs(-youngestAbandonedSeconds);
    const QFileInfoList directories
        = QDir(parentDirectory).entryInfoList({namePrefix + u'*'}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo &directory : directories) {
        if (directory.ownerId() != getuid() || directory.lastModified() > newest)
            continue;
        const int lock = takeLock(directory.filePath(), 0);
        if (lock < 0)
            continue;
        QDir(directory.filePath()).removeRecursively();
        close(lock);
    }
}

QString parentOr(const QString &directory)
{
    return directory.isEmpty() ? QDir::tempPath() : directory;
}

} // namespace

Profile::Profile(const QString &parentDirectory)
    : m_directory(parentOr(parentDirectory) + u'/' + namePrefix + u"XXXXXX"_s)
{
    if (!m_directory.isValid())
        return;
    m_lock = takeLock(m_directory.path(), O_CREAT);
    removeAbandonedProfiles(parentOr(parentDirectory));
}

// A browser that has just been killed may still have a helper that writes a last file.
Profile::~Profile()
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_directory.isValid() && !m_directory.remove() && elapsed.elapsed() < removalLimitMs)
        QThread::msleep(removalPauseMs);
    if (m_lock >= 0)
        close(m_lock);
}

} // namespace Ostrel::Host
