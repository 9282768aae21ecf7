#include "kit/AddingFixture.h"
#include "kit/FileLock.h"

#include "attachfiles/FileChooser.h"

#include <sys/stat.h>

namespace {

const QString inUseText = QStringLiteral("不能添加正在编辑的文件作为附件！");

class OnAddAttachment : public Adding {
protected:
    ChosenFiles dialog;
    QWidget host;

    void SetUp() override
    {
        page.browser.setParent(&host);
        page.html = QStringLiteral("<p>x</p>");
    }
    void TearDown() override { page.browser.setParent(nullptr); }

    void choose(const QStringList& paths)
    {
        dialog.paths = paths;
        FileChooser(page, *adder, boxes, dialog, progress).OnAddAttachment();
    }
    bool hasFocus() const { return host.focusWidget() == &page.browser; }
};

} // namespace

TEST_F(OnAddAttachment, CancelChangesNothing)
{
    dialog.accepted = false;
    choose({file(QStringLiteral("a.txt"))});
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(progress.steps.isEmpty());
    EXPECT_FALSE(hasFocus());
}

TEST_F(OnAddAttachment, AnEmptySelectionChangesNothing)
{
    choose({});
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
}

TEST_F(OnAddAttachment, AddsInTheDialogsOrderAndGivesThePageTheFocus)
{
    choose({file(QStringLiteral("b.txt")), file(QStringLiteral("a.txt"))});
    EXPECT_EQ(added(), QStringList({QStringLiteral("b.txt"), QStringLiteral("a.txt")}));
    EXPECT_TRUE(hasFocus());
}

TEST_F(OnAddAttachment, TwoFilesOfOneNameGetDifferentNames)
{
    choose({file(QStringLiteral("1/a.txt"), "one"), file(QStringLiteral("2/a.txt"), "two")});
    EXPECT_EQ(added(), QStringList({QStringLiteral("a.txt"), QStringLiteral("a(1).txt")}));
}

TEST_F(OnAddAttachment, EachFileHasItsOwnMessage)
{
    const QString empty = file(QStringLiteral("empty"), QByteArray());
    choose({empty, file(QStringLiteral("a.txt")), empty});
    EXPECT_EQ(boxes.texts,
        QStringList({QStringLiteral("不能上传文件大小为0的附件！"),
            QStringLiteral("不能上传文件大小为0的附件！")}));
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(OnAddAttachment, ALockedFileIsInUseAndTheRestIsGivenUp)
{
    for (const auto kind : {FileLock::Exclusive, FileLock::Shared, FileLock::RecordForWriting,
             FileLock::RecordForReading}) {
        boxes.texts.clear();
        page.calls.clear();
        const QString locked = file(QStringLiteral("locked%1.txt").arg(kind));
        const FileLock lock(locked, kind);
        choose({file(QStringLiteral("a%1.txt").arg(kind)), locked, file(QStringLiteral("b.txt"))});
        EXPECT_EQ(boxes.texts, QStringList{inUseText});
        EXPECT_EQ(added().size(), 1);
        EXPECT_EQ(progress.steps.last(), QStringLiteral("end"));
    }
}

TEST_F(OnAddAttachment, TheFocusStaysWhenAFileWasTold)
{
    choose({file(QStringLiteral("a.txt")), dir.filePath(QStringLiteral("missing"))});
    EXPECT_EQ(added().size(), 1);
    EXPECT_FALSE(hasFocus());
}

TEST_F(OnAddAttachment, WhatCannotBeOpenedIsAnInvalidPathAndTheRestIsGivenUp)
{
    const QString fifo = dir.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString dangling = dir.filePath(QStringLiteral("dangling"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), dangling));
    for (const QString& path : {dir.filePath(QStringLiteral("missing %1.txt")), dir.path(), fifo,
             dangling, QStringLiteral("/dev/zero")}) {
        boxes.texts.clear();
        choose({path, file(QStringLiteral("b.txt"))});
        EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("无效文件路径:") + path});
        EXPECT_TRUE(added().isEmpty());
    }
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(OnAddAttachment, NoLockIsKept)
{
    const QString path = file(QStringLiteral("a.txt"));
    choose({path});
    EXPECT_TRUE(FileLock::isFree(path));
}

TEST_F(OnAddAttachment, TheWorkingDirectoryStays)
{
    const QString before = QDir::currentPath();
    choose({file(QStringLiteral("a.txt"))});
    EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(OnAddAttachment, AnotherNoteOpenedDuringTheDialogGetsNothing)
{
    dialog.onChoose = [&] { note.m_curNoteGuid = QStringLiteral("another"); };
    choose({file(QStringLiteral("a.txt"))});
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_FALSE(hasFocus());
}

TEST_F(OnAddAttachment, AnotherNoteOpenedBetweenTwoFilesGetsNothing)
{
    page.onCall = [&] { note.m_loads += page.order.last() == u"AddPicToEditor"; };
    choose({file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_FALSE(hasFocus());
}

TEST_F(OnAddAttachment, TheControlMayEndDuringTheDialog)
{
    dialog.onChoose = [&] { endControl(); };
    choose({file(QStringLiteral("a.txt"))});
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(OnAddAttachment, CanBeCancelledBetweenFiles)
{
    progress.cancelAt = QStringLiteral("b.txt");
    choose({file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt")),
        file(QStringLiteral("c.txt"))});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_TRUE(hasFocus());
    EXPECT_EQ(progress.steps.last(), QStringLiteral("end"));
}

TEST_F(OnAddAttachment, AReadOnlyNoteStaysAsItIs)
{
    note.m_readOnly = 1;
    choose({file(QStringLiteral("a.txt"))});
    EXPECT_TRUE(page.order.isEmpty());
}
