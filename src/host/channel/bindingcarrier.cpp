#include "host/channel/bindingcarrier.h"

#include "host/browser/browserpage.h"
#include "host/channel/pagechannel.h"
#include "host/resourcetext.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

const QString binding = u"__ostrel__carryEvents"_s;

} // namespace

QString burstScript(const QString &resource)
{
    return u"(function () {\n%1\n%2\n}());"_s.arg(resourceText(u"burst.js"_s), resourceText(resource));
}

BindingCarrier::BindingCarrier(BrowserPage *page, PageChannel *channel, const ChannelAddress &address)
    : QObject(page), m_channel(channel), m_address(address)
{
    Connection *connection = page->connection();
    connection->listen(page->sessionId(), u"Runtime.bindingCalled"_s, this, [this](const QJsonObject &event) {
        if (event.value("name"_L1) == binding)
            carry(event.value("payload"_L1).toString());
    });
    connection->send(page->sessionId(), u"Runtime.enable"_s);
    connection->send(page->sessionId(), u"Runtime.addBinding"_s, {{u"name"_s, binding}});
}

QString BindingCarrier::pageScript()
{
    return burstScript(u"bindingcarrier.js"_s);
}

void BindingCarrier::carry(const QString &payload)
{
    QStringList texts = payload.split(QChar::Null);
    if (texts.takeFirst() != m_address.portText()) {
        PageChannel::logUnknown(payload);
        return;
    }
    for (const QString &text : texts) {
        const std::optional<ChannelRequest> request = parseChannelRequest(text);
        if (request && request->kind == ChannelRequestKind::LogEvent)
            m_channel->deliver(*request);
        else
            PageChannel::logUnknown(text);
    }
}

} // namespace Ostrel::Host
