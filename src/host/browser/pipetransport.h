// PipeTransport: protocol texts over two pipes, each text ended by a NUL byte.
#pragma once

#include "host/browser/transport.h"

#include <QByteArrayList>

#include <memory>

class QSocketNotifier;

namespace Ostrel::Host {

/// Owns the two descriptors, makes them non-blocking and closes them. A browser that is slow to read never
/// blocks the host: what the pipe does not take is kept and sent on when there is room.
class PipeTransport : public Transport
{
    Q_OBJECT

public:
    PipeTransport(int readDescriptor, int writeDescriptor, QObject *parent = nullptr);
    ~PipeTransport() override;

    void send(const QByteArray &text) override;
    void close() override;

private:
    void readAvailable();
    void handOn();
    void writePending();
    void lose();

    int m_readDescriptor;
    int m_writeDescriptor;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    QByteArray m_incomplete; ///< the start of a text whose NUL has not come yet
    QByteArrayList m_complete; ///< whole texts that wait for their turn
    bool m_atEnd = false; ///< the browser has closed its side
    QByteArrayList m_unsent;
    qsizetype m_sent = 0; ///< how much of the first of them is on its way
};

} // namespace Ostrel::Host
