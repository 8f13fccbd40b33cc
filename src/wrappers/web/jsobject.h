// JsObject: a value of a page that is no element, held by a test script. The value stays in the page; the
// script holds the expression that finds it again.
#pragma once

#include "ostrelhook/class.h"
#include "wrappers/web/export.h"

#include <QByteArray>
#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// Where a value of a page is.
struct JsObjectId
{
    /// UTF-8 text of a script expression, such as "top.__ostrel__jsobjects[3]".
    QByteArray code;
    /// The bridge to the page, not owned; null once the bridge is gone.
    HTMLComponent *component = nullptr;
};

/// The class "JsObject" with the methods property(propertyName), call(methodName) and
/// call(methodName, arguments). Errors go to Inspector::raiseError(); the result is then null.
class PAGEPROBELIB_EXPORT JsObjectClass : public Class
{
public:
    explicit JsObjectClass(Namespace *home);

    /// A new script object, which owns its copy of the id. The class must be registered.
    static SharedPtr<Object> wrapObject(const JsObjectId &id);
    /// The id that an object of this class holds; one without code and component for anything else.
    static JsObjectId unwrapObject(const SharedPtr<Object> &object);

    SharedPtr<Object> invoke(int index, const SharedPtr<Object> &object, const ObjectList &arguments,
        const Method *method) override;
    void deleteObjectData(Object *object) override;

protected:
    std::unique_ptr<Method> createMethod(int index) const override;
};

/// Evaluates script text in the page and gives its value: a text, a number, a boolean, the void object for
/// `undefined`, a null object, or a JsObject for objects and arrays. What fails is raised as the script's
/// error and gives a null pointer.
PAGEPROBELIB_EXPORT SharedPtr<Object> retrieveJSObject(HTMLComponent *component, const QString &code);

/// Takes a bridge that goes out of the ids that point to it.
void forgetJsObjectsOf(const HTMLComponent *component);

} // namespace Ostrel::WebWrapper
