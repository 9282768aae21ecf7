#pragma once

#include "capture/CaptureRect.h"

#include <QImage>
#include <QRect>
#include <QSize>

class QPainter;

/// What the tracker, the tip and the toolbar see of the capture dialog that owns them.
class CaptureOwner {
public:
    virtual ~CaptureOwner();

    /// The frozen screen at full brightness, in device pixels, its device pixel ratio set. Null
    /// when the screen gave none.
    [[nodiscard]] virtual const QImage& Snapshot() const = 0;

    /// The screen's size in the coordinates of the dialog.
    [[nodiscard]] virtual QSize ScreenSize() const = 0;

    /// The rectangle of the selection as it stands, possibly inverted; empty when nothing is
    /// selected.
    [[nodiscard]] virtual CaptureRect Selection() const = 0;

    /// Paints what the dialog shows in `area`, its children excepted: the dimmed picture and, over
    /// it, the selection with border and handles. `painter` draws in the coordinates of the dialog,
    /// possibly transformed. Nothing outside of `area` is touched, nothing outside of the screen is
    /// painted.
    virtual void PaintScene(QPainter& painter, const QRect& area) const = 0;

    /// Repaints what a change of the selection touched, tip and toolbar excepted, before it
    /// returns.
    virtual void RepaintCaptureArea() = 0;

    /// The tracker changed the selection, which was `rectOld` before.
    virtual void OnSelectionRectChanged(const CaptureRect& rectOld) = 0;
};
