#include "host/channel/channeladdress.h"

#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

QString ChannelAddress::portText() const
{
    return u"%1/%2"_s.arg(QString::number(port), secret);
}

QString ChannelAddress::path() const
{
    return u"/%1/"_s.arg(secret);
}

// "?" is a wildcard of the pattern, so the one in the address is marked.
QString ChannelAddress::interceptionPattern() const
{
    return u"http://127.0.0.1:%1%2\\?*"_s.arg(QString::number(port), path());
}

QString ChannelAddress::makeSecret()
{
    std::array<quint32, 4> bits{};
    QRandomGenerator::system()->fillRange(bits.data(), qsizetype(bits.size()));
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(bits.data()), qsizetype(sizeof bits)).toHex());
}

} // namespace Ostrel::Host
