#include "host/browser/answerwait.h"

#include <QTimer>

namespace Ostrel::Host {

AnswerWait::AnswerWait(QList<AnswerWait *> &waits) : m_waits(waits)
{
    m_waits.append(this);
}

AnswerWait::~AnswerWait()
{
    m_waits.removeOne(this);
}

WaitState AnswerWait::run(int limitMs)
{
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &m_loop, [this] { end(WaitState::TimedOut); });
    limit.start(limitMs);
    if (m_state == WaitState::Waiting)
        m_loop.exec();
    return m_state;
}

void AnswerWait::end(WaitState state)
{
    if (m_state != WaitState::Waiting)
        return;
    m_state = state;
    m_loop.quit();
}

} // namespace Ostrel::Host
