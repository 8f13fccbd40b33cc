// Event texts: what a page writes for each thing worth recording, read into a map.
#pragma once

#include <QMap>
#include <QString>
#include <QTime>

namespace Ostrel::WebWrapper {

/// The members of an event. What an event does not have reads as an empty text, and as 0.
using EventMap = QMap<QString, QString>;

/// Reads an event text, with or without its prefix. Member `timestamp` is the text's own time, or `now`, in
/// milliseconds since the epoch. Nothing is an error; an empty text gives an empty map.
EventMap parseEvent(const QString &text, quint64 now);

/// The local time of day of an event, or of `now` (milliseconds since the epoch) when it has none.
QTime timeOfDay(const EventMap &event, quint64 now);

/// The modifier keys and the right button, a sum of ModifierState values.
int modifierState(const EventMap &event);

/// The members in the form in which traces show them: {event='click', x='4'}.
QString traceText(const EventMap &event);

} // namespace Ostrel::WebWrapper
