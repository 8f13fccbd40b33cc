// The wrappers of plain HTML: forms and their fields, links, images, documents and shadow roots.
#pragma once

#include "wrappers/web/webobject.h"

#include <QList>

#include <string>
#include <vector>

namespace Ostrel::WebWrapper {

class HTML_Array;
class HTML_Option;

/// What can stand in a form.
class PAGEPROBELIB_EXPORT HTML_FormElement : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_FormElement";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    virtual FunctionCallResult<bool> disabled() const;
    virtual FunctionCallResult<void> setDisabled(bool disabled);
    virtual FunctionCallResult<void> focus();

    /// The element's type, such as "checkbox".
    FunctionCallResult<QString> type() const;
};

class PAGEPROBELIB_EXPORT HTML_ButtonBase : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_ButtonBase";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;

    FunctionCallResult<QString> value() const;
    FunctionCallResult<void> setValue(const char *text);
};

class PAGEPROBELIB_EXPORT HTML_Button : public HTML_ButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_Button";

    using HTML_ButtonBase::HTML_ButtonBase;
    const char *className() const override { return ScriptName; }

    /// Clicks the button; what that does is the page's matter.
    FunctionCallResult<void> submit();
};

class PAGEPROBELIB_EXPORT HTML_ImageButton : public HTML_ButtonBase
{
public:
    static constexpr char ScriptName[] = "HTML_ImageButton";

    using HTML_ButtonBase::HTML_ButtonBase;
    const char *className() const override { return ScriptName; }
};

/// Check boxes and radio buttons: a click focuses first and reports the change to the page afterwards.
class PAGEPROBELIB_EXPORT CheckableButton : public HTML_ButtonBase
{
public:
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;

    FunctionCallResult<bool> checked() const;
    /// Sets the state and tells the page that it changed.
    FunctionCallResult<void> setChecked(bool checked);

    using HTML_ButtonBase::HTML_ButtonBase;
};

class PAGEPROBELIB_EXPORT HTML_CheckBox : public CheckableButton
{
public:
    static constexpr char ScriptName[] = "HTML_CheckBox";

    using CheckableButton::CheckableButton;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_RadioButton : public CheckableButton
{
public:
    static constexpr char ScriptName[] = "HTML_RadioButton";

    using CheckableButton::CheckableButton;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_TextBase : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_TextBase";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> value() const;
    /// Focuses, clicks and fills the field; "<Return>" presses Return in it. File fields take a path.
    FunctionCallResult<void> setValue(const QString &value);
    FunctionCallResult<void> selectAll();
    FunctionCallResult<QString> selectedText() const;
};

class PAGEPROBELIB_EXPORT HTML_Text : public HTML_TextBase
{
public:
    static constexpr char ScriptName[] = "HTML_Text";

    using HTML_TextBase::HTML_TextBase;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_TextArea : public HTML_TextBase
{
public:
    static constexpr char ScriptName[] = "HTML_TextArea";

    using HTML_TextBase::HTML_TextBase;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_Select : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_Select";

    HTML_Select(const QString &name, const QString &reference, bool multiple, HTMLComponent *component);
    const char *className() const override { return ScriptName; }

    virtual FunctionCallResult<void> setSelectedIndex(int index);
    virtual FunctionCallResult<int> selectedIndex() const;
    virtual FunctionCallResult<void> setSelectedOption(const QString &text);
    virtual FunctionCallResult<QString> selectedOption() const;

    /// Owned by the caller; the page is not asked.
    FunctionCallResult<HTML_Array *> options() const;
    FunctionCallResult<HTML_Object *> optionAt(int index) const;
    FunctionCallResult<bool> isMulti() const;

    FunctionCallResult<std::vector<int>> selectedIndexes() const;
    FunctionCallResult<std::vector<std::string>> selectedValues() const;
    FunctionCallResult<std::vector<std::string>> selectedTexts() const;
    FunctionCallResult<std::vector<std::string>> selectedLabels() const;

    /// Select exactly these options; an error and no change when one of them does not exist.
    FunctionCallResult<void> setSelectedOptionsByText(const QList<QString> &texts);
    FunctionCallResult<void> setSelectedOptionsByValue(const QList<QString> &values);
    FunctionCallResult<void> setSelectedOptionByValue(const QString &value);
    FunctionCallResult<void> setSelectedOptionsByIndexes(const QList<int> &indexes);

    FunctionCallResult<void> deselectByTexts(const QList<QString> &texts);
    FunctionCallResult<void> deselectByValues(const QList<QString> &values);
    FunctionCallResult<void> deselectByIndexes(const QList<int> &indexes);

private:
    FunctionCallResult<void> selectOptions(const QList<QString> &items, const QString &keyFunction);
    FunctionCallResult<void> deselect(
        const QString &keyFunction, const QStringList &literals, const QStringList &items);

    bool m_multiple;
};

class PAGEPROBELIB_EXPORT HTML_Option : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Option";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> text() const;
    FunctionCallResult<void> setText(const char *text);
    FunctionCallResult<QString> value() const;
    FunctionCallResult<void> setValue(const char *value);
    FunctionCallResult<bool> selected() const;
    FunctionCallResult<bool> defaultSelected() const;
    FunctionCallResult<int> index() const;
};

class PAGEPROBELIB_EXPORT HTML_Form : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Form";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> submit();
};

class PAGEPROBELIB_EXPORT HTML_Anchor : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Anchor";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }
    /// A plain click on the link, whatever the arguments say.
    FunctionCallResult<void> click(int modifier, int x, int y, int button) override;
};

class PAGEPROBELIB_EXPORT HTML_Image : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Image";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_Document : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Document";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    /// Owned by the caller; null and no error when there is none. The id goes into the script as it stands.
    FunctionCallResult<HTML_Object *> getElementById(const char *id) const;
    FunctionCallResult<HTML_Array *> getElementsByTagName(const char *tagName) const;
};

class PAGEPROBELIB_EXPORT HTML_ShadowRoot : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_ShadowRoot";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }
};

} // namespace Ostrel::WebWrapper
