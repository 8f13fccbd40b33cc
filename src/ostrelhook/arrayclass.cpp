#include "ostrelhook/arrayclass.h"

#include "ostrelhook/inspector.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

ArrayClass::ArrayClass(Namespace *home) : Class(u"Array"_s, home, false) { }

Argument ArrayClass::arrayClassArg(const QString &name)
{
    return Argument(name, u"Array"_s, ObjectAttribute::Pointer(), nullptr);
}

SharedPtr<Object> ArrayClass::wrapObject(const ObjectList &items)
{
    const Class *type = Inspector::self()->findClass(u"Array"_s);
    SharedPtr<Object> array = type->wrap(new ObjectList(items), ObjectAttribute::Pointer());
    array->setOwning(true);
    return array;
}

ObjectList ArrayClass::unwrapObject(const SharedPtr<Object> &array, bool *ok)
{
    const bool isArray = array && array->objectClass()->name() == "Array"_L1;
    if (ok)
        *ok = isArray;
    return isArray && array->data() ? *static_cast<ObjectList *>(array->data()) : ObjectList();
}

void ArrayClass::deleteObjectData(Object *object)
{
    delete static_cast<ObjectList *>(object->data());
}

} // namespace Ostrel
