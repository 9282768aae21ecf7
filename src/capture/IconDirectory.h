#pragma once

#include <QImage>
#include <QPoint>
#include <QString>

#include <vector>

/// What a file of icons or cursors holds (ICO, CUR): a directory and the pictures that it names.
namespace capture {

enum class IconKind : quint16 {
    Icon = 1,
    Cursor = 2,
};

/// One picture of such a file, still packed.
struct PackedIcon {
    QSize size; ///< Of the decoded picture, in pixels; at most 256 by 256.
    QPoint hotSpot; ///< Of a cursor.
    QByteArray bytes; ///< PNG, or a bitmap without its file header.
};

/// The pictures of the file of that name in the `res` directory, in the file's order. Empty if it
/// is missing, larger than 1 MiB, of another kind, or broken in whatever part of its directory.
std::vector<PackedIcon> ReadIconDirectory(const QString& resName, IconKind kind);

/// The same for the bytes of such a file.
std::vector<PackedIcon> ParseIconDirectory(const QByteArray& file, IconKind kind);

/// Null if the bytes cannot be decoded or come out in another size.
QImage UnpackIcon(const PackedIcon& icon);

} // namespace capture
