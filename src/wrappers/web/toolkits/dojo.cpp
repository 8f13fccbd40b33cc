#include "wrappers/web/toolkits/dojo.h"

#include "wrappers/web/scripttext.h"

namespace Ostrel::WebWrapper {

QString HTML_DojoTree::findItem(const QString &item) const
{
    return script(u"var __ostrel__node = __ostrel__dojo__findTreeItem(%1, '%2');", ref(), Expr{item});
}

FunctionCallResult<void> HTML_DojoTree::clickHandle(const QString &item)
{
    return runAndWait(
        script(u"%1if (__ostrel__node) {var div = __ostrel__node.parentNode.previousSibling;%2}",
            Expr{findItem(item)}, Expr{clickOn("div", 0, 0, 0, 1)}),
        u"Error clicking handle of item '%1': %2", item);
}

FunctionCallResult<void> HTML_DojoTree::doubleClickItem(const QString &item, int modifier)
{
    return runAndWait(script(u"%1if (__ostrel__node) {%2}", Expr{findItem(item)},
                          Expr{dblClickOn("__ostrel__node", modifier, 0, 0)}),
        u"Error double clicking item '%1': %2", item);
}

FunctionCallResult<bool> HTML_DojoTree::isSelected(const QString &) const
{
    return false;
}

FunctionCallResult<bool> HTML_DojoTree::isOpen(const QString &) const
{
    return false;
}

FunctionCallResult<void> HTML_DojoSplitPane::clickItem(const QString &item, int modifier)
{
    return runAndWait(script(u"var __ostrel__node = __ostrel__dojo__findSplitPaneItem(%1, '%2');"
                             "if (__ostrel__node) {%3}",
                          ref(), Expr{item}, Expr{clickOn("__ostrel__node", modifier, 0, 0, 1)}),
        u"Error while clicking on item '%1' with modifier '%2': %3", item, QString::number(modifier));
}

} // namespace Ostrel::WebWrapper
