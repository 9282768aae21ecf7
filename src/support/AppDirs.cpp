#include "support/AppDirs.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <mutex>

namespace {

QString withSeparator(const QString& directory)
{
    const QString native = QDir::toNativeSeparators(directory);
    return native.endsWith(QDir::separator()) ? native : native + QDir::separator();
}

QString executableDir()
{
#ifdef Q_OS_LINUX
    // Known without an application object, which a command-line tool or a test need not have.
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
#else
    const QString executable = QCoreApplication::applicationFilePath();
#endif
    const qsizetype separator = executable.lastIndexOf(u'/');
    return separator < 0 ? QString() : withSeparator(executable.left(separator));
}

class Directory {
public:
    void set(const QString& path)
    {
        const std::lock_guard lock(m_mutex);
        m_path = path.isEmpty() ? QString() : withSeparator(QDir(path).absolutePath());
    }

    QString get() const
    {
        static const QString standard = executableDir();
        const std::lock_guard lock(m_mutex);
        return m_path.isEmpty() ? standard : m_path;
    }

private:
    mutable std::mutex m_mutex;
    QString m_path; // empty: the default
};

Directory& appDir()
{
    static Directory directory;
    return directory;
}

Directory& installDir()
{
    static Directory directory;
    return directory;
}

} // namespace

void SetAppDir(const QString& path)
{
    appDir().set(path);
}
void SetInstallDir(const QString& path)
{
    installDir().set(path);
}
QString GetAppDir()
{
    return appDir().get();
}
QString GetInstallDir()
{
    return installDir().get();
}
