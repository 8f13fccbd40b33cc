// What a class tells about its members: arguments, signatures, methods, properties and enums.
#pragma once

#include "ostrelhook/export.h"

#include <QList>
#include <QString>

#include <optional>

namespace Ostrel {

class Class;
class Enum;

/// How a value is held: as the value itself (int, bool) or behind a pointer (strings and objects).
class ObjectAttribute
{
public:
    static constexpr ObjectAttribute Value() { return ObjectAttribute(false); }
    static constexpr ObjectAttribute Pointer() { return ObjectAttribute(true); }

    constexpr bool isPointer() const { return m_pointer; }
    constexpr bool operator==(const ObjectAttribute &) const = default;

private:
    constexpr explicit ObjectAttribute(bool pointer) : m_pointer(pointer) { }

    bool m_pointer;
};

/// One parameter of a method, or the type of a result or a property. The class is looked up by name when it
/// is first asked for, since a class may be created after the members that mention it.
class OSTRELHOOK_EXPORT Argument
{
public:
    /// No argument at all: what fills the unused slots of a signature.
    Argument() = default;
    /// A result or property type.
    Argument(QString typeName, ObjectAttribute attribute);
    Argument(const Class *type, ObjectAttribute attribute);
    /// A parameter; `enumeration` may be null.
    Argument(QString name, QString typeName, ObjectAttribute attribute, Enum *enumeration);
    Argument(QString name, const Class *type, ObjectAttribute attribute, Enum *enumeration);

    bool isEmpty() const { return m_typeName.isEmpty(); }
    const QString &name() const { return m_name; }
    const QString &typeName() const { return m_typeName; }
    /// Whether the values are numbers, booleans or text.
    bool isPrimitive() const;
    /// The class of that name in the global namespace, or null when there is none.
    Class *type() const;
    ObjectAttribute attribute() const { return m_attribute; }
    Enum *enumeration() const { return m_enumeration; }

private:
    QString m_name;
    QString m_typeName;
    ObjectAttribute m_attribute = ObjectAttribute::Value();
    Enum *m_enumeration = nullptr;
};

/// The parameters of a method or event, in order. Empty arguments at the end do not count.
class OSTRELHOOK_EXPORT Signature
{
public:
    Signature() = default;
    Signature(QList<Argument> arguments);

    qsizetype count() const { return m_arguments.size(); }
    const Argument &at(qsizetype index) const { return m_arguments.at(index); }
    const QList<Argument> &arguments() const { return m_arguments; }

private:
    QList<Argument> m_arguments;
};

/// A method of a class. `id` counts from the root class on: the entries of the base classes come first.
class OSTRELHOOK_EXPORT Method
{
public:
    enum Flags {
        Static = 1, ///< called on the class, without an object
    };

    Method(Class *owner, Argument result, QString name, Signature signature, int flags, int id);
    virtual ~Method();

    Class *owner() const { return m_owner; }
    const Argument &result() const { return m_result; }
    const QString &name() const { return m_name; }
    const Signature &signature() const { return m_signature; }
    int flags() const { return m_flags; }
    bool isStatic() const { return m_flags & Static; }
    int id() const { return m_id; }

    /// Marks the method as deprecated; `advice` is shown at each use.
    void deprecate(const QString &advice) { m_advice = advice; }
    const QString &deprecationAdvice() const { return m_advice; }

private:
    Class *m_owner;
    Argument m_result;
    QString m_name;
    Signature m_signature;
    int m_flags;
    int m_id;
    QString m_advice;
};

/// A property of a class.
class OSTRELHOOK_EXPORT Property
{
public:
    enum Flags {
        ReadOnly = 1, ///< scripts may read it
        ReadWrite = 3, ///< scripts may read and write it
    };

    Property(Class *owner, Argument type, QString name, Flags flags, int id);

    Class *owner() const { return m_owner; }
    const Argument &type() const { return m_type; }
    const QString &name() const { return m_name; }
    bool isReadOnly() const { return m_flags == ReadOnly; }
    int id() const { return m_id; }

private:
    Class *m_owner;
    Argument m_type;
    QString m_name;
    Flags m_flags;
    int m_id;
};

/// Names for numbers, such as the modifier keys of a click.
class OSTRELHOOK_EXPORT Enum
{
public:
    struct Item
    {
        QString name;
        int value;
    };

    Enum(Class *owner, QString name, QList<Item> items, int id);

    Class *owner() const { return m_owner; }
    const QString &name() const { return m_name; }
    const QList<Item> &items() const { return m_items; }
    /// The value of an item; nothing for a name that is no item.
    std::optional<int> value(const QString &itemName) const;
    int id() const { return m_id; }

private:
    Class *m_owner;
    QString m_name;
    QList<Item> m_items;
    int m_id;
};

} // namespace Ostrel
