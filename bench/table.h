// Table: what the benchmarks print: our time, that of a reference in the same run, their ratio and the bar.
#pragma once

#include <QList>
#include <QString>

namespace Ostrel::Bench {

/// One line of the table. Times are in milliseconds.
struct Row
{
    enum class Bar {
        Ratio, ///< ours may be at most `limit` times the reference
        Difference, ///< ours may be at most `limit` milliseconds more than the reference
        None, ///< for the record only
    };

    QString name;
    double ours = 0;
    double reference = 0;
    Bar bar = Bar::None;
    double limit = 0;

    double ratio() const { return ours / reference; }
    bool isMissed() const;
};

/// The whole table: a head, a line for each row, and at the end how many bars were missed.
QString tableText(const QList<Row> &rows);

} // namespace Ostrel::Bench
