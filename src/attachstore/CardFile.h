#pragma once

#include <QImage>
#include <QString>

namespace attachstore {

/// Writes a picture as a BMP file of 16 bits a pixel and flushes it to the disk. `picture` is of
/// the format RGB32. A regular file at `path` is replaced; anything else there (a directory, a
/// link, a device, a FIFO) is left alone.
///
/// The length of the file in bytes, or 0 if it could not be written; then there is no file.
int WriteCardFile(const QImage& picture, const QString& path);

} // namespace attachstore
