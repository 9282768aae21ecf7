#pragma once

#include <QString>

/// What an import yields. Counts only if the import succeeded.
struct MAF_RESULT {
    /// `userdata\attachment\` and `attName`, with backslashes on every platform: what the note's
    /// `class` says. It is a name and not a place; GetAttachFilePath tells where the file lies.
    QString attPath;
    /// `<digest>.<extension>`.
    QString attName;
    /// What the note shows, relative to the page: `../userdata\attachment\` and `picName`, with
    /// separators mixed in just this way.
    QString picPath;
    /// For a picture `attName`, for any other file `<digest of its card>.bmp`.
    QString picName;
    /// Size of what is shown, in bytes.
    int picSize = 0;
};
