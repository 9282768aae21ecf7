#pragma once

#include "attachstore/FileType.h"

#include <QString>

namespace attachstore {

/// Draws the card of a file that the page cannot show and writes it to `outPath`, a BMP file as
/// docs/card.md tells it: the icon of `type`, `fileName`, and below it `fileInfo`, which by custom
/// is a date and a size. The texts are drawn as they are, on one line each.
///
/// A card holds no time and nothing else of its own: the same texts and the same icon give the same
/// bytes on one machine. Another desktop's font gives others.
///
/// A regular file at `outPath` is replaced; the file is on the disk when this returns. `fileSize`
/// may be null; on success it receives the file's length in bytes.
///
/// Returns 1, or 0 if the icon is missing, there is no QGuiApplication to draw text with, or the
/// file cannot be written; there is no partial file then. Nothing is logged. For the user
/// interface's thread alone.
int GenerateFileThumb(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
    const QString& outPath, int* fileSize);

} // namespace attachstore
