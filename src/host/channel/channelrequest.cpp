#include "host/channel/channelrequest.h"

#include "wrappers/web/webutilities.h"

#include <QStringList>
#include <QUrl>

#include <array>

using namespace Qt::StringLiterals;
using Ostrel::WebWrapper::unescape;

namespace Ostrel::Host {

namespace {

using Parser = std::optional<ChannelRequest> (*)(const QString &query, const QString &body);

// Some kinds have the time right behind their word, some behind an "&"; as a part of its own it is a number
// without "=". It only keeps the browser from answering out of its cache.
bool isTimestamp(QStringView part)
{
    for (QChar character : part) {
        if (character < u'0' || character > u'9')
            return false;
    }
    return true;
}

std::optional<ChannelRequest> parseLogEvent(const QString &query, const QString &body)
{
    return ChannelRequest{ChannelRequestKind::LogEvent, query + body, {}, {}, {}};
}

std::optional<ChannelRequest> parseEventHandler(const QString &query, const QString &body)
{
    ChannelRequest request{ChannelRequestKind::EventHandler, {}, {}, {}, {}};
    const QStringList parts = (query + body).split(u'&', Qt::SkipEmptyParts).mid(1);
    for (const QString &part : parts) {
        const qsizetype equals = part.indexOf(u'=');
        if (equals > 0)
            request.parameters.insert(part.left(equals), unescape(part.mid(equals + 1)));
    }
    request.name = request.parameters.take(u"name"_s);
    if (request.name.isEmpty())
        return std::nullopt;
    return request;
}

std::optional<ChannelRequest> parseWaitForConfirm(const QString &, const QString &)
{
    return ChannelRequest{ChannelRequestKind::WaitForConfirm, {}, {}, {}, {}};
}

std::optional<ChannelRequest> parseWaitForPrompt(const QString &, const QString &)
{
    return ChannelRequest{ChannelRequestKind::WaitForPrompt, {}, {}, {}, {}};
}

// A short line comes in the address, where the browser has encoded blanks and the like; a long one as the
// body, which arrives as it is.
std::optional<ChannelRequest> parseDebugLog(const QString &query, const QString &body)
{
    const QString line = body.isEmpty() ? QUrl::fromPercentEncoding(query.section(u'=', 1).toUtf8()) : body;
    return ChannelRequest{ChannelRequestKind::DebugLog, line, {}, {}, {}};
}

// "info=<x>,<y>,<width>,<height>,<name>": the name is escaped, so that it holds no "&" and keeps its commas.
std::optional<ChannelRequest> parseHighlightWidget(const QString &query, const QString &body)
{
    constexpr qsizetype numberCount = 4;
    const QString info = (query + body).section(u"info="_s, 1).section(u'&', 0, 0);
    const QStringList fields = info.split(u',');
    if (fields.size() <= numberCount)
        return std::nullopt;

    std::array<int, numberCount> numbers{};
    for (qsizetype i = 0; i < numberCount; ++i) {
        bool isNumber = false;
        numbers[std::size_t(i)] = qRound(fields.at(i).toDouble(&isNumber));
        if (!isNumber)
            return std::nullopt;
    }
    ChannelRequest request{ChannelRequestKind::HighlightWidget, {}, {}, {}, {}};
    request.rectangle = {numbers[0], numbers[1], numbers[2], numbers[3]};
    request.name = unescape(fields.mid(numberCount).join(u','));
    return request;
}

struct KindRow
{
    QLatin1StringView word;
    Parser parse;
};

constexpr std::array kinds{
    KindRow{"logevent"_L1, parseLogEvent},
    KindRow{"eventHandler"_L1, parseEventHandler},
    KindRow{"waitForConfirm"_L1, parseWaitForConfirm},
    KindRow{"waitForPrompt"_L1, parseWaitForPrompt},
    KindRow{"debuglog"_L1, parseDebugLog},
    // Kept as is: pages spell the word so.
    KindRow{"highlighteWidget"_L1, parseHighlightWidget},
};

// The kind word ends where a time, a further part or a value begins.
bool startsWithWord(const QString &query, QLatin1StringView word)
{
    if (!query.startsWith(word))
        return false;
    const QString rest = query.mid(word.size());
    if (rest.startsWith(u'='))
        return true;
    return isTimestamp(QStringView(rest).left(rest.indexOf(u'&') < 0 ? rest.size() : rest.indexOf(u'&')));
}

} // namespace

std::optional<ChannelRequest> parseChannelRequest(const QString &query, const QString &body)
{
    for (const KindRow &row : kinds) {
        if (startsWithWord(query, row.word))
            return row.parse(query, body);
    }
    return std::nullopt;
}

} // namespace Ostrel::Host
