#pragma once

#include <QEventLoop>
#include <QObject>
#include <QPoint>
#include <QPointer>

#include <functional>

class QEvent;
class QWidget;

/// An input that matters to a tracking.
struct TrackInput {
    enum class Kind { Move, LeftRelease, RightPress, Escape } kind;
    QPoint point; ///< Where the mouse was, in the coordinates of the window; of a key, nothing.
};

/// The nested event loop in which a rectangle is moved or resized, with the mouse captured to one
/// window.
///
/// Each input to the window or a child of it is dispatched first, whatever it is, and then looked
/// at. Inputs that mean nothing to the tracking are dispatched a second time: mouse buttons other
/// than those of `TrackInput`, the wheel, key releases, private messages. Everything else (paint,
/// timers, queued calls, events of other windows) goes its ordinary way, once.
class TrackLoop : public QObject {
public:
    /// Looks at an input that has been dispatched. False leaves the loop.
    using Look = std::function<bool(const TrackInput&)>;

    explicit TrackLoop(QWidget* window);
    ~TrackLoop() override;

    /// Captures the mouse, brings the window up to date and runs until `look` returns false or the
    /// capture is lost, as it is when the window is hidden or deleted or a modal box comes up. The
    /// mouse is released and `end` is called at that moment, ahead of any further event; it returns
    /// when a box is gone again.
    void Run(const Look& look, const std::function<void()>& end);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool HasCapture() const;
    void LeaveWithoutCapture();
    void Leave();
    void Dispatch(QObject* watched, QEvent* event);

    QPointer<QWidget> m_window;
    Look m_look;
    std::function<void()> m_end;
    QEventLoop m_loop;
    bool m_isRunning = false;
    bool m_isDispatching = false;
};
