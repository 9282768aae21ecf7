#include "attachstore/Card.h"

#include "attachstore/CardFile.h"
#include "attachstore/CardPicture.h"
#include "attachstore/ImageManager.h"

#include <QGuiApplication>

#include <exception>

namespace attachstore {
namespace {

bool hasFonts()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

int generate(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
    const QString& outPath, int* fileSize)
{
    const QImage* icon = SingletonTemplate<ImageManager>::GetInstance()->GetFileTypeBitmap(type);
    if (!icon || !hasFonts())
        return 0;
    const QImage picture = PaintCard(*icon, fileName, fileInfo);
    if (picture.isNull())
        return 0;
    const int length = WriteCardFile(picture, outPath);
    if (length == 0)
        return 0;
    if (fileSize)
        *fileSize = length;
    return 1;
}

} // namespace

int GenerateFileThumb(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
    const QString& outPath, int* fileSize)
{
    try {
        return generate(type, fileName, fileInfo, outPath, fileSize);
    } catch (const std::exception&) { // no memory, or what a fallback source throws
        return 0;
    }
}

} // namespace attachstore
