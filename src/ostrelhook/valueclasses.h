// Values that scripts hold by copy: dates and screen rectangles.
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/geometry.h"

#include <QDateTime>

namespace Ostrel {

/// A moment as a page's date fields know it.
using DateTime = QDateTime;

/// The class "DateTime"; its objects own a DateTime.
class OSTRELHOOK_EXPORT DateTimeClass : public Class
{
public:
    explicit DateTimeClass(Namespace *home);
    void deleteObjectData(Object *object) override;
};

/// The class "ScreenRectangle" with the read-only properties x, y, width and height, in pixels.
class OSTRELHOOK_EXPORT ScreenRectangleClass : public Class
{
public:
    explicit ScreenRectangleClass(Namespace *home);
    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) override;
    bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value) override;
    void deleteObjectData(Object *object) override;

protected:
    std::unique_ptr<Property> createProperty(int index) const override;
};

OSTRELHOOK_EXPORT Class *objectModelDateTimeClass();

/// Copies the value into a new script object, which owns the copy.
OSTRELHOOK_EXPORT SharedPtr<Object> wrapDateTime(const DateTime &value);
OSTRELHOOK_EXPORT SharedPtr<Object> wrapScreenRectangle(const ScreenRectangle &value);

/// The value of such an object; an invalid date, or a rectangle of four -1, for anything else.
OSTRELHOOK_EXPORT DateTime unwrapDateTime(const SharedPtr<Object> &object);
OSTRELHOOK_EXPORT ScreenRectangle unwrapScreenRectangle(const SharedPtr<Object> &object);

} // namespace Ostrel
