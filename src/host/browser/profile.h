// Profile: the temporary user data directory of one browser.
#pragma once

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

private:
    QTemporaryDir m_directory;
    int m_lock = -1;
};

} // namespace Ostrel::Host
