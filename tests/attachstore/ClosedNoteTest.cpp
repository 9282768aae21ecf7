#include "attachstore/ClosedNote.h"

#include "noteattach/Elements.h"
#include "notestore/NoteHtmlRW.h"
#include "support/FailingNew.h"
#include "support/FileMd5.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"
#include "support/TimeText.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace attachstore;

namespace {

const QString kGuid = QStringLiteral("guid");
const QString kTime = QStringLiteral("2001-02-03 04:05:06");

class RewriteClosedNoteTest : public testing::Test {
protected:
    QString filed(const QString& html)
    {
        QString text = html;
        NewAttachFile record;
        EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(text, record, nullptr), 1);
        return record.filePath;
    }

    static QString textOf(const QString& path)
    {
        QString text;
        NOTE_HTML_VER_NUMBER version;
        EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(path, text, &version), 1);
        EXPECT_EQ(version, NOTE_HTML_VER_2);
        return text;
    }

    NoteRewrite rewrite(const QString& path)
    {
        return RewriteClosedNote(path, kGuid, m_image, m_files, m_text);
    }

    void expectUntouched(const QStringList& names)
    {
        EXPECT_EQ(m_store.names(), names);
        EXPECT_EQ(m_files.size(), 1u);
        EXPECT_EQ(m_text, QStringLiteral("of before"));
    }

    TestStore m_store;
    NewImage m_image{
        QStringLiteral("a.pdf"), QStringLiteral("new.pdf"), QStringLiteral("new.bmp"), kTime};
    std::vector<NewAttachFile> m_files{NewAttachFile()};
    QString m_text = QStringLiteral("of before");
    const QString m_a =
        attachment(QStringLiteral("a.pdf"), QStringLiteral("ac.bmp"), QStringLiteral("a.pdf"));
    const QString m_b =
        attachment(QStringLiteral("b.pdf"), QStringLiteral("bc.bmp"), QStringLiteral("b.pdf"));
    const QString m_newA =
        attachment(QStringLiteral("new.pdf"), QStringLiteral("new.bmp"), QStringLiteral("a.pdf"));
};

} // namespace

TEST_F(RewriteClosedNoteTest, EachElementOfTheNameIsChangedAndTheNoteFiledAnew)
{
    const QString old = filed(QStringLiteral("<p>一") + m_a + m_b + m_a + QStringLiteral("</p>"));
    ASSERT_EQ(rewrite(old), NoteRewrite::Filed);
    ASSERT_FALSE(m_files.empty());
    EXPECT_EQ(textOf(m_files[0].filePath),
        QStringLiteral("<p>一") + m_newA + m_b + m_newA + QStringLiteral("</p>"));
    EXPECT_EQ(m_text, QStringLiteral("一"));
    EXPECT_EQ(m_files[0].fileName, FileMd5(m_files[0].filePath) + QStringLiteral(".html"));
    EXPECT_TRUE(QFile::exists(old));
}

TEST_F(RewriteClosedNoteTest, TheListIsThatOfASaveAndTheChangedFilesHaveTheTimeOfTheChange)
{
    ASSERT_EQ(rewrite(filed(m_a + m_b)), NoteRewrite::Filed);
    QStringList names, times;
    for (const NewAttachFile& file : m_files) {
        names += file.fileName;
        times += file.modifyTime;
    }
    EXPECT_EQ(names.mid(1),
        QStringList({QStringLiteral("new.pdf"), QStringLiteral("new.bmp"), QStringLiteral("b.pdf"),
            QStringLiteral("bc.bmp")}));
    EXPECT_EQ(times.mid(1, 2), QStringList({kTime, kTime}));
    EXPECT_NE(times[3], kTime);
    EXPECT_EQ(m_files[0].fileType, 0);
    EXPECT_EQ(m_files[1].filePath, m_store.path(QStringLiteral("guid/a.pdf")));
}

TEST_F(RewriteClosedNoteTest, ANoteThatNamesTheContentAlreadyIsNotFiledAgain)
{
    const QString old = filed(m_newA);
    const QStringList names = m_store.names();
    EXPECT_EQ(rewrite(old), NoteRewrite::Unchanged);
    expectUntouched(names);
}

TEST_F(RewriteClosedNoteTest, ANoteWithoutTheAttachmentStaysAsItIs)
{
    const QString old = filed(m_b);
    const QStringList names = m_store.names();
    EXPECT_EQ(rewrite(old), NoteRewrite::NoSuchAttachment);
    expectUntouched(names);
}

TEST_F(RewriteClosedNoteTest, ANoteThatCannotBeReadStaysAsItIsAndIsLogged)
{
    const QStringList names = m_store.names();
    for (const QString& path : {m_store.path(QStringLiteral("none.html")), m_store.store()}) {
        LoggedLines lines;
        EXPECT_EQ(rewrite(path), NoteRewrite::Failed);
        EXPECT_EQ(lines.take(),
            QStringList(
                QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify 读取笔记内容失败！")));
        expectUntouched(names);
    }
}

TEST_F(RewriteClosedNoteTest, AShortageOfMemoryIsLoggedAndLeavesTheNoteWhereItIs)
{
    const QString old = filed(m_a + m_b);
    LoggedLines lines;
    // Some of these are met by an operation on the way that has its own answer to them.
    for (long allowed = 0; allowed < 200; ++allowed) {
        lines.makeRoom();
        const FailingNew shortage(allowed);
        rewrite(old);
    }
    EXPECT_TRUE(lines.take().contains(
        QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify 更新笔记附件属性失败！")));
    EXPECT_EQ(textOf(old), m_a + m_b);
}

TEST_F(RewriteClosedNoteTest, AFullStoreLeavesTheNoteAsItIs)
{
    const QString old = filed(m_a + QString(200'000, u'x'));
    const QStringList names = m_store.names();
    LoggedLines lines;
    {
        const FileSizeLimit limit(100'000);
        EXPECT_EQ(rewrite(old), NoteRewrite::Failed);
    }
    EXPECT_EQ(
        lines.take(), QStringList(QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!")));
    expectUntouched(names);
}

TEST_F(RewriteClosedNoteTest, AnOldNoteIsUpgradedOnTheWay)
{
    const QString old = m_store.write(QStringLiteral("old.html"), (m_a + m_b).toUtf8());
    ASSERT_EQ(rewrite(old), NoteRewrite::Filed);
    EXPECT_TRUE(textOf(m_files[0].filePath).contains(QStringLiteral("new.pdf")));
}

TEST_F(RewriteClosedNoteTest, WithoutAPathAnEmptyTextIsFiled)
{
    EXPECT_EQ(rewrite(QString()), NoteRewrite::Filed);
    ASSERT_EQ(m_files.size(), 1u);
    EXPECT_EQ(textOf(m_files[0].filePath), QString());
    EXPECT_EQ(m_text, QString());
}

TEST_F(RewriteClosedNoteTest, WithoutAPathAFailedFilingIsNotLookedAt)
{
    QDir(m_store.store()).removeRecursively();
    EXPECT_EQ(rewrite(QString()), NoteRewrite::Filed);
    ASSERT_EQ(m_files.size(), 1u);
    EXPECT_EQ(m_files[0].fileName, QString());
}
