// Import of a file of 10 MB, against what no import can do without: one digest of the same file,
// and as many bare durable copies as the store keeps of it.

#include "Figure.h"

#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "support/AppDirs.h"
#include "support/FileMd5.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype kSize = 10 << 20;
constexpr int kRounds = 25;

const QString kNote = QStringLiteral("0123456789abcdef0123456789abcdef");

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

// A file that changes from call to call, so that the store never has it already.
class Source {
public:
    explicit Source(const QString& path)
        : m_path(path)
    {
        QByteArray bytes(kSize, Qt::Uninitialized);
        quint32 state = 1;
        for (char& byte : bytes)
            byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
        QFile file(m_path);
        require(file.open(QIODevice::WriteOnly) && file.write(bytes) == kSize, "no source");
    }

    void change()
    {
        QFile file(m_path);
        const QByteArray number = QByteArray::number(++m_number).rightJustified(16, '0');
        require(file.open(QIODevice::ReadWrite) && file.write(number) == 16, "no change");
    }

    QString path() const { return m_path; }

private:
    const QString m_path;
    int m_number = 0;
};

void emptyStore()
{
    QDir(GetAttachmentDir()).removeRecursively();
    QDir().mkpath(GetAttachmentDir() + u'/' + kNote);
}

// The seconds of one call with a source and a store that have not met.
bench::Side perFile(Source source, std::function<void(const QString&)> work)
{
    return [source, work]() mutable {
        source.change();
        emptyStore();
        return bench::timed([&] { work(source.path()); })();
    };
}

void import(const QString& path)
{
    const auto record = attachstore::RecordOfPath(path);
    MAF_RESULT result;
    require(record && attachstore::MoveAttFile(kNote, *record, result), "an import failed");
}

void flushDirectory(const QByteArray& path)
{
    const int directory = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(directory >= 0 && ::fsync(directory) == 0 && ::close(directory) == 0,
        "a bare flush failed");
}

void copyBare(const QByteArray& from, const QByteArray& directory, const QByteArray& name)
{
    const QByteArray temporary = directory + "/bare.tmp";
    const int source = ::open(from, O_RDONLY | O_CLOEXEC);
    const int target = ::open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    require(source >= 0 && target >= 0, "a bare open failed");
    ssize_t count;
    while ((count = ::copy_file_range(source, nullptr, target, nullptr, kSize, 0)) > 0) { }
    require(count == 0, "a bare copy failed");
    require(::fsync(target) == 0 && ::close(target) == 0, "a bare flush failed");
    ::close(source);
    require(::rename(temporary, directory + '/' + name) == 0, "a bare rename failed");
    flushDirectory(directory);
}

bench::Side digestAndBareCopies(const Source& source, const std::vector<QByteArray>& folders)
{
    return perFile(source, [folders](const QString& path) {
        require(!FileMd5(path).isEmpty(), "no digest");
        const QByteArray store = QFile::encodeName(GetAttachmentDir());
        for (const QByteArray& folder : folders)
            copyBare(QFile::encodeName(path), store + folder, "bare");
    });
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    SetAppDir(directory.path());
    const Source document(directory.filePath(QStringLiteral("a.txt")));
    const Source picture(directory.filePath(QStringLiteral("a.png")));
    const QByteArray note = '/' + kNote.toLatin1();
    return {bench::atMost("import of a 10 MB document, against its digest and a bare durable copy",
                1.25, perFile(document, import), digestAndBareCopies(document, {note}), kRounds),
        bench::atMost("import of a 10 MB picture, against its digest and two bare durable copies",
            1.25, perFile(picture, import), digestAndBareCopies(picture, {note, QByteArray()}),
            kRounds)};
}

const bench::Registration registration{"import", measure};

} // namespace
