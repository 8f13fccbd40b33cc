#include "ostrelhook/eventdata.h"

#include "ostrelhook/globalclass.h"

namespace Ostrel {

EventData::EventData(const Event *event, const QString &objectId, const ObjectList &arguments)
    : m_eventName(event ? event->name() : QString()), m_objectId(objectId), m_arguments(arguments)
{
}

EventData EventData::methodCall(
    const QString &methodName, const QString &objectId, const ObjectList &arguments)
{
    EventData data(nullptr, objectId, arguments);
    data.m_kind = MethodCall;
    data.m_methodName = methodName;
    return data;
}

} // namespace Ostrel
