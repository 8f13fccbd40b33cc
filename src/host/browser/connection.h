// Connection: commands and events of the browser's debugging protocol over a Transport.
#pragma once

#include "host/browser/pendingcommands.h"
#include "host/browser/protocolmessage.h"
#include "host/browser/transport.h"

#include <QHash>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>

#include <memory>
#include <utility>

namespace Ostrel::Host {

/// Each text that goes out or comes in, one a line: ">> " or "<< " and the text, cut at 500 bytes.
Q_DECLARE_LOGGING_CATEGORY(protocolLog)

/// One browser, many sessions (one for each tab; the empty session is the browser itself).
class Connection : public QObject
{
    Q_OBJECT

public:
    using Listener = std::function<void(const QJsonObject &parameters)>;

    explicit Connection(std::unique_ptr<Transport> transport, QObject *parent = nullptr);
    ~Connection() override;

    bool isOpen() const { return m_open; }

    /// Sends a command; `reply` runs exactly once, at the latest when the browser is lost. Gives the id for
    /// giveUp(), or 0 when the connection is closed; the reply has then run already.
    int send(const QString &sessionId, const QString &method, CommandParameters parameters = {},
        CommandReply reply = {});

    /// The answer is not wanted any more: the reply runs now with `reason`, a late answer is dropped
    /// silently.
    void giveUp(int id, const QString &reason);

    /// Calls `listener` for each such event of the session, until `context` is gone.
    void listen(const QString &sessionId, const QString &method, QObject *context, Listener listener);

    /// The session is gone: its waiting commands end with `reason`, its listeners are forgotten.
    void endSession(const QString &sessionId, const QString &reason);

    /// Ends everything; the waiting commands get `reason`. Does nothing when the connection is closed
    /// already.
    void close(const QString &reason);

Q_SIGNALS:
    /// The browser is gone without being asked to. Waiting commands have been ended before.
    void lost();

private:
    struct Subscription
    {
        QPointer<QObject> context;
        Listener listener;
    };
    using EventKey = std::pair<QString, QString>; ///< session and method

    void receive(const QByteArray &text);
    void dispatchEvent(const EventKey &key, const QJsonObject &parameters);

    std::unique_ptr<Transport> m_transport;
    PendingCommands m_pending;
    QHash<EventKey, QList<Subscription>> m_subscriptions;
    bool m_open = true;
};

} // namespace Ostrel::Host
