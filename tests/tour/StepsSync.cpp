// Attachments that are edited in another program: in the note that is open, and in one that is not.

#include "Steps.h"
#include "TestDisplay.h"
#include "Tour.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString document = u"Annual report.docx"_s;
const QString pictures = noteDocument + u".querySelectorAll('img[nm_exdata]').length"_s;

/// The working copy of an attachment, as the shelf names it.
QString workingCopy(Tour& tour, const QString& name)
{
    const QStringList row =
        tour.records.row(u"SELECT file_path FROM file WHERE orig_name = ?"_s, {name});
    if (row.isEmpty())
        throw StepFailure("the shelf has no " + name.toStdString());
    return row[0];
}

/// Saves a file as a word processor does, in a process of its own: a new file takes the old name.
void editElsewhere(const QString& path, const QString& content)
{
    runTool(u"sh"_s,
        {u"-c"_s, u"printf '%s' \"$2\" > \"$1.new\" && mv \"$1.new\" \"$1\""_s, u"sh"_s, path,
            content});
}

/// The name under which the note has what the file holds now.
QString hashName(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        throw StepFailure("cannot read " + path.toStdString());
    return QString::fromLatin1(hash.result().toHex()) + u'.' + QFileInfo(path).suffix();
}

/// Waits until the shelf has the file's new content by name and by size.
void expectOnShelf(Tour& tour, const QString& path)
{
    const QStringList wanted{hashName(path), QString::number(QFileInfo(path).size())};
    tour.expect(u"the shelf has the new content"_s, [&] {
        return tour.records.row(u"SELECT file_name, size FROM file WHERE file_path = ?"_s, {path})
            == wanted;
    });
}

/// Waits until the note in the page names the file's new content and shows its card.
void expectInPage(Tour& tour, const QString& path)
{
    tour.expectPage(u"[..."_s + noteDocument
        + u".querySelectorAll('img[nm_exdata]')].some(e => e.getAttribute('class').endsWith('%1')"
          " && e.complete && e.naturalWidth > 0)"_s.arg(hashName(path)));
}

} // namespace

void anAttachmentIsEditedElsewhere(Tour& tour)
{
    tour.startHost();
    tour.expectText(u"Trip"_s);
    tour.clickNote();
    tour.type(u" while it is edited"_s);
    const QString path = workingCopy(tour, document);
    editElsewhere(path, u"The report, written anew."_s);
    expectInPage(tour, path);
    expectOnShelf(tour, path);
    tour.expectFiled(u"Trip"_s, u"while it is edited"_s);
    tour.shot(u"edited-elsewhere"_s);
    // The host has handed the new sizes over, or nothing more could be added.
    const QString more = tour.desktopFile(u"more.txt"_s);
    QFile file(more);
    if (!file.open(QIODevice::WriteOnly) || file.write("more") != 4)
        throw StepFailure("cannot write " + more.toStdString());
    file.close();
    const int before = tour.page(pictures).toInt();
    tour.drag({more});
    tour.expectPage(pictures + u" === %1"_s.arg(before + 1));
    tour.key(u"ctrl+s"_s);
}

void anAttachmentOfAClosedNoteIsEditedElsewhere(Tour& tour)
{
    tour.key(u"ctrl+n"_s);
    tour.expect(u"the new note is there"_s, [&] { return tour.noteText().trimmed().isEmpty(); });
    tour.type(u"Another note"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"Another note"_s, u"Another note"_s);
    const QString path = workingCopy(tour, document);
    editElsewhere(path, u"Changed while its note was closed."_s);
    expectOnShelf(tour, path);
    tour.expectText(u"Another note"_s);
    tour.expectFiled(u"Trip"_s, u"while it is edited"_s);
    tour.clickRow(0); // as the note that was changed last
    tour.expectText(u"while it is edited"_s);
    expectInPage(tour, path);
    tour.expectPage(u"[..."_s + noteDocument
        + u".querySelectorAll('img[nm_exdata]')].every(e => e.complete && e.naturalWidth > 0)"_s);
    tour.shot(u"edited-while-closed"_s);
    tour.quitHost();
}
