#include "attachstore/ChangedFile.h"

#include "attachstore/FileRecord.h"
#include "attachstore/FileType.h"
#include "attachstore/StoredCard.h"
#include "noteattach/ExData.h"
#include "notestore/StorePath.h"
#include "support/Log.h"
#include "support/Paths.h"

#include <algorithm>

namespace attachstore {
namespace {

// Always 0, to be returned.
int failed(const char* what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] CNomarEditorImpl::GenerateThumbPic ") + QLatin1String(what));
    return 0;
}

bool isHexDigit(QChar digit)
{
    return (digit >= u'0' && digit <= u'9') || (digit >= u'a' && digit <= u'f')
        || (digit >= u'A' && digit <= u'F');
}

// It becomes a part of a path on disk, and whoever sends the change has written it.
bool isDigest(const QString& md5)
{
    return md5.size() == 32 && std::all_of(md5.begin(), md5.end(), isHexDigit);
}

int storePicture(const ChangedFile& file, QString& thumbName)
{
    if (!isDigest(file.md5))
        return failed("copy file fald ! ");
    const QString newName = file.md5 + file.origName.sliced(file.origName.lastIndexOf(u'.'));
    const QString path = notestore::StoreBase() + newName;
    if (!IsFileExist(path) && CopyFileNoReplace(file.path, path, file.stamp))
        return failed("copy file fald ! ");
    thumbName = newName;
    return 1;
}

int storeCard(const ChangedFile& file, QString& thumbName)
{
    QString newThumb;
    // Without a time the card shows the present one.
    switch (StoreCard(GetFileTypeByExt(GetFileStuffx(file.origName)), file.origName,
        FormatFileInfo(file.size, QString()), newThumb, nullptr)) {
    case CardFault::Drawing:
        return failed("create thumb pic faild ! ");
    case CardFault::Digest:
        return failed("cal md5 code faild ! ");
    case CardFault::Rename:
        return failed("rename file fald ! ");
    case CardFault::None:
        break;
    }
    thumbName = newThumb;
    return 1;
}

} // namespace

int GenerateThumbPic(const ChangedFile& file, QString& thumbName)
{
    // A picture's name has a dot, or it would be none.
    return noteattach::IsPicFileType(file.origName) ? storePicture(file, thumbName)
                                                    : storeCard(file, thumbName);
}

QString HashNameOf(const ChangedFile& file)
{
    return file.md5 + u'.' + UsableExtension(GetFileExt(file.origName));
}

} // namespace attachstore
