// FileMd5 against md5sum: one large file, and many small ones by one md5sum through xargs.

#include "Figure.h"

#include "support/FileMd5.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <stdexcept>

namespace {

constexpr qint64 kLargeFile = 256 << 20;
constexpr int kSmallFiles = 10'000;
constexpr qint64 kSmallFile = 10 << 10;

QByteArray noise(qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

void shell(const QString& command)
{
    if (std::system(command.toUtf8().constData()) != 0)
        throw std::runtime_error(command.toStdString() + " failed");
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    const QString large = directory.filePath(QStringLiteral("large"));
    const QString small = directory.filePath(QStringLiteral("small"));
    QDir().mkpath(small);
    writeFile(large, noise(kLargeFile));
    std::vector<QString> paths;
    for (int i = 0; i < kSmallFiles; ++i) {
        paths.push_back(small + QStringLiteral("/%1").arg(i));
        writeFile(paths.back(), noise(kSmallFile));
    }

    const auto oursLarge = bench::timed([=] { FileMd5(large); });
    const auto peerLarge =
        bench::timed([=] { shell(QStringLiteral("md5sum '%1' > /dev/null").arg(large)); });
    const auto oursSmall = bench::timed([=] {
        for (const QString& path : paths)
            FileMd5(path);
    });
    const auto peerSmall = bench::timed([=] {
        shell(QStringLiteral("find '%1' -type f -print0 | xargs -0 md5sum > /dev/null").arg(small));
    });
    return {bench::atMost("FileMd5, 256 MB, against md5sum", 1.1, oursLarge, peerLarge),
        bench::atMost("FileMd5, 10,000 files of 10 KB, against md5sum", 1.1, oursSmall, peerSmall)};
}

const bench::Registration registration{"FileMd5", measure};

} // namespace
