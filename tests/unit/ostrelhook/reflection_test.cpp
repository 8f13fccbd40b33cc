// Tests of the reflection frame: numbers of members, calls, errors and who owns what.
#include "samplewidgets.h"

#include "ostrelhook/namespace.h"
#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

/// What a test leaves pending as a script error, it did not expect.
class ReflectionTest : public testing::Test
{
protected:
    ~ReflectionTest() override
    {
        EXPECT_EQ(inspector->takeError(), QString());
        EXPECT_EQ(Widget::count, 0);
    }

    Inspector *inspector = Inspector::self();
    QStringList log;
};

constexpr MethodRow oneMethod[] = {method<&Widget::fail>("first")};
constexpr MethodRow otherMethod[] = {method<&Widget::fail>("second")};
constexpr PropertyRow oneProperty[] = {property<&Widget::title>("title")};
constexpr PropertyRow otherProperty[] = {property<&Widget::width>("width")};
constexpr ClassTable lateBase{"Late_Base", nullptr, oneProperty, oneMethod};
constexpr ClassTable lateDerived{"Late_Derived", "Late_Base", otherProperty, otherMethod};

TEST_F(ReflectionTest, BaseClassMayBeCreatedAfterItsSubclass)
{
    Namespace *home = inspector->globalNamespace();

    const auto *derived = new TableClass(lateDerived, widgetFamily, home);
    EXPECT_EQ(derived->superClass(), nullptr);
    EXPECT_EQ(derived->numMethods(), 1);
    EXPECT_EQ(derived->superClassOffset(Class::Properties), 0);

    const auto *base = new TableClass(lateBase, widgetFamily, home);
    EXPECT_EQ(derived->superClass(), base);
    EXPECT_EQ(derived->numMethods(), 2);
    EXPECT_EQ(derived->numProperties(), 2);
    EXPECT_EQ(derived->superClassOffset(Class::Properties), 1);
    EXPECT_EQ(derived->superClassOffset(Class::Methods), 1);
    EXPECT_EQ(derived->superClassOffset(Class::Enums), 0);
    EXPECT_EQ(derived->method(0), base->method(0));
    EXPECT_EQ(derived->method(1)->name(), u"second"_s);
    EXPECT_EQ(derived->method(1)->id(), 1);
    EXPECT_EQ(derived->property(1)->name(), u"width"_s);
    EXPECT_EQ(derived->property(1)->id(), 1);
}

TEST_F(ReflectionTest, ClassesAreFoundByNameInTheOrderOfTheirCreation)
{
    const SampleClasses &classes = sampleClasses();
    const QList<Class *> all = inspector->globalNamespace()->classes();

    EXPECT_EQ(inspector->findClass(u"Sample_Button"_s), classes.button);
    EXPECT_EQ(inspector->globalNamespace()->getClass(u"Sample_Widget"_s), classes.widget);
    EXPECT_EQ(inspector->findClass(u"sample_button"_s), nullptr);
    EXPECT_LT(all.indexOf(classes.button), all.indexOf(classes.widget));
}

TEST_F(ReflectionTest, AClassLeavesItsNamespaceWhenItGoes)
{
    Namespace home;
    {
        const Class passing(u"Passing"_s, &home);
        EXPECT_EQ(home.getClass(u"Passing"_s), &passing);
    }
    EXPECT_EQ(home.getClass(u"Passing"_s), nullptr);
    EXPECT_TRUE(home.classes().isEmpty());
}

TEST_F(ReflectionTest, InheritsFollowsTheChain)
{
    const SampleClasses &classes = sampleClasses();

    EXPECT_TRUE(classes.button->inherits(classes.button));
    EXPECT_TRUE(classes.button->inherits(classes.widget));
    EXPECT_FALSE(classes.widget->inherits(classes.button));
    EXPECT_FALSE(classes.widget->inherits(nullptr));
}

TEST_F(ReflectionTest, MembersAreMadeOnceAndOnlyInRange)
{
    const TableClass *button = sampleClasses().button;
    const int last = button->numMethods() - 1;

    EXPECT_EQ(button->method(last), button->method(last));
    EXPECT_EQ(button->method(-1), nullptr);
    EXPECT_EQ(button->method(button->numMethods()), nullptr);
    EXPECT_EQ(button->property(-1), nullptr);
    EXPECT_EQ(button->property(button->numProperties()), nullptr);
    EXPECT_EQ(button->enumeration(0), nullptr);
}

TEST_F(ReflectionTest, SignaturesComeFromTheOperations)
{
    const TableClass *widget = sampleClasses().widget;
    const Method *moveTo = widget->method(3);
    const Method *create = widget->method(widget->numMethods() - 1);
    const Property *title = widget->property(0);
    const Property *width = widget->property(1);

    ASSERT_EQ(moveTo->signature().count(), 3);
    EXPECT_EQ(moveTo->signature().at(1).name(), u"y"_s);
    EXPECT_EQ(moveTo->signature().at(1).typeName(), u"int"_s);
    EXPECT_EQ(moveTo->signature().at(1).attribute(), ObjectAttribute::Value());
    EXPECT_EQ(moveTo->signature().at(2).typeName(), u"bool"_s);
    EXPECT_EQ(moveTo->result().typeName(), u"void"_s);
    EXPECT_EQ(moveTo->owner(), widget);
    EXPECT_EQ(moveTo->id(), 3);
    EXPECT_EQ(create->result().type(), widget);
    EXPECT_EQ(create->result().attribute(), ObjectAttribute::Pointer());
    EXPECT_EQ(create->signature().at(0).typeName(), u"String"_s);
    EXPECT_TRUE(title->isReadOnly());
    EXPECT_EQ(title->type().type(), inspector->primitiveClass(PrimitiveType::String));
    EXPECT_TRUE(title->type().isPrimitive());
    EXPECT_FALSE(create->result().isPrimitive());
    EXPECT_FALSE(width->isReadOnly());
}

TEST_F(ReflectionTest, EmptyArgumentsAtTheEndOfASignatureDoNotCount)
{
    const Argument x(u"x"_s, u"int"_s, ObjectAttribute::Value(), nullptr);
    QList<Argument> slots_{x, x};
    slots_.resize(16);

    EXPECT_EQ(Signature(slots_).count(), 2);
    EXPECT_EQ(Signature().count(), 0);
    EXPECT_TRUE(Argument().isEmpty());
    EXPECT_EQ(Argument(u"x"_s, u"Nobody"_s, ObjectAttribute::Value(), nullptr).type(), nullptr);
}

TEST_F(ReflectionTest, FilledInArgumentsStandBehindThoseOfTheScript)
{
    const SharedPtr<Object> widget = wrapped(new Widget(&log));

    callByName(widget, u"moveTo"_s, {});
    callByName(widget, u"moveTo"_s, argumentList(3));
    callByName(widget, u"moveTo"_s, argumentList(3, 4));
    callByName(widget, u"moveTo"_s, argumentList(3, 4, true));

    EXPECT_EQ(log,
        (QStringList{u"moveTo(0, 0, false)"_s, u"moveTo(3, 0, false)"_s, u"moveTo(3, 4, false)"_s,
            u"moveTo(3, 4, true)"_s}));
}

TEST_F(ReflectionTest, AMethodWithoutResultGivesVoid)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    const SharedPtr<Object> result = callByName(widget, u"moveTo"_s, {});

    ASSERT_TRUE(result);
    EXPECT_EQ(result->objectClass(), inspector->primitiveClass(PrimitiveType::Void));
}

TEST_F(ReflectionTest, BaseMembersAreReachedThroughADerivedObject)
{
    const SharedPtr<Object> button = wrapped(new Button(&log));

    callByName(button, u"moveTo"_s, argumentList(1));
    callByName(button, u"press"_s, {});

    EXPECT_EQ(log, (QStringList{u"moveTo(1, 0, false)"_s, u"press()"_s}));
    EXPECT_EQ(readByName(button, u"width"_s)->toInt(), 10);
}

TEST_F(ReflectionTest, AMostDerivedPropertyHidesThoseOfItsName)
{
    const SharedPtr<Object> button = wrapped(new Button);

    EXPECT_EQ(readByName(button, u"title"_s)->toQString(), u"a button's title"_s);
    EXPECT_EQ(button->objectClass()->findProperty(u"Title"_s), nullptr);
}

TEST_F(ReflectionTest, PropertiesAreReadAndWritten)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    EXPECT_TRUE(writeByName(widget, u"width"_s, inspector->createPrimitive(25)));

    EXPECT_EQ(readByName(widget, u"width"_s)->toInt(), 25);
}

TEST_F(ReflectionTest, WritingAReadOnlyPropertyFails)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    EXPECT_FALSE(writeByName(widget, u"title"_s, inspector->createPrimitive(u"x"_s)));

    EXPECT_EQ(inspector->takeError(), u"Cannot set read-only property title."_s);
}

TEST_F(ReflectionTest, FailuresReachTheScriptWordForWord)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    EXPECT_FALSE(callByName(widget, u"fail"_s, {}));
    EXPECT_EQ(inspector->takeError(), u"It failed: %1 'x'\n"_s);
    EXPECT_FALSE(readByName(widget, u"broken"_s));
    EXPECT_EQ(inspector->takeError(), u"It failed: %1 'x'\n"_s);
    EXPECT_FALSE(writeByName(widget, u"width"_s, inspector->createPrimitive(-1)));
    EXPECT_EQ(inspector->takeError(), u"Error setting width: %1 is negative"_s);
}

TEST_F(ReflectionTest, TheFirstErrorOfAStatementCounts)
{
    inspector->raiseError(u"first"_s);
    inspector->raiseError(u"second"_s);

    EXPECT_TRUE(inspector->hasError());
    EXPECT_EQ(inspector->takeError(), u"first"_s);
    EXPECT_FALSE(inspector->hasError());
}

TEST_F(ReflectionTest, AnErrorAlwaysHasAText)
{
    inspector->raiseError(QString());

    EXPECT_EQ(inspector->takeError(), u"Unknown error"_s);
    EXPECT_EQ(FunctionCallResult<int>(Failure(QString())).error, u"Unknown error"_s);
}

TEST_F(ReflectionTest, ADeadWrapperRefusesEveryMember)
{
    auto *dead = new Widget(&log);
    dead->alive = false;
    const SharedPtr<Object> widget = wrapped(dead);

    EXPECT_FALSE(callByName(widget, u"moveTo"_s, {}));
    EXPECT_EQ(inspector->takeError(), u"The widget is gone."_s);
    EXPECT_FALSE(readByName(widget, u"title"_s));
    EXPECT_EQ(inspector->takeError(), u"The widget is gone."_s);
    EXPECT_FALSE(writeByName(widget, u"title"_s, inspector->createPrimitive(u"x"_s)));
    EXPECT_EQ(inspector->takeError(), u"The widget is gone."_s);
    EXPECT_EQ(log, QStringList());
}

TEST_F(ReflectionTest, ANullObjectHasNoMembers)
{
    const SharedPtr<Object> null = wrapped(nullptr);

    EXPECT_TRUE(null->isNull());
    EXPECT_FALSE(callByName(null, u"moveTo"_s, {}));
    EXPECT_EQ(inspector->takeError(), u"Cannot call 'moveTo' on a null object."_s);
    EXPECT_FALSE(readByName(null, u"title"_s));
    EXPECT_EQ(inspector->takeError(), u"Cannot access 'title' of a null object."_s);
}

TEST_F(ReflectionTest, MembersAreOnlyForObjectsOfTheirClass)
{
    const SharedPtr<Object> widget = wrapped(new Widget);
    Class *button = sampleClasses().button;
    const Method *press = button->findMethods(u"press"_s).constFirst();

    EXPECT_FALSE(button->call(widget, {}, press));
    EXPECT_EQ(inspector->takeError(),
        u"Cannot call 'Sample_Button.press' on an object of class 'Sample_Widget'."_s);
    EXPECT_FALSE(button->read(widget, button->findProperty(u"title"_s)));
    EXPECT_EQ(inspector->takeError(),
        u"Cannot access 'Sample_Button.title' of an object of class 'Sample_Widget'."_s);
    EXPECT_FALSE(button->read(wrapDateTime({}), button->findProperty(u"width"_s)));
    EXPECT_EQ(
        inspector->takeError(), u"Cannot access 'Sample_Widget.width' of an object of class 'DateTime'."_s);
}

TEST_F(ReflectionTest, ACallWithAWrongNumberOfArgumentsIsRefused)
{
    const SharedPtr<Object> widget = wrapped(new Widget(&log));
    Class *type = sampleClasses().widget;

    EXPECT_FALSE(type->call(widget, argumentList(1, 2), type->method(0)));

    EXPECT_EQ(inspector->takeError(), u"Sample_Widget.moveTo takes 0 arguments, but 2 were given."_s);
    EXPECT_EQ(log, QStringList());
}

TEST_F(ReflectionTest, AScriptObjectFreesItsWrapperWithItsLastHolder)
{
    SharedPtr<Object> first = wrapped(new Button);
    SharedPtr<Object> second = first;

    EXPECT_EQ(Widget::count, 1);
    first.reset();
    EXPECT_EQ(Widget::count, 1);
    second.reset();
    EXPECT_EQ(Widget::count, 0);
}

TEST_F(ReflectionTest, AnObjectThatDoesNotOwnItsWrapperLeavesIt)
{
    Widget widget;

    sampleClasses().widget->wrap(&widget, ObjectAttribute::Pointer()).reset();

    EXPECT_EQ(Widget::count, 1);
}

TEST_F(ReflectionTest, ANewWrapperIsWrappedByItsOwnClassAndOwned)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    const SharedPtr<Object> button = callByName(widget, u"create"_s, argumentList(u"button"_s));

    ASSERT_TRUE(button);
    EXPECT_EQ(button->objectClass(), sampleClasses().button);
    EXPECT_TRUE(button->isOwning());
    EXPECT_EQ(Widget::count, 2);
}

TEST_F(ReflectionTest, AWrapperOfAnUnknownClassCountsAsItsDeclaredOne)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    const SharedPtr<Object> gauge = callByName(widget, u"create"_s, argumentList(u"gauge"_s));

    ASSERT_TRUE(gauge);
    EXPECT_EQ(gauge->objectClass(), sampleClasses().widget);
}

TEST_F(ReflectionTest, NoWrapperGivesTheNullObjectOfItsClass)
{
    const SharedPtr<Object> widget = wrapped(new Widget);

    const SharedPtr<Object> none = callByName(widget, u"create"_s, argumentList(u"none"_s));

    ASSERT_TRUE(none);
    EXPECT_TRUE(none->isNull());
    EXPECT_FALSE(none->isOwning());
    EXPECT_EQ(none->objectClass(), sampleClasses().widget);
}

TEST_F(ReflectionTest, AnArrayCrossesItemByItem)
{
    const SharedPtr<Object> widget = wrapped(new Widget);
    const SharedPtr<Object> items = ArrayClass::wrapObject(argumentList(u"a"_s, u"b\"'"_s));

    const SharedPtr<Object> result = callByName(widget, u"reversed"_s, {items});

    QStringList texts;
    for (const SharedPtr<Object> &item : ArrayClass::unwrapObject(result))
        texts.append(item->toQString());
    EXPECT_EQ(texts, (QStringList{u"b\"'"_s, u"a"_s}));
}

TEST_F(ReflectionTest, AnArrayItemOfAnotherClassIsNoWrapper)
{
    const SharedPtr<Object> widget = wrapped(new Widget);
    const SharedPtr<Object> items = ArrayClass::wrapObject(
        {wrapped(new Button), nullptr, wrapDateTime({}), inspector->createPrimitive(1), wrapped(nullptr)});

    EXPECT_EQ(callByName(widget, u"countWidgets"_s, {items})->toInt(), 1);
}

TEST_F(ReflectionTest, EveryUseOfADeprecatedMethodIsNoted)
{
    QStringList notes;
    inspector->setNoteReceiver([&notes](const QString &note) { notes.append(note); });
    const SharedPtr<Object> button = wrapped(new Button);
    sampleClasses().button->findMethods(u"press"_s).constFirst()->deprecate(u"Press no more."_s);

    callByName(button, u"press"_s, {});
    callByName(button, u"press"_s, {});
    callByName(button, u"moveTo"_s, {});

    EXPECT_EQ(notes, (QStringList{u"Press no more."_s, u"Press no more."_s}));
    inspector->setNoteReceiver(nullptr);
}

class EnumClass : public Class
{
public:
    explicit EnumClass(Namespace *home) : Class(u"Sample_Enums"_s, home) { setOwnMembers(0, 0, 1); }

protected:
    std::unique_ptr<Enum> createEnum(int index) const override
    {
        return std::make_unique<Enum>(const_cast<EnumClass *>(this), u"Level"_s,
            QList<Enum::Item>{{u"Low"_s, 1}, {u"High"_s, 16}}, index);
    }
};

TEST_F(ReflectionTest, EnumsGiveTheirValuesByName)
{
    Namespace home;
    const EnumClass type(&home);

    ASSERT_EQ(type.numEnums(), 1);
    const Enum *level = type.enumeration(0);
    EXPECT_EQ(level, type.enumeration(0));
    EXPECT_EQ(level->name(), u"Level"_s);
    EXPECT_EQ(level->value(u"High"_s), 16);
    EXPECT_EQ(level->value(u"high"_s), std::nullopt);
    EXPECT_EQ(level->items().first().name, u"Low"_s);
}

TEST_F(ReflectionTest, InterfacesAreFoundHereAndInBaseClasses)
{
    Serializable forWidgets;
    Serializable forButtons;
    sampleClasses().widget->addInterface(u"both"_s, &forWidgets);
    sampleClasses().button->addInterface(u"both"_s, &forButtons);
    sampleClasses().widget->addInterface(u"base"_s, &forWidgets);

    EXPECT_EQ(sampleClasses().button->interfaceNamed(u"both"_s), &forButtons);
    EXPECT_EQ(sampleClasses().button->interfaceNamed(u"base"_s), &forWidgets);
    EXPECT_EQ(sampleClasses().widget->interfaceNamed(u"both"_s), &forWidgets);
    EXPECT_EQ(sampleClasses().widget->interfaceNamed(u"none"_s), nullptr);
}

} // namespace
