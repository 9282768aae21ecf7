#pragma once

#include "attachstore/DropFileInfo.h"

#include <vector>

/// What may enter a note.
namespace attachstore {

/// The most that the attachments of one note may weigh together, in bytes.
inline constexpr quint64 attachLimit = 0xA00000;

/// Which kinds of files were left out.
struct Refused {
    bool folder = false;
    bool empty = false;
    bool overLimit = false;

    bool operator==(const Refused&) const = default;
};

/// Takes out of the list what may not enter a note whose attachments weigh `total` bytes: folders,
/// empty files, and a file with which the note would weigh more than the limit. The rest keeps its
/// order. A file that is refused weighs nothing, so a later, smaller one can still pass. The first
/// rule that applies to a file decides; nothing is shown to anyone.
Refused ApplyEntryRules(std::vector<DropFileInfo>& files, quint64 total);

} // namespace attachstore
