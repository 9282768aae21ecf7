// Keys in the note: Enter, Tab, Backspace, and tables.

#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

class PageEditing : public testing::Test {
protected:
    PageHarness page;

    void start(const QString& html)
    {
        page.load(html);
        page.focusNote();
    }

    /** The texts of the cells, row by row. */
    QString cells()
    {
        return page.jsText(u"[...note.querySelectorAll('tr')].map(r => [...r.cells].map(c => "
                           u"c.textContent).join(',')).join(';')"_s);
    }
    QString caretCell()
    {
        return page.jsText(u"(() => { let n = note.getSelection().focusNode; n = n.closest ? n : "
                           u"n.parentNode; const c = n.closest('td'); return c ? "
                           u"c.parentNode.rowIndex + ',' + c.cellIndex : 'none'; })()"_s);
    }
};

TEST_F(PageEditing, FirstLineOfANewNoteIsAParagraph)
{
    start(QString());
    page.type(u"a"_s);
    page.key(Qt::Key_Return);
    page.type(u"b"_s);
    EXPECT_EQ(page.html(), u"<div>a</div><div>b</div>"_s);
    EXPECT_EQ(page.text(), u"a\nb"_s);
}

TEST_F(PageEditing, EnterBehindAHeadingBeginsText)
{
    start(u"<h1>a</h1>"_s);
    page.caret(u"h1"_s, 1);
    page.key(Qt::Key_Return);
    page.type(u"b"_s);
    EXPECT_EQ(page.html(), u"<h1>a</h1><div>b</div>"_s);
}

TEST_F(PageEditing, EnterInCodeStaysInItUntilAnEmptyLine)
{
    start(u"<pre>a</pre>"_s);
    page.caret(u"pre"_s, 1);
    page.key(Qt::Key_Return);
    page.type(u"b"_s);
    EXPECT_EQ(page.text(), u"a\nb"_s);
    EXPECT_TRUE(page.jsBool(u"note.querySelectorAll('pre').length === 1"_s));
    page.key(Qt::Key_Return);
    page.key(Qt::Key_Return);
    page.type(u"c"_s);
    EXPECT_TRUE(page.jsBool(u"note.querySelectorAll('pre').length === 1 && "
                            u"note.querySelector('pre').nextSibling.textContent === 'c'"_s))
        << page.shown().toStdString();
}

TEST_F(PageEditing, EnterInAnEmptyQuoteLeavesIt)
{
    start(u"<blockquote>a</blockquote>"_s);
    page.caret(u"blockquote"_s, 1);
    page.key(Qt::Key_Return);
    page.key(Qt::Key_Return);
    page.type(u"b"_s);
    EXPECT_EQ(page.html(), u"<blockquote>a</blockquote><div>b</div>"_s);
}

TEST_F(PageEditing, EnterInAnEmptyListItemLeavesTheList)
{
    start(u"<ul><li>a</li></ul>"_s);
    page.caret(u"li"_s, 1);
    page.key(Qt::Key_Return);
    page.key(Qt::Key_Return);
    page.type(u"b"_s);
    EXPECT_EQ(page.html(), u"<ul><li>a</li></ul><div>b</div>"_s);
}

TEST_F(PageEditing, BackspaceAtTheStartOfAHeadingMakesItText)
{
    for (const QString& tag : {u"h2"_s, u"pre"_s, u"blockquote"_s}) {
        start(u"<div>x</div><%1>ab</%1>"_s.arg(tag));
        page.caret(tag, 0);
        page.key(Qt::Key_Backspace);
        EXPECT_EQ(page.html(), u"<div>x</div><div>ab</div>"_s);
    }
}

TEST_F(PageEditing, BackspaceInsideAHeadingDeletes)
{
    start(u"<h2>ab</h2>"_s);
    page.caret(u"h2"_s, 1);
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.html(), u"<h2>b</h2>"_s);
}

TEST_F(PageEditing, TabIndentsAListItemAndIsACharacterElsewhere)
{
    start(u"<ul><li>a</li><li>b</li></ul><p>c</p>"_s);
    page.caret(u"li:nth-child(2)"_s, 0);
    page.key(Qt::Key_Tab);
    EXPECT_TRUE(page.jsBool(u"!!note.querySelector('ul ul li')"_s)) << page.shown().toStdString();
    page.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(page.jsBool(u"!!note.querySelector('ul ul')"_s)) << page.shown().toStdString();
    page.caret(u"p"_s, 1);
    page.key(Qt::Key_Tab);
    EXPECT_TRUE(page.jsBool(u"note.querySelector('p').textContent === 'c\\t'"_s));
    EXPECT_TRUE(page.jsBool(u"note.hasFocus()"_s));
}

TEST_F(PageEditing, InlineCodeKeepsPicturesAndLineBreaks)
{
    const QString picture = u"<img class=\"userdata\\attachment\\1.png\" nm_exdata=\"{}\">"_s;
    const QString note = u"<div>a<b>b</b>"_s + picture + u"c<br>de</div>"_s;
    start(note);
    page.select(u"div"_s, 1, 4);
    page.key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<div>a<code>b"_s + picture + u"c<br>d</code>e</div>"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageEditing, CodeOverBlocksKeepsTheirLines)
{
    start(u"one<div>two</div>three"_s);
    page.js(
        u"note.getSelection().setBaseAndExtent(note.body.firstChild, 0, note.body.lastChild, 5)"_s);
    page.key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(page.text(), u"one\ntwo\nthree"_s);
    EXPECT_TRUE(page.jsBool(u"!!note.querySelector('pre')"_s)) << page.shown().toStdString();
}

TEST_F(PageEditing, ListOfParagraphsTurnsBackIntoText)
{
    const QString note = u"<ul><li><p>a</p></li><li><p>b</p></li></ul>"_s;
    start(note);
    page.caret(u"p"_s, 1);
    page.key(Qt::Key_8, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(page.text(), u"a\nb"_s);
    EXPECT_TRUE(page.jsBool(u"note.querySelectorAll('li').length === 1"_s))
        << page.shown().toStdString();
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageEditing, TableOfTheSizePointedAt)
{
    start(u"<p>a</p>"_s);
    page.caret(u"p"_s, 1);
    page.clickTool(u"Table"_s);
    page.clickPage(u".table-cell[data-row='2'][data-column='4']"_s);
    EXPECT_EQ(cells(), u",,,;,,,"_s);
    EXPECT_EQ(caretCell(), u"0,0"_s);
    page.type(u"x"_s);
    EXPECT_EQ(cells(), u"x,,,;,,,"_s);
    EXPECT_EQ(page.text(), u"a\nx"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>a</p>"_s);
}

TEST_F(PageEditing, TablePickerWorksByKeyboard)
{
    start(u"<p>a</p>"_s);
    page.js(u"document.querySelector('[aria-label=Table]').focus()"_s);
    page.key(Qt::Key_Return);
    page.key(Qt::Key_Right);
    page.key(Qt::Key_Down);
    EXPECT_EQ(page.jsText(u"document.querySelector('.table-size').textContent"_s), u"3 × 4"_s);
    page.key(Qt::Key_Return);
    EXPECT_EQ(cells(), u",,,;,,,;,,,"_s);
}

TEST_F(PageEditing, RowsAndColumnsAreAddedAndDeletedInOneUndoStepEach)
{
    const QString before =
        u"<p>0</p><table border=\"1\" class=\"t\"><tbody><tr><td>a</td>"
        u"<td style=\"color: red;\">b</td></tr><tr><td>c</td><td>d</td></tr></tbody>"
        u"</table><p>9</p>"_s;
    const QList<std::tuple<QString, QString, QString>> changes{
        {u"Insert row above"_s, u"a,b;,;c,d"_s, u"1,1"_s},
        {u"Insert row below"_s, u"a,b;c,d;,"_s, u"2,1"_s},
        {u"Insert column left"_s, u"a,,b;c,,d"_s, u"1,1"_s},
        {u"Insert column right"_s, u"a,b,;c,d,"_s, u"1,2"_s},
        {u"Delete row"_s, u"a,b"_s, u"0,1"_s},
        {u"Delete column"_s, u"a;c"_s, u"1,0"_s},
        {u"Delete table"_s, u""_s, u"none"_s},
    };
    for (const auto& [label, after, caret] : changes) {
        start(before);
        page.caret(u"tr:nth-child(2) td:nth-child(2)"_s, 1);
        page.clickTool(u"Table"_s);
        page.chooseMenu(label);
        EXPECT_EQ(cells(), after) << label.toStdString();
        EXPECT_EQ(caretCell(), caret) << label.toStdString();
        EXPECT_TRUE(page.jsBool(u"note.body.firstChild.textContent === '0' && "
                                u"note.body.lastChild.textContent === '9'"_s))
            << page.shown().toStdString();
        if (!after.isEmpty()) {
            EXPECT_TRUE(page.jsBool(u"note.querySelector('table').outerHTML.startsWith("
                                    u"'<table border=\"1\" class=\"t\">')"_s));
        }
        page.key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(page.shown(), before) << label.toStdString();
        EXPECT_EQ(page.html(), before);
        page.key(Qt::Key_Y, Qt::ControlModifier);
        EXPECT_EQ(cells(), after) << label.toStdString();
    }
}

TEST_F(PageEditing, DeletingTheLastRowOrColumnDeletesTheTable)
{
    for (const QString& label : {u"Delete row"_s, u"Delete column"_s}) {
        start(u"<p>0</p><table><tbody><tr><td>a</td></tr></tbody></table><p>9</p>"_s);
        page.caret(u"td"_s, 1);
        page.clickTool(u"Table"_s);
        page.chooseMenu(label);
        EXPECT_FALSE(page.jsBool(u"!!note.querySelector('table')"_s));
        EXPECT_EQ(page.text(), u"0\n9"_s);
    }
}

TEST_F(PageEditing, CellsThatSpanOthersStayInTheirPlaces)
{
    const QString before =
        u"<p>0</p><table><tbody><tr><td rowspan=\"2\">a</td><td colspan=\"2\">b</td></tr>"
        u"<tr><td>c</td><td>d</td></tr></tbody></table><p>9</p>"_s;
    // The caret's cell, the change, and what each row holds then: rowspan x colspan where not 1
    // x 1.
    const QList<std::tuple<int, QString, QString, QString>> changes{
        {2, u"Delete column"_s, u"a2x1,b;d"_s, u"1,0"_s},
        {0, u"Delete column"_s, u"b1x2;c,d"_s, u"0,0"_s},
        {0, u"Delete row"_s, u"a,c,d"_s, u"0,0"_s},
        {2, u"Delete row"_s, u"a,b1x2"_s, u"0,1"_s},
        {2, u"Insert row above"_s, u"a3x1,b1x2;,;c,d"_s, u"1,0"_s},
        {0, u"Insert row below"_s, u"a2x1,b1x2;c,d;,,"_s, u"2,0"_s},
        {1, u"Insert row below"_s, u"a3x1,b1x2;,;c,d"_s, u"1,0"_s},
        {3, u"Insert column left"_s, u"a2x1,b1x3;c,,d"_s, u"1,1"_s},
        {1, u"Insert column right"_s, u"a2x1,b1x2,;c,d,"_s, u"0,2"_s},
        {0, u"Insert column right"_s, u"a2x1,,b1x2;,c,d"_s, u"0,1"_s},
        {0, u"Insert column left"_s, u",a2x1,b1x2;,c,d"_s, u"0,0"_s},
    };
    for (const auto& [cell, label, after, caret] : changes) {
        start(before);
        page.js(
            u"note.getSelection().collapse(note.querySelectorAll('td')[%1].firstChild, 1)"_s.arg(
                cell));
        page.clickTool(u"Table"_s);
        page.chooseMenu(label);
        const std::string name = label.toStdString() + " at " + std::to_string(cell);
        EXPECT_EQ(page.jsText(u"[...note.querySelectorAll('tr')].map(r => [...r.cells].map(c => "
                              u"c.textContent + (c.rowSpan * c.colSpan > 1 ? c.rowSpan + 'x' + "
                              u"c.colSpan : '')).join(',')).join(';')"_s),
            after)
            << name;
        EXPECT_EQ(caretCell(), caret) << name;
        page.key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(page.html(), before) << name;
    }
}

TEST_F(PageEditing, ARowBelowACellThatIsToldToReachFurtherIsAsWideAsTheOthers)
{
    for (const char* span : {"3", "0"}) {
        const QString before =
            u"<table><tbody><tr><td rowspan=\"%1\">a</td><td>b</td></tr></tbody></table>"_s.arg(
                QLatin1StringView(span));
        start(before);
        page.js(u"note.getSelection().collapse(note.querySelectorAll('td')[1].firstChild, 1)"_s);
        page.clickTool(u"Table"_s);
        page.chooseMenu(u"Insert row below"_s);
        EXPECT_EQ(cells(), u"a,b;,"_s) << span;
        EXPECT_EQ(page.jsText(u"String(note.querySelector('td').rowSpan)"_s), u"1"_s) << span;
        page.key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(page.html(), before) << span;
    }
}

TEST_F(PageEditing, TabGoesThroughTheCellsAndAddsARow)
{
    start(u"<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s);
    page.caret(u"td"_s, 0);
    page.key(Qt::Key_Tab);
    EXPECT_EQ(caretCell(), u"0,1"_s);
    page.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(caretCell(), u"0,0"_s);
    page.key(Qt::Key_Tab);
    page.key(Qt::Key_Tab);
    EXPECT_EQ(cells(), u"a,b;,"_s);
    EXPECT_EQ(caretCell(), u"1,0"_s);
    page.type(u"c"_s);
    EXPECT_EQ(cells(), u"a,b;c,"_s);
}
