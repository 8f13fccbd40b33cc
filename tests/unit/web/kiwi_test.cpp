// Tests of the controls of the Kiwi toolkit.
#include "wrappers/web/controls/kiwi.h"
#include "wrappers/web/objectfactory.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/operationcase.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString done = u"done"_s;

/// A wait of 200 ms may end a twentieth early.
constexpr int shortestWait = 190;

/// The wrapper of the element "el"; a cell of the table "tbl".
template <typename Wrapper>
Wrapper kiwi(FakePage &page)
{
    if constexpr (std::derived_from<Wrapper, KiwiCell>)
        return Wrapper(QString(), u"el"_s, u"tbl"_s, &page);
    else
        return Wrapper(QString(), u"el"_s, &page);
}

/// What the operation does with such a wrapper.
template <typename Wrapper, typename Operation>
std::function<Outcome(FakePage &)> with(Operation operation)
{
    return [operation](FakePage &page) {
        Wrapper wrapper = kiwi<Wrapper>(page);
        return outcomeOf(operation(wrapper));
    };
}

/// Page variables have numbers that no variable had before: the first of a text becomes V1, the next V2.
QString withVariables(QString text)
{
    static const QRegularExpression variable(u"window\\.__ostrel__object__C\\d+"_s);
    for (int number = 1;; ++number) {
        const QRegularExpressionMatch match = variable.match(text);
        if (!match.hasMatch())
            return text;
        text.replace(QRegularExpression(match.captured() + u"(?!\\d)"_s), u"V%1"_s.arg(number));
    }
}

/// All scripts that a page got, one a line.
QString scriptsOf(const FakePage &page)
{
    return withVariables(page.scripts().join(u'\n'));
}

/// The script that looks a cell up by its text.
QString lookup(const QString &text, const QString &startRow = u"undefined"_s)
{
    return u"var __ostrel__startRow = %1;"
           "var __ostrel__node = undefined;"
           "(function() {"
           "  var text = __ostrel__clean('%2');"
           "  var cells = el.getElementsByTagName('TD');"
           "  function firstCell(textOf) {"
           "    for( var c = 0; c < cells.length; c++ ) {"
           "      if( __ostrel__startRow !== undefined && !(cells[c].i > __ostrel__startRow) ) continue;"
           "      if( __ostrel__clean(textOf(cells[c])) == text ) return cells[c];"
           "    }"
           "  }"
           "  __ostrel__node = firstCell(function(cell) { return cell.getAttribute('value'); })"
           "    || firstCell(function(cell) { return cell.innerText; });"
           "}());"_s.arg(startRow, text);
}

class KiwiOperation : public Operations
{
};

/// Operations that click, and so take 200 ms each: a page that fails gets the same script as any other.
class KiwiClick : public testing::TestWithParam<OperationCase>
{
};

/// The conversions of numbers: what an operation says of an answer that is none.
struct NoNumber
{
    const char *name;
    std::function<Outcome(FakePage &)> call;
    QString error;
};

void PrintTo(const NoNumber &row, std::ostream *stream)
{
    *stream << row.name;
}

class KiwiNumber : public testing::TestWithParam<NoNumber>
{
};

/// A page that runs what it is sent, with the table "el" of cells that have the members `value`, `innerText`
/// and `i`.
class KiwiPage : public FakePage
{
public:
    explicit KiwiPage(const QString &cells)
    {
        QFile clean(
            QStringLiteral(PAGEPROBE_SOURCE_DIR "/src/wrappers/web/payload/11-text-simplification.js"));
        EXPECT_TRUE(clean.open(QIODevice::ReadOnly));
        page.run(u"window.top = {__ostrel: {}};\n"_s + QString::fromUtf8(clean.readAll()));
        EXPECT_EQ(page.error(), QString());
        page.run(u"var cells = "_s + cells
            + u".map(function(cell) {\n"
              "    cell.getAttribute = function(name) { return name === 'value' ? cell.value : null; };\n"
              "    return cell;\n"
              "});\n"
              "el.getElementsByTagName = function(tag) { return tag === 'TD' ? cells : []; };\n"
              "function __ostrel__typeOf(o) { return o ? 'kiwi_table_item' : 'undefined'; }\n"
              "function __ostrel__kiwi__table__getRows(table) { return table === el ? rows : undefined; }\n"_s);
        EXPECT_EQ(page.error(), QString());
    }

    EvalResult evaluateJavaScript(const QString &script, unsigned int timeoutMs) const override
    {
        (void)FakePage::evaluateJavaScript(script, timeoutMs);
        const QJSValue value = page.run(script);
        return {page.error().isEmpty() ? value.toString() : page.error(), !page.error().isEmpty(), false};
    }

    /// The member `id` of the cell that a lookup found.
    template <typename Cell>
    QString idOf(const FunctionCallResult<Cell *> &found)
    {
        EXPECT_EQ(found.error, QString());
        const std::unique_ptr<Cell> cell(found.value);
        return cell ? page.run(cell->jsReference() + u".id"_s).toString() : u"none"_s;
    }

    mutable PageScript page{{u"__ostrel__click"_s}};
};

} // namespace

// Operations that ask the page once

TEST_P(KiwiOperation, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(KiwiOperation, SaysWhatFailed)
{
    saysWhatFailed();
}

INSTANTIATE_TEST_SUITE_P(Choices, KiwiOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"selected option", with<HTML_KiwiChoice>([](auto &choice) { return choice.selectedOption(); }),
            u"__ostrel__kiwi__choice__selectedOption( el);"_s, u" Red "_s, u" Red "_s,
            u"Error while getting selected value: gone"_s},
        {"set selected option",
            with<HTML_KiwiChoice>([](auto &choice) { return choice.setSelectedOption(u"it's \\ %1"_s); }),
            u"__ostrel__kiwi__choice__setSelectedOption( el, 'it\\'s \\\\ %1');"_s, u"undefined"_s, done,
            u"Error while setting selected option text 'it's \\ %1': gone"_s},
        {"selected value", with<HTML_KiwiChoice>([](auto &choice) { return choice.selectedValue(); }),
            u"__ostrel__cbinput = el.getElementsByTagName('input')[0];__ostrel__cbinput.value;"_s, u"7"_s,
            u"7"_s, u"Error while getting selected value: gone"_s},
        {"set selected value", with<HTML_KiwiChoice>([](auto &choice) { return choice.setSelectedValue(7); }),
            u"__ostrel__kiwi__choice__setSelectedValue( el, 7);"_s, u"undefined"_s, done,
            u"Error while setting selected value to '7': gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Tables, KiwiOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"rows of a table", with<HTML_KiwiTable>([](auto &table) { return table.numRows(); }),
            u"__ostrel__kiwi__table_numRows(el);"_s, u"12"_s, u"12"_s,
            u"Error while obtaining number of rows: gone"_s},
        {"columns of a table", with<HTML_KiwiTable>([](auto &table) { return table.numColumns(); }),
            u"__ostrel__kiwi__table_numColumns(el);"_s, u"4"_s, u"4"_s,
            u"Error while obtaining number of columns: gone"_s},
        {"groups of a table", with<HTML_KiwiTable>([](auto &table) { return table.numGroups(); }),
            u"__ostrel__kiwi__table_numGroups(el);"_s, u"2"_s, u"2"_s,
            u"Error while obtaining number of groups: gone"_s},
        {"caption of a table", with<HTML_KiwiTable>([](auto &table) { return table.caption(3); }),
            u"__ostrel__kiwi__table_caption(el, 3);"_s, u"Price"_s, u"Price"_s,
            u"Error while obtaining caption for column 3: gone"_s},
        {"group caption of a table", with<HTML_KiwiTable>([](auto &table) { return table.groupCaption(1); }),
            u"__ostrel__kiwi__table_grpcaption(el, 1);"_s, u"Costs"_s, u"Costs"_s,
            u"Error while obtaining group caption for 1: gone"_s},
        {"group caption of a column of a table",
            with<HTML_KiwiTable>([](auto &table) { return table.groupCaptionOfColumn(3); }),
            u"__ostrel__kiwi__table_grpcaptionofcol(el, 3);"_s, u"Costs"_s, u"Costs"_s,
            u"Error while obtaining group caption for column 3: gone"_s},
        {"row of a table selected", with<HTML_KiwiTable>([](auto &table) { return table.rowSelected(5); }),
            u"__ostrel__kiwi__table__isRowSelected(el, 5, 'kiwi_table');"_s, u"True"_s, u"true"_s,
            u"Error while checking if row 5 is selected: gone"_s},
        {"has item of a table", with<HTML_KiwiTable>([](auto &table) { return table.hasItem(u"Ada"_s); }),
            lookup(u"Ada"_s) + u"!!__ostrel__node;"_s, u"true"_s, u"true"_s,
            u"Error while checking if item 'Ada' is known: gone"_s},
        {"has no such item", with<HTML_KiwiTable>([](auto &table) { return table.hasItem(u"it's"_s); }),
            lookup(u"it's"_s) + u"!!__ostrel__node;"_s, u"false"_s, u"false"_s,
            u"Error while checking if item 'it's' is known: gone"_s},
        {"item of a table selected",
            with<HTML_KiwiTable>([](auto &table) { return table.isSelected(u"Ada"_s); }),
            lookup(u"Ada"_s)
                + u"if (__ostrel__node) {if (__ostrel__node) {__ostrel__kiwi__table__isCellSelected(el, "
                  "__ostrel__node, 'kiwi_table');} else {false;}} else {false;}"_s,
            u"true"_s, u"true"_s, u"Error while checking if item 'Ada' is selected: gone"_s},
        {"rows of a tree table", with<HTML_KiwiTreeTable>([](auto &table) { return table.numRows(); }),
            u"__ostrel__kiwi__table_numRows(el);"_s, u"12"_s, u"12"_s,
            u"Error while obtaining number of rows: gone"_s},
        {"columns of a tree table", with<HTML_KiwiTreeTable>([](auto &table) { return table.numColumns(); }),
            u"__ostrel__kiwi__table_numColumns(el);"_s, u"4"_s, u"4"_s,
            u"Error while obtaining number of columns: gone"_s},
        {"groups of a tree table", with<HTML_KiwiTreeTable>([](auto &table) { return table.numGroups(); }),
            u"__ostrel__kiwi__table_numGroups(el);"_s, u"2"_s, u"2"_s,
            u"Error while obtaining number of groups: gone"_s},
        {"caption of a tree table", with<HTML_KiwiTreeTable>([](auto &table) { return table.caption(3); }),
            u"__ostrel__kiwi__treetable_caption(el, 3);"_s, u"Price"_s, u"Price"_s,
            u"Error while obtaining caption for 3: gone"_s},
        {"group caption of a tree table",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.groupCaption(1); }),
            u"__ostrel__kiwi__table_grpcaption(el, 1);"_s, u"Costs"_s, u"Costs"_s,
            u"Error while obtaining group caption for 1: gone"_s},
        {"group caption of a column of a tree table",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.groupCaptionOfColumn(3); }),
            u"__ostrel__kiwi__table_grpcaptionofcol(el, 3);"_s, u"Costs"_s, u"Costs"_s,
            u"Error while obtaining group caption for column 3: gone"_s},
        {"has item of a tree table",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.hasItem(u"Ada"_s); }),
            lookup(u"Ada"_s) + u"!!__ostrel__node;"_s, u"true"_s, u"true"_s,
            u"Error while checking if item 'Ada' is known: gone"_s},
        {"item of a tree table selected",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.isSelected(u"Ada"_s); }),
            lookup(u"Ada"_s)
                + u"if (__ostrel__node) {if (__ostrel__node) {__ostrel__kiwi__table__isCellSelected(el, "
                  "__ostrel__node, 'kiwi_table');} else {false;}} else {false;}"_s,
            u"false"_s, u"false"_s, u"Error while checking if item 'Ada' is selected: gone"_s},
        {"rows of a matrix table", with<HTML_KiwiMatrixTable>([](auto &table) { return table.numRows(); }),
            u"__ostrel__kiwi__matrixtable_numRows(el);"_s, u"2"_s, u"2"_s,
            u"Error while obtaining number of rows: gone"_s},
        {"columns of a matrix table",
            with<HTML_KiwiMatrixTable>([](auto &table) { return table.numColumns(); }),
            u"__ostrel__kiwi__matrixtable_numColumns(el);"_s, u"3"_s, u"3"_s,
            u"Error while obtaining number of columns: gone"_s},
        {"column caption of a matrix table",
            with<HTML_KiwiMatrixTable>([](auto &table) { return table.columnCaption(1); }),
            u"__ostrel__kiwi__matrixtable_caption(el, 1, 'matrixColumnHeader');"_s, u"May"_s, u"May"_s,
            u"Error while obtaining column caption for column 1: gone"_s},
        {"row caption of a matrix table",
            with<HTML_KiwiMatrixTable>([](auto &table) { return table.rowCaption(1); }),
            u"__ostrel__kiwi__matrixtable_caption(el, 1, 'matrixRowHeader');"_s, u"Rome"_s, u"Rome"_s,
            u"Error while obtaining row caption for row 1: gone"_s},
        {"rows of a matrix", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.numRows(); }),
            u"__ostrel__kiwi__matrix_numRows(el);"_s, u"2"_s, u"2"_s,
            u"Error while checking selection: gone"_s},
        {"columns of a matrix", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.numColumns(); }),
            u"__ostrel__kiwi__matrix_numColumns(el);"_s, u"3"_s, u"3"_s,
            u"Error while checking selection: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Cells, KiwiOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"row of a table cell", with<HTML_KiwiTableCell>([](auto &cell) { return cell.row(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'i');"_s, u"5"_s, u"5"_s,
            u"Error while obtaining property 'i': gone"_s},
        {"column of a table cell", with<HTML_KiwiTableCell>([](auto &cell) { return cell.column(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'j');"_s, u"2"_s, u"2"_s,
            u"Error while obtaining property 'j': gone"_s},
        {"value of a table cell", with<HTML_KiwiTableCell>([](auto &cell) { return cell.value(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'value');"_s, u"Ada"_s, u"Ada"_s,
            u"Error while obtaining property 'value': gone"_s},
        {"table cell selected", with<HTML_KiwiTableCell>([](auto &cell) { return cell.isSelected(); }),
            u"__ostrel__kiwi__table__isCellSelected(tbl, el, 'kiwi_table');"_s, u"TRUE"_s, u"true"_s,
            u"Error while checking selection: gone"_s},
        {"value of a tree table cell", with<HTML_KiwiTreeTableCell>([](auto &cell) { return cell.value(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'value');"_s, u"Ada"_s, u"Ada"_s,
            u"Error while obtaining property 'value': gone"_s},
        {"tree table cell selected",
            with<HTML_KiwiTreeTableCell>([](auto &cell) { return cell.isSelected(); }),
            u"__ostrel__kiwi__table__isRowSelected(tbl, el.i, 'kiwi_treetable');"_s, u"True"_s, u"true"_s,
            u"Error while checking selection: gone"_s},
        {"absolute row of a tree table cell",
            with<HTML_KiwiTreeTableCell>([](auto &cell) { return cell.absRow(); }),
            u"__ostrel__kiwi__treetable__absoluteRowByCount( tbl, el );"_s, u"9"_s, u"9"_s,
            u"Error while fetching absRow value: gone"_s},
        {"matrix selected", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.isSelected(); }),
            u"__ostrel__kiwi__table__isCellSelected(tbl, el, 'kiwi_matrixtable');"_s, u"true"_s, u"true"_s,
            u"Error while checking selection: gone"_s},
        {"matrix not selected", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.isSelected(); }),
            u"__ostrel__kiwi__table__isCellSelected(tbl, el, 'kiwi_matrixtable');"_s, u"false"_s, u"false"_s,
            u"Error while checking selection: gone"_s},
        {"value of a matrix cell", with<HTML_KiwiMatrixCell>([](auto &cell) { return cell.value(); }),
            u"el.firstChild.innerText"_s, u"3.5"_s, u"3.5"_s, u"Error retrieving cell value: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(TreesAndMenus, KiwiOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"has item", with<HTML_KiwiTree>([](auto &tree) { return tree.hasItem(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'Rome' );!!__ostrel__node;"_s,
            u"true"_s, u"true"_s, u"Error checking if item 'Rome' exists: gone"_s},
        {"item with a quote", with<HTML_KiwiTree>([](auto &tree) { return tree.hasItem(u"it's %1"_s); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'it's %1' );!!__ostrel__node;"_s,
            u"false"_s, u"false"_s, u"Error checking if item 'it's %1' exists: gone"_s},
        {"is open", with<HTML_KiwiTree>([](auto &tree) { return tree.isOpen(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'Rome' );if (__ostrel__node) "
            "{__ostrel__kiwi__tree__is__open( __ostrel__node );} else {false;}"_s,
            u"true"_s, u"true"_s, u"Error checking open state of item 'Rome': gone"_s},
        {"is selected", with<HTML_KiwiTree>([](auto &tree) { return tree.isSelected(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'Rome' );if (__ostrel__node) "
            "{__ostrel__kiwi__tree__is__selected( el, __ostrel__node );} else {false;}"_s,
            u"true"_s, u"true"_s, u"Error checking selection state of item 'Rome': gone"_s},
        {"activate item", with<HTML_KiwiMoreMenu>([](auto &menu) { return menu.activateItem(u"Print"_s); }),
            u"__ostrel__kiwi__activateItem(el, 'Print');"_s, u"true"_s, u"true"_s,
            u"Error while activating item 'Print': gone"_s},
        {"activate no item",
            with<HTML_KiwiMoreMenu>([](auto &menu) { return menu.activateItem(u"Print"_s); }),
            u"__ostrel__kiwi__activateItem(el, 'Print');"_s, u"false"_s, u"false"_s,
            u"Error while activating item 'Print': gone"_s},
        {"item text", with<HTML_KiwiMoreMenuItem>([](auto &item) { return item.itemText(); }),
            u"__ostrel__kiwi__menuItemText(el);"_s, u"Print"_s, u"Print"_s,
            u"Error while obtaining menu item text: gone"_s},
    }),
    rowName<OperationCase>);

TEST_P(KiwiNumber, SaysWhichAnswerIsNone)
{
    FakePage page;
    page.answer(u"many"_s);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(outcome.error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Kiwi, KiwiNumber,
    testing::ValuesIn(QList<NoNumber>{
        {"selected value", with<HTML_KiwiChoice>([](auto &choice) { return choice.selectedValue(); }),
            u"Could not convert value 'many' to number of rows."_s},
        {"rows of a table", with<HTML_KiwiTable>([](auto &table) { return table.numRows(); }),
            u"Could not convert value 'many' to number of rows."_s},
        {"columns of a table", with<HTML_KiwiTable>([](auto &table) { return table.numColumns(); }),
            u"Could not convert value 'many' to number of columns."_s},
        {"groups of a table", with<HTML_KiwiTable>([](auto &table) { return table.numGroups(); }),
            u"Could not convert value 'many' to number of groups."_s},
        {"rows of a matrix table", with<HTML_KiwiMatrixTable>([](auto &table) { return table.numRows(); }),
            u"Could not convert value 'many' to number of rows."_s},
        {"columns of a matrix table",
            with<HTML_KiwiMatrixTable>([](auto &table) { return table.numColumns(); }),
            u"Could not convert value 'many' to number of columns."_s},
        {"rows of a matrix", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.numRows(); }),
            u"Error: cannot convert value 'many' to number of rows"_s},
        {"columns of a matrix", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.numColumns(); }),
            u"Error: cannot convert value 'many' to number of columns"_s},
        {"row of a table cell", with<HTML_KiwiTableCell>([](auto &cell) { return cell.row(); }),
            u"Error: cannot convert 'many' to row number."_s},
        {"column of a tree table cell",
            with<HTML_KiwiTreeTableCell>([](auto &cell) { return cell.column(); }),
            u"Error: cannot convert 'many' to column number."_s},
        {"row of a matrix", with<HTML_KiwiMatrix>([](auto &matrix) { return matrix.row(); }),
            u"Error: cannot convert 'many' to row number."_s},
        {"column of a matrix cell", with<HTML_KiwiMatrixCell>([](auto &cell) { return cell.column(); }),
            u"Error: cannot convert 'many' to column number."_s},
        {"absolute row", with<HTML_KiwiTreeTableCell>([](auto &cell) { return cell.absRow(); }),
            u"Error: cannot convert 'many' to absRow number."_s},
    }),
    rowName<NoNumber>);

// Clicks

TEST_P(KiwiClick, SendsItsScriptAndSaysWhatFailed)
{
    FakePage page;
    page.fail(u"gone"_s);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(page.scripts(), QStringList{GetParam().script});
    EXPECT_EQ(outcome.error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Kiwi, KiwiClick,
    testing::ValuesIn(QList<OperationCase>{
        {"item of a tree",
            with<HTML_KiwiTree>([](auto &tree) { return tree.clickItem(u"Rome"_s, ControlKey); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'Rome' );if (__ostrel__node) "
            "{setTimeout(function(e){__ostrel__click(__ostrel__node, true, false, false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error clicking item 'Rome': gone"_s},
        {"handle of a tree", with<HTML_KiwiTree>([](auto &tree) { return tree.clickHandle(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__kiwi__tree__find__item( el, 'Rome' );if (__ostrel__node) "
            "{__ostrel__node = __ostrel__node.parentNode.previousSibling;if (__ostrel__node) "
            "{setTimeout(function(e){__ostrel__click(__ostrel__node, false, false, false, 0, 0, 1);}, 100);}}"_s,
            {}, {}, u"Error clicking handle of item 'Rome': gone"_s},
        {"item of a table",
            with<HTML_KiwiTable>([](auto &table) { return table.clickItem(u"Ada"_s, ShiftKey); }),
            lookup(u"Ada"_s)
                + u"if (__ostrel__node) {setTimeout(function(e){__ostrel__click(__ostrel__node, false, true, "
                  "false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error while clicking on item 'Ada' with modifier '4': gone"_s},
        {"row of a table by number", with<HTML_KiwiTable>([](auto &table) { return table.clickRow(3, 0); }),
            u"var __ostrel__rows = __ostrel__kiwi__table__getRows(el); var __ostrel__row = undefined;"
            "  for( var c = 0; __ostrel__rows[3] && c < __ostrel__rows[3].length; c++ ) {"
            "     if( __ostrel__rows[3][c] == undefined ) continue;"
            "     __ostrel__row = __ostrel__rows[3][c];     break;  }"
            "if (__ostrel__row) {setTimeout(function(e){__ostrel__click(__ostrel__row, false, false, false, "
            "0, 0, "
            "1);}, 100);}"_s,
            {}, {}, u"Error while clicking on row 3 with modifier '0': gone"_s},
        {"row of a table by text",
            with<HTML_KiwiTable>([](auto &table) { return table.clickRow(u"Ada"_s, RightButton); }),
            u"var __ostrel__row = __ostrel__kiwi__table__findRow(el, 'Ada');if (__ostrel__row) "
            "{setTimeout(function(e){__ostrel__click(__ostrel__row, false, false, false, 0, 0, 2);}, 100);}"_s,
            {}, {}, u"Error while clicking on row 'Ada' with modifier '16': gone"_s},
        {"item of a tree table",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.clickItem(u"Ada"_s, 0); }),
            lookup(u"Ada"_s)
                + u"if (__ostrel__node) {setTimeout(function(e){__ostrel__click(__ostrel__node, false, "
                  u"false, "
                  "false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error while clicking on item 'Ada' with modifier '0': gone"_s},
        {"row of a tree table by number",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.clickRow(3, AltKey); }),
            u"var __ostrel__rows = __ostrel__kiwi__table__getRows(el); var __ostrel__row = undefined;"
            "  for( var c = 0; __ostrel__rows[3] && c < __ostrel__rows[3].length; c++ ) {"
            "     if( __ostrel__rows[3][c] == undefined ) continue;"
            "     __ostrel__row = __ostrel__rows[3][c];     break;  }"
            "if (__ostrel__row) { setTimeout(function(e){__ostrel__click("
            "__ostrel__kiwi__treetable__find__clickableelement( __ostrel__row ), false, false, true, 0, 0, "
            "1);}, "
            "100);}"_s,
            {}, {}, u"Error while clicking on row 3 with modifier '1': gone"_s},
        {"row of a tree table by text",
            with<HTML_KiwiTreeTable>([](auto &table) { return table.clickRow(u"Ada"_s, 0); }),
            u"var __ostrel__row = __ostrel__kiwi__table__findRow(el, 'Ada');if (__ostrel__row) { "
            "setTimeout(function(e){__ostrel__click(__ostrel__kiwi__treetable__find__clickableelement( "
            "__ostrel__row ), false, false, false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error while clicking on row 'Ada' with modifier '0': gone"_s},
    }),
    rowName<OperationCase>);

TEST(KiwiTree, DoubleClickIsNotImplemented)
{
    FakePage page;
    HTML_KiwiTree tree({}, u"el"_s, &page);

    const FunctionCallResult<void> clicked = tree.doubleClickItem(u"Rome"_s, 0);

    EXPECT_EQ(clicked.error, u"Not implemented"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(KiwiTable, ClickOnTextInNoCellIsASuccessThatDoesNothing)
{
    KiwiPage page(u"[{id: 'a', value: 'Ada', innerText: 'Ada', i: 0}]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);
    QElapsedTimer timer;
    timer.start();

    const FunctionCallResult<void> clicked = table.clickItem(u"Bob"_s, 0);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.page.calls(), QStringList());
    EXPECT_GE(timer.elapsed(), shortestWait) << "waits for the deferred click";
}

TEST(KiwiTable, ClickReachesTheCellThatHasTheText)
{
    KiwiPage page(u"[{id: 'a', value: 'Ada', i: 0}, {id: 'b', value: 'Bob', i: 1}]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<void> clicked = table.clickItem(u"Bob"_s, 0);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.page.run(u"calls[0][1].id"_s).toString(), u"b"_s);
}

// Rows and cells in the page

TEST(KiwiTable, ClickOnRowReachesItsFirstCell)
{
    KiwiPage page(u"[]"_s);
    page.page.run(u"var rows = [[{id: 'a'}, {id: 'b'}], [undefined, {id: 'c'}, {id: 'd'}]];"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<void> clicked = table.clickRow(1, 0);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.page.run(u"calls[0][1].id"_s).toString(), u"c"_s);
}

TEST(KiwiTable, ClickOnRowBehindTheLastDoesNothing)
{
    KiwiPage page(u"[]"_s);
    page.page.run(u"var rows = [[{id: 'a'}]];"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<void> clicked = table.clickRow(1, 0);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.page.calls(), QStringList());
}

TEST(KiwiTable, ValueWinsOverVisibleTextOfAnEarlierRow)
{
    KiwiPage page(
        u"[{id: 'shown', value: 'x', innerText: 'Ada', i: 1}, {id: 'value', value: 'Ada', i: 5}]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(page.idOf(table.findItem(u"Ada"_s, -1)), u"value"_s);
}

TEST(KiwiTable, VisibleTextCountsWhenNoValueFits)
{
    KiwiPage page(u"[{id: 'none', i: 0}, {id: 'first', innerText: '  Ada\\n Lovelace ', i: 1}, "
                  "{id: 'second', innerText: 'Ada Lovelace', i: 2}]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(page.idOf(table.findItem(u" Ada  Lovelace"_s, -1)), u"first"_s) << "both texts are cleaned";
}

TEST(KiwiTable, SearchBeginsBehindTheStartRow)
{
    KiwiPage page(u"[{id: 'at', value: 'Ada', i: 3}, {id: 'nowhere', value: 'Ada'}, "
                  "{id: 'behind', value: 'Ada', i: 4}]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(page.idOf(table.findItem(u"Ada"_s, 3)), u"behind"_s);
    EXPECT_EQ(page.idOf(table.findItem(u"Ada"_s, 4)), u"none"_s);
    EXPECT_EQ(page.idOf(table.findItem(u"Ada"_s, 2)), u"at"_s);
    EXPECT_EQ(page.idOf(table.findItem(u"Ada"_s, -1)), u"at"_s);
}

TEST(KiwiTable, HolesOfARowAreNoColumns)
{
    KiwiPage page(u"[]"_s);
    page.page.run(u"var rows = [[], [{id: 'a'}, {id: 'b'}, undefined, {id: 'c'}, {id: 'd'}]];"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(page.idOf(table.findItem(1, 1)), u"b"_s);
    EXPECT_EQ(page.idOf(table.findItem(1, 2)), u"c"_s);
    EXPECT_EQ(page.idOf(table.findItem(1, 3)), u"d"_s);
    EXPECT_EQ(page.idOf(table.findItem(1, 4)), u"none"_s);
    EXPECT_EQ(page.idOf(table.findItem(0, 0)), u"none"_s);
}

TEST(KiwiTable, TellsOfTextsInThePage)
{
    KiwiPage page(u"[{id: 'a', value: 'Ada', i: 0}]"_s);
    page.page.run(u"function __ostrel__kiwi__table__isCellSelected(table, cell, type) {"
                  "  return table === el && cell.id === 'a' && type === 'kiwi_table'; }"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(outcomeOf(table.hasItem(u"Ada"_s)).value, u"true"_s);
    EXPECT_EQ(outcomeOf(table.hasItem(u"Bob"_s)).value, u"false"_s);
    EXPECT_EQ(outcomeOf(table.isSelected(u"Ada"_s)).value, u"true"_s);
    EXPECT_EQ(outcomeOf(table.isSelected(u"Bob"_s)).value, u"false"_s);
}

TEST(KiwiTable, TextWithAQuoteIsAnErrorOfThePage)
{
    KiwiPage page(u"[]"_s);
    HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<bool> known = table.hasItem(u"it's"_s);

    EXPECT_TRUE(known.error.startsWith(u"Error while checking if item 'it's' is known: SyntaxError"_s))
        << known.error.toStdString();
}

// Wrappers of cells

TEST(KiwiTable, CellFoundByTextKnowsItsTable)
{
    FakePage page;
    page.answer(u"kiwi_table_item"_s);
    page.answer(u"true"_s);
    const HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<HTML_KiwiTableCell *> found = table.findItem(u"Ada"_s, 3);
    const std::unique_ptr<HTML_KiwiTableCell> cell(found.value);
    ASSERT_TRUE(cell) << found.error.toStdString();
    const FunctionCallResult<bool> selected = cell->isSelected();

    EXPECT_EQ(selected.error, QString());
    EXPECT_TRUE(selected.value);
    EXPECT_EQ(scriptsOf(page),
        lookup(u"Ada"_s, u"3"_s)
            + u"V1 = __ostrel__node; __ostrel__typeOf(V1);\n"
              "__ostrel__kiwi__table__isCellSelected(el, V1, 'kiwi_table');"_s);
}

TEST(KiwiTable, CellFoundByPlaceKnowsItsTable)
{
    FakePage page;
    page.answer(u"kiwi_table_item"_s);
    const HTML_KiwiTable table({}, u"el"_s, &page);

    const FunctionCallResult<HTML_KiwiTableCell *> found = table.findItem(1, 2);
    const std::unique_ptr<HTML_KiwiTableCell> cell(found.value);
    ASSERT_TRUE(cell) << found.error.toStdString();
    (void)cell->isSelected();

    EXPECT_EQ(scriptsOf(page),
        u"var __ostrel__rows = __ostrel__kiwi__table__getRows(el);  var count = 0;  for( var c = 0; c < "
        "__ostrel__rows[1].length; c++ ) {     if( __ostrel__rows[1][c] == undefined ) continue;     if( "
        "count == "
        "2 ) { V1 = __ostrel__rows[1][c];       __ostrel__typeOf(V1);       break;    }     count++;  }\n"
        "__ostrel__kiwi__table__isCellSelected(el, V1, 'kiwi_table');"_s);
}

TEST(KiwiTable, UnknownTextGivesNoCell)
{
    FakePage page;
    page.answer(u"undefined"_s);
    const HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(outcomeOf(table.findItem(u"Ada"_s, -1)).value, u"nothing"_s);
}

TEST(KiwiTable, SaysWhichLookupFailed)
{
    FakePage page;
    for (int i = 0; i < 3; ++i)
        page.fail(u"gone"_s);
    const HTML_KiwiTable table({}, u"el"_s, &page);

    EXPECT_EQ(outcomeOf(table.findItem(u"Ada"_s, 3)).error,
        u"Error while finding item 'Ada' starting at row 3: gone"_s);
    EXPECT_EQ(outcomeOf(table.findItem(u"Ada"_s, -1)).error,
        u"Error while finding item 'Ada' starting at row -1: gone"_s);
    EXPECT_EQ(
        outcomeOf(table.findItem(1, 2)).error, u"Error while finding item at row 1 and column 2: gone"_s);
}

TEST(KiwiTreeTable, RowIsSelectedWhenItsFirstCellIs)
{
    FakePage page;
    page.answer(u"kiwi_treetable_item"_s);
    page.answer(u"True"_s);
    const HTML_KiwiTreeTable table({}, u"el"_s, &page);

    const FunctionCallResult<bool> selected = table.rowSelected(4);

    EXPECT_EQ(selected.error, QString());
    EXPECT_TRUE(selected.value);
    EXPECT_EQ(scriptsOf(page),
        u"var __ostrel__rows = __ostrel__kiwi__table__getRows(el);  var count = 0;  for( var c = 0; c < "
        "__ostrel__rows[4].length; c++ ) {     if( __ostrel__rows[4][c] == undefined ) continue;     if( "
        "count == "
        "0 ) { V1 = __ostrel__rows[4][c];       __ostrel__typeOf(V1);       break;    }     count++;  }\n"
        "__ostrel__kiwi__table__isRowSelected(el, V1.i, 'kiwi_treetable');"_s);
}

TEST(KiwiTreeTable, SaysWhyARowCannotBeAsked)
{
    FakePage page;
    page.fail(u"gone"_s);
    page.answer(u"undefined"_s);
    page.answer(u"kiwi_treetable_item"_s);
    page.fail(u"gone too"_s);
    const HTML_KiwiTreeTable table({}, u"el"_s, &page);

    EXPECT_EQ(table.rowSelected(4).error,
        u"Error selecting row 4: Error while finding item at row 4 and column 0: gone"_s);
    EXPECT_EQ(table.rowSelected(4).error, u"Error selecting row 4: The row has no cell."_s);
    EXPECT_EQ(
        table.rowSelected(4).error, u"Error selecting row 4: Error while checking selection: gone too"_s);
}

TEST(KiwiTreeTable, FindsCellsByTextAndPlace)
{
    FakePage page;
    page.answer(u"kiwi_treetable_item"_s);
    page.answer(u"kiwi_treetable_item"_s);
    page.fail(u"gone"_s);
    const HTML_KiwiTreeTable table({}, u"el"_s, &page);

    EXPECT_EQ(withVariables(outcomeOf(table.findItem(u"Ada"_s, -1)).value), u"HTML_KiwiTreeTableCell V1"_s);
    EXPECT_EQ(withVariables(outcomeOf(table.findItem(0, 0)).value), u"HTML_KiwiTreeTableCell V1"_s);
    EXPECT_EQ(
        outcomeOf(table.findItem(1, 2)).error, u"Error while finding item at row 1 and column 2: gone"_s);
}

TEST(KiwiMatrixTable, FindsMatricesAndTheirCells)
{
    FakePage page;
    page.answer(u"kiwi_matrix"_s);
    page.answer(u"kiwi_matrixcell"_s);
    const HTML_KiwiMatrixTable table({}, u"el"_s, &page);

    const std::unique_ptr<HTML_KiwiMatrix> matrix(table.findItem(1, 0).value);
    ASSERT_TRUE(matrix);
    const std::unique_ptr<HTML_KiwiMatrixCell> cell(matrix->findItem(0, 2).value);
    ASSERT_TRUE(cell);
    (void)matrix->isSelected();

    EXPECT_EQ(scriptsOf(page),
        u"var __ostrel__rows = __ostrel__kiwi__matrixtable__getRows(el);  var count = 0;  for( var c = 0; c "
        u"< "
        "__ostrel__rows[1].length; c++ ) {     if( __ostrel__rows[1][c] == undefined ) continue;     if( "
        "count == "
        "0 ) { V1 = __ostrel__rows[1][c];       __ostrel__typeOf(V1);       break;    }     count++;  }\n"
        "var __ostrel__rows = __ostrel__kiwi__matrix__getRows(V1);  var count = 0;  for( var c = 0; c < "
        "__ostrel__rows[0].length; c++ ) {     if( __ostrel__rows[0][c] == undefined ) continue;     if( "
        "count == "
        "2 ) { V2 = __ostrel__rows[0][c];       __ostrel__typeOf(V2);       break;    }     count++;  }\n"
        "__ostrel__kiwi__table__isCellSelected(el, V1, 'kiwi_matrixtable');"_s);
}

TEST(KiwiMatrixTable, SaysWhichLookupFailed)
{
    FakePage page;
    page.fail(u"gone"_s);
    page.fail(u"gone"_s);
    const HTML_KiwiMatrixTable table({}, u"el"_s, &page);
    const HTML_KiwiMatrix matrix({}, u"el"_s, u"tbl"_s, &page);

    EXPECT_EQ(outcomeOf(table.findItem(1, 2)).error, u"Error while finding item at row 1 column 2: gone"_s);
    EXPECT_EQ(outcomeOf(matrix.findItem(3, 4)).error, u"Error while finding item at row 3 column 4: gone"_s);
}

TEST(KiwiCell, WithoutANameBelongsToNull)
{
    FakePage page;
    for (const QString &type : {u"kiwi_table_item"_s, u"kiwi_treetable_item"_s, u"kiwi_matrix"_s}) {
        const std::unique_ptr<HTML_Object> cell(htmlObjectFromReferenceInfo(&page, type, u"el"_s, {}));
        if (auto *tableCell = dynamic_cast<HTML_KiwiTableCell *>(cell.get()))
            (void)tableCell->isSelected();
        else if (auto *treeCell = dynamic_cast<HTML_KiwiTreeTableCell *>(cell.get()))
            (void)treeCell->isSelected();
        else if (auto *matrix = dynamic_cast<HTML_KiwiMatrix *>(cell.get()))
            (void)matrix->isSelected();
    }

    EXPECT_EQ(page.scripts(),
        (QStringList{u"__ostrel__kiwi__table__isCellSelected(null, el, 'kiwi_table');"_s,
            u"__ostrel__kiwi__table__isRowSelected(null, el.i, 'kiwi_treetable');"_s,
            u"__ostrel__kiwi__table__isCellSelected(null, el, 'kiwi_matrixtable');"_s}));
}

// Menus

TEST(KiwiMoreMenu, FetchesItsItemsOnce)
{
    FakePage page;
    page.answer(u"[object HTMLElement],[object HTMLElement]"_s);
    page.answer(u"2"_s);
    page.answer(u"kiwi_more_menu_item"_s);
    page.answer(u"Print"_s);
    const HTML_KiwiMoreMenu menu({}, u"el"_s, &page);

    const FunctionCallResult<int> count = menu.numItems();
    const std::unique_ptr<HTML_KiwiMoreMenuItem> item(menu.itemAt(1).value);
    ASSERT_TRUE(item);
    const FunctionCallResult<QString> text = item->itemText();

    EXPECT_EQ(count.value, 2);
    EXPECT_EQ(text.value, u"Print"_s);
    EXPECT_EQ(scriptsOf(page),
        u"V1 = __ostrel__kiwi__menuItems(el);\nV1.length;\nV2 = V1[1]; __ostrel__typeOf(V2);\n"
        "__ostrel__kiwi__menuItemText(V2);"_s);
}

TEST(KiwiMoreMenu, ItemBehindTheLastIsNone)
{
    FakePage page;
    page.answer(u""_s);
    page.answer(u"undefined"_s);
    const HTML_KiwiMoreMenu menu({}, u"el"_s, &page);

    EXPECT_EQ(outcomeOf(menu.itemAt(9)).value, u"nothing"_s);
}

TEST(KiwiMoreMenu, SaysWhetherTheListOrTheItemFailed)
{
    FakePage page;
    page.fail(u"gone"_s);
    page.fail(u"gone"_s);
    page.answer(u"list"_s);
    page.fail(u"no length"_s);
    page.fail(u"no item"_s);
    page.answer(u"many"_s);
    const HTML_KiwiMoreMenu menu({}, u"el"_s, &page);

    EXPECT_EQ(menu.numItems().error,
        u"Error while determining number of items: Error while obtaining all menu items: gone"_s);
    EXPECT_EQ(
        menu.itemAt(1).error, u"Error while getting item at 1: Error while obtaining all menu items: gone"_s);
    EXPECT_EQ(menu.numItems().error, u"Error while obtaining number of items: no length"_s);
    EXPECT_EQ(menu.itemAt(1).error, u"Error while getting item 1: no item"_s);
    EXPECT_EQ(menu.numItems().error, u"Could not convert value 'many' to number of items."_s);
}

// What scripts see

TEST_F(WebClasses, FillInWhatAScriptLeavesOut)
{
    FakePage page;
    const SharedPtr<Object> table = wrapObject(new HTML_KiwiTable({}, u"el"_s, &page));
    for (int i = 0; i < 3; ++i)
        page.answer(u"kiwi_table_item"_s);

    const ScriptAnswer byText = callMethod(table, u"findItem"_s, u"Ada"_s);
    const ScriptAnswer byTextBehind = callMethod(table, u"findItem"_s, u"Ada"_s, 3);
    const ScriptAnswer byRow = callMethod(table, u"findItem"_s, 2);

    EXPECT_EQ(byText.error, QString());
    EXPECT_EQ(byText.value->objectClass()->name(), u"HTML_KiwiTableCell"_s);
    EXPECT_EQ(byTextBehind.error, QString());
    EXPECT_EQ(byRow.error, QString());
    EXPECT_EQ(scriptsOf(page),
        lookup(u"Ada"_s) + u"V1 = __ostrel__node; __ostrel__typeOf(V1);\n"_s + lookup(u"Ada"_s, u"3"_s)
            + u"V2 = __ostrel__node; __ostrel__typeOf(V2);\n"
              "var __ostrel__rows = __ostrel__kiwi__table__getRows(el);  var count = 0;  for( var c = 0; c < "
              "__ostrel__rows[2].length; c++ ) {     if( __ostrel__rows[2][c] == undefined ) continue;     "
              "if( "
              "count == 0 ) { V3 = __ostrel__rows[2][c];       __ostrel__typeOf(V3);       break;    }     "
              "count++;  }"_s);
}

TEST_F(WebClasses, LetAScriptClickARow)
{
    FakePage page;
    page.fail(u"gone"_s);
    const SharedPtr<Object> table = wrapObject(new HTML_KiwiTreeTable({}, u"el"_s, &page));

    const ScriptAnswer clicked = callMethod(table, u"clickRow"_s, 3);

    EXPECT_EQ(clicked.error, u"Error while clicking on row 3 with modifier '0': gone"_s);
}

TEST_F(WebClasses, ReachTheTreeThroughItsBase)
{
    FakePage page;
    page.answer(u"true"_s);
    const SharedPtr<Object> tree = wrapObject(new HTML_KiwiTree({}, u"el"_s, &page));

    const ScriptAnswer open = callMethod(tree, u"isOpen"_s, u"Rome"_s);
    const ScriptAnswer doubleClicked = callMethod(tree, u"doubleClickItem"_s, u"Rome"_s);

    EXPECT_EQ(open.text(), u"true"_s);
    EXPECT_EQ(doubleClicked.error, u"Not implemented"_s);
}

TEST_F(WebClasses, LetAScriptWriteAChoice)
{
    FakePage page;
    const SharedPtr<Object> choice = wrapObject(new HTML_KiwiChoice({}, u"el"_s, &page));

    EXPECT_EQ(writeProperty(choice, u"selectedOption"_s, u"Red"_s), QString());
    EXPECT_EQ(writeProperty(choice, u"selectedValue"_s, 7), QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{u"__ostrel__kiwi__choice__setSelectedOption( el, 'Red');"_s,
            u"__ostrel__kiwi__choice__setSelectedValue( el, 7);"_s}));
}
