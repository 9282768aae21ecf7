// The MHT file of a note's text, read by Python's `email`.

#include "notestore/MhtExport.h"

#include "notestore/MhtReader.h"
#include "support/FailingNew.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace notestore;

namespace {

const QString kWriteFailed = QStringLiteral("[ERROR:] HtmlToMht发生错误，错误信息: ");
const QString kOtherFailed = QStringLiteral("[ERROR:] HtmlToMht 发送未知错误！");

// WithoutRoot for the real user too: that is whose rights a look at a file's permissions asks for.
class WithoutAnyRoot {
public:
    WithoutAnyRoot()
        : m_changed(::geteuid() == 0 && ::setresuid(kNobody, kNobody, 0) == 0)
    {
    }
    ~WithoutAnyRoot()
    {
        if (m_changed && ::setresuid(0, 0, 0) != 0)
            ADD_FAILURE() << "the rights of root did not come back";
    }
    WithoutAnyRoot(const WithoutAnyRoot&) = delete;
    WithoutAnyRoot& operator=(const WithoutAnyRoot&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
    bool m_changed;
};

class Mht : public testing::Test {
protected:
    QStringList namesThere() const
    {
        return QDir(m_there.path())
            .entryList(
                QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    MhtFile exported(const QString& html)
    {
        EXPECT_EQ(HtmlToMht(html, path), 1);
        return readMht(path);
    }

    // An export without the rights of root fails and leaves the file "earlier" there.
    void expectRefusal()
    {
        LoggedLines lines;
        {
            const WithoutAnyRoot rights;
            EXPECT_EQ(HtmlToMht(QStringLiteral("new"), path), 0);
        }
        EXPECT_EQ(lines.take(), QStringList(kWriteFailed));
        EXPECT_EQ(readFile(path), "earlier");
        EXPECT_EQ(namesThere(), QStringList(QStringLiteral("note.mht")));
    }

    TestStore m_store;
    QTemporaryDir m_there;
    const QString path = m_there.filePath(QStringLiteral("note.mht"));
};

} // namespace

TEST_F(Mht, IsAMessageWhoseRootIsTheHtmlAlone)
{
    const MhtFile file = exported(QStringLiteral("<p>笔记 note</p>"));
    EXPECT_EQ(file.defects, QStringList());
    EXPECT_EQ(file.type, QStringLiteral("multipart/related"));
    EXPECT_EQ(file.rootType, QStringLiteral("text/html"));
    EXPECT_EQ(file.headers[QStringLiteral("mime-version")], QStringLiteral("1.0"));
    EXPECT_TRUE(file.headers.contains(QStringLiteral("from")));
    EXPECT_EQ(file.aroundParts, QString());
    ASSERT_EQ(file.parts.size(), 1u);
    const MhtPart& root = file.parts[0];
    EXPECT_EQ(root.type, QStringLiteral("text/html"));
    EXPECT_EQ(root.charset, QStringLiteral("utf-8"));
    EXPECT_EQ(root.headers[QStringLiteral("content-transfer-encoding")],
        QStringLiteral("quoted-printable"));
    EXPECT_EQ(
        root.headers[QStringLiteral("content-location")], QStringLiteral("file:///note.html"));
    EXPECT_EQ(root.body, "<p>笔记 note</p>");
}

TEST_F(Mht, ItsDateIsTheTimeOfTheExport)
{
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    const MhtFile file = exported(QStringLiteral("a"));
    const QDateTime date =
        QDateTime::fromString(file.headers[QStringLiteral("date")], Qt::RFC2822Date);
    EXPECT_LE(before, date) << file.headers[QStringLiteral("date")].toStdString();
    EXPECT_LE(date, QDateTime::currentDateTime());
}

TEST_F(Mht, EveryTextComesBack)
{
    const QString line(5000, u'x');
    for (const QString& html :
        {QString(), QStringLiteral("a"), QStringLiteral("a\n"), QStringLiteral("\n\n"),
            QStringLiteral("trailing \t \nblank \n"), QStringLiteral("ends in blank "),
            QStringLiteral("."), QStringLiteral("From me\n.\n--=-\n=3D==\n"),
            QStringLiteral("a\rb"), QStringLiteral("\u00e9\u7b14\U0001F600").repeated(40'000), line,
            line + u'\n' + line, QStringLiteral("x").repeated(75) + u'\u7b14',
            QStringLiteral("a") + QChar(u'\0') + u'b'}) {
        const MhtFile file = exported(html);
        EXPECT_EQ(file.defects, QStringList());
        EXPECT_EQ(file.html(), html) << html.left(40).toStdString();
        EXPECT_LE(file.longestLine, 76);
        EXPECT_EQ(file.bareLineEnds, 0);
        EXPECT_EQ(file.beyondAscii, 0);
    }
}

TEST_F(Mht, LineEndsAreCrLf)
{
    EXPECT_EQ(exported(QStringLiteral("a\nb\r\nc\r")).parts.at(0).body, "a\r\nb\r\nc\r");
}

TEST_F(Mht, AByteOrderMarkIsText)
{
    EXPECT_EQ(exported(QChar(0xFEFF) + QStringLiteral("a")).parts.at(0).body,
        "\xEF\xBB\xBF"
        "a");
}

TEST_F(Mht, ALoneSurrogateBecomesTheReplacementCharacter)
{
    EXPECT_EQ(exported(QChar(0xD800) + QStringLiteral("a") + QChar(0xDC00)).html(),
        QStringLiteral("\uFFFDa\uFFFD"));
}

TEST_F(Mht, ATextLargerThanAnyBufferComesBackWhole)
{
    QString html;
    for (int i = 0; i < 60'000; ++i)
        html += QStringLiteral("<p>段落 paragraph = %1 😀</p>\n").arg(i);
    const MhtFile file = exported(html);
    EXPECT_TRUE(file.html() == html);
    EXPECT_LE(file.longestLine, 76);
    EXPECT_EQ(file.bareLineEnds, 0);
}

TEST_F(Mht, AnExistingFileIsReplaced)
{
    writeFile(path, QByteArray(100'000, 'x'));
    EXPECT_EQ(exported(QStringLiteral("new")).html(), QStringLiteral("new"));
    EXPECT_EQ(namesThere(), QStringList(QStringLiteral("note.mht")));
}

TEST_F(Mht, AnExistingFileKeepsItsPermissionsAndALinkKeepsPointing)
{
    const QString real = m_there.filePath(QStringLiteral("real.mht"));
    writeFile(real, "old");
    ASSERT_EQ(::chmod(QFile::encodeName(real), 0640), 0);
    ASSERT_EQ(::symlink("real.mht", QFile::encodeName(path)), 0);
    exported(QStringLiteral("new"));
    struct stat info;
    ASSERT_EQ(::lstat(QFile::encodeName(path), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    ASSERT_EQ(::stat(QFile::encodeName(real), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST_F(Mht, AFullDiskFailsLogsAndLeavesTheEarlierFile)
{
    writeFile(path, "earlier");
    QString html;
    for (int i = 0; i < 100'000; ++i)
        html += QString::number(i);
    for (const rlim_t bytes : {0, 10, 5'000, 100'000}) {
        const FileSizeLimit limit(bytes);
        LoggedLines lines;
        const int result = HtmlToMht(html, path);
        EXPECT_EQ(result, 0) << bytes;
    }
    EXPECT_EQ(readFile(path), "earlier");
    EXPECT_EQ(namesThere(), QStringList(QStringLiteral("note.mht")));
    LoggedLines lines;
    lines.makeRoom();
    {
        const FileSizeLimit limit(5'000);
        HtmlToMht(html, path);
    }
    EXPECT_EQ(lines.take(), QStringList(kWriteFailed));
}

TEST_F(Mht, ADirectoryThatMayNotBeWrittenFailsLogsAndLeavesTheEarlierFile)
{
    writeFile(path, "earlier");
    ASSERT_EQ(::chmod(QFile::encodeName(path), 0666), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_there.path()), 0555), 0);
    expectRefusal();
}

TEST_F(Mht, AFileThatMayNotBeWrittenIsLeftAlone)
{
    writeFile(path, "earlier");
    ASSERT_EQ(::chmod(QFile::encodeName(path), 0444), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(m_there.path()), 0777), 0);
    expectRefusal();
}

TEST_F(Mht, APathThatCanBeNoFileFailsAndLogs)
{
    const QString fifo = m_there.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo), 0600), 0);
    for (const QString& bad : {QString(), m_there.path(),
             m_there.filePath(QStringLiteral("none/note.mht")), fifo, QStringLiteral("/dev/null"),
             path + QChar(u'\0') + u'x', m_there.filePath(QString(300, u'n'))}) {
        LoggedLines lines;
        EXPECT_EQ(HtmlToMht(QStringLiteral("a"), bad), 0) << bad.toStdString();
        EXPECT_EQ(lines.take(), QStringList(kWriteFailed)) << bad.toStdString();
    }
    EXPECT_EQ(namesThere(), QStringList(QStringLiteral("fifo")));
    struct stat info;
    ASSERT_EQ(::stat("/dev/null", &info), 0);
    EXPECT_TRUE(S_ISCHR(info.st_mode));
}

TEST_F(Mht, AnotherFailureHasALineOfItsOwnAndLeavesTheEarlierFile)
{
    writeFile(path, "earlier");
    int failures = 0;
    for (long allowed = 0; allowed < 200; ++allowed) {
        LoggedLines lines;
        lines.makeRoom();
        int result;
        {
            const FailingNew failing(allowed);
            result = HtmlToMht(QStringLiteral("<p>a</p>"), path);
        }
        const QStringList logged = lines.take();
        if (result)
            break;
        ++failures;
        EXPECT_EQ(logged, QStringList(kOtherFailed)) << allowed;
        EXPECT_EQ(readFile(path), "earlier");
        EXPECT_EQ(namesThere(), QStringList(QStringLiteral("note.mht")));
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(readMht(path).html(), QStringLiteral("<p>a</p>"));
}

TEST_F(Mht, ANoteWithoutImagesGivesItsWholeText)
{
    const QString html = QStringLiteral("<html><head><title>t</title></head><body>a</body></html>");
    EXPECT_EQ(NoteHtmlContentToMhtFile(html, path), 1);
    EXPECT_EQ(readMht(path).html(), html);
}

TEST_F(Mht, ANoteWithImagesGivesTheInsideOfItsBodyWithAbsolutePathsAndNoPicture)
{
    m_store.write(QStringLiteral("a.png"), "\x89PNG\r\n\x1A\n");
    const QString html = QStringLiteral("<html><head><title>t</title></head><body><p>a</p>"
                                        "<img src=\"../userdata\\attachment\\a.png\"></body>");
    EXPECT_EQ(NoteHtmlContentToMhtFile(html, path), 1);
    const MhtFile file = readMht(path);
    EXPECT_EQ(file.html(),
        QStringLiteral("<p>a</p><img src=\"%1\">").arg(m_store.path(QStringLiteral("a.png"))));
    EXPECT_EQ(file.parts.size(), 1u);
}

TEST_F(Mht, ANoteFileIsExportedWithoutItsMarker)
{
    const QString note =
        m_store.write(QStringLiteral("note.html"), "<!--{\"ver_number\":2}--><p>笔记</p>");
    for (const auto toMht : {NoteHtmlFileToMhtFile, NoteHtmlFileToMhtFileWithPictures}) {
        EXPECT_EQ(toMht(note, path), 1);
        EXPECT_EQ(readMht(path).html(), QStringLiteral("<p>笔记</p>"));
        EXPECT_TRUE(QFile::remove(path));
    }
}

TEST_F(Mht, ANoteFileThatCannotBeReadGivesZeroAndNoFile)
{
    for (const auto toMht : {NoteHtmlFileToMhtFile, NoteHtmlFileToMhtFileWithPictures})
        EXPECT_EQ(toMht(m_store.path(QStringLiteral("none")), path), 0);
    EXPECT_EQ(namesThere(), QStringList());
}
