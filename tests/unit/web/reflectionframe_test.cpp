// Tests of what lies between a script and a wrapper: members by name, conversions, dead references and script
// errors.
#include "wrappers/web/reflection/webclasses.h"

#include "ostrelhook/delegates.h"
#include "ostrelhook/valueclasses.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/htmlevent.h"
#include "wrappers/web/reflection/objectdelegates.h"

#include "support/fakepage.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

class Classes : public ::testing::Environment
{
public:
    void SetUp() override { createWebObjectClasses(); }
};

const auto *const classes = ::testing::AddGlobalTestEnvironment(new Classes);

const QString dead
    = u"Object reference deleted in browser already, please obtain a new reference using waitForObject "
      "or findObject"_s;

SharedPtr<Object> elementOn(FakePage &page, const QString &reference = u"el"_s)
{
    return wrapObject(new HTML_Object({}, reference, &page));
}

template <typename Wrapper>
SharedPtr<Object> scriptElement(FakePage &page)
{
    return wrapObject(new Wrapper({}, u"el"_s, &page));
}

Class *classNamed(const QString &name)
{
    return Inspector::self()->findClass(name);
}

ScreenRectangle rectangle(const ScriptAnswer &answer)
{
    return unwrapScreenRectangle(answer.value);
}

} // namespace

// Classes

TEST(ReflectionClasses, DeclareTheirOwnMembers)
{
    struct Row
    {
        const char *name;
        int methods;
        int properties;
    };
    const Row rows[]
        = {{"HTML_Object", 46, 20}, {"HTML_Anchor", 0, 0}, {"HTML_Array", 2, 1}, {"HTML_Select", 13, 6}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Class *type = classNamed(QString::fromLatin1(row.name));

        EXPECT_EQ(type->numMethods() - type->superClassOffset(Class::Methods), row.methods);
        EXPECT_EQ(type->numProperties() - type->superClassOffset(Class::Properties), row.properties);
        EXPECT_TRUE(type->isScriptVisible());
    }
}

TEST(ReflectionClasses, MembersAreNumberedBehindThoseOfTheBase)
{
    const Class *array = classNamed(u"HTML_Array"_s);
    ASSERT_EQ(array->superClass(), objectModelHtmlObjectClass());
    ASSERT_EQ(array->superClassOffset(Class::Methods), 46);
    ASSERT_EQ(array->superClassOffset(Class::Properties), 20);

    const Method *at = array->method(46);
    const Method *length = array->method(47);

    EXPECT_EQ(at->name(), u"at"_s);
    EXPECT_EQ(at->id(), 46);
    EXPECT_EQ(at->flags(), 0);
    EXPECT_EQ(at->owner(), array);
    EXPECT_EQ(at->result().typeName(), u"HTML_Object"_s);
    EXPECT_EQ(at->result().attribute(), ObjectAttribute::Pointer());
    ASSERT_EQ(at->signature().count(), 1);
    EXPECT_EQ(at->signature().at(0).name(), u"i"_s);
    EXPECT_EQ(at->signature().at(0).type(), Inspector::self()->primitiveClass(PrimitiveType::Int));
    EXPECT_EQ(at->signature().at(0).attribute(), ObjectAttribute::Value());
    EXPECT_EQ(at->signature().at(0).enumeration(), nullptr);
    EXPECT_EQ(length->id(), 47);
    EXPECT_EQ(length->signature().count(), 0);
    EXPECT_EQ(array->property(20)->name(), u"length"_s);
    EXPECT_EQ(array->property(20)->id(), 20);
    EXPECT_TRUE(array->property(20)->isReadOnly());
}

TEST(ReflectionClasses, MembersAreMadeOnceAndOnlyInRange)
{
    const Class *array = classNamed(u"HTML_Array"_s);

    EXPECT_EQ(array->method(46), array->method(46));
    EXPECT_EQ(array->method(0), objectModelHtmlObjectClass()->method(0));
    EXPECT_EQ(array->method(48), nullptr);
    EXPECT_EQ(array->method(-1), nullptr);
    EXPECT_EQ(array->property(21), nullptr);
    EXPECT_EQ(array->property(-1), nullptr);
}

TEST(ReflectionClasses, ScriptsReachInheritedMembers)
{
    FakePage page;
    const SharedPtr<Object> text = scriptElement<HTML_Text>(page);
    page.answer(u"typed"_s);
    page.answer(u"true"_s);
    page.answerJson(u"\"INPUT\""_s);

    EXPECT_EQ(readProperty(text, u"value"_s).text(), u"typed"_s);
    EXPECT_TRUE(readProperty(text, u"disabled"_s).value->toBool());
    EXPECT_EQ(readProperty(text, u"tagName"_s).text(), u"INPUT"_s);
    EXPECT_EQ(callMethod(text, u"className"_s).text(), u"HTML_Text"_s);
}

TEST(ReflectionClasses, EventClassNamesTheModifiers)
{
    Class *type = classNamed(u"HTML_Event"_s);
    ASSERT_EQ(type->numEnums(), 1);
    EXPECT_EQ(type->numMethods(), 0);
    EXPECT_EQ(type->numProperties(), 0);
    EXPECT_EQ(type->superClass(), nullptr);

    const Enum *modifiers = type->enumeration(0);

    EXPECT_EQ(modifiers->name(), u"ModifierState"_s);
    QStringList items;
    for (const Enum::Item &item : modifiers->items())
        items.append(u"%1=%2"_s.arg(item.name, QString::number(item.value)));
    EXPECT_EQ(items,
        QStringList({u"AltKey=1"_s, u"ControlKey=2"_s, u"ShiftKey=4"_s, u"RightButton=16"_s,
            u"ControlAlt=3"_s, u"ShiftAlt=5"_s, u"ControlShift=6"_s}));
    EXPECT_EQ(type->enumeration(1), nullptr);
}

TEST(ReflectionClasses, EventClassFreesARawBlock)
{
    Class *type = classNamed(u"HTML_Event"_s);
    SharedPtr<Object> object = type->wrap(::operator new(64), ObjectAttribute::Pointer());
    object->setOwning(true);

    object.reset(); // a leak or a wrong release is what the sanitizers would report

    EXPECT_EQ(object, nullptr);
}

TEST(ReflectionClasses, NullWrapperIsReleasedWithoutHarm)
{
    SharedPtr<Object> object = objectModelHtmlObjectClass()->wrap(nullptr, ObjectAttribute::Pointer());
    object->setOwning(true);

    object.reset();

    EXPECT_EQ(object, nullptr);
}

// Calls

TEST(ReflectionCalls, FillInWhatAClickLacks)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);

    EXPECT_EQ(callMethod(element, u"click"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"click"_s, int(ShiftKey)).error, QString());
    EXPECT_EQ(callMethod(element, u"click"_s, 0, 5).error, QString());
    EXPECT_EQ(callMethod(element, u"click"_s, 0, 5, 6).error, QString());
    EXPECT_EQ(callMethod(element, u"click"_s, 0, 5, 6, 4).error, QString());
    EXPECT_EQ(callMethod(element, u"doubleClick"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"doubleClick"_s, int(AltKey)).error, QString());
    EXPECT_EQ(callMethod(element, u"doubleClick"_s, 0, 5).error, QString());
    EXPECT_EQ(callMethod(element, u"doubleClick"_s, 0, 5, 6).error, QString());
    EXPECT_EQ(callMethod(element, u"scrollTo"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"scrollTo"_s, false).error, QString());

    const auto click = [](const QString &arguments) {
        return u"setTimeout(function(e){__ostrel__click(el, %1);}, 100);"_s.arg(arguments);
    };
    const auto doubleClick = [](const QString &arguments) {
        return u"setTimeout(function(e){__ostrel__dblclick(el, %1);}, 100);"_s.arg(arguments);
    };
    EXPECT_EQ(page.scripts(),
        QStringList({click(u"false, false, false, 0, 0, 1"_s), click(u"false, true, false, 0, 0, 1"_s),
            click(u"false, false, false, 5, 0, 1"_s), click(u"false, false, false, 5, 6, 1"_s),
            click(u"false, false, false, 5, 6, 4"_s), doubleClick(u"false, false, false, 0, 0, 1"_s),
            doubleClick(u"false, false, true, 0, 0, 1"_s), doubleClick(u"false, false, false, 5, 0, 1"_s),
            doubleClick(u"false, false, false, 5, 6, 1"_s), u"__ostrel__scrollToElement(el,1);"_s,
            u"__ostrel__scrollToElement(el,0);"_s}));
}

TEST(ReflectionCalls, ClickIsThatOfTheWrapper)
{
    FakePage page;
    const SharedPtr<Object> link = scriptElement<HTML_Anchor>(page);

    EXPECT_EQ(callMethod(link, u"click"_s, 1, 5, 5, 2).error, QString());

    EXPECT_EQ(page.scripts(), QStringList{u"setTimeout(function(e){__ostrel__clickLink(el);}, 100);"_s});
}

TEST(ReflectionCalls, ChooseTheOverloadByTheArguments)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);

    EXPECT_EQ(callMethod(element, u"setProperty"_s, u"a"_s, u"ä's"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"setProperty"_s, u"a"_s, 7).error, QString());
    EXPECT_EQ(callMethod(element, u"setProperty"_s, u"a"_s, true).error, QString());
    EXPECT_EQ(callMethod(element, u"setProperty"_s, u"a"_s, 7.0).error, QString());
    EXPECT_EQ(callMethod(element, u"invoke"_s, u"f"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"invoke"_s, u"f"_s, u"1"_s).error, QString());
    EXPECT_EQ(callMethod(element, u"invoke"_s, u"f"_s, u"1"_s, u"'ü'"_s).error, QString());

    EXPECT_EQ(page.scripts(),
        QStringList({u"el.a='ä\\'s';"_s, u"el.a=7;"_s, u"el.a=true;"_s, u"el.a=7;"_s, u"el.f();"_s,
            u"el.f(1);"_s, u"el.f(1, 'ü');"_s}));
}

TEST(ReflectionCalls, ConvertResults)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);
    page.answerJson(u"\"DIV ö\""_s);
    page.answerJson(u"7"_s);
    page.answerJson(u"true"_s);
    page.answer(u"1,2,3,4"_s);
    page.answer(u"5,6,7,8"_s);
    page.answerObject(u"checkbox"_s, u"top.store[3]"_s);
    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);
    page.answer(u"done"_s);

    const ScriptAnswer text = callMethod(element, u"tagName"_s);
    const ScriptAnswer number = callMethod(element, u"numChildren"_s);
    const ScriptAnswer boolean = callMethod(element, u"visible"_s);
    const ScriptAnswer screen = callMethod(element, u"screenRect"_s);
    const ScriptAnswer bounds = readProperty(element, u"boundingClientRect"_s);
    const ScriptAnswer child = callMethod(element, u"firstChild"_s);
    const ScriptAnswer nothing = callMethod(element, u"lastChild"_s);
    const ScriptAnswer done = callMethod(element, u"scrollTo"_s);

    EXPECT_EQ(text.value->objectClass(), Inspector::self()->primitiveClass(PrimitiveType::String));
    EXPECT_EQ(text.text(), u"DIV ö"_s);
    EXPECT_EQ(number.value->objectClass(), Inspector::self()->primitiveClass(PrimitiveType::Int));
    EXPECT_EQ(number.value->toInt(), 7);
    EXPECT_EQ(boolean.value->objectClass(), Inspector::self()->primitiveClass(PrimitiveType::Bool));
    EXPECT_TRUE(boolean.value->toBool());
    EXPECT_EQ(rectangle(screen), (ScreenRectangle{1, 2, 3, 4}));
    EXPECT_EQ(rectangle(bounds), (ScreenRectangle{5, 6, 7, 8}));
    EXPECT_EQ(child.value->objectClass()->name(), u"HTML_CheckBox"_s);
    EXPECT_TRUE(child.value->isOwning());
    EXPECT_EQ(nothing.error, QString());
    ASSERT_NE(nothing.value, nullptr);
    EXPECT_TRUE(nothing.value->isNull());
    EXPECT_EQ(done.value->objectClass(), Inspector::self()->primitiveClass(PrimitiveType::Void));
}

TEST(ReflectionCalls, ArraysCrossBothWays)
{
    FakePage page;
    const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, true, &page));
    page.answer(u"true"_s);
    page.answer(u"1"_s);
    page.answerJson(u"[2,5]"_s);
    page.answerJson(u"[\"ä\"]"_s);

    EXPECT_EQ(callMethod(select, u"setSelectedOptions"_s, QList<QString>{u"ä"_s, u"b"_s}).error, QString());
    const ObjectList indexes = ArrayClass::unwrapObject(readProperty(select, u"selectedIndexes"_s).value);
    const ObjectList labels = ArrayClass::unwrapObject(readProperty(select, u"selectedLabels"_s).value);

    EXPECT_EQ(page.scripts().first(),
        u"__ostrel__standardselectExtension.hasItems(el, [\"ä\",\"b\"], __ostrel__selectOptionText);"_s);
    ASSERT_EQ(indexes.size(), 2);
    EXPECT_EQ(indexes.at(1)->toInt(), 5);
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels.at(0)->toQString(), u"ä"_s);
}

TEST(ReflectionCalls, OptionsOfASelectAreOptions)
{
    FakePage page;
    const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, true, &page));
    page.answer(u"2"_s);
    page.answerObject(u"option"_s, u"top.store[1]"_s);
    page.answer(u"2"_s);

    const ScriptAnswer option = callMethod(select, u"optionAt"_s, 1);
    const ScriptAnswer outside = callMethod(select, u"optionAt"_s, 2);
    const ScriptAnswer options = callMethod(select, u"options"_s);

    EXPECT_EQ(option.value->objectClass()->name(), u"HTML_Option"_s);
    EXPECT_EQ(outside.error, u"Out of bounds access to array of length 2 with index 2."_s);
    EXPECT_EQ(options.value->objectClass()->name(), u"HTML_Array"_s);
    EXPECT_EQ(retrieveObject(options.value)->jsReference(), u"el.options"_s);
    EXPECT_TRUE(callMethod(select, u"isMulti"_s).value->toBool());
}

TEST(ReflectionCalls, FailuresAreScriptErrorsWordForWord)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);
    for (int i = 0; i < 4; ++i)
        page.fail(u"gone %1"_s);

    const ScriptAnswer text = callMethod(element, u"tagName"_s);
    const ScriptAnswer bounds = readProperty(element, u"boundingClientRect"_s);
    const ScriptAnswer child = callMethod(element, u"firstChild"_s);
    const ScriptAnswer done = callMethod(element, u"scrollTo"_s);

    EXPECT_EQ(text.error, u"Error retrieving tagName: gone %1"_s);
    EXPECT_EQ(text.value, nullptr);
    EXPECT_EQ(bounds.error,
        u"Error while obtaining rectangle with function '__ostrel__getClientBoundingRect': gone %1"_s);
    EXPECT_EQ(child.error, u"Error obtaining first child: gone %1"_s);
    EXPECT_EQ(done.error, u"Error while scrolling to element: gone %1"_s);
}

TEST(ReflectionCalls, RefuseWhatCannotBeCalled)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);
    Class *type = element->objectClass();
    const Method *scroll = type->resolve(u"scrollTo"_s, {}).value;

    EXPECT_EQ(type->call(element, {argument(1)}, scroll), nullptr);
    EXPECT_EQ(Inspector::self()->takeError(), u"HTML_Object.scrollTo takes 0 arguments, but 1 were given."_s);
    EXPECT_EQ(type->call(wrapObject(nullptr), {}, scroll), nullptr);
    EXPECT_EQ(Inspector::self()->takeError(), u"Cannot call 'scrollTo' on a null object."_s);
    EXPECT_EQ(type->call(argument(1), {}, scroll), nullptr);
    EXPECT_EQ(
        Inspector::self()->takeError(), u"Cannot call 'HTML_Object.scrollTo' on an object of class 'int'."_s);
    EXPECT_EQ(type->invoke(9999, element, {}, scroll), nullptr) << "a number out of range calls nothing";
    EXPECT_EQ(Inspector::self()->takeError(), QString());
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ReflectionCalls, PropertiesOfANullObjectAreRefused)
{
    const SharedPtr<Object> null = wrapObject(nullptr);

    EXPECT_EQ(readProperty(null, u"title"_s).error, u"Cannot access 'title' of a null object."_s);
    EXPECT_EQ(writeProperty(null, u"title"_s, 1), u"Cannot access 'title' of a null object."_s);
}

// Writing

TEST(ReflectionWrites, EveryPropertyOfAnElementIsReadOnly)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);
    const Class *type = objectModelHtmlObjectClass();
    ASSERT_EQ(type->numProperties(), 20);

    for (int i = 0; i < type->numProperties(); ++i) {
        const QString name = type->property(i)->name();
        EXPECT_EQ(writeProperty(element, name, u"x"_s), u"Cannot set read-only property %1."_s.arg(name));
    }
    EXPECT_EQ(writeProperty(element, u"title"_s, u"x"_s), u"Cannot set read-only property title."_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ReflectionWrites, SettersTellTheirFailure)
{
    FakePage page;
    const SharedPtr<Object> field = scriptElement<HTML_CheckBox>(page);
    page.answer(u"true"_s);
    page.answer(u"true"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(writeProperty(field, u"checked"_s, true), QString());
    EXPECT_EQ(writeProperty(field, u"disabled"_s, false),
        u"Error setting property 'disabled' to value false: gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList({u"el.checked=true;"_s, u"__ostrel__sendChangeEvent( el )"_s, u"el.disabled=false;"_s}));
}

TEST(ReflectionWrites, ListsOfASelectGoToTheirSetters)
{
    struct Row
    {
        const char *property;
        SharedPtr<Object> value;
        QString script;
    };
    const Row rows[] = {
        {"selectedValues", argument(QList<QString>{u"a"_s}),
            u"__ostrel__standardselectExtension.hasItems(el, [\"a\"], __ostrel__selectOptionValue);"_s},
        {"selectedTexts", argument(QList<QString>{u"a"_s}),
            u"__ostrel__standardselectExtension.hasItems(el, [\"a\"], __ostrel__selectOptionText);"_s},
        {"selectedIndexes", argument(QList<int>{3}),
            u"__ostrel__standardselectExtension.hasItems(el, [\"3\"], "
            "__ostrel__standardselectExtension.optionIndex);"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.property);
        FakePage page;
        const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, true, &page));
        page.answer(u"false"_s);
        const Property *property = select->objectClass()->findProperty(QString::fromLatin1(row.property));

        EXPECT_FALSE(select->objectClass()->write(select, property, row.value));

        EXPECT_TRUE(Inspector::self()->takeError().startsWith(u"Failed to find one of the items '"_s));
        EXPECT_EQ(page.scripts(), QStringList{row.script});
    }
}

TEST(ReflectionWrites, WhatIsNoValueOfThePropertyChangesNothing)
{
    FakePage page;
    const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, true, &page));
    const SharedPtr<Object> box = scriptElement<HTML_CheckBox>(page);
    struct Row
    {
        SharedPtr<Object> object;
        const char *property;
        SharedPtr<Object> value;
        const char *error;
    };
    const Row rows[] = {
        {select, "selectedIndex", argument(u"two"_s),
            "Cannot set property selectedIndex to 'two', expected int."},
        {select, "selectedIndex", argument(1.5), "Cannot set property selectedIndex to '1.5', expected int."},
        {select, "selectedIndex", nullptr, "Cannot set property selectedIndex to null, expected int."},
        {select, "selectedIndex", box, "Cannot set property selectedIndex to HTML_CheckBox, expected int."},
        {select, "selectedTexts", argument(u"one"_s),
            "Cannot set property selectedTexts to 'one', expected Array of String."},
        {select, "selectedTexts", nullptr,
            "Cannot set property selectedTexts to null, expected Array of String."},
        {select, "selectedIndexes", argument(QList<QString>{u"0"_s, u"two"_s}),
            "Cannot set property selectedIndexes to ['0', 'two'], expected Array of int."},
        {select, "selectedOption", argument(QList<QString>{u"one"_s}),
            "Cannot set property selectedOption to ['one'], expected String."},
        {box, "checked", argument(u"yes"_s), "Cannot set property checked to 'yes', expected bool."},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.error);
        const Property *property = row.object->objectClass()->findProperty(QString::fromLatin1(row.property));

        EXPECT_FALSE(row.object->objectClass()->write(row.object, property, row.value));

        EXPECT_EQ(Inspector::self()->takeError(), QString::fromLatin1(row.error));
    }
    EXPECT_EQ(callMethod(select, u"deselectByIndexes"_s, QList<QString>{u"two"_s}).error,
        u"HTML_Select.deselectByIndexes expects Array of int, but ['two'] was given."_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ReflectionWrites, ValuesOfOtherTypesThatMeanTheSameAreTaken)
{
    FakePage page;
    const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, true, &page));
    const SharedPtr<Object> option = scriptElement<HTML_Option>(page);

    EXPECT_EQ(writeProperty(select, u"selectedIndex"_s, u"2"_s), QString());
    EXPECT_EQ(writeProperty(select, u"selectedIndex"_s, 2.0), QString());
    EXPECT_EQ(writeProperty(select, u"disabled"_s, u"true"_s), QString());
    EXPECT_EQ(writeProperty(option, u"text"_s, 7), QString());
    EXPECT_TRUE(
        option->objectClass()->write(option, option->objectClass()->findProperty(u"text"_s), nullptr));

    EXPECT_EQ(page.scripts(),
        QStringList({u"el.selectedIndex=2;"_s, u"el.selectedIndex=2;"_s, u"el.disabled=true;"_s,
            u"el.text='7';"_s, u"el.text='';"_s}));
}

// Dead references

TEST(DeadReferences, EveryMemberRaisesTheErrorAndAsksNothing)
{
    FakePage page;
    const QList<SharedPtr<Object>> elements{elementOn(page), scriptElement<HTML_Text>(page),
        wrapObject(new HTML_Select({}, u"el"_s, true, &page)), scriptElement<HTML_Document>(page)};
    LiveObjects::self().invalidate(&page);

    for (const SharedPtr<Object> &element : elements) {
        Class *type = element->objectClass();
        for (int i = 0; i < type->numMethods(); ++i) {
            const Method *method = type->method(i);
            ObjectList arguments;
            for (qsizetype j = 0; j < method->signature().count(); ++j)
                arguments.append(argument(1));
            EXPECT_EQ(type->call(element, arguments, method), nullptr);
            EXPECT_EQ(Inspector::self()->takeError(), dead)
                << type->name().toStdString() << '.' << method->name().toStdString();
        }
        for (int i = 0; i < type->numProperties(); ++i) {
            const QString name = type->property(i)->name();
            EXPECT_EQ(readProperty(element, name).error, dead) << name.toStdString();
            EXPECT_EQ(writeProperty(element, name, u"x"_s), dead) << name.toStdString();
        }
    }
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(DeadReferences, EvenTheClassNameIsRefused)
{
    FakePage page;
    const SharedPtr<Object> element = elementOn(page);
    retrieveObject(element)->invalidate();

    EXPECT_EQ(callMethod(element, u"className"_s).error, dead);
    EXPECT_EQ(writeProperty(element, u"title"_s, u"x"_s), dead);
}

// Text and comparison

TEST(ElementAsText, IsItsReference)
{
    FakePage page;
    const HTML_Object_CastToStringDelegate cast(u"HTML_Object"_s);
    const SharedPtr<Object> element = elementOn(page, u"top.store[7]"_s);
    const Inspector *inspector = Inspector::self();

    EXPECT_TRUE(cast.canCast(inspector->primitiveClass(PrimitiveType::String)));
    EXPECT_FALSE(cast.canCast(inspector->primitiveClass(PrimitiveType::Int)));
    EXPECT_EQ(
        cast.cast(element, inspector->primitiveClass(PrimitiveType::String))->toQString(), u"top.store[7]"_s);
    EXPECT_EQ(cast.cast(element, inspector->primitiveClass(PrimitiveType::Int)), nullptr);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ElementAsText, ScriptsThatPrintAnElementSeeTheReference)
{
    FakePage page;

    EXPECT_EQ(objectAsText(elementOn(page, u"top.store[7]"_s)), u"top.store[7]"_s);
    EXPECT_EQ(objectAsText(scriptElement<HTML_CheckBox>(page)), u"el"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ElementComparison, NullObjectsAreEqual)
{
    FakePage page;
    const HTML_Object_ComparisonDelegate comparison(u"HTML_Object"_s);
    const SharedPtr<Object> element = elementOn(page);

    EXPECT_TRUE(comparison.compare(wrapObject(nullptr), wrapObject(nullptr)));
    EXPECT_TRUE(comparison.compare({}, {}));
    EXPECT_FALSE(comparison.compare(element, wrapObject(nullptr)));
    EXPECT_FALSE(comparison.compare(wrapObject(nullptr), element));
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(ElementComparison, AsksThePageAndPrintsItsFailure)
{
    FakePage page;
    const HTML_Object_ComparisonDelegate comparison(u"HTML_Object"_s);
    const SharedPtr<Object> a = elementOn(page, u"a"_s);
    const SharedPtr<Object> b = elementOn(page, u"b"_s);
    page.answer(u"true"_s);
    page.answer(u"false"_s);
    page.fail(u"gone"_s);

    EXPECT_TRUE(comparison.compare(a, elementOn(page, u"a"_s)));
    EXPECT_TRUE(comparison.compare(a, b));
    EXPECT_FALSE(comparison.compare(a, b));
    testing::internal::CaptureStderr();
    const bool equal = comparison.compare(a, b);
    const std::string printed = testing::internal::GetCapturedStderr();

    EXPECT_FALSE(equal);
    EXPECT_EQ(printed, "Error comparing javascript reference 'a' to 'b': gone\n");
    EXPECT_FALSE(Inspector::self()->hasError()) << "a comparison never fails a script";
    EXPECT_EQ(page.scripts(), QStringList(3, u"a === b"_s));
}
