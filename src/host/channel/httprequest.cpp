#include "host/channel/httprequest.h"

#include <QList>

#include <utility>

namespace Ostrel::Host {

namespace {

constexpr QByteArrayView headEnd = "\r\n\r\n";

// "GET /path HTTP/1.1"
bool readRequestLine(const QByteArray &line, HttpRequest &request)
{
    const QList<QByteArray> words = line.split(' ');
    if (words.size() != 3 || words.at(0).isEmpty() || !words.at(1).startsWith('/')
        || !words.at(2).startsWith("HTTP/1."))
        return false;
    request.method = words.at(0);
    request.target = words.at(1);
    return true;
}

bool readHeaderLine(const QByteArray &line, HttpRequest &request)
{
    const qsizetype colon = line.indexOf(':');
    if (colon <= 0)
        return false;
    request.headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    return true;
}

} // namespace

HttpRequestReader::State HttpRequestReader::feed(const QByteArray &data)
{
    if (m_state == State::Malformed || m_state == State::TooLarge)
        return m_state;
    m_buffer += data;
    m_state = State::Incomplete;
    if (m_bodyLength < 0)
        m_state = readHead();
    if (m_state == State::Incomplete && m_bodyLength >= 0 && m_buffer.size() >= m_bodyLength) {
        m_request.body = m_buffer.left(m_bodyLength);
        m_buffer.remove(0, m_bodyLength);
        m_state = State::Complete;
    }
    return m_state;
}

HttpRequest HttpRequestReader::take()
{
    m_bodyLength = -1;
    m_state = State::Incomplete;
    return std::exchange(m_request, {});
}

// Leaves the buffer at the start of the body. A body in chunks is refused: no browser sends one unasked.
HttpRequestReader::State HttpRequestReader::readHead()
{
    const qsizetype end = m_buffer.indexOf(headEnd);
    if (end < 0)
        return m_buffer.size() > largestHead ? State::TooLarge : State::Incomplete;
    if (end > largestHead)
        return State::TooLarge;
    const QList<QByteArray> lines = m_buffer.left(end).replace("\r\n", "\n").split('\n');
    m_buffer.remove(0, end + headEnd.size());
    if (!readRequestLine(lines.first(), m_request))
        return State::Malformed;
    for (const QByteArray &line : lines.mid(1)) {
        if (!readHeaderLine(line, m_request))
            return State::Malformed;
    }
    if (m_request.headers.contains("transfer-encoding"))
        return State::Malformed;

    m_bodyLength = 0;
    if (m_request.headers.contains("content-length")) {
        bool isNumber = false;
        const qlonglong length = m_request.headers.value("content-length").toLongLong(&isNumber);
        if (!isNumber || length < 0)
            return State::Malformed;
        if (length > largestBody)
            return State::TooLarge;
        m_bodyLength = qsizetype(length);
    }
    return State::Incomplete;
}

QByteArray composeHttpResponse(const QByteArray &status, const QByteArray &contentType,
    const QByteArray &body, bool keepOpen, const QByteArray &extraHeaders)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + contentType + "\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\nCache-Control: no-store\r\nConnection: "
        + (keepOpen ? "keep-alive" : "close") + "\r\n" + extraHeaders + "\r\n" + body;
}

} // namespace Ostrel::Host
