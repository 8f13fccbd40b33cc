#include "wrappers/web/pagevalues.h"

#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"

#include <cmath>

namespace Ostrel::WebWrapper {

HTML_Style::HTML_Style(const QString &reference, HTMLComponent *component) : PageValue(reference, component)
{
    LiveObjects::self().styles.insert(this);
}

HTML_Style::~HTML_Style()
{
    LiveObjects::self().styles.remove(this);
}

FunctionCallResult<QString> HTML_Style::value(const char *name) const
{
    const HTMLComponent::EvalResult answer = component()->evaluateJavaScript(
        script(u"%1.styleProperty('%2');", Expr{reference()}, Quoted{QString::fromUtf8(name)}), 0);
    if (answer.failed || answer.threw)
        return Failure(answer.result);
    return answer.result;
}

HTML_XPathResult::HTML_XPathResult(const QString &reference, HTMLComponent *component)
    : PageValue(reference, component)
{
    LiveObjects::self().xpathResults.insert(this);
}

HTML_XPathResult::~HTML_XPathResult()
{
    LiveObjects::self().xpathResults.remove(this);
}

FunctionCallResult<QString> HTML_XPathResult::read(const QString &script, QStringView error) const
{
    const HTMLComponent::EvalResult answer = component()->evaluateJavaScript(script, 0);
    if (answer.failed || answer.threw)
        return Failure(message(error, reference(), answer.result));
    return answer.result;
}

FunctionCallResult<bool> HTML_XPathResult::booleanValue() const
{
    const FunctionCallResult<QString> text = read(script(u"%1.booleanValue()", Expr{reference()}),
        u"Error obtaining boolean value of xpath resultset %1: %2");
    if (text.failed())
        return Failure(text.error);
    return text.value == QLatin1StringView("true");
}

FunctionCallResult<double> HTML_XPathResult::numberValue() const
{
    const FunctionCallResult<QString> text = read(script(u"%1.numberValue()", Expr{reference()}),
        u"Error obtaining number value of xpath resultset %1: %2");
    if (text.failed())
        return Failure(text.error);
    bool ok = false;
    const double number = text.value.toDouble(&ok);
    // A text that is no number comes as "NaN", which the conversion would take for one.
    if (!ok || std::isnan(number)) {
        return Failure(
            message(u"Error converting number value of xpath resultset %1 to double, received value is '%2'",
                reference(), text.value));
    }
    return number;
}

FunctionCallResult<QString> HTML_XPathResult::stringValue() const
{
    return read(script(u"%1.stringValue()", Expr{reference()}),
        u"Error obtaining string value of xpath resultset %1: %2");
}

FunctionCallResult<int> HTML_XPathResult::snapshotLength() const
{
    const FunctionCallResult<QString> text
        = read(script(u"__ostrel__xpath__snapshotLength(%1);", Expr{reference()}),
            u"Error obtaining snapshot length of xpath resultset %1: %2");
    if (text.failed())
        return Failure(text.error);
    bool ok = false;
    const int length = text.value.toInt(&ok);
    if (!ok) {
        return Failure(message(
            u"Error converting snapshot length of xpath resultset %1 to integer, received value is '%2'",
            reference(), text.value));
    }
    return length;
}

FunctionCallResult<HTML_Object *> HTML_XPathResult::snapshotItem(int index) const
{
    FunctionCallResult<HTML_Object *> item = htmlObjectFromJavaScriptResult(
        component(), script(u"__ostrel__xpath__snapshotItem(%1, %2);", Expr{reference()}, index), {}, 0);
    if (item.failed()) {
        return Failure(message(u"Error obtaining snapshot item %1 from xpath result %2: %3",
            QString::number(index), reference(), item.error));
    }
    return item;
}

FunctionCallResult<HTML_Object *> HTML_XPathResult::singleNodeValue() const
{
    return snapshotItem(0);
}

} // namespace Ostrel::WebWrapper
