#include "Steps.h"
#include "Tour.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

void windowOpens(Tour& tour)
{
    tour.startHost();
    tour.shot(u"window"_s);
}

void newNoteTakesTheKeyboard(Tour& tour)
{
    tour.key(u"ctrl+n"_s);
    tour.expectPage(noteDocument + u".body.isContentEditable"_s);
    tour.expectPage(u"document.activeElement?.tagName === 'IFRAME'"_s);
    tour.type(u"Shopping list\nmilk and eggs\n"_s);
    tour.expectText(u"milk and eggs"_s);
}

void chineseIsTyped(Tour& tour)
{
    tour.type(u"买鸡蛋和牛奶，明天做蛋糕。"_s);
    tour.expectText(u"买鸡蛋和牛奶，明天做蛋糕。"_s);
}

void saveKeyFilesTheNote(Tour& tour)
{
    tour.key(u"ctrl+s"_s);
    tour.expectFiled(u"Shopping list"_s, u"买鸡蛋和牛奶，明天做蛋糕。"_s);
    const QStringList row =
        tour.records.row(u"SELECT words FROM note WHERE title = 'Shopping list'"_s);
    tour.expect(
        u"words are counted"_s, [&] { return row.value(0) == u"16"; }, 0);
}

void boldByItsButton(Tour& tour)
{
    tour.key(u"ctrl+Home"_s);
    tour.key(u"shift+End"_s);
    tour.clickButton(u"Bold"_s);
    tour.expectPage(
        noteDocument + u".querySelector('b, strong')?.textContent === 'Shopping list'"_s);
}

void italicAndUnderlineByTheirKeys(Tour& tour)
{
    tour.key(u"Down"_s);
    tour.key(u"Home"_s);
    tour.key(u"ctrl+shift+Right"_s);
    tour.key(u"ctrl+i"_s);
    tour.expectPage(noteDocument + u".querySelector('i, em')?.textContent.trim() === 'milk'"_s);
    tour.key(u"ctrl+u"_s);
    tour.expectPage(noteDocument + u".querySelector('u')?.textContent.trim() === 'milk'"_s);
}

void undoAndRedo(Tour& tour)
{
    const QString underlined = u"!!"_s + noteDocument + u".querySelector('u')"_s;
    tour.clickButton(u"Undo"_s);
    tour.expectPage(u"!("_s + underlined + u')');
    tour.clickButton(u"Redo"_s);
    tour.expectPage(underlined);
    tour.key(u"ctrl+z"_s);
    tour.expectPage(u"!("_s + underlined + u')');
    tour.key(u"ctrl+y"_s);
    tour.expectPage(underlined);
}

void headingByItsMenu(Tour& tour)
{
    tour.key(u"ctrl+Home"_s);
    tour.clickElement(u"document.querySelector('[aria-label^=\"Paragraph style\"]')"_s);
    tour.clickButton(u"Heading 1"_s);
    tour.expectPage(noteDocument + u".querySelector('h1')?.textContent === 'Shopping list'"_s);
    tour.shot(u"formatted"_s);
}

void bulletedList(Tour& tour)
{
    tour.clickNote();
    tour.key(u"Return"_s);
    tour.clickButton(u"Bulleted list"_s);
    tour.type(u"first\nsecond"_s);
    tour.expectPage(noteDocument + u".querySelectorAll('ul > li').length === 2"_s);
    tour.key(u"Return"_s);
    tour.key(u"Return"_s);
    tour.type(u"after the list"_s);
    tour.expectPage(
        u"!"_s + noteDocument + u".querySelector('ul').textContent.includes('after')"_s);
}

void tableGrowsAndIsFilled(Tour& tour)
{
    tour.key(u"Return"_s);
    tour.clickButton(u"Table"_s);
    tour.shot(u"table-picker"_s);
    tour.clickElement(
        u"document.querySelector('.table-cell[data-row=\"2\"][data-column=\"3\"]')"_s);
    const QString size = noteDocument + u".querySelectorAll('table tr').length === %1 && "_s
        + noteDocument + u".querySelectorAll('table td').length === %2"_s;
    tour.expectPage(size.arg(2).arg(6));
    tour.type(u"one"_s);
    tour.key(u"Tab"_s);
    tour.type(u"二"_s);
    tour.expectPage(
        noteDocument + u".querySelectorAll('table td')[1].textContent.trim() === '二'"_s);
    tour.clickButton(u"Table"_s);
    tour.clickButton(u"Insert row below"_s);
    tour.expectPage(size.arg(3).arg(9));
}

void linkByItsKey(Tour& tour)
{
    tour.clickElement(noteDocument + u".querySelector('u')"_s, 2); // the word milk
    tour.key(u"ctrl+k"_s);
    tour.expectPage(u"document.activeElement?.tagName === 'INPUT'"_s);
    tour.type(u"https://example.org/milk"_s);
    tour.shot(u"link-dialog"_s);
    tour.key(u"Return"_s);
    tour.expectPage(noteDocument
        + u".querySelector('a')?.getAttribute('href') === 'https://example.org/milk'"_s);
    tour.key(u"ctrl+End"_s); // the link's bubble would cover the line below
    tour.expectPage(u"!document.querySelector('.link-bubble')"_s);
    tour.expectPainted();
    tour.shot(u"all-formats"_s);
}

void losingTheFocusSaves(Tour& tour)
{
    tour.key(u"ctrl+f"_s);
    tour.expectFiled(u"Shopping list"_s, u"https://example.org/milk"_s);
    const QString files = tour.records.row(u"SELECT count(*) FROM file"_s).value(0);
    tour.expect(
        u"one file is recorded"_s, [&] { return files == u"1"; }, 0);
}

void characterLimitHolds(Tour& tour)
{
    tour.key(u"ctrl+n"_s);
    tour.expect(u"the new note is there"_s, [&] { return tour.noteText().trimmed().isEmpty(); });
    QGuiApplication::clipboard()->setText(u"The long note "_s + QString(9'976, u'x'));
    tour.key(u"ctrl+v"_s);
    const QString length = noteDocument + u".body.textContent.length === %1"_s;
    tour.expectPage(length.arg(9'990));
    tour.type(u"0123456789"_s);
    tour.expectPage(length.arg(10'000));
    tour.type(u"abc"_s);
    tour.expectPage(u"[...document.querySelectorAll('[role=status]')].some(e =>"
                    " e.innerText.includes('10000') && getComputedStyle(e).opacity > 0.9)"_s);
    tour.shot(u"character-limit"_s);
    tour.expectPage(length.arg(10'000));
    tour.key(u"ctrl+s"_s);
    tour.expect(u"the long note is filed"_s, [&] {
        return !tour.records.row(u"SELECT 1 FROM note WHERE title LIKE 'The long note%'"_s)
                    .isEmpty();
    });
}
