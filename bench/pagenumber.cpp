#include "pagenumber.h"

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

FunctionCallResult<double> pageNumber(const BrowserPage &page, const QString &script)
{
    const BrowserPage::EvalResult answer = page.evaluateJavaScript(script, 0);
    bool isNumber = false;
    const double number = answer.result.toDouble(&isNumber);
    if (answer.failed || !isNumber)
        return Failure(u"'%1' gave: %2"_s.arg(script, answer.result));
    return number;
}

} // namespace Ostrel::Bench
