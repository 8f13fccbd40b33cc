#include "wrappers/web/toolkits/qooxdoo.h"

#include "wrappers/web/controls/extensioncall.h"

namespace Ostrel::WebWrapper {

namespace {

FunctionCallResult<void> withoutValue(const FunctionCallResult<QString> &answer)
{
    if (answer.failed())
        return Failure(answer.error);
    return {};
}

} // namespace

FunctionCallResult<QString> HTML_QxWidget::qxClassName() const
{
    return property("classname");
}

FunctionCallResult<QString> HTML_QxWidget::qxLabel()
{
    return invoke("getLabel");
}

FunctionCallResult<QString> HTML_QxWidget::qxCaption()
{
    return invoke("getCaption");
}

FunctionCallResult<QString> HTML_QxWidget::qxName()
{
    return invoke("getName");
}

FunctionCallResult<bool> HTML_QxWidget::qxSelected()
{
    return isTrueInAnyCase(invoke("getSelected"));
}

FunctionCallResult<void> HTML_QxWidget::qxSetSelected(bool selected)
{
    return withoutValue(invoke("setSelected", selected ? "true" : "false"));
}

FunctionCallResult<bool> HTML_QxWidget::qxChecked()
{
    return isTrueInAnyCase(invoke("getChecked"));
}

FunctionCallResult<void> HTML_QxWidget::qxSetChecked(bool checked)
{
    return withoutValue(invoke("setChecked", checked ? "true" : "false"));
}

FunctionCallResult<int> HTML_QxWidget::qxChildrenLength()
{
    return toNumber(invoke("getChildrenLength"), u"Error: cannot convert '%1' to length number");
}

FunctionCallResult<HTML_Array *> HTML_QxWidget::qxChildren() const
{
    return new HTML_Array({}, script(u"%1.getChildren()", ref()), component());
}

FunctionCallResult<HTML_QxWidget *> HTML_QxWidget::qxChild(int index) const
{
    return as<HTML_QxWidget>(objectFrom(script(u"%1.getChildren()[%2];", ref(), index),
        u"Error getting qxChild %1: %2", QString::number(index)));
}

FunctionCallResult<HTML_QxWidget *> HTML_QxWidget::qxParent() const
{
    return as<HTML_QxWidget>(objectFrom(script(u"%1.getParent();", ref()), u"Error getting qxParent: %1"));
}

FunctionCallResult<HTML_QxWidgetElement *> HTML_QxWidget::qxElement() const
{
    return as<HTML_QxWidgetElement>(
        objectFrom(script(u"%1.getElement();", ref()), u"Error getting qxElement: %1"));
}

FunctionCallResult<HTML_QxWidget *> HTML_QxWidgetElement::qxWidget() const
{
    return as<HTML_QxWidget>(objectFrom(script(u"%1.qx_Widget;", ref()), u"Error getting qxWidget: %1"));
}

} // namespace Ostrel::WebWrapper
