// PendingCommands: the commands that wait for their answer. Each reply runs exactly once, whatever happens.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QString>

#include <functional>

namespace Ostrel::Host {

/// The answer to a command, or why there is none.
using CommandResult = FunctionCallResult<QJsonObject>;
using CommandReply = std::function<void(const CommandResult &)>;

/// Errors read "<method>: <what went wrong>". A reply may add, resolve and reject commands itself.
class PendingCommands
{
public:
    /// Keeps `reply` until the answer comes, and gives the id to send.
    int add(const QString &sessionId, const QString &method, CommandReply reply);

    /// Hands on an answer. False when nobody waits for this id and nobody has given up on it either.
    bool resolve(int id, const QJsonObject &result);
    bool reject(int id, const QString &message);

    /// Ends the commands of one session, or all of them, with the same reason.
    void rejectSession(const QString &sessionId, const QString &reason);
    void rejectAll(const QString &reason);

    /// Gives up on an answer: the reply runs now with `reason`, and the answer is dropped when it comes.
    void giveUp(int id, const QString &reason);

    qsizetype count() const { return m_commands.size(); }

private:
    struct Command
    {
        QString sessionId;
        QString method;
        CommandReply reply;
    };

    bool finish(int id, const CommandResult &result);
    void finishWithError(int id, const QString &message);

    int m_lastId = 0;
    QMap<int, Command> m_commands; ///< by id, so that they are ended in the order in which they were sent
    QSet<int> m_givenUp; ///< answers that may still come
};

} // namespace Ostrel::Host
