#include "attachstore/ImportFixture.h"

#include "attachstore/Card.h"
#include "support/FileMd5.h"

#include <QFileInfo>

#include <fcntl.h>

using namespace attachstore;

TEST_F(MoveAttFileTest, APictureIsStoredUnderItsNameAndUnderItsDigest)
{
    const DropFileInfo info = record(QStringLiteral("photo.JPG"), "picture");
    LoggedLines lines;
    ASSERT_EQ(import(info), 1);
    const QString name = FileMd5(info.filePath) + QStringLiteral(".jpg");
    EXPECT_EQ(digestNamed(), QStringList(name));
    EXPECT_EQ(readFile(m_store.path(name)), "picture");
    EXPECT_EQ(readFile(working(QStringLiteral("photo.JPG"))), "picture");
    EXPECT_EQ(lines.take(), QStringList());

    EXPECT_EQ(m_result.attPath, QStringLiteral("userdata\\attachment\\") + name);
    EXPECT_EQ(m_result.attName, name);
    EXPECT_EQ(m_result.picPath, QStringLiteral("../userdata\\attachment\\") + name);
    EXPECT_EQ(m_result.picName, name);
    EXPECT_EQ(m_result.picSize, 7);
}

TEST_F(MoveAttFileTest, AnyOtherFileIsStoredUnderItsNameAndShownByACard)
{
    const DropFileInfo info = record(QStringLiteral("报告.txt"), "document");
    ASSERT_EQ(import(info), 1);
    EXPECT_EQ(readFile(working(QStringLiteral("报告.txt"))), "document");
    const QString name = FileMd5(info.filePath) + QStringLiteral(".txt");
    EXPECT_EQ(m_result.attPath, QStringLiteral("userdata\\attachment\\") + name);
    EXPECT_EQ(m_result.attName, name);

    ASSERT_EQ(digestNamed(), QStringList(m_result.picName));
    const QString card = m_store.path(m_result.picName);
    EXPECT_EQ(m_result.picName, FileMd5(card) + QStringLiteral(".bmp"));
    EXPECT_EQ(m_result.picPath, QStringLiteral("../userdata\\attachment\\") + m_result.picName);
    EXPECT_EQ(m_result.picSize, QFileInfo(card).size());

    const QString drawn = m_sources.filePath(QStringLiteral("drawn.bmp"));
    ASSERT_EQ(GenerateFileThumb(
                  FT_TEXT, info.fileName, info.fileTime + QStringLiteral(" 8B"), drawn, nullptr),
        1);
    EXPECT_TRUE(readFile(card) == readFile(drawn));
}

TEST_F(MoveAttFileTest, TheSourceStaysAsItIs)
{
    for (const char* name : {"a.png", "a.txt"}) {
        const DropFileInfo info = record(QLatin1String(name), "bytes");
        const struct stat before = statOf(info.filePath);
        ASSERT_EQ(import(info), 1);
        EXPECT_EQ(readFile(info.filePath), "bytes");
        EXPECT_EQ(statOf(info.filePath).st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    }
}

TEST_F(MoveAttFileTest, TheSamePictureInASecondNoteIsCopiedToThatNotesFolderOnly)
{
    const DropFileInfo info = record(QStringLiteral("a.png"), "picture");
    ASSERT_EQ(import(info), 1);
    const QString shown = m_store.path(m_result.picName);
    const timespec past[2]{{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(shown), past, 0), 0);
    const struct stat before = statOf(shown);
    ASSERT_EQ(import(info, kOther), 1);
    EXPECT_EQ(readFile(working(QStringLiteral("a.png"), kOther)), "picture");
    EXPECT_EQ(digestNamed(), QStringList(m_result.picName));
    EXPECT_EQ(statOf(shown).st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(statOf(shown).st_ino, before.st_ino);
}

TEST_F(MoveAttFileTest, TheSameFileInASecondNoteSharesTheCard)
{
    const DropFileInfo info = record(QStringLiteral("a.txt"), "document");
    ASSERT_EQ(import(info), 1);
    const QString card = m_store.path(m_result.picName);
    const struct stat before = statOf(card);
    ASSERT_EQ(import(info, kOther), 1);
    EXPECT_EQ(digestNamed(), QStringList(m_result.picName));
    EXPECT_EQ(statOf(card).st_ino, before.st_ino);
    EXPECT_EQ(readFile(working(QStringLiteral("a.txt"), kOther)), "document");
}

TEST_F(MoveAttFileTest, AFileWithoutAnExtensionHasTheFallbackAndTheCardOfAnUnknownType)
{
    const DropFileInfo info = record(QStringLiteral("readme"), "text");
    EXPECT_EQ(info.fileExt, QStringLiteral("unknow"));
    ASSERT_EQ(import(info), 1);
    EXPECT_EQ(m_result.attName, FileMd5(info.filePath) + QStringLiteral(".unknow"));
    const QString drawn = m_sources.filePath(QStringLiteral("drawn.bmp"));
    ASSERT_EQ(GenerateFileThumb(FT_UNKNOW, QStringLiteral("readme"),
                  info.fileTime + QStringLiteral(" 4B"), drawn, nullptr),
        1);
    EXPECT_TRUE(readFile(m_store.path(m_result.picName)) == readFile(drawn));
}

TEST_F(MoveAttFileTest, WithoutAnOriginalNameTheOnlyCopyIsTheDigestNamedOne)
{
    for (const char* name : {"a.png", "a.txt"}) {
        DropFileInfo info = record(QLatin1String(name), "bytes");
        info.origName.clear();
        ASSERT_EQ(import(info), 1);
        EXPECT_EQ(readFile(m_store.path(m_result.attName)), "bytes");
        EXPECT_FALSE(QFileInfo::exists(m_store.path(kNote)));
    }
    EXPECT_EQ(digestNamed().size(), 3); // the picture, the text and its card
}

TEST_F(MoveAttFileTest, ASecondFileOfThatNameLeavesTheFirstContentInPlace)
{
    ASSERT_EQ(import(record(QStringLiteral("a.txt"), "first")), 1);
    const DropFileInfo second = record(QStringLiteral("a.txt"), "second");
    ASSERT_EQ(import(second), 1);
    EXPECT_EQ(readFile(working(QStringLiteral("a.txt"))), "first");
    EXPECT_EQ(m_result.attName, FileMd5(second.filePath) + QStringLiteral(".txt"));
}

TEST_F(MoveAttFileTest, ThePictureIsStoredFromTheWorkingCopy)
{
    ASSERT_EQ(import(record(QStringLiteral("a.png"), "first")), 1);
    ASSERT_EQ(import(record(QStringLiteral("a.png"), "second")), 1);
    EXPECT_EQ(readFile(m_store.path(m_result.picName)), "first");
}

TEST_F(MoveAttFileTest, APartOfAPicturesExtensionMakesAPictureAndAnUnlistedOneACard)
{
    ASSERT_EQ(import(record(QStringLiteral("a.pe"), "x")), 1);
    EXPECT_EQ(m_result.picName, m_result.attName);
    ASSERT_EQ(import(record(QStringLiteral("a.tif"), "x")), 1);
    EXPECT_TRUE(m_result.picName.endsWith(QStringLiteral(".bmp")));
}

TEST_F(MoveAttFileTest, TheFileNameAndNotTheOriginalNameDecidesWhatAPictureIs)
{
    DropFileInfo info = record(QStringLiteral("a.txt"), "x");
    info.fileName = QStringLiteral("a.png");
    ASSERT_EQ(import(info), 1);
    EXPECT_EQ(m_result.picName, FileMd5(info.filePath) + QStringLiteral(".txt"));
}

TEST_F(MoveAttFileTest, TheSizeOfAPictureIsThatOfTheRecord)
{
    DropFileInfo info = record(QStringLiteral("a.png"), "picture");
    info.fileSize = 12'345;
    ASSERT_EQ(import(info), 1);
    EXPECT_EQ(m_result.picSize, 12'345);
}

TEST_F(MoveAttFileTest, WorkingCopyAndDigestNamedFileShareNoInode)
{
    ASSERT_EQ(import(record(QStringLiteral("a.png"), "picture")), 1);
    EXPECT_NE(statOf(working(QStringLiteral("a.png"))).st_ino,
        statOf(m_store.path(m_result.picName)).st_ino);
    writeFile(working(QStringLiteral("a.png")), "edited");
    EXPECT_EQ(readFile(m_store.path(m_result.picName)), "picture");
}

TEST_F(MoveAttFileTest, APictureThatIsNoneIsStoredAsItIs)
{
    const QByteArray broken("\x89PNG\r\n\x1A\n\0broken", 15);
    ASSERT_EQ(import(record(QStringLiteral("a.png"), broken)), 1);
    EXPECT_EQ(readFile(m_store.path(m_result.picName)), broken);
}

TEST_F(MoveAttFileTest, AFileOfAnyNameKeepsItInTheNotesFolder)
{
    const std::vector<QString> names{QStringLiteral("-rf"), QStringLiteral("a\nb.txt"),
        QStringLiteral("\"q\" 'q'.png"), QStringLiteral("100%41.txt"),
        QStringLiteral("\u202Egpj.exe"), QStringLiteral("😀.png"),
        QString(250, u'x') + QStringLiteral(".txt"), QString(84, u'报') + QStringLiteral(".x"),
        QStringLiteral("a.") + QString(253, u'x'), QStringLiteral("dot.")};
    for (const QString& name : names) {
        const QByteArray bytes = name.toUtf8();
        ASSERT_EQ(import(record(name, bytes)), 1) << name.toStdString();
        EXPECT_EQ(readFile(working(name)), bytes);
        EXPECT_TRUE(QFileInfo::exists(m_store.path(m_result.picName)));
    }
}

TEST_F(MoveAttFileTest, AFileWhoseNameIsNoneInTheStoreIsStoredUnderALegalOne)
{
    const DropFileInfo info = record(QStringLiteral("..\\..\\b.txt"), "bytes");
    ASSERT_EQ(import(info), 1);
    EXPECT_EQ(readFile(working(info.origName)), "bytes");
    EXPECT_EQ(QDir(m_store.path(kNote)).entryList(QDir::Files | QDir::Hidden),
        QStringList(info.origName));
}

TEST_F(MoveAttFileTest, ALargeFileIsCopiedWhole)
{
    const QByteArray bytes = QByteArray("0123456789abcdef").repeated(700'000);
    ASSERT_EQ(import(record(QStringLiteral("a.png"), bytes)), 1);
    EXPECT_TRUE(readFile(working(QStringLiteral("a.png"))) == bytes);
    EXPECT_TRUE(readFile(m_store.path(m_result.picName)) == bytes);
}

TEST_F(MoveAttFileTest, AStoreThatIsNotThereIsMade)
{
    ASSERT_TRUE(QDir(m_store.appDir() + QStringLiteral("userdata")).removeRecursively());
    EXPECT_EQ(import(record(QStringLiteral("a.png"), "x")), 1);
    EXPECT_EQ(readFile(m_store.path(m_result.picName)), "x");
}
