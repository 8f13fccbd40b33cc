// CssColor: a colour as scripts read it from a style or make it themselves.
#pragma once

#include "ostrelhook/class.h"
#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

/// A colour. A default one is invalid and holds no values.
struct CssColor
{
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;
    /// 0 is transparent, 1 opaque.
    double alpha = 0.0;
    /// 1 when the colour holds values.
    qint32 valid = 0;
};

/// The class "CssColor", with the static methods fromRgb and fromRgba.
class CssColorClass : public Class
{
public:
    explicit CssColorClass(Namespace *home);

    SharedPtr<Object> invoke(int index, const SharedPtr<Object> &object, const ObjectList &arguments,
        const Method *method) override;
    bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value) override;
    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) override;
    void deleteObjectData(Object *object) override;
    bool canConvertTo(const Class *target) const override;
    SharedPtr<Object> convertTo(const SharedPtr<Object> &object, const Class *target) const override;

protected:
    void initSuperClass() const override;
    std::unique_ptr<Method> createMethod(int index) const override;
    std::unique_ptr<Property> createProperty(int index) const override;
};

PAGEPROBELIB_EXPORT Class *objectModelCssColorClass();

/// Copies the colour into a new script object, which owns the copy.
PAGEPROBELIB_EXPORT SharedPtr<Object> wrapCssColor(const CssColor &color);

/// The colour of such an object; null for anything else. It stays the object's.
PAGEPROBELIB_EXPORT CssColor *unwrapCssColor(const SharedPtr<Object> &object);

/// "rgb(255, 0, 10)" as "#ff000a"; any other text comes back unchanged.
PAGEPROBELIB_EXPORT QString convertRgbToHashHex(const QString &text);

} // namespace Ostrel::WebWrapper
