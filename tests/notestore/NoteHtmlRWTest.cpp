#include "notestore/NoteHtmlRW.h"

#include "notestore/NoteFile.h"
#include "support/DiskFile.h"
#include "support/FailingNew.h"
#include "support/FileMd5.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"
#include "support/TimeText.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kSaveFailed = QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!");

QString digestName(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex())
        + QStringLiteral(".html");
}

struct Saved {
    int result = 0;
    QString html;
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
};

Saved save(const QString& html, NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2)
{
    Saved saved{0, html, {}, version};
    saved.result = NoteHtmlRW::SaveHtmlTextToFile(saved.html, saved.record, &saved.version);
    return saved;
}

// What must hold after every save that failed.
void expectNothingSaved(const TestStore& store, const Saved& saved)
{
    EXPECT_EQ(saved.result, 0);
    EXPECT_EQ(saved.record, NewAttachFile());
    for (const QString& name : store.names())
        EXPECT_FALSE(name.endsWith(QStringLiteral(".tmp"))) << name.toStdString();
}

} // namespace

TEST(ReadHtmlTextFromFile, TakesAMarkerOffAndGivesItsVersion)
{
    struct Case {
        QByteArray bytes;
        QString html;
        int version;
    };
    const std::vector<Case> cases{
        {"<!--{\"ver_number\":2}--><p>a</p>", QStringLiteral("<p>a</p>"), 2},
        {"<!--{\"ver_number\":2}-->", QString(), 2},
        {"<!---->abc", QStringLiteral("<!---->abc"), 0},
        {"<!-->abc-->", QStringLiteral("<!-->abc-->"), 0},
        {"<!-- hello -->abc", QStringLiteral("abc"), 0},
        {"<!--{\"ver_number\":7}-->abc", QStringLiteral("abc"), 7},
        {"<!--{\"ver_number\":-3}-->abc", QStringLiteral("abc"), -3},
        {"<!--{}-->abc", QStringLiteral("abc"), 0},
        {"<!--{\"ver_number\":\"2\"}-->abc", QStringLiteral("abc"), 0},
        {"<!--{\"ver_number\":99999999999}-->abc", QStringLiteral("abc"), 0},
        {"<!--[2]-->abc", QStringLiteral("abc"), 0},
        {"<!--2-->abc", QStringLiteral("abc"), 0},
        {"abc<!--{\"ver_number\":2}-->", QStringLiteral("abc<!--{\"ver_number\":2}-->"), 0},
        {"<!--{\"ver_number\":2}", QStringLiteral("<!--{\"ver_number\":2}"), 0},
        {"\n<!--{\"ver_number\":2}-->a", QStringLiteral("\n<!--{\"ver_number\":2}-->a"), 0},
        {"", QString(), 0},
        {"plain 笔记", QStringLiteral("plain 笔记"), 0},
        {QByteArray("ab\0cd", 5), QStringLiteral("ab"), 0},
        {"a\xFF", QStringLiteral("a\uFFFD"), 0},
    };
    const TestStore store;
    for (const Case& c : cases) {
        const QString path = store.write(QStringLiteral("note"), c.bytes);
        QString html = QStringLiteral("before");
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_1;
        EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(path, html, &version), 1);
        EXPECT_EQ(html, c.html) << c.bytes.constData();
        EXPECT_EQ(version, c.version) << c.bytes.constData();
    }
}

TEST(ReadHtmlTextFromFile, AnInvalidMarkerIsNotLogged)
{
    const TestStore store;
    QString html;
    NOTE_HTML_VER_NUMBER version;
    LoggedLines lines;
    NoteHtmlRW::ReadHtmlTextFromFile(
        store.write(QStringLiteral("n"), "<!--{x-->a"), html, &version);
    EXPECT_EQ(version, NOTE_HTML_VER_0);
    EXPECT_EQ(html, QStringLiteral("a"));
    EXPECT_TRUE(lines.take().isEmpty());
}

TEST(ReadHtmlTextFromFile, AFileThatCannotBeOpenedLeavesTheArgumentsAlone)
{
    const TestStore store;
    const QString fifo = store.path(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo), 0600), 0);
    const QString huge = store.write(QStringLiteral("huge"), "");
    ASSERT_EQ(::truncate(QFile::encodeName(huge), off_t(1) << 40), 0);
    LoggedLines lines;
    for (const QString& path : {store.path(QStringLiteral("none")), store.store(), QString(), fifo,
             huge, QStringLiteral("/dev/zero")}) {
        QString html = QStringLiteral("before");
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_1;
        EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(path, html, &version), 0);
        EXPECT_EQ(html, QStringLiteral("before"));
        EXPECT_EQ(version, NOTE_HTML_VER_1);
    }
    EXPECT_TRUE(lines.take().isEmpty());
}

TEST(SaveHtmlTextToFile, TheFileIsNamedByTheDigestOfMarkerAndText)
{
    const TestStore store;
    const QString before = FormatNowTime();
    const Saved saved = save(QStringLiteral("<p>笔记 note</p>"));
    const QByteArray bytes = "<!--{\"ver_number\":2}--><p>笔记 note</p>";
    EXPECT_EQ(saved.result, 1);
    EXPECT_EQ(store.names(), QStringList(digestName(bytes)));
    EXPECT_EQ(readFile(saved.record.filePath), bytes);

    EXPECT_EQ(saved.record.fileName, digestName(bytes));
    EXPECT_EQ(saved.record.filePath, store.path(digestName(bytes)));
    EXPECT_EQ(saved.record.fileExt, QStringLiteral("html"));
    EXPECT_EQ(saved.record.fileType, 0);
    EXPECT_EQ(saved.record.isSrcFile, 0);
    EXPECT_EQ(saved.record.origName, QString());
    EXPECT_EQ(saved.record.spareText, QString());
    EXPECT_LE(before, saved.record.modifyTime);
    EXPECT_LE(saved.record.modifyTime, FormatNowTime());
}

TEST(SaveHtmlTextToFile, AnEmptyTextIsJustTheMarker)
{
    const TestStore store;
    const Saved saved = save(QString());
    EXPECT_EQ(saved.result, 1);
    EXPECT_EQ(readFile(saved.record.filePath), "<!--{\"ver_number\":2}-->");
    EXPECT_EQ(FileMd5(saved.record.filePath) + QStringLiteral(".html"), saved.record.fileName);
}

TEST(SaveHtmlTextToFile, SameTextTwiceReportsTheSameName)
{
    const TestStore store;
    const Saved first = save(QStringLiteral("a"));
    struct stat before, after;
    ASSERT_EQ(::stat(QFile::encodeName(first.record.filePath), &before), 0);
    const Saved second = save(QStringLiteral("a"));
    ASSERT_EQ(::stat(QFile::encodeName(first.record.filePath), &after), 0);
    EXPECT_EQ(second.result, 1);
    EXPECT_EQ(second.record.fileName, first.record.fileName);
    EXPECT_LE(first.record.modifyTime, second.record.modifyTime);
    EXPECT_EQ(store.names().size(), 1);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST(SaveHtmlTextToFile, AChangedTextLeavesTheOldFileWhereItIs)
{
    const TestStore store;
    const Saved first = save(QStringLiteral("a"));
    const Saved second = save(QStringLiteral("b"));
    EXPECT_NE(first.record.fileName, second.record.fileName);
    EXPECT_EQ(store.names().size(), 2);
}

TEST(SaveHtmlTextToFile, ANullVersionWritesVersionTwoAndUpgradesNothing)
{
    const TestStore store;
    QString html = QStringLiteral("<img class=\"userdata/attachment/abc.png\">");
    const QString before = html;
    NewAttachFile record;
    EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, nullptr), 1);
    EXPECT_EQ(html, before);
    EXPECT_EQ(readFile(record.filePath), "<!--{\"ver_number\":2}-->" + before.toUtf8());
}

TEST(SaveHtmlTextToFile, AVersionAboveTwoIsKept)
{
    const TestStore store;
    const Saved saved = save(QStringLiteral("a"), static_cast<NOTE_HTML_VER_NUMBER>(7));
    EXPECT_EQ(saved.version, 7);
    EXPECT_EQ(readFile(saved.record.filePath), "<!--{\"ver_number\":7}-->a");
}

TEST(SaveHtmlTextToFile, AnOldTextIsUpgraded)
{
    const TestStore store;
    for (const auto version : {NOTE_HTML_VER_0, NOTE_HTML_VER_1, NOTE_HTML_VER_NUMBER(-5)}) {
        const Saved saved =
            save(QStringLiteral("<img class=\"userdata/attachment/abc.png\">"), version);
        EXPECT_EQ(saved.result, 1);
        EXPECT_EQ(saved.version, NOTE_HTML_VER_2);
        EXPECT_TRUE(saved.html.contains(QStringLiteral("nm_exdata")));
        EXPECT_EQ(
            readFile(saved.record.filePath), "<!--{\"ver_number\":2}-->" + saved.html.toUtf8());
    }
}

TEST(SaveHtmlTextToFile, AnOldTextWithoutAnyPictureBecomesVersionTwoAsItIs)
{
    const TestStore store;
    for (const auto version : {NOTE_HTML_VER_0, NOTE_HTML_VER_1}) {
        const Saved saved = save(QStringLiteral("<P>text"), version);
        EXPECT_EQ(saved.result, 1);
        EXPECT_EQ(saved.version, NOTE_HTML_VER_2);
        EXPECT_EQ(saved.html, QStringLiteral("<P>text"));
        EXPECT_EQ(readFile(saved.record.filePath), "<!--{\"ver_number\":2}--><P>text");
    }
}

// One allocation fails, wherever it stands: where that is in the upgrade, the save goes on.
TEST(SaveHtmlTextToFile, AfterAFailedUpgradeItFilesTheOldTextAtItsOldVersion)
{
    const TestStore store;
    const QString old = QStringLiteral("<img class=\"userdata/attachment/abc.png\">");
    LoggedLines lines;
    int failedUpgrades = 0;
    for (long allowed = 0;; ++allowed) {
        Saved saved{0, old, {}, NOTE_HTML_VER_1};
        lines.makeRoom();
        {
            const FailingNew failing(allowed);
            saved.result = NoteHtmlRW::SaveHtmlTextToFile(saved.html, saved.record, &saved.version);
        }
        if (saved.result == 1 && saved.version == NOTE_HTML_VER_2)
            break; // more were allowed than are made
        if (saved.result == 0) {
            expectNothingSaved(store, saved);
            continue;
        }
        ++failedUpgrades;
        EXPECT_EQ(saved.version, NOTE_HTML_VER_1);
        EXPECT_EQ(saved.html, old);
        EXPECT_EQ(readFile(saved.record.filePath), "<!--{\"ver_number\":1}-->" + old.toUtf8());
    }
    EXPECT_GT(failedUpgrades, 0);
    EXPECT_EQ(lines.take().count(QStringLiteral("[ERROR] HtmlVer_1_To_2::DoUpgrade失败！")),
        failedUpgrades);
}

TEST(SaveHtmlTextToFile, TheOtherFieldsOfTheRecordStayAsTheyAre)
{
    const TestStore store;
    QString html = QStringLiteral("a");
    NewAttachFile record;
    record.origName = QStringLiteral("kept");
    record.isSrcFile = 1;
    EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, nullptr), 1);
    EXPECT_EQ(record.origName, QStringLiteral("kept"));
    EXPECT_EQ(record.isSrcFile, 1);
}

TEST(SaveHtmlTextToFile, WhatTheNarrowFormCannotHoldIsReplacedAndDigestedSo)
{
    const TestStore store;
    const Saved saved = save(u'a' + QString(QChar(0xDC00)) + u'b');
    const QByteArray bytes = "<!--{\"ver_number\":2}-->a\xEF\xBF\xBD"
                             "b";
    EXPECT_EQ(readFile(saved.record.filePath), bytes);
    EXPECT_EQ(saved.record.fileName, digestName(bytes));
    EXPECT_EQ(readFile(save(u'a' + QString(QChar(u'\0')) + u'b').record.filePath),
        "<!--{\"ver_number\":2}-->a");
}

TEST(SaveHtmlTextToFile, ALargeTextComesBackWhole)
{
    const TestStore store;
    const QString text = QStringLiteral("<p>笔记 text 😀</p>\r\n").repeated(400'000);
    const Saved saved = save(text);
    QString read;
    NOTE_HTML_VER_NUMBER version;
    ASSERT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(saved.record.filePath, read, &version), 1);
    EXPECT_EQ(read, text);
    EXPECT_EQ(version, NOTE_HTML_VER_2);
    EXPECT_EQ(FileMd5(saved.record.filePath) + QStringLiteral(".html"), saved.record.fileName);
}

TEST(SaveHtmlTextToFile, WithoutTheStoreItFailsAndLogs)
{
    const TestStore store;
    QDir(store.store()).removeRecursively();
    LoggedLines lines;
    expectNothingSaved(store, save(QStringLiteral("a")));
    EXPECT_EQ(lines.take(), QStringList(kSaveFailed));
    EXPECT_FALSE(QDir(store.store()).exists());
}

TEST(SaveHtmlTextToFile, AStoreThatMayNotBeWrittenFailsAndLogs)
{
    const TestStore store;
    ASSERT_EQ(::chmod(QFile::encodeName(store.store()), 0555), 0);
    LoggedLines lines;
    {
        const WithoutRoot rights;
        expectNothingSaved(store, save(QStringLiteral("a")));
    }
    EXPECT_EQ(lines.take(), QStringList(kSaveFailed));
}

TEST(SaveHtmlTextToFile, AVersionRaisedByAnUpgradeStaysRaisedWhenTheSaveFails)
{
    const TestStore store;
    QDir(store.store()).removeRecursively();
    const Saved saved = save(QStringLiteral("<img class=\"a/b.png\">"), NOTE_HTML_VER_1);
    EXPECT_EQ(saved.result, 0);
    EXPECT_EQ(saved.version, NOTE_HTML_VER_2);
    EXPECT_TRUE(saved.html.contains(QStringLiteral("nm_exdata")));
}

TEST(SaveHtmlTextToFile, AFullDiskFailsLogsAndLeavesNoTemporary)
{
    const TestStore store;
    LoggedLines lines;
    Saved saved;
    {
        const FileSizeLimit limit(100'000);
        saved = save(QString(1'000'000, u'x'));
    }
    expectNothingSaved(store, saved);
    EXPECT_TRUE(store.names().isEmpty());
    EXPECT_EQ(lines.take(), QStringList(kSaveFailed));
}

// Something of the final name that is no file to be found: the rename is refused.
TEST(SaveHtmlTextToFile, AFailedRenameLeavesNoTemporaryAndIsNotLogged)
{
    const TestStore store;
    const QString name = digestName("<!--{\"ver_number\":2}-->a");
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(store.path(name))), 0);
    LoggedLines lines;
    expectNothingSaved(store, save(QStringLiteral("a")));
    EXPECT_EQ(store.names(), QStringList(name));
    EXPECT_TRUE(lines.take().isEmpty());
}

// A store whose files cannot be read by the one who writes them.
TEST(SaveHtmlTextToFile, AnEmptyDigestLeavesNoTemporaryAndOneLineOfTheDigest)
{
    const TestStore store;
    ASSERT_EQ(::chmod(QFile::encodeName(store.store()), 0777), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(store.appDir()), 0755), 0);
    const mode_t mask = ::umask(0777);
    LoggedLines lines;
    Saved saved;
    {
        const WithoutRoot rights;
        saved = save(QStringLiteral("a"));
    }
    ::umask(mask);
    expectNothingSaved(store, saved);
    EXPECT_TRUE(store.names().isEmpty());
    const QStringList logged = lines.take();
    ASSERT_EQ(logged.size(), 1);
    EXPECT_TRUE(logged[0].endsWith(QStringLiteral("to calc file md5 failed!Error code:13.")));
}

TEST(WriteHtmlFile, FailsWhereItCannotWrite)
{
    const TestStore store;
    for (const QString& path : {store.store(), QString(), QStringLiteral("/dev/full")}) {
        OutputFile file;
        EXPECT_EQ(notestore::WriteHtmlFile(file, path, QStringLiteral("a"), NOTE_HTML_VER_2), 0);
    }
}
