// PageChannel: understands what pages send to the host and gives the answers. The carriers bring it the
// requests.
#pragma once

#include "host/channel/channelrequest.h"

#include <QLoggingCategory>
#include <QObject>

#include <functional>

namespace Ostrel::Host {

Q_DECLARE_LOGGING_CATEGORY(channelLog)

/// The answer to a prompt that was cancelled.
extern const QString promptCancelled;

/// The answer to a prompt into which `text` was typed.
QString promptResult(const QString &text);

class PageChannel : public QObject
{
    Q_OBJECT

public:
    /// Answers a page that stands still until the answer comes: it must not evaluate script in that page.
    using AnswerFunction = std::function<QString()>;

    explicit PageChannel(QObject *parent = nullptr);

    /// How a confirm is answered: "true", anything else is false. By default "false".
    void setConfirmAnswer(AnswerFunction answer);

    /// How a prompt is answered: promptResult() or promptCancelled. By default cancelled.
    void setPromptAnswer(AnswerFunction answer);

    /// The text that the page gets back; empty for all requests but the two that wait. Runs nothing else, so
    /// that a carrier answers first and delivers afterwards.
    QString answer(const ChannelRequest &request) const;

    /// Sends the signal that belongs to the request. A receiver may evaluate script in the page.
    void deliver(const ChannelRequest &request);

    /// Notes a text that is no request of the channel.
    static void logUnknown(const QString &query);

Q_SIGNALS:
    void eventLogged(const QString &text);
    void eventHandlerCalled(const QString &name, const QMap<QString, QString> &parameters);
    void debugLineLogged(const QString &line);
    void highlightRequested(const Ostrel::ScreenRectangle &rectangle, const QString &name);

private:
    AnswerFunction m_confirmAnswer;
    AnswerFunction m_promptAnswer;
};

} // namespace Ostrel::Host
