#pragma once

#include <QString>

#include <atomic>

/// The MD5 digest (RFC 1321) of a file's bytes as 32 lower-case hexadecimal digits, or the empty
/// string if the file cannot be opened or is no regular file (a directory, FIFO, device or socket
/// is never waited for); that leaves one line in the log, with the system's error code.
///
/// Memory is constant whatever the size of the file. A file that another program has open for
/// writing is digested all the same. Callable from any thread.
///
/// Kept: a read error counts as the end of the file, and the digest is that of the bytes before it.
/// Who cannot live with that passes `length` and compares it: it receives the count of bytes read.
QString FileMd5(QString path, qint64* length = nullptr);

/// The same, but it can be called off: once `stop` is true the result is empty, and nothing is
/// logged of that.
QString FileMd5Unless(const std::atomic<bool>& stop, const QString& path, qint64* length);
