#include "wrappers/web/reflection/cssproperties.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/csspropertynames.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/reflection/csscolor.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

bool isColor(const QString &name, const Json::Value &value)
{
    return name.contains("color"_L1, Qt::CaseInsensitive) && value.isObject() && value.isMember("red");
}

CssColor colorFromJson(const Json::Value &value)
{
    const auto channel = [&value](const char *name) { return quint8(fromJson<int>(value[name]).value); };
    const Json::Value alpha = value["alpha"];
    return {channel("red"), channel("green"), channel("blue"), alpha.isNumeric() ? alpha.asDouble() : 0.0, 1};
}

} // namespace

FunctionCallResult<CssProperties *> cssPropertiesOf(const HTML_Object &object)
{
    const FunctionCallResult<QMap<QString, Json::Value>> values = object.cssProperties();
    if (values.failed())
        return Failure(values.error);
    return new CssProperties{values.value};
}

CSSProperties_Class::CSSProperties_Class(Namespace *home) : Class(u"CSSProperties"_s, home)
{
    setOwnMembers(0, int(cssPropertyNames().size()));
}

void CSSProperties_Class::initSuperClass() const
{
    setSuperClass(Inspector::self()->findClass(u"Object"_s));
}

std::unique_ptr<Property> CSSProperties_Class::createProperty(int index) const
{
    return std::make_unique<Property>(const_cast<CSSProperties_Class *>(this),
        Argument(u"String"_s, ObjectAttribute::Pointer()),
        cssPropertyNames().at(index - superClassOffset(Properties)), Property::ReadOnly, index);
}

SharedPtr<Object> CSSProperties_Class::getProperty(const SharedPtr<Object> &object, const Property *property)
{
    Inspector *inspector = Inspector::self();
    const auto *css = object ? static_cast<const CssProperties *>(object->data()) : nullptr;
    const QString &name = property->name();
    if (!css || !css->values.contains(name)) {
        inspector->raiseError(message(u"Unknown CSS property '%1'.", name));
        return {};
    }
    const Json::Value value = css->values.value(name);
    if (isColor(name, value))
        return wrapCssColor(colorFromJson(value));
    return inspector->createPrimitive(fromJson<QString>(value).value);
}

bool CSSProperties_Class::setProperty(
    const SharedPtr<Object> &, const Property *property, const SharedPtr<Object> &)
{
    Inspector::self()->raiseError(message(u"Cannot set read-only property %1.", property->name()));
    return false;
}

void CSSProperties_Class::deleteObjectData(Object *object)
{
    delete static_cast<CssProperties *>(object->data());
}

} // namespace Ostrel::WebWrapper
