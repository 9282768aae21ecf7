#include "platform/CGdiToolBox.h"

#include <QBuffer>
#include <QImageReader>
#include <QMimeData>

namespace {

/// Lowers the decoders' limit, which is one for the whole process, for as long as it lives.
class AllocationLimit {
public:
    AllocationLimit()
    {
        constexpr int ours = int(CGdiToolBox::maxPixels * 4 / (1024 * 1024));
        if (m_before == 0 || m_before > ours) // 0: none.
            QImageReader::setAllocationLimit(ours);
    }
    ~AllocationLimit() { QImageReader::setAllocationLimit(m_before); }
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;

private:
    const int m_before = QImageReader::allocationLimit();
};

bool isBearable(QSize size)
{
    return qint64(size.width()) * size.height() <= CGdiToolBox::maxPixels;
}

} // namespace

QImage CGdiToolBox::LoadImageFromMemory(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    // A format that does not tell its size ahead is held by the decoders' own limit.
    if (!isBearable(reader.size()))
        return QImage();
    const AllocationLimit limit;
    return reader.read();
}

QImage CGdiToolBox::LoadBitmap(const QMimeData& data)
{
    const AllocationLimit limit; // The desktop may hand over bytes that are decoded only here.
    const auto image = qvariant_cast<QImage>(data.imageData());
    return isBearable(image.size()) ? image : QImage();
}

void CGdiToolBox::PreMultiplyAlpha(QImage& bitmap)
{
    bitmap = bitmap.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void CGdiToolBox::RectCenter(QRect& rect, int width, int height)
{
    rect = QRect(rect.x() + (rect.width() - width) / 2, rect.y() + (rect.height() - height) / 2,
        width, height);
}
