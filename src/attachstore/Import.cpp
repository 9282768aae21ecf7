#include "attachstore/Import.h"

#include "attachstore/FileRecord.h"
#include "attachstore/FileType.h"
#include "attachstore/StoredCard.h"
#include "noteattach/ExData.h"
#include "notestore/StorePath.h"
#include "support/DiskFile.h"
#include "support/FileCopy.h"
#include "support/FileMd5.h"
#include "support/Log.h"
#include "support/Paths.h"

namespace attachstore {
namespace {

// As it stands in notes, whatever the separator of paths on disk.
const QString kNotePath = QStringLiteral("userdata\\attachment\\");
const QString kPagePath = QStringLiteral("../userdata\\attachment\\");

// Always 0, to be returned.
int failed(const char* what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile ") + QLatin1String(what));
    return 0;
}

struct Digested {
    QString md5;
    FileStamp stamp; // what is copied must have it, to be what was digested
};

Digested digest(const QString& path)
{
    FileStamp stamp = FileStamp::of(path).value_or(FileStamp());
    const QString md5 = FileMd5(path, &stamp.size);
    return {md5, stamp};
}

void showAs(const QString& picName, int picSize, MAF_RESULT& result)
{
    result.picPath = kPagePath + picName;
    result.picName = picName;
    result.picSize = picSize;
}

// Kept: what is there already is not compared, so another file's content may stay under the name
// that is imported now.
int makeWorkingCopy(const QString& from, const QString& path, const FileStamp& stamp)
{
    return IsFileExist(path) ? 0 : CopyFileNoReplace(from, path, stamp);
}

// What the note shows. Each of these two brings the names in the store to the disk at its end, as
// the note's folder may be new among them.

// Kept: the source of this copy is the working copy, even where that is older than this import and
// has another digest.
int showPicture(
    const QString& storeRoot, const QString& workPath, const DropFileInfo& info, MAF_RESULT& result)
{
    showAs(result.attName, static_cast<int>(info.fileSize), result);
    const QString path = storeRoot + result.picName;
    const bool isThere = IsFileExist(path);
    if (isThere ? FlushDirectory(storeRoot) : CopyFileNoReplace(workPath, path))
        return failed("CopyFile file fald ! ");
    return 1;
}

int showCard(const DropFileInfo& info, MAF_RESULT& result)
{
    QString cardName;
    int cardSize = -1;
    const QString fileInfo = FormatFileInfo(static_cast<long>(info.fileSize), info.fileTime);
    const CardFault fault =
        StoreCard(GetFileTypeByExt(info.fileExt), info.fileName, fileInfo, cardName, &cardSize);
    if (fault == CardFault::Drawing)
        return failed("create thumb pic faild ! ");
    if (fault == CardFault::Digest)
        return failed("cal md5 code faild ! ");
    showAs(cardName, cardSize, result);
    return fault == CardFault::Rename ? failed("rename file fald ! ") : 1;
}

} // namespace

int MoveAttFile(const QString& noteGuid, const DropFileInfo& info, MAF_RESULT& result)
{
    const QString storeRoot = notestore::StoreBase();
    const auto [md5, stamp] = digest(info.filePath);
    if (md5.isEmpty())
        return failed("cal md5 code faild ! ");

    const QString hashName = md5 + u'.' + info.fileExt;
    const QString workPath = GetAttachFilePath(noteGuid, hashName, info.origName);
    if (makeWorkingCopy(info.filePath, workPath, stamp))
        return failed("copy file fald ! ");

    result.attPath = kNotePath + hashName;
    result.attName = hashName;
    return noteattach::IsPicFileType(info.fileName) ? showPicture(storeRoot, workPath, info, result)
                                                    : showCard(info, result);
}

} // namespace attachstore
