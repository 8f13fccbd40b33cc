// Printers: lets a failing test show Qt text as text.
#pragma once

#include <QString>

#include <ostream>

/// Found by GoogleTest; without it a QString shows as a list of code units. Lists of texts use it too.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
