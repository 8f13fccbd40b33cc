#include "benchmarks.h"
#include "contest.h"
#include "host/browser/browser.h"
#include "host/record/recorder.h"
#include "wrappers/web/payload.h"

#include <QEventLoop>

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

const QString pageAddress = u"data:text/html,<textarea id='t'></textarea>"_s;
constexpr int characters = 1000;

/// Types into an empty field at full speed until the page has taken the last character.
FunctionCallResult<void> type(BrowserPage *page)
{
    const auto ready
        = page->evaluateJavaScript(u"var t = document.querySelector('#t'); t.value = ''; t.focus(); 1"_s, 0);
    if (ready.failed)
        return Failure(ready.result);
    int waiting = 2 * characters;
    QEventLoop loop;
    for (int i = 0; i < characters; ++i) {
        for (const QString &kind : {u"keyDown"_s, u"keyUp"_s}) {
            QJsonObject event{{u"type"_s, kind}, {u"key"_s, u"x"_s}, {u"windowsVirtualKeyCode"_s, 88}};
            if (kind == "keyDown"_L1)
                event.insert("text"_L1, u"x"_s);
            page->connection()->send(
                page->sessionId(), u"Input.dispatchKeyEvent"_s, event, [&](const CommandResult &) {
                    if (--waiting == 0)
                        loop.quit();
                });
        }
    }
    loop.exec();
    const auto typed = page->evaluateJavaScript(u"document.querySelector('#t').value.length"_s, 0);
    if (typed.result != QString::number(characters))
        return Failure(u"The field holds %1 characters"_s.arg(typed.result));
    return {};
}

} // namespace

// Two browsers, since everything in a recording session is recorded. Both have the payload.
FunctionCallResult<QList<Row>> measureTyping(const Effort &effort)
{
    const auto session = TestSession::start(SessionOptions());
    if (session.failed())
        return Failure(session.error);
    Recorder recorder(session.value.get());
    if (const auto opened = recorder.start(u"about:blank"_s); opened.failed())
        return Failure(opened.error);
    BrowserPage *recorded = session.value->activePage();
    if (const auto opened = recorded->navigate(pageAddress); opened.failed())
        return Failure(opened.error);

    const auto browser = Browser::start({});
    if (browser.failed())
        return Failure(browser.error);
    const FunctionCallResult<BrowserPage *> plain = browser.value->openPage();
    if (plain.failed())
        return Failure(plain.error);
    const WebWrapper::MemoryBasedConfig config;
    const Injection injection{WebWrapper::getOstrelJsNamespaceInitCode(),
        pageVariables(config, {browser.value->majorVersion(), u"1"_s}), WebWrapper::getJSCode(config)};
    if (const auto set = plain.value->setInjection(injection, false); set.failed())
        return Failure(set.error);
    if (const auto opened = plain.value->navigate(pageAddress); opened.failed())
        return Failure(opened.error);

    const auto times = medianTimes({[&] { return timed([&] { return type(recorded); }); },
                                       [&] { return timed([&] { return type(plain.value); }); }},
        {effort.typings});
    if (times.failed())
        return Failure(times.error);
    constexpr double mostSlowdown = 1.1;
    return QList<Row>{Row{u"1,000 keys while recording / the same without"_s, times.value.at(0),
        times.value.at(1), Row::Bar::Ratio, mostSlowdown}};
}

} // namespace Ostrel::Bench
