#include "attachstore/WorkingCopy.h"

#include "support/AppDirs.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <vector>

namespace attachstore {
namespace {

constexpr quint32 kModified = 3;
constexpr quint32 kRenamedNewName = 5;

QString withSlashes(QString path)
{
    return path.replace(u'\\', u'/');
}

} // namespace

void GetAttachInfoFromPath(const QString& path, QString& noteFolder, QString& fileName)
{
    const QString whole = withSlashes(path);
    const QString store = withSlashes(GetAppDir()) + QStringLiteral("userdata/attachment");
    const qsizetype at = whole.indexOf(store);
    if (at < 0)
        return;
    std::vector<QString> parts;
    SplitString(whole.mid(at + store.size() + 1), QStringLiteral("/"), parts);
    if (parts.size() != 2)
        return;
    noteFolder = parts[0];
    fileName = parts[1];
}

bool IsTemporaryPath(const QString& path)
{
    return GetFileExt(path).compare(QStringLiteral("tmp"), Qt::CaseInsensitive) == 0;
}

bool IsChangeEvent(const QString& path, quint32 action)
{
    return (action == kModified || action == kRenamedNewName) && !IsTemporaryPath(path);
}

} // namespace attachstore
