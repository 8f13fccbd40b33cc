// Evaluation: the script that goes to the page for one evaluation, and what its answer means.
#pragma once

#include "host/browser/protocolmessage.h"
#include "wrappers/web/htmlcomponent.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace Ostrel::Host {

/// `text` as a script string literal in double quotes. Every code unit arrives as it is: lone surrogates and
/// control characters are escaped, since the protocol carries UTF-8.
QString scriptLiteral(const QString &text);

/// What carries a long script to the page before evaluationParameters(), by which it is taken from there:
/// parameters of commands "Runtime.evaluate", none for a short one. The browser ends the connection at a
/// message of 100 MB, and a large one takes it longer than its parts.
QList<CommandParameters> scriptParts(const QString &script);

/// Parameters of the command "Runtime.evaluate" that evaluate `script` as the page's own top-level code and
/// give its value as text, in one round trip. They stand on no name that a page could take away later but
/// `eval`.
CommandParameters evaluationParameters(const QString &script, int limitMs);

/// A value that is too long for one message: how many units it has, and where it waits in the page.
struct LongValue
{
    qsizetype size = 0;
    int place = 0;
};

/// The value that the page announced in its answer, if it is a long one.
std::optional<LongValue> readLongValue(const QJsonObject &answer);

/// Parameters of the commands "Runtime.evaluate" that fetch a long value, whose texts are to be put together
/// in their order. The last one takes it from the page. No part ends within a character.
QList<CommandParameters> valueParts(const LongValue &value, int limitMs);

/// What the page answered. A script that raised an exception has both flags set and the exception's text as
/// result: a caller that looks at one flag only must not take the message for a value.
WebWrapper::HTMLComponent::EvalResult readEvaluation(const QJsonObject &answer);

} // namespace Ostrel::Host
