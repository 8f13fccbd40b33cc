// Controls that a page extension operates: buttons, fields, colour fields, section headers and progress bars.
// Their operations do nothing but forward to the extension object.
#pragma once

#include "wrappers/web/controls/extensionbacked.h"
#include "wrappers/web/formelements.h"

namespace Ostrel::WebWrapper {

/// What all buttons of extensions share.
class PAGEPROBELIB_EXPORT HTML_CustomButtonBase : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomButtonBase";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<bool> visible() const override;
    /// Hands the click to the extension at once and does not wait: the extension decides how it happens.
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;

    FunctionCallResult<QString> text() const;
    FunctionCallResult<void> setText(const QString &text);

    /// Tooltips are optional for an extension: failures give an empty text and no error.
    FunctionCallResult<QString> tooltip() const;
    FunctionCallResult<void> setTooltip(const QString &text);

    FunctionCallResult<bool> disabled() const;
    FunctionCallResult<void> setDisabled(bool disabled);
    FunctionCallResult<bool> enabled() const;
    FunctionCallResult<void> setEnabled(bool enabled);

    /// Whether the text stands on the button. Optional for an extension: failures give false and no error.
    FunctionCallResult<bool> showText() const;
    FunctionCallResult<void> setShowText(bool show);
};

class PAGEPROBELIB_EXPORT HTML_CustomButton : public HTML_CustomButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_CustomButton";

    using HTML_CustomButtonBase::HTML_CustomButtonBase;
    const char *className() const override { return ScriptName; }

    /// Values are optional for an extension: failures are traced and give an empty text and no error.
    FunctionCallResult<QString> value() const;
    FunctionCallResult<void> setValue(const QString &value);
};

class PAGEPROBELIB_EXPORT HTML_CustomCheckbox : public HTML_CustomButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_CustomCheckbox";

    using HTML_CustomButtonBase::HTML_CustomButtonBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<bool> checked() const;
    FunctionCallResult<void> setChecked(bool checked);
};

class PAGEPROBELIB_EXPORT HTML_CustomRadioButton : public HTML_CustomButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_CustomRadioButton";

    using HTML_CustomButtonBase::HTML_CustomButtonBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<bool> selected() const;
    FunctionCallResult<void> setSelected(bool selected);
};

class PAGEPROBELIB_EXPORT HTML_CustomComboBox : public ExtensionBacked<HTML_FormElement>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomComboBox";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> selectedOption() const;
    FunctionCallResult<void> setSelectedOption(const QString &option);
    FunctionCallResult<bool> hasOption(const QString &option) const;
    /// Labels are optional for an extension: a failure is traced and gives an empty text and no error.
    FunctionCallResult<QString> label() const;
};

/// A list in which several options can be selected. Several options are one text, in the extension's own
/// form.
class PAGEPROBELIB_EXPORT HTML_CustomSelectList : public ExtensionBacked<HTML_FormElement>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomSelectList";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> selectedOptions() const;
    FunctionCallResult<void> setSelectedOptions(const QString &options);
    FunctionCallResult<bool> hasOptions(const QString &options) const;
    /// Optional, as for combo boxes.
    FunctionCallResult<QString> label() const;
};

class PAGEPROBELIB_EXPORT HTML_CustomText : public ExtensionBacked<HTML_FormElement>
{
public:
    static constexpr char ScriptName[] = "HTML_CustomText";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    /// Optional for an extension: a failure is traced and gives false and no error.
    FunctionCallResult<bool> hasFocus() const override;
    /// Optional for an extension: failures give false and no error.
    FunctionCallResult<bool> disabled() const override;
    FunctionCallResult<void> setDisabled(bool disabled) override;
    FunctionCallResult<void> focus() override;

    FunctionCallResult<QString> value() const;
    /// Fills the field. A file upload field takes the path of a file, and reports success whatever becomes of
    /// it.
    FunctionCallResult<void> setValue(const QString &value);
    FunctionCallResult<bool> isFileUploadField() const;
    /// Optional, as for combo boxes.
    FunctionCallResult<QString> label() const;
};

class PAGEPROBELIB_EXPORT HTML_ColorField : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_ColorField";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<bool> isEnabled() const;
    FunctionCallResult<void> setEnabled(bool enabled);
    FunctionCallResult<QString> fieldName() const;
    FunctionCallResult<QString> rgbColor() const;
    /// The colour goes into the script as it stands: a quote in it makes the page report an error.
    FunctionCallResult<void> setRgbColor(const QString &color);
};

class PAGEPROBELIB_EXPORT HTML_ExpandableSectionHeader : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_ExpandableSectionHeader";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }
    /// The extension gets the click 100 ms later; the call returns after 200 ms.
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;

    FunctionCallResult<bool> isEnabled() const;
    FunctionCallResult<void> setEnabled(bool enabled);
    FunctionCallResult<bool> isExpanded() const;
    FunctionCallResult<void> setExpanded(bool expanded);
    FunctionCallResult<QString> title() const;
    /// The title goes into the script as it stands: a quote in it makes the page report an error.
    FunctionCallResult<void> setTitle(const QString &title);
};

class PAGEPROBELIB_EXPORT HTML_ProgressBar : public ExtensionBacked<HTML_Object>
{
public:
    static constexpr char ScriptName[] = "HTML_ProgressBar";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> minimum() const;
    FunctionCallResult<int> maximum() const;
    FunctionCallResult<int> value() const;
    FunctionCallResult<void> setValue(int value);
};

} // namespace Ostrel::WebWrapper
