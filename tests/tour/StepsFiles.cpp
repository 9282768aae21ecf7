// Files become attachments: dragged from another program, chosen in the dialog, opened, kept.

#include "Steps.h"
#include "TestDisplay.h"
#include "Tour.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString pictures = noteDocument + u".querySelectorAll('img[nm_exdata]').length"_s;
const QString allShown = u"[..."_s + noteDocument
    + u".querySelectorAll('img[nm_exdata]')].every(e => e.complete && e.naturalWidth > 0)"_s;

/// The card of a file with that extension.
QString card(const QString& extension)
{
    return u"[..."_s + noteDocument
        + u".querySelectorAll('img[nm_exdata]')].find(e => e.getAttribute('class').endsWith('%1'))"_s
              .arg(extension);
}

void writeFile(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, 'n')) != size)
        throw StepFailure("cannot write " + path.toStdString());
}

void writePicture(const QString& path)
{
    QImage picture(320, 180, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient sky(0, 0, 0, 180);
    sky.setColorAt(0, QColor(0x3a7bd5));
    sky.setColorAt(1, QColor(0xf4d3a0));
    painter.fillRect(picture.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(0xfff3c4));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPoint(230, 70), 28, 28);
    painter.end();
    if (!picture.save(path))
        throw StepFailure("cannot write " + path.toStdString());
}

/// What the shelf has of an attachment by that name, against the file that the user gave.
void expectAttached(Tour& tour, const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    QStringList row;
    tour.expect(name + u" is on the shelf"_s, [&] {
        row = tour.records.row(
            u"SELECT file_path, size, modify_time FROM file WHERE orig_name = ?"_s, {name});
        return row.size() == 3;
    });
    QFile given(path), kept(row[0]);
    if (!given.open(QIODevice::ReadOnly) || !kept.open(QIODevice::ReadOnly)
        || given.readAll() != kept.readAll())
        throw StepFailure(row[0].toStdString() + " is not what was given");
    if (row[1].toLongLong() != given.size() || row[2].isEmpty())
        throw StepFailure("the shelf has no size or time of " + name.toStdString());
}

} // namespace

void filesAreDroppedFromAFileManager(Tour& tour)
{
    const QStringList files{tour.desktopFile(u"Annual report.docx"_s),
        tour.desktopFile(u"预算.xlsx"_s), tour.desktopFile(u"Minutes.pdf"_s),
        tour.desktopFile(u"Evening.png"_s)};
    for (int i = 0; i < 3; ++i)
        writeFile(files[i], 2000 + 700'000 * i);
    writePicture(files[3]);
    tour.startHost();
    tour.expectText(u"Imported"_s); // the host is ready: it shows the note of the last time
    tour.key(u"ctrl+n"_s);
    tour.expect(u"the new note is there"_s, [&] { return tour.noteText().trimmed().isEmpty(); });
    tour.type(u"Trip"_s);
    tour.key(u"Return"_s);
    tour.drag(files, u"dropping"_s);
    tour.expectPage(pictures + u" === 4 && "_s + allShown);
    tour.key(u"ctrl+s"_s);
    for (const QString& file : files)
        expectAttached(tour, file);
    tour.shot(u"dropped"_s);
}

void twoMoreAreChosenInTheDialog(Tour& tour)
{
    const QStringList files{tour.desktopFile(u"Music.mp3"_s), tour.desktopFile(u"archive.zip"_s)};
    for (const QString& file : files)
        writeFile(file, 4321);
    tour.clickButton(u"Attach files"_s);
    tour.expectWindow(u"nomarhost"_s, 2);
    tour.shot(u"file-dialog"_s);
    tour.type(u'"' + files.join(u"\" \""_s) + u'"');
    tour.key(u"Return"_s);
    tour.expectPage(pictures + u" === 6 && "_s + allShown);
    tour.key(u"ctrl+s"_s);
    for (const QString& file : files)
        expectAttached(tour, file);
    tour.shot(u"chosen"_s);
}

void aSecondFileOfThatNameGetsANumber(Tour& tour)
{
    const QString file = tour.desktopFile(u"Minutes.pdf"_s);
    writeFile(file, 99);
    tour.drag({file});
    tour.expectPage(pictures + u" === 7 && "_s + allShown);
    tour.key(u"ctrl+s"_s);
    tour.expect(u"the copy is numbered"_s, [&] {
        return tour.records.row(u"SELECT size FROM file WHERE orig_name = 'Minutes(1).pdf'"_s)
            == QStringList{u"99"_s};
    });
}

void aFolderAndAnEmptyFileAreRefused(Tour& tour)
{
    const QString empty = tour.desktopFile(u"empty.txt"_s);
    writeFile(empty, 0);
    tour.drag({QFileInfo(empty).path(), empty});
    for (const char* box : {"folder", "empty"}) {
        tour.expectWindow(u"nomarhost"_s, 2);
        tour.shot(u"refused-"_s + QLatin1StringView(box));
        tour.key(u"Return"_s);
    }
    tour.expectWindow(u"nomarhost"_s, 1);
    tour.expectPage(pictures + u" === 7"_s);
}

void copiedAttachmentsAreFilesElsewhere(Tour& tour)
{
    tour.clickElement(card(u".docx"_s));
    tour.key(u"ctrl+c"_s);
    tour.expect(u"another program is offered the file"_s, [] {
        // xclip waits for ever when the clipboard changes hands under it, as it does in this copy.
        return runTool(u"timeout"_s,
            {u"2"_s, u"xclip"_s, u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s,
                u"text/uri-list"_s})
            .contains("Annual%20report.docx");
    });
}

void filesAndHtmlOfOtherProgramsArePasted(Tour& tour)
{
    const QString file = tour.desktopFile(u"pasted.txt"_s);
    writeFile(file, 77);
    const auto offer = [&](const QString& type, const QByteArray& content) {
        const QString source = tour.desktopFile(u"offered"_s);
        QFile written(source);
        if (!written.open(QIODevice::WriteOnly) || written.write(content) != content.size())
            throw StepFailure("cannot write what is offered");
        written.close();
        runTool(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, type, u"-i"_s, source});
    };
    tour.clickNote();
    offer(u"text/uri-list"_s, QUrl::fromLocalFile(file).toEncoded() + "\r\n");
    tour.key(u"ctrl+v"_s);
    tour.expectPage(pictures + u" === 8 && "_s + allShown);
    offer(u"text/html"_s,
        "<html><body><h2 onclick='x()'>From a page</h2><script>x()</script><ul><li>one</ul>");
    tour.key(u"ctrl+v"_s);
    tour.expectPage(
        noteDocument + u".querySelector('h2:not([onclick])')?.textContent === 'From a page'"_s);
    tour.expectPage(u"!"_s + noteDocument + u".querySelector('script')"_s);
    tour.key(u"ctrl+s"_s);
    expectAttached(tour, file);
    tour.shot(u"pasted"_s);
}

void anExportIsOneFileWithPictures(Tour& tour)
{
    const QString file = tour.desktopFile(u"trip.mht"_s);
    tour.key(u"ctrl+shift+s"_s);
    tour.expectWindow(u"nomarhost"_s, 2);
    tour.type(file);
    tour.key(u"Return"_s);
    tour.expect(u"the file holds the note and its pictures"_s, [&] {
        QFile exported(file);
        const QByteArray content =
            exported.open(QIODevice::ReadOnly) ? exported.readAll() : QByteArray();
        return content.contains("multipart/related") && content.contains("Trip")
            && content.contains("cid:") && content.count("Content-Type: image/") >= 8;
    });
}

void aCardOpensAndARestartKeepsAll(Tour& tour)
{
    tour.clickElement(card(u".docx"_s), 2);
    tour.expect(u"the desktop is asked to open the document"_s,
        [&] { return tour.openedByDesktop().contains(u"Annual"_s); });
    tour.quitHost();
    tour.startHost();
    tour.expectText(u"Trip"_s);
    tour.expectPage(pictures + u" === 8 && "_s + allShown);
    // Their sizes came back with them, or nothing more could be added.
    const QString late = tour.desktopFile(u"late.txt"_s);
    writeFile(late, 10);
    tour.clickNote();
    tour.drag({late});
    tour.expectPage(pictures + u" === 9 && "_s + allShown);
    tour.key(u"ctrl+s"_s);
    expectAttached(tour, late);
    tour.quitHost();
}
