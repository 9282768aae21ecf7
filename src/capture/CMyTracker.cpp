#include "capture/CMyTracker.h"

#include "capture/DragFrame.h"
#include "capture/TrackLoop.h"
#include "capture/TrackerShared.h"

#include <QWidget>

namespace {

/// A side handle appears where three handles leave more room than this.
constexpr int roomBetweenHandles = 4;

bool IsHandle(TrackerHit hit)
{
    return hit >= hitTopLeft && hit < hitMiddle;
}

const TrackerHandle& HandleOf(TrackerHit hit)
{
    return trackerHandles[std::size_t(hit)];
}

/// The side's new coordinate if the rectangle is too small along its axis.
int HeldToMinimum(const CaptureRect& rect, RectSide side, int extent, int minimum, bool invert)
{
    const int measured = invert ? std::abs(extent) : extent;
    if (measured >= minimum)
        return SideOf(rect, side);
    const int direction = measured == 0 ? 1 : extent / measured;
    const OppositeSide opposite = oppositeSides[std::size_t(side)];
    return SideOf(rect, opposite.side) - direction * minimum * opposite.sign;
}

} // namespace

/// The sides that a handle changes.
struct CMyTracker::Sides {
    std::optional<RectSide> x, y;
};

CMyTracker::Sides CMyTracker::SidesOf(TrackerHit hit)
{
    const TrackerHandle& handle = HandleOf(hit);
    Sides sides;
    if (handle.invertX != hit)
        sides.x = handle.xSide;
    if (handle.invertY != hit)
        sides.y = handle.ySide;
    return sides;
}

CMyTracker::CMyTracker()
    : sizeHandle(TrackerShared::Get().handleSize)
{
    sizeMinimum = QSize(2 * sizeHandle, 2 * sizeHandle);
}

CMyTracker::~CMyTracker() = default;

void CMyTracker::OnChangedRect(const CaptureRect&) { }

int CMyTracker::GetHandleSize(const CaptureRect* rectOther) const
{
    if (style & resizeOutside)
        return sizeHandle;
    const CaptureRect& measured = rectOther ? *rectOther : rect;
    const int smaller = std::min(std::abs(measured.Width()), std::abs(measured.Height()));
    return 2 * sizeHandle > smaller ? smaller / 2 : sizeHandle;
}

quint32 CMyTracker::GetHandleMask() const
{
    quint32 mask = cornerHandles;
    const int handles = 3 * sizeHandle;
    if (std::abs(rect.Width()) - handles > roomBetweenHandles)
        mask |= topAndBottomHandles;
    if (std::abs(rect.Height()) - handles > roomBetweenHandles)
        mask |= leftAndRightHandles;
    return mask;
}

TrackerHit CMyTracker::NormalizeHit(TrackerHit hit) const
{
    if (!IsHandle(hit))
        return hit;
    if (rect.Width() < 0)
        hit = HandleOf(hit).invertX;
    if (rect.Height() < 0)
        hit = HandleOf(hit).invertY;
    return hit;
}

void CMyTracker::GetTrueRect(CaptureRect* out) const
{
    int around = 0;
    if (style & (resizeOutside | hatchedBorder))
        around += GetHandleSize() - 1;
    if (HasLine())
        around += 1;
    *out = rect.Normalised().Inflated(around);
}

void CMyTracker::GetHandleRect(TrackerHit hit, CaptureRect* out) const
{
    CaptureRect frame = rect.Normalised();
    if (HasLine())
        frame = frame.Inflated(1);
    const int size = GetHandleSize();
    if (style & resizeOutside)
        frame = frame.Inflated(style & resizeMiddle ? size - size / 2 - 1 : size - 1);
    const TrackerHandle& handle = HandleOf(NormalizeHit(hit));
    const int left = SideOf(frame, handle.xSide) + size * handle.offsetX
        + (handle.centreX ? (frame.Width() - size) / 2 : 0);
    const int top = SideOf(frame, handle.ySide) + size * handle.offsetY
        + (handle.centreY ? (frame.Height() - size) / 2 : 0);
    *out = {left, top, left + size, top + size};
}

TrackerHit CMyTracker::HitTestHandles(const QPoint& point) const
{
    CaptureRect area;
    GetTrueRect(&area);
    if (!area.Contains(point))
        return hitNothing;
    const quint32 mask = GetHandleMask();
    for (int code = hitTopLeft; code < hitMiddle; ++code) {
        GetHandleRect(TrackerHit(code), &area);
        if (mask & (1U << code) && area.Contains(point))
            return TrackerHit(code);
    }
    if (style & hatchedBorder)
        return hitMiddle;
    return rect.Normalised().Inflated(1).Contains(point) ? hitMiddle : hitNothing;
}

TrackerHit CMyTracker::HitTest(const QPoint& point) const
{
    CaptureRect area;
    GetTrueRect(&area);
    if (!area.Contains(point))
        return hitNothing;
    return HasHandles() ? HitTestHandles(point) : hitMiddle;
}

std::optional<std::size_t> CMyTracker::CursorAt(const QPoint& point) const
{
    const TrackerHit hit = NormalizeHit(HitTestHandles(point));
    if (hit == hitNothing)
        return std::nullopt;
    if (hit == hitMiddle && style & hatchedBorder && !rect.Normalised().Contains(point))
        return TrackerShared::gapCursor;
    return std::size_t(hit);
}

bool CMyTracker::SetCursor(QWidget* window, int hitTestCode, const QPoint& point) const
{
    if (hitTestCode != HTCLIENT)
        return false;
    const std::optional<std::size_t> index = CursorAt(point);
    if (!index)
        return false;
    const QCursor& cursor = TrackerShared::Get().cursors[*index];
    // Each setting goes to the window system, which has better to do on every move.
    if (window->cursor() != cursor)
        window->setCursor(cursor);
    return true;
}

void CMyTracker::SetSharedCursors(const std::array<QCursor, hitMiddle + 1>& cursors)
{
    std::copy(cursors.begin(), cursors.end(), TrackerShared::Get().cursors.begin());
}

void CMyTracker::AdjustRect(TrackerHit hit, CaptureRect*)
{
    if (!IsHandle(hit))
        return;
    const Sides sides = SidesOf(hit);
    if (sides.x)
        SideOf(rect, *sides.x) =
            HeldToMinimum(rect, *sides.x, rect.Width(), sizeMinimum.width(), invertAllow);
    if (sides.y)
        SideOf(rect, *sides.y) =
            HeldToMinimum(rect, *sides.y, rect.Height(), sizeMinimum.height(), invertAllow);
}

CMyTracker::Feedback CMyTracker::NextFeedback(
    const CaptureRect& shown, const QWidget* clipTo, const QWidget* window)
{
    Feedback next{shown.Normalised(), QSize(1, 1), !erase || eraseFinal};
    if (clipTo) {
        const QPoint by = clipTo->mapFromGlobal(window->mapToGlobal(QPoint()));
        next.rect = {next.rect.left + by.x(), next.rect.top + by.y(), next.rect.right + by.x(),
            next.rect.bottom + by.y()};
    }
    if (eraseFinal) {
        next.size = QSize(0, 0);
    } else if (style & hatchedBorder) {
        const int thick = std::max(1, GetHandleSize(&shown) - 1);
        next.size = QSize(thick, thick);
        next.rect = next.rect.Inflated(thick);
    }
    rectLast = next.rect;
    sizeLast = next.size;
    return next;
}

void CMyTracker::DrawTrackerRect(
    const CaptureRect& shown, QWidget* clipTo, DragFrame* dc, QWidget* window)
{
    const Feedback next = NextFeedback(shown, clipTo, window);
    if (next.isDrawn)
        dc->DrawDragRect(next.rect.ToQRect(), next.size);
}

void CMyTracker::MoveSides(TrackerHit hit, const QPoint& to, const QSize& size)
{
    const Sides sides = SidesOf(hit == hitMiddle ? hitTopLeft : hit);
    if (sides.x)
        SideOf(rect, *sides.x) = to.x();
    if (sides.y)
        SideOf(rect, *sides.y) = to.y();
    if (hit == hitMiddle) {
        rect.right = rect.left + size.width();
        rect.bottom = rect.top + size.height();
    }
    AdjustRect(hit, &rect);
}

bool CMyTracker::TrackHandle(TrackerHit hit, QWidget* window, const QPoint& point)
{
    if (QWidget::mouseGrabber() || hit == hitNothing)
        return false;
    const QSize size(rect.Width(), rect.Height());
    const CaptureRect saved = rect;
    const Sides sides = SidesOf(hit == hitMiddle ? hitTopLeft : hit);
    const QPoint reference(
        sides.x ? SideOf(rect, *sides.x) : rect.left + std::abs(rect.Width()) / 2,
        sides.y ? SideOf(rect, *sides.y) : rect.top + std::abs(rect.Height()) / 2);
    const QPoint offset = point - reference;
    DragFrame frame(window);
    bool moved = false;
    bool changed = false;

    const auto follow = [&](const QPoint& mouse) {
        const CaptureRect old = rect;
        MoveSides(hit, mouse - offset, size);
        if (old != rect || eraseFinal) {
            if (moved) {
                erase = true;
                DrawTrackerRect(old, nullptr, &frame, window);
            }
            OnChangedRect(old);
            moved = moved || !eraseFinal;
        }
        if (!eraseFinal && old != rect) {
            erase = false;
            DrawTrackerRect(rect, nullptr, &frame, window);
        }
    };
    const auto look = [&](const TrackInput& input) {
        if (input.kind == TrackInput::Kind::Escape || input.kind == TrackInput::Kind::RightPress) {
            erase = eraseFinal = moved;
            rect = saved;
            return false;
        }
        eraseFinal = input.kind == TrackInput::Kind::LeftRelease;
        follow(input.point);
        return !eraseFinal;
    };
    const auto end = [&] {
        if (!moved)
            rect = saved;
        erase = eraseFinal = false;
        changed = rect != saved;
    };
    TrackLoop(window).Run(look, end);
    return changed;
}
