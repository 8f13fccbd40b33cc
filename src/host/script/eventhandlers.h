// EventHandlers: functions of a script that are called when something happens in a page.
#pragma once

#include "host/script/scriptfunctions.h"
#include "ostrelhook/functionclass.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>

namespace Ostrel::Host {

class BrowserPage;
class PageChannel;

/// The script function installEventHandler(event, handler). Handlers run while a statement waits; what one
/// throws becomes the error of that statement. Lives on the script's thread.
class EventHandlers : public QObject
{
    Q_OBJECT

public:
    explicit EventHandlers(PageChannel &channel);

    /// Follows the documents of a page. Browsers cancel what a page sends while it goes, though not always,
    /// so that the unloading of its own document is told by the host when the page could not.
    void attend(BrowserPage *page);

private:
    FunctionCallResult<void> install(const QString &event, const ScriptFunction &handler);
    void receive(const QString &event, const QMap<QString, QString> &parameters);
    void noteDocumentGone(const QString &address);
    void call(const QString &event, const QMap<QString, QString> &parameters);

    QStringList m_shown; ///< the addresses of the pages' own documents, without their fragments
    QSet<QString> m_toldByPage; ///< addresses whose unloading a page has told before the browser did
    QSet<QString> m_toldByHost; ///< and those that a page may still tell late
    QHash<QString, ScriptFunction> m_handlers;
    ScriptFunctions m_functions;
};

} // namespace Ostrel::Host
