#pragma once

#include "attachstore/DropFileInfo.h"

#include <QString>

#include <vector>

namespace attachstore {

/// Gives new files whose names clash with those in the note a number: with "a.txt" and "a(3).doc"
/// in the note, a new "a.txt" becomes "a(4).txt" and the next one "a(5).txt".
///
/// What clashes is the base, the name without extension and number; case counts, the extension does
/// not. A name is numbered if it has the form "base(number).extension"; what no number can be read
/// from counts as 0, as it does for a name without a number, and digits beyond 32 bits as the
/// largest such number. All names without a dot share the empty base. The number of a new name is
/// one above the highest that its base has in the note and among the new names so far, and the
/// extension is that of `fileName`: a new "readme" beside a "README" becomes "(1).readme".
///
/// The new name goes to `origName` and `fileName`; other fields, and the count and order of the
/// files, stay. A new name that is too long for a file is shortened (LegalName.h). Without any name
/// in the note nothing changes. Time grows with the count of names, n log n.
///
/// Kept: new files are not held against each other, so two of one name that the note lacks keep it,
/// both of them.
void NumberClashingNames(const std::vector<QString>& namesInNote, std::vector<DropFileInfo>& files);

} // namespace attachstore
