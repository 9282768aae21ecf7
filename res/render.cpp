// render KIND OUT_DIR FILE.svg...: draws each file into OUT_DIR/<name>.KIND.
//   bmp: on white, 32 by 32 pixels.
//   ico: at 16, 24, 32 and 48 pixels, the smallest first.
//   png: in the drawing's own size, with its transparency.
//   cur: 32 by 32 pixels, the hot spot as the attribute data-hotspot="X Y" of the drawing says.

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QXmlStreamReader>

#include <optional>

namespace {

constexpr int kEdge = 32;
constexpr int kButtonEdges[] = {16, 24, 32, 48};

/// `edge` null: in the drawing's own size.
QImage draw(const QString& source, std::optional<int> edge, const QColor& ground)
{
    // Qt's SVG reader is a plugin, so nothing has to be linked for it.
    QImageReader reader(source, "svg");
    if (edge)
        reader.setScaledSize(QSize(*edge, *edge));
    reader.setBackgroundColor(ground);
    const QImage image = reader.read();
    if (image.isNull())
        qCritical("%s: %s", qPrintable(source), qPrintable(reader.errorString()));
    return image;
}

QByteArray packed(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format) ? bytes : QByteArray();
}

std::optional<QPoint> hotSpotOf(const QString& source)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QXmlStreamReader xml(&file);
    xml.readNextStartElement();
    const QStringList numbers =
        xml.attributes().value(QStringLiteral("data-hotspot")).toString().split(u' ');
    if (numbers.size() != 2)
        return std::nullopt;
    return QPoint(numbers[0].toInt(), numbers[1].toInt());
}

/// A file of icons (without a hot spot) or of cursors: a directory, then the pictures as PNG.
QByteArray iconFile(const std::vector<QImage>& images, const std::optional<QPoint>& hotSpot)
{
    QByteArray file;
    const auto put = [&file](quint32 number, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file.append(char(number >> (8 * i)));
    };
    put(0, 2);
    put(hotSpot ? 2 : 1, 2);
    put(quint32(images.size()), 2);
    constexpr quint32 headerSize = 6;
    constexpr quint32 entrySize = 16;
    QByteArray pictures;
    for (const QImage& image : images) {
        const QByteArray png = packed(image, "png");
        put(quint32(image.width()), 1);
        put(quint32(image.height()), 1);
        put(0, 2);
        put(hotSpot ? quint32(hotSpot->x()) : 1, 2); // planes
        put(hotSpot ? quint32(hotSpot->y()) : 32, 2); // bits per pixel
        put(quint32(png.size()), 4);
        put(headerSize + entrySize * quint32(images.size()) + quint32(pictures.size()), 4);
        pictures += png;
    }
    return file + pictures;
}

/// The content of the file to write; empty when it cannot be made.
QByteArray render(const QString& kind, const QString& source)
{
    if (kind == u"bmp") {
        const QImage icon = draw(source, kEdge, Qt::white);
        return packed(icon.convertToFormat(QImage::Format_RGB888), "bmp");
    }
    if (kind == u"png") {
        const QImage picture = draw(source, std::nullopt, Qt::transparent);
        return picture.isNull() ? QByteArray() : packed(picture, "png");
    }
    std::vector<QImage> images;
    if (kind == u"ico") {
        for (const int edge : kButtonEdges)
            images.push_back(draw(source, edge, Qt::transparent));
        return images.front().isNull() ? QByteArray() : iconFile(images, std::nullopt);
    }
    const std::optional<QPoint> hotSpot = hotSpotOf(source);
    images.push_back(draw(source, kEdge, Qt::transparent));
    return hotSpot && !images.front().isNull() ? iconFile(images, hotSpot) : QByteArray();
}

bool write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return !content.isEmpty() && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size() && file.flush();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QStringList kinds{
        QStringLiteral("bmp"), QStringLiteral("ico"), QStringLiteral("cur"), QStringLiteral("png")};
    if (arguments.size() < 4 || !kinds.contains(arguments[1])) {
        qCritical("usage: render bmp|ico|cur|png OUT_DIR FILE.svg...");
        return 2;
    }
    for (const QString& source : arguments.mid(3)) {
        const QString target =
            arguments[2] + u'/' + QFileInfo(source).completeBaseName() + u'.' + arguments[1];
        if (!write(target, render(arguments[1], source))) {
            qCritical("%s cannot be made", qPrintable(target));
            return 1;
        }
    }
    return 0;
}
