#pragma once

#include "support/AppDirs.h"

#include <QImage>
#include <QString>

#include <optional>

/// Paths on disk: where things lie, and taking a path apart.
///
/// A path that is produced here has native separators. One that is given may have the native
/// separator or the backslash, in any mix. None of these operations logs or shows anything.

/// The directory of the pictures the component brings along: GetInstallDir and "res", without a
/// separator at its end.
QString GetResDir();
QString GetResFilePath(const QString& fileName);
/// The picture of that name in GetResDir, or a null image when it is missing or not a picture.
QImage LoadResBitmap(const QString& fileName);

/// The store: "userdata/attachment" in GetAppDir, without a separator at its end. Made if it is
/// missing; a failure to make it is not reported, the path is the same.
QString GetAttachmentDir();

/// Where a file of a note lies in the store. With a sub-name (the original name of an attachment)
/// that is the note's own folder, which is made if it is missing; without one it is the top level
/// of the store, and the note's folder is neither used nor made.
///
/// Names in notes are not to be trusted. A GUID, file name or sub-name that holds a separator of
/// either kind or NUL, is "." or "..", or is longer than 255 bytes, gives an empty path, which
/// stands for a file that does not exist.
QString GetAttachFilePath(const QString& noteGuid, const QString& fileName, const QString& subName);

/// The same for many files of one note: the store and the note's folder are looked for once.
class NoteFolder {
public:
    explicit NoteFolder(const QString& noteGuid);

    QString pathOf(const QString& fileName, const QString& subName);

private:
    const QString& folder();

    QString m_noteGuid;
    bool m_guidIsSafe;
    // Both with a separator at the end.
    std::optional<QString> m_store; // set at the first path asked for
    std::optional<QString> m_folder; // set, and the folder made, at the first sub-name
};

/// Whether `name` can be one component of a path inside the store; see GetAttachFilePath.
bool IsSafeFileName(const QString& name);

/// Makes a directory and those above it. 1 if the path now exists (as whatever kind of file),
/// else 0. A path without a separator that does not exist is never made.
int MakeDirs(const QString& path);

/// The path under which the system knows what `path` names: a backslash is a part of a name if
/// there is a file or directory of that very name, else a separator.
QString PathOnDisk(const QString& path);

/// Whether there is a file or a directory of that path.
bool IsFileExist(const QString& path);

/// What stands behind the last dot, and all of the text if there is none: "readme" gives "readme".
/// Case is kept. The search knows nothing of separators: "dir.x\file" gives "x\file".
QString GetFileExt(const QString& path);
/// What stands before the last dot, and all of the text if there is none.
QString GetFileTitle(const QString& path);
/// What stands behind the last separator, and all of the text if there is none.
QString GetFileNameFromPath(const QString& path);
/// The last component of a folder path, separators at its end not counted. Empty, and not the
/// input, if no separator is left then.
QString extract_foldername(const QString& path);
bool path_is_folder(const QString& path);

/// A directory for temporary files of this process alone (mode 0700), with a separator at its end.
/// Made at the first call, and anew at a later one if it was cleared away meanwhile; removed with
/// what it holds when the process ends. Empty if it cannot be made. Callable from any thread.
QString GetTempDir();
