#include "host/record/recorder.h"

#include "host/browser/navigation.h"
#include "host/channel/bindingcarrier.h"
#include "host/record/statementtext.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/webevents.h"
#include "wrappers/web/webutilities.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// A page's text comes right behind the event; one that does not come within this time does not come at all.
constexpr int textLimitMs = 1000;
// A window that closes within this time behind an event in any window was closed by a page.
constexpr int consequenceMs = 1000;

/// The events of the user of which a page sends a text of the same name.
bool isToldByPage(const InputEvent &input)
{
    static const QStringList kinds{u"mousedown"_s, u"click"_s, u"dblclick"_s, u"keyup"_s};
    return kinds.contains(input.kind) || (input.kind == "change"_L1 && input.isTold);
}

/// A page may tell of such a key together with those that follow.
bool isTyped(const InputEvent &input)
{
    return input.isText && input.key.size() == 1;
}

/// The names of event texts that only an event of the user may cause. Those that a page extension makes up
/// are caused by presses, clicks or keys, too.
bool needsInput(const QString &event)
{
    static const QStringList others{u"alert"_s, u"confirm"_s, u"prompt"_s, u"disableFallbackWrapper"_s,
        u"enableFallbackWrapper"_s, u"unload"_s, u"clear"_s, u"pickedObject"_s, u"addUnmatchedProperty"_s,
        u"removeUnmatchedProperties"_s, u"keydown"_s};
    return !others.contains(event);
}

bool isBrowserEvent(const QString &event)
{
    static const QStringList names{
        u"mousedown"_s, u"click"_s, u"dblclick"_s, u"keyup"_s, u"touchend"_s, u"change"_s};
    return names.contains(event);
}

/// A member of an event text as the page wrote it. The last one counts.
QString rawMember(const QString &text, QLatin1StringView name)
{
    QString value;
    for (const QString &part : text.split(u'&')) {
        if (part.startsWith(name) && part.mid(name.size()).startsWith(u'='))
            value = part.mid(name.size() + 1);
    }
    return value;
}

/// Keys that do nothing by themselves.
bool isSilentKey(const QString &key)
{
    static const QStringList keys{u"Shift"_s, u"Control"_s, u"Alt"_s, u"AltGraph"_s, u"Meta"_s, u"Tab"_s,
        u"CapsLock"_s, u"NumLock"_s, u"Dead"_s, u"Unidentified"_s};
    return keys.contains(key);
}

/// What a page may leave, or close its window, because of.
bool canCauseMore(const InputEvent &input)
{
    return !input.isByPage && !input.isOfHistory && input.kind != "hover"_L1 && !isSilentKey(input.key);
}

QString inWords(OwnMove::Kind kind)
{
    switch (kind) {
    case OwnMove::Kind::Address:
        return u"opening"_s;
    case OwnMove::Kind::History:
        return u"history"_s;
    case OwnMove::Kind::Reload:
        return u"reload"_s;
    }
    Q_UNREACHABLE();
}

/// Verdicts that need nothing but the kind of the event.
struct PlainVerdict
{
    QLatin1StringView kind;
    Verdict::Kind verdict;
    const char16_t *reason; ///< of remarks: what stands in the script, with the target as %1
};

constexpr PlainVerdict plainVerdicts[] = {
    {"mouseup"_L1, Verdict::Kind::Merged, u"the press has told it"},
    {"pointerup"_L1, Verdict::Kind::Remarked,
        u"not recorded: a press on %1, which the page takes for itself"},
    {"touchend"_L1, Verdict::Kind::Merged, u"the press that the browser makes of it tells it"},
    {"tap"_L1, Verdict::Kind::Remarked, u"not recorded: a tap on %1, which the page takes for itself"},
    {"swipe"_L1, Verdict::Kind::Remarked, u"not recorded: fingers that move over %1"},
    {"contextmenu"_L1, Verdict::Kind::Merged, u"the press of the right button has told it"},
    {"keydown"_L1, Verdict::Kind::Merged, u"the release of the key tells it"},
    {"wheel"_L1, Verdict::Kind::Remarked, u"not recorded: the wheel over %1"},
    {"dragstart"_L1, Verdict::Kind::Remarked, u"not recorded: a drag of %1"},
    {"drag"_L1, Verdict::Kind::Remarked, u"not recorded: a drag of %1"},
};

} // namespace

Recorder::Recorder(TestSession *session, RecordedNames *names)
    : m_session(session), m_navigations(session->windows(),
                              [this](const QString &tab) {
                                  return m_lastInputs.contains(tab) && !m_lastInputs.value(tab).hasExpired();
                              }),
      m_logger(&m_script, session->serverAddress().value, names)
{
    static const bool once = (initWebEvents(), true);
    Q_UNUSED(once)
    Inspector::self()->setRecorderAttached(true);
    Inspector::self()->setRecording(true);
    session->carryEventsQuickly();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Recorder::handleAll);
    connect(session->channel(), &PageChannel::eventLogged, this, &Recorder::take);
    for (BrowserPage *page : session->browser()->pages())
        watch(page, false);
    connect(
        session->browser(), &Browser::pageOpened, this, [this](BrowserPage *page) { watch(page, true); },
        Qt::DirectConnection);
    connect(&m_navigations, &NavigationObserver::moved, this, &Recorder::noteMove);
}

Recorder::~Recorder()
{
    Inspector::self()->setRecording(false);
    Inspector::self()->setRecorderAttached(false);
}

FunctionCallResult<void> Recorder::start(const QString &address)
{
    const FunctionCallResult<void> set = m_session->setPageVariable(u"window.__ostrel__recording"_s, true);
    if (set.failed())
        return set;
    const QString opened = completeAddress(address);
    m_logger.recordMethodCall(opened, "startBrowser", {}, nullptr);
    Q_EMIT changed();
    m_navigations.expect(m_session->activePage(), opened);
    const CommandResult answer = m_session->activePage()->call(u"Page.navigate"_s, {{u"url"_s, opened}});
    if (answer.failed())
        return Failure(u"Could not open '%1': %2"_s.arg(opened, answer.error));
    const QString code = answer.value.value("errorText"_L1).toString();
    return code.isEmpty() ? FunctionCallResult<void>() : Failure(describeNavigationError(opened, code));
}

bool Recorder::isSettled() const
{
    const bool allTold = std::all_of(m_observers.begin(), m_observers.end(),
        [](const QPointer<InputObserver> &observer) { return !observer || observer->isSettled(); });
    return allTold && m_happenings.empty() && m_texts.empty();
}

void Recorder::finish()
{
    if (m_typedIn)
        fetchTyped();
    const QDeadlineTimer limit(textLimitMs);
    while ((m_fetching || !isSettled()) && m_session->browser()->isRunning() && !limit.hasExpired()) {
        waitForMore();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    m_finished = true;
    handleAll();
    for (Happening &happening : m_happenings)
        happening.limit.setRemainingTime(0);
    for (PageText &text : m_texts)
        text.limit.setRemainingTime(0);
    handleAll();
    judgeHovers({});
    m_logger.flushRecordedTextInput();
    Q_EMIT changed();
}

void Recorder::watch(BrowserPage *page, bool isNew)
{
    m_navigations.watch(page, isNew);
    auto *observer = new InputObserver(page);
    m_observers.append(observer);
    connect(observer, &InputObserver::observed, this, &Recorder::note);
    const QString tab = page->targetId();
    connect(page, &BrowserPage::documentGone, this, [this, tab] { noteDocumentGone(tab); });
    connect(page, &BrowserPage::closed, this, [this, page] { noteClosed(page); });
    const auto dialog = std::make_shared<Dialog>();
    connect(page, &BrowserPage::dialogOpened, this, [=, this](const Dialog &opened) {
        *dialog = opened;
        m_inDialog.insert(tab);
    });
    page->connection()->listen(
        page->sessionId(), u"Page.javascriptDialogClosed"_s, this, [=, this](const QJsonObject &event) {
            m_inDialog.remove(tab);
            startLimitsAgain(tab);
            noteNews(tab, [=, this] { noteDialogClosed(*dialog, event); });
        });
}

BrowserPage *Recorder::pageOf(const QString &tab) const
{
    for (BrowserPage *page : m_session->browser()->pages()) {
        if (page->targetId() == tab)
            return page;
    }
    return nullptr;
}

/// A page names its windows without knowing of others; statements need names that are unique in the session.
QString Recorder::inSession(const QString &text) const
{
    const QString context = rawMember(text, "context"_L1);
    const BrowserPage *page = pageOf(rawMember(text, "tabId"_L1));
    if (context.isEmpty() || !page)
        return text;
    const QString unique = m_session->windows()->contextInSession(page, WebWrapper::unescape(context));
    return QString(text).replace(u"&context=%1"_s.arg(context), u"&context=%1"_s.arg(escapedMember(unique)));
}

void Recorder::take(const QString &text)
{
    const QString unique = inSession(text);
    const QString tab = rawMember(unique, "tabId"_L1);
    const QString context = rawMember(unique, "context"_L1);
    if (!context.isEmpty())
        m_contexts.insert(tab, WebWrapper::unescape(context));
    m_texts.push_back({tab, rawMember(unique, "event"_L1), unique, ++m_order, QDeadlineTimer(textLimitMs),
        rawMember(unique, "followed"_L1).toInt()});
    handleAll();
}

void Recorder::note(BrowserPage *page, const InputEvent &input)
{
    if (canCauseMore(input))
        m_lastInputs.insert(page->targetId(), QDeadlineTimer(consequenceMs));
    // Keys that were typed in another document before may still be kept back there.
    const bool isElsewhere
        = m_typedIn && (m_typedIn->tab != page->targetId() || m_typedIn->observer != input.observer);
    if (isElsewhere)
        fetchTyped();
    auto place = m_happenings.end();
    if (isTyped(input)) {
        const auto isEarlierThan = [&](const Happening &other) {
            return !other.act && (other.tab != page->targetId() || other.input.observer != input.observer)
                && input.time < other.input.time;
        };
        while (place != m_happenings.begin() && isEarlierThan(*std::prev(place)))
            --place;
        if (!m_fetching)
            m_typedIn = TypedIn{page->targetId(), input.observer};
    } else if (!isElsewhere) {
        m_typedIn.reset();
    }
    m_happenings.insert(place, {page->targetId(), input, {}, QDeadlineTimer(textLimitMs), {}});
    handleAll();
}

/// Has the document in which keys were typed last tell of all of them. Nothing is handled until it has.
void Recorder::fetchTyped()
{
    BrowserPage *page = pageOf(m_typedIn->tab);
    const int observer = m_typedIn->observer;
    m_typedIn.reset();
    if (!page || page->openDialog())
        return;
    ++m_fetching;
    const QPointer<Recorder> self(this);
    InputObserver::flush(page, observer, [self] {
        if (!self)
            return;
        --self->m_fetching;
        self->handleAll();
    });
}

/// A page says nothing while it shows a dialog, and nothing from the answer until the dialog is gone.
bool Recorder::isOver(const QString &tab, const QDeadlineTimer &limit) const
{
    return limit.hasExpired() && (m_finished || !pageOf(tab) || !m_inDialog.contains(tab));
}

void Recorder::startLimitsAgain(const QString &tab)
{
    for (Happening &happening : m_happenings) {
        if (happening.tab == tab)
            happening.limit.setRemainingTime(textLimitMs);
    }
    for (PageText &text : m_texts) {
        if (text.tab == tab)
            text.limit.setRemainingTime(textLimitMs);
    }
}

void Recorder::noteNews(const QString &tab, std::function<void()> act)
{
    m_happenings.push_back({tab, {}, std::move(act), {}, {}});
    handleAll();
}

// The last event of a page may be lost on its way while its text arrives. Such a text must not be taken for
// that of an event in the next page.
void Recorder::noteDocumentGone(const QString &tab)
{
    m_inDialog.remove(tab);
    // Of two messages of one moment the document's end may let only the first through.
    for (Happening &happening : m_happenings) {
        if (happening.tab == tab && !happening.lastText)
            happening.lastText = m_order;
    }
    noteNews(tab, [this, tab, order = m_order] {
        std::erase_if(m_texts, [&](const PageText &text) { return text.tab == tab && text.order <= order; });
        m_changed.remove(tab);
        m_logger.notePageGone(tab);
    });
}

void Recorder::noteClosed(BrowserPage *page)
{
    const QString tab = page->targetId();
    // The end of the browser is the end of the recording and no closing of a window.
    if (!m_session->browser()->isRunning() || m_session->browser()->pages().isEmpty())
        return;
    const bool byPage = std::any_of(m_lastInputs.cbegin(), m_lastInputs.cend(),
        [](const QDeadlineTimer &limit) { return !limit.hasExpired(); });
    const QString context = m_contexts.value(tab, contextFile(page->address()));
    noteNews(tab, [=, this] {
        const Verdict verdict = byPage
            ? Verdict{Verdict::Kind::Merged, u"a page closes it behind what the user did"_s}
            : m_logger.recordClosing(context);
        Q_EMIT explained(u"closing of %1  %2"_s.arg(context, verdict.text()));
    });
}

void Recorder::noteMove(const BrowserPage *page, const OwnMove &move)
{
    const QString tab = page->targetId();
    noteNews(tab, [=, this] {
        const Verdict verdict = judgeMove(move);
        // The key that has made the browser go comes up in the next document.
        if (verdict.kind != Verdict::Kind::Merged)
            m_keyDown.remove(tab);
        Q_EMIT explained(u"%1 of %2  %3"_s.arg(inWords(move.kind), move.address, verdict.text()));
    });
}

Verdict Recorder::judgeMove(const OwnMove &move)
{
    if (move.kind == OwnMove::Kind::History && move.isBehindInput)
        return {Verdict::Kind::Merged, u"a page goes there behind what the user did"_s};
    m_logger.flushRecordedTextInput();
    if (move.isInOwnWindow)
        return remark(
            u"not recorded: '%1' in a window that the browser's own controls opened"_s.arg(move.address));
    if (move.hasFailed)
        return remark(u"not recorded: '%1', which could not be opened"_s.arg(move.address));
    // Opening an address with a place in the page only goes to that place.
    if (move.kind == OwnMove::Kind::Reload && move.address.contains(u'#'))
        return remark(u"not recorded: '%1' was loaded again"_s.arg(move.address));
    // Replay opens addresses in the window that it has worked in last.
    if (m_session->browser()->pages().size() > 1)
        m_logger.enterWindow(move.context);
    if (move.kind == OwnMove::Kind::History)
        m_script.remark(u"the user went there by the browser's history"_s);
    if (move.kind == OwnMove::Kind::Reload)
        m_script.remark(u"the user loaded the page again"_s);
    return m_logger.recordMove(move.address);
}

void Recorder::noteDialogClosed(const Dialog &dialog, const QJsonObject &event)
{
    const Verdict verdict
        = judgeAnswer(dialog.kind, event.value("result"_L1).toBool(), event.value("userInput"_L1).toString());
    Q_EMIT explained(u"answer to %1  %2"_s.arg(describeDialog(dialog), verdict.text()));
}

Verdict Recorder::judgeAnswer(DialogKind kind, bool accepted, const QString &typed)
{
    const Inspector *values = Inspector::self();
    switch (kind) {
    case DialogKind::Alert:
        return m_logger.recordAnswer(u"answerAlert"_s, {});
    case DialogKind::Confirm:
        return m_logger.recordAnswer(u"answerConfirm"_s, {values->createPrimitive(accepted)});
    case DialogKind::Prompt:
        // While recording, a page gets an empty text of a prompt that is cancelled. What it does about that,
        // replay repeats with the same answer only.
        return m_logger.recordAnswer(u"answerPrompt"_s,
            {values->createPrimitive(accepted ? typed : QString())},
            accepted ? QString() : u"the prompt was cancelled, which gives an empty text while recording"_s);
    case DialogKind::BeforeUnload:
        if (!accepted)
            return remark(u"not recorded: the user stayed on a page that asks before it is left"_s);
        return {Verdict::Kind::LeftOut, u"replay leaves pages that ask, too"_s};
    }
    Q_UNREACHABLE();
}

// Handling may evaluate in the page, during which more arrives: that waits for its turn.
void Recorder::handleAll()
{
    if (m_handling)
        return;
    m_handling = true;
    while (handleFirst()) { }
    forgetTextsWithoutInput();
    m_handling = false;
    waitForMore();
    if (m_shown != m_script.lines()) {
        m_shown = m_script.lines();
        Q_EMIT changed();
    }
}

/// Handles what is first in time, if it is complete: an event of the user with the text that its page sends.
bool Recorder::handleFirst()
{
    // Texts without an event of the user behind them stand by themselves.
    const auto report = std::find_if(
        m_texts.begin(), m_texts.end(), [](const PageText &text) { return !needsInput(text.event); });
    if (report != m_texts.end()) {
        const QString text = report->text;
        m_texts.erase(report);
        m_logger.handle(text, {});
        return true;
    }
    if (m_happenings.empty())
        return false;
    const Happening &first = m_happenings.front();
    if (m_fetching && !first.limit.hasExpired() && !first.act)
        return false;
    if (!first.act && isToldByPage(first.input) && !isOver(first.tab, first.limit)) {
        if (!first.lastText && textFor(first) == m_texts.end())
            return false;
    }
    const Happening happening = first;
    m_happenings.pop_front();
    if (happening.input.kind != "hover"_L1)
        judgeHovers(happening.input);
    if (happening.act)
        happening.act();
    else
        handleInput(happening);
    return true;
}

/// The pointer is over what is pressed in any case, and comes over much on its way there.
void Recorder::judgeHovers(const InputEvent &next)
{
    constexpr int mostNamed = 3;
    QStringList over;
    QStringList targets;
    for (const InputEvent &hover : std::exchange(m_hovers, {})) {
        const bool isOfPress = next.over.contains(hover.field);
        if (!isOfPress && !over.contains(hover.field)) {
            over.append(hover.field);
            targets.append(hover.target);
        }
        const Verdict verdict = isOfPress
            ? Verdict{Verdict::Kind::Merged, u"the press on it comes with the pointer"_s}
            : Verdict{Verdict::Kind::Remarked, u"the page changed by it"_s};
        Q_EMIT explained(u"hover on %1  %2"_s.arg(hover.target, verdict.text()));
    }
    if (targets.isEmpty())
        return;
    const qsizetype others = targets.size() - mostNamed;
    const QString named = targets.mid(qMax(0, others)).join(u", "_s);
    m_script.remark(u"not recorded: the pointer over %1, by which the page changed"_s.arg(
        others > 0 ? u"%1 and %2 more"_s.arg(named, QString::number(others)) : named));
}

void Recorder::handleInput(const Happening &happening)
{
    if (happening.input.kind == "hover"_L1) {
        m_hovers.append(happening.input);
        return;
    }
    const Verdict verdict = judge(happening);
    const InputEvent &input = happening.input;
    const QString key = input.key.isEmpty() ? QString() : u" '%1'"_s.arg(input.key);
    Q_EMIT explained(u"%1%2 on %3  %4"_s.arg(input.kind, key, input.target, verdict.text()));
}

Verdict Recorder::judge(const Happening &happening)
{
    const QString &tab = happening.tab;
    const InputEvent &input = happening.input;
    if (input.isByPage) {
        forgetText(tab, input.kind);
        return {Verdict::Kind::LeftOut, u"the page does it, not the user"_s};
    }
    if (input.isOfHistory) {
        forgetText(tab, input.kind);
        return {Verdict::Kind::Merged, u"the browser tells where it goes by that"_s};
    }
    if (input.kind == "keydown"_L1) {
        m_logger.noteKeyDown(tab, input);
        m_keyDown.insert(tab, input);
    } else if (input.kind == "mousedown"_L1 || input.isPress) {
        m_logger.notePress();
    } else if (input.kind == "click"_L1 || input.kind == "change"_L1) {
        m_keyDown.remove(tab);
    }
    if (input.kind == "pointerup"_L1 && !input.object.isEmpty()) {
        m_logger.notePress();
        InputEvent press = input;
        press.context = m_session->windows()->contextInSession(pageOf(tab), input.context);
        return m_logger.notePointerPress(tab, press);
    }
    if (input.kind == "input"_L1 || (input.kind == "change"_L1 && !input.isTold))
        return m_logger.noteChange(tab, input);
    for (const PlainVerdict &plain : plainVerdicts) {
        if (input.kind != plain.kind)
            continue;
        const QString reason = QString::fromUtf16(plain.reason);
        if (plain.verdict == Verdict::Kind::Remarked)
            return remark(reason.arg(input.target));
        return {plain.verdict, reason};
    }

    const auto text = textFor(happening);
    if (text == m_texts.end())
        return {Verdict::Kind::LeftOut, u"the page has sent nothing for it"_s};
    if (text->followed > 0) {
        if (--text->followed == 0)
            m_texts.erase(text);
        if (input.changed)
            m_changed.insert(tab);
        return {Verdict::Kind::Merged, u"typed text is one statement, at its end"_s};
    }
    const QString told = text->text;
    m_texts.erase(text);
    if (input.kind == "keyup"_L1 && input.key == "Enter"_L1 && !input.isText
        && m_logger.isReturnPending(tab)) {
        m_keyDown.remove(tab);
        return m_logger.noteReturnElsewhere(tab);
    }
    if (input.isEditable && input.kind == "keyup"_L1) {
        m_keyDown.remove(tab);
        return m_logger.noteEditing(tab, WebWrapper::unescape(rawMember(told, "object"_L1)),
            WebWrapper::unescape(rawMember(told, "context"_L1)), input);
    }
    InputEvent last = input;
    last.changed = m_changed.remove(tab) || input.changed;
    const Verdict verdict = m_logger.handle(told, last);
    // A key that no field took and that caused no click was meant for a handler of the page.
    const bool isOfHandler = input.kind == "keyup"_L1 && !input.isText && !input.isTaken
        && m_keyDown.contains(tab) && m_keyDown.take(tab).key == input.key && !isSilentKey(input.key);
    // What has been said on the way to it, such as the name of the context, does not tell the key.
    if (isOfHandler && verdict.kind != Verdict::Kind::Merged && !m_logger.hasStatementSinceInput()) {
        m_logger.flushRecordedTextInput();
        return remark(u"not recorded: the key '%1' on %2"_s.arg(input.key, input.target));
    }
    return verdict;
}

/// What the page says of an event of the user.
std::deque<Recorder::PageText>::iterator Recorder::textFor(const Happening &happening)
{
    return std::find_if(m_texts.begin(), m_texts.end(), [&](const PageText &text) {
        return text.tab == happening.tab && text.order <= happening.lastText.value_or(text.order)
            && (text.event == happening.input.kind || !isBrowserEvent(text.event));
    });
}

/// The text of an event that the page has dispatched must not be taken for that of the user's next one.
void Recorder::forgetText(const QString &tab, const QString &event)
{
    const auto text = std::find_if(m_texts.begin(), m_texts.end(),
        [&](const PageText &candidate) { return candidate.tab == tab && candidate.event == event; });
    if (text != m_texts.end())
        m_texts.erase(text);
}

Verdict Recorder::remark(const QString &text)
{
    m_script.remark(text);
    return {Verdict::Kind::Remarked, text};
}

/// A text that no event of the user stands behind is the page's own making.
void Recorder::forgetTextsWithoutInput()
{
    while (!m_texts.empty() && isOver(m_texts.front().tab, m_texts.front().limit)) {
        Q_EMIT explained(
            u"%1 told by the page  left out: the user did nothing of the kind"_s.arg(m_texts.front().event));
        m_texts.pop_front();
    }
}

void Recorder::waitForMore()
{
    if (m_happenings.empty() && m_texts.empty())
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(textLimitMs / 10);
}

} // namespace Ostrel::Host
