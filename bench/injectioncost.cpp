#include "benchmarks.h"
#include "contest.h"
#include "host/browser/browser.h"
#include "host/browser/injection.h"
#include "host/channel/fetchcarrier.h"
#include "host/channel/pagechannel.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/wrapperconfig.h"

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

const QString pageAddress = QStringLiteral("file://" PAGEPROBE_BENCH_DIR "/pages/empty.html");

} // namespace

// One tab does both, so that nothing but the injection differs; its channel is there all the time.
FunctionCallResult<QList<Row>> measureInjection(const Effort &effort)
{
    PageChannel channel;
    const FunctionCallResult<std::unique_ptr<Browser>> browser = Browser::start({});
    if (browser.failed())
        return Failure(browser.error);
    const FunctionCallResult<BrowserPage *> opened = browser.value->openPage();
    if (opened.failed())
        return Failure(opened.error);
    BrowserPage *page = opened.value;

    WebWrapper::MemoryBasedConfig config;
    const ChannelAddress address = FetchCarrier::makeAddress();
    const FetchCarrier carrier(page, &channel, address);
    const PageFacts facts{browser.value->majorVersion(), address.portText()};
    const Injection injection{WebWrapper::getOstrelJsNamespaceInitCode(), pageVariables(config, facts),
        WebWrapper::getJSCode(config)};
    const auto load = [&](const Injection &injected) {
        return [page, injected]() -> FunctionCallResult<double> {
            // Before the clock starts, the page has answered: what is injected is in force.
            if (const auto set = page->setInjection(injected, false); set.failed())
                return Failure(set.error);
            if (const CommandResult settled = page->call(u"Page.getFrameTree"_s); settled.failed())
                return Failure(settled.error);
            return timed([page] { return page->navigate(pageAddress); });
        };
    };
    const FunctionCallResult<QList<double>> times = medianTimes({load(injection), load({})}, {effort.loads});
    if (times.failed())
        return Failure(times.error);

    constexpr double limitMs = 30;
    return QList<Row>{Row{u"load with injection / load of an empty page"_s, times.value.at(0),
        times.value.at(1), Row::Bar::Difference, limitMs}};
}

} // namespace Ostrel::Bench
