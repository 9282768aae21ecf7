#pragma once

#include <QString>

/// One file that a note refers to. A host receives the list of them with every save: first the
/// note's own HTML file, then the files of its attachments in the order of the note.
struct NewAttachFile {
    /// The name the user's file had. Empty for the note's HTML file and for a shown file.
    QString origName;
    /// Always empty.
    QString spareText;
    /// 0: the note's HTML file. 1: a file that the note shows (`src`). 2: an attachment (`class`).
    int fileType = 0;
    /// "YYYY-MM-DD hh:mm:ss", local time. Empty until a save fills it in.
    QString modifyTime;
    /// What stands behind the last dot of `fileName`; all of it if there is no dot.
    QString fileExt;
    /// The name in the store: the file's digest and extension.
    QString fileName;
    /// The full path on disk, computed and not looked for. With an original name it lies in the
    /// note's folder of the store, without one at the store's top level. Empty if the note holds a
    /// name that cannot be one of the store's.
    QString filePath;
    /// 1 for a shown file, 0 for an attachment proper and for the note's HTML file.
    int isSrcFile = 0;

    bool operator==(const NewAttachFile&) const = default;
};
