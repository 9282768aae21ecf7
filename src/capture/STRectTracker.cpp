#include "capture/STRectTracker.h"

#include "capture/CaptureOwner.h"
#include "capture/ScreenPixels.h"

STRectTracker::STRectTracker(CaptureOwner* owner)
    : m_owner(owner)
{
}

void STRectTracker::DrawInner(QPainter& dc, const CaptureRect& inner) const
{
    const QImage& snapshot = m_owner->Snapshot();
    DrawScreenPixels(dc, snapshot, ScreenPixelsOf(inner, snapshot));
}

void STRectTracker::DrawTrackerRect(
    const CaptureRect& shown, QWidget* clipTo, DragFrame*, QWidget* window)
{
    if (NextFeedback(shown, clipTo, window).isDrawn)
        m_owner->RepaintCaptureArea();
}

void STRectTracker::OnChangedRect(const CaptureRect& rectOld)
{
    m_owner->OnSelectionRectChanged(rectOld);
}
