// BrowserProcess: finds, starts and ends the browser program.
#pragma once

#include "host/browser/profile.h"
#include "host/browser/transport.h"
#include "ostrelhook/functioncallresult.h"

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <memory>

namespace Ostrel::Host {

/// Where to find the browser: `explicitPath` when given, else the environment variable PAGEPROBE_BROWSER,
/// else the well-known names in PATH. The error lists the places that were looked at.
FunctionCallResult<QString> findBrowser(const QString &explicitPath);

/// The processes of one browser, with its profile. Nothing of it outlives this object.
class BrowserProcess : public QObject
{
    Q_OBJECT

public:
    explicit BrowserProcess(QObject *parent = nullptr);
    ~BrowserProcess() override;

    /// Starts `executable` and gives the transport that talks to it. The browser may still end at once; then
    /// ended() comes.
    FunctionCallResult<std::unique_ptr<Transport>> start(
        const QString &executable, const QStringList &arguments);

    /// Ends the browser at once, with all its processes. Blocks for a few seconds at most. The profile is
    /// gone afterwards.
    void stop();

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    qint64 processId() const { return m_group; }
    QString profilePath() const { return m_profile ? m_profile->path() : QString(); }

    /// Ends the browsers that a process of this program has left behind, which died without cleaning up, and
    /// removes their profiles. Blocks like stop(). Only for a process that was this one's child: nobody else
    /// can know that it is dead.
    static void cleanUpAfter(qint64 processId);

    /// Waits a moment for a process that is about to end. False when it still runs.
    bool waitForEnd();

    /// How the process ended and the last lines that it wrote, for messages.
    QString describeEnd() const;

Q_SIGNALS:
    void ended();

private:
    QProcess m_process;
    std::unique_ptr<Profile> m_profile;
    qint64 m_group = 0; ///< the browser leads a process group of its own
    QByteArray m_lastOutput;
};

} // namespace Ostrel::Host
