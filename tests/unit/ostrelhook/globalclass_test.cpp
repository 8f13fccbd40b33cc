// Tests of the global class: functions without an object, and events.
#include "ostrelhook/eventdata.h"
#include "ostrelhook/globalfunction.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

class GlobalClassTest : public testing::Test
{
protected:
    ~GlobalClassTest() override
    {
        for (const GlobalMethod *method : added)
            global->removeMethod(method);
        inspector->setNoteReceiver(nullptr);
        EXPECT_EQ(inspector->takeError(), QString());
    }

    template <typename Function>
    GlobalMethod *add(const char *name, std::initializer_list<const char *> parameters, Function function)
    {
        added.append(addGlobalFunction(name, parameters, std::move(function)));
        return added.last();
    }

    SharedPtr<Object> call(const QString &name, const ObjectList &arguments)
    {
        return global->callGlobal(name, arguments);
    }

    Inspector *inspector = Inspector::self();
    GlobalClass *global = inspector->globalClass();
    QList<GlobalMethod *> added;
};

TEST_F(GlobalClassTest, AFunctionIsCalledWithItsOwnTypes)
{
    const GlobalMethod *join = add("join", {"text", "times"},
        [](const QString &text, int times) { return FunctionCallResult<QString>(text.repeated(times)); });

    const SharedPtr<Object> result
        = call(u"join"_s, {inspector->createPrimitive(u"ab"_s), inspector->createPrimitive(3)});

    ASSERT_TRUE(result);
    EXPECT_EQ(result->toQString(), u"ababab"_s);
    EXPECT_EQ(join->signature().at(1).name(), u"times"_s);
    EXPECT_EQ(join->signature().at(1).typeName(), u"int"_s);
    EXPECT_EQ(join->result().typeName(), u"String"_s);
}

TEST_F(GlobalClassTest, FunctionsOfOneNameAreOverloads)
{
    add("kindOf", {"i"}, [](int) { return FunctionCallResult<QString>(u"int"_s); });
    add("kindOf", {"t"}, [](const QString &) { return FunctionCallResult<QString>(u"text"_s); });

    EXPECT_EQ(global->findGlobalMethods(u"kindOf"_s).size(), 2);
    EXPECT_EQ(call(u"kindOf"_s, {inspector->createPrimitive(1)})->toQString(), u"int"_s);
    EXPECT_EQ(call(u"kindOf"_s, {inspector->createPrimitive(u"1"_s)})->toQString(), u"text"_s);
}

TEST_F(GlobalClassTest, AFailureIsAScriptError)
{
    add("refuse", {}, [] { return FunctionCallResult<void>(Failure(u"No: %1"_s)); });

    EXPECT_FALSE(call(u"refuse"_s, {}));

    EXPECT_EQ(inspector->takeError(), u"No: %1"_s);
}

TEST_F(GlobalClassTest, AFunctionWithoutResultGivesVoid)
{
    add("nothing", {}, [] { return FunctionCallResult<void>(); });

    const SharedPtr<Object> result = call(u"nothing"_s, {});

    ASSERT_TRUE(result);
    EXPECT_EQ(result->objectClass()->name(), u"void"_s);
}

TEST_F(GlobalClassTest, BadCallsSayWhatIsThere)
{
    add("measure", {"text"}, [](const QString &) { return FunctionCallResult<void>(); });

    EXPECT_FALSE(call(u"measure"_s, {}));
    EXPECT_EQ(
        inspector->takeError(), u"No overload fits the call measure(). Expected: measure(String text)."_s);
    EXPECT_FALSE(call(u"measurE"_s, {}));
    EXPECT_EQ(inspector->takeError(), u"There is no function 'measurE'."_s);
}

TEST_F(GlobalClassTest, EveryUseOfADeprecatedFunctionIsNoted)
{
    QStringList notes;
    inspector->setNoteReceiver([&notes](const QString &note) { notes.append(note); });
    add("old", {}, [] { return FunctionCallResult<void>(); })->deprecate(u"Use new."_s);

    call(u"old"_s, {});
    call(u"old"_s, {});

    EXPECT_EQ(notes, (QStringList{u"Use new."_s, u"Use new."_s}));
}

TEST_F(GlobalClassTest, ARemovedFunctionIsGone)
{
    const GlobalMethod *passing = addGlobalFunction("passing", {}, [] { return FunctionCallResult<void>(); });
    EXPECT_TRUE(global->globalMethods().contains(passing));

    global->removeMethod(passing);

    EXPECT_TRUE(global->findGlobalMethods(u"passing"_s).isEmpty());
}

TEST_F(GlobalClassTest, AFunctionMayBeTakenAwayWhileItRuns)
{
    GlobalMethod *method = nullptr;
    const auto kept = std::make_shared<QString>(u"still here"_s);
    method = addGlobalFunction("leave", {}, [this, &method, kept] {
        global->removeMethod(method);
        return FunctionCallResult<QString>(*kept);
    });

    EXPECT_EQ(call(u"leave"_s, {})->toQString(), u"still here"_s);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(GlobalClassTest, EventsAreFoundByName)
{
    const int before = global->numEvents();
    const Argument x(u"x"_s, u"int"_s, ObjectAttribute::Value(), nullptr);
    global->addEvent(
        std::make_unique<Event>(global, u"poke"_s, Signature({x, x, Argument()}), true, global->numEvents()));

    const Event *poke = global->event(u"poke"_s);

    ASSERT_TRUE(poke);
    EXPECT_EQ(global->numEvents(), before + 1);
    EXPECT_EQ(poke->name(), u"poke"_s);
    EXPECT_EQ(poke->id(), before);
    EXPECT_EQ(poke->signature().count(), 2);
    EXPECT_EQ(poke->owner(), global);
    EXPECT_TRUE(poke->isInput());
    EXPECT_EQ(global->event(u"Poke"_s), nullptr);
}

TEST_F(GlobalClassTest, EventDataTellsEventsFromStatements)
{
    const Event press(global, u"press"_s, Signature(), true, 0);
    const SharedPtr<Object> three = inspector->createPrimitive(3);

    const EventData raw(&press, u"{tagName='A'}"_s, {three});
    const EventData statement = EventData::methodCall(u"chooseColor"_s, u"{id='c'}"_s, {three});

    EXPECT_EQ(int(raw.kind()), 0);
    EXPECT_EQ(raw.eventName(), u"press"_s);
    EXPECT_EQ(raw.methodName(), QString());
    EXPECT_EQ(raw.objectId(), u"{tagName='A'}"_s);
    EXPECT_EQ(raw.argument(0), three);
    EXPECT_EQ(raw.argument(1), nullptr);
    EXPECT_EQ(int(statement.kind()), 1);
    EXPECT_EQ(statement.methodName(), u"chooseColor"_s);
    EXPECT_EQ(statement.eventName(), QString());
    EXPECT_EQ(statement.objectId(), u"{id='c'}"_s);
    EXPECT_EQ(EventData().eventName(), QString());
}

} // namespace
