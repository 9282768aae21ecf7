#include "support/FileCopy.h"

#include "support/DiskFile.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

struct stat statOf(const QString& path)
{
    struct stat info { };
    EXPECT_EQ(::stat(QFile::encodeName(path), &info), 0) << path.toStdString();
    return info;
}

// Bytes that show a piece that is missing, doubled or moved.
QByteArray counting(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

class CopyFileNoReplaceTest : public testing::Test {
protected:
    QString source(const QByteArray& bytes, const QString& name = QStringLiteral("source"))
    {
        const QString path = m_sources.filePath(name);
        writeFile(path, bytes);
        return path;
    }

    int copy(const QString& from) { return CopyFileNoReplace(from, target()); }
    QString target() const { return m_store.path(QStringLiteral("copy")); }

    // That the copy of something fails so, and that nothing of it is left.
    void expectRefused(const QString& from, int error)
    {
        EXPECT_EQ(copy(from), error) << from.toStdString();
        EXPECT_EQ(m_store.names(), QStringList()) << from.toStdString();
    }

    TestStore m_store;
    QTemporaryDir m_sources;
};

} // namespace

TEST_F(CopyFileNoReplaceTest, CopiesEveryByte)
{
    for (const qsizetype size : {0, 1, 65'535, 65'536, 65'537, 3'000'000}) {
        const QByteArray bytes = counting(size);
        EXPECT_EQ(copy(source(bytes)), 0);
        EXPECT_TRUE(readFile(target()) == bytes) << size;
        EXPECT_EQ(m_store.names(), QStringList(QStringLiteral("copy")));
        QFile::remove(target());
    }
}

// Between file systems the kernel does not copy, and bytes go by hand.
TEST_F(CopyFileNoReplaceTest, CopiesEveryByteFromAnotherFileSystem)
{
    const QTemporaryDir memory(QStringLiteral("/dev/shm/nomar-XXXXXX"));
    if (!memory.isValid() || statOf(memory.path()).st_dev == statOf(m_store.store()).st_dev)
        GTEST_SKIP() << "there is no second file system to write to";
    for (const qsizetype size : {0, 1, 65'536, 65'537, 3'000'000}) {
        const QByteArray bytes = counting(size);
        const QString path = memory.filePath(QStringLiteral("source"));
        writeFile(path, bytes);
        EXPECT_EQ(copy(path), 0);
        EXPECT_TRUE(readFile(target()) == bytes) << size;
        QFile::remove(target());
    }
}

TEST_F(CopyFileNoReplaceTest, LeavesTheSourceAsItIs)
{
    const QString path = source("bytes");
    const struct stat before = statOf(path);
    ASSERT_EQ(copy(path), 0);
    const struct stat after = statOf(path);
    EXPECT_EQ(readFile(path), "bytes");
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_mode, before.st_mode);
}

TEST_F(CopyFileNoReplaceTest, TheCopyIsAFileOfItsOwn)
{
    const QString path = source("before");
    ASSERT_EQ(copy(path), 0);
    EXPECT_NE(statOf(path).st_ino, statOf(target()).st_ino);
    EXPECT_EQ(statOf(target()).st_nlink, 1u);
    writeFile(target(), "after");
    EXPECT_EQ(readFile(path), "before");
}

TEST_F(CopyFileNoReplaceTest, AReadOnlySourceGivesACopyThatCanBeEdited)
{
    const QString path = source("bytes");
    ASSERT_EQ(::chmod(QFile::encodeName(path), 0444), 0);
    const mode_t mask = ::umask(022);
    EXPECT_EQ(copy(path), 0);
    ::umask(mask);
    EXPECT_EQ(statOf(target()).st_mode & 07777, 0644u);
}

TEST_F(CopyFileNoReplaceTest, AnExecutableOrPrivateSourceGivesAnOrdinaryFile)
{
    const mode_t mask = ::umask(077);
    for (const mode_t mode : {04755, 0777, 0600}) {
        const QString path = source("bytes");
        ASSERT_EQ(::chmod(QFile::encodeName(path), mode), 0);
        EXPECT_EQ(copy(path), 0);
        EXPECT_EQ(statOf(target()).st_mode & 07777, 0600u);
        QFile::remove(target());
    }
    ::umask(mask);
}

TEST_F(CopyFileNoReplaceTest, ATakenNameIsNeverReplaced)
{
    const QString path = source("new");
    m_store.write(QStringLiteral("copy"), "old");
    EXPECT_EQ(copy(path), EEXIST);
    EXPECT_EQ(readFile(target()), "old");
    EXPECT_EQ(m_store.names(), QStringList(QStringLiteral("copy")));
}

TEST_F(CopyFileNoReplaceTest, ADanglingLinkTakesTheNameToo)
{
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(target())), 0);
    EXPECT_EQ(copy(source("new")), EEXIST);
    EXPECT_EQ(m_store.names(), QStringList(QStringLiteral("copy")));
    EXPECT_FALSE(QFile::exists(m_store.path(QStringLiteral("nowhere"))));
}

TEST_F(CopyFileNoReplaceTest, ALinkIsCopiedAsTheFileItLeadsTo)
{
    source("bytes");
    const QString link = m_sources.filePath(QStringLiteral("link"));
    ASSERT_EQ(::symlink("source", QFile::encodeName(link)), 0);
    EXPECT_EQ(copy(link), 0);
    EXPECT_FALSE(QFileInfo(target()).isSymLink());
    EXPECT_EQ(readFile(target()), "bytes");
}

TEST_F(CopyFileNoReplaceTest, WhatIsNoRegularFileIsRefusedAndNeverWaitedFor)
{
    const QString fifo = m_sources.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo), 0666), 0);
    expectRefused(fifo, EINVAL);
    expectRefused(QStringLiteral("/dev/zero"), EINVAL);
    expectRefused(m_sources.path(), EISDIR);

    const QString dangling = m_sources.filePath(QStringLiteral("dangling"));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(dangling)), 0);
    expectRefused(dangling, ENOENT);
    const QString folderLink = m_sources.filePath(QStringLiteral("folder"));
    ASSERT_EQ(::symlink(".", QFile::encodeName(folderLink)), 0);
    expectRefused(folderLink, EISDIR);
}

TEST_F(CopyFileNoReplaceTest, ASocketIsRefused)
{
    const QByteArray path = QFile::encodeName(m_sources.filePath(QStringLiteral("socket")));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), qsizetype(sizeof address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    expectRefused(QFile::decodeName(path), ENXIO);
    ::close(socket);
}

TEST_F(CopyFileNoReplaceTest, ASourceThatCannotBeReadIsRefused)
{
    const QString path = source("secret");
    ASSERT_EQ(::chmod(QFile::encodeName(path), 0), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_sources.path()), 0755), 0);
    const WithoutRoot rights;
    EXPECT_EQ(copy(path), EACCES);
}

TEST_F(CopyFileNoReplaceTest, WithoutANameThereIsNoCopy)
{
    const QString path = source("bytes");
    expectRefused(QString(), ENOENT);
    expectRefused(path + QChar(u'\0'), ENOENT);
    expectRefused(m_sources.filePath(QStringLiteral("none")), ENOENT);
    EXPECT_EQ(CopyFileNoReplace(path, QString()), ENOENT);
    EXPECT_EQ(CopyFileNoReplace(path, target() + QChar(u'\0')), ENOENT);
    EXPECT_EQ(CopyFileNoReplace(path, m_store.path(QStringLiteral("none/copy"))), ENOENT);
    EXPECT_EQ(m_store.names(), QStringList());
}

// The kernel tells no length of these files, as if they had grown since they were looked at.
TEST_F(CopyFileNoReplaceTest, ASourceThatTurnsOutLongerIsRefused)
{
    const QString path = QStringLiteral("/proc/self/status");
    if (!QFile::exists(path))
        GTEST_SKIP() << "there is no such file here";
    expectRefused(path, EBUSY);
}

// The kernel tells a whole page for these files, whatever they hold.
TEST_F(CopyFileNoReplaceTest, ASourceThatTurnsOutShorterIsRefused)
{
    const QString path = QStringLiteral("/sys/kernel/mm/transparent_hugepage/enabled");
    if (!QFile::exists(path))
        GTEST_SKIP() << "there is no such file here";
    ASSERT_EQ(statOf(path).st_size, 4096);
    expectRefused(path, EBUSY);
}

TEST_F(CopyFileNoReplaceTest, OnlyASourceWithTheStampExpectedIsCopied)
{
    const QString path = source("bytes");
    const auto stamp = FileStamp::of(path);
    ASSERT_TRUE(stamp);
    FileStamp longer = *stamp, later = *stamp;
    ++longer.size;
    ++later.changed;
    EXPECT_EQ(CopyFileNoReplace(path, target(), longer), EBUSY);
    EXPECT_EQ(CopyFileNoReplace(path, target(), later), EBUSY);
    EXPECT_EQ(m_store.names(), QStringList());
    EXPECT_EQ(CopyFileNoReplace(path, target(), stamp), 0);
    EXPECT_EQ(readFile(target()), "bytes");
}

TEST_F(CopyFileNoReplaceTest, AFullStoreLeavesNothing)
{
    const QString path = source(counting(200'000));
    const FileSizeLimit limit(100'000);
    expectRefused(path, EFBIG);
}

TEST_F(CopyFileNoReplaceTest, AFullStoreLeavesNothingWhenBytesGoByHand)
{
    const QTemporaryDir memory(QStringLiteral("/dev/shm/nomar-XXXXXX"));
    if (!memory.isValid())
        GTEST_SKIP() << "there is no second file system to write to";
    const QString path = memory.filePath(QStringLiteral("source"));
    writeFile(path, counting(200'000));
    const FileSizeLimit limit(100'000);
    expectRefused(path, EFBIG);
}

TEST_F(CopyFileNoReplaceTest, AStoreThatMayNotBeWrittenIsAnError)
{
    const QString path = source("bytes");
    ASSERT_EQ(::chmod(QFile::encodeName(m_sources.path()), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.appDir()), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.store()), 0555), 0);
    const WithoutRoot rights;
    expectRefused(path, EACCES);
}

TEST_F(CopyFileNoReplaceTest, AFolderThatMayNotBeWrittenLeavesNoTemporary)
{
    const QString path = source("bytes");
    QDir(m_store.store()).mkdir(QStringLiteral("note"));
    ASSERT_EQ(::chmod(QFile::encodeName(m_sources.path()), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.appDir()), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.store()), 0777), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.path(QStringLiteral("note"))), 0555), 0);
    {
        const WithoutRoot rights;
        EXPECT_EQ(CopyFileNoReplace(path, m_store.path(QStringLiteral("note/copy"))), EACCES);
    }
    EXPECT_EQ(m_store.names(), QStringList(QStringLiteral("note")));
}

TEST(FileStamp, TellsWhetherAFileWasWrittenTo)
{
    const TestStore store;
    const QString path = store.write(QStringLiteral("x"), "abc");
    const auto before = FileStamp::of(path);
    ASSERT_TRUE(before);
    EXPECT_EQ(before->size, 3);
    EXPECT_EQ(FileStamp::of(path), before);

    const timespec later[2]{{0, UTIME_OMIT}, {1'700'000'000, 123}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path), later, 0), 0);
    EXPECT_EQ(FileStamp::of(path), (FileStamp{3, 1'700'000'000'000'000'123}));
    writeFile(path, "abcd");
    EXPECT_EQ(FileStamp::of(path)->size, 4);
}

TEST(FileStamp, WhatIsNotThereHasNone)
{
    const TestStore store;
    const QString path = store.write(QStringLiteral("x"), "");
    EXPECT_FALSE(FileStamp::of(store.path(QStringLiteral("none"))));
    EXPECT_FALSE(FileStamp::of(path + QChar(u'\0')));
    EXPECT_FALSE(FileStamp::of(QString()));
}

TEST(FinishDurably, GivesAWrittenFileItsName)
{
    const TestStore store;
    UnfinishedFile file(store.write(QStringLiteral("x.tmp"), "x"));
    EXPECT_EQ(FinishDurably(file, store.path(QStringLiteral("final"))), 0);
    EXPECT_EQ(store.names(), QStringList(QStringLiteral("final")));
}

TEST(FinishDurably, AFileThatIsNotThereIsAnError)
{
    const TestStore store;
    UnfinishedFile file(store.path(QStringLiteral("x.tmp")));
    EXPECT_EQ(FinishDurably(file, store.path(QStringLiteral("final"))), ENOENT);
    EXPECT_EQ(store.names(), QStringList());
}
