#include "wrappers/web/controls/customcontrols.h"

#include "wrappers/web/controls/extensioncall.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// Labels are optional for an extension; an element without one has the empty label.
QString getLabelFromExtension(
    const HTMLComponent *component, const QString &reference, const QString &extension)
{
    return optionalAnswer(component, script(u"%1Extension.getLabel(%2);", Expr{extension}, Expr{reference}),
        u"Error while invoking optional API Extension.getLabel: %1");
}

} // namespace

// Buttons. States go out in quotes, as texts: what an extension does with the text "false" is its own matter.

FunctionCallResult<bool> HTML_CustomButtonBase::visible() const
{
    return isTrue(
        evaluate(script(u"%1Extension.isVisible(%2);", ext(), ref()), u"Error determining visibility: %1"));
}

FunctionCallResult<void> HTML_CustomButtonBase::click(int modifier, int x, int y, int button)
{
    return run(script(u"%1Extension.click(%2, %3, %4, %5, %6);", ext(), ref(), modifierKeys(modifier), x, y,
                   pressedButton(modifier, button)),
        u"Error clicking button: %1");
}

FunctionCallResult<QString> HTML_CustomButtonBase::text() const
{
    return cleaned(evaluate(
        script(u"%1Extension.getText(%2);", ext(), ref()), u"Error occurred while fetching text: %1"));
}

FunctionCallResult<void> HTML_CustomButtonBase::setText(const QString &text)
{
    return run(script(u"%1Extension.setText(%2, '%3' );", ext(), ref(), Quoted{text}),
        u"Error occurred while setting text '%1': %2", text);
}

FunctionCallResult<QString> HTML_CustomButtonBase::tooltip() const
{
    return cleaned(optionalAnswer(
        component(), script(u"try{%1Extension.getTooltip(%2);}catch(e){undefined;}", ext(), ref())));
}

FunctionCallResult<void> HTML_CustomButtonBase::setTooltip(const QString &text)
{
    optionalAnswer(component(), script(u"%1Extension.setTooltip(%2, '%3' );", ext(), ref(), Quoted{text}));
    return {};
}

FunctionCallResult<bool> HTML_CustomButtonBase::disabled() const
{
    return isTrue(
        evaluate(script(u"%1Extension.isDisabled(%2);", ext(), ref()), u"Error reading enablement: %1"));
}

FunctionCallResult<void> HTML_CustomButtonBase::setDisabled(bool disabled)
{
    return run(script(u"%1Extension.setDisabled(%2, '%3' );", ext(), ref(), disabled),
        u"Error changing enablement to '%1': %2", wordOf(disabled));
}

FunctionCallResult<bool> HTML_CustomButtonBase::enabled() const
{
    FunctionCallResult<bool> result = disabled();
    if (!result.failed())
        result.value = !result.value;
    return result;
}

FunctionCallResult<void> HTML_CustomButtonBase::setEnabled(bool enabled)
{
    return setDisabled(!enabled);
}

FunctionCallResult<bool> HTML_CustomButtonBase::showText() const
{
    return isTrue(optionalAnswer(component(), script(u"%1Extension.isTextShown(%2);", ext(), ref())));
}

FunctionCallResult<void> HTML_CustomButtonBase::setShowText(bool show)
{
    optionalAnswer(component(), script(u"%1Extension.setTextShown(%2, '%3' );", ext(), ref(), show));
    return {};
}

FunctionCallResult<QString> HTML_CustomButton::value() const
{
    // Kept as is: the trace names getHasFocus, although the function is getValue; logs are searched for it.
    return definedText(optionalAnswer(component(), script(u"%1Extension.getValue(%2);", ext(), ref()),
        u"Ignoring error from optional API Extension.getHasFocus: %1"));
}

FunctionCallResult<void> HTML_CustomButton::setValue(const QString &value)
{
    optionalAnswer(component(), script(u"%1Extension.setValue(%2, '%3' );", ext(), ref(), Quoted{value}),
        u"Ignoring error from optional API Extension.setValue: %1");
    return {};
}

FunctionCallResult<bool> HTML_CustomCheckbox::checked() const
{
    return isTrue(evaluate(
        script(u"%1Extension.isChecked(%2);", ext(), ref()), u"Error retrieving checked property: %1"));
}

FunctionCallResult<void> HTML_CustomCheckbox::setChecked(bool checked)
{
    return run(script(u"%1Extension.setChecked(%2, '%3' );", ext(), ref(), checked),
        u"Error setting checked property: %1");
}

FunctionCallResult<bool> HTML_CustomRadioButton::selected() const
{
    return isTrue(evaluate(
        script(u"%1Extension.isSelected(%2);", ext(), ref()), u"Error retrieving selected property: %1"));
}

FunctionCallResult<void> HTML_CustomRadioButton::setSelected(bool selected)
{
    return run(script(u"%1Extension.setSelected(%2, '%3' );", ext(), ref(), selected),
        u"Error setting selected property: %1");
}

// Lists

FunctionCallResult<QString> HTML_CustomComboBox::selectedOption() const
{
    return evaluate(
        script(u"%1Extension.getSelectedOption(%2);", ext(), ref()), u"Failed to read selected option: %1");
}

FunctionCallResult<void> HTML_CustomComboBox::setSelectedOption(const QString &option)
{
    return run(script(u"%1Extension.setSelectedOption(%2,'%3');", ext(), ref(), QuotedLine{option}),
        u"Failed to select option text '%1': %2", option);
}

FunctionCallResult<bool> HTML_CustomComboBox::hasOption(const QString &option) const
{
    return isTrueInAnyCase(
        evaluate(script(u"%1Extension.hasOption(%2,'%3');", ext(), ref(), QuotedLine{option}),
            u"Failed to check for options '%1': %2", option));
}

FunctionCallResult<QString> HTML_CustomComboBox::label() const
{
    return getLabelFromExtension(component(), jsReference(), extension());
}

FunctionCallResult<QString> HTML_CustomSelectList::selectedOptions() const
{
    return evaluate(script(u"%1Extension.getSelectedOptions(%2);", ext(), ref()),
        u"Error while reading selected option: %1");
}

FunctionCallResult<void> HTML_CustomSelectList::setSelectedOptions(const QString &options)
{
    return run(script(u"%1Extension.setSelectedOptions(%2,'%3');", ext(), ref(), QuotedLine{options}),
        u"Error while setting selected option text '%1': %2", options);
}

FunctionCallResult<bool> HTML_CustomSelectList::hasOptions(const QString &options) const
{
    return isTrueInAnyCase(
        evaluate(script(u"%1Extension.hasOptions(%2,'%3');", ext(), ref(), QuotedLine{options}),
            u"Error while checking for options '%1': %2", options));
}

FunctionCallResult<QString> HTML_CustomSelectList::label() const
{
    return getLabelFromExtension(component(), jsReference(), extension());
}

// Text fields

FunctionCallResult<bool> HTML_CustomText::hasFocus() const
{
    return isTrue(optionalAnswer(component(), script(u"%1Extension.getHasFocus(%2);", ext(), ref()),
        u"Ignoring error from optional API Extension.getHasFocus: %1"));
}

FunctionCallResult<bool> HTML_CustomText::disabled() const
{
    return isTrue(optionalAnswer(component(), script(u"%1Extension.isDisabled(%2);", ext(), ref())));
}

FunctionCallResult<void> HTML_CustomText::setDisabled(bool disabled)
{
    optionalAnswer(component(), script(u"%1Extension.setDisabled(%2, '%3' );", ext(), ref(), disabled));
    return {};
}

FunctionCallResult<void> HTML_CustomText::focus()
{
    return run(script(u"%1Extension.setFocus(%2);", ext(), ref()), u"Error while focussing text field: %1");
}

FunctionCallResult<QString> HTML_CustomText::value() const
{
    return cleaned(evaluate(script(u"%1Extension.getValue(%2);", ext(), ref()),
        u"Error while obtaining value of text field: %1"));
}

FunctionCallResult<void> HTML_CustomText::setValue(const QString &value)
{
    const FunctionCallResult<bool> takesFile = isFileUploadField();
    if (takesFile.failed()) {
        return Failure(message(u"Error while determining type of text field, cannot set value '%1': %2",
            value, takesFile.error));
    }
    if (takesFile.value) {
        // Kept as is: what the bridge says of the file is dropped; scripts go on after a file field.
        (void)component()->setCustomFileInputValue(this, value);
        return {};
    }
    return run(script(u"%1Extension.setValue(%2, '%3' );", ext(), ref(), Quoted{value}),
        u"Error while setting value '%1' on text field: %2", value);
}

FunctionCallResult<bool> HTML_CustomText::isFileUploadField() const
{
    return isTrue(evaluate(script(u"%1Extension.isFileUploadField(%2);", ext(), ref()),
        u"Error while obtaining type of text field: %1"));
}

FunctionCallResult<QString> HTML_CustomText::label() const
{
    return getLabelFromExtension(component(), jsReference(), extension());
}

// Colour fields, section headers and progress bars. States go out as bare booleans, unlike those of buttons.

FunctionCallResult<bool> HTML_ColorField::isEnabled() const
{
    return isTrue(
        evaluate(script(u"%1Extension.isEnabled(%2);", ext(), ref()), u"Error checking enablement: %1"));
}

FunctionCallResult<void> HTML_ColorField::setEnabled(bool enabled)
{
    return run(script(u"%1Extension.setEnabled(%2, %3);", ext(), ref(), enabled),
        u"Error changing enablement to '%1': %2", wordOf(enabled));
}

FunctionCallResult<QString> HTML_ColorField::fieldName() const
{
    return cleaned(
        evaluate(script(u"%1Extension.getFieldName(%2);", ext(), ref()), u"Error reading field name: %1"));
}

FunctionCallResult<QString> HTML_ColorField::rgbColor() const
{
    return definedText(
        evaluate(script(u"%1Extension.getRgbColor(%2);", ext(), ref()), u"Error reading color value: %1"));
}

FunctionCallResult<void> HTML_ColorField::setRgbColor(const QString &color)
{
    return run(script(u"%1Extension.setRgbColor(%2, '%3');", ext(), ref(), Expr{color}),
        u"Error setting color '%1': %2", color);
}

FunctionCallResult<void> HTML_ExpandableSectionHeader::click(int modifier, int x, int y, int button)
{
    return runAndWait(deferred(script(u"%1Extension.click(%2, %3, %4, %5, %6);", ext(), ref(),
                          modifierKeys(modifier), x, y, pressedButton(modifier, button))),
        u"Error clicking expandable section: %1");
}

FunctionCallResult<bool> HTML_ExpandableSectionHeader::isEnabled() const
{
    return isTrue(
        evaluate(script(u"%1Extension.isEnabled(%2);", ext(), ref()), u"Error fetching enabled state: %1"));
}

FunctionCallResult<void> HTML_ExpandableSectionHeader::setEnabled(bool enabled)
{
    return run(script(u"%1Extension.setEnabled(%2, %3);", ext(), ref(), enabled),
        u"Error setting enabled state to %1: %2", wordOf(enabled));
}

FunctionCallResult<bool> HTML_ExpandableSectionHeader::isExpanded() const
{
    return isTrue(
        evaluate(script(u"%1Extension.isExpanded(%2);", ext(), ref()), u"Error fetching expanded state: %1"));
}

FunctionCallResult<void> HTML_ExpandableSectionHeader::setExpanded(bool expanded)
{
    return run(script(u"%1Extension.setExpanded(%2, %3);", ext(), ref(), expanded),
        u"Error setting expanded state to %1: %2", wordOf(expanded));
}

FunctionCallResult<QString> HTML_ExpandableSectionHeader::title() const
{
    return cleaned(
        evaluate(script(u"%1Extension.getTitle(%2);", ext(), ref()), u"Error fetching title value: %1"));
}

FunctionCallResult<void> HTML_ExpandableSectionHeader::setTitle(const QString &title)
{
    // Kept as is: the two spaces; scripts match on this text.
    return run(script(u"%1Extension.setTitle(%2, '%3');", ext(), ref(), Expr{title}),
        u"Error setting title to  '%1': %2", title);
}

FunctionCallResult<int> HTML_ProgressBar::minimum() const
{
    return toNumber(
        evaluate(script(u"%1Extension.getMinimum(%2);", ext(), ref()), u"Error while fetching minimum: %1"),
        u"Error: cannot convert '%1' into minimum number");
}

FunctionCallResult<int> HTML_ProgressBar::maximum() const
{
    return toNumber(
        evaluate(script(u"%1Extension.getMaximum(%2);", ext(), ref()), u"Error while fetching maximum: %1"),
        u"Error: cannot convert '%1' into maximum number");
}

FunctionCallResult<int> HTML_ProgressBar::value() const
{
    return toNumber(
        evaluate(script(u"%1Extension.getValue(%2);", ext(), ref()), u"Error while fetching value: %1"),
        u"Error: cannot convert '%1' into value number");
}

FunctionCallResult<void> HTML_ProgressBar::setValue(int value)
{
    // Kept as is: the two spaces; scripts match on this text.
    return run(script(u"%1Extension.setValue(%2, '%3');", ext(), ref(), value),
        u"Error setting value to  '%1': %2", QString::number(value));
}

} // namespace Ostrel::WebWrapper
