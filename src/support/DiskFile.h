#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>

/// Files on disk where QFile does not say enough: reading without ever waiting, and writing so that
/// a file is there whole, or not at all, after a crash or a loss of power. Errors are the system's
/// `errno` values; 0 is success. Built on POSIX.

/// A regular file, open for reading.
class InputFile {
public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// A directory is refused with EISDIR; a FIFO, device or socket with EINVAL, unopened or opened
    /// without waiting. Other programs may have the file open in any way.
    int open(const QString& path);
    qint64 size() const { return m_size; } ///< at the time it was opened
    int descriptor() const { return m_descriptor; } ///< for the system's own calls; stays ours
    /// The count of bytes read; 0 at the end, -1 on an error.
    qint64 read(char* buffer, std::size_t capacity);

private:
    int m_descriptor = -1;
    qint64 m_size = 0;
};

/// A file that is being written.
class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Makes the file, or empties it if it is there.
    int create(const QString& path);
    /// Makes the file; EEXIST if there is something of that name.
    int createNew(const QString& path);
    /// Writes all of it; a write that stops short is an error.
    int write(const char* data, std::size_t length);
    qint64 written() const { return m_written; }
    int descriptor() const { return m_descriptor; } ///< for the system's own calls; stays ours
    /// Lets the system begin to bring what was written to the disk, and does not wait: work that
    /// comes before the flush then costs less. Only a hint.
    void beginFlush();
    /// Brings what was written to the disk and closes the file.
    int flushAndClose();

private:
    int m_descriptor = -1;
    qint64 m_written = 0;
};

/// A file that has not got its final name yet, and is removed at the end if it never gets it.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const QString& path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const QString& path() const { return m_path; }
    /// Gives it its final name, in the same file system. EEXIST if there is something of that name.
    int finish(const QString& path);

private:
    const QString m_path;
    const QByteArray m_name; // the path, ready for a removal that must not fail
    bool m_finished = false;
};

/// Gives a file another name in the same file system. EEXIST if there is something of that name.
int RenameNoReplace(const QString& from, const QString& to);

/// Brings the names in a directory to the disk. A file system that cannot do that for directories
/// counts as a success.
int FlushDirectory(const QString& directory);
