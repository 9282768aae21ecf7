#include "reliability/browser/MadePictures.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

namespace {

constexpr quint32 side = 60'000;

template <typename Number> QByteArray big(Number number)
{
    const Number swapped = qToBigEndian(number);
    return QByteArray(reinterpret_cast<const char*>(&swapped), sizeof swapped);
}

template <typename Number> QByteArray little(Number number)
{
    const Number swapped = qToLittleEndian(number);
    return QByteArray(reinterpret_cast<const char*>(&swapped), sizeof swapped);
}

quint32 crcOf(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1 ? 0xEDB88320 : 0) ^ (crc >> 1);
    }
    return ~crc;
}

QByteArray chunk(const QByteArray& type, const QByteArray& content)
{
    return big(quint32(content.size())) + type + content + big(crcOf(type + content));
}

/// As zlib has it, without the length that Qt puts in front.
QByteArray packed(qsizetype zeros)
{
    return qCompress(QByteArray(zeros, '\0'), 9).mid(4);
}

QByteArray png(quint32 width, quint32 height, char depth, char colours, const QByteArray& more)
{
    return QByteArray("\x89PNG\r\n\x1a\n")
        + chunk("IHDR", big(width) + big(height) + depth + colours + QByteArray(3, '\0')) + more
        + chunk("IDAT", packed(64 * 1024 * 1024)) + chunk("IEND", {});
}

QByteArray bmp(qint32 width, qint32 height, quint16 bits, quint32 packing)
{
    return QByteArray("BM") + little(quint32(200)) + little(quint32(0)) + little(quint32(54))
        + little(quint32(40)) + little(width) + little(height) + little(quint16(1)) + little(bits)
        + little(packing) + QByteArray(20, '\0') + QByteArray(100, '\1');
}

QByteArray gif(quint16 screen, quint16 frame)
{
    return QByteArray("GIF89a") + little(screen) + little(screen) + QByteArray("\x80\0\0", 3)
        + QByteArray("\xff\0\0\0\xff\0", 6) + ',' + QByteArray(4, '\0') + little(frame)
        + little(frame) + QByteArray("\0\2\2\x44\1\0;", 7);
}

QByteArray jpeg(quint16 width, quint16 height, char kind)
{
    const QByteArray frame = QByteArray("\x08", 1) + big(height) + big(width)
        + QByteArray("\3\1\x22\0\2\x11\1\3\x11\1", 10);
    return QByteArray("\xff\xd8\xff", 3) + kind + big(quint16(frame.size() + 2)) + frame
        + QByteArray("\xff\xda\0\x0c\3\1\0\2\x11\3\x11\0\x3f\0", 14) + QByteArray(200, 'x')
        + QByteArray("\xff\xd9", 2);
}

QByteArray webp(quint32 size)
{
    const QByteArray extended =
        QByteArray("\x10\0\0\0", 4) + little(size - 1).left(3) + little(size - 1).left(3);
    const QByteArray body = QByteArray("WEBPVP8X") + little(quint32(extended.size())) + extended;
    return QByteArray("RIFF") + little(quint32(body.size())) + body;
}

QByteArray ico()
{
    const QByteArray picture = png(side, side, 8, 6, {});
    return QByteArray("\0\0\1\0\1\0\0\0\0\0\1\0\x20\0", 14) + little(quint32(picture.size()))
        + little(quint32(22)) + picture;
}

QByteArray tiff()
{
    const auto entry = [](quint16 tag, quint32 value) {
        return little(tag) + little(quint16(4)) + little(quint32(1)) + little(value);
    };
    return QByteArray("II\x2a\0", 4) + little(quint32(8)) + little(quint16(6)) + entry(256, side)
        + entry(257, side) + entry(259, 1) + entry(262, 1) + entry(273, 90) + entry(279, 10)
        + little(quint32(0)) + QByteArray(100, '\0');
}

QByteArray text(const char* format)
{
    return QString::asprintf(format, side, side).toLatin1();
}

} // namespace

std::vector<MadePicture> pictureBombs()
{
    const QByteArray bomb = packed(256 * 1024 * 1024);
    const QByteArray title = QByteArray("Title\0\0", 7) + bomb;
    const QByteArray profile = QByteArray("icc\0\0", 5) + bomb;
    const QByteArray international = QByteArray("Title\0\1\0\0\0", 10) + bomb;
    return {
        {QStringLiteral("grey.png"), png(side, side, 1, 0, {})},
        {QStringLiteral("deep.png"), png(side, side, 16, 6, {})},
        {QStringLiteral("largest.png"), png(0x7FFFFFFF, 0x7FFFFFFF, 8, 6, {})},
        {QStringLiteral("wide.png"), png(0x7FFFFFFF, 1, 8, 2, {})},
        {QStringLiteral("high.png"), png(1, 0x7FFFFFFF, 8, 2, {})},
        {QStringLiteral("none.png"), png(0, 0, 8, 2, {})},
        {QStringLiteral("title.png"), png(4, 4, 8, 2, chunk("zTXt", title))},
        {QStringLiteral("profile.png"), png(4, 4, 8, 2, chunk("iCCP", profile))},
        {QStringLiteral("titles.png"),
            png(4, 4, 8, 2, chunk("iTXt", international) + chunk("iTXt", international))},
        {QStringLiteral("large.bmp"), bmp(qint32(side), qint32(side), 24, 0)},
        {QStringLiteral("runs.bmp"), bmp(qint32(side), qint32(side), 8, 1)},
        {QStringLiteral("upside.bmp"), bmp(qint32(side), -qint32(side), 32, 0)},
        {QStringLiteral("negative.bmp"), bmp(-1, -1, 24, 0)},
        {QStringLiteral("most.bmp"), bmp(0x7FFFFFFF, 0x7FFFFFFF, 1, 0)},
        {QStringLiteral("screen.gif"), gif(60'000, 1)},
        {QStringLiteral("frame.gif"), gif(1, 60'000)},
        {QStringLiteral("both.gif"), gif(65'535, 65'535)},
        {QStringLiteral("base.jpg"), jpeg(65'500, 65'500, char(0xC0))},
        {QStringLiteral("steps.jpg"), jpeg(65'500, 65'500, char(0xC2))},
        {QStringLiteral("empty.jpg"), jpeg(0, 0, char(0xC0))},
        {QStringLiteral("large.webp"), webp(16'777'216)},
        {QStringLiteral("large.ico"), ico()},
        {QStringLiteral("large.tif"), tiff()},
        {QStringLiteral("large.ppm"), text("P6 %u %u 255\nxxxx")},
        {QStringLiteral("large.pbm"), text("P1 %u %u\n1 0 1")},
        {QStringLiteral("large.xbm"),
            text("#define x_width %u\n#define x_height %u\n"
                 "static char x_bits[] = { 0x00 };")},
        {QStringLiteral("large.xpm"),
            text("/* XPM */\nstatic char* x[] = {\n\"%u %u 1 1\",\n"
                 "\"a c #000000\",\n\"a\"};")},
        {QStringLiteral("large.svg"),
            text("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%u\" height=\"%u\"/>")},
    };
}

std::vector<MadePicture> cutPictures()
{
    QImage image(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 6, y * 8, x * y));
    std::vector<MadePicture> pictures;
    for (const QByteArray& format : QImageWriter::supportedImageFormats()) {
        QByteArray whole;
        QBuffer buffer(&whole);
        buffer.open(QIODevice::WriteOnly);
        if (!image.save(&buffer, format.constData()))
            continue;
        for (const qsizetype length : {qsizetype(1), qsizetype(8), qsizetype(24), whole.size() / 4,
                 whole.size() / 2, whole.size() * 3 / 4, whole.size() - 1}) {
            pictures.push_back({QStringLiteral("%1.%2").arg(length).arg(QLatin1String(format)),
                whole.left(length)});
        }
    }
    return pictures;
}
