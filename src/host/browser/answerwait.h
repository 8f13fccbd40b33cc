// AnswerWait: one wait for an answer of the browser, by a nested event loop that keeps its events flowing.
#pragma once

#include <QEventLoop>
#include <QList>

namespace Ostrel::Host {

/// How far a waiting command has come.
enum class WaitState {
    Waiting, ///< The page has not answered yet.
    Answered, ///< The page has given its answer, a value or an error.
    BlockedByDialog, ///< A dialog is open, and the page answers nothing until it is closed.
    NavigatedAway, ///< The document that was asked is gone, and its answer with it.
    TimedOut, ///< The limit is over.
    PageGone, ///< The tab was closed or its process has crashed.
    BrowserLost, ///< The browser itself is gone.
};

/// Stands in its owner's list of waits while it lives, so that whatever makes an answer impossible can end
/// it. Waits nest: what arrives during one may begin another, and the inner one ends first.
class AnswerWait
{
public:
    explicit AnswerWait(QList<AnswerWait *> &waits);
    ~AnswerWait();
    Q_DISABLE_COPY_MOVE(AnswerWait)

    /// Runs the event loop until the wait has ended or `limitMs` are over.
    WaitState run(int limitMs);

    /// Ends the wait; only the first end counts.
    void end(WaitState state);

    WaitState state() const { return m_state; }

private:
    QList<AnswerWait *> &m_waits;
    QEventLoop m_loop;
    WaitState m_state = WaitState::Waiting;
};

} // namespace Ostrel::Host
