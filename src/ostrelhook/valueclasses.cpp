#include "ostrelhook/valueclasses.h"

#include "ostrelhook/inspector.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

struct Side
{
    const char16_t *name;
    int ScreenRectangle::*value;
};

constexpr Side sides[] = {
    {u"x", &ScreenRectangle::x},
    {u"y", &ScreenRectangle::y},
    {u"width", &ScreenRectangle::width},
    {u"height", &ScreenRectangle::height},
};

template <typename T>
SharedPtr<Object> wrapCopy(const QString &className, const T &value)
{
    SharedPtr<Object> object
        = Inspector::self()->findClass(className)->wrap(new T(value), ObjectAttribute::Pointer());
    object->setOwning(true);
    return object;
}

template <typename T>
T unwrapCopy(const QString &className, const SharedPtr<Object> &object)
{
    if (!object || !object->data() || object->objectClass()->name() != className)
        return T();
    return *static_cast<const T *>(object->data());
}

} // namespace

DateTimeClass::DateTimeClass(Namespace *home) : Class(u"DateTime"_s, home, false) { }

void DateTimeClass::deleteObjectData(Object *object)
{
    delete static_cast<DateTime *>(object->data());
}

ScreenRectangleClass::ScreenRectangleClass(Namespace *home) : Class(u"ScreenRectangle"_s, home)
{
    setOwnMembers(0, int(std::size(sides)));
}

std::unique_ptr<Property> ScreenRectangleClass::createProperty(int index) const
{
    return std::make_unique<Property>(const_cast<ScreenRectangleClass *>(this),
        Argument(u"int"_s, ObjectAttribute::Value()), QString::fromUtf16(sides[index].name),
        Property::ReadOnly, index);
}

SharedPtr<Object> ScreenRectangleClass::getProperty(const SharedPtr<Object> &object, const Property *property)
{
    return Inspector::self()->createPrimitive(unwrapScreenRectangle(object).*(sides[property->id()].value));
}

bool ScreenRectangleClass::setProperty(
    const SharedPtr<Object> &, const Property *property, const SharedPtr<Object> &)
{
    Inspector::self()->raiseError(u"Cannot set read-only property %1."_s.arg(property->name()));
    return false;
}

void ScreenRectangleClass::deleteObjectData(Object *object)
{
    delete static_cast<ScreenRectangle *>(object->data());
}

Class *objectModelDateTimeClass()
{
    return Inspector::self()->findClass(u"DateTime"_s);
}

SharedPtr<Object> wrapDateTime(const DateTime &value)
{
    return wrapCopy(u"DateTime"_s, value);
}

SharedPtr<Object> wrapScreenRectangle(const ScreenRectangle &value)
{
    return wrapCopy(u"ScreenRectangle"_s, value);
}

DateTime unwrapDateTime(const SharedPtr<Object> &object)
{
    return unwrapCopy<DateTime>(u"DateTime"_s, object);
}

ScreenRectangle unwrapScreenRectangle(const SharedPtr<Object> &object)
{
    return unwrapCopy<ScreenRectangle>(u"ScreenRectangle"_s, object);
}

} // namespace Ostrel
