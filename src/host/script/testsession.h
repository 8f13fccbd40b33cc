// TestSession: a browser with its channel and its pages, and the functions by which scripts reach them.
#pragma once

#include "host/browser/browser.h"
#include "host/browser/injection.h"
#include "host/channel/channeladdress.h"
#include "host/channel/pagechannel.h"
#include "host/input/protocoldevices.h"
#include "host/report/resultsink.h"
#include "host/script/dialoganswers.h"
#include "host/script/eventhandlers.h"
#include "host/script/lookup.h"
#include "host/script/lookupnotes.h"
#include "host/script/replay.h"
#include "host/script/verifications.h"
#include "host/script/windowlist.h"
#include "host/staticserver.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/wrapperconfig.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace Ostrel {
class GlobalMethod;
}

namespace Ostrel::WebWrapper {
class HTML_Document;
}

namespace Ostrel::Host {

struct SessionOptions
{
    BrowserOptions browser;
    /// A folder that is served on the loopback address while the session lasts; empty for none.
    QString servedDirectory;
    /// How long a dialog may stay open that nobody answers and no statement waits for; 0 for ever.
    int dialogLimitMs = DialogAnswers::dismissalMs;
};

/// The address that a user means by a text: "http://" stands in front where no scheme does.
QString completeAddress(const QString &address);

/// A picture as reports hold it.
QByteArray pngOf(const QImage &image);

/// Registers the classes and functions of the object model with the framework, once in a process.
void registerObjectModel();

/// One browser under test. Its script functions exist as long as it does; at most one session at a time.
class TestSession : public QObject
{
    Q_OBJECT

public:
    /// Starts the browser and opens its first page. `results` hears what scripts report; it is not owned and
    /// must outlive the session.
    static FunctionCallResult<std::unique_ptr<TestSession>> start(
        const SessionOptions &options, ResultSink &results);
    /// The same for sessions in which no script runs, so that there is nothing to hear.
    static FunctionCallResult<std::unique_ptr<TestSession>> start(const SessionOptions &options);
    ~TestSession() override;

    Browser *browser() const { return m_browser.get(); }

    /// What the pages of the session have to say.
    PageChannel *channel() { return &m_channel; }

    /// Sets a variable of the page script in all pages, those that open later included.
    FunctionCallResult<void> setPageVariable(const QString &name, const QJsonValue &value);

    /// From the next documents on the pages send their events in a way that does not slow them down. Costs
    /// the browser some memory for what pages write to its console, so only a recording does it.
    void carryEventsQuickly();

    /// The windows under test.
    WindowList *windows() { return &m_windows; }
    Lookup *lookup() { return &m_lookup; }
    DialogAnswers *dialogs() { return &m_dialogs; }

    /// The page that scripts talk to: the one in which something was found last; null when none is open.
    BrowserPage *activePage() const { return m_windows.active(); }

    /// Where the served folder is reached; an error when none is served.
    FunctionCallResult<QString> serverAddress() const;

    /// Opens an address in the active page and waits until it has loaded.
    FunctionCallResult<void> open(const QString &address);

    /// Ends the browser; calls that wait for it end with an error. May be called at any time.
    void stop();

Q_SIGNALS:
    /// The session was ended by stop().
    void stopped();

private:
    TestSession(const SessionOptions &options, ResultSink &results);

    FunctionCallResult<void> launch(const SessionOptions &options);
    /// Whether the first document of a tab is there when the tab is prepared.
    enum class Begun { NotYet, Already };
    /// An error tells that the payload does not load; it can only be seen where the document has begun.
    FunctionCallResult<void> preparePage(BrowserPage *page, Begun begun);
    FunctionCallResult<void> inject(BrowserPage *page, Begun begun);
    void registerFunctions();
    void registerLookupFunctions();

    FunctionCallResult<WebWrapper::HTML_Document *> activeDocument() const;
    FunctionCallResult<AnyValue> evaluateInPage(const QString &code) const;
    FunctionCallResult<void> saveScreenshot(const QString &fileName) const;
    FunctionCallResult<void> snooze(double seconds) const;

    ResultSink &m_results;
    WebWrapper::FileSystemBasedConfig m_config;
    PageChannel m_channel;
    ChannelAddress m_channelAddress;
    std::unique_ptr<StaticServer> m_server;
    std::unique_ptr<Browser> m_browser;
    Injection m_injection;
    bool m_carriesQuickly = false;
    WindowList m_windows;
    Lookup m_lookup{&m_windows};
    LookupNotes m_lookupNotes;
    Replay m_replay{&m_windows, &m_lookup};
    DialogAnswers m_dialogs{[this](const QString &line) { m_results.logged(line); }};
    EventHandlers m_eventHandlers{m_channel};
    Verifications m_verifications{m_results};
    ProtocolDevices m_devices{[this] { return activePage(); }};
    std::vector<GlobalMethod *> m_functions;
};

} // namespace Ostrel::Host
