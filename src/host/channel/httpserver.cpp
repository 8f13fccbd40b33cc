#include "host/channel/httpserver.h"

#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace Ostrel::Host {

namespace {

void refuse(QTcpSocket *socket, const QByteArray &status)
{
    socket->write(composeHttpResponse(status, "text/plain; charset=utf-8", status, false));
    socket->disconnectFromHost();
}

bool wantsToStay(const HttpRequest &request)
{
    return request.headers.value("connection").toLower() != "close";
}

} // namespace

HttpServer::HttpServer(Handler handler, QObject *parent) : QObject(parent), m_handler(std::move(handler))
{
    connect(&m_server, &QTcpServer::newConnection, this, &HttpServer::accept);
}

bool HttpServer::listen(quint16 port)
{
    return m_server.listen(QHostAddress::LocalHost, port);
}

void HttpServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto reader = std::make_shared<HttpRequestReader>();
        auto *limit = new QTimer(socket);
        limit->setSingleShot(true);
        limit->start(m_requestLimitMs);
        connect(limit, &QTimer::timeout, socket, &QTcpSocket::disconnectFromHost);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, reader, limit] {
            if (serveRequests(socket, *reader))
                limit->start(m_requestLimitMs);
        });
    }
}

// True when a request was served. Several may come in one piece. What is to be done after a response waits
// until the socket's signal is over, since it may run a nested event loop and the socket signals nothing
// meanwhile.
bool HttpServer::serveRequests(QTcpSocket *socket, HttpRequestReader &reader)
{
    bool served = false;
    HttpRequestReader::State state = reader.feed(socket->readAll());
    while (state == HttpRequestReader::State::Complete) {
        const HttpRequest request = reader.take();
        const HttpResponse response = m_handler(request);
        const bool stays = wantsToStay(request);
        socket->write(composeHttpResponse(
            response.status, response.contentType, response.body, stays, response.extraHeaders));
        if (response.afterwards)
            QMetaObject::invokeMethod(this, response.afterwards, Qt::QueuedConnection);
        if (!stays) {
            socket->disconnectFromHost();
            return true;
        }
        served = true;
        state = reader.feed({});
    }
    if (state == HttpRequestReader::State::Malformed)
        refuse(socket, "400 Bad Request");
    else if (state == HttpRequestReader::State::TooLarge)
        refuse(socket, "413 Content Too Large");
    return served;
}

} // namespace Ostrel::Host
