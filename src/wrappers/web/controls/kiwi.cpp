#include "wrappers/web/controls/kiwi.h"

#include "wrappers/web/controls/extensioncall.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/objectfactory.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// Stands for all rows where a search begins behind a row.
constexpr int noStartRow = -1;

/// Script that leaves in __ostrel__node the first cell of a table with a text. A value, which the page does
/// not show, wins over a visible text in whatever row.
QString findItemInternal(const Expr &table, const QString &text, int startRow)
{
    const QString start = startRow == noStartRow ? u"undefined"_s : QString::number(startRow);
    return script(
        u"var __ostrel__startRow = %1;"
        "var __ostrel__node = undefined;"
        "(function() {"
        "  var text = __ostrel__clean('%3');"
        "  var cells = %2.getElementsByTagName('TD');"
        "  function firstCell(textOf) {"
        "    for( var c = 0; c < cells.length; c++ ) {"
        "      if( __ostrel__startRow !== undefined && !(cells[c].i > __ostrel__startRow) ) continue;"
        "      if( __ostrel__clean(textOf(cells[c])) == text ) return cells[c];"
        "    }"
        "  }"
        "  __ostrel__node = firstCell(function(cell) { return cell.getAttribute('value'); })"
        "    || firstCell(function(cell) { return cell.innerText; });"
        "}());",
        Expr{start}, table, Expr{text});
}

/// Script that leaves the cell at a place in a variable and gives its type. A row has holes where a cell
/// above spans it.
QString findCellScript(
    QStringView rowsFunction, const Expr &table, const QString &variable, int row, int column)
{
    return script(u"var __ostrel__rows = %1(%2);"
                  "  var count = 0;"
                  "  for( var c = 0; c < __ostrel__rows[%3].length; c++ ) {"
                  "     if( __ostrel__rows[%3][c] == undefined ) continue;"
                  "     if( count == %4 ) { %5 = __ostrel__rows[%3][c];"
                  "       __ostrel__typeOf(%5);"
                  "       break;"
                  "    }"
                  "     count++;"
                  "  }",
        Expr{rowsFunction.toString()}, table, row, column, Expr{variable});
}

/// Script that leaves the first cell of a row of __ostrel__rows in __ostrel__row.
QString findRowScript(int row)
{
    return script(u"var __ostrel__row = undefined;"
                  "  for( var c = 0; __ostrel__rows[%1] && c < __ostrel__rows[%1].length; c++ ) {"
                  "     if( __ostrel__rows[%1][c] == undefined ) continue;"
                  "     __ostrel__row = __ostrel__rows[%1][c];"
                  "     break;"
                  "  }",
        row);
}

/// A wrapper of what a script left in a page variable and told the type of. The reference of the table goes
/// along as the cell's name: the cell takes it for its owner.
template <typename Cell>
FunctionCallResult<Cell *> cellIn(
    const QString &variable, const FunctionCallResult<QString> &type, const HTML_Object &table)
{
    if (type.failed())
        return Failure(type.error);
    return as<Cell>(
        htmlObjectFromReferenceInfo(table.component(), type.value, variable, table.jsReference()));
}

} // namespace

// Choices

FunctionCallResult<QString> HTML_KiwiChoice::selectedOption() const
{
    return evaluate(script(u"__ostrel__kiwi__choice__selectedOption( %1);", ref()),
        u"Error while getting selected value: %1");
}

FunctionCallResult<void> HTML_KiwiChoice::setSelectedOption(const QString &text)
{
    return run(script(u"__ostrel__kiwi__choice__setSelectedOption( %1, '%2');", ref(), QuotedLine{text}),
        u"Error while setting selected option text '%1': %2", text);
}

FunctionCallResult<int> HTML_KiwiChoice::selectedValue() const
{
    // Kept as is: the second message speaks of rows, as those of the tables do; scripts match on this text.
    return toNumber(
        evaluate(script(u"__ostrel__cbinput = %1.getElementsByTagName('input')[0];__ostrel__cbinput.value;",
                     ref()),
            u"Error while getting selected value: %1"),
        u"Could not convert value '%1' to number of rows.");
}

FunctionCallResult<void> HTML_KiwiChoice::setSelectedValue(int value)
{
    return run(script(u"__ostrel__kiwi__choice__setSelectedValue( %1, %2);", ref(), value),
        u"Error while setting selected value to '%1': %2", QString::number(value));
}

// Trees

QString HTML_KiwiTree::findItem(const QString &item) const
{
    return script(u"var __ostrel__node = __ostrel__kiwi__tree__find__item( %1, '%2' );", ref(), Expr{item});
}

FunctionCallResult<void> HTML_KiwiTree::clickHandle(const QString &item)
{
    return runAndWait(
        script(u"%1if (__ostrel__node) {__ostrel__node = __ostrel__node.parentNode.previousSibling;"
               "if (__ostrel__node) {%2}}",
            Expr{findItem(item)}, Expr{clickOn("__ostrel__node", 0, 0, 0, 1)}),
        u"Error clicking handle of item '%1': %2", item);
}

FunctionCallResult<bool> HTML_KiwiTree::isSelected(const QString &item) const
{
    return isTrue(
        evaluate(script(u"%1if (__ostrel__node) {__ostrel__kiwi__tree__is__selected( %2, __ostrel__node );} "
                        "else {false;}",
                     Expr{findItem(item)}, ref()),
            u"Error checking selection state of item '%1': %2", item));
}

FunctionCallResult<bool> HTML_KiwiTree::isOpen(const QString &item) const
{
    return isTrue(evaluate(
        script(u"%1if (__ostrel__node) {__ostrel__kiwi__tree__is__open( __ostrel__node );} else {false;}",
            Expr{findItem(item)}),
        u"Error checking open state of item '%1': %2", item));
}

// Cells

KiwiCell::KiwiCell(
    const QString &name, const QString &reference, const QString &owner, HTMLComponent *component)
    : HTML_Object(name, reference, component), m_owner(owner)
{
}

FunctionCallResult<int> KiwiCell::row() const
{
    return toNumber(property("i"), u"Error: cannot convert '%1' to row number.");
}

FunctionCallResult<int> KiwiCell::column() const
{
    return toNumber(property("j"), u"Error: cannot convert '%1' to column number.");
}

FunctionCallResult<QString> HTML_KiwiTableCell::value() const
{
    return property("value");
}

FunctionCallResult<bool> HTML_KiwiTableCell::isSelected() const
{
    return isTrueInAnyCase(
        evaluate(script(u"__ostrel__kiwi__table__isCellSelected(%1, %2, 'kiwi_table');", owner(), ref()),
            u"Error while checking selection: %1"));
}

FunctionCallResult<QString> HTML_KiwiTreeTableCell::value() const
{
    return property("value");
}

FunctionCallResult<bool> HTML_KiwiTreeTableCell::isSelected() const
{
    return isTrueInAnyCase(
        evaluate(script(u"__ostrel__kiwi__table__isRowSelected(%1, %2.i, 'kiwi_treetable');", owner(), ref()),
            u"Error while checking selection: %1"));
}

FunctionCallResult<int> HTML_KiwiTreeTableCell::absRow() const
{
    return toNumber(
        evaluate(script(u"__ostrel__kiwi__treetable__absoluteRowByCount( %1, %2 );", owner(), ref()),
            u"Error while fetching absRow value: %1"),
        u"Error: cannot convert '%1' to absRow number.");
}

FunctionCallResult<QString> HTML_KiwiMatrixCell::value() const
{
    return evaluate(script(u"%1.firstChild.innerText", ref()), u"Error retrieving cell value: %1");
}

// Kept as is: both counts of a matrix speak of a selection when they fail; scripts match on these texts.

FunctionCallResult<int> HTML_KiwiMatrix::numRows() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__matrix_numRows(%1);", ref()),
                        u"Error while checking selection: %1"),
        u"Error: cannot convert value '%1' to number of rows");
}

FunctionCallResult<int> HTML_KiwiMatrix::numColumns() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__matrix_numColumns(%1);", ref()),
                        u"Error while checking selection: %1"),
        u"Error: cannot convert value '%1' to number of columns");
}

FunctionCallResult<bool> HTML_KiwiMatrix::isSelected() const
{
    return isTrueInAnyCase(evaluate(
        script(u"__ostrel__kiwi__table__isCellSelected(%1, %2, 'kiwi_matrixtable');", owner(), ref()),
        u"Error while checking selection: %1"));
}

FunctionCallResult<HTML_KiwiMatrixCell *> HTML_KiwiMatrix::findItem(int row, int column) const
{
    const QString variable = nextPageVariable();
    return cellIn<HTML_KiwiMatrixCell>(variable,
        evaluate(findCellScript(u"__ostrel__kiwi__matrix__getRows", ref(), variable, row, column),
            u"Error while finding item at row %1 column %2: %3", QString::number(row),
            QString::number(column)),
        *this);
}

// Tables

FunctionCallResult<int> KiwiTableBase::numRows() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__table_numRows(%1);", ref()),
                        u"Error while obtaining number of rows: %1"),
        u"Could not convert value '%1' to number of rows.");
}

FunctionCallResult<int> KiwiTableBase::numColumns() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__table_numColumns(%1);", ref()),
                        u"Error while obtaining number of columns: %1"),
        u"Could not convert value '%1' to number of columns.");
}

FunctionCallResult<int> KiwiTableBase::numGroups() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__table_numGroups(%1);", ref()),
                        u"Error while obtaining number of groups: %1"),
        u"Could not convert value '%1' to number of groups.");
}

FunctionCallResult<QString> KiwiTableBase::groupCaption(int group) const
{
    return evaluate(script(u"__ostrel__kiwi__table_grpcaption(%1, %2);", ref(), group),
        u"Error while obtaining group caption for %1: %2", QString::number(group));
}

FunctionCallResult<QString> KiwiTableBase::groupCaptionOfColumn(int column) const
{
    return evaluate(script(u"__ostrel__kiwi__table_grpcaptionofcol(%1, %2);", ref(), column),
        u"Error while obtaining group caption for column %1: %2", QString::number(column));
}

FunctionCallResult<void> KiwiTableBase::clickItem(const QString &item, int modifier)
{
    return runAndWait(script(u"%1if (__ostrel__node) {%2}", Expr{findItemInternal(ref(), item, noStartRow)},
                          Expr{clickOn("__ostrel__node", modifier, 0, 0, 1)}),
        u"Error while clicking on item '%1' with modifier '%2': %3", item, QString::number(modifier));
}

FunctionCallResult<void> KiwiTableBase::clickRow(const QString &text, int modifier)
{
    return runAndWait(script(u"var __ostrel__row = __ostrel__kiwi__table__findRow(%1, '%2');%3", ref(),
                          Expr{text}, Expr{clickOnRow(modifier)}),
        u"Error while clicking on row '%1' with modifier '%2': %3", text, QString::number(modifier));
}

FunctionCallResult<void> KiwiTableBase::clickRow(int row, int modifier)
{
    return runAndWait(script(u"var __ostrel__rows = __ostrel__kiwi__table__getRows(%1); %2%3", ref(),
                          Expr{findRowScript(row)}, Expr{clickOnRow(modifier)}),
        u"Error while clicking on row %1 with modifier '%2': %3", QString::number(row),
        QString::number(modifier));
}

FunctionCallResult<bool> KiwiTableBase::hasItem(const QString &item) const
{
    return isTrue(evaluate(script(u"%1!!__ostrel__node;", Expr{findItemInternal(ref(), item, noStartRow)}),
        u"Error while checking if item '%1' is known: %2", item));
}

FunctionCallResult<bool> KiwiTableBase::isSelected(const QString &item) const
{
    // Kept as is: the double test, and a tree table that asks as a table does; the page's functions know this
    // call.
    return isTrue(evaluate(script(u"%1if (__ostrel__node) {if (__ostrel__node) {"
                                  "__ostrel__kiwi__table__isCellSelected(%2, __ostrel__node, 'kiwi_table');} "
                                  "else {false;}} else {false;}",
                               Expr{findItemInternal(ref(), item, noStartRow)}, ref()),
        u"Error while checking if item '%1' is selected: %2", item));
}

template <typename Cell>
FunctionCallResult<Cell *> KiwiTableBase::findCell(const QString &text, int startRow) const
{
    const QString variable = nextPageVariable();
    return cellIn<Cell>(variable,
        evaluate(script(u"%1%2 = __ostrel__node; __ostrel__typeOf(%2);",
                     Expr{findItemInternal(ref(), text, startRow)}, Expr{variable}),
            u"Error while finding item '%1' starting at row %2: %3", text, QString::number(startRow)),
        *this);
}

template <typename Cell>
FunctionCallResult<Cell *> KiwiTableBase::findCell(int row, int column) const
{
    const QString variable = nextPageVariable();
    return cellIn<Cell>(variable,
        evaluate(findCellScript(u"__ostrel__kiwi__table__getRows", ref(), variable, row, column),
            u"Error while finding item at row %1 and column %2: %3", QString::number(row),
            QString::number(column)),
        *this);
}

QString HTML_KiwiTable::clickOnRow(int modifier) const
{
    return script(u"if (__ostrel__row) {%1}", Expr{clickOn("__ostrel__row", modifier, 0, 0, 1)});
}

FunctionCallResult<QString> HTML_KiwiTable::caption(int column) const
{
    return evaluate(script(u"__ostrel__kiwi__table_caption(%1, %2);", ref(), column),
        u"Error while obtaining caption for column %1: %2", QString::number(column));
}

FunctionCallResult<bool> HTML_KiwiTable::rowSelected(int row) const
{
    return isTrueInAnyCase(
        evaluate(script(u"__ostrel__kiwi__table__isRowSelected(%1, %2, 'kiwi_table');", ref(), row),
            u"Error while checking if row %1 is selected: %2", QString::number(row)));
}

FunctionCallResult<HTML_KiwiTableCell *> HTML_KiwiTable::findItem(const QString &text, int startRow) const
{
    return findCell<HTML_KiwiTableCell>(text, startRow);
}

FunctionCallResult<HTML_KiwiTableCell *> HTML_KiwiTable::findItem(int row, int column) const
{
    return findCell<HTML_KiwiTableCell>(row, column);
}

QString HTML_KiwiTreeTable::clickOnRow(int modifier) const
{
    return script(u"if (__ostrel__row) { %1}",
        Expr{clickOn(
            "__ostrel__kiwi__treetable__find__clickableelement( __ostrel__row )", modifier, 0, 0, 1)});
}

FunctionCallResult<QString> HTML_KiwiTreeTable::caption(int column) const
{
    return evaluate(script(u"__ostrel__kiwi__treetable_caption(%1, %2);", ref(), column),
        u"Error while obtaining caption for %1: %2", QString::number(column));
}

FunctionCallResult<bool> HTML_KiwiTreeTable::rowSelected(int row) const
{
    constexpr QStringView error = u"Error selecting row %1: %2";
    const FunctionCallResult<HTML_KiwiTreeTableCell *> found = findItem(row, 0);
    if (found.failed())
        return Failure(message(error, QString::number(row), found.error));
    if (!found.value)
        return Failure(message(error, QString::number(row), u"The row has no cell."_s));
    const std::unique_ptr<HTML_KiwiTreeTableCell> cell(found.value);
    FunctionCallResult<bool> selected = cell->isSelected();
    if (selected.failed())
        return Failure(message(error, QString::number(row), selected.error));
    return selected;
}

FunctionCallResult<HTML_KiwiTreeTableCell *> HTML_KiwiTreeTable::findItem(
    const QString &text, int startRow) const
{
    return findCell<HTML_KiwiTreeTableCell>(text, startRow);
}

FunctionCallResult<HTML_KiwiTreeTableCell *> HTML_KiwiTreeTable::findItem(int row, int column) const
{
    return findCell<HTML_KiwiTreeTableCell>(row, column);
}

FunctionCallResult<int> HTML_KiwiMatrixTable::numRows() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__matrixtable_numRows(%1);", ref()),
                        u"Error while obtaining number of rows: %1"),
        u"Could not convert value '%1' to number of rows.");
}

FunctionCallResult<int> HTML_KiwiMatrixTable::numColumns() const
{
    return toNumber(evaluate(script(u"__ostrel__kiwi__matrixtable_numColumns(%1);", ref()),
                        u"Error while obtaining number of columns: %1"),
        u"Could not convert value '%1' to number of columns.");
}

FunctionCallResult<QString> HTML_KiwiMatrixTable::columnCaption(int column) const
{
    return evaluate(
        script(u"__ostrel__kiwi__matrixtable_caption(%1, %2, 'matrixColumnHeader');", ref(), column),
        u"Error while obtaining column caption for column %1: %2", QString::number(column));
}

FunctionCallResult<QString> HTML_KiwiMatrixTable::rowCaption(int row) const
{
    return evaluate(script(u"__ostrel__kiwi__matrixtable_caption(%1, %2, 'matrixRowHeader');", ref(), row),
        u"Error while obtaining row caption for row %1: %2", QString::number(row));
}

FunctionCallResult<HTML_KiwiMatrix *> HTML_KiwiMatrixTable::findItem(int row, int column) const
{
    const QString variable = nextPageVariable();
    return cellIn<HTML_KiwiMatrix>(variable,
        evaluate(findCellScript(u"__ostrel__kiwi__matrixtable__getRows", ref(), variable, row, column),
            u"Error while finding item at row %1 column %2: %3", QString::number(row),
            QString::number(column)),
        *this);
}

// Menus

FunctionCallResult<QString> HTML_KiwiMoreMenuItem::itemText() const
{
    return evaluate(
        script(u"__ostrel__kiwi__menuItemText(%1);", ref()), u"Error while obtaining menu item text: %1");
}

FunctionCallResult<QString> HTML_KiwiMoreMenu::getItems() const
{
    if (!m_items.isEmpty())
        return m_items;
    const QString variable = nextPageVariable();
    const FunctionCallResult<void> stored
        = run(script(u"%1 = __ostrel__kiwi__menuItems(%2);", Expr{variable}, ref()),
            u"Error while obtaining all menu items: %1");
    if (stored.failed())
        return Failure(stored.error);
    m_items = variable;
    return m_items;
}

FunctionCallResult<int> HTML_KiwiMoreMenu::numItems() const
{
    const FunctionCallResult<QString> items = getItems();
    if (items.failed())
        return Failure(message(u"Error while determining number of items: %1", items.error));
    return toNumber(
        evaluate(script(u"%1.length;", Expr{items.value}), u"Error while obtaining number of items: %1"),
        u"Could not convert value '%1' to number of items.");
}

FunctionCallResult<HTML_KiwiMoreMenuItem *> HTML_KiwiMoreMenu::itemAt(int index) const
{
    const FunctionCallResult<QString> items = getItems();
    if (items.failed())
        return Failure(message(u"Error while getting item at %1: %2", QString::number(index), items.error));
    const QString variable = nextPageVariable();
    const FunctionCallResult<QString> type
        = evaluate(script(u"%1 = %2[%3]; __ostrel__typeOf(%1);", Expr{variable}, Expr{items.value}, index),
            u"Error while getting item %1: %2", QString::number(index));
    if (type.failed())
        return Failure(type.error);
    return as<HTML_KiwiMoreMenuItem>(htmlObjectFromReferenceInfo(component(), type.value, variable, {}));
}

FunctionCallResult<bool> HTML_KiwiMoreMenu::activateItem(const QString &text)
{
    return isTrue(evaluate(script(u"__ostrel__kiwi__activateItem(%1, '%2');", ref(), Expr{text}),
        u"Error while activating item '%1': %2", text));
}

} // namespace Ostrel::WebWrapper
