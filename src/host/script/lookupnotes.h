// LookupNotes: what pages report of lookups while nothing is recorded or picked.
#pragma once

#include "wrappers/web/eventlogger.h"

namespace Ostrel::Host {

/// Hands the properties that did not match on to the framework, which holds them by name until the name is
/// found. There is no recording here, so that nothing else comes of an event.
class LookupNotes : public WebWrapper::EventLogger
{
public:
    void recordMethodCall(const QString &, const char *, const ObjectList &, const QTime *) override { }
    void addUnmatchedProperty(const QString &objectName, const QString &property) override;
    void removeUnmatchedProperties(const QString &objectName) override;
    void noteDoubleClick(const QString &, const QMap<QString, QString> &) override { }
    void noteKeyUp(const QString &) override { }
    EventData lastRecordedEventData() override;
    void noteOptionChoice() override { }
    bool isRecordedAlready(const QString &, const QString &) override { return false; }
};

} // namespace Ostrel::Host
