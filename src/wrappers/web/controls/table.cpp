#include "wrappers/web/controls/table.h"

#include "wrappers/web/controls/extensioncall.h"
#include "wrappers/web/objectfactory.h"

#include <cstdio>
#include <utility>

namespace Ostrel::WebWrapper {

namespace {

/// Takes the texts of a table apart: "$" ends a cell, "|" ends a row, and a backslash makes the next
/// character part of the text.
HTML_TableVPInterface::Rows rowsFrom(const QString &text)
{
    HTML_TableVPInterface::Rows rows;
    std::vector<std::string> row;
    QString cell;
    const auto endCell = [&row, &cell] { row.push_back(std::exchange(cell, {}).toStdString()); };

    bool isLiteral = false;
    for (const QChar character : text) {
        if (isLiteral) {
            cell += character;
            isLiteral = false;
        } else if (character == u'\\') {
            isLiteral = true;
        } else if (character == u'$') {
            endCell();
        } else if (character == u'|') {
            // An extension may leave out the end of a row's last cell.
            if (!cell.isEmpty())
                endCell();
            rows.push_back(std::exchange(row, {}));
        } else {
            cell += character;
        }
    }
    return rows;
}

/// The value of a result where nobody can receive an error.
template <typename T>
T valueOrReported(const FunctionCallResult<T> &result)
{
    if (result.failed())
        std::fprintf(stderr, "%s\n", qPrintable(result.error));
    return result.value;
}

} // namespace

// Ranges

HTML_TableVPInterface_TableRange::HTML_TableVPInterface_TableRange(const HTML_TableVPInterface *table,
    int topRow, int leftColumn, int bottomRow, int rightColumn, SharedPtr<Object> owner)
    : Ostrel::TableRange(topRow, leftColumn, bottomRow, rightColumn), m_table(table),
      m_owner(std::move(owner)), m_rows(valueOrReported(table->cellTexts()))
{
}

int HTML_TableVPInterface_TableRange::rowCount() const
{
    return valueOrReported(m_table->rowCount());
}

int HTML_TableVPInterface_TableRange::columnCount() const
{
    return valueOrReported(m_table->columnCount());
}

CellColor HTML_TableVPInterface_TableRange::cellBackgroundColor(int, int) const
{
    return {};
}

QString HTML_TableVPInterface_TableRange::cellText(int row, int column) const
{
    if (row < 0 || std::size_t(row) >= m_rows.size())
        return {};
    const std::vector<std::string> &cells = m_rows[std::size_t(row)];
    if (column < 0 || std::size_t(column) >= cells.size())
        return {};
    return QString::fromStdString(cells[std::size_t(column)]);
}

// Tables

FunctionCallResult<HTML_TableVPInterface::Rows> HTML_Table::cellTexts() const
{
    const FunctionCallResult<QString> text
        = evaluate(script(u"%1Extension.cellTexts(%2);", ext(), ref()), u"Error obtaining cell texts: %1");
    if (text.failed())
        return Failure(text.error);
    return rowsFrom(text.value);
}

FunctionCallResult<QString> HTML_Table::cellText(int row, int column) const
{
    FunctionCallResult<QString> text
        = evaluate(script(u"%1Extension.cellText(%2, %3, %4);", ext(), ref(), row, column), u"%1");
    if (text.failed()) {
        // Kept as is: the message has no room for what the page says; scripts match on this text.
        return Failure(message(u"Error obtaining cell text for row %1 and column %2", QString::number(row),
            QString::number(column)));
    }
    return text;
}

FunctionCallResult<int> HTML_Table::rowCount() const
{
    return toNumber(
        evaluate(script(u"%1Extension.rowCount(%2);", ext(), ref()), u"Error obtaining number of rows: %1"),
        u"Cannot convert '%1' to number of rows.");
}

FunctionCallResult<int> HTML_Table::columnCount() const
{
    return toNumber(evaluate(script(u"%1Extension.columnCount(%2);", ext(), ref()),
                        u"Error obtaining number of columns: %1"),
        u"Cannot convert '%1' to number of columns.");
}

FunctionCallResult<HTML_Object *> HTML_Table::cellAt(int row, int column) const
{
    constexpr QStringView error = u"Failed to get cell object for row %1 and column %2: %3";
    const QString rowText = QString::number(row);
    const QString columnText = QString::number(column);
    FunctionCallResult<HTML_Object *> cell = htmlObjectFromJavaScriptResult(component(),
        script(u"%1Extension.cellAt(%2, %3, %4);", ext(), ref(), row, column),
        message(u"TableCell_%1_%2", rowText, columnText), 0);
    if (cell.failed())
        return Failure(message(error, rowText, columnText, cell.error));
    if (!cell.value) {
        return Failure(message(
            u"Failed to get cell object for row %1 and column %2: No valid object.", rowText, columnText));
    }
    return cell;
}

} // namespace Ostrel::WebWrapper
