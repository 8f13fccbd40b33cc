// Tests of object tree dumps: the general way, a delegate that knows better, and what happens when something
// fails.
#include "fakehierarchy.h"

#include "ostrelhook/dump.h"
#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

using UIAbstraction::UIElement;

namespace {

class FakeLog : public LogInterface
{
public:
    QStringList lines;

protected:
    void write(int level, const QString &text) override
    {
        lines.append(u"%1: %2"_s.arg(QString::number(level), text));
    }
};

/// The tree as lines: depth, type, class, identifying properties in brackets, others, bounds, "image".
QStringList shown(const UIElement &element, int depth = 0)
{
    QStringList parts{QString(depth * 2, u' ') + element.type() + u':' + element.className()};
    for (const UIElement::Property &property : element.identifyingProperties())
        parts.append(u"[%1=%2]"_s.arg(property.name, property.value));
    for (const UIElement::Property &property : element.concreteProperties())
        parts.append(u"%1=%2"_s.arg(property.name, property.value));
    const Rect<2> &bounds = element.bounds();
    parts.append(u"%1,%2,%3,%4"_s.arg(QString::number(bounds.x), QString::number(bounds.y),
        QString::number(bounds.width), QString::number(bounds.height)));
    if (!element.image().isNull())
        parts.append(u"image %1"_s.arg(element.image().width()));
    QStringList lines{parts.join(u' ')};
    for (const auto &child : element.children())
        lines.append(shown(*child, depth + 1));
    return lines;
}

/// Answers from fixed values and records what it is asked.
class FakeDump : public DumpObjectTreeDelegate
{
public:
    explicit FakeDump(const QString &className, QStringList *record)
        : DumpObjectTreeDelegate(className), calls(record)
    {
    }

    bool enterDump(SharedPtr<Object>, const DumpFilters &, QString *error) const override
    {
        calls->append(u"enter "_s + className());
        if (!refusal.isEmpty())
            *error = refusal;
        return !refuses && refusal.isEmpty();
    }
    bool leaveDump(QString *error) const override
    {
        calls->append(u"leave "_s + className());
        *error = leaveFailure;
        return leaveFailure.isEmpty();
    }
    bool dumpObject(SharedPtr<Object> object, bool recursive, UIElement **element, const DumpFilters &filters,
        QString *) const override
    {
        calls->append(u"dump"_s);
        *element = leftOut.contains(object) ? nullptr : dumpObjectTreeImpl(object, recursive, filters);
        if (*element)
            (*element)->setConcreteProperty(u"textContent"_s, u"text"_s);
        return true;
    }
    bool takeScreenshot(SharedPtr<Object>, UIElement *element) const override
    {
        calls->append(u"shot"_s);
        if (takesScreenshots)
            element->setImage(QImage(7, 7, QImage::Format_ARGB32));
        return takesScreenshots;
    }
    bool setProperty(
        const Property *property, SharedPtr<Object>, UIElement *element, bool identifying) const override
    {
        calls->append(u"property "_s + property->name());
        if (property->name() != "title"_L1)
            return false;
        if (identifying)
            element->setIdentifyingProperty(u"title"_s, u"fast"_s);
        else
            element->setConcreteProperty(u"title"_s, u"fast"_s);
        return true;
    }
    bool children(SharedPtr<Object> object, ObjectList *children) const override
    {
        if (!below.contains(object.get()))
            return false;
        *children = below.value(object.get());
        return true;
    }
    bool visibleGlobalBounds(SharedPtr<Object>, Rect<2> *bounds) const override
    {
        *bounds = {1, 2, 3, 4, -1};
        return true;
    }
    bool isTransparent(SharedPtr<Object> object) const override { return transparent.contains(object); }

    QStringList *calls;
    bool refuses = false;
    QString refusal;
    QString leaveFailure;
    bool takesScreenshots = true;
    ObjectList leftOut;
    ObjectList transparent;
    QMap<const Object *, ObjectList> below;
};

class FixedBounds : public GeometryDelegate
{
public:
    using GeometryDelegate::GeometryDelegate;

    Rect<2> globalBounds(SharedPtr<Object>) const override { return {5, 6, 70, 80, -1}; }
};

class DumpTest : public testing::Test
{
protected:
    DumpTest() { options.log = &log; }
    ~DumpTest() override { EXPECT_EQ(Inspector::self()->takeError(), QString()); }

    QStringList dump(const DumpFilters &filters = {})
    {
        const FunctionCallResult<std::unique_ptr<UIElement>> result = dumpObjectTree(root, filters, options);
        return result.failed() ? QStringList{result.error} : shown(*result.value);
    }

    FakeLog log;
    DumpOptions options;
    QStringList calls;
    FakeHierarchy hierarchy;
    const SharedPtr<Object> root = hierarchy.add(nullptr, u"root"_s);
    const SharedPtr<Object> box = hierarchy.add(root, u"box"_s);
    const SharedPtr<Object> button = hierarchy.add(box, u"button"_s, new Button);
    DumpFilter onlyTitle{DumpFilter::Only, {u"title"_s}};
    const DumpFilters titles{{"Sample_Widget", &onlyTitle}};
};

TEST_F(DumpTest, WithoutADelegateTheClassesAndTheHierarchyTellAll)
{
    EXPECT_EQ(dump(),
        (QStringList{u"Widget:Sample_Widget title=a title width=10 0,0,-1,-1"_s,
            u"  Widget:Sample_Widget title=a title width=10 0,0,-1,-1"_s,
            u"    Button:Sample_Button width=10 title=a button's title 0,0,-1,-1"_s}));
}

TEST_F(DumpTest, APropertyThatFailsIsLoggedAndNoScriptError)
{
    dump();

    EXPECT_EQ(log.lines, QStringList(3, u"1: It failed: %1 'x'\n"_s));
    EXPECT_FALSE(Inspector::self()->hasError());
}

TEST_F(DumpTest, AnErrorFromBeforeTheDumpStaysPending)
{
    Inspector::self()->raiseError(u"before"_s);

    dump();

    EXPECT_EQ(Inspector::self()->takeError(), u"before"_s);
}

TEST_F(DumpTest, FiltersChooseProperties)
{
    DumpFilter forButtons(DumpFilter::AllBut, {u"title"_s, u"broken"_s}, {u"width"_s});

    EXPECT_EQ(dump({{"Sample_Widget", &onlyTitle}, {"Sample_Button", &forButtons}}),
        (QStringList{u"Widget:Sample_Widget title=a title 0,0,-1,-1"_s,
            u"  Widget:Sample_Widget title=a title 0,0,-1,-1"_s,
            u"    Button:Sample_Button [width=10] 0,0,-1,-1"_s}));
    EXPECT_EQ(log.lines, QStringList());
}

TEST_F(DumpTest, TheFilterOfTheNearestClassCounts)
{
    DumpFilter forButtons(DumpFilter::Only, {}, {u"id"_s});
    const DumpFilters filters{{"Sample_Widget", &onlyTitle}, {"Sample_Button", &forButtons}};

    const FilterObject buttonFilter = filterObjectForOstrelObject(button, filters);

    EXPECT_TRUE(buttonFilter.isMatchedProperty(u"id"_s));
    EXPECT_TRUE(buttonFilter.isIdentifyingProperty(u"id"_s));
    EXPECT_FALSE(buttonFilter.isMatchedProperty(u"title"_s));
    EXPECT_TRUE(filterObjectForOstrelObject(root, filters).isMatchedProperty(u"title"_s));
    EXPECT_FALSE(filterObjectForOstrelObject(root, filters).isMatchedProperty(u"id"_s));
    EXPECT_TRUE(filterObjectForOstrelObject(wrapDateTime({}), filters).isMatchedProperty(u"any"_s));
    EXPECT_FALSE(FilterObject().isIdentifyingProperty(u"any"_s));
    EXPECT_TRUE(filterObjectForOstrelObject(nullptr, filters).isMatchedProperty(u"any"_s));
}

TEST_F(DumpTest, BoundsAndScreenshotsComeFromTheDesktopWithoutADelegate)
{
    const FixedBounds geometry(u"Sample_Button"_s);
    options.grabDesktop
        = [](const Rect<2> &bounds) { return QImage(bounds.width, bounds.height, QImage::Format_ARGB32); };

    EXPECT_EQ(dump(titles),
        (QStringList{u"Widget:Sample_Widget title=a title 0,0,-1,-1"_s,
            u"  Widget:Sample_Widget title=a title 0,0,-1,-1"_s,
            u"    Button:Sample_Button title=a button's title 5,6,70,80 image 70"_s}));
}

TEST_F(DumpTest, ADelegateAnswersBetweenEnterAndLeave)
{
    const FakeDump fast(u"Sample_Widget"_s, &calls);

    const QStringList tree = dump(titles);

    EXPECT_EQ(tree,
        (QStringList{u"Widget:Sample_Widget title=fast textContent=text 1,2,3,4 image 7"_s,
            u"  Widget:Sample_Widget title=fast textContent=text 1,2,3,4 image 7"_s,
            u"    Button:Sample_Button title=fast textContent=text 1,2,3,4 image 7"_s}));
    EXPECT_EQ(calls,
        (QStringList{u"enter Sample_Widget"_s, u"dump"_s, u"property title"_s, u"shot"_s, u"dump"_s,
            u"property title"_s, u"shot"_s, u"dump"_s, u"property title"_s, u"shot"_s,
            u"leave Sample_Widget"_s}));
}

TEST_F(DumpTest, TheChildrenOfADelegateReplaceThoseOfTheHierarchy)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.below.insert(root.get(), {button});
    fast.below.insert(button.get(), {});
    hierarchy.asked = 0;

    EXPECT_EQ(dump(titles).size(), 2);

    EXPECT_EQ(hierarchy.asked, 0);
}

TEST_F(DumpTest, WhatADelegateDoesNotHandleGoesTheGeneralWay)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.takesScreenshots = false;
    DumpFilter both(DumpFilter::Only, {u"width"_s}, {u"title"_s});
    options.grabDesktop = [](const Rect<2> &) { return QImage(9, 9, QImage::Format_ARGB32); };

    EXPECT_EQ(dump({{"Sample_Widget", &both}}).first(),
        u"Widget:Sample_Widget [title=fast] width=10 textContent=text 1,2,3,4 image 9"_s);
}

TEST_F(DumpTest, ScreenshotsCanBeLeftOut)
{
    const FakeDump fast(u"Sample_Widget"_s, &calls);
    options.screenshots = false;

    EXPECT_EQ(dump(titles).first(), u"Widget:Sample_Widget title=fast textContent=text 1,2,3,4"_s);

    EXPECT_FALSE(calls.contains(u"shot"_s));
}

TEST_F(DumpTest, AFailureToPrepareIsTheFailureOfTheDump)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.refusal = u"Error preparing object dump for 'Sample_Widget': %1 gone"_s;

    EXPECT_EQ(dump(), QStringList{u"Error preparing object dump for 'Sample_Widget': %1 gone"_s});
    EXPECT_EQ(calls, QStringList{u"enter Sample_Widget"_s});
}

TEST_F(DumpTest, ADelegateThatDeclinesIsNotAskedAgain)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.refuses = true;

    EXPECT_EQ(dump(titles).first(), u"Widget:Sample_Widget title=a title 0,0,-1,-1"_s);

    EXPECT_EQ(calls, QStringList{u"enter Sample_Widget"_s});
}

TEST_F(DumpTest, ADelegateOfAnotherClassIsToldWhereItsPartBegins)
{
    const FakeDump outer(u"Sample_Widget"_s, &calls);
    const FakeDump inner(u"Sample_Button"_s, &calls);
    DumpFilter nothing(DumpFilter::Only, {});
    options.screenshots = false;

    dump({{"Sample_Widget", &nothing}});

    EXPECT_EQ(calls,
        (QStringList{u"enter Sample_Widget"_s, u"dump"_s, u"dump"_s, u"enter Sample_Button"_s, u"dump"_s,
            u"leave Sample_Button"_s, u"leave Sample_Widget"_s}));
}

TEST_F(DumpTest, AnInnerDelegateThatFailsIsLoggedAndDoneWithout)
{
    FakeDump inner(u"Sample_Button"_s, &calls);
    inner.refusal = u"no entry"_s;

    EXPECT_EQ(dump(titles).last(), u"    Button:Sample_Button title=a button's title 0,0,-1,-1"_s);

    EXPECT_EQ(log.lines, QStringList{u"1: no entry"_s});
    EXPECT_EQ(calls, QStringList{u"enter Sample_Button"_s});
}

TEST_F(DumpTest, AFailureToLeaveIsLogged)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.leaveFailure = u"no exit"_s;

    EXPECT_EQ(dump(titles).size(), 3);

    EXPECT_EQ(log.lines, QStringList{u"1: no exit"_s});
}

TEST_F(DumpTest, ObjectsWithoutAnElementAreLeftOut)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.leftOut = {box};
    EXPECT_EQ(
        dump(titles), QStringList{u"Widget:Sample_Widget title=fast textContent=text 1,2,3,4 image 7"_s});

    fast.leftOut = {root};
    EXPECT_EQ(dump(titles), QStringList{u"There is nothing to dump of this Sample_Widget."_s});
}

TEST_F(DumpTest, TheChildrenOfATransparentObjectStandInItsPlace)
{
    FakeDump fast(u"Sample_Widget"_s, &calls);
    fast.transparent = {box};

    EXPECT_EQ(dump(titles),
        (QStringList{u"Widget:Sample_Widget title=fast textContent=text 1,2,3,4 image 7"_s,
            u"  Button:Sample_Button title=fast textContent=text 1,2,3,4 image 7"_s}));
}

TEST_F(DumpTest, ANullObjectCannotBeDumped)
{
    EXPECT_EQ(dumpObjectTree(nullptr, {}).error, u"Cannot dump a null object."_s);
    EXPECT_EQ(dumpObjectTree(wrapped(nullptr), {}).error, u"Cannot dump a null object."_s);
    EXPECT_EQ(dumpObjectTreeImpl(nullptr, true, {}), nullptr);
}

TEST_F(DumpTest, OneObjectAloneIsDumpedWithoutThoseBelow)
{
    const std::unique_ptr<UIElement> element(dumpObjectTreeImpl(root, false, titles));

    EXPECT_EQ(shown(*element), QStringList{u"Widget:Sample_Widget title=a title 0,0,-1,-1"_s});
}

TEST(UIElement, APropertySetAgainKeepsItsPlace)
{
    UIElement element(u"Button"_s, u"HTML_Button"_s);

    element.setConcreteProperty(u"a"_s, u"1"_s);
    element.setConcreteProperty(u"b"_s, u"2"_s);
    element.setConcreteProperty(u"a"_s, u"3"_s);
    element.setIdentifyingProperty(u"a"_s, u"4"_s);

    EXPECT_EQ(element.concreteProperties(), (QList<UIElement::Property>{{u"a"_s, u"3"_s}, {u"b"_s, u"2"_s}}));
    EXPECT_EQ(element.identifyingProperties(), (QList<UIElement::Property>{{u"a"_s, u"4"_s}}));
}

TEST(LogInterface, FormatsItsTexts)
{
    FakeLog log;

    log.log(1, "Failed to retrieve object screenshot: %s\n", "\xc3\xa9 %1");

    EXPECT_EQ(log.lines, QStringList{u"1: Failed to retrieve object screenshot: \u00e9 %1\n"_s});
}

} // namespace
