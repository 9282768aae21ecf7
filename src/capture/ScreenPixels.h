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

/// Paints `pixels` of `image` at the place that they have on the screen, with no blending; none if
/// empty. `ratio` is how many pixels of the image make one unit of the dialog's coordinates, in
/// which `dc` draws; the ratio that the image itself has is not looked at.
void DrawScreenPixels(QPainter& dc, const QImage& image, const QRect& pixels, qreal ratio);

/// The snapshot at 240/255 of each colour value, rounded: the dimmed screen. In the format RGB32.
QImage DimmedScreen(const QImage& snapshot);
