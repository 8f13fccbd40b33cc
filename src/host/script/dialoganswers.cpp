#include "host/script/dialoganswers.h"

#include "host/browser/browserpage.h"
#include "host/channel/pagechannel.h"
#include "host/inseconds.h"
#include "ostrelhook/inspector.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

ScriptFunction always(const SharedPtr<Object> &value)
{
    return [value](const ObjectList &) -> FunctionCallResult<SharedPtr<Object>> { return value; };
}

/// What a handler gave, as an answer: nothing and false cancel, a text is typed into a prompt.
DialogAnswer answerFrom(DialogKind kind, const SharedPtr<Object> &value)
{
    switch (kind) {
    case DialogKind::Alert:
    case DialogKind::BeforeUnload:
        return {true, {}};
    case DialogKind::Confirm:
        return {value && value->toBool(), {}};
    case DialogKind::Prompt:
        return {value && value->isPrimitive(), value ? value->toQString() : QString()};
    }
    Q_UNREACHABLE();
}

} // namespace

/// Answers the dialogs of one page. While a handler decides, the page is not asked anything: it stands still.
class DialogAnswers::Policy : public DialogPolicy
{
public:
    Policy(DialogAnswers *answers, BrowserPage *page) : m_answers(answers), m_page(page)
    {
        m_limit.setSingleShot(true);
        QObject::connect(&m_limit, &QTimer::timeout, [this] { dismiss(); });
    }

    std::optional<DialogAnswer> opened(const Dialog &dialog) override
    {
        // A script that leaves a page has decided that; a user who is recorded is asked.
        if (dialog.kind == DialogKind::BeforeUnload && !Inspector::self()->isRecording())
            return DialogAnswer{true, {}};
        m_limit.stop();
        if (!m_answers)
            return std::nullopt;
        const BrowserPage::Refusal refusal(
            *m_page, u"The page waits for the answer to %1"_s.arg(describeDialog(dialog)));
        const std::optional<DialogAnswer> answer = m_answers->answerTo(dialog);
        if (!answer && m_answers->m_dismissalMs > 0)
            m_limit.start(m_answers->m_dismissalMs);
        return answer;
    }

private:
    void dismiss()
    {
        const std::optional<Dialog> dialog = m_page->openDialog();
        if (!dialog)
            return;
        if (m_answers)
            m_answers->m_log(u"Nobody answered %1 within %2; it was dismissed."_s.arg(
                describeDialog(*dialog), inSeconds(m_limit.interval())));
        m_page->answerDialog({false, {}});
    }

    QPointer<DialogAnswers> m_answers;
    BrowserPage *m_page;
    QTimer m_limit; ///< of the dialog that opened last
};

DialogAnswers::DialogAnswers(LogFunction log) : m_log(std::move(log))
{
    m_functions.add("answerAlert", {}, [this] { return prepare(DialogKind::Alert, {true, {}}); });
    m_functions.add("answerConfirm", {"accept"}, [this](bool accept) {
        return prepare(DialogKind::Confirm, {accept, {}});
    });
    m_functions.add("answerPrompt", {}, [this] { return prepare(DialogKind::Prompt, {false, {}}); });
    m_functions.add("answerPrompt", {"text"}, [this](const QString &text) {
        return prepare(DialogKind::Prompt, {true, text});
    });

    m_functions.add("onAlert", {"handler"},
        [this](const ScriptFunction &handler) { return setHandler(DialogKind::Alert, handler); });
    m_functions.add("onConfirm", {"handler"},
        [this](const ScriptFunction &handler) { return setHandler(DialogKind::Confirm, handler); });
    m_functions.add("onConfirm", {"accept"}, [this](bool accept) {
        return setHandler(DialogKind::Confirm, always(Inspector::self()->createPrimitive(accept)));
    });
    m_functions.add("onPrompt", {"handler"},
        [this](const ScriptFunction &handler) { return setHandler(DialogKind::Prompt, handler); });
    m_functions.add("onPrompt", {"text"}, [this](const QString &text) {
        return setHandler(DialogKind::Prompt, always(Inspector::self()->createPrimitive(text)));
    });
}

void DialogAnswers::attend(BrowserPage *page)
{
    page->setDialogPolicy(std::make_shared<Policy>(this, page));
}

void DialogAnswers::attend(PageChannel &channel)
{
    channel.setConfirmAnswer([this] {
        const std::optional<DialogAnswer> answer = answerTo({DialogKind::Confirm, {}, {}});
        return answer && answer->accept ? u"true"_s : u"false"_s;
    });
    channel.setPromptAnswer([this] {
        const std::optional<DialogAnswer> answer = answerTo({DialogKind::Prompt, {}, {}});
        return answer && answer->accept ? promptResult(answer->text) : promptCancelled;
    });
}

FunctionCallResult<void> DialogAnswers::prepare(DialogKind kind, const DialogAnswer &answer)
{
    m_prepared.append({kind, answer});
    return {};
}

FunctionCallResult<void> DialogAnswers::setHandler(DialogKind kind, const ScriptFunction &handler)
{
    if (handler)
        m_handlers.insert(int(kind), handler);
    else
        m_handlers.remove(int(kind));
    return {};
}

std::optional<DialogAnswer> DialogAnswers::answerTo(const Dialog &dialog)
{
    const auto prepared = std::find_if(m_prepared.begin(), m_prepared.end(),
        [&dialog](const PreparedAnswer &entry) { return entry.kind == dialog.kind; });
    if (prepared != m_prepared.end()) {
        const DialogAnswer answer = prepared->answer;
        m_prepared.erase(prepared);
        return answer;
    }
    if (const ScriptFunction handler = m_handlers.value(int(dialog.kind)))
        return answerByHandler(dialog, handler);
    return std::nullopt;
}

std::optional<DialogAnswer> DialogAnswers::answerByHandler(
    const Dialog &dialog, const ScriptFunction &handler)
{
    const Inspector *inspector = Inspector::self();
    const FunctionCallResult<SharedPtr<Object>> value = dialog.kind == DialogKind::Prompt
        ? handler(
            {inspector->createPrimitive(dialog.message), inspector->createPrimitive(dialog.defaultText)})
        : handler({inspector->createPrimitive(dialog.message)});
    if (value.failed()) {
        // The script's error; the page must not wait for it.
        Inspector::self()->raiseError(
            u"The handler of %1 failed: %2"_s.arg(describeDialog(dialog), value.error));
        return DialogAnswer{false, {}};
    }
    return answerFrom(dialog.kind, value.value);
}

} // namespace Ostrel::Host
