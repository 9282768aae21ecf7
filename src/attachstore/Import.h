#pragma once

#include "attachstore/DropFileInfo.h"
#include "attachstore/MafResult.h"

#include <QString>

/// The way of a file into the store; docs/store.md tells what lies where.
namespace attachstore {

/// Imports one file: copies it into the note's folder under its original name, and under its digest
/// as well if it is a picture; draws a card for any other file. The source stays as it is.
///
/// What is in the store already is never replaced, and not compared either: a working copy of that
/// name stays, whatever it holds. Every file that is made is flushed to the disk before its final
/// name stands.
///
/// Returns 1, or 0 after a failure, which is logged. Then what was finished before it stays in the
/// store, to be found by the next attempt, but no temporary file. A source that is changed while it
/// is read is a failed copy.
int MoveAttFile(const QString& noteGuid, const DropFileInfo& info, MAF_RESULT& result);

} // namespace attachstore
