// HttpRequestReader: the smallest reader of HTTP/1.1 requests that serves pages on the loopback address.
#pragma once

#include <QByteArray>
#include <QMap>

namespace Ostrel::Host {

struct HttpRequest
{
    QByteArray method;
    QByteArray target; ///< path and query as they were sent
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;

    QByteArray path() const
    {
        return target.left(target.indexOf('?') < 0 ? target.size() : target.indexOf('?'));
    }
    QByteArray query() const
    {
        return target.indexOf('?') < 0 ? QByteArray() : target.mid(target.indexOf('?') + 1);
    }
};

/// Fed with what the socket gives, in pieces of any size.
class HttpRequestReader
{
public:
    static constexpr qsizetype largestHead = 64 * 1024;
    static constexpr qsizetype largestBody = 16 * 1024 * 1024;

    enum class State {
        Incomplete, ///< more has to come
        Complete, ///< take() gives a request
        Malformed, ///< this is no HTTP request; nothing more can be read
        TooLarge, ///< head or body exceed their limits; nothing more can be read
    };

    State feed(const QByteArray &data);

    /// The request that is complete. What came behind it counts for the next one: feed() it with nothing.
    HttpRequest take();

private:
    State readHead();

    QByteArray m_buffer;
    HttpRequest m_request;
    qsizetype m_bodyLength = -1; ///< -1 while the head is not complete
    State m_state = State::Incomplete;
};

/// A whole response; `status` is code and reason, "404 Not Found". The connection is kept open or closed as
/// told.
QByteArray composeHttpResponse(const QByteArray &status, const QByteArray &contentType,
    const QByteArray &body, bool keepOpen, const QByteArray &extraHeaders = {});

} // namespace Ostrel::Host
