// html(): builds HTML from patterns in which every text is escaped that does not say that it is HTML already.
#pragma once

#include <QString>

namespace Ostrel::Host {

/// Text that is HTML.
struct Html
{
    QString text;

    Html &operator+=(const Html &other)
    {
        text += other.text;
        return *this;
    }
    Html operator+(const Html &other) const { return {text + other.text}; }
};

inline QString htmlPiece(const Html &html)
{
    return html.text;
}
inline QString htmlPiece(const QString &text)
{
    return text.toHtmlEscaped();
}
inline QString htmlPiece(qint64 number)
{
    return QString::number(number);
}

/// The pattern with its "%1" and so on replaced in one go, so that a "%1" inside a text stays what it is.
template <typename... Pieces>
Html html(const QString &pattern, const Pieces &...pieces)
{
    if constexpr (sizeof...(pieces) == 0)
        return {pattern};
    else
        return {pattern.arg(htmlPiece(pieces)...)};
}

} // namespace Ostrel::Host
