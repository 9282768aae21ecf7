#include "support/FileCopy.h"

#include "support/DiskFile.h"
#include "support/OwnWrites.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/fs.h>
#endif

namespace {

constexpr std::size_t kPiece = 64 * 1024;

FileStamp stampOf(const struct stat& info)
{
    constexpr qint64 second = 1'000'000'000;
    return {info.st_size, info.st_mtim.tv_sec * second + info.st_mtim.tv_nsec};
}

std::optional<FileStamp> stampOf(const InputFile& source)
{
    struct stat info;
    if (::fstat(source.descriptor(), &info) != 0)
        return std::nullopt;
    return stampOf(info);
}

bool shareBlocks([[maybe_unused]] int from, [[maybe_unused]] int to)
{
#ifdef FICLONE
    return ::ioctl(to, FICLONE, from) == 0;
#else
    return false;
#endif
}

int copyByHand(InputFile& from, OutputFile& to, std::size_t length)
{
    char piece[kPiece];
    while (length > 0) {
        const qint64 count = from.read(piece, std::min(length, kPiece));
        if (count <= 0)
            return count < 0 ? errno : 0;
        const auto got = static_cast<std::size_t>(count);
        if (const int error = to.write(piece, got))
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
int copyBytes(InputFile& from, OutputFile& to, std::size_t length)
{
#ifdef __linux__
    while (length > 0) {
        const ssize_t count =
            ::copy_file_range(from.descriptor(), nullptr, to.descriptor(), nullptr, length, 0);
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

int copyWhole(InputFile& source, const FileStamp& stamp, OutputFile& target)
{
    if (!shareBlocks(source.descriptor(), target.descriptor())) {
        // One byte more than there should be shows a file that grows, and the limit ends the copy
        // of one that grows for ever.
        const std::size_t length = static_cast<std::size_t>(stamp.size) + 1;
        if (const int error = copyBytes(source, target, length))
            return error;
    }
    struct stat read, written;
    if (::fstat(source.descriptor(), &read) != 0 || ::fstat(target.descriptor(), &written) != 0)
        return errno;
    return stampOf(read) == stamp && written.st_size == stamp.size ? 0 : EBUSY;
}

// A note's folder that is a symbolic link; the store itself may be one, where its owner has moved
// it.
bool leadsOutOfStore(const QString& path)
{
    const QString folder = QFileInfo(path).path();
    return folder != GetAttachmentDir() && QFileInfo(folder).isSymLink();
}

} // namespace

std::optional<FileStamp> FileStamp::of(const QString& path)
{
    struct stat info;
    if (path.contains(QChar(u'\0')) || ::stat(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return stampOf(info);
}

std::optional<FileStamp> FileStamp::ofRegularFile(int directory, const char* name)
{
    struct stat info;
    if (::fstatat(directory, name, &info, 0) != 0 || !S_ISREG(info.st_mode))
        return std::nullopt;
    return stampOf(info);
}

int FinishDurably(UnfinishedFile& file, const QString& path)
{
    if (const auto stamp = FileStamp::of(file.path()))
        ownwrites::remember(path, *stamp);
    if (const int error = file.finish(path))
        return error;
    return FlushDirectory(QFileInfo(path).path());
}

int CopyFileNoReplace(const QString& from, const QString& to, std::optional<FileStamp> expected)
{
    if (to.isEmpty())
        return ENOENT;
    if (leadsOutOfStore(to))
        return ELOOP;
    InputFile source;
    if (const int error = source.open(from))
        return error;
    const std::optional<FileStamp> stamp = stampOf(source);
    if (!stamp)
        return errno;
    if (expected && *expected != *stamp)
        return EBUSY;

    UnfinishedFile temporary(
        GetAttachmentDir() + QDir::separator() + CreateGuidString() + QStringLiteral(".tmp"));
    OutputFile target;
    if (const int error = target.createNew(temporary.path()))
        return error;
    if (const int error = copyWhole(source, *stamp, target))
        return error;
    if (const int error = target.flushAndClose())
        return error;
    return FinishDurably(temporary, to);
}
