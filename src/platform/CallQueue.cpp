#include "platform/CallQueue.h"

#include <QTimer>

CallQueue::Flight::Flight(CallQueue& queue)
    : m_queue(&queue)
{
    ++queue.m_depth;
}

CallQueue::Flight::~Flight()
{
    if (m_queue && --m_queue->m_depth == 0)
        m_queue->schedule();
}

void CallQueue::post(Call call)
{
    m_waiting.push_back(std::move(call));
    schedule();
}

void CallQueue::runInOrder(Call call)
{
    if (m_depth > 0 || !m_waiting.empty())
        post(std::move(call));
    else
        call();
}

void CallQueue::schedule()
{
    if (m_depth > 0 || m_waiting.empty() || m_scheduled)
        return;
    m_scheduled = true;
    // One millisecond, not zero: a zero timer can fire inside a task of the engine, where a page
    // call would never return.
    QTimer::singleShot(1, Qt::PreciseTimer, this, &CallQueue::drain);
}

void CallQueue::drain()
{
    m_scheduled = false;
    const QPointer<CallQueue> self(this);
    while (self && m_depth == 0 && !m_waiting.empty()) {
        const Call call = std::move(m_waiting.front());
        m_waiting.pop_front();
        // A modal box opened by this call runs an event loop: what arrives there must find a way.
        schedule();
        call();
    }
}
