// HTML_TreeBase: what the trees of all toolkits have in common.
#pragma once

#include "wrappers/web/formelements.h"

namespace Ostrel::WebWrapper {

/// A tree whose items are named by their text. The text goes into the script as it stands, so that a quote in
/// it makes the page report an error. A click on an item that does not exist is a success that does nothing.
class PAGEPROBELIB_EXPORT HTML_TreeBase : public HTML_FormElement
{
public:
    static constexpr char ScriptName[] = "HTML_TreeBase";

    using HTML_FormElement::HTML_FormElement;
    const char *className() const override { return ScriptName; }

    // Virtual operations in the order that derived classes rely on.
    /// Clicks what expands or collapses the item.
    virtual FunctionCallResult<void> clickHandle(const QString &item) = 0;
    /// `modifier` is a sum of ModifierState values, here and below.
    virtual FunctionCallResult<void> clickItem(const QString &item, int modifier);
    /// Fails unless the toolkit's tree knows double clicks.
    virtual FunctionCallResult<void> doubleClickItem(const QString &item, int modifier);
    virtual FunctionCallResult<bool> hasItem(const QString &item) const;
    virtual FunctionCallResult<bool> isSelected(const QString &item) const = 0;
    virtual FunctionCallResult<bool> isOpen(const QString &item) const = 0;

protected:
    /// Script that leaves the item's node in __ostrel__node; something falsy when there is no such item.
    virtual QString findItem(const QString &item) const = 0;
};

} // namespace Ostrel::WebWrapper
