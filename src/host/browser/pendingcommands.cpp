#include "host/browser/pendingcommands.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

int PendingCommands::add(const QString &sessionId, const QString &method, CommandReply reply)
{
    m_commands.insert(++m_lastId, {sessionId, method, std::move(reply)});
    return m_lastId;
}

bool PendingCommands::resolve(int id, const QJsonObject &result)
{
    return m_givenUp.remove(id) || finish(id, result);
}

bool PendingCommands::reject(int id, const QString &message)
{
    if (m_givenUp.remove(id))
        return true;
    if (!m_commands.contains(id))
        return false;
    finishWithError(id, message);
    return true;
}

void PendingCommands::rejectSession(const QString &sessionId, const QString &reason)
{
    QList<int> ids;
    for (auto command = m_commands.cbegin(); command != m_commands.cend(); ++command) {
        if (command->sessionId == sessionId)
            ids.append(command.key());
    }
    for (int id : std::as_const(ids))
        giveUp(id, reason); // the browser may yet answer what was on its way
}

void PendingCommands::rejectAll(const QString &reason)
{
    const QList<int> ids = m_commands.keys();
    for (int id : ids)
        finishWithError(id, reason);
    m_givenUp.clear();
}

void PendingCommands::giveUp(int id, const QString &reason)
{
    if (!m_commands.contains(id))
        return;
    m_givenUp.insert(id);
    finishWithError(id, reason);
}

// The command leaves the list before its reply runs, so that nothing the reply does can run it again.
bool PendingCommands::finish(int id, const CommandResult &result)
{
    const auto found = m_commands.constFind(id);
    if (found == m_commands.cend())
        return false;
    const CommandReply reply = found->reply;
    m_commands.erase(found);
    if (reply)
        reply(result);
    return true;
}

void PendingCommands::finishWithError(int id, const QString &message)
{
    const auto found = m_commands.constFind(id);
    if (found != m_commands.cend())
        finish(id, Failure(u"%1: %2"_s.arg(found->method, message)));
}

} // namespace Ostrel::Host
