#include "host/browser/navigation.h"

#include <array>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

struct ErrorRow
{
    QLatin1StringView codePrefix; ///< all codes that begin so
    QLatin1StringView words;
};

constexpr std::array errors{
    ErrorRow{"net::ERR_NAME_NOT_RESOLVED"_L1, "the host name is not known"_L1},
    ErrorRow{"net::ERR_CONNECTION_REFUSED"_L1, "nothing answers at that address and port"_L1},
    ErrorRow{"net::ERR_CONNECTION_TIMED_OUT"_L1, "the server did not answer in time"_L1},
    ErrorRow{"net::ERR_TIMED_OUT"_L1, "the server did not answer in time"_L1},
    ErrorRow{"net::ERR_CONNECTION_RESET"_L1, "the server broke the connection off"_L1},
    ErrorRow{"net::ERR_CONNECTION_CLOSED"_L1, "the server broke the connection off"_L1},
    ErrorRow{"net::ERR_EMPTY_RESPONSE"_L1, "the server closed the connection without an answer"_L1},
    ErrorRow{"net::ERR_INVALID_HTTP_RESPONSE"_L1, "the server does not speak HTTP"_L1},
    ErrorRow{"net::ERR_ADDRESS_UNREACHABLE"_L1, "the address cannot be reached"_L1},
    ErrorRow{"net::ERR_INTERNET_DISCONNECTED"_L1, "there is no network"_L1},
    ErrorRow{"net::ERR_CERT_"_L1, "the server's certificate is not trusted"_L1},
    ErrorRow{"net::ERR_SSL_"_L1, "no secure connection could be made"_L1},
    ErrorRow{"net::ERR_TOO_MANY_REDIRECTS"_L1, "the server redirects in a circle"_L1},
    ErrorRow{"net::ERR_FILE_NOT_FOUND"_L1, "there is no such file"_L1},
    ErrorRow{"net::ERR_ACCESS_DENIED"_L1, "access is denied"_L1},
    ErrorRow{"net::ERR_INVALID_URL"_L1, "it is no valid address"_L1},
    ErrorRow{"net::ERR_UNKNOWN_URL_SCHEME"_L1, "the browser does not know this kind of address"_L1},
    ErrorRow{"net::ERR_UNSAFE_PORT"_L1, "the browser refuses this port"_L1},
    ErrorRow{"net::ERR_BLOCKED_BY_"_L1, "the browser has blocked it"_L1},
    ErrorRow{"net::ERR_HTTP_RESPONSE_CODE_FAILURE"_L1, "the server answered with an error and no page"_L1},
    // Also what a navigation ends in that a later one has overtaken.
    ErrorRow{"net::ERR_ABORTED"_L1, "it is a download or has no content, so there is no page to show"_L1},
};

} // namespace

QString describeNavigationError(const QString &address, const QString &code)
{
    for (const ErrorRow &row : errors) {
        if (code.startsWith(row.codePrefix))
            return u"Could not open '%1': %2 (%3)"_s.arg(address, row.words, code);
    }
    return u"Could not open '%1': %2"_s.arg(address, code);
}

} // namespace Ostrel::Host
