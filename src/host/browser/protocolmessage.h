// Parsing and composing protocol texts: free functions on text, so that tests can feed them anything.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

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

/// The text of a command; an empty session addresses the browser itself.
QByteArray composeCommand(
    int id, const QString &sessionId, const QString &method, const QJsonObject &parameters);

} // namespace Ostrel::Host
