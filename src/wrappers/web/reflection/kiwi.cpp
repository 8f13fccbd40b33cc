// What scripts see of the controls of the Kiwi toolkit, and of trees in general.
#include "wrappers/web/controls/kiwi.h"

#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr MethodRow treeBaseMethods[] = {
    method<&HTML_TreeBase::clickHandle>("clickHandle", "item"),
    method<&HTML_TreeBase::clickItem>("clickItem", "item", "m"),
    method<&HTML_TreeBase::doubleClickItem, 0>("doubleClickItem", unnamed),
    method<&HTML_TreeBase::doubleClickItem>("doubleClickItem", unnamed, unnamed),
    method<&HTML_TreeBase::hasItem>("hasItem", "item"),
    method<&HTML_TreeBase::isSelected>("isSelected", "item"),
    method<&HTML_TreeBase::isOpen>("isOpen", "item"),
};

constexpr PropertyRow choiceProperties[] = {
    property<&HTML_KiwiChoice::selectedOption, &HTML_KiwiChoice::setSelectedOption>("selectedOption"),
    property<&HTML_KiwiChoice::selectedValue, &HTML_KiwiChoice::setSelectedValue>("selectedValue"),
};

constexpr MethodRow choiceMethods[] = {
    method<&HTML_KiwiChoice::setSelectedOption>("setSelectedOption", "text"),
    method<&HTML_KiwiChoice::selectedOption>("selectedOption"),
    method<&HTML_KiwiChoice::selectedValue>("selectedValue"),
    method<&HTML_KiwiChoice::setSelectedValue>("setSelectedValue", "i"),
};

constexpr PropertyRow matrixProperties[] = {
    property<&HTML_KiwiMatrix::numRows>("numRows"),
    property<&HTML_KiwiMatrix::isSelected>("selected"),
    property<&HTML_KiwiMatrix::row>("row"),
    property<&HTML_KiwiMatrix::numColumns>("numColumns"),
    property<&HTML_KiwiMatrix::column>("column"),
};

constexpr MethodRow matrixMethods[] = {
    method<&HTML_KiwiMatrix::numRows>("numRows"),
    method<&HTML_KiwiMatrix::numColumns>("numColumns"),
    method<&HTML_KiwiMatrix::row>("row"),
    method<&HTML_KiwiMatrix::column>("column"),
    method<&HTML_KiwiMatrix::isSelected>("isSelected"),
    method<&HTML_KiwiMatrix::findItem>("findItem", "row", "column"),
};

constexpr PropertyRow matrixCellProperties[] = {
    property<&HTML_KiwiMatrixCell::column>("column"),
    property<&HTML_KiwiMatrixCell::value>("value"),
    property<&HTML_KiwiMatrixCell::row>("row"),
};

constexpr MethodRow matrixCellMethods[] = {
    method<&HTML_KiwiMatrixCell::column>("column"),
    method<&HTML_KiwiMatrixCell::value>("value"),
    method<&HTML_KiwiMatrixCell::row>("row"),
};

constexpr PropertyRow matrixTableProperties[] = {
    property<&HTML_KiwiMatrixTable::numRows>("numRows"),
    property<&HTML_KiwiMatrixTable::numColumns>("numColumns"),
};

constexpr MethodRow matrixTableMethods[] = {
    // Kept as is: the parameter is a row although its name says column.
    method<&HTML_KiwiMatrixTable::rowCaption>("rowCaption", "column"),
    method<&HTML_KiwiMatrixTable::findItem>("findItem", "row", "col"),
    method<&HTML_KiwiMatrixTable::columnCaption>("columnCaption", "column"),
    method<&HTML_KiwiMatrixTable::numColumns>("numColumns"),
    method<&HTML_KiwiMatrixTable::numRows>("numRows"),
};

constexpr PropertyRow moreMenuProperties[] = {
    property<&HTML_KiwiMoreMenu::numItems>("numItems"),
};

constexpr MethodRow moreMenuMethods[] = {
    method<&HTML_KiwiMoreMenu::numItems>("numItems"),
    method<&HTML_KiwiMoreMenu::itemAt>("itemAt", "i"),
    method<&HTML_KiwiMoreMenu::activateItem>("activateItem", "item"),
};

constexpr PropertyRow moreMenuItemProperties[] = {
    property<&HTML_KiwiMoreMenuItem::itemText>("itemText"),
};

constexpr MethodRow moreMenuItemMethods[] = {
    method<&HTML_KiwiMoreMenuItem::itemText>("itemText"),
};

using ClickRowByText = FunctionCallResult<void> (KiwiTableBase::*)(const QString &, int);
using ClickRowByNumber = FunctionCallResult<void> (KiwiTableBase::*)(int, int);

template <typename Table, typename Cell>
using FindByText = FunctionCallResult<Cell *> (Table::*)(const QString &, int) const;
template <typename Table, typename Cell>
using FindByPlace = FunctionCallResult<Cell *> (Table::*)(int, int) const;

/// Tables and tree tables publish the same; only their cells differ.
constexpr PropertyRow tableProperties[] = {
    property<&KiwiTableBase::numRows>("numRows"),
    property<&KiwiTableBase::numGroups>("numGroups"),
    property<&KiwiTableBase::numColumns>("numColumns"),
};

template <typename Table, typename Cell>
constexpr MethodRow tableMethods[] = {
    method<&Table::clickItem>("clickItem", "item", "m"),
    method<ClickRowByText(&Table::clickRow)>("clickRow", "rowText", "m"),
    method<ClickRowByNumber(&Table::clickRow), 0>("clickRow", "row"),
    method<ClickRowByNumber(&Table::clickRow)>("clickRow", "row", "m"),
    method<&Table::hasItem>("hasItem", "item"),
    method<&Table::isSelected>("isSelected", "item"),
    method<&Table::rowSelected>("rowSelected", "row"),
    method<FindByText<Table, Cell>(&Table::findItem), -1>("findItem", "item"),
    method<FindByText<Table, Cell>(&Table::findItem)>("findItem", "item", "startRow"),
    method<FindByPlace<Table, Cell>(&Table::findItem), 0>("findItem", "row"),
    method<FindByPlace<Table, Cell>(&Table::findItem)>("findItem", "row", "col"),
    method<&Table::numRows>("numRows"),
    method<&Table::numColumns>("numColumns"),
    method<&Table::numGroups>("numGroups"),
    method<&Table::caption>("caption", "column"),
    method<&Table::groupCaption>("groupCaption", "column"),
    method<&Table::groupCaptionOfColumn>("groupCaptionOfColumn", "column"),
};

constexpr PropertyRow tableCellProperties[] = {
    property<&HTML_KiwiTableCell::column>("column"),
    property<&HTML_KiwiTableCell::value>("value"),
    property<&HTML_KiwiTableCell::row>("row"),
    property<&HTML_KiwiTableCell::isSelected>("selected"),
};

constexpr MethodRow tableCellMethods[] = {
    method<&HTML_KiwiTableCell::isSelected>("isSelected"),
    method<&HTML_KiwiTableCell::value>("value"),
    method<&HTML_KiwiTableCell::column>("column"),
    method<&HTML_KiwiTableCell::row>("row"),
};

constexpr PropertyRow treeTableCellProperties[] = {
    property<&HTML_KiwiTreeTableCell::column>("column"),
    property<&HTML_KiwiTreeTableCell::value>("value"),
    property<&HTML_KiwiTreeTableCell::row>("row"),
    property<&HTML_KiwiTreeTableCell::isSelected>("selected"),
    property<&HTML_KiwiTreeTableCell::absRow>("absRow"),
};

constexpr MethodRow treeTableCellMethods[] = {
    method<&HTML_KiwiTreeTableCell::isSelected>("isSelected"),
    method<&HTML_KiwiTreeTableCell::value>("value"),
    method<&HTML_KiwiTreeTableCell::column>("column"),
    method<&HTML_KiwiTreeTableCell::absRow>("absRow"),
    method<&HTML_KiwiTreeTableCell::row>("row"),
};

} // namespace

constinit const ClassTable HTML_TreeBase_Class{"HTML_TreeBase", "HTML_FormElement", {}, treeBaseMethods};
constinit const ClassTable HTML_KiwiChoice_Class{
    "HTML_KiwiChoice", "HTML_FormElement", choiceProperties, choiceMethods};
constinit const ClassTable HTML_KiwiMatrix_Class{
    "HTML_KiwiMatrix", "HTML_Object", matrixProperties, matrixMethods};
constinit const ClassTable HTML_KiwiMatrixCell_Class{
    "HTML_KiwiMatrixCell", "HTML_Object", matrixCellProperties, matrixCellMethods};
constinit const ClassTable HTML_KiwiMatrixTable_Class{
    "HTML_KiwiMatrixTable", "HTML_FormElement", matrixTableProperties, matrixTableMethods};
constinit const ClassTable HTML_KiwiMoreMenu_Class{
    "HTML_KiwiMoreMenu", "HTML_FormElement", moreMenuProperties, moreMenuMethods};
constinit const ClassTable HTML_KiwiMoreMenuItem_Class{
    "HTML_KiwiMoreMenuItem", "HTML_FormElement", moreMenuItemProperties, moreMenuItemMethods};
constinit const ClassTable HTML_KiwiTable_Class{
    "HTML_KiwiTable", "HTML_FormElement", tableProperties, tableMethods<HTML_KiwiTable, HTML_KiwiTableCell>};
constinit const ClassTable HTML_KiwiTableCell_Class{
    "HTML_KiwiTableCell", "HTML_Object", tableCellProperties, tableCellMethods};
constinit const ClassTable HTML_KiwiTree_Class{"HTML_KiwiTree", "HTML_TreeBase", {}, {}};
constinit const ClassTable HTML_KiwiTreeTable_Class{"HTML_KiwiTreeTable", "HTML_FormElement", tableProperties,
    tableMethods<HTML_KiwiTreeTable, HTML_KiwiTreeTableCell>};
constinit const ClassTable HTML_KiwiTreeTableCell_Class{
    "HTML_KiwiTreeTableCell", "HTML_Object", treeTableCellProperties, treeTableCellMethods};

} // namespace Ostrel::WebWrapper
