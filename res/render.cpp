// render OUT_DIR FILE.svg...: draws each file on white, 32 by 32 pixels, into OUT_DIR/<name>.bmp.

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr QSize kSize(32, 32);

bool render(const QString& source, const QString& directory)
{
    // Qt's SVG reader is a plugin, so nothing has to be linked for it.
    QImageReader reader(source, "svg");
    reader.setScaledSize(kSize);
    reader.setBackgroundColor(Qt::white);
    const QImage icon = reader.read();
    if (icon.isNull()) {
        qCritical("%s: %s", qPrintable(source), qPrintable(reader.errorString()));
        return false;
    }
    const QString target =
        directory + u'/' + QFileInfo(source).completeBaseName() + QStringLiteral(".bmp");
    if (!icon.convertToFormat(QImage::Format_RGB888).save(target, "bmp")) {
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
    if (arguments.size() < 3) {
        qCritical("usage: render OUT_DIR FILE.svg...");
        return 2;
    }
    for (const QString& source : arguments.mid(2)) {
        if (!render(source, arguments[1]))
            return 1;
    }
    return 0;
}
