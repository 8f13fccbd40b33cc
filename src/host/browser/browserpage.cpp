#include "host/browser/browserpage.h"

#include "host/browser/evaluation.h"
#include "host/browser/listfolding.h"
#include "host/browser/navigation.h"
#include "host/inseconds.h"
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/formelements.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

// The browser ends a script at its limit by itself; the host waits this much longer for it to say so.
constexpr int answerGraceMs = 1000;
constexpr int errorPageLimitMs = 2000;
// Each wait stands on the stack of the one before it.
constexpr int deepestNesting = 50;
// A browser compiles a script of up to so many units sooner than one could look for a shorter one.
constexpr qsizetype shortScript = 64 * 1024;

// What a script holds may be the widget around the field, or its label. Where there is no field, the element
// itself is left to be refused.
const QString uploadFieldOf = uR"((function (element) {
    function isField(node) { return node && node.tagName === 'INPUT' && node.type === 'file'; }
    function inside(root) { return root && root.querySelector && root.querySelector('input[type=file]'); }
    return [element, element.control, inside(element), inside(element.shadowRoot)].find(isField) || element;
})(%1))"_s;

} // namespace

BrowserPage::BrowserPage(Connection *connection, const QString &sessionId, const QString &targetId)
    : m_connection(connection), m_session(sessionId), m_target(targetId), m_frame(targetId),
      m_dialogPolicy(std::make_shared<ReportingDialogPolicy>())
{
    listen();
    m_connection->send(m_session, u"Page.enable"_s);
    m_connection->send(m_session, u"Inspector.enable"_s);
    m_connection->send(m_session, u"Page.setLifecycleEventsEnabled"_s, {{u"enabled"_s, true}});
    // The payload is evaluated and reaches its channel on pages that forbid both to their own scripts.
    m_connection->send(m_session, u"Page.setBypassCSP"_s, {{u"enabled"_s, true}});
    // A tab that runs already has shown its document before anybody listened.
    m_connection->send(m_session, u"Page.getFrameTree"_s, {}, [this](const CommandResult &tree) {
        if (!tree.failed() && m_document.isEmpty())
            noteNavigation(tree.value.value("frameTree"_L1).toObject().value("frame"_L1).toObject());
    });
}

BrowserPage::~BrowserPage() = default;

void BrowserPage::listen()
{
    m_connection->listen(m_session, u"Page.frameNavigated"_s, this,
        [this](const QJsonObject &event) { noteNavigation(event.value("frame"_L1).toObject()); });
    // A page that moves within its document shows another address, by which contexts are named.
    m_connection->listen(
        m_session, u"Page.navigatedWithinDocument"_s, this, [this](const QJsonObject &event) {
            if (event.value("frameId"_L1) == m_frame)
                m_address = event.value("url"_L1).toString();
        });
    m_connection->listen(m_session, u"Page.lifecycleEvent"_s, this, [this](const QJsonObject &event) {
        if (event.value("name"_L1) != "load"_L1 || event.value("frameId"_L1) != m_frame)
            return;
        m_loadedDocument = event.value("loaderId"_L1).toString();
        Q_EMIT documentLoaded();
    });
    m_connection->listen(m_session, u"Page.frameStartedLoading"_s, this,
        [this](const QJsonObject &event) { m_loadingFrames.insert(event.value("frameId"_L1).toString()); });
    for (const QString &end : {u"Page.frameStoppedLoading"_s, u"Page.frameDetached"_s}) {
        m_connection->listen(m_session, end, this,
            [this](const QJsonObject &event) { noteLoaded(event.value("frameId"_L1).toString()); });
    }
    m_connection->listen(m_session, u"Page.javascriptDialogOpening"_s, this,
        [this](const QJsonObject &event) { noteDialog(event); });
    m_connection->listen(
        m_session, u"Page.javascriptDialogClosed"_s, this, [this](const QJsonObject &) { m_dialog.reset(); });
    m_connection->listen(m_session, u"Inspector.targetCrashed"_s, this, [this](const QJsonObject &) {
        m_crashed = true;
        endWaits(WaitState::PageGone);
        Q_EMIT documentGone({});
    });
}

void BrowserPage::noteNavigation(const QJsonObject &frame)
{
    if (frame.contains("parentId"_L1))
        return;
    m_crashed = false;
    m_dialog.reset();
    m_frame = frame.value("id"_L1).toString();
    m_document = frame.value("loaderId"_L1).toString();
    m_address = frame.value("url"_L1).toString() + frame.value("urlFragment"_L1).toString();
    ++m_navigations;
    injectIntoKeptWindow();
    Q_EMIT documentGone(m_address);
}

void BrowserPage::noteLoaded(const QString &frame)
{
    if (m_loadingFrames.remove(frame) && m_loadingFrames.isEmpty())
        Q_EMIT loadingEnded();
}

bool BrowserPage::waitUntilLoaded(int limitMs)
{
    if (!isLoading())
        return true;
    AnswerWait wait(m_waits);
    const auto connection
        = connect(this, &BrowserPage::loadingEnded, this, [&wait] { wait.end(WaitState::Answered); });
    wait.run(limitMs);
    disconnect(connection);
    return !isLoading();
}

// Only the first document of a window that was opened by a page can find a global object that is older than
// itself, or nobody who has prepared anything.
void BrowserPage::injectIntoKeptWindow()
{
    if (m_navigations > 2 || m_injection.payload.isEmpty())
        return;
    m_connection->send(m_session, u"Runtime.evaluate"_s,
        {{u"expression"_s, Injection::isMissingExpression()}}, [this](const CommandResult &answer) {
            if (answer.value.value("result"_L1).toObject().value("value"_L1).toBool())
                m_connection->send(
                    m_session, u"Runtime.evaluate"_s, {{u"expression"_s, m_injection.repeatedScript()}});
        });
}

void BrowserPage::noteDialog(const QJsonObject &event)
{
    m_dialog = Dialog{dialogKindFromText(event.value("type"_L1).toString()),
        event.value("message"_L1).toString(), event.value("defaultPrompt"_L1).toString()};
    const Dialog opened = *m_dialog;
    if (const std::optional<DialogAnswer> answer = m_dialogPolicy->opened(opened))
        answerDialog(*answer);
    else
        endWaits(WaitState::BlockedByDialog);
    Q_EMIT dialogOpened(opened);
}

void BrowserPage::setDialogPolicy(std::shared_ptr<DialogPolicy> policy)
{
    m_dialogPolicy = policy ? std::move(policy) : std::make_shared<ReportingDialogPolicy>();
}

void BrowserPage::answerDialog(const DialogAnswer &answer) const
{
    if (!m_dialog)
        return;
    QJsonObject parameters{{u"accept"_s, answer.accept}};
    if (m_dialog->kind == DialogKind::Prompt && answer.accept)
        parameters.insert("promptText"_L1, answer.text);
    m_dialog.reset();
    m_connection->send(m_session, u"Page.handleJavaScriptDialog"_s, parameters);
}

void BrowserPage::dismissReportedDialog() const
{
    answerDialog({false, {}});
}

FunctionCallResult<void> BrowserPage::setInjection(const Injection &injection, bool alsoNow)
{
    m_injection = injection;
    if (!m_injectionId.isEmpty()) {
        m_connection->send(
            m_session, u"Page.removeScriptToEvaluateOnNewDocument"_s, {{u"identifier"_s, m_injectionId}});
    }
    // Not waited for: a tab that the browser holds back answers late, and commands are carried out in order.
    m_connection->send(m_session, u"Page.addScriptToEvaluateOnNewDocument"_s,
        {{u"source"_s, injection.newDocumentScript()}}, [this](const CommandResult &added) {
            if (!added.failed())
                m_injectionId = added.value.value("identifier"_L1).toString();
        });
    if (!alsoNow)
        return {};
    const EvalResult evaluated = evaluateJavaScript(injection.script(), 0);
    if (evaluated.failed)
        return Failure(u"Could not bring the payload into the page: %1"_s.arg(evaluated.result));
    return {};
}

FunctionCallResult<void> BrowserPage::setPageVariable(const QString &name, const QJsonValue &value)
{
    Injection injection = m_injection;
    injection.setVariable(name, value);
    if (const auto added = setInjection(injection, false); added.failed())
        return added;
    const EvalResult evaluated = evaluateJavaScript(assignment({name, value}), 0);
    if (evaluated.failed)
        return Failure(u"Could not set the page variable '%1': %2"_s.arg(name, evaluated.result));
    return {};
}

void BrowserPage::resume()
{
    m_connection->send(m_session, u"Runtime.runIfWaitingForDebugger"_s);
}

bool BrowserPage::isPageAvailable() const
{
    return m_gone == WaitState::Waiting && !m_crashed && m_connection->isOpen();
}

void BrowserPage::setGone(WaitState state)
{
    if (m_gone != WaitState::Waiting)
        return;
    m_gone = state;
    m_dialog.reset();
    m_loadingFrames.clear();
    m_connection->endSession(m_session, describe(state, 0));
    endWaits(state);
    Q_EMIT documentGone({});
    Q_EMIT closed();
}

BrowserPage::EvalResult BrowserPage::evaluateJavaScript(const QString &script, unsigned int timeoutMs) const
{
    const int limitMs = limitOr(int(timeoutMs));
    const QString document = m_document;
    const QString sent = script.size() > shortScript ? foldedList(script).value_or(script) : script;
    const Answer answer
        = await(u"Runtime.evaluate"_s, evaluationParameters(sent, limitMs), limitMs, scriptParts(sent));
    if (const std::optional<EvalResult> failed = failureOf(answer, document, limitMs))
        return *failed;
    const std::optional<LongValue> longValue = readLongValue(answer.result.value);
    return longValue ? fetch(*longValue, document, limitMs) : readEvaluation(answer.result.value);
}

/// Fetches what the document has for the host.
BrowserPage::EvalResult BrowserPage::fetch(const LongValue &value, const QString &document, int limitMs) const
{
    const auto text = std::make_shared<QString>();
    text->reserve(value.size);
    const auto append = [text](const CommandResult &part) {
        if (!part.failed())
            *text += readEvaluation(part.value).result;
    };
    QList<CommandParameters> parts = valueParts(value, limitMs);
    CommandParameters last = parts.takeLast();
    for (CommandParameters &part : parts)
        m_connection->send(m_session, u"Runtime.evaluate"_s, std::move(part), append);
    const Answer answer = await(u"Runtime.evaluate"_s, std::move(last), limitMs);
    if (const std::optional<EvalResult> failed = failureOf(answer, document, limitMs))
        return *failed;
    append(answer.result);
    if (text->size() != value.size)
        return {u"A part of the value has not arrived"_s, true, false};
    return {*text, false, false};
}

/// Why an evaluation has no value of the document that was asked.
std::optional<BrowserPage::EvalResult> BrowserPage::failureOf(
    const Answer &answer, const QString &document, int limitMs) const
{
    if (answer.state != WaitState::Answered)
        return EvalResult{describe(answer.state, limitMs), true, false};
    // A document that came meanwhile has answered what was asked of another one: its references mean nothing
    // here.
    if (!document.isEmpty() && answer.document != document)
        return EvalResult{describe(WaitState::NavigatedAway, limitMs), true, false};
    if (answer.result.failed())
        return EvalResult{answer.result.error, true, false};
    return {};
}

CommandResult BrowserPage::call(const QString &method, const QJsonObject &parameters, int limitMs) const
{
    const int limit = limitOr(limitMs);
    const Answer answer = await(method, parameters, limit);
    if (answer.state != WaitState::Answered)
        return Failure(describe(answer.state, limit));
    return answer.result;
}

/// Commands `before` it are sent in front of the one that is waited for.
BrowserPage::Answer BrowserPage::await(const QString &method, CommandParameters parameters, int limitMs,
    const QList<CommandParameters> &before) const
{
    if (!m_refusal.isEmpty())
        return {WaitState::Answered, Failure(m_refusal), m_document};
    if (m_waits.size() >= deepestNesting)
        return {
            WaitState::Answered, Failure(u"Too many evaluations wait for the page already"_s), m_document};
    Answer answer{obstacle(), {}, {}};
    if (answer.state == WaitState::Waiting) {
        for (const CommandParameters &earlier : before)
            m_connection->send(m_session, method, earlier);
        AnswerWait wait(m_waits);
        const auto reply = [&](const CommandResult &result) {
            answer.result = result;
            answer.document = m_document;
            wait.end(stateOf(result));
        };
        const int id = m_connection->send(m_session, method, std::move(parameters), reply);
        answer.state = wait.run(limitMs + answerGraceMs);
        m_connection->giveUp(id, describe(answer.state, limitMs));
    }
    if (answer.state == WaitState::BlockedByDialog && m_dialog) {
        m_reportedDialog = *m_dialog;
        dismissReportedDialog();
    }
    return answer;
}

// What makes it useless to ask the page.
WaitState BrowserPage::obstacle() const
{
    if (m_gone != WaitState::Waiting)
        return m_gone;
    if (!m_connection->isOpen())
        return WaitState::BrowserLost;
    if (m_dialog)
        return WaitState::BlockedByDialog;
    return WaitState::Waiting;
}

// The browser tells by these texts why a page did not answer.
WaitState BrowserPage::stateOf(const CommandResult &result) const
{
    if (!result.failed())
        return WaitState::Answered;
    if (!m_connection->isOpen())
        return WaitState::BrowserLost;
    if (m_gone != WaitState::Waiting)
        return m_gone;
    if (result.error.contains("Execution was terminated"_L1))
        return WaitState::TimedOut;
    if (result.error.contains("navigated or closed"_L1) || result.error.contains("context was destroyed"_L1))
        return m_crashed ? WaitState::PageGone : WaitState::NavigatedAway;
    if (result.error.contains("Session with given id not found"_L1)
        || result.error.contains("Target crashed"_L1) || result.error.contains("Target closed"_L1))
        return WaitState::PageGone;
    return WaitState::Answered;
}

QString BrowserPage::describe(WaitState state, int limitMs) const
{
    switch (state) {
    case WaitState::Waiting:
    case WaitState::Answered:
        return {};
    case WaitState::BlockedByDialog:
        return u"The page is blocked by %1"_s.arg(describeDialog(m_reportedDialog));
    case WaitState::NavigatedAway:
        return u"The page navigated away while the script was running"_s;
    case WaitState::TimedOut:
        return u"The page did not answer within %1"_s.arg(inSeconds(limitMs));
    case WaitState::PageGone:
        return u"The page was closed or has crashed"_s;
    case WaitState::BrowserLost:
        return u"The browser has closed or crashed"_s;
    }
    Q_UNREACHABLE();
}

void BrowserPage::endWaits(WaitState state) const
{
    for (AnswerWait *wait : std::as_const(m_waits))
        wait->end(state);
}

FunctionCallResult<void> BrowserPage::navigate(const QString &address, int limitMs)
{
    const int limit = limitOr(limitMs);
    QElapsedTimer elapsed;
    elapsed.start();
    const Answer answer = await(u"Page.navigate"_s, {{u"url"_s, address}}, limit);
    if (answer.state == WaitState::TimedOut) {
        m_connection->send(m_session, u"Page.stopLoading"_s);
        return Failure(u"Could not open '%1': no answer within %2"_s.arg(address, inSeconds(limit)));
    }
    if (answer.state != WaitState::Answered)
        return Failure(u"Could not open '%1': %2"_s.arg(address, describe(answer.state, limit)));
    if (answer.result.failed())
        return Failure(u"Could not open '%1': %2"_s.arg(address, answer.result.error));

    const QString code = answer.result.value.value("errorText"_L1).toString();
    const QString document = answer.result.value.value("loaderId"_L1).toString();
    if (!code.isEmpty()) {
        // The browser is about to show a page about the error, which must not get into the way of what comes
        // next.
        if (code != "net::ERR_ABORTED"_L1)
            static_cast<void>(waitForLoad(document, address, errorPageLimitMs));
        return Failure(describeNavigationError(address, code));
    }
    if (document.isEmpty()) // a move within the document that is there
        return {};
    return waitForLoad(document, address, qMax(1, limit - int(elapsed.elapsed())));
}

// A document may send the browser on to another one before it has loaded, so what counts is that the one
// which is there after it was reached has loaded.
FunctionCallResult<void> BrowserPage::waitForLoad(
    const QString &document, const QString &address, int limitMs)
{
    AnswerWait wait(m_waits);
    bool reached = m_document == document;
    const auto check = [&] {
        reached = reached || m_document == document;
        if (reached && m_loadedDocument == m_document)
            wait.end(WaitState::Answered);
    };
    QObject listener;
    connect(this, &BrowserPage::documentGone, &listener, check);
    connect(this, &BrowserPage::documentLoaded, &listener, check);
    check();
    if (m_dialog)
        wait.end(WaitState::BlockedByDialog);

    const WaitState state = wait.run(limitMs);
    if (state == WaitState::Answered)
        return {};
    if (state == WaitState::TimedOut) {
        m_connection->send(m_session, u"Page.stopLoading"_s);
        return Failure(u"'%1' did not finish loading in time"_s.arg(address));
    }
    if (state == WaitState::BlockedByDialog && m_dialog) {
        m_reportedDialog = *m_dialog;
        dismissReportedDialog();
    }
    return Failure(u"Could not open '%1': %2"_s.arg(address, describe(state, limitMs)));
}

FunctionCallResult<void> BrowserPage::close()
{
    if (m_gone != WaitState::Waiting)
        return {};
    AnswerWait wait(m_waits);
    // Asked of the browser and not of the page, which may be busy.
    m_connection->send({}, u"Target.closeTarget"_s, {{u"targetId"_s, m_target}});
    wait.run(m_defaultLimitMs);
    if (m_gone == WaitState::Waiting)
        return Failure(u"Could not close the page: %1"_s.arg(describe(wait.state(), m_defaultLimitMs)));
    return {};
}

BrowserPage::HiddenScrollBars::HiddenScrollBars(const BrowserPage &page) : m_page(page)
{
    // A browser that refuses takes pictures all the same, some pixels off.
    if (page.m_scrollBarHiders++ == 0)
        static_cast<void>(page.call(u"Emulation.setScrollbarsHidden"_s, {{u"hidden"_s, true}}));
}

BrowserPage::HiddenScrollBars::~HiddenScrollBars()
{
    if (--m_page.m_scrollBarHiders == 0 && m_page.isPageAvailable())
        static_cast<void>(m_page.call(u"Emulation.setScrollbarsHidden"_s, {{u"hidden"_s, false}}));
}

BrowserPage::KeptPicture::KeptPicture(const BrowserPage &page) : m_page(page), m_scrollBars(page)
{
    ++page.m_pictureKeepers;
}

BrowserPage::KeptPicture::~KeptPicture()
{
    if (--m_page.m_pictureKeepers == 0)
        m_page.m_keptPicture.reset();
}

FunctionCallResult<QImage> BrowserPage::grabPageScreenshot() const
{
    if (m_pictureKeepers == 0)
        return takePicture();
    if (!m_keptPicture)
        m_keptPicture = takePicture();
    return *m_keptPicture;
}

FunctionCallResult<QImage> BrowserPage::takePicture() const
{
    const HiddenScrollBars hidden(*this);
    const CommandResult metrics = call(u"Page.getLayoutMetrics"_s);
    if (metrics.failed())
        return Failure(u"Error measuring the page for a screenshot: %1"_s.arg(metrics.error));
    // The clip is taken from the page as the tab's zoom has drawn it.
    const double zoom = metrics.value.value("cssVisualViewport"_L1).toObject().value("zoom"_L1).toDouble(1.0);
    const QJsonObject content = metrics.value.value("cssContentSize"_L1).toObject();
    const auto zoomed = [&](QLatin1StringView side) { return content.value(side).toDouble() * zoom; };
    const QJsonObject clip{{u"x"_s, zoomed("x"_L1)}, {u"y"_s, zoomed("y"_L1)},
        {u"width"_s, zoomed("width"_L1)}, {u"height"_s, zoomed("height"_L1)}, {u"scale"_s, 1}};
    const CommandResult shot = call(u"Page.captureScreenshot"_s,
        {{u"format"_s, u"png"_s}, {u"captureBeyondViewport"_s, true}, {u"clip"_s, clip}});
    if (shot.failed())
        return Failure(u"Error taking a screenshot of the page: %1"_s.arg(shot.error));
    // A long page makes a large picture, and it comes from our own browser.
    QImageReader::setAllocationLimit(0);
    const QImage image
        = QImage::fromData(QByteArray::fromBase64(shot.value.value("data"_L1).toString().toLatin1()), "PNG");
    if (image.isNull())
        return Failure(u"Error taking a screenshot of the page: the browser sent no picture"_s);
    return image;
}

FunctionCallResult<void> BrowserPage::setFileInputValue(WebWrapper::HTML_TextBase *field, const QString &path)
{
    return setUploadFile(field->jsReference(), path);
}

FunctionCallResult<void> BrowserPage::setCustomFileInputValue(
    WebWrapper::HTML_CustomText *field, const QString &path)
{
    return setUploadFile(field->jsReference(), path);
}

FunctionCallResult<void> BrowserPage::setUploadFile(const QString &reference, const QString &path) const
{
    const QFileInfo file(path);
    if (!file.exists())
        return Failure(u"The file '%1' to upload does not exist"_s.arg(path));
    const CommandResult found
        = call(u"Runtime.evaluate"_s, {{u"expression"_s, uploadFieldOf.arg(reference)}});
    if (found.failed())
        return Failure(u"Could not find the upload field: %1"_s.arg(found.error));
    const QString object = found.value.value("result"_L1).toObject().value("objectId"_L1).toString();
    if (object.isEmpty() || found.value.contains("exceptionDetails"_L1))
        return Failure(u"Could not find the upload field: '%1' is no element of the page"_s.arg(reference));
    const CommandResult set = call(u"DOM.setFileInputFiles"_s,
        {{u"objectId"_s, object}, {u"files"_s, QJsonArray{file.absoluteFilePath()}}});
    m_connection->send(m_session, u"Runtime.releaseObject"_s, {{u"objectId"_s, object}});
    if (set.failed())
        return Failure(u"The element is not an upload field: %1"_s.arg(set.error));
    return {};
}

BrowserPage::Refusal::Refusal(const BrowserPage &page, const QString &reason)
    : m_page(page), m_outer(std::exchange(page.m_refusal, reason))
{
}

BrowserPage::Refusal::~Refusal()
{
    m_page.m_refusal = m_outer;
}

} // namespace Ostrel::Host
