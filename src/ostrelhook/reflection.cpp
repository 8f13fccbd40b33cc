#include "ostrelhook/reflection.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

Argument::Argument(QString typeName, ObjectAttribute attribute)
    : m_typeName(std::move(typeName)), m_attribute(attribute)
{
}

Argument::Argument(const Class *type, ObjectAttribute attribute) : Argument(type->name(), attribute) { }

Argument::Argument(QString name, QString typeName, ObjectAttribute attribute, Enum *enumeration)
    : m_name(std::move(name)), m_typeName(std::move(typeName)), m_attribute(attribute),
      m_enumeration(enumeration)
{
}

Argument::Argument(QString name, const Class *type, ObjectAttribute attribute, Enum *enumeration)
    : Argument(std::move(name), type->name(), attribute, enumeration)
{
}

bool Argument::isPrimitive() const
{
    return m_typeName == "int"_L1 || m_typeName == "bool"_L1 || m_typeName == "double"_L1
        || m_typeName == "String"_L1;
}

Class *Argument::type() const
{
    return Inspector::self()->globalNamespace()->getClass(m_typeName);
}

Signature::Signature(QList<Argument> arguments) : m_arguments(std::move(arguments))
{
    while (!m_arguments.isEmpty() && m_arguments.last().isEmpty())
        m_arguments.removeLast();
}

Method::Method(Class *owner, Argument result, QString name, Signature signature, int flags, int id)
    : m_owner(owner), m_result(std::move(result)), m_name(std::move(name)), m_signature(std::move(signature)),
      m_flags(flags), m_id(id)
{
}

Method::~Method() = default;

Property::Property(Class *owner, Argument type, QString name, Flags flags, int id)
    : m_owner(owner), m_type(std::move(type)), m_name(std::move(name)), m_flags(flags), m_id(id)
{
}

Enum::Enum(Class *owner, QString name, QList<Item> items, int id)
    : m_owner(owner), m_name(std::move(name)), m_items(std::move(items)), m_id(id)
{
}

std::optional<int> Enum::value(const QString &itemName) const
{
    for (const Item &item : m_items) {
        if (item.name == itemName)
            return item.value;
    }
    return std::nullopt;
}

} // namespace Ostrel
