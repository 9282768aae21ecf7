#include "Steps.h"
#include "Tour.h"

#include <QDir>
#include <QFile>
#include <QRgb>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb hitColour = qRgb(0xff, 0xff, 0x11);

} // namespace

void secondNoteByItsButton(Tour& tour)
{
    tour.clickInWindow(269, 17); // right behind the search field
    tour.expectPage(noteDocument + u".body.textContent.trim() === ''"_s);
    tour.type(u"数据库设计\nSQLite and its index"_s);
    tour.expectText(u"SQLite and its index"_s);
}

void switchingKeepsBothNotes(Tour& tour)
{
    // The list has the last changed note first: the new one, the long one, the first one.
    tour.clickRow(2);
    tour.expectText(u"买鸡蛋和牛奶"_s);
    tour.expectFiled(u"数据库设计"_s, u"SQLite and its index"_s);
    tour.shot(u"switched"_s);
    tour.clickRow(0);
    tour.expectText(u"SQLite and its index"_s);
}

void searchFindsChineseAndEnglish(Tour& tour)
{
    tour.key(u"ctrl+f"_s);
    tour.type(u"鸡蛋"_s);
    tour.clickRow(0);
    tour.expectText(u"买鸡蛋和牛奶"_s);
    tour.expect(u"the hit is painted"_s, [&] { return tour.isShown(hitColour); });
    tour.shot(u"search"_s);
    tour.key(u"ctrl+f"_s);
    tour.key(u"ctrl+a"_s);
    tour.type(u"sqlit"_s);
    tour.clickRow(0);
    tour.expectText(u"数据库设计"_s);
    tour.key(u"ctrl+f"_s);
    tour.key(u"ctrl+a"_s);
    tour.key(u"Delete"_s);
    tour.expect(u"no hit is painted any more"_s, [&] { return !tour.isShown(hitColour); });
}

void readOnlyNoteStaysAsItIs(Tour& tour)
{
    const QString readOnly = u"SELECT read_only FROM note WHERE title = '数据库设计'"_s;
    tour.clickNote();
    tour.key(u"ctrl+alt+r"_s);
    tour.expectPage(u"!"_s + noteDocument + u".body.isContentEditable"_s);
    tour.expect(u"the shelf knows"_s, [&] { return tour.records.row(readOnly).value(0) == u"1"; });
    tour.clickNote();
    tour.type(u"must not appear"_s);
    tour.shot(u"read-only"_s);
    tour.key(u"ctrl+alt+r"_s);
    tour.expectPage(noteDocument + u".body.isContentEditable"_s);
    tour.expect(
        u"nothing was typed"_s, [&] { return !tour.noteText().contains(u"must not"_s); }, 0);
    tour.clickNote();
    tour.type(u" again"_s);
    tour.expectText(u"its index again"_s);
}

void binAndBack(Tour& tour)
{
    const QString binned = u"SELECT binned FROM note WHERE title = '数据库设计'"_s;
    tour.key(u"ctrl+shift+Delete"_s);
    tour.expect(
        u"the note is in the bin"_s, [&] { return tour.records.row(binned).value(0) == u"1"; });
    tour.expect(u"another note is open"_s, [&] { return !tour.noteText().contains(u"数据库"_s); });
    tour.key(u"ctrl+alt+b"_s);
    tour.expectText(u"its index again"_s);
    tour.expectPage(u"!"_s + noteDocument + u".body.isContentEditable"_s);
    tour.shot(u"bin"_s);
    tour.key(u"ctrl+alt+z"_s);
    tour.expect(u"the note is back"_s, [&] { return tour.records.row(binned).value(0) == u"0"; });
    tour.clickRow(0);
    tour.expectText(u"its index again"_s);
    tour.expectPage(noteDocument + u".body.isContentEditable"_s);
}

void emptyBinDeletesNoteAndFile(Tour& tour)
{
    tour.key(u"ctrl+n"_s);
    tour.expectPage(noteDocument + u".body.textContent.trim() === ''"_s);
    tour.type(u"To be deleted"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"To be deleted"_s, u"To be deleted"_s);
    const QString file = tour.records
                             .row(u"SELECT file_path FROM file WHERE guid = ?"_s,
                                 {tour.records.note(u"To be deleted"_s)})
                             .value(0);
    tour.key(u"ctrl+shift+Delete"_s);
    tour.expect(u"the note is in the bin"_s, [&] {
        return tour.records.row(u"SELECT binned FROM note WHERE title = 'To be deleted'"_s).value(0)
            == u"1";
    });
    tour.key(u"ctrl+alt+b"_s);
    tour.expectText(u"To be deleted"_s);
    tour.key(u"ctrl+alt+e"_s);
    tour.shot(u"empty-bin"_s);
    tour.key(u"alt+y"_s);
    tour.expect(u"the shelf has forgotten the note"_s,
        [&] { return tour.records.note(u"To be deleted"_s).isEmpty(); });
    tour.expect(u"its file is gone"_s, [&] { return !QFile::exists(file); });
    tour.expect(u"three notes and three files are left"_s, [&] {
        return tour.records.row(u"SELECT count(*) FROM note"_s).value(0) == u"3"
            && QDir(tour.records.storeDir()).entryList(QDir::Files).size() == 3;
    });
}
