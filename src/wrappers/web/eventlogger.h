// EventLogger: the recorder. It reads the event texts of pages and decides which statement of a test script
// each of them means; where statements go is the business of the host that derives from it.
#pragma once

#include "ostrelhook/eventdata.h"
#include "wrappers/web/export.h"

#include <QMap>
#include <QString>
#include <QTime>

#include <deque>
#include <memory>

namespace Ostrel::WebWrapper {

/// All operations belong to one thread. logEvent() may be called again from inside any operation that a host
/// overrides: the text then waits for its turn. initWebEvents() must have run before.
///
/// The last text and the last context are kept for the life of the process, for all loggers together, also
/// from one recording to the next.
class PAGEPROBELIB_EXPORT EventLogger
{
public:
    EventLogger();
    /// A copy shares the pending text, so that both gather into one record.
    EventLogger(const EventLogger &) = default;
    EventLogger &operator=(const EventLogger &) = default;
    /// Drops the pending text, that of copies as well.
    virtual ~EventLogger();

    /// Handles an event text. Texts are handled strictly in the order of their arrival.
    virtual void logEvent(const QString &text);

    /// Writes one statement; the calls are in the order of the script. `objectName` is the address for
    /// "startBrowser" and the context for "waitForContextExists", which come without a `timestamp`; it is the
    /// time of day of the event otherwise. The method's name is UTF-8, the arguments are script values.
    virtual void recordMethodCall(const QString &objectName, const char *methodName,
        const ObjectList &arguments, const QTime *timestamp)
        = 0;

    /// Notes that a property of a name did not match in a lookup, and forgets the notes of a name.
    virtual void addUnmatchedProperty(const QString &objectName, const QString &property) = 0;
    virtual void removeUnmatchedProperties(const QString &objectName) = 0;

protected:
    /// For hosts; does nothing and is called by nobody here.
    virtual void doCheckWindowClosedOrHook();

public:
    /// Right before a double click is recorded.
    virtual void noteDoubleClick(const QString &objectName, const QMap<QString, QString> &data) = 0;
    /// At the start of each key event, on any element.
    virtual void noteKeyUp(const QString &objectName) = 0;

protected:
    /// What the recording calls an object; by default what the page calls it.
    virtual QString adaptQualifiedName(const QString &qualifiedName, const QMap<QString, QString> &data);
    /// Whether a change of the window or frame is recorded; by default true.
    virtual bool shouldRecordWaitForContextExists() const;
    /// Takes events that count also while nothing is recorded; true when this was one. A host that adds
    /// events of its own calls this version for the rest.
    virtual bool compressedNonRecordingEventData(
        const QString &objectName, const QMap<QString, QString> &data);
    /// Gets the events that mean no statement; warns by default.
    virtual void handleUncompressedEventData(const EventData &data);

public:
    /// The statement that was recorded last.
    virtual EventData lastRecordedEventData() = 0;
    /// Right before the choice of an option is recorded that a press made.
    virtual void noteOptionChoice() = 0;
    /// True keeps the statement from being recorded. The click behind a press asks about the same statement
    /// again, so that the answer keeps a button from being recorded twice.
    virtual bool isRecordedAlready(const QString &methodName, const QString &objectName) = 0;

protected:
    /// Whether a press on a text field is recorded as a click of the device; by default false, and the field
    /// gets the focus.
    virtual bool recordClickOnTextField() const;

public:
    /// While blocking, the events of pages are lost; only the answers to evaluations pass.
    void enableLogEventBlocking() { m_logEventBlocking = true; }
    void disableLogEventBlocking() { m_logEventBlocking = false; }

    /// Records the text that was typed last, if there is any. A host calls it when the recording stops.
    void flushRecordedTextInput();

private:
    /// Typed text that waits until it is complete.
    struct PendingTextInput
    {
        QString text;
        QString objectName;
        QTime timestamp; ///< invalid when nothing is pending
        QString type;
    };
    class UserEvent;

    void recordEvent(const QString &text);
    void enterContext(const QString &context);
    const Event *convertEvent(
        ObjectList &arguments, const QString &objectName, const QMap<QString, QString> &data);
    bool eatEvent(const Event *event, const QString &objectName, const QMap<QString, QString> &data);

    bool m_logEventBlocking = false;
    bool m_submitClicked = false; ///< the last press was on a submit button
    std::deque<QString> m_eventQueue; ///< the first one is being handled
    std::shared_ptr<PendingTextInput> m_pendingTextInput;
};

} // namespace Ostrel::WebWrapper
