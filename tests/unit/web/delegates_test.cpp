// Tests of the delegates: children, names, lookups with and without containers, bounds and comparison.
#include "ostrelhook/inspector.h"
#include "wrappers/web/customviewitempropertydelegate.h"
#include "wrappers/web/findobjectwithjsfunction.h"
#include "wrappers/web/geometrydelegates.h"
#include "wrappers/web/itemlist.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webobjectdelegate.h"
#include "wrappers/web/webtopleveldelegate.h"

#include "support/fakepage.h"
#include "support/printers.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

class Toplevel : public WebToplevelDelegate
{
public:
    explicit Toplevel(HTMLComponent *component) : m_component(component) { }
    HTMLComponent *htmlComponentFor(SharedPtr<Object>) const override { return m_component; }
    bool keepsDocumentReference() const override { return false; }

private:
    HTMLComponent *m_component;
};

class Delegates : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static const bool once = (createWebObjectClasses(), true);
        Q_UNUSED(once)
    }
    void SetUp() override { Inspector::self()->takeError(); }
    void TearDown() override
    {
        delegate().invalidateAllReferencedObjects();
        EXPECT_EQ(Inspector::self()->takeError(), QString());
    }

    static HTMLObjectHierarchyDelegate &delegate() { return *HTMLObjectHierarchyDelegate::registered(); }
    SharedPtr<Object> element(const QString &type = u"DIV"_s, const QString &reference = u"top.store[1]"_s)
    {
        return wrapObject(htmlObjectFromReferenceInfo(&page, type, reference, u"its name"_s));
    }
    /// Answers with children of these leaf names.
    void answerChildren(const QStringList &names)
    {
        QStringList records;
        for (const QString &name : names)
            records.append(uR"({"reference":"top.%1","typeString":"P","nameInLeaf":"%1"})"_s.arg(name));
        page.answerJson(u"[%1]"_s.arg(records.join(u',')));
    }
    static QStringList names(const ObjectList &objects)
    {
        QStringList found;
        for (const SharedPtr<Object> &object : objects)
            found.append(nameOfObject(object));
        return found;
    }
    QString lastScript() const { return page.scripts().isEmpty() ? QString() : page.scripts().last(); }

    FakePage page;
};

using ElementHierarchy = Delegates;
using ToplevelLookup = Delegates;
using ContainerLookup = Delegates;
using ObjectNames = Delegates;
using Geometry = Delegates;
using Comparison = Delegates;
using ItemList = Delegates;
using ItemHierarchy = Delegates;

} // namespace

TEST_F(ElementHierarchy, ChildrenComeInOneCallAndAreKept)
{
    const SharedPtr<Object> body = element();
    answerChildren({u"P1"_s, u"P2"_s});

    EXPECT_EQ(names(delegate().children(body)), QStringList({u"P1"_s, u"P2"_s}));
    EXPECT_EQ(delegate().numChildren(body), 2);

    ASSERT_EQ(page.calls().size(), 1);
    EXPECT_TRUE(lastScript().contains(u"window.top.__ostrel.childObjectAndInfo( top.store[1] )"_s));
    EXPECT_EQ(page.calls().first().timeoutMs, 60000U);
}

TEST_F(ElementHierarchy, ThousandsOfChildrenComeInOneCall)
{
    const SharedPtr<Object> list = element();
    constexpr int count = 5000;
    QStringList items;
    for (int i = 1; i <= count; ++i)
        items.append(u"LI%1"_s.arg(i));
    answerChildren(items);

    EXPECT_EQ(names(delegate().children(list)), items);

    EXPECT_EQ(page.calls().size(), 1);
}

TEST_F(ElementHierarchy, AClearedCacheAsksThePageAgain)
{
    const SharedPtr<Object> body = element();
    answerChildren({u"P1"_s});
    answerChildren({u"P2"_s});

    EXPECT_EQ(names(delegate().children(body)), QStringList(u"P1"_s));
    delegate().clearChildCache();

    EXPECT_EQ(names(delegate().children(body)), QStringList(u"P2"_s));
}

TEST_F(ElementHierarchy, AnElementWithoutChildrenIsAskedEachTime)
{
    const SharedPtr<Object> body = element();
    answerChildren({});
    answerChildren({});

    EXPECT_EQ(delegate().numChildren(body), 0);
    EXPECT_EQ(delegate().numChildren(body), 0);

    EXPECT_EQ(page.calls().size(), 2);
}

TEST_F(ElementHierarchy, AChildOutOfRangeIsNull)
{
    const SharedPtr<Object> body = element();
    answerChildren({u"P1"_s});

    EXPECT_EQ(delegate().child(body, -1), nullptr);
    EXPECT_EQ(delegate().child(body, 1), nullptr);
    EXPECT_NE(delegate().child(body, 0), nullptr);
}

TEST_F(ElementHierarchy, AChildsNameIsComparedExactly)
{
    const SharedPtr<Object> body = element();
    answerChildren({u"P1"_s});

    EXPECT_EQ(delegate().childByName(body, u"p1"_s), nullptr);
    EXPECT_NE(delegate().childByName(body, u"P1"_s), nullptr);
}

TEST_F(ElementHierarchy, AClosedPageHasNoChildrenAndIsNotAsked)
{
    page.available = false;

    EXPECT_EQ(delegate().numChildren(element()), 0);

    EXPECT_TRUE(page.calls().isEmpty());
}

TEST_F(ElementHierarchy, ChildrenThatCannotBeFetchedAreToldOnStandardError)
{
    const SharedPtr<Object> body = element();
    page.fail(u"gone"_s);

    testing::internal::CaptureStderr();
    EXPECT_EQ(delegate().numChildren(body), 0);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Failed to retrieve children for html object its name: gone\n\n");
}

TEST_F(ElementHierarchy, AMenuShowsItsItemsBehindItsChildrenAndLeavesOutWhatFails)
{
    const SharedPtr<Object> menu = element(u"menu_my"_s);
    answerChildren({u"P1"_s});
    page.answer(u"3"_s);
    page.answerObject(u"menuitem_my"_s, u"top.item0"_s);
    page.fail(u"no such item"_s);
    page.answerObject(u"menuitem_my"_s, u"top.item2"_s);

    testing::internal::CaptureStderr();
    const ObjectList children = delegate().children(menu);

    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    ASSERT_EQ(children.size(), 3);
    EXPECT_EQ(retrieveObject(children.at(1))->jsReference(), u"top.item0"_s);
    EXPECT_EQ(retrieveObject(children.at(2))->jsReference(), u"top.item2"_s);
}

TEST_F(ElementHierarchy, ClearingOnePageLeavesTheWrappersOfAnotherButForgetsAllChildren)
{
    FakePage other;
    const SharedPtr<Object> mine = element();
    const SharedPtr<Object> foreign
        = wrapObject(htmlObjectFromReferenceInfo(&other, u"DIV"_s, u"top.store[2]"_s, {}));
    other.answerJson(uR"([{"reference":"top.a","typeString":"P","nameInLeaf":"P1"}])"_s);
    other.answerJson(u"[]"_s);
    EXPECT_EQ(delegate().numChildren(foreign), 1);

    delegate().clearAllJSReferences(&page);

    EXPECT_FALSE(retrieveObject(mine)->hasValidReference());
    EXPECT_TRUE(retrieveObject(foreign)->hasValidReference());
    EXPECT_EQ(delegate().numChildren(foreign), 0);
}

TEST_F(ElementHierarchy, TheParentOfAFramesDocumentIsItsFrame)
{
    const SharedPtr<Object> document = element(u"document"_s);
    page.answer(u"index.html.FRAME1"_s);
    page.answerObject(u"IFRAME"_s, u"top.frame"_s);

    const SharedPtr<Object> parent = delegate().parent(document);

    ASSERT_NE(parent, nullptr);
    EXPECT_EQ(retrieveObject(parent)->jsReference(), u"top.frame"_s);
    EXPECT_EQ(page.scripts().first(), u"__ostrel__contextOf( top.store[1] );"_s);
}

TEST_F(ElementHierarchy, TheParentOfATopDocumentIsTheFrameworksDefault)
{
    const SharedPtr<Object> document = element(u"document"_s);
    page.answer(u"index.html"_s);

    EXPECT_EQ(delegate().parent(document), delegate().ObjectHierarchyDelegate::parent(document));

    EXPECT_EQ(page.calls().size(), 1);
}

TEST_F(ElementHierarchy, AParentThatCannotBeReadIsAScriptError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(delegate().parent(element()), nullptr);

    EXPECT_EQ(Inspector::self()->takeError(), u"Error obtaining parent element: gone"_s);
}

TEST_F(ElementHierarchy, AQualifiedNameIsUnescaped)
{
    page.answer(u"%7BtagName%3D%27P%27%7D"_s);

    EXPECT_EQ(delegate().qualifiedName(element()), u"{tagName='P'}"_s);

    EXPECT_EQ(lastScript(), u"__ostrel__nameOf(top.store[1]);"_s);
}

TEST_F(ToplevelLookup, HasOneChildAlsoWithoutAPage)
{
    page.available = false;
    const Toplevel toplevel(&page);

    EXPECT_EQ(toplevel.numChildren(nullptr), 1);
    EXPECT_EQ(toplevel.child(nullptr, 0), nullptr);
}

TEST_F(ToplevelLookup, FetchesTheDocumentOnce)
{
    const Toplevel toplevel(&page);
    page.answerObject(u"DOCUMENT"_s, u"top.document"_s);

    const SharedPtr<Object> first = toplevel.child(nullptr, 0);

    ASSERT_NE(first, nullptr);
    EXPECT_EQ(toplevel.child(nullptr, 0), first);
    EXPECT_EQ(toplevel.childByName(nullptr, u"DOCUMENT"_s), first);
    EXPECT_EQ(toplevel.child(nullptr, 1), nullptr);
    EXPECT_EQ(page.calls().size(), 1);
    toplevel.clearDocumentReference();
}

TEST_F(ToplevelLookup, ADocumentOfAnotherPageIsInvalidated)
{
    FakePage other;
    page.answerObject(u"DOCUMENT"_s, u"top.document"_s);
    other.answerObject(u"DOCUMENT"_s, u"top.document"_s);
    const SharedPtr<Object> first = Toplevel(&page).child(nullptr, 0);

    const SharedPtr<Object> second = Toplevel(&other).child(nullptr, 0);

    EXPECT_NE(second, first);
    EXPECT_FALSE(retrieveObject(first)->hasValidReference());
    Toplevel(&other).clearDocumentReference();
}

TEST_F(ToplevelLookup, APlainNameGoesToTheHeuristicSearch)
{
    page.answerObject(u"P"_s, u"top.store[9]"_s);

    EXPECT_NE(Toplevel(&page).childByName(nullptr, u"say \"hi\""_s), nullptr);

    EXPECT_TRUE(lastScript().contains(uR"(__ostrel__findObjectByHeuristic("say \"hi\"");)"_s));
}

TEST_F(ToplevelLookup, ADocumentNameWithAContextAsksForThatContext)
{
    page.answerObject(u"DOCUMENT"_s, u"top.store[9]"_s);
    page.answer(uR"({"refName":null,"type":"[unknown]"})"_s);

    EXPECT_NE(Toplevel(&page).childByName(nullptr, u"DOCUMENT[a.html|FRAME1]"_s), nullptr);
    EXPECT_TRUE(lastScript().contains(u"__ostrel__documentOfContext('a.html|FRAME1');"_s));

    EXPECT_EQ(Toplevel(&page).childByName(nullptr, u"DOCUMENTS"_s), nullptr);
    EXPECT_TRUE(lastScript().contains(u"__ostrel__documentOfContext('"_s));
}

TEST_F(ToplevelLookup, ANameWithoutContainerIsOneSearch)
{
    page.answerObject(u"button"_s, u"top.store[9]"_s);

    const SharedPtr<Object> found
        = Toplevel(&page).objectByQualifiedName(nullptr, ObjectName(u"{tagName='BUTTON' id='a\\b'}"_s));

    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->objectClass()->name(), u"HTML_Button"_s);
    EXPECT_TRUE(lastScript().contains(uR"(__ostrel__findObject("{tagName='BUTTON' id='a\\b'}");)"_s));
    EXPECT_EQ(page.calls().last().timeoutMs, 5000U);
}

TEST_F(ToplevelLookup, TheLimitComesFromTheEnvironmentWhenItIsANumber)
{
    struct Row
    {
        const char *variable;
        unsigned int limit;
    };
    for (const Row &row : {Row{"abc", 5000U}, Row{"250", 250U}, Row{"0", 0U}, Row{"", 5000U}}) {
        const ScopedVariable variable("OSTREL_WEB_OBJECT_LOOKUP_TIMEOUT", QString::fromLatin1(row.variable));
        page.answer(uR"({"refName":null,"type":"[unknown]"})"_s);

        EXPECT_EQ(Toplevel(&page).objectByQualifiedName(nullptr, ObjectName(u"{tagName='P'}"_s)), nullptr);

        EXPECT_EQ(page.calls().last().timeoutMs, row.limit) << row.variable;
    }
}

TEST_F(ToplevelLookup, AFailedSearchIsAScriptError)
{
    page.fail(u"gone"_s);

    EXPECT_EQ(Toplevel(&page).objectByQualifiedName(nullptr, ObjectName(u"{tagName='P'}"_s)), nullptr);

    EXPECT_EQ(Inspector::self()->takeError(),
        u"Failed to lookup object name '{tagName='P'}' with function '__ostrel__findObject(\"{tagName='P'}\");': gone"_s);
}

TEST_F(ToplevelLookup, AMatchRemovesTheNotesOfUnmatchedProperties)
{
    const QString name = u"{tagName='P'}"_s;
    Inspector::self()->addUnmatchedProperty(name, u"innerText"_s);
    page.answerObject(u"P"_s, u"top.store[9]"_s);

    EXPECT_NE(Toplevel(&page).objectByQualifiedName(nullptr, ObjectName(name)), nullptr);

    EXPECT_EQ(Inspector::self()->unmatchedProperties(name), QStringList());
}

TEST_F(ContainerLookup, TheOutermostContainerIsFoundFirstAndTheRestInsideIt)
{
    page.answerObject(u"DIV"_s, u"top.box"_s);
    page.answerObject(u"P"_s, u"top.text"_s);

    const SharedPtr<Object> found = Toplevel(&page).objectByQualifiedName(
        nullptr, ObjectName(u"{container={tagName='DIV'} tagName='P'}"_s));

    ASSERT_NE(found, nullptr);
    EXPECT_EQ(retrieveObject(found)->jsReference(), u"top.text"_s);
    ASSERT_EQ(page.calls().size(), 2);
    EXPECT_TRUE(page.scripts().at(0).contains(u"__ostrel__findObject(\"{tagName='DIV'}\");"_s));
    EXPECT_TRUE(
        page.scripts().at(1).contains(u"__ostrel__findObjectByProps( top.box, \"{tagName='P'}\");"_s));
}

TEST_F(ContainerLookup, AMissingContainerIsNoted)
{
    const QString name = u"{container={tagName='DIV'} tagName='P'}"_s;
    page.answer(uR"({"refName":null,"type":"[unknown]"})"_s);

    EXPECT_EQ(Toplevel(&page).objectByQualifiedName(nullptr, ObjectName(name)), nullptr);

    EXPECT_EQ(Inspector::self()->unmatchedProperties(name), QStringList(u"container"_s));
    Inspector::self()->removeUnmatchedProperties(name);
}

TEST_F(ContainerLookup, ANameWithoutATagNameFindsNothingInsideAContainer)
{
    EXPECT_EQ(delegate().objectByQualifiedName(element(), ObjectName(u"{id='a'}"_s)), nullptr);

    EXPECT_TRUE(page.calls().isEmpty());
}

TEST_F(ContainerLookup, AContextInsideAContainerIsRefused)
{
    EXPECT_EQ(delegate().objectByQualifiedName(element(), ObjectName(u"{tagName='P' context='a.html'}"_s)),
        nullptr);

    EXPECT_EQ(Inspector::self()->takeError(),
        u"Invalid object name '{tagName='P' context='a.html'}'. Cannot lookup objects that have a context "
        u"and a "
        "container property, please make sure the context property is set only on the 'top-most' object name"_s);
}

TEST_F(ObjectNames, AContainerGoesInFrontOfADottedName)
{
    EXPECT_EQ(setObjectNameContainer(ObjectName(u"a.b"_s), u"c"_s).qualifiedName(), u"c.a.b"_s);
}

TEST_F(ObjectNames, ANewContainerLandsAtTheOutermostEnd)
{
    const ObjectName once = setObjectNameContainer(ObjectName(u"{tagName='P'}"_s), u"{tagName='DIV'}"_s);
    const ObjectName twice = setObjectNameContainer(once, u"{tagName='BODY'}"_s);

    const QList<ObjectName> chain = containerChain(twice);

    ASSERT_EQ(chain.size(), 3);
    EXPECT_EQ(chain.at(0).qualifiedName(), u"{tagName='BODY'}"_s);
    EXPECT_EQ(chain.at(1).qualifiedName(), u"{tagName='DIV'}"_s);
    EXPECT_EQ(chain.at(2).qualifiedName(), u"{tagName='P'}"_s);
}

TEST_F(ObjectNames, TheRestOfAChainIsOneNameAgain)
{
    const QList<ObjectName> chain
        = containerChain(ObjectName(u"{container={container={tagName='A'} tagName='B'} tagName='C'}"_s));

    ASSERT_EQ(chain.size(), 3);
    EXPECT_EQ(nestedContainerName(chain.mid(1)).qualifiedName(), u"{container={tagName='B'} tagName='C'}"_s);
}

TEST_F(ObjectNames, TextIsEscapedForDoubleQuotes)
{
    EXPECT_EQ(escapeForDoubleQuotes(u"a\\b\"c\r\n\t'"_s), u"a\\\\b\\\"c\\r\\n\t'"_s);
}

TEST_F(Geometry, BoundsComeFromThePage)
{
    page.answer(u"1,2,30,40"_s);

    EXPECT_EQ(WebObjectGeometryDelegate().globalBounds(element()), (Rect<2>{1, 2, 30, 40, -1}));

    EXPECT_EQ(lastScript(), u"__ostrel__getRectAsString(__ostrel__getScreenRectAsObject(top.store[1]) );"_s);
}

TEST_F(Geometry, FailedBoundsHaveANegativeSize)
{
    page.fail(u"gone"_s);

    testing::internal::CaptureStderr();
    EXPECT_EQ(WebObjectGeometryDelegate().globalBounds(element()), (Rect<2>{0, 0, -1, -1, -1}));

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Error obtaining global bounds: Error while obtaining rectangle with function "
        "'__ostrel__getScreenRectAsObject': gone\n");
}

TEST_F(Geometry, HitTestingAndFocusAreLeftToOthers)
{
    const WebObjectGeometryDelegate geometry;
    const SharedPtr<Object> object = element();

    EXPECT_EQ(geometry.childAt(object, 1, 1), nullptr);
    EXPECT_EQ(geometry.focusProxy(object), object);
    EXPECT_EQ(geometry.focusProxy(nullptr), nullptr);
    EXPECT_EQ(geometry.globalBounds(nullptr), (Rect<2>{0, 0, 0, 0, -1}));
}

TEST_F(Comparison, ThePageDecides)
{
    page.answer(u"true"_s);
    page.answer(u"false"_s);
    const WebObjectComparisonDelegate comparison;

    EXPECT_TRUE(comparison.compare(element(), element(u"P"_s, u"top.store[2]"_s)));
    EXPECT_FALSE(comparison.compare(element(), element(u"P"_s, u"top.store[2]"_s)));

    EXPECT_EQ(lastScript(), u"if( top.store[1] === top.store[2] ) { true; } else { false; }"_s);
}

TEST_F(Comparison, ElementsOfDifferentPagesAreNeverTheSame)
{
    FakePage other;
    const SharedPtr<Object> foreign
        = wrapObject(htmlObjectFromReferenceInfo(&other, u"DIV"_s, u"top.store[1]"_s, {}));

    EXPECT_FALSE(WebObjectComparisonDelegate().compare(element(), foreign));
    EXPECT_FALSE(WebObjectComparisonDelegate().compare(element(), nullptr));

    EXPECT_TRUE(page.calls().isEmpty());
}

TEST_F(ItemList, RecordsBecomeObjectsAndAnUnfinishedOneIsLeftOut)
{
    const ObjectList two = objectsFromItemList(
        &page, u"item_1|window.a~custom_item_x#item_2|window.b~custom_item_x#item_3|win"_s);

    ASSERT_EQ(two.size(), 2);
    EXPECT_EQ(retrieveObject(two.at(1))->jsReference(), u"window.b"_s);
    EXPECT_EQ(objectsFromItemList(&page, u"[err]"_s).size(), 0);
    EXPECT_EQ(objectsFromItemList(&page, {}).size(), 0);
}

TEST_F(ItemHierarchy, BelongsToItemsOfViews)
{
    const auto *items = DelegateFactory::self()->delegate<ObjectHierarchyDelegate>(
        Inspector::self()->findClass(u"HTML_CustomItem"_s));

    ASSERT_NE(dynamic_cast<const CustomViewItemPropertyDelegate *>(items), nullptr);
    EXPECT_EQ(items->className(), u"HTML_CustomItem"_s);
    EXPECT_EQ(items->wrapperType(), ObjectHierarchyDelegate::Web);
    EXPECT_EQ(items->wrapperType(), 8);
}

TEST_F(ItemHierarchy, ChildrenComeFromTheExtensionAtEachCall)
{
    const CustomViewItemPropertyDelegate items;
    const SharedPtr<Object> row = element(u"custom_item_Acme"_s, u"window.row"_s);
    const QString list = u"item_1|window.a~custom_item_Acme#item_2|window.b~custom_item_Acme#item_3|cut"_s;
    for (int i = 0; i < 4; ++i)
        page.answer(list);

    const ObjectList children = items.children(row);
    EXPECT_EQ(children.size(), 2);
    EXPECT_EQ(items.numChildren(row), 2);
    EXPECT_EQ(retrieveObject(items.child(row, 1))->jsReference(), u"window.b"_s);
    EXPECT_EQ(items.child(row, 2), nullptr);

    ASSERT_EQ(page.calls().size(), 4);
    for (const FakePage::Call &call : page.calls()) {
        EXPECT_EQ(call.script,
            u"try{__ostrel__fetchItemChildren(window.row, AcmeExtension );}catch(e){'[err]';}"_s);
        EXPECT_EQ(call.timeoutMs, 10000U);
    }
    EXPECT_EQ(items.child(row, -1), nullptr);
}

TEST_F(ItemHierarchy, AListThatIsEmptyOrFailedHasNoChildren)
{
    const CustomViewItemPropertyDelegate items;
    const SharedPtr<Object> row = element(u"custom_item_Acme"_s, u"window.row"_s);
    page.answer(u"[err]"_s);
    page.answer({});

    EXPECT_EQ(items.numChildren(row), 0);
    EXPECT_EQ(items.numChildren(row), 0);

    page.fail(u"gone"_s);
    testing::internal::CaptureStderr();
    EXPECT_EQ(items.numChildren(row), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error obtaining itemview children: gone\n");
}

TEST_F(ItemHierarchy, OnlyItemsOfALivePageHaveChildren)
{
    const CustomViewItemPropertyDelegate items;
    EXPECT_EQ(items.numChildren({}), 0);
    EXPECT_EQ(items.numChildren(element()), 0);

    page.available = false;
    EXPECT_EQ(items.numChildren(element(u"custom_item_Acme"_s)), 0);

    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(ItemHierarchy, AChildIsFoundByItsExactName)
{
    const CustomViewItemPropertyDelegate items;
    const SharedPtr<Object> row = element(u"custom_item_Acme"_s, u"window.row"_s);
    for (int i = 0; i < 2; ++i) {
        page.answer(u"item_1|window.a~custom_item_Acme#"_s);
        page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s); // no parent item
        page.answerObject(u"custom_itemview_Acme"_s, u"window.view"_s);
    }

    const SharedPtr<Object> found = items.childByName(row, u"item_1"_s);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(retrieveObject(found)->jsReference(), u"window.a"_s);
    EXPECT_EQ(items.childByName(row, u"Item_1"_s), nullptr);
}

TEST_F(ItemHierarchy, TheNameIsThatInTheView)
{
    const CustomViewItemPropertyDelegate items;
    const SharedPtr<Object> item
        = wrapObject(htmlObjectFromReferenceInfo(&page, u"custom_item_Acme"_s, u"window.row"_s, {}));
    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s); // no parent item
    page.answerObject(u"custom_itemview_Acme"_s, u"window.view"_s);
    page.answer(u"item_3"_s);

    EXPECT_EQ(items.name(item), u"item_3"_s);

    ASSERT_EQ(page.scripts().size(), 3);
    EXPECT_TRUE(page.scripts().at(0).contains(u"AcmeExtension.parentItem(window.row,-1);"_s));
    EXPECT_TRUE(page.scripts().at(1).contains(u"AcmeExtension.itemView(window.row);"_s));
    EXPECT_EQ(page.scripts().at(2), u"__ostrel__hierarchicalItemName(AcmeExtension, window.row);"_s);
}

TEST_F(ItemHierarchy, AnItemThatHangsInTheAirHasNoName)
{
    const CustomViewItemPropertyDelegate items;
    for (int i = 0; i < 2; ++i)
        page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);

    EXPECT_EQ(items.name(element(u"custom_item_Acme"_s)), QString());
    EXPECT_EQ(items.name({}), QString());
    EXPECT_EQ(items.name(element()), QString());

    EXPECT_EQ(page.scripts().size(), 2);
}

TEST_F(ItemHierarchy, ANameThatCannotBeToldIsEmpty)
{
    const CustomViewItemPropertyDelegate items;
    const SharedPtr<Object> item
        = wrapObject(htmlObjectFromReferenceInfo(&page, u"custom_item_Acme"_s, u"window.row"_s, {}));
    const auto nameAndErrors = [&] {
        testing::internal::CaptureStderr();
        EXPECT_EQ(items.name(item), QString());
        return testing::internal::GetCapturedStderr();
    };

    page.fail(u"gone"_s);
    EXPECT_EQ(nameAndErrors(), "Error fetching parent item for column '-1': gone\n");

    page.answer(u"{\"refName\":null,\"type\":\"[unknown]\"}"_s);
    page.fail(u"gone"_s);
    EXPECT_EQ(nameAndErrors(), "Error fetching itemview: gone\n");

    page.answerObject(u"custom_item_Acme"_s, u"window.parent"_s);
    page.answerObject(u"custom_itemview_Acme"_s, u"window.view"_s);
    page.fail(u"gone"_s);
    EXPECT_EQ(nameAndErrors(), "Error obtaining item name: gone\n");
}

TEST_F(ItemHierarchy, TheQualifiedNameIsNone)
{
    EXPECT_EQ(
        CustomViewItemPropertyDelegate().qualifiedName(element(u"custom_item_Acme"_s)), u"__noimpl__"_s);
}
