#include "host/staticserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

struct TypeRow
{
    QLatin1StringView suffix;
    const char *contentType;
};

constexpr std::array contentTypes{
    TypeRow{"html"_L1, "text/html; charset=utf-8"},
    TypeRow{"htm"_L1, "text/html; charset=utf-8"},
    TypeRow{"xhtml"_L1, "application/xhtml+xml; charset=utf-8"},
    TypeRow{"css"_L1, "text/css; charset=utf-8"},
    TypeRow{"js"_L1, "text/javascript; charset=utf-8"},
    TypeRow{"mjs"_L1, "text/javascript; charset=utf-8"},
    TypeRow{"json"_L1, "application/json; charset=utf-8"},
    TypeRow{"txt"_L1, "text/plain; charset=utf-8"},
    TypeRow{"xml"_L1, "text/xml; charset=utf-8"},
    TypeRow{"svg"_L1, "image/svg+xml"},
    TypeRow{"png"_L1, "image/png"},
    TypeRow{"jpg"_L1, "image/jpeg"},
    TypeRow{"jpeg"_L1, "image/jpeg"},
    TypeRow{"gif"_L1, "image/gif"},
    TypeRow{"ico"_L1, "image/x-icon"},
    TypeRow{"woff2"_L1, "font/woff2"},
    TypeRow{"wasm"_L1, "application/wasm"},
};

QByteArray contentTypeOf(const QString &file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    for (const TypeRow &row : contentTypes) {
        if (suffix == row.suffix)
            return row.contentType;
    }
    return "application/octet-stream";
}

HttpResponse refusal(const QByteArray &status)
{
    HttpResponse response;
    response.status = response.body = status;
    return response;
}

QString localPath(const QString &root, const QByteArray &requestPath)
{
    return root + QString::fromUtf8(QByteArray::fromPercentEncoding(requestPath));
}

bool isDirectory(const QString &root, const QByteArray &requestPath)
{
    const QString canonical = QFileInfo(localPath(root, requestPath)).canonicalFilePath();
    return (canonical == root || canonical.startsWith(root + u'/')) && QFileInfo(canonical).isDir();
}

// The file that a path of a request stands for, with all links followed; empty when it is not below the root.
QString fileFor(const QString &root, const QByteArray &requestPath)
{
    QString path = localPath(root, requestPath);
    if (isDirectory(root, requestPath))
        path += u"index.html"_s;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.startsWith(root + u'/') ? canonical : QString();
}

} // namespace

StaticServer::StaticServer(const QString &rootDirectory, quint16 port, QObject *parent)
    : QObject(parent), m_root(QDir(rootDirectory).canonicalPath()),
      m_server([this](const HttpRequest &request) { return respond(request); }),
      m_listening(m_server.listen(port))
{
}

QString StaticServer::url(const QString &path) const
{
    return u"http://127.0.0.1:%1/%2"_s.arg(QString::number(port()), path);
}

HttpResponse StaticServer::respond(const HttpRequest &request) const
{
    if (request.method != "GET" && request.method != "HEAD")
        return refusal("405 Method Not Allowed");
    if (localPath(m_root, request.path()).contains(QChar::Null))
        return refusal("404 Not Found");
    // Without its last "/" a directory's relative links would go astray.
    if (isDirectory(m_root, request.path()) && !request.path().endsWith('/')) {
        HttpResponse redirect = refusal("301 Moved Permanently");
        redirect.extraHeaders = "Location: " + request.path() + "/\r\n";
        return redirect;
    }
    const QString name = fileFor(m_root, request.path());
    QFile file(name);
    if (name.isEmpty() || !QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly))
        return refusal("404 Not Found");
    HttpResponse response;
    response.contentType = contentTypeOf(name);
    response.extraHeaders = m_extraHeaders;
    if (request.method == "GET")
        response.body = file.readAll();
    return response;
}

} // namespace Ostrel::Host
