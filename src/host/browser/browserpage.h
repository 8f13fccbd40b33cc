// BrowserPage: the bridge to one tab of the browser.
#pragma once

#include "host/browser/answerwait.h"
#include "host/browser/connection.h"
#include "host/browser/dialog.h"
#include "host/browser/injection.h"
#include "wrappers/web/htmlcomponent.h"

#include <QImage>
#include <QObject>
#include <QSet>

#include <memory>
#include <optional>

namespace Ostrel::Host {

struct LongValue;

/// What browserType() gives. The wrappers give a meaning to two numbers, neither of which fits a browser that
/// is driven by its debugging protocol: 2 stands for a browser that answers property reads late, 5 for one
/// into which text has to be typed.
enum class BrowserType {
    Chromium = 0, ///< any browser of the Chromium family
};

/// One tab, living on the thread of its Browser, which owns it and keeps it until its own end, so that a
/// wrapper never points to a page that is no more. Every operation that waits runs a nested event loop; none
/// of them throws, and each ends at its limit at the latest.
class BrowserPage : public QObject, public WebWrapper::HTMLComponent
{
    Q_OBJECT

public:
    static constexpr int defaultLimitMs = 20000;

    /// Takes over a session that the browser has attached to a tab. The tab may still wait for resume().
    BrowserPage(Connection *connection, const QString &sessionId, const QString &targetId);
    ~BrowserPage() override;

    QString sessionId() const { return m_session; }
    QString targetId() const { return m_target; }
    Connection *connection() const { return m_connection; }
    QString address() const { return m_address; } ///< of the document that is there now

    /// The limit of an evaluation that names none, in milliseconds.
    void setDefaultLimit(int limitMs) { m_defaultLimitMs = limitMs; }

    /// The configuration that config() gives; stays the caller's and must outlive the page.
    void setConfig(WebWrapper::WrapperConfig *config) { m_config = config; }

    void setDialogPolicy(std::shared_ptr<DialogPolicy> policy);

    /// From now on every new document of the tab gets these texts before its own scripts. With `alsoNow` the
    /// document that is there gets them, too; it forgets its references by that.
    FunctionCallResult<void> setInjection(const Injection &injection, bool alsoNow);

    /// Sets a variable in the document that is there and in those that come.
    FunctionCallResult<void> setPageVariable(const QString &name, const QJsonValue &value);

    /// Lets a tab that the browser holds back at its start run. Everything that its first document must find
    /// has to be set before.
    void resume();

    /// Opens an address and waits until the document has loaded. 0 means the default limit.
    FunctionCallResult<void> navigate(const QString &address, int limitMs = 0);

    /// Whether the tab or a frame in it is on its way to another document.
    bool isLoading() const { return !m_loadingFrames.isEmpty(); }

    /// Waits until nothing is loading any more, `limitMs` milliseconds at the most; tells whether that was
    /// so.
    bool waitUntilLoaded(int limitMs);

    /// Closes the tab and waits until it is gone. The page is not asked whether it agrees.
    FunctionCallResult<void> close();

    /// A command of the protocol in this tab's session, waited for. 0 means the default limit.
    CommandResult call(const QString &method, const QJsonObject &parameters = {}, int limitMs = 0) const;

    /// The dialog that is open, if any.
    const std::optional<Dialog> &openDialog() const { return m_dialog; }
    void answerDialog(const DialogAnswer &answer) const;

    /// While this lives, evaluations are refused with `reason`: the page waits for the host, so that waiting
    /// for the page would lock both.
    class Refusal
    {
    public:
        Refusal(const BrowserPage &page, const QString &reason);
        ~Refusal();
        Q_DISABLE_COPY_MOVE(Refusal)

    private:
        const BrowserPage &m_page;
        QString m_outer;
    };

    /// While this lives, the tab has no scroll bars. Pictures are taken without them, and what is laid out by
    /// the width of the window then lies where the page says that it is. Nests.
    class HiddenScrollBars
    {
    public:
        explicit HiddenScrollBars(const BrowserPage &page);
        ~HiddenScrollBars();
        Q_DISABLE_COPY_MOVE(HiddenScrollBars)

    private:
        const BrowserPage &m_page;
    };

    /// While this lives, the picture of the page is grabbed once and given again at each further question: a
    /// dump cuts the picture of each element from it. Nests.
    class KeptPicture
    {
    public:
        explicit KeptPicture(const BrowserPage &page);
        ~KeptPicture();
        Q_DISABLE_COPY_MOVE(KeptPicture)

    private:
        const BrowserPage &m_page;
        HiddenScrollBars m_scrollBars;
    };

    /// The tab is gone for good; waits end with `state`. Called by the browser.
    void setGone(WaitState state);

    EvalResult evaluateJavaScript(const QString &script, unsigned int timeoutMs) const override;
    int browserType() const override { return int(BrowserType::Chromium); }
    bool isPageAvailable() const override;
    WebWrapper::WrapperConfig *config() const override { return m_config; }
    bool supportsPageScreenshot() const override { return true; }
    /// The whole document, also what lies outside the window, with the pixels of the screen: as many for a
    /// CSS pixel as the page's devicePixelRatio says, which the tab's zoom is a part of. That is why
    /// zoomFactor() is 1.
    FunctionCallResult<QImage> grabPageScreenshot() const override;
    FunctionCallResult<void> setFileInputValue(
        WebWrapper::HTML_TextBase *field, const QString &path) override;
    FunctionCallResult<void> setCustomFileInputValue(
        WebWrapper::HTML_CustomText *field, const QString &path) override;

    /// Puts a file into the upload field that `reference` (a script expression) is, labels or holds.
    FunctionCallResult<void> setUploadFile(const QString &reference, const QString &path) const;

Q_SIGNALS:
    /// The top document is gone, and with it every reference into it. `address` is that of the next one.
    void documentGone(const QString &address);
    void documentLoaded();
    void loadingEnded();
    void dialogOpened(const Ostrel::Host::Dialog &dialog);

    /// The tab is gone, by its user, its script or a crash of the browser.
    void closed();

private:
    struct Answer
    {
        WaitState state = WaitState::Waiting;
        CommandResult result;
        QString document; ///< the one that was there when the answer came
    };

    FunctionCallResult<QImage> takePicture() const;
    Answer await(const QString &method, CommandParameters parameters, int limitMs,
        const QList<CommandParameters> &before = {}) const;
    EvalResult fetch(const LongValue &value, const QString &document, int limitMs) const;
    std::optional<EvalResult> failureOf(const Answer &answer, const QString &document, int limitMs) const;
    WaitState obstacle() const;
    WaitState stateOf(const CommandResult &result) const;
    QString describe(WaitState state, int limitMs) const;
    void endWaits(WaitState state) const;
    void dismissReportedDialog() const;
    int limitOr(int limitMs) const { return limitMs > 0 ? limitMs : m_defaultLimitMs; }

    void listen();
    void noteNavigation(const QJsonObject &frame);
    void noteLoaded(const QString &frame);
    void injectIntoKeptWindow();
    void noteDialog(const QJsonObject &event);
    FunctionCallResult<void> waitForLoad(const QString &document, const QString &address, int limitMs);

    Connection *m_connection;
    QString m_session;
    QString m_target;
    QString m_address;
    QString m_frame; ///< the main frame
    QString m_document; ///< the document that the main frame shows now
    QString m_loadedDocument; ///< the last one that has loaded
    int m_defaultLimitMs = defaultLimitMs;
    WebWrapper::WrapperConfig *m_config = nullptr;
    std::shared_ptr<DialogPolicy> m_dialogPolicy;
    Injection m_injection;
    QString m_injectionId;
    WaitState m_gone = WaitState::Waiting; ///< why the page is no more, or Waiting while it is there
    QSet<QString> m_loadingFrames;
    bool m_crashed = false;
    int m_navigations = 0;
    // The bridge is const to its callers, while what it waits for and what the page shows changes all the
    // time.
    mutable QList<AnswerWait *> m_waits;
    mutable std::optional<Dialog> m_dialog;
    mutable Dialog m_reportedDialog;
    mutable QString m_refusal;
    mutable int m_scrollBarHiders = 0;
    mutable int m_pictureKeepers = 0;
    mutable std::optional<FunctionCallResult<QImage>> m_keptPicture; ///< a failure is kept, too
};

} // namespace Ostrel::Host
