#pragma once

#include "noteattach/AttachNewAtt.h"
#include "noteattach/NewAttachFile.h"

#include <QString>

#include <vector>

/// A file that a paste brought into the store, for the note's books.
struct CopiedFileSize {
    QString fileName; ///< Its name in the store.
    QString secondName; ///< An attachment's original name; for a card its name in the store again.
    quint64 fileSize = 0; ///< In bytes.
};

/// What pasted attachments became.
struct CopyLogicResult {
    std::vector<AttachNewAtt> attNewList; ///< One for each attachment.
    std::vector<CopiedFileSize> fileSizeList; ///< One for each stored file, cards included.
    /// Attachments that have no file to copy and get a card alone. An attachment without a file
    /// ends the paste before any is taken over, so there are none.
    std::vector<NewAttachFile> thumbAttList;
};
