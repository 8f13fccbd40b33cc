// CommandRun: a run of the pageprobe command as a process of its own, and whether it cleaned up after itself.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace Ostrel::Test {

/// How a run ended and what it said.
struct Ended
{
    int exitCode = -1; ///< -1 when it was ended by a signal or did not end in time
    QString out;
    QString err;
};

/// Has a folder of its own in which all lies that the command reads and writes: test scripts, an installation
/// prefix, the user's settings and the temporary files. Nothing of the developer's own settings gets in.
class CommandRun
{
public:
    static constexpr int defaultLimitMs = 60000;

    CommandRun();
    ~CommandRun();
    Q_DISABLE_COPY_MOVE(CommandRun)

    /// Writes a file into the folder, with the directories that it needs, and gives its full path.
    QString write(const QString &name, const QByteArray &content);
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Where the settings files lie: write() them under these names.
    static QString globalSettings();
    static QString userSettings();

    void setVariable(const QString &name, const QString &value) { m_environment.insert(name, value); }

    void start(const QStringList &arguments);
    Ended finish(int limitMs = defaultLimitMs);

    /// Both in one.
    Ended run(const QStringList &arguments);

    /// Writes `script` as "script.js" and runs it on the pages of `servedFolder`.
    Ended runScript(
        const QByteArray &script, const QString &servedFolder = {}, const QStringList &options = {});

    /// The same without waiting for the end.
    void startScript(
        const QByteArray &script, const QString &servedFolder = {}, const QStringList &options = {});

    /// Waits until the command has written `text` to its standard output.
    bool waitForOutput(const QString &text);

    /// What the command has written to its standard output so far.
    QString output();

    qint64 processId() const { return m_process.processId(); }

    /// The processes in which the command runs its scripts, one for each that runs now.
    QList<qint64> workers() const { return childrenOf({processId()}); }

    /// The browsers of these.
    QList<qint64> browsers() const { return childrenOf(workers()); }

    /// Processes that stay behind: each that was started with the temporary folder of this run and does not
    /// end by itself. The browser's crash handlers notice only after a while that their browser is gone.
    QStringList leftProcesses() const;

    /// What lies in the temporary folder of this run.
    QStringList leftFiles() const;

private:
    static QList<qint64> childrenOf(const QList<qint64> &parents);
    QStringList processesOfRun() const;
    void collect();

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QProcess m_process;
    QByteArray m_out;
    QByteArray m_err;
};

} // namespace Ostrel::Test
