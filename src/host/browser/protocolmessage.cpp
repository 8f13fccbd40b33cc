#include "host/browser/protocolmessage.h"

#include "wrappers/web/scripttext.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

// An error's `data` says what was wrong where `message` only names the kind of error.
QString errorText(const QJsonObject &error)
{
    const QString message = error.value("message"_L1).toString();
    const QString detail = error.value("data"_L1).toString();
    if (message.isEmpty())
        return u"The browser gave an error without a text"_s;
    return detail.isEmpty() ? message : u"%1 (%2)"_s.arg(message, detail);
}

} // namespace

std::optional<ProtocolMessage> parseProtocolMessage(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();

    ProtocolMessage message;
    message.sessionId = root.value("sessionId"_L1).toString();
    if (root.contains("id"_L1)) {
        message.id = root.value("id"_L1).toInt();
        message.content = root.value("result"_L1).toObject();
        if (root.contains("error"_L1))
            message.error = errorText(root.value("error"_L1).toObject());
        return message.id > 0 ? std::optional(message) : std::nullopt;
    }
    message.method = root.value("method"_L1).toString();
    message.content = root.value("params"_L1).toObject();
    return message.method.isEmpty() ? std::nullopt : std::optional(message);
}

CommandParameters::CommandParameters(const QJsonObject &members)
    : m_text(members.isEmpty() ? QByteArray() : QJsonDocument(members).toJson(QJsonDocument::Compact))
{
}

CommandParameters::CommandParameters(std::initializer_list<std::pair<QString, QJsonValue>> members)
    : CommandParameters(QJsonObject(members))
{
}

CommandParameters CommandParameters::fromText(QByteArray object)
{
    CommandParameters parameters;
    parameters.m_text = std::move(object);
    return parameters;
}

QByteArray composeCommand(
    int id, const QString &sessionId, const QString &method, CommandParameters parameters)
{
    QJsonObject root{{u"id"_s, id}, {u"method"_s, method}};
    if (!sessionId.isEmpty())
        root.insert("sessionId"_L1, sessionId);
    QByteArray head = QJsonDocument(root).toJson(QJsonDocument::Compact);
    QByteArray text = parameters.takeText();
    if (text.isEmpty())
        return head;
    head.chop(1);
    WebWrapper::enclose<QByteArray, QByteArrayView>(text, head + R"(,"params":)", "}");
    return text;
}

} // namespace Ostrel::Host
