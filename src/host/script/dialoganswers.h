// DialogAnswers: how a script answers the dialogs of its pages: beforehand, one after the other, or by a
// handler.
#pragma once

#include "host/browser/dialog.h"
#include "host/script/scriptfunctions.h"
#include "ostrelhook/functionclass.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

namespace Ostrel::Host {

class BrowserPage;
class PageChannel;

/// The script functions answerAlert, answerConfirm and answerPrompt give the answer to the next dialog of
/// their kind; onAlert, onConfirm and onPrompt say what answers every dialog that has none: a function that
/// gets the dialog's text, or the answer itself. A dialog without an answer stays open: the statement that it
/// blocks fails and closes it. One that blocks no statement is closed after a limit. Lives on the script's
/// thread.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    static constexpr int dismissalMs = 20000;

    using LogFunction = std::function<void(const QString &line)>;

    /// `log` hears of dialogs that nobody answered.
    explicit DialogAnswers(LogFunction log);

    /// Lets this answer the dialogs of a page, which it must outlive.
    void attend(BrowserPage *page);
    /// The same for pages that ask the host by their channel.
    void attend(PageChannel &channel);

    /// 0 leaves dialogs open for as long as nobody answers them.
    void setDismissalLimit(int limitMs) { m_dismissalMs = limitMs; }

private:
    class Policy;

    std::optional<DialogAnswer> answerTo(const Dialog &dialog);
    std::optional<DialogAnswer> answerByHandler(const Dialog &dialog, const ScriptFunction &handler);

    struct PreparedAnswer
    {
        DialogKind kind;
        DialogAnswer answer;
    };

    FunctionCallResult<void> prepare(DialogKind kind, const DialogAnswer &answer);
    FunctionCallResult<void> setHandler(DialogKind kind, const ScriptFunction &handler);

    LogFunction m_log;
    int m_dismissalMs = dismissalMs;
    QList<PreparedAnswer> m_prepared;
    QHash<int, ScriptFunction> m_handlers; ///< by kind
    ScriptFunctions m_functions;
};

} // namespace Ostrel::Host
