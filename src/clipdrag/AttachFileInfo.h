#pragma once

#include <QString>

/// A file that a host names for the clipboard.
struct AttachFileInfo {
    QString fileName; ///< The host's own; not looked at.
    QString origName; ///< Likewise.
    QString filePath; ///< The full path of the file.
};
