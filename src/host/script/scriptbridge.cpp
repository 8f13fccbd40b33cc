#include "host/script/scriptbridge.h"

#include "host/script/verifications.h"
#include "ostrelhook/arrayclass.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/functionclass.h"
#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/valueclasses.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QJSEngine>
#include <QJsonArray>
#include <QJsonDocument>
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

/// Whether a call is a step of a test: methods that give nothing do something, and those that give a value
/// ask for it. The exceptions run code of the page or tell how it went.
bool changesSomething(const Method &method)
{
    static const QStringList doAndTell{u"activateItem"_s, u"call"_s, u"invoke"_s};
    return method.result().typeName() == "void"_L1 || doAndTell.contains(method.name());
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
    description.setProperty(
        u"actions"_s, ownNames<Method>(engine, firstMethod, type->numMethods(), method, changesSomething));
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

/// Functions that report by themselves; as statements they would be told twice.
const QStringList reporters{u"log"_s};

constexpr qsizetype longestArgument = 200;

QString quoted(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.sliced(1, list.size() - 2));
}

/// An argument for a reader of the report. Nothing is asked of the page for it.
QString argumentText(const QJSValue &value)
{
    if (const SharedPtr<Object> object = heldObject(value))
        return object->objectClass()->name();
    if (value.isCallable())
        return u"function"_s;
    if (value.isArray())
        return u"[...]"_s;
    if (!value.isString())
        return value.toString();
    const QString text = quoted(value.toString());
    return text.size() <= longestArgument ? text : text.first(longestArgument) + u'…';
}

QString argumentTexts(const QJSValue &arguments)
{
    QStringList texts;
    const quint32 length = arguments.property(u"length"_s).toUInt();
    for (quint32 i = 0; i < length; ++i)
        texts.append(argumentText(arguments.property(i)));
    return texts.join(u", "_s);
}

QString unknownMemberText(const SharedPtr<Object> &object, const QString &name)
{
    return u"%1 has no property or method '%2'."_s.arg(
        object ? object->objectClass()->name() : u"The object"_s, name);
}

FunctionCallResult<SharedPtr<Object>> objectFrom(const QJSValue &handle, const QString &member)
{
    if (SharedPtr<Object> object = heldObject(handle))
        return object;
    return Failure(u"'%1' was used on something that is no object of the object model."_s.arg(member));
}

/// A property and the object that has it.
struct OwnedProperty
{
    SharedPtr<Object> object;
    const Property *property = nullptr;
};

FunctionCallResult<OwnedProperty> findProperty(const QJSValue &handle, const QString &name)
{
    const FunctionCallResult<SharedPtr<Object>> object = objectFrom(handle, name);
    if (object.failed())
        return Failure(object.error);
    if (const Property *property = object.value->objectClass()->findProperty(name))
        return OwnedProperty{object.value, property};
    return Failure(unknownMemberText(object.value, name));
}

/// A value of the frame, or the error that it has noted on the way.
FunctionCallResult<SharedPtr<Object>> settled(const SharedPtr<Object> &value)
{
    Inspector *inspector = Inspector::self();
    if (inspector->hasError())
        return Failure(inspector->takeError());
    return value;
}

} // namespace

ScriptBridge::ScriptBridge(QJSEngine *engine, ResultSink &results) : m_engine(engine), m_results(results)
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
    const FunctionCallResult<OwnedProperty> found = findProperty(handle, name);
    if (found.failed())
        return give(Failure(found.error));
    const auto &[object, property] = found.value;
    return give(settled(object->objectClass()->read(object, property)));
}

void ScriptBridge::write(
    const QJSValue &handle, const QString &name, const QJSValue &value, const QString &stack)
{
    const FunctionCallResult<OwnedProperty> found = findProperty(handle, name);
    if (found.failed()) {
        give(Failure(found.error));
        return;
    }
    const SharedPtr<Object> object = found.value.object;
    const QString text = u"%1.%2 = %3"_s.arg(object->objectClass()->name(), name, argumentText(value));
    report(text, stack, [&] {
        object->objectClass()->write(object, found.value.property, fromScript(value));
        return settled(Inspector::self()->createVoid());
    });
}

QJSValue ScriptBridge::invoke(
    const QJSValue &handle, const QString &name, const QJSValue &arguments, const QString &stack)
{
    const FunctionCallResult<SharedPtr<Object>> object = objectFrom(handle, name);
    if (object.failed())
        return give(object);
    Class *type = object.value->objectClass();
    const ObjectList given = argumentsFrom(arguments);
    const FunctionCallResult<Method *> method = type->resolve(name, given);
    if (method.failed())
        return give(Failure(method.error));
    const auto call = [&] { return settled(type->call(object.value, given, method.value)); };
    if (stack.isEmpty() || !changesSomething(*method.value))
        return give(call());
    return report(u"%1.%2(%3)"_s.arg(type->name(), name, argumentTexts(arguments)), stack, call);
}

QJSValue ScriptBridge::invokeStatic(const QString &className, const QString &name, const QJSValue &arguments)
{
    Class *type = Inspector::self()->findClass(className);
    const ObjectList given = argumentsFrom(arguments);
    const FunctionCallResult<Method *> method = type->resolve(name, given);
    if (method.failed())
        return give(Failure(method.error));
    return give(settled(type->call(nullptr, given, method.value)));
}

QJSValue ScriptBridge::callGlobal(const QString &name, const QJSValue &arguments)
{
    return give(settled(Inspector::self()->globalClass()->callGlobal(name, argumentsFrom(arguments))));
}

QJSValue ScriptBridge::callStatement(const QString &name, const QJSValue &arguments, const QString &stack)
{
    if (reporters.contains(name))
        return callGlobal(name, arguments);
    return report(u"%1(%2)"_s.arg(name, argumentTexts(arguments)), stack, [&] {
        return settled(Inspector::self()->globalClass()->callGlobal(name, argumentsFrom(arguments)));
    });
}

QJSValue ScriptBridge::report(
    const QString &text, const QString &stack, const std::function<Result()> &statement)
{
    m_results.statementBegan({text, innermostPlace(stack)});
    QElapsedTimer elapsed;
    elapsed.start();
    const Result result = statement();
    m_results.statementEnded(double(elapsed.nsecsElapsed()) / 1e6, result.error);
    return give(result);
}

QJSValue ScriptBridge::give(const Result &result)
{
    if (!result.failed())
        return toScript(result.value);
    m_engine->throwError(result.error);
    return {};
}

QString ScriptBridge::text(const QJSValue &handle)
{
    const FunctionCallResult<SharedPtr<Object>> object = objectFrom(handle, u"toString"_s);
    if (object.failed()) {
        give(object);
        return {};
    }
    const QString text = objectAsText(object.value);
    give(settled(Inspector::self()->createVoid()));
    return text;
}

bool ScriptBridge::same(const QJSValue &a, const QJSValue &b)
{
    return objectsAreEqual(fromScript(a), fromScript(b));
}

QString ScriptBridge::unknownMember(const QJSValue &handle, const QString &name) const
{
    return unknownMemberText(heldObject(handle), name);
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

} // namespace Ostrel::Host
