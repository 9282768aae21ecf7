#pragma once

#include <QPoint>
#include <QRect>

#include <algorithm>
#include <cstdlib>

/// A rectangle in the coordinates of the capture dialog, right and bottom exclusive. It may be
/// inverted: a selection is drawn towards any corner and keeps the sense of its edges.
struct CaptureRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    friend bool operator==(const CaptureRect&, const CaptureRect&) = default;

    /// The signed extents, negative when inverted.
    [[nodiscard]] int Width() const { return right - left; }
    [[nodiscard]] int Height() const { return bottom - top; }

    /// The same rectangle with left at most right and top at most bottom.
    [[nodiscard]] CaptureRect Normalised() const
    {
        return {std::min(left, right), std::min(top, bottom), std::max(left, right),
            std::max(top, bottom)};
    }

    /// Grown by `by` on each side; meant for a normalised rectangle.
    [[nodiscard]] CaptureRect Inflated(int by) const
    {
        return {left - by, top - by, right + by, bottom + by};
    }

    /// Whether it covers no pixel. Meant for a normalised rectangle.
    [[nodiscard]] bool IsEmpty() const { return right <= left || bottom <= top; }

    /// Left and top belong to it, right and bottom do not. Meant for a normalised rectangle.
    [[nodiscard]] bool Contains(const QPoint& point) const
    {
        return point.x() >= left && point.x() < right && point.y() >= top && point.y() < bottom;
    }

    /// Qt's rectangle as one of these.
    [[nodiscard]] static CaptureRect Of(const QRect& rect)
    {
        return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
    }

    /// The normalised rectangle as Qt has it.
    [[nodiscard]] QRect ToQRect() const
    {
        const CaptureRect r = Normalised();
        return {r.left, r.top, r.Width(), r.Height()};
    }
};
