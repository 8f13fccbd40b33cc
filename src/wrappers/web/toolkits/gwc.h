// The widgets of the GWC toolkit. The page has functions __ostrel__gwc__... that click their items.
//
// The text of an item goes into the script as it stands, so that a quote in it makes the page report an
// error. Clicks are plain ones, whatever the modifier says.
#pragma once

#include "wrappers/web/formelements.h"

namespace Ostrel::WebWrapper {

class PAGEPROBELIB_EXPORT HTML_GWCFormFieldBox : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_GWCFormFieldBox";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> clickItem(const QString &item, int modifier);
};

class PAGEPROBELIB_EXPORT HTML_GWCTable : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_GWCTable";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> clickItem(const QString &item, int modifier);
};

} // namespace Ostrel::WebWrapper
