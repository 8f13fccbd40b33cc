// The widgets of the Backbase toolkit. The page has functions __ostrel__backbase__... for them.
#pragma once

#include "wrappers/web/formelements.h"

namespace Ostrel::WebWrapper {

/// Buttons, tabs, tree leaves and the like: whatever is only clicked.
class PAGEPROBELIB_EXPORT HTML_BackBaseButton : public HTML_ButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseButton";

    using HTML_ButtonBase::HTML_ButtonBase;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_BackBaseComboBox : public HTML_Select
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseComboBox";

    using HTML_Select::HTML_Select;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<void> setSelectedIndex(int index) override;
    FunctionCallResult<int> selectedIndex() const override;
    FunctionCallResult<void> setSelectedOption(const QString &text) override;
    FunctionCallResult<QString> selectedOption() const override;

    FunctionCallResult<int> numOptions() const;
    /// The option's text. Shadows the operation of plain selects, which gives an object.
    FunctionCallResult<QString> optionAt(int index) const;
};

class PAGEPROBELIB_EXPORT HTML_BackBaseSpinner : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseSpinner";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<void> focus() override;

    FunctionCallResult<int> startValue() const;
    FunctionCallResult<int> endValue() const;
    FunctionCallResult<int> step() const;
    /// Whether the end is followed by the start.
    FunctionCallResult<bool> isLooping() const;
    FunctionCallResult<int> value() const;
    FunctionCallResult<void> setValue(int value);
};

/// Rows and columns count from 0. The text of an item goes into the script as it stands, so that a quote in
/// it makes the page report an error.
class PAGEPROBELIB_EXPORT HTML_BackBaseListView : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseListView";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<int> numRows() const;
    FunctionCallResult<int> numColumns() const;
    FunctionCallResult<QString> caption(int column) const;
    FunctionCallResult<QString> itemText(int row, int column) const;
    /// A plain click, whatever the modifier says.
    FunctionCallResult<void> clickItem(const QString &item, int modifier);
    FunctionCallResult<bool> hasItem(const QString &item) const;
    FunctionCallResult<bool> isSelected(const QString &item) const;
};

} // namespace Ostrel::WebWrapper
