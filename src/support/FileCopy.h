#pragma once

#include <QString>

#include <optional>

class UnfinishedFile;

/// How a file comes into the store: under a temporary name first, and under its own only when it is
/// whole and safe from a loss of power. Results are the system's `errno` values; 0 is success.
/// Built on POSIX.

/// What tells whether a file has been written to: as long as nobody does, its stamps are equal.
/// Times are as fine as the file system keeps them.
struct FileStamp {
    qint64 size = 0; ///< in bytes
    qint64 changed = 0; ///< nanoseconds since 1970

    bool operator==(const FileStamp&) const = default;

    /// Of the file at `path`, which is not opened; nothing if there is none.
    static std::optional<FileStamp> of(const QString& path);
    /// Of the file that `name` leads to from an open directory, or from anywhere with AT_FDCWD and
    /// a whole path; nothing if that is no regular file.
    static std::optional<FileStamp> ofRegularFile(int directory, const char* name);
};

/// Gives a file whose bytes are on the disk its final name, and brings that to the disk too. EEXIST
/// if there is something of that name. When only the last step fails the file has its name already
/// and keeps it. Every file of the store but notes gets its name here, and is one of the library's
/// own writes (OwnWrites.h).
int FinishDurably(UnfinishedFile& file, const QString& path);

/// Copies a file to a path in the store, as FinishDurably does; the bytes pass through a temporary
/// `<guid>.tmp` at the store's top level, which goes if any step fails.
///
/// Where the file system can share blocks it does, else the system copies, else a small buffer. The
/// copy is a file of its own that the user may write to, whatever the rights of the source are.
///
/// `from` must be a regular file: a directory is refused with EISDIR; a FIFO, device or socket with
/// EINVAL, and never waited for. A source that does not have the stamp that is `expected`, and one
/// whose stamp or length turns out otherwise when it was copied, is refused with EBUSY: half a file
/// would stay for ever under a name that is never written again.
int CopyFileNoReplace(
    const QString& from, const QString& to, std::optional<FileStamp> expected = std::nullopt);
