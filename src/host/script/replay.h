// Replay: carries out the statements of recorded scripts.
#pragma once

#include "host/script/scriptfunctions.h"
#include "ostrelhook/functioncallresult.h"

#include <QObject>
#include <QStringList>

namespace Ostrel::WebWrapper {
class HTML_Object;
}

namespace Ostrel::Host {

class BrowserPage;
class Lookup;
class WindowList;

/// Gives scripts a function for each statement on an object, by the object or by its name. Each waits until
/// the object is there and ready, acts on it as a user would, and returns when what that led to, such as
/// another document, has loaded. Errors begin with the statement and the object. Lives on the browser's
/// thread.
class Replay : public QObject
{
    Q_OBJECT

public:
    /// Both stay the caller's and must outlive this.
    Replay(WindowList *windows, Lookup *lookup);

private:
    using Done = FunctionCallResult<void>;

    void addStatement(const QString &name, const QStringList &parameters, bool byName);
    Done perform(const QString &statement, const QStringList &parameters, const ObjectList &arguments);
    FunctionCallResult<SharedPtr<Object>> readyObject(const SharedPtr<Object> &subject);
    Done closeWindow(const SharedPtr<Object> &subject);

    WindowList *m_windows;
    Lookup *m_lookup;
    /// The window that statements act in; it stays that when it closes, until a statement acts in another.
    const BrowserPage *m_current = nullptr;
    ScriptFunctions m_functions;
};

/// Waits until what an action has begun to load in a page is there, as long as a user would.
void settle(BrowserPage *page);

} // namespace Ostrel::Host
