#include "probe_memory.h"

#include "editor_page.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cmath>
#include <map>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 parentOf(qint64 pid)
{
    // The command in parentheses may hold blanks and parentheses of its own.
    const QByteArray stat = contents(QStringLiteral("/proc/%1/stat").arg(pid));
    return stat.mid(stat.lastIndexOf(')') + 4).split(' ').value(0).toLongLong();
}

double memoryOf(qint64 pid)
{
    const QByteArray rollup = contents(QStringLiteral("/proc/%1/smaps_rollup").arg(pid));
    const qsizetype at = rollup.indexOf("\nPss:");
    if (at < 0)
        throw std::runtime_error("the system does not tell the memory of a process");
    return rollup.mid(at + 5).simplified().split(' ').value(0).toDouble() * 1024;
}

double memoryOfFamily()
{
    std::multimap<qint64, qint64> children;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        if (const qint64 pid = entry.toLongLong())
            children.emplace(parentOf(pid), pid);
    }
    std::vector<qint64> family{QCoreApplication::applicationPid()};
    double sum = 0;
    for (size_t i = 0; i < family.size(); ++i) {
        sum += memoryOf(family[i]);
        const auto [first, last] = children.equal_range(family[i]);
        for (auto child = first; child != last; ++child)
            family.push_back(child->second);
    }
    return sum;
}

} // namespace

double settledMemory()
{
    settle(1000);
    double last = memoryOfFamily();
    for (int i = 0; i < 20; ++i) {
        settle(500);
        const double now = memoryOfFamily();
        const bool isSettled = std::abs(now - last) < 0.01 * last;
        last = now;
        if (isSettled)
            break;
    }
    return last;
}

} // namespace bench
