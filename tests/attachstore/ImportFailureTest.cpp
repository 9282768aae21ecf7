#include "attachstore/ImportFixture.h"

#include "support/FileMd5.h"

#include <QFileInfo>

#include <atomic>
#include <cstdio>
#include <thread>
#include <unistd.h>

using namespace attachstore;

namespace {

const QString kDigestFailed =
    QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile cal md5 code faild ! ");
const QString kCopyFailed =
    QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile copy file fald ! ");
const QString kPictureFailed =
    QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile CopyFile file fald ! ");
const QString kCardFailed =
    QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile create thumb pic faild ! ");
const QString kRenameFailed =
    QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile rename file fald ! ");

} // namespace

TEST_F(MoveAttFileTest, AFailedDigestOfTheSourceWritesNothing)
{
    const QString fifo = m_sources.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo), 0666), 0);
    for (const QString& path :
        {m_sources.filePath(QStringLiteral("none")), m_sources.path(), fifo, QString()}) {
        DropFileInfo info = record(QStringLiteral("a.txt"), "x");
        info.filePath = path;
        LoggedLines lines;
        EXPECT_EQ(import(info), 0);
        const QStringList logged = lines.take();
        ASSERT_EQ(logged.size(), 2); // one is the digest's own
        EXPECT_EQ(logged[1], kDigestFailed);
        EXPECT_EQ(m_store.names(), QStringList());
    }
}

TEST_F(MoveAttFileTest, ASourceThatVanishedIsAFailedDigest)
{
    const DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    ASSERT_TRUE(QFile::remove(info.filePath));
    LoggedLines lines;
    EXPECT_EQ(import(info), 0);
    EXPECT_EQ(lines.take().value(1), kDigestFailed);
    EXPECT_EQ(m_store.names(), QStringList());
}

TEST_F(MoveAttFileTest, ASourceThatMayNotBeReadAnyMoreIsAFailedDigest)
{
    openForEverybody();
    const DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    ASSERT_EQ(::chmod(QFile::encodeName(info.filePath), 0), 0);
    LoggedLines lines;
    {
        const WithoutRoot rights;
        EXPECT_EQ(import(info), 0);
    }
    EXPECT_EQ(lines.take().value(1), kDigestFailed);
    EXPECT_EQ(m_store.names(), QStringList());
}

// The kernel tells no length of this file, as if it had grown since it was looked at.
TEST_F(MoveAttFileTest, ASourceThatGrowsIsAFailedCopyAndLeavesNothingOfIt)
{
    DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    info.filePath = QStringLiteral("/proc/self/status");
    if (!QFile::exists(info.filePath))
        GTEST_SKIP() << "there is no such file here";
    expectFailure(info, kCopyFailed);
    EXPECT_FALSE(QFileInfo::exists(working(QStringLiteral("a.txt"))));
}

// Which of the two files an import meets, at each of its looks, is a matter of luck.
TEST_F(MoveAttFileTest, AFileThatIsReplacedMeanwhileIsNeverStoredUnderTheDigestOfTheOther)
{
    DropFileInfo info = record(QStringLiteral("a.png"), "before");
    const QByteArray path = QFile::encodeName(info.filePath);
    const QByteArray fresh = path + ".new";
    const QByteArray versions[]{
        QFile::encodeName(source(QStringLiteral("one"), QByteArray(50'000, '1'))),
        QFile::encodeName(source(QStringLiteral("other"), QByteArray(50'001, '2')))};
    std::atomic<bool> stop = false;
    std::thread editor([&] {
        for (int i = 0; !stop; i = 1 - i) {
            if (::link(versions[i], fresh) != 0 || ::rename(fresh, path) != 0)
                break;
        }
    });
    for (int i = 0; i < 100; ++i) {
        info.origName = QString::number(i);
        if (import(info)) {
            EXPECT_EQ(FileMd5(working(info.origName)) + QStringLiteral(".png"), m_result.attName);
        }
    }
    stop = true;
    editor.join();
    expectNoTemporary();
    for (const QString& name : digestNamed())
        EXPECT_EQ(FileMd5(m_store.path(name)) + QStringLiteral(".png"), name);
}

TEST_F(MoveAttFileTest, AFailedCopyToTheNotesFolderLeavesTheFolder)
{
    ASSERT_TRUE(QDir(m_store.store()).mkdir(kNote));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(working(QStringLiteral("a.png")))), 0);
    expectFailure(record(QStringLiteral("a.png"), "x"), kCopyFailed);
    EXPECT_EQ(m_store.names(), QStringList(kNote));
}

TEST_F(MoveAttFileTest, AFileInPlaceOfTheNotesFolderIsAFailedCopy)
{
    m_store.write(kNote, "in the way");
    expectFailure(record(QStringLiteral("a.txt"), "x"), kCopyFailed);
    EXPECT_EQ(readFile(m_store.path(kNote)), "in the way");
}

TEST_F(MoveAttFileTest, AnUnsafeNameOrGuidIsAFailedCopyAndReachesNothingOutsideTheStore)
{
    DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    const QStringList outside = QDir(m_store.appDir()).entryList();
    for (const QString& note :
        {QStringLiteral(".."), QStringLiteral("../x"), QStringLiteral("a\\b")}) {
        LoggedLines lines;
        EXPECT_EQ(import(info, note), 0);
        EXPECT_EQ(lines.take(), QStringList(kCopyFailed));
    }
    info.origName = QStringLiteral("../../../a.txt");
    expectFailure(info, kCopyFailed);
    EXPECT_EQ(QDir(m_store.appDir()).entryList(), outside);
    EXPECT_EQ(m_store.names(), QStringList());
}

TEST_F(MoveAttFileTest, AFailedCopyToThePictureFileLeavesTheWorkingCopy)
{
    const DropFileInfo info = record(QStringLiteral("a.png"), "picture");
    const QString shown = m_store.path(FileMd5(info.filePath) + QStringLiteral(".png"));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(shown)), 0);
    expectFailure(info, kPictureFailed);
    EXPECT_EQ(readFile(working(QStringLiteral("a.png"))), "picture");
}

TEST_F(MoveAttFileTest, TheNextAttemptFindsTheWorkingCopyThatAFailedOneLeft)
{
    const DropFileInfo info = record(QStringLiteral("a.png"), "picture");
    const QString shown = m_store.path(FileMd5(info.filePath) + QStringLiteral(".png"));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(shown)), 0);
    ASSERT_EQ(import(info), 0);
    const struct stat before = statOf(working(QStringLiteral("a.png")));
    ASSERT_TRUE(QFile::remove(shown));
    EXPECT_EQ(import(info), 1);
    EXPECT_EQ(statOf(working(QStringLiteral("a.png"))).st_ino, before.st_ino);
}

TEST_F(MoveAttFileTest, ACardThatCannotBeDrawnLeavesTheWorkingCopy)
{
    const DropFileInfo info = record(QStringLiteral("a.txt"), "small");
    expectFailureWithRoomFor(2'000, info, kCardFailed);
    EXPECT_EQ(readFile(working(QStringLiteral("a.txt"))), "small");
    EXPECT_EQ(m_store.names(), QStringList(kNote));
}

// A card that its own writer may not read.
TEST_F(MoveAttFileTest, AFailedDigestOfTheCardLeavesTheWorkingCopyAndNoTemporary)
{
    const DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    ASSERT_EQ(import(info), 1);
    openForEverybody();
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.store()), 0777), 0);
    const mode_t mask = ::umask(0777);
    LoggedLines lines;
    {
        const WithoutRoot rights;
        EXPECT_EQ(import(info), 0);
    }
    ::umask(mask);
    EXPECT_EQ(lines.take().value(1), kDigestFailed);
    EXPECT_EQ(readFile(working(QStringLiteral("a.txt"))), "x");
    expectNoTemporary();
}

TEST_F(MoveAttFileTest, AFailedMoveOfTheCardLeavesTheWorkingCopyAndNoTemporary)
{
    const DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    ASSERT_EQ(import(info), 1);
    const QString card = m_store.path(m_result.picName);
    ASSERT_TRUE(QFile::remove(card));
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(card)), 0);
    expectFailure(info, kRenameFailed);
    EXPECT_EQ(readFile(working(QStringLiteral("a.txt"))), "x");
    EXPECT_EQ(digestNamed(), QStringList(QFileInfo(card).fileName()));
}

TEST_F(MoveAttFileTest, AFullStoreFailsTheCopyAndLeavesNothingOfIt)
{
    for (const char* name : {"a.png", "a.txt"}) {
        const DropFileInfo info = record(QLatin1String(name), QByteArray(200'000, 'x'));
        expectFailureWithRoomFor(100'000, info, kCopyFailed);
        EXPECT_EQ(m_store.names(), QStringList(kNote)); // the note's folder stays
        EXPECT_EQ(QDir(m_store.path(kNote)).entryList(QDir::Files), QStringList());
    }
}

TEST_F(MoveAttFileTest, AReadOnlyStoreFailsTheCopy)
{
    openForEverybody();
    const DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.store()), 0555), 0);
    LoggedLines lines;
    {
        const WithoutRoot rights;
        EXPECT_EQ(import(info), 0);
    }
    EXPECT_EQ(lines.take(), QStringList(kCopyFailed));
    EXPECT_EQ(m_store.names(), QStringList());
}
