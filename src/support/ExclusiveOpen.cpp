#include "support/ExclusiveOpen.h"

#include "support/DiskFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int refusalOf(const struct stat& info)
{
    if (S_ISREG(info.st_mode))
        return 0;
    return S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
}

bool isFlocked(int descriptor)
{
    // Goes with the descriptor. Any other failure is that of a file system without such locks.
    return ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

bool isRecordLocked(int descriptor)
{
#ifdef F_OFD_GETLK
    constexpr int whoLocks = F_OFD_GETLK; // Sees the locks of this process too.
#else
    constexpr int whoLocks = F_GETLK;
#endif
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET; // From 0 and of length 0: all of the file.
    return ::fcntl(descriptor, whoLocks, &lock) == 0 && lock.l_type != F_UNLCK;
}

} // namespace

int ExclusiveOpen(const QString& path)
{
    if (path.contains(QChar::Null))
        return ENOENT;
    const QByteArray name = QFile::encodeName(path);
    // A device may do things when it is opened: looked at first. InputFile looks again, as what is
    // there may be another by then.
    struct stat info;
    if (::stat(name.constData(), &info) != 0)
        return errno;
    if (const int refusal = refusalOf(info))
        return refusal;
    InputFile file;
    if (const int error = file.open(path))
        return error;
    return isRecordLocked(file.descriptor()) || isFlocked(file.descriptor()) ? EWOULDBLOCK : 0;
}

bool IsInUse(int error)
{
    return error == EWOULDBLOCK || error == EAGAIN || error == EBUSY || error == ETXTBSY;
}
