// The toolbar: what its buttons do to a note, each in one step of undo, and how it is reached.

#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

class PageToolbar : public testing::Test {
protected:
    PageHarness page;

    QString tool(const QString& label, const QString& attribute)
    {
        return page.jsText(
            u"document.querySelector('.toolbar [aria-label=%1]').getAttribute(%2)"_s.arg(
                quoted(label), quoted(attribute)));
    }

    void start(const QString& html)
    {
        page.load(html);
        page.focusNote();
    }

    /** The note is `after` now; undo makes it `before` again, and redo `after`. */
    void expectOneUndoStep(const QString& before, const QString& after)
    {
        EXPECT_EQ(page.shown(), after);
        page.clickTool(u"Undo"_s);
        EXPECT_EQ(page.shown(), before);
        EXPECT_EQ(page.html(), before);
        page.clickTool(u"Redo"_s);
        EXPECT_EQ(page.shown(), after);
    }
};

TEST_F(PageToolbar, InlineFormats)
{
    const QList<std::pair<QString, QString>> formats{{u"Bold"_s, u"<p>a<b>bc</b>d</p>"_s},
        {u"Italic"_s, u"<p>a<i>bc</i>d</p>"_s}, {u"Underline"_s, u"<p>a<u>bc</u>d</p>"_s},
        {u"Strikethrough"_s, u"<p>a<strike>bc</strike>d</p>"_s},
        {u"Code"_s, u"<p>a<code>bc</code>d</p>"_s}};
    for (const auto& [label, after] : formats) {
        start(u"<p>abcd</p>"_s);
        page.select(u"p"_s, 1, 3);
        page.clickTool(label);
        expectOneUndoStep(u"<p>abcd</p>"_s, after);
    }
}

TEST_F(PageToolbar, ShortcutsDoTheSame)
{
    const QList<std::tuple<Qt::Key, Qt::KeyboardModifiers, QString>> shortcuts{
        {Qt::Key_B, Qt::ControlModifier, u"<p>a<b>bc</b>d</p>"_s},
        {Qt::Key_I, Qt::ControlModifier, u"<p>a<i>bc</i>d</p>"_s},
        {Qt::Key_U, Qt::ControlModifier, u"<p>a<u>bc</u>d</p>"_s},
        {Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier, u"<p>a<strike>bc</strike>d</p>"_s},
        {Qt::Key_E, Qt::ControlModifier, u"<p>a<code>bc</code>d</p>"_s},
        {Qt::Key_1, Qt::ControlModifier | Qt::AltModifier, u"<h1>abcd</h1>"_s},
        {Qt::Key_8, Qt::ControlModifier | Qt::ShiftModifier, u"<ul><li>abcd</li></ul>"_s},
        {Qt::Key_7, Qt::ControlModifier | Qt::ShiftModifier, u"<ol><li>abcd</li></ol>"_s},
        {Qt::Key_9, Qt::ControlModifier | Qt::ShiftModifier, u"<blockquote>abcd</blockquote>"_s},
    };
    for (const auto& [key, modifiers, after] : shortcuts) {
        start(u"<p>abcd</p>"_s);
        page.select(u"p"_s, 1, 3);
        page.key(key, modifiers);
        EXPECT_EQ(page.shown(), after);
    }
}

TEST_F(PageToolbar, ParagraphStyleAndFontSize)
{
    start(u"<p>abcd</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.clickTool(u"Paragraph style"_s);
    page.chooseMenu(u"Heading 2"_s);
    expectOneUndoStep(u"<p>abcd</p>"_s, u"<h2>abcd</h2>"_s);
    EXPECT_TRUE(page.waitFor(
        u"document.querySelector('.select-style .select-text').textContent === 'Heading 2'"_s));

    start(u"<p>abcd</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.clickTool(u"Font size"_s);
    page.chooseMenu(u"24"_s);
    expectOneUndoStep(
        u"<p>abcd</p>"_s, u"<p>a<span style=\"font-size: x-large;\">bc</span>d</p>"_s);
}

TEST_F(PageToolbar, StyleOfSeveralParagraphsKeepsThemApart)
{
    const QString before = u"<p>one <b>x</b></p><p>two</p><p>three</p>"_s;
    start(before);
    page.js(u"note.getSelection().setBaseAndExtent(note.body.firstChild.firstChild, 1, "
            u"note.querySelectorAll('p')[1].firstChild, 1)"_s);
    page.key(Qt::Key_2, Qt::ControlModifier | Qt::AltModifier);
    expectOneUndoStep(before, u"<h2>one <b>x</b></h2><h2>two</h2><p>three</p>"_s);
}

TEST_F(PageToolbar, Colours)
{
    start(u"<p>abcd</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.clickTool(u"Text colour"_s);
    page.clickPage(u".swatch[aria-label='#d1242f']"_s);
    expectOneUndoStep(
        u"<p>abcd</p>"_s, u"<p>a<span style=\"color: rgb(209, 36, 47);\">bc</span>d</p>"_s);

    start(u"<p>abcd</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.clickTool(u"Highlight colour"_s);
    page.clickPage(u".swatch[aria-label='#ffe500']"_s);
    expectOneUndoStep(u"<p>abcd</p>"_s,
        u"<p>a<span style=\"background-color: rgb(255, 229, 0);\">bc</span>d</p>"_s);
    page.clickTool(u"Highlight colour"_s);
    page.clickPage(u".palette-none"_s);
    EXPECT_EQ(page.shown(), u"<p>abcd</p>"_s);
}

TEST_F(PageToolbar, DefaultTextColourTakesTheColourAway)
{
    start(u"<p>a<span style=\"color: rgb(209, 36, 47);\">bc</span>d</p>"_s);
    page.select(u"p"_s, 1, 3);
    page.clickTool(u"Text colour"_s);
    page.clickPage(u".palette-none"_s);
    EXPECT_EQ(page.jsText(u"getComputedStyle(note.querySelector('p')).color"_s),
        page.jsText(
            u"(() => { const w = note.createTreeWalker(note.body, 4); w.nextNode(); "
            u"w.nextNode(); return getComputedStyle(w.currentNode.parentNode).color; })()"_s))
        << page.shown().toStdString();
    EXPECT_FALSE(page.shown().contains(u"inherit"_s)) << page.shown().toStdString();
}

TEST_F(PageToolbar, ListsFromParagraphsOfBothKinds)
{
    for (const QString& tag : {u"p"_s, u"div"_s}) {
        const QString before = u"<%1>one</%1><%1>two</%1><%1>three</%1>"_s.arg(tag);
        start(before);
        page.js(u"note.getSelection().setBaseAndExtent(note.body.children[0].firstChild, 1, "
                u"note.body.children[1].firstChild, 1)"_s);
        page.clickTool(u"Bulleted list"_s);
        EXPECT_EQ(
            page.jsText(u"[...note.querySelectorAll('ul > li')].map(i => i.innerHTML).join()"_s),
            u"one,two"_s);
        // What the engine made must mean the same when it is read again.
        const QString list = page.html();
        page.clickTool(u"Undo"_s);
        EXPECT_EQ(page.html(), before);
        page.load(list);
        EXPECT_EQ(page.shown(), list);
        EXPECT_EQ(page.text(), u"one\ntwo\nthree"_s);
    }
}

TEST_F(PageToolbar, ListTurnsBackIntoText)
{
    start(u"<ul><li>one</li><li>two</li></ul>"_s);
    page.selectAll();
    page.clickTool(u"Bulleted list"_s);
    EXPECT_TRUE(page.jsBool(u"!note.querySelector('ul,li')"_s)) << page.shown().toStdString();
    EXPECT_EQ(page.text(), u"one\ntwo"_s);
    page.clickTool(u"Undo"_s);
    EXPECT_EQ(page.html(), u"<ul><li>one</li><li>two</li></ul>"_s);
}

TEST_F(PageToolbar, IndentAndOutdent)
{
    start(u"<div>one</div>"_s);
    page.caret(u"div"_s, 1);
    page.clickTool(u"Increase indent"_s);
    EXPECT_TRUE(page.jsBool(u"!!note.querySelector('blockquote[style]')"_s));
    EXPECT_EQ(tool(u"Quote"_s, u"aria-pressed"_s), u"false"_s);
    page.clickTool(u"Decrease indent"_s);
    EXPECT_FALSE(page.jsBool(u"!!note.querySelector('blockquote')"_s));
    page.clickTool(u"Undo"_s);
    page.clickTool(u"Undo"_s);
    EXPECT_EQ(page.html(), u"<div>one</div>"_s);
}

TEST_F(PageToolbar, Alignment)
{
    start(u"<p>one</p>"_s);
    page.caret(u"p"_s, 1);
    page.clickTool(u"Alignment"_s);
    page.chooseMenu(u"Centre"_s);
    expectOneUndoStep(u"<p>one</p>"_s, u"<p style=\"text-align: center;\">one</p>"_s);
}

TEST_F(PageToolbar, QuoteOnAndOff)
{
    start(u"<div>one</div>"_s);
    page.caret(u"div"_s, 1);
    page.clickTool(u"Quote"_s);
    expectOneUndoStep(u"<div>one</div>"_s, u"<blockquote>one</blockquote>"_s);
    EXPECT_TRUE(page.waitFor(
        u"document.querySelector('[aria-label=Quote]').getAttribute('aria-pressed') === 'true'"_s));
    page.clickTool(u"Quote"_s);
    EXPECT_EQ(page.shown(), u"<div>one</div>"_s);
}

TEST_F(PageToolbar, CodeBlockOnAndOff)
{
    start(u"<div>one</div>"_s);
    page.caret(u"div"_s, 1);
    page.clickTool(u"Code"_s);
    expectOneUndoStep(u"<div>one</div>"_s, u"<pre>one</pre>"_s);
    page.clickTool(u"Code"_s);
    EXPECT_EQ(page.shown(), u"<div>one</div>"_s);
}

TEST_F(PageToolbar, InlineCodeOff)
{
    start(u"<p>a<code>bc</code>d</p>"_s);
    page.caret(u"code"_s, 1);
    page.clickTool(u"Code"_s);
    expectOneUndoStep(u"<p>a<code>bc</code>d</p>"_s, u"<p>abcd</p>"_s);
}

TEST_F(PageToolbar, HorizontalLine)
{
    start(u"<p>one</p><p>two</p>"_s);
    page.caret(u"p"_s, 3);
    page.clickTool(u"Horizontal line"_s);
    expectOneUndoStep(u"<p>one</p><p>two</p>"_s, u"<p>one</p><hr><p>two</p>"_s);
}

TEST_F(PageToolbar, ClearFormatting)
{
    const QString before =
        u"<p>a<b><i>bc</i></b><code>d</code><span style=\"color: red;\">e</span></p>"_s;
    start(before);
    page.selectAll();
    page.clickTool(u"Clear formatting"_s);
    expectOneUndoStep(before, u"<p>abcde</p>"_s);
    start(u"<p>a<b><i style=\"color: red;\">bc</i></b></p>"_s);
    page.selectAll();
    page.clickTool(u"Clear formatting"_s);
    EXPECT_EQ(page.html(), u"<p>abc</p>"_s);
}

TEST_F(PageToolbar, StateFollowsTheCaret)
{
    start(u"<p>a<b>b</b></p><ol><li>c</li></ol>"_s);
    const auto pressed = [](const char* label, const char* value) {
        return u"document.querySelector('[aria-label=\"%1\"]').getAttribute('aria-pressed') === '%2'"_s
            .arg(QLatin1String(label), QLatin1String(value));
    };
    page.caret(u"b"_s, 1);
    EXPECT_TRUE(page.waitFor(pressed("Bold", "true")));
    page.caret(u"li"_s, 1);
    EXPECT_TRUE(page.waitFor(pressed("Bold", "false")));
    EXPECT_TRUE(page.waitFor(pressed("Numbered list", "true")));
}

TEST_F(PageToolbar, UndoAndRedoAreDisabledWhenTheyCouldNotAct)
{
    start(u"<p>a</p>"_s);
    const auto disabled = [](const char* label, const char* value) {
        return u"document.querySelector('[aria-label=%1]').getAttribute('aria-disabled') === '%2'"_s
            .arg(QLatin1String(label), QLatin1String(value));
    };
    EXPECT_TRUE(page.waitFor(disabled("Undo", "true")));
    page.caret(u"p"_s, 1);
    page.type(u"b"_s);
    EXPECT_TRUE(page.waitFor(disabled("Undo", "false")));
    EXPECT_TRUE(page.waitFor(disabled("Redo", "true")));
    page.clickTool(u"Undo"_s);
    EXPECT_TRUE(page.waitFor(disabled("Redo", "false")));
    EXPECT_TRUE(page.waitFor(disabled("Undo", "true")));
}

TEST_F(PageToolbar, EveryButtonHasALabelAndOneOfThemTheTabStop)
{
    EXPECT_TRUE(page.jsBool(
        u"[...document.querySelectorAll('.toolbar button')].every(b => b.getAttribute('aria-label'))"_s));
    EXPECT_EQ(page.js(u"document.querySelectorAll('.toolbar button').length"_s).toInt(), 24);
    EXPECT_EQ(
        page.js(u"document.querySelectorAll('.toolbar button[tabindex=\"0\"]').length"_s).toInt(),
        1);
    EXPECT_EQ(
        page.jsText(u"document.querySelector('.toolbar').getAttribute('role')"_s), u"toolbar"_s);
    EXPECT_EQ(tool(u"Bold"_s, u"aria-keyshortcuts"_s), u"Control+B"_s);
}

TEST_F(PageToolbar, KeyboardReachesEveryButtonAndGoesBackToTheNote)
{
    start(u"<p>abc</p>"_s);
    page.select(u"p"_s, 0, 3);
    page.key(Qt::Key_F10, Qt::AltModifier);
    EXPECT_EQ(page.jsText(u"document.activeElement.getAttribute('aria-label')"_s), u"Undo"_s);
    QStringList reached;
    for (int i = 0; i < 24; ++i) {
        reached << page.jsText(u"document.activeElement.getAttribute('aria-label')"_s);
        page.key(Qt::Key_Right);
    }
    EXPECT_EQ(reached.removeDuplicates(), 0);
    EXPECT_EQ(page.jsText(u"document.activeElement.getAttribute('aria-label')"_s), u"Undo"_s);
    page.key(Qt::Key_End);
    EXPECT_EQ(page.jsText(u"document.activeElement.getAttribute('aria-label')"_s), reached.last());
    page.key(Qt::Key_Escape);
    EXPECT_TRUE(page.waitFor(u"note.hasFocus()"_s));
    EXPECT_EQ(page.selectedText(), u"abc"_s);
}

TEST_F(PageToolbar, MenusWorkByKeyboard)
{
    start(u"<p>abc</p>"_s);
    page.key(Qt::Key_F10, Qt::AltModifier);
    page.key(Qt::Key_Right);
    page.key(Qt::Key_Right);
    page.key(Qt::Key_Down);
    EXPECT_EQ(page.jsText(u"document.activeElement.getAttribute('role')"_s), u"menuitemradio"_s);
    page.key(Qt::Key_Escape);
    EXPECT_EQ(
        page.jsText(u"document.activeElement.getAttribute('aria-label')"_s), u"Paragraph style"_s);
    EXPECT_FALSE(page.jsBool(u"!!document.querySelector('.popup')"_s));
    page.key(Qt::Key_Return);
    page.key(Qt::Key_Down);
    page.key(Qt::Key_Return);
    EXPECT_EQ(page.shown(), u"<h1>abc</h1>"_s);
    EXPECT_TRUE(page.jsBool(u"note.hasFocus()"_s));
}

TEST_F(PageToolbar, PressInTheNoteClosesWhatIsOpen)
{
    start(u"<p>abc</p>"_s);
    page.clickTool(u"Alignment"_s);
    EXPECT_TRUE(page.jsBool(u"!!document.querySelector('.popup')"_s));
    page.clickTool(u"Alignment"_s);
    EXPECT_FALSE(page.jsBool(u"!!document.querySelector('.popup')"_s));
    page.clickTool(u"Alignment"_s);
    page.clickNote(u"p"_s);
    EXPECT_FALSE(page.jsBool(u"!!document.querySelector('.popup')"_s));
}

TEST_F(PageToolbar, ButtonsLeaveTheCaretInTheNote)
{
    start(u"<p>abc</p>"_s);
    page.caret(u"p"_s, 2);
    page.clickTool(u"Bold"_s);
    page.type(u"x"_s);
    EXPECT_EQ(page.shown(), u"<p>ab<b>x</b>c</p>"_s);
}

TEST_F(PageToolbar, TooltipNamesTheShortcut)
{
    page.key(Qt::Key_Tab);
    page.js(
        u"document.querySelector('[aria-label=Bold]').dispatchEvent(new Event('pointerenter'))"_s);
    EXPECT_TRUE(
        page.waitFor(u"document.querySelector('.tooltip.shown').textContent === 'BoldCtrl+B'"_s));
}

TEST(PageLooks, LabelsFollowTheLanguage)
{
    for (const auto& [language, bold] :
        {std::pair(u"zh-CN"_s, u"加粗"_s), std::pair(u"zh-Hant-TW"_s, u"加粗"_s),
            std::pair(u"en-GB"_s, u"Bold"_s), std::pair(u"de-DE"_s, u"Bold"_s)}) {
        PageHarness::Settings settings;
        settings.language = language;
        PageHarness page(settings);
        EXPECT_TRUE(page.jsBool(u"!!document.querySelector('[aria-label=%1]')"_s.arg(bold)));
    }
}

TEST(PageLooks, DarkAndLightFollowTheHost)
{
    PageHarness::Settings settings;
    settings.dark = true;
    PageHarness page(settings);
    const QString colour = u"getComputedStyle(note.documentElement).backgroundColor"_s;
    EXPECT_EQ(page.jsText(colour), u"rgb(28, 29, 32)"_s);
    page.load(u"<p style='color: rgb(0, 0, 0)'>black</p>"_s);
    EXPECT_EQ(page.jsText(colour), u"rgb(28, 29, 32)"_s);
    EXPECT_EQ(
        page.jsText(u"getComputedStyle(note.querySelector('p')).color"_s), u"rgb(230, 231, 234)"_s);
    EXPECT_EQ(
        page.callPrivate(u"colorScheme"_s, u"{\"dark\":false}"_s)[u"result"], QJsonValue(true));
    EXPECT_EQ(page.jsText(colour), u"rgb(255, 255, 255)"_s);
    EXPECT_FALSE(page.jsBool(u"document.documentElement.classList.contains('dark')"_s));
    EXPECT_EQ(page.html(), u"<p style='color: rgb(0, 0, 0)'>black</p>"_s);
}

TEST(PageLooks, IconsAreDrawnAsVectors)
{
    PageHarness page;
    EXPECT_TRUE(page.jsBool(u"document.querySelectorAll('.toolbar svg').length >= 24 && "
                            u"document.querySelectorAll('.toolbar img').length === 0"_s));
}

TEST(PageLooks, HintInAnEmptyNoteOnly)
{
    PageHarness page;
    const QString shown = u"!!document.querySelector('.placeholder.shown')"_s;
    EXPECT_TRUE(page.waitFor(shown));
    page.focusNote();
    page.type(u"a"_s);
    EXPECT_TRUE(page.waitFor(u"!"_s + shown));
    page.key(Qt::Key_Backspace);
    EXPECT_TRUE(page.waitFor(shown));
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    EXPECT_TRUE(page.waitFor(u"!"_s + shown));
    page.call(u"SetEditorMode"_s, u"{\"readonly\":false }"_s);
    page.load(u"<p><img src='x.png'></p>"_s);
    EXPECT_TRUE(page.waitFor(u"!"_s + shown));
}
