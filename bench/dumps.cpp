#include "benchmarks.h"
#include "contest.h"
#include "host/dump/pagedump.h"
#include "host/script/testsession.h"
#include "playwrightpeer.h"

#include <malloc.h>

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

constexpr int growth = 4;
constexpr int longestMs = 10 * 60 * 1000;

QString addressOf(int elements)
{
    // The number also stands in the query, so that another one is another page.
    return QStringLiteral("file://" PAGEPROBE_BENCH_DIR "/pages/many.html?%1#%1").arg(elements);
}

int countOf(const UIAbstraction::UIElement &root)
{
    int count = 1;
    for (const auto &child : root.children())
        count += countOf(*child);
    return count;
}

/// Opens a page and waits until it is drawn, which takes a large one longer than to load.
FunctionCallResult<void> show(BrowserPage *page, const QString &address)
{
    if (const auto opened = page->navigate(address); opened.failed())
        return opened;
    // The browser has no picture of the window before that.
    const CommandResult drawn = page->call(u"Page.captureScreenshot"_s, {{u"format"_s, u"jpeg"_s}});
    return drawn.failed() ? FunctionCallResult<void>(Failure(drawn.error)) : FunctionCallResult<void>();
}

FunctionCallResult<void> dump(BrowserPage *page, int elements, bool screenshots)
{
    PageDumpOptions options;
    options.screenshots = screenshots;
    const FunctionCallResult<PageDump> taken = dumpPage(page, {}, options);
    if (taken.failed())
        return Failure(taken.error);
    if (countOf(*taken.value.root) < elements)
        return Failure(u"The dump has %1 objects only"_s.arg(countOf(*taken.value.root)));
    return {};
}

} // namespace

FunctionCallResult<QList<Row>> measureDumps(const Effort &effort)
{
    ResultSink nobody;
    SessionOptions options;
    options.browser.evaluationLimitMs = longestMs;
    std::unique_ptr<TestSession> session;
    // There is one session at a time. What one before has left in memory is of no use to the next.
    const auto begin = [&]() -> FunctionCallResult<void> {
        session.reset();
        malloc_trim(0);
        auto started = TestSession::start(options, nobody);
        if (started.failed())
            return Failure(started.error);
        session = std::move(started.value);
        return {};
    };
    PlaywrightPeer peer;
    if (const auto started = peer.start(); started.failed())
        return Failure(started.error);
    const auto openInPeer = [&](int elements) -> FunctionCallResult<void> {
        const auto opened = peer.ask(u"page %1"_s.arg(addressOf(elements)));
        return opened.failed() ? FunctionCallResult<void>(Failure(opened.error)) : FunctionCallResult<void>();
    };
    // The time of a dump of a page of that size in a browser of its own, as the command dumps. The page is
    // drawn before, as the one of the peer has been since its first round.
    const auto dumpTurn = [&](int elements) -> Turn {
        return [&, elements]() -> FunctionCallResult<double> {
            if (const auto begun = begin(); begun.failed())
                return Failure(begun.error);
            if (const auto shown = show(session->activePage(), addressOf(elements)); shown.failed())
                return Failure(shown.error);
            return timed([&] { return dump(session->activePage(), elements, false); });
        };
    };
    const int few = effort.dumpedElements;
    const int many = growth * few;
    if (const auto opened = openInPeer(few); opened.failed())
        return Failure(opened.error);
    const auto sizes
        = medianTimes({dumpTurn(few), [&] { return peer.ask(u"properties %1"_s.arg(few)); }, dumpTurn(many)},
            {effort.dumps});
    if (sizes.failed())
        return Failure(sizes.error);

    // Some elements of the page are hidden: ours takes pictures of a few more than the other one.
    const int pictured = effort.screenshots;
    const int elements = pictured * 4 / 3;
    if (const auto opened = openInPeer(elements); opened.failed())
        return Failure(opened.error);
    if (const auto begun = begin(); begun.failed())
        return Failure(begun.error);
    BrowserPage *page = session->activePage();
    if (const auto shown = show(page, addressOf(elements)); shown.failed())
        return Failure(shown.error);
    const auto pictures = medianTimes({[&] { return timed([&] { return dump(page, pictured, true); }); },
                                          [&] { return peer.ask(u"screenshots %1"_s.arg(pictured)); }},
        {effort.dumps});
    if (pictures.failed())
        return Failure(pictures.error);

    constexpr double growthLimit = 4.5;
    constexpr double pictureLimit = 0.2;
    const QString dumpOf = u"dump of %1 elements / "_s;
    return QList<Row>{
        {dumpOf.arg(few) + u"playwright evaluate"_s, sizes.value.at(0), sizes.value.at(1), Row::Bar::Ratio,
            1.0},
        {dumpOf.arg(many) + u"of %1"_s.arg(few), sizes.value.at(2), sizes.value.at(0), Row::Bar::Ratio,
            growthLimit},
        {u"screenshots of %1 elements / playwright"_s.arg(pictured), pictures.value.at(0),
            pictures.value.at(1), Row::Bar::Ratio, pictureLimit},
    };
}

} // namespace Ostrel::Bench
