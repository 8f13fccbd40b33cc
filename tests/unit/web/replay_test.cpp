// Tests of what scripts do to a page by other ways than an element's own methods.
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/replay.h"

#include "ostrelhook/globalclass.h"
#include "ostrelhook/hook.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/scriptcalls.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString visibilityOfEl = u" try { __ostrel__isVisible(el); } catch( e ) { false;e.message; }"_s;

template <typename Wrapper>
class Element
{
public:
    explicit Element(const QString &tagName) : wrapper(QString(), u"el"_s, &page)
    {
        page.answerJson(u"\"%1\""_s.arg(tagName));
    }

    FakePage page;
    Wrapper wrapper;
};

TEST(IsObjectReady, NothingIsReady)
{
    const FunctionCallResult<bool> ready = isObjectReady(nullptr);

    EXPECT_EQ(ready.error, QString());
    EXPECT_TRUE(ready.value);
}

TEST(IsObjectReady, AnElementWithoutATagNameIsAFailure)
{
    FakePage page;
    HTML_Object element(QString(), u"el"_s, &page);
    page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element);

    EXPECT_EQ(ready.error,
        u"Cannot determine readyness, failed to obtain tagname: Error retrieving tagName: gone"_s);
    EXPECT_FALSE(ready.value);
    EXPECT_EQ(page.scripts().size(), 1);
}

TEST(IsObjectReady, TheDocumentIsReadyWithoutALook)
{
    Element<HTML_Document> document(u"#document"_s);

    EXPECT_TRUE(isObjectReady(&document.wrapper).value);
    EXPECT_EQ(document.page.scripts().size(), 1);
}

TEST(IsObjectReady, TheRootElementIsReadyWithoutALook)
{
    Element<HTML_Object> root(u"HTML"_s);

    EXPECT_TRUE(isObjectReady(&root.wrapper).value);
    EXPECT_EQ(root.page.scripts().size(), 1);
}

TEST(IsObjectReady, AVisibleElementIsReady)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.answer(u"true"_s);

    EXPECT_TRUE(isObjectReady(&element.wrapper).value);
    EXPECT_EQ(element.page.scripts().mid(1), QStringList{visibilityOfEl});
    EXPECT_EQ(element.page.calls().last().timeoutMs, 0u);
}

TEST(IsObjectReady, AMessageOfThePageIsNoVisibility)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.answer(u"el is not defined"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_FALSE(ready.value);
}

TEST(IsObjectReady, AHiddenFieldIsNotAskedWhetherItIsDisabled)
{
    Element<HTML_Text> field(u"INPUT"_s);
    field.page.answer(u"false"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_FALSE(ready.value);
    EXPECT_EQ(field.page.scripts().mid(1), QStringList{visibilityOfEl});
}

TEST(IsObjectReady, AnElementThatThePageCannotJudgeIsReady)
{
    Element<HTML_Object> element(u"DIV"_s);
    element.page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&element.wrapper);

    EXPECT_EQ(ready.error, QString());
    EXPECT_TRUE(ready.value);
}

TEST(IsObjectReady, AFieldIsReadyWhenItIsNotDisabled)
{
    for (const bool disabled : {true, false}) {
        Element<HTML_Text> field(u"INPUT"_s);
        field.page.answer(u"true"_s);
        field.page.answer(disabled ? u"true"_s : u"false"_s);

        const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

        EXPECT_EQ(ready.error, QString());
        EXPECT_EQ(ready.value, !disabled);
        EXPECT_EQ(field.page.scripts().mid(1),
            (QStringList{visibilityOfEl, u"window.top.__ostrel.getPropertyValue( el, 'disabled');"_s}));
    }
}

TEST(IsObjectReady, AFieldThatThePageCannotJudgeIsStillAskedWhetherItIsDisabled)
{
    Element<HTML_Text> field(u"INPUT"_s);
    field.page.fail(u"busy"_s);
    field.page.fail(u"gone"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&field.wrapper);

    EXPECT_EQ(ready.error, u"Error while obtaining property 'disabled': gone"_s);
    EXPECT_FALSE(ready.value);
}

TEST(IsObjectReady, AFieldOfAnExtensionIsAskedInItsOwnWay)
{
    FakePage page;
    HTML_CustomText field(QString(), u"el"_s, u"Acme"_s, &page);
    page.answerJson(u"\"SPAN\""_s);
    page.answer(u"true"_s);
    page.answer(u"true"_s);

    const FunctionCallResult<bool> ready = isObjectReady(&field);

    EXPECT_EQ(ready.error, QString());
    EXPECT_EQ(page.scripts().mid(1), (QStringList{visibilityOfEl, u"AcmeExtension.isDisabled(el);"_s}));
    EXPECT_FALSE(ready.value);
}

/// Notes what the devices are told to do.
class FakeDevices : public NativeInterface
{
public:
    FakeDevices()
    {
        Hook::instance()->setNativeInterface(this);
        m_clock.start();
    }
    ~FakeDevices() override { Hook::instance()->setNativeInterface(nullptr); }

    FunctionCallResult<void> movePointer(const Point<1> &position) override
    {
        return note(u"move %1,%2"_s.arg(position.x).arg(position.y));
    }
    FunctionCallResult<void> pointerClick(MouseButton::Value button, const Point<1> &position) override
    {
        return note(u"click %1 at %2,%3 kind %4 screen %5"_s.arg(int(button))
                        .arg(position.x)
                        .arg(position.y)
                        .arg(position.kind)
                        .arg(position.screen));
    }
    FunctionCallResult<void> typeKeys(const QString &keys) override { return note(u"type %1"_s.arg(keys)); }

    QStringList input;
    /// Of each input, the milliseconds since the one before it.
    QList<qint64> times;
    FunctionCallResult<void> result;

private:
    FunctionCallResult<void> note(const QString &line)
    {
        input.append(line);
        times.append(m_clock.restart());
        return result;
    }

    QElapsedTimer m_clock;
};

const QString scrollToEl = u"__ostrel__scrollToElement(el,1);"_s;
const QString rectangleOfEl = u"__ostrel__getRectAsString(__ostrel__getScreenRectAsObject(el) );"_s;

class SendEvent : public testing::Test
{
protected:
    static void SetUpTestSuite() { createWebObjectClassesOnce(); }
    void TearDown() override { EXPECT_EQ(Inspector::self()->takeError(), QString()); }

    SharedPtr<Object> element() { return wrapObject(new HTML_Object(QString(), u"el"_s, &page)); }
    bool send(const QString &name, const SharedPtr<Object> &object)
    {
        const Event event(nullptr, name, Signature(), true, 0);
        return delegate.sendEvent(&event, object, {argument(3), argument(4)});
    }

    FakePage page;
    FakeDevices devices;
    ApplicationEventDelegate delegate;
};

TEST_F(SendEvent, EventsOfTheButtonStayInThePage)
{
    for (const QString &name : {u"mousedown"_s, u"mouseover"_s, u"mouseout"_s, u"click"_s}) {
        EXPECT_TRUE(send(name, element()));
        EXPECT_EQ(page.scripts().last(),
            u"__ostrel__sendMouseEvent(el,'%1', false, false, false, 3, 4);"_s.arg(name));
    }
    EXPECT_EQ(page.scripts().size(), 4);
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(SendEvent, EveryKindOfElementGetsEvents)
{
    EXPECT_TRUE(send(u"click"_s, wrapObject(new HTML_Button(QString(), u"el"_s, &page))));

    EXPECT_EQ(
        page.scripts(), QStringList{u"__ostrel__sendMouseEvent(el,'click', false, false, false, 3, 4);"_s});
    EXPECT_EQ(page.calls().first().timeoutMs, 0u);
}

TEST_F(SendEvent, AMoveMovesThePointerToo)
{
    page.answer({});
    page.answer(u"100,200,30,40"_s);

    EXPECT_TRUE(send(u"mousemove"_s, element()));

    EXPECT_EQ(page.scripts(),
        (QStringList{scrollToEl, rectangleOfEl,
            u"__ostrel__sendMouseEvent(el,'mousemove', false, false, false, 3, 4);"_s}));
    EXPECT_EQ(devices.input, QStringList{u"move 103,204"_s});
}

TEST_F(SendEvent, AReleaseClicksWithTheDeviceToo)
{
    page.answer({});
    page.answer(u"100,200,30,40"_s);
    devices.result = Failure(u"No device."_s);

    EXPECT_TRUE(send(u"mouseup"_s, element()));

    EXPECT_EQ(page.scripts(),
        (QStringList{scrollToEl, rectangleOfEl,
            u"__ostrel__sendMouseEvent(el,'mouseup', false, false, false, 3, 4);"_s}));
    EXPECT_EQ(devices.input, QStringList{u"click 0 at 103,204 kind 1 screen -1"_s});
}

TEST_F(SendEvent, WithoutAPlaceOnTheScreenNothingIsSent)
{
    for (const QString &name : {u"mousemove"_s, u"mouseup"_s}) {
        page.answer({});
        page.fail(u"gone"_s);

        EXPECT_FALSE(send(name, element()));

        EXPECT_EQ(Inspector::self()->takeError(),
            u"Error sending %1: Error while obtaining rectangle with function "
            "'__ostrel__getScreenRectAsObject': gone"_s.arg(name));
    }
    EXPECT_EQ(page.scripts().size(), 4);
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(SendEvent, WithoutAScrollNothingIsSent)
{
    for (const QString &name : {u"mousemove"_s, u"mouseup"_s}) {
        page.fail(u"gone"_s);

        EXPECT_FALSE(send(name, element()));

        EXPECT_EQ(Inspector::self()->takeError(),
            u"Error sending %1: Error while making object visible to fetch screen rectangle: "
            "Error while scrolling to element: gone"_s.arg(name));
    }
    EXPECT_EQ(page.scripts(), (QStringList{scrollToEl, scrollToEl}));
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(SendEvent, ARectangleOfThreeNumbersIsAnError)
{
    page.answer({});
    page.answer(u"1,2,3"_s);

    EXPECT_FALSE(send(u"mouseup"_s, element()));

    EXPECT_EQ(Inspector::self()->takeError(),
        u"Error sending mouseup: Rectangle string '1,2,3' obtained has invalid format."_s);
}

TEST_F(SendEvent, ARectangleOfFiveNumbersIsReadByItsFirstFour)
{
    page.answer({});
    page.answer(u"1,2,3,4,5"_s);

    EXPECT_TRUE(send(u"mousemove"_s, element()));

    EXPECT_EQ(devices.input, QStringList{u"move 4,6"_s});
}

TEST_F(SendEvent, AnEventOfTheKeyboardIsUnknown)
{
    EXPECT_FALSE(send(u"keydown"_s, element()));

    EXPECT_EQ(Inspector::self()->takeError(), u"Unknown event type: keydown"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(SendEvent, WhatIsNoElementGetsNoEventAndNoWord)
{
    EXPECT_FALSE(send(u"click"_s, nullptr));
    EXPECT_FALSE(send(u"click"_s, argument(u"el"_s)));
    EXPECT_FALSE(send(u"click"_s, wrapObject(nullptr)));
}

TEST_F(SendEvent, AnElementOfAPageThatWentIsAnError)
{
    const SharedPtr<Object> object = element();
    retrieveObject(object)->invalidate();

    EXPECT_FALSE(send(u"mouseup"_s, object));

    EXPECT_EQ(Inspector::self()->takeError(),
        u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
        "findObject"_s);
    EXPECT_EQ(page.scripts(), QStringList());
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(SendEvent, AFailureOfThePageIsTheScriptsError)
{
    page.failWith(u"gone"_s, true, false);

    EXPECT_FALSE(send(u"click"_s, element()));

    EXPECT_EQ(Inspector::self()->takeError(), u"gone"_s);
}

TEST_F(SendEvent, AHandlerThatThrowsHasGotItsEvent)
{
    page.failWith(u"oops"_s, false, true);

    EXPECT_TRUE(send(u"click"_s, element()));
}

TEST_F(SendEvent, MissingCoordinatesAreZero)
{
    const Event event(nullptr, u"click"_s, Signature(), true, 0);

    EXPECT_TRUE(delegate.sendEvent(&event, element(), {}));

    EXPECT_EQ(
        page.scripts(), QStringList{u"__ostrel__sendMouseEvent(el,'click', false, false, false, 0, 0);"_s});
}

class Upload : public testing::Test
{
protected:
    Upload() : field(QString(), u"el"_s, &page) { }

    void SetUp() override { ASSERT_TRUE(file.open()); }

    FakePage page;
    FakeDevices devices;
    QTemporaryFile file;
    HTML_Text field;
};

TEST_F(Upload, AMissingFileIsAnError)
{
    EXPECT_EQ(selectFileToUpload(&field, u"/no/such/file"_s).error,
        u"Error automating file upload field, file at '/no/such/file' does not exist."_s);
    EXPECT_EQ(page.scripts(), QStringList());
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(Upload, AFolderIsAnError)
{
    const QTemporaryDir folder;

    EXPECT_EQ(selectFileToUpload(&field, folder.path()).error,
        u"Error automating file upload field, file at '%1' is not a file."_s.arg(folder.path()));
    EXPECT_EQ(page.scripts(), QStringList());
    EXPECT_EQ(devices.input, QStringList());
}

/// Prints the failure of an upload by a user who may not read the file, which root may always.
[[noreturn]] void uploadAsNobody(HTML_Text &field, const QString &path)
{
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && setuid(nobody) != 0)
        std::abort();
    std::fprintf(stderr, "%s\n", qPrintable(selectFileToUpload(&field, path).error));
    std::_Exit(0); // without the leak check, which does not work for a process that gave up its rights
}

TEST_F(Upload, AFileThatCannotBeReadIsAnError)
{
    file.setPermissions({});
    const QString path = file.fileName();
    const std::string told
        = u"Error automating file upload field, file at '%1' is not readable.\n"_s.arg(path).toStdString();

    EXPECT_EXIT(uploadAsNobody(field, path), testing::ExitedWithCode(0), testing::Eq(told));
    EXPECT_EQ(page.scripts(), QStringList());
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(Upload, AFieldWithoutAPlaceIsAnError)
{
    page.answer({});
    page.fail(u"gone"_s);

    EXPECT_EQ(selectFileToUpload(&field, file.fileName()).error,
        u"Cannot click on file upload field, obtaining screen rect failed: Error while obtaining rectangle "
        "with function '__ostrel__getScreenRectAsObject': gone"_s);
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(Upload, AFieldWithoutASizeIsAnErrorWithBothSizes)
{
    for (const QString &size : {u"30,0"_s, u"0,30"_s}) {
        page.answer({});
        page.answer(u"100,200,"_s + size);
        const QStringList sides = size.split(u',');

        EXPECT_EQ(selectFileToUpload(&field, file.fileName()).error,
            u"Error automating file upload field, the elements width (%1) or height (%2) is 0. The "
            "nececssary click will likely end up in the wrong place.If your website uses a button to open "
            "the file dialog, please consider using mouseClick and chooseFile instead."_s.arg(
                sides[0], sides[1]));
    }
    EXPECT_EQ(devices.input, QStringList());
}

TEST_F(Upload, AClickThatFailsEndsIt)
{
    page.answer({});
    page.answer(u"100,200,300,40"_s);
    devices.result = Failure(u"No device."_s);

    EXPECT_EQ(selectFileToUpload(&field, file.fileName()).error,
        u"Click on upload field to open the file dialog failed: No device."_s);
    EXPECT_EQ(devices.input, (QStringList{u"move 380,205"_s, u"click 1 at 380,205 kind 1 screen -1"_s}));
}

TEST_F(Upload, ThePathIsTypedIntoTheDialogOfACustomFieldToo)
{
    HTML_CustomText custom(QString(), u"el"_s, u"Acme"_s, &page);
    page.answer({});
    page.answer(u"100,200,300,40"_s);
    QElapsedTimer clock;
    clock.start();

    EXPECT_EQ(selectFileToUpload(&custom, file.fileName()).error, QString());

    // Timers may be some milliseconds early.
    EXPECT_GE(clock.elapsed(), 6200);
    const QList<qint64> waits = devices.times.mid(2);
    for (qsizetype i = 0; i < waits.size(); ++i)
        EXPECT_GE(waits[i], i == 0 ? 2950 : 700) << "before input " << i + 2;
    EXPECT_EQ(page.scripts(), (QStringList{scrollToEl, rectangleOfEl}));
    EXPECT_EQ(devices.input,
        (QStringList{u"move 380,205"_s, u"click 1 at 380,205 kind 1 screen -1"_s, u"type <Home>"_s,
            u"type <Shift+End>"_s, u"type "_s + QDir::toNativeSeparators(file.fileName()),
            u"type <Return>"_s}));
}

TEST(FileDialog, IsNotObservedAndNeverFails)
{
    FakeDevices devices;
    devices.result = Failure(u"No device."_s);

    EXPECT_EQ(automateFileDialog(u"/data/cat.png"_s).error, QString());

    EXPECT_EQ(devices.input,
        (QStringList{u"type <Home>"_s, u"type <Shift+End>"_s,
            u"type "_s + QDir::toNativeSeparators(u"/data/cat.png"_s), u"type <Return>"_s}));
}

} // namespace
