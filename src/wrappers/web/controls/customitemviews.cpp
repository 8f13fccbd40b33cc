#include "wrappers/web/controls/customitemviews.h"

#include "wrappers/web/controls/extensioncall.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// The states of items: extensions also answer with a number.
FunctionCallResult<bool> isTrueOrOne(const FunctionCallResult<QString> &answer)
{
    if (!answer.failed() && answer.value == "1"_L1)
        return true;
    return isTrue(answer);
}

} // namespace

// Items

FunctionCallResult<void> HTML_CustomItem::click(int modifier, int x, int y, int button)
{
    const QString supported
        = optionalAnswer(component(), script(u"%1Extension.supportsClickItem(%2);", ext(), ref()),
            u"Ignoring error from optional API Extension.supportsClickItem: %1");
    if (supported != "true"_L1)
        return HTML_Object::click(modifier, x, y, button);
    return run(script(u"%1Extension.clickItem(%2, %3, %4, %5, %6);", ext(), ref(), modifierKeys(modifier), x,
                   y, pressedButton(modifier, button)),
        u"Error emulating click via extension: %1");
}

FunctionCallResult<void> HTML_CustomItem::doubleClick(int modifier, int x, int y)
{
    const QString supported
        = optionalAnswer(component(), script(u"%1Extension.supportsDoubleClickItem(%2);", ext(), ref()),
            u"Ignoring error from optional API Extension.supportsDoubleClickItem: %1");
    if (supported != "true"_L1)
        return HTML_Object::doubleClick(modifier, x, y);
    return run(
        script(u"%1Extension.doubleClickItem(%2, %3, %4, %5);", ext(), ref(), modifierKeys(modifier), x, y),
        u"Error emulating double-click via extension: %1");
}

FunctionCallResult<QString> HTML_CustomItem::name() const
{
    return nameFrom(script(u"__ostrel__hierarchicalItemName(%1Extension, %2);", ext(), ref()),
        u"Error obtaining item name: %1");
}

FunctionCallResult<QString> HTML_CustomItem::realType() const
{
    return extension();
}

FunctionCallResult<QString> HTML_CustomItem::text() const
{
    return evaluate(script(u"try {%1Extension.itemText(%2);} catch (e) {%2.innerText;}", ext(), ref()),
        u"Error fetching text: %1");
}

FunctionCallResult<bool> HTML_CustomItem::isOpen() const
{
    return isTrueOrOne(
        evaluate(script(u"%1Extension.isItemOpen(%2);", ext(), ref()), u"Error fetching open state: %1"));
}

FunctionCallResult<void> HTML_CustomItem::setOpen(bool open)
{
    return run(script(u"%1Extension.setItemOpen(%2, %3);", ext(), ref(), open),
        u"Error setting open state to '%1': %2", wordOf(open));
}

FunctionCallResult<bool> HTML_CustomItem::isSelected() const
{
    return isTrueOrOne(evaluate(
        script(u"%1Extension.isItemSelected(%2);", ext(), ref()), u"Error fetching selected state: %1"));
}

FunctionCallResult<void> HTML_CustomItem::setSelected(bool selected)
{
    return run(script(u"%1Extension.setItemSelected(%2, %3);", ext(), ref(), selected),
        u"Error setting selected state to '%1': %2", wordOf(selected));
}

FunctionCallResult<int> HTML_CustomItem::row() const
{
    return toNumber(evaluate(script(u"%1Extension.itemRow( %2 );", ext(), ref()), u"Error fetching row: %1"),
        u"Could not convert value for row '%1' to number");
}

FunctionCallResult<int> HTML_CustomItem::column() const
{
    return toNumber(
        evaluate(script(u"%1Extension.itemColumn( %2 );", ext(), ref()), u"Error fetching column: %1"),
        u"Could not convert value for column '%1' to number");
}

FunctionCallResult<int> HTML_CustomItem::numRows() const
{
    return toNumber(
        evaluate(script(u"%1Extension.numRows( %2);", ext(), ref()), u"Error fetching number rows: %1"),
        u"Could not convert value for number of rows '%1' to number");
}

FunctionCallResult<HTML_Object *> HTML_CustomItem::itemHandle() const
{
    return objectFrom(script(u"%1Extension.itemHandle(%2);", ext(), ref()), u"Error fetching handle: %1");
}

FunctionCallResult<HTML_CustomItemView *> HTML_CustomItem::itemView() const
{
    return as<HTML_CustomItemView>(
        objectFrom(script(u"%1Extension.itemView(%2);", ext(), ref()), u"Error fetching itemview: %1"));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItem::childItem(int column) const
{
    return as<HTML_CustomItem>(objectFrom(script(u"%1Extension.childItem(%2,%3);", ext(), ref(), column),
        u"Error fetching child item for column '%1': %2", QString::number(column)));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItem::parentItem(int column) const
{
    return as<HTML_CustomItem>(objectFrom(script(u"%1Extension.parentItem(%2,%3);", ext(), ref(), column),
        u"Error fetching parent item for column '%1': %2", QString::number(column)));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItem::nextSibling(int column) const
{
    return as<HTML_CustomItem>(objectFrom(script(u"%1Extension.nextSibling(%2,%3);", ext(), ref(), column),
        u"Error fetching sibling for column '%1': %2", QString::number(column)));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItem::findItem(int row, int column) const
{
    return as<HTML_CustomItem>(
        objectFrom(script(u"%1Extension.findItemByRowAndColumn(%2, %3, %4);", ext(), ref(), row, column),
            u"Error finding item at row '%1' and column '%2': %3", QString::number(row),
            QString::number(column)));
}

// Views

FunctionCallResult<QString> HTML_CustomItemView::realType() const
{
    return extension();
}

FunctionCallResult<int> HTML_CustomItemView::numColumns() const
{
    return toNumber(evaluate(script(u"%1Extension.numColumns(%2);", ext(), ref()),
                        u"Error occurred while fetching number of columns: %1"),
        u"Cannot convert obtained columncount '%1' to a number");
}

FunctionCallResult<int> HTML_CustomItemView::numRows() const
{
    return toNumber(evaluate(script(u"try { %1Extension.numRows(%2);}catch(e){-1;}", ext(), ref()),
                        u"Error occurred while fetching number of rows: %1"),
        u"Cannot convert obtained rowcount '%1' to a number");
}

FunctionCallResult<QString> HTML_CustomItemView::columnCaption(int column) const
{
    return evaluate(script(u"%1Extension.columnCaption(%2,%3);", ext(), ref(), column),
        u"Error occurred while fetching caption for column '%1': %2", QString::number(column));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItemView::findItem(const char *text) const
{
    const QString wanted = QString::fromUtf8(text);
    return as<HTML_CustomItem>(
        objectFrom(script(u"%1Extension.findItem(%2,'%3');", ext(), ref(), QuotedLine{wanted}),
            u"Error occurred while finding item with text '%1': %2", wanted));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItemView::findItem(int row, int column) const
{
    return as<HTML_CustomItem>(
        objectFrom(script(u"%1Extension.findItemByRowAndColumn(%2, %3, %4);", ext(), ref(), row, column),
            u"Error occurred while finding item with row '%1' and column '%2': %3", QString::number(row),
            QString::number(column)));
}

FunctionCallResult<HTML_CustomItem *> HTML_CustomItemView::childItem(int column) const
{
    return as<HTML_CustomItem>(objectFrom(script(u"%1Extension.childItem(%2,%3);", ext(), ref(), column),
        u"Error occurred while fetching child item at column '%1': %2", QString::number(column)));
}

FunctionCallResult<std::unique_ptr<HTML_CustomItem>> HTML_CustomItemView::existingItem(const char *text) const
{
    const FunctionCallResult<HTML_CustomItem *> found = findItem(text);
    if (found.failed())
        return Failure(found.error);
    if (!found.value)
        return Failure(message(u"No item found with text '%1'", QString::fromUtf8(text)));
    return std::unique_ptr<HTML_CustomItem>(found.value);
}

FunctionCallResult<bool> HTML_CustomItemView::hasItem(const char *item) const
{
    const FunctionCallResult<HTML_CustomItem *> found = findItem(item);
    if (found.failed())
        return Failure(found.error);
    const std::unique_ptr<HTML_CustomItem> owned(found.value);
    return owned != nullptr;
}

FunctionCallResult<bool> HTML_CustomItemView::isSelected(const char *item) const
{
    const auto found = existingItem(item);
    if (found.failed())
        return Failure(found.error);
    return found.value->isSelected();
}

FunctionCallResult<bool> HTML_CustomItemView::isOpen(const char *item) const
{
    const auto found = existingItem(item);
    if (found.failed())
        return Failure(found.error);
    return found.value->isOpen();
}

FunctionCallResult<void> HTML_CustomItemView::clickItem(const char *item, int modifier, int button)
{
    const auto found = existingItem(item);
    if (found.failed())
        return Failure(found.error);
    return found.value->click(modifier, 0, 0, button);
}

FunctionCallResult<void> HTML_CustomItemView::clickItem(int row, int column, int modifier, int button)
{
    const FunctionCallResult<HTML_CustomItem *> found = findItem(row, column);
    if (found.failed())
        return Failure(found.error);
    if (!found.value) {
        return Failure(message(
            u"No item found with row '%1' and column '%2'", QString::number(row), QString::number(column)));
    }
    const std::unique_ptr<HTML_CustomItem> item(found.value);
    return item->click(modifier, 0, 0, button);
}

FunctionCallResult<void> HTML_CustomItemView::doubleClickItem(const char *item, int modifier)
{
    const auto found = existingItem(item);
    if (found.failed())
        return Failure(found.error);
    return found.value->doubleClick(modifier, 0, 0);
}

FunctionCallResult<void> HTML_CustomItemView::clickHandle(const char *item)
{
    const auto found = existingItem(item);
    if (found.failed())
        return Failure(found.error);
    const FunctionCallResult<HTML_Object *> handle = found.value->itemHandle();
    if (handle.failed())
        return Failure(handle.error);
    if (!handle.value)
        return Failure(message(u"Item with text '%1' has no handle.", QString::fromUtf8(item)));
    const std::unique_ptr<HTML_Object> owned(handle.value);
    return owned->click(0, 0, 0, 1);
}

FunctionCallResult<void> HTML_CustomItemView::checkTreeItem(const char *item)
{
    optionalAnswer(component(),
        script(u"%1Extension.checkTreeItem(%2, '%3');", ext(), ref(), Expr{QString::fromUtf8(item)}),
        u"Ignoring error from optional API Extension.checkTreeItem: %1");
    return {};
}

} // namespace Ostrel::WebWrapper
