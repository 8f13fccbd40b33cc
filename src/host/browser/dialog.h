// Dialogs of a page (alert, confirm, prompt, leaving the page) and the policy that answers them.
#pragma once

#include <QString>

#include <optional>

namespace Ostrel::Host {

enum class DialogKind {
    Alert, ///< a message with one button
    Confirm, ///< a question with two buttons
    Prompt, ///< a question with an input field
    BeforeUnload, ///< the page asks whether it may be left
};

struct Dialog
{
    DialogKind kind = DialogKind::Alert;
    QString message;
    QString defaultText; ///< what the input field of a prompt holds at first
};

struct DialogAnswer
{
    bool accept = false;
    QString text; ///< typed into a prompt
};

/// Decides about a dialog at the moment it opens. The page stands still until its dialog is answered.
class DialogPolicy
{
public:
    virtual ~DialogPolicy() = default;

    /// An answer to give at once, or nothing: then the dialog stays open and the next evaluation reports it.
    /// Must not evaluate script in the page, which could not answer.
    virtual std::optional<DialogAnswer> opened(const Dialog &dialog) = 0;
};

/// Lets every dialog stay open, so that it is reported, but for the question whether a page may be left: a
/// script that navigates has decided that.
class ReportingDialogPolicy : public DialogPolicy
{
public:
    std::optional<DialogAnswer> opened(const Dialog &dialog) override;
};

/// The kind by its name in the protocol; an unknown name counts as an alert.
DialogKind dialogKindFromText(const QString &name);

/// "an alert: 'text'", for messages.
QString describeDialog(const Dialog &dialog);

} // namespace Ostrel::Host
