// HttpServer: accepts connections on the loopback address and hands each request to one function.
#pragma once

#include "host/channel/httprequest.h"

#include <QObject>
#include <QTcpServer>

#include <functional>

class QTcpSocket;

namespace Ostrel::Host {

struct HttpResponse
{
    QByteArray status = "200 OK";
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    QByteArray extraHeaders; ///< whole lines, each with its line end

    /// Runs when the response is on its way, if set: work that may take long or evaluate script.
    std::function<void()> afterwards;
};

/// Listens on 127.0.0.1 only. A connection that sends nothing sensible is closed, one that is slow after a
/// limit.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<HttpResponse(const HttpRequest &)>;

    explicit HttpServer(Handler handler, QObject *parent = nullptr);

    /// Listens on a free port, or on `port` when it is not 0. False when that fails.
    bool listen(quint16 port = 0);
    quint16 port() const { return m_server.serverPort(); }

    /// How long a connection may take for one request, in milliseconds.
    void setRequestLimit(int limitMs) { m_requestLimitMs = limitMs; }

private:
    void accept();
    bool serveRequests(QTcpSocket *socket, HttpRequestReader &reader);

    Handler m_handler;
    QTcpServer m_server;
    int m_requestLimitMs = 30000;
};

} // namespace Ostrel::Host
