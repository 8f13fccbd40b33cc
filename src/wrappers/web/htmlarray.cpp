#include "wrappers/web/htmlarray.h"

#include "wrappers/web/objectfactory.h"
#include "wrappers/web/scripttext.h"

namespace Ostrel::WebWrapper {

FunctionCallResult<int> HTML_Array::length() const
{
    const FunctionCallResult<QString> text = property("length");
    if (text.failed())
        return Failure(text.error);
    bool ok = false;
    const int length = text.value.toInt(&ok);
    if (!ok)
        return Failure(message(u"Could not convert length of array '%1' to number", text.value));
    return length;
}

FunctionCallResult<HTML_Object *> HTML_Array::at(int index) const
{
    const QString position = QString::number(index);
    const FunctionCallResult<int> size = length();
    if (size.failed()) {
        return Failure(
            message(u"Cannot retrieve element at '%1', length check failed: %2", position, size.error));
    }
    if (index < 0 || index >= size.value) {
        return Failure(message(u"Out of bounds access to array of length %1 with index %2.",
            QString::number(size.value), position));
    }
    FunctionCallResult<HTML_Object *> element
        = htmlObjectFromJavaScriptResult(component(), script(u"%1[%2];", ref(), index), {}, 0);
    if (element.failed()) {
        return Failure(
            message(u"Could not get reference for array element at '%1': %2", position, element.error));
    }
    return element;
}

} // namespace Ostrel::WebWrapper
