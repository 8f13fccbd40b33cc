#include "host/channel/fetchcarrier.h"

#include "host/browser/browserpage.h"
#include "host/channel/pagechannel.h"

#include <QJsonArray>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

// Of the range from which systems take short-lived ports; nothing is ever sent to it.
constexpr int interceptedPort = 49151;

QJsonObject header(const QString &name, const QString &value)
{
    return {{u"name"_s, name}, {u"value"_s, value}};
}

QString bodyOf(const QJsonObject &request)
{
    QByteArray body;
    const QJsonArray entries = request.value("postDataEntries"_L1).toArray();
    for (const auto &entry : entries)
        body += QByteArray::fromBase64(entry.toObject().value("bytes"_L1).toString().toLatin1());
    return QString::fromUtf8(body);
}

// A "#" in a debug line cuts the address in two; here, unlike on the network, the second half is known.
QString queryOf(const QJsonObject &request)
{
    return request.value("url"_L1).toString().section(u'?', 1) + request.value("urlFragment"_L1).toString();
}

} // namespace

ChannelAddress FetchCarrier::makeAddress()
{
    return {interceptedPort, ChannelAddress::makeSecret()};
}

FetchCarrier::FetchCarrier(BrowserPage *page, PageChannel *channel, const ChannelAddress &address)
    : QObject(page), m_page(page), m_channel(channel)
{
    page->connection()->listen(page->sessionId(), u"Fetch.requestPaused"_s, this,
        [this](const QJsonObject &event) { carry(event); });
    const QJsonObject pattern{{u"urlPattern"_s, address.interceptionPattern()}};
    page->connection()->send(page->sessionId(), u"Fetch.enable"_s, {{u"patterns"_s, QJsonArray{pattern}}});
}

// Answered first and delivered afterwards: who receives it may evaluate script, which a page that waits for
// its answer could not run.
void FetchCarrier::carry(const QJsonObject &event)
{
    const QJsonObject pageRequest = event.value("request"_L1).toObject();
    const QString query = queryOf(pageRequest);
    const std::optional<ChannelRequest> request = parseChannelRequest(query, bodyOf(pageRequest));
    QString answer;
    if (request) {
        const BrowserPage::Refusal refusal(*m_page, u"The page waits for an answer of the host"_s);
        answer = m_channel->answer(*request);
    }
    const QJsonArray headers{header(u"Access-Control-Allow-Origin"_s, u"*"_s),
        header(u"Content-Type"_s, u"text/plain; charset=utf-8"_s), header(u"Cache-Control"_s, u"no-store"_s)};
    m_page->connection()->send(m_page->sessionId(), u"Fetch.fulfillRequest"_s,
        {{u"requestId"_s, event.value("requestId"_L1)}, {u"responseCode"_s, request ? 200 : 404},
            {u"responseHeaders"_s, headers}, {u"body"_s, QString::fromLatin1(answer.toUtf8().toBase64())}});
    if (request)
        m_channel->deliver(*request);
    else
        PageChannel::logUnknown(query);
}

} // namespace Ostrel::Host
