// Attachments of one note that are taken over into another.

#include "clipdrag/PasteFixture.h"

struct DoCopyLogic : Pasting { };

TEST_F(DoCopyLogic, TheResultTellsWhatEachAttachmentBecame)
{
    const QString html = page.html + deleted(QStringLiteral("p.png"), "pixels");
    CopyLogicResult result;
    ASSERT_EQ(paste.DoCopyLogic(listOf(html), result), 1);
    ASSERT_EQ(result.attNewList.size(), 2u);
    EXPECT_EQ(
        result.attNewList[0].oldExData, noteattach::FormatOrigNameToJson(QStringLiteral("a.txt")));
    EXPECT_EQ(result.attNewList[0].newExData,
        noteattach::FormatOrigNameToJson(QStringLiteral("a(1).txt")));
    const QString stored = QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1.txt");
    ASSERT_EQ(result.fileSizeList.size(), 3u);
    EXPECT_EQ(result.fileSizeList[0].fileName, stored);
    EXPECT_EQ(result.fileSizeList[0].secondName, QStringLiteral("a(1).txt"));
    EXPECT_EQ(result.fileSizeList[0].fileSize, 4u);
    const CopiedFileSize& card = result.fileSizeList[1];
    EXPECT_EQ(card.fileName, result.attNewList[0].newSrcName);
    EXPECT_EQ(card.secondName, card.fileName);
    EXPECT_EQ(qint64(card.fileSize), QFileInfo(GetAttachmentDir() + u'/' + card.fileName).size());
    // A picture is its own shown file.
    EXPECT_EQ(result.fileSizeList[2].fileName, result.attNewList[1].newSrcName);
    EXPECT_EQ(result.fileSizeList[2].secondName, QStringLiteral("p.png"));
    EXPECT_EQ(result.fileSizeList[2].fileSize, 6u);
    EXPECT_TRUE(result.thumbAttList.empty());
}

TEST_F(DoCopyLogic, AnAttachmentWithAnExtensionTooLongForADigestIsTakenOver)
{
    const QString name = QStringLiteral("b.") + QString(240, u'x');
    adder->AddDropFileToEditor({record(file(name, "long"))});
    ASSERT_TRUE(copies().contains(name));
    CopyLogicResult result;
    ASSERT_EQ(paste.DoCopyLogic(listOf(page.html), result), 1);
    ASSERT_EQ(result.attNewList.size(), 2u);
    const QString numbered = QStringLiteral("b(1).") + QString(240, u'x');
    EXPECT_EQ(result.attNewList[1].newExData, noteattach::FormatOrigNameToJson(numbered));
    EXPECT_EQ(readAll(noteFolder().filePath(numbered)), "long");
    EXPECT_TRUE(result.fileSizeList[2].fileName.endsWith(QStringLiteral(".unknow")));
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(DoCopyLogic, AMissingAnEmptyAndANamelessFileEndItWithoutAMessage)
{
    const QString good = deleted(QStringLiteral("good.txt"));
    const QString cases[] = {
        element(QStringLiteral("1.txt"), QStringLiteral("gone.txt")),
        deleted(QStringLiteral("empty.txt"), QByteArray()),
        element(QStringLiteral("1.txt"), QStringLiteral("../good.txt")),
    };
    const QStringList before = copies();
    for (const QString& bad : cases) {
        CopyLogicResult result;
        EXPECT_EQ(paste.DoCopyLogic(listOf(good + bad), result), 0) << qPrintable(bad);
        EXPECT_TRUE(result.attNewList.empty());
    }
    EXPECT_EQ(copies(), before);
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(DoCopyLogic, AFileOfTwoGigabytesEndsItWithoutAMessage)
{
    const QString huge = deleted(QStringLiteral("huge.bin"));
    QFile file(noteFolder().filePath(QStringLiteral("huge.bin")));
    ASSERT_TRUE(file.resize(qint64(0x80000000))); // Holes: nothing is written.
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(huge), result), 0);
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyLogic, AFolderInTheFilesPlaceEndsIt)
{
    ASSERT_TRUE(noteFolder().mkdir(QStringLiteral("folder.txt")));
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(
                  listOf(element(QStringLiteral("1.txt"), QStringLiteral("folder.txt"))), result),
        0);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyLogic, ANoteOfExactlyTheLimitPassesAndOneByteMoreIsTold)
{
    const QString more = deleted(QStringLiteral("b.doc"), "7 bytes");
    page.html.clear();
    noteWeighs(attachstore::attachLimit - 7);
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(more), result), 1);
    EXPECT_TRUE(boxes.texts.isEmpty());

    page.html.clear();
    noteWeighs(attachstore::attachLimit - 6);
    EXPECT_EQ(paste.DoCopyLogic(listOf(more), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(DoCopyLogic, TheSizesOfAllFilesCountTogether)
{
    const QString two =
        deleted(QStringLiteral("b.doc"), "1234") + deleted(QStringLiteral("c.doc"), "5678");
    page.html.clear();
    noteWeighs(attachstore::attachLimit - 7);
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(two), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(DoCopyLogic, AnUnknownTotalIsToldAndLogged)
{
    page.html += element(QStringLiteral("unknown.doc"), QStringLiteral("报告.doc"));
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(deleted(QStringLiteral("b.txt"))), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{totalText});
    EXPECT_EQ(log.take(),
        QStringList({QStringLiteral("[ERROR] 查询报告.doc附件大小失败！"),
            QStringLiteral("[ERROR] DoCopyLogic获取笔记编辑器附件总大小失败！")}));
}

TEST_F(DoCopyLogic, WhatWasTakenOverBeforeAFailureStays)
{
    const QString two = page.html + deleted(QStringLiteral("c.pdf"));
    atPull(2, [this] { QFile::remove(noteFolder().filePath(QStringLiteral("c.pdf"))); });
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(two), result), 0);
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a(1).txt"), QStringLiteral("a.txt")}));
    EXPECT_EQ(result.attNewList.size(), 1u);
}

TEST_F(DoCopyLogic, WithoutAttachmentsNothingIsTakenOver)
{
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic({}, result), 1);
    EXPECT_TRUE(result.attNewList.empty());
    EXPECT_TRUE(result.fileSizeList.empty());
}
