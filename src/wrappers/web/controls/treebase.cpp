#include "wrappers/web/controls/treebase.h"

#include "wrappers/web/controls/extensioncall.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

FunctionCallResult<void> HTML_TreeBase::clickItem(const QString &item, int modifier)
{
    return runAndWait(script(u"%1if (__ostrel__node) {%2}", Expr{findItem(item)},
                          Expr{clickOn("__ostrel__node", modifier, 0, 0, 1)}),
        u"Error clicking item '%1': %2", item);
}

FunctionCallResult<void> HTML_TreeBase::doubleClickItem(const QString &, int)
{
    return Failure(u"Not implemented"_s);
}

FunctionCallResult<bool> HTML_TreeBase::hasItem(const QString &item) const
{
    return isTrue(evaluate(script(u"%1!!__ostrel__node;", Expr{findItem(item)}),
        u"Error checking if item '%1' exists: %2", item));
}

} // namespace Ostrel::WebWrapper
