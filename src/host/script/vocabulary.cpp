#include "host/script/vocabulary.h"

#include <QLatin1StringView>

#include <algorithm>

namespace Ostrel::Host {

namespace {

constexpr Statement statements[] = {
    {"startBrowser", Subject::Address, {""}},
    {"loadUrl", Subject::Address, {""}},
    {"waitForContextExists", Subject::Context, {""}},
    {"closeWindow", Subject::ObjectName, {""}},
    {"mouseClick", Subject::ObjectName, {"", "state", "x y", "state x y"}},
    {"doubleClick", Subject::ObjectName, {"x y"}},
    {"nativeMouseClick", Subject::ObjectName, {"x y button"}},
    {"clickButton", Subject::ObjectName, {""}},
    {"setFocus", Subject::ObjectName, {""}},
    {"typeText", Subject::ObjectName, {"text"}},
    {"setText", Subject::ObjectName, {"text"}},
    {"selectOption", Subject::ObjectName, {"text"}},
    {"chooseDate", Subject::ObjectName, {"date"}},
    {"chooseColor", Subject::ObjectName, {"text"}},
    {"clickItem", Subject::ObjectName, {"text", "text state", "row column", "row column state"}},
    {"checkTreeItem", Subject::ObjectName, {"text"}},
    {"clickTreeHandle", Subject::ObjectName, {"text"}},
    {"clickTab", Subject::ObjectName, {"text"}},
    {"toggleExpandable", Subject::ObjectName, {""}},
    {"activateItem", Subject::ObjectName, {"text"}},
    // Answers to the next dialog of their kind. They stand in front of the statement that opens it, since
    // that one does not return before the dialog is gone. A prompt without a text is cancelled.
    {"answerAlert", Subject::Nothing, {""}},
    {"answerConfirm", Subject::Nothing, {"accept"}},
    {"answerPrompt", Subject::Nothing, {"", "text"}},
};

QStringList subjectParameter(Subject subject)
{
    switch (subject) {
    case Subject::Nothing:
        return {};
    case Subject::ObjectName:
        return {QStringLiteral("object")};
    case Subject::Address:
        return {QStringLiteral("url")};
    case Subject::Context:
        return {QStringLiteral("context")};
    }
    Q_UNREACHABLE();
}

} // namespace

std::span<const Statement> vocabulary()
{
    return statements;
}

const Statement *findStatement(QStringView name)
{
    const auto *const found = std::find_if(std::begin(statements), std::end(statements),
        [name](const Statement &statement) { return QLatin1StringView(statement.name) == name; });
    return found == std::end(statements) ? nullptr : found;
}

QList<QStringList> parameterLists(const Statement &statement)
{
    QList<QStringList> lists;
    for (const char *form : statement.forms) {
        if (form)
            lists.append(subjectParameter(statement.subject)
                + QString::fromLatin1(form).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    }
    return lists;
}

} // namespace Ostrel::Host
