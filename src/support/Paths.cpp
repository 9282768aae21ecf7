#include "support/Paths.h"

#include "support/Utf8.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr QChar kBackslash = u'\\';

// As far as the user's mask lets others in; never for others to write.
constexpr QFile::Permissions kDirectoryMode = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser
    | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

bool isSeparator(QChar unit)
{
    return unit == kBackslash || unit == QDir::separator();
}

qsizetype lastSeparator(const QString& path)
{
    qsizetype i = path.size() - 1;
    while (i >= 0 && !isSeparator(path[i]))
        --i;
    return i;
}

QString withoutTrailingSeparators(const QString& path)
{
    qsizetype length = path.size();
    while (length > 0 && isSeparator(path[length - 1]))
        --length;
    return path.left(length);
}

// A path with NUL names nothing; the system would cut it there and find another file.
bool exists(const QString& path)
{
    return !path.contains(QChar(u'\0')) && QFileInfo::exists(path);
}

// The path of the directory as it now stands on disk, or nothing.
std::optional<QString> makeDirs(const QString& path)
{
    const QString trimmed = withoutTrailingSeparators(path);
    if (trimmed.isEmpty())
        return path.isEmpty() ? std::nullopt : std::optional(QString(QDir::separator()));
    const QString standing = PathOnDisk(trimmed);
    if (exists(standing))
        return standing;
    const qsizetype separator = lastSeparator(trimmed);
    if (separator < 0)
        return std::nullopt;
    auto directory = makeDirs(trimmed.left(separator + 1));
    if (!directory)
        return std::nullopt;
    if (!isSeparator(directory->back()))
        *directory += QDir::separator();
    *directory += QStringView(trimmed).sliced(separator + 1);
    // Another process may make it at the same moment, and then it stands too.
    if (!QDir().mkdir(*directory, kDirectoryMode) && !exists(*directory))
        return std::nullopt;
    return directory;
}

} // namespace

QString GetResDir()
{
    return GetInstallDir() + QStringLiteral("res");
}

QString GetResFilePath(const QString& fileName)
{
    return GetResDir() + QDir::separator() + fileName;
}

QImage LoadResBitmap(const QString& fileName)
{
    const QString path = GetResFilePath(fileName);
    if (!IsFileExist(path))
        return {};
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return reader.read();
}

QString GetAttachmentDir()
{
    const QString store =
        GetAppDir() + QStringLiteral("userdata") + QDir::separator() + QStringLiteral("attachment");
    MakeDirs(store);
    return store;
}

bool IsSafeFileName(const QString& name)
{
    constexpr std::size_t longest = 255; // of one component, on every file system in use
    if (name == u'.' || name == QStringLiteral("..") || name.contains(QChar(u'\0')))
        return false;
    if (name.contains(u'/') || name.contains(kBackslash))
        return false;
    char bytes[longest + 4];
    QStringView rest = name;
    return EncodeUtf8(rest, bytes, sizeof bytes) <= longest && rest.isEmpty();
}

NoteFolder::NoteFolder(const QString& noteGuid)
    : m_noteGuid(noteGuid)
    , m_guidIsSafe(IsSafeFileName(noteGuid))
{
}

QString NoteFolder::pathOf(const QString& fileName, const QString& subName)
{
    if (!m_guidIsSafe || !IsSafeFileName(fileName) || !IsSafeFileName(subName))
        return {};
    if (!m_store)
        m_store = GetAttachmentDir() + QDir::separator();
    return subName.isEmpty() ? *m_store + fileName : folder() + subName;
}

const QString& NoteFolder::folder()
{
    if (!m_folder) {
        m_folder = *m_store + m_noteGuid + QDir::separator();
        MakeDirs(*m_folder);
    }
    return *m_folder;
}

QString GetAttachFilePath(const QString& noteGuid, const QString& fileName, const QString& subName)
{
    return NoteFolder(noteGuid).pathOf(fileName, subName);
}

int MakeDirs(const QString& path)
{
    return makeDirs(path) ? 1 : 0;
}

QString PathOnDisk(const QString& path)
{
    if (!path.contains(kBackslash) || exists(path))
        return path;
    QString native = path;
    return native.replace(kBackslash, QDir::separator());
}

bool IsFileExist(const QString& path)
{
    return exists(PathOnDisk(path));
}

QString GetFileExt(const QString& path)
{
    // Kept: without a dot all of it; names in stores have been built with it ("<digest>.readme").
    return path.sliced(path.lastIndexOf(u'.') + 1);
}

QString GetFileTitle(const QString& path)
{
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot < 0 ? path : path.left(dot);
}

QString GetFileNameFromPath(const QString& path)
{
    return path.sliced(lastSeparator(path) + 1);
}

QString extract_foldername(const QString& path)
{
    const QString trimmed = withoutTrailingSeparators(path);
    const qsizetype separator = lastSeparator(trimmed);
    // Kept: empty, and not the input, without a separator; hosts that ask for the name rely on it.
    return separator < 0 ? QString() : trimmed.sliced(separator + 1);
}

bool path_is_folder(const QString& path)
{
    return QFileInfo(PathOnDisk(path)).isDir();
}
