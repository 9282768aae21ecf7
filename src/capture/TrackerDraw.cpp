// How a tracker looks.

#include "capture/CMyTracker.h"
#include "capture/TrackerShared.h"

#include <QPainter>

namespace {

/// Fills what of `outer` lies outside of `inner`, which it contains.
void FillBands(
    QPainter& dc, const CaptureRect& outer, const CaptureRect& inner, const QBrush& brush)
{
    const int width = outer.Width(), height = inner.Height();
    dc.fillRect(outer.left, outer.top, width, inner.top - outer.top, brush);
    dc.fillRect(outer.left, inner.bottom, width, outer.bottom - inner.bottom, brush);
    dc.fillRect(outer.left, inner.top, inner.left - outer.left, height, brush);
    dc.fillRect(inner.right, inner.top, outer.right - inner.right, height, brush);
}

} // namespace

void CMyTracker::UpdatePens() const
{
    TrackerShared& shared = TrackerShared::Get();
    shared.solidPen = QBrush(colour);
    shared.dottedPen = QBrush(colour, Qt::Dense4Pattern);
}

void CMyTracker::DrawInner(QPainter&, const CaptureRect&) const { }

void CMyTracker::DrawHatching(QPainter& dc, const CaptureRect& normalised) const
{
    const QBrush& hatch = TrackerShared::Get().hatch;
    if (style & hatchInside)
        dc.fillRect(normalised.ToQRect(), hatch);
    if (style & hatchedBorder) {
        CaptureRect outer;
        GetTrueRect(&outer);
        FillBands(dc, outer, normalised, Qt::white);
        FillBands(dc, outer, normalised, hatch);
    }
}

void CMyTracker::Draw(QPainter& dc) const
{
    const CaptureRect normalised = rect.Normalised();
    dc.save();
    DrawInner(dc, normalised);
    // The line lies outside of the rectangle, on pixels that are no part of what is selected.
    if (HasLine()) {
        const TrackerShared& shared = TrackerShared::Get();
        FillBands(dc, normalised.Inflated(1), normalised,
            style & dottedLine ? shared.dottedPen : shared.solidPen);
    }
    DrawHatching(dc, normalised);
    if (HasHandles()) {
        const quint32 mask = GetHandleMask();
        for (int code = hitTopLeft; code < hitMiddle; ++code) {
            if (!(mask & (1U << code)))
                continue;
            CaptureRect handle;
            GetHandleRect(TrackerHit(code), &handle);
            dc.fillRect(handle.ToQRect(), colour);
        }
    }
    dc.restore();
}
