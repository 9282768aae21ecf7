#pragma once

#include "capture/CaptureRect.h"

#include <QImage>

class QPainter;

// Between the coordinates of the capture dialog and the pixels of the screen, which are finer on a
// screen of high density.

/// The pixels of the snapshot that `rect`, normalised and in the dialog's coordinates, covers: its
/// edges come to the nearest pixel, so that two rectangles that meet neither overlap nor leave a
/// gap. Held inside of the snapshot; empty when nothing of it is left.
QRect ScreenPixelsOf(const CaptureRect& rect, const QImage& snapshot);

/// Paints these pixels of the snapshot at the place that they have on the screen, with no blending.
/// `dc` draws in the coordinates of the dialog, whatever it draws on. None if empty.
void DrawScreenPixels(QPainter& dc, const QImage& snapshot, const QRect& pixels);

/// The same at 240/255 of each colour value, rounded. The snapshot's format is RGB32. It is dimmed
/// piece by piece on its way: a second picture of the screen would cost more than it saves, as each
/// pixel is painted once and then only where the selection changes.
void DrawDimmedPixels(QPainter& dc, const QImage& snapshot, const QRect& pixels);
