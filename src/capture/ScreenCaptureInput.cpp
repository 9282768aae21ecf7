// What mouse and keys do to the capture dialog and its selection.

#include "capture/CSTip.h"
#include "capture/ScreenCaptureDlgBase.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace {

/// How large a selection is at the press that begins it, and how far behind the press the first
/// move lets it begin.
constexpr int startSize = 4;

} // namespace

QCursor ScreenCaptureDlgBase::DefaultCursor() const
{
    return m_cursorDefault.value_or(Qt::ArrowCursor);
}

void ScreenCaptureDlgBase::ChooseCursor(const QPoint& point)
{
    if (m_has && !m_dragging && m_tracker.SetCursor(this, HTCLIENT, point))
        return;
    if (const QCursor chosen = DefaultCursor(); cursor() != chosen)
        setCursor(chosen);
}

bool ScreenCaptureDlgBase::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        // While the mouse is captured the cursor stays what it was at the press.
        if (!QWidget::mouseGrabber())
            ChooseCursor(static_cast<QMouseEvent*>(event)->position().toPoint());
        break;
    default:
        break;
    }
    return QDialog::event(event);
}

void ScreenCaptureDlgBase::keyPressEvent(QKeyEvent* event)
{
    // In a tracking the keys are the tracker's, which looks at them afterwards.
    if (QWidget::mouseGrabber() == this)
        return;
    if (event->key() == Qt::Key_Escape)
        OnCancel();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        OnOK();
}

void ScreenCaptureDlgBase::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        OnLButtonDown(event->position().toPoint());
}

void ScreenCaptureDlgBase::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        OnLButtonUp();
    else if (event->button() == Qt::RightButton)
        OnRButtonUp(event->position().toPoint());
}

void ScreenCaptureDlgBase::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (event->button() == Qt::LeftButton && m_tracker.rect.Normalised().Contains(point))
        OnSelectionDoubleClick(point);
}

void ScreenCaptureDlgBase::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    m_tip->PointerAt(point);
    if (m_tip->geometry().contains(point))
        m_tip->Swap();
    if (!m_dragging) {
        m_tip->repaint();
        return;
    }
    const bool isTipSeen = m_tip->isVisible();
    if (isTipSeen)
        m_tip->Compose(); // Its picture is that of before the move.
    // Kept: the press makes a rectangle at its point and the first move one that begins behind it,
    // so a drag of exactly that distance leaves an empty one.
    m_tracker.rect = {m_anchor.x() + startSize, m_anchor.y() + startSize, point.x(), point.y()};
    const QRegion stale = TakeStale();
    if (!isTipSeen)
        return repaint(stale);
    // One way to the screen for both, as each costs the window system the same. It has to be the
    // tip's, which takes along what waits: a repaint of the dialog leaves an opaque child out.
    update(stale);
    m_tip->repaint();
}

void ScreenCaptureDlgBase::OnLButtonDown(const QPoint& point)
{
    const TrackerHit hit = m_tracker.HitTest(point);
    if (hit == hitNothing && !m_has) {
        m_has = m_dragging = true;
        m_anchor = point;
        m_tracker.rect = {point.x(), point.y(), point.x() + startSize, point.y() + startSize};
        RepaintCaptureArea();
    } else if (hit != hitNothing && m_has) {
        const TrackerHit handle = m_tracker.HitTestHandles(point);
        if (handle != hitNothing) {
            m_tracker.invertAllow = true;
            m_tracker.TrackHandle(handle, this, point);
        }
        RepaintCaptureArea();
    }
}

void ScreenCaptureDlgBase::OnLButtonUp()
{
    if (m_has)
        ShowToolbar(true);
    m_dragging = false;
    RepaintCaptureArea();
}

void ScreenCaptureDlgBase::OnRButtonUp(const QPoint& point)
{
    OnLButtonUp();
    if (!m_has) {
        OnCancel();
    } else if (m_tracker.rect.Normalised().Contains(point)) {
        OnSelectionRightClick(point);
    } else {
        m_has = false;
        m_tracker.rect = {};
        ShowToolbar(false);
        RepaintCaptureArea();
    }
}
