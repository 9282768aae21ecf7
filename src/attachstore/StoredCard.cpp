#include "attachstore/StoredCard.h"

#include "attachstore/Card.h"
#include "notestore/StorePath.h"
#include "support/DiskFile.h"
#include "support/FileCopy.h"
#include "support/FileMd5.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace attachstore {

CardFault StoreCard(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
    QString& cardName, int* cardSize)
{
    const QString storeRoot = notestore::StoreBase();
    UnfinishedFile card(storeRoot + CreateGuidString() + QStringLiteral(".tmp"));
    int length = -1;
    const int drawn = GenerateFileThumb(type, fileName, fileInfo, card.path(), &length);
    if (cardSize)
        *cardSize = length;
    if (!drawn)
        return CardFault::Drawing;
    // A digest of less than the card would name it wrongly for ever.
    qint64 digested = 0;
    const QString md5 = FileMd5(card.path(), &digested);
    if (md5.isEmpty() || digested != length)
        return CardFault::Digest;
    cardName = md5 + QStringLiteral(".bmp");
    const QString path = storeRoot + cardName;
    const bool isThere = IsFileExist(path);
    return (isThere ? FlushDirectory(storeRoot) : FinishDurably(card, path)) ? CardFault::Rename
                                                                             : CardFault::None;
}

} // namespace attachstore
