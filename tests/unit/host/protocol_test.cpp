// The protocol below the page: messages, pending commands, the connection, the pipe.
#include "host/browser/connection.h"
#include "host/browser/pendingcommands.h"
#include "host/browser/pipetransport.h"
#include "host/browser/protocolmessage.h"
#include "support/faketransport.h"
#include "support/printqt.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <array>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;

namespace Ostrel::Host {
namespace {

QStringList warnings;

// Collects what is logged, so that a test can expect it and an unexpected line fails.
class LogWatch
{
public:
    LogWatch()
    {
        warnings.clear();
        m_previous
            = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
                  if (type == QtWarningMsg)
                      warnings.append(text);
              });
    }
    ~LogWatch() { qInstallMessageHandler(m_previous); }

private:
    QtMessageHandler m_previous;
};

TEST(ProtocolMessage, ReadsAnAnswerAndAnEvent)
{
    const auto answer = parseProtocolMessage(R"({"id":3,"result":{"a":1},"sessionId":"S"})");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->id, 3);
    EXPECT_EQ(answer->sessionId, u"S"_s);
    EXPECT_EQ(answer->content, (QJsonObject{{u"a"_s, 1}}));
    EXPECT_EQ(answer->error, QString());

    const auto event = parseProtocolMessage(R"({"method":"Page.loaded","params":{"b":"x"}})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->id, 0);
    EXPECT_EQ(event->method, u"Page.loaded"_s);
    EXPECT_EQ(event->content, (QJsonObject{{u"b"_s, u"x"_s}}));
}

TEST(ProtocolMessage, AnErrorNamesItsDetail)
{
    EXPECT_EQ(parseProtocolMessage(R"({"id":1,"error":{"code":-1,"message":"bad"}})")->error, u"bad"_s);
    EXPECT_EQ(parseProtocolMessage(R"({"id":1,"error":{"message":"bad","data":"url is missing"}})")->error,
        u"bad (url is missing)"_s);
    EXPECT_EQ(
        parseProtocolMessage(R"({"id":1,"error":{}})")->error, u"The browser gave an error without a text"_s);
    EXPECT_EQ(parseProtocolMessage(R"({"id":1,"error":"odd"})")->error,
        u"The browser gave an error without a text"_s);
}

struct BadTextRow
{
    const char *reason;
    QByteArray text;
};

TEST(ProtocolMessage, RefusesWhatIsNoMessage)
{
    const QList<BadTextRow> rows{
        {"nothing at all", ""},
        {"no JSON", "hello"},
        {"an array", "[1]"},
        {"neither answer nor event", "{}"},
        {"an id of the wrong type", R"({"id":"3","result":{}})"},
        {"an id that no command has", R"({"id":0,"result":{}})"},
        {"a negative id", R"({"id":-4})"},
        {"a method of the wrong type", R"({"method":7})"},
        {"two messages in one", R"({"id":1}{"id":2})"},
        {"bytes that are no UTF-8", "{\"id\":1,\"result\":{\"a\":\"\xff\xfe\""},
        {"nested without end", QByteArray(100000, '[')},
    };
    for (const BadTextRow &row : rows) {
        SCOPED_TRACE(row.reason);
        EXPECT_FALSE(parseProtocolMessage(row.text));
    }
}

TEST(ProtocolMessage, RefusesEveryTruncation)
{
    const QByteArray whole
        = R"({"id":12,"result":{"text":"a\u20ac\"b","list":[1,2,{"x":null}]},"sessionId":"S"})";
    ASSERT_TRUE(parseProtocolMessage(whole));
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parseProtocolMessage(whole.first(length))) << length;
}

TEST(ProtocolMessage, ComposesCommands)
{
    EXPECT_EQ(
        composeCommand(1, {}, u"Browser.close"_s, {}), QByteArray(R"({"id":1,"method":"Browser.close"})"));
    EXPECT_EQ(composeCommand(2, u"S"_s, u"Page.navigate"_s, {{u"url"_s, u"about:blank"_s}}),
        QByteArray(R"({"id":2,"method":"Page.navigate","sessionId":"S","params":{"url":"about:blank"}})"));
}

// Writes each reply down as "<method>: value" or its error.
struct Replies
{
    QStringList texts;
    CommandReply keep(const QString &label)
    {
        return [this, label](const CommandResult &result) {
            texts.append(result.failed() ? result.error
                                         : u"%1 = %2"_s.arg(label, QString::number(result.value.size())));
        };
    }
};

TEST(PendingCommands, RunsEachReplyExactlyOnce)
{
    PendingCommands pending;
    Replies replies;
    const int first = pending.add({}, u"A"_s, replies.keep(u"first"_s));
    const int second = pending.add({}, u"B"_s, replies.keep(u"second"_s));

    EXPECT_TRUE(pending.resolve(second, {{u"x"_s, 1}}));
    EXPECT_FALSE(pending.resolve(second, {}));
    EXPECT_TRUE(pending.reject(first, u"no"_s));
    EXPECT_FALSE(pending.reject(first, u"again"_s));
    pending.rejectAll(u"closed"_s);

    EXPECT_EQ(replies.texts, (QStringList{u"second = 1"_s, u"A: no"_s}));
    EXPECT_EQ(pending.count(), 0);
}

TEST(PendingCommands, RejectsAllInTheOrderInWhichTheyWereSent)
{
    PendingCommands pending;
    Replies replies;
    for (const QString &method : {u"A"_s, u"B"_s, u"C"_s})
        pending.add({}, method, replies.keep(method));

    pending.rejectAll(u"The browser has closed or crashed"_s);

    EXPECT_EQ(replies.texts,
        (QStringList{u"A: The browser has closed or crashed"_s, u"B: The browser has closed or crashed"_s,
            u"C: The browser has closed or crashed"_s}));
}

TEST(PendingCommands, RejectsOneSessionOnly)
{
    PendingCommands pending;
    Replies replies;
    pending.add(u"S"_s, u"A"_s, replies.keep(u"A"_s));
    const int other = pending.add(u"T"_s, u"B"_s, replies.keep(u"B"_s));

    pending.rejectSession(u"S"_s, u"gone"_s);
    pending.resolve(other, {});

    EXPECT_EQ(replies.texts, (QStringList{u"A: gone"_s, u"B = 0"_s}));
}

TEST(PendingCommands, DropsTheLateAnswerOfASessionThatEnded)
{
    PendingCommands commands;
    const int id = commands.add(u"S"_s, u"Page.enable"_s, nullptr);

    commands.rejectSession(u"S"_s, u"gone"_s);

    EXPECT_TRUE(commands.resolve(id, {}));
    EXPECT_FALSE(commands.resolve(id, {}));
}

TEST(PendingCommands, AReplyMayAddAndRejectItself)
{
    PendingCommands pending;
    Replies replies;
    pending.add({}, u"A"_s, [&](const CommandResult &result) {
        replies.texts.append(result.error);
        pending.add({}, u"late"_s, replies.keep(u"late"_s));
        pending.rejectAll(u"inner"_s);
    });
    pending.add({}, u"B"_s, replies.keep(u"B"_s));

    pending.rejectAll(u"outer"_s);

    EXPECT_EQ(replies.texts, (QStringList{u"A: outer"_s, u"B: inner"_s, u"late: inner"_s}));
}

TEST(PendingCommands, DropsALateAnswerOnce)
{
    PendingCommands pending;
    Replies replies;
    const int id = pending.add({}, u"A"_s, replies.keep(u"A"_s));

    pending.giveUp(id, u"too late"_s);
    pending.giveUp(id, u"again"_s);

    EXPECT_TRUE(pending.resolve(id, {})) << "dropped silently";
    EXPECT_FALSE(pending.resolve(id, {})) << "a second answer is nobody's";
    EXPECT_EQ(replies.texts, QStringList{u"A: too late"_s});
}

class ConnectionTest : public ::testing::Test
{
protected:
    LogWatch watch;
    FakeTransport *transport = new FakeTransport;
    Connection connection{std::unique_ptr<Transport>(transport)};
    Replies replies;
};

TEST_F(ConnectionTest, BringsAnswersToTheirCommands)
{
    connection.send({}, u"A"_s, {}, replies.keep(u"A"_s));
    connection.send(u"S"_s, u"B"_s, {}, replies.keep(u"B"_s));

    transport->receive(QByteArray(R"({"id":2,"result":{"x":1},"sessionId":"S"})"));
    transport->receive(QByteArray(R"({"id":1,"error":{"message":"no"}})"));

    EXPECT_EQ(transport->texts(),
        (QByteArrayList{R"({"id":1,"method":"A"})", R"({"id":2,"method":"B","sessionId":"S"})"}));
    EXPECT_EQ(replies.texts, (QStringList{u"B = 1"_s, u"A: no"_s}));
    EXPECT_EQ(warnings, QStringList());
}

TEST_F(ConnectionTest, LogsWhatItCannotUse)
{
    transport->receive(QByteArray("{\"id\":1,"));
    transport->receive(QByteArray(R"({"id":77,"result":{}})"));

    EXPECT_EQ(warnings,
        (QStringList{u"The browser sent a text that is no message: {\"id\":1,"_s,
            u"The browser answered a command that was never sent: 77"_s}));
}

TEST_F(ConnectionTest, DropsALateAnswerSilently)
{
    const int id = connection.send({}, u"A"_s, {}, replies.keep(u"A"_s));
    connection.giveUp(id, u"over"_s);

    transport->receive(QByteArray(R"({"id":1,"result":{}})"));

    EXPECT_EQ(replies.texts, QStringList{u"A: over"_s});
    EXPECT_EQ(warnings, QStringList());
}

TEST_F(ConnectionTest, BringsEventsToTheListenersOfTheirSession)
{
    QObject context;
    QStringList heard;
    connection.listen(u"S"_s, u"Page.x"_s, &context,
        [&](const QJsonObject &event) { heard.append(u"S"_s + event.value("n"_L1).toString()); });
    connection.listen({}, u"Page.x"_s, &context, [&](const QJsonObject &) { heard.append(u"browser"_s); });

    transport->receive(QByteArray(R"({"method":"Page.x","params":{"n":"1"},"sessionId":"S"})"));
    transport->receive(QByteArray(R"({"method":"Page.x","params":{"n":"2"},"sessionId":"T"})"));
    transport->receive(QByteArray(R"({"method":"Page.y","params":{"n":"3"},"sessionId":"S"})"));
    transport->receive(QByteArray(R"({"method":"Page.x"})"));

    EXPECT_EQ(heard, (QStringList{u"S1"_s, u"browser"_s}));
}

TEST_F(ConnectionTest, AListenerGoesWithItsContext)
{
    auto context = std::make_unique<QObject>();
    int heard = 0;
    connection.listen({}, u"E"_s, context.get(), [&](const QJsonObject &) { ++heard; });
    connection.listen({}, u"E"_s, context.get(), [&](const QJsonObject &) { context.reset(); });
    connection.listen({}, u"E"_s, context.get(), [&](const QJsonObject &) { ++heard; });

    transport->receive(QByteArray(R"({"method":"E"})"));
    transport->receive(QByteArray(R"({"method":"E"})"));

    EXPECT_EQ(heard, 1) << "nothing is called once the context is gone, not even in the same event";
}

TEST_F(ConnectionTest, ALostBrowserEndsEverythingOnce)
{
    QSignalSpy lost(&connection, &Connection::lost);
    connection.send({}, u"A"_s, {}, replies.keep(u"A"_s));

    transport->drop();
    transport->drop();
    connection.send({}, u"B"_s, {}, replies.keep(u"B"_s));

    EXPECT_EQ(lost.count(), 1);
    EXPECT_FALSE(connection.isOpen());
    EXPECT_EQ(replies.texts,
        (QStringList{u"A: The browser has closed or crashed"_s, u"B: The browser has closed or crashed"_s}));
}

TEST_F(ConnectionTest, ClosingItselfIsNoLoss)
{
    QSignalSpy lost(&connection, &Connection::lost);
    connection.send({}, u"A"_s, {}, replies.keep(u"A"_s));

    connection.close(u"stopped"_s);

    EXPECT_TRUE(transport->isClosed());
    EXPECT_EQ(lost.count(), 0);
    EXPECT_EQ(replies.texts, QStringList{u"A: stopped"_s});
}

TEST_F(ConnectionTest, AnEndedSessionHearsNothingMore)
{
    QObject context;
    int heard = 0;
    connection.listen(u"S"_s, u"E"_s, &context, [&](const QJsonObject &) { ++heard; });
    connection.send(u"S"_s, u"A"_s, {}, replies.keep(u"A"_s));

    connection.endSession(u"S"_s, u"gone"_s);
    transport->receive(QByteArray(R"({"method":"E","sessionId":"S"})"));

    EXPECT_EQ(heard, 0);
    EXPECT_EQ(replies.texts, QStringList{u"A: gone"_s});
}

// A pipe whose other end the test holds.
class PipeTransportTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        ASSERT_EQ(pipe2(in.data(), O_CLOEXEC), 0);
        ASSERT_EQ(pipe2(out.data(), O_CLOEXEC | O_NONBLOCK), 0);
        browserWrites = in[1];
        browserReads = out[0];
        transport = std::make_unique<PipeTransport>(in[0], out[1]);
        QObject::connect(transport.get(), &Transport::textReceived, transport.get(),
            [this](const QByteArray &text) { received.append(text); });
        QObject::connect(transport.get(), &Transport::closed, transport.get(), [this] { ++closed; });
    }
    void TearDown() override
    {
        transport.reset();
        for (int end : {browserWrites, browserReads}) {
            if (end >= 0)
                close(end);
        }
    }
    void browserSays(const QByteArray &bytes) const
    {
        ASSERT_EQ(write(browserWrites, bytes.constData(), std::size_t(bytes.size())), bytes.size());
    }
    // What the browser can read at the moment.
    QByteArray browserHears() const
    {
        QByteArray all;
        std::array<char, 65536> chunk;
        for (ssize_t count = 0; (count = read(browserReads, chunk.data(), chunk.size())) > 0;)
            all.append(chunk.data(), count);
        return all;
    }

    int browserWrites = -1;
    int browserReads = -1;
    std::unique_ptr<PipeTransport> transport;
    QByteArrayList received;
    int closed = 0;
};

const QByteArray nul(1, '\0');

TEST_F(PipeTransportTest, CutsTextsAtTheirNuls)
{
    browserSays("one" + nul + "two" + nul + "thr");
    ASSERT_TRUE(waitFor([&] { return received.size() == 2; }));
    browserSays("ee" + nul);
    ASSERT_TRUE(waitFor([&] { return received.size() == 3; }));

    EXPECT_EQ(received, (QByteArrayList{"one", "two", "three"}));
}

TEST_F(PipeTransportTest, EndsEachTextWithANul)
{
    transport->send("one");
    transport->send("two");

    EXPECT_EQ(browserHears(), "one" + nul + "two" + nul);
}

TEST_F(PipeTransportTest, KeepsWhatThePipeDoesNotTake)
{
    const QByteArray large(5 * 1024 * 1024, 'x');
    transport->send(large);
    transport->send("after");

    QByteArray heard;
    ASSERT_TRUE(waitFor([&] {
        heard += browserHears();
        return heard.endsWith("after" + nul);
    }));
    EXPECT_EQ(heard, large + nul + "after" + nul);
}

TEST_F(PipeTransportTest, HandsOnWhatCameBeforeTheEnd)
{
    browserSays("last" + nul + "cut o");
    close(std::exchange(browserWrites, -1));

    ASSERT_TRUE(waitFor([&] { return closed > 0; }));
    EXPECT_EQ(received, QByteArrayList{"last"});
    EXPECT_EQ(closed, 1);
}

TEST_F(PipeTransportTest, WritingToADeadBrowserIsNoCrash)
{
    close(std::exchange(browserReads, -1));

    transport->send("to nobody");
    close(std::exchange(browserWrites, -1));

    EXPECT_TRUE(waitFor([&] { return closed == 1; }));
    transport->send("still to nobody");
}

TEST_F(PipeTransportTest, KeepsTheOrderWhenAReceiverWaits)
{
    QStringList order;
    QObject::connect(transport.get(), &Transport::textReceived, transport.get(), [&](const QByteArray &text) {
        order.append(u"begin "_s + QString::fromUtf8(text));
        if (text == "one")
            waitFor([&] { return received.contains("three"); });
        order.append(u"end "_s + QString::fromUtf8(text));
    });
    browserSays("one" + nul + "two" + nul);
    QTimer::singleShot(50, transport.get(), [&] { browserSays("three" + nul); });

    ASSERT_TRUE(waitFor([&] { return order.size() == 6; }));
    EXPECT_EQ(order,
        (QStringList{
            u"begin one"_s, u"begin two"_s, u"end two"_s, u"begin three"_s, u"end three"_s, u"end one"_s}));
}

} // namespace
} // namespace Ostrel::Host
