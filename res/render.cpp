// render icons|pictures OUT_DIR FILE.svg...: draws each file into OUT_DIR. Icons on white, 32 by 32 pixels, as
// BMP; pictures in their own size, with their transparency, as PNG.

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr QSize kIconSize(32, 32);

bool render(const QString& source, const QString& directory, bool isIcon)
{
    // Qt's SVG reader is a plugin, so nothing has to be linked for it.
    QImageReader reader(source, "svg");
    if (isIcon) {
        reader.setScaledSize(kIconSize);
        reader.setBackgroundColor(Qt::white);
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        qCritical("%s: %s", qPrintable(source), qPrintable(reader.errorString()));
        return false;
    }
    const char* const type = isIcon ? "bmp" : "png";
    const QString target = directory + u'/' + QFileInfo(source).completeBaseName() + u'.'
        + QLatin1StringView(type);
    // Straight alpha is what a PNG file holds.
    const auto format = isIcon ? QImage::Format_RGB888 : QImage::Format_ARGB32;
    if (!image.convertToFormat(format).save(target, type)) {
        qCritical("%s cannot be written", qPrintable(target));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString kind = arguments.value(1);
    if (arguments.size() < 4 || (kind != u"icons" && kind != u"pictures")) {
        qCritical("usage: render icons|pictures OUT_DIR FILE.svg...");
        return 2;
    }
    for (const QString& source : arguments.mid(3)) {
        if (!render(source, arguments[2], kind == u"icons"))
            return 1;
    }
    return 0;
}
