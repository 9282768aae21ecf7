#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>

class QMimeData;

/// Help with images.
class CGdiToolBox {
public:
    /// The most pixels that an image from another program may have: 128 MiB in memory, what a
    /// screen of 7,680 by 4,320 fits into.
    static constexpr qint64 maxPixels = qint64(128) * 1024 * 1024 / 4;

    /// Decodes the bytes of an image file, turned as the file says. Null if they are none that can
    /// be decoded, or the image has more than `maxPixels`, which is known from its header: nothing
    /// is decoded then.
    static QImage LoadImageFromMemory(const QByteArray& bytes);
    /// The image that a drag or the clipboard offers as pixels. Null if there is none, or it has
    /// more than `maxPixels`.
    static QImage LoadBitmap(const QMimeData& data);

    /// Multiplies the colour of each pixel by its alpha, and says so in the image's format. An
    /// image of such a format, and a null one, stay as they are.
    static void PreMultiplyAlpha(QImage& bitmap);
    /// Turns `rect` into a rectangle of that size centred in the old one; where that leaves half a
    /// pixel over, the spare one lies right or below.
    static void RectCenter(QRect& rect, int width, int height);
};
