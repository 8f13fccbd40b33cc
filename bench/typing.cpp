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

/// Two browsers, since everything in a recording session is recorded. Both have the payload.
class Browsers
{
public:
    /// Starts both anew, in the other order than before, and types into both once: what a browser does slowly
    /// at first is not measured.
    FunctionCallResult<void> start();

    BrowserPage *recorded() const { return m_session->activePage(); }
    BrowserPage *plain() const { return m_plainPage; }

private:
    FunctionCallResult<void> startRecorded();
    FunctionCallResult<void> startPlain();

    bool m_isPlainFirst = false;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<Browser> m_plain;
    BrowserPage *m_plainPage = nullptr;
};

FunctionCallResult<void> Browsers::start()
{
    m_recorder.reset();
    m_session.reset();
    m_plain.reset();
    m_isPlainFirst = !m_isPlainFirst;
    if (const auto started = m_isPlainFirst ? startPlain() : startRecorded(); started.failed())
        return started;
    if (const auto started = m_isPlainFirst ? startRecorded() : startPlain(); started.failed())
        return started;
    for (BrowserPage *page : {recorded(), plain()}) {
        if (const auto ready = prepare(page); ready.failed())
            return ready;
        if (const auto typed = flood(page); typed.failed())
            return typed;
    }
    return {};
}

FunctionCallResult<void> Browsers::startRecorded()
{
    auto session = TestSession::start(SessionOptions());
    if (session.failed())
        return Failure(session.error);
    m_session = std::move(session.value);
    m_recorder = std::make_unique<Recorder>(m_session.get());
    if (const auto opened = m_recorder->start(pageAddress); opened.failed())
        return Failure(opened.error);
    constexpr int loadLimitMs = 20000;
    if (!recorded()->waitUntilLoaded(loadLimitMs))
        return Failure(u"The recorded page did not finish loading"_s);
    return {};
}

FunctionCallResult<void> Browsers::startPlain()
{
    auto browser = Browser::start({});
    if (browser.failed())
        return Failure(browser.error);
    m_plain = std::move(browser.value);
    const FunctionCallResult<BrowserPage *> page = m_plain->openPage();
    if (page.failed())
        return Failure(page.error);
    m_plainPage = page.value;
    const WebWrapper::MemoryBasedConfig config;
    const Injection injection{WebWrapper::getOstrelJsNamespaceInitCode(),
        pageVariables(config, {m_plain->majorVersion(), u"1"_s}), WebWrapper::getJSCode(config)};
    if (const auto set = m_plainPage->setInjection(injection, false); set.failed())
        return Failure(set.error);
    return m_plainPage->navigate(pageAddress);
}

} // namespace

FunctionCallResult<QList<Row>> measureTyping(const Effort &effort)
{
    Browsers browsers;
    const auto turn = [&browsers](Typing type, BrowserPage *(Browsers::*pageOf)() const) -> Turn {
        return [&browsers, type, pageOf] {
            return timed([&]() -> FunctionCallResult<void> {
                BrowserPage *page = (browsers.*pageOf)();
                if (const auto ready = prepare(page); ready.failed())
                    return ready;
                if (const auto typed = type(page); typed.failed())
                    return typed;
                return expectAll(page);
            });
        };
    };
    // A browser may be a tenth slower than the next one as long as it lives, and a turn a fifth slower than
    // the next turn, which is more than what is measured: each round has other browsers and several turns.
    const auto compare = [&](const QString &what, Typing type, int turns) -> FunctionCallResult<Row> {
        const auto times = medianTimes({turn(type, &Browsers::recorded), turn(type, &Browsers::plain)},
            {effort.typings, turns, [&browsers] { return browsers.start(); }});
        if (times.failed())
            return Failure(times.error);
        constexpr double mostSlowdown = 1.1;
        return Row{what + u" while recording / without"_s, times.value.at(0), times.value.at(1),
            Row::Bar::Ratio, mostSlowdown};
    };
    const auto atOnce = compare(u"1,000 keys at once"_s, flood, 8);
    if (atOnce.failed())
        return Failure(atOnce.error);
    const auto oneByOne = compare(u"1,000 keys one by one"_s, typeOneByOne, 2);
    if (oneByOne.failed())
        return Failure(oneByOne.error);
    return QList<Row>{atOnce.value, oneByOne.value};
}

} // namespace Ostrel::Bench
