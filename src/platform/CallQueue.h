#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>

/// Calls from the page and private messages, dispatched in the order of their arrival and never
/// while a page call is in flight. Depth counts page calls only: a modal box lets the queue run.
class CallQueue : public QObject {
    Q_OBJECT
public:
    using Call = std::function<void()>;

    /// Marks a page call in flight for its lifetime.
    class Flight {
    public:
        explicit Flight(CallQueue& queue);
        ~Flight();
        Flight(const Flight&) = delete;
        Flight& operator=(const Flight&) = delete;

    private:
        QPointer<CallQueue> m_queue; // Whoever owns the queue may go during the call.
    };

    /// Always waits for the event loop: what calls this may stand inside an engine task.
    void post(Call call);
    /// Runs at once if nothing is in flight and nothing waits, else as `post`.
    void runInOrder(Call call);
    bool inFlight() const { return m_depth > 0; }

private:
    void schedule();
    void drain();

    std::deque<Call> m_waiting;
    int m_depth = 0;
    bool m_scheduled = false;
};
