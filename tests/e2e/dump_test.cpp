// Dumps of real pages: what goes to the page, whether bounds fit the picture, the command, and the form for
// people, operated in the browser.
#include "e2e/commandrun.h"
#include "host/browser/browser.h"
#include "host/dump/dumpwriter.h"
#include "host/dump/pagedump.h"
#include "host/script/testsession.h"
#include "support/printqt.h"
#include "support/waitfor.h"
#include "wrappers/web/htmlobjectdumpobjecttreedelegate.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <cmath>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;
using Ostrel::UIAbstraction::UIElement;

namespace Ostrel::Host {
namespace {

const QString demoShop = QStringLiteral("file://" PAGEPROBE_SOURCE_DIR "/demo/index.html");

/// A page with boxes, one below the window and one in the middle of it.
const QByteArray boxes = R"(<!DOCTYPE html><html><head><title>Two boxes</title></head>
<body style="margin:0">
<div id="red" style="position:absolute;left:100px;top:52px;width:60px;height:40px;background:#f00">Red</div>
<div id="green" style="position:absolute;left:20px;top:2000px;width:32px;height:20px;background:#0f0"></div>
<div style="height:2100px"></div>
<div id="blue" style="position:absolute;left:0;right:0;top:12px;margin:auto;width:48px;height:12px;background:#00f"></div>
<div id="gone" style="display:none">Not there</div>
</body></html>)";

/// Passes everything on to a page and counts the scripts.
class CountingPage : public WebWrapper::HTMLComponent
{
public:
    explicit CountingPage(BrowserPage *page) : m_page(page) { }

    EvalResult evaluateJavaScript(const QString &script, unsigned int timeoutMs) const override
    {
        ++evaluations;
        return m_page->evaluateJavaScript(script, timeoutMs);
    }
    int browserType() const override { return m_page->browserType(); }
    bool isPageAvailable() const override { return m_page->isPageAvailable(); }
    WebWrapper::WrapperConfig *config() const override { return m_page->config(); }
    bool supportsPageScreenshot() const override { return true; }
    FunctionCallResult<double> zoomFactor() const override { return m_page->zoomFactor(); }
    FunctionCallResult<void> setFileInputValue(WebWrapper::HTML_TextBase *, const QString &) override
    {
        return {};
    }
    FunctionCallResult<void> setCustomFileInputValue(WebWrapper::HTML_CustomText *, const QString &) override
    {
        return {};
    }

    mutable int evaluations = 0;

private:
    BrowserPage *m_page;
};

QString property(const UIElement &element, const QString &name)
{
    for (const UIElement::Property &each : element.concreteProperties()) {
        if (each.name == name)
            return each.value;
    }
    return u"(none)"_s;
}

const UIElement *elementWithId(const UIElement &root, const QString &id)
{
    if (property(root, u"id"_s) == id)
        return &root;
    for (const auto &child : root.children()) {
        if (const UIElement *found = elementWithId(*child, id))
            return found;
    }
    return nullptr;
}

int countOf(const UIElement &root)
{
    int count = 1;
    for (const auto &child : root.children())
        count += countOf(*child);
    return count;
}

class DumpTest : public ::testing::Test
{
protected:
    void begin(const QStringList &browserArguments = {})
    {
        SessionOptions options;
        options.browser.extraArguments = browserArguments;
        auto started = TestSession::start(options, nobody);
        ASSERT_EQ(started.error, QString());
        session = std::move(started.value);
        page = session->activePage();
    }
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return u"file://"_s + file.fileName();
    }
    void open(const QByteArray &content)
    {
        ASSERT_EQ(session->open(write(u"page.html"_s, content)).error, QString());
    }

    PageDump dump(const PageDumpOptions &options = {})
    {
        auto taken = dumpPage(page, {}, options);
        EXPECT_EQ(taken.error, QString());
        return std::move(taken.value);
    }
    QString evaluate(const QString &script) const
    {
        const auto evaluated = page->evaluateJavaScript(script, 0);
        EXPECT_FALSE(evaluated.failed) << evaluated.result.toStdString();
        return evaluated.result;
    }
    bool becomes(const QString &script, const QString &expected) const
    {
        return waitFor([&] { return evaluate(script) == expected; });
    }

    static QRect boundsOf(const UIElement &element)
    {
        return {element.bounds().x, element.bounds().y, element.bounds().width, element.bounds().height};
    }
    /// A page with a frame that is scrolled, at half its size, in a frame that is scrolled too, on a scrolled
    /// page.
    void openFrames()
    {
        open(R"(<!DOCTYPE html><body style="margin:0;height:3000px"><script>
            function frame(document, style, content) {
                const added = document.createElement('iframe');
                added.style.cssText = 'position:absolute;' + style;
                document.body.append(added);
                added.contentDocument.write('<!DOCTYPE html><body style="margin:0;height:900px">' + content);
                added.contentDocument.close();
                return added.contentWindow;
            }
            const outer = frame(document, 'left:100px;top:200px;width:400px;height:300px;border:2px solid #444', '');
            const inner = frame(outer.document, 'left:20px;top:80px;width:200px;height:100px;border:4px solid #888;'
                    + 'padding:6px;transform:scale(0.5);transform-origin:0 0',
                '<div id=red style="position:absolute;left:40px;top:140px;width:60px;height:40px;background:#f00"></div>'
                    + '<div id=above style="position:absolute;left:0;top:10px;width:9px;height:9px"></div>');
            inner.scrollTo(0, 100);
            outer.scrollTo(0, 50);
            scrollTo(0, 30);
        </script>)");
        ASSERT_EQ(
            evaluate(u"[scrollY, frames[0].scrollY, frames[0].frames[0].scrollY].join()"_s), u"30,50,100"_s);
    }
    SharedPtr<Object> bodyOfInnerFrame() const
    {
        return WebWrapper::wrapObject(WebWrapper::htmlObjectFromReferenceInfo(page, u"BODY"_s,
            evaluate(u"__ostrel__idForObject(frames[0].frames[0].document.body)"_s), u"BODY1"_s));
    }

    void expectBoxesWhereThePictureShowsThem()
    {
        open(boxes);
        PageDumpOptions options;
        options.picture = true;
        options.screenshots = true;

        const PageDump taken = dump(options);

        ASSERT_TRUE(taken.root);
        for (const auto &[id, color] : {std::pair{u"red"_s, QColor(255, 0, 0)},
                 std::pair{u"blue"_s, QColor(0, 0, 255)}, std::pair{u"green"_s, QColor(0, 255, 0)}}) {
            const UIElement *box = elementWithId(*taken.root, id);
            ASSERT_TRUE(box) << id.toStdString();
            const QRect bounds(box->bounds().x, box->bounds().y, box->bounds().width, box->bounds().height);
            EXPECT_EQ(taken.picture.pixelColor(bounds.topLeft()), color) << id.toStdString();
            EXPECT_EQ(taken.picture.pixelColor(bounds.bottomRight()), color) << id.toStdString();
            EXPECT_NE(taken.picture.pixelColor(bounds.bottomRight() + QPoint(1, 1)), color)
                << id.toStdString();
            EXPECT_EQ(box->image().size(), bounds.size());
            EXPECT_EQ(box->image().pixelColor(bounds.width() - 1, bounds.height() - 1), color);
        }
    }

    ResultSink nobody;
    QTemporaryDir folder;
    std::unique_ptr<TestSession> session;
    BrowserPage *page = nullptr;
};

TEST_F(DumpTest, TakesTwoEvaluationsHoweverLargeThePageIs)
{
    begin();
    QByteArray list = "<!DOCTYPE html><body>";
    for (int i = 0; i < 500; ++i)
        list += "<p id=p" + QByteArray::number(i) + ">one <b>two</b></p>";
    // Neither drawings nor the document have all that elements of text have.
    open(list + "<svg id=drawing><circle r=5 /></svg>");
    CountingPage counting(page);
    const auto root = WebWrapper::wrapObject(WebWrapper::htmlObjectFromReferenceInfo(
        &counting, u"DOCUMENT"_s, evaluate(u"__ostrel__idForObject(document)"_s), u"DOCUMENT"_s));
    const WebWrapper::HtmlObjectDumpObjectTreeDelegate delegate(nullptr);
    DumpFilter wanted(DumpFilter::Only, quickProperties());
    DumpOptions options;
    options.screenshots = false;

    const auto taken = dumpObjectTree(root, {{"HTML_Object", &wanted}}, options);

    ASSERT_EQ(taken.error, QString());
    EXPECT_EQ(countOf(*taken.value), 4 + 500 * 2 + 2);
    EXPECT_EQ(property(*elementWithId(*taken.value, u"drawing"_s), u"width"_s), u"0"_s);
    EXPECT_EQ(property(*elementWithId(*taken.value, u"p499"_s), u"innerText"_s), u"one two"_s);
    EXPECT_EQ(counting.evaluations, 2);
}

TEST_F(DumpTest, FieldsMayHaveTheNamesOfAFormsOwnMembers)
{
    begin();
    const auto number = [this](const QString &side) {
        return evaluate(
            u"Element.prototype.getBoundingClientRect.call(document.getElementById('order'))."_s + side)
            .toDouble();
    };
    for (const char *name :
        {"id", "name", "title", "tagName", "nodeName", "className", "style", "type", "value", "parentNode",
            "parentElement", "offsetParent", "firstChild", "nextSibling", "children", "childNodes",
            "attributes", "innerHTML", "innerText", "textContent", "ownerDocument", "shadowRoot", "alert",
            "submit", "getAttribute", "getBoundingClientRect", "nodeType", "qx_Widget", "offsetLeft",
            "offsetTop", "offsetWidth", "offsetHeight", "scrollWidth", "scrollHeight"}) {
        open("<!DOCTYPE html><body><form id=order class=wide title=Order><input name=" + QByteArray(name)
            + "><p id=text>text</p></form></body>");
        const QRect where
            = QRectF(number(u"x"_s), number(u"y"_s), number(u"width"_s), number(u"height"_s)).toRect();

        const PageDump taken = dump();

        ASSERT_TRUE(taken.root) << name;
        const UIElement *form = elementWithId(*taken.root, u"order"_s);
        ASSERT_TRUE(form) << name;
        EXPECT_EQ(form->className(), u"HTML_Form"_s) << name;
        EXPECT_EQ(nameOf(*form), u"DOCUMENT.HTML1.BODY1.FORM1"_s) << name;
        EXPECT_EQ(property(*form, u"domClassName"_s), u"wide"_s) << name;
        EXPECT_EQ(property(*form, u"title"_s), u"Order"_s) << name;
        EXPECT_EQ(property(*form, u"tagName"_s), u"FORM"_s) << name;
        EXPECT_EQ(property(*form, u"innerText"_s), u"text"_s) << name;
        EXPECT_EQ(boundsOf(*form), where) << name;
        EXPECT_EQ(property(*form, u"width"_s), QString::number(where.width())) << name;
        EXPECT_EQ(nameOf(*elementWithId(*taken.root, u"text"_s)), u"DOCUMENT.HTML1.BODY1.FORM1.P1"_s) << name;
    }
}

/// A page with that many elements in each other. They are hidden: the browser cannot draw as many.
QByteArray nested(int levels)
{
    return "<!DOCTYPE html><body><div id=outermost style='display:none'></div><script>"
           "for (let i = 1, parent = outermost; i < "
        + QByteArray::number(levels) + "; ++i) parent = parent.appendChild(document.createElement('div'));"
        + "</script>";
}

TEST_F(DumpTest, APageMayBeNestedDeeply)
{
    begin();
    open(nested(1000));
    PageDumpOptions options;
    options.properties = {u"id"_s};

    const PageDump taken = dump(options);

    ASSERT_TRUE(taken.root);
    EXPECT_EQ(countOf(*taken.root), 4 + 1000 + 1);
    EXPECT_EQ(writeDump(taken, DumpFormat::Json).count("HTML_Object"), countOf(*taken.root) - 1);
}

TEST_F(DumpTest, APageThatIsNestedTooDeeplyIsAnError)
{
    begin();
    open(nested(3000));

    const auto taken = dumpPage(page, {}, {});

    EXPECT_TRUE(taken.error.startsWith("Error preparing object dump for 'HTML_Document': Calling "
                                       "window.top.__ostrel.objectTreeInformation("_L1))
        << taken.error.toStdString();
    EXPECT_TRUE(taken.error.contains("RangeError: Maximum call stack size exceeded"_L1))
        << taken.error.toStdString();
    EXPECT_EQ(evaluate(u"document.querySelectorAll('div').length"_s), u"3000"_s);
}

TEST_F(DumpTest, BoundsFitThePicture)
{
    begin();
    expectBoxesWhereThePictureShowsThem();
}

TEST_F(DumpTest, BoundsFitThePictureOfADenseScreen)
{
    begin({u"--force-device-scale-factor=2"_s});
    expectBoxesWhereThePictureShowsThem();
    EXPECT_EQ(evaluate(u"window.devicePixelRatio"_s), u"2"_s);
}

TEST_F(DumpTest, BoundsFitThePictureOfAZoomedTab)
{
    // 1.25 as the browser keeps it in its profile: the logarithm to the base 1.2.
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"profile/Default"_s));
    const QJsonObject zoom{{u"x"_s, std::log(1.25) / std::log(1.2)}};
    write(u"profile/Default/Preferences"_s,
        QJsonDocument(QJsonObject{{u"partition"_s, QJsonObject{{u"default_zoom_level"_s, zoom}}}}).toJson());
    begin({u"--user-data-dir="_s + folder.filePath(u"profile"_s)});
    expectBoxesWhereThePictureShowsThem();
    EXPECT_EQ(evaluate(u"window.devicePixelRatio"_s), u"1.25"_s);
}

TEST_F(DumpTest, BoundsInAFrameFitThePictureOfThePage)
{
    for (const QStringList &arguments : {QStringList(), QStringList{u"--force-device-scale-factor=2"_s}}) {
        begin(arguments);
        const int ratio = evaluate(u"devicePixelRatio"_s).toInt();
        openFrames();
        PageDumpOptions options;
        options.picture = true;
        options.screenshots = true;

        const auto taken = dumpPage(page, bodyOfInnerFrame(), options);

        ASSERT_EQ(taken.error, QString());
        const UIElement *red = elementWithId(*taken.value.root, u"red"_s);
        ASSERT_TRUE(red);
        // 102, 202: inside the outer frame; 20, 30: the inner one; 5: half of its edge; then half of 40, 40.
        EXPECT_EQ(boundsOf(*red), QRect(147 * ratio, 257 * ratio, 30 * ratio, 20 * ratio));
        EXPECT_EQ(red->image().size(), boundsOf(*red).size());
        for (const QPoint &corner : {boundsOf(*red).topLeft(), boundsOf(*red).bottomRight()})
            EXPECT_EQ(taken.value.picture.pixelColor(corner), QColor(255, 0, 0));
        EXPECT_EQ(red->image().pixelColor(0, 0), QColor(255, 0, 0));
        // The frame is scrolled past it.
        EXPECT_EQ(elementWithId(*taken.value.root, u"above"_s)->bounds(), (Rect<2>{0, 0, -1, -1, -1}));
        session.reset();
    }
}

TEST_F(DumpTest, WhatATurnedOrMirroredFrameShowsHasNoBounds)
{
    begin();
    const struct
    {
        const char *style; ///< of the frame
        const char *around; ///< of what it stands in
        bool hasBounds;
    } rows[] = {
        {"", "", true},
        {"transform:scale(0.5,2) translate(3px,4px)", "transform:rotate(360deg)", true},
        {"scale:2", "rotate:0deg", true},
        {"transform:rotate(10deg)", "", false},
        {"transform:rotate(180deg)", "", false},
        {"transform:scaleX(-1)", "", false},
        {"transform:skewX(20deg)", "", false},
        {"transform:rotateY(40deg)", "", false},
        {"rotate:20deg", "", false},
        {"scale:1 -1", "", false},
        {"offset-path:path('M0 0 L100 100')", "", false},
        {"", "transform:rotate(10deg)", false},
    };
    for (const auto &row : rows) {
        open("<!DOCTYPE html><body><div style=\"margin:200px;" + QByteArray(row.around)
            + "\"><iframe style=\"width:100px;height:80px;border:0;" + row.style
            + "\" srcdoc=\"<body style='margin:0'><div id=red style='width:30px;height:20px;"
              "background:#f00'></div>\"></iframe></div>");
        ASSERT_TRUE(becomes(u"!!frames[0].document.getElementById('red')"_s, u"true"_s));
        const auto body = WebWrapper::wrapObject(WebWrapper::htmlObjectFromReferenceInfo(
            page, u"BODY"_s, evaluate(u"__ostrel__idForObject(frames[0].document.body)"_s), u"BODY1"_s));
        QStringList told;
        PageDumpOptions options;
        options.picture = true;
        options.screenshots = true;
        options.log = [&](const QString &line) { told.append(line); };

        const auto taken = dumpPage(page, body, options);

        ASSERT_EQ(taken.error, QString());
        const UIElement *red = elementWithId(*taken.value.root, u"red"_s);
        ASSERT_TRUE(red);
        EXPECT_EQ(red->bounds().isValid(), row.hasBounds) << row.style << row.around;
        EXPECT_EQ(!red->image().isNull(), row.hasBounds) << row.style << row.around;
        if (row.hasBounds) {
            EXPECT_EQ(taken.value.picture.pixelColor(boundsOf(*red).center()), QColor(255, 0, 0))
                << row.style;
            EXPECT_NE(taken.value.picture.pixelColor(boundsOf(*red).bottomRight() + QPoint(1, 1)),
                QColor(255, 0, 0))
                << row.style;
            EXPECT_EQ(told, QStringList());
        } else {
            EXPECT_EQ(told,
                QStringList{u"The frame is turned or mirrored: its elements have no place in the picture."_s})
                << row.style;
        }
    }
}

/// A page in which reading an element's id does something first.
QByteArray pageThat(const QByteArray &action)
{
    return "<!DOCTYPE html><body><p id=first>one</p><p id=second>two</p><script>"
           "Object.defineProperty(document.getElementById('first'), 'title', { get() { "
        + action + " return 'titled'; } });</script>";
}

TEST_F(DumpTest, APageThatChangesMeanwhileIsDumpedAsItWasAtItsBeginning)
{
    begin();
    open(pageThat("document.getElementById('second')?.remove();"));

    const PageDump taken = dump();

    ASSERT_TRUE(taken.root);
    EXPECT_EQ(property(*elementWithId(*taken.root, u"first"_s), u"title"_s), u"titled"_s);
    const UIElement *removed = elementWithId(*taken.root, u"second"_s);
    ASSERT_TRUE(removed);
    EXPECT_EQ(property(*removed, u"innerText"_s), u"two"_s);
}

TEST_F(DumpTest, APageWhoseElementsThrowIsDumpedWithoutTheirValues)
{
    begin();
    open(pageThat("throw new Error('not for you');"));

    const PageDump taken = dump();

    ASSERT_TRUE(taken.root);
    EXPECT_EQ(property(*elementWithId(*taken.root, u"first"_s), u"title"_s), QString());
    EXPECT_EQ(property(*elementWithId(*taken.root, u"second"_s), u"innerText"_s), u"two"_s);
}

TEST_F(DumpTest, HalfACharacterDoesNotSpoilADump)
{
    begin();
    open("<!DOCTYPE html><body><p id=cut>one</p><p id=whole>two</p><script>"
         "cut.title = 'x\\ud83d'; cut.className = '\\udc00'; cut.textContent = '\\ud83d\\ud83d\\ude00';"
         "whole.title = 'a\\u0000\\u2028\\ud83d\\ude00'</script>");

    const PageDump taken = dump();

    ASSERT_TRUE(taken.root);
    const UIElement *cut = elementWithId(*taken.root, u"cut"_s);
    ASSERT_TRUE(cut);
    EXPECT_EQ(property(*cut, u"title"_s), u"x\uFFFD"_s);
    EXPECT_EQ(property(*cut, u"domClassName"_s), u"\uFFFD"_s);
    EXPECT_EQ(property(*cut, u"textContent"_s), u"\uFFFD\U0001F600"_s);
    EXPECT_EQ(property(*elementWithId(*taken.root, u"whole"_s), u"title"_s), u"a\0\u2028\U0001F600"_s);
    QXmlStreamReader xml(writeDump(taken, DumpFormat::Xml));
    while (!xml.atEnd())
        xml.readNext();
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_FALSE(QJsonDocument::fromJson(writeDump(taken, DumpFormat::Json)).isNull());
}

TEST_F(DumpTest, APageThatHangsIsAnErrorAfterTheLimit)
{
    SessionOptions options;
    options.browser.evaluationLimitMs = 3000;
    auto started = TestSession::start(options, nobody);
    ASSERT_EQ(started.error, QString());
    session = std::move(started.value);
    page = session->activePage();
    open(pageThat("for (;;) { }"));

    const auto taken = dumpPage(page, {}, {});

    EXPECT_TRUE(taken.error.startsWith(
        "Error preparing object dump for 'HTML_Document': Error fetching property values: "_L1))
        << taken.error.toStdString();
    EXPECT_FALSE(taken.value.root);
}

TEST_F(DumpTest, APageThatIsLeftMeanwhileIsAnErrorOrDumpedWhole)
{
    begin();
    open("<!DOCTYPE html><body><p id=first>one</p><script>"
         "Object.defineProperty(document.getElementById('first'), 'title', { get() { "
         "location.href = 'about:blank'; for (const end = Date.now() + 500; Date.now() < end;) { } return "
         "''; } });"
         "</script>");

    const auto taken = dumpPage(page, {}, {});

    if (taken.failed()) {
        EXPECT_TRUE(taken.error.startsWith("Error preparing object dump for 'HTML_Document': "_L1))
            << taken.error.toStdString();
        EXPECT_FALSE(taken.value.root);
    } else {
        EXPECT_TRUE(elementWithId(*taken.value.root, u"first"_s));
    }
}

TEST_F(DumpTest, AnElementThatCannotBeSeenHasNoBoundsAndNoPicture)
{
    begin();
    open(boxes);
    PageDumpOptions options;
    options.screenshots = true;

    const PageDump taken = dump(options);

    const UIElement *gone = elementWithId(*taken.root, u"gone"_s);
    ASSERT_TRUE(gone);
    EXPECT_EQ(gone->bounds(), (Rect<2>{0, 0, -1, -1, -1}));
    EXPECT_TRUE(gone->image().isNull());
    EXPECT_EQ(property(*gone, u"visible"_s), u"false"_s);
    EXPECT_EQ(property(*gone, u"textContent"_s), u"Not there"_s);
    EXPECT_EQ(nameOf(*gone), u"DOCUMENT.HTML1.BODY1.DIV5"_s);
}

TEST_F(DumpTest, TheNameInADumpFindsTheElement)
{
    begin();
    open(boxes);
    const PageDump taken = dump();

    const auto found = session->lookup()->find(nameOf(*elementWithId(*taken.root, u"green"_s)));

    ASSERT_EQ(found.error, QString());
    EXPECT_EQ(WebWrapper::retrieveObject(found.value)->id().value, u"green"_s);
}

TEST_F(DumpTest, OtherPropertiesAreReadOneByOne)
{
    begin();
    open("<!DOCTYPE html><input id=field value='seven' disabled>");
    PageDumpOptions options;
    options.properties = {u"id"_s, u"value"_s, u"disabled"_s};

    const PageDump taken = dump(options);

    const UIElement *field = elementWithId(*taken.root, u"field"_s);
    ASSERT_TRUE(field);
    EXPECT_EQ(property(*field, u"value"_s), u"seven"_s);
    EXPECT_EQ(property(*field, u"disabled"_s), u"true"_s);
    EXPECT_EQ(property(*field, u"title"_s), u"(none)"_s);
}

// The form for people

class ViewerTest : public DumpTest
{
protected:
    void SetUp() override { begin(); }

    /// Dumps the page and opens the viewer in the same tab.
    void view(const QByteArray &content)
    {
        open(content);
        PageDumpOptions options;
        options.picture = true;
        const QString viewer = write(u"viewer.html"_s, writeDump(dump(options), DumpFormat::Html));
        ASSERT_EQ(session->open(viewer).error, QString());
        ASSERT_TRUE(becomes(u"document.getElementById('picture').naturalWidth > 0"_s, u"true"_s));
    }
    /// The tree row of the element with that id, as an expression.
    static QString row(const QString &id)
    {
        return u"[...document.querySelectorAll('.row')].find((row) => row.querySelector('.id')?.textContent === '#%1')"_s
            .arg(id);
    }
    void moveTo(const QString &element, const QString &type = u"mouseMoved"_s) const
    {
        const QJsonArray at = QJsonDocument::fromJson(
            evaluate(
                u"(() => { const box = (%1).getBoundingClientRect(); "
                "return JSON.stringify([box.x + box.width / 2, box.y + box.height / 2]); })()"_s.arg(element))
                .toUtf8())
                                  .array();
        QJsonObject event{{u"type"_s, type}, {u"x"_s, at.at(0)}, {u"y"_s, at.at(1)}};
        if (type != "mouseMoved"_L1) {
            event.insert("button"_L1, u"left"_s);
            event.insert("clickCount"_L1, 1);
        }
        EXPECT_EQ(page->call(u"Input.dispatchMouseEvent"_s, event).error, QString());
    }
    void click(const QString &element) const
    {
        moveTo(element);
        moveTo(element, u"mousePressed"_s);
        moveTo(element, u"mouseReleased"_s);
    }
    /// Where the picture shows the middle of the red box, as something that has a place.
    const QString middleOfRed
        = u"({ getBoundingClientRect() { const picture = document.getElementById('picture'), "
          "box = picture.getBoundingClientRect(), scale = box.width / picture.naturalWidth; "
          "return { x: box.x + 130 * scale, y: box.y + 70 * scale, width: 0, height: 0 }; } })"_s;
    /// Where an outline lies, in pixels of the picture.
    QString outlined(const QString &id) const
    {
        return evaluate(u"(() => { const frame = document.getElementById('%1'), picture = "
                        u"document.getElementById('picture'),"
                        " inner = frame.getBoundingClientRect(), outer = picture.getBoundingClientRect(),"
                        " scale = picture.naturalWidth / outer.width;"
                        " return frame.hidden ? 'hidden' : [inner.x - outer.x, inner.y - outer.y, "
                        "inner.width, inner.height]"
                        ".map((side) => Math.round(side * scale)).join(); })()"_s.arg(id));
    }
};

TEST_F(ViewerTest, HoveringARowOutlinesTheElement)
{
    view(boxes);
    ASSERT_EQ(outlined(u"hover"_s), u"hidden"_s);

    moveTo(row(u"red"_s));
    EXPECT_TRUE(waitFor([&] { return outlined(u"hover"_s) == "100,52,60,40"_L1; }))
        << outlined(u"hover"_s).toStdString();

    moveTo(row(u"gone"_s));
    EXPECT_TRUE(waitFor([&] { return outlined(u"hover"_s) == "hidden"_L1; }));
}

TEST_F(ViewerTest, AnElementInAFrameIsOutlinedWhereThePictureShowsIt)
{
    openFrames();
    PageDumpOptions options;
    options.picture = true;
    const auto taken = dumpPage(page, bodyOfInnerFrame(), options);
    ASSERT_EQ(taken.error, QString());
    ASSERT_EQ(
        session->open(write(u"viewer.html"_s, writeDump(taken.value, DumpFormat::Html))).error, QString());
    ASSERT_TRUE(becomes(u"document.getElementById('picture').naturalWidth > 0"_s, u"true"_s));

    moveTo(row(u"red"_s));

    EXPECT_TRUE(waitFor([&] { return outlined(u"hover"_s) == "147,257,30,20"_L1; }))
        << outlined(u"hover"_s).toStdString();
}

TEST_F(ViewerTest, ClickingARowShowsItsPropertiesAndItsName)
{
    view(boxes);
    EXPECT_EQ(evaluate(u"document.getElementById('details').hidden"_s), u"true"_s);

    click(row(u"green"_s));

    EXPECT_TRUE(becomes(u"document.getElementById('name').textContent"_s, u"DOCUMENT.HTML1.BODY1.DIV2"_s));
    EXPECT_EQ(evaluate(u"document.getElementById('kind').textContent"_s), u"Object – HTML_Object"_s);
    EXPECT_EQ(evaluate(u"document.getElementById('place').textContent"_s), u"32 × 20 at 20, 2000"_s);
    EXPECT_EQ(evaluate(u"[...document.querySelectorAll('#properties tr')].map((row) => "
                       u"[...row.children].map((cell) => cell.textContent).join(' '))"
                       ".filter((text) => /^(id|tagName|visible|numChildren) /.test(text)).join('; ')"_s),
        u"id green; numChildren 0; tagName DIV; visible true"_s);
    EXPECT_EQ(outlined(u"selection"_s), u"20,2000,32,20"_s);
    // The picture is scrolled so that the element can be seen.
    EXPECT_EQ(evaluate(u"(() => { const box = document.getElementById('selection').getBoundingClientRect(); "
                       "return box.top >= 0 && box.bottom <= innerHeight; })()"_s),
        u"true"_s);

    click(u"document.getElementById('copy')"_s);
    EXPECT_TRUE(becomes(u"document.getElementById('copy').textContent"_s, u"Copied"_s));
    EXPECT_EQ(evaluate(u"getSelection().toString()"_s), u"DOCUMENT.HTML1.BODY1.DIV2"_s);
}

TEST_F(ViewerTest, NodesAreOpenedAndClosed)
{
    view(boxes);
    const QString twisty = u"[...document.querySelectorAll('.row')].find((row) => "
                           "row.querySelector('.tag').textContent === 'body').querySelector('.twisty')"_s;
    ASSERT_EQ(evaluate(row(u"red"_s) + u" !== undefined"_s), u"true"_s);

    click(twisty);
    EXPECT_TRUE(becomes(row(u"red"_s) + u" === undefined"_s, u"true"_s));

    click(twisty);
    EXPECT_TRUE(becomes(row(u"red"_s) + u" !== undefined"_s, u"true"_s));

    evaluate(QString(twisty).chopped(qsizetype(qstrlen(".querySelector('.twisty')")))
        + u".dispatchEvent(new MouseEvent('dblclick', { bubbles: true }))"_s);
    EXPECT_TRUE(becomes(row(u"red"_s) + u" === undefined"_s, u"true"_s));
}

TEST_F(ViewerTest, ClickingThePictureSelectsWhatIsThere)
{
    view(boxes);
    click(row(u"red"_s));
    ASSERT_TRUE(becomes(u"document.getElementById('selection').hidden"_s, u"false"_s));
    click(row(u"gone"_s));
    ASSERT_TRUE(becomes(u"document.getElementById('selection').hidden"_s, u"true"_s));
    evaluate(u"document.getElementById('canvas').scrollTo(0, 0)"_s);
    click(middleOfRed);

    EXPECT_TRUE(becomes(u"document.querySelector('[aria-selected=true] .id').textContent"_s, u"#red"_s));
}

TEST_F(ViewerTest, TheKeyboardWalksTheTree)
{
    view(boxes);
    click(row(u"red"_s));
    const auto press = [&](const QString &key) {
        EXPECT_EQ(page->call(u"Input.dispatchKeyEvent"_s, {{u"type"_s, u"keyDown"_s}, {u"key"_s, key}}).error,
            QString());
    };
    const QString selected
        = u"document.querySelector('[aria-selected=true]').innerText.replace(/\\s+/g, ' ').trim()"_s;
    ASSERT_TRUE(becomes(selected, u"div #red Red"_s));
    evaluate(u"document.getElementById('tree').focus()"_s);

    press(u"ArrowDown"_s);
    EXPECT_TRUE(becomes(selected, u"div #green"_s));
    press(u"ArrowUp"_s);
    EXPECT_TRUE(becomes(selected, u"div #red Red"_s));
    press(u"ArrowLeft"_s);
    EXPECT_TRUE(becomes(selected, u"body"_s));
    press(u"ArrowLeft"_s);
    EXPECT_TRUE(becomes(row(u"red"_s) + u" === undefined"_s, u"true"_s));
    press(u"ArrowRight"_s);
    EXPECT_TRUE(becomes(row(u"red"_s) + u" !== undefined"_s, u"true"_s));
    press(u"ArrowRight"_s);
    EXPECT_TRUE(becomes(selected, u"div #red Red"_s));
}

TEST_F(ViewerTest, TheSearchFindsElements)
{
    view(boxes);

    evaluate(u"document.getElementById('search').value = 'RED'; "
             "document.getElementById('search').dispatchEvent(new Event('input')); 1"_s);

    EXPECT_EQ(evaluate(u"document.getElementById('hits').textContent"_s), u"1 hit"_s);
    EXPECT_EQ(evaluate(u"document.querySelector('[aria-selected=true] .id').textContent"_s), u"#red"_s);
}

TEST_F(ViewerTest, EnterGoesToTheNextThatTheSearchFinds)
{
    view(boxes);
    const QString selected = u"document.querySelector('[aria-selected=true] .id').textContent"_s;
    evaluate(u"document.getElementById('search').focus(); document.getElementById('search').value = 're'; "
             "document.getElementById('search').dispatchEvent(new Event('input')); 1"_s);
    ASSERT_EQ(
        evaluate(u"document.getElementById('hits').textContent + ' ' + "_s + selected), u"3 hits #red"_s);

    for (const QString &next : {u"#green"_s, u"#gone"_s, u"#red"_s}) {
        EXPECT_EQ(page->call(u"Input.dispatchKeyEvent"_s, {{u"type"_s, u"keyDown"_s}, {u"key"_s, u"Enter"_s}})
                      .error,
            QString());
        EXPECT_TRUE(becomes(selected, next));
    }
}

TEST_F(ViewerTest, TheDetailsShowTheElementsPartOfThePicture)
{
    view(boxes);
    const QString crop = u"(({ hidden, style }) => hidden ? 'hidden' : [style.width, style.height, "
                         "style.backgroundPosition].join(' '))(document.getElementById('crop'))"_s;

    click(row(u"red"_s));
    EXPECT_TRUE(becomes(crop, u"60px 40px -100px -52px"_s)) << evaluate(crop).toStdString();

    click(row(u"gone"_s));
    EXPECT_TRUE(becomes(crop, u"hidden"_s));
    EXPECT_EQ(evaluate(u"document.getElementById('place').textContent"_s), u"Not visible in the picture"_s);
}

TEST_F(ViewerTest, TheMouseOutlinesWhatItPointsAtInThePicture)
{
    view(boxes);
    moveTo(middleOfRed);
    EXPECT_TRUE(waitFor([&] { return outlined(u"hover"_s) == "100,52,60,40"_L1; }))
        << outlined(u"hover"_s).toStdString();

    moveTo(u"document.getElementById('address')"_s);
    EXPECT_TRUE(waitFor([&] { return outlined(u"hover"_s) == "hidden"_L1; }));
}

TEST_F(ViewerTest, TextNodesAreShownOnDemand)
{
    open(boxes);
    evaluate(u"window.top.__ostrel__filter__non__element__nodes = false; 1"_s);
    PageDumpOptions options;
    options.picture = true;
    const QString viewer = write(u"viewer.html"_s, writeDump(dump(options), DumpFormat::Html));
    ASSERT_EQ(session->open(viewer).error, QString());
    const QString underRed
        = u"(%1).closest('li').getAttribute('aria-expanded') + ' ' + (%1).closest('li').className"_s.arg(
            row(u"red"_s));
    ASSERT_EQ(evaluate(u"document.getElementById('switch').hidden"_s), u"false"_s);
    ASSERT_EQ(evaluate(underRed), u"null leaf"_s);

    click(u"document.getElementById('texts')"_s);

    EXPECT_TRUE(becomes(underRed, u"true "_s)) << evaluate(underRed).toStdString();

    click(u"document.getElementById('texts')"_s);
    EXPECT_TRUE(becomes(underRed, u"null leaf"_s));
}

TEST_F(ViewerTest, APageWithoutTextNodesHasNoSwitchForThem)
{
    view(boxes);

    EXPECT_EQ(evaluate(u"document.getElementById('switch').hidden"_s), u"true"_s);
}

TEST_F(ViewerTest, NothingOfThePageRunsInTheViewer)
{
    view("<!DOCTYPE html><title>&lt;/title>&lt;script>window.stolen = 1&lt;/script>%1 %2</title>"
         "<body><p id='&lt;b>x&lt;/b>' class='&lt;!--' title='&lt;/script>&lt;script>window.stolen = "
         "2&lt;/script>'>"
         "&lt;/script>&lt;img src=x onerror='window.stolen = 3'>%3 \xE2\x80\xA8 &lt;!-- "
         "&lt;script></p></body>");

    EXPECT_EQ(
        evaluate(u"document.title"_s), u"</title><script>window.stolen = 1</script>%1 %2 – object tree"_s);
    evaluate(u"[...document.querySelectorAll('.row')].forEach((row) => row.click()); 1"_s);
    EXPECT_EQ(evaluate(u"typeof window.stolen"_s), u"undefined"_s);
    EXPECT_EQ(evaluate(u"document.querySelectorAll('#tree .id')[0].textContent"_s), u"#<b>x</b>"_s);
    EXPECT_EQ(evaluate(u"document.querySelectorAll('script').length"_s), u"2"_s);
}

TEST_F(ViewerTest, FetchesNothing)
{
    ASSERT_EQ(session->open(demoShop).error, QString());
    PageDumpOptions options;
    options.picture = true;
    const PageDump taken = dump(options);
    const QString viewer = write(u"viewer.html"_s, writeDump(taken, DumpFormat::Html));

    ASSERT_EQ(session->open(viewer).error, QString());

    EXPECT_EQ(evaluate(u"performance.getEntriesByType('resource').filter((entry) => "
                       "!entry.name.startsWith('data:')).length"_s),
        u"0"_s);
    EXPECT_EQ(evaluate(u"document.getElementById('count').textContent"_s),
        u"%1 objects"_s.arg(countOf(*taken.root)));
}

// The command

class DumpCommandTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(run.leftProcesses(), QStringList());
        EXPECT_EQ(run.leftFiles(), QStringList());
    }
    QString page() { return u"file://"_s + run.write(u"page.html"_s, boxes); }
    QByteArray written(const QString &name)
    {
        QFile file(run.path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    Ostrel::Test::CommandRun run;
};

TEST_F(DumpCommandTest, WritesXmlToStandardOutput)
{
    const Ostrel::Test::Ended ended
        = run.run({u"dump"_s, page(), u"DOCUMENT.HTML1.BODY1.DIV1"_s, u"--properties"_s, u"id, visible"_s});

    EXPECT_EQ(ended.err, QString());
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.out, uR"(<?xml version="1.0" encoding="UTF-8"?>
<dump address="%1" title="Two boxes">
    <element type="Object" class="HTML_Object" name="DOCUMENT.HTML1.BODY1.DIV1" x="100" y="52" width="60" height="40">
        <property name="id">red</property>
        <property name="visible">true</property>
        <property name="textContent">Red</property>
    </element>
</dump>
)"_s.arg(page()));
}

TEST_F(DumpCommandTest, TheSuffixOfTheFileDecidesTheFormat)
{
    EXPECT_EQ(run.run({u"dump"_s, page(), u"-o"_s, u"out.json"_s, u"--screenshots"_s}).exitCode, 0);
    EXPECT_EQ(run.run({u"dump"_s, page(), u"-o"_s, u"out.html"_s}).exitCode, 0);
    EXPECT_EQ(run.run({u"dump"_s, page(), u"-o"_s, u"out.txt"_s, u"--format"_s, u"JSON"_s}).exitCode, 0);

    const QJsonObject json = QJsonDocument::fromJson(written(u"out.json"_s)).object();
    EXPECT_EQ(json.value("title"_L1).toString(), u"Two boxes"_s);
    const QJsonObject html = json.value("root"_L1).toObject().value("children"_L1).toArray().at(0).toObject();
    EXPECT_EQ(html.value("name"_L1).toString(), u"DOCUMENT.HTML1"_s);
    EXPECT_FALSE(
        QImage::fromData(QByteArray::fromBase64(html.value("image"_L1).toString().toLatin1())).isNull());
    EXPECT_FALSE(json.contains("picture"_L1));
    EXPECT_TRUE(written(u"out.html"_s).startsWith("<!DOCTYPE html>"));
    EXPECT_TRUE(written(u"out.html"_s).contains("\"picture\":\"iVBORw0KGgo"));
    EXPECT_FALSE(QJsonDocument::fromJson(written(u"out.txt"_s)).object().value("root"_L1).isNull());
}

TEST_F(DumpCommandTest, AnElementThatComesLateIsWaitedFor)
{
    const QString late = run.write(u"late.html"_s,
        "<!DOCTYPE html><body><script>setTimeout(() => { document.body.innerHTML = '<p id=late>Here</p>'; }, "
        "1500);</script>");

    const Ostrel::Test::Ended ended
        = run.run({u"dump"_s, u"file://"_s + late, u"{tagName='P' id='late'}"_s, u"--properties"_s, u"id"_s});

    EXPECT_EQ(ended.err, QString());
    EXPECT_TRUE(ended.out.contains("<property name=\"id\">late</property>"_L1)) << ended.out.toStdString();
}

TEST_F(DumpCommandTest, WhatFailsAtSingleElementsIsTold)
{
    const QString turned = run.write(u"turned.html"_s,
        "<!DOCTYPE html><body><iframe style='transform:rotate(9deg)' srcdoc='<p id=inner>In</p>'></iframe>");

    const Ostrel::Test::Ended ended = run.run({u"dump"_s, u"file://"_s + turned,
        u"{context='turned.html.FRAME1' tagName='P' id='inner'}"_s, u"--properties"_s, u"id"_s});

    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err,
        u"pageprobe dump: The frame is turned or mirrored: its elements have no place in the picture.\n"_s);
}

TEST_F(DumpCommandTest, ANameThatFindsNothingIsAFailure)
{
    const Ostrel::Test::Ended ended = run.run(
        {u"dump"_s, page(), u"{tagName='DIV' id='purple'}"_s, u"--wait"_s, u"0.1"_s, u"-o"_s, u"out.xml"_s});

    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_TRUE(ended.err.startsWith("pageprobe dump: "_L1)) << ended.err.toStdString();
    EXPECT_TRUE(ended.err.contains("purple"_L1)) << ended.err.toStdString();
    EXPECT_FALSE(QFile::exists(run.path(u"out.xml"_s)));
}

TEST_F(DumpCommandTest, BadUsageIsToldBeforeABrowserStarts)
{
    const Ostrel::Test::Ended unknown = run.run({u"dump"_s, page(), u"--properties"_s, u"id,colour"_s});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.err, u"pageprobe dump: There is no property 'colour' that a dump can show.\n"_s);
    const Ostrel::Test::Ended value = run.run({u"dump"_s, page(), u"--properties"_s, u"css"_s});
    EXPECT_EQ(value.err, u"pageprobe dump: There is no property 'css' that a dump can show.\n"_s);
    EXPECT_EQ(run.run({u"dump"_s, page(), u"--format"_s, u"yaml"_s}).exitCode, 2);
    EXPECT_EQ(run.run({u"dump"_s}).exitCode, 2);
}

TEST_F(DumpCommandTest, AFileThatCannotBeWrittenIsTold)
{
    const Ostrel::Test::Ended ended = run.run({u"dump"_s, page(), u"-o"_s, u"no/such/folder/out.xml"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.err.startsWith("pageprobe dump: Cannot write the dump 'no/such/folder/out.xml': "_L1))
        << ended.err.toStdString();
}

TEST_F(DumpCommandTest, AFullDiskIsToldAndADeviceIsNeverReplaced)
{
    if (!QFile::exists(u"/dev/full"_s))
        GTEST_SKIP() << "there is no device that is always full here";

    const Ostrel::Test::Ended ended = run.run({u"dump"_s, page(), u"-o"_s, u"/dev/full"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_EQ(ended.err, u"pageprobe dump: Cannot write the dump '/dev/full': No space left on device.\n"_s);
    EXPECT_FALSE(QFileInfo(u"/dev/full"_s).isFile());
}

TEST_F(DumpCommandTest, APageThatCannotBeOpenedIsTold)
{
    const Ostrel::Test::Ended ended = run.run({u"dump"_s, u"file:///no/such/page.html"_s});

    EXPECT_EQ(ended.exitCode, 2);
    EXPECT_TRUE(ended.err.contains("ERR_FILE_NOT_FOUND"_L1)) << ended.err.toStdString();
    EXPECT_EQ(ended.out, QString());
}

} // namespace
} // namespace Ostrel::Host
