// Parsing and composing protocol texts: free functions on text, so that tests can feed them anything.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <initializer_list>
#include <optional>
#include <utility>

namespace Ostrel::Host {

/// What the browser sent: the answer to a command (id above 0) or an event (id 0 and a method).
struct ProtocolMessage
{
    int id = 0;
    QString sessionId; ///< empty for the browser itself
    QString method; ///< events only
    QJsonObject content; ///< an answer's result or an event's parameters
    QString error; ///< an answer's error text; empty when the command succeeded
};

/// Nothing when the text is no message of the protocol: cut off, not JSON, neither answer nor event.
std::optional<ProtocolMessage> parseProtocolMessage(const QByteArray &text);

/// The parameters of a command as the text of a JSON object; empty when it has none. Who has a very large one
/// writes its text himself, which spares the copies on the way through a QJsonObject.
class CommandParameters
{
public:
    CommandParameters() = default;
    CommandParameters(const QJsonObject &members);
    CommandParameters(std::initializer_list<std::pair<QString, QJsonValue>> members);
    /// `object` is the text of a JSON object.
    static CommandParameters fromText(QByteArray object);

    /// The text, which is then gone from here.
    QByteArray takeText() { return std::exchange(m_text, {}); }

private:
    QByteArray m_text;
};

/// The text of a command; an empty session addresses the browser itself.
QByteArray composeCommand(
    int id, const QString &sessionId, const QString &method, CommandParameters parameters);

} // namespace Ostrel::Host
