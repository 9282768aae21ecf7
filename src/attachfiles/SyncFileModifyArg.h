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
/// Send it with `WindowMessage::carrying`.
struct SyncFileModifyArg {
    QString filePath; ///< Full path of the changed file.
    qint32 fileSize = 0;
    QString noteGuid;
    AttachmentFile attachFile;
    QString fileMd5; ///< 32 digits.
    AttachmentFile secondFile;
};
