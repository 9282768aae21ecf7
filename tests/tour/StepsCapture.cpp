// A part of the screen becomes an attachment, goes to the clipboard or into a file.

#include "Steps.h"
#include "TestDisplay.h"
#include "Tour.h"

#include <QBuffer>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QString pictures = noteDocument + u".querySelectorAll('img[nm_exdata]').length"_s;

/// The selection that a drag from one point to another leaves.
QRect selectedBy(QPoint from, QPoint to)
{
    return {from + QPoint(4, 4), to - QPoint(1, 1)};
}

/// Of the toolbar that hangs under a selection: 6 below it, flush with its right edge.
QPoint toolbarOf(const QRect& selection)
{
    return {selection.right() + 1 - 88, selection.bottom() + 1 + 6};
}

/// The middle of one of its buttons.
QPoint button(const QRect& selection, int index)
{
    return toolbarOf(selection) + QPoint(4 + 20 * index + 9, 4 + 9);
}

void expectCapture(Tour& tour)
{
    tour.expect(u"the capture covers the screen"_s,
        [&] { return tour.activeWindowPlace() == QRect(QPoint(), Tour::screen().size()); });
}

/// Waits until the selection has been drawn, moved or pulled to that rectangle.
void expectSelected(Tour& tour, const QRect& selection)
{
    tour.expect(u"the toolbar hangs under the selection"_s, [&] {
        const QColor frame(80, 141, 191);
        const QImage shown = Tour::screen();
        const QPoint corner = toolbarOf(selection);
        return shown.pixelColor(corner) == frame
            && shown.pixelColor(corner + QPoint(87, 25)) == frame
            && shown.pixelColor(corner - QPoint(1, 1)) != frame;
    });
}

QByteArray jpegOf(const QImage& image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return buffer.data();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void expectSame(const QImage& found, const QImage& expected, const char* what)
{
    if (found.convertToFormat(QImage::Format_RGB32) != expected)
        throw StepFailure(std::string(what) + " is not what the screen showed");
}

} // namespace

void aCaptureBecomesAnAttachment(Tour& tour)
{
    // The server paints this by itself, whatever comes to light.
    runTool(u"xsetroot"_s,
        {u"-mod"_s, u"13"_s, u"9"_s, u"-fg"_s, u"#3a7bd5"_s, u"-bg"_s, u"#f4d3a0"_s});
    const QImage bare = Tour::screen();
    tour.startHost();
    tour.expectText(u"Trip"_s);
    tour.key(u"ctrl+n"_s);
    tour.expect(u"the new note is there"_s, [&] { return tour.noteText().trimmed().isEmpty(); });
    tour.type(u"Captured"_s);
    tour.key(u"Return"_s);
    const QRect place = tour.windowPlace();

    tour.clickButton(u"Capture options"_s);
    tour.clickButton(u"Hide this window, then capture"_s);
    expectCapture(tour);
    tour.pull({400, 300}, {700, 500});
    QRect selection = selectedBy({400, 300}, {700, 500});
    expectSelected(tour, selection);
    tour.pull({700, 500}, {740, 540}); // the handle at the lower right
    selection.adjust(0, 0, 40, 40);
    expectSelected(tour, selection);
    tour.pull({500, 400}, {480, 380}); // all of it
    selection.translate(-20, -20);
    expectSelected(tour, selection);
    tour.shot(u"capture-moved"_s);
    tour.clickAt(selection.center(), 2);

    tour.expectWindow(u"nomarhost"_s, 1);
    tour.expect(u"the window is where it was"_s, [&] { return tour.windowPlace() == place; });
    tour.expectPage(pictures + u" === 1"_s);
    tour.expectPage(u"(i => i.complete && i.naturalWidth === %1 && i.naturalHeight === %2)(%3)"_s
                        .arg(selection.width())
                        .arg(selection.height())
                        .arg(noteDocument + u".querySelector('img[nm_exdata]')"_s));
    tour.key(u"ctrl+s"_s);
    QStringList row;
    tour.expect(u"the picture is on the shelf"_s, [&] {
        row = tour.records.row(u"SELECT file_path FROM file WHERE orig_name LIKE '%.jpg'"_s);
        return row.size() == 1;
    });
    if (contentOf(row[0]) != jpegOf(bare.copy(selection)))
        throw StepFailure("the attachment is not what the screen showed");
    tour.shot(u"captured"_s);
}

void aCaptureGoesToTheClipboard(Tour& tour)
{
    const QRect window = tour.windowPlace();
    // The list of notes and what lies beside the window: nothing blinks there.
    const QPoint from = window.topLeft() + QPoint(-60, 120);
    const QPoint to = window.topLeft() + QPoint(280, 300);
    tour.expectPage(pictures + u" === 1"_s);
    const QImage before = Tour::screen();
    tour.clickButton(u"Capture screen"_s);
    expectCapture(tour);
    tour.pull(from, to);
    const QRect selection = selectedBy(from, to);
    expectSelected(tour, selection);
    tour.shot(u"capture"_s);
    tour.clickAt(button(selection, 0));
    tour.expectWindow(u"nomarhost"_s, 1);
    QImage copied;
    tour.expect(u"another program is offered the picture"_s, [&] {
        copied = QImage::fromData(runTool(
            u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, u"image/png"_s}));
        return !copied.isNull();
    });
    expectSame(copied, before.copy(selection), "the clipboard");
    tour.expectPage(pictures + u" === 1"_s);
}

void aCaptureIsSavedAsAFile(Tour& tour)
{
    const QRect window = tour.windowPlace();
    const QPoint from = window.topLeft() + QPoint(-60, 120);
    const QPoint to = from + QPoint(260, 200);
    const QImage before = Tour::screen();
    tour.clickButton(u"Capture screen"_s);
    expectCapture(tour);
    tour.pull(to, from); // upwards to the left: from below the press and to its right
    const QRect inverted(from, to + QPoint(3, 3));
    expectSelected(tour, inverted);
    tour.rightClickAt(inverted.center());
    tour.expectWindow(u"nomarhost"_s, 3); // the menu too
    tour.shot(u"capture-menu"_s);
    tour.key(u"Down"_s);
    tour.key(u"Down"_s);
    tour.key(u"Return"_s);
    // The name decides on the format, whatever the filter says.
    const QString file = tour.desktopFile(u"cut.bmp"_s);
    tour.expectWindow(u"nomarhost"_s, 3);
    tour.shot(u"capture-saving"_s);
    tour.key(u"ctrl+a"_s);
    tour.type(file);
    tour.key(u"Return"_s);
    tour.expectWindow(u"nomarhost"_s, 1);
    if (!contentOf(file).startsWith("BM"))
        throw StepFailure("there is no bitmap file");
    expectSame(QImage(file), before.copy(inverted), "the file");
}

void aCaptureIsGivenUp(Tour& tour)
{
    tour.clickButton(u"Capture screen"_s);
    expectCapture(tour);
    tour.pull({400, 300}, {700, 500});
    tour.key(u"Escape"_s);
    tour.expectWindow(u"nomarhost"_s, 1);
    tour.clickButton(u"Capture screen"_s);
    expectCapture(tour);
    tour.rightClickAt({600, 600}); // nothing is selected
    tour.expectWindow(u"nomarhost"_s, 1);
    tour.expectPage(pictures + u" === 1"_s);
    // The note has the keyboard again.
    tour.clickNote();
    tour.type(u" still"_s);
    tour.expectText(u"still"_s);
    tour.quitHost();
}
