#include "reliability/DiskFaults.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct State {
    std::mutex mutex;
    std::string root;
    int failAt = -1;
    int error = 0;
    bool stays = false;
    bool struck = false;
    std::vector<std::string> calls;
};

State state;
std::atomic<bool> armed = false;
std::array<std::atomic<bool>, 1024> below; // by descriptor: whether its file lies below the root

bool isBelow(const char* path)
{
    if (!armed || !path)
        return false;
    // The root itself too: an unnamed file is made by its folder's path.
    const std::string_view name(path);
    return name.starts_with(state.root) || std::string(name) + '/' == state.root;
}

bool isBelow(int descriptor)
{
    return armed && descriptor >= 0 && std::size_t(descriptor) < below.size()
        && below[std::size_t(descriptor)];
}

bool needsRoom(std::string_view call)
{
    constexpr std::string_view calls[] = {"open for writing", "write", "fsync", "fsync of a folder",
        "rename", "link", "mkdir", "copy_file_range"};
    return std::find(std::begin(calls), std::end(calls), call) != std::end(calls);
}

// Whether the call is to fail; errno is set then.
bool fails(const char* call)
{
    const std::lock_guard lock(state.mutex);
    const int number = int(state.calls.size());
    state.calls.emplace_back(call);
    if (state.failAt < 0)
        return false;
    const bool now = number == state.failAt;
    const bool still = state.stays && state.struck && needsRoom(call);
    if (!now && !still)
        return false;
    state.struck = true;
    errno = state.error;
    return true;
}

template <typename Function> Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool isForWriting(int flags)
{
    return (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT);
}

int opened(const char* path, int flags, mode_t mode, const char* name)
{
    using Open = int(const char*, int, ...);
    const bool counts = isBelow(path);
    if (counts && fails(isForWriting(flags) ? "open for writing" : "open"))
        return -1;
    const int descriptor = next<Open>(name)(path, flags, mode);
    if (descriptor >= 0 && std::size_t(descriptor) < below.size())
        below[std::size_t(descriptor)] = counts;
    return descriptor;
}

template <typename Info> int lookedAt(const char* name, const char* path, Info* out)
{
    if (isBelow(path) && fails("stat"))
        return -1;
    return next<int(const char*, Info*)>(name)(path, out);
}

template <typename Info> int lookedAt(const char* name, int descriptor, Info* out)
{
    if (isBelow(descriptor) && fails("stat"))
        return -1;
    return next<int(int, Info*)>(name)(descriptor, out);
}

int flushed(const char* name, int descriptor)
{
    struct stat info = {};
    const bool counts = isBelow(descriptor);
    if (counts)
        next<int(int, struct stat*)>("fstat")(descriptor, &info);
    if (counts && fails(S_ISDIR(info.st_mode) ? "fsync of a folder" : "fsync"))
        return -1;
    return next<int(int)>(name)(descriptor);
}

void arm(const QString& root, int failAt, int error, bool stays)
{
    const std::lock_guard lock(state.mutex);
    state.root = QFile::encodeName(root).toStdString();
    state.failAt = failAt;
    state.error = error;
    state.stays = stays;
    state.struck = false;
    state.calls.clear();
    armed = true;
}

} // namespace

DiskFaults::DiskFaults(const QString& root)
{
    arm(root, -1, 0, false);
}

DiskFaults::DiskFaults(const QString& root, int failAt, int error, Lasting lasting)
{
    arm(root, failAt, error, lasting == Lasting::FromThenOn);
}

DiskFaults::~DiskFaults()
{
    armed = false;
    for (std::atomic<bool>& each : below)
        each = false;
}

std::vector<std::string> DiskFaults::calls()
{
    const std::lock_guard lock(state.mutex);
    return state.calls;
}

bool DiskFaults::struck()
{
    const std::lock_guard lock(state.mutex);
    return state.struck;
}

// --- In front of the C library ---

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = mode_t(va_arg(rest, int));
    va_end(rest);
    return opened(path, flags, mode, "open");
}

int open64(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = mode_t(va_arg(rest, int));
    va_end(rest);
    return opened(path, flags, mode, "open64");
}

ssize_t read(int descriptor, void* to, size_t length)
{
    if (isBelow(descriptor) && fails("read"))
        return -1;
    return next<ssize_t(int, void*, size_t)>("read")(descriptor, to, length);
}

ssize_t write(int descriptor, const void* from, size_t length)
{
    if (isBelow(descriptor) && fails("write"))
        return -1;
    return next<ssize_t(int, const void*, size_t)>("write")(descriptor, from, length);
}

int fsync(int descriptor)
{
    return flushed("fsync", descriptor);
}

int fdatasync(int descriptor)
{
    return flushed("fdatasync", descriptor);
}

int close(int descriptor)
{
    const bool counts = isBelow(descriptor);
    if (counts)
        below[std::size_t(descriptor)] = false;
    const int result = next<int(int)>("close")(descriptor);
    // As on a network: the descriptor is gone all the same.
    return counts && fails("close") ? -1 : result;
}

int rename(const char* from, const char* to) noexcept
{
    if (isBelow(to) && fails("rename"))
        return -1;
    return next<int(const char*, const char*)>("rename")(from, to);
}

int renameat2(int fromDir, const char* from, int toDir, const char* to, unsigned flags) noexcept
{
    if (isBelow(to) && fails("rename"))
        return -1;
    return next<int(int, const char*, int, const char*, unsigned)>("renameat2")(
        fromDir, from, toDir, to, flags);
}

int link(const char* from, const char* to) noexcept
{
    if (isBelow(to) && fails("link"))
        return -1;
    return next<int(const char*, const char*)>("link")(from, to);
}

int linkat(int fromDir, const char* from, int toDir, const char* to, int flags) noexcept
{
    if (isBelow(to) && fails("link"))
        return -1;
    return next<int(int, const char*, int, const char*, int)>("linkat")(
        fromDir, from, toDir, to, flags);
}

int unlink(const char* path) noexcept
{
    if (isBelow(path) && fails("unlink"))
        return -1;
    return next<int(const char*)>("unlink")(path);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    if (isBelow(path) && fails("mkdir"))
        return -1;
    return next<int(const char*, mode_t)>("mkdir")(path, mode);
}

int statx(int directory, const char* path, int flags, unsigned mask, struct statx* out) noexcept
{
    const bool isOpenFile = (flags & AT_EMPTY_PATH) && isBelow(directory);
    if ((isBelow(path) || isOpenFile) && fails("stat"))
        return -1;
    return next<int(int, const char*, int, unsigned, struct statx*)>("statx")(
        directory, path, flags, mask, out);
}

int stat(const char* path, struct stat* out) noexcept
{
    return lookedAt("stat", path, out);
}

int stat64(const char* path, struct stat64* out) noexcept
{
    return lookedAt("stat64", path, out);
}

int lstat(const char* path, struct stat* out) noexcept
{
    return lookedAt("lstat", path, out);
}

int lstat64(const char* path, struct stat64* out) noexcept
{
    return lookedAt("lstat64", path, out);
}

int fstat(int descriptor, struct stat* out) noexcept
{
    return lookedAt("fstat", descriptor, out);
}

int fstat64(int descriptor, struct stat64* out) noexcept
{
    return lookedAt("fstat64", descriptor, out);
}

int access(const char* path, int mode) noexcept
{
    if (isBelow(path) && fails("access"))
        return -1;
    return next<int(const char*, int)>("access")(path, mode);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    if (isBelow(descriptor) && fails("chmod"))
        return -1;
    return next<int(int, mode_t)>("fchmod")(descriptor, mode);
}

ssize_t copy_file_range(
    int from, off64_t* fromAt, int to, off64_t* toAt, size_t length, unsigned flags)
{
    if (isBelow(to) && fails("copy_file_range"))
        return -1;
    return next<ssize_t(int, off64_t*, int, off64_t*, size_t, unsigned)>("copy_file_range")(
        from, fromAt, to, toAt, length, flags);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    if (isBelow(descriptor) && fails("ioctl"))
        return -1;
    return next<int(int, unsigned long, ...)>("ioctl")(descriptor, request, argument);
}

} // extern "C"
#pragma GCC visibility pop
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
