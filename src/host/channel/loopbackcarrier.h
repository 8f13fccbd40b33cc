// LoopbackCarrier: a small server on the loopback address, for browsers that cannot intercept requests.
#pragma once

#include "host/channel/channeladdress.h"
#include "host/channel/httpserver.h"
#include "ostrelhook/functioncallresult.h"

#include <QObject>

namespace Ostrel::Host {

class PageChannel;

/// Serves all pages of a session. A request that does not carry the session's secret gets "403 Forbidden" and
/// changes nothing.
class LoopbackCarrier : public QObject
{
    Q_OBJECT

public:
    explicit LoopbackCarrier(PageChannel *channel, QObject *parent = nullptr);

    /// Starts to listen on a free port and gives the address for the pages.
    FunctionCallResult<ChannelAddress> start();

private:
    HttpResponse respond(const HttpRequest &request);

    PageChannel *m_channel;
    HttpServer m_server;
    ChannelAddress m_address;
};

} // namespace Ostrel::Host
