// The payload in a real browser: runs the pairs of this folder. Each file is one test; a group of cases has a
// fresh page with the payload in it.
//
// One file alone: page_test --gtest_filter='*/visibility'
#include "host/browser/browser.h"
#include "host/staticserver.h"
#include "page/pagepairs.h"
#include "support/printqt.h"
#include "support/scopedvariable.h"
#include "support/waitfor.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/wrapperconfig.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace Ostrel::Test {

using namespace Host;
using namespace WebWrapper;

namespace {

const QString pagesFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/page/");
const QString extensionsFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR "/lib/extensions/web/");

constexpr int testedMajorVersion = 120;

// Where the pairs expect something else than a host sets for a fresh configuration.
const QList<PageVariable> testDefaults{
    {u"window.__ostrel__os"_s, u"Linux"_s},
    {u"window.__ostrel__namegen__scheme"_s, u"hierarchical"_s},
};

// The pairs find elements by this short name.
const QString shortName = u"\nwindow.$ = function (id) { return document.getElementById(id); };"_s;

QString jsonText(const QJsonValue &value)
{
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.sliced(1, text.size() - 2));
}

// Nobody is there to answer: a page that asks is told no, but for the question whether it may be left.
class DismissingPolicy : public DialogPolicy
{
public:
    std::optional<DialogAnswer> opened(const Dialog &dialog) override
    {
        return DialogAnswer{dialog.kind == DialogKind::BeforeUnload, {}};
    }
};

// What an expression did, as far as it can be said with JSON; undefined counts as null.
struct Outcome
{
    bool threw = false;
    QString error;
    QJsonValue value;
};

QString describe(const Outcome &outcome)
{
    return outcome.threw ? u"an exception: %1"_s.arg(outcome.error) : jsonText(outcome.value);
}

QString describe(const PageCase &pageCase)
{
    switch (pageCase.demand) {
    case Demand::Expect:
        return jsonText(pageCase.wanted);
    case Demand::Eventually:
        return u"in the end %1"_s.arg(jsonText(pageCase.wanted));
    case Demand::Throws:
        return u"an exception that holds: %1"_s.arg(pageCase.wanted.toString());
    }
    Q_UNREACHABLE();
}

bool fulfils(const Outcome &outcome, const PageCase &pageCase)
{
    if (pageCase.demand == Demand::Throws)
        return outcome.threw && outcome.error.contains(pageCase.wanted.toString());
    return !outcome.threw && outcome.value == pageCase.wanted;
}

Outcome evaluate(const BrowserPage &page, const QString &expression)
{
    const auto evaluated
        = page.evaluateJavaScript(u"JSON.stringify({ result: (%1\n) })"_s.arg(expression), 0);
    if (evaluated.failed || evaluated.threw)
        return {true, evaluated.result, {}};
    const QJsonDocument answer = QJsonDocument::fromJson(evaluated.result.toUtf8());
    if (!answer.isObject())
        return {true, u"The answer is no JSON: %1"_s.arg(evaluated.result), {}};
    const QJsonValue value = answer.object().value("result"_L1);
    return {false, {}, value.isUndefined() ? QJsonValue(QJsonValue::Null) : value};
}

// The payload as the library gives it to an installation that has these extension scripts and no others.
QString payloadWith(const QStringList &extensions)
{
    static QMap<QStringList, QString> known;
    QString &payload = known[extensions];
    if (payload.isEmpty()) {
        const QTemporaryDir installation;
        const QString folder = installation.filePath(u"lib/extensions/web"_s);
        EXPECT_TRUE(QDir().mkpath(folder));
        for (const QString &name : extensions)
            EXPECT_TRUE(QFile::copy(extensionsFolder + name, folder + u'/' + name)) << name.toStdString();
        const ScopedVariable prefix("OSTREL_PREFIX", installation.path());
        payload = getJSCode(MemoryBasedConfig());
    }
    return payload;
}

// One browser for all tests of this process; each test leaves it without a tab of its own.
class BrowserEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        BrowserOptions options;
        options.windowSize = {1280, 720};
        // Texts of the browser itself, such as those of its form checks, are wanted in one language, and
        // sizes without what a scroll bar takes.
        options.extraArguments = {u"--lang=en"_s, u"--hide-scrollbars"_s};
        auto started = Browser::start(options);
        ASSERT_FALSE(started.failed()) << started.error.toStdString();
        browser = std::move(started.value);
    }
    void TearDown() override { browser.reset(); }

    static std::unique_ptr<Browser> browser;
};

std::unique_ptr<Browser> BrowserEnvironment::browser;

[[maybe_unused]] const ::testing::Environment *const browserEnvironment
    = ::testing::AddGlobalTestEnvironment(new BrowserEnvironment);

class PageTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(BrowserEnvironment::browser); }

    // Pages are closed in the end with all windows that they have opened.
    void TearDown() override { closePages(); }

    BrowserPage *openPage(const PageGroup &group)
    {
        auto opened = BrowserEnvironment::browser->openPage();
        EXPECT_EQ(opened.error, QString());
        if (opened.failed())
            return nullptr;
        BrowserPage *page = opened.value;
        m_pageErrors.clear();
        page->connection()->listen(
            page->sessionId(), u"Runtime.exceptionThrown"_s, page, [this](const QJsonObject &event) {
                const QJsonObject details = event.value("exceptionDetails"_L1).toObject();
                m_pageErrors.append(
                    details.value("exception"_L1).toObject().value("description"_L1).toString());
            });
        page->connection()->send(page->sessionId(), u"Runtime.enable"_s);
        page->setDialogPolicy(std::make_shared<DismissingPolicy>());
        EXPECT_EQ(page->setInjection(injectionFor(group), false).error, QString());
        const auto navigated = page->navigate(m_server.url(group.page));
        EXPECT_EQ(navigated.error, QString());
        return navigated.failed() ? nullptr : page;
    }

    static void closePages()
    {
        const QList<BrowserPage *> pages = BrowserEnvironment::browser->pages();
        for (BrowserPage *page : pages) {
            if (page->isPageAvailable()) {
                EXPECT_EQ(page->close().error, QString());
            }
        }
    }

    void runGroup(const PageGroup &group)
    {
        SCOPED_TRACE(group.page.toStdString());
        const BrowserPage *page = openPage(group);
        if (!page)
            return;
        const auto setUp = page->evaluateJavaScript(group.setup, 0);
        EXPECT_FALSE(setUp.failed || setUp.threw)
            << "setup: " << group.setup.toStdString() << "\n  got: " << setUp.result.toStdString();
        for (const PageCase &pageCase : group.cases)
            runCase(*page, pageCase);
        closePages();
    }

private:
    Injection injectionFor(const PageGroup &group) const
    {
        const PageFacts facts{testedMajorVersion, QString::number(m_server.port())};
        Injection injection{getOstrelJsNamespaceInitCode(), pageVariables(MemoryBasedConfig(), facts),
            payloadWith(group.extensions) + shortName};
        for (const PageVariable &variable : testDefaults + group.variables)
            injection.setVariable(variable.name, variable.value);
        return injection;
    }

    void runCase(const BrowserPage &page, const PageCase &pageCase) const
    {
        Outcome outcome;
        const auto holds = [&] {
            outcome = evaluate(page, pageCase.run);
            return fulfils(outcome, pageCase);
        };
        if (pageCase.demand == Demand::Eventually ? waitFor(holds) : holds())
            return;
        QString report = u"%1\n   run: %2\n  want: %3\n   got: %4"_s.arg(
            pageCase.name, pageCase.run, describe(pageCase), describe(outcome));
        if (!m_pageErrors.isEmpty())
            report += u"\nin the page: "_s + m_pageErrors.join(u"\n             "_s);
        ADD_FAILURE() << report.toStdString();
    }

    StaticServer m_server{pagesFolder};
    QStringList m_pageErrors; ///< exceptions that nobody caught, in the page of the group
};

// The files' names are the tests' names.
class PagePairs : public PageTest, public ::testing::WithParamInterface<QString>
{
};

TEST_P(PagePairs, Hold)
{
    const PageFile file = readPageFile(pagesFolder + GetParam() + u".json"_s);
    ASSERT_EQ(file.error, QString());

    for (const PageGroup &group : file.groups)
        runGroup(group);
}

QStringList pairNames()
{
    QStringList names = QDir(pagesFolder).entryList({u"*.json"_s}, QDir::Files, QDir::Name);
    names.replaceInStrings(u".json"_s, QString());
    return names;
}

std::string testName(const ::testing::TestParamInfo<QString> &parameter)
{
    return QString(parameter.param).replace(u'-', u'_').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Files, PagePairs, ::testing::ValuesIn(pairNames()), testName);

TEST_F(PageTest, EvaluatingThePayloadAgainForgetsReferencesButNotWhatNativeCodeKeeps)
{
    PageGroup group;
    group.page = u"blank.html"_s;
    BrowserPage *page = openPage(group);
    ASSERT_TRUE(page);
    ASSERT_EQ(describe(evaluate(*page, uR"((function () {
        __ostrel__typeOf__hooks.push({});
        window.__ostrel__object__C0 = document.body;
        window.top.__ostrel.addGlassPaneId('pane');
        return [__ostrel__idForObject(document.body), __ostrel__idForObject(document)];
    }()))"_s)),
        uR"(["top.__ostrel__globalObjectRefStore[0]","top.__ostrel__globalObjectRefStore[1]"])"_s);

    const auto again = page->evaluateJavaScript(
        getOstrelJsNamespaceInitCode() + u'\n' + payloadWith({}) + u"\n'evaluated'"_s, 0);

    ASSERT_EQ(again.result, u"evaluated"_s);
    EXPECT_EQ(describe(evaluate(*page, u"top.__ostrel__globalObjectRefStore"_s)), u"[]"_s);
    EXPECT_EQ(describe(evaluate(*page, u"__ostrel__typeOf__hooks.length"_s)), u"0"_s);
    EXPECT_EQ(describe(evaluate(*page, u"window.__ostrel__object__C0 === document.body"_s)), u"true"_s);
    EXPECT_EQ(describe(evaluate(*page, u"window.top.__ostrel.glassPaneIds"_s)), u"[\"pane\"]"_s);
    EXPECT_EQ(describe(evaluate(*page, u"__ostrel__idForObject(document)"_s)),
        u"\"top.__ostrel__globalObjectRefStore[0]\""_s);
}

// A file with a typing mistake must not pass for one with fewer cases.
struct BadFile
{
    const char *name;
    QByteArray text;
    QString error;
};

TEST(PageFiles, MistakesAreErrors)
{
    const BadFile rows[] = {
        {"no JSON", "{", u"unterminated object at character 1"_s},
        {"no cases", "{}", u"a group has no cases"_s},
        {"an unknown member of a group", R"({"pages": "a.html", "cases": []})",
            u"the member 'pages' is not known"_s},
        {"a case without a name", R"({"cases": [{"run": "1", "expect": 1}]})",
            u"a case needs a name and something to run"_s},
        {"a case that demands nothing", R"({"cases": [{"name": "n", "run": "1"}]})",
            u"'n' needs exactly one of expect, eventually and throws"_s},
        {"a case that demands two things",
            R"({"cases": [{"name": "n", "run": "1", "expect": 1, "throws": ""}]})",
            u"'n' needs exactly one of expect, eventually and throws"_s},
        {"an unknown member of a case",
            R"({"cases": [{"name": "n", "run": "1", "expect": 1, "expects": 2}]})",
            u"'n': the member 'expects' is not known"_s},
    };
    for (const BadFile &row : rows) {
        SCOPED_TRACE(row.name);
        QTemporaryDir folder;
        QFile file(folder.filePath(u"pairs.json"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.text);
        file.close();

        EXPECT_EQ(readPageFile(file.fileName()).error, row.error);
    }
    EXPECT_NE(readPageFile(u"/no/such/file.json"_s).error, QString());
}

} // namespace
} // namespace Ostrel::Test
