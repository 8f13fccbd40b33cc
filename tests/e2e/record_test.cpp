// Recording with real input: a long visit to the demo shop as a golden script, what a page that leaves at
// once must not lose, what a page cannot forge, and picking.
#include "host/record/picker.h"
#include "host/record/recorder.h"
#include "recording.h"

#include "support/printers.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

using namespace Ostrel;
using namespace Ostrel::Host;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

using ShopVisit = Recording;

TEST_F(ShopVisit, IsTheScriptThatAPersonExpects)
{
    const StaticServer shop(QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo"));
    const QString picture = QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo/img/pellow-mug.svg");
    record(shop.url(u"index.html"_s));
    // The file is chosen in no window of the browser.
    ASSERT_FALSE(page()->call(u"Page.setInterceptFileChooserDialog"_s, {{u"enabled"_s, true}}).failed());
    TrustedUser user(page());
    const auto arrive = [&](const QString &file) {
        EXPECT_TRUE(waitUntil(
            page(), u"location.pathname.endsWith('/%1') && document.readyState === 'complete'"_s.arg(file)))
            << qPrintable(file);
        EXPECT_TRUE(settle());
    };

    // The catalogue: typing with a correction, Return in the search field, a select, a check box, chips.
    user.click(u"q('#search')"_s);
    user.type(u"mog"_s);
    user.key(u"Backspace"_s);
    user.key(u"Backspace"_s);
    user.type(u"ug"_s);
    user.key(u"Enter"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.key(u"Delete"_s);
    user.click(u"q('#search-form button')"_s);
    user.key(u"Tab"_s);
    user.key(u"ArrowDown"_s);
    user.click(u"q('#in-stock')"_s);
    user.click(u"q('#categories button:nth-child(2)')"_s);
    user.clickAt(u"q('#wish-pellow-mug')"_s, 0.1, 0.5);
    user.clickAt(u"q('#wish-vassel-teapot')"_s, 0.1, 0.5);
    user.click(u"q('#card-pellow-mug .card-foot button')"_s);
    user.click(u"q('#picture-pellow-mug img')"_s);

    // A product: selects, radio buttons, a number, stars in a shadow tree, tabs, folds, a popup.
    arrive(u"product.html"_s);
    user.click(u"inShadow('#rating', 'button:nth-child(4)')"_s);
    user.click(u"q('#wrappings label:nth-child(2) input')"_s);
    user.click(u"q('#quantity')"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.type(u"3"_s);
    user.click(u"q('#tab-material')"_s);
    user.click(u"q('#care-toggle')"_s);
    user.click(u"q('#delivery summary')"_s);
    user.click(u"q('#size-guide')"_s);
    user.goTo(newWindow(2));
    user.click(u"q('#sizes tr:nth-child(2) button')"_s);
    ASSERT_TRUE(waitFor([this] { return session->browser()->pages().size() == 1; }));
    user.goTo(page());
    user.click(u"q('#add')"_s);
    user.clickAt(u"q('.room-frame img')"_s, 300 / 640.0, 92 / 360.0);
    arrive(u"product.html"_s);
    EXPECT_TRUE(waitUntil(page(), u"location.search === '?id=hinkle-clock'"_s));
    user.click(u"inShadow('#stock', 'button')"_s);

    // The wishlist: hover, context menu, double click, keys that only the page understands.
    user.click(u"q('#site-header a[href=\"wishlist.html\"]')"_s);
    arrive(u"wishlist.html"_s);
    user.rightClick(u"q('#tile-pellow-mug')"_s);
    user.click(u"q('#context-menu button:nth-child(2)')"_s);
    user.type(u"My mug"_s);
    user.key(u"Enter"_s);
    user.doubleClick(u"q('#tile-vassel-teapot')"_s);
    user.type(u"Tea"_s);
    user.key(u"Enter"_s);
    user.key(u"ArrowRight"_s);
    user.wheel(u"q('#board')"_s, 40);

    // Frames: a frame in a frame, one that reloads, one that comes late with a form.
    user.click(u"q('#site-header a[href=\"help.html\"]')"_s);
    arrive(u"help.html"_s);
    ASSERT_TRUE(waitUntil(page(), u"frameDocument('topics').__ostrel__hooked__events"_s));
    user.click(u"inFrame('topics', 'li:nth-child(2) a')"_s);
    ASSERT_TRUE(waitUntil(page(),
        u"frameDocument('topics/answer').__ostrel__hooked__events && inFrame('topics/answer', '#useful:not([hidden])')"_s));
    user.click(u"inFrame('topics/answer', '#useful button')"_s);
    user.click(u"q('#reload-status')"_s);
    ASSERT_TRUE(waitUntil(page(), u"q('#talk') && frameDocument('talk').__ostrel__hooked__events"_s));
    user.click(u"inFrame('talk', '#question')"_s);
    user.type(u"When?"_s);
    user.key(u"Enter"_s);
    user.type(u"And why?"_s);
    user.click(u"inFrame('talk', 'button')"_s);

    // The cart: dialogs, and a page that goes on the click.
    user.click(u"inFrame('topics', '#to-cart')"_s);
    arrive(u"cart.html"_s);
    user.click(u"q('#enter-voucher')"_s);
    ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); }));
    page()->answerDialog({true, u"WRONG"_s});
    ASSERT_TRUE(
        waitFor([this] { return page()->openDialog() && page()->openDialog()->kind == DialogKind::Alert; }));
    page()->answerDialog({true, {}});
    EXPECT_TRUE(settle());
    user.click(u"q('#enter-voucher')"_s);
    ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); }));
    page()->answerDialog({true, u"QUIET10"_s});
    EXPECT_TRUE(settle());
    user.click(u"q('#empty-cart')"_s);
    ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); }));
    page()->answerDialog({false, {}});
    EXPECT_TRUE(settle());
    user.click(u"q('#row-1 input')"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.type(u"2"_s);
    user.key(u"Tab"_s);
    user.click(u"q('#to-checkout')"_s);

    // The checkout: every type of field, with Tab between them, and a file.
    arrive(u"checkout.html"_s);
    user.click(u"q('#name')"_s);
    user.type(u"Ilse Marrow"_s);
    user.key(u"Tab"_s);
    user.type(u"ilse@example.org"_s);
    user.key(u"Tab"_s);
    user.key(u"Tab"_s);
    user.type(u"lantern-42"_s);
    user.click(u"q('#customer-number')"_s);
    user.click(u"q('#has-loyalty')"_s);
    user.click(u"q('#street')"_s);
    user.type(u"7 Harbour Lane"_s);
    user.key(u"Tab"_s);
    user.key(u"ArrowDown"_s);
    user.click(u"q('input[value=\"bicycle\"]')"_s);
    user.key(u"ArrowRight"_s);
    user.click(u"q('#note')"_s);
    user.type(u"The blue"_s);
    user.key(u"Enter"_s);
    user.type(u"door"_s);
    user.click(u"q('#picture')"_s);
    ASSERT_FALSE(page()->setUploadFile(u"document.querySelector('#picture')"_s, picture).failed());
    ASSERT_TRUE(settle());
    user.click(u"q('#extras option:nth-child(2)')"_s);
    user.click(u"q('#extras option:nth-child(4)')"_s, TrustedUser::control);
    user.click(u"q('#greeting')"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.type(u"Good day"_s);
    user.click(u"q('#check')"_s);
    user.click(u"q('#place-order')"_s);
    user.click(u"q('#terms')"_s);
    user.click(u"q('#express')"_s);
    arrive(u"done.html"_s);
    user.click(u"q('main a.button')"_s);
    arrive(u"index.html"_s);
    user.click(u"q('#search')"_s);
    user.type(u"lamp"_s);

    QString script = (static_cast<void>(statements()), recorder->script().text());
    script.replace(u"127.0.0.1:%1"_s.arg(shop.port()), u"127.0.0.1:PORT"_s);
    script.replace(QStringLiteral(PAGEPROBE_SOURCE_DIR), u"SOURCES"_s);
    compareWithKept(recordingFile(u"shop-visit.js"_s), withoutHovers(script));
    compareWithKept(recordingFile(u"shop-visit.state.json"_s), stateOf(page(), shopState()));
    EXPECT_EQ(explanations.filter(u"the page has sent nothing"_s), QStringList());
    EXPECT_EQ(explanations.filter(u"the user did nothing of the kind"_s), QStringList());
    EXPECT_GE(user.actions(), 60);
}

using Leaving = Recording;

TEST_F(Leaving, ByAReturnInAFieldWithoutAButtonLosesNothing)
{
    serve(u"return-a.html"_s, "<form action='return-b.html'><input id='f' name='f' type='search'></form>");
    serve(u"return-b.html"_s, "<p id='b'>there</p>");
    record(server.url(u"return-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#f')"_s);
    user.type(u"wool"_s);
    user.key(u"Enter"_s);
    ASSERT_TRUE(waitUntil(page(), u"q('#b')"_s));

    const QString field = u"{visible='true' tagName='INPUT' name='f' type='search' id='f'}"_s;
    EXPECT_EQ(statements(),
        (QStringList{u"waitForContextExists(\"return-a.html\");"_s, u"setFocus(\"%1\");"_s.arg(field),
            u"typeText(\"%1\", \"wool\");"_s.arg(field), u"typeText(\"%1\", \"<Return>\");"_s.arg(field)}));
}

TEST_F(Leaving, ByAReturnThatPressesTheButtonIsOneStatement)
{
    serve(u"button-a.html"_s,
        "<form action='button-b.html'><input id='f' name='f'><input type='submit' id='s' value='Go'></form>");
    serve(u"button-b.html"_s, "<p id='b'>there</p>");
    record(server.url(u"button-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#f')"_s);
    user.type(u"w"_s);
    user.key(u"Enter"_s);
    ASSERT_TRUE(waitUntil(page(), u"q('#b')"_s));

    EXPECT_EQ(statements().mid(2),
        (QStringList{u"typeText(\"{visible='true' tagName='INPUT' name='f' type='text' id='f'}\", \"w\");"_s,
            u"clickButton(\"{visible='true' tagName='INPUT' type='submit' id='s' value='Go'}\");"_s}));
}

TEST_F(Leaving, AtOnceOnThePressLosesNothing)
{
    serve(u"press-a.html"_s,
        "<button type='button' id='now' onmousedown='location.href=\"press-b.html\"'>Now</button>");
    serve(u"press-b.html"_s, "<form action='press-c.html'><button id='send'>Send</button></form>");
    serve(u"press-c.html"_s, "<a id='link' href='press-d.html'>On</a>");
    serve(u"press-d.html"_s, "<p id='d'>there</p>");
    record(server.url(u"press-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#now')"_s);
    user.click(u"q('#send')"_s);
    user.click(u"q('#link')"_s);
    ASSERT_TRUE(waitUntil(page(), u"q('#d')"_s));

    EXPECT_EQ(statements(),
        (QStringList{u"waitForContextExists(\"press-a.html\");"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='now' simplifiedInnerText='Now'}\");"_s,
            u"waitForContextExists(\"press-b.html\");"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='submit' id='send' simplifiedInnerText='Send'}\");"_s,
            u"waitForContextExists(\"press-c.html\");"_s,
            u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='On' id='link'}\");"_s}));
}

using Windows = Recording;

TEST_F(Windows, ThatTheUserClosesAreClosedByTheScript)
{
    serve(u"close-a.html"_s, "<a id='open' href='close-b.html' target='_blank'>Open</a>");
    serve(u"close-b.html"_s, "<p id='b'>there</p>");
    record(server.url(u"close-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#open')"_s);
    BrowserPage *opened = newWindow(2);
    ASSERT_TRUE(settle());
    // Right behind the click it would pass for something that the page does.
    const QDeadlineTimer reading(1200);
    ASSERT_TRUE(waitFor([&] { return reading.hasExpired(); }));
    ASSERT_FALSE(opened->close().failed());

    EXPECT_EQ(statements().mid(1),
        (QStringList{u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='Open' id='open'}\");"_s,
            u"waitForContextExists(\"close-b.html\");"_s, u"closeWindow(\"[Window]\");"_s}));
}

/// The browser's own controls.
class Controls : public Recording
{
protected:
    void SetUp() override
    {
        Recording::SetUp();
        serve(u"go-a.html"_s,
            "<title>a</title><a id='l' href='go-b.html' "
            "style='display:block;width:60px;height:20px'>On</a><input id='f'>");
        serve(u"go-b.html"_s,
            "<title>b</title><button type='button' id='b' onclick='history.back()'>Back</button>");
    }
    void arrive(const QString &title)
    {
        EXPECT_TRUE(
            waitUntil(page(), u"document.title === '%1' && document.readyState === 'complete'"_s.arg(title)));
        EXPECT_TRUE(settle());
    }
    /// Right behind an event of the user it would pass for something that the page does.
    static void rest()
    {
        const QDeadlineTimer reading(1200);
        ASSERT_TRUE(waitFor([&] { return reading.hasExpired(); }));
    }
    QString a() const { return server.url(u"go-a.html"_s); }
    QString b() const { return server.url(u"go-b.html"_s); }

    const QString link = u"{visible='true' tagName='A' simplifiedInnerText='On' id='l'}"_s;
    const QString field = u"{visible='true' tagName='INPUT' type='text' id='f'}"_s;
};

TEST_F(Controls, ThatOpenAnAddressAreAStatement)
{
    record(a());
    TrustedUser user(page());

    user.click(u"q('#f')"_s);
    user.type(u"wool"_s);
    user.open(b());
    arrive(u"b"_s);
    user.click(u"q('#b')"_s);
    arrive(u"a"_s);

    EXPECT_EQ(statements(),
        (QStringList{u"waitForContextExists(\"go-a.html\");"_s, u"setFocus(\"%1\");"_s.arg(field),
            u"typeText(\"%1\", \"wool\");"_s.arg(field), u"loadUrl(\"%1\");"_s.arg(b()),
            u"waitForContextExists(\"go-b.html\");"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Back'}\");"_s}));
    EXPECT_EQ(explanations.filter(QRegularExpression(u"^(opening|history) "_s)),
        (QStringList{u"opening of %1  statement: loadUrl(\"%1\");"_s.arg(b()),
            u"history of %1  merged: a page goes there behind what the user did"_s.arg(a())}));
}

TEST_F(Controls, ThatGoBackAndLoadAgainAreStatementsWithARemark)
{
    record(a());
    TrustedUser user(page());

    user.click(u"q('#l')"_s);
    arrive(u"b"_s);
    rest();
    user.goInHistory(-1);
    arrive(u"a"_s);
    // The page that is loaded again looks as it did before.
    page()->evaluateJavaScript(u"window.isOld = true"_s, 0);
    user.loadAgain();
    EXPECT_TRUE(waitUntil(page(), u"window.isOld === undefined"_s));
    arrive(u"a"_s);
    user.goInHistory(1);
    arrive(u"b"_s);

    EXPECT_EQ(statements().mid(1),
        (QStringList{u"mouseClick(\"%1\");"_s.arg(link), u"// the user went there by the browser's history"_s,
            u"loadUrl(\"%1\");"_s.arg(a()), u"// the user loaded the page again"_s,
            u"loadUrl(\"%1\");"_s.arg(a()), u"// the user went there by the browser's history"_s,
            u"loadUrl(\"%1\");"_s.arg(b())}));
}

TEST_F(Controls, InOneOfSeveralWindowsAreOfThatWindow)
{
    serve(u"two-a.html"_s, "<title>two</title><a id='l' href='go-a.html' target='_blank'>Open</a>");
    record(server.url(u"two-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#l')"_s);
    BrowserPage *opened = newWindow(2);
    ASSERT_TRUE(settle());
    user.open(b());
    arrive(u"b"_s);
    user.goTo(opened);
    user.open(b());
    ASSERT_TRUE(waitUntil(opened, u"document.title === 'b'"_s));

    EXPECT_EQ(statements().mid(2),
        (QStringList{u"loadUrl(\"%1\");"_s.arg(b()), u"waitForContextExists(\"go-a.html\");"_s,
            u"loadUrl(\"%1\");"_s.arg(b())}));
}

TEST_F(Controls, AreNamedInTheScriptWhereNoStatementDoesWhatTheyDo)
{
    serve(u"places-a.html"_s, "<title>places</title><p style='height:3000px'>Top</p><p id='end'>End</p>");
    const QString place = server.url(u"places-a.html"_s) + u"#end"_s;
    record(server.url(u"places-a.html"_s));
    TrustedUser user(page());

    user.open(place);
    ASSERT_TRUE(waitUntil(page(), u"location.hash === '#end'"_s));
    user.loadAgain();
    ASSERT_TRUE(waitFor([this] { return recorder->script().lines().size() == 3; }));
    user.open(u"http://127.0.0.1:1/"_s);
    ASSERT_TRUE(waitFor([this] { return recorder->script().lines().size() == 4; }));
    ASSERT_FALSE(page()->connection()->send({}, u"Target.createTarget"_s, {{u"url"_s, a()}}) < 0);
    user.goTo(newWindow(2));
    ASSERT_TRUE(waitFor([this] { return recorder->script().lines().size() == 5; }));
    user.open(b());
    ASSERT_TRUE(waitUntil(user.page(), u"document.title === 'b'"_s));

    EXPECT_EQ(statements(),
        (QStringList{u"loadUrl(\"%1\");"_s.arg(place), u"// not recorded: '%1' was loaded again"_s.arg(place),
            u"// not recorded: 'http://127.0.0.1:1/', which could not be opened"_s,
            u"// not recorded: '%1' in a window that the browser's own controls opened"_s.arg(a()),
            u"// not recorded: '%1' in a window that the browser's own controls opened"_s.arg(b())}));
}

struct WayRow
{
    const char *name;
    QByteArray page; ///< has something with the id "go" that leads to another document, of the title "b"
};

TEST_F(Controls, AreNotWhatPagesGoBy)
{
    const QList<WayRow> ways{
        {"link", "<a id='go' href='go-b.html'>On</a>"},
        {"form", "<form action='go-b.html'><button id='go'>On</button></form>"},
        {"posted form", "<form method='post' action='go-b.html'><button id='go'>On</button></form>"},
        {"script", "<button id='go' onclick='location.href=\"go-b.html\"'>On</button>"},
        {"late script",
            "<button id='go' onclick='setTimeout(() => location.assign(\"go-b.html\"), 1200)'>On</button>"},
        {"script that goes twice", "<button id='go' onclick='location.href=\"way-2.html\"'>On</button>"},
        {"refresh", "<button id='go' onclick='location.href=\"way-3.html\"'>On</button>"},
        {"frame", "<iframe id='inner' srcdoc=\"<a id='go' target='_top' href='go-b.html'>On</a>\"></iframe>"},
        {"place", "<button id='go' onclick='location.hash=\"x\"; document.title=\"b\"'>On</button>"},
        {"state",
            "<button id='go' onclick='history.pushState(1, \"\", \"x.html\"); "
            "document.title=\"b\"'>On</button>"},
        {"written page",
            "<button id='go' onclick='document.open(); document.write(\"<title>b</title>\"); "
            "document.close()'>On</button>"},
        {"reload",
            "<script>if (location.search) document.title='b'; if (sessionStorage.again) "
            "document.title='b'</script>"
            "<button id='go' onclick='sessionStorage.again=1; location.reload()'>On</button>"},
    };
    serve(u"way-2.html"_s, "<script>location.replace('go-b.html')</script>");
    serve(u"way-3.html"_s, "<meta http-equiv='refresh' content='0;url=go-b.html'>");
    serve(u"way-0.html"_s, "<p>start</p>");
    record(server.url(u"way-0.html"_s));
    TrustedUser user(page());
    QStringList expected;

    for (qsizetype i = 0; i < ways.size(); ++i) {
        const QString name = u"way-x%1.html"_s.arg(i);
        serve(name, ways.at(i).page);
        user.open(server.url(name));
        expected.append(u"loadUrl(\"%1\");"_s.arg(server.url(name)));
        ASSERT_TRUE(waitUntil(
            page(), u"location.pathname.endsWith('%1') && document.readyState === 'complete'"_s.arg(name)));
        const bool isFramed = QByteArray(ways.at(i).name) == "frame";
        if (isFramed) {
            ASSERT_TRUE(waitUntil(
                page(), u"inFrame('inner', '#go') && frameDocument('inner').__ostrel__hooked__events"_s));
        }
        user.click(isFramed ? u"inFrame('inner', '#go')"_s : u"q('#go')"_s);
        ASSERT_TRUE(waitUntil(page(), u"document.title === 'b' || location.pathname.endsWith('go-b.html')"_s))
            << ways.at(i).name;
        ASSERT_TRUE(settle());
    }

    EXPECT_EQ(statements().filter(QRegularExpression(u"^(loadUrl|//)"_s)), expected);
}

TEST_F(Controls, ByKeysAreToldByWhereTheyGo)
{
    serve(u"keys-c.html"_s, "<title>c</title><body tabindex='0'><p id='p'>Here</p>");
    record(server.url(u"keys-c.html"_s));
    TrustedUser user(page());

    user.open(b());
    arrive(u"b"_s);
    // The key reaches the page before the browser itself goes by it, and comes up in the next document.
    user.key(u"ArrowLeft"_s, TrustedUser::alt);
    user.goInHistory(-1);
    arrive(u"c"_s);
    user.key(u"F5"_s);

    EXPECT_EQ(statements(),
        (QStringList{u"loadUrl(\"%1\");"_s.arg(b()), u"// the user went there by the browser's history"_s,
            u"loadUrl(\"%1\");"_s.arg(server.url(u"keys-c.html"_s)),
            u"waitForContextExists(\"keys-c.html\");"_s, u"// not recorded: the key 'F5' on BODY 'Here'"_s}));
}

TEST_F(Controls, OpenALinkInANewWindow)
{
    record(a());
    TrustedUser user(page());

    user.middleClick(u"q('#l')"_s);
    newWindow(2);
    user.click(u"q('#l')"_s, TrustedUser::control);
    newWindow(3);
    user.click(u"q('#l')"_s, TrustedUser::shift);
    newWindow(4);

    EXPECT_EQ(statements().mid(1),
        (QStringList{u"nativeMouseClick(\"%1\", 30, 10, 4);"_s.arg(link),
            u"mouseClick(\"%1\", 2);"_s.arg(link), u"mouseClick(\"%1\", 4);"_s.arg(link)}));
}

using Keyboard = Recording;

TEST_F(Keyboard, OnButtonsIsWhatAPressWouldBe)
{
    serve(u"keys-a.html"_s,
        "<input id='f'><button type='button' id='b'>Do</button><input type='checkbox' id='c'><a id='l' "
        "href='#x'>On</a>");
    record(server.url(u"keys-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#f')"_s);
    user.key(u"Tab"_s);
    user.key(u"Enter"_s);
    user.key(u"Tab"_s);
    user.key(u" "_s);
    user.key(u"Tab"_s);
    user.key(u"Enter"_s);

    EXPECT_EQ(statements().mid(2),
        (QStringList{
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Do'}\");"_s,
            u"clickButton(\"{visible='true' tagName='INPUT' type='checkbox' id='c' value='on'}\");"_s,
            u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='On' id='l'}\");"_s}));
}

TEST_F(Keyboard, AtFullSpeedLosesNoCharacter)
{
    serve(u"speed-a.html"_s, "<textarea id='t'></textarea>");
    record(server.url(u"speed-a.html"_s));
    TrustedUser user(page());
    const QString text = u"The quick brown fox jumps over the lazy dog again. "_s.repeated(20).left(1000);

    user.click(u"q('#t')"_s);
    user.type(text);

    EXPECT_EQ(statements().constLast(),
        u"typeText(\"{visible='true' tagName='TEXTAREA' id='t'}\", \"%1\");"_s.arg(text));
}

// Each document tells for itself, and keys may be kept back for a moment.
TEST_F(Keyboard, AtFullSpeedKeepsItsPlaceAmongDocuments)
{
    serve(u"order-a.html"_s,
        "<input id='f' style='width:600px'><iframe id='inner' src='order-b.html'></iframe>");
    serve(u"order-b.html"_s, "<button type='button' id='b'>Do</button>");
    record(server.url(u"order-a.html"_s));
    TrustedUser user(page());
    ASSERT_TRUE(waitUntil(page(), u"frameDocument('inner').__ostrel__hooked__events"_s));

    user.click(u"q('#f')"_s);
    for (int i = 0; i < 5; ++i) {
        user.type(u"quick"_s);
        user.click(u"inFrame('inner', '#b')"_s);
        user.click(u"q('#f')"_s);
    }

    const QStringList typed = statements().filter(QRegularExpression(u"^(typeText|clickButton)"_s));
    ASSERT_EQ(typed.size(), 10) << qPrintable(typed.join(u'\n'));
    QString text;
    for (int i = 0; i < 10; i += 2) {
        text += u"quick"_s;
        EXPECT_EQ(typed.at(i),
            u"typeText(\"{visible='true' tagName='INPUT' type='text' id='f'}\", \"%1\");"_s.arg(text));
        EXPECT_TRUE(typed.at(i + 1).startsWith("clickButton(\""_L1)) << qPrintable(typed.at(i + 1));
    }
}

// A page that shows a dialog tells nothing, for as long as the user likes.
TEST_F(Keyboard, ThatOpensADialogIsWaitedFor)
{
    serve(u"slow-a.html"_s,
        "<input id='f' onkeyup='if (this.value.length === 5 && !this.told) { this.told = true; alert(5) }'>");
    record(server.url(u"slow-a.html"_s));
    TrustedUser user(page());
    user.click(u"q('#f')"_s);

    QTimer readingTime;
    readingTime.setSingleShot(true);
    QObject::connect(page(), &BrowserPage::dialogOpened, &readingTime, [&] { readingTime.start(1500); });
    QObject::connect(&readingTime, &QTimer::timeout, page(), [this] { page()->answerDialog({true, {}}); });
    user.type(u"abcde"_s);
    ASSERT_TRUE(waitFor([&] { return !page()->openDialog() && !readingTime.isActive(); }));

    EXPECT_EQ(statements().mid(2),
        (QStringList{u"answerAlert();"_s,
            u"typeText(\"{visible='true' tagName='INPUT' type='text' id='f'}\", \"abcde\");"_s}));
}

// Keys overlap when somebody types quickly: the last one to come up has changed nothing, and the next may
// have changed the field before its neighbour is told.
TEST_F(Keyboard, AtFullSpeedTellsWhatEachKeyLeft)
{
    serve(u"overlap-a.html"_s, "<textarea id='t'></textarea><button id='b' type='button'>Do</button>");
    record(server.url(u"overlap-a.html"_s));
    TrustedUser user(page());
    const auto stroke = [this](const QString &type, const QString &key) {
        QJsonObject event{{u"type"_s, type}, {u"key"_s, key}};
        if (type == "keyDown"_L1)
            event.insert("text"_L1, key);
        page()->connection()->send(page()->sessionId(), u"Input.dispatchKeyEvent"_s, event);
    };

    user.click(u"q('#t')"_s);
    for (const QString &key : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
        stroke(u"keyDown"_s, key);
    for (const QString &key : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
        stroke(u"keyUp"_s, key);
    user.click(u"q('#b')"_s);
    user.click(u"q('#t')"_s);
    user.type(u"efg"_s);
    user.key(u"Enter"_s);
    user.type(u"h"_s);

    const QString field = u"{visible='true' tagName='TEXTAREA' id='t'}"_s;
    EXPECT_EQ(statements().filter(u"typeText"_s),
        (QStringList{u"typeText(\"%1\", \"abcd\");"_s.arg(field),
            u"typeText(\"%1\", \"abcdefg\");"_s.arg(field),
            u"typeText(\"%1\", \"abcdefg\\nh\");"_s.arg(field)}));
}

TEST_F(Keyboard, IsToldByPagesThatReplaceTheClock)
{
    serve(u"clock-a.html"_s, R"(<input id='f'><script>
        window.setTimeout = window.requestAnimationFrame = function () { return 0; };
        performance.now = Date.now = function () { return 7; };
        Array.prototype.toJSON = String.prototype.toJSON = function () { return 'broken'; };
    </script>)");
    record(server.url(u"clock-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#f')"_s);
    user.type(u"abcde"_s);

    EXPECT_EQ(statements().constLast(),
        u"typeText(\"{visible='true' tagName='INPUT' type='text' id='f'}\", \"abcde\");"_s);
}

TEST_F(Keyboard, IsNotTheOnlyWayATextComes)
{
    serve(u"arrows-a.html"_s, R"(<body oncontextmenu='return false'>
        <input id='n' type='number' value='1' style='width:100px;height:30px'><input id='f'><input id='g'>
        <div id='e' contenteditable style='width:200px;height:40px'></div>)");
    record(server.url(u"arrows-a.html"_s));
    TrustedUser user(page());

    user.hover(u"q('#n')"_s);
    user.clickAt(u"q('#n')"_s, 0.93, 0.3);
    user.rightClick(u"q('#f')"_s);
    user.paste(u"ab"_s);
    user.click(u"q('#g')"_s);
    user.key(u"End"_s);
    user.type(u"c"_s);
    user.click(u"q('#e')"_s);
    user.type(u"xy"_s);

    const QString fieldG = u"{visible='true' tagName='INPUT' type='text' id='g'}"_s;
    EXPECT_EQ(statements().mid(1),
        (QStringList{u"setFocus(\"{visible='true' tagName='INPUT' type='number' id='n'}\");"_s,
            u"typeText(\"{visible='true' tagName='INPUT' type='number' id='n'}\", \"2\");"_s,
            u"setFocus(\"{visible='true' tagName='INPUT' type='text' id='f'}\");"_s,
            u"typeText(\"{visible='true' tagName='INPUT' type='text' id='f'}\", \"ab\");"_s,
            u"setFocus(\"%1\");"_s.arg(fieldG), u"typeText(\"%1\", \"c\");"_s.arg(fieldG),
            u"mouseClick(\"{visible='true' tagName='DIV' id='e'}\", 100, 20);"_s,
            u"typeText(\"{visible='true' tagName='DIV' id='e'}\", \"xy\");"_s}));
}

using Presses = Recording;

TEST_F(Presses, ThatThePageTakesByThePointerAreOfTheTruePointer)
{
    serve(u"pointer-a.html"_s,
        "<div style='height:200px;overflow:auto'><p style='height:1000px'></p><button type='button' id='b' "
        "style='width:100px;height:40px' onpointerdown='event.preventDefault()'>Do</button></div>");
    record(server.url(u"pointer-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#b')"_s);

    EXPECT_EQ(statements().mid(1),
        QStringList{
            u"nativeMouseClick(\"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Do'}\", 50, 20, 1);"_s});
}

TEST_F(Presses, WithoutAClickAreOfTheTruePointer)
{
    serve(
        u"pointer-c.html"_s, R"(<div id='list' style='position:absolute;left:0;top:0;width:300px;height:300px;
            background:silver;display:none' onclick='this.style.display="none"'></div>
        <div style='height:60px'></div>
        <div id='open' style='width:100px;height:40px'><span>Choose</span></div>
        <script>
            document.getElementById('open').addEventListener('pointerdown', function (event) {
                event.preventDefault();
                document.getElementById('list').style.display = 'block';
            });
        </script>)");
    record(server.url(u"pointer-c.html"_s));
    TrustedUser user(page());

    user.clickAt(u"q('#open')"_s, 0.9, 0.75);
    user.clickAt(u"q('#list')"_s, 0.5, 0.5);

    EXPECT_EQ(statements(),
        (QStringList{u"waitForContextExists(\"pointer-c.html\");"_s,
            u"nativeMouseClick(\"{visible='true' tagName='DIV' id='open'}\", 90, 30, 1);"_s,
            u"mouseClick(\"{visible='true' tagName='DIV' id='list'}\", 150, 150);"_s}));
}

TEST_F(Presses, OnDrawingsAreAtTheirPlaceInThem)
{
    serve(u"svg-a.html"_s,
        R"(<style>.box { position:absolute; display:block; width:100px; height:60px; padding:0 }
            svg { display:block; margin:10px } </style>
        <button type='button' id='b' class='box' style='left:40px;top:40px' onclick='document.title += "b"'>
            <svg width='40' height='40'><path id='p' d='M0 0H40V40H0Z'/></svg></button>
        <a id='a' href='#x' class='box' style='left:200px;top:40px'>
            <svg width='40' height='40'><path id='ap' d='M0 0H40V40H0Z'/></svg></a>
        <button type='button' id='t' class='box' style='left:40px;top:140px' onclick='document.title += "t"'>
            <svg width='40' height='40'><path id='tp' d='M0 0H40V40H0Z' style='pointer-events:none'/></svg></button>
        <button type='button' id='n' class='box' style='left:200px;top:140px' onclick='document.title += "n"'>
            <svg width='40' height='40' style='pointer-events:none'><path id='np' d='M0 0H40V40H0Z'/></svg></button>)");
    record(server.url(u"svg-a.html"_s));
    TrustedUser user(page());

    user.clickAt(u"q('#p')"_s, 0.25, 0.75);
    user.clickAt(u"q('#ap')"_s, 0.25, 0.75);
    user.clickAt(u"q('#tp')"_s, 0.25, 0.75);
    user.clickAt(u"q('#np')"_s, 0.25, 0.75);

    EXPECT_EQ(statements().mid(1),
        (QStringList{u"mouseClick(\"{visible='true' tagName='path' id='p'}\", 10, 30);"_s,
            u"mouseClick(\"{visible='true' tagName='A' id='a'}\", 10, 30);"_s,
            u"mouseClick(\"DOCUMENT.HTML1.BODY1.BUTTON2.svg1\", 10, 30);"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='n'}\");"_s}));
}

TEST_F(Presses, OnWhatIsGoneAreNamedInTheScript)
{
    serve(u"pointer-b.html"_s,
        "<button type='button' id='b' onpointerdown='event.preventDefault(); this.remove()'>Go</button>");
    record(server.url(u"pointer-b.html"_s));
    TrustedUser user(page());

    user.click(u"q('#b')"_s);

    EXPECT_TRUE(waitFor([&] {
        return recorder->script().lines().contains(
            u"// not recorded: a press on BUTTON#b, which the page takes for itself"_s);
    }));
}

TEST_F(Presses, OfThePageItselfAreNoneOfTheUser)
{
    serve(u"page-a.html"_s,
        "<form onsubmit='return false'><input type='submit' id='s' value='Send'></form>"
        "<button type='button' id='b' onclick='document.getElementById(\"s\").click()'>Do</button>"
        "<a id='l' href='#x'>On</a>");
    record(server.url(u"page-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#b')"_s);
    user.click(u"q('#l')"_s);

    EXPECT_EQ(statements().mid(1),
        (QStringList{
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Do'}\");"_s,
            u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='On' id='l'}\");"_s}));
}

/// Fingers on a screen.
class Touches : public Recording
{
protected:
    using Places = QList<QPointF>;

    void SetUp() override
    {
        Recording::SetUp();
        serve(u"touch-a.html"_s, R"(<body style='margin:0;height:4000px'>
            <style>.box { position:absolute; width:100px; height:60px; margin:0 }</style>
            <button type='button' id='b' class='box' style='left:40px;top:40px' onclick='document.title += "b"'>Do</button>
            <div id='t' class='box' style='left:200px;top:40px' ontouchend='event.preventDefault(); document.title += "t"'>T</div>
            <input id='f' class='box' style='left:40px;top:140px'><p id='p' class='box' style='left:40px;top:340px'>P</p>)");
        record(server.url(u"touch-a.html"_s));
        ASSERT_FALSE(page()
                         ->call(u"Emulation.setTouchEmulationEnabled"_s,
                             {{u"enabled"_s, true}, {u"maxTouchPoints"_s, 2}})
                         .failed());
    }
    void touch(const QString &type, const Places &places)
    {
        QJsonArray points;
        for (const QPointF &place : places) {
            points.append(
                QJsonObject{{u"x"_s, place.x()}, {u"y"_s, place.y()}, {u"id"_s, int(points.size())}});
        }
        ASSERT_FALSE(
            page()
                ->call(u"Input.dispatchTouchEvent"_s, {{u"type"_s, type}, {u"touchPoints"_s, points}})
                .failed());
    }
    void tap(const Places &places)
    {
        touch(u"touchStart"_s, places);
        touch(u"touchEnd"_s, {});
    }
    bool isExplained(const QString &text) const
    {
        return waitFor([&] { return !explanations.filter(text).isEmpty(); });
    }

    const QString button
        = u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Do'}\");"_s;
};

TEST_F(Touches, ThatAreTapsAreThePressesThatTheBrowserMakesOfThem)
{
    tap({{60, 60}});
    ASSERT_TRUE(isExplained(u"click on BUTTON#b"_s));
    tap({{60, 150}});
    ASSERT_TRUE(isExplained(u"click on INPUT#f"_s));
    touch(u"touchStart"_s, {{61, 61}});
    const QDeadlineTimer held(900);
    ASSERT_TRUE(waitFor([&] { return held.hasExpired(); }));
    touch(u"touchEnd"_s, {});
    ASSERT_TRUE(waitUntil(page(), u"document.title === 'bb'"_s));
    ASSERT_TRUE(settle());

    EXPECT_EQ(statements().mid(1),
        (QStringList{
            button, u"setFocus(\"{visible='true' tagName='INPUT' type='text' id='f'}\");"_s, button}));
    EXPECT_EQ(explanations.filter(u"touchend"_s),
        (QStringList{u"touchend on BUTTON#b  merged: the press that the browser makes of it tells it"_s,
            u"touchend on INPUT#f  merged: the press that the browser makes of it tells it"_s,
            u"touchend on BUTTON#b  merged: the press that the browser makes of it tells it"_s}));
}

TEST_F(Touches, OfWhichTheBrowserMakesNoPressAreNamedInTheScript)
{
    tap({{230, 60}});
    ASSERT_TRUE(isExplained(u"tap on DIV#t"_s));
    touch(u"touchStart"_s, {{60, 350}});
    for (const int y : {320, 260, 200})
        touch(u"touchMove"_s, {QPointF(60, y)});
    touch(u"touchEnd"_s, {});
    ASSERT_TRUE(isExplained(u"swipe on P#p"_s));
    // The page may still move behind the fingers.
    ASSERT_TRUE(waitUntil(page(), u"scrollTo(0, 0), scrollY === 0"_s));
    tap({{60, 60}, {90, 60}});
    ASSERT_TRUE(waitFor([&] { return explanations.filter(u"swipe on "_s).size() == 2; }));

    const QStringList lines = statements();
    EXPECT_EQ(lines.mid(0, 2),
        (QStringList{u"// not recorded: a tap on DIV#t, which the page takes for itself"_s,
            u"// not recorded: fingers that move over P#p"_s}));
    EXPECT_EQ(lines.size(), 3);
    EXPECT_EQ(explanations.filter(u"statement:"_s), QStringList());
}

using ObjectInfo = Recording;

TEST_F(ObjectInfo, IsOpenedAndClosedWithoutAStatement)
{
    serve(u"info-a.html"_s,
        "<p style='height:200px'></p><input type='checkbox' id='c' style='margin-left:100px'>"
        "<p style='height:900px' onclick='document.title += \"below\"'>Below</p>");
    record(server.url(u"info-a.html"_s));
    static_cast<void>(
        page()->evaluateJavaScript(u"window.__ostrel__enableObjectInfoOverlay = true; ''"_s, 0));
    TrustedUser user(page());

    user.click(u"q('#c')"_s, TrustedUser::control | TrustedUser::alt);
    ASSERT_TRUE(waitUntil(page(), u"q('#__ostrel__web__info__overlay button')"_s));
    EXPECT_EQ(
        page()->evaluateJavaScript(u"document.getElementById('__ostrel__info__name').value"_s, 0).result,
        u"{visible='true' tagName='INPUT' type='checkbox' id='c' value='on'}"_s);
    EXPECT_EQ(page()->evaluateJavaScript(u"document.getElementById('c').checked"_s, 0).result, u"false"_s);
    user.click(u"q('#__ostrel__info__name')"_s);
    user.key(u"End"_s);
    user.click(u"q('#__ostrel__web__info__overlay button')"_s);
    ASSERT_TRUE(waitUntil(page(), u"!q('#__ostrel__web__info__overlay')"_s));

    EXPECT_EQ(page()->evaluateJavaScript(u"document.title"_s, 0).result, QString());
    EXPECT_EQ(statements().mid(1),
        QStringList{
            u"mouseClick(\"{visible='true' tagName='INPUT' type='checkbox' id='c' value='on'}\", 3);"_s});
}

using Dialogs = Recording;

struct DialogRow
{
    const char *button;
    DialogAnswer answer;
    QString given; ///< what the page gets
    QString statement;
};

TEST_F(Dialogs, GiveThePageTheAnswerThatTheScriptGives)
{
    const QList<DialogRow> rows{
        {"alert", {true, {}}, u"undefined"_s, u"answerAlert();"_s},
        {"alert", {false, {}}, u"undefined"_s, u"answerAlert();"_s},
        {"confirm", {true, {}}, u"true"_s, u"answerConfirm(true);"_s},
        {"confirm", {false, {}}, u"false"_s, u"answerConfirm(false);"_s},
        {"prompt", {true, u"a&b \"c\""_s}, u"\"a&b \\\"c\\\"\""_s, u"answerPrompt(\"a&b \\\"c\\\"\");"_s},
        {"prompt", {true, u""_s}, u"\"\""_s, u"answerPrompt(\"\");"_s},
        {"prompt", {false, {}}, u"\"\""_s, u"answerPrompt(\"\");"_s},
    };
    serve(u"dialogs-a.html"_s, R"(<script>
        function show(name) {
            document.title = String(JSON.stringify(window[name]('Really?')));
        }
        for (const name of ['alert', 'confirm', 'prompt'])
            document.write(`<button type='button' id='${name}' onclick='show(this.id)'>Ask</button>`);
    </script>)");
    record(server.url(u"dialogs-a.html"_s));
    TrustedUser user(page());
    QStringList given;
    QStringList expectedGiven;
    QStringList expected;

    for (const DialogRow &row : rows) {
        user.click(u"q('#%1')"_s.arg(QLatin1String(row.button)));
        ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); })) << row.button;
        page()->answerDialog(row.answer);
        ASSERT_TRUE(settle());
        given.append(page()->evaluateJavaScript(u"document.title"_s, 0).result);
        expectedGiven.append(row.given);
        expected.append(row.statement);
    }

    EXPECT_EQ(given, expectedGiven);
    const QStringList lines = statements();
    EXPECT_EQ(lines.filter(u"answer"_s), expected);
    EXPECT_EQ(lines.mid(lines.size() - 3),
        (QStringList{u"// the prompt was cancelled, which gives an empty text while recording"_s,
            u"answerPrompt(\"\");"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='button' id='prompt' simplifiedInnerText='Ask'}\");"_s}));
    EXPECT_EQ(explanations.filter(u"answer to"_s).at(3),
        u"answer to a confirm: 'Really?'  statement: answerConfirm(false);"_s);
}

TEST_F(Dialogs, ThatAskWhetherAPageMayBeLeftAreTheUsersToAnswer)
{
    serve(u"asks-a.html"_s,
        "<title>a</title><p id='p'>Here</p><a id='l' href='asks-b.html'>On</a>"
        "<script>window.onbeforeunload = function (event) { event.preventDefault(); return 'No'; }</script>");
    serve(u"asks-b.html"_s, "<title>b</title><p>there</p>");
    const QString a = server.url(u"asks-a.html"_s);
    const QString b = server.url(u"asks-b.html"_s);
    record(a);
    TrustedUser user(page());
    const auto answer = [this](bool leaves) {
        ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); }));
        EXPECT_EQ(page()->openDialog()->kind, DialogKind::BeforeUnload);
        page()->answerDialog({leaves, {}});
        ASSERT_TRUE(waitUntil(page(), leaves ? u"document.title === 'b'"_s : u"document.title === 'a'"_s));
        ASSERT_TRUE(settle());
    };

    user.click(u"q('#l')"_s);
    answer(false);
    user.open(b);
    answer(false);
    user.click(u"q('#l')"_s);
    answer(true);
    user.open(a);
    ASSERT_TRUE(waitUntil(page(), u"document.title === 'a'"_s));
    user.click(u"q('#p')"_s);
    user.open(b);
    answer(true);

    const QString link = u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='On' id='l'}\");"_s;
    const QString stayed = u"// not recorded: the user stayed on a page that asks before it is left"_s;
    const QStringList lines = statements().mid(1);
    EXPECT_EQ(lines.filter(QRegularExpression(u"^(mouseClick.*On|loadUrl|//)"_s)),
        (QStringList{link, stayed, link, u"loadUrl(\"%1\");"_s.arg(a), u"loadUrl(\"%1\");"_s.arg(b)}));
    EXPECT_EQ(explanations.filter(u"answer to"_s),
        (QStringList{u"answer to the question whether it may be left: ''  remark: %1"_s.arg(stayed.mid(3)),
            u"answer to the question whether it may be left: ''  remark: %1"_s.arg(stayed.mid(3)),
            u"answer to the question whether it may be left: ''  left out: replay leaves pages that ask, too"_s,
            u"answer to the question whether it may be left: ''  left out: replay leaves pages that ask, too"_s}));
}

using Unexpressed = Recording;

TEST_F(Unexpressed, InputIsNamedInTheScript)
{
    serve(u"input-a.html"_s,
        "<body style='height:3000px'><p id='h' onmouseover='this.title=\"seen\"'>Point at me</p>"
        "<p id='d' draggable='true'>Drag me</p><p id='e'>Here</p><input type='date' id='day'>"
        "<p id='k' tabindex='0'>Keys</p>");
    record(server.url(u"input-a.html"_s));
    TrustedUser user(page());

    user.hover(u"q('#h')"_s);
    user.wheel(u"q('#e')"_s, 30);
    user.drag(u"q('#d')"_s, u"q('#e')"_s);
    user.clickAt(u"q('#day')"_s, 0.1, 0.5);
    user.type(u"03142031"_s);
    user.key(u"Tab"_s);
    user.click(u"q('#k')"_s);
    user.key(u"F2"_s);

    const QStringList remarks = statements().filter(u"//"_s);
    EXPECT_TRUE(remarks.contains(u"// not recorded: the pointer over P#h, by which the page changed"_s));
    EXPECT_EQ(remarks.filter(u"// not recorded: the wheel over "_s).size(), 1);
    EXPECT_TRUE(remarks.contains(u"// not recorded: a drag of P#d"_s));
    EXPECT_TRUE(remarks.contains(u"// not recorded: INPUT#day was set to '2031-03-14'"_s));
    EXPECT_TRUE(remarks.contains(u"// not recorded: the key 'F2' on P#k"_s));
}

// Sliders and lists that a page moves by itself know of no drag of the browser's.
TEST_F(Unexpressed, ADragThatThePageMakesOfThePointerIsNamed)
{
    serve(u"input-a.html"_s,
        "<body style='user-select:none'><p id='s'>Slide me</p><p id='e'>Here</p><input id='t' value='some "
        "text'>"
        "<input type='range' id='r' value='0' style='width:300px'>");
    record(server.url(u"input-a.html"_s));
    TrustedUser user(page());

    user.drag(u"q('#s')"_s, u"q('#e')"_s);
    user.drag(u"q('#t')"_s, u"q('#e')"_s);
    user.drag(u"q('#r')"_s, u"q('#e')"_s);
    user.click(u"q('#e')"_s);

    const QStringList remarks = statements().filter(u"//"_s);
    EXPECT_EQ(remarks.filter(u"a drag of"_s), QStringList{u"// not recorded: a drag of P#s"_s});
    EXPECT_EQ(remarks.filter(u"INPUT#r was set to"_s).size(), 1);
}

using Hovers = Recording;

// A page that marks whatever the pointer is over, as many toolkits do.
TEST_F(Hovers, OnTheWayToWhatIsPressedAreOneRemarkAtMost)
{
    serve(u"hover-a.html"_s, R"(<style>* { margin:0 } li { height:30px; list-style:none }</style>
        <ul onmouseover='event.target.className = "over"' onmouseout='event.target.className = ""'>
            <li id='l1'><a href='#1' id='a1'>One</a></li><li id='l2'><a href='#2' id='a2'>Two</a></li>
            <li id='l3'><a href='#3' id='a3'>Three</a></li><li id='l4'><button id='b'
                style='padding:5px'><span id='s'>Four</span></button></li></ul>)");
    record(server.url(u"hover-a.html"_s));
    TrustedUser user(page());

    user.click(u"q('#a1')"_s);
    for (const char *id : {"a1", "l2", "a2", "l3", "a3", "l3", "b"})
        user.hover(u"q('#%1')"_s.arg(QLatin1String(id)));
    user.click(u"q('#s')"_s);
    user.hover(u"q('#l2')"_s);

    EXPECT_EQ(statements().mid(1),
        (QStringList{u"mouseClick(\"{visible='true' tagName='A' simplifiedInnerText='One' id='a1'}\");"_s,
            u"// not recorded: the pointer over A#a2, LI#l3, A#a3 and 1 more, by which the page changed"_s,
            u"clickButton(\"{visible='true' tagName='BUTTON' type='submit' id='b' simplifiedInnerText='Four'}\");"_s,
            u"// not recorded: the pointer over LI#l2, by which the page changed"_s}));
    EXPECT_EQ(explanations.filter(u"hover on A#a1"_s),
        QStringList{u"hover on A#a1  merged: the press on it comes with the pointer"_s});
    EXPECT_EQ(explanations.filter(u"hover on LI#l3"_s).constFirst(),
        u"hover on LI#l3  remark: the page changed by it"_s);
}

using Files = Recording;

TEST_F(Files, AreFoundAgain)
{
    serve(u"file-a.html"_s, "<input type='file' id='f'>");
    serve(u"card.png"_s, "picture");
    record(server.url(u"file-a.html"_s));
    TrustedUser user(page());
    ASSERT_FALSE(page()->call(u"Page.setInterceptFileChooserDialog"_s, {{u"enabled"_s, true}}).failed());

    user.click(u"q('#f')"_s);
    ASSERT_FALSE(
        page()->setUploadFile(u"document.querySelector('#f')"_s, folder.filePath(u"card.png"_s)).failed());

    EXPECT_EQ(statements().mid(1),
        QStringList{u"setText(\"{visible='true' tagName='INPUT' type='file' id='f'}\", \"%1\");"_s.arg(
            folder.filePath(u"card.png"_s))});
}

using Forgery = Recording;

TEST_F(Forgery, MakesNoStatements)
{
    serve(u"forgery-a.html"_s, R"(<button id='b' type='submit'>Buy</button><script>
        function forge() {
            var b = document.getElementById('b');
            ['mousedown', 'click', 'dblclick'].forEach(function (type) {
                b.dispatchEvent(new MouseEvent(type, { bubbles: true }));
            });
            b.click();
            __ostrel__sendLogEventData(null, 'event=mousedown&object=x&type=button');
            var request = new XMLHttpRequest();
            request.open('GET', 'http://127.0.0.1:' + window.__ostrel__port + '/?logevent5&event=startBrowser&url=http://127.0.0.1/');
            request.send();
            var foreign = new XMLHttpRequest();
            foreign.open('GET', 'http://127.0.0.1:49151/?logevent6&event=mousedown&type=button&object=y');
            foreign.send();
            __ostrel__carryEvents('49151/guess\0logevent7&event=mousedown&type=button&object=z');
            document.title = 'forged';
        }
        setTimeout(forge, 50);
    </script>)");
    record(server.url(u"forgery-a.html"_s));

    ASSERT_TRUE(waitUntil(page(), u"document.title === 'forged'"_s));
    static const QRegularExpression ofNobody(u"the user did nothing of the kind|the page does it"_s);
    ASSERT_TRUE(waitFor([this] { return explanations.filter(ofNobody).size() >= 5; }));

    EXPECT_EQ(statements(), QStringList());
}

TEST(WithoutRecording, AClickSendsNothing)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"a.html"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<button id='b' type='button' onclick='document.title=\"clicked\"'>Do</button>");
    file.close();
    const StaticServer server(folder.path());
    auto session = TestSession::start(SessionOptions());
    ASSERT_FALSE(session.failed());
    ASSERT_FALSE(session.value->open(server.url(u"a.html"_s)).failed());
    QStringList texts;
    QObject::connect(session.value->channel(), &PageChannel::eventLogged, [&](const QString &text) {
        // The page before may still tell that it goes.
        if (!text.contains(u"event=unload"_s))
            texts.append(text);
    });
    TrustedUser user(session.value->activePage());

    user.click(u"q('#b')"_s);
    ASSERT_TRUE(waitUntil(session.value->activePage(), u"document.title === 'clicked'"_s));

    EXPECT_EQ(texts, QStringList());
}

TEST(Picking, HighlightsAndTellsWhatWasPicked)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"a.html"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<body style='margin:0;height:3000px'><button id='b' type='button' "
               "onclick='document.title=\"clicked\"' "
               "style='position:absolute;left:40px;top:900px;width:120px;height:30px'>Do</button>");
    file.close();
    const StaticServer server(folder.path());
    auto session = TestSession::start(SessionOptions());
    ASSERT_FALSE(session.failed());
    ASSERT_FALSE(session.value->open(server.url(u"a.html"_s)).failed());
    Picker picker(session.value.get());
    QList<QRect> highlights;
    QStringList names;
    QObject::connect(
        &picker, &Picker::highlighted, [&](const QRect &rectangle) { highlights.append(rectangle); });
    QObject::connect(&picker, &Picker::picked, [&](const QString &name) { names.append(name); });
    ASSERT_FALSE(picker.start().failed());
    BrowserPage *page = session.value->activePage();
    TrustedUser user(page);

    user.hover(u"q('#b')"_s);
    ASSERT_TRUE(waitFor([&] { return !highlights.isEmpty(); }));
    const QString place
        = page->evaluateJavaScript(
                  u"var r = document.querySelector('#b').getBoundingClientRect(); [r.x, r.y, r.width, r.height].join(',')"_s,
                  0)
              .result;
    const QRect highlight = highlights.constLast();
    EXPECT_EQ(u"%1,%2,%3,%4"_s.arg(QString::number(highlight.x()), QString::number(highlight.y()),
                  QString::number(highlight.width()), QString::number(highlight.height())),
        place);
    const CommandResult shot = page->call(u"Page.captureScreenshot"_s);
    const QImage picture
        = QImage::fromData(QByteArray::fromBase64(shot.value.value("data"_L1).toString().toLatin1()));
    if (const QString name = qEnvironmentVariable("PAGEPROBE_PICTURE"); !name.isEmpty())
        picture.save(name);
    EXPECT_GT(
        picture.pixelColor(highlight.center()).blue(), picture.pixelColor(highlight.center()).red() + 30);
    EXPECT_EQ(picture.pixelColor(highlight.bottomRight() + QPoint(20, 20)), QColor(Qt::white));

    user.click(u"q('#b')"_s);
    ASSERT_TRUE(waitFor([&] { return !names.isEmpty(); }));
    const QString name = u"{visible='true' tagName='BUTTON' type='button' id='b' simplifiedInnerText='Do'}"_s;
    EXPECT_EQ(names.constFirst(), name);
    EXPECT_EQ(page->evaluateJavaScript(u"document.title"_s, 0).result, QString());

    const FunctionCallResult<PickedObject> object = picker.describe(name);
    ASSERT_FALSE(object.failed()) << qPrintable(object.error);
    EXPECT_EQ(object.value.className, u"HTML_Button"_s);
    EXPECT_EQ(object.value.hierarchicalName, u"DOCUMENT.HTML1.BODY1.BUTTON1"_s);
    const QStringList lines = object.value.text().split(u'\n');
    EXPECT_TRUE(lines.contains(u"    id = b"_s));
    EXPECT_TRUE(lines.contains(u"    innerText = Do"_s));
}

} // namespace
