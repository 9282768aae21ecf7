#pragma once

#include "noteattach/NewAttachFile.h"
#include "notestore/NoteHtmlVersion.h"

#include <QString>

/// Note files: reading one, and filing a text into the store. docs/note-file.md tells the format.
///
/// A note file never changes. A save makes a file that is named by the MD5 digest of its own bytes
/// and ".html", at the top level of the store; the same text at the same version is the same file.
class NoteHtmlRW {
public:
    /// Reads a note file into its text (without the marker) and its version. The text ends at the
    /// first zero byte of the file. A file without a marker is version 0; so is one whose marker
    /// cannot be read, and that marker is cut away.
    /// Returns 1, or 0 if the file cannot be opened or read to its end, is no regular file, or is
    /// larger than 1 GiB; both out arguments are untouched then.
    static int ReadHtmlTextFromFile(
        const QString& path, QString& html, NOTE_HTML_VER_NUMBER* version);

    /// Files a text. On success the file stands in the store, safe from a crash of the process and
    /// from a loss of power, and `record` has its name, path, extension, type 0 and the time; its
    /// other fields stay as they are.
    ///
    /// A `*version` below 2 is upgraded first; if that succeeds `html` and `*version` are those of
    /// version 2, even if a later step fails, and otherwise the text is filed at its old version. A
    /// version above 2 is kept. A null `version` writes version 2 and upgrades nothing.
    ///
    /// The store must exist. Returns 1, or 0 if the text could not be filed; no temporary file is
    /// left then. A failure to write is logged.
    static int SaveHtmlTextToFile(
        QString& html, NewAttachFile& record, NOTE_HTML_VER_NUMBER* version);
};
