// Search hits and the note under them: it knows nothing of them, and they follow what becomes of
// it.
#include "HighlightFixture.h"

TEST_P(PageHighlight, TheNoteIsTheSameTextBeforeDuringAndAfter)
{
    const QString html = u"<P CLASS=a>odd  <b>word</P><!-- c -->word<p>wo<i>rd"_s;
    load(html);
    const QString shown = page.shown();
    EXPECT_EQ(highlight(u"word"_s), 3);
    EXPECT_TRUE(page.waitFor(painted() + u" !== ''"_s));
    EXPECT_EQ(page.html(), html);
    EXPECT_EQ(page.shown(), shown);
    clear();
    EXPECT_EQ(page.html(), html);
    EXPECT_EQ(page.shown(), shown);
    EXPECT_TRUE(page.posts(u"draft"_s).isEmpty());
}

TEST_P(PageHighlight, TheUndoHistoryAndTheCaretStayAsTheyAre)
{
    load(u"<p>word</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 4);
    page.type(u"s"_s);
    highlight(u"word"_s);
    page.type(u"t"_s);
    EXPECT_EQ(page.text(), u"wordst"_s);
    clear();
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.text(), u"word"_s);
}

TEST_P(PageHighlight, HitsAreFoundAgainInAParagraphThatIsEdited)
{
    load(u"<p id=\"a\">word one word two</p><p>word three</p>"_s);
    page.focusNote();
    EXPECT_EQ(highlight(u"word"_s), 3);
    EXPECT_TRUE(paints(u"word|word|word"_s));
    page.caret(u"#a"_s, 0);
    page.type(u"xy"_s); // What stands behind moves on.
    EXPECT_TRUE(paints(u"word|word|word"_s));
    page.caret(u"#a"_s, 4);
    page.type(u"-"_s); // One is a hit no more ...
    EXPECT_TRUE(paints(u"word|word"_s));
    page.key(Qt::Key_Backspace); // ... and again.
    EXPECT_TRUE(paints(u"word|word|word"_s));
    page.caret(u"#a"_s, 5);
    page.key(Qt::Key_Return);
    EXPECT_TRUE(paints(u"word|word"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(paints(u"word|word|word"_s));
    clear();
    EXPECT_TRUE(paints(u""_s));
}

TEST_P(PageHighlight, AWordThatIsTypedOrInsertedIsPaintedAndGoesWithTheRest)
{
    load(u"<p id=\"a\">word</p><p id=\"b\">other</p>"_s);
    page.focusNote();
    EXPECT_EQ(highlight(u"word"_s), 1);
    page.caret(u"#b"_s, 5);
    page.type(u"word"_s);
    EXPECT_TRUE(paints(u"word|word"_s));
    page.js(u"note.execCommand('insertHTML', false, '<ul><li>word</li><li>more</li></ul>')"_s);
    EXPECT_TRUE(paints(u"word|word|word"_s));
    clear();
    EXPECT_TRUE(paints(u""_s));
}

TEST_P(PageHighlight, AllOfTheTextCanBeReplacedWhileItIsPainted)
{
    load(u"<p>word</p><div><p>word</p></div>"_s);
    page.focusNote();
    highlight(u"word"_s);
    page.selectAll();
    page.js(u"note.execCommand('insertHTML', false, '<p>a word</p><p>none</p>')"_s);
    EXPECT_TRUE(paints(u"word"_s));
    page.selectAll();
    page.key(Qt::Key_Delete);
    EXPECT_TRUE(paints(u""_s));
    clear();
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(paints(u""_s));
}

TEST_P(PageHighlight, ForgettingTheUndoHistoryLeavesTheHitsWhereTheyAre)
{
    load(u"bare word<p>word</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 4);
    page.type(u"s"_s);
    EXPECT_EQ(highlight(u"word"_s), 2);
    page.call(u"ClearEditorCache"_s, u""_s);
    EXPECT_TRUE(paints(u"word|word"_s));
    EXPECT_EQ(highlight(u"word"_s), 2);
}

/// The overlay must follow the text by itself.
class PageHighlightOverlay : public PageHighlight {
protected:
    /// Whether the one box stands where the text "word" does.
    bool coversTheWord()
    {
        return page.waitFor(
            u"(() => { const range = note.createRange(), box = document.querySelector('.hit');"
            "  range.selectNodeContents(note.querySelector('u'));"
            "  const frame = document.querySelector('iframe').getBoundingClientRect();"
            "  const text = range.getBoundingClientRect(), hit = box.getBoundingClientRect();"
            "  return Math.abs(frame.left + text.left - hit.left) <= 1"
            "    && Math.abs(frame.top + text.top - hit.top) <= 1"
            "    && Math.abs(text.width - hit.width) <= 2"
            "    && Math.abs(text.height - hit.height) <= 1; })()"_s);
    }
};
INSTANTIATE_TEST_SUITE_P(Way, PageHighlightOverlay, testing::Values(Way::Overlay));

TEST_P(PageHighlightOverlay, BoxesFollowScrollingResizingAndEdits)
{
    load(u"<p id=\"a\">above</p><p>some text that is long enough to be broken into several lines "
         "when the window is narrow, and <u>word</u></p><div style=\"height:3000px\"></div>"_s);
    page.focusNote();
    highlight(u"word"_s);
    EXPECT_TRUE(coversTheWord());
    page.js(u"note.scrollingElement.scrollTop = 15"_s);
    EXPECT_TRUE(coversTheWord());
    page.view().resize(420, 500);
    EXPECT_TRUE(coversTheWord());
    page.caret(u"#a"_s, 0);
    page.key(Qt::Key_Return);
    EXPECT_TRUE(coversTheWord());
    page.view().resize(1000, 700);
    page.view().setZoomFactor(1.5);
    EXPECT_TRUE(coversTheWord());
}

TEST_P(PageHighlightOverlay, TheMouseGoesThroughTheBoxes)
{
    load(u"<p><u>word</u></p>"_s);
    page.focusNote();
    highlight(u"word"_s);
    EXPECT_TRUE(coversTheWord());
    page.doubleClickNote(u"u"_s);
    EXPECT_EQ(page.selectedText(), u"word"_s);
}

TEST_P(PageHighlightOverlay, AHitIsCutOffWhereItsBoxInTheNoteEnds)
{
    load(
        u"<pre style=\"overflow:hidden;width:80px;white-space:pre;padding:0\">xx wordwordword</pre>"
        "<p id=\"beside\" style=\"margin-top:-40px;margin-left:120px;font-size:24px\">beside</p>"_s);
    EXPECT_EQ(highlight(u"wordwordword"_s), 1);
    EXPECT_TRUE(waitForPixels(u"pre"_s, kBackground, 50));
    EXPECT_EQ(pixels(u"#beside"_s, kBackground), 0);
}
