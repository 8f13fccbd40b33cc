#include "host/record/inputobserver.h"

#include "host/browser/browserpage.h"
#include "host/channel/bindingcarrier.h"
#include "wrappers/web/webutilities.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

const QString world = u"pageprobe"_s;
const QString binding = u"__pageprobeInput"_s;

InputEvent readInput(const QJsonObject &record, int observer)
{
    const auto text = [&](QLatin1StringView name) { return record.value(name).toString(); };
    const auto truth = [&](QLatin1StringView name) { return record.value(name).toBool(); };
    return {text("kind"_L1), record.value("time"_L1).toDouble(), text("target"_L1), text("key"_L1),
        text("value"_L1), text("field"_L1), truth("isText"_L1), truth("changed"_L1), truth("isTold"_L1),
        truth("isCheck"_L1), truth("isTaken"_L1), truth("isEditable"_L1), record.value("button"_L1).toInt(),
        truth("isPress"_L1), qRound(record.value("scrolledX"_L1).toDouble()),
        qRound(record.value("scrolledY"_L1).toDouble()), truth("isByPage"_L1), {}, {},
        qRound(record.value("x"_L1).toDouble()), qRound(record.value("y"_L1).toDouble()),
        record.value("files"_L1).toInt(), observer, truth("isOfHistory"_L1),
        text("over"_L1).split(u' ', Qt::SkipEmptyParts)};
}

/// Of an element: what a press on it is a press on, and where that is.
const QString namingFunction = uR"(function () {
    var win = this.ownerDocument.defaultView, meant, corner;
    meant = win.top.__ostrel__eventObject(this);
    corner = meant.getBoundingClientRect();
    return [win.top.__ostrel__nameOf(meant), win.top.__ostrel__contextOf(win), corner.left, corner.top];
})"_s;

QString objectIdIn(const QJsonObject &answer, QLatin1StringView member)
{
    return answer.value(member).toObject().value("objectId"_L1).toString();
}

/// The events that one record of the observer tells of.
QList<InputEvent> readInputs(const QString &json, int observer)
{
    const QJsonObject record = QJsonDocument::fromJson(json.toUtf8()).object();
    if (record.value("kind"_L1) != "typed"_L1)
        return {readInput(record, observer)};

    InputEvent key;
    key.target = record.value("target"_L1).toString();
    key.field = record.value("field"_L1).toString();
    key.isText = true;
    key.observer = observer;
    QList<InputEvent> keys;
    const QJsonArray told = record.value("keys"_L1).toArray();
    for (const auto &one : told) {
        const QJsonObject members = one.toObject();
        key.kind = members.value("kind"_L1).toString();
        key.time = members.value("time"_L1).toDouble();
        key.key = members.value("key"_L1).toString();
        key.changed = members.value("changed"_L1).toBool();
        keys.append(key);
    }
    // The text of the field is known before the last of them went down.
    const auto last = std::find_if(
        keys.rbegin(), keys.rend(), [](const InputEvent &event) { return event.kind == "keydown"_L1; });
    if (last != keys.rend())
        last->value = record.value("value"_L1).toString();
    return keys;
}

} // namespace

InputObserver::InputObserver(BrowserPage *page) : QObject(page), m_page(page)
{
    Connection *connection = page->connection();
    connection->listen(
        page->sessionId(), u"Runtime.bindingCalled"_s, this, [this, page](const QJsonObject &event) {
            if (event.value("name"_L1) != binding)
                return;
            const int observer = event.value("executionContextId"_L1).toInt();
            for (const QString &record : event.value("payload"_L1).toString().split(QChar::Null)) {
                const QList<InputEvent> inputs = readInputs(record, observer);
                m_told.insert(m_told.end(), inputs.begin(), inputs.end());
            }
            passOn();
        });
    // A tab that a link opens behind the others may show its document before the browser has it wait for us.
    // The binding exists in the observer's world only, so that no script of the page can call it.
    connection->send(page->sessionId(), u"Runtime.enable"_s);
    connection->send(page->sessionId(), u"Runtime.addBinding"_s,
        {{u"name"_s, binding}, {u"executionContextName"_s, world}});
    connection->send(page->sessionId(), u"Page.addScriptToEvaluateOnNewDocument"_s,
        {{u"source"_s, burstScript(u"inputobserver.js"_s)}, {u"worldName"_s, world},
            {u"runImmediately"_s, true}});
}

void InputObserver::flush(BrowserPage *page, int observer, std::function<void()> done)
{
    page->connection()->send(page->sessionId(), u"Runtime.evaluate"_s,
        {{u"expression"_s, u"__pageprobeFlush()"_s}, {u"contextId"_s, observer}},
        [done = std::move(done)](const CommandResult &) { done(); });
}

void InputObserver::passOn()
{
    while (!m_isAsking && !m_told.empty()) {
        const InputEvent first = m_told.front();
        m_told.pop_front();
        m_isAsking = true;
        complete(first, [this](const InputEvent &input) {
            m_isAsking = false;
            Q_EMIT observed(m_page, input);
            passOn();
        });
    }
}

/// Adds what the observer in the page does not get to know.
void InputObserver::complete(const InputEvent &told, const Completed &completed) const
{
    if (told.files > 0)
        askForPath(told, completed);
    else if (told.kind == "pointerup"_L1)
        askForName(told, completed);
    else
        completed(told);
}

void InputObserver::askForPath(const InputEvent &told, const Completed &completed) const
{
    const auto take = [told, completed](const QJsonObject &file) {
        InputEvent input = told;
        input.value = file.value("path"_L1).toString();
        completed(input);
    };
    const auto askForFile = [this, take](const QJsonObject &file) {
        ask(u"DOM.getFileInfo"_s, {{u"objectId"_s, objectIdIn(file, "result"_L1)}}, take);
    };
    ask(u"Runtime.evaluate"_s, {{u"expression"_s, u"__pageprobeFile"_s}, {u"contextId"_s, told.observer}},
        askForFile);
}

/// The element is handed from the observer's world to that of the page, whose page script names it.
void InputObserver::askForName(const InputEvent &told, const Completed &completed) const
{
    const auto take = [told, completed](const QJsonObject &named) {
        const QJsonArray answer = named.value("result"_L1).toObject().value("value"_L1).toArray();
        InputEvent input = told;
        input.object = WebWrapper::unescape(answer.at(0).toString());
        input.context = answer.at(1).toString();
        input.x -= qRound(answer.at(2).toDouble());
        input.y -= qRound(answer.at(3).toDouble());
        completed(input);
    };
    const auto askInPage = [this, take](const QJsonObject &node) {
        ask(u"Runtime.callFunctionOn"_s,
            {{u"objectId"_s, objectIdIn(node, "object"_L1)}, {u"returnByValue"_s, true},
                {u"functionDeclaration"_s, namingFunction}},
            take);
    };
    const auto bringIntoPage = [this, askInPage](const QJsonObject &described) {
        const QJsonValue node = described.value("node"_L1).toObject().value("backendNodeId"_L1);
        ask(u"DOM.resolveNode"_s, {{u"backendNodeId"_s, node}}, askInPage);
    };
    const auto describe = [this, bringIntoPage](const QJsonObject &element) {
        ask(u"DOM.describeNode"_s, {{u"objectId"_s, objectIdIn(element, "result"_L1)}}, bringIntoPage);
    };
    ask(u"Runtime.evaluate"_s, {{u"expression"_s, u"__pageprobeElement"_s}, {u"contextId"_s, told.observer}},
        describe);
}

/// The answer of a command that fails is empty.
void InputObserver::ask(const QString &method, const QJsonObject &parameters, const Answer &answered) const
{
    m_page->connection()->send(m_page->sessionId(), method, parameters,
        [answered](const CommandResult &result) { answered(result.value); });
}

} // namespace Ostrel::Host
