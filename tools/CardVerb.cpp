#include "Output.h"
#include "Verbs.h"

#include "attachstore/Card.h"
#include "attachstore/FileRecord.h"
#include "attachstore/ImageManager.h"
#include "support/Paths.h"

#include <QImageReader>

namespace nmnote {
namespace {

QString json(const QString& path, const QString& icon, int fileSize)
{
    const QSize picture = QImageReader(path).size();
    return QStringLiteral("{\"file\":%1,\"icon\":%2,\"width\":%3,\"height\":%4,\"fileSize\":%5}\n")
        .arg(jsonString(path), jsonString(icon), QString::number(picture.width()),
            QString::number(picture.height()), QString::number(fileSize));
}

} // namespace

int cardVerb(const Arguments& arguments)
{
    const QString& name = arguments.operands[0];
    const QString& info = arguments.operands[1];
    const QString& path = arguments.operands[2];
    const FILE_TYPE type = GetFileTypeByExt(attachstore::GetFileStuffx(name));
    ImageManager& icons = *SingletonTemplate<ImageManager>::GetInstance();
    const QString icon = icons.GetFileTypeImageName(type);
    if (!icons.GetFileTypeBitmap(type)) {
        complain(QStringLiteral("cannot read the icon '%1'").arg(GetResFilePath(icon)));
        return Failed;
    }
    int fileSize = 0;
    if (!attachstore::GenerateFileThumb(type, name, info, path, &fileSize)) {
        complain(QStringLiteral("cannot write the card '%1'").arg(path));
        return Failed;
    }
    print(json(path, icon, fileSize));
    return Done;
}

} // namespace nmnote
