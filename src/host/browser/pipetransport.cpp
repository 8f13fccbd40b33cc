#include "host/browser/pipetransport.h"

#include <QPointer>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Ostrel::Host {

namespace {

constexpr std::size_t chunkSize = 64 * 1024;

void makeNonBlocking(int descriptor)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// A dump's script fills a pipe of the usual size hundreds of times, and each time the other side must be
// woken. Where the system refuses, the pipe works all the same.
void enlarge(int descriptor)
{
    constexpr int size = 1024 * 1024;
    fcntl(descriptor, F_SETPIPE_SZ, size);
}

// Writing to a browser that has just died must be an error to handle, not the end of the host. A handler that
// the program has installed itself stays.
void ignoreBrokenPipes()
{
    struct sigaction current = {};
    if (sigaction(SIGPIPE, nullptr, &current) == 0 && current.sa_handler == SIG_DFL)
        std::signal(SIGPIPE, SIG_IGN);
}

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

} // namespace

PipeTransport::PipeTransport(int readDescriptor, int writeDescriptor, QObject *parent)
    : Transport(parent), m_readDescriptor(readDescriptor), m_writeDescriptor(writeDescriptor),
      m_readable(std::make_unique<QSocketNotifier>(readDescriptor, QSocketNotifier::Read)),
      m_writable(std::make_unique<QSocketNotifier>(writeDescriptor, QSocketNotifier::Write))
{
    ignoreBrokenPipes();
    enlarge(readDescriptor);
    enlarge(writeDescriptor);
    makeNonBlocking(readDescriptor);
    makeNonBlocking(writeDescriptor);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &PipeTransport::readAvailable);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &PipeTransport::writePending);
}

PipeTransport::~PipeTransport()
{
    PipeTransport::close();
}

void PipeTransport::send(const QByteArray &text)
{
    if (m_writeDescriptor < 0)
        return;
    m_unsent.append(text);
    writePending();
}

void PipeTransport::close()
{
    if (m_writeDescriptor < 0)
        return;
    // A notifier may be the caller's caller, so it is silenced now and deleted later.
    m_readable->setEnabled(false);
    m_writable->setEnabled(false);
    m_readable.release()->deleteLater();
    m_writable.release()->deleteLater();
    ::close(m_readDescriptor);
    ::close(m_writeDescriptor);
    m_readDescriptor = m_writeDescriptor = -1;
}

void PipeTransport::readAvailable()
{
    std::array<char, chunkSize> chunk;
    while (m_readDescriptor >= 0) {
        const ssize_t count = ::read(m_readDescriptor, chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && wouldBlock())
            break;
        if (count <= 0) {
            m_atEnd = true;
            m_readable->setEnabled(false);
            break;
        }
        QByteArrayView rest(chunk.data(), count);
        for (qsizetype end = rest.indexOf('\0'); end >= 0; end = rest.indexOf('\0')) {
            m_incomplete.append(rest.first(end));
            m_complete.append(std::exchange(m_incomplete, {}));
            rest = rest.sliced(end + 1);
        }
        m_incomplete.append(rest);
    }
    handOn();
}

// A receiver may run a nested event loop that waits for one of the texts behind its own, so that loop is told
// to come here again.
void PipeTransport::handOn()
{
    QPointer<PipeTransport> self(this);
    while (self && !m_complete.isEmpty()) {
        const QByteArray text = m_complete.takeFirst();
        if (!m_complete.isEmpty() || m_atEnd)
            QMetaObject::invokeMethod(this, &PipeTransport::handOn, Qt::QueuedConnection);
        Q_EMIT textReceived(text);
    }
    if (self && m_atEnd)
        lose();
}

void PipeTransport::writePending()
{
    while (m_writeDescriptor >= 0 && !m_unsent.isEmpty()) {
        // The byte behind the text, which ends every QByteArray, ends it in the pipe, too.
        const QByteArray &text = m_unsent.first();
        const ssize_t count
            = ::write(m_writeDescriptor, text.constData() + m_sent, std::size_t(text.size() + 1 - m_sent));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            // The reading side notices a lost browser, so that all texts that came before are still handed
            // on.
            if (!wouldBlock()) {
                m_unsent.clear();
                m_sent = 0;
            }
            break;
        }
        m_sent += count;
        if (m_sent > text.size()) {
            m_unsent.removeFirst();
            m_sent = 0;
        }
    }
    if (m_writeDescriptor >= 0)
        m_writable->setEnabled(!m_unsent.isEmpty());
}

void PipeTransport::lose()
{
    if (m_readDescriptor < 0)
        return;
    close();
    Q_EMIT closed();
}

} // namespace Ostrel::Host
