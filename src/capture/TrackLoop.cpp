#include "capture/TrackLoop.h"

#include "platform/WindowMessage.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <optional>

namespace {

/// What becomes of an event of the window.
struct Message {
    bool isRepeated = false; ///< It is dispatched a second time.
    std::optional<TrackInput> input; ///< It is looked at.
};

TrackInput InputAt(
    TrackInput::Kind kind, const QWidget* watched, const QWidget* window, const QMouseEvent& mouse)
{
    return {kind, watched->mapTo(window, mouse.position().toPoint())};
}

/// Null for an event that is no message of the tracking's.
std::optional<Message> MessageOf(const QWidget* watched, const QWidget* window, const QEvent& event)
{
    using Kind = TrackInput::Kind;
    constexpr Message once, twice{true, std::nullopt};
    const auto looked = [&](Kind kind) {
        return Message{
            false, InputAt(kind, watched, window, static_cast<const QMouseEvent&>(event))};
    };
    const auto button = [&] { return static_cast<const QMouseEvent&>(event).button(); };
    switch (event.type()) {
    case QEvent::MouseMove:
        return looked(Kind::Move);
    case QEvent::MouseButtonRelease:
        return button() == Qt::LeftButton ? looked(Kind::LeftRelease) : twice;
    case QEvent::MouseButtonPress:
        return button() == Qt::RightButton ? looked(Kind::RightPress) : twice;
    case QEvent::KeyPress:
        if (static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape)
            return Message{false, TrackInput{Kind::Escape, {}}};
        return once;
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyRelease:
        return twice;
    default:
        return IsPrivateMessage(event) ? std::optional(twice) : std::nullopt;
    }
}

} // namespace

TrackLoop::TrackLoop(QWidget* window)
    : m_window(window)
{
}

TrackLoop::~TrackLoop() = default;

void TrackLoop::Run(const Look& look, const std::function<void()>& end)
{
    m_look = look;
    m_end = end;
    m_isRunning = true;
    m_window->grabMouse();
    QCoreApplication::sendPostedEvents(m_window, QEvent::UpdateRequest);
    qApp->installEventFilter(this);
    // The capture may also be lost without an event.
    auto* dispatcher = QAbstractEventDispatcher::instance();
    connect(
        dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &TrackLoop::LeaveWithoutCapture);
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &TrackLoop::LeaveWithoutCapture);
    m_loop.exec();
    Leave(); // The application may have ended the loop.
}

bool TrackLoop::HasCapture() const
{
    return m_window && m_window->isVisible() && QWidget::mouseGrabber() == m_window;
}

void TrackLoop::LeaveWithoutCapture()
{
    if (!HasCapture())
        Leave();
}

// The loop itself returns only when the events that have arrived with the last one are handled, and
// these must find the tracking at its end.
void TrackLoop::Leave()
{
    if (!m_isRunning)
        return;
    m_isRunning = false;
    qApp->removeEventFilter(this);
    QAbstractEventDispatcher::instance()->disconnect(this);
    if (m_window && QWidget::mouseGrabber() == m_window)
        m_window->releaseMouse();
    m_end();
    m_loop.quit();
}

void TrackLoop::Dispatch(QObject* watched, QEvent* event)
{
    const QPointer<QObject> receiver = watched;
    m_isDispatching = true;
    event->accept();
    QCoreApplication::sendEvent(receiver, event);
    m_isDispatching = false;
}

bool TrackLoop::eventFilter(QObject* watched, QEvent* event)
{
    // A modal box has to have the mouse, wherever it was opened.
    if (event->type() == QEvent::WindowBlocked && m_window && watched == m_window->window()) {
        Leave();
        return false;
    }
    // What a dispatched message sets off is no message.
    if (m_isDispatching)
        return false;
    if (!HasCapture()) {
        Leave();
        return false;
    }
    if (!watched->isWidgetType())
        return false;
    const QPointer<QWidget> receiver = static_cast<QWidget*>(watched);
    if (receiver != m_window && !m_window->isAncestorOf(receiver))
        return false;
    const std::optional<Message> message = MessageOf(receiver, m_window, *event);
    if (!message)
        return false;
    Dispatch(receiver, event);
    // It may have opened a box, and then the tracking is over.
    if (m_isRunning && message->input && !m_look(*message->input))
        Leave();
    // Kept: a message of no meaning to the tracking is dispatched twice.
    if (m_isRunning && message->isRepeated && receiver)
        Dispatch(receiver, event);
    // Nobody further up is asked for what has been handled here.
    event->accept();
    return true;
}
