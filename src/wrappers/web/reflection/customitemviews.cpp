// What scripts see of the item views that a page extension describes, and of their items.
#include "wrappers/web/controls/customitemviews.h"

#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

using ByText = FunctionCallResult<HTML_CustomItem *> (HTML_CustomItemView::*)(const char *) const;
using ByCell = FunctionCallResult<HTML_CustomItem *> (HTML_CustomItemView::*)(int, int) const;
using ClickByText = FunctionCallResult<void> (HTML_CustomItemView::*)(const char *, int, int);
using ClickByCell = FunctionCallResult<void> (HTML_CustomItemView::*)(int, int, int, int);

constexpr PropertyRow customItemProperties[] = {
    property<&HTML_CustomItem::realType>("realType"),
    property<&HTML_CustomItem::column>("column"),
    property<&HTML_CustomItem::text>("text"),
    property<&HTML_CustomItem::isSelected, &HTML_CustomItem::setSelected>("selected"),
    property<&HTML_CustomItem::numRows>("numRows"),
    property<&HTML_CustomItem::isOpen, &HTML_CustomItem::setOpen>("open"),
    property<&HTML_CustomItem::row>("row"),
};

constexpr MethodRow customItemMethods[] = {
    method<&HTML_CustomItem::isOpen>("isOpen"),
    method<&HTML_CustomItem::isSelected>("isSelected"),
    method<&HTML_CustomItem::setOpen>("setOpen", "open"),
    method<&HTML_CustomItem::setSelected>("setSelected", "selected"),
    method<&HTML_CustomItem::text>("text"),
    method<&HTML_CustomItem::itemHandle>("itemHandle"),
    method<&HTML_CustomItem::realType>("realType"),
    method<&HTML_CustomItem::childItem, -1>("childItem"),
    method<&HTML_CustomItem::childItem>("childItem", "column"),
    method<&HTML_CustomItem::parentItem, -1>("parentItem"),
    method<&HTML_CustomItem::parentItem>("parentItem", "column"),
    method<&HTML_CustomItem::nextSibling, -1>("nextSibling"),
    method<&HTML_CustomItem::nextSibling>("nextSibling", "column"),
    method<&HTML_CustomItem::itemView>("itemView"),
    method<&HTML_CustomItem::row>("row"),
    method<&HTML_CustomItem::column>("column"),
    method<&HTML_CustomItem::findItem>("findItem", "row", "column"),
    method<&HTML_CustomItem::numRows>("numRows"),
};

constexpr PropertyRow customItemViewProperties[] = {
    property<&HTML_CustomItemView::numRows>("numRows"),
    property<&HTML_CustomItemView::numColumns>("numColumns"),
    property<&HTML_CustomItemView::realType>("realType"),
};

constexpr MethodRow customItemViewMethods[] = {
    method<&HTML_CustomItemView::clickHandle>("clickHandle", "item"),
    method<ClickByText(&HTML_CustomItemView::clickItem), 1>("clickItem", "item", "m"),
    method<ClickByText(&HTML_CustomItemView::clickItem)>("clickItem", "item", "m", "button"),
    method<ClickByCell(&HTML_CustomItemView::clickItem), 1>("clickItem", "row", "col", "m"),
    method<ClickByCell(&HTML_CustomItemView::clickItem)>("clickItem", "row", "col", "m", "button"),
    method<&HTML_CustomItemView::doubleClickItem, 0>("doubleClickItem", "item"),
    method<&HTML_CustomItemView::doubleClickItem>("doubleClickItem", "item", "m"),
    method<&HTML_CustomItemView::checkTreeItem>("checkTreeItem", "item"),
    method<&HTML_CustomItemView::hasItem>("hasItem", "item"),
    method<&HTML_CustomItemView::isSelected>("isSelected", "item"),
    method<&HTML_CustomItemView::isOpen>("isOpen", "item"),
    method<ByText(&HTML_CustomItemView::findItem)>("findItem", "text"),
    method<ByCell(&HTML_CustomItemView::findItem)>("findItem", "row", "column"),
    method<&HTML_CustomItemView::childItem, -1>("childItem"),
    method<&HTML_CustomItemView::childItem>("childItem", "column"),
    method<&HTML_CustomItemView::columnCaption>("columnCaption", "column"),
    method<&HTML_CustomItemView::numColumns>("numColumns"),
    method<&HTML_CustomItemView::numRows>("numRows"),
    method<&HTML_CustomItemView::realType>("realType"),
};

} // namespace

constinit const ClassTable HTML_CustomItem_Class{
    "HTML_CustomItem", "HTML_Object", customItemProperties, customItemMethods};
constinit const ClassTable HTML_CustomItemView_Class{
    "HTML_CustomItemView", "HTML_FormElement", customItemViewProperties, customItemViewMethods};

} // namespace Ostrel::WebWrapper
