#include "notestore/NoteAttachRemoval.h"

#include "noteattach/Elements.h"
#include "notestore/NoteHtmlRW.h"
#include "support/FailingNew.h"
#include "support/TestStore.h"
#include "support/TimeText.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using notestore::DelAttachFromHtmlFile;

namespace {

const QString kGuid = QStringLiteral("guid");

class DelAttachTest : public testing::Test {
protected:
    QString fileNote(const QString& html)
    {
        QString text = html;
        NewAttachFile record;
        EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(text, record, nullptr), 1);
        return record.filePath;
    }

    QString textOf(const NewAttachFile& record)
    {
        QString text;
        NOTE_HTML_VER_NUMBER version;
        EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(record.filePath, text, &version), 1);
        EXPECT_EQ(version, NOTE_HTML_VER_2);
        return text;
    }

    TestStore m_store;
    std::vector<NewAttachFile> m_list{NewAttachFile()}; // of before
    const QString m_a =
        attachment(QStringLiteral("a.pdf"), QStringLiteral("ac.bmp"), QStringLiteral("a.pdf"));
    const QString m_b =
        attachment(QStringLiteral("b.pdf"), QStringLiteral("bc.bmp"), QStringLiteral("b.pdf"));
};

} // namespace

TEST_F(DelAttachTest, TheFormOfHostsAlwaysGivesZeroAndTouchesNothing)
{
    fileNote(m_a);
    const QStringList names = m_store.names();
    EXPECT_EQ(DelAttachFromHtmlFile(kGuid, QStringLiteral("a.pdf"), m_list), 0);
    EXPECT_EQ(DelAttachFromHtmlFile(QString(), QString(), m_list), 0);
    EXPECT_EQ(m_list.size(), 1u);
    EXPECT_EQ(m_store.names(), names);
}

TEST_F(DelAttachTest, AKnownFileLosesTheFirstElementOfTheName)
{
    const QString path = fileNote(QStringLiteral("<p>x") + m_a + m_b + m_a + QStringLiteral("y"));
    const QString before = FormatNowTime();
    EXPECT_EQ(DelAttachFromHtmlFile(path, kGuid, QStringLiteral("a.pdf"), m_list), 1);
    ASSERT_EQ(m_list.size(), 5u);
    EXPECT_EQ(textOf(m_list[0]), QStringLiteral("<p>x") + m_b + m_a + QStringLiteral("y"));
    EXPECT_EQ(m_list[0].fileType, 0);
    EXPECT_EQ(m_list[1].origName, QStringLiteral("b.pdf"));
    for (const NewAttachFile& record : m_list)
        EXPECT_LE(before, record.modifyTime);
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(DelAttachTest, WhereThereIsNothingToRemoveItGivesZero)
{
    const QString path = fileNote(m_a);
    const QStringList names = m_store.names();
    EXPECT_EQ(DelAttachFromHtmlFile(path, kGuid, QStringLiteral("b.pdf"), m_list), 0);
    EXPECT_EQ(DelAttachFromHtmlFile(
                  m_store.path(QStringLiteral("none")), kGuid, QStringLiteral("a.pdf"), m_list),
        0);
    EXPECT_EQ(DelAttachFromHtmlFile(m_store.store(), kGuid, QStringLiteral("a.pdf"), m_list), 0);
    EXPECT_EQ(DelAttachFromHtmlFile(fileNote(QStringLiteral("<frameset></frameset>") + m_a), kGuid,
                  QStringLiteral("a.pdf"), m_list),
        0);
    EXPECT_EQ(m_list.size(), 1u);
    EXPECT_EQ(m_store.names().size(), names.size() + 1);
}

TEST_F(DelAttachTest, AFailedSaveGivesZero)
{
    const QString path = fileNote(m_a);
    const TestStore elsewhere; // where the save goes now
    QDir(elsewhere.store()).removeRecursively();
    EXPECT_EQ(DelAttachFromHtmlFile(path, kGuid, QStringLiteral("a.pdf"), m_list), 0);
    EXPECT_EQ(m_list.size(), 1u);
}

TEST_F(DelAttachTest, AFailureOnTheWayIsLoggedAndGivesZero)
{
    const QString path = fileNote(m_a);
    LoggedLines lines;
    // Some of these are met by an operation on the way that has its own answer to them.
    for (long allowed = 0; allowed < 100; ++allowed) {
        lines.makeRoom();
        const FailingNew failing(allowed);
        DelAttachFromHtmlFile(path, kGuid, QStringLiteral("a.pdf"), m_list);
    }
    EXPECT_TRUE(lines.take().contains(
        QStringLiteral("[ERROR] DelAttachFromHtmlFile从html文件中删除附件失败！")));
}
