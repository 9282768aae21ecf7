// How a tracker looks.

#include "capture/CMyTracker.h"
#include "capture/TrackerShared.h"

#include <QPainter>

namespace {

/// Fills rectangles where the painter's clip lets anything be seen: most of a tracker lies outside
/// of the small part that a change repaints.
class Filler {
public:
    explicit Filler(QPainter& dc)
        : m_dc(dc)
        , m_isClipped(dc.hasClipping())
        , m_seen(m_isClipped ? dc.clipBoundingRect().toAlignedRect() : QRect())
    {
    }

    /// `Paint` is a brush or, which is quicker, a colour.
    template <typename Paint> void Fill(const QRect& rect, const Paint& paint)
    {
        if (!m_isClipped || m_seen.intersects(rect))
            m_dc.fillRect(rect, paint);
    }
    /// What of `outer` lies outside of `inner`, which it contains.
    template <typename Paint>
    void FillBands(const CaptureRect& outer, const CaptureRect& inner, const Paint& paint)
    {
        const int width = outer.Width(), height = inner.Height();
        Fill({outer.left, outer.top, width, inner.top - outer.top}, paint);
        Fill({outer.left, inner.bottom, width, outer.bottom - inner.bottom}, paint);
        Fill({outer.left, inner.top, inner.left - outer.left, height}, paint);
        Fill({inner.right, inner.top, outer.right - inner.right, height}, paint);
    }

private:
    QPainter& m_dc;
    const bool m_isClipped;
    const QRect m_seen;
};

} // namespace

void CMyTracker::UpdatePens() const
{
    TrackerShared& shared = TrackerShared::Get();
    shared.solidPen = colour;
    shared.dottedPen = QBrush(colour, Qt::Dense4Pattern);
}

void CMyTracker::DrawInner(QPainter&, const CaptureRect&) const { }

void CMyTracker::DrawHatching(QPainter& dc, const CaptureRect& normalised) const
{
    const QBrush& hatch = TrackerShared::Get().hatch;
    if (style & hatchInside)
        Filler(dc).Fill(normalised.ToQRect(), hatch);
    if (style & hatchedBorder) {
        CaptureRect outer;
        GetTrueRect(&outer);
        Filler(dc).FillBands(outer, normalised, QColor(Qt::white));
        Filler(dc).FillBands(outer, normalised, hatch);
    }
}

void CMyTracker::Draw(QPainter& dc) const
{
    const CaptureRect normalised = rect.Normalised();
    DrawInner(dc, normalised);
    Filler filler(dc);
    // The line lies outside of the rectangle, on pixels that are no part of what is selected.
    if (HasLine()) {
        const TrackerShared& shared = TrackerShared::Get();
        if (style & dottedLine)
            filler.FillBands(normalised.Inflated(1), normalised, shared.dottedPen);
        else
            filler.FillBands(normalised.Inflated(1), normalised, shared.solidPen);
    }
    DrawHatching(dc, normalised);
    if (HasHandles()) {
        const quint32 mask = GetHandleMask();
        for (int code = hitTopLeft; code < hitMiddle; ++code) {
            if (!(mask & (1U << code)))
                continue;
            CaptureRect handle;
            GetHandleRect(TrackerHit(code), &handle);
            filler.Fill(handle.ToQRect(), colour);
        }
    }
}
