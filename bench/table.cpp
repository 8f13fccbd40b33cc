#include "table.h"

#include <algorithm>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;

namespace {

constexpr int nameWidth = 58;
constexpr int timeWidth = 12;
constexpr int ratioWidth = 8;
constexpr int barWidth = 12;

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QString barText(const Row &row)
{
    switch (row.bar) {
    case Row::Bar::Ratio:
        return u"<= %1"_s.arg(number(row.limit, 2));
    case Row::Bar::Difference:
        return u"< +%1 ms"_s.arg(number(row.limit, 0));
    case Row::Bar::None:
        return u"-"_s;
    }
    Q_UNREACHABLE();
}

QString verdict(const Row &row)
{
    if (row.bar == Row::Bar::None)
        return u"-"_s;
    return row.isMissed() ? u"MISSED"_s : u"ok"_s;
}

QString line(const QString &name, const QString &ours, const QString &reference, const QString &ratio,
    const QString &bar, const QString &result)
{
    return name.leftJustified(nameWidth) + ours.rightJustified(timeWidth)
        + reference.rightJustified(timeWidth) + ratio.rightJustified(ratioWidth)
        + bar.rightJustified(barWidth) + u"  "_s + result + u'\n';
}

} // namespace

bool Row::isMissed() const
{
    switch (bar) {
    case Bar::Ratio:
        return ratio() > limit;
    case Bar::Difference:
        return ours - reference >= limit;
    case Bar::None:
        return false;
    }
    Q_UNREACHABLE();
}

QString tableText(const QList<Row> &rows)
{
    QString text
        = line(u"benchmark / reference"_s, u"ours, ms"_s, u"ref., ms"_s, u"ratio"_s, u"bar"_s, u"result"_s);
    for (const Row &row : rows)
        text += line(row.name, number(row.ours, 2), number(row.reference, 2), number(row.ratio(), 2),
            barText(row), verdict(row));
    const auto missed
        = std::count_if(rows.begin(), rows.end(), [](const Row &row) { return row.isMissed(); });
    text += u"%1 rows, %2 missed\n"_s.arg(QString::number(rows.size()), QString::number(missed));
    return text;
}

} // namespace Ostrel::Bench
