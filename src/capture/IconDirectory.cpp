#include "capture/IconDirectory.h"

#include "support/Paths.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QtEndian>

namespace capture {
namespace {

constexpr qint64 maxBytes = 1024 * 1024;
constexpr int headerSize = 6;
constexpr int entrySize = 16;
constexpr int maxEdge = 256;

template <typename Number> Number numberAt(const QByteArray& bytes, qsizetype offset)
{
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

bool isPng(const QByteArray& bytes)
{
    return bytes.startsWith("\x89PNG\r\n\x1a\n");
}

/// What the picture itself says: the directory may say something else. Nothing is decoded.
QSize sizeOf(const QByteArray& bytes)
{
    constexpr int dibHeader = 40;
    if (isPng(bytes)) {
        QBuffer buffer;
        buffer.setData(bytes);
        return QImageReader(&buffer, "png").size();
    }
    if (bytes.size() < dibHeader || numberAt<quint32>(bytes, 0) != dibHeader)
        return {};
    // A bitmap's height counts its mask too.
    return {numberAt<qint32>(bytes, 4), numberAt<qint32>(bytes, 8) / 2};
}

} // namespace

std::vector<PackedIcon> ParseIconDirectory(const QByteArray& file, IconKind kind)
{
    if (file.size() < headerSize || numberAt<quint16>(file, 0) != 0
        || numberAt<quint16>(file, 2) != quint16(kind))
        return {};
    const int count = numberAt<quint16>(file, 4);
    if (file.size() < headerSize + qsizetype(count) * entrySize)
        return {};
    std::vector<PackedIcon> icons;
    for (int i = 0; i < count; ++i) {
        const qsizetype entry = headerSize + qsizetype(i) * entrySize;
        const qint64 length = numberAt<quint32>(file, entry + 8);
        const qint64 offset = numberAt<quint32>(file, entry + 12);
        if (offset + length > file.size())
            return {};
        PackedIcon icon;
        // In a cursor the fields that are planes and bits per pixel elsewhere.
        if (kind == IconKind::Cursor)
            icon.hotSpot = {numberAt<quint16>(file, entry + 4), numberAt<quint16>(file, entry + 6)};
        icon.bytes = file.mid(offset, length);
        icon.size = sizeOf(icon.bytes);
        if (icon.size.isEmpty() || icon.size.width() > maxEdge || icon.size.height() > maxEdge)
            return {};
        icons.push_back(icon);
    }
    return icons;
}

std::vector<PackedIcon> ReadIconDirectory(const QString& resName, IconKind kind)
{
    const QString path = GetResFilePath(resName);
    QFile file(path);
    if (!IsFileExist(path) || !file.open(QIODevice::ReadOnly) || file.size() > maxBytes)
        return {};
    return ParseIconDirectory(file.read(maxBytes), kind);
}

QImage UnpackIcon(const PackedIcon& icon)
{
    QByteArray file = icon.bytes;
    const bool png = isPng(file);
    if (!png) {
        // Qt reads such a bitmap only inside of an icon file, so it becomes one of a single icon.
        QByteArray header(headerSize + entrySize, '\0');
        const auto put = [&](int offset, auto number) {
            qToLittleEndian(number, header.data() + offset);
        };
        put(2, quint16(IconKind::Icon));
        put(4, quint16(1));
        header[headerSize] = char(icon.size.width()); // 256 is written as 0
        header[headerSize + 1] = char(icon.size.height());
        put(headerSize + 8, quint32(file.size()));
        put(headerSize + 12, quint32(header.size()));
        file.prepend(header);
    }
    QBuffer buffer(&file);
    const QImage image = QImageReader(&buffer, png ? "png" : "ico").read();
    return image.size() == icon.size ? image : QImage();
}

} // namespace capture
