// What scripts see of the controls that a page extension operates.
#include "wrappers/web/controls/customcontrols.h"

#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr PropertyRow customButtonBaseProperties[] = {
    property<&HTML_CustomButtonBase::disabled, &HTML_CustomButtonBase::setDisabled>("disabled"),
    property<&HTML_CustomButtonBase::showText, &HTML_CustomButtonBase::setShowText>("showText"),
    property<&HTML_CustomButtonBase::tooltip, &HTML_CustomButtonBase::setTooltip>("tooltip"),
    property<&HTML_CustomButtonBase::enabled, &HTML_CustomButtonBase::setEnabled>("enabled"),
    property<&HTML_CustomButtonBase::text, &HTML_CustomButtonBase::setText>("text"),
};

constexpr MethodRow customButtonBaseMethods[] = {
    method<&HTML_CustomButtonBase::setText>("setText", "txt"),
    method<&HTML_CustomButtonBase::text>("text"),
    method<&HTML_CustomButtonBase::setTooltip>("setTooltip", "tooltip"),
    method<&HTML_CustomButtonBase::tooltip>("tooltip"),
    method<&HTML_CustomButtonBase::setEnabled>("setEnabled", "enable"),
    method<&HTML_CustomButtonBase::enabled>("enabled"),
    method<&HTML_CustomButtonBase::setDisabled>("setDisabled", "disable"),
    method<&HTML_CustomButtonBase::disabled>("disabled"),
    method<&HTML_CustomButtonBase::setShowText>("setShowText", "showText"),
    method<&HTML_CustomButtonBase::showText>("showText"),
};

constexpr PropertyRow customButtonProperties[] = {
    property<&HTML_CustomButton::value, &HTML_CustomButton::setValue>("value"),
};

constexpr MethodRow customButtonMethods[] = {
    method<&HTML_CustomButton::setValue>("setValue", "val"),
    method<&HTML_CustomButton::value>("value"),
};

constexpr PropertyRow customCheckboxProperties[] = {
    property<&HTML_CustomCheckbox::checked, &HTML_CustomCheckbox::setChecked>("checked"),
};

constexpr MethodRow customCheckboxMethods[] = {
    method<&HTML_CustomCheckbox::checked>("checked"),
    method<&HTML_CustomCheckbox::setChecked>("setChecked", "b"),
};

constexpr PropertyRow customRadioButtonProperties[] = {
    property<&HTML_CustomRadioButton::selected, &HTML_CustomRadioButton::setSelected>("selected"),
};

constexpr MethodRow customRadioButtonMethods[] = {
    method<&HTML_CustomRadioButton::selected>("selected"),
    method<&HTML_CustomRadioButton::setSelected>("setSelected", "b"),
};

constexpr PropertyRow customComboBoxProperties[] = {
    property<&HTML_CustomComboBox::selectedOption, &HTML_CustomComboBox::setSelectedOption>("selectedOption"),
    property<&HTML_CustomComboBox::label>("label"),
};

constexpr MethodRow customComboBoxMethods[] = {
    method<&HTML_CustomComboBox::selectedOption>("selectedOption"),
    method<&HTML_CustomComboBox::label>("label"),
    method<&HTML_CustomComboBox::hasOption>("hasOption", "options"),
    method<&HTML_CustomComboBox::setSelectedOption>("setSelectedOption", "options"),
};

constexpr PropertyRow customSelectListProperties[] = {
    property<&HTML_CustomSelectList::selectedOptions, &HTML_CustomSelectList::setSelectedOptions>(
        "selectedOptions"),
    property<&HTML_CustomSelectList::label>("label"),
};

constexpr MethodRow customSelectListMethods[] = {
    method<&HTML_CustomSelectList::selectedOptions>("selectedOptions"),
    method<&HTML_CustomSelectList::label>("label"),
    method<&HTML_CustomSelectList::hasOptions>("hasOptions", "options"),
    method<&HTML_CustomSelectList::setSelectedOptions>("setSelectedOptions", "options"),
};

constexpr PropertyRow customTextProperties[] = {
    property<&HTML_CustomText::hasFocus>("hasFocus"),
    property<&HTML_CustomText::value, &HTML_CustomText::setValue>("value"),
    property<&HTML_CustomText::label>("label"),
};

constexpr MethodRow customTextMethods[] = {
    method<&HTML_CustomText::hasFocus>("hasFocus"),
    method<&HTML_CustomText::label>("label"),
    method<&HTML_CustomText::setValue>("setValue", "str"),
    method<&HTML_CustomText::value>("value"),
};

constexpr PropertyRow colorFieldProperties[] = {
    property<&HTML_ColorField::isEnabled, &HTML_ColorField::setEnabled>("isEnabled"),
    property<&HTML_ColorField::fieldName>("fieldName"),
    property<&HTML_ColorField::rgbColor, &HTML_ColorField::setRgbColor>("rgbColor"),
};

constexpr MethodRow colorFieldMethods[] = {
    method<&HTML_ColorField::rgbColor>("rgbColor"),
    method<&HTML_ColorField::setRgbColor>("setRgbColor", unnamed),
    method<&HTML_ColorField::fieldName>("fieldName"),
    method<&HTML_ColorField::setEnabled>("setEnabled", "b"),
    method<&HTML_ColorField::isEnabled>("isEnabled"),
};

constexpr PropertyRow sectionHeaderProperties[] = {
    property<&HTML_ExpandableSectionHeader::isExpanded, &HTML_ExpandableSectionHeader::setExpanded>(
        "isExpanded"),
    property<&HTML_ExpandableSectionHeader::isEnabled, &HTML_ExpandableSectionHeader::setEnabled>(
        "isEnabled"),
    property<&HTML_ExpandableSectionHeader::title, &HTML_ExpandableSectionHeader::setTitle>("title"),
};

constexpr MethodRow sectionHeaderMethods[] = {
    method<&HTML_ExpandableSectionHeader::isExpanded>("isExpanded"),
    method<&HTML_ExpandableSectionHeader::setExpanded>("setExpanded", "b"),
    method<&HTML_ExpandableSectionHeader::isEnabled>("isEnabled"),
    method<&HTML_ExpandableSectionHeader::setEnabled>("setEnabled", "b"),
    method<&HTML_ExpandableSectionHeader::title>("title"),
    method<&HTML_ExpandableSectionHeader::setTitle>("setTitle", unnamed),
};

constexpr PropertyRow progressBarProperties[] = {
    property<&HTML_ProgressBar::minimum>("minimum"),
    property<&HTML_ProgressBar::maximum>("maximum"),
    property<&HTML_ProgressBar::value, &HTML_ProgressBar::setValue>("value"),
};

constexpr MethodRow progressBarMethods[] = {
    method<&HTML_ProgressBar::minimum>("minimum"),
    method<&HTML_ProgressBar::maximum>("maximum"),
    method<&HTML_ProgressBar::setValue>("setValue", unnamed),
    method<&HTML_ProgressBar::value>("value"),
};

} // namespace

constinit const ClassTable HTML_CustomButtonBase_Class{
    "HTML_CustomButtonBase", "HTML_Object", customButtonBaseProperties, customButtonBaseMethods};
constinit const ClassTable HTML_CustomButton_Class{
    "HTML_CustomButton", "HTML_CustomButtonBase", customButtonProperties, customButtonMethods};
constinit const ClassTable HTML_CustomCheckbox_Class{
    "HTML_CustomCheckbox", "HTML_CustomButtonBase", customCheckboxProperties, customCheckboxMethods};
constinit const ClassTable HTML_CustomRadioButton_Class{
    "HTML_CustomRadioButton", "HTML_CustomButtonBase", customRadioButtonProperties, customRadioButtonMethods};
constinit const ClassTable HTML_CustomComboBox_Class{
    "HTML_CustomComboBox", "HTML_FormElement", customComboBoxProperties, customComboBoxMethods};
constinit const ClassTable HTML_CustomSelectList_Class{
    "HTML_CustomSelectList", "HTML_FormElement", customSelectListProperties, customSelectListMethods};
constinit const ClassTable HTML_CustomText_Class{
    "HTML_CustomText", "HTML_FormElement", customTextProperties, customTextMethods};
constinit const ClassTable HTML_ColorField_Class{
    "HTML_ColorField", "HTML_Object", colorFieldProperties, colorFieldMethods};
constinit const ClassTable HTML_ExpandableSectionHeader_Class{
    "HTML_ExpandableSectionHeader", "HTML_Object", sectionHeaderProperties, sectionHeaderMethods};
constinit const ClassTable HTML_ProgressBar_Class{
    "HTML_ProgressBar", "HTML_Object", progressBarProperties, progressBarMethods};

} // namespace Ostrel::WebWrapper
