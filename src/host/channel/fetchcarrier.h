// FetchCarrier: brings a tab's channel requests to the host by interception, so that nothing listens on the
// machine.
#pragma once

#include "host/channel/channeladdress.h"

#include <QJsonObject>
#include <QObject>

namespace Ostrel::Host {

class BrowserPage;
class PageChannel;

/// The browser holds each request of the page for the channel's address back and asks the host, which fulfils
/// it. Blocking requests work, since it is the browser's network side that asks and not the page. A content
/// security policy or an https page is no obstacle.
class FetchCarrier : public QObject
{
    Q_OBJECT

public:
    /// An address for interception. No program needs to listen at its port, nor does it matter if one does.
    static ChannelAddress makeAddress();

    /// Starts to carry for `page`. To be made before the page's first document begins. Both arguments must
    /// outlive this object.
    FetchCarrier(BrowserPage *page, PageChannel *channel, const ChannelAddress &address);

private:
    void carry(const QJsonObject &event);

    BrowserPage *m_page;
    PageChannel *m_channel;
};

} // namespace Ostrel::Host
