// The loopback carrier and the static server over real sockets, with good requests and bad ones.
#include "host/channel/httprequest.h"
#include "host/channel/loopbackcarrier.h"
#include "host/channel/pagechannel.h"
#include "host/staticserver.h"
#include "support/printqt.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;

namespace Ostrel::Host {
namespace {

using State = HttpRequestReader::State;

TEST(HttpRequestReader, ReadsAGetAndAPost)
{
    HttpRequestReader reader;

    ASSERT_EQ(reader.feed("GET /a/?b=c HTTP/1.1\r\nHost: x\r\n\r\n"), State::Complete);
    const HttpRequest get = reader.take();
    EXPECT_EQ(get.method, "GET");
    EXPECT_EQ(get.path(), "/a/");
    EXPECT_EQ(get.query(), "b=c");

    ASSERT_EQ(reader.feed("POST / HTTP/1.1\r\nCONTENT-length: 4\r\n\r\nbodyGET /next HTTP/1.1\r\n\r\n"),
        State::Complete);
    EXPECT_EQ(reader.take().body, "body");
    ASSERT_EQ(reader.feed({}), State::Complete);
    EXPECT_EQ(reader.take().target, "/next");
    EXPECT_EQ(reader.feed({}), State::Incomplete);
}

TEST(HttpRequestReader, ReadsInPiecesOfOneByte)
{
    const QByteArray whole = "POST /p?q HTTP/1.1\r\nContent-Length: 5\r\n\r\nhello";
    HttpRequestReader reader;
    for (qsizetype i = 0; i < whole.size() - 1; ++i)
        ASSERT_EQ(reader.feed(whole.mid(i, 1)), State::Incomplete) << i;

    ASSERT_EQ(reader.feed(whole.last(1)), State::Complete);
    EXPECT_EQ(reader.take().body, "hello");
}

struct BadRequestRow
{
    const char *reason;
    QByteArray text;
    State expected;
};

TEST(HttpRequestReader, RefusesWhatIsNoRequest)
{
    const QList<BadRequestRow> rows{
        {"no HTTP", "hello\r\n\r\n", State::Malformed},
        {"no version", "GET /\r\n\r\n", State::Malformed},
        {"another protocol", "GET / SMTP/1.0\r\n\r\n", State::Malformed},
        {"a whole address as a proxy gets it", "GET http://x/ HTTP/1.1\r\n\r\n", State::Malformed},
        {"a header without a colon", "GET / HTTP/1.1\r\nnonsense\r\n\r\n", State::Malformed},
        {"a length that is no number", "POST / HTTP/1.1\r\nContent-Length: x\r\n\r\n", State::Malformed},
        {"a negative length", "POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", State::Malformed},
        {"a body in chunks", "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n", State::Malformed},
        {"a length beyond all measure", "POST / HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\n",
            State::TooLarge},
        {"a head without end", QByteArray(HttpRequestReader::largestHead + 1, 'x'), State::TooLarge},
    };
    for (const BadRequestRow &row : rows) {
        SCOPED_TRACE(row.reason);
        HttpRequestReader reader;
        EXPECT_EQ(reader.feed(row.text), row.expected);
        EXPECT_EQ(reader.feed("GET / HTTP/1.1\r\n\r\n"), row.expected) << "nothing more can be read";
    }
}

// Sends `request` over a socket of its own and gives all that comes back until the server closes or is
// complete.
QByteArray exchange(int port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(port));
    EXPECT_TRUE(socket.waitForConnected(5000));
    socket.write(request);
    QByteArray answer;
    EXPECT_TRUE(waitFor([&] {
        answer += socket.readAll();
        return socket.state() == QAbstractSocket::UnconnectedState;
    })) << answer.toStdString();
    return answer + socket.readAll();
}

QByteArray get(const QByteArray &target)
{
    return "GET " + target + " HTTP/1.1\r\nConnection: close\r\n\r\n";
}

QByteArray bodyOf(const QByteArray &response)
{
    return response.mid(response.indexOf("\r\n\r\n") + 4);
}

QByteArray statusOf(const QByteArray &response)
{
    return response.left(response.indexOf("\r\n"));
}

class LoopbackCarrierTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const auto started = carrier.start();
        ASSERT_FALSE(started.failed()) << started.error.toStdString();
        address = started.value;
    }
    QByteArray path() const { return address.path().toLatin1(); }

    PageChannel channel;
    QSignalSpy events{&channel, &PageChannel::eventLogged};
    LoopbackCarrier carrier{&channel};
    ChannelAddress address;
};

TEST_F(LoopbackCarrierTest, CarriesAGetWithTheSecret)
{
    const QByteArray answer = exchange(address.port, get(path() + "?logevent17&event=click"));

    EXPECT_EQ(statusOf(answer), "HTTP/1.1 200 OK");
    EXPECT_TRUE(answer.contains("\r\nAccess-Control-Allow-Origin: *\r\n"));
    EXPECT_EQ(bodyOf(answer), "");
    ASSERT_TRUE(waitFor([&] { return events.count() == 1; }));
    EXPECT_EQ(events.first().first().toString(), u"logevent17&event=click"_s);
}

TEST_F(LoopbackCarrierTest, JoinsAPostsBodyAsUtf8)
{
    const QByteArray body = "event=keyup&value=\xC3\xA4\xE2\x82\xAC";

    exchange(address.port,
        "POST " + path() + "?logevent17& HTTP/1.1\r\nConnection: close\r\nContent-Length: "
            + QByteArray::number(body.size()) + "\r\n\r\n" + body);

    ASSERT_TRUE(waitFor([&] { return events.count() == 1; }));
    EXPECT_EQ(events.first().first().toString(), u"logevent17&event=keyup&value=\u00E4\u20AC"_s);
}

TEST_F(LoopbackCarrierTest, AnswersThoseWhoWait)
{
    channel.setConfirmAnswer([] { return u"true"_s; });

    EXPECT_EQ(bodyOf(exchange(address.port, get(path() + "?waitForConfirm17"))), "true");
    EXPECT_EQ(bodyOf(exchange(address.port, get(path() + "?waitForPrompt&17"))), "__ostrel__promptCancelled");
}

TEST_F(LoopbackCarrierTest, RefusesARequestWithoutTheSecret)
{
    const QList<QByteArray> targets{"/?logevent17&event=click", "/guess/?logevent17&event=click",
        path().chopped(1) + "?logevent17&event=click", path() + "x?logevent17&event=click",
        path().chopped(2) + "/?logevent17&event=click", "/" + path() + "?logevent17&event=click"};
    for (const QByteArray &target : targets) {
        SCOPED_TRACE(target.toStdString());
        const QByteArray answer = exchange(address.port, get(target));
        EXPECT_EQ(statusOf(answer), "HTTP/1.1 403 Forbidden");
        EXPECT_FALSE(answer.contains("Access-Control"));
    }
    EXPECT_EQ(events.count(), 0);
}

TEST_F(LoopbackCarrierTest, RefusesOtherMethodsAndUnknownKinds)
{
    EXPECT_EQ(statusOf(exchange(
                  address.port, "DELETE " + path() + "?logevent1 HTTP/1.1\r\nConnection: close\r\n\r\n")),
        "HTTP/1.1 405 Method Not Allowed");
    EXPECT_EQ(statusOf(exchange(address.port, get(path() + "?evaluate=1"))), "HTTP/1.1 404 Not Found");
    EXPECT_EQ(
        statusOf(exchange(address.port, "OPTIONS " + path() + " HTTP/1.1\r\nConnection: close\r\n\r\n")),
        "HTTP/1.1 204 No Content");
    EXPECT_EQ(events.count(), 0);
}

TEST_F(LoopbackCarrierTest, ClosesConnectionsThatSendNoRequest)
{
    EXPECT_EQ(
        statusOf(exchange(address.port, "\x16\x03\x01 no HTTP at all\r\n\r\n")), "HTTP/1.1 400 Bad Request");
    EXPECT_EQ(statusOf(exchange(address.port, "POST / HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\n")),
        "HTTP/1.1 413 Content Too Large");
    EXPECT_EQ(statusOf(exchange(address.port, QByteArray(HttpRequestReader::largestHead + 1, 'x'))),
        "HTTP/1.1 413 Content Too Large");
}

TEST(HttpServer, ClosesAConnectionThatIsTooSlow)
{
    HttpServer server([](const HttpRequest &) { return HttpResponse(); });
    ASSERT_TRUE(server.listen());
    server.setRequestLimit(100);

    EXPECT_EQ(exchange(server.port(), "GET / HTT"), "");
}

TEST(HttpServer, ServesSeveralRequestsOnOneConnection)
{
    HttpServer server([](const HttpRequest &request) {
        HttpResponse response;
        response.body = request.target;
        return response;
    });
    ASSERT_TRUE(server.listen());

    const QByteArray answer = exchange(server.port(), "GET /one HTTP/1.1\r\n\r\n" + get("/two"));

    EXPECT_EQ(answer.count("HTTP/1.1 200 OK"), 2);
    EXPECT_LT(answer.indexOf("/one"), answer.indexOf("/two"));
}

class StaticServerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir(root()).mkpath(u"sub/empty"_s));
        write(u"root/index.html"_s, "<p>index</p>");
        write(u"root/sub/index.html"_s, "<p>sub</p>");
        write(u"root/sub/app.js"_s, "1;");
        write(u"root/a b.txt"_s, "blank");
        write(u"root/data"_s, "?");
        write(u"secret.txt"_s, "secret");
        ASSERT_TRUE(QFile::link(directory.filePath(u"secret.txt"_s), root() + u"/link.txt"_s));
    }
    QString root() const { return directory.filePath(u"root"_s); }
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(directory.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir directory;
};

struct FileRow
{
    QByteArray target;
    QByteArray status;
    QByteArray contentType;
    QByteArray body;
};

TEST_F(StaticServerTest, ServesFilesWithTheirTypes)
{
    const StaticServer server(root());
    ASSERT_TRUE(server.isListening());
    const QList<FileRow> rows{
        {"/", "HTTP/1.1 200 OK", "text/html; charset=utf-8", "<p>index</p>"},
        {"/index.html?v=1", "HTTP/1.1 200 OK", "text/html; charset=utf-8", "<p>index</p>"},
        {"/sub/", "HTTP/1.1 200 OK", "text/html; charset=utf-8", "<p>sub</p>"},
        {"/sub/app.js", "HTTP/1.1 200 OK", "text/javascript; charset=utf-8", "1;"},
        {"/a%20b.txt", "HTTP/1.1 200 OK", "text/plain; charset=utf-8", "blank"},
        {"/data", "HTTP/1.1 200 OK", "application/octet-stream", "?"},
    };
    for (const FileRow &row : rows) {
        SCOPED_TRACE(row.target.toStdString());
        const QByteArray answer = exchange(server.port(), get(row.target));
        EXPECT_EQ(statusOf(answer), row.status);
        EXPECT_TRUE(answer.contains("\r\nContent-Type: " + row.contentType + "\r\n"));
        EXPECT_EQ(bodyOf(answer), row.body);
    }
    EXPECT_EQ(server.url(u"sub/"_s), u"http://127.0.0.1:%1/sub/"_s.arg(server.port()));
}

TEST_F(StaticServerTest, SendsADirectoryWithoutItsSlashOn)
{
    const StaticServer server(root());

    const QByteArray answer = exchange(server.port(), get("/sub"));

    EXPECT_EQ(statusOf(answer), "HTTP/1.1 301 Moved Permanently");
    EXPECT_TRUE(answer.contains("\r\nLocation: /sub/\r\n"));
}

TEST_F(StaticServerTest, NeverLeavesItsRoot)
{
    const StaticServer server(root());
    const QList<QByteArray> targets{"/missing.html", "/sub/empty/", "/../secret.txt", "/%2e%2e/secret.txt",
        "/sub/../../secret.txt", "/..%2fsecret.txt", "/link.txt", "/..", "/index.html%00.txt"};
    for (const QByteArray &target : targets) {
        SCOPED_TRACE(target.toStdString());
        const QByteArray answer = exchange(server.port(), get(target));
        EXPECT_FALSE(answer.contains("secret"));
        EXPECT_EQ(statusOf(answer), "HTTP/1.1 404 Not Found");
    }
    EXPECT_EQ(statusOf(exchange(server.port(), "POST / HTTP/1.1\r\nConnection: close\r\n\r\n")),
        "HTTP/1.1 405 Method Not Allowed");
}

TEST_F(StaticServerTest, AddsTheHeadersItIsGiven)
{
    StaticServer server(root());
    server.setExtraHeaders("Content-Security-Policy: default-src 'self'\r\n");

    EXPECT_TRUE(
        exchange(server.port(), get("/")).contains("\r\nContent-Security-Policy: default-src 'self'\r\n"));
}

} // namespace
} // namespace Ostrel::Host
