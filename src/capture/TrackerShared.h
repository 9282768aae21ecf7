#pragma once

#include <QBrush>
#include <QCursor>

#include <array>

/// What all trackers of the process share: a change by one is seen by all. User-interface thread
/// only; it is built at the first use.
struct TrackerShared {
    /// Diagonal lines, opaque where a line is and clear between.
    QBrush hatch;
    /// The pens of the border. A pen is what fills the band of a line: where a drawn line ends up
    /// depends on the scale of the screen, a band does not.
    QColor solidPen;
    QBrush dottedPen;
    /// One per hit code, and `gapCursor`.
    std::array<QCursor, 10> cursors;
    /// Edge length of a handle.
    int handleSize;

    /// The index of the cursor for the gap between handles on a hatched border.
    static constexpr std::size_t gapCursor = 9;

    static TrackerShared& Get();
};
