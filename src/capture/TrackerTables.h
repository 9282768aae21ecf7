#pragma once

#include "capture/CaptureRect.h"

#include <QtGlobal>

#include <array>

/// What a point of the tracker hits. The first eight are the handles and index `trackerHandles`.
enum TrackerHit : int {
    hitNothing = -1,
    hitTopLeft,
    hitTopRight,
    hitBottomRight,
    hitBottomLeft,
    hitTop,
    hitRight,
    hitBottom,
    hitLeft,
    hitMiddle,
};

/// Bit flags of a tracker's style.
enum TrackerStyle : quint32 {
    solidLine = 1, ///< The border is a line.
    dottedLine = 2, ///< The border is a dotted line; wins over `solidLine`.
    hatchedBorder = 4, ///< A hatched band around the rectangle.
    resizeInside = 8, ///< Handles inside the rectangle.
    resizeOutside = 16, ///< Handles outside the rectangle.
    hatchInside = 32, ///< Hatching over the rectangle's inside.
    // Kept: a mask of several bits and no flag of one; any of them will do.
    resizeMiddle = 0xF4240, ///< With `resizeOutside`, handles centred on the border.
};

/// A side of a rectangle, an index of `oppositeSides`.
enum class RectSide { left, top, right, bottom };

/// The coordinate of a side.
template <typename Rect> constexpr auto& SideOf(Rect& rect, RectSide side)
{
    switch (side) {
    case RectSide::left:
        return rect.left;
    case RectSide::top:
        return rect.top;
    case RectSide::right:
        return rect.right;
    case RectSide::bottom:
        break;
    }
    return rect.bottom;
}

/// Where a handle stands and what it changes.
struct TrackerHandle {
    RectSide xSide, ySide; ///< Its place is measured from these, and these it changes.
    bool centreX, centreY; ///< It stands in the middle of that axis.
    int offsetX, offsetY; ///< Added to its place, in sizes of a handle.
    /// What it turns into when the rectangle is turned over on that axis. A handle that turns into
    /// itself does not change that axis.
    TrackerHit invertX, invertY;
};

constexpr std::array<TrackerHandle, hitMiddle> trackerHandles{{
    {RectSide::left, RectSide::top, false, false, 0, 0, hitTopRight, hitBottomLeft},
    {RectSide::right, RectSide::top, false, false, -1, 0, hitTopLeft, hitBottomRight},
    {RectSide::right, RectSide::bottom, false, false, -1, -1, hitBottomLeft, hitTopRight},
    {RectSide::left, RectSide::bottom, false, false, 0, -1, hitBottomRight, hitTopLeft},
    {RectSide::left, RectSide::top, true, false, 0, 0, hitTop, hitBottom},
    {RectSide::right, RectSide::top, false, true, -1, 0, hitLeft, hitRight},
    {RectSide::left, RectSide::bottom, true, false, 0, -1, hitBottom, hitTop},
    {RectSide::left, RectSide::top, false, true, 0, 0, hitRight, hitLeft},
}};

/// From which side the rule of the minimum size measures a side, and in which direction.
struct OppositeSide {
    RectSide side;
    int sign;
};

constexpr std::array<OppositeSide, 4> oppositeSides{{
    {RectSide::right, 1},
    {RectSide::bottom, 1},
    {RectSide::left, -1},
    {RectSide::top, -1},
}};

/// The bits of a handle mask that depend on the room there is, one bit per hit code.
constexpr quint32 cornerHandles =
    1U << hitTopLeft | 1U << hitTopRight | 1U << hitBottomRight | 1U << hitBottomLeft;
constexpr quint32 topAndBottomHandles = 1U << hitTop | 1U << hitBottom;
constexpr quint32 leftAndRightHandles = 1U << hitRight | 1U << hitLeft;
