// Transport: carries protocol texts to and from a browser. The lowest layer; everything above it runs on
// fakes too.
#pragma once

#include <QByteArray>
#include <QObject>

namespace Ostrel::Host {

/// A two-way channel of whole UTF-8 texts. Lives on the thread that drives the browser.
class Transport : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Queues one text; it goes out in order. After closed() it is dropped, since nobody is left to read it.
    virtual void send(const QByteArray &text) = 0;

    /// Ends the channel from this side. No closed() follows, since the caller knows.
    virtual void close() = 0;

Q_SIGNALS:
    void textReceived(const QByteArray &text);

    /// The other side is gone. Sent once, and no text comes after it.
    void closed();
};

} // namespace Ostrel::Host
