// EventData: one event as it was recorded, either as it came in or as the method call that it became.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/object.h"

#include <QString>

namespace Ostrel {

class Event;

/// A value; it keeps the name of its event and not the event.
class OSTRELHOOK_EXPORT EventData
{
public:
    enum Kind {
        Raw = 0, ///< an event with the arguments of its signature
        MethodCall = 1, ///< a recorded statement
    };

    /// No event at all: a raw one without a name.
    EventData() = default;
    /// An event on an object; a null event has an empty name.
    EventData(const Event *event, const QString &objectId, const ObjectList &arguments);
    /// A statement that was recorded for an object.
    static EventData methodCall(
        const QString &methodName, const QString &objectId, const ObjectList &arguments);

    Kind kind() const { return m_kind; }
    /// Empty for statements.
    const QString &eventName() const { return m_eventName; }
    /// Empty for raw events.
    const QString &methodName() const { return m_methodName; }
    /// The name of the object.
    const QString &objectId() const { return m_objectId; }
    const ObjectList &arguments() const { return m_arguments; }
    /// An argument; null when there is none at that index.
    SharedPtr<Object> argument(int index) const { return m_arguments.value(index); }

private:
    Kind m_kind = Raw;
    QString m_eventName;
    QString m_methodName;
    QString m_objectId;
    ObjectList m_arguments;
};

} // namespace Ostrel
