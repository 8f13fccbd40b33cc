// The widgets of the Dojo toolkit. The page has functions __ostrel__dojo__... that find their items.
#pragma once

#include "wrappers/web/controls/treebase.h"

namespace Ostrel::WebWrapper {

class PAGEPROBELIB_EXPORT HTML_DojoTree : public HTML_TreeBase
{
public:
    static constexpr char ScriptName[] = "HTML_DojoTree";

    using HTML_TreeBase::HTML_TreeBase;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<void> clickHandle(const QString &item) override;
    FunctionCallResult<void> doubleClickItem(const QString &item, int modifier) override;
    /// The page is not asked: always false and no error, here and below.
    FunctionCallResult<bool> isSelected(const QString &item) const override;
    FunctionCallResult<bool> isOpen(const QString &item) const override;

protected:
    QString findItem(const QString &item) const override;
};

class PAGEPROBELIB_EXPORT HTML_DojoSplitPane : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_DojoSplitPane";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    /// The text goes into the script as it stands, so that a quote in it makes the page report an error. A
    /// click on an item that does not exist is a success that does nothing.
    FunctionCallResult<void> clickItem(const QString &item, int modifier);
};

} // namespace Ostrel::WebWrapper
