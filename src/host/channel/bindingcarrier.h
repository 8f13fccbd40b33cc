// BindingCarrier: brings the events of a tab to the host by a function that the browser puts into its pages.
// A request for each key would slow down a page in which somebody types.
#pragma once

#include "host/channel/channeladdress.h"

#include <QObject>

namespace Ostrel::Host {

class BrowserPage;
class PageChannel;

/// Only carries texts for which no page waits, so another carrier stands beside it. A text that does not come
/// with the secret of the address is dropped: documents of other origins have the function, too.
class BindingCarrier : public QObject
{
    Q_OBJECT

public:
    /// Carries from the page's next document on, if pageScript() runs there behind the payload. All arguments
    /// must outlive this object.
    BindingCarrier(BrowserPage *page, PageChannel *channel, const ChannelAddress &address);

    /// What makes the payload use the function.
    static QString pageScript();

private:
    void carry(const QString &payload);

    PageChannel *m_channel;
    ChannelAddress m_address;
};

/// A script of the host for pages, from its resources, with the function burst(post) within its reach. The
/// texts that it posts are parted by NUL.
QString burstScript(const QString &resource);

} // namespace Ostrel::Host
