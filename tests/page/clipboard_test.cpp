// Copy, cut, paste and drop with the real clipboard of the process.

#include "Names.h"
#include "PageHarness.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include <gtest/gtest.h>

class PageClipboard : public testing::Test {
protected:
    PageHarness page;

    void start(const QString& html)
    {
        page.load(html);
        page.focusNote();
    }

    void setClipboard(const QString& html, const QString& text)
    {
        auto* data = new QMimeData;
        if (!html.isEmpty())
            data->setHtml(html);
        if (!text.isEmpty())
            data->setText(text);
        QApplication::clipboard()->setMimeData(data);
    }

    void paste() { page.key(Qt::Key_V, Qt::ControlModifier); }
    void copy()
    {
        page.key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'copied')"_s));
    }
    /** Drops HTML of another program at the end of the note's paragraph. */
    void dropHtml(const QString& html)
    {
        page.js(u"{ const data = new DataTransfer(); data.setData('text/html', %1);"
                u"const paragraph = note.querySelector('p');"
                u"const box = paragraph.getBoundingClientRect();"
                u"paragraph.dispatchEvent(new DragEvent('drop', { dataTransfer: data, "
                u"bubbles: true, cancelable: true, clientX: box.right - 2, "
                u"clientY: box.top + 8 })); }"_s.arg(quoted(html)));
    }
    QString clipboardHtml() { return QApplication::clipboard()->mimeData()->html(); }
};

TEST_F(PageClipboard, PasteIsSanitised)
{
    start(u"<p>ab</p>"_s);
    page.caret(u"p"_s, 1);
    setClipboard(u"<b>x</b><script>window.bad = 1</script><img src='y.png' onerror='top.bad = 2'>"
                 u"<iframe src='http://127.0.0.1/'></iframe><style>p{display:none}</style>"
                 u"<a href='javascript:bad()'>l</a><form><input></form>"_s,
        QString());
    paste();
    const QString html = page.html();
    EXPECT_TRUE(html.contains(u"<b>x</b>"_s)) << html.toStdString();
    for (const QString& word : {u"script"_s, u"onerror"_s, u"iframe"_s, u"style"_s, u"input"_s})
        EXPECT_FALSE(html.contains(word)) << html.toStdString();
    EXPECT_FALSE(page.jsBool(u"'bad' in window"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>ab</p>"_s);
}

TEST_F(PageClipboard, PasteKeepsAttachmentAttributes)
{
    start(u"<p>a</p>"_s);
    page.caret(u"p"_s, 1);
    const QString element =
        u"<img class=\"userdata\\attachment\\1.png\" src=\"../userdata\\attachment\\1.png\" "
        u"nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YQ==&quot;}\" "
        u"data-ke-src=\"../userdata\\attachment\\1.png\" nmimgsrc=\"../userdata\\attachment\\1.png\">"_s;
    setClipboard(element, QString());
    paste();
    EXPECT_EQ(page.html(), u"<p>a"_s + element + u"</p>"_s);
}

TEST_F(PageClipboard, PlainTextKeepsItsLines)
{
    start(u"<div>a</div>"_s);
    page.caret(u"div"_s, 1);
    setClipboard(QString(), u"1 < 2\nthree\n\nfour"_s);
    paste();
    EXPECT_EQ(page.text(), u"a1 < 2\nthree\n\nfour"_s);
}

TEST_F(PageClipboard, CodeTakesPlainTextOnly)
{
    start(u"<pre>a</pre>"_s);
    page.caret(u"pre"_s, 1);
    setClipboard(u"<b>x</b>"_s, u"x"_s);
    paste();
    EXPECT_EQ(page.html(), u"<pre>ax</pre>"_s);
}

TEST_F(PageClipboard, LinesPastedIntoCodeStayInOneBlockOfCode)
{
    start(u"<pre>ab</pre>"_s);
    page.caret(u"pre"_s, 1);
    setClipboard(QString(), u"1 < 2\r\n  three\n\nfour"_s);
    paste();
    EXPECT_EQ(page.html(), u"<pre>a1 &lt; 2\n  three\n\nfourb</pre>"_s);
    page.type(u"x"_s);
    EXPECT_EQ(page.text(), u"a1 < 2\n  three\n\nfourxb"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<pre>ab</pre>"_s);
}

TEST_F(PageClipboard, ReadOnlyNoteTakesNothing)
{
    start(u"<p>a</p>"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    setClipboard(u"<b>x</b>"_s, u"x"_s);
    paste();
    EXPECT_EQ(page.shown(), u"<p>a</p>"_s);
}

TEST_F(PageClipboard, CopyPutsUpTheSelectionWithItsFormat)
{
    start(u"<p>a<b>bold<i>er</i></b>c</p>"_s);
    page.select(u"b"_s, 2, 5);
    copy();
    EXPECT_TRUE(clipboardHtml().contains(u"<b>ld<i>e</i></b>"_s)) << clipboardHtml().toStdString();
    EXPECT_EQ(QApplication::clipboard()->text(), u"lde"_s);
    EXPECT_EQ(page.posts(u"copied"_s), QStringList{QString()});
}

TEST_F(PageClipboard, CopyOfPartsOfAListOrTableIsAListOrTable)
{
    start(
        u"<ol><li>one</li><li>two</li></ol><table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s);
    page.js(u"note.getSelection().setBaseAndExtent(note.querySelectorAll('li')[0].firstChild, 0, "
            u"note.querySelectorAll('li')[1].firstChild, 3)"_s);
    copy();
    EXPECT_TRUE(clipboardHtml().contains(u"<ol><li>one</li><li>two</li></ol>"_s))
        << clipboardHtml().toStdString();
}

TEST_F(PageClipboard, CopyOfAnAttachmentAloneHasNoText)
{
    start(
        u"<p>a</p><p><img class='userdata\\attachment\\1.png' nm_exdata='{\"OrigName_B64\":\"YQ==\"}'></p>"_s);
    page.call(u"SelectedAttach"_s, u"{\"keyword\":\"a\"}"_s);
    copy();
    EXPECT_TRUE(clipboardHtml().contains(u"class=\"userdata\\attachment\\1.png\""_s));
    EXPECT_TRUE(clipboardHtml().contains(u"nm_exdata="_s));
    EXPECT_TRUE(QApplication::clipboard()->text().isEmpty());
}

TEST_F(PageClipboard, CopyWorksInAReadOnlyNote)
{
    start(u"<p>abc</p>"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    page.select(u"p"_s, 0, 3);
    copy();
    EXPECT_EQ(QApplication::clipboard()->text(), u"abc"_s);
    page.key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(page.shown(), u"<p>abc</p>"_s);
}

TEST_F(PageClipboard, CutTakesAwayAndCanBeUndone)
{
    start(u"<p>abcd</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'copied')"_s));
    EXPECT_EQ(page.html(), u"<p>ad</p>"_s);
    EXPECT_EQ(QApplication::clipboard()->text(), u"bc"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>abcd</p>"_s);
}

TEST_F(PageClipboard, EmptySelectionLeavesTheClipboardAlone)
{
    start(u"<p>abcd</p>"_s);
    page.caret(u"p"_s, 1);
    setClipboard(QString(), u"before"_s);
    page.key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"before"_s);
    EXPECT_TRUE(page.posts(u"copied"_s).isEmpty());
}

TEST_F(PageClipboard, CopyAndPasteInsideTheNoteAddsNoStyles)
{
    start(u"<p>a<b>bc</b></p><p>x</p>"_s);
    page.select(u"b"_s, 0, 2);
    copy();
    page.caret(u"p:nth-child(2)"_s, 1);
    paste();
    EXPECT_EQ(page.html(), u"<p>a<b>bc</b></p><p>x<b>bc</b></p>"_s);
}

TEST_F(PageClipboard, DroppedHtmlIsSanitisedAndInserted)
{
    start(u"<p>ab</p>"_s);
    dropHtml(u"<i onclick=\"x()\">new</i>"_s);
    EXPECT_EQ(page.html(), u"<p>ab<i>new</i></p>"_s);
}

TEST_F(PageClipboard, DropFromOutsideIsSanitisedAfterADragInsideTheNoteThatNeverEnded)
{
    start(u"<p>ab</p>"_s);
    page.js(u"for (const type of ['dragstart', 'drop']) note.querySelector('p').dispatchEvent("
            u"new DragEvent(type, { dataTransfer: new DataTransfer(), bubbles: true, "
            u"cancelable: true }))"_s);
    dropHtml(u"<i onclick=\"x()\">new</i>"_s);
    EXPECT_EQ(page.html(), u"<p>ab<i>new</i></p>"_s);
}
