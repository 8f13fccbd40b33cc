// Lets GoogleTest print Qt's texts when a comparison fails.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList &texts, std::ostream *stream)
{
    *stream << "[\n";
    for (const QString &text : texts)
        *stream << "  \"" << text.toStdString() << "\"\n";
    *stream << ']';
}
