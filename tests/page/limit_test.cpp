#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

class PageLimit : public testing::Test {
protected:
    PageHarness page;

    void start(const QString& html, int limit)
    {
        page.call(u"SetEditorMaxChars"_s, u"{\"size\":%1 }"_s.arg(limit));
        page.load(html);
        page.focusNote();
    }

    bool refused() { return page.jsBool(u"!!document.querySelector('.toast.shown')"_s); }

    void paste(const QString& type, const QString& data)
    {
        page.js(u"{ const data = new DataTransfer(); data.setData(%1, %2); "
                u"note.activeElement.dispatchEvent(new ClipboardEvent('paste', "
                u"{ clipboardData: data, bubbles: true, cancelable: true })); }"_s.arg(
                    quoted(type), quoted(data)));
    }

    /** Whether the engine may drop the selection, dragged inside the note, or a copy of it. */
    bool mayDrop(bool copy)
    {
        return page.jsBool(
            u"(() => { const at = note.querySelector('p'); const send = (type) => at.dispatchEvent("
            u"new DragEvent(type, { bubbles: true, cancelable: true, ctrlKey: %1, "
            u"dataTransfer: new DataTransfer() }));"
            u"send('dragstart'); const may = send('drop'); send('dragend'); return may; })()"_s.arg(
                copy ? u"true"_s : u"false"_s));
    }
};

TEST_F(PageLimit, TypingBeyondItIsRefusedWithAMessage)
{
    start(u"<p>abc</p>"_s, 4);
    page.caret(u"p"_s, 3);
    page.type(u"d"_s);
    EXPECT_FALSE(refused());
    page.type(u"e"_s);
    EXPECT_TRUE(refused());
    EXPECT_EQ(page.text(), u"abcd"_s);
    EXPECT_EQ(
        page.jsText(u"document.querySelector('.toast').getAttribute('aria-live')"_s), u"polite"_s);
    EXPECT_TRUE(page.jsText(u"document.querySelector('.toast').textContent"_s).contains(u'4'));
    EXPECT_TRUE(page.calls(u"NmMessageBox"_s).isEmpty());
}

TEST_F(PageLimit, TheMessageGoesWhenAnotherNoteIsOpened)
{
    start(u"<p>abc</p>"_s, 3);
    page.caret(u"p"_s, 3);
    page.type(u"d"_s);
    EXPECT_TRUE(refused());
    page.load(u"<p>next</p>"_s);
    EXPECT_FALSE(refused());
}

TEST_F(PageLimit, NoneIsSetUntilTold)
{
    page.load(u"<p>%1</p>"_s.arg(QString(5000, u'a')));
    page.focusNote();
    page.caret(u"p"_s, 5000);
    page.type(u"b"_s);
    EXPECT_EQ(page.text().size(), 5001);
}

TEST_F(PageLimit, CountsCodePointsAndNoLineBreaks)
{
    start(u"<p>\U0001F600\U0001F600</p><p>\U0001F600<br>a</p>"_s, 5);
    page.caret(u"p"_s, 0);
    page.type(u"b"_s);
    EXPECT_FALSE(refused());
    page.type(u"c"_s);
    EXPECT_TRUE(refused());
    page.key(Qt::Key_Return);
    EXPECT_EQ(page.text(), u"b\n\U0001F600\U0001F600\n\U0001F600\na"_s);
}

TEST_F(PageLimit, ReplacingASelectionIsAllowedAtTheLimit)
{
    start(u"<p>abcd</p>"_s, 4);
    page.select(u"p"_s, 1, 3);
    page.type(u"x"_s);
    EXPECT_EQ(page.text(), u"axd"_s);
    page.type(u"y"_s);
    EXPECT_EQ(page.text(), u"axyd"_s);
    page.type(u"z"_s);
    EXPECT_EQ(page.text(), u"axyd"_s);
}

TEST_F(PageLimit, NoteOverItStaysWholeAndCanBeShortened)
{
    start(u"<p>abcdefgh</p>"_s, 4);
    EXPECT_EQ(page.html(), u"<p>abcdefgh</p>"_s);
    page.caret(u"p"_s, 8);
    page.type(u"x"_s);
    EXPECT_EQ(page.text(), u"abcdefgh"_s);
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.text(), u"abcdefg"_s);
    for (int i = 0; i < 4; ++i)
        page.key(Qt::Key_Backspace);
    page.type(u"y"_s);
    EXPECT_EQ(page.text(), u"abcy"_s);
}

TEST_F(PageLimit, CompositionIsTrimmedOnlyWhenItEnds)
{
    start(u"<p>ab</p>"_s, 4);
    page.caret(u"p"_s, 2);
    page.compose(u"nihaoma"_s);
    EXPECT_EQ(page.text(), u"abnihaoma"_s);
    page.commit(u"你好吗"_s);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'ab你好'"_s))
        << page.shown().toStdString();
    EXPECT_TRUE(refused());
    page.type(u"c"_s);
    EXPECT_EQ(page.text(), u"ab你好"_s);
}

TEST_F(PageLimit, CompositionInAFullNoteLeavesItAsItWas)
{
    start(u"<p>abcdef</p>"_s, 4);
    page.caret(u"p"_s, 3);
    page.compose(u"ni"_s);
    page.commit(u"你"_s);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'abcdef'"_s));
}

TEST_F(PageLimit, CompositionIsNeverCutInsideACharacter)
{
    start(u"<p>ab</p>"_s, 4);
    page.caret(u"p"_s, 2);
    page.compose(u"x"_s);
    // A family of three: five code points that a person sees as one.
    page.commit(u"c\U0001F468\u200D\U0001F469\u200D\U0001F467"_s);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'abc'"_s)) << page.shown().toStdString();
}

TEST_F(PageLimit, PasteBeyondItIsRefusedWhole)
{
    start(u"<p>abc</p>"_s, 6);
    page.caret(u"p"_s, 3);
    paste(u"text/plain"_s, u"1234"_s);
    EXPECT_EQ(page.text(), u"abc"_s);
    EXPECT_TRUE(refused());
    paste(u"text/html"_s, u"<b>1234</b>"_s);
    EXPECT_EQ(page.text(), u"abc"_s);
    paste(u"text/html"_s, u"<b>123</b>"_s);
    EXPECT_EQ(page.text(), u"abc123"_s);
}

TEST_F(PageLimit, CopyDraggedInsideTheNoteCountsAndAMoveDoesNot)
{
    start(u"<p>ab<b>cd</b>e</p>"_s, 7);
    page.select(u"p"_s, 1, 4);
    EXPECT_TRUE(mayDrop(false));
    EXPECT_FALSE(refused());
    EXPECT_FALSE(mayDrop(true));
    EXPECT_TRUE(refused());
    EXPECT_EQ(page.html(), u"<p>ab<b>cd</b>e</p>"_s);

    start(u"<p>ab<b>cd</b>e</p>"_s, 7);
    page.select(u"p"_s, 1, 3);
    EXPECT_TRUE(mayDrop(true));
    EXPECT_FALSE(refused());
}

TEST_F(PageLimit, AttachmentsAreNoText)
{
    start(u"<p>abcd</p>"_s, 4);
    EXPECT_EQ(
        page.call(u"AddPicToEditor"_s,
            u"{\"picpath\":\"../a.png\",\"strData\":\"a.png\",\"exdata\":\"{}\"}"_s)[u"result"],
        QJsonValue(true));
}
