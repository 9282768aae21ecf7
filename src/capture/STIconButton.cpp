#include "capture/STIconButton.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimerEvent>

namespace {

constexpr int hoverMs = 1;
constexpr QColor backColour(216, 241, 255);
constexpr QColor litColour(167, 222, 253);

} // namespace

STIconButton::STIconButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setGeometry(0, 0, 0, 0);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void STIconButton::SetIcon(const QImage& icon)
{
    m_icon = icon;
    if (!icon.isNull())
        m_iconSize = icon.deviceIndependentSize().toSize();
    update();
}

void STIconButton::SetTooltipText(const QString& text)
{
    m_tooltipText = text;
}

STIconButton::State STIconButton::CurrentState() const
{
    if (!isEnabled())
        return Disabled;
    if (isDown())
        return Pressed;
    if (m_hover)
        return Hover;
    return hasFocus() ? Focus : Normal;
}

QSize STIconButton::sizeHint() const
{
    return m_iconSize;
}

void STIconButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), backColour);
    DrawIcon(painter, {0, 0, width(), height()}, CurrentState());
}

void STIconButton::DrawIcon(QPainter& painter, const CaptureRect& rect, State state)
{
    if (m_icon.isNull())
        return;
    CaptureRect place = rect;
    if (const int excess = place.Height() - m_iconSize.height(); excess > 0) {
        place.top += excess / 2;
        place.bottom -= excess / 2;
    }
    if (const int excess = place.Width() - m_iconSize.width(); excess > 0) {
        place.left += excess / 2;
        place.right -= excess / 2;
    }
    if (state == Hover || state == Pressed)
        painter.fillRect(place.Inflated(4).ToQRect(), litColour);
    const int shift = state == Pressed ? 1 : 0;
    painter.drawImage(place.left + shift, place.top + shift, m_icon);
}

bool STIconButton::event(QEvent* event)
{
    // A button that comes up under a resting pointer is entered without a move.
    if (event->type() == QEvent::Enter)
        StartTracking();
    else if (event->type() == QEvent::Leave || event->type() == QEvent::Hide)
        OnMouseLeave();
    return QAbstractButton::event(event);
}

void STIconButton::mouseMoveEvent(QMouseEvent* event)
{
    StartTracking();
    QAbstractButton::mouseMoveEvent(event);
}

void STIconButton::StartTracking()
{
    if (m_tracking)
        return;
    m_tracking = true;
    m_hoverTimer.start(hoverMs, this);
}

void STIconButton::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_hoverTimer.timerId())
        return QAbstractButton::timerEvent(event);
    m_hoverTimer.stop();
    OnMouseHover();
}

void STIconButton::OnMouseHover()
{
    setToolTip(m_tooltipText);
    m_hover = true;
    update();
}

void STIconButton::OnMouseLeave()
{
    m_hoverTimer.stop();
    setToolTip(QString());
    m_tracking = false;
    m_hover = false;
    update();
}

void STIconButton::keyPressEvent(QKeyEvent* event)
{
    // Kept: the space bar is swallowed; Enter and Esc are the dialog's.
    event->setAccepted(event->key() == Qt::Key_Space);
}

void STIconButton::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(event->key() == Qt::Key_Space);
}
