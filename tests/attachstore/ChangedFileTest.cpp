#include "attachstore/ChangedFile.h"

#include "attachstore/FileRecord.h"
#include "attachstore/ImportFixture.h"
#include "noteattach/AttachList.h"
#include "noteattach/Elements.h"
#include "support/FileMd5.h"
#include "support/Paths.h"

using namespace attachstore;

namespace {

const QString kPrefix = QStringLiteral("[ERROR] CNomarEditorImpl::GenerateThumbPic ");
const QString kCardFailed = kPrefix + QStringLiteral("create thumb pic faild ! ");
const QString kDigestFailed = kPrefix + QStringLiteral("cal md5 code faild ! ");
const QString kRenameFailed = kPrefix + QStringLiteral("rename file fald ! ");
const QString kCopyFailed = kPrefix + QStringLiteral("copy file fald ! ");

class GenerateThumbPicTest : public MoveAttFileTest {
protected:
    /// A working copy with that content now, as a watcher would tell of it.
    ChangedFile changed(const QString& name, const QByteArray& bytes)
    {
        QDir(m_store.store()).mkdir(kNote);
        const QString path = working(name);
        writeFile(path, bytes);
        return {path, qint32(bytes.size()), name, FileMd5(path), FileStamp::of(path)};
    }

    void expectFailed(const ChangedFile& file, const QString& line)
    {
        const QStringList before = digestNamed();
        LoggedLines lines;
        QString thumb = QStringLiteral("as before");
        EXPECT_EQ(GenerateThumbPic(file, thumb), 0);
        const QStringList logged = lines.take(); // that of the digest's own may come first
        ASSERT_FALSE(logged.isEmpty());
        EXPECT_EQ(logged.last(), line);
        EXPECT_EQ(thumb, QStringLiteral("as before"));
        EXPECT_EQ(digestNamed(), before);
    }
};

} // namespace

TEST_F(GenerateThumbPicTest, APictureComesUnderItsNewDigestBesideTheOldOne)
{
    const ChangedFile first = changed(QStringLiteral("p.png"), "one");
    QString thumb;
    ASSERT_EQ(GenerateThumbPic(first, thumb), 1);
    const ChangedFile second = changed(QStringLiteral("p.png"), "two");
    ASSERT_EQ(GenerateThumbPic(second, thumb), 1);
    EXPECT_EQ(thumb, second.md5 + QStringLiteral(".png"));
    EXPECT_EQ(readFile(m_store.path(thumb)), "two");
    EXPECT_EQ(readFile(m_store.path(first.md5 + QStringLiteral(".png"))), "one");
    EXPECT_EQ(digestNamed().size(), 2);
}

TEST_F(GenerateThumbPicTest, TheCaseOfAPicturesExtensionStaysInBothNames)
{
    const ChangedFile file = changed(QStringLiteral("a.b.JPG"), "x");
    QString thumb;
    ASSERT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_EQ(thumb, file.md5 + QStringLiteral(".JPG"));
    EXPECT_EQ(HashNameOf(file), thumb);
}

TEST_F(GenerateThumbPicTest, APictureWhoseDigestIsInTheStoreIsNotCopied)
{
    ChangedFile file = changed(QStringLiteral("p.png"), "new");
    file.path = QStringLiteral("/nowhere");
    m_store.write(file.md5 + QStringLiteral(".png"), "what is there stays");
    QString thumb;
    EXPECT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_EQ(thumb, file.md5 + QStringLiteral(".png"));
    EXPECT_EQ(readFile(m_store.path(thumb)), "what is there stays");
}

TEST_F(GenerateThumbPicTest, APictureThatHasChangedSinceItsDigestIsAFailedCopy)
{
    const ChangedFile file = changed(QStringLiteral("p.png"), "one");
    writeFile(file.path, "another");
    expectFailed(file, kCopyFailed);
}

TEST_F(GenerateThumbPicTest, APictureOfUnknownStampIsTakenAsItIs)
{
    ChangedFile file = changed(QStringLiteral("p.png"), "one");
    file.stamp.reset();
    writeFile(file.path, "another");
    QString thumb;
    EXPECT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_EQ(readFile(m_store.path(thumb)), "another");
}

TEST_F(GenerateThumbPicTest, APictureThatIsGoneOrAFolderByNowIsAFailedCopy)
{
    const ChangedFile file = changed(QStringLiteral("p.png"), "one");
    ASSERT_TRUE(QFile::remove(file.path));
    expectFailed(file, kCopyFailed);
    ASSERT_TRUE(QDir().mkdir(file.path));
    expectFailed(file, kCopyFailed);
}

TEST_F(GenerateThumbPicTest, AnyOtherFileGetsACardAndStaysWhereItIs)
{
    const ChangedFile file = changed(QStringLiteral("a.TXT"), "content");
    QString thumb;
    ASSERT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_EQ(digestNamed(), QStringList(thumb));
    EXPECT_EQ(thumb, FileMd5(m_store.path(thumb)) + QStringLiteral(".bmp"));
    EXPECT_EQ(readFile(file.path), "content");
    EXPECT_EQ(HashNameOf(file), file.md5 + QStringLiteral(".TXT"));
}

TEST_F(GenerateThumbPicTest, TheCardShowsTheNewSize)
{
    const ChangedFile file = changed(QStringLiteral("a.txt"), "content");
    ChangedFile larger = file;
    larger.size = 5000;
    QString thumb, ofLarger;
    ASSERT_EQ(GenerateThumbPic(file, thumb), 1);
    ASSERT_EQ(GenerateThumbPic(larger, ofLarger), 1);
    EXPECT_NE(thumb, ofLarger);
}

TEST_F(GenerateThumbPicTest, ACardThatIsThereServesAndNoTemporaryStays)
{
    const ChangedFile file = changed(QStringLiteral("a.txt"), "content");
    QString thumb, again;
    QString minute;
    do { // a card shows the minute
        minute = FormatCurTime();
        ASSERT_EQ(GenerateThumbPic(file, thumb), 1);
        ASSERT_EQ(GenerateThumbPic(file, again), 1);
    } while (minute != FormatCurTime());
    EXPECT_EQ(again, thumb);
    expectNoTemporary();
}

TEST_F(GenerateThumbPicTest, ANameWithoutADotHasACardAndIsItsOwnExtension)
{
    const ChangedFile file = changed(QStringLiteral("README"), "content");
    QString thumb;
    EXPECT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_TRUE(thumb.endsWith(QStringLiteral(".bmp")));
    EXPECT_EQ(HashNameOf(file), file.md5 + QStringLiteral(".README"));
}

TEST_F(GenerateThumbPicTest, AnExtensionTooLongToStandBehindADigestLeavesTheRecordItsPath)
{
    for (const QString& name : {QString(240, u'x'), QString(75, u'报'),
             QStringLiteral("a.") + QString(240, u'x'), QString(84, u'报') + u'.'}) {
        const ChangedFile file = changed(name, "content");
        const QString hashName = HashNameOf(file);
        EXPECT_TRUE(IsSafeFileName(hashName)) << hashName.toStdString();
        std::vector<NewAttachFile> list;
        ASSERT_EQ(noteattach::ParseAttList(
                      kNote, attachment(hashName, QStringLiteral("c.bmp"), name), list, nullptr),
            1);
        ASSERT_EQ(list.size(), 2u);
        EXPECT_EQ(list[0].filePath, file.path) << name.toStdString();
    }
    EXPECT_EQ(HashNameOf(changed(QString(240, u'x'), "content")),
        FileMd5(working(QString(240, u'x'))) + QStringLiteral(".unknow"));
}

TEST_F(GenerateThumbPicTest, APictureWhoseDigestIsNoneIsAFailedCopy)
{
    ChangedFile file = changed(QStringLiteral("p.png"), "one");
    const QString digest = file.md5;
    const QStringList outside = QDir(m_store.appDir()).entryList();
    for (const QString& md5 :
        {QString(), digest.first(31), digest + u'0', QString(32, u'g'), QString(32, u'０'),
            QString(32, QChar(u'\0')), QStringLiteral("../../") + digest.first(26),
            QStringLiteral("..\\..\\") + digest.first(26),
            kNote.first(16) + u'/' + digest.first(15), QStringLiteral("/") + digest,
            QStringLiteral("..")}) {
        file.md5 = md5;
        expectFailed(file, kCopyFailed);
    }
    EXPECT_EQ(QDir(m_store.appDir()).entryList(), outside);
    // Nor does a file serve that stands there.
    file.md5.clear();
    m_store.write(QStringLiteral(".png"), "hidden");
    expectFailed(file, kCopyFailed);
}

TEST_F(GenerateThumbPicTest, ADigestInUpperCaseIsOne)
{
    ChangedFile file = changed(QStringLiteral("p.png"), "one");
    file.md5 = file.md5.toUpper();
    QString thumb;
    EXPECT_EQ(GenerateThumbPic(file, thumb), 1);
    EXPECT_EQ(thumb, file.md5 + QStringLiteral(".png"));
}

TEST_F(GenerateThumbPicTest, AFailedCardIsLogged)
{
    expectFailed(changed(QStringLiteral("a.docx"), "content"), kCardFailed); // there is no icon
}

TEST_F(GenerateThumbPicTest, ACardThatCannotBeDigestedIsLoggedAndLeavesNoTemporary)
{
    openForEverybody();
    const ChangedFile file = changed(QStringLiteral("a.txt"), "content");
    ASSERT_EQ(::chmod(QFile::encodeName(m_store.store()), 0777), 0);
    // The card is made without rights to read it.
    LoggedLines lines;
    QString thumb;
    const mode_t mask = ::umask(0444);
    {
        const WithoutRoot rights;
        EXPECT_EQ(GenerateThumbPic(file, thumb), 0);
    }
    ::umask(mask);
    EXPECT_EQ(lines.take().value(1), kDigestFailed); // one is the digest's own
    EXPECT_EQ(thumb, QString());
    EXPECT_EQ(digestNamed(), QStringList());
    expectNoTemporary();
}

TEST_F(GenerateThumbPicTest, ACardThatCannotGetItsNameIsLoggedAndLeavesNoTemporary)
{
    const ChangedFile file = changed(QStringLiteral("a.txt"), "content");
    QString thumb, minute;
    do {
        minute = FormatCurTime();
        QFile::remove(m_store.path(thumb));
        ASSERT_EQ(GenerateThumbPic(file, thumb), 1);
        ASSERT_TRUE(QFile::remove(m_store.path(thumb)));
        ASSERT_EQ(::symlink("nowhere", QFile::encodeName(m_store.path(thumb))), 0);
        expectFailed(file, kRenameFailed);
    } while (minute != FormatCurTime());
}
