// Tests of the values that a test script holds of a page without being elements.
#include "wrappers/web/jsobject.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/pagescript.h"
#include "support/scriptcalls.h"

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

void registerClasses()
{
    createWebObjectClassesOnce();
    static JsObjectClass jsObjectClass(Inspector::self()->globalNamespace());
}

class JsObjects : public testing::Test
{
protected:
    static void SetUpTestSuite() { registerClasses(); }
    ~JsObjects() override { EXPECT_EQ(Inspector::self()->takeError(), QString()); }

    ScriptAnswer retrieve(const QString &code)
    {
        SharedPtr<Object> value = retrieveJSObject(&page, code);
        return {std::move(value), Inspector::self()->takeError()};
    }
    SharedPtr<Object> held() { return JsObjectClass::wrapObject({"top.__ostrel__jsobjects[7]", &page}); }
    QString sentCode() const { return page.scripts().isEmpty() ? QString() : page.scripts().last(); }

    FakePage page;
};

TEST_F(JsObjects, TheClassHasThreeMethods)
{
    EXPECT_EQ(classText(u"JsObject"_s), uR"(base none
property(String propertyName) Object
call(String methodName) Object
call(String methodName, Array arguments) Object)"_s);
    EXPECT_TRUE(Inspector::self()->findClass(u"JsObject"_s)->isScriptVisible());
}

TEST_F(JsObjects, CodeGoesIntoADoubleQuotedString)
{
    page.answer(uR"({"type":"void","object":"null"})"_s);

    retrieve(uR"js(say("it's \n"))js"_s);

    EXPECT_EQ(sentCode(), uR"js(__ostrel__retrieveJsObjectInfo("say(\"it's \\n\")");)js"_s);
    EXPECT_EQ(page.calls().last().timeoutMs, 0u);
}

TEST_F(JsObjects, HostileCodeArrivesAsItIs)
{
    for (const HostileText &hostile : hostileTexts()) {
        FakePage answering;
        answering.answer(uR"({"type":"void","object":"null"})"_s);
        retrieveJSObject(&answering, hostile.text);

        PageScript script({u"__ostrel__retrieveJsObjectInfo"_s});
        script.run(answering.scripts().last());
        EXPECT_EQ(script.error(), QString()) << hostile.name;
        EXPECT_EQ(script.arguments().first().toString(), hostile.text) << hostile.name;
    }
}

TEST_F(JsObjects, NoValueIsTheVoidValue)
{
    page.answer(uR"({"type":"void","object":"null"})"_s);

    const ScriptAnswer answer = retrieve(u"undefined"_s);

    EXPECT_EQ(answer.error, QString());
    EXPECT_EQ(answer.value->objectClass(), Inspector::self()->primitiveClass(PrimitiveType::Void));
}

TEST_F(JsObjects, NullIsANullObject)
{
    page.answer(uR"({"type":"null","object":"null"})"_s);

    const ScriptAnswer answer = retrieve(u"null"_s);

    EXPECT_EQ(answer.error, QString());
    ASSERT_TRUE(answer.value);
    EXPECT_TRUE(answer.value->isNull());
    EXPECT_EQ(answer.value->objectClass()->name(), u"JsObject"_s);
}

TEST_F(JsObjects, PrimitivesAreTheFrameworksOwn)
{
    using Primitive = Object::Primitive;
    const struct
    {
        QString record;
        Primitive value;
    } rows[] = {
        {uR"({"type":"string","object":"it's \"%1\""})"_s, uR"(it's "%1")"_s},
        {uR"({"type":"string","object":""})"_s, QString()},
        {uR"({"type":"string","object":"a\u0000b"})"_s, u"a\0b"_s},
        {uR"({"type":"boolean","object":true})"_s, true},
        {uR"({"type":"boolean","object":false})"_s, false},
        {uR"({"type":"number","object":42})"_s, 42},
        {uR"({"type":"number","object":-2147483648})"_s, std::numeric_limits<int>::min()},
        {uR"({"type":"number","object":2147483648})"_s, 2147483648.0},
        {uR"({"type":"number","object":0.5})"_s, 0.5},
        {uR"({"type":"number","object":1e+21})"_s, 1e21},
    };
    for (const auto &row : rows) {
        page.answer(row.record);

        const ScriptAnswer answer = retrieve(u"x"_s);

        EXPECT_EQ(answer.error, QString());
        ASSERT_TRUE(answer.value);
        EXPECT_EQ(answer.value->primitive(), row.value) << qPrintable(row.record);
    }
}

TEST_F(JsObjects, AnObjectIsHeldByItsNumber)
{
    page.answer(uR"({"type":"object","object":"12"})"_s);

    const ScriptAnswer answer = retrieve(u"[1,2]"_s);

    EXPECT_EQ(answer.error, QString());
    ASSERT_TRUE(answer.value);
    EXPECT_EQ(answer.value->objectClass()->name(), u"JsObject"_s);
    EXPECT_EQ(JsObjectClass::unwrapObject(answer.value).code, "top.__ostrel__jsobjects[12]");
    EXPECT_EQ(JsObjectClass::unwrapObject(answer.value).component, &page);
}

struct BadRecord
{
    const char *name;
    QString answer;
    QString error;
};

void PrintTo(const BadRecord &row, std::ostream *stream)
{
    *stream << row.name;
}

class BadRecords : public testing::TestWithParam<BadRecord>
{
protected:
    static void SetUpTestSuite() { registerClasses(); }
};

TEST_P(BadRecords, AreReported)
{
    FakePage page;
    page.answer(GetParam().answer);

    EXPECT_EQ(retrieveJSObject(&page, u"x"_s), nullptr);
    EXPECT_EQ(Inspector::self()->takeError(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(JsObjects, BadRecords,
    testing::Values(BadRecord{"no JSON", u"oops"_s,
                        u"Cannot parse JSon value: >>oops<<. * Line 1, Column 1\n"
                        "  Syntax error: value, object or array expected.\n"_s},
        BadRecord{"half a character", uR"({"type":"string","object":"\ud800"})"_s,
            uR"(Cannot parse JSon value: >>{"type":"string","object":"\ud800"}<<. * Line 1, Column 27
  additional six characters expected to parse unicode surrogate pair.
See Line 1, Column 34 for detail.
)"_s},
        BadRecord{"second half of a character", uR"({"type":"string","object":"\udc00"})"_s,
            uR"(Cannot convert json object to a string: >>{"type":"string","object":"\udc00"}<<)"_s},
        BadRecord{"no object", u"[1]"_s, u"Json value is not an object: >>[1]<<"_s},
        BadRecord{"no type", uR"({"object":1})"_s,
            uR"(Json value does not have type information: >>{"object":1}<<)"_s},
        BadRecord{"type null", uR"({"type":null,"object":1})"_s,
            uR"(Json type information is null: >>{"type":null,"object":1}<<)"_s},
        BadRecord{"object null", uR"({"type":"number","object":null})"_s,
            uR"(Json object is null: >>{"type":"number","object":null}<<)"_s},
        BadRecord{
            "object missing", uR"({"type":"number"})"_s, uR"(Json object is null: >>{"type":"number"}<<)"_s},
        BadRecord{"type no text", uR"({"type":5,"object":1})"_s,
            uR"(Json type information is not a string: >>{"type":5,"object":1}<<)"_s},
        BadRecord{"both null", uR"({"type":null,"object":null})"_s,
            uR"(Json type information is null: >>{"type":null,"object":null}<<)"_s},
        BadRecord{"type no text and object null", uR"({"type":5,"object":null})"_s,
            uR"(Json object is null: >>{"type":5,"object":null}<<)"_s},
        BadRecord{"id no number", uR"({"type":"object","object":"x"})"_s,
            uR"(Failed to read object id for: >>{"type":"object","object":"x"}<<)"_s},
        BadRecord{"id no text", uR"({"type":"object","object":1})"_s,
            uR"(Failed to read object id for: >>{"type":"object","object":1}<<)"_s},
        BadRecord{"string no text", uR"({"type":"string","object":1})"_s,
            uR"(Cannot convert json object to a string: >>{"type":"string","object":1}<<)"_s},
        BadRecord{"boolean no boolean", uR"({"type":"boolean","object":"true"})"_s,
            uR"(Cannot convert json object to a boolean: >>{"type":"boolean","object":"true"}<<)"_s},
        BadRecord{"number no number", uR"({"type":"number","object":"1"})"_s,
            uR"(Cannot convert json object to a number: >>{"type":"number","object":"1"}<<)"_s},
        BadRecord{
            "unknown type", uR"({"type":"symbol","object":"1"})"_s, u"Unhandled response type: symbol"_s},
        BadRecord{"exception without a name", uR"({"type":"exception","object":{}})"_s,
            u"Missing name property on object"_s},
        BadRecord{"exception that is no object", uR"({"type":"exception","object":"oops"})"_s,
            u"Missing name property on object"_s},
        BadRecord{"exception with a number",
            uR"({"type":"exception","object":{"name":"E","message":5,"file":"","line":"","stack":""}})"_s,
            u"Property message is not a string"_s},
        BadRecord{"exception without a place",
            uR"({"type":"exception","object":{"name":"E","message":"%3 oops","file":"","line":"3","stack":""}})"_s,
            u"Failed to retrieve Javascript Object, code threw exception: E: %3 oops"_s},
        BadRecord{"exception with all",
            uR"({"type":"exception","object":{"name":"E","message":"oops","file":"a.js","line":"3","stack":"f\ng"}})"_s,
            u"Failed to retrieve Javascript Object, code threw exception: E: oops\nat a.js:3\nStacktrace f\ng"_s}),
    [](const auto &row) { return QString::fromLatin1(row.param.name).replace(u' ', u'_').toStdString(); });

TEST_F(JsObjects, AFailureOfThePageIsTheScriptsError)
{
    for (const auto &[failed, threw] : {std::pair(true, false), std::pair(false, true)}) {
        page.failWith(u"gone"_s, failed, threw);

        const ScriptAnswer answer = retrieve(u"x"_s);

        EXPECT_EQ(answer.value, nullptr);
        EXPECT_EQ(answer.error, u"gone"_s);
    }
}

TEST_F(JsObjects, PropertiesAreReadByNameOrInBrackets)
{
    const struct
    {
        QString name;
        QString code;
    } rows[] = {
        {u"title"_s, u"top.__ostrel__jsobjects[7].title;"_s},
        {u"$_1"_s, u"top.__ostrel__jsobjects[7].$_1;"_s},
        {u"größe"_s, u"top.__ostrel__jsobjects[7].größe;"_s},
        {u"a\u200D\u203F\u0301"_s, u"top.__ostrel__jsobjects[7].a\u200D\u203F\u0301;"_s},
        {u"a\u200C\u0903"_s, u"top.__ostrel__jsobjects[7].a\u200C\u0903;"_s},
        {u"\u2160"_s, u"top.__ostrel__jsobjects[7].\u2160;"_s},
        {u"data-id"_s, uR"(top.__ostrel__jsobjects[7][\"data-id\"];)"_s},
        {u"0"_s, uR"(top.__ostrel__jsobjects[7][\"0\"];)"_s},
        {u"\u0301a"_s, u"top.__ostrel__jsobjects[7][\\\"\u0301a\\\"];"_s},
        {QString(), uR"(top.__ostrel__jsobjects[7][\"\"];)"_s},
        {uR"(a"b)"_s, uR"(top.__ostrel__jsobjects[7][\"a\\\"b\"];)"_s},
    };
    const SharedPtr<Object> object = held();
    for (const auto &row : rows) {
        page.answer(uR"({"type":"number","object":5})"_s);

        EXPECT_EQ(callMethod(object, u"property"_s, row.name).text(), u"5"_s);
        EXPECT_EQ(sentCode(), u"__ostrel__retrieveJsObjectInfo(\"%1\");"_s.arg(row.code));
    }
}

TEST_F(JsObjects, APropertyIsAskedForByText)
{
    EXPECT_EQ(
        callMethod(held(), u"property"_s, 5).error, u"JsObject::property: Requires a string argument"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(JsObjects, MethodsAreCalledWithAndWithoutArguments)
{
    const SharedPtr<Object> object = held();
    const SharedPtr<Object> element = wrapObject(new HTML_Object(QString(), u"top.store[1]"_s, &page));
    const ObjectList items{argument(1), argument(u"it's \"\\\""_s), argument(QList<int>{2, 3}), object,
        element, argument(true), argument(0.5), nullptr};
    page.answer(uR"({"type":"void","object":"null"})"_s);
    page.answer(uR"({"type":"void","object":"null"})"_s);

    Class *type = object->objectClass();
    EXPECT_EQ(callMethod(object, u"close"_s).error, u"JsObject has no method 'close'."_s);
    EXPECT_EQ(callMethod(object, u"call"_s, u"close"_s).error, QString());
    EXPECT_EQ(sentCode(), uR"js(__ostrel__retrieveJsObjectInfo("top.__ostrel__jsobjects[7].close();");)js"_s);
    type->invoke(2, object, {argument(u"open"_s), ArrayClass::wrapObject(items)}, type->method(2));
    EXPECT_EQ(sentCode(),
        uR"js(__ostrel__retrieveJsObjectInfo("top.__ostrel__jsobjects[7].open(1,\"it's \\\"\\\\\\\"\",[2,3],top.__ostrel__jsobjects[7],top.store[1],true,0.5,null);");)js"_s);
}

// Kept as is: unlike a property, a method goes behind a dot whatever its name is.
TEST_F(JsObjects, AMethodIsNeverCalledInBrackets)
{
    page.answer(uR"({"type":"void","object":"null"})"_s);

    EXPECT_EQ(callMethod(held(), u"call"_s, u"data-id"_s).error, QString());
    EXPECT_EQ(
        sentCode(), uR"js(__ostrel__retrieveJsObjectInfo("top.__ostrel__jsobjects[7].data-id();");)js"_s);
}

TEST_F(JsObjects, AListOfNumberTextAndListHasNoBlanks)
{
    const ObjectList items{argument(1), argument(u"two"_s), argument(QList<int>{3})};
    page.answer(uR"({"type":"void","object":"null"})"_s);

    const SharedPtr<Object> object = held();
    object->objectClass()->invoke(
        2, object, {argument(u"f"_s), ArrayClass::wrapObject(items)}, object->objectClass()->method(2));

    EXPECT_EQ(sentCode(),
        uR"js(__ostrel__retrieveJsObjectInfo("top.__ostrel__jsobjects[7].f(1,\"two\",[3]);");)js"_s);
}

TEST_F(JsObjects, HostileArgumentsStayTexts)
{
    for (const HostileText &hostile : hostileTexts()) {
        page.answer(uR"({"type":"void","object":"null"})"_s);
        callMethod(held(), u"call"_s, u"f"_s, QList<QString>{hostile.text});

        PageScript script({u"f"_s});
        script.run(
            u"var top = { __ostrel__jsobjects: [] }; top.__ostrel__jsobjects[7] = { f: f };"
            "function __ostrel__retrieveJsObjectInfo(code) { eval(code.replace('\u2028', '\\\\u2028')); }"_s);
        script.run(sentCode());
        EXPECT_EQ(script.error(), QString()) << hostile.name;
        EXPECT_EQ(script.arguments().first().toString(), hostile.text) << hostile.name;
    }
}

TEST_F(JsObjects, BadCallsSayWhatIsWrong)
{
    const SharedPtr<Object> object = held();
    Class *type = object->objectClass();
    const struct
    {
        int method;
        SharedPtr<Object> object;
        ObjectList arguments;
        QString error;
    } rows[] = {
        {0, nullptr, {}, u"JsObjectClass::invoke: Requires JsObject object"_s},
        {0, argument(5), {}, u"JsObjectClass::invoke: Requires JsObject object"_s},
        {0, type->wrap(nullptr, ObjectAttribute::Pointer()), {},
            u"JsObjectClass::invoke: Requires JsObject object"_s},
        {0, object, {}, u"JsObject::property: Requires exactly 1 argument"_s},
        {0, object, {argument(u"a"_s), argument(u"b"_s)},
            u"JsObject::property: Requires exactly 1 argument"_s},
        {0, object, {nullptr}, u"JsObject::property: Requires a string argument"_s},
        {1, object, {}, u"JsObject::call: Requires 1 or 2 arguments"_s},
        {2, object, {argument(1), argument(2), argument(3)}, u"JsObject::call: Requires 1 or 2 arguments"_s},
        {1, object, {argument(5)}, u"JsObject::call: Requires a string as first argument, got: int"_s},
        {2, object, {argument(u"f"_s), argument(u"x"_s)},
            u"JsObject::call: Requires a list as second argument, got: String"_s},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(type->invoke(row.method, row.object, row.arguments, type->method(row.method)), nullptr);
        EXPECT_EQ(Inspector::self()->takeError(), row.error);
    }
    EXPECT_EQ(type->method(3), nullptr);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(JsObjects, AValueOutlivesItsBridge)
{
    SharedPtr<Object> object;
    {
        FakePage other;
        object = JsObjectClass::wrapObject({"top.__ostrel__jsobjects[0]", &other});
    }

    EXPECT_EQ(callMethod(object, u"property"_s, u"x"_s).error,
        u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
        "findObject"_s);
}

TEST_F(JsObjects, OtherObjectsHoldNoId)
{
    EXPECT_EQ(JsObjectClass::unwrapObject(nullptr).code, QByteArray());
    EXPECT_EQ(JsObjectClass::unwrapObject(argument(5)).component, nullptr);
}

} // namespace
