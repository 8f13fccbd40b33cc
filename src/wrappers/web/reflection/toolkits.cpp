// What scripts see of the widgets of the Backbase, Dojo, GWC and qooxdoo toolkits.
#include "wrappers/web/reflection/tables.h"
#include "wrappers/web/toolkits/backbase.h"
#include "wrappers/web/toolkits/dojo.h"
#include "wrappers/web/toolkits/gwc.h"
#include "wrappers/web/toolkits/qooxdoo.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr PropertyRow comboBoxProperties[] = {
    property<&HTML_BackBaseComboBox::numOptions>("numOptions"),
};

constexpr MethodRow comboBoxMethods[] = {
    method<&HTML_BackBaseComboBox::numOptions>("numOptions"),
    method<&HTML_BackBaseComboBox::optionAt>("optionAt", "idx"),
};

constexpr PropertyRow listViewProperties[] = {
    property<&HTML_BackBaseListView::numRows>("numRows"),
    property<&HTML_BackBaseListView::numColumns>("numColumns"),
};

constexpr MethodRow listViewMethods[] = {
    method<&HTML_BackBaseListView::clickItem>("clickItem", "item", "m"),
    method<&HTML_BackBaseListView::hasItem>("hasItem", "item"),
    method<&HTML_BackBaseListView::isSelected>("isSelected", "item"),
    method<&HTML_BackBaseListView::itemText>("itemText", "row", "col"),
    method<&HTML_BackBaseListView::numRows>("numRows"),
    method<&HTML_BackBaseListView::numColumns>("numColumns"),
    method<&HTML_BackBaseListView::caption>("caption", "column"),
};

constexpr PropertyRow spinnerProperties[] = {
    property<&HTML_BackBaseSpinner::value, &HTML_BackBaseSpinner::setValue>("value"),
    property<&HTML_BackBaseSpinner::endValue>("endValue"),
    property<&HTML_BackBaseSpinner::isLooping>("isLooping"),
    property<&HTML_BackBaseSpinner::startValue>("startValue"),
    property<&HTML_BackBaseSpinner::step>("step"),
};

constexpr MethodRow spinnerMethods[] = {
    method<&HTML_BackBaseSpinner::startValue>("startValue"),
    method<&HTML_BackBaseSpinner::endValue>("endValue"),
    method<&HTML_BackBaseSpinner::step>("step"),
    method<&HTML_BackBaseSpinner::isLooping>("isLooping"),
    method<&HTML_BackBaseSpinner::value>("value"),
    method<&HTML_BackBaseSpinner::setValue>("setValue", "v"),
};

constexpr MethodRow splitPaneMethods[] = {
    method<&HTML_DojoSplitPane::clickItem>("clickItem", "item", "m"),
};

constexpr MethodRow formFieldBoxMethods[] = {
    method<&HTML_GWCFormFieldBox::clickItem>("clickItem", "item", "m"),
};

constexpr MethodRow gwcTableMethods[] = {
    method<&HTML_GWCTable::clickItem>("clickItem", "item", "m"),
};

constexpr PropertyRow qxWidgetProperties[] = {
    property<&HTML_QxWidget::qxCaption>("qxCaption"),
    property<&HTML_QxWidget::qxLabel>("qxLabel"),
    property<&HTML_QxWidget::qxName>("qxName"),
    property<&HTML_QxWidget::qxSelected, &HTML_QxWidget::qxSetSelected>("qxSelected"),
    property<&HTML_QxWidget::qxClassName>("qxClassName"),
    property<&HTML_QxWidget::qxChildrenLength>("qxChildrenLength"),
    property<&HTML_QxWidget::qxChecked, &HTML_QxWidget::qxSetChecked>("qxChecked"),
};

constexpr MethodRow qxWidgetMethods[] = {
    method<&HTML_QxWidget::qxClassName>("qxClassName"),
    method<&HTML_QxWidget::qxLabel>("qxLabel"),
    method<&HTML_QxWidget::qxName>("qxName"),
    method<&HTML_QxWidget::qxCaption>("qxCaption"),
    method<&HTML_QxWidget::qxParent>("qxParent"),
    method<&HTML_QxWidget::qxChildren>("qxChildren"),
    method<&HTML_QxWidget::qxChildrenLength>("qxChildrenLength"),
    method<&HTML_QxWidget::qxChild>("qxChild", "index"),
    method<&HTML_QxWidget::qxSelected>("qxSelected"),
    method<&HTML_QxWidget::qxChecked>("qxChecked"),
    method<&HTML_QxWidget::qxSetSelected>("qxSetSelected", "selected"),
    method<&HTML_QxWidget::qxSetChecked>("qxSetChecked", "checked"),
    method<&HTML_QxWidget::qxElement>("qxElement"),
};

constexpr MethodRow qxWidgetElementMethods[] = {
    method<&HTML_QxWidgetElement::qxWidget>("qxWidget"),
};

} // namespace

constinit const ClassTable HTML_BackBaseButton_Class{"HTML_BackBaseButton", "HTML_ButtonBase", {}, {}};
constinit const ClassTable HTML_BackBaseComboBox_Class{
    "HTML_BackBaseComboBox", "HTML_Select", comboBoxProperties, comboBoxMethods};
constinit const ClassTable HTML_BackBaseListView_Class{
    "HTML_BackBaseListView", "HTML_FormElement", listViewProperties, listViewMethods};
constinit const ClassTable HTML_BackBaseSpinner_Class{
    "HTML_BackBaseSpinner", "HTML_FormElement", spinnerProperties, spinnerMethods};
constinit const ClassTable HTML_DojoSplitPane_Class{
    "HTML_DojoSplitPane", "HTML_FormElement", {}, splitPaneMethods};
constinit const ClassTable HTML_DojoTree_Class{"HTML_DojoTree", "HTML_TreeBase", {}, {}};
constinit const ClassTable HTML_GWCFormFieldBox_Class{
    "HTML_GWCFormFieldBox", "HTML_FormElement", {}, formFieldBoxMethods};
constinit const ClassTable HTML_GWCTable_Class{"HTML_GWCTable", "HTML_FormElement", {}, gwcTableMethods};
constinit const ClassTable HTML_QxWidget_Class{
    "HTML_QxWidget", "HTML_Object", qxWidgetProperties, qxWidgetMethods};
constinit const ClassTable HTML_QxWidgetElement_Class{
    "HTML_QxWidgetElement", "HTML_Object", {}, qxWidgetElementMethods};

} // namespace Ostrel::WebWrapper
