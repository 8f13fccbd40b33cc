#include "e2e/commandrun.h"

#include "support/waitfor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {

namespace {

const QString command = QStringLiteral(PAGEPROBE_COMMAND);
const QString temporaryFolder = u"tmp"_s;

QByteArray readProcessFile(const QString &process, const QString &name)
{
    QFile file(u"/proc/%1/%2"_s.arg(process, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList processIds()
{
    return QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
}

// The fields of /proc/<id>/stat behind the name, which stands in brackets and may hold anything: state,
// parent and others.
QList<QByteArray> statusFields(const QString &process)
{
    const QByteArray status = readProcessFile(process, u"stat"_s);
    return status.mid(status.lastIndexOf(')') + 2).split(' ');
}

} // namespace

CommandRun::CommandRun() : m_environment(QProcessEnvironment::systemEnvironment())
{
    const QStringList names = m_environment.keys();
    for (const QString &name : names) {
        if (name.startsWith("OSTREL_"_L1))
            m_environment.remove(name);
    }
    QDir(m_folder.path()).mkdir(temporaryFolder);
    setVariable(u"TMPDIR"_s, path(temporaryFolder));
    setVariable(u"OSTREL_PREFIX"_s, path(u"prefix"_s));
    setVariable(u"OSTREL_USER_SETTINGS_DIR"_s, path(u"user"_s));
    setVariable(u"LC_ALL"_s, u"C.UTF-8"_s);
}

CommandRun::~CommandRun()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QString CommandRun::globalSettings()
{
    return u"prefix/etc/webwrapper.ini"_s;
}

QString CommandRun::userSettings()
{
    return u"user/ver1/webwrapper.ini"_s;
}

QString CommandRun::write(const QString &name, const QByteArray &content)
{
    QFile file(path(name));
    EXPECT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(content);
    return file.fileName();
}

void CommandRun::start(const QStringList &arguments)
{
    m_out.clear();
    m_err.clear();
    m_process.setProcessEnvironment(m_environment);
    m_process.setWorkingDirectory(m_folder.path());
    m_process.start(command, arguments);
    ASSERT_TRUE(m_process.waitForStarted()) << command.toStdString();
}

void CommandRun::collect()
{
    m_out += m_process.readAllStandardOutput();
    m_err += m_process.readAllStandardError();
}

Ended CommandRun::finish(int limitMs)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(limitMs)) {
        ADD_FAILURE() << "The command did not end within " << limitMs << " ms.";
        m_process.kill();
        m_process.waitForFinished();
    }
    collect();
    const bool exited = m_process.exitStatus() == QProcess::NormalExit;
    return {exited ? m_process.exitCode() : -1, QString::fromUtf8(m_out), QString::fromUtf8(m_err)};
}

Ended CommandRun::run(const QStringList &arguments)
{
    start(arguments);
    return finish();
}

void CommandRun::startScript(
    const QByteArray &script, const QString &servedFolder, const QStringList &options)
{
    write(u"script.js"_s, script);
    QStringList arguments{u"run"_s, u"script.js"_s};
    if (!servedFolder.isEmpty())
        arguments << u"--serve"_s << servedFolder;
    start(arguments + options);
}

Ended CommandRun::runScript(const QByteArray &script, const QString &servedFolder, const QStringList &options)
{
    startScript(script, servedFolder, options);
    return finish();
}

QString CommandRun::output()
{
    collect();
    return QString::fromUtf8(m_out);
}

bool CommandRun::waitForOutput(const QString &text)
{
    return waitFor([&] { return output().contains(text); }, defaultLimitMs);
}

QList<qint64> CommandRun::childrenOf(const QList<qint64> &parents)
{
    QList<qint64> found;
    const QStringList ids = processIds();
    for (const QString &id : ids) {
        const QList<QByteArray> fields = statusFields(id);
        if (fields.size() > 1 && fields.at(0) != "Z" && parents.contains(fields.at(1).toLongLong()))
            found.append(id.toLongLong());
    }
    return found;
}

QStringList CommandRun::leftProcesses() const
{
    QStringList left;
    waitFor([&] {
        left = processesOfRun();
        return left.isEmpty();
    });
    return left;
}

QStringList CommandRun::processesOfRun() const
{
    QStringList found;
    const QStringList ids = processIds();
    for (const QString &id : ids) {
        const QByteArray commandLine = readProcessFile(id, u"cmdline"_s);
        const QByteArray all = commandLine + readProcessFile(id, u"environ"_s);
        if (all.contains(path(temporaryFolder).toLocal8Bit()))
            found.append(u"%1: %2"_s.arg(id, QString::fromLocal8Bit(commandLine).replace(QChar::Null, u' ')));
    }
    return found;
}

QStringList CommandRun::leftFiles() const
{
    return QDir(path(temporaryFolder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace Ostrel::Test
