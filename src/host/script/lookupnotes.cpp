#include "host/script/lookupnotes.h"

#include "ostrelhook/eventdata.h"
#include "ostrelhook/inspector.h"

namespace Ostrel::Host {

void LookupNotes::addUnmatchedProperty(const QString &objectName, const QString &property)
{
    Inspector::self()->addUnmatchedProperty(objectName, property);
}

void LookupNotes::removeUnmatchedProperties(const QString &objectName)
{
    Inspector::self()->removeUnmatchedProperties(objectName);
}

EventData LookupNotes::lastRecordedEventData()
{
    return {};
}

} // namespace Ostrel::Host
