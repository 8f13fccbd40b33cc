// The widgets of single toolkits.
#pragma once

#include "wrappers/web/controls/kiwi.h"

namespace Ostrel::WebWrapper {

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
};

class PAGEPROBELIB_EXPORT HTML_BackBaseSpinner : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseSpinner";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_BackBaseListView : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_BackBaseListView";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_DojoTree : public HTML_TreeBase
{
public:
    static constexpr char ScriptName[] = "HTML_DojoTree";

    using HTML_TreeBase::HTML_TreeBase;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_DojoSplitPane : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_DojoSplitPane";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_GWCFormFieldBox : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_GWCFormFieldBox";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_GWCTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_GWCTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_QxWidget : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_QxWidget";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }
};

class PAGEPROBELIB_EXPORT HTML_QxWidgetElement : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_QxWidgetElement";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }
};

} // namespace Ostrel::WebWrapper
