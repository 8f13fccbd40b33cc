#include "wrappers/web/eventtext.h"

#include "probelog/tracepoint.h"
#include "wrappers/web/composing.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webutilities.h"

#include <QDateTime>
#include <QStringList>

#include <limits>
#include <optional>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

const QString prefix = u"logevent"_s;

QString traceText(const QDateTime &time)
{
    return time.toString(u"MM/dd/yyyy hh:mm:ss:zzz");
}

/// The local time of a number of milliseconds since the epoch; nothing when no calendar has it.
std::optional<QDateTime> localTime(quint64 milliseconds)
{
    if (milliseconds > quint64(std::numeric_limits<qint64>::max()))
        return {};
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(qint64(milliseconds), Qt::LocalTime);
    return time.isValid() ? std::optional(time) : std::nullopt;
}

/// The time that the first part of an event text names; 0 when it names none.
quint64 leadingTimestamp(const QString &part)
{
    const QString digits = part.startsWith(prefix) ? part.sliced(prefix.size()) : part;
    const quint64 milliseconds = digits.toULongLong(nullptr, 10);
    return milliseconds != 0 && localTime(milliseconds) ? milliseconds : 0;
}

/// Takes the time off the front of the parts, where there is one.
quint64 takeTimestamp(QStringList &parts, quint64 now)
{
    const quint64 milliseconds = leadingTimestamp(parts.first());
    if (milliseconds == 0) {
        PROBELOG_TRACE("WebEventCompression",
            message(u"using current date/time as timestamp; as integer: %1 as qdatetime: %2",
                QString::number(now), traceText(localTime(now).value_or(QDateTime()))));
        return now;
    }
    parts.removeFirst();
    // Kept as is: the trace shows the part behind the timestamp.
    PROBELOG_TRACE("WebEventCompression",
        message(u"converted timestamp string: '%1' as integer: %2 as qdatetime: %3", parts.value(0),
            QString::number(milliseconds), traceText(*localTime(milliseconds))));
    return milliseconds;
}

QString readValue(const QString &written)
{
    QString value = unescape(written);
    // The start of an object name that was escaped twice on its way; the rest of it stays as it is.
    if (value.startsWith("%7BtagName"_L1))
        value.replace(0, 3, u'{');
    return value;
}

} // namespace

EventMap parseEvent(const QString &text, quint64 now)
{
    PROBELOG_TRACE("WebEventCompression", message(u"Parsing event data: '%1'", text));
    EventMap event;
    QStringList parts = text.split(u'&', Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return event;
    event.insert(u"timestamp"_s, QString::number(takeTimestamp(parts, now)));
    for (const QString &part : std::as_const(parts)) {
        const qsizetype separator = part.indexOf(u'=');
        if (separator < 0)
            event.insert(part, part);
        else
            event.insert(part.first(separator), readValue(part.sliced(separator + 1)));
    }
    PROBELOG_TRACE("WebEventCompression", message(u"Parsed data: %1", traceText(event)));
    return event;
}

QTime timeOfDay(const EventMap &event, quint64 now)
{
    bool isNumber = false;
    const quint64 milliseconds = event.value(u"timestamp"_s).toULongLong(&isNumber, 10);
    const std::optional<QDateTime> time = isNumber ? localTime(milliseconds) : std::nullopt;
    return (time ? *time : localTime(now).value_or(QDateTime())).time();
}

int modifierState(const EventMap &event)
{
    struct Modifier
    {
        QString key;
        QString value;
        int state;
    };
    static const Modifier modifiers[] = {
        {u"altKey"_s, u"true"_s, AltKey},
        {u"ctrlKey"_s, u"true"_s, ControlKey},
        {u"shiftKey"_s, u"true"_s, ShiftKey},
        {u"button"_s, u"2"_s, RightButton},
    };

    int state = 0;
    for (const Modifier &modifier : modifiers)
        state |= event.value(modifier.key) == modifier.value ? modifier.state : 0;
    return state;
}

QString traceText(const EventMap &event)
{
    QStringList members;
    for (auto member = event.cbegin(); member != event.cend(); ++member)
        members.append(u"%1='%2'"_s.arg(member.key(), member.value()));
    return u"{%1}"_s.arg(members.join(u", "_s));
}

} // namespace Ostrel::WebWrapper
