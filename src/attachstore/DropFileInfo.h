#pragma once

#include <QString>

/// One file on its way into a note.
struct DropFileInfo {
    /// Full path of the source, which the import reads and never changes.
    QString filePath;
    /// The source is a folder, which is never imported: it is here to be refused.
    bool isFolder = false;
    /// The name that the user sees: that of the working copy in the note's folder, and the one that
    /// goes into the note. Empty for a folder. An import of a record without it makes no working
    /// copy but only the digest-named file.
    QString origName;
    /// Decides whether the file counts as a picture, and is the first line of its card. Equal to
    /// `origName`, but for a folder, where it is the folder's name.
    QString fileName;
    /// Lower-case extension without the dot, "unknow" without one, "dir" for a folder.
    QString fileExt;
    /// In bytes; all ones for a folder.
    quint64 fileSize = 0;
    /// When the record was made, "YYYY/MM/DD hh:mm" local time: part of the card's second line.
    QString fileTime;
    /// The source is a temporary file of the component's own and may be deleted after use.
    bool isTempFile = false;
};
