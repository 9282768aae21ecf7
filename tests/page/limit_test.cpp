#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

class PageLimit : public testing::Test {
protected:
    PageHarness page;

    void start(const QString& html, int limit)
    {
        page.call(u"SetEditorMaxChars"_qs, u"{\"size\":%1 }"_qs.arg(limit));
        page.load(html);
        page.focusNote();
    }

    bool refused() { return page.jsBool(u"!!document.querySelector('.toast.shown')"_qs); }

    void paste(const QString& type, const QString& data)
    {
        page.js(u"{ const data = new DataTransfer(); data.setData(%1, %2); "
                u"note.activeElement.dispatchEvent(new ClipboardEvent('paste', "
                u"{ clipboardData: data, bubbles: true, cancelable: true })); }"_qs.arg(
                    quoted(type), quoted(data)));
    }
};

TEST_F(PageLimit, TypingBeyondItIsRefusedWithAMessage)
{
    start(u"<p>abc</p>"_qs, 4);
    page.caret(u"p"_qs, 3);
    page.type(u"d"_qs);
    EXPECT_FALSE(refused());
    page.type(u"e"_qs);
    EXPECT_TRUE(refused());
    EXPECT_EQ(page.text(), u"abcd"_qs);
    EXPECT_EQ(page.jsText(u"document.querySelector('.toast').getAttribute('aria-live')"_qs),
        u"polite"_qs);
    EXPECT_TRUE(page.jsText(u"document.querySelector('.toast').textContent"_qs).contains(u'4'));
    EXPECT_TRUE(page.calls(u"NmMessageBox"_qs).isEmpty());
}

TEST_F(PageLimit, NoneIsSetUntilTold)
{
    page.load(u"<p>%1</p>"_qs.arg(QString(5000, u'a')));
    page.focusNote();
    page.caret(u"p"_qs, 5000);
    page.type(u"b"_qs);
    EXPECT_EQ(page.text().size(), 5001);
}

TEST_F(PageLimit, CountsCodePointsAndNoLineBreaks)
{
    start(u"<p>\U0001F600\U0001F600</p><p>\U0001F600<br>a</p>"_qs, 5);
    page.caret(u"p"_qs, 0);
    page.type(u"b"_qs);
    EXPECT_FALSE(refused());
    page.type(u"c"_qs);
    EXPECT_TRUE(refused());
    page.key(Qt::Key_Return);
    EXPECT_EQ(page.text(), u"b\n\U0001F600\U0001F600\n\U0001F600\na"_qs);
}

TEST_F(PageLimit, ReplacingASelectionIsAllowedAtTheLimit)
{
    start(u"<p>abcd</p>"_qs, 4);
    page.select(u"p"_qs, 1, 3);
    page.type(u"x"_qs);
    EXPECT_EQ(page.text(), u"axd"_qs);
    page.type(u"y"_qs);
    EXPECT_EQ(page.text(), u"axyd"_qs);
    page.type(u"z"_qs);
    EXPECT_EQ(page.text(), u"axyd"_qs);
}

TEST_F(PageLimit, NoteOverItStaysWholeAndCanBeShortened)
{
    start(u"<p>abcdefgh</p>"_qs, 4);
    EXPECT_EQ(page.html(), u"<p>abcdefgh</p>"_qs);
    page.caret(u"p"_qs, 8);
    page.type(u"x"_qs);
    EXPECT_EQ(page.text(), u"abcdefgh"_qs);
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.text(), u"abcdefg"_qs);
    for (int i = 0; i < 4; ++i)
        page.key(Qt::Key_Backspace);
    page.type(u"y"_qs);
    EXPECT_EQ(page.text(), u"abcy"_qs);
}

TEST_F(PageLimit, CompositionIsTrimmedOnlyWhenItEnds)
{
    start(u"<p>ab</p>"_qs, 4);
    page.caret(u"p"_qs, 2);
    page.compose(u"nihaoma"_qs);
    EXPECT_EQ(page.text(), u"abnihaoma"_qs);
    page.commit(u"你好吗"_qs);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'ab你好'"_qs)) << page.shown().toStdString();
    EXPECT_TRUE(refused());
    page.type(u"c"_qs);
    EXPECT_EQ(page.text(), u"ab你好"_qs);
}

TEST_F(PageLimit, CompositionInAFullNoteLeavesItAsItWas)
{
    start(u"<p>abcdef</p>"_qs, 4);
    page.caret(u"p"_qs, 3);
    page.compose(u"ni"_qs);
    page.commit(u"你"_qs);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'abcdef'"_qs));
}

TEST_F(PageLimit, CompositionIsNeverCutInsideACharacter)
{
    start(u"<p>ab</p>"_qs, 4);
    page.caret(u"p"_qs, 2);
    page.compose(u"x"_qs);
    // A family of three: five code points that a person sees as one.
    page.commit(u"c\U0001F468\u200D\U0001F469\u200D\U0001F467"_qs);
    EXPECT_TRUE(page.waitFor(u"note.body.textContent === 'abc'"_qs)) << page.shown().toStdString();
}

TEST_F(PageLimit, PasteBeyondItIsRefusedWhole)
{
    start(u"<p>abc</p>"_qs, 6);
    page.caret(u"p"_qs, 3);
    paste(u"text/plain"_qs, u"1234"_qs);
    EXPECT_EQ(page.text(), u"abc"_qs);
    EXPECT_TRUE(refused());
    paste(u"text/html"_qs, u"<b>1234</b>"_qs);
    EXPECT_EQ(page.text(), u"abc"_qs);
    paste(u"text/html"_qs, u"<b>123</b>"_qs);
    EXPECT_EQ(page.text(), u"abc123"_qs);
}

TEST_F(PageLimit, AttachmentsAreNoText)
{
    start(u"<p>abcd</p>"_qs, 4);
    EXPECT_EQ(page.call(u"AddPicToEditor"_qs,
                  u"{\"picpath\":\"../a.png\",\"strData\":\"a.png\",\"exdata\":\"{}\"}"_qs)[u"result"],
        QJsonValue(true));
}
