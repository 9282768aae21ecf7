#include "Steps.h"
#include "Tour.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

void restartFindsEverything(Tour& tour)
{
    tour.clickRow(2);
    tour.expectText(u"买鸡蛋和牛奶"_s);
    tour.clickNote();
    tour.type(u" unsaved words 明天"_s);
    tour.expectText(u"unsaved words 明天"_s);
    const QString before = tour.noteText();
    const QRect place = tour.windowPlace();
    tour.quitHost();
    tour.expectFiled(u"Shopping list"_s, u"unsaved words 明天"_s);
    tour.startHost();
    tour.expect(
        u"the same note is open with the same text"_s, [&] { return tour.noteText() == before; });
    tour.expectPage(noteDocument + u".querySelectorAll('table tr').length === 3"_s);
    tour.expect(u"the window is where it was"_s, [&] { return tour.windowPlace() == place; });
    tour.shot(u"restarted"_s);
}

void deadRenderProcessComesBack(Tour& tour)
{
    tour.clickNote();
    tour.type(u" before the end"_s);
    tour.expectText(u"before the end"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"Shopping list"_s, u"before the end"_s);
    tour.expect(u"there is a process to kill"_s, [&] { return tour.host.killRenderProcess(); });
    if (!tour.tools.attach(tour.host.port()))
        throw StepFailure("the page did not come back");
    tour.expectText(u"before the end"_s);
    tour.clickNote();
    tour.type(u" and after"_s);
    tour.expectText(u"before the end and after"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"Shopping list"_s, u"before the end and after"_s);
    tour.shot(u"recovered"_s);
}

void lockedShelfKeepsTheText(Tour& tour)
{
    if (!tour.records.change(u"BEGIN IMMEDIATE"_s))
        throw StepFailure("the shelf could not be locked");
    tour.type(u" under lock"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectText(u"and after under lock"_s);
    // The host waits a second for the lock, then tells.
    tour.key(u"ctrl+n"_s);
    tour.expectText(u"and after under lock"_s);
    tour.shot(u"not-saved"_s);
    tour.records.change(u"ROLLBACK"_s);
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"Shopping list"_s, u"and after under lock"_s);
}

void killedHostStartsAgain(Tour& tour)
{
    tour.host.kill();
    tour.tools.detach();
    tour.startHost();
    tour.key(u"ctrl+f"_s);
    tour.type(u"under lock"_s);
    tour.clickRow(0);
    tour.expectText(u"and after under lock"_s);
    tour.quitHost();
}

void attachmentOpensOnTheDesktop(Tour& tour)
{
    // A note as another program's import leaves it: a document in the note's folder, shown as a
    // picture.
    const QString guid = u"attachedbyimport"_s;
    const QString folder = tour.records.storeDir() + u'/' + guid;
    const QString document = folder + u"/报告.txt"_s;
    QDir().mkpath(folder);
    const auto write = [](const QString& path, const QByteArray& content) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    };
    const QByteArray picture = "<svg xmlns='http://www.w3.org/2000/svg' width='120' "
                               "height='48'><rect width='120' height='48' fill='teal'/></svg>";
    const QByteArray html =
        "<div>Imported</div><div><img nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;"
        + u"报告.txt"_s.toUtf8().toBase64()
        + "&quot;}\" class=\"userdata\\attachment\\d1.txt\" "
          "src=\"../userdata\\attachment\\d2.svg\"></div>";
    const bool written = write(document, "text")
        && write(tour.records.storeDir() + u"/d2.svg"_s, picture)
        && write(tour.records.storeDir() + u"/imported.html"_s, html);
    const bool shelved =
        tour.records.change(u"INSERT INTO note (guid, title, changed) VALUES (?, 'Imported', ?)"_s,
            {guid, QDateTime::currentMSecsSinceEpoch()})
        && tour.records.change(
            u"INSERT INTO file VALUES (?, 0, '', '', 0, '', 'html', 'imported.html', ?, 0, 1)"_s,
            {guid, tour.records.storeDir() + u"/imported.html"_s})
        && tour.records.change(
            u"INSERT INTO file VALUES (?, 1, '报告.txt', '', 2, '', 'txt', 'd1.txt', ?, 0, 4)"_s,
            {guid, document});
    if (!written || !shelved)
        throw StepFailure("the note could not be prepared");
    tour.startHost();
    tour.clickRow(0);
    tour.expectText(u"Imported"_s);
    tour.expectPage(noteDocument + u".querySelector('img')?.naturalWidth === 120"_s);
    tour.clickElement(noteDocument + u".querySelector('img')"_s, 2);
    tour.expect(u"the desktop is asked to open it"_s, [&] {
        return QUrl(tour.openedByDesktop().trimmed()).toLocalFile() == document
            || tour.openedByDesktop().trimmed() == document;
    });
    tour.shot(u"attachment"_s);
    tour.quitHost();
}

void chineseWindow(Tour& tour)
{
    tour.startHost(u"zh_CN"_s);
    tour.expectPage(u"!!document.querySelector('[aria-label^=加粗]')"_s);
    tour.shot(u"chinese"_s);
    tour.quitHost();
}

void darkWindow(Tour& tour)
{
    tour.startHost(u"en"_s, true);
    tour.key(u"ctrl+f"_s);
    tour.type(u"Shopping"_s);
    tour.clickRow(0);
    tour.expectText(u"under lock"_s);
    // Dark ground, light letters.
    const QString lightness =
        u"Math.max(...getComputedStyle(%1).%2.match(/\\d+/g).slice(0, 3).map(Number))"_s;
    tour.expectPage(lightness.arg(u"document.body"_s, u"backgroundColor"_s) + u" < 100"_s);
    tour.expectPage(lightness.arg(noteDocument + u".body"_s, u"color"_s) + u" > 150"_s);
    tour.shot(u"dark"_s);
    tour.quitHost();
}
