#include "host/record/inputobserver.h"

#include "host/browser/browserpage.h"
#include "host/channel/bindingcarrier.h"

#include <QJsonDocument>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString world = u"pageprobe"_s;
const QString binding = u"__pageprobeInput"_s;

InputEvent readInput(const QString &json, int observer)
{
    const QJsonObject record = QJsonDocument::fromJson(json.toUtf8()).object();
    const auto text = [&](QLatin1StringView name) { return record.value(name).toString(); };
    const auto truth = [&](QLatin1StringView name) { return record.value(name).toBool(); };
    return {text("kind"_L1), record.value("time"_L1).toDouble(), text("target"_L1), text("key"_L1),
        text("value"_L1), truth("isText"_L1), truth("changed"_L1), truth("isTold"_L1), truth("isCheck"_L1),
        truth("isTaken"_L1), record.value("button"_L1).toInt(), truth("isPress"_L1),
        qRound(record.value("scrolledX"_L1).toDouble()), qRound(record.value("scrolledY"_L1).toDouble()),
        truth("isByPage"_L1), observer};
}

} // namespace

InputObserver::InputObserver(BrowserPage *page) : QObject(page)
{
    Connection *connection = page->connection();
    connection->listen(
        page->sessionId(), u"Runtime.bindingCalled"_s, this, [this, page](const QJsonObject &event) {
            if (event.value("name"_L1) != binding)
                return;
            const int observer = event.value("executionContextId"_L1).toInt();
            for (const QString &record : event.value("payload"_L1).toString().split(QChar::Null))
                Q_EMIT observed(page, readInput(record, observer));
        });
    // The binding exists in the observer's world only, so that no script of the page can call it.
    connection->send(page->sessionId(), u"Runtime.enable"_s);
    connection->send(page->sessionId(), u"Runtime.addBinding"_s,
        {{u"name"_s, binding}, {u"executionContextName"_s, world}});
    connection->send(page->sessionId(), u"Page.addScriptToEvaluateOnNewDocument"_s,
        {{u"source"_s, burstScript(u":/pageprobe/inputobserver.js"_s)}, {u"worldName"_s, world}});
}

void InputObserver::flush(BrowserPage *page, int observer, std::function<void()> done)
{
    page->connection()->send(page->sessionId(), u"Runtime.evaluate"_s,
        {{u"expression"_s, u"__pageprobeFlush()"_s}, {u"contextId"_s, observer}},
        [done = std::move(done)](const CommandResult &) { done(); });
}

} // namespace Ostrel::Host
