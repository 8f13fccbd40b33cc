// Tests of the dump delegate: what goes to the page, what a dump gets from the snapshot, and what happens
// when something fails.
#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/htmlobjectdumpobjecttreedelegate.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/tracecapture.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
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

/// A page whose picture can be grabbed.
class PicturePage : public FakePage
{
public:
    bool grabs = true;
    FunctionCallResult<QImage> picture;
    FunctionCallResult<double> zoom = 1.0;
    mutable int pictures = 0;
    mutable int zoomQuestions = 0;

    bool supportsPageScreenshot() const override { return grabs; }
    FunctionCallResult<QImage> grabPageScreenshot() const override
    {
        ++pictures;
        return picture;
    }
    FunctionCallResult<double> zoomFactor() const override
    {
        ++zoomQuestions;
        return zoom;
    }
};

/// The script that carries an expression to the page.
QString enveloped(const QString &expression)
{
    return u"(function() {\n  try {\n    return JSON.stringify({'result': "_s + expression
        + u"});\n  } catch( e ) {\n"
          "    return JSON.stringify({'error': {'name': e['name'], 'message': e['message'], 'file': "
          "e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});\n  }\n}());"_s;
}

/// What follows the properties of an element in the second call.
QString internalGetters(const QString &reference, const QString &zoom = u"1"_s)
{
    return uR"('screenRect': function() { return __ostrel__getScreenRectAsObject( %1 ); },)"
           "'__ostrel__textContent': function() { return window.top.__ostrel.getTextContent( %1 ); },"
           "'__ostrel__elementRectangleInDocument': function() { return "
           "window.top.__ostrel.getElementRectangleInDocument( %1, %2 ); }"_s.arg(reference, zoom);
}

class DumpDelegate : public testing::Test
{
protected:
    DumpDelegate() { options.log = &log; }
    static void SetUpTestSuite() { createWebObjectClassesOnce(); }
    void TearDown() override { EXPECT_EQ(Inspector::self()->takeError(), QString()); }

    SharedPtr<Object> element(const QString &reference = u"top.store[0]"_s)
    {
        return wrapObject(htmlObjectFromReferenceInfo(&page, u"DIV"_s, reference, u"DIV"_s));
    }

    /// Answers the two calls for an element with a paragraph in it.
    void answerSmallTree()
    {
        page.answerJson(
            uR"([{"reference":"top.store[1]","typeString":"P","nameInLeaf":"P","children":[]}])"_s);
        page.answerJson(
            uR"({"top.store[0]":{"id":"box","visible":true,"screenRect":{"x":1,"y":2,"width":30,"height":40},)"
            uR"("__ostrel__textContent":"Hello","__ostrel__elementRectangleInDocument":{"x":0,"y":1,"width":4,"height":3}},)"
            uR"("top.store[1]":{"id":"text","visible":false,"screenRect":{"x":5,"y":6,"width":7,"height":8},)"
            uR"("__ostrel__textContent":"","__ostrel__elementRectangleInDocument":{"x":9,"y":9,"width":9,"height":9}}})"_s);
    }
    bool enter(const SharedPtr<Object> &root)
    {
        error.clear();
        return delegate.enterDump(root, filters, &error);
    }
    bool leave() { return delegate.leaveDump(&error); }

    static QString value(const UIElement &element, const QString &name)
    {
        for (const UIElement::Property &property : element.concreteProperties()) {
            if (property.name == name)
                return property.value;
        }
        return u"not there"_s;
    }
    static const Property *propertyNamed(const SharedPtr<Object> &object, const QString &name)
    {
        return object->objectClass()->findProperty(name);
    }
    Rect<2> bounds(const SharedPtr<Object> &object) const
    {
        Rect<2> found;
        EXPECT_TRUE(delegate.visibleGlobalBounds(object, &found));
        return found;
    }

    PicturePage page;
    FakeLog log;
    DumpOptions options;
    QString error;
    DumpFilter onlyId{DumpFilter::Only, {u"id"_s}};
    DumpFilters filters{{"HTML_Object", &onlyId}};
    HtmlObjectDumpObjectTreeDelegate delegate{&log};
};

} // namespace

TEST_F(DumpDelegate, ServesElementsOfAllClasses)
{
    EXPECT_EQ(delegate.className(), u"HTML_Object"_s);
    EXPECT_EQ(DelegateFactory::self()->delegate<DumpObjectTreeDelegate>(element()), &delegate);

    const HtmlObjectDumpObjectTreeDelegate copy(delegate);
    EXPECT_EQ(copy.className(), u"HTML_Object"_s);
}

TEST_F(DumpDelegate, FetchesTreeAndValuesInTwoCallsWithoutLimit)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();

    ASSERT_TRUE(enter(root));

    EXPECT_EQ(page.scripts(),
        QStringList({
            enveloped(u"window.top.__ostrel.objectTreeInformation( top.store[0] )"_s),
            enveloped(
                uR"(window.top.__ostrel.readPropertiesFromObjects( [{ 'object': top.store[0], 'propertyGetters': { )"
                "'id': function() { return window.top.__ostrel.getPropertyValue( top.store[0], 'id' )"
                ".replace(/\\s*$/, ''); },"
                "'visible': function() { return __ostrel__isVisible( top.store[0] ); },"_s
                + internalGetters(u"top.store[0]"_s)
                + u"} },{ 'object': top.store[1], 'propertyGetters': { "
                  "'id': function() { return window.top.__ostrel.getPropertyValue( top.store[1], 'id' )"
                  ".replace(/\\s*$/, ''); },"
                  "'visible': function() { return __ostrel__isVisible( top.store[1] ); },"_s
                + internalGetters(u"top.store[1]"_s) + u"} }] )"_s),
        }));
    EXPECT_EQ(page.calls().at(0).timeoutMs, 0U);
    EXPECT_EQ(page.calls().at(1).timeoutMs, 0U);
    EXPECT_EQ(page.zoomQuestions, 2);
    EXPECT_EQ(error, QString());
    leave();
}

TEST_F(DumpDelegate, WithoutAFilterAllPropertiesThatThePageCanReadAreTaken)
{
    filters.clear();
    page.answerJson(u"[]"_s);
    page.answerJson(u"{}"_s);

    ASSERT_TRUE(enter(element()));

    const QString script = page.scripts().at(1);
    for (const char *name : {"id", "innerText", "innerHTML", "x", "y", "width", "height", "tagName", "title",
             "styleDisplay", "domClassName", "domPath", "numChildren", "visible", "simplifiedInnerText"})
        EXPECT_EQ(script.count(u"'%1': function() { return "_s.arg(QLatin1StringView(name))), 1) << name;
    // what only the reflection class reads
    EXPECT_FALSE(script.contains(u"'css'"_s));
    EXPECT_FALSE(script.contains(u"'parentElement'"_s));
    leave();
}

TEST_F(DumpDelegate, TheZoomOfTheTabGoesToThePage)
{
    page.zoom = 1.25;
    page.answerJson(u"[]"_s);
    page.answerJson(u"{}"_s);

    ASSERT_TRUE(enter(element(u"el"_s)));

    EXPECT_TRUE(page.scripts().at(1).contains(internalGetters(u"el"_s, u"1.25"_s)));
    leave();
}

TEST_F(DumpDelegate, AZoomThatCannotBeToldEndsThePreparation)
{
    page.zoom = Failure(u"the tab is gone"_s);
    page.answerJson(u"[]"_s);

    EXPECT_FALSE(enter(element()));

    EXPECT_EQ(error,
        u"Error preparing object dump for 'HTML_Object': Error obtaining needed zoom factor in browser tab: "
        "the tab is gone"_s);
    EXPECT_EQ(page.calls().size(), 1);
}

TEST_F(DumpDelegate, ATreeThatCannotBeFetchedLeavesTheDelegateIdle)
{
    const SharedPtr<Object> root = element();
    page.fail(u"no page"_s);

    EXPECT_FALSE(enter(root));
    EXPECT_EQ(error, u"Error preparing object dump for 'HTML_Object': no page"_s);

    // The next dump begins anew, which a counter out of balance would prevent.
    answerSmallTree();
    EXPECT_TRUE(enter(root));
    EXPECT_EQ(page.calls().size(), 3);
    leave();
}

TEST_F(DumpDelegate, ValuesThatCannotBeFetchedLeaveTheDelegateIdle)
{
    const SharedPtr<Object> root = element();
    page.answerJson(u"[]"_s);
    page.fail(u"too much"_s);

    EXPECT_FALSE(enter(root));

    EXPECT_EQ(
        error, u"Error preparing object dump for 'HTML_Object': Error fetching property values: too much"_s);
    ObjectList children;
    EXPECT_FALSE(delegate.children(root, &children));
}

TEST_F(DumpDelegate, AnAnswerThatIsNoObjectIsAnError)
{
    page.answerJson(u"[]"_s);
    page.answerJson(u"[1]"_s);

    EXPECT_FALSE(enter(element()));

    EXPECT_EQ(error,
        u"Error preparing object dump for 'HTML_Object': Error fetching property values: The page gave no "
        "object"_s);
}

TEST_F(DumpDelegate, AnObjectWithoutAPageCannotBeDumped)
{
    EXPECT_FALSE(enter({}));
    EXPECT_EQ(error, u"Error preparing object dump for '': The object belongs to no page"_s);

    EXPECT_FALSE(enter(wrapObject(nullptr)));
    EXPECT_EQ(error, u"Error preparing object dump for 'HTML_Object': The object belongs to no page"_s);
}

TEST_F(DumpDelegate, ANestedDumpSharesTheSnapshot)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();
    ASSERT_TRUE(enter(root));
    ObjectList children;
    ASSERT_TRUE(delegate.children(root, &children));

    EXPECT_TRUE(enter(children.first()));
    EXPECT_TRUE(leave());

    EXPECT_EQ(page.calls().size(), 2);
    EXPECT_TRUE(delegate.children(root, &children));
    EXPECT_EQ(children.size(), 1);

    EXPECT_TRUE(leave());
    EXPECT_FALSE(delegate.children(root, &children));
}

TEST_F(DumpDelegate, LeavingWhatWasNotEnteredChangesNothing)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();

    EXPECT_TRUE(leave());
    EXPECT_TRUE(enter(root));

    ObjectList children;
    EXPECT_TRUE(delegate.children(root, &children));
    leave();
    EXPECT_FALSE(delegate.children(root, &children));
}

TEST_F(DumpDelegate, ChildrenAreInPageOrderAndWrappedByTheirType)
{
    const SharedPtr<Object> root = element();
    page.answerJson(
        uR"([{"reference":"top.store[7]","typeString":"checkbox","nameInLeaf":"INPUT","children":[)"
        uR"({"reference":"top.store[8]","typeString":"[unknown_type]","nameInLeaf":"NODE","children":[]}]},)"
        uR"({"reference":"top.store[3]","typeString":"select-one","nameInLeaf":"SELECT","children":[]}])"_s);
    page.answerJson(u"{}"_s);
    ASSERT_TRUE(enter(root));

    ObjectList children;
    ObjectList grandchildren;
    ASSERT_TRUE(delegate.children(root, &children));
    ASSERT_EQ(children.size(), 2);
    ASSERT_TRUE(delegate.children(children.at(0), &grandchildren));

    EXPECT_EQ(children.at(0)->objectClass()->name(), u"HTML_CheckBox"_s);
    EXPECT_EQ(children.at(1)->objectClass()->name(), u"HTML_Select"_s);
    EXPECT_EQ(retrieveObject(children.at(1))->jsReference(), u"top.store[3]"_s);
    ASSERT_EQ(grandchildren.size(), 1);
    // The name came with the tree.
    EXPECT_EQ(retrieveObject(grandchildren.at(0))->name().value, u"NODE"_s);
    EXPECT_EQ(page.calls().size(), 2);
    leave();
}

TEST_F(DumpDelegate, WhatIsNotInTheSnapshotIsLeftToTheGeneralWay)
{
    const SharedPtr<Object> stranger = element(u"other"_s);
    answerSmallTree();
    ASSERT_TRUE(enter(element()));
    ObjectList children;
    Rect<2> rectangle;
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    EXPECT_FALSE(delegate.children({}, &children));
    EXPECT_FALSE(delegate.children(stranger, &children));
    EXPECT_FALSE(delegate.visibleGlobalBounds(stranger, &rectangle));
    EXPECT_FALSE(delegate.setProperty(propertyNamed(stranger, u"id"_s), stranger, &record, false));
    EXPECT_FALSE(delegate.takeScreenshot(stranger, &record));
    leave();
}

TEST_F(DumpDelegate, APropertyGoesIntoTheElementByItsKind)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();
    ASSERT_TRUE(enter(root));
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    EXPECT_TRUE(delegate.setProperty(propertyNamed(root, u"id"_s), root, &record, true));
    EXPECT_TRUE(delegate.setProperty(propertyNamed(root, u"visible"_s), root, &record, false));
    // filtered out, so that the framework asks the reflection class
    EXPECT_FALSE(delegate.setProperty(propertyNamed(root, u"title"_s), root, &record, false));
    // not a simple type
    EXPECT_FALSE(delegate.setProperty(propertyNamed(root, u"css"_s), root, &record, false));

    EXPECT_EQ(record.identifyingProperties(), QList<UIElement::Property>({{u"id"_s, u"box"_s}}));
    EXPECT_EQ(record.concreteProperties(), QList<UIElement::Property>({{u"visible"_s, u"true"_s}}));
    leave();
}

TEST_F(DumpDelegate, AnElementWithoutValuesHasNoProperties)
{
    const SharedPtr<Object> root = element();
    page.answerJson(u"[]"_s);
    page.answerJson(u"{}"_s);
    ASSERT_TRUE(enter(root));
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    EXPECT_FALSE(delegate.setProperty(propertyNamed(root, u"id"_s), root, &record, false));
    leave();
}

TEST_F(DumpDelegate, ValuesAreKeptAsText)
{
    const SharedPtr<Object> root = element();
    filters.clear();
    page.answerJson(u"[]"_s);
    page.answerJson(
        uR"({"top.store[0]":{"id":"a\u2028b \ud83d\ude00","x":-7,"y":2.5,"visible":true,"title":null}})"_s);
    ASSERT_TRUE(enter(root));
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    for (const QString &name : {u"id"_s, u"x"_s, u"y"_s, u"visible"_s, u"title"_s})
        EXPECT_TRUE(delegate.setProperty(propertyNamed(root, name), root, &record, false))
            << name.toStdString();

    EXPECT_EQ(record.concreteProperties(),
        QList<UIElement::Property>({{u"id"_s, u"a\u2028b \U0001F600"_s}, {u"x"_s, u"-7"_s},
            {u"y"_s, u"2.5"_s}, {u"visible"_s, u"true"_s}, {u"title"_s, QString()}}));
    leave();
}

TEST_F(DumpDelegate, ATraceTellsTheValues)
{
    const TraceCapture traces(u"WebObjectDump"_s);
    page.answerJson(u"[]"_s);
    page.answerJson(uR"({"top.store[0]":{"id":"100%1","screenRect":{"x":1,"y":2,"width":3,"height":4}}})"_s);

    ASSERT_TRUE(enter(element()));

    EXPECT_EQ(traces.lines(), QStringList{u"Storing fetched value for property: id = 100%1"_s});
    leave();
}

TEST_F(DumpDelegate, AnInvisibleElementIsThereWithoutSize)
{
    page.picture = QImage(10, 10, QImage::Format_RGB32);
    const SharedPtr<Object> root = element();
    answerSmallTree();

    const auto dumped = dumpObjectTree(root, filters, options);

    ASSERT_EQ(dumped.error, QString());
    ASSERT_EQ(dumped.value->children().size(), 1U);
    const UIElement &paragraph = *dumped.value->children().front();
    EXPECT_EQ(paragraph.bounds(), (Rect<2>{0, 0, -1, -1, -1}));
    EXPECT_EQ(value(paragraph, u"id"_s), u"text"_s);
    EXPECT_TRUE(paragraph.image().isNull());
}

TEST_F(DumpDelegate, BoundsAreThoseOfThePictureWhereThereIsOne)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();
    ASSERT_TRUE(enter(root));

    EXPECT_EQ(bounds(root), (Rect<2>{0, 1, 4, 3, -1}));

    page.grabs = false;
    EXPECT_EQ(bounds(root), (Rect<2>{1, 2, 30, 40, -1}));
    leave();
}

TEST_F(DumpDelegate, TheTextContentComesUnderItsOwnNameOnly)
{
    filters.clear();
    options.screenshots = false;
    const SharedPtr<Object> root = element();
    page.answerJson(u"[]"_s);
    page.answerJson(uR"({"top.store[0]":{"__ostrel__textContent":"Hello"}})"_s);

    ASSERT_TRUE(enter(root));
    UIElement *record = nullptr;
    DumpFilter nothing(DumpFilter::Only, {});
    EXPECT_TRUE(delegate.dumpObject(root, false, &record, {{"HTML_Object", &nothing}}, &error));
    const std::unique_ptr<UIElement> owned(record);

    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->concreteProperties(), QList<UIElement::Property>({{u"textContent"_s, u"Hello"_s}}));
    leave();
}

TEST_F(DumpDelegate, ANullObjectIsHandledAndGivesNoElement)
{
    UIElement *record = nullptr;

    EXPECT_TRUE(delegate.dumpObject({}, true, &record, filters, &error));

    EXPECT_EQ(record, nullptr);
}

TEST_F(DumpDelegate, AScreenshotIsThePartOfThePageAndTransparentBeyondIt)
{
    QImage picture(3, 3, QImage::Format_RGB32);
    picture.fill(Qt::red);
    picture.setPixelColor(0, 1, Qt::blue);
    page.picture = picture;
    const SharedPtr<Object> root = element();
    answerSmallTree();
    ASSERT_TRUE(enter(root));
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    EXPECT_TRUE(delegate.takeScreenshot(root, &record));

    const QImage &image = record.image();
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(image.size(), QSize(4, 3));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(2, 1), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(3, 1).alpha(), 0);
    EXPECT_EQ(image.pixelColor(0, 2).alpha(), 0);
    EXPECT_EQ(log.lines, QStringList());
    leave();
}

TEST_F(DumpDelegate, EachScreenshotGrabsThePage)
{
    page.picture = QImage(10, 10, QImage::Format_RGB32);
    const SharedPtr<Object> root = element();
    page.answerJson(uR"([{"reference":"top.store[1]","typeString":"P","nameInLeaf":"P","children":[]}])"_s);
    page.answerJson(
        uR"({"top.store[0]":{"__ostrel__elementRectangleInDocument":{"x":0,"y":0,"width":4,"height":3}},)"
        uR"("top.store[1]":{"__ostrel__elementRectangleInDocument":{"x":0,"y":0,"width":4,"height":3}}})"_s);

    const auto dumped = dumpObjectTree(root, filters, options);

    ASSERT_EQ(dumped.error, QString());
    EXPECT_EQ(page.pictures, 2);
    EXPECT_FALSE(dumped.value->image().isNull());
    EXPECT_FALSE(dumped.value->children().front()->image().isNull());
}

TEST_F(DumpDelegate, APictureThatCannotBeTakenGoesToTheLog)
{
    const SharedPtr<Object> root = element();
    answerSmallTree();
    ASSERT_TRUE(enter(root));
    UIElement record(u"Object"_s, u"HTML_Object"_s);

    page.picture = Failure(u"100%s busy"_s);
    EXPECT_TRUE(delegate.takeScreenshot(root, &record));
    page.picture = QImage();
    EXPECT_TRUE(delegate.takeScreenshot(root, &record));

    EXPECT_TRUE(record.image().isNull());
    EXPECT_EQ(log.lines,
        QStringList({u"1: Failed to retrieve object screenshot: 100%s busy\n"_s,
            u"1: Failed to retrieve object screenshot: Invalid image obtained for html page screenshot.\n"_s}));
    leave();
}

TEST_F(DumpDelegate, WithoutPagePicturesTheDesktopIsGrabbed)
{
    page.grabs = false;
    const SharedPtr<Object> root = element();
    page.answerJson(u"[]"_s);
    page.answerJson(
        uR"({"top.store[0]":{"id":"box","visible":true,"screenRect":{"x":1,"y":2,"width":30,"height":40}}})"_s);
    QList<Rect<2>> grabbed;
    options.grabDesktop = [&](const Rect<2> &bounds) {
        grabbed.append(bounds);
        return QImage(2, 2, QImage::Format_RGB32);
    };

    const auto dumped = dumpObjectTree(root, filters, options);

    ASSERT_EQ(dumped.error, QString());
    EXPECT_EQ(grabbed, QList<Rect<2>>({Rect<2>{1, 2, 30, 40, -1}}));
    EXPECT_FALSE(dumped.value->image().isNull());
    EXPECT_EQ(log.lines,
        QStringList{u"1: Falling back to desktop screenshot grabbing for Object Dump as the browser does not "
                    "support full page grabs."_s});
}

TEST_F(DumpDelegate, AFailedPreparationFailsTheDump)
{
    page.fail(u"no page"_s);

    const auto dumped = dumpObjectTree(element(), filters, options);

    EXPECT_EQ(dumped.error, u"Error preparing object dump for 'HTML_Object': no page"_s);
}

TEST_F(DumpDelegate, TheComposedScriptParses)
{
    filters.clear();
    page.answerJson(u"[]"_s);
    page.answerJson(u"{}"_s);
    ASSERT_TRUE(enter(element(u"el"_s)));
    PageScript browser({u"window.top.__ostrel.readPropertiesFromObjects"_s});

    browser.run(page.scripts().at(1));

    EXPECT_EQ(browser.error(), QString());
    EXPECT_EQ(browser.calls(), QStringList{u"window.top.__ostrel.readPropertiesFromObjects"_s});
    leave();
}

TEST(ScreenRectangleFromJson, ReadsTheFourSides)
{
    const auto read = [](const QString &text) { return screenRectangleFromJson(parseJson(text).root); };
    EXPECT_EQ(read(uR"({"x":1,"y":-2,"width":3,"height":4})"_s), (ScreenRectangle{1, -2, 3, 4}));
    EXPECT_EQ(read(uR"({"x":1.9,"y":2,"width":3,"height":4})"_s), (ScreenRectangle{1, 2, 3, 4}));
    EXPECT_EQ(read(uR"({"x":1,"y":2,"width":3})"_s), ScreenRectangle());
    EXPECT_EQ(read(uR"({"x":1,"y":2,"width":3,"height":null})"_s), ScreenRectangle());
    EXPECT_EQ(read(uR"({"x":1,"y":2,"width":3,"height":"4"})"_s), ScreenRectangle());
    EXPECT_EQ(read(uR"({"x":1,"y":2,"width":3,"height":1e300})"_s), ScreenRectangle());
    EXPECT_EQ(read(u"null"_s), ScreenRectangle());
    EXPECT_EQ(read(u"[1,2,3,4]"_s), ScreenRectangle());
}
