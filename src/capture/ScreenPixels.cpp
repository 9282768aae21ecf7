#include "capture/ScreenPixels.h"

#include <QPainter>

#include <algorithm>
#include <array>

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

void DimRow(const quint32* from, quint32* to, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = 0xff000000U | DimPair(from[i] >> 8 & 0xff) << 8 | DimPair(from[i] & 0x00ff00ff);
}

/// How many pixels are dimmed in one piece: what the nearest cache of a processor holds.
constexpr int pieceSize = 1 << 12;

/// Dims and draws `pixels`, no wider than a piece.
void DrawDimmedColumn(QPainter& dc, const QImage& snapshot, const QRect& pixels)
{
    std::array<quint32, pieceSize> buffer;
    const int width = pixels.width();
    const int rows = std::min(pieceSize / width, pixels.height());
    const QImage piece(reinterpret_cast<uchar*>(buffer.data()), width, rows,
        qsizetype(width) * qsizetype(sizeof(quint32)), QImage::Format_RGB32);
    const qsizetype stride = snapshot.bytesPerLine() / qsizetype(sizeof(quint32));
    const auto* from =
        reinterpret_cast<const quint32*>(snapshot.constScanLine(pixels.top())) + pixels.left();
    for (int top = pixels.top(); top <= pixels.bottom(); top += rows) {
        const int count = std::min(rows, pixels.bottom() + 1 - top);
        quint32* to = buffer.data();
        for (int row = 0; row < count; ++row, from += stride, to += width)
            DimRow(from, to, width);
        dc.drawImage(pixels.left(), top, piece, 0, 0, width, count);
    }
}

/// Draws in units of the snapshot's pixels. On the screen of the snapshot the whole transformation
/// is then none at all, and the painter copies.
class PixelPainter {
public:
    PixelPainter(QPainter& dc, qreal ratio)
        : m_dc(dc)
        , m_isScaled(ratio != 1)
    {
        if (!m_isScaled)
            return;
        m_dc.save();
        m_dc.scale(1 / ratio, 1 / ratio);
    }
    ~PixelPainter()
    {
        if (m_isScaled)
            m_dc.restore();
    }
    PixelPainter(const PixelPainter&) = delete;
    PixelPainter& operator=(const PixelPainter&) = delete;

private:
    QPainter& m_dc;
    const bool m_isScaled;
};

} // namespace

QRect ScreenPixelsOf(const CaptureRect& rect, const QImage& snapshot)
{
    const qreal ratio = snapshot.devicePixelRatio();
    const int left = qRound(rect.left * ratio), top = qRound(rect.top * ratio);
    const QRect pixels(
        left, top, qRound(rect.right * ratio) - left, qRound(rect.bottom * ratio) - top);
    return pixels & snapshot.rect();
}

void DrawScreenPixels(QPainter& dc, const QImage& snapshot, const QRect& pixels)
{
    if (pixels.isEmpty())
        return;
    const PixelPainter inPixels(dc, snapshot.devicePixelRatio());
    // The same picture without a ratio of its own.
    const QImage plain(snapshot.constBits(), snapshot.width(), snapshot.height(),
        snapshot.bytesPerLine(), snapshot.format());
    dc.drawImage(pixels.topLeft(), plain, pixels);
}

void DrawDimmedPixels(QPainter& dc, const QImage& snapshot, const QRect& pixels)
{
    if (pixels.isEmpty())
        return;
    const PixelPainter inPixels(dc, snapshot.devicePixelRatio());
    for (int left = pixels.left(); left <= pixels.right(); left += pieceSize) {
        const int width = std::min(pieceSize, pixels.right() + 1 - left);
        DrawDimmedColumn(dc, snapshot, {left, pixels.top(), width, pixels.height()});
    }
}
