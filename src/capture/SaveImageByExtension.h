#pragma once

class QImage;
class QString;

/// Writes an image to a file in the format that the extension of its name stands for, with no
/// regard to case: the names of the formats that the platform can write, in its order, then the
/// desktop's other extensions for them. 1, or 0: an extension that none has, a null image, a path
/// that cannot be written. A file of that name is then as it was, and none is left half written;
/// but in a folder that takes no new files a writable one is written in place, so that a disk that
/// is full leaves a part of it.
int SaveImageByExtension(const QImage& image, const QString& path);
