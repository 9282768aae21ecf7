#include "capture/SaveImageByExtension.h"

#include <QBuffer>
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
    // Packed before the file is touched, which may be written in place.
    QBuffer packed;
    if (!QImageWriter(&packed, encoder).write(image))
        return 0;
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    // In place a failed write is no failure of the commit.
    const bool isWritten = file.write(packed.data()) == packed.size() && file.flush();
    return isWritten && file.commit() ? 1 : 0;
}
