// Who may read what is stored, and that nothing is written anywhere else.

#include "attachstore/FileRecord.h"
#include "attachstore/ImageFile.h"
#include "attachstore/Import.h"
#include "notestore/NoteHtmlRW.h"
#include "reliability/Figures.h"
#include "support/Paths.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QImage>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kNote = QStringLiteral("0123456789abcdef0123456789abcdef");

class Mask {
public:
    explicit Mask(mode_t mask)
        : m_before(::umask(mask))
    {
    }
    ~Mask() { ::umask(m_before); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

private:
    const mode_t m_before;
};

mode_t modeOf(const QString& path)
{
    struct stat info = {};
    EXPECT_EQ(::lstat(QFile::encodeName(path), &info), 0) << path.toStdString();
    return info.st_mode & 07777;
}

int import(const TestStore& store, const QString& name)
{
    const QString source = store.appDir() + name;
    writeFile(source, "content");
    MAF_RESULT result;
    return attachstore::MoveAttFile(kNote, *attachstore::RecordOfPath(source), result);
}

int save(const QString& text)
{
    QString html = text;
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    return NoteHtmlRW::SaveHtmlTextToFile(html, record, &version);
}

class StoreUnderMask : public testing::TestWithParam<mode_t> { };

} // namespace

TEST_P(StoreUnderMask, IsMadeWithTheUsersMaskAndNeverOpenToWritingByOthers)
{
    const TestStore store;
    ASSERT_TRUE(QDir(store.appDir() + QStringLiteral("userdata")).removeRecursively());
    const Mask mask(GetParam());
    GetAttachmentDir();
    ASSERT_EQ(save(QStringLiteral("<p>words</p>")), 1);
    ASSERT_EQ(import(store, QStringLiteral("a.txt")), 1);
    ASSERT_EQ(import(store, QStringLiteral("p.png")), 1);

    int seen = 0;
    QDirIterator each(store.appDir() + QStringLiteral("userdata"),
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next();
        const mode_t widest = each.fileInfo().isDir() ? 0755 : 0644;
        EXPECT_EQ(modeOf(path), widest & ~GetParam()) << path.toStdString();
        ++seen;
    }
    EXPECT_GE(seen, 6); // the store, the note, the note's folder, two files and what shows them
    figures::add("permissions looked at", seen);
}

INSTANTIATE_TEST_SUITE_P(Masks, StoreUnderMask, testing::Values(0, 002, 022, 027, 077));

TEST(Privilege, TemporaryPicturesAreForTheUserAlone)
{
    const Mask mask(0);
    EXPECT_EQ(modeOf(QDir(GetTempDir()).absolutePath()), mode_t(0700));
    std::vector<DropFileInfo> files;
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_EQ(attachstore::SaveImage(image, files), 1);
    EXPECT_EQ(QFileInfo(files[0].filePath).path(), QDir(GetTempDir()).absolutePath());
    EXPECT_TRUE(QFile::remove(files[0].filePath));
}

TEST(Privilege, ANoteFolderThatIsALinkIsNotWrittenThrough)
{
    const TestStore store;
    const QTemporaryDir elsewhere;
    ASSERT_EQ(
        ::symlink(QFile::encodeName(elsewhere.path()), QFile::encodeName(store.path(kNote))), 0);
    LoggedLines lines;
    EXPECT_EQ(import(store, QStringLiteral("a.txt")), 0);
    EXPECT_FALSE(lines.take().isEmpty());
    EXPECT_TRUE(QDir(elsewhere.path()).isEmpty());
    EXPECT_EQ(store.names(), QStringList(kNote));
}

TEST(Privilege, AStoreThatItsOwnerHasMovedBehindALinkWorks)
{
    const TestStore store;
    const QTemporaryDir elsewhere;
    ASSERT_TRUE(QDir(store.store()).removeRecursively());
    ASSERT_EQ(::symlink(QFile::encodeName(elsewhere.path()), QFile::encodeName(store.store())), 0);
    EXPECT_EQ(save(QStringLiteral("<p>words</p>")), 1);
    EXPECT_EQ(import(store, QStringLiteral("a.txt")), 1);
    EXPECT_EQ(QDir(elsewhere.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 3);
}

TEST(Privilege, ALinkUnderTheNameOfAFileIsNotWrittenThrough)
{
    const TestStore store;
    const QTemporaryDir elsewhere;
    ASSERT_TRUE(QDir().mkpath(store.path(kNote)));
    const QString target = elsewhere.filePath(QStringLiteral("target"));
    const QString working = store.path(kNote) + QStringLiteral("/a.txt");
    ASSERT_EQ(::symlink(QFile::encodeName(target), QFile::encodeName(working)), 0);
    EXPECT_EQ(import(store, QStringLiteral("a.txt")), 0);
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_TRUE(QFileInfo(working).isSymLink());
}
