#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Whether the path is a directory that nobody else can look into or put anything in.
bool isPrivate(const QString& path)
{
    struct stat info;
    return ::lstat(QFile::encodeName(path), &info) == 0 && S_ISDIR(info.st_mode)
        && info.st_uid == ::geteuid() && (info.st_mode & 0077) == 0;
}

} // namespace

QString GetTempDir()
{
    static std::mutex mutex;
    static std::unique_ptr<QTemporaryDir> directory;
    const std::lock_guard lock(mutex);
    // Desktops clear away what lies untouched for some days, and its name is then free for anyone.
    if (directory && !isPrivate(directory->path())) {
        directory->setAutoRemove(false);
        directory.reset();
    }
    if (!directory)
        directory = std::make_unique<QTemporaryDir>(
            QDir::tempPath() + QStringLiteral("/nomareditor-XXXXXX"));
    if (!directory->isValid()) {
        directory.reset();
        return {};
    }
    return QDir::toNativeSeparators(directory->path()) + QDir::separator();
}
