// Tests of delegates: which one serves a class, what the base classes do by themselves, and lookups by name.
#include "fakehierarchy.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

DelegateFactory *factory()
{
    return DelegateFactory::self();
}

class ReferenceText : public CastDelegate
{
public:
    using CastDelegate::CastDelegate;

    bool canCast(const Class *target) const override
    {
        return target == Inspector::self()->primitiveClass(PrimitiveType::String);
    }
    SharedPtr<Object> cast(SharedPtr<Object> object, const Class *target) const override
    {
        return canCast(target)
            ? Inspector::self()->createPrimitive(u"<%1>"_s.arg(object->objectClass()->name()))
            : nullptr;
    }
};

/// Widgets are the same when they are equally wide.
class SameWidth : public ComparisonDelegate
{
public:
    using ComparisonDelegate::ComparisonDelegate;

    bool compare(SharedPtr<Object> a, SharedPtr<Object> b) const override
    {
        ++asked;
        return readByName(a, u"width"_s)->toInt() == readByName(b, u"width"_s)->toInt();
    }

    mutable int asked = 0;
};

class FixedBounds : public GeometryDelegate
{
public:
    using GeometryDelegate::GeometryDelegate;

    Rect<2> globalBounds(SharedPtr<Object>) const override { return bounds; }

    Rect<2> bounds{10, 20, 30, 41, -1};
};

TEST(Delegates, ServeTheirClassAndClassesBelow)
{
    const ReferenceText forWidgets(u"Sample_Widget"_s);

    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &forWidgets);
    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().button), &forWidgets);
    EXPECT_EQ(factory()->delegate(sampleClasses().button, Delegate::Cast), &forWidgets);
    EXPECT_EQ(factory()->delegate<CastDelegate>(Inspector::self()->findClass(u"Array"_s)), nullptr);
    EXPECT_EQ(factory()->delegate<ComparisonDelegate>(sampleClasses().widget), nullptr);
    EXPECT_EQ(factory()->delegate(static_cast<const Class *>(nullptr)), nullptr);
    EXPECT_EQ(factory()->delegate(SharedPtr<Object>()), nullptr);
}

TEST(Delegates, TheNearestClassWins)
{
    const ReferenceText forButtons(u"Sample_Button"_s);
    const ReferenceText forWidgets(u"Sample_Widget"_s);

    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().button), &forButtons);
    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &forWidgets);
}

TEST(Delegates, TheNewestOfAClassWinsUntilItGoes)
{
    const ReferenceText first(u"Sample_Widget"_s);
    {
        const ReferenceText second(u"Sample_Widget"_s);
        EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &second);
    }
    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &first);
}

TEST(Delegates, ACopyIsNotRegistered)
{
    const ReferenceText original(u"Sample_Widget"_s);
    {
        const ReferenceText copy = original;
        EXPECT_EQ(copy.className(), u"Sample_Widget"_s);
        EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &original);
    }
    EXPECT_EQ(factory()->delegate<CastDelegate>(sampleClasses().widget), &original);
}

TEST(Delegates, KindNumberZeroIsTheHierarchy)
{
    const FakeHierarchy hierarchy;

    EXPECT_EQ(factory()->delegate(sampleClasses().button, 0), &hierarchy);
    EXPECT_EQ(factory()->delegate(sampleClasses().button), &hierarchy);
}

TEST(Delegates, AreAskedForTheTextOfAnObject)
{
    const SharedPtr<Object> button = wrapped(new Button);
    EXPECT_EQ(objectAsText(button), u"[Sample_Button]"_s);

    const ReferenceText texts(u"Sample_Widget"_s);

    EXPECT_EQ(objectAsText(button), u"<Sample_Button>"_s);
    EXPECT_EQ(button->toQString(), u"<Sample_Button>"_s);
    EXPECT_EQ(wrapped(nullptr)->toQString(), QString());
    EXPECT_EQ(objectAsText(Inspector::self()->createPrimitive(2.5)), u"2.5"_s);
    EXPECT_EQ(objectAsText(wrapped(nullptr)), u"null"_s);
    EXPECT_EQ(objectAsText(nullptr), u"null"_s);
    EXPECT_FALSE(texts.canCastFrom(sampleClasses().widget));
    EXPECT_EQ(texts.castFrom(button), nullptr);
}

TEST(Delegates, AreAskedWhetherObjectsAreEqual)
{
    const SharedPtr<Object> a = wrapped(new Widget);
    const SharedPtr<Object> b = wrapped(new Button);
    EXPECT_FALSE(objectsAreEqual(a, b));

    const SameWidth comparison(u"Sample_Widget"_s);

    EXPECT_TRUE(objectsAreEqual(a, b));
    EXPECT_TRUE(comparison.sameObjects(a, b));
    writeByName(b, u"width"_s, Inspector::self()->createPrimitive(11));
    EXPECT_FALSE(objectsAreEqual(a, b));
    EXPECT_TRUE(objectsAreEqual(a, a));
    EXPECT_EQ(comparison.asked, 3);
}

TEST(Delegates, AreNotAskedWhenAValueIsNullOrPrimitive)
{
    const SameWidth comparison(u"Sample_Widget"_s);
    const SharedPtr<Object> widget = wrapped(new Widget);
    const auto value = [](auto primitive) { return Inspector::self()->createPrimitive(primitive); };

    EXPECT_TRUE(objectsAreEqual(wrapped(nullptr), wrapped(nullptr)));
    EXPECT_TRUE(objectsAreEqual(nullptr, wrapped(nullptr)));
    EXPECT_FALSE(objectsAreEqual(widget, wrapped(nullptr)));
    EXPECT_FALSE(objectsAreEqual(nullptr, widget));
    EXPECT_FALSE(objectsAreEqual(widget, value(1)));
    EXPECT_TRUE(objectsAreEqual(value(1), value(1.0)));
    EXPECT_FALSE(objectsAreEqual(value(1), value(true)));
    EXPECT_FALSE(objectsAreEqual(value(1), value(u"1"_s)));
    EXPECT_TRUE(objectsAreEqual(value(u"x"_s), value(u"x"_s)));
    EXPECT_EQ(comparison.asked, 0);
}

TEST(Delegates, GeometryFollowsFromTheBounds)
{
    FixedBounds geometry(u"Sample_Widget"_s);
    const SharedPtr<Object> widget = wrapped(new Widget);

    EXPECT_EQ(geometry.visibleGlobalBounds(widget), (Rect<2>{10, 20, 30, 41, -1}));
    EXPECT_TRUE(geometry.isOnScreen(widget));
    EXPECT_TRUE(geometry.contains(widget, 10, 60));
    EXPECT_FALSE(geometry.contains(widget, 10, 61));
    EXPECT_EQ(geometry.hotSpot(widget), (Point<1>{1, 25, 40, -1}));
    EXPECT_EQ(geometry.childAt(widget, 12, 22), nullptr);
    EXPECT_EQ(geometry.focusProxy(widget), widget);
    geometry.bounds = {0, 0, -1, -1, -1};
    EXPECT_FALSE(geometry.isOnScreen(widget));
}

class HierarchyTest : public testing::Test
{
protected:
    ~HierarchyTest() override
    {
        const ObjectList toplevels = inspector->toplevels();
        for (const SharedPtr<Object> &toplevel : toplevels)
            inspector->removeToplevel(toplevel);
        ObjectMap::self()->clear();
        EXPECT_EQ(inspector->takeError(), QString());
    }

    Inspector *inspector = Inspector::self();
    FakeHierarchy hierarchy;
    SharedPtr<Object> root = hierarchy.add(nullptr, u"root"_s);
    SharedPtr<Object> page = hierarchy.add(root, u"page"_s);
    SharedPtr<Object> first = hierarchy.add(page, u"a"_s);
    SharedPtr<Object> second = hierarchy.add(page, u"b"_s, new Button);
    SharedPtr<Object> twin = hierarchy.add(page, u"b"_s);
};

TEST_F(HierarchyTest, ChildrenAreCountedAndTakenByIndex)
{
    EXPECT_EQ(hierarchy.numChildren(page), 3);
    EXPECT_EQ(hierarchy.child(page, 1), second);
    EXPECT_EQ(hierarchy.child(page, -1), nullptr);
    EXPECT_EQ(hierarchy.child(page, 3), nullptr);
}

TEST_F(HierarchyTest, TheFirstChildOfExactlyTheNameIsTaken)
{
    EXPECT_EQ(hierarchy.childByName(page, u"b"_s), second);
    EXPECT_EQ(hierarchy.childByName(page, u"B"_s), nullptr);
    EXPECT_EQ(nameOfObject(second), u"b"_s);
    EXPECT_EQ(nameOfObject(wrapDateTime({})), QString());
}

TEST_F(HierarchyTest, APlainNameIsAPathOfChildNames)
{
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName(u"page.b"_s)), second);
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName(u"page"_s)), page);
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName(u"page.c.b"_s)), nullptr);
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName(u"page."_s)), nullptr);
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName()), nullptr);
    EXPECT_EQ(hierarchy.objectByQualifiedName(root, ObjectName(u"{a='b'}"_s)), nullptr);
}

TEST_F(HierarchyTest, EachStepOfAPathAsksTheDelegateOfItsClass)
{
    FakeHierarchy forButtons(u"Sample_Button"_s);
    forButtons.names.insert(second.get(), u"b"_s);
    const SharedPtr<Object> icon = forButtons.add(second, u"icon"_s, new Button);

    EXPECT_EQ(objectByPath(root, {u"page"_s, u"b"_s, u"icon"_s}), icon);
    EXPECT_EQ(objectByPath(root, {}), root);
    EXPECT_EQ(objectByPath(wrapDateTime({}), {u"x"_s}), nullptr);
}

TEST_F(HierarchyTest, ParentLeadsToTheToplevelOfTheSameToolkit)
{
    const SharedPtr<Object> foreign = wrapDateTime({});
    EXPECT_EQ(hierarchy.parent(first), nullptr);
    inspector->addToplevel(foreign);
    EXPECT_EQ(hierarchy.parent(first), nullptr);

    inspector->addToplevel(root);

    EXPECT_EQ(hierarchy.parent(first), root);
    EXPECT_EQ(hierarchy.parent(root), nullptr);
    EXPECT_EQ(int(hierarchy.wrapperType()), 8);
}

/// A toplevel delegate that finds one object by its whole name, and may fail first.
class FindsOne : public FakeHierarchy
{
public:
    using FakeHierarchy::FakeHierarchy;

    SharedPtr<Object> objectByQualifiedName(SharedPtr<Object>, const ObjectName &name) const override
    {
        looked.append(name.qualifiedName());
        if (!error.isEmpty())
            Inspector::self()->raiseError(error);
        return name.qualifiedName() == wanted ? found : nullptr;
    }

    QString wanted;
    SharedPtr<Object> found;
    QString error;
    mutable QStringList looked;
};

class LookupTest : public HierarchyTest
{
protected:
    LookupTest()
    {
        lookup.names = hierarchy.names;
        lookup.below = hierarchy.below;
        lookup.wanted = u"{tagName='B'}"_s;
        lookup.found = second;
        inspector->addToplevel(root);
    }

    FindsOne lookup;
};

TEST_F(LookupTest, TheToplevelIsAskedForTheWholeName)
{
    EXPECT_EQ(inspector->findObject(u"{tagName='B'}"_s).value, second);
    EXPECT_EQ(inspector->findObject(ObjectName(u"{tagName='C'}"_s)), nullptr);
    EXPECT_EQ(lookup.looked, (QStringList{u"{tagName='B'}"_s, u"{tagName='C'}"_s}));
}

TEST_F(LookupTest, ASymbolicNameStandsForItsRealName)
{
    ASSERT_EQ(ObjectMap::self()->insert(u"The button"_s, u"{tagName='B'}"_s).error, QString());

    EXPECT_EQ(inspector->findObject(u"The button"_s).value, second);
    EXPECT_EQ(inspector->findObject(ObjectName(u"The button"_s)), second);
}

TEST_F(LookupTest, APlainNameThatIsNobodysOwnIsAPath)
{
    EXPECT_EQ(inspector->findObject(u"page.a"_s).value, first);
    EXPECT_EQ(lookup.looked, QStringList{u"page.a"_s});
}

TEST_F(LookupTest, ANameWithPropertiesIsNoPath)
{
    lookup.asked = 0;

    EXPECT_EQ(inspector->findObject(u"{a='page.a'}"_s).value, nullptr);

    EXPECT_EQ(lookup.asked, 0);
}

TEST_F(LookupTest, ABadNameIsAnErrorThatNobodyIsAsked)
{
    const FunctionCallResult<SharedPtr<Object>> found = inspector->findObject(u"{tagName=B}"_s);

    EXPECT_EQ(found.error,
        u"Invalid object name '{tagName=B}': value in quotes or braces expected at character 10."_s);
    EXPECT_EQ(inspector->findObject(QString()).error, u"The object name is empty."_s);
    EXPECT_TRUE(lookup.looked.isEmpty());
}

TEST_F(LookupTest, AnErrorOfOneToplevelCountsOnlyWhenNoneFindsTheObject)
{
    FindsOne broken(u"Sample_Button"_s);
    broken.error = u"The page is gone."_s;
    inspector->removeToplevel(root);
    inspector->addToplevel(second);
    inspector->addToplevel(root);

    EXPECT_EQ(inspector->findObject(u"{tagName='B'}"_s).value, second);
    EXPECT_FALSE(inspector->hasError());
    EXPECT_EQ(inspector->findObject(u"{tagName='C'}"_s).value, nullptr);
    EXPECT_EQ(inspector->takeError(), u"The page is gone."_s);
}

TEST_F(LookupTest, AnErrorFromBeforeStaysPending)
{
    inspector->raiseError(u"before"_s);

    EXPECT_EQ(inspector->findObject(u"{tagName='B'}"_s).value, second);

    EXPECT_EQ(inspector->takeError(), u"before"_s);
}

TEST_F(LookupTest, UnmatchedPropertiesAreRememberedByName)
{
    inspector->addUnmatchedProperty(u"{a='b'}"_s, u"a"_s);
    inspector->addUnmatchedProperty(u"{a='b'}"_s, u"container"_s);
    inspector->addUnmatchedProperty(u"{a='b'}"_s, u"a"_s);

    EXPECT_EQ(inspector->unmatchedProperties(u"{a='b'}"_s), (QStringList{u"a"_s, u"container"_s}));
    inspector->removeUnmatchedProperties(u"{a='b'}"_s);
    EXPECT_TRUE(inspector->unmatchedProperties(u"{a='b'}"_s).isEmpty());
}

} // namespace
