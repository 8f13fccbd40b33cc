#include "wrappers/web/geometrydelegates.h"

#include "wrappers/web/diagnostics.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

WebObjectGeometryDelegate::WebObjectGeometryDelegate() : GeometryDelegate(u"HTML_Object"_s) { }

Rect<2> WebObjectGeometryDelegate::globalBounds(SharedPtr<Object> object) const
{
    if (!object)
        return {};
    const FunctionCallResult<QRect> rect = getScreenRect(retrieveObject(object), false);
    if (rect.failed()) {
        reportToStandardError(message(u"Error obtaining global bounds: %1", rect.error));
        return {0, 0, -1, -1, -1};
    }
    if (rect.value.isNull())
        return {};
    return {rect.value.x(), rect.value.y(), rect.value.width(), rect.value.height(), -1};
}

SharedPtr<Object> WebObjectGeometryDelegate::childAt(SharedPtr<Object>, int, int) const
{
    return {};
}

SharedPtr<Object> WebObjectGeometryDelegate::focusProxy(SharedPtr<Object> object) const
{
    return object;
}

WebObjectComparisonDelegate::WebObjectComparisonDelegate() : ComparisonDelegate(u"HTML_Object"_s) { }

bool WebObjectComparisonDelegate::compare(SharedPtr<Object> a, SharedPtr<Object> b) const
{
    return sameObjects(a, b);
}

bool WebObjectComparisonDelegate::sameObjects(SharedPtr<Object> a, SharedPtr<Object> b) const
{
    const HTML_Object *left = retrieveObject(a);
    const HTML_Object *right = retrieveObject(b);
    if (!left || !right || !left->component() || left->component() != right->component())
        return false;
    const HTMLComponent::EvalResult answer
        = left->component()->evaluateJavaScript(script(u"if( %1 === %2 ) { true; } else { false; }",
                                                    Expr{left->jsReference()}, Expr{right->jsReference()}),
            0);
    if (answer.failed || answer.threw) {
        reportToStandardError(message(u"Error comparing JS references %1 and %2: %3", left->jsReference(),
            right->jsReference(), answer.result));
        return false;
    }
    return answer.result == "true"_L1;
}

} // namespace Ostrel::WebWrapper
