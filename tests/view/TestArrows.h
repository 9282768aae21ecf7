#pragma once

#include <QImage>

/// A picture of four frames of 5 by 3, each in one colour: red, green, blue, yellow. The first
/// column of each has half the alpha, and the last has none.
inline QImage testArrows()
{
    QImage arrows(20, 3, QImage::Format_ARGB32);
    const QRgb colours[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00};
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 20; ++x) {
            const QRgb colour = colours[x / 5];
            const QRgb alpha = x % 5 == 0 ? 128U : x % 5 == 4 ? 0U : 255U;
            arrows.setPixel(x, y, (colour & 0xFFFFFFU) | alpha << 24);
        }
    return arrows;
}

/// What a channel of the ground becomes under a channel of a frame with that alpha: premultiplied,
/// lowered to 225 of 255, and put over it.
inline int blended(int channel, int alpha, int ground)
{
    const double faded = alpha * 225.0 / 255;
    return int(channel * faded / 255 + ground * (255 - faded) / 255 + 0.5);
}
