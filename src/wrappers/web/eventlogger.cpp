#include "wrappers/web/eventlogger.h"

#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/composing.h"
#include "wrappers/web/eventtext.h"
#include "wrappers/web/objectpicked.h"
#include "wrappers/web/webutilities.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// What all loggers of the process remember together.
struct Memory
{
    QString lastText;
    QString lastContext;
};

Memory &memory()
{
    static Memory memory;
    return memory;
}

/// Whether a text was handled already; it is the last one from here on.
bool isResent(const QString &text)
{
    QString &last = memory().lastText;
    if (text == last && !text.startsWith("event=unload"_L1))
        return true;
    last = text;
    return false;
}

} // namespace

EventLogger::EventLogger() : m_pendingTextInput(std::make_shared<PendingTextInput>()) { }

EventLogger::~EventLogger()
{
    *m_pendingTextInput = {};
}

void EventLogger::logEvent(const QString &text)
{
    m_eventQueue.push_back(text);
    // The text that is being handled stays in the queue: an outer call gets to this one.
    if (m_eventQueue.size() > 1)
        return;
    do {
        const QString first = m_eventQueue.front();
        recordEvent(first);
        m_eventQueue.pop_front();
    } while (!m_eventQueue.empty());
}

void EventLogger::recordEvent(const QString &text)
{
    if (m_logEventBlocking && !text.contains("event=evalAnswer"_L1))
        return;
    if (isResent(text))
        return;

    EventMap data = parseEvent(text, now());
    QString objectName = data.take(u"object"_s);
    if (!objectName.isEmpty()) {
        PROBELOG_TRACE("WebEventLogger", message(u"Adapting qualified name: %1", objectName));
        objectName = adaptQualifiedName(objectName, data);
        PROBELOG_TRACE("WebEventLogger", message(u"Adapted qname: %1", objectName));
    }
    // A tap is a press from here on.
    if (data.value(u"event"_s) == "touchend"_L1)
        data.insert(u"event"_s, u"mousedown"_s);
    if (compressedNonRecordingEventData(objectName, data))
        return;
    if (!Inspector::self()->isRecording())
        return;

    PROBELOG_TRACE("WebEventCompression", message(u"Received event to record: %1", text));
    // Kept as is: there is no such event, so that the warning below comes as well.
    if (data.value(u"event"_s) == "startBrowser"_L1)
        recordMethodCall(data.value(u"url"_s), "startBrowser", {}, nullptr);
    ObjectList arguments;
    const Event *event = convertEvent(arguments, objectName, data);
    if (!event) {
        qWarning("convertEvent: unhandled event '%s'", qPrintable(text));
        return;
    }
    enterContext(data.value(u"context"_s));
    if (!eatEvent(event, objectName, data))
        handleUncompressedEventData(EventData(event, objectName, arguments));
}

/// Typed text belongs to the context that it was typed in, and the statements that follow to the new one.
void EventLogger::enterContext(const QString &context)
{
    if (context.isEmpty() || context == memory().lastContext)
        return;
    flushRecordedTextInput();
    memory().lastContext = context;
    if (shouldRecordWaitForContextExists())
        recordMethodCall(context, "waitForContextExists", {}, nullptr);
}

bool EventLogger::compressedNonRecordingEventData(
    const QString &objectName, const QMap<QString, QString> &data)
{
    const QString event = data.value(u"event"_s);
    if (event == "clear"_L1) {
        m_submitClicked = false;
    } else if (event == "pickedObject"_L1) {
        PROBELOG_TRACE("WebEventLogger", message(u"Sending picked event to spy for %1", objectName));
        sendObjectPickedToSpy(objectName);
    } else if (event == "addUnmatchedProperty"_L1) {
        addUnmatchedProperty(data.value(u"name"_s), data.value(u"property"_s));
    } else if (event == "removeUnmatchedProperties"_L1) {
        removeUnmatchedProperties(data.value(u"name"_s));
    } else {
        return false;
    }
    return true;
}

void EventLogger::handleUncompressedEventData(const EventData &data)
{
    qWarning("Unhandled event: '%s' for '%s'.", qPrintable(data.eventName()), qPrintable(data.objectId()));
}

void EventLogger::doCheckWindowClosedOrHook() { }

QString EventLogger::adaptQualifiedName(const QString &qualifiedName, const QMap<QString, QString> &)
{
    return qualifiedName;
}

bool EventLogger::shouldRecordWaitForContextExists() const
{
    return true;
}

bool EventLogger::recordClickOnTextField() const
{
    return false;
}

} // namespace Ostrel::WebWrapper
