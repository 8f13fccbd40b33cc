// ScriptValue: how each C++ type of an operation looks to a script, and how values cross over.
//
// A further type is one more specialization; no class changes. Each gives
//     type      what the type is called in signatures
//     Holder    what keeps an argument alive during the call
//     take()    the argument from its holder
//     toObject  the script value of a result
#pragma once

#include "ostrelhook/arrayclass.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/valueclasses.h"

#include <concepts>
#include <string>
#include <vector>

namespace Ostrel {

/// The name of a type in a signature; `item` is the type of an array's items.
struct TypeName
{
    const char *name = "void";
    const char *item = nullptr;
    bool isPointer = false;
};

/// A class whose wrappers scripts can hold: it says its own script name.
template <typename C>
concept ScriptClass = requires
{
    {
        C::ScriptName
        } -> std::convertible_to<const char *>;
};

template <typename T>
struct ScriptValue;

template <>
struct ScriptValue<void>
{
    static constexpr TypeName type{"void"};
};

template <>
struct ScriptValue<int>
{
    static constexpr TypeName type{"int"};
    using Holder = int;
    static Holder hold(const SharedPtr<Object> &object) { return object ? object->toInt() : 0; }
    static int take(Holder held) { return held; }
    static SharedPtr<Object> toObject(int value) { return Inspector::self()->createPrimitive(value); }
};

template <>
struct ScriptValue<bool>
{
    static constexpr TypeName type{"bool"};
    using Holder = bool;
    static Holder hold(const SharedPtr<Object> &object) { return object && object->toBool(); }
    static bool take(Holder held) { return held; }
    static SharedPtr<Object> toObject(bool value) { return Inspector::self()->createPrimitive(value); }
};

template <>
struct ScriptValue<double>
{
    static constexpr TypeName type{"double"};
    using Holder = double;
    static Holder hold(const SharedPtr<Object> &object) { return object ? object->toDouble() : 0.0; }
    static double take(Holder held) { return held; }
    static SharedPtr<Object> toObject(double value) { return Inspector::self()->createPrimitive(value); }
};

template <>
struct ScriptValue<QString>
{
    static constexpr TypeName type{"String", nullptr, true};
    using Holder = QString;
    static Holder hold(const SharedPtr<Object> &object) { return object ? object->toQString() : QString(); }
    static const QString &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const QString &value)
    {
        return Inspector::self()->createPrimitive(value);
    }
};

/// Text as UTF-8 bytes, which live as long as the call.
template <>
struct ScriptValue<const char *>
{
    static constexpr TypeName type{"String", nullptr, true};
    using Holder = QByteArray;
    static Holder hold(const SharedPtr<Object> &object)
    {
        return ScriptValue<QString>::hold(object).toUtf8();
    }
    static const char *take(const Holder &held) { return held.constData(); }
};

template <>
struct ScriptValue<std::string>
{
    static constexpr TypeName type{"String", nullptr, true};
    using Holder = std::string;
    static Holder hold(const SharedPtr<Object> &object)
    {
        return ScriptValue<QString>::hold(object).toStdString();
    }
    static const std::string &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const std::string &value)
    {
        return Inspector::self()->createPrimitive(QString::fromStdString(value));
    }
};

template <>
struct ScriptValue<DateTime>
{
    static constexpr TypeName type{"DateTime", nullptr, true};
    using Holder = DateTime;
    static Holder hold(const SharedPtr<Object> &object) { return unwrapDateTime(object); }
    static const DateTime &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const DateTime &value) { return wrapDateTime(value); }
};

template <>
struct ScriptValue<ScreenRectangle>
{
    static constexpr TypeName type{"ScreenRectangle", nullptr, true};
    static SharedPtr<Object> toObject(const ScreenRectangle &value) { return wrapScreenRectangle(value); }
};

/// Arrays, item by item.
template <typename List>
struct ScriptList
{
    using Item = typename List::value_type;
    static constexpr TypeName type{"Array", ScriptValue<Item>::type.name, true};
    using Holder = List;
    static Holder hold(const SharedPtr<Object> &object)
    {
        List items;
        for (const SharedPtr<Object> &item : ArrayClass::unwrapObject(object))
            items.push_back(ScriptValue<Item>::hold(item));
        return items;
    }
    static const List &take(const Holder &held) { return held; }
    static SharedPtr<Object> toObject(const List &values)
    {
        ObjectList items;
        for (const Item &value : values)
            items.append(ScriptValue<Item>::toObject(value));
        return ArrayClass::wrapObject(items);
    }
};

template <typename Item>
struct ScriptValue<std::vector<Item>> : ScriptList<std::vector<Item>>
{
};

template <typename Item>
struct ScriptValue<QList<Item>> : ScriptList<QList<Item>>
{
};

/// How a class of wrappers lies behind the untyped pointer of a script object: by default as itself. A family
/// with a polymorphic root specializes this.
template <typename C>
struct WrapperRoot
{
    using Type = C;
};

/// The wrapper behind a script object's pointer; null when it is of another class of the family.
template <typename C>
C *wrapperFrom(void *data)
{
    using Root = typename WrapperRoot<C>::Type;
    if constexpr (std::is_same_v<Root, C>)
        return static_cast<C *>(data);
    else
        return dynamic_cast<C *>(static_cast<Root *>(data));
}

/// Wrappers: as a result they are owned by the new script object, as an argument they stay with theirs.
template <ScriptClass C>
struct ScriptValue<C *>
{
    static constexpr TypeName type{C::ScriptName, nullptr, true};
    using Holder = C *;
    static Holder hold(const SharedPtr<Object> &object)
    {
        // The items of an array may be of any class.
        const Class *expected = Inspector::self()->findClass(QString::fromLatin1(C::ScriptName));
        const bool fits = object && object->objectClass()->inherits(expected);
        return fits ? wrapperFrom<C>(object->data()) : nullptr;
    }
    static C *take(Holder held) { return held; }
    static SharedPtr<Object> toObject(C *wrapper)
    {
        using Root = typename WrapperRoot<C>::Type;
        SharedPtr<Object> object
            = classOf(wrapper)->wrap(static_cast<Root *>(wrapper), ObjectAttribute::Pointer());
        object->setOwning(wrapper != nullptr);
        return object;
    }

private:
    /// The class that a wrapper says it is of; the declared one for null and for classes that are not
    /// registered.
    static const Class *classOf(const C *wrapper)
    {
        if constexpr (requires { wrapper->className(); }) {
            if (wrapper) {
                if (const Class *type
                    = Inspector::self()->findClass(QString::fromLatin1(wrapper->className())))
                    return type;
            }
        }
        return Inspector::self()->findClass(QString::fromLatin1(C::ScriptName));
    }
};

} // namespace Ostrel
