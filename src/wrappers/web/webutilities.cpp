#include "wrappers/web/webutilities.h"

#include <ctime>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

int hexDigit(QChar digit)
{
    const char16_t c = digit.unicode();
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return 0;
}

/// The character at `index`, or a null character behind the end.
QChar charAt(const QString &text, qsizetype index)
{
    return index < text.size() ? text.at(index) : QChar();
}

/// A letter, a colon and two backslashes, as a Windows path looks that has been escaped once.
bool startsWithEscapedDrive(const QString &address)
{
    return address.indexOf(":\\\\"_L1) == 1 && address.at(0).isLetter();
}

} // namespace

QString unescape(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != u'%') {
            result += text.at(i);
        } else if (charAt(text, i + 1) == u'u') {
            result += QChar(char16_t(text.mid(i + 2, 4).leftJustified(4, u'0').toInt(nullptr, 16)));
            i += 5;
        } else {
            result += QChar(char16_t(16 * hexDigit(charAt(text, i + 1)) + hexDigit(charAt(text, i + 2))));
            i += 2;
        }
    }
    return result.replace("&amp;"_L1, "&"_L1);
}

QString addSchemeIfMissing(const QString &address)
{
    if (address.isEmpty() || startsWithEscapedDrive(address))
        return address;
    for (const auto scheme : {"http://"_L1, "https://"_L1, "file://"_L1}) {
        if (address.startsWith(scheme))
            return address;
    }
    return u"http://%1"_s.arg(address);
}

quint64 now()
{
    std::timespec time{};
    std::timespec_get(&time, TIME_UTC);
    return quint64(time.tv_sec) * 1000 + quint64(time.tv_nsec) / 1000000;
}

} // namespace Ostrel::WebWrapper
