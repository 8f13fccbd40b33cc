#include "host/report/xmltext.h"

namespace Ostrel::Host {

namespace {

bool isForbidden(char32_t character)
{
    const bool isBlank = character == '\t' || character == '\n' || character == '\r';
    return (character < 0x20 && !isBlank) || (character >= 0xD800 && character <= 0xDFFF)
        || character == 0xFFFE || character == 0xFFFF;
}

} // namespace

QString withoutForbiddenCharacters(const QString &text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const bool isPair
            = character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            clean += text.mid(i++, 2);
        else if (!isForbidden(character.unicode()))
            clean += character;
    }
    return clean;
}

} // namespace Ostrel::Host
