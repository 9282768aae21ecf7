#include "reliability/browser/Usage.h"

#include <QDir>
#include <QFile>

namespace {

/// A line of a process's status that counts kilobytes.
qint64 statusOf(const QString& process, const char* field)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
    }
    return 0;
}

} // namespace

qint64 usage::memoryOf(qint64 process)
{
    return statusOf(QString::number(process), "RssAnon:");
}

qint64 usage::peak()
{
    return statusOf(QStringLiteral("self"), "VmHWM:");
}

void usage::resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        file.write("5");
}

int usage::handlesOf(qint64 process)
{
    return int(QDir(QStringLiteral("/proc/%1/fd").arg(process))
                   .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                   .size());
}
