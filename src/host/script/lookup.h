// Lookup: finds objects by name in all windows of a session, at once or by waiting, and says why not.
#pragma once

#include "host/script/windowlist.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"

#include <QObject>
#include <QString>

#include <functional>

namespace Ostrel {
class ObjectName;
}

namespace Ostrel::Host {

/// All operations take names as users write them: symbolic names, lists of properties, plain names and paths.
/// A name that is no proper name is an error that shows where. An object that is found makes its window the
/// active one. Waits run a nested event loop, so that the pages' events keep flowing. Lives on the browser's
/// thread.
class Lookup : public QObject
{
    Q_OBJECT

public:
    static constexpr int defaultWaitMs = 20000;

    /// The windows stay the caller's and must outlive the lookup.
    explicit Lookup(WindowList *windows);

    /// Looks once. An object that is not there is an error that tells what did not match.
    FunctionCallResult<SharedPtr<Object>> find(const QString &name);

    /// Looks once. That nothing has the name is no error; a page that cannot be asked is one.
    FunctionCallResult<bool> exists(const QString &name);

    /// Waits until the object is there, `timeoutMs` milliseconds at the most.
    FunctionCallResult<SharedPtr<Object>> waitUntilThere(const QString &name, int timeoutMs = defaultWaitMs);

    /// The same until the object can be used, too: it is visible and not disabled. A name that asks for a
    /// hidden object is waited for as waitUntilThere() does.
    FunctionCallResult<SharedPtr<Object>> waitUntilReady(const QString &name, int timeoutMs = defaultWaitMs);

    /// Waits until an object that was found before can be used.
    FunctionCallResult<void> waitUntilReady(const SharedPtr<Object> &object, int timeoutMs = defaultWaitMs);

    /// Waits until a window or frame of that context name is there, and lets lookups start in it.
    FunctionCallResult<void> waitForContext(const QString &context, int timeoutMs = defaultWaitMs);

    /// Everything that has the name, windows in search order and elements in document order.
    FunctionCallResult<ObjectList> findAll(const QString &name);

    /// Ends all waits with an error; they do not begin anew.
    void stop();

Q_SIGNALS:
    void stopped();

private:
    struct Attempt
    {
        SharedPtr<Object> object;
        QString error; ///< what got into the way; a later attempt may do without
    };
    /// What a wait tries again and again: true when it is done.
    using Try = std::function<bool()>;

    Attempt lookOnce(const QString &name);
    Attempt lookInSettledPage(const QString &name);
    bool waitFor(const Try &attempt, int timeoutMs);
    void pause(int milliseconds);
    /// Lets the search start in the window that the name's context speaks of, and gives the name as that
    /// window understands it.
    QString inRightWindow(const QString &name);
    QString explain(const QString &name);

    WindowList *m_windows;
    bool m_stopped = false;
};

/// The names of all elements of a page in tree order, as a recording would write them. A page that changes
/// meanwhile may give one twice.
FunctionCallResult<QStringList> namesOfAllElements(BrowserPage *page);

/// Loads the symbolic names of the file beside a script, which has the script's name with ".names" in the
/// place of ".js"; forgets those of other scripts. A script without such a file has none.
FunctionCallResult<void> loadNamesBeside(const QString &scriptFile);

} // namespace Ostrel::Host
