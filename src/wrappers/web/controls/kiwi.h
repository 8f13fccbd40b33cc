// The controls of the Kiwi toolkit. They need no extension object: the page has functions __ostrel__kiwi__...
// for them, and some operations walk the page with script of their own.
//
// Texts that name an item go into the script as they stand unless an operation says otherwise, so that a
// quote in one makes the page report an error. A click on something that does not exist is a success that
// does nothing.
#pragma once

#include "wrappers/web/controls/treebase.h"

namespace Ostrel::WebWrapper {

/// A combo box.
class PAGEPROBELIB_EXPORT HTML_KiwiChoice : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiChoice";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> selectedOption() const;
    /// Quotes in the text are escaped.
    FunctionCallResult<void> setSelectedOption(const QString &text);
    FunctionCallResult<int> selectedValue() const;
    FunctionCallResult<void> setSelectedValue(int value);
};

class PAGEPROBELIB_EXPORT HTML_KiwiTree : public HTML_TreeBase
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTree";

    using HTML_TreeBase::HTML_TreeBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> clickHandle(const QString &item) override;
    FunctionCallResult<bool> isSelected(const QString &item) const override;
    FunctionCallResult<bool> isOpen(const QString &item) const override;

protected:
    QString findItem(const QString &item) const override;
};

// Cells

/// A cell that knows which table it belongs to. Its row and column are members that the toolkit sets on its
/// node.
class PAGEPROBELIB_EXPORT KiwiCell : public HTML_Object
{
public:
    /// `owner` is the reference of the table that the cell came from, "null" when it is unknown.
    KiwiCell(const QString &name, const QString &reference, const QString &owner, HTMLComponent *component);

    FunctionCallResult<int> row() const;
    FunctionCallResult<int> column() const;

protected:
    /// The table as a piece of script.
    Expr owner() const { return Expr{m_owner}; }

private:
    QString m_owner;
};

class PAGEPROBELIB_EXPORT HTML_KiwiTableCell : public KiwiCell
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTableCell";

    using KiwiCell::KiwiCell;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> value() const;
    FunctionCallResult<bool> isSelected() const;
};

class PAGEPROBELIB_EXPORT HTML_KiwiTreeTableCell : public KiwiCell
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTreeTableCell";

    using KiwiCell::KiwiCell;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> value() const;
    /// Whether the cell's row is selected.
    FunctionCallResult<bool> isSelected() const;
    /// The row counted over all levels of the tree.
    FunctionCallResult<int> absRow() const;
};

class PAGEPROBELIB_EXPORT HTML_KiwiMatrixCell : public KiwiCell
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrixCell";

    using KiwiCell::KiwiCell;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> value() const;
};

/// A matrix: a cell of a matrix table, with cells of its own.
class PAGEPROBELIB_EXPORT HTML_KiwiMatrix : public KiwiCell
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrix";

    using KiwiCell::KiwiCell;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> numRows() const;
    FunctionCallResult<int> numColumns() const;
    FunctionCallResult<bool> isSelected() const;
    /// Owned by the caller; null where the row has no such cell.
    FunctionCallResult<HTML_KiwiMatrixCell *> findItem(int row, int column) const;
};

// Tables. Rows and columns count from 0.

/// What tables and tree tables have in common.
class PAGEPROBELIB_EXPORT KiwiTableBase : public HTML_FormElement
{
public:
    using HTML_FormElement::HTML_FormElement;

    FunctionCallResult<int> numRows() const;
    FunctionCallResult<int> numColumns() const;
    FunctionCallResult<int> numGroups() const;
    FunctionCallResult<QString> groupCaption(int group) const;
    FunctionCallResult<QString> groupCaptionOfColumn(int column) const;

    /// `modifier` is a sum of ModifierState values. The page gets the click 100 ms later; the call returns
    /// after 200 ms.
    FunctionCallResult<void> clickItem(const QString &item, int modifier);
    FunctionCallResult<void> clickRow(const QString &text, int modifier);
    FunctionCallResult<void> clickRow(int row, int modifier);

    FunctionCallResult<bool> hasItem(const QString &item) const;
    FunctionCallResult<bool> isSelected(const QString &item) const;

protected:
    /// Finds the first cell with a value, or else a visible text, that equals `text`, in the rows behind
    /// `startRow`; -1 for all rows. Null when there is none.
    template <typename Cell>
    FunctionCallResult<Cell *> findCell(const QString &text, int startRow) const;
    /// The cell at a place; cells that a row lacks because one above spans it do not count. Null when the row
    /// ends before.
    template <typename Cell>
    FunctionCallResult<Cell *> findCell(int row, int column) const;

private:
    /// Script that clicks the row in __ostrel__row when there is one.
    virtual QString clickOnRow(int modifier) const = 0;
};

class PAGEPROBELIB_EXPORT HTML_KiwiTable : public KiwiTableBase
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTable";

    using KiwiTableBase::KiwiTableBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> caption(int column) const;
    FunctionCallResult<bool> rowSelected(int row) const;
    /// Cells are owned by the caller; null when there is no such cell.
    FunctionCallResult<HTML_KiwiTableCell *> findItem(const QString &text, int startRow) const;
    FunctionCallResult<HTML_KiwiTableCell *> findItem(int row, int column) const;

private:
    QString clickOnRow(int modifier) const override;
};

/// A table whose first column is a tree.
class PAGEPROBELIB_EXPORT HTML_KiwiTreeTable : public KiwiTableBase
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiTreeTable";

    using KiwiTableBase::KiwiTableBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> caption(int column) const;
    FunctionCallResult<bool> rowSelected(int row) const;
    /// Cells are owned by the caller; null when there is no such cell.
    FunctionCallResult<HTML_KiwiTreeTableCell *> findItem(const QString &text, int startRow) const;
    FunctionCallResult<HTML_KiwiTreeTableCell *> findItem(int row, int column) const;

private:
    QString clickOnRow(int modifier) const override;
};

/// A table of matrices.
class PAGEPROBELIB_EXPORT HTML_KiwiMatrixTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMatrixTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> numRows() const;
    FunctionCallResult<int> numColumns() const;
    FunctionCallResult<QString> columnCaption(int column) const;
    FunctionCallResult<QString> rowCaption(int row) const;
    /// Owned by the caller; null where the row has no such cell.
    FunctionCallResult<HTML_KiwiMatrix *> findItem(int row, int column) const;
};

// Menus

class PAGEPROBELIB_EXPORT HTML_KiwiMoreMenuItem : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMoreMenuItem";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> itemText() const;
};

/// A menu of what does not fit on a toolbar. Its list of items is fetched once and stays as it was then.
class PAGEPROBELIB_EXPORT HTML_KiwiMoreMenu : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_KiwiMoreMenu";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> numItems() const;
    /// Owned by the caller; null when there is no such item.
    FunctionCallResult<HTML_KiwiMoreMenuItem *> itemAt(int index) const;
    /// Whether the page found the item and activated it.
    FunctionCallResult<bool> activateItem(const QString &text);

private:
    /// The page variable that holds the items.
    FunctionCallResult<QString> getItems() const;

    mutable QString m_items;
};

} // namespace Ostrel::WebWrapper
