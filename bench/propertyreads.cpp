#include "benchmarks.h"
#include "contest.h"
#include "host/script/scriptengine.h"
#include "host/script/testsession.h"
#include "playwrightpeer.h"
#include "support/fakepage.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include <QEventLoop>
#include <QJsonObject>

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;
using namespace WebWrapper;

namespace {

const QString pageAddress = QStringLiteral("file://" PAGEPROBE_BENCH_DIR "/pages/element.html");
const QString targetExpression = u"document.getElementById('target')"_s;

constexpr int turnsInRound = 20;

using Read = std::function<FunctionCallResult<QString>()>;

/// The text that one operation of a wrapper sends to the page.
QString composedText(const HTML_Object &element, const std::function<void(HTML_Object &)> &operation)
{
    Test::FakePage recorder;
    HTML_Object twin({}, element.jsReference(), &recorder);
    operation(twin);
    return recorder.scripts().value(0);
}

/// The least that a client can do: send the text as it is, wait for this one answer, take the value.
FunctionCallResult<QString> readBarely(const BrowserPage &page, const QString &text)
{
    QEventLoop loop;
    QString value;
    page.connection()->send(page.sessionId(), u"Runtime.evaluate"_s,
        {{u"expression"_s, text}, {u"returnByValue"_s, true}}, [&](const CommandResult &answer) {
            value = answer.value.value("result"_L1).toObject().value("value"_L1).toString();
            loop.quit();
        });
    loop.exec();
    if (value.isEmpty())
        return Failure(u"The bare client got no value for '%1'"_s.arg(text));
    return value;
}

Turn repeated(int count, const Read &read)
{
    return [count, read] {
        return timed([&]() -> FunctionCallResult<void> {
            for (int i = 0; i < count; ++i) {
                if (const FunctionCallResult<QString> value = read(); value.failed())
                    return Failure(value.error);
            }
            return {};
        });
    };
}

FunctionCallResult<void> runScript(ScriptEngine &engine, const QString &text)
{
    const ScriptOutcome outcome = engine.run(text, u"bench.js"_s);
    if (outcome.failed)
        return Failure(outcome.error.text());
    return {};
}

} // namespace

FunctionCallResult<QList<Row>> measurePropertyReads(const Effort &effort)
{
    ResultSink nobody;
    FunctionCallResult<std::unique_ptr<TestSession>> session = TestSession::start({}, nobody);
    if (session.failed())
        return Failure(session.error);
    BrowserPage *page = session.value->activePage();
    if (const auto opened = page->navigate(pageAddress); opened.failed())
        return Failure(opened.error);
    PlaywrightPeer peer;
    if (const auto started = peer.start(); started.failed())
        return Failure(started.error);
    if (const auto opened = peer.ask(u"open %1"_s.arg(pageAddress)); opened.failed())
        return Failure(opened.error);
    const FunctionCallResult<HTML_Object *> found
        = htmlObjectFromJavaScriptResult(page, targetExpression, {}, 0);
    if (found.failed())
        return Failure(found.error);
    const std::unique_ptr<HTML_Object> element(found.value);
    ScriptEngine engine;
    if (const auto ready = runScript(engine, u"var element = activeDocument().getElementById('target');"_s);
        ready.failed())
        return Failure(ready.error);

    const QString tagNameText
        = composedText(*element, [](HTML_Object &twin) { static_cast<void>(twin.tagName()); });
    const QString propertyText
        = composedText(*element, [](HTML_Object &twin) { static_cast<void>(twin.property("tagName")); });
    const int reads = qMax(1, effort.reads / turnsInRound);
    const QString loop = u"for (var i = 0; i < %1; ++i) { element.tagName; }"_s.arg(reads);
    const FunctionCallResult<QList<double>> times
        = medianTimes({
                          repeated(reads, [&] { return element->tagName(); }),
                          repeated(reads, [&] { return readBarely(*page, tagNameText); }),
                          repeated(reads, [&] { return element->property("tagName"); }),
                          repeated(reads, [&] { return readBarely(*page, propertyText); }),
                          [&] { return timed([&] { return runScript(engine, loop); }); },
                          [&] { return peer.ask(u"read %1"_s.arg(reads)); },
                      },
            {effort.rounds, turnsInRound});
    if (times.failed())
        return Failure(times.error);

    enum Contestant { TagName, BareTagName, Property, BareProperty, Script, Playwright };
    const auto row = [&](const QString &name, Contestant ours, Contestant reference, double limit) {
        return Row{name, times.value.at(ours), times.value.at(reference), Row::Bar::Ratio, limit};
    };
    constexpr double bareLimit = 1.3;
    constexpr double playwrightLimit = 1.0;
    return QList<Row>{
        row(u"reads by tagName() / bare protocol client"_s, TagName, BareTagName, bareLimit),
        row(u"reads by property() / bare protocol client"_s, Property, BareProperty, bareLimit),
        row(u"reads from a script / bare protocol client"_s, Script, BareTagName, bareLimit),
        row(u"reads by tagName() / playwright handle.evaluate"_s, TagName, Playwright, playwrightLimit),
        row(u"reads by property() / playwright handle.evaluate"_s, Property, Playwright, playwrightLimit),
        row(u"reads from a script / playwright handle.evaluate"_s, Script, Playwright, playwrightLimit),
    };
}

} // namespace Ostrel::Bench
