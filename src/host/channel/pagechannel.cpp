#include "host/channel/pagechannel.h"

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

Q_LOGGING_CATEGORY(channelLog, "pageprobe.channel", QtWarningMsg)

const QString promptCancelled = u"__ostrel__promptCancelled"_s;

QString promptResult(const QString &text)
{
    return u"__ostrel__promptResult: %1"_s.arg(text);
}

PageChannel::PageChannel(QObject *parent)
    : QObject(parent), m_confirmAnswer([] { return u"false"_s; }),
      m_promptAnswer([] { return promptCancelled; })
{
}

void PageChannel::setConfirmAnswer(AnswerFunction answer)
{
    m_confirmAnswer = std::move(answer);
}

void PageChannel::setPromptAnswer(AnswerFunction answer)
{
    m_promptAnswer = std::move(answer);
}

QString PageChannel::answer(const ChannelRequest &request) const
{
    switch (request.kind) {
    case ChannelRequestKind::WaitForConfirm:
        return m_confirmAnswer();
    case ChannelRequestKind::WaitForPrompt:
        return m_promptAnswer();
    case ChannelRequestKind::LogEvent:
    case ChannelRequestKind::EventHandler:
    case ChannelRequestKind::DebugLog:
    case ChannelRequestKind::HighlightWidget:
        return {};
    }
    Q_UNREACHABLE();
}

void PageChannel::deliver(const ChannelRequest &request)
{
    switch (request.kind) {
    case ChannelRequestKind::LogEvent:
        Q_EMIT eventLogged(request.text);
        return;
    case ChannelRequestKind::EventHandler:
        Q_EMIT eventHandlerCalled(request.name, request.parameters);
        return;
    case ChannelRequestKind::DebugLog:
        Q_EMIT debugLineLogged(request.text);
        return;
    case ChannelRequestKind::HighlightWidget:
        Q_EMIT highlightRequested(request.rectangle, request.name);
        return;
    case ChannelRequestKind::WaitForConfirm:
    case ChannelRequestKind::WaitForPrompt:
        return; // answered, and of no interest to anybody else
    }
    Q_UNREACHABLE();
}

void PageChannel::logUnknown(const QString &query)
{
    constexpr qsizetype shownCharacters = 200;
    qCWarning(channelLog).noquote() << "The page sent a request of no known kind:"
                                    << query.left(shownCharacters);
}

} // namespace Ostrel::Host
