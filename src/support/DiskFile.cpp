#include "support/DiskFile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[maybe_unused]] constexpr qint64 kWorthAnEarlyStart = 128 * 1024;

// For all to read, as far as the user's mask lets them, and never for others to write.
constexpr mode_t kFileMode = 0644;

// A path with NUL would reach the system cut short, and name another file.
bool isUsable(const QString& path)
{
    return !path.isEmpty() && !path.contains(QChar(u'\0'));
}

int openFile(const QString& path, int flags, mode_t mode = 0)
{
    if (!isUsable(path)) {
        errno = ENOENT;
        return -1;
    }
    return ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, mode);
}

int errorOf(int result)
{
    return result == 0 ? 0 : errno;
}

// For file systems without an exclusive rename.
int linkAndUnlink(const char* from, const char* to)
{
    if (::link(from, to) != 0)
        return errno;
    ::unlink(from);
    return 0;
}

// For file systems without links too: two processes could still meet here, one at a time cannot.
int lookAndRename(const char* from, const char* to)
{
    struct stat info;
    if (::lstat(to, &info) == 0)
        return EEXIST;
    return errorOf(::rename(from, to));
}

} // namespace

InputFile::~InputFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

int InputFile::open(const QString& path)
{
    m_descriptor = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (m_descriptor < 0)
        return errno;
    struct stat info;
    if (::fstat(m_descriptor, &info) != 0)
        return errno;
    if (S_ISDIR(info.st_mode))
        return EISDIR;
    if (!S_ISREG(info.st_mode))
        return EINVAL;
    m_size = info.st_size;
    return 0;
}

qint64 InputFile::read(char* buffer, std::size_t capacity)
{
    ssize_t count;
    do
        count = ::read(m_descriptor, buffer, capacity);
    while (count < 0 && errno == EINTR);
    return count;
}

OutputFile::~OutputFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

int OutputFile::create(const QString& path)
{
    m_descriptor = openFile(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, kFileMode);
    return m_descriptor < 0 ? errno : 0;
}

int OutputFile::createNew(const QString& path)
{
    m_descriptor = openFile(path, O_WRONLY | O_CREAT | O_EXCL | O_NOCTTY, kFileMode);
    return m_descriptor < 0 ? errno : 0;
}

int OutputFile::write(const char* data, std::size_t length)
{
    while (length > 0) {
        const ssize_t count = ::write(m_descriptor, data, length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 ? errno : ENOSPC;
        data += count;
        length -= static_cast<std::size_t>(count);
        m_written += count;
    }
    return 0;
}

void OutputFile::beginFlush()
{
#ifdef SYNC_FILE_RANGE_WRITE
    if (m_written >= kWorthAnEarlyStart)
        ::sync_file_range(m_descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

int OutputFile::flushAndClose()
{
    const int flushed = errorOf(::fsync(m_descriptor));
    const int closed = errorOf(::close(m_descriptor));
    m_descriptor = -1;
    return flushed ? flushed : closed;
}

UnfinishedFile::UnfinishedFile(const QString& path)
    : m_path(path)
    , m_name(QFile::encodeName(path))
{
}

UnfinishedFile::~UnfinishedFile()
{
    if (!m_finished)
        ::unlink(m_name.constData());
}

int UnfinishedFile::finish(const QString& path)
{
    const int error = RenameNoReplace(m_path, path);
    m_finished = error == 0;
    return error;
}

int RenameNoReplace(const QString& from, const QString& to)
{
    if (!isUsable(from) || !isUsable(to))
        return ENOENT;
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    int error = EINVAL;
#ifdef RENAME_NOREPLACE
    error = errorOf(::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE));
#endif
    if (error == EINVAL || error == ENOSYS)
        error = linkAndUnlink(source, target);
    if (error == EPERM || error == ENOTSUP)
        error = lookAndRename(source, target);
    return error;
}

int FlushDirectory(const QString& directory)
{
    const int descriptor = openFile(directory, O_RDONLY | O_DIRECTORY);
    if (descriptor < 0)
        return errno;
    const int error = errorOf(::fsync(descriptor));
    ::close(descriptor);
    return error == EINVAL || error == ENOTSUP ? 0 : error;
}
