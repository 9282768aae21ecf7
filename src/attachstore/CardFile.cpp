#include "attachstore/CardFile.h"

#include "support/DiskFile.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

namespace attachstore {
namespace {

constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint16_t kBitsPerPixel = 16;

template <typename Number> void append(QByteArray& bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

// BITMAPFILEHEADER
QByteArray fileHeader(std::uint32_t pixelBytes)
{
    constexpr std::uint32_t pixelsAt = kFileHeaderSize + kInfoHeaderSize;
    QByteArray bytes("BM");
    append(bytes, pixelsAt + pixelBytes);
    append(bytes, std::uint32_t{0}); // reserved
    append(bytes, pixelsAt);
    return bytes;
}

// BITMAPINFOHEADER
QByteArray infoHeader(const QImage& picture)
{
    QByteArray bytes;
    append(bytes, kInfoHeaderSize);
    append(bytes, std::int32_t{picture.width()});
    append(bytes, std::int32_t{picture.height()}); // positive: from the bottom up
    append(bytes, std::uint16_t{1}); // plane
    append(bytes, kBitsPerPixel);
    // BI_RGB, and nothing said of the image's size, its resolution and its colours.
    bytes.append(kInfoHeaderSize - bytes.size(), '\0');
    return bytes;
}

// Five bits each of red, green and blue below an unused one.
std::uint16_t packed(QRgb colour)
{
    const auto packedColour =
        (colour >> 9 & 0x7C00) | (colour >> 6 & 0x03E0) | (colour >> 3 & 0x001F);
    return qToLittleEndian(static_cast<std::uint16_t>(packedColour));
}

// Rows from the bottom up, each padded to four bytes.
//
// Kept: the length is counted without the padding, two bytes a pixel. Of a picture with an odd
// width the end of the top row is therefore left out.
std::vector<std::uint16_t> pixelsOf(const QImage& picture)
{
    const int width = picture.width();
    const int height = picture.height();
    const int rowLength = width + width % 2;
    std::vector<std::uint16_t> pixels(static_cast<std::size_t>(rowLength) * height);
    for (int y = 0; y < height; ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        auto* to = pixels.data() + static_cast<std::size_t>(rowLength) * (height - 1 - y);
        for (int x = 0; x < width; ++x)
            to[x] = packed(from[x]);
    }
    pixels.resize(static_cast<std::size_t>(width) * height);
    return pixels;
}

bool canStandAt(const QString& path)
{
    if (path.contains(QChar(u'\0'))) // would be cut there, and name another file
        return false;
    using std::filesystem::file_type;
    std::error_code error;
    const file_type type =
        std::filesystem::symlink_status(QFile::encodeName(path).toStdString(), error).type();
    return type == file_type::regular || type == file_type::not_found;
}

int writeParts(OutputFile& file, const QImage& picture, const std::vector<std::uint16_t>& pixels)
{
    const std::size_t pixelBytes = pixels.size() * sizeof pixels.front();
    const QByteArray header = fileHeader(static_cast<std::uint32_t>(pixelBytes));
    const QByteArray info = infoHeader(picture);
    if (const int error = file.write(header.constData(), header.size()))
        return error;
    if (const int error = file.write(info.constData(), info.size()))
        return error;
    if (const int error = file.write(reinterpret_cast<const char*>(pixels.data()), pixelBytes))
        return error;
    return file.flushAndClose();
}

} // namespace

int WriteCardFile(const QImage& picture, const QString& path)
{
    const std::vector<std::uint16_t> pixels = pixelsOf(picture);
    OutputFile file;
    if (!canStandAt(path) || file.create(path) != 0)
        return 0;
    if (writeParts(file, picture, pixels) != 0) {
        QFile::remove(path);
        return 0;
    }
    return static_cast<int>(file.written());
}

} // namespace attachstore
