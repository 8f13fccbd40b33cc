// FakeTransport: records the texts that are sent and plays those of the browser.
#pragma once

#include "host/browser/transport.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

#include <functional>

namespace Ostrel::Host {

class FakeTransport : public Transport
{
public:
    /// Called with each command that is sent; may receive() at once or later.
    std::function<void(const QJsonObject &command)> onCommand;

    QByteArrayList texts() const { return m_texts; }
    bool isClosed() const { return m_closed; }

    QStringList methods() const
    {
        QStringList names;
        for (const QByteArray &text : m_texts)
            names.append(
                QJsonDocument::fromJson(text).object().value(QLatin1StringView("method")).toString());
        return names;
    }

    QJsonObject lastCommand() const { return QJsonDocument::fromJson(m_texts.last()).object(); }

    void receive(const QByteArray &text) { Q_EMIT textReceived(text); }
    void receive(const QJsonObject &message)
    {
        receive(QJsonDocument(message).toJson(QJsonDocument::Compact));
    }

    /// The browser goes away.
    void drop() { Q_EMIT closed(); }

    void send(const QByteArray &text) override
    {
        m_texts.append(text);
        if (onCommand)
            onCommand(QJsonDocument::fromJson(text).object());
    }
    void close() override { m_closed = true; }

private:
    QByteArrayList m_texts;
    bool m_closed = false;
};

} // namespace Ostrel::Host
