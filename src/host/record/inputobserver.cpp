#include "host/record/inputobserver.h"

#include "host/browser/browserpage.h"

#include <QFile>
#include <QJsonDocument>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString world = u"pageprobe"_s;
const QString binding = u"__pageprobeInput"_s;

QString observerScript()
{
    QFile file(u":/pageprobe/inputobserver.js"_s);
    const bool opened = file.open(QIODevice::ReadOnly);
    Q_ASSERT(opened);
    Q_UNUSED(opened)
    return QString::fromUtf8(file.readAll());
}

InputEvent readInput(const QString &payload)
{
    const QJsonObject record = QJsonDocument::fromJson(payload.toUtf8()).object();
    const auto text = [&](QLatin1StringView name) { return record.value(name).toString(); };
    const auto truth = [&](QLatin1StringView name) { return record.value(name).toBool(); };
    return {text("kind"_L1), text("target"_L1), text("key"_L1), text("value"_L1), text("field"_L1),
        truth("isText"_L1), truth("changed"_L1), truth("isTold"_L1), truth("isCheck"_L1), truth("isTaken"_L1),
        truth("isEditable"_L1), record.value("button"_L1).toInt(), truth("isPress"_L1),
        qRound(record.value("scrolledX"_L1).toDouble()), qRound(record.value("scrolledY"_L1).toDouble()),
        truth("isByPage"_L1), record.value("files"_L1).toInt()};
}

} // namespace

InputObserver::InputObserver(BrowserPage *page) : QObject(page), m_page(page)
{
    Connection *connection = page->connection();
    connection->listen(
        page->sessionId(), u"Runtime.bindingCalled"_s, this, [this, page](const QJsonObject &event) {
            if (event.value("name"_L1) != binding)
                return;
            const InputEvent input = readInput(event.value("payload"_L1).toString());
            if (input.files > 0)
                observeFile(input, event.value("executionContextId"_L1).toInt());
            else
                Q_EMIT observed(page, input);
        });
    // The binding exists in the observer's world only, so that no script of the page can call it.
    connection->send(page->sessionId(), u"Runtime.enable"_s);
    connection->send(page->sessionId(), u"Runtime.addBinding"_s,
        {{u"name"_s, binding}, {u"executionContextName"_s, world}});
    connection->send(page->sessionId(), u"Page.addScriptToEvaluateOnNewDocument"_s,
        {{u"source"_s, observerScript()}, {u"worldName"_s, world}});
}

void InputObserver::observeFile(const InputEvent &event, int executionContext)
{
    const auto tell = [this, event](const CommandResult &told) {
        InputEvent complete = event;
        complete.value = told.value.value("path"_L1).toString();
        Q_EMIT observed(m_page, complete);
    };
    const auto askForPath = [this, tell](const CommandResult &file) {
        const QString object = file.value.value("result"_L1).toObject().value("objectId"_L1).toString();
        m_page->connection()->send(
            m_page->sessionId(), u"DOM.getFileInfo"_s, {{u"objectId"_s, object}}, tell);
    };
    m_page->connection()->send(m_page->sessionId(), u"Runtime.evaluate"_s,
        {{u"expression"_s, u"__pageprobeFile"_s}, {u"contextId"_s, executionContext}}, askForPath);
}

} // namespace Ostrel::Host
