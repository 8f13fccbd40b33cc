// Calls on script objects as a script engine makes them: by name, with the error that the script would get.
#pragma once

#include "ostrelhook/arrayclass.h"
#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"

#include <QString>

#include <utility>

namespace Ostrel::Test {

/// What a script gets: a value, or the text of the script error.
struct ScriptAnswer
{
    SharedPtr<Object> value;
    QString error;

    QString text() const { return value ? value->toQString() : QString(); }
};

inline SharedPtr<Object> argument(int value)
{
    return Inspector::self()->createPrimitive(value);
}
inline SharedPtr<Object> argument(bool value)
{
    return Inspector::self()->createPrimitive(value);
}
inline SharedPtr<Object> argument(double value)
{
    return Inspector::self()->createPrimitive(value);
}
inline SharedPtr<Object> argument(const QString &value)
{
    return Inspector::self()->createPrimitive(value);
}
template <typename Item>
SharedPtr<Object> argument(const QList<Item> &values)
{
    ObjectList items;
    for (const Item &value : values)
        items.append(argument(value));
    return ArrayClass::wrapObject(items);
}

template <typename... Arguments>
ScriptAnswer callMethod(const SharedPtr<Object> &object, const QString &name, const Arguments &...arguments)
{
    const ObjectList list{argument(arguments)...};
    Class *type = object->objectClass();
    const FunctionCallResult<Method *> method = type->resolve(name, list);
    if (method.failed())
        return {{}, method.error};
    SharedPtr<Object> value = type->call(object, list, method.value);
    return {std::move(value), Inspector::self()->takeError()};
}

inline ScriptAnswer readProperty(const SharedPtr<Object> &object, const QString &name)
{
    const Property *property = object->objectClass()->findProperty(name);
    if (!property)
        return {{}, QStringLiteral("There is no property '%1'.").arg(name)};
    SharedPtr<Object> value = object->objectClass()->read(object, property);
    return {std::move(value), Inspector::self()->takeError()};
}

/// The error of the assignment; empty when it succeeded.
template <typename Value>
QString writeProperty(const SharedPtr<Object> &object, const QString &name, const Value &value)
{
    const Property *property = object->objectClass()->findProperty(name);
    if (!property)
        return QStringLiteral("There is no property '%1'.").arg(name);
    const bool written = object->objectClass()->write(object, property, argument(value));
    const QString error = Inspector::self()->takeError();
    return written == error.isEmpty() ? error
                                      : QStringLiteral("the error and the result contradict each other");
}

} // namespace Ostrel::Test
