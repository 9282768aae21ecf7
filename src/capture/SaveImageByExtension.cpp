#include "capture/SaveImageByExtension.h"

#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QMimeDatabase>
#include <QSaveFile>

namespace {

/// The encoder for an extension; empty if there is none.
QByteArray encoderFor(const QString& extension)
{
    QByteArray name = extension.toLatin1().toLower();
    if (name.isEmpty())
        return {};
    if (QImageWriter::supportedImageFormats().contains(name))
        return name;
    const QMimeDatabase desktop;
    for (const QByteArray& type : QImageWriter::supportedMimeTypes()) {
        const QStringList suffixes = desktop.mimeTypeForName(QString::fromLatin1(type)).suffixes();
        if (suffixes.contains(extension, Qt::CaseInsensitive))
            return QImageWriter::imageFormatsForMimeType(type).value(0);
    }
    return {};
}

} // namespace

int SaveImageByExtension(const QImage& image, const QString& path)
{
    const QByteArray encoder = encoderFor(QFileInfo(path).suffix());
    if (encoder.isEmpty() || image.isNull())
        return 0;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    return QImageWriter(&file, encoder).write(image) && file.commit() ? 1 : 0;
}
