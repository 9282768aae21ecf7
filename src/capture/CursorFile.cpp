#include "capture/CursorFile.h"

#include "capture/IconDirectory.h"

#include <QPixmap>

std::optional<QCursor> LoadCursorFile(const QString& resName)
{
    const std::vector<capture::PackedIcon> cursors =
        capture::ReadIconDirectory(resName, capture::IconKind::Cursor);
    if (cursors.empty())
        return std::nullopt;
    const capture::PackedIcon& cursor = cursors.front();
    const QImage image = UnpackIcon(cursor);
    if (!image.valid(cursor.hotSpot))
        return std::nullopt;
    return QCursor(QPixmap::fromImage(image), cursor.hotSpot.x(), cursor.hotSpot.y());
}
