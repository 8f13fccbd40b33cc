// ChannelAddress: where pages send their requests. A secret of the session stands in it.
#pragma once

#include <QString>

namespace Ostrel::Host {

/// Pages compose "http://127.0.0.1:" + port text + "/?" + query. The port text carries the secret, so that no
/// other page and no other program on the machine can talk to the channel.
struct ChannelAddress
{
    int port = 0;
    QString secret;

    /// What goes into the page variable "window.__ostrel__port": "51234/6f1c...".
    QString portText() const;

    /// The path under which requests arrive: "/6f1c.../".
    QString path() const;

    /// The pattern, in the browser's own wildcard form, of every address of the channel.
    QString interceptionPattern() const;

    /// A secret that nobody can guess: 128 random bits in hexadecimal digits.
    static QString makeSecret();
};

} // namespace Ostrel::Host
