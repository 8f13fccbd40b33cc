#include "host/browser/browser.h"

#include "host/inseconds.h"

#include <QJsonArray>

#include <algorithm>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

const QString browserGone = u"The browser has closed or crashed"_s;

} // namespace

QStringList browserArguments(const BrowserOptions &options, bool asRoot)
{
    QStringList arguments{
        u"--disable-quic"_s,
        u"--no-first-run"_s,
        u"--no-default-browser-check"_s,
        u"--disable-background-networking"_s,
        u"--disable-component-update"_s,
        u"--disable-sync"_s,
        // A replayed click runs in a timer, so the browser sees no user behind the windows that it opens.
        u"--disable-popup-blocking"_s,
        // Tabs that are not in front are driven, too, and their timers must keep their pace.
        u"--disable-background-timer-throttling"_s,
        u"--disable-backgrounding-occluded-windows"_s,
        u"--disable-renderer-backgrounding"_s,
        u"--window-size=%1,%2"_s.arg(options.windowSize.width()).arg(options.windowSize.height()),
    };
    if (options.headless)
        arguments << u"--headless=new"_s << u"--disable-gpu"_s;
    // The browser refuses to run as root with its sandbox. Everybody else keeps it.
    if (asRoot)
        arguments << u"--no-sandbox"_s;
    // The last one is the first page: without it the browser would fetch its start page from the net.
    return arguments + options.extraArguments + QStringList{u"about:blank"_s};
}

FunctionCallResult<std::unique_ptr<Browser>> Browser::start(const BrowserOptions &options)
{
    const FunctionCallResult<QString> executable = findBrowser(options.executable);
    if (executable.failed())
        return Failure(executable.error);

    auto process = std::make_unique<BrowserProcess>();
    auto transport = process->start(executable.value, browserArguments(options, geteuid() == 0));
    if (transport.failed())
        return Failure(transport.error);

    auto browser = std::make_unique<Browser>(std::move(transport.value), options);
    browser->m_process = std::move(process);
    const FunctionCallResult<void> connected = browser->connectToTabs();
    if (!connected.failed())
        return browser;
    // The pipe may break a moment before the process has ended and can tell why.
    if (!browser->isRunning() && browser->m_process->waitForEnd())
        return Failure(u"The browser '%1' ended while it was starting: %2"_s.arg(
            executable.value, browser->m_process->describeEnd()));
    return Failure(u"The browser '%1' did not start: %2"_s.arg(executable.value, connected.error));
}

Browser::Browser(std::unique_ptr<Transport> transport, const BrowserOptions &options)
    : m_options(options), m_connection(std::make_unique<Connection>(std::move(transport)))
{
    connect(m_connection.get(), &Connection::lost, this, &Browser::noteLost);
    m_connection->listen(
        {}, u"Target.attachedToTarget"_s, this, [this](const QJsonObject &event) { noteAttached(event); });
    m_connection->listen({}, u"Target.detachedFromTarget"_s, this,
        [this](const QJsonObject &event) { noteDetached(event.value("sessionId"_L1).toString()); });
}

Browser::~Browser()
{
    stop();
}

FunctionCallResult<void> Browser::connectToTabs()
{
    const CommandResult version = call(u"Browser.getVersion"_s);
    if (version.failed())
        return Failure(version.error);
    m_version = version.value.value("product"_L1).toString();

    // Tabs only, and each waits at its start until it has what its first document must find.
    const QJsonArray filter{QJsonObject{{u"type"_s, u"page"_s}}, QJsonObject{{u"exclude"_s, true}}};
    const CommandResult attached = call(u"Target.setAutoAttach"_s,
        {{u"autoAttach"_s, true}, {u"waitForDebuggerOnStart"_s, true}, {u"flatten"_s, true},
            {u"filter"_s, filter}});
    if (attached.failed())
        return Failure(attached.error);
    return {};
}

int Browser::majorVersion() const
{
    return m_version.section(u'/', 1).section(u'.', 0, 0).toInt();
}

CommandResult Browser::call(const QString &method, const QJsonObject &parameters)
{
    CommandResult result;
    AnswerWait wait(m_waits);
    const int id = m_connection->send({}, method, parameters, [&](const CommandResult &answer) {
        result = answer;
        wait.end(WaitState::Answered);
    });
    wait.run(m_options.startLimitMs);
    m_connection->giveUp(
        id, u"The browser did not answer within %1"_s.arg(inSeconds(m_options.startLimitMs)));
    return result;
}

FunctionCallResult<BrowserPage *> Browser::openPage()
{
    FunctionCallResult<BrowserPage *> opened = std::exchange(m_startPage, nullptr);
    if (!opened.value || !opened.value->isPageAvailable())
        opened = createPage();
    if (opened.failed())
        return Failure(u"Could not open a new page: %1"_s.arg(opened.error));
    // Commands are answered in order, so that with this answer all that was sent before is in force.
    const CommandResult settled = opened.value->call(u"Page.getFrameTree"_s, {}, m_options.startLimitMs);
    if (settled.failed())
        return Failure(u"Could not open a new page: %1"_s.arg(settled.error));
    return opened;
}

FunctionCallResult<BrowserPage *> Browser::createPage()
{
    const CommandResult created = call(u"Target.createTarget"_s, {{u"url"_s, u"about:blank"_s}});
    if (created.failed())
        return Failure(created.error);
    const QString target = created.value.value("targetId"_L1).toString();
    if (BrowserPage *page = pageOf(target))
        return page;

    // The tab is there, but the news of it still on its way.
    AnswerWait wait(m_waits);
    QObject listener;
    connect(this, &Browser::pageOpened, &listener, [&](const BrowserPage *page) {
        if (page->targetId() == target)
            wait.end(WaitState::Answered);
    });
    wait.run(m_options.startLimitMs);
    if (BrowserPage *page = pageOf(target))
        return page;
    return Failure(u"the browser did not show it in time"_s);
}

QList<BrowserPage *> Browser::pages() const
{
    QList<BrowserPage *> living;
    for (const std::unique_ptr<BrowserPage> &page : m_pages) {
        if (page->isPageAvailable())
            living.append(page.get());
    }
    return living;
}

BrowserPage *Browser::pageOf(const QString &targetId) const
{
    const auto found = std::find_if(
        m_pages.begin(), m_pages.end(), [&](const auto &page) { return page->targetId() == targetId; });
    return found != m_pages.end() ? found->get() : nullptr;
}

void Browser::noteAttached(const QJsonObject &event)
{
    const QJsonObject target = event.value("targetInfo"_L1).toObject();
    const bool isFirst = m_pages.empty();
    m_pages.push_back(std::make_unique<BrowserPage>(
        m_connection.get(), event.value("sessionId"_L1).toString(), target.value("targetId"_L1).toString()));
    BrowserPage *page = m_pages.back().get();
    page->setDefaultLimit(m_options.evaluationLimitMs);
    // Without a desktop nobody gives a window the focus, and pages would hear nothing of fields that get it.
    if (m_options.headless) {
        m_connection->send(
            page->sessionId(), u"Emulation.setFocusEmulationEnabled"_s, {{u"enabled"_s, true}});
    }
    if (isFirst)
        m_startPage = page;
    Q_EMIT pageOpened(page);
    page->resume();
}

// Who hears of a lost page may run a nested event loop in which further pages come.
void Browser::noteDetached(const QString &sessionId)
{
    const auto found = std::find_if(
        m_pages.begin(), m_pages.end(), [&](const auto &page) { return page->sessionId() == sessionId; });
    if (found == m_pages.end())
        return;
    BrowserPage *page = found->get();
    page->setGone(WaitState::PageGone);
    Q_EMIT pageClosed(page);
}

void Browser::noteLost()
{
    for (AnswerWait *wait : std::as_const(m_waits))
        wait->end(WaitState::BrowserLost);
    for (std::size_t i = 0; i < m_pages.size(); ++i)
        m_pages[i]->setGone(WaitState::BrowserLost);
    if (!m_stopping)
        Q_EMIT lost(browserGone);
}

void Browser::stop()
{
    if (std::exchange(m_stopping, true))
        return;
    if (m_connection->isOpen()) {
        m_connection->send({}, u"Browser.close"_s);
        m_connection->close(browserGone);
    }
    noteLost();
    if (m_process)
        m_process->stop();
}

} // namespace Ostrel::Host
