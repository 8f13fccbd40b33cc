#include "wrappers/web/jsobject.h"

#include "ostrelhook/arrayclass.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/scripttext.h"

#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

using Value = FunctionCallResult<SharedPtr<Object>>;

constexpr auto className = "JsObject"_L1;

/// The ids of all objects of the class, so that a bridge that goes is taken out of them.
QSet<JsObjectId *> &liveIds()
{
    static QSet<JsObjectId *> ids;
    return ids;
}

// From the page's record to a value

/// A text member of the record of an exception.
FunctionCallResult<QString> memberText(const Json::Value &object, const char *name)
{
    const QString shown = QString::fromLatin1(name);
    if (!object.isObject() || !object.isMember(name))
        return Failure(message(u"Missing %1 property on object", shown));
    if (!object[name].isString())
        return Failure(message(u"Property %1 is not a string", shown));
    return QString::fromStdString(object[name].asString());
}

/// The message of an exception, or what is wrong with its record.
QString exceptionText(const Json::Value &object)
{
    enum Member { Name, Message, File, Line, Stack };
    constexpr std::array names{"name", "message", "file", "line", "stack"};
    std::array<QString, names.size()> texts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const FunctionCallResult<QString> text = memberText(object, names[i]);
        if (text.failed())
            return text.error;
        texts[i] = text.value;
    }
    QString text = message(
        u"Failed to retrieve Javascript Object, code threw exception: %1: %2", texts[Name], texts[Message]);
    if (!texts[File].isEmpty())
        text += message(u"\nat %1:%2", texts[File], texts[Line]);
    if (!texts[Stack].isEmpty())
        text += message(u"\nStacktrace %1", texts[Stack]);
    return text;
}

/// What a record is made into: its "object", the whole text for messages, and the page it came from.
struct Record
{
    const Json::Value &object;
    const QString &text;
    HTMLComponent *component;
};

Value heldObject(const Record &record)
{
    bool isNumber = false;
    int index = 0;
    if (record.object.isString())
        index = QString::fromStdString(record.object.asString()).toInt(&isNumber);
    if (!isNumber)
        return Failure(message(u"Failed to read object id for: >>%1<<", record.text));
    return JsObjectClass::wrapObject(
        {message(u"top.__ostrel__jsobjects[%1]", QString::number(index)).toUtf8(), record.component});
}

Value text(const Record &record)
{
    // Half a character of a page has no UTF-8 form; it is refused rather than replaced.
    QStringDecoder fromUtf8(QStringDecoder::Utf8);
    const QString value = record.object.isString()
        ? fromUtf8(QByteArray::fromStdString(record.object.asString()))
        : QString();
    if (!record.object.isString() || fromUtf8.hasError())
        return Failure(message(u"Cannot convert json object to a string: >>%1<<", record.text));
    return Inspector::self()->createPrimitive(value);
}

Value boolean(const Record &record)
{
    if (!record.object.isBool())
        return Failure(message(u"Cannot convert json object to a boolean: >>%1<<", record.text));
    return Inspector::self()->createPrimitive(record.object.asBool());
}

Value number(const Record &record)
{
    if (!record.object.isNumeric())
        return Failure(message(u"Cannot convert json object to a number: >>%1<<", record.text));
    if (record.object.isInt())
        return Inspector::self()->createPrimitive(record.object.asInt());
    return Inspector::self()->createPrimitive(record.object.asDouble());
}

struct RecordType
{
    QLatin1StringView name;
    Value (*read)(const Record &record);
};

constexpr std::array recordTypes{
    RecordType{"void"_L1, [](const Record &) -> Value { return Inspector::self()->createVoid(); }},
    RecordType{"null"_L1,
        [](const Record &) -> Value {
            return Inspector::self()->findClass(className)->wrap(nullptr, ObjectAttribute::Pointer());
        }},
    RecordType{"object"_L1, heldObject},
    RecordType{"string"_L1, text},
    RecordType{"boolean"_L1, boolean},
    RecordType{"number"_L1, number},
    RecordType{
        "exception"_L1, [](const Record &record) -> Value { return Failure(exceptionText(record.object)); }},
};

Value valueFromRecord(const QString &answer, HTMLComponent *component)
{
    const ParsedJson parsed = parseJson(answer);
    if (parsed.outcome != ParsedJson::Outcome::Parsed)
        return Failure(message(u"Cannot parse JSon value: >>%1<<. %2", answer, parsed.error));
    const Json::Value &root = parsed.root;
    if (!root.isObject())
        return Failure(message(u"Json value is not an object: >>%1<<", answer));
    if (!root.isMember("type"))
        return Failure(message(u"Json value does not have type information: >>%1<<", answer));
    if (root["type"].isNull())
        return Failure(message(u"Json type information is null: >>%1<<", answer));
    if (root["object"].isNull())
        return Failure(message(u"Json object is null: >>%1<<", answer));
    if (!root["type"].isString())
        return Failure(message(u"Json type information is not a string: >>%1<<", answer));
    const QString typeName = QString::fromStdString(root["type"].asString());
    for (const RecordType &type : recordTypes) {
        if (type.name == typeName)
            return type.read({root["object"], answer, component});
    }
    return Failure(message(u"Unhandled response type: %1", typeName));
}

Value retrieve(HTMLComponent *component, const QString &code)
{
    if (!component)
        return Failure(QString::fromUtf16(deadElementMessage));
    const HTMLComponent::EvalResult answer = component->evaluateJavaScript(
        script(u"__ostrel__retrieveJsObjectInfo(\"%1\");", DoubleQuoted{code}), 0);
    if (answer.failed || answer.threw)
        return Failure(answer.result);
    return valueFromRecord(answer.result, component);
}

// From a script's call to code

bool isIdentifierStart(char32_t c)
{
    return c == U'_' || c == U'$' || QChar::isLetter(c) || QChar::category(c) == QChar::Number_Letter;
}

bool isIdentifierPart(char32_t c)
{
    constexpr char32_t zeroWidthNonJoiner = 0x200C;
    constexpr char32_t zeroWidthJoiner = 0x200D;
    if (isIdentifierStart(c) || c == zeroWidthNonJoiner || c == zeroWidthJoiner)
        return true;
    constexpr std::array further{QChar::Mark_NonSpacing, QChar::Mark_SpacingCombining,
        QChar::Number_DecimalDigit, QChar::Punctuation_Connector};
    return std::find(further.begin(), further.end(), QChar::category(c)) != further.end();
}

bool isIdentifier(const QString &name)
{
    const QList<uint> characters = name.toUcs4();
    return !characters.isEmpty() && isIdentifierStart(characters.first())
        && std::all_of(characters.begin() + 1, characters.end(), isIdentifierPart);
}

bool isText(const SharedPtr<Object> &object)
{
    return object && object->objectClass() == Inspector::self()->primitiveClass(PrimitiveType::String);
}

bool isJsObject(const SharedPtr<Object> &object)
{
    return object && object->data() && object->objectClass()->name() == className;
}

QString classNameOf(const SharedPtr<Object> &object)
{
    return object ? object->objectClass()->name() : u"null"_s;
}

QString literals(const ObjectList &values);

/// A script value as page script.
QString literal(const SharedPtr<Object> &value)
{
    bool isArray = false;
    const ObjectList items = ArrayClass::unwrapObject(value, &isArray);
    if (isArray)
        return script(u"[%1]", Expr{literals(items)});
    if (isText(value))
        return script(u"\"%1\"", DoubleQuoted{value->toQString()});
    if (isJsObject(value))
        return QString::fromUtf8(JsObjectClass::unwrapObject(value).code);
    return objectAsText(value);
}

QString literals(const ObjectList &values)
{
    QStringList texts;
    for (const SharedPtr<Object> &value : values)
        texts.append(literal(value));
    return texts.join(u',');
}

FunctionCallResult<QString> propertyCode(const Expr &object, const ObjectList &arguments)
{
    if (arguments.size() != 1)
        return Failure(u"JsObject::property: Requires exactly 1 argument"_s);
    if (!isText(arguments.first()))
        return Failure(u"JsObject::property: Requires a string argument"_s);
    const QString name = arguments.first()->toQString();
    if (isIdentifier(name))
        return script(u"%1.%2;", object, Expr{name});
    return script(u"%1[\"%2\"];", object, DoubleQuoted{name});
}

FunctionCallResult<QString> callCode(const Expr &object, const ObjectList &arguments)
{
    if (arguments.isEmpty() || arguments.size() > 2)
        return Failure(u"JsObject::call: Requires 1 or 2 arguments"_s);
    if (!isText(arguments.first())) {
        return Failure(message(
            u"JsObject::call: Requires a string as first argument, got: %1", classNameOf(arguments.first())));
    }
    const Expr method{arguments.first()->toQString()};
    if (arguments.size() == 1)
        return script(u"%1.%2();", object, method);
    bool isArray = false;
    const ObjectList items = ArrayClass::unwrapObject(arguments.last(), &isArray);
    if (!isArray) {
        return Failure(message(
            u"JsObject::call: Requires a list as second argument, got: %1", classNameOf(arguments.last())));
    }
    return script(u"%1.%2(%3);", object, method, Expr{literals(items)});
}

struct MethodRow
{
    QLatin1StringView name;
    QList<Argument> (*parameters)();
    FunctionCallResult<QString> (*code)(const Expr &object, const ObjectList &arguments);
};

Argument textParameter(const QString &name)
{
    return Argument(name, u"String"_s, ObjectAttribute::Pointer(), nullptr);
}

constexpr std::array methodRows{
    MethodRow{"property"_L1, [] { return QList{textParameter(u"propertyName"_s)}; }, propertyCode},
    MethodRow{"call"_L1, [] { return QList{textParameter(u"methodName"_s)}; }, callCode},
    MethodRow{"call"_L1,
        [] {
            return QList{textParameter(u"methodName"_s), ArrayClass::arrayClassArg(u"arguments"_s)};
        },
        callCode},
};

} // namespace

JsObjectClass::JsObjectClass(Namespace *home) : Class(className, home)
{
    setOwnMembers(int(methodRows.size()), 0);
}

SharedPtr<Object> JsObjectClass::wrapObject(const JsObjectId &id)
{
    auto *copy = new JsObjectId(id);
    liveIds().insert(copy);
    SharedPtr<Object> object
        = Inspector::self()->findClass(className)->wrap(copy, ObjectAttribute::Pointer());
    object->setOwning(true);
    return object;
}

JsObjectId JsObjectClass::unwrapObject(const SharedPtr<Object> &object)
{
    return isJsObject(object) ? *static_cast<JsObjectId *>(object->data()) : JsObjectId();
}

SharedPtr<Object> JsObjectClass::invoke(
    int index, const SharedPtr<Object> &object, const ObjectList &arguments, const Method *)
{
    Inspector *inspector = Inspector::self();
    const int local = index - superClassOffset(Methods);
    if (!isJsObject(object)) {
        inspector->raiseError(u"JsObjectClass::invoke: Requires JsObject object"_s);
        return {};
    }
    if (local < 0 || local >= int(methodRows.size()))
        return {};
    const JsObjectId id = unwrapObject(object);
    const FunctionCallResult<QString> code
        = methodRows[std::size_t(local)].code(Expr{QString::fromUtf8(id.code)}, arguments);
    if (code.failed()) {
        inspector->raiseError(code.error);
        return {};
    }
    return retrieveJSObject(id.component, code.value);
}

void JsObjectClass::deleteObjectData(Object *object)
{
    auto *id = static_cast<JsObjectId *>(object->data());
    liveIds().remove(id);
    delete id;
}

std::unique_ptr<Method> JsObjectClass::createMethod(int index) const
{
    const int local = index - superClassOffset(Methods);
    if (local < 0 || local >= int(methodRows.size()))
        return {};
    const MethodRow &row = methodRows[std::size_t(local)];
    return std::make_unique<Method>(const_cast<JsObjectClass *>(this),
        Argument(u"Object"_s, ObjectAttribute::Pointer()), row.name, Signature(row.parameters()), 0, index);
}

SharedPtr<Object> retrieveJSObject(HTMLComponent *component, const QString &code)
{
    const Value value = retrieve(component, code);
    if (value.failed())
        Inspector::self()->raiseError(value.error);
    return value.value;
}

void forgetJsObjectsOf(const HTMLComponent *component)
{
    for (JsObjectId *id : std::as_const(liveIds())) {
        if (id->component == component)
            id->component = nullptr;
    }
}

} // namespace Ostrel::WebWrapper
