#include "ostrelhook/classtable.h"

#include "ostrelhook/namespace.h"

#include <algorithm>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

/// Whether a conversion to the type keeps what the script meant. Null is the empty text, and no number.
bool converts(const SharedPtr<Object> &value, QLatin1StringView type)
{
    const bool isNumber = type == "int"_L1 || type == "double"_L1 || type == "bool"_L1;
    if (!value)
        return !isNumber;
    bool ok = true;
    if (type == "int"_L1)
        static_cast<void>(value->toInt(&ok));
    else if (type == "double"_L1)
        static_cast<void>(value->toDouble(&ok));
    else if (type == "bool"_L1)
        static_cast<void>(value->toBool(&ok));
    else if (type == "String"_L1)
        static_cast<void>(value->toQString(&ok));
    return ok;
}

/// The same of an array and each of its items.
bool converts(const SharedPtr<Object> &value, const TypeName &type)
{
    if (!type.item)
        return converts(value, QLatin1StringView(type.name));
    bool isArray = false;
    const ObjectList items = ArrayClass::unwrapObject(value, &isArray);
    return isArray && std::all_of(items.begin(), items.end(), [&type](const SharedPtr<Object> &item) {
        return converts(item, QLatin1StringView(type.item));
    });
}

QString shownType(const TypeName &type)
{
    const QString name = QString::fromLatin1(type.name);
    return type.item ? u"%1 of %2"_s.arg(name, QString::fromLatin1(type.item)) : name;
}

QString shownValue(const SharedPtr<Object> &value)
{
    if (!value)
        return u"null"_s;
    if (value->isPrimitive())
        return u"'%1'"_s.arg(value->toQString());
    bool isArray = false;
    QStringList items;
    for (const SharedPtr<Object> &item : ArrayClass::unwrapObject(value, &isArray))
        items.append(shownValue(item));
    return isArray ? u"[%1]"_s.arg(items.join(", "_L1)) : value->objectClass()->name();
}

} // namespace

TableClass::TableClass(const ClassTable &table, const WrapperFamily &family, Namespace *home)
    : Class(QString::fromLatin1(table.name), home), m_table(table), m_family(family)
{
    setOwnMembers(int(table.methods.size()), int(table.properties.size()));
}

void TableClass::initSuperClass() const
{
    if (m_table.base)
        setSuperClass(Inspector::self()->findClass(QString::fromLatin1(m_table.base)));
}

Argument argumentOf(const TypeName &type, const char *name)
{
    return Argument(QString::fromLatin1(name), QString::fromLatin1(type.name),
        type.isPointer ? ObjectAttribute::Pointer() : ObjectAttribute::Value(), nullptr);
}

std::unique_ptr<Method> TableClass::createMethod(int index) const
{
    const MethodRow &row = m_table.methods[std::size_t(index - superClassOffset(Methods))];
    QList<Argument> parameters;
    for (std::size_t i = 0; i < row.parameterCount; ++i)
        parameters.append(argumentOf(row.parameters[i].type, row.parameters[i].name));
    return std::make_unique<Method>(const_cast<TableClass *>(this), argumentOf(row.result),
        QString::fromLatin1(row.name), Signature(parameters), 0, index);
}

std::unique_ptr<Property> TableClass::createProperty(int index) const
{
    const PropertyRow &row = m_table.properties[std::size_t(index - superClassOffset(Properties))];
    return std::make_unique<Property>(const_cast<TableClass *>(this), argumentOf(row.type),
        QString::fromLatin1(row.name), row.write ? Property::ReadWrite : Property::ReadOnly, index);
}

void *TableClass::liveWrapper(const SharedPtr<Object> &object, const QString &member) const
{
    if (!object || !object->data()) {
        Inspector::self()->raiseError(u"Cannot access '%1' of a null object."_s.arg(member));
        return nullptr;
    }
    // What lies behind the pointer of another class is unknown.
    if (!object->objectClass()->inherits(this)) {
        Inspector::self()->raiseError(u"Cannot access '%1.%2' of an object of class '%3'."_s.arg(
            name(), member, object->objectClass()->name()));
        return nullptr;
    }
    if (!m_family.isAlive(object->data())) {
        Inspector::self()->raiseError(QString::fromUtf16(m_family.deadMessage));
        return nullptr;
    }
    return object->data();
}

SharedPtr<Object> TableClass::invoke(
    int index, const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method)
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(name(), method, arguments))
        return {};
    void *wrapper = liveWrapper(object, method->name());
    if (!wrapper)
        return {};
    const auto local = std::size_t(index - superClassOffset(Methods));
    if (local >= m_table.methods.size())
        return {};
    const MethodRow &row = m_table.methods[local];
    for (std::size_t i = 0; i < row.parameterCount; ++i) {
        const SharedPtr<Object> argument = arguments.value(qsizetype(i));
        if (!converts(argument, row.parameters[i].type)) {
            Inspector::self()->raiseError(u"%1.%2 expects %3, but %4 was given."_s.arg(
                name(), method->name(), shownType(row.parameters[i].type), shownValue(argument)));
            return {};
        }
    }
    CallResult result = row.call(wrapper, arguments);
    if (result.failed()) {
        Inspector::self()->raiseError(result.error);
        return {};
    }
    return result.value;
}

SharedPtr<Object> TableClass::getProperty(const SharedPtr<Object> &object, const Property *property)
{
    void *wrapper = liveWrapper(object, property->name());
    if (!wrapper)
        return {};
    const auto local = std::size_t(property->id() - superClassOffset(Properties));
    if (local >= m_table.properties.size())
        return {};
    CallResult result = m_table.properties[local].read(wrapper);
    if (result.failed()) {
        Inspector::self()->raiseError(result.error);
        return {};
    }
    return result.value;
}

bool TableClass::setProperty(
    const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value)
{
    void *wrapper = liveWrapper(object, property->name());
    if (!wrapper)
        return false;
    const auto local = std::size_t(property->id() - superClassOffset(Properties));
    if (local >= m_table.properties.size())
        return false;
    const PropertyRow &row = m_table.properties[local];
    if (!row.write) {
        Inspector::self()->raiseError(u"Cannot set read-only property %1."_s.arg(property->name()));
        return false;
    }
    if (!converts(value, row.type)) {
        Inspector::self()->raiseError(u"Cannot set property %1 to %2, expected %3."_s.arg(
            property->name(), shownValue(value), shownType(row.type)));
        return false;
    }
    const FunctionCallResult<void> result = row.write(wrapper, value);
    if (result.failed())
        Inspector::self()->raiseError(result.error);
    return !result.failed();
}

void TableClass::deleteObjectData(Object *object)
{
    if (object->data())
        m_family.destroy(object->data());
}

} // namespace Ostrel
