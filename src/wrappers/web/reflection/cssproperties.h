// CSSProperties: the computed style of an element as a script object with a property for each CSS name.
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/functioncallresult.h"

#include <QMap>
#include <QString>

#include <json/value.h>

namespace Ostrel::WebWrapper {

class HTML_Object;

/// The values of one element by property name, as the page gave them.
struct CssProperties
{
    static constexpr char ScriptName[] = "CSSProperties";

    QMap<QString, Json::Value> values;
};

/// The computed style of an element; owned by the caller.
FunctionCallResult<CssProperties *> cssPropertiesOf(const HTML_Object &object);

/// The class "CSSProperties": a read-only property for each of cssPropertyNames().
class CSSProperties_Class : public Class
{
public:
    explicit CSSProperties_Class(Namespace *home);

    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) override;
    bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value) override;
    void deleteObjectData(Object *object) override;

protected:
    void initSuperClass() const override;
    std::unique_ptr<Property> createProperty(int index) const override;
};

} // namespace Ostrel::WebWrapper
