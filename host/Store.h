#pragma once

#include <QString>

class Shelf;

/// Deletes the files that the shelf calls leftovers. One that cannot be deleted is tried again at
/// the next call; one outside `storeDir` is left alone.
void sweepLeftovers(Shelf& shelf, const QString& storeDir);

/// Copies a file's content to `target`, which is as it was or whole. False: it cannot be read or
/// written.
bool saveCopy(const QString& path, const QString& target);

/// The file behind an attachment, empty if there is none: the path that the last save named, or
/// else, as with old notes, the file of that name in the store itself.
QString attachmentFile(Shelf& shelf, const QString& storeDir, const QString& noteGuid,
    const QString& fileName, const QString& origName);

/// Path of the HTML file of a note that is to follow a change of its attachments; empty if the
/// shelf has no such note, or one of several files.
QString noteFile(Shelf& shelf, const QString& storeDir, const QString& noteGuid);
