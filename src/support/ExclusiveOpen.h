#pragma once

#include <QString>

/// Whether a file can be had alone, as a file must that becomes an attachment: one that is being
/// edited would come in half done.
///
/// What "in use" means: a lock on the file that another opener holds, by `flock` or by `fcntl` (on
/// any part of the file, for reading or writing), or a system that will not let the file be opened
/// because of what others do with it. Programs that edit without a lock are not noticed. File
/// systems without locks have nobody who holds one.

/// Opens the regular file at `path` for reading, looks for locks of others, and closes it; no lock
/// is taken beyond that moment. 0, or the system's `errno` value: EISDIR for a directory, EINVAL
/// for a FIFO, device or socket, which are never waited for; `IsInUse` tells those of a file that
/// others have.
///
/// As any closing of a file, this ends the `fcntl` locks that this very process holds on it, which
/// count as those of another opener.
int ExclusiveOpen(const QString& path);

/// Whether a result of `ExclusiveOpen` says that the file is in use: EWOULDBLOCK, EAGAIN, EBUSY,
/// ETXTBSY.
bool IsInUse(int error);
