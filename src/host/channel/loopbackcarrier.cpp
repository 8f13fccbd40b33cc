#include "host/channel/loopbackcarrier.h"

#include "host/channel/pagechannel.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

const QByteArray corsHeaders = "Access-Control-Allow-Origin: *\r\n";
// A page of the wide net asks before it talks to the machine it runs on.
const QByteArray preflightHeaders = corsHeaders
    + "Access-Control-Allow-Methods: GET, POST\r\nAccess-Control-Allow-Headers: Content-Type\r\n"
      "Access-Control-Allow-Private-Network: true\r\n";

} // namespace

LoopbackCarrier::LoopbackCarrier(PageChannel *channel, QObject *parent)
    : QObject(parent), m_channel(channel),
      m_server([this](const HttpRequest &request) { return respond(request); })
{
}

FunctionCallResult<ChannelAddress> LoopbackCarrier::start()
{
    if (!m_server.listen())
        return Failure(u"Could not listen on 127.0.0.1 for the page channel"_s);
    m_address = {m_server.port(), ChannelAddress::makeSecret()};
    return m_address;
}

HttpResponse LoopbackCarrier::respond(const HttpRequest &httpRequest)
{
    HttpResponse response;
    response.extraHeaders = corsHeaders;
    if (httpRequest.path() != m_address.path().toLatin1()) {
        response.status = response.body = "403 Forbidden";
        response.extraHeaders.clear();
        return response;
    }
    if (httpRequest.method == "OPTIONS") {
        response.status = "204 No Content";
        response.extraHeaders = preflightHeaders;
        return response;
    }
    if (httpRequest.method != "GET" && httpRequest.method != "POST") {
        response.status = response.body = "405 Method Not Allowed";
        return response;
    }
    const QString query = QString::fromUtf8(httpRequest.query());
    const std::optional<ChannelRequest> request
        = parseChannelRequest(query, QString::fromUtf8(httpRequest.body));
    if (!request) {
        PageChannel::logUnknown(query);
        response.status = response.body = "404 Not Found";
        return response;
    }
    response.body = m_channel->answer(*request).toUtf8();
    // Answered first: who receives it may evaluate script, which a page that waits for its answer could not
    // run.
    response.afterwards = [channel = m_channel, request = *request] { channel->deliver(request); };
    return response;
}

} // namespace Ostrel::Host
