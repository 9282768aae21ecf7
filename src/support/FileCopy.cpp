#include "support/FileCopy.h"

#include "support/DiskFile.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#ifdef __linux__
#include <linux/fs.h>
#endif

namespace {

constexpr std::size_t kPiece = 64 * 1024;

int errorOf(int result)
{
    return result == 0 ? 0 : errno;
}

FileStamp stampOf(const struct stat& info)
{
    constexpr qint64 second = 1'000'000'000;
    return {info.st_size, info.st_mtim.tv_sec * second + info.st_mtim.tv_nsec};
}

class Descriptor {
public:
    Descriptor() = default;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int open(const QString& path, int flags, mode_t mode = 0)
    {
        // A path with NUL would reach the system cut short, and name another file.
        if (path.isEmpty() || path.contains(QChar(u'\0')))
            return ENOENT;
        m_number = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC | O_NOCTTY, mode);
        return m_number < 0 ? errno : 0;
    }
    int flushAndClose()
    {
        const int flushed = errorOf(::fsync(m_number));
        const int closed = errorOf(::close(std::exchange(m_number, -1)));
        return flushed ? flushed : closed;
    }
    int number() const { return m_number; }

private:
    int m_number = -1;
};

// By the rules of InputFile, which gives no descriptor away.
int openSource(Descriptor& source, const QString& path, FileStamp& stamp)
{
    if (const int error = source.open(path, O_RDONLY | O_NONBLOCK))
        return error;
    struct stat info;
    if (::fstat(source.number(), &info) != 0)
        return errno;
    if (S_ISDIR(info.st_mode))
        return EISDIR;
    if (!S_ISREG(info.st_mode))
        return EINVAL;
    stamp = stampOf(info);
    return 0;
}

bool shareBlocks([[maybe_unused]] int from, [[maybe_unused]] int to)
{
#ifdef FICLONE
    return ::ioctl(to, FICLONE, from) == 0;
#else
    return false;
#endif
}

int writeAll(int to, const char* bytes, std::size_t length)
{
    while (length > 0) {
        const ssize_t count = ::write(to, bytes, length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 ? errno : ENOSPC;
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
    return 0;
}

int copyByHand(int from, int to, std::size_t length)
{
    char piece[kPiece];
    while (length > 0) {
        const ssize_t count = ::read(from, piece, std::min(length, kPiece));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count < 0 ? errno : 0;
        const auto got = static_cast<std::size_t>(count);
        if (const int error = writeAll(to, piece, got))
            return error;
        length -= got;
    }
    return 0;
}

// File systems and sandboxes have many ways to say that they do not do this.
bool meansUnsupported(int error)
{
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP
        || error == EPERM;
}

// Copies `length` bytes, or fewer if the source ends before.
int copyBytes(int from, int to, std::size_t length)
{
#ifdef __linux__
    while (length > 0) {
        const ssize_t count = ::copy_file_range(from, nullptr, to, nullptr, length, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && !meansUnsupported(errno))
            return errno;
        if (count <= 0)
            break; // the end, as some file systems say at once, or it is not supported
        length -= static_cast<std::size_t>(count);
    }
#endif
    return copyByHand(from, to, length);
}

int copyWhole(const Descriptor& source, const FileStamp& stamp, Descriptor& target)
{
    if (!shareBlocks(source.number(), target.number())) {
        // One byte more than there should be shows a file that grows, and the limit ends the copy
        // of one that grows for ever.
        const std::size_t length = static_cast<std::size_t>(stamp.size) + 1;
        if (const int error = copyBytes(source.number(), target.number(), length))
            return error;
    }
    struct stat read, written;
    if (::fstat(source.number(), &read) != 0 || ::fstat(target.number(), &written) != 0)
        return errno;
    return stampOf(read) == stamp && written.st_size == stamp.size ? 0 : EBUSY;
}

} // namespace

std::optional<FileStamp> FileStamp::of(const QString& path)
{
    struct stat info;
    if (path.contains(QChar(u'\0')) || ::stat(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return stampOf(info);
}

int FinishDurably(UnfinishedFile& file, const QString& path)
{
    if (const int error = file.finish(path))
        return error;
    return FlushDirectory(QFileInfo(path).path());
}

int CopyFileNoReplace(const QString& from, const QString& to, std::optional<FileStamp> expected)
{
    if (to.isEmpty())
        return ENOENT;
    Descriptor source;
    FileStamp stamp;
    if (const int error = openSource(source, from, stamp))
        return error;
    if (expected && *expected != stamp)
        return EBUSY;

    UnfinishedFile temporary(
        GetAttachmentDir() + QDir::separator() + CreateGuidString() + QStringLiteral(".tmp"));
    Descriptor target;
    if (const int error = target.open(temporary.path(), O_WRONLY | O_CREAT | O_EXCL, 0666))
        return error;
    if (const int error = copyWhole(source, stamp, target))
        return error;
    if (const int error = target.flushAndClose())
        return error;
    return FinishDurably(temporary, to);
}
