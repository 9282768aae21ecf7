#pragma once

#include <QString>

/// One file as a host keeps it.
struct AttachmentFile {
    QString text1; ///< Carried, not interpreted, as are the other texts without a name.
    qint32 fileSize = 0; ///< In bytes.
    qint32 reserved = 0;
    QString text2;
    QString origName; ///< The attachment's name, as in the note's folder of the store.
    QString text3;
    qint32 fileType = 0; ///< 0: the note's HTML file, as in `NewAttachFile`.
    QString text4;
    QString text5;
};

/// What message 2224 (`WM_ATTACH_FILE_MODIFY`) carries: an attachment's working copy has changed.
/// Send it with `WindowMessage::carrying`. Whoever sends one fills `filePath`, `fileSize`,
/// `noteGuid`, `attachFile.origName` and `fileMd5`, and should fill `secondFile`.
struct SyncFileModifyArg {
    QString filePath; ///< Full path of the changed file.
    qint32 fileSize = 0; ///< In bytes; narrowed.
    QString noteGuid; ///< The note that holds it: the name of its folder in the store.
    AttachmentFile attachFile; ///< Only `origName` is read.
    QString fileMd5; ///< 32 digits.
    /// The note's own HTML file, for a note that is not open, and what the digest belongs to:
    ///   - `text1`: full path of the note's current HTML file, which is read and filed anew;
    ///   - `reserved`: 1 if the host was asked for that file. If it then knows of none, a note that
    ///     is not open is left alone;
    ///   - `text2`: size and time of the changed file when it was digested, as `StampText` writes
    ///     them. A picture that has others by now is not taken; a next message brings the next
    ///     content.
    /// In a record of a sender that asks nobody all of it is empty. Beware: a change to a note that
    /// is not open then hands the host an *empty* text for it.
    AttachmentFile secondFile;
};
