#include "capture/ScreenPixels.h"

#include <QPainter>

namespace {

/// The brightness of the dimmed screen, out of 255.
constexpr quint32 dimmedTo = 240;

/// Both colour values of `pair`, in bits 0 to 7 and 16 to 23, times dimmedTo / 255.
quint32 DimPair(quint32 pair)
{
    // x / 255, rounded, for x up to 255 * 255.
    const quint32 x = pair * dimmedTo + 0x00800080;
    return (x + (x >> 8 & 0x00ff00ff)) >> 8 & 0x00ff00ff;
}

} // namespace

QRect ScreenPixelsOf(const CaptureRect& rect, const QImage& snapshot)
{
    const qreal ratio = snapshot.devicePixelRatio();
    const int left = qRound(rect.left * ratio), top = qRound(rect.top * ratio);
    const QRect pixels(
        left, top, qRound(rect.right * ratio) - left, qRound(rect.bottom * ratio) - top);
    return pixels & snapshot.rect();
}

void DrawScreenPixels(QPainter& dc, const QImage& image, const QRect& pixels, qreal ratio)
{
    if (pixels.isEmpty())
        return;
    dc.save();
    // In units of pixels the whole transformation is none at all on the screen of the snapshot, and
    // the painter copies.
    dc.scale(1 / ratio, 1 / ratio);
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    const QImage plain(
        image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    dc.drawImage(pixels.topLeft(), plain, pixels);
    dc.restore();
}

QImage DimmedScreen(const QImage& snapshot)
{
    const QImage source = snapshot.convertToFormat(QImage::Format_RGB32);
    QImage dimmed(source.size(), QImage::Format_RGB32);
    for (int y = 0; y < source.height(); ++y) {
        const auto* from = reinterpret_cast<const quint32*>(source.constScanLine(y));
        auto* to = reinterpret_cast<quint32*>(dimmed.scanLine(y));
        for (int x = 0; x < source.width(); ++x) {
            to[x] = 0xff000000U | DimPair(from[x] >> 8 & 0x000000ff) << 8
                | DimPair(from[x] & 0x00ff00ff);
        }
    }
    return dimmed;
}
