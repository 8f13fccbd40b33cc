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

/// The profiles of this user, used or not.
QFileInfoList profilesIn(const QString &parentDirectory)
{
    QFileInfoList directories
        = QDir(parentDirectory).entryInfoList({namePrefix + u'*'}, QDir::Dirs | QDir::NoSymLinks);
    directories.removeIf([](const QFileInfo &directory) { return directory.ownerId() != getuid(); });
    return directories;
}

void removeAbandonedProfiles(const QString &parentDirectory)
{
    const QDateTime newest = QDateTime::currentDateTime().addSecs(-youngestAbandonedSeconds);
    const QFileInfoList directories = profilesIn(parentDirectory);
    for (const QFileInfo &directory : directories) {
        if (directory.lastModified() > newest)
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
    noteBrowser(0);
    removeAbandonedProfiles(parentOr(parentDirectory));
}

Profile::~Profile()
{
    if (m_directory.isValid())
        removeProfile(m_directory.path());
    if (m_lock >= 0)
        close(m_lock);
}

void Profile::noteBrowser(qint64 group) const
{
    const QByteArray note = QByteArray::number(getpid()) + ' ' + QByteArray::number(group) + '\n';
    if (m_lock >= 0)
        // Without the note a crash leaves more to the next run, which cleans up by the lock alone.
        [[maybe_unused]]
        const ssize_t written = pwrite(m_lock, note.constData(), size_t(note.size()), 0);
}

QList<LeftProfile> profilesLeftBy(qint64 processId)
{
    QList<LeftProfile> left;
    const QFileInfoList directories = profilesIn(QDir::tempPath());
    for (const QFileInfo &directory : directories) {
        const int lock = takeLock(directory.filePath(), 0);
        if (lock < 0)
            continue;
        QFile note;
        note.open(lock, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
        const QList<QByteArray> words = note.readAll().trimmed().split(' ');
        if (words.size() == 2 && words.first().toLongLong() == processId)
            left.append({directory.filePath(), words.last().toLongLong()});
    }
    return left;
}

void removeProfile(const QString &path)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (QFileInfo::exists(path) && !QDir(path).removeRecursively() && elapsed.elapsed() < removalLimitMs)
        QThread::msleep(removalPauseMs);
}

} // namespace Ostrel::Host
