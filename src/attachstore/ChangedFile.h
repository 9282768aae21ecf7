#pragma once

#include "support/FileCopy.h"

#include <QString>

#include <optional>

/// A working copy that has got another content, and what that makes of its attachment.
namespace attachstore {

struct ChangedFile {
    QString path; ///< of the working copy
    qint32 size = 0; ///< in bytes
    QString origName; ///< the attachment's name
    QString md5; ///< digest of the new content
    /// What the file had when it was digested. A picture that has another by now is not taken into
    /// the store, where it would stand under a digest that is not its own. Nothing: not known, and
    /// the file is taken as it is.
    std::optional<FileStamp> stamp;
};

/// Puts into the store what the note is to show from now on: a picture's new content under its new
/// digest name, or a new card with the present time. What is there of that name stays; so does what
/// the note showed until now. `thumbName` receives the file's name.
///
/// Returns 1, or 0 after a failure, which is logged; no temporary file is left then. A picture
/// whose `md5` is no digest (32 hexadecimal digits) is a failed copy, as it would name another file
/// of the disk. For the user interface's thread alone.
int GenerateThumbPic(const ChangedFile& file, QString& thumbName);

/// The name under which the note refers to the new content (`class`): the digest, a dot, and the
/// extension with its case, or "unknow" for one that cannot stand there: UsableExtension.
/// Kept: all of a name without a dot is its extension.
QString HashNameOf(const ChangedFile& file);

} // namespace attachstore
