#include "host/browser/connection.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

Q_LOGGING_CATEGORY(protocolLog, "pageprobe.protocol", QtWarningMsg)

namespace {

constexpr qsizetype longestLoggedText = 500;
const QString browserGone = u"The browser has closed or crashed"_s;

void logText(const char *direction, const QByteArray &text)
{
    qCDebug(protocolLog).noquote() << direction << text.first(qMin(text.size(), longestLoggedText));
}

} // namespace

Connection::Connection(std::unique_ptr<Transport> transport, QObject *parent)
    : QObject(parent), m_transport(std::move(transport))
{
    connect(m_transport.get(), &Transport::textReceived, this, &Connection::receive);
    connect(m_transport.get(), &Transport::closed, this, [this] {
        if (!m_open)
            return;
        close(browserGone);
        Q_EMIT lost();
    });
}

Connection::~Connection()
{
    close(browserGone);
}

int Connection::send(
    const QString &sessionId, const QString &method, CommandParameters parameters, CommandReply reply)
{
    if (!m_open) {
        if (reply)
            reply(Failure(u"%1: %2"_s.arg(method, browserGone)));
        return 0;
    }
    const int id = m_pending.add(sessionId, method, std::move(reply));
    const QByteArray text = composeCommand(id, sessionId, method, std::move(parameters));
    logText(">>", text);
    m_transport->send(text);
    return id;
}

void Connection::giveUp(int id, const QString &reason)
{
    m_pending.giveUp(id, reason);
}

void Connection::listen(const QString &sessionId, const QString &method, QObject *context, Listener listener)
{
    m_subscriptions[{sessionId, method}].append({context, std::move(listener)});
}

void Connection::endSession(const QString &sessionId, const QString &reason)
{
    m_subscriptions.removeIf([&](const auto &entry) { return entry.key().first == sessionId; });
    m_pending.rejectSession(sessionId, reason);
}

void Connection::close(const QString &reason)
{
    if (!m_open)
        return;
    m_open = false;
    m_transport->close();
    m_pending.rejectAll(reason);
}

void Connection::receive(const QByteArray &text)
{
    logText("<<", text);
    const std::optional<ProtocolMessage> message = parseProtocolMessage(text);
    if (!message) {
        qCWarning(protocolLog).noquote() << "The browser sent a text that is no message:"
                                         << text.first(qMin(text.size(), longestLoggedText));
        return;
    }
    if (message->id == 0) {
        dispatchEvent({message->sessionId, message->method}, message->content);
        return;
    }
    const bool awaited = message->error.isEmpty() ? m_pending.resolve(message->id, message->content)
                                                  : m_pending.reject(message->id, message->error);
    if (!awaited)
        qCWarning(protocolLog) << "The browser answered a command that was never sent:" << message->id;
}

// A listener may add listeners, end the session or run a nested event loop, so the list is taken as it is
// now.
void Connection::dispatchEvent(const EventKey &key, const QJsonObject &parameters)
{
    QList<Subscription> &subscriptions = m_subscriptions[key];
    subscriptions.removeIf([](const Subscription &entry) { return entry.context.isNull(); });
    const QList<Subscription> now = subscriptions;
    for (const Subscription &entry : now) {
        if (entry.context)
            entry.listener(parameters);
    }
}

} // namespace Ostrel::Host
