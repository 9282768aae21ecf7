#include "TestShelf.h"

#include <QSqlError>

using namespace Qt::StringLiterals;

namespace {

QStringList leftovers(Shelf& shelf)
{
    QStringList paths;
    shelf.dropLeftovers([&](const QString& path) {
        paths += path;
        return false;
    });
    paths.sort();
    return paths;
}

/// The shelf's own connection, to make it fail.
QSqlDatabase connectionTo(const QString& path)
{
    for (const QString& name : QSqlDatabase::connectionNames())
        if (QSqlDatabase::database(name, false).databaseName() == path)
            return QSqlDatabase::database(name, false);
    return {};
}

} // namespace

class ShelfTest : public TestShelf {
protected:
    int rowsOf(const QString& table) const
    {
        QSqlQuery row(u"SELECT count(*) FROM "_s + table, connectionTo(databasePath()));
        return row.next() ? row.value(0).toInt() : -1;
    }
};

TEST_F(ShelfTest, FileListComesBackFieldByFieldInItsOrder)
{
    NewAttachFile whole;
    whole.origName = u"年度 报告\\\"'%_.pdf"_s;
    whole.spareText = u"spare"_s;
    whole.fileType = 2;
    whole.modifyTime = u"2024-02-29 23:59:59"_s;
    whole.fileExt = u"pdf"_s;
    whole.fileName = u"0123456789abcdef.pdf"_s;
    whole.filePath = u"/none/年度.pdf"_s;
    whole.isSrcFile = 1;
    NewAttachFile withNul;
    withNul.origName = u"a\0b"_s;
    const std::vector<NewAttachFile> list{record(0, u"z.html"_s, put(u"z.html"_s)), whole,
        NewAttachFile(), withNul, record(1, u"a.bmp"_s, u"/none/a.bmp"_s), whole};
    ASSERT_TRUE(shelf.saveNote(u"g"_s, list, u"text"_s)) << qPrintable(shelf.errorText());
    EXPECT_EQ(shelf.files(u"g"_s), list);
}

TEST_F(ShelfTest, LoneSurrogateIsStoredAsReplacementCharacter)
{
    NewAttachFile file;
    file.origName = u"a"_s + QChar(0xD800) + u"b"_s;
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {file}, u"x"_s + QChar(0xDC00)));
    EXPECT_EQ(shelf.files(u"g"_s).front().origName, u"a\uFFFDb"_s);
    EXPECT_EQ(shelf.note(u"g"_s)->title, u"x\uFFFD"_s);
}

TEST_F(ShelfTest, SizesAreThoseFoundOnDiskAndMissingFilesHaveNone)
{
    const QString html = put(u"n.html"_s, QByteArray(300, 'h'));
    const QString pdf = put(u"g/报告.pdf"_s, QByteArray(5000, 'p'));
    const QString empty = put(u"e.txt"_s, {});
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {record(0, u"n.html"_s, html), record(2, u"d1.pdf"_s, pdf, u"报告.pdf"_s),
            record(1, u"d2.bmp"_s, storeDir() + u"/d2.bmp"_s),
            record(2, u"e.txt"_s, empty, u"e.txt"_s), record(2, u"dir"_s, storeDir()),
            record(2, u"nopath"_s, {})},
        u"text"_s));
    const std::map<QString, quint64> expected{
        {u"n.html"_s, 300}, {u"d1.pdf"_s, 5000}, {u"e.txt"_s, 0}};
    EXPECT_EQ(shelf.fileSizes(u"g"_s), expected);
    EXPECT_EQ(shelf.note(u"g"_s)->bytes, 5300);
}

TEST_F(ShelfTest, PictureListedTwiceUnderOnePathIsSummedOnce)
{
    const QString picture = put(u"p.png"_s, QByteArray(1000, 'p'));
    const QString working = put(u"g/photo.png"_s, QByteArray(1000, 'p'));
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {record(0, u"n.html"_s, put(u"n.html"_s, "12")),
            record(2, u"p.png"_s, working, u"photo.png"_s), record(1, u"p.png"_s, picture),
            record(1, u"p.png"_s, picture)},
        {}));
    EXPECT_EQ(shelf.note(u"g"_s)->bytes, 2002);
    EXPECT_EQ(shelf.note(u"g"_s)->attachments, 1);
}

TEST_F(ShelfTest, HtmlFilesAreTheRecordsOfTypeZero)
{
    ASSERT_TRUE(shelf.saveNote(u"g"_s,
        {record(0, u"one.html"_s, {}), record(2, u"a.pdf"_s, {}), record(0, u"two.html"_s, {})},
        {}));
    EXPECT_EQ(shelf.htmlFiles(u"g"_s), (std::vector<QString>{u"one.html"_s, u"two.html"_s}));
    EXPECT_TRUE(shelf.htmlFiles(u"unknown"_s).empty());
}

TEST_F(ShelfTest, SecondSaveReplacesListTextAndSizes)
{
    ASSERT_TRUE(save(u"g"_s, u"first words"_s, u"1.html"_s));
    ASSERT_TRUE(save(u"g"_s, u"other text"_s, u"2.html"_s));
    EXPECT_EQ(shelf.htmlFiles(u"g"_s), std::vector<QString>{u"2.html"_s});
    EXPECT_EQ(shelf.fileSizes(u"g"_s).count(u"1.html"_s), 0U);
    EXPECT_EQ(shelf.notes(Shelf::Place::List).size(), 1U);
    EXPECT_EQ(found(u"first"_s), QStringList());
    EXPECT_EQ(found(u"other"_s), QStringList{u"g"_s});
}

TEST_F(ShelfTest, TitleIsFirstLineThenFirstAttachmentThenEmpty)
{
    ASSERT_TRUE(save(u"text"_s, u"\n \n  购物  清单\nmilk\neggs"_s));
    EXPECT_EQ(shelf.note(u"text"_s)->title, u"购物 清单"_s);
    EXPECT_EQ(shelf.note(u"text"_s)->excerpt, u"milk eggs"_s);
    ASSERT_TRUE(shelf.saveNote(
        u"file"_s, {record(0, u"a.html"_s, {}), record(2, u"b.pdf"_s, {}, u"报告.pdf"_s)}, {}));
    EXPECT_EQ(shelf.note(u"file"_s)->title, u"报告.pdf"_s);
    ASSERT_TRUE(shelf.saveNote(u"none"_s, {}, u"  \n"_s));
    EXPECT_EQ(shelf.note(u"none"_s)->title, QString());
    ASSERT_TRUE(save(u"one"_s, u"only line"_s));
    EXPECT_EQ(shelf.note(u"one"_s)->excerpt, QString());
}

TEST_F(ShelfTest, NotesAreListedLastChangedFirst)
{
    ASSERT_TRUE(save(u"a"_s, u"a"_s));
    ASSERT_TRUE(save(u"b"_s, u"b"_s));
    ASSERT_TRUE(save(u"c"_s, u"c"_s));
    QSqlQuery old(connectionTo(databasePath()));
    ASSERT_TRUE(old.exec(
        u"UPDATE note SET changed = CASE guid WHEN 'a' THEN 2 WHEN 'b' THEN 3 ELSE 1 END"_s));
    QStringList order;
    for (const NoteSummary& note : shelf.notes(Shelf::Place::List))
        order += note.guid;
    EXPECT_EQ(order, (QStringList{u"b"_s, u"a"_s, u"c"_s}));
}

TEST_F(ShelfTest, ReadOnlyIsKept)
{
    ASSERT_TRUE(save(u"g"_s, u"text"_s));
    EXPECT_FALSE(shelf.note(u"g"_s)->readOnly);
    ASSERT_TRUE(shelf.setReadOnly(u"g"_s, true));
    ASSERT_TRUE(save(u"g"_s, u"text 2"_s));
    EXPECT_TRUE(shelf.note(u"g"_s)->readOnly);
}

TEST_F(ShelfTest, BinnedNoteIsInTheBinAloneAndComesBackWhole)
{
    ASSERT_TRUE(save(u"g"_s, u"some text"_s));
    const auto files = shelf.files(u"g"_s);
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true));
    EXPECT_TRUE(shelf.notes(Shelf::Place::List).empty());
    ASSERT_EQ(shelf.notes(Shelf::Place::Bin).size(), 1U);
    EXPECT_EQ(shelf.binCount(), 1);
    EXPECT_EQ(found(u"some"_s), QStringList());
    EXPECT_EQ(shelf.notes(Shelf::Place::Bin, u"some"_s).size(), 1U);
    ASSERT_TRUE(shelf.setBinned(u"g"_s, false));
    EXPECT_EQ(shelf.files(u"g"_s), files);
    EXPECT_EQ(found(u"some"_s), QStringList{u"g"_s});
}

TEST_F(ShelfTest, EmptyBinForgetsBinnedNotesAlone)
{
    ASSERT_TRUE(
        save(u"keep"_s, u"kept"_s, u"k.html"_s) && save(u"drop"_s, u"dropped"_s, u"d.html"_s));
    ASSERT_TRUE(shelf.setBinned(u"drop"_s, true));
    ASSERT_TRUE(shelf.emptyBin());
    EXPECT_FALSE(shelf.note(u"drop"_s));
    EXPECT_TRUE(shelf.files(u"drop"_s).empty());
    EXPECT_EQ(shelf.binCount(), 0);
    EXPECT_EQ(found({}), QStringList{u"keep"_s});
    EXPECT_EQ(rowsOf(u"note_text"_s), 1);
}

TEST_F(ShelfTest, NoteFileThatASaveReplacedIsALeftover)
{
    ASSERT_TRUE(save(u"g"_s, u"1"_s, u"1.html"_s));
    EXPECT_EQ(leftovers(shelf), QStringList());
    ASSERT_TRUE(save(u"g"_s, u"2"_s, u"2.html"_s));
    EXPECT_EQ(leftovers(shelf), QStringList{storeDir() + u"/1.html"_s});
    ASSERT_TRUE(save(u"g"_s, u"1"_s, u"1.html"_s)); // typed back to the old text
    EXPECT_EQ(leftovers(shelf), QStringList{storeDir() + u"/2.html"_s});
}

TEST_F(ShelfTest, FileThatAnotherNoteHasIsNoLeftover)
{
    ASSERT_TRUE(save(u"a"_s, u"same"_s, u"same.html"_s) && save(u"b"_s, u"same"_s, u"same.html"_s));
    ASSERT_TRUE(save(u"a"_s, u"new"_s, u"new.html"_s));
    EXPECT_EQ(leftovers(shelf), QStringList());
    ASSERT_TRUE(shelf.setBinned(u"b"_s, true));
    EXPECT_EQ(leftovers(shelf), QStringList()) << "the bin is still a note's place";
    ASSERT_TRUE(shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), QStringList{storeDir() + u"/same.html"_s});
}

TEST_F(ShelfTest, AttachmentTakenOutByAnEditIsKeptUntilTheNoteGoes)
{
    const NewAttachFile picture = record(1, u"p.png"_s, put(u"p.png"_s));
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {record(0, u"1.html"_s, put(u"1.html"_s)), picture}, {}));
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {record(0, u"1.html"_s, put(u"1.html"_s))}, {}));
    EXPECT_EQ(leftovers(shelf), QStringList());
    ASSERT_TRUE(save(u"g"_s, u"a later edit"_s, u"2.html"_s));
    EXPECT_EQ(leftovers(shelf), QStringList{storeDir() + u"/1.html"_s});
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true));
    EXPECT_EQ(leftovers(shelf), QStringList{storeDir() + u"/1.html"_s}) << "it may be restored";
    ASSERT_TRUE(shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf),
        (QStringList{
            storeDir() + u"/1.html"_s, storeDir() + u"/2.html"_s, storeDir() + u"/p.png"_s}));
    EXPECT_EQ(rowsOf(u"former"_s), 0);
}

TEST_F(ShelfTest, AttachmentThatAnUndoBringsBackIsTheNotesAsBefore)
{
    const NewAttachFile note = record(0, u"1.html"_s, put(u"1.html"_s));
    const NewAttachFile picture = record(1, u"p.png"_s, put(u"p.png"_s));
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {note, picture}, {}));
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {note}, {}));
    EXPECT_EQ(rowsOf(u"former"_s), 1);
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {note, picture}, {}));
    EXPECT_EQ(rowsOf(u"former"_s), 0);
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), (QStringList{storeDir() + u"/1.html"_s, storeDir() + u"/p.png"_s}));
}

TEST_F(ShelfTest, AttachmentThatAnotherNoteHasOrHadIsNoLeftover)
{
    const NewAttachFile picture = record(1, u"p.png"_s, put(u"p.png"_s));
    for (const QString& guid : {u"has"_s, u"had"_s, u"gone"_s})
        ASSERT_TRUE(shelf.saveNote(guid, {picture}, {}));
    for (const QString& guid : {u"had"_s, u"gone"_s})
        ASSERT_TRUE(shelf.saveNote(guid, {}, {}));
    ASSERT_TRUE(shelf.setBinned(u"gone"_s, true) && shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), QStringList());
    ASSERT_TRUE(shelf.setBinned(u"has"_s, true) && shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), QStringList()) << "an undo in the other note may bring it back";
    ASSERT_TRUE(shelf.setBinned(u"had"_s, true) && shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), QStringList{picture.filePath});
}

TEST_F(ShelfTest, FullDatabaseRefusesTheSaveAndKeepsTheOldState)
{
    ASSERT_TRUE(save(u"g"_s, u"old words"_s, u"old.html"_s));
    QSqlDatabase database = connectionTo(databasePath());
    QSqlQuery limit(u"PRAGMA page_count"_s, database);
    ASSERT_TRUE(limit.next());
    const QString pages = limit.value(0).toString();
    limit.finish();
    ASSERT_TRUE(limit.exec(u"PRAGMA max_page_count = "_s + pages));
    limit.finish();
    QString large;
    for (int i = 0; i < 100'000; ++i)
        large += QString::number(i);
    EXPECT_FALSE(save(u"g"_s, large, u"new.html"_s));
    EXPECT_FALSE(shelf.errorText().isEmpty());
    EXPECT_EQ(shelf.htmlFiles(u"g"_s), std::vector<QString>{u"old.html"_s});
    EXPECT_EQ(found(u"old words"_s), QStringList{u"g"_s});
    EXPECT_EQ(leftovers(shelf), QStringList());

    ASSERT_TRUE(limit.exec(u"PRAGMA max_page_count = 1000000"_s));
    limit.finish();
    EXPECT_TRUE(save(u"g"_s, large, u"new.html"_s))
        << "the same save works when there is room again";
}

TEST_F(ShelfTest, LockedDatabaseRefusesTheSave)
{
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        other.setDatabaseName(databasePath());
        ASSERT_TRUE(other.open());
        ASSERT_TRUE(QSqlQuery(other).exec(u"BEGIN IMMEDIATE"_s));
        EXPECT_FALSE(save(u"g"_s, u"text"_s));
        EXPECT_EQ(shelf.errorText(), u"database is locked"_s);
        ASSERT_TRUE(QSqlQuery(other).exec(u"ROLLBACK"_s));
        EXPECT_TRUE(save(u"g"_s, u"text"_s));
    }
    QSqlDatabase::removeDatabase(u"other"_s);
}

TEST_F(ShelfTest, AnotherShelfOnTheFileSeesTheSave)
{
    ASSERT_TRUE(save(u"g"_s, u"text 文字"_s));
    Shelf second;
    ASSERT_TRUE(second.open(databasePath()));
    EXPECT_EQ(second.note(u"g"_s)->title, u"text 文字"_s);
    EXPECT_EQ(second.files(u"g"_s), shelf.files(u"g"_s));
}

TEST_F(ShelfTest, CommitsAreOnTheDiskWhenTheyReturn)
{
    QSqlQuery pragma(u"PRAGMA synchronous"_s, connectionTo(databasePath()));
    ASSERT_TRUE(pragma.next());
    EXPECT_EQ(pragma.value(0).toInt(), 2) << "2 is FULL: the log is flushed at each commit";
}

TEST(ShelfOpenTest, RefusesWhatIsNoShelf)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"shelf.sqlite"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    Shelf shelf;
    EXPECT_FALSE(shelf.open(path));
    EXPECT_FALSE(shelf.errorText().isEmpty());
    EXPECT_FALSE(Shelf().open(dir.filePath(u"no/such/directory/shelf.sqlite"_s)));
}

TEST(ShelfOpenTest, RefusesAShelfOfANewerVersion)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"shelf.sqlite"_s);
    {
        Shelf shelf;
        ASSERT_TRUE(shelf.open(path));
        ASSERT_TRUE(QSqlQuery(connectionTo(path)).exec(u"PRAGMA user_version = 3"_s));
    }
    Shelf shelf;
    EXPECT_FALSE(shelf.open(path));
    EXPECT_EQ(shelf.errorText(), u"unknown version 3"_s);
}

TEST(ShelfOpenTest, RaisesAShelfOfVersionOneWithItsNotes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"shelf.sqlite"_s);
    NewAttachFile picture;
    picture.fileType = 1;
    picture.filePath = dir.filePath(u"p.png"_s);
    {
        Shelf shelf;
        ASSERT_TRUE(shelf.open(path) && shelf.saveNote(u"g"_s, {picture}, u"text"_s));
        QSqlQuery old(connectionTo(path));
        for (const QString& step :
            {u"DROP TRIGGER file_taken_out"_s, u"DROP TRIGGER note_deleted"_s,
                u"DROP TRIGGER file_in_use_again"_s, u"DROP TABLE former"_s,
                u"CREATE TRIGGER note_deleted BEFORE DELETE ON note BEGIN"
                " INSERT OR IGNORE INTO leftover SELECT file_path FROM file WHERE guid = old.guid;"
                " DELETE FROM note_text WHERE rowid = old.id; END"_s,
                u"CREATE TRIGGER file_in_use_again AFTER INSERT ON file BEGIN"
                " DELETE FROM leftover WHERE file_path = new.file_path; END"_s,
                u"PRAGMA user_version = 1"_s})
            ASSERT_TRUE(old.exec(step)) << qPrintable(old.lastError().text());
    }
    Shelf shelf;
    ASSERT_TRUE(shelf.open(path)) << qPrintable(shelf.errorText());
    EXPECT_EQ(shelf.note(u"g"_s)->title, u"text"_s);
    ASSERT_TRUE(shelf.saveNote(u"g"_s, {}, u"text"_s));
    ASSERT_TRUE(shelf.setBinned(u"g"_s, true) && shelf.emptyBin());
    EXPECT_EQ(leftovers(shelf), QStringList{picture.filePath});
}

TEST(ShelfOpenTest, OpensItsOwnFileAgain)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"shelf.sqlite"_s);
    {
        Shelf shelf;
        ASSERT_TRUE(shelf.open(path) && shelf.saveNote(u"g"_s, {}, u"text"_s));
    }
    Shelf shelf;
    ASSERT_TRUE(shelf.open(path));
    EXPECT_EQ(shelf.note(u"g"_s)->title, u"text"_s);
}
