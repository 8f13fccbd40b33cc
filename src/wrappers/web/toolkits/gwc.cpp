#include "wrappers/web/toolkits/gwc.h"

#include "wrappers/web/scripttext.h"

namespace Ostrel::WebWrapper {

FunctionCallResult<void> HTML_GWCFormFieldBox::clickItem(const QString &item, int)
{
    return run(script(u"__ostrel__gwc__ffb__clickItem(%1, '%2');", ref(), Expr{item}),
        u"Error while clicking on item '%1': %2", item);
}

FunctionCallResult<void> HTML_GWCTable::clickItem(const QString &item, int)
{
    return run(script(u"__ostrel__gwc__tbl__clickItem(%1, '%2');", ref(), Expr{item}),
        u"Error while clicking on item '%1': %2", item);
}

} // namespace Ostrel::WebWrapper
