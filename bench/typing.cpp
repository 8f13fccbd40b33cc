#include "benchmarks.h"
#include "contest.h"
#include "host/browser/browser.h"
#include "host/record/recorder.h"
#include "wrappers/web/payload.h"

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

const QString pageAddress = u"data:text/html,<textarea id='t'></textarea>"_s;
constexpr int characters = 1000;

/// Empties the field and gives it the focus.
FunctionCallResult<void> prepare(BrowserPage *page)
{
    const auto ready
        = page->evaluateJavaScript(u"var t = document.querySelector('#t'); t.value = ''; t.focus(); 1"_s, 0);
    if (ready.failed)
        return Failure(ready.result);
    return {};
}

FunctionCallResult<void> expectAll(BrowserPage *page)
{
    const auto typed = page->evaluateJavaScript(u"document.querySelector('#t').value.length"_s, 0);
    if (typed.result != QString::number(characters))
        return Failure(u"The field holds %1 characters"_s.arg(typed.result));
    return {};
}

QList<QJsonObject> strokes()
{
    QList<QJsonObject> events;
    for (int i = 0; i < characters; ++i) {
        const QJsonObject key{{u"key"_s, u"x"_s}, {u"windowsVirtualKeyCode"_s, 88}};
        QJsonObject down = key;
        down.insert("type"_L1, u"keyDown"_s);
        down.insert("text"_L1, u"x"_s);
        QJsonObject up = key;
        up.insert("type"_L1, u"keyUp"_s);
        events << down << up;
    }
    return events;
}

/// All keys at once, so that the browser always has the next one at hand, as scripts type.
FunctionCallResult<void> flood(BrowserPage *page)
{
    QList<QJsonObject> events = strokes();
    const QJsonObject last = events.takeLast();
    for (const QJsonObject &event : events)
        page->connection()->send(page->sessionId(), u"Input.dispatchKeyEvent"_s, event);
    const CommandResult done = page->call(u"Input.dispatchKeyEvent"_s, last);
    return done.failed() ? FunctionCallResult<void>(Failure(done.error)) : FunctionCallResult<void>();
}

/// Each key when the page has dealt with the one before, as most drivers of browsers type.
FunctionCallResult<void> typeOneByOne(BrowserPage *page)
{
    for (const QJsonObject &event : strokes()) {
        if (const CommandResult done = page->call(u"Input.dispatchKeyEvent"_s, event); done.failed())
            return Failure(done.error);
    }
    return {};
}

using Typing = FunctionCallResult<void> (*)(BrowserPage *page);

Turn turn(Typing type, BrowserPage *page)
{
    return [=] {
        return timed([=]() -> FunctionCallResult<void> {
            if (const auto ready = prepare(page); ready.failed())
                return ready;
            if (const auto typed = type(page); typed.failed())
                return typed;
            return expectAll(page);
        });
    };
}

} // namespace

// Two browsers, since everything in a recording session is recorded. Both have the payload.
FunctionCallResult<QList<Row>> measureTyping(const Effort &effort)
{
    const auto session = TestSession::start(SessionOptions());
    if (session.failed())
        return Failure(session.error);
    Recorder recorder(session.value.get());
    if (const auto opened = recorder.start(pageAddress); opened.failed())
        return Failure(opened.error);
    BrowserPage *recorded = session.value->activePage();
    constexpr int loadLimitMs = 20000;
    if (!recorded->waitUntilLoaded(loadLimitMs))
        return Failure(u"The recorded page did not finish loading"_s);

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

    // One turn may well take a fifth longer than the next, which is more than what is measured.
    constexpr int turnsInRound = 2;
    const auto times = medianTimes({turn(flood, recorded), turn(flood, plain.value),
                                       turn(typeOneByOne, recorded), turn(typeOneByOne, plain.value)},
        {effort.typings, turnsInRound});
    if (times.failed())
        return Failure(times.error);
    constexpr double mostSlowdown = 1.1;
    return QList<Row>{Row{u"1,000 keys at once while recording / without"_s, times.value.at(0),
                          times.value.at(1), Row::Bar::Ratio, mostSlowdown},
        Row{u"1,000 keys one by one while recording / without"_s, times.value.at(2), times.value.at(3),
            Row::Bar::Ratio, mostSlowdown}};
}

} // namespace Ostrel::Bench
