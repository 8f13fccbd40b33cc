// Browser: one browser program that the host has started, and its tabs.
#pragma once

#include "host/browser/answerwait.h"
#include "host/browser/browserpage.h"
#include "host/browser/browserprocess.h"
#include "host/browser/connection.h"

#include <QObject>
#include <QSize>

#include <memory>
#include <vector>

namespace Ostrel::Host {

struct BrowserOptions
{
    QString executable; ///< empty: see findBrowser()
    bool headless = true;
    QSize windowSize{1280, 1024};
    QStringList extraArguments; ///< come last, so that they win
    int startLimitMs = 20000;
    int evaluationLimitMs = BrowserPage::defaultLimitMs; ///< of an evaluation that names no limit
};

/// The arguments that a browser is started with, but for its profile and its pipe. Nothing in them makes it
/// fetch anything from the net by itself.
QStringList browserArguments(const BrowserOptions &options, bool asRoot);

/// Owns the process, the connection and every page that was ever opened. Needs a QCoreApplication; lives on
/// one thread. A browser whose host dies notices its closed pipe and ends by itself.
class Browser : public QObject
{
    Q_OBJECT

public:
    /// Finds and starts a browser and waits until it answers.
    static FunctionCallResult<std::unique_ptr<Browser>> start(const BrowserOptions &options);

    /// For tests: a browser that somebody else has started.
    Browser(std::unique_ptr<Transport> transport, const BrowserOptions &options);
    ~Browser() override;

    /// Asks the browser who it is and follows its tabs. start() has done that.
    FunctionCallResult<void> connectToTabs();

    /// Opens a new tab with an empty page. The first one is the tab that the browser starts with.
    FunctionCallResult<BrowserPage *> openPage();

    /// The tabs that are there now, in the order in which they were opened.
    QList<BrowserPage *> pages() const;

    /// Ends the browser and removes its profile. May be called at any time, also twice or from a signal
    /// handler's event; waits of its pages end at once.
    void stop();

    bool isRunning() const { return m_connection && m_connection->isOpen(); }
    QString version() const { return m_version; } ///< "Chrome/120.0.6099.109"
    int majorVersion() const;
    qint64 processId() const { return m_process ? m_process->processId() : 0; }
    QString profilePath() const { return m_process ? m_process->profilePath() : QString(); }

Q_SIGNALS:
    /// A tab is there, opened by the host or by a page; its first document has not begun. What it must find,
    /// such as the payload, is to be set in a direct connection.
    void pageOpened(Ostrel::Host::BrowserPage *page);
    void pageClosed(Ostrel::Host::BrowserPage *page);

    /// The browser ended without being asked to. `reason` tells what is known.
    void lost(const QString &reason);

private:
    CommandResult call(const QString &method, const QJsonObject &parameters = {});
    FunctionCallResult<BrowserPage *> createPage();
    void noteAttached(const QJsonObject &event);
    void noteDetached(const QString &sessionId);
    void noteLost();
    BrowserPage *pageOf(const QString &targetId) const;

    BrowserOptions m_options;
    std::unique_ptr<BrowserProcess> m_process;
    std::unique_ptr<Connection> m_connection;
    std::vector<std::unique_ptr<BrowserPage>> m_pages; ///< closed ones too: wrappers may still point to them
    BrowserPage *m_startPage = nullptr; ///< the tab that the browser starts with, until it is given out
    QList<AnswerWait *> m_waits;
    QString m_version;
    bool m_stopping = false;
};

} // namespace Ostrel::Host
