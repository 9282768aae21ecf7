#include "capture/TrackerShared.h"

#include <QImage>

namespace {

constexpr int defaultHandleSize = 4;
constexpr int hatchSize = 8;
constexpr std::array<quint8, hatchSize> hatchRows{0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88};

QImage HatchImage()
{
    QImage image(hatchSize, hatchSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < hatchSize; ++y) {
        for (int x = 0; x < hatchSize; ++x) {
            if (hatchRows[std::size_t(y)] & (0x80 >> x))
                image.setPixelColor(x, y, Qt::black);
        }
    }
    return image;
}

TrackerShared* Built()
{
    const QCursor diagonal(Qt::SizeFDiagCursor), otherDiagonal(Qt::SizeBDiagCursor),
        vertical(Qt::SizeVerCursor), horizontal(Qt::SizeHorCursor), move(Qt::SizeAllCursor);
    return new TrackerShared{QBrush(HatchImage()), QColor(Qt::black), QBrush(Qt::Dense4Pattern),
        {diagonal, otherDiagonal, diagonal, otherDiagonal, vertical, horizontal, vertical,
            horizontal, move, move},
        defaultHandleSize};
}

} // namespace

TrackerShared& TrackerShared::Get()
{
    // Built once whichever thread comes first, and never destroyed: a cursor must not be released
    // after the application object is gone.
    static TrackerShared* const shared = Built();
    return *shared;
}
