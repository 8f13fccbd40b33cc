// StaticServer: serves the files of one directory on the loopback address.
#pragma once

#include "host/channel/httpserver.h"

#include <QObject>
#include <QString>

namespace Ostrel::Host {

/// Serves until it is destroyed. Queries are ignored, a directory gives its index.html, and nothing outside
/// the root directory is ever read, be it named by "..", by encoded characters or through a symbolic link.
class StaticServer : public QObject
{
    Q_OBJECT

public:
    /// Listens at once, on a free port or on `port`.
    explicit StaticServer(const QString &rootDirectory, quint16 port = 0, QObject *parent = nullptr);

    bool isListening() const { return m_listening; }
    quint16 port() const { return m_server.port(); }

    /// The address of a file below the root: url(u"shop/index.html"_s).
    QString url(const QString &path = {}) const;

    /// Lines that go into the head of each response, each with its line end: security policies and the like.
    void setExtraHeaders(const QByteArray &headers) { m_extraHeaders = headers; }

private:
    HttpResponse respond(const HttpRequest &request) const;

    QString m_root; ///< canonical
    QByteArray m_extraHeaders;
    HttpServer m_server;
    bool m_listening;
};

} // namespace Ostrel::Host
