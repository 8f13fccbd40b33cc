// The page channel: what each request means and how it is answered.
#include "host/channel/channeladdress.h"
#include "host/channel/pagechannel.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

// A request in one line, for tables.
QString describe(const QString &query, const QString &body = {})
{
    const auto request = parseChannelRequest(query, body);
    if (!request)
        return u"nothing"_s;
    switch (request->kind) {
    case ChannelRequestKind::LogEvent:
        return u"log: "_s + request->text;
    case ChannelRequestKind::EventHandler: {
        QString text = u"event: "_s + request->name;
        for (auto entry = request->parameters.cbegin(); entry != request->parameters.cend(); ++entry)
            text += u" %1=%2"_s.arg(entry.key(), entry.value());
        return text;
    }
    case ChannelRequestKind::WaitForConfirm:
        return u"confirm"_s;
    case ChannelRequestKind::WaitForPrompt:
        return u"prompt"_s;
    case ChannelRequestKind::DebugLog:
        return u"debug: "_s + request->text;
    case ChannelRequestKind::HighlightWidget:
        return u"highlight: %1,%2,%3,%4 %5"_s.arg(QString::number(request->rectangle.x),
            QString::number(request->rectangle.y), QString::number(request->rectangle.width),
            QString::number(request->rectangle.height), request->name);
    }
    return {};
}

struct RequestRow
{
    const char *name;
    QString query;
    QString body;
    QString expected;
};

TEST(ChannelRequest, UnderstandsEveryKind)
{
    const QList<RequestRow> rows{
        {"a short event", u"logevent1700000000000&event=mousedown&x=1"_s, {},
            u"log: logevent1700000000000&event=mousedown&x=1"_s},
        {"a long event", u"logevent1700000000000&"_s, u"event=keyup&value=abc"_s,
            u"log: logevent1700000000000&event=keyup&value=abc"_s},
        {"the doubled prefix of an unload",
            u"logevent1700000000000&logevent1700000000000&event=unload&object=[Window]"_s, {},
            u"log: logevent1700000000000&logevent1700000000000&event=unload&object=[Window]"_s},
        {"an event with escapes keeps them", u"logevent1&event=keyup&value=a%2526b%u20AC"_s, {},
            u"log: logevent1&event=keyup&value=a%2526b%u20AC"_s},
        {"the fallback wrapper", u"logevent17&event=disableFallbackWrapper"_s, {},
            u"log: logevent17&event=disableFallbackWrapper"_s},
        {"a recorded prompt", u"logevent17&event=prompt&ret=a&b"_s, {},
            u"log: logevent17&event=prompt&ret=a&b"_s},
        {"a window that opened", u"eventHandler1700000000000&name=WindowOpened"_s, {},
            u"event: WindowOpened"_s},
        {"a page that unloads",
            u"eventHandler17&name=BodyUnloaded&location=http%3A//127.0.0.1/%3Fa%3D1&context=main.FRAME1"_s,
            {}, u"event: BodyUnloaded context=main.FRAME1 location=http://127.0.0.1/?a=1"_s},
        {"an alert, whose time stands apart", u"eventHandler&1700000000000&name=AlertOpened"_s, {},
            u"event: AlertOpened"_s},
        {"a confirm that opened", u"eventHandler17&name=ConfirmOpened"_s, {}, u"event: ConfirmOpened"_s},
        {"a prompt that opened", u"eventHandler17&name=PromptOpened"_s, {}, u"event: PromptOpened"_s},
        {"a confirm that waits", u"waitForConfirm1700000000000"_s, {}, u"confirm"_s},
        {"a prompt that waits, whose time stands apart", u"waitForPrompt&1700000000000"_s, {}, u"prompt"_s},
        {"a short debug line", u"debuglog=hello"_s, {}, u"debug: hello"_s},
        {"a debug line that the browser has encoded", u"debuglog=a%20%C3%A4%20b=c"_s, {},
            u"debug: a \u00E4 b=c"_s},
        {"a long debug line", u"debuglog"_s, u"a=b&c%20d"_s, u"debug: a=b&c%20d"_s},
        {"an empty debug line", u"debuglog="_s, {}, u"debug: "_s},
        {"a highlight", u"highlighteWidget&info=1,-2,30,40,%7BtagName%3D%27A%27%7D&1700000000000"_s, {},
            u"highlight: 1,-2,30,40 {tagName='A'}"_s},
        {"a highlight of a name with commas", u"highlighteWidget&info=1,2,3,4,a,b&17"_s, {},
            u"highlight: 1,2,3,4 a,b"_s},
        {"a highlight with fractions", u"highlighteWidget&info=1.5,2.4,3,4,a&17"_s, {},
            u"highlight: 2,2,3,4 a"_s},
        {"a highlight of what is not to be seen", u"highlighteWidget&info=-1,-1,-1,-1,a&17"_s, {},
            u"highlight: -1,-1,-1,-1 a"_s},
    };
    for (const RequestRow &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(describe(row.query, row.body), row.expected);
    }
}

TEST(ChannelRequest, RefusesWhatIsNoRequest)
{
    const QList<std::pair<const char *, QString>> rows{
        {"nothing", u""_s},
        {"an unknown kind", u"evaluate1&script=x"_s},
        {"a kind in other letters", u"LogEvent1&event=x"_s},
        {"a longer word", u"logevents17&event=x"_s},
        {"a longer word with a value", u"debuglogger=x"_s},
        {"an event without a name", u"eventHandler17&location=x"_s},
        {"an event with an empty name", u"eventHandler17&name="_s},
        {"a highlight without a name", u"highlighteWidget&info=1,2,3,4&17"_s},
        {"a highlight without numbers", u"highlighteWidget&info=a,b,c,d,e&17"_s},
        {"a highlight without anything", u"highlighteWidget&17"_s},
        {"the word as it would be spelled", u"highlightWidget&info=1,2,3,4,a&17"_s},
    };
    for (const auto &[reason, query] : rows) {
        SCOPED_TRACE(reason);
        EXPECT_EQ(describe(query), u"nothing"_s);
    }
}

TEST(PageChannel, AnswersOnlyThoseWhoWait)
{
    const PageChannel channel;

    EXPECT_EQ(channel.answer(*parseChannelRequest(u"waitForConfirm1"_s)), u"false"_s);
    EXPECT_EQ(channel.answer(*parseChannelRequest(u"waitForPrompt&1"_s)), u"__ostrel__promptCancelled"_s);
    EXPECT_EQ(channel.answer(*parseChannelRequest(u"logevent1&event=x"_s)), QString());
    EXPECT_EQ(channel.answer(*parseChannelRequest(u"eventHandler1&name=WindowOpened"_s)), QString());
    EXPECT_EQ(channel.answer(*parseChannelRequest(u"debuglog=x"_s)), QString());
}

TEST(PageChannel, AnswersAsItIsTold)
{
    PageChannel channel;
    channel.setConfirmAnswer([] { return u"true"_s; });
    channel.setPromptAnswer([] { return promptResult(u"%1 typed"_s); });

    EXPECT_EQ(channel.answer(*parseChannelRequest(u"waitForConfirm1"_s)), u"true"_s);
    EXPECT_EQ(
        channel.answer(*parseChannelRequest(u"waitForPrompt&1"_s)), u"__ostrel__promptResult: %1 typed"_s);
}

TEST(PageChannel, DeliversEachKindByItsSignal)
{
    PageChannel channel;
    QSignalSpy events(&channel, &PageChannel::eventLogged);
    QSignalSpy notices(&channel, &PageChannel::eventHandlerCalled);
    QSignalSpy lines(&channel, &PageChannel::debugLineLogged);
    QSignalSpy highlights(&channel, &PageChannel::highlightRequested);

    for (const QString &query :
        {u"logevent1&event=x"_s, u"eventHandler1&name=WindowOpened"_s, u"debuglog=line"_s,
            u"highlighteWidget&info=1,2,3,4,a&5"_s, u"waitForConfirm1"_s, u"waitForPrompt&1"_s})
        channel.deliver(*parseChannelRequest(query));

    ASSERT_EQ(events.count(), 1);
    EXPECT_EQ(events.first().first().toString(), u"logevent1&event=x"_s);
    ASSERT_EQ(notices.count(), 1);
    EXPECT_EQ(notices.first().first().toString(), u"WindowOpened"_s);
    ASSERT_EQ(lines.count(), 1);
    EXPECT_EQ(lines.first().first().toString(), u"line"_s);
    ASSERT_EQ(highlights.count(), 1);
    EXPECT_EQ(highlights.first().at(0).value<ScreenRectangle>(), (ScreenRectangle{1, 2, 3, 4}));
    EXPECT_EQ(highlights.first().at(1).toString(), u"a"_s);
}

TEST(ChannelAddress, CarriesTheSecretInThePortText)
{
    const ChannelAddress address{51234, u"abc"_s};

    EXPECT_EQ(address.portText(), u"51234/abc"_s);
    EXPECT_EQ(address.path(), u"/abc/"_s);
    EXPECT_EQ(address.interceptionPattern(), u"http://127.0.0.1:51234/abc/\\?*"_s);
}

TEST(ChannelAddress, SecretsAreLongAndNeverTheSame)
{
    const QString first = ChannelAddress::makeSecret();

    EXPECT_EQ(first.size(), 32);
    EXPECT_NE(first, ChannelAddress::makeSecret());
}

} // namespace
} // namespace Ostrel::Host
