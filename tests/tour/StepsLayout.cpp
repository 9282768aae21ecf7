// The note over the list of its files, with a bar between them.

#include "Steps.h"
#include "Tour.h"

using namespace Qt::StringLiterals;

namespace {

const QString attachments = noteDocument + u".querySelectorAll('img[nm_exdata]').length"_s;

/// Puts the keyboard into the list, on its first row.
void enterList(Tour& tour)
{
    tour.clickAt(tour.barPlace() + QPoint(0, 100)); // on some row
    tour.key(u"Home"_s);
}

void expectOnShelf(Tour& tour, const QString& name, bool isThere)
{
    tour.expect(name + (isThere ? u" is on the shelf"_s : u" is off the shelf"_s), [&] {
        return tour.records.row(u"SELECT 1 FROM file WHERE orig_name = ?"_s, {name}).isEmpty()
            != isThere;
    });
}

} // namespace

void theBarFoldsAndIsDragged(Tour& tour)
{
    const int height = tour.page(u"innerHeight"_s).toInt();
    tour.clickAt(tour.barPlace());
    tour.expectPage(u"innerHeight > %1 + 100"_s.arg(height));
    tour.shot(u"folded"_s);
    tour.clickAt(tour.barPlace());
    tour.expectPage(u"innerHeight === %1"_s.arg(height));
    const QPoint beside = tour.barPlace() - QPoint(150, 0);
    tour.pull(beside, beside - QPoint(0, 60));
    tour.expectPage(u"innerHeight === %1 - 60"_s.arg(height));
    tour.shot(u"file-list"_s);
}

void theListOpensAnAttachment(Tour& tour)
{
    const QString before = tour.openedByDesktop();
    enterList(tour);
    tour.key(u"End"_s);
    tour.key(u"Return"_s);
    tour.expect(
        u"the desktop is asked to open it"_s, [&] { return tour.openedByDesktop() != before; });
}

void anAttachmentIsRemovedInTheListAndComesBack(Tour& tour)
{
    const QString name = u"Annual report.docx"_s;
    expectOnShelf(tour, name, true);
    enterList(tour);
    tour.key(u"Delete"_s);
    tour.expectPage(attachments + u" === 7"_s);
    expectOnShelf(tour, name, false);
    tour.expectPainted();
    tour.shot(u"removed"_s);
    tour.clickNote();
    tour.key(u"ctrl+z"_s);
    tour.expectPage(attachments + u" === 8"_s);
    tour.key(u"ctrl+s"_s);
    expectOnShelf(tour, name, true);
    tour.expectPainted();
    tour.shot(u"back-again"_s);
}
