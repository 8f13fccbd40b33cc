// Tests of script functions as arguments, and of parameters that take any value.
#include "ostrelhook/functionclass.h"
#include "ostrelhook/globalfunction.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

class FunctionClassTest : public testing::Test
{
protected:
    ~FunctionClassTest() override
    {
        for (const GlobalMethod *method : added)
            global->removeMethod(method);
    }

    template <typename Function>
    void add(const char *name, std::initializer_list<const char *> parameters, Function function)
    {
        added.append(addGlobalFunction(name, parameters, std::move(function)));
    }

    Inspector *inspector = Inspector::self();
    GlobalClass *global = inspector->globalClass();
    QList<GlobalMethod *> added;
};

TEST_F(FunctionClassTest, AFunctionIsAnArgumentLikeAnyOther)
{
    add("twice", {"function"}, [](const ScriptFunction &function) -> FunctionCallResult<QString> {
        const auto first = function({Inspector::self()->createPrimitive(1)});
        const auto second = function({Inspector::self()->createPrimitive(2)});
        return first.value->toQString() + second.value->toQString();
    });
    const SharedPtr<Object> given = FunctionClass::wrapObject(
        [this](const ObjectList &arguments) -> FunctionCallResult<SharedPtr<Object>> {
            return inspector->createPrimitive(u"<%1>"_s.arg(arguments.first()->toInt()));
        });

    EXPECT_EQ(global->callGlobal(u"twice"_s, {given})->toQString(), u"<1><2>"_s);
    EXPECT_EQ(global->callGlobal(u"twice"_s, {inspector->createPrimitive(5)}), nullptr);
    EXPECT_EQ(inspector->takeError(),
        u"No overload fits the call twice(int). Expected: twice(Function function)."_s);
}

TEST_F(FunctionClassTest, WhatIsNoFunctionIsEmpty)
{
    EXPECT_FALSE(FunctionClass::unwrapObject(nullptr));
    EXPECT_FALSE(FunctionClass::unwrapObject(inspector->createPrimitive(5)));
}

TEST_F(FunctionClassTest, AParameterOfAnyTypeTakesWhatNoOtherTakes)
{
    add("kind", {"value"}, [](const AnyValue &) { return FunctionCallResult<QString>(u"any"_s); });
    add("kind", {"value"}, [](int) { return FunctionCallResult<QString>(u"int"_s); });
    add("same", {"value"}, [](const AnyValue &value) { return FunctionCallResult<AnyValue>(value); });

    EXPECT_EQ(global->callGlobal(u"kind"_s, {inspector->createPrimitive(5)})->toQString(), u"int"_s);
    EXPECT_EQ(global->callGlobal(u"kind"_s, {inspector->createPrimitive(u"5"_s)})->toQString(), u"any"_s);
    EXPECT_EQ(global->callGlobal(u"kind"_s, {ArrayClass::wrapObject({})})->toQString(), u"any"_s);
    EXPECT_EQ(global->callGlobal(u"kind"_s, {nullptr})->toQString(), u"any"_s);
    EXPECT_EQ(global->callGlobal(u"same"_s, {inspector->createPrimitive(5)})->toInt(), 5);
}

} // namespace
