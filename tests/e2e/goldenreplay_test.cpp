// Golden recordings, replayed unchanged: the visit to the shop and a session on each page that is made with a
// well-known toolkit. What counts is the state in which the page is left, not what was done on the way.
#include "e2e/commandrun.h"
#include "recording.h"

#include "support/printers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <iostream>

using namespace Ostrel;
using namespace Ostrel::Host;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

const QString sourceFolder = QStringLiteral(PAGEPROBE_SOURCE_DIR);

/// Serves a folder while the thread of the test waits for the command.
class ServingThread : public QThread
{
public:
    explicit ServingThread(const QString &folder) : m_folder(folder)
    {
        start();
        EXPECT_TRUE(waitFor([this] { return m_port != 0; }));
    }
    ~ServingThread() override
    {
        quit();
        wait();
    }
    QString host() const { return u"127.0.0.1:%1"_s.arg(m_port); }

private:
    void run() override
    {
        const StaticServer server(m_folder);
        m_port = server.port();
        exec();
    }

    QString m_folder;
    std::atomic<int> m_port = 0;
};

/// A recording with the comparison that a tester would write behind it. What the last statement has set
/// going may take the page a moment.
QByteArray withComparison(const QString &recording, const QString &state, const QString &expected)
{
    const auto literal = [](const QString &text) {
        const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        return QString::fromUtf8(list.mid(1, list.size() - 2));
    };
    return (recording + uR"js(const state = () => evaluateInPage(%1);
const expected = %2;
for (let left = 100; left > 0 && state() !== expected; --left)
    snooze(0.1);
compare(state(), expected, "the state of the page");
)js"_s.arg(literal(stateText(state)), literal(expected)))
        .toUtf8();
}

/// A run of the command with the page scripts of standard fields.
class Replays
{
public:
    Replays() { m_run.setVariable(u"OSTREL_PREFIX"_s, sourceFolder); }
    ~Replays()
    {
        EXPECT_EQ(m_run.leftProcesses(), QStringList());
        EXPECT_EQ(m_run.leftFiles(), QStringList());
    }

    /// Runs so many copies of a script, two at a time.
    Ended run(const QByteArray &script, int count, const QStringList &options = {})
    {
        for (int i = 1; i <= count; ++i)
            m_run.write(u"replays/%1.js"_s.arg(i, 2, 10, QLatin1Char('0')), script);
        m_run.start(QStringList{u"run"_s, u"replays"_s, u"--jobs"_s, u"2"_s} + options);
        constexpr int limitMs = 100000;
        return m_run.finish(limitMs * count);
    }

private:
    CommandRun m_run;
};

QString times(const QString &output)
{
    static const QRegularExpression line(
        u": passed \\(([0-9.]+) s\\)$"_s, QRegularExpression::MultilineOption);
    QList<double> seconds;
    for (QRegularExpressionMatchIterator found = line.globalMatch(output); found.hasNext();)
        seconds.append(found.next().captured(1).toDouble());
    std::sort(seconds.begin(), seconds.end());
    if (seconds.isEmpty())
        return u"none passed"_s;
    return u"%1 passed, seconds: min %2, median %3, max %4"_s.arg(seconds.size())
        .arg(seconds.first())
        .arg(seconds.at(seconds.size() / 2))
        .arg(seconds.last());
}

// PAGEPROBE_REPLAYS is the number of replays, where two are not enough.
TEST(ShopReplay, LeavesTheShopAsTheUserDid)
{
    const ServingThread shop(sourceFolder + u"/demo"_s);
    // Two at least, since a single script prints no line of its own.
    const int count = qMax(2, qEnvironmentVariableIntValue("PAGEPROBE_REPLAYS"));
    QString recording = kept(recordingFile(u"shop-visit.js"_s));
    recording.replace(u"127.0.0.1:PORT"_s, shop.host());
    recording.replace(u"SOURCES"_s, sourceFolder);

    const Ended ended = Replays().run(
        withComparison(recording, shopState(), kept(recordingFile(u"shop-visit.state.json"_s))), count);

    EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.out);
    EXPECT_EQ(ended.err, QString());
    EXPECT_EQ(ended.out.count(u": passed ("_s), count) << qPrintable(ended.out);
    std::cout << qPrintable(times(ended.out)) << '\n';
}

struct ToolkitRow
{
    const char *name; ///< of the test and of the recording
    QString page;
    void (*visit)(TrustedUser &user);
};

void PrintTo(const ToolkitRow &row, std::ostream *stream)
{
    *stream << row.name;
}

void visitBootstrap(TrustedUser &user)
{
    user.click(u"withText('button', 'New ticket')"_s);
    user.click(u"q('#subject')"_s);
    user.type(u"Lamp is dark"_s);
    user.key(u"Tab"_s);
    user.key(u"ArrowDown"_s);
    user.click(u"q('#create')"_s);
    user.click(u"q('#ticket-rows tr:nth-child(2) button')"_s);
    user.click(u"withText('a', 'Reports')"_s);
    user.click(u"withText('a', 'Monthly')"_s);
    user.click(u"q('#settings-tab')"_s);
    user.click(u"q('#mail')"_s);
    user.type(u"desk@example.org"_s);
    user.click(u"q('#dark')"_s);
    user.click(u"q('#dense')"_s);
    user.click(u"q('#signature')"_s);
    user.type(u"The desk"_s);
    user.click(u"withText('button', 'Save')"_s);
    user.click(u"withText('button', 'How long are tickets kept?')"_s);
    EXPECT_TRUE(waitUntil(user.page(), u"q('#help-2.show') && !q('#help .collapsing')"_s));
    user.click(u"document.forms.search.elements.q"_s);
    user.type(u"chair"_s);
    user.key(u"Enter"_s);
}

void visitJQueryUi(TrustedUser &user)
{
    user.click(u"q('#room')"_s);
    user.type(u"b"_s);
    user.click(u"withText('.ui-autocomplete li', 'Birch')"_s);
    user.click(u"q('#day')"_s);
    user.click(u"withText('#ui-datepicker-div td a', '20')"_s);
    EXPECT_TRUE(waitUntil(user.page(), u"q('#ui-datepicker-div').style.display === 'none'"_s));
    user.click(u"q('.ui-spinner-up')"_s);
    user.click(u"q('.ui-spinner-up')"_s);
    user.click(u"q('#kind-button')"_s);
    user.click(u"withText('#kind-menu li', 'Party')"_s);
    user.click(u"q('label[for=\"coffee\"]')"_s);
    user.click(u"q('#reserve')"_s);
    user.click(u"withText('.ui-dialog button', 'Reserve')"_s);
    user.click(u"withText('#tabs a', 'Wishes')"_s);
    user.clickAt(u"q('#warmth')"_s, 0.75, 0.5);
    user.click(u"withText('#tabs a', 'Rules')"_s);
    user.click(u"withText('#accordion h3', 'Food')"_s);
    user.click(u"withText('#menu div', 'Print')"_s);
    user.click(u"withText('#inline-day td a', '7')"_s);
}

void visitDijit(TrustedUser &user)
{
    user.click(u"q('#surname')"_s);
    user.type(u"Marrow"_s);
    user.click(u"q('#widget_books .dijitUpArrowButton')"_s);
    user.click(u"q('#widget_branch .dijitDownArrowButton')"_s);
    user.click(u"withText('#branch_popup .dijitMenuItem', 'Harbour')"_s);
    user.click(u"q('#language')"_s);
    // The recorder asks for the name of what was pressed, and no hand chooses before it has got it.
    const QDeadlineTimer reading(400);
    EXPECT_TRUE(waitFor([&] { return reading.hasExpired(); }));
    user.click(u"q('#language_menu tr:nth-child(2) .dijitMenuItemLabel')"_s);
    user.click(u"q('#letters')"_s);
    user.click(u"q('#child')"_s);
    user.click(u"q('#notes')"_s);
    user.type(u"Reads at night"_s);
    user.click(u"q('#save_label')"_s);
    user.click(u"q('#lock_label')"_s);
    user.click(u"q('#ask_label')"_s);
    user.click(u"withText('#question .dijitButtonText', 'Delete')"_s);
    EXPECT_TRUE(
        waitUntil(user.page(), u"!dijit.byId('question').open && !withText('.dijitDialogUnderlay', '')"_s));
    user.click(u"withText('.tabLabel', 'Shelves')"_s);
    user.click(u"withText('.dijitTreeLabel', 'Travel')"_s);
    user.click(u"withText('.dijitMenuItem', 'Loans')"_s);
    user.click(u"withText('td.dijitMenuItemLabel', 'Extend')"_s);
    user.click(u"withText('.tabLabel', 'Rules')"_s);
    user.clickAt(u"q('#patience .dijitSliderBarContainerH')"_s, 0.7, 0.5);
}

void visitShoelace(TrustedUser &user)
{
    user.click(u"inShadow('sl-input[name=title]', 'input')"_s);
    user.type(u"Kitchen bed"_s);
    user.click(u"q('sl-select')"_s);
    EXPECT_TRUE(waitUntil(user.page(), u"q('sl-select').open"_s));
    user.click(u"q('sl-option[value=clay]')"_s);
    EXPECT_TRUE(
        waitUntil(user.page(), u"!q('sl-select').open && !inShadow('sl-select', 'sl-popup').active"_s));
    user.click(u"inShadow('sl-textarea', 'textarea')"_s);
    user.type(u"In the shade"_s);
    user.click(u"q('sl-checkbox')"_s);
    user.click(u"q('sl-switch')"_s);
    user.click(u"q('sl-radio[value=full]')"_s);
    user.click(u"withText('sl-button', 'Save')"_s);
    user.click(u"q('sl-tab[panel=plants]')"_s);
    user.click(u"withText('sl-tree-item', 'Beans')"_s);
    user.click(u"q('sl-tab[panel=diary]')"_s);
    user.click(u"inShadow('sl-details[summary=April]', 'summary')"_s);
    user.click(u"q('#more sl-button')"_s);
    EXPECT_TRUE(waitUntil(user.page(), u"q('#more').open"_s));
    user.click(u"q('sl-menu-item[value=delete]')"_s);
    EXPECT_TRUE(waitUntil(user.page(), u"q('#question').open"_s));
    user.click(u"q('#delete')"_s);
}

void visitTabulator(TrustedUser &user)
{
    user.click(u"withText('.tabulator-col-title', 'Amount')"_s);
    user.click(u"q('#find')"_s);
    user.type(u"Nut"_s);
    user.click(u"q('.tabulator-row:nth-child(2) [tabulator-field=id]')"_s);
    user.click(u"q('.tabulator-row:nth-child(4) [tabulator-field=id]')"_s);
    user.click(u"q('#drop')"_s);
    user.click(u"q('.tabulator-row:nth-child(3) [tabulator-field=name]')"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.type(u"Nut of brass"_s);
    user.key(u"Enter"_s);
    user.click(u"q('.tabulator-row:nth-child(3) [tabulator-field=checked]')"_s);
    user.click(u"q('#add')"_s);
    user.click(u"withText('.tabulator-col-title', 'Price')"_s);
}

void visitJsTree(TrustedUser &user)
{
    user.click(u"withText('.jstree-closed', '2024').querySelector('.jstree-ocl')"_s);
    user.click(u"withText('.jstree-anchor', '2023')"_s);
    user.click(u"withText('.jstree-anchor', 'Autumn')"_s);
    user.click(u"q('.jstree-open .jstree-open > .jstree-ocl')"_s);
    user.click(u"q('#new')"_s);
    user.click(u"q('[name=find]')"_s);
    user.type(u"Bills of Winter"_s);
}

const QList<ToolkitRow> toolkitRows{
    {"bootstrap", u"bootstrap.html"_s, visitBootstrap},
    {"jquery_ui", u"jquery-ui.html"_s, visitJQueryUi},
    {"dijit", u"dijit.html"_s, visitDijit},
    {"shoelace", u"shoelace.html"_s, visitShoelace},
    {"tabulator", u"tabulator.html"_s, visitTabulator},
    {"jstree", u"jstree.html"_s, visitJsTree},
};

class ToolkitReplay : public Recording, public testing::WithParamInterface<ToolkitRow>
{
};

TEST_P(ToolkitReplay, LeavesThePageAsTheUserDid)
{
    const ServingThread files(sourceFolder);
    record(u"http://%1/tests/e2e/toolkits/%2"_s.arg(files.host(), GetParam().page));
    ASSERT_TRUE(waitUntil(page(), u"isReady"_s));
    TrustedUser user(page());

    GetParam().visit(user);
    ASSERT_TRUE(settle());
    EXPECT_GE(user.actions(), 5);
    const QString name = QString::fromLatin1(GetParam().name);
    const QString left = settledState(page(), u"pageState()"_s, recordingFile(name + u".state.json"_s));
    recorder->finish();
    QString script = recorder->script().text();
    script.replace(files.host(), u"127.0.0.1:PORT"_s);
    script = withoutHovers(script);
    compareWithKept(recordingFile(name + u".js"_s), script, withoutPlaces);
    compareWithKept(recordingFile(name + u".state.json"_s), left);
    if (HasFailure())
        return;

    script.replace(u"127.0.0.1:PORT"_s, files.host());
    const Ended ended = Replays().run(withComparison(script, u"pageState()"_s, left), 1);

    EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.out);
    EXPECT_EQ(ended.err, QString());
}

INSTANTIATE_TEST_SUITE_P(Pages, ToolkitReplay, testing::ValuesIn(toolkitRows),
    [](const testing::TestParamInfo<ToolkitRow> &row) { return std::string(row.param.name); });

class NamesReplay : public Recording
{
protected:
    Host::RecordedNames *names() override
    {
        serve(u"shop.names"_s,
            "# kept\nthe search\t{visible='true' tagName='INPUT' name='q' type='search' id='search' "
            "form='search-form'}\n");
        auto read = RecordedNames::extending(namesFile);
        EXPECT_FALSE(read.failed()) << qPrintable(read.error);
        m_names = read.value;
        return &m_names;
    }

    const QString namesFile = folder.filePath(u"shop.names"_s);
    RecordedNames m_names;
};

// A person has named one of the objects before; the others get names while they are recorded.
TEST_F(NamesReplay, FindsByTheNamesOfTheRecordingWhatTheUserUsed)
{
    const ServingThread shop(sourceFolder + u"/demo"_s);
    record(u"http://%1/index.html"_s.arg(shop.host()));
    TrustedUser user(page());

    user.click(u"q('#search')"_s);
    user.type(u"mug"_s);
    user.click(u"q('#search-form button')"_s);
    user.click(u"q('#in-stock')"_s);
    user.clickAt(u"q('#wish-pellow-mug')"_s, 0.1, 0.5);
    user.click(u"q('#card-pellow-mug .card-foot button')"_s);
    user.click(u"q('#site-header a[href=\"cart.html\"]')"_s);
    ASSERT_TRUE(waitUntil(page(), u"location.pathname === '/cart.html' && q('#row-1 input')"_s));
    user.click(u"q('#row-1 input')"_s);
    user.key(u"a"_s, TrustedUser::control);
    user.type(u"4"_s);
    user.click(u"q('#enter-voucher')"_s);
    ASSERT_TRUE(waitFor([this] { return page()->openDialog().has_value(); }));
    page()->answerDialog({true, u"QUIET10"_s});
    ASSERT_TRUE(settle());
    const QString state = u"Object.assign(shopState(), { log: null })"_s;
    const QString left = stateOf(page(), state);
    recorder->finish();
    ASSERT_FALSE(m_names.save().failed());
    QString script = withoutHovers(recorder->script().text());
    script.replace(shop.host(), u"127.0.0.1:PORT"_s);
    compareWithKept(recordingFile(u"named-visit.js"_s), script);
    compareWithKept(recordingFile(u"named-visit.names"_s), kept(namesFile).replace(u'\t', u" = "_s));
    compareWithKept(recordingFile(u"named-visit.state.json"_s), left);
    if (HasFailure())
        return;
    script.replace(u"127.0.0.1:PORT"_s, shop.host());

    const Ended ended = Replays().run(withComparison(script, state, left), 1, {u"--names"_s, namesFile});

    EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.out);
    EXPECT_EQ(ended.err, QString());
}

using ControlsReplay = Recording;

// Windows that links open besides the page, addresses, the history: what is left is what each window has
// sent.
TEST_F(ControlsReplay, GoesWhereTheUserWent)
{
    serve(u"a.html"_s,
        "<title>a</title><a id='l' href='b.html'>On</a><script>localStorage.seen = (localStorage.seen || '') "
        "+ 'a'</script>");
    serve(u"b.html"_s,
        "<title>b</title><button id='b' type='button' onclick='localStorage.seen += opener ? \"o\" : "
        "history.length'>Do</button>"
        "<script>localStorage.seen += 'b'</script>");
    const ServingThread files(folder.path());
    const QString a = u"http://%1/a.html"_s.arg(files.host());
    const QString b = u"http://%1/b.html"_s.arg(files.host());
    const QString state = u"({ seen: localStorage.seen, title: document.title })"_s;
    record(a);
    BrowserPage *const first = page();
    TrustedUser user(first);

    user.middleClick(u"q('#l')"_s);
    user.goTo(newWindow(2));
    user.click(u"q('#b')"_s);
    ASSERT_TRUE(settle());
    user.goTo(first);
    user.click(u"q('#l')"_s, TrustedUser::control);
    user.goTo(newWindow(3));
    user.click(u"q('#b')"_s);
    ASSERT_TRUE(settle());
    user.goTo(first);
    user.open(b);
    ASSERT_TRUE(waitUntil(first, u"document.title === 'b'"_s));
    user.click(u"q('#b')"_s);
    ASSERT_TRUE(settle());
    const QDeadlineTimer rest(1200);
    ASSERT_TRUE(waitFor([&] { return rest.hasExpired(); }));
    user.goInHistory(-1);
    ASSERT_TRUE(waitUntil(first, u"document.title === 'a'"_s));
    user.loadAgain();
    ASSERT_TRUE(waitFor([&] { return recorder->script().lines().filter(u"loadUrl"_s).size() == 3; }));
    ASSERT_TRUE(waitUntil(first, u"document.readyState === 'complete'"_s));
    const QString left = stateOf(first, state);
    recorder->finish();
    const QString script = recorder->script().text();
    EXPECT_TRUE(left.contains(u"\"ab1b1b3aa\""_s)) << qPrintable(left);

    const Ended ended = Replays().run(withComparison(script, state, left), 1);

    EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.out);
    EXPECT_EQ(ended.err, QString());
}

} // namespace
