#include "wrappers/web/replay.h"

#include "wrappers/web/formelements.h"
#include "wrappers/web/scripttext.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// What cannot be asked counts as visible: the action that follows then tells what is wrong.
bool seemsVisible(const HTML_Object &object)
{
    const HTMLComponent::EvalResult answer = object.component()->evaluateJavaScript(
        script(
            u" try { __ostrel__isVisible(%1); } catch( e ) { false;e.message; }", Expr{object.jsReference()}),
        0);
    return answer.failed || answer.threw || answer.result == "true"_L1;
}

} // namespace

FunctionCallResult<bool> isObjectReady(HTML_Object *object)
{
    if (!object)
        return true;
    const FunctionCallResult<QString> tagName = object->tagName();
    if (tagName.failed()) {
        return Failure(message(u"Cannot determine readyness, failed to obtain tagname: %1", tagName.error));
    }
    if (QLatin1String(object->className()) == "HTML_Document"_L1 || tagName.value == "HTML"_L1)
        return true;
    if (!seemsVisible(*object))
        return false;
    const auto *field = dynamic_cast<HTML_FormElement *>(object);
    if (!field)
        return true;
    const FunctionCallResult<bool> disabled = field->disabled();
    if (disabled.failed())
        return Failure(disabled.error);
    return !disabled.value;
}

} // namespace Ostrel::WebWrapper
