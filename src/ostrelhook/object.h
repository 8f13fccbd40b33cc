// Object: a value as scripts hold it, either a primitive or a pointer to something that a Class knows.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/reflection.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <variant>

namespace Ostrel {

class Class;
class Object;

template <typename T>
using SharedPtr = std::shared_ptr<T>;

/// The int that a number is; nothing when it has a fraction or is out of range.
OSTRELHOOK_EXPORT std::optional<int> integralValue(double number);

/// The arguments of a call, or any list of script values.
using ObjectList = QList<SharedPtr<Object>>;

/// A script value. It is counted by its SharedPtr; one that owns what it wraps has its class delete that when
/// the last holder lets go.
class OSTRELHOOK_EXPORT Object : public std::enable_shared_from_this<Object>
{
public:
    /// The value of a primitive; nothing for wrapped objects and for void.
    using Primitive = std::variant<std::monostate, int, bool, double, QString>;

    Object(Class *type, void *data, ObjectAttribute attribute);
    Object(Class *type, Primitive value);
    ~Object();
    Object(const Object &) = delete;
    Object &operator=(const Object &) = delete;

    Class *objectClass() const { return m_class; }
    ObjectAttribute attribute() const { return m_attribute; }

    /// The wrapped pointer; null for primitives and for null objects.
    void *data() const { return m_data; }
    /// True for an object of some class that wraps nothing.
    bool isNull() const;
    bool isPrimitive() const { return !std::holds_alternative<std::monostate>(m_primitive); }
    const Primitive &primitive() const { return m_primitive; }

    bool isOwning() const { return m_owning; }
    void setOwning(bool owning) { m_owning = owning; }

    /// Whether the value came with an event, other than by a script.
    bool isEventArgument() const { return m_eventArgument; }
    void setEventArgument(bool eventArgument) { m_eventArgument = eventArgument; }

    /// Conversions of primitives into each other; `ok`, when given, tells whether one exists. Objects turn
    /// into text through the cast delegate of their class.
    QString toQString(bool *ok = nullptr) const;
    int toInt(bool *ok = nullptr) const;
    bool toBool(bool *ok = nullptr) const;
    double toDouble(bool *ok = nullptr) const;

private:
    std::optional<QString> castToText() const;

    Class *m_class;
    void *m_data = nullptr;
    Primitive m_primitive;
    ObjectAttribute m_attribute;
    bool m_owning = false;
    bool m_eventArgument = false;
};

} // namespace Ostrel
