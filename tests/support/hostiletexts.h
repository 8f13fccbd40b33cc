// Texts that break script when they are pasted carelessly.
#pragma once

#include <QList>
#include <QString>

namespace Ostrel::Test {

struct HostileText
{
    const char *name;
    QString text;

    bool hasLineBreak() const { return text.contains(u'\n') || text.contains(u'\r'); }
    bool hasDoubleQuote() const { return text.contains(u'"'); }
};

inline QList<HostileText> hostileTexts()
{
    using namespace Qt::StringLiterals;
    return {
        {"single quote", u"it's"_s},
        {"double quote", u"19\" screen"_s},
        {"backslash", u"C:\\new"_s},
        {"backslash at the end", u"ends with \\"_s},
        {"backslash before a quote", u"\\'); stolen(); ('"_s},
        {"line feed", u"first\nsecond"_s},
        {"carriage return and line feed", u"first\r\nsecond"_s},
        {"placeholders", u"%1 %2 %3 %L1 %%"_s},
        {"end of a script element", u"</script><script>"_s},
        {"line separator", u"first\u2028second"_s},
        {"emoji", u"\U0001F600 smile"_s},
        {"escape sequence as text", u"\\u0041\\x41"_s},
        {"empty", QString()},
    };
}

} // namespace Ostrel::Test
