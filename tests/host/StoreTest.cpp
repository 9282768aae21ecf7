#include "TestShelf.h"

#include "Store.h"

using namespace Qt::StringLiterals;

using SweepLeftoversTest = TestShelf;

TEST_F(SweepLeftoversTest, DeletesTheReplacedNoteFileAndNothingElse)
{
    const QString other = put(u"other.html"_s);
    ASSERT_TRUE(save(u"g"_s, u"1"_s, u"1.html"_s) && save(u"g"_s, u"2"_s, u"2.html"_s));
    sweepLeftovers(shelf, storeDir());
    EXPECT_EQ(QDir(storeDir()).entryList(QDir::Files), (QStringList{u"2.html"_s, u"other.html"_s}));
}

TEST_F(SweepLeftoversTest, EmptiedBinTakesFilesAndFolderOfTheNote)
{
    const QString kept = put(u"kept.png"_s);
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {record(0, u"g.html"_s, put(u"g.html"_s)),
            record(2, u"d.pdf"_s, put(u"g/报告.pdf"_s), u"报告.pdf"_s),
            record(1, u"t.bmp"_s, put(u"t.bmp"_s)), record(1, u"kept.png"_s, kept)},
        {}));
    ASSERT_TRUE(shelf.saveNote(u"h"_s, {record(1, u"kept.png"_s, kept)}, {}));
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    sweepLeftovers(shelf, storeDir());
    EXPECT_EQ(QDir(storeDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList{u"kept.png"_s});
}

TEST_F(SweepLeftoversTest, EmptiedBinTakesTheFilesThatEditsTookOut)
{
    const NewAttachFile note = record(0, u"g.html"_s, put(u"g.html"_s));
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {note, record(2, u"d.pdf"_s, put(u"g/a.pdf"_s), u"a.pdf"_s),
            record(1, u"t.bmp"_s, put(u"t.bmp"_s))},
        {}));
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {note}, {}));
    sweepLeftovers(shelf, storeDir());
    EXPECT_TRUE(QFile::exists(storeDir() + u"/g/a.pdf"_s)) << "the edit may be undone";
    EXPECT_TRUE(QFile::exists(storeDir() + u"/t.bmp"_s));
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    sweepLeftovers(shelf, storeDir());
    EXPECT_TRUE(QDir(storeDir()).isEmpty());
}

TEST_F(SweepLeftoversTest, FolderThatStillHoldsAFileStays)
{
    put(u"g/unknown.txt"_s);
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {record(2, u"d.pdf"_s, put(u"g/a.pdf"_s), u"a.pdf"_s)}, {}));
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    sweepLeftovers(shelf, storeDir());
    EXPECT_EQ(QDir(storeDir() + u"/g"_s).entryList(QDir::Files), QStringList{u"unknown.txt"_s});
}

TEST_F(SweepLeftoversTest, FileOutsideTheStoreIsLeftAlone)
{
    const QString outside = dir.filePath(u"userdata/precious.html"_s);
    QFile file(outside);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    for (const QString& path :
        {outside, storeDir() + u"/../precious.html"_s, storeDir() + u"/x/../../precious.html"_s}) {
        ASSERT_TRUE(shelf.saveNote(u"g"_s, {record(0, u"precious.html"_s, path)}, {}));
        ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
        sweepLeftovers(shelf, storeDir());
        EXPECT_TRUE(QFile::exists(outside)) << qPrintable(path);
    }
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {record(0, {}, {})}, {}));
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    sweepLeftovers(shelf, storeDir());
    EXPECT_TRUE(QDir(storeDir()).exists());
}

TEST_F(SweepLeftoversTest, WhatCannotBeDeletedIsTriedAgain)
{
    ASSERT_TRUE(save(u"g"_s, u"1"_s, u"1.html"_s));
    ASSERT_TRUE(QFile::remove(storeDir() + u"/1.html"_s));
    ASSERT_TRUE(QDir(storeDir()).mkpath(u"1.html/in the way"_s));
    ASSERT_TRUE(save(u"g"_s, u"2"_s, u"2.html"_s));
    sweepLeftovers(shelf, storeDir());
    int left = 0;
    shelf.dropLeftovers([&](const QString&) { return ++left == 0; });
    EXPECT_EQ(left, 1);
    ASSERT_TRUE(QDir(storeDir() + u"/1.html"_s).removeRecursively());
    sweepLeftovers(shelf, storeDir());
    shelf.dropLeftovers([&](const QString&) { return ++left == 0; });
    EXPECT_EQ(left, 1) << "forgotten as soon as the file is gone";
}

class AttachmentFileTest : public TestShelf {
protected:
    QString fileOf(const QString& name, const QString& origName)
    {
        return attachmentFile(shelf, storeDir(), u"g"_s, name, origName);
    }
};

TEST_F(AttachmentFileTest, IsThePathThatTheLastSaveNamed)
{
    const QString path = put(u"g/报告.pdf"_s);
    const QString second = put(u"g/copy.pdf"_s);
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {record(1, u"d.pdf"_s, put(u"d.pdf"_s)), record(2, u"d.pdf"_s, second, u"copy.pdf"_s),
            record(2, u"d.pdf"_s, path, u"报告.pdf"_s)},
        {}));
    EXPECT_EQ(fileOf(u"d.pdf"_s, u"报告.pdf"_s), path);
    EXPECT_EQ(fileOf(u"d.pdf"_s, u"copy.pdf"_s), second);
}

TEST_F(AttachmentFileTest, IsTheStoreFileOfThatNameWhereThePathIsMissing)
{
    const QString inStore = put(u"old.pdf"_s);
    EXPECT_EQ(fileOf(u"old.pdf"_s, {}), inStore) << "an attachment of an old note is in no list";
    ASSERT_TRUE(shelf.saveNote(
        u"g"_s, {record(2, u"old.pdf"_s, storeDir() + u"/g/gone.pdf"_s, u"gone.pdf"_s)}, {}));
    EXPECT_EQ(fileOf(u"old.pdf"_s, u"gone.pdf"_s), inStore);
}

TEST_F(AttachmentFileTest, IsEmptyWhereThereIsNoFile)
{
    EXPECT_EQ(fileOf(u"none.pdf"_s, u"none.pdf"_s), QString());
}

TEST_F(AttachmentFileTest, NeverLeadsOutOfTheStore)
{
    QFile outside(dir.filePath(u"userdata/secret.txt"_s));
    ASSERT_TRUE(outside.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QDir(storeDir()).mkpath(u"sub"_s));
    put(u"sub/inner.txt"_s);
    put(u"plain"_s);
    for (const QString& name : {u"../secret.txt"_s, outside.fileName(), u"sub/inner.txt"_s,
             u"sub"_s, u"."_s, u".."_s, u""_s, u"plain\0x"_s, u"sub/../plain"_s})
        EXPECT_EQ(fileOf(name, {}), QString()) << qPrintable(name);
}

using NoteFileTest = TestShelf;

TEST_F(NoteFileTest, IsTheFileOfTheLastSaveAndEmptyForANoteThatIsNotOnTheShelf)
{
    EXPECT_EQ(noteFile(shelf, storeDir(), u"g"_s), QString());
    ASSERT_TRUE(save(u"g"_s, u"1"_s, u"1.html"_s) && save(u"g"_s, u"2"_s, u"2.html"_s));
    EXPECT_EQ(noteFile(shelf, storeDir(), u"g"_s), storeDir() + u"/2.html"_s);
    EXPECT_EQ(noteFile(shelf, storeDir(), {}), QString());
}

TEST_F(NoteFileTest, IsEmptyForANoteOfSeveralFiles)
{
    ASSERT_TRUE(shelf.saveNote(
        u"g"_s, {record(0, u"1.html"_s, put(u"1.html"_s)), record(0, u"2.html"_s, {})}, {}));
    EXPECT_EQ(noteFile(shelf, storeDir(), u"g"_s), QString());
}

using SaveCopyTest = TestShelf;

TEST_F(SaveCopyTest, ACopyIsWholeOrTheTargetStaysAsItWas)
{
    const QString source = put(u"a.bin"_s, QByteArray(3'000'000, 'x'));
    const QString target = put(u"b.bin"_s, "old");
    EXPECT_FALSE(saveCopy(storeDir() + u"/missing"_s, target));
    EXPECT_FALSE(saveCopy(storeDir(), target));
    EXPECT_EQ(QFileInfo(target).size(), 3);
    EXPECT_FALSE(saveCopy(source, storeDir() + u"/no/such/folder/b"_s));
    EXPECT_TRUE(saveCopy(source, target));
    EXPECT_EQ(QFileInfo(target).size(), 3'000'000);
    EXPECT_TRUE(saveCopy(source, source));
    EXPECT_EQ(QFileInfo(source).size(), 3'000'000);
    put(u"empty"_s, {});
    EXPECT_TRUE(saveCopy(storeDir() + u"/empty"_s, target));
    EXPECT_EQ(QFileInfo(target).size(), 0);
}
