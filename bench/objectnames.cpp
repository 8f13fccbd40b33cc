#include "benchmarks.h"
#include "contest.h"
#include "host/script/testsession.h"
#include "pagenumber.h"
#include "playwrightpeer.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobjectdelegate.h"

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;
using namespace WebWrapper;

namespace {

const QString listAddress = QStringLiteral("file://" PAGEPROBE_BENCH_DIR "/pages/list.html?%1");

constexpr int pageLimitMs = 120000;
constexpr int lookedThrough = 10000;
constexpr int few = 5000;
constexpr int many = 20000;
constexpr int growth = many / few;
constexpr int withChildren = 5000;
constexpr int inEntry = 4; ///< elements of the page that belong to one entry of the list

// The names of elements from all over the page, and beside it the least that a unique name takes by the
// rules: one look at each element of the same tag that comes before. Time for each element times the
// elements.
const QString nameFunctions = uR"(
function elementsAllOver(sample) {
    var all = document.querySelectorAll('#list *'), step = Math.max(1, Math.floor(all.length / sample)), some = [], i;
    for (i = 0; i < all.length; i += step + (step % 4 === 0)) {
        some.push(all[i]);
    }
    return some;
}
function timeOf(work, sample) {
    var elements = elementsAllOver(sample), begin = performance.now(), i;
    for (i = 0; i < elements.length; i++) {
        work(elements[i]);
    }
    return (performance.now() - begin) / elements.length * document.querySelectorAll('#list *').length;
}
function bareSearch(element) {
    var text = element.innerText.trim(), visible = element.checkVisibility(),
        equals = document.getElementsByTagName(element.tagName), place = 0, i;
    for (i = 0; equals[i] !== element; i++) {
        place += equals[i].checkVisibility() === visible && equals[i].innerText.trim() === text;
    }
    return place;
}
function timeNames(sample) {
    return timeOf(__ostrel__nameOf, sample);
}
function timeSearches(sample) {
    return timeOf(bareSearch, sample);
})"_s;

/// A page of the host with the list in it.
struct OpenList
{
    std::unique_ptr<TestSession> session;
    BrowserPage *page = nullptr;
};

FunctionCallResult<OpenList> startSession()
{
    FunctionCallResult<std::unique_ptr<TestSession>> session = TestSession::start({});
    if (session.failed())
        return Failure(session.error);
    BrowserPage *page = session.value->activePage();
    page->setDefaultLimit(pageLimitMs);
    return OpenList{std::move(session.value), page};
}

Turn lookUp(Lookup *lookup, const QString &name, bool isThere)
{
    return [lookup, name, isThere] {
        return timed([&]() -> FunctionCallResult<void> {
            const FunctionCallResult<bool> found = lookup->exists(name);
            if (found.failed())
                return Failure(found.error);
            if (found.value != isThere)
                return Failure(u"The name '%1' %2."_s.arg(name, isThere ? u"is missing"_s : u"is there"_s));
            return {};
        });
    };
}

FunctionCallResult<QList<Row>> measureLookups(const Effort &effort, const OpenList &list)
{
    const QString address = listAddress.arg(lookedThrough);
    if (const auto opened = list.page->navigate(address); opened.failed())
        return Failure(opened.error);
    PlaywrightPeer peer;
    if (const auto started = peer.start(); started.failed())
        return Failure(started.error);
    if (const auto opened = peer.ask(u"open %1"_s.arg(address)); opened.failed())
        return Failure(opened.error);
    Lookup *const lookup = list.session->lookup();

    const FunctionCallResult<QList<double>> times = medianTimes(
        {
            lookUp(lookup,
                u"{tagName='BUTTON' simplifiedInnerText='Take article 7' visible='true' "
                "occurrence='20'}"_s,
                true),
            [&] { return peer.ask(u"locate Take_article_7 20"_s); },
            lookUp(lookup, u"{visible='true' tagName='BUTTON' simplifiedInnerText='Take nothing'}"_s, false),
            [&] { return peer.ask(u"locate Take_nothing 0"_s); },
        },
        {effort.rounds});
    if (times.failed())
        return Failure(times.error);
    constexpr double limit = 0.5;
    const QString size = QString::number(lookedThrough);
    return QList<Row>{
        Row{u"lookup among %1 / playwright locators"_s.arg(size), times.value.at(0), times.value.at(1),
            Row::Bar::Ratio, limit},
        Row{u"lookup in vain among %1 / playwright locators"_s.arg(size), times.value.at(2),
            times.value.at(3), Row::Bar::Ratio, limit},
    };
}

/// Opens a list of `elements` in a page, with the functions that measure.
FunctionCallResult<void> prepareNaming(BrowserPage *page, int elements)
{
    if (const auto opened = page->navigate(listAddress.arg(elements)); opened.failed())
        return opened;
    // As while a user records, when what these searches miss is not reported.
    if (const auto defined
        = page->evaluateJavaScript(nameFunctions + u"\nwindow.__ostrel__recording = true;"_s, 0);
        defined.failed)
        return Failure(defined.result);
    return {};
}

// The two sizes take turns as well, each in a tab of its own.
FunctionCallResult<QList<Row>> measureGrowth(const Effort &effort, const OpenList &list)
{
    const FunctionCallResult<BrowserPage *> second = list.session->browser()->openPage();
    if (second.failed())
        return Failure(second.error);
    BrowserPage *large = second.value;
    large->setDefaultLimit(pageLimitMs);
    if (const auto prepared = prepareNaming(list.page, few); prepared.failed())
        return Failure(prepared.error);
    if (const auto prepared = prepareNaming(large, many); prepared.failed())
        return Failure(prepared.error);

    const auto turn = [&](const BrowserPage *page, const QString &function) {
        const QString call = u"%1(%2)"_s.arg(function, QString::number(effort.names));
        return [page, call] { return pageNumber(*page, call); };
    };
    const FunctionCallResult<QList<double>> times
        = medianTimes({turn(list.page, u"timeNames"_s), turn(list.page, u"timeSearches"_s),
                          turn(large, u"timeNames"_s), turn(large, u"timeSearches"_s)},
            {effort.rounds});
    if (times.failed())
        return Failure(times.error);
    if (const auto closed = large->close(); closed.failed())
        return Failure(closed.error);
    const double linearNames = growth * times.value.at(0);
    const double linearSearches = growth * times.value.at(1);
    const double names = times.value.at(2);
    const double searches = times.value.at(3);
    constexpr double limit = 1.25;
    return QList<Row>{
        Row{u"names of 20000 elements / linear from 5000"_s, names, linearNames},
        Row{u"bare searches for equals, the same"_s, searches, linearSearches},
        Row{u"growth of names / of bare searches (factors)"_s, names / linearNames, searches / linearSearches,
            Row::Bar::Ratio, limit},
    };
}

FunctionCallResult<QList<Row>> measureChildren(const Effort &effort, const OpenList &list)
{
    const QString address = listAddress.arg(inEntry * withChildren);
    if (const auto opened = list.page->navigate(address); opened.failed())
        return Failure(opened.error);
    PlaywrightPeer peer;
    if (const auto started = peer.start(); started.failed())
        return Failure(started.error);
    if (const auto opened = peer.ask(u"open %1"_s.arg(address)); opened.failed())
        return Failure(opened.error);
    const FunctionCallResult<HTML_Object *> found
        = htmlObjectFromJavaScriptResult(list.page, u"document.getElementById('list')"_s, {}, 0);
    if (found.failed())
        return Failure(found.error);
    const SharedPtr<Object> parent = wrapObject(found.value);
    const HTMLObjectHierarchyDelegate *hierarchy = HTMLObjectHierarchyDelegate::registered();

    const FunctionCallResult<QList<double>> times
        = medianTimes({
                          [&] {
                              hierarchy->clearChildCache();
                              return timed([&]() -> FunctionCallResult<void> {
                                  if (hierarchy->numChildren(parent) != withChildren)
                                      return Failure(u"There are not %1 children."_s.arg(withChildren));
                                  return {};
                              });
                          },
                          [&] { return peer.ask(u"children %1"_s.arg(withChildren)); },
                      },
            {effort.rounds});
    if (times.failed())
        return Failure(times.error);
    return QList<Row>{Row{
        u"5000 children / playwright handles"_s, times.value.at(0), times.value.at(1), Row::Bar::Ratio, 1.0}};
}

} // namespace

FunctionCallResult<QList<Row>> measureObjectNames(const Effort &effort)
{
    const FunctionCallResult<OpenList> list = startSession();
    if (list.failed())
        return Failure(list.error);
    QList<Row> rows;
    for (const auto measure : {measureLookups, measureGrowth, measureChildren}) {
        const FunctionCallResult<QList<Row>> measured = measure(effort, list.value);
        if (measured.failed())
            return Failure(measured.error);
        rows += measured.value;
    }
    return rows;
}

} // namespace Ostrel::Bench
