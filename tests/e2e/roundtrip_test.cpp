// The round trip: each element of the demo shop and of pages that are made with well-known toolkits gets its
// name, and the name leads back to the same element.
#include "host/script/testsession.h"
#include "support/printqt.h"
#include "support/waitfor.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webutilities.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <iostream>

using namespace Qt::StringLiterals;
using Ostrel::Test::waitFor;

namespace Ostrel::Host {
namespace {

using namespace WebWrapper;

struct PageRow
{
    const char *name; ///< in the table and of the test
    QString address; ///< below the root of the repository
    QString isReady; ///< expression that is true when the page has built what it shows
    QString prepare = {}; ///< script that runs, before the page is loaded again, where it needs more to show
};

const QString fillCart = uR"(
    Shop.addToCart({ id: 'skerry-basket', quantity: 2 });
    Shop.addToCart({ id: 'skerry-basket', size: 'Large' });
    Shop.addToCart({ id: 'orrin-lamp', wrapping: 'paper' });
    location.href)"_s;

void PrintTo(const PageRow &row, std::ostream *stream)
{
    *stream << row.name;
}

const QList<PageRow> pageRows{
    {"shop_index", u"demo/index.html"_s,
        u"document.getElementById('more').getAttribute('aria-busy') === 'false'"_s},
    {"shop_product", u"demo/product.html?id=hinkle-clock"_s, u"true"_s},
    {"shop_popup", u"demo/popup.html"_s, u"true"_s},
    {"shop_cart", u"demo/cart.html"_s, u"true"_s, fillCart},
    {"shop_checkout", u"demo/checkout.html"_s, u"true"_s},
    {"shop_done", u"demo/done.html"_s, u"true"_s},
    {"shop_wishlist", u"demo/wishlist.html"_s, u"true"_s},
    {"shop_help", u"demo/help.html"_s, u"document.getElementById('talk') !== null"_s},
    {"bootstrap", u"tests/e2e/toolkits/bootstrap.html"_s, u"isReady"_s},
    {"jquery_ui", u"tests/e2e/toolkits/jquery-ui.html"_s, u"isReady"_s},
    {"dijit", u"tests/e2e/toolkits/dijit.html"_s, u"isReady"_s},
    {"shoelace", u"tests/e2e/toolkits/shoelace.html"_s, u"isReady"_s},
    {"tabulator", u"tests/e2e/toolkits/tabulator.html"_s, u"isReady"_s},
    {"jstree", u"tests/e2e/toolkits/jstree.html"_s, u"isReady"_s},
};

struct NamedElement
{
    QString reference;
    QString name;
};

// What came of the names of one page.
struct Tally
{
    int elements = 0;
    int foundAgain = 0;
    QMap<QString, int> byDesign; ///< elements that share their name with another one, by the rule behind it
    QStringList lost;

    int rest() const
    {
        int ruled = 0;
        for (const int count : byDesign)
            ruled += count;
        return elements - ruled;
    }
};

class OneName : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        SessionOptions options;
        options.browser.windowSize = {1280, 900};
        auto started = TestSession::start(options);
        ASSERT_EQ(started.error, QString());
        session = std::move(started.value);
    }
    static void TearDownTestSuite()
    {
        session.reset();
        if (!tallies.isEmpty())
            printTable();
    }

    void SetUp() override
    {
        ASSERT_TRUE(session);
        page = session->activePage();
        ASSERT_TRUE(page);
        constexpr int limitMs = 120000;
        page->setDefaultLimit(limitMs);
    }

    QString evaluate(const QString &script) const
    {
        const auto evaluated = page->evaluateJavaScript(script, 0);
        EXPECT_FALSE(evaluated.failed || evaluated.threw)
            << script.toStdString() << "\n  gave " << evaluated.result.toStdString();
        return evaluated.result;
    }

    void open(const PageRow &row)
    {
        const QString address = server.url(row.address);
        ASSERT_EQ(page->navigate(address).error, QString());
        if (!row.prepare.isEmpty()) {
            evaluate(row.prepare);
            ASSERT_EQ(page->navigate(address).error, QString());
        }
        QFile rules(QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/e2e/roundtrip.js"));
        ASSERT_TRUE(rules.open(QIODevice::ReadOnly));
        evaluate(QString::fromUtf8(rules.readAll()));
        ASSERT_TRUE(waitFor(
            [&] { return evaluate(u"roundTrip.hasLoaded() && (%1)"_s.arg(row.isReady)) == u"true"_s; }));
    }

    QList<NamedElement> nameAll() const
    {
        QList<NamedElement> elements;
        const QJsonArray records = QJsonDocument::fromJson(evaluate(u"roundTrip.names()"_s).toUtf8()).array();
        for (const QJsonValue &record : records)
            elements.append({record["reference"_L1].toString(), unescape(record["name"_L1].toString())});
        return elements;
    }

    // The reference of what the name leads to, from where all names start; empty when it leads nowhere.
    QString lookUp(const QString &name) const
    {
        // A lookup leaves the search window where it found the object. That may be a frame.
        const auto moved = session->lookup()->waitForContext(contextFile(page->address()));
        EXPECT_EQ(moved.error, QString());
        const FunctionCallResult<SharedPtr<Object>> found = session->lookup()->find(name);
        return found.failed() ? QString() : retrieveObject(found.value)->jsReference();
    }

    Tally takeRoundTrip()
    {
        Tally tally;
        for (const NamedElement &element : nameAll()) {
            ++tally.elements;
            const QString found = lookUp(element.name);
            if (found == element.reference) {
                ++tally.foundAgain;
                continue;
            }
            const QString rule = evaluate(
                u"roundTrip.rule(%1, %2)"_s.arg(element.reference, found.isEmpty() ? u"null"_s : found));
            if (rule.isEmpty())
                tally.lost.append(element.name);
            else
                ++tally.byDesign[rule];
        }
        return tally;
    }

    static void printTable();

    static std::unique_ptr<TestSession> session;
    static QMap<QString, Tally> tallies;
    StaticServer server{QStringLiteral(PAGEPROBE_SOURCE_DIR)};
    BrowserPage *page = nullptr;
};

std::unique_ptr<TestSession> OneName::session;
QMap<QString, Tally> OneName::tallies;

void OneName::printTable()
{
    std::cout << "page            elements  found again  by design  rate of the rest\n";
    for (auto row = tallies.constBegin(); row != tallies.constEnd(); ++row) {
        const Tally &tally = row.value();
        const int rest = tally.rest();
        const QString line = row.key().leftJustified(16) + QString::number(tally.elements).rightJustified(8)
            + QString::number(tally.foundAgain).rightJustified(13)
            + QString::number(tally.elements - rest).rightJustified(11)
            + QString::number(100.0 * tally.foundAgain / rest, 'f', 2).rightJustified(16) + u" %"_s;
        std::cout << line.toStdString() << '\n';
        for (auto rule = tally.byDesign.constBegin(); rule != tally.byDesign.constEnd(); ++rule) {
            std::cout << "                " << QString::number(rule.value()).rightJustified(32).toStdString()
                      << "  " << rule.key().toStdString() << '\n';
        }
    }
}

class RoundTrip : public OneName, public ::testing::WithParamInterface<PageRow>
{
};

TEST_P(RoundTrip, EachNameLeadsBackToItsElement)
{
    open(GetParam());

    const Tally tally = takeRoundTrip();

    tallies.insert(QString::fromLatin1(GetParam().name), tally);
    EXPECT_GT(tally.elements, 20);
    if (GetParam().address.contains("/toolkits/"_L1)) {
        EXPECT_EQ(evaluate(u"typeof JSON.stringify(pageState())"_s), u"string"_s);
    }
    EXPECT_EQ(tally.lost, QStringList());
    EXPECT_EQ(tally.foundAgain, tally.rest());
}

TEST_F(OneName, EachRuleThatMakesTwoElementsOneNameIsMet)
{
    open({"", u"tests/e2e/pages/one-name.html"_s, u"true"_s});

    const Tally tally = takeRoundTrip();

    EXPECT_EQ(tally.lost, QStringList());
    EXPECT_EQ(tally.foundAgain, tally.rest());
    const QMap<QString, int> expected{
        {u"inside a link"_s, 2},
        {u"equal in its shadow tree"_s, 1},
        {u"equal below its host"_s, 1},
        {u"equal in its frame and outside"_s, 1},
        {u"in a later form of one name"_s, 2},
    };
    EXPECT_EQ(tally.byDesign, expected);
}

std::string rowName(const ::testing::TestParamInfo<PageRow> &row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Pages, RoundTrip, ::testing::ValuesIn(pageRows), rowName);

} // namespace
} // namespace Ostrel::Host
