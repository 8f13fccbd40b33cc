// EventHandlers: functions of a script that are called when something happens in a page.
#pragma once

#include "host/script/scriptfunctions.h"
#include "ostrelhook/functionclass.h"

#include <QHash>
#include <QMap>
#include <QObject>

namespace Ostrel::Host {

class PageChannel;

/// The script function installEventHandler(event, handler). Handlers run while a statement waits; what one
/// throws becomes the error of that statement. Lives on the script's thread.
class EventHandlers : public QObject
{
    Q_OBJECT

public:
    explicit EventHandlers(PageChannel &channel);

private:
    FunctionCallResult<void> install(const QString &event, const ScriptFunction &handler);
    void call(const QString &event, const QMap<QString, QString> &parameters);

    QHash<QString, ScriptFunction> m_handlers;
    ScriptFunctions m_functions;
};

} // namespace Ostrel::Host
