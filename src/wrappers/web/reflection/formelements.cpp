// What scripts see of plain HTML forms.
#include "wrappers/web/formelements.h"

#include "wrappers/web/htmlarray.h"
#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

FunctionCallResult<HTML_Option *> optionAt(HTML_Select &select, int index)
{
    FunctionCallResult<HTML_Object *> element = select.optionAt(index);
    if (element.failed())
        return Failure(element.error);
    auto *option = dynamic_cast<HTML_Option *>(element.value);
    if (!option)
        delete element.value;
    return option;
}

constexpr PropertyRow formElementProperties[] = {
    property<&HTML_FormElement::disabled, &HTML_FormElement::setDisabled>("disabled"),
    property<&HTML_FormElement::type>("type"),
};

constexpr MethodRow formElementMethods[] = {
    method<&HTML_FormElement::type>("type"),
    method<&HTML_FormElement::focus>("focus"),
    method<&HTML_FormElement::setDisabled>("setDisabled", "b"),
    method<&HTML_FormElement::disabled>("disabled"),
};

constexpr PropertyRow buttonBaseProperties[] = {
    property<&HTML_ButtonBase::value, &HTML_ButtonBase::setValue>("value"),
};

constexpr MethodRow buttonBaseMethods[] = {
    method<&HTML_ButtonBase::setValue>("setValue", "t"),
    method<&HTML_ButtonBase::value>("value"),
};

constexpr MethodRow buttonMethods[] = {
    method<&HTML_Button::submit>("submit"),
};

constexpr PropertyRow checkableProperties[] = {
    property<&CheckableButton::checked, &CheckableButton::setChecked>("checked"),
};

constexpr MethodRow checkableMethods[] = {
    method<&CheckableButton::setChecked>("setChecked", "b"),
    method<&CheckableButton::checked>("checked"),
};

constexpr PropertyRow textBaseProperties[] = {
    property<&HTML_TextBase::value, &HTML_TextBase::setValue>("value"),
    property<&HTML_TextBase::selectedText>("selectedText"),
};

constexpr MethodRow textBaseMethods[] = {
    method<&HTML_TextBase::value>("value"),
    method<&HTML_TextBase::selectAll>("selectAll"),
    method<&HTML_TextBase::setValue>("setValue", "t"),
};

constexpr PropertyRow selectProperties[] = {
    property<&HTML_Select::selectedIndex, &HTML_Select::setSelectedIndex>("selectedIndex"),
    property<&HTML_Select::selectedOption, &HTML_Select::setSelectedOption>("selectedOption"),
    property<&HTML_Select::selectedValues, &HTML_Select::setSelectedOptionsByValue>("selectedValues"),
    property<&HTML_Select::selectedIndexes, &HTML_Select::setSelectedOptionsByIndexes>("selectedIndexes"),
    property<&HTML_Select::selectedLabels>("selectedLabels"),
    property<&HTML_Select::selectedTexts, &HTML_Select::setSelectedOptionsByText>("selectedTexts"),
};

constexpr MethodRow selectMethods[] = {
    method<&HTML_Select::setSelectedIndex>("setSelectedIndex", "i"),
    method<&HTML_Select::selectedIndex>("selectedIndex"),
    method<&HTML_Select::setSelectedOption>("setSelectedOption", "text"),
    method<&HTML_Select::selectedOption>("selectedOption"),
    method<&HTML_Select::options>("options"),
    method<&optionAt>("optionAt", "index"),
    method<&HTML_Select::isMulti>("isMulti"),
    method<&HTML_Select::setSelectedOptionsByValue>("setSelectedOptionsByValue", "values"),
    method<&HTML_Select::setSelectedOptionsByText>("setSelectedOptions", "texts"),
    method<&HTML_Select::setSelectedOptionByValue>("setSelectedOptionByValue", "value"),
    method<&HTML_Select::deselectByValues>("deselectByValues", "values"),
    method<&HTML_Select::deselectByTexts>("deselectByTexts", "texts"),
    method<&HTML_Select::deselectByIndexes>("deselectByIndexes", "indexes"),
};

constexpr PropertyRow optionProperties[] = {
    property<&HTML_Option::text, &HTML_Option::setText>("text"),
    property<&HTML_Option::value, &HTML_Option::setValue>("value"),
    property<&HTML_Option::index>("index"),
    property<&HTML_Option::selected>("selected"),
    property<&HTML_Option::defaultSelected>("defaultSelected"),
};

constexpr MethodRow optionMethods[] = {
    method<&HTML_Option::defaultSelected>("defaultSelected"),
    method<&HTML_Option::index>("index"),
    method<&HTML_Option::selected>("selected"),
    method<&HTML_Option::setValue>("setValue", "t"),
    method<&HTML_Option::value>("value"),
    method<&HTML_Option::setText>("setText", "t"),
    method<&HTML_Option::text>("text"),
};

constexpr MethodRow formMethods[] = {
    method<&HTML_Form::submit>("submit"),
};

} // namespace

constinit const ClassTable HTML_FormElement_Class{
    "HTML_FormElement", "HTML_Object", formElementProperties, formElementMethods};
constinit const ClassTable HTML_ButtonBase_Class{
    "HTML_ButtonBase", "HTML_FormElement", buttonBaseProperties, buttonBaseMethods};
constinit const ClassTable HTML_Button_Class{"HTML_Button", "HTML_ButtonBase", {}, buttonMethods};
constinit const ClassTable HTML_CheckBox_Class{
    "HTML_CheckBox", "HTML_ButtonBase", checkableProperties, checkableMethods};
constinit const ClassTable HTML_RadioButton_Class{
    "HTML_RadioButton", "HTML_ButtonBase", checkableProperties, checkableMethods};
constinit const ClassTable HTML_ImageButton_Class{"HTML_ImageButton", "HTML_ButtonBase", {}, {}};
constinit const ClassTable HTML_TextBase_Class{
    "HTML_TextBase", "HTML_FormElement", textBaseProperties, textBaseMethods};
constinit const ClassTable HTML_Text_Class{"HTML_Text", "HTML_TextBase", {}, {}};
constinit const ClassTable HTML_TextArea_Class{"HTML_TextArea", "HTML_TextBase", {}, {}};
constinit const ClassTable HTML_Select_Class{
    "HTML_Select", "HTML_FormElement", selectProperties, selectMethods};
constinit const ClassTable HTML_Option_Class{"HTML_Option", "HTML_Object", optionProperties, optionMethods};
constinit const ClassTable HTML_Form_Class{"HTML_Form", "HTML_Object", {}, formMethods};

} // namespace Ostrel::WebWrapper
