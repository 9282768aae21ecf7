#include "attachstore/ImageFile.h"

#include "attachstore/FileRecord.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QColorSpace>
#include <QFile>

namespace attachstore {
namespace {

// JPEG knows no transparency, and what lies under transparent pixels is black as a rule. Row by
// row: a painter would not reach beyond 32,767 pixels, and a conversion of the whole image would
// stand in memory beside the result.
QImage onWhite(const QImage& image)
{
    QImage flat(image.size(), QImage::Format_RGB32);
    if (flat.isNull())
        return flat;
    flat.setColorSpace(image.colorSpace());
    flat.setDotsPerMeterX(image.dotsPerMeterX());
    flat.setDotsPerMeterY(image.dotsPerMeterY());
    for (int y = 0; y < image.height(); ++y) {
        const QImage row =
            image.copy(0, y, image.width(), 1).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        const auto* from = reinterpret_cast<const QRgb*>(row.constScanLine(0));
        auto* to = reinterpret_cast<QRgb*>(flat.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto white = static_cast<QRgb>(255 - qAlpha(from[x]));
            to[x] = (from[x] | 0xFF000000) + white * 0x010101;
        }
    }
    return flat;
}

// The device is ours, so that a disk that fills up with the last bytes is noticed.
bool writeJpeg(const QImage& image, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    const bool encoded =
        image.hasAlphaChannel() ? onWhite(image).save(&file, "JPG") : image.save(&file, "JPG");
    if (encoded && file.flush() && file.error() == QFileDevice::NoError)
        return true;
    QFile::remove(path); // not the file's own: that would want to write the rest first
    return false;
}

} // namespace

int SaveImage(const QImage& image, std::vector<DropFileInfo>& list)
{
    const QString directory = GetTempDir();
    if (image.isNull() || directory.isEmpty())
        return 0;
    const QString path = directory + CreateGuidString() + QStringLiteral(".jpg");
    if (!writeJpeg(image, path))
        return 0;
    auto record = RecordOfPath(path);
    if (!record)
        return 0;
    record->isTempFile = true;
    list.push_back(*record);
    return 1;
}

void DelTempFileFromList(const std::vector<DropFileInfo>& list)
{
    for (const DropFileInfo& record : list) {
        if (record.isTempFile)
            QFile::remove(record.filePath);
    }
}

} // namespace attachstore
