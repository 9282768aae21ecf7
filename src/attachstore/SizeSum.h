#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

#include <map>
#include <vector>

namespace attachstore {

/// What a note's files weigh together, in bytes. Each record counts, that of a shown file too, so a
/// picture weighs twice. `sizes` has the size of each stored file under its name; the disk is not
/// looked at.
///
/// Kept: a record counts with one byte less than its size, and of the size only the low 32 bits
/// count, with their sign.
///
/// Returns 1. Returns 0, with one line in the log, at the first record whose size is not known or
/// comes out negative by that rule (as an empty file's does); `total` is not to be used then.
int SumAttachSizes(const std::vector<NewAttachFile>& records,
    const std::map<QString, quint64>& sizes, quint64& total);

} // namespace attachstore
