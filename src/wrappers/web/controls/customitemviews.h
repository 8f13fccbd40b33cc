// Item views, such as trees, lists and tables, that a page extension describes, and their items.
#pragma once

#include "wrappers/web/controls/extensionbacked.h"
#include "wrappers/web/formelements.h"

#include <memory>

namespace Ostrel::WebWrapper {

class HTML_CustomItemView;

/// One item of an item view. Items that do not exist are null pointers and no errors; those that do are new
/// wrappers, owned by the caller. A column of -1 leaves the column to the extension.
class PAGEPROBELIB_EXPORT HTML_CustomItem : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomItem";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    /// Both leave the click to an extension that says that it can do it, at once and without a wait;
    /// otherwise the item is clicked like any element.
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;
    FunctionCallResult<void> doubleClick(int modifier, int x, int y) override;
    /// The name in the view, such as "item_3", asked of the page once.
    FunctionCallResult<QString> name() const override;

    /// The name of the extension, which tells the toolkit behind the item; the page is not asked.
    FunctionCallResult<QString> realType() const;
    /// What the extension says, or else the text that the page shows.
    FunctionCallResult<QString> text() const;
    FunctionCallResult<bool> isOpen() const;
    FunctionCallResult<void> setOpen(bool open);
    FunctionCallResult<bool> isSelected() const;
    FunctionCallResult<void> setSelected(bool selected);
    FunctionCallResult<int> row() const;
    FunctionCallResult<int> column() const;
    /// The number of rows below this item.
    FunctionCallResult<int> numRows() const;

    /// What a user clicks to open or close the item.
    FunctionCallResult<HTML_Object *> itemHandle() const;
    FunctionCallResult<HTML_CustomItemView *> itemView() const;
    FunctionCallResult<HTML_CustomItem *> childItem(int column) const;
    FunctionCallResult<HTML_CustomItem *> parentItem(int column) const;
    FunctionCallResult<HTML_CustomItem *> nextSibling(int column) const;
    FunctionCallResult<HTML_CustomItem *> findItem(int row, int column) const;
};

/// The view. Items are found by their text or by row and column; lookups give a null pointer and no error
/// where there is no such item, operations on an item fail.
class PAGEPROBELIB_EXPORT HTML_CustomItemView : public ExtensionBacked<HTML_FormElement>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomItemView";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    /// The name of the extension, which tells the toolkit behind the view; the page is not asked.
    FunctionCallResult<QString> realType() const;
    FunctionCallResult<int> numColumns() const;
    /// -1 when the extension cannot tell.
    FunctionCallResult<int> numRows() const;
    FunctionCallResult<QString> columnCaption(int column) const;

    /// Owned by the caller.
    FunctionCallResult<HTML_CustomItem *> findItem(const char *text) const;
    FunctionCallResult<HTML_CustomItem *> findItem(int row, int column) const;
    /// The first item of a column; -1 leaves the column to the extension.
    FunctionCallResult<HTML_CustomItem *> childItem(int column) const;

    FunctionCallResult<bool> hasItem(const char *item) const;
    FunctionCallResult<bool> isSelected(const char *item) const;
    FunctionCallResult<bool> isOpen(const char *item) const;
    FunctionCallResult<void> clickItem(const char *item, int modifier, int button);
    FunctionCallResult<void> clickItem(int row, int column, int modifier, int button);
    FunctionCallResult<void> doubleClickItem(const char *item, int modifier);
    /// Clicks what opens or closes the item.
    FunctionCallResult<void> clickHandle(const char *item);
    /// Ticks the box of a tree item. Optional for an extension: a failure is traced and is no error. The text
    /// goes into the script as it stands.
    FunctionCallResult<void> checkTreeItem(const char *item);

private:
    /// An item that has to be there.
    FunctionCallResult<std::unique_ptr<HTML_CustomItem>> existingItem(const char *text) const;
};

} // namespace Ostrel::WebWrapper
