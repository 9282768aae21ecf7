#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

#include <vector>

/// Taking an attachment out of a note that lies in the store.
namespace notestore {

/// The operation in the form that hosts call.
/// Kept: it does not know which file is the note's, so it changes nothing and returns 0.
int DelAttachFromHtmlFile(
    const QString& noteGuid, const QString& origName, std::vector<NewAttachFile>& attList);

/// The same for a note file that is known: removes the first element with that original name and
/// files the new text at the old one's version. On success returns 1, and `attList` has the shape
/// of a save: the new note file first, then its attachments, all with the time of the call. The old
/// note file and the attachment's file stay where they are. Returns 0, with `attList` untouched, if
/// the file does not exist, has no such element, or the new text cannot be filed. A failure in the
/// document is logged.
int DelAttachFromHtmlFile(const QString& path, const QString& noteGuid, const QString& origName,
    std::vector<NewAttachFile>& attList);

/// Its part that works on a text: `newText` is the inside of the body without the first element
/// with that original name. False, with `newText` untouched, if there is none.
bool RemoveAttachElement(const QString& html, const QString& origName, QString& newText);

} // namespace notestore
