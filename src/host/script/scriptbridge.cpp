#include "host/script/scriptbridge.h"

#include "ostrelhook/arrayclass.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/functionclass.h"
#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/valueclasses.h"

#include <QDateTime>
#include <QFile>
#include <QJSEngine>
#include <QPointer>

#include <cmath>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString glueFile = u":/pageprobe/scriptglue.js"_s;
const QString verificationsFile = u":/pageprobe/verifications.js"_s;

/// The value of a script of the host's own, or why there is none.
FunctionCallResult<QJSValue> ownScript(QJSEngine *engine, const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(file.errorString());
    const QJSValue value = engine->evaluate(QString::fromUtf8(file.readAll()), fileName);
    if (!value.isCallable())
        return Failure(value.toString());
    return value;
}

/// The names of the members that a class adds, each once.
template <typename Member>
QJSValue ownNames(QJSEngine *engine, int from, int to, const std::function<Member *(int)> &member,
    bool (*wanted)(const Member &))
{
    QStringList names;
    for (int index = from; index < to; ++index) {
        const Member *entry = member(index);
        if (entry && wanted(*entry) && !names.contains(entry->name()))
            names.append(entry->name());
    }
    return engine->toScriptValue(names);
}

QJSValue describeEnums(QJSEngine *engine, const Class *type)
{
    QJSValue enums = engine->newArray();
    quint32 count = 0;
    for (int index = type->superClassOffset(Class::Enums); index < type->numEnums(); ++index) {
        const Enum *entry = type->enumeration(index);
        QJSValue items = engine->newObject();
        for (const Enum::Item &item : entry->items())
            items.setProperty(item.name, item.value);
        QJSValue description = engine->newObject();
        description.setProperty(u"name"_s, entry->name());
        description.setProperty(u"items"_s, items);
        enums.setProperty(count++, description);
    }
    return enums;
}

QJSValue describeClass(QJSEngine *engine, const Class *type)
{
    const auto method = [type](int index) { return type->method(index); };
    const auto property = [type](int index) { return type->property(index); };
    const int firstMethod = type->superClassOffset(Class::Methods);
    QJSValue description = engine->newObject();
    description.setProperty(u"name"_s, type->name());
    description.setProperty(u"base"_s, type->superClass() ? type->superClass()->name() : QString());
    description.setProperty(u"methods"_s,
        ownNames<Method>(engine, firstMethod, type->numMethods(), method,
            [](const Method &entry) { return !entry.isStatic(); }));
    description.setProperty(u"statics"_s,
        ownNames<Method>(engine, firstMethod, type->numMethods(), method,
            [](const Method &entry) { return entry.isStatic(); }));
    description.setProperty(u"properties"_s,
        ownNames<Property>(engine, type->superClassOffset(Class::Properties), type->numProperties(), property,
            [](const Property &) { return true; }));
    description.setProperty(u"enums"_s, describeEnums(engine, type));
    return description;
}

/// All script-visible classes, base classes first.
QJSValue describeClasses(QJSEngine *engine)
{
    QList<const Class *> ordered;
    const std::function<void(const Class *)> add = [&](const Class *type) {
        if (!type || ordered.contains(type) || !type->isScriptVisible())
            return;
        add(type->superClass());
        ordered.append(type);
    };
    for (const Class *type : Inspector::self()->globalNamespace()->classes())
        add(type);

    QJSValue classes = engine->newArray(uint(ordered.size()));
    for (qsizetype i = 0; i < ordered.size(); ++i)
        classes.setProperty(quint32(i), describeClass(engine, ordered.at(i)));
    return classes;
}

QJSValue describeFunctions(QJSEngine *engine)
{
    QStringList names;
    for (const GlobalMethod *method : Inspector::self()->globalClass()->globalMethods()) {
        if (!names.contains(method->name()))
            names.append(method->name());
    }
    return engine->toScriptValue(names);
}

SharedPtr<Object> heldObject(const QJSValue &handle)
{
    return handle.isVariant() ? handle.toVariant().value<SharedPtr<Object>>() : nullptr;
}

SharedPtr<Object> numberFrom(double number)
{
    const Inspector *inspector = Inspector::self();
    if (std::trunc(number) == number && std::abs(number) <= 2147483647.0)
        return inspector->createPrimitive(int(number));
    return inspector->createPrimitive(number);
}

} // namespace

ScriptBridge::ScriptBridge(QJSEngine *engine) : m_engine(engine)
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
}

QString ScriptBridge::install()
{
    const FunctionCallResult<QJSValue> glue = ownScript(m_engine, glueFile);
    if (glue.failed())
        return glue.error;
    const QJSValue installed = glue.value.call({m_engine->newQObject(this), m_engine->globalObject(),
        describeClasses(m_engine), describeFunctions(m_engine)});
    m_wrap = installed.property(u"wrap"_s);
    m_call = installed.property(u"call"_s);
    if (!m_wrap.isCallable() || !m_call.isCallable())
        return installed.toString();

    const FunctionCallResult<QJSValue> verifications = ownScript(m_engine, verificationsFile);
    if (verifications.failed())
        return verifications.error;
    const QJSValue defined
        = verifications.value.call({m_engine->globalObject(), installed.property(u"host"_s)});
    return defined.isError() ? defined.toString() : QString();
}

QJSValue ScriptBridge::read(const QJSValue &handle, const QString &name)
{
    const SharedPtr<Object> object = objectFrom(handle, name);
    if (!object)
        return {};
    Class *type = object->objectClass();
    const Property *property = type->findProperty(name);
    if (!property) {
        throwError(unknownMember(handle, name));
        return {};
    }
    const SharedPtr<Object> value = type->read(object, property);
    return throwPending() ? QJSValue() : toScript(value);
}

void ScriptBridge::write(const QJSValue &handle, const QString &name, const QJSValue &value)
{
    const SharedPtr<Object> object = objectFrom(handle, name);
    if (!object)
        return;
    Class *type = object->objectClass();
    const Property *property = type->findProperty(name);
    if (!property) {
        throwError(unknownMember(handle, name));
        return;
    }
    type->write(object, property, fromScript(value));
    throwPending();
}

QJSValue ScriptBridge::invoke(const QJSValue &handle, const QString &name, const QJSValue &arguments)
{
    const SharedPtr<Object> object = objectFrom(handle, name);
    if (!object)
        return {};
    Class *type = object->objectClass();
    const ObjectList given = argumentsFrom(arguments);
    const FunctionCallResult<Method *> method = type->resolve(name, given);
    if (method.failed()) {
        throwError(method.error);
        return {};
    }
    const SharedPtr<Object> value = type->call(object, given, method.value);
    return throwPending() ? QJSValue() : toScript(value);
}

QJSValue ScriptBridge::invokeStatic(const QString &className, const QString &name, const QJSValue &arguments)
{
    Class *type = Inspector::self()->findClass(className);
    const ObjectList given = argumentsFrom(arguments);
    const FunctionCallResult<Method *> method = type->resolve(name, given);
    if (method.failed()) {
        throwError(method.error);
        return {};
    }
    const SharedPtr<Object> value = type->call(nullptr, given, method.value);
    return throwPending() ? QJSValue() : toScript(value);
}

QJSValue ScriptBridge::callGlobal(const QString &name, const QJSValue &arguments)
{
    const SharedPtr<Object> value
        = Inspector::self()->globalClass()->callGlobal(name, argumentsFrom(arguments));
    return throwPending() ? QJSValue() : toScript(value);
}

QString ScriptBridge::text(const QJSValue &handle)
{
    const SharedPtr<Object> object = objectFrom(handle, u"toString"_s);
    if (!object)
        return {};
    const QString text = objectAsText(object);
    throwPending();
    return text;
}

bool ScriptBridge::same(const QJSValue &a, const QJSValue &b)
{
    return objectsAreEqual(fromScript(a), fromScript(b));
}

QString ScriptBridge::unknownMember(const QJSValue &handle, const QString &name) const
{
    const SharedPtr<Object> object = heldObject(handle);
    return u"%1 has no property or method '%2'."_s.arg(
        object ? object->objectClass()->name() : u"The object"_s, name);
}

QJSValue ScriptBridge::toScript(const SharedPtr<Object> &value)
{
    if (!value || value->objectClass() == Inspector::self()->primitiveClass(PrimitiveType::Void))
        return {};
    if (value->isPrimitive())
        return std::visit(
            [](const auto &primitive) {
                if constexpr (std::is_same_v<std::decay_t<decltype(primitive)>, std::monostate>)
                    return QJSValue();
                else
                    return QJSValue(primitive);
            },
            value->primitive());
    if (value->isNull())
        return QJSValue(QJSValue::NullValue);

    bool isArray = false;
    const ObjectList items = ArrayClass::unwrapObject(value, &isArray);
    if (isArray) {
        QJSValue array = m_engine->newArray(uint(items.size()));
        for (qsizetype i = 0; i < items.size(); ++i)
            array.setProperty(quint32(i), toScript(items.at(i)));
        return array;
    }
    if (value->objectClass() == objectModelDateTimeClass())
        return m_engine->toScriptValue(unwrapDateTime(value));
    return m_wrap.call({value->objectClass()->name(), m_engine->toScriptValue(QVariant::fromValue(value))});
}

SharedPtr<Object> ScriptBridge::fromScript(const QJSValue &value)
{
    const Inspector *inspector = Inspector::self();
    if (value.isBool())
        return inspector->createPrimitive(value.toBool());
    if (value.isNumber())
        return numberFrom(value.toNumber());
    if (value.isString())
        return inspector->createPrimitive(value.toString());
    if (value.isDate())
        return wrapDateTime(value.toDateTime());
    if (value.isArray())
        return ArrayClass::wrapObject(argumentsFrom(value));
    if (value.isCallable())
        return functionFrom(value);
    return heldObject(value);
}

SharedPtr<Object> ScriptBridge::functionFrom(const QJSValue &function)
{
    // The host may keep the function for longer than the engine lives.
    const QPointer<ScriptBridge> bridge(this);
    return FunctionClass::wrapObject(
        [bridge, function](const ObjectList &arguments) -> FunctionCallResult<SharedPtr<Object>> {
            if (!bridge)
                return Failure(u"The script that gave this function has ended."_s);
            QJSValue list = bridge->m_engine->newArray(uint(arguments.size()));
            for (qsizetype i = 0; i < arguments.size(); ++i)
                list.setProperty(quint32(i), bridge->toScript(arguments.at(i)));
            const QJSValue outcome = bridge->m_call.call({function, list});
            if (!outcome.hasProperty(u"value"_s)) // thrown, or the script is interrupted
                return Failure(outcome.property(u"error"_s).toString());
            return bridge->fromScript(outcome.property(u"value"_s));
        });
}

ObjectList ScriptBridge::argumentsFrom(const QJSValue &arguments)
{
    ObjectList list;
    const quint32 length = arguments.property(u"length"_s).toUInt();
    for (quint32 i = 0; i < length; ++i)
        list.append(fromScript(arguments.property(i)));
    return list;
}

SharedPtr<Object> ScriptBridge::objectFrom(const QJSValue &handle, const QString &member)
{
    const SharedPtr<Object> object = heldObject(handle);
    if (!object)
        throwError(u"'%1' was used on something that is no object of the object model."_s.arg(member));
    return object;
}

bool ScriptBridge::throwPending()
{
    Inspector *inspector = Inspector::self();
    if (!inspector->hasError())
        return false;
    throwError(inspector->takeError());
    return true;
}

void ScriptBridge::throwError(const QString &message)
{
    m_engine->throwError(message);
}

} // namespace Ostrel::Host
