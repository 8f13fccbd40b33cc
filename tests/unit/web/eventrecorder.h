// A logger that writes down what it is told, and event texts to tell it.
#pragma once

#include "ostrelhook/inspector.h"
#include "ostrelhook/valueclasses.h"
#include "wrappers/web/eventlogger.h"
#include "wrappers/web/webevents.h"

#include <QDateTime>
#include <QStringList>

#include <functional>

namespace Ostrel::Test {

/// Writes a line for each call: mouseClick('name', 2, 3, 4) for a statement, "noteDoubleClick name x=3" for a
/// note. Key notes and questions are kept apart.
class EventRecorder : public WebWrapper::EventLogger
{
public:
    EventRecorder()
    {
        static const bool once = (initWebEvents(), true);
        Q_UNUSED(once)
        Inspector::self()->setRecording(true);
        Inspector::self()->setRecorderAttached(true);
    }
    EventRecorder(const EventRecorder &) = default;
    ~EventRecorder() override
    {
        Inspector::self()->setRecording(false);
        Inspector::self()->setRecorderAttached(false);
    }

    /// The lines since the last call.
    QStringList take() { return std::exchange(lines, {}); }

    // What the operations answer.
    bool clicksTextFields = false;
    bool recordsContexts = true;
    bool adaptsNames = false;
    QStringList already; ///< "method name" of the statements that are there already
    EventData last;
    std::function<void()> whileRecording; ///< runs inside the next statement

    QStringList lines;
    QList<QTime> times; ///< of the statements; invalid for those without a time
    ObjectList unhandledArguments;

    void recordMethodCall(const QString &objectName, const char *methodName, const ObjectList &arguments,
        const QTime *timestamp) override
    {
        QStringList texts{quoted(objectName)};
        for (const SharedPtr<Object> &argument : arguments)
            texts.append(textOf(argument));
        lines.append(
            QStringLiteral("%1(%2)").arg(QString::fromUtf8(methodName), texts.join(QStringLiteral(", "))));
        times.append(timestamp ? *timestamp : QTime());
        if (const auto action = std::exchange(whileRecording, nullptr))
            action();
    }
    void addUnmatchedProperty(const QString &objectName, const QString &property) override
    {
        lines.append(QStringLiteral("addUnmatchedProperty %1 %2").arg(objectName, property));
    }
    void removeUnmatchedProperties(const QString &objectName) override
    {
        lines.append(QStringLiteral("removeUnmatchedProperties %1").arg(objectName));
    }
    void noteDoubleClick(const QString &objectName, const QMap<QString, QString> &data) override
    {
        lines.append(
            QStringLiteral("noteDoubleClick %1 x=%2").arg(objectName, data.value(QStringLiteral("x"))));
    }
    void noteKeyUp(const QString &objectName) override { keys.append(objectName); }
    QString adaptQualifiedName(const QString &name, const QMap<QString, QString> &data) override
    {
        return adaptsNames ? QStringLiteral("<%1>").arg(name) : EventLogger::adaptQualifiedName(name, data);
    }
    bool shouldRecordWaitForContextExists() const override { return recordsContexts; }
    void handleUncompressedEventData(const EventData &data) override
    {
        unhandledArguments = data.arguments();
        EventLogger::handleUncompressedEventData(data);
    }
    EventData lastRecordedEventData() override { return last; }
    void noteOptionChoice() override { lines.append(QStringLiteral("noteOptionChoice")); }
    bool isRecordedAlready(const QString &methodName, const QString &objectName) override
    {
        asked.append(QStringLiteral("%1 %2").arg(methodName, objectName));
        return already.contains(asked.last());
    }
    bool recordClickOnTextField() const override { return clicksTextFields; }

    QStringList keys; ///< the objects of noteKeyUp
    QStringList asked; ///< what isRecordedAlready was asked

private:
    static QString quoted(const QString &text) { return QStringLiteral("'%1'").arg(text); }
    static QString textOf(const SharedPtr<Object> &argument)
    {
        if (std::holds_alternative<QString>(argument->primitive()))
            return quoted(argument->toQString());
        if (argument->isPrimitive())
            return argument->toQString();
        return unwrapDateTime(argument).toString(Qt::ISODate);
    }
};

/// Event texts whose times go on, so that no two of them are alike.
class EventTexts
{
public:
    /// An event of a type on an object; `more` are further members, joined by "&".
    QString operator()(
        const QString &event, const QString &type, const QString &object, const QString &more = {})
    {
        const QString rest = more.isEmpty() ? QString() : QStringLiteral("&%1").arg(more);
        return QStringLiteral("logevent%1&event=%2%3&object=%4&type=%5")
            .arg(QString::number(++m_time), event, rest, object, type);
    }
    /// The time of the text made last.
    quint64 time() const { return m_time; }
    QTime timeOfDay() const { return QDateTime::fromMSecsSinceEpoch(qint64(m_time)).time(); }
    /// Lets the next text have this time, in milliseconds since the epoch.
    void setTime(quint64 time) { m_time = time - 1; }

private:
    static inline quint64 m_time = 1700000000000;
};

} // namespace Ostrel::Test
