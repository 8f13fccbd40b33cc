// The widgets of the qooxdoo toolkit.
#pragma once

#include "wrappers/web/htmlarray.h"

namespace Ostrel::WebWrapper {

class HTML_QxWidgetElement;

/// A widget. Its reference is the widget object of the toolkit, not an element: operations call the widget's
/// methods. Widgets that an operation gives are owned by the caller; null where the page has no widget there.
class PAGEPROBELIB_EXPORT HTML_QxWidget : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_QxWidget";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    /// The name of the widget's class.
    FunctionCallResult<QString> qxClassName() const;
    FunctionCallResult<QString> qxLabel();
    FunctionCallResult<QString> qxCaption();
    FunctionCallResult<QString> qxName();
    FunctionCallResult<bool> qxSelected();
    FunctionCallResult<void> qxSetSelected(bool selected);
    FunctionCallResult<bool> qxChecked();
    FunctionCallResult<void> qxSetChecked(bool checked);

    FunctionCallResult<int> qxChildrenLength();
    /// Owned by the caller; the page is not asked.
    FunctionCallResult<HTML_Array *> qxChildren() const;
    FunctionCallResult<HTML_QxWidget *> qxChild(int index) const;
    FunctionCallResult<HTML_QxWidget *> qxParent() const;
    /// The element that shows the widget.
    FunctionCallResult<HTML_QxWidgetElement *> qxElement() const;
};

/// An element that shows a widget.
class PAGEPROBELIB_EXPORT HTML_QxWidgetElement : public HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_QxWidgetElement";

    using HTML_Object::HTML_Object;
    const char *className() const override { return ScriptName; }

    /// Owned by the caller; null where the element shows none.
    FunctionCallResult<HTML_QxWidget *> qxWidget() const;
};

} // namespace Ostrel::WebWrapper
