#include "host/browser/dialog.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

QString kindInWords(DialogKind kind)
{
    switch (kind) {
    case DialogKind::Alert:
        return u"an alert"_s;
    case DialogKind::Confirm:
        return u"a confirm"_s;
    case DialogKind::Prompt:
        return u"a prompt"_s;
    case DialogKind::BeforeUnload:
        return u"the question whether it may be left"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

std::optional<DialogAnswer> ReportingDialogPolicy::opened(const Dialog &dialog)
{
    if (dialog.kind == DialogKind::BeforeUnload)
        return DialogAnswer{true, {}};
    return std::nullopt;
}

DialogKind dialogKindFromText(const QString &name)
{
    if (name == "confirm"_L1)
        return DialogKind::Confirm;
    if (name == "prompt"_L1)
        return DialogKind::Prompt;
    if (name == "beforeunload"_L1)
        return DialogKind::BeforeUnload;
    return DialogKind::Alert;
}

QString describeDialog(const Dialog &dialog)
{
    return u"%1: '%2'"_s.arg(kindInWords(dialog.kind), dialog.message);
}

} // namespace Ostrel::Host
