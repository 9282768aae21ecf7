#pragma once

#include "attachstore/FileType.h"

#include <QString>

namespace attachstore {

/// The step at which a card failed.
enum class CardFault { None, Drawing, Digest, Rename };

/// Draws a card (`Card.h`) into the store, under its own digest. One that is there already stays,
/// and serves. `cardName` receives its file name; `cardSize`, if not null, its length in bytes.
///
/// A temporary file goes if a step fails; nothing is logged. The card and its name are on the disk
/// when this returns. For the user interface's thread alone.
CardFault StoreCard(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
    QString& cardName, int* cardSize);

} // namespace attachstore
