#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

#include <vector>

/// A note that is not open follows a change of one of its attachments.
namespace attachstore {

/// What an attachment is from now on.
struct NewImage {
    QString origName; ///< the attachment's name, which stays
    QString hashName; ///< file name for `class`: `HashNameOf`
    QString thumbName; ///< file name for `src`: `GenerateThumbPic`
    QString time; ///< when it changed, "YYYY-MM-DD hh:mm:ss"
};

enum class NoteRewrite {
    Failed, ///< Nothing is filed; a line in the log.
    NoSuchAttachment, ///< The note has no attachment of that name. Nothing is filed.
    Unchanged, ///< The note names that content and that card already. Nothing is filed.
    Filed, ///< The out arguments are what a host is to be handed.
};

/// Reads the note file at `notePath`, gives all its attachments of that name their new files, and
/// files the new text at the version of the old one, or upgraded. On success `files` has the shape
/// of a save: the new note file first, then the attachments; those that did not change have the
/// present time. `text` is the note's plain text. The old note file stays where it is. A note that
/// cannot be read, and a new text that cannot be filed, change nothing.
///
/// Kept: with an empty path, when nobody says which file is the note's, an empty text is filed and
/// handed out in place of the note's, even if filing it fails.
NoteRewrite RewriteClosedNote(const QString& notePath, const QString& noteGuid,
    const NewImage& image, std::vector<NewAttachFile>& files, QString& text);

} // namespace attachstore
