#include "support/Paths.h"

#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace {

struct TextCase {
    const char* in;
    const char* out;
};

void check(QString (*operation)(const QString&), std::initializer_list<TextCase> cases)
{
    for (const TextCase& c : cases)
        EXPECT_EQ(operation(QString::fromUtf8(c.in)), QString::fromUtf8(c.out)) << c.in;
}

} // namespace

TEST(GetFileExt, IsWhatStandsBehindTheLastDotOrTheWholeInput)
{
    check(GetFileExt,
        {{"readme", "readme"}, {"a.tar.gz", "gz"}, {"dir.x\\file", "x\\file"}, {"a.PNG", "PNG"},
            {"a.", ""}, {"", ""}});
}

TEST(GetFileTitle, IsWhatStandsBeforeTheLastDotOrTheWholeInput)
{
    check(GetFileTitle,
        {{"readme", "readme"}, {"a.tar.gz", "a.tar"}, {"dir.x\\file", "dir"}, {".x", ""}});
}

TEST(GetFileNameFromPath, TakesEitherSeparator)
{
    check(GetFileNameFromPath,
        {{"C:\\a\\b.txt", "b.txt"}, {"/a/b.txt", "b.txt"}, {"/a\\b/c", "c"}, {"/a/b\\c", "c"},
            {"b.txt", "b.txt"}, {"a\\", ""}, {"", ""}});
}

TEST(extract_foldername, IsTheLastComponentOrEmptyWithoutASeparator)
{
    check(extract_foldername,
        {{"C:\\a\\b\\\\", "b"}, {"folder", ""}, {"folder\\", ""}, {"/a/b//", "b"}, {"/a", "a"},
            {"\\", ""}, {"", ""}});
}

TEST(GetAppDir, IsTheDirectoryOfTheExecutableUntilItIsSet)
{
    const QString executable = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
    EXPECT_EQ(GetAppDir(), executable + u'/');
    EXPECT_EQ(GetInstallDir(), executable + u'/');
    {
        const TestStore store;
        EXPECT_EQ(GetAppDir(), store.appDir());
        EXPECT_EQ(GetInstallDir(), executable + u'/');
    }
    EXPECT_EQ(GetAppDir(), executable + u'/');
}

TEST(SetAppDir, TakesARelativePathFromTheWorkingDirectoryOfTheMoment)
{
    SetAppDir(QStringLiteral("here/"));
    EXPECT_EQ(GetAppDir(), QDir::currentPath() + QStringLiteral("/here/"));
    SetAppDir(QString());
}

TEST(GetResDir, LiesInTheInstallDirectory)
{
    SetInstallDir(QStringLiteral("/opt/x"));
    EXPECT_EQ(GetResDir(), QStringLiteral("/opt/x/res"));
    EXPECT_EQ(GetResFilePath(QStringLiteral("a.png")), QStringLiteral("/opt/x/res/a.png"));
    SetInstallDir(QString());
}

TEST(LoadResBitmap, DecodesAPictureWhateverItsExtensionSays)
{
    const QTemporaryDir directory;
    SetInstallDir(directory.path());
    QDir(directory.path()).mkdir(QStringLiteral("res"));
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(GetResFilePath(QStringLiteral("x.bmp")), "PNG"));
    writeFile(GetResFilePath(QStringLiteral("text.png")), "no picture");

    EXPECT_EQ(LoadResBitmap(QStringLiteral("x.bmp")).size(), QSize(3, 2));
    EXPECT_TRUE(LoadResBitmap(QStringLiteral("missing.bmp")).isNull());
    EXPECT_TRUE(LoadResBitmap(QStringLiteral("text.png")).isNull());
    SetInstallDir(QString());
}

TEST(GetAttachmentDir, MakesTheStoreIfItIsMissing)
{
    const TestStore store;
    QDir(store.appDir() + QStringLiteral("userdata")).removeRecursively();
    EXPECT_EQ(GetAttachmentDir(), store.store());
    EXPECT_TRUE(path_is_folder(store.store()));
}

TEST(GetAttachmentDir, IsTheSamePathWhenItCannotBeMade)
{
    const TestStore store;
    QDir(store.appDir() + QStringLiteral("userdata")).removeRecursively();
    writeFile(store.appDir() + QStringLiteral("userdata"), "in the way");
    EXPECT_EQ(GetAttachmentDir(), store.store());
}

TEST(GetAttachFilePath, WithASubNameLiesInTheNotesFolderWhichIsMade)
{
    const TestStore store;
    const QString path = GetAttachFilePath(
        QStringLiteral("guid"), QStringLiteral("d.txt"), QStringLiteral("报告.txt"));
    EXPECT_EQ(path, store.path(QStringLiteral("guid/报告.txt")));
    EXPECT_TRUE(path_is_folder(store.path(QStringLiteral("guid"))));
}

TEST(GetAttachFilePath, WithAnEmptySubNameMakesNoNoteFolder)
{
    const TestStore store;
    EXPECT_EQ(GetAttachFilePath(QStringLiteral("guid"), QStringLiteral("d.png"), QString()),
        store.path(QStringLiteral("d.png")));
    EXPECT_TRUE(store.names().isEmpty());
}

TEST(GetAttachFilePath, AHostileNameGivesAnEmptyPathAndMakesNothing)
{
    const TestStore store;
    const QString good = QStringLiteral("x");
    const QStringList hostile{QStringLiteral("a/b"), QStringLiteral("a\\b"),
        QStringLiteral("/etc/passwd"), QStringLiteral("."), QStringLiteral(".."),
        QStringLiteral("..\\..\\x"), QStringLiteral("a") + QChar(u'\0') + u'b', QString(256, u'a'),
        QString(86, u'笔')};
    for (const QString& name : hostile) {
        EXPECT_EQ(GetAttachFilePath(name, good, good), QString()) << name.toStdString();
        EXPECT_EQ(GetAttachFilePath(good, name, QString()), QString()) << name.toStdString();
        EXPECT_EQ(GetAttachFilePath(good, good, name), QString()) << name.toStdString();
    }
    EXPECT_TRUE(store.names().isEmpty());
    EXPECT_EQ(
        GetAttachFilePath(good, QString(255, u'a'), QString()), store.path(QString(255, u'a')));
    EXPECT_NE(GetAttachFilePath(good, QString(85, u'笔'), QStringLiteral("...")), QString());
}

TEST(MakeDirs, MakesADirectoryAndThoseAboveIt)
{
    const QTemporaryDir root;
    const QString deep = root.filePath(QStringLiteral("a/b/c"));
    EXPECT_EQ(MakeDirs(deep), 1);
    EXPECT_TRUE(path_is_folder(deep));
    EXPECT_EQ(MakeDirs(deep), 1);
    EXPECT_EQ(MakeDirs(deep + QStringLiteral("//")), 1);
    EXPECT_EQ(MakeDirs(root.filePath(QStringLiteral("d/e/"))), 1);
    EXPECT_TRUE(path_is_folder(root.filePath(QStringLiteral("d/e"))));
}

TEST(MakeDirs, TakesBackslashesForSeparators)
{
    const QTemporaryDir root;
    const QString path = root.path() + QStringLiteral("\\a\\b/c\\");
    EXPECT_EQ(MakeDirs(path), 1);
    EXPECT_TRUE(path_is_folder(root.filePath(QStringLiteral("a/b/c"))));
    EXPECT_TRUE(path_is_folder(path));
    EXPECT_TRUE(IsFileExist(path));
    EXPECT_EQ(MakeDirs(path), 1);
}

TEST(MakeDirs, FailsWithoutASeparatorAndUnderAFile)
{
    EXPECT_EQ(MakeDirs(QString()), 0);
    EXPECT_EQ(MakeDirs(QStringLiteral("no-such-directory-here")), 0);
    const TestStore store;
    store.write(QStringLiteral("file"), "x");
    EXPECT_EQ(MakeDirs(store.path(QStringLiteral("file/a/b"))), 0);
    // A file of that very path exists, and that is all that is asked.
    EXPECT_EQ(MakeDirs(store.path(QStringLiteral("file"))), 1);
    EXPECT_EQ(MakeDirs(QStringLiteral("/")), 1);
}

TEST(MakeDirs, FailsWhereItMayNotWrite)
{
    const QTemporaryDir root;
    ASSERT_EQ(::chmod(QFile::encodeName(root.path()), 0555), 0);
    const WithoutRoot rights;
    EXPECT_EQ(MakeDirs(root.filePath(QStringLiteral("a"))), 0);
}

TEST(PathOnDisk, TakesABackslashForASeparatorUnlessAFileHasItInItsName)
{
    const TestStore store;
    const QString inFolder = store.path(QStringLiteral("a/b"));
    const QString backslashed = store.path(QStringLiteral("a\\b"));
    EXPECT_EQ(PathOnDisk(inFolder), inFolder);
    EXPECT_EQ(PathOnDisk(backslashed), inFolder) << "whether that exists is not asked";
    ASSERT_EQ(MakeDirs(inFolder), 1);
    EXPECT_EQ(PathOnDisk(backslashed), inFolder);
    writeFile(backslashed, "x");
    EXPECT_EQ(PathOnDisk(backslashed), backslashed);
    EXPECT_EQ(PathOnDisk(QString()), QString());
}

TEST(IsFileExist, FindsFilesAndDirectories)
{
    const TestStore store;
    store.write(QStringLiteral("file"), "x");
    EXPECT_TRUE(IsFileExist(store.path(QStringLiteral("file"))));
    EXPECT_TRUE(IsFileExist(store.store()));
    EXPECT_FALSE(IsFileExist(store.path(QStringLiteral("other"))));
    EXPECT_FALSE(IsFileExist(QString()));
    EXPECT_FALSE(IsFileExist(store.path(QStringLiteral("file")) + QChar(u'\0')));
}

TEST(IsFileExist, TakesALongPath)
{
    const TestStore store;
    QString path = store.store();
    for (int i = 0; i < 5; ++i)
        path += u'/' + QString(100, QChar(u'a' + i));
    EXPECT_FALSE(IsFileExist(path));
    ASSERT_EQ(MakeDirs(path), 1);
    EXPECT_TRUE(IsFileExist(path));
}

TEST(path_is_folder, IsTrueForADirectoryAlone)
{
    const TestStore store;
    const QString file = store.write(QStringLiteral("file"), "x");
    EXPECT_TRUE(path_is_folder(store.store()));
    EXPECT_FALSE(path_is_folder(file));
    EXPECT_FALSE(path_is_folder(store.path(QStringLiteral("none"))));
}

TEST(GetTempDir, IsPrivateAndTheSameAtEachCall)
{
    const QString directory = GetTempDir();
    ASSERT_TRUE(directory.endsWith(u'/'));
    struct stat info;
    ASSERT_EQ(::stat(QFile::encodeName(directory), &info), 0);
    EXPECT_TRUE(S_ISDIR(info.st_mode));
    EXPECT_EQ(info.st_mode & 07777, 0700u);
    EXPECT_EQ(GetTempDir(), directory);
}

TEST(GetTempDir, IsMadeAgainWhenItWasClearedAway)
{
    ASSERT_TRUE(QDir(GetTempDir()).removeRecursively());
    const QString again = GetTempDir();
    struct stat info;
    ASSERT_EQ(::stat(QFile::encodeName(again), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0700u);
    EXPECT_EQ(GetTempDir(), again);
}

TEST(GetTempDir, IsMadeAgainWhenItsNameHasGoneToSomethingElse)
{
    const QTemporaryDir elsewhere;
    const QString before = QDir(GetTempDir()).absolutePath();
    ASSERT_TRUE(QDir(before).removeRecursively());
    ASSERT_EQ(::symlink(QFile::encodeName(elsewhere.path()), QFile::encodeName(before)), 0);
    const QString again = GetTempDir();
    EXPECT_NE(QDir(again).absolutePath(), before);
    EXPECT_TRUE(path_is_folder(again));
    EXPECT_TRUE(QFile::remove(before));
    // A directory that others may write into is not taken either.
    ASSERT_EQ(::chmod(QFile::encodeName(again), 0777), 0);
    EXPECT_NE(GetTempDir(), again);
    EXPECT_TRUE(QDir(again).removeRecursively());
}
