#include "wrappers/web/htmlcomponent.h"

#include "wrappers/web/jsobject.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

HTMLComponent::~HTMLComponent()
{
    forgetJsObjectsOf(this);
}

FunctionCallResult<ScreenRectangle> HTMLComponent::getScreenRect(
    const HTML_Object *obj, bool makeVisible) const
{
    const FunctionCallResult<QRect> rect = WebWrapper::getScreenRect(obj, makeVisible);
    if (rect.failed())
        return Failure(rect.error);
    return ScreenRectangle{rect.value.x(), rect.value.y(), rect.value.width(), rect.value.height()};
}

bool HTMLComponent::supportsPageScreenshot() const
{
    return false;
}

FunctionCallResult<QImage> HTMLComponent::grabPageScreenshot() const
{
    return QImage();
}

FunctionCallResult<double> HTMLComponent::zoomFactor() const
{
    return 1.0;
}

HTMLComponent::EvalResult HTMLComponent::evaluateJavaScriptWithResult(const QString &script)
{
    return evaluateJavaScript(script, 0);
}

} // namespace Ostrel::WebWrapper
