#include "attachstore/FileRecord.h"

#include "support/Paths.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <limits>
#include <sys/stat.h>
#include <unistd.h>

using namespace attachstore;

namespace {

class RecordOfPathTest : public testing::Test {
protected:
    QString file(const QString& name, const QByteArray& bytes = "bytes")
    {
        writeFile(path(name), bytes);
        return path(name);
    }
    QString path(const QString& name) const { return m_files.path() + u'/' + name; }

    QTemporaryDir m_files;
};

} // namespace

TEST(GetFileStuffx, GivesTheLowerCaseExtension)
{
    const std::vector<std::pair<QString, QString>> cases{
        {QStringLiteral("photo.JPG"), QStringLiteral("jpg")},
        {QStringLiteral("a.tar.GZ"), QStringLiteral("gz")},
        {QStringLiteral("a.ÄÖ报"), QStringLiteral("äö报")},
        {QStringLiteral(".profile"), QStringLiteral("profile")},
        {QStringLiteral("a. b"), QStringLiteral(" b")},
    };
    for (const auto& [name, extension] : cases)
        EXPECT_EQ(GetFileStuffx(name), extension) << name.toStdString();
}

TEST(GetFileStuffx, ANameWithoutADotHasTheFallback)
{
    EXPECT_EQ(GetFileStuffx(QStringLiteral("README")), QStringLiteral("unknow"));
    EXPECT_EQ(GetFileStuffx(QString()), QStringLiteral("unknow"));
}

TEST(GetFileStuffx, ANameThatEndsInADotHasTheEmptyExtension)
{
    EXPECT_EQ(GetFileStuffx(QStringLiteral("odd.")), QString());
}

TEST(UsableExtension, WhatMakesNoFileNameBehindADigestIsTheFallback)
{
    const QString longest(222, u'x');
    for (const QString& usable : {QString(), QStringLiteral("txt"), QStringLiteral("JPG"),
             QStringLiteral("a \"b\"\n"), longest, QString(74, u'报')})
        EXPECT_EQ(UsableExtension(usable), usable) << usable.toStdString();
    for (const QString& other : {longest + u'x', QString(75, u'报'), QStringLiteral("a/b"),
             QStringLiteral("a\\b"), QString(QChar(u'\0')), QString(100'000, u'x')})
        EXPECT_EQ(UsableExtension(other), QStringLiteral("unknow")) << other.toStdString();
}

TEST(FormatCurTime, HasSlashesAndNoSeconds)
{
    const QString before = FormatCurTime();
    EXPECT_TRUE(QRegularExpression(QStringLiteral(R"(^\d{4}/\d\d/\d\d \d\d:\d\d$)"))
                    .match(before)
                    .hasMatch());
    EXPECT_LE(before, FormatCurTime());
}

TEST(FormatFileInfo, IsTimeABlankAndTheSize)
{
    EXPECT_EQ(FormatFileInfo(1'572'864, QStringLiteral("2026/11/14 06:02")),
        QStringLiteral("2026/11/14 06:02 1.50M"));
    EXPECT_EQ(FormatFileInfo(0, QStringLiteral("t")), QStringLiteral("t 0B"));
}

TEST(FormatFileInfo, AnEmptyTimeStandsForThePresentOne)
{
    const QString before = FormatCurTime();
    const QString info = FormatFileInfo(1, QString());
    EXPECT_LE(before + QStringLiteral(" 1B"), info);
    EXPECT_LE(info, FormatCurTime() + QStringLiteral(" 1B"));
}

TEST(FormatFileInfo, TheSizeIsNarrowedTo32BitsWithSign)
{
    const QString t = QStringLiteral("t");
    EXPECT_EQ(FormatFileInfo(0x7FFFFFFF, t), QStringLiteral("t 2.00G"));
    EXPECT_EQ(FormatFileInfo(0x100000000 + 5, t), QStringLiteral("t 5B"));
    EXPECT_EQ(FormatFileInfo(-1, t), QStringLiteral("t 17179869184.00G"));
    EXPECT_EQ(FormatFileInfo(0x80000000, t), QStringLiteral("t 17179869182.00G"));
}

TEST_F(RecordOfPathTest, AFileHasItsNameExtensionAndSize)
{
    const QString before = FormatCurTime();
    const auto record = RecordOfPath(file(QStringLiteral("photo 报告.JPG"), "12345"));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->filePath, path(QStringLiteral("photo 报告.JPG")));
    EXPECT_FALSE(record->isFolder);
    EXPECT_EQ(record->origName, QStringLiteral("photo 报告.JPG"));
    EXPECT_EQ(record->fileName, record->origName);
    EXPECT_EQ(record->fileExt, QStringLiteral("jpg"));
    EXPECT_EQ(record->fileSize, 5u);
    EXPECT_FALSE(record->isTempFile);
    EXPECT_LE(before, record->fileTime);
    EXPECT_LE(record->fileTime, FormatCurTime());
}

TEST_F(RecordOfPathTest, AnEmptyFileIsAFileOfSizeZero)
{
    const auto record = RecordOfPath(file(QStringLiteral("empty"), ""));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->fileSize, 0u);
    EXPECT_EQ(record->fileExt, QStringLiteral("unknow"));
}

TEST_F(RecordOfPathTest, AFolderHasTheFormOfAFolder)
{
    ASSERT_TRUE(QDir(m_files.path()).mkdir(QStringLiteral("folder.d")));
    for (const QString& given :
        {path(QStringLiteral("folder.d")), path(QStringLiteral("folder.d/"))}) {
        const auto record = RecordOfPath(given);
        ASSERT_TRUE(record);
        EXPECT_EQ(record->filePath, given);
        EXPECT_TRUE(record->isFolder);
        EXPECT_EQ(record->origName, QString());
        EXPECT_EQ(record->fileName, QStringLiteral("folder.d"));
        EXPECT_EQ(record->fileExt, QStringLiteral("dir"));
        EXPECT_EQ(record->fileSize, std::numeric_limits<quint64>::max());
        EXPECT_FALSE(record->fileTime.isEmpty());
        EXPECT_FALSE(record->isTempFile);
    }
}

TEST_F(RecordOfPathTest, ALinkStandsForWhatItLeadsTo)
{
    file(QStringLiteral("target.bin"), "12345");
    ASSERT_EQ(::symlink("target.bin", QFile::encodeName(path(QStringLiteral("link.txt")))), 0);
    const auto linked = RecordOfPath(path(QStringLiteral("link.txt")));
    ASSERT_TRUE(linked);
    EXPECT_EQ(linked->origName, QStringLiteral("link.txt"));
    EXPECT_EQ(linked->fileSize, 5u);

    ASSERT_EQ(::symlink(".", QFile::encodeName(path(QStringLiteral("folder")))), 0);
    const auto folder = RecordOfPath(path(QStringLiteral("folder")));
    ASSERT_TRUE(folder);
    EXPECT_TRUE(folder->isFolder);
}

TEST_F(RecordOfPathTest, WhatCannotBeOpenedForReadingHasNone)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(QStringLiteral("fifo"))), 0666), 0);
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(path(QStringLiteral("dangling")))), 0);
    ASSERT_EQ(::symlink("loop", QFile::encodeName(path(QStringLiteral("loop")))), 0);
    file(QStringLiteral("file"));
    LoggedLines lines;
    for (const QString& given : {path(QStringLiteral("fifo")), path(QStringLiteral("dangling")),
             path(QStringLiteral("loop")), path(QStringLiteral("none")),
             path(QStringLiteral("file/")), path(QStringLiteral("file")) + QChar(u'\0'), QString(),
             QStringLiteral("/dev/zero"), QStringLiteral("/dev/null")})
        EXPECT_FALSE(RecordOfPath(given)) << given.toStdString();
    EXPECT_EQ(lines.take(), QStringList());
}

TEST_F(RecordOfPathTest, AFileWithoutReadPermissionHasNone)
{
    const QString secret = file(QStringLiteral("secret"));
    ASSERT_EQ(::chmod(QFile::encodeName(secret), 0), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_files.path()), 0755), 0);
    const WithoutRoot rights;
    EXPECT_FALSE(RecordOfPath(secret));
}

TEST_F(RecordOfPathTest, ANameThatNeedsQuotingStaysAsItIs)
{
    const std::vector<QString> names{QStringLiteral("-rf.txt"), QStringLiteral("a\nb.txt"),
        QStringLiteral("\"q\" 'q'.txt"), QStringLiteral("100%41.txt"),
        QStringLiteral("#a?b&c;.txt"), QStringLiteral("\u202Etxt.exe.txt"), QStringLiteral("😀.txt"),
        QStringLiteral(" a .txt"), QStringLiteral("<img src=x>.txt"),
        QString(251, u'x') + QStringLiteral(".txt")};
    for (const QString& name : names) {
        const auto record = RecordOfPath(file(name));
        ASSERT_TRUE(record) << name.toStdString();
        EXPECT_EQ(record->origName, name);
        EXPECT_EQ(record->fileName, name);
        EXPECT_EQ(record->fileExt, QStringLiteral("txt"));
    }
}

TEST_F(RecordOfPathTest, ANameThatIsNoneInTheStoreIsMadeLegal)
{
    const auto first = RecordOfPath(file(QStringLiteral("..\\a\\b.TXT")));
    const auto second = RecordOfPath(file(QStringLiteral("..\\a_b.TXT")));
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    EXPECT_EQ(first->filePath, path(QStringLiteral("..\\a\\b.TXT")));
    EXPECT_TRUE(IsSafeFileName(first->origName));
    EXPECT_EQ(first->fileName, first->origName);
    EXPECT_EQ(first->fileExt, QStringLiteral("txt"));
    EXPECT_NE(first->origName, second->origName);
}

// No text names such a file: the one that is asked for is another, which is not there.
TEST_F(RecordOfPathTest, ANameThatIsNotUtf8IsUnreadable)
{
    const QByteArray name = QFile::encodeName(m_files.path()) + "/a\xFF.txt";
    ASSERT_EQ(::mknod(name, S_IFREG | 0666, 0), 0);
    const QStringList listed = QDir(m_files.path()).entryList(QDir::Files);
    for (const QString& given : listed)
        EXPECT_FALSE(RecordOfPath(path(given)));
    EXPECT_FALSE(RecordOfPath(QFile::decodeName(name)));
    EXPECT_FALSE(RecordOfPath(path(QStringLiteral("a") + QChar(0xDCFF) + QStringLiteral(".txt"))));
    EXPECT_EQ(::unlink(name), 0); // Qt cannot name it either
}

TEST_F(RecordOfPathTest, AnExtensionTooLongToStandBehindADigestCountsAsNone)
{
    const QString longest(222, u'x');
    const auto fits = RecordOfPath(file(QStringLiteral("a.") + longest));
    ASSERT_TRUE(fits);
    EXPECT_EQ(fits->fileExt, longest);
    const auto tooLong = RecordOfPath(file(QStringLiteral("a.x") + longest));
    ASSERT_TRUE(tooLong);
    EXPECT_EQ(tooLong->fileExt, QStringLiteral("unknow"));
    EXPECT_EQ(tooLong->origName, QStringLiteral("a.x") + longest);
}
