// Profile: the temporary user data directory of one browser.
#pragma once

#include <QList>
#include <QString>
#include <QTemporaryDir>

namespace Ostrel::Host {

/// Makes a fresh directory and removes it when destroyed. A host that was killed cannot clean up after
/// itself, so each new profile also removes those whose host is gone: a living host holds a lock in its
/// directory.
class Profile
{
public:
    /// `parentDirectory` is where the profiles lie; the system's temporary directory when left out.
    explicit Profile(const QString &parentDirectory = {});
    ~Profile();
    Q_DISABLE_COPY_MOVE(Profile)

    bool isValid() const { return m_directory.isValid(); }
    QString path() const { return m_directory.path(); }

    /// Notes in the directory which process group uses it, for those who clean up after this process.
    void noteBrowser(qint64 group) const;

private:
    QTemporaryDir m_directory;
    int m_lock = -1;
};

/// What a process that has died left behind.
struct LeftProfile
{
    QString path;
    qint64 browserGroup = 0; ///< 0 when its browser had not been started
};

/// The profiles in the system's temporary directory that a process made which is dead by now.
QList<LeftProfile> profilesLeftBy(qint64 processId);

/// Removes a directory, for a while again and again: a browser that has just been killed may still have a
/// helper that writes a last file.
void removeProfile(const QString &path);

} // namespace Ostrel::Host
