#include "attachstore/FileRecord.h"

#include "attachstore/LegalName.h"
#include "support/DiskFile.h"
#include "support/Paths.h"
#include "support/TimeText.h"

#include <ctime>
#include <limits>

namespace attachstore {
namespace {

const QString kNoExtension = QStringLiteral("unknow");
const QString kTimeFormat = QStringLiteral("%Y/%m/%d %H:%M");

DropFileInfo folderRecord(const QString& path)
{
    DropFileInfo record;
    record.filePath = path;
    record.isFolder = true;
    record.fileName = LegalName(extract_foldername(path));
    record.fileExt = QStringLiteral("dir");
    record.fileSize = std::numeric_limits<quint64>::max();
    record.fileTime = FormatCurTime();
    return record;
}

// Of a path on disk, where a backslash is part of a name.
QString nameOf(const QString& path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

} // namespace

std::optional<DropFileInfo> RecordOfPath(const QString& path)
{
    if (path_is_folder(path))
        return folderRecord(path);
    InputFile file;
    if (file.open(path))
        return std::nullopt;
    DropFileInfo record;
    record.filePath = path;
    record.origName = LegalName(nameOf(path));
    record.fileName = record.origName;
    record.fileExt = UsableExtension(GetFileStuffx(record.fileName));
    record.fileSize = static_cast<quint64>(file.size());
    record.fileTime = FormatCurTime();
    return record;
}

QString GetFileStuffx(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? kNoExtension : name.sliced(dot + 1).toLower();
}

QString UsableExtension(const QString& extension)
{
    const QString digestName = QString(32, u'0') + u'.' + extension;
    return IsSafeFileName(digestName) ? extension : kNoExtension;
}

QString FormatCurTime()
{
    return FormatTime64(std::time(nullptr), kTimeFormat);
}

QString FormatFileInfo(long size, const QString& time)
{
    // Kept: a size that 32 bits with sign cannot hold wraps, and a negative one reads as huge.
    const auto narrowed = static_cast<quint64>(static_cast<qint32>(size));
    return (time.isEmpty() ? FormatCurTime() : time) + u' ' + FormatFileSize(narrowed);
}

} // namespace attachstore
