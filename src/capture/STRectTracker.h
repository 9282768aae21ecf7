#pragma once

#include "capture/CMyTracker.h"

class CaptureOwner;

/// The tracker of the capture dialog: its rectangle is the selection. It shows the undimmed screen
/// inside, and instead of a drag frame it has its owner repaint.
class STRectTracker : public CMyTracker {
public:
    /// `owner` is not owned and must outlive the tracker.
    explicit STRectTracker(CaptureOwner* owner);

    void DrawInner(QPainter& dc, const CaptureRect& rect) const override;
    void DrawTrackerRect(
        const CaptureRect& rect, QWidget* clipTo, DragFrame* dc, QWidget* window) override;
    void OnChangedRect(const CaptureRect& rectOld) override;

private:
    CaptureOwner* const m_owner;
};
