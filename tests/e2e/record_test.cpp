// Recording with real input: a long visit to the demo shop as a golden script, what a page that leaves at
// once must not lose, what a page cannot forge, and picking.
#include "host/record/picker.h"
#include "host/record/recorder.h"
#include "host/staticserver.h"
#include "trusteduser.h"

#include "support/printers.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace Ostrel;
using namespace Ostrel::Host;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

const QString goldenFile = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/data/recordings/shop-visit.js");

/// Compares with a kept file, or writes it when PAGEPROBE_UPDATE is set. The difference is reviewed like
/// code.
void compareWithKept(const QString &fileName, const QString &text)
{
    QFile file(fileName);
    if (qEnvironmentVariableIsSet("PAGEPROBE_UPDATE")) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(fileName);
        file.write(text.toUtf8());
        return;
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(fileName);
    EXPECT_EQ(text.split(u'\n'), QString::fromUtf8(file.readAll()).split(u'\n'));
}

class Recording : public testing::Test
{
protected:
    void SetUp() override
    {
        auto started = TestSession::start({});
        ASSERT_FALSE(started.failed()) << qPrintable(started.error);
        session = std::move(started.value);
        recorder = std::make_unique<Recorder>(session.get());
        QObject::connect(recorder.get(), &Recorder::explained, recorder.get(),
            [this](const QString &line) { explanations.append(line); });
    }
    void TearDown() override
    {
        recorder.reset();
        session.reset();
        if (HasFailure() || qEnvironmentVariableIsSet("PAGEPROBE_EXPLAIN")) {
            for (const QString &line : explanations)
                fprintf(stderr, "%s\n", qPrintable(line));
        }
    }

    void serve(const QString &name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void record(const QString &address)
    {
        const auto opened = recorder->start(address);
        ASSERT_FALSE(opened.failed()) << qPrintable(opened.error);
        ASSERT_TRUE(
            waitUntil(page(), u"location.href !== 'about:blank' && document.readyState === 'complete'"_s));
    }
    /// The statements behind the start, once all has been handled.
    QStringList statements()
    {
        EXPECT_TRUE(waitFor([this] { return recorder->isSettled(); }));
        recorder->finish();
        return recorder->script().lines().mid(1);
    }
    BrowserPage *page() const { return session->activePage(); }
    bool settle()
    {
        return waitFor([this] { return recorder->isSettled(); });
    }
    /// The window that opened last, once its document is there.
    BrowserPage *newWindow(int count)
    {
        EXPECT_TRUE(waitFor([&] { return session->browser()->pages().size() == count; }));
        BrowserPage *opened = session->browser()->pages().constLast();
        EXPECT_TRUE(waitUntil(opened, u"document.readyState === 'complete'"_s));
        return opened;
    }

    QTemporaryDir folder;
    StaticServer server{folder.path()};
    std::unique_ptr<TestSession> session;
    std::unique_ptr<Recorder> recorder;
    QStringList explanations;
};

using ShopVisit = Recording;

TEST_F(ShopVisit, IsTheScriptThatAPersonExpects)
{
    const StaticServer shop(QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo"));
    record(shop.url(u"index.html"_s));
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
    user.click(u"q('#check')"_s);
    user.click(u"q('#terms')"_s);
    user.click(u"q('#place-order')"_s);
    arrive(u"done.html"_s);
    user.click(u"q('main a.button')"_s);
    arrive(u"index.html"_s);
    user.click(u"q('#search')"_s);
    user.type(u"lamp"_s);

    QString script = (static_cast<void>(statements()), recorder->script().text());
    script.replace(u"127.0.0.1:%1"_s.arg(shop.port()), u"127.0.0.1:PORT"_s);
    compareWithKept(goldenFile, script);
    EXPECT_GE(user.actions(), 60);
}

} // namespace
