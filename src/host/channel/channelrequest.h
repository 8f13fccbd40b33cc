// ChannelRequest: what a page says over the page channel, parsed. A free function on text, whatever carried
// it.
#pragma once

#include "ostrelhook/geometry.h"

#include <QMap>
#include <QString>

#include <optional>

namespace Ostrel::Host {

/// The kinds of request that the page payload sends.
enum class ChannelRequestKind {
    LogEvent, ///< something that happened in the page, for the recorder
    EventHandler, ///< a window opened or went, a dialog opened
    WaitForConfirm, ///< the page stands still until it is told how to answer a confirm
    WaitForPrompt, ///< the same for a prompt
    DebugLog, ///< a line for the log
    HighlightWidget, ///< the picker's mouse rests on an element
};

struct ChannelRequest
{
    ChannelRequestKind kind = ChannelRequestKind::DebugLog;

    /// LogEvent: the whole text as the recorder takes it, from the word "logevent" on. DebugLog: the line.
    QString text;

    /// EventHandler and HighlightWidget: the name of the notification or of the element.
    QString name;

    /// EventHandler: the further parameters, unescaped.
    QMap<QString, QString> parameters;

    /// HighlightWidget: where the element is on the screen; four times -1 when it is not to be seen.
    ScreenRectangle rectangle;
};

/// `query` is what stands behind "/?" in the address, as it was sent; `body` is that of a POST. Nothing for a
/// text that is none of the kinds or lacks what its kind needs.
std::optional<ChannelRequest> parseChannelRequest(const QString &query, const QString &body = {});

} // namespace Ostrel::Host
