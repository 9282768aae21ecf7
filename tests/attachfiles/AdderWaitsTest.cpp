// What an add sees of the note while it waits: pulls, messages, another note, the end of the
// control.

#include "kit/AddingFixture.h"

namespace {

/// Where the steps of an add stand in the order of calls.
int firstAdd(const NotePageOf& page)
{
    return int(page.order.indexOf(QStringLiteral("AddPicToEditor")));
}

} // namespace

TEST_F(AddDropFileToEditor, TheNoteIsPulledOnceForAllFilesAndBothRules)
{
    noteWeighs(10);
    page.html += element(QStringLiteral("old.doc"), QStringLiteral("a.txt"));
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"))),
        record(file(QStringLiteral("b.txt"))), record(file(QStringLiteral("c.txt")))});
    EXPECT_EQ(page.count(QStringLiteral("GetEditorContent")), 1);
    EXPECT_EQ(added(),
        QStringList(
            {QStringLiteral("a(1).txt"), QStringLiteral("b.txt"), QStringLiteral("c.txt")}));
}

TEST_F(AddDropFileToEditor, TheNoteIsPulledAgainBehindAMessage)
{
    noteWeighs(10);
    boxes.onShow = [&] { page.html += element(QStringLiteral("x.txt"), QStringLiteral("a.txt")); };
    adder->AddDropFileToEditor({record(dir.path()), record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(page.count(QStringLiteral("GetEditorContent")), 2);
    EXPECT_EQ(added(), QStringList{QStringLiteral("a(1).txt")});
}

TEST_F(AddDropFileToEditor, TwoFilesOfOneNameInOneDropKeepItUnlessTheNoteHasIt)
{
    const DropFileInfo one = record(file(QStringLiteral("1/a.txt"), "one"));
    const DropFileInfo two = record(file(QStringLiteral("2/a.txt"), "two"));
    page.html = QStringLiteral("<p>x</p>");
    adder->AddDropFileToEditor({one, two});
    EXPECT_EQ(added(), QStringList({QStringLiteral("a.txt"), QStringLiteral("a.txt")}));
    adder->AddDropFileToEditor({one, two});
    EXPECT_EQ(
        added().mid(2), QStringList({QStringLiteral("a(1).txt"), QStringLiteral("a(2).txt")}));
}

TEST_F(AddDropFileToEditor, ANumberedFileKeepsItsTypeAndItsPath)
{
    page.html = QStringLiteral("<p>x</p>");
    const DropFileInfo file1 = record(file(QStringLiteral("a.tar.GZ"), "one"));
    adder->AddDropFileToEditor({file1});
    adder->AddDropFileToEditor({file1});
    EXPECT_EQ(added().last(), QStringLiteral("a.tar(1).GZ"));
    EXPECT_EQ(page.added().back()["type"].asString(), "gz");
}

TEST_F(AddDropFileToEditor, AnotherNoteOpenedDuringThePullGetsNothing)
{
    page.onCall = [&] {
        note.m_curNoteGuid = QStringLiteral("another");
        ++note.m_loads;
    };
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(page.order, QStringList{QStringLiteral("GetEditorContent")});
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(AddDropFileToEditor, AnotherNoteOpenedBehindAMessageGetsNothing)
{
    boxes.onShow = [&] { note.m_curNoteGuid = QStringLiteral("another"); };
    adder->AddDropFileToEditor(
        {record(dir.path()), record(file(QStringLiteral("empty"), QByteArray())),
            record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("暂不支持文件夹粘贴！")});
    EXPECT_EQ(firstAdd(page), -1);
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(AddDropFileToEditor, ANewTextOfTheSameNoteEndsItToo)
{
    page.onCall = [&] { note.m_loads += page.order.last() == u"AddPicToEditor"; };
    adder->AddDropFileToEditor(
        {record(file(QStringLiteral("a.txt"))), record(file(QStringLiteral("b.txt")))});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(copies(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(progress.steps.last(), QStringLiteral("end"));
}

TEST_F(AddDropFileToEditor, TheControlMayEndBehindAMessage)
{
    boxes.onShow = [&] { endControl(); };
    adder->AddDropFileToEditor({record(dir.path()), record(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(boxes.texts.size(), 1);
    EXPECT_EQ(firstAdd(page), -1);
}

TEST_F(AddDropFileToEditor, TheControlMayEndBetweenTwoFiles)
{
    progress.onNext = [&] {
        if (progress.steps.last() == u"b.txt")
            endControl();
    };
    adder->AddDropFileToEditor(
        {record(file(QStringLiteral("a.txt"))), record(file(QStringLiteral("b.txt")))});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(AddDropFileToEditor, CanBeCancelledBetweenFiles)
{
    progress.cancelAt = QStringLiteral("b.txt");
    adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"))),
        record(file(QStringLiteral("b.txt"))), record(file(QStringLiteral("c.txt")))});
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(progress.steps,
        QStringList({QStringLiteral("begin 3"), QStringLiteral("a.txt"), QStringLiteral("b.txt"),
            QStringLiteral("end")}));
    EXPECT_TRUE(boxes.texts.isEmpty());
}
