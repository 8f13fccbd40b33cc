#include "host/script/testsession.h"

#include "host/channel/bindingcarrier.h"
#include "host/channel/fetchcarrier.h"
#include "host/report/reportfile.h"
#include "host/script/elementvalue.h"
#include "ostrelhook/globalfunction.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/jsobject.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/replay.h"
#include "wrappers/web/sharedfunctions.h"
#include "wrappers/web/webobjectdelegate.h"
#include "wrappers/web/webtopleveldelegate.h"
#include "wrappers/web/webutilities.h"

#include <QBuffer>
#include <QEventLoop>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QTimer>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

FunctionCallResult<SharedPtr<Object>> whenReady(
    const SharedPtr<Object> &object, const FunctionCallResult<void> &ready)
{
    if (ready.failed())
        return Failure(ready.error);
    return object;
}

/// Addresses that name no server: the text behind the scheme is all there is.
bool hasOwnContent(const QString &address)
{
    return address.startsWith("about:"_L1) || address.startsWith("data:"_L1)
        || address.startsWith("blob:"_L1);
}

} // namespace

QString completeAddress(const QString &address)
{
    return hasOwnContent(address) ? address : addSchemeIfMissing(address);
}

QByteArray pngOf(const QImage &image)
{
    QBuffer png;
    image.save(&png, "PNG");
    return png.data();
}

void registerObjectModel()
{
    static const bool registered = [] {
        createWebObjectClasses();
        new JsObjectClass(Inspector::self()->globalNamespace());
        new ApplicationEventDelegate;
        setupSharedObjectModelFunctions();
        registerToplevels();
        return true;
    }();
    Q_UNUSED(registered)
}

FunctionCallResult<std::unique_ptr<TestSession>> TestSession::start(
    const SessionOptions &options, ResultSink &results)
{
    registerObjectModel();
    std::unique_ptr<TestSession> session(new TestSession(options, results));
    const FunctionCallResult<void> launched = session->launch(options);
    if (launched.failed())
        return Failure(launched.error);
    return session;
}

FunctionCallResult<std::unique_ptr<TestSession>> TestSession::start(const SessionOptions &options)
{
    static ResultSink nobody;
    return start(options, nobody);
}

TestSession::TestSession(const SessionOptions &options, ResultSink &results)
    : m_results(results), m_channelAddress(FetchCarrier::makeAddress())
{
    if (!options.servedDirectory.isEmpty())
        m_server = std::make_unique<StaticServer>(options.servedDirectory);
    connect(&m_channel, &PageChannel::debugLineLogged, this,
        [](const QString &line) { PROBELOG_TRACE("WebWrapper", line); });
    // A recorder and a picker listen for themselves, and pages report no lookups to them.
    connect(&m_channel, &PageChannel::eventLogged, this, [this](const QString &text) {
        if (!Inspector::self()->isRecording() && !Inspector::self()->isPicking())
            m_lookupNotes.logEvent(text);
    });
    m_dialogs.setDismissalLimit(options.dialogLimitMs);
    m_dialogs.attend(m_channel);
    registerFunctions();
}

TestSession::~TestSession()
{
    for (const GlobalMethod *method : m_functions)
        Inspector::self()->globalClass()->removeMethod(method);
    HTMLObjectHierarchyDelegate::registered()->invalidateAllReferencedObjects();
}

FunctionCallResult<void> TestSession::launch(const SessionOptions &options)
{
    if (m_server && (!QFileInfo(options.servedDirectory).isDir() || !m_server->isListening()))
        return Failure(u"Cannot serve the folder '%1'."_s.arg(options.servedDirectory));

    FunctionCallResult<std::unique_ptr<Browser>> browser = Browser::start(options.browser);
    if (browser.failed())
        return Failure(browser.error);
    m_browser = std::move(browser.value);
    m_injection = {getOstrelJsNamespaceInitCode(),
        pageVariables(m_config, {m_browser->majorVersion(), m_channelAddress.portText()}),
        getJSCode(m_config)};
    // A tab that opens later is held back until it is prepared; the one that is there has begun already.
    connect(
        m_browser.get(), &Browser::pageOpened, this,
        [this](BrowserPage *page) { static_cast<void>(preparePage(page, Begun::NotYet)); },
        Qt::DirectConnection);
    for (BrowserPage *page : m_browser->pages()) {
        const FunctionCallResult<void> prepared = preparePage(page, Begun::Already);
        if (prepared.failed())
            return Failure(prepared.error);
    }

    const FunctionCallResult<BrowserPage *> page = m_browser->openPage();
    if (page.failed())
        return Failure(page.error);
    return {};
}

FunctionCallResult<void> TestSession::preparePage(BrowserPage *page, Begun begun)
{
    page->setConfig(&m_config);
    m_windows.add(page);
    m_dialogs.attend(page);
    m_eventHandlers.attend(page);
    auto *carrier = new FetchCarrier(page, &m_channel, m_channelAddress);
    carrier->setParent(page);
    if (m_carriesQuickly)
        new BindingCarrier(page, &m_channel, m_channelAddress);
    return inject(page, begun);
}

FunctionCallResult<void> TestSession::inject(BrowserPage *page, Begun begun)
{
    Injection injection = m_injection;
    injection.setVariable(u"window.top.__ostrel__browsertabid"_s, page->targetId());
    return page->setInjection(injection, begun == Begun::Already);
}

void TestSession::carryEventsQuickly()
{
    m_carriesQuickly = true;
    m_injection.companion = BindingCarrier::pageScript();
    for (BrowserPage *page : m_browser->pages()) {
        new BindingCarrier(page, &m_channel, m_channelAddress);
        static_cast<void>(inject(page, Begun::NotYet));
    }
}

FunctionCallResult<void> TestSession::setPageVariable(const QString &name, const QJsonValue &value)
{
    m_injection.setVariable(name, value);
    for (BrowserPage *page : m_browser->pages()) {
        const FunctionCallResult<void> set = page->setPageVariable(name, value);
        if (set.failed())
            return set;
    }
    return {};
}

void TestSession::stop()
{
    m_lookup.stop();
    if (m_browser)
        m_browser->stop();
    Q_EMIT stopped();
}

void TestSession::registerFunctions()
{
    const auto add = [this](const char *name, std::initializer_list<const char *> parameters, auto function) {
        m_functions.push_back(addGlobalFunction(name, parameters, function));
    };
    add("startBrowser", {"url"}, [this](const QString &url) { return open(url); });
    add("loadUrl", {"url"}, [this](const QString &url) { return open(url); });
    add("activeDocument", {}, [this] { return activeDocument(); });
    add("serverAddress", {}, [this] { return serverAddress(); });
    add("saveScreenshot", {"fileName"}, [this](const QString &name) { return saveScreenshot(name); });
    add("evaluateInPage", {"code"}, [this](const QString &code) { return evaluateInPage(code); });
    add("snooze", {"seconds"}, [this](double seconds) { return snooze(seconds); });
    add("log", {"text"}, [this](const QString &text) {
        m_results.logged(text);
        return FunctionCallResult<void>();
    });
    registerLookupFunctions();
}

void TestSession::registerLookupFunctions()
{
    const auto add = [this](const char *name, std::initializer_list<const char *> parameters, auto function) {
        m_functions.push_back(addGlobalFunction(name, parameters, function));
    };
    add("findObject", {"name"}, [this](const QString &name) { return m_lookup.find(name); });
    add("objectExists", {"name"}, [this](const QString &name) { return m_lookup.exists(name); });
    add("findAllObjects", {"name"}, [this](const QString &name) { return m_lookup.findAll(name); });
    add("waitForObject", {"name"}, [this](const QString &name) { return m_lookup.waitUntilReady(name); });
    add("waitForObject", {"object"}, [this](const SharedPtr<Object> &object) {
        return whenReady(object, m_lookup.waitUntilReady(object));
    });
    add("waitForObject", {"object", "timeoutMs"}, [this](const SharedPtr<Object> &object, int timeoutMs) {
        return whenReady(object, m_lookup.waitUntilReady(object, timeoutMs));
    });
    add("waitForObject", {"name", "timeoutMs"},
        [this](const QString &name, int timeoutMs) { return m_lookup.waitUntilReady(name, timeoutMs); });
    add("waitForObjectExists", {"name"},
        [this](const QString &name) { return m_lookup.waitUntilThere(name); });
    add("waitForObjectExists", {"name", "timeoutMs"},
        [this](const QString &name, int timeoutMs) { return m_lookup.waitUntilThere(name, timeoutMs); });
    add("waitForContextExists", {"context"},
        [this](const QString &context) { return m_lookup.waitForContext(context); });
    add("waitForContextExists", {"context", "timeoutMs"}, [this](const QString &context, int timeoutMs) {
        return m_lookup.waitForContext(context, timeoutMs);
    });
}

FunctionCallResult<void> TestSession::open(const QString &address)
{
    BrowserPage *page = activePage();
    if (!page)
        return Failure(u"Cannot open '%1': there is no open page."_s.arg(address));
    return page->navigate(completeAddress(address));
}

FunctionCallResult<HTML_Document *> TestSession::activeDocument() const
{
    BrowserPage *page = activePage();
    if (!page)
        return Failure(u"There is no open page."_s);
    const FunctionCallResult<HTML_Object *> object = documentOfContext(page);
    if (object.failed())
        return Failure(object.error);
    auto *document = dynamic_cast<HTML_Document *>(object.value);
    if (!document) {
        delete object.value;
        return Failure(u"The page has no document."_s);
    }
    return document;
}

FunctionCallResult<QString> TestSession::serverAddress() const
{
    if (!m_server)
        return Failure(u"No folder is served: start the script with --serve DIRECTORY."_s);
    return m_server->url();
}

FunctionCallResult<AnyValue> TestSession::evaluateInPage(const QString &code) const
{
    BrowserPage *page = activePage();
    if (!page)
        return Failure(u"There is no open page."_s);
    return AnyValue{retrieveJSObject(page, code)};
}

FunctionCallResult<void> TestSession::saveScreenshot(const QString &fileName) const
{
    const BrowserPage *page = activePage();
    if (!page)
        return Failure(u"There is no open page."_s);
    const FunctionCallResult<QImage> picture = page->grabPageScreenshot();
    if (picture.failed())
        return Failure(picture.error);
    QBuffer content;
    QImageWriter writer(&content, QFileInfo(fileName).suffix().toLatin1());
    if (!writer.write(picture.value))
        return Failure(u"Cannot write the screenshot '%1': %2."_s.arg(fileName, writer.errorString()));
    const FunctionCallResult<void> written = writeWhole(fileName, content.data());
    if (written.failed())
        return Failure(u"Cannot write the screenshot '%1': %2."_s.arg(fileName, written.error));
    m_results.screenshotTaken({fileName, pngOf(picture.value)});
    return {};
}

FunctionCallResult<void> TestSession::snooze(double seconds) const
{
    if (!(seconds >= 0))
        return Failure(u"Cannot wait for %1 seconds."_s.arg(seconds));
    if (!m_browser->isRunning())
        return Failure(u"The browser has closed or crashed"_s);
    // The page's events keep flowing meanwhile; a browser that ends or is ended cuts the wait short.
    QEventLoop loop;
    FunctionCallResult<void> result;
    QTimer::singleShot(std::chrono::milliseconds(qint64(seconds * 1000)), &loop, &QEventLoop::quit);
    connect(m_browser.get(), &Browser::lost, &loop, [&](const QString &reason) {
        result = Failure(reason);
        loop.quit();
    });
    connect(this, &TestSession::stopped, &loop, &QEventLoop::quit);
    loop.exec();
    return result;
}

} // namespace Ostrel::Host
