#include "ostrelhook/functionclass.h"

#include "ostrelhook/inspector.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

constexpr auto className = "Function"_L1;

} // namespace

FunctionClass::FunctionClass(Namespace *home) : Class(className, home, false) { }

SharedPtr<Object> FunctionClass::wrapObject(const ScriptFunction &function)
{
    const Class *type = Inspector::self()->findClass(className);
    SharedPtr<Object> object = type->wrap(new ScriptFunction(function), ObjectAttribute::Pointer());
    object->setOwning(true);
    return object;
}

ScriptFunction FunctionClass::unwrapObject(const SharedPtr<Object> &object)
{
    const bool isFunction = object && object->data() && object->objectClass()->name() == className;
    return isFunction ? *static_cast<ScriptFunction *>(object->data()) : ScriptFunction();
}

void FunctionClass::deleteObjectData(Object *object)
{
    delete static_cast<ScriptFunction *>(object->data());
}

} // namespace Ostrel
