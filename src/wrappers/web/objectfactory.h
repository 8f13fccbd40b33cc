// The object factory: from what a page says that an element is to the wrapper of the right class.
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;
class HTML_Object;

/// A new wrapper of the class that `typeString` names, or null when it names no object. `name` is the name in
/// the parent when it is known. The caller owns the result. Never talks to the page.
PAGEPROBELIB_EXPORT HTML_Object *htmlObjectFromReferenceInfo(
    HTMLComponent *component, const QString &typeString, const QString &reference, const QString &name);

/// Evaluates an expression and makes a wrapper of its value; a falsy value gives null and no error. The
/// caller owns the result. `timeoutMs` is in milliseconds, 0 for the bridge's own limit.
PAGEPROBELIB_EXPORT FunctionCallResult<HTML_Object *> htmlObjectFromJavaScriptResult(
    HTMLComponent *component, const QString &expression, const QString &name, unsigned int timeoutMs);

/// The wrapper that a script object holds; it stays the object's. Null for a null pointer.
PAGEPROBELIB_EXPORT HTML_Object *retrieveObject(const SharedPtr<Object> &object);

/// A script object that owns the wrapper; the null object of class HTML_Object for a null pointer.
PAGEPROBELIB_EXPORT SharedPtr<Object> wrapObject(HTML_Object *wrapper);

PAGEPROBELIB_EXPORT Class *objectModelHtmlObjectClass();
PAGEPROBELIB_EXPORT Class *objectModelHtmlDocumentClass();

} // namespace Ostrel::WebWrapper
