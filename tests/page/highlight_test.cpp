// Search hits over the note: what is found, and that it is painted in its colours, in both ways.
#include "HighlightFixture.h"

namespace {

const auto wayName = [](const testing::TestParamInfo<Way>& info) {
    return info.param == Way::Ranges ? "Ranges" : "Overlay";
};

const QString kLarge = u"<p style=\"font-size:48px\">a <span>HHHH</span> b</p>"_s;

} // namespace

INSTANTIATE_TEST_SUITE_P(Ways, PageHighlight, testing::Values(Way::Ranges, Way::Overlay), wayName);

TEST_P(PageHighlight, HitsHaveTheirColours)
{
    load(kLarge);
    EXPECT_EQ(pixels(u"span"_s, kBackground), 0);
    highlight(u"HHHH"_s);
    EXPECT_TRUE(waitForPixels(u"span"_s, kBackground, 500));
    EXPECT_TRUE(waitForPixels(u"span"_s, kText, 100));
    clear();
    EXPECT_TRUE(paints(u""_s));
    EXPECT_TRUE(waitForPixels(u"span"_s, 0xffffffff, 500));
    EXPECT_EQ(pixels(u"span"_s, kBackground), 0);
}

TEST_P(PageHighlight, HitsHaveTheSameColoursOnDarkPaper)
{
    page.callPrivate(u"colorScheme"_s, u"{\"dark\":true}"_s);
    load(kLarge);
    highlight(u"HHHH"_s);
    EXPECT_TRUE(waitForPixels(u"span"_s, kBackground, 500));
    EXPECT_TRUE(waitForPixels(u"span"_s, kText, 100));
}

TEST_P(PageHighlight, ALinkAndColouredTextHaveTheColoursOfAHitToo)
{
    load(u"<p style=\"font-size:48px\"><a href=\"https://example.org\">HHHH</a> "
         "<b style=\"color:#c00;background:#0c0\">HHHH</b></p>"_s);
    EXPECT_EQ(highlight(u"HHHH"_s), 2);
    for (const auto& selector : {u"a"_s, u"b"_s}) {
        EXPECT_TRUE(waitForPixels(selector, kBackground, 500)) << qPrintable(selector);
        EXPECT_TRUE(waitForPixels(selector, kText, 100)) << qPrintable(selector);
    }
}

TEST_P(PageHighlight, AHitThatCannotBePaintedDoesNotHoldUpTheOthers)
{
    load(u"<p>one hit</p><p>two hit</p><p>three hit</p>"_s);
    page.js(
        u"{ const bad = note.querySelectorAll('p')[1].firstChild;"
        "  Object.defineProperty(bad, 'ownerDocument', { get() { throw new Error('forced'); } });"
        "  const view = note.defaultView, Range = view.StaticRange;"
        "  view.StaticRange = function (place) {"
        "    if (place.startContainer === bad) throw new Error('forced');"
        "    return new Range(place); }; }"_s);
    EXPECT_EQ(highlight(u"hit"_s), 3);
    EXPECT_TRUE(paints(u"hit|hit"_s));
    EXPECT_TRUE(clear());
    EXPECT_TRUE(paints(u""_s));
}

TEST_P(PageHighlight, UpperAndLowerCaseAreToldApart)
{
    load(u"<p>note Note NOTE</p>"_s);
    EXPECT_EQ(highlight(u"Note"_s), 1);
    EXPECT_TRUE(paints(u"Note"_s));
    load(u"<p>note</p>"_s);
    EXPECT_EQ(highlight(u"Note"_s), 0);
    EXPECT_TRUE(paints(u""_s));
}

TEST_P(PageHighlight, HitsInsideWordsCount)
{
    load(u"<p>noted, keynotes</p>"_s);
    EXPECT_EQ(highlight(u"note"_s), 2);
}

TEST_P(PageHighlight, OverlappingHitsAreAllFound)
{
    load(u"<p>aaa</p>"_s);
    EXPECT_EQ(highlight(u"aa"_s), 2);
    EXPECT_TRUE(paints(u"aa|aa"_s));
}

TEST_P(PageHighlight, AHitRunsOverInlineElementsAndTextNodes)
{
    load(u"<p>x<b>ab</b><i>c<u>d</u></i><!-- c -->e</p>"_s);
    page.js(u"note.querySelector('b').firstChild.splitText(1)"_s);
    EXPECT_EQ(highlight(u"abcde"_s), 1);
    EXPECT_TRUE(paints(GetParam() == Way::Ranges ? u"abcde"_s : u"a|b|c|d|e"_s));
}

TEST_P(PageHighlight, AHitDoesNotCrossWhatPartsTheText)
{
    for (const char* html :
        {"<p>ab</p><p>cd</p>", "ab<div>cd</div>", "<div>ab</div>cd", "<p>ab<br>cd</p>",
            "<ul><li>ab</li><li>cd</li></ul>", "<table><tr><td>ab</td><td>cd</td></tr></table>",
            "<p>ab<img src=\"x.png\">cd</p>", "<p>ab</p><hr><p>cd</p>", "<b>ab<div>cd</div></b>"}) {
        load(QString::fromLatin1(html));
        EXPECT_EQ(highlight(u"bc"_s), 0) << html;
        EXPECT_EQ(highlight(u"cd"_s), 1) << html;
    }
}

TEST_P(PageHighlight, BlanksCountAsTheyAreShown)
{
    const struct {
        const char* html;
        const char* word;
        int hits;
    } cases[] = {
        {"<p>one\n   two</p>", "one two", 1},
        {"<p>one <b> two</b></p>", "one two", 1},
        {"<p>one&nbsp;two</p>", "one two", 1},
        {"<p>one two</p>", "one\u00a0two", 1},
        {"<p>one  two</p>", "one  two", 0},
        {"<p>one&nbsp; two</p>", "one  two", 1},
        {"<p>one&nbsp; two</p>", "one two", 0},
        {"<pre>one  two</pre>", "one  two", 1},
        {"<pre>one  two</pre>", "one two", 0},
        {"<pre>one\ntwo</pre>", "one two", 0},
        {"<p>  \n one</p>", " one", 0},
        {"<p>a b c</p>", " ", 2},
    };
    for (const auto& [html, word, hits] : cases) {
        load(QString::fromUtf8(html));
        EXPECT_EQ(highlight(QString::fromUtf8(word)), hits) << html << " / " << word;
    }
}

TEST_P(PageHighlight, TheWordIsNoPattern)
{
    load(u"<p>a.b axb (c) [d] e*+?^$|\\ \u6ce8\u91ca \U0001F600\U0001F600 &amp; \"q\"</p>"_s);
    const std::pair<QString, int> words[] = {{u"a.b"_s, 1}, {u". "_s, 0}, {u"(c) [d]"_s, 1},
        {u"e*+?^$|\\ "_s, 1}, {u"\u6ce8"_s, 1}, {u"\U0001F600"_s, 2}, {u"& \"q\""_s, 1},
        {QString(QChar(0)), 0}, {u"a.b axb ("_s, 1}, {QString(100000, u'a'), 0}};
    for (const auto& [word, hits] : words)
        EXPECT_EQ(highlight(word), hits) << qPrintable(word.left(20));
}

TEST_P(PageHighlight, TextThatIsNotShownHasNoHits)
{
    for (const char* html : {"<p style=\"display:none\">word</p>",
             "<p style=\"DISPLAY : none\">word</p>", "<p style=\"visibility:hidden\">word</p>",
             "<div style=\"display:none\"><p><b>word</b></p></div>", "<p hidden>word</p>",
             "<p>a<span style=\"display:none\">word</span></p>",
             "<div style=\"visibility:hidden\"><p style=\"visibility:visible\">word</p></div>",
             "<style>.x { display: none }</style><p class=\"x\">word</p>",
             "<style>.x { visibility: hidden }</style><p class=\"x\">word</p>",
             "<p>a</p><style>word { }</style>"}) {
        load(QString::fromLatin1(html) + u"<p>other</p>"_s);
        EXPECT_EQ(highlight(u"word"_s), 0) << html;
        EXPECT_TRUE(paints(u""_s)) << html;
    }
}

TEST_P(PageHighlight, TextThatIsShownThoughItDoesNotLookSoHasHits)
{
    for (const char* html : {"<p style=\"color:#fff\">word</p>", "<p style=\"opacity:0\">word</p>",
             "<p style=\"font-family:small\">word</p>",
             "<style>.y { display: none }</style><p class=\"x\">word</p>",
             "<p>wo<span style=\"display:none\">x</span></p><p>word</p>"}) {
        load(QString::fromLatin1(html));
        EXPECT_EQ(highlight(u"word"_s), 1) << html;
    }
}

TEST_P(PageHighlight, AWordInHiddenTextAloneDoesNotMoveTheView)
{
    load(u"<div style=\"height:3000px\">top</div><p style=\"display:none\">word</p>"
         "<div style=\"height:3000px\">end</div>"_s);
    EXPECT_EQ(highlight(u"word"_s), 0);
    EXPECT_EQ(scrolled(), 0);
    EXPECT_EQ(highlight(u"missing"_s), 0);
    EXPECT_EQ(scrolled(), 0);
}

TEST_P(PageHighlight, TheViewMovesToTheFirstVisibleHit)
{
    load(u"<div style=\"height:2000px\">top</div><p style=\"visibility:hidden\">word</p>"
         "<div style=\"height:2000px\">mid</div><p id=\"first\">word</p>"
         "<div style=\"height:2000px\">gap</div><p id=\"second\">word</p>"
         "<div style=\"height:2000px\">end</div>"_s);
    EXPECT_EQ(highlight(u"word"_s), 2);
    EXPECT_TRUE(isOnScreen(u"#first"_s));
    EXPECT_TRUE(paints(u"word"_s));
    // Only there: also when the view stood elsewhere, and not when the highlight goes.
    page.js(u"note.scrollingElement.scrollTop = 6000"_s);
    EXPECT_EQ(highlight(u"word"_s), 2);
    EXPECT_TRUE(isOnScreen(u"#first"_s));
    page.js(u"note.scrollingElement.scrollTop = 100"_s);
    clear();
    EXPECT_EQ(scrolled(), 100);
}

TEST_P(PageHighlight, AHitInABoxThatScrollsIsScrolledToInIt)
{
    load(u"<div style=\"height:1500px\">top</div><div id=\"box\" "
         u"style=\"height:100px;overflow:auto\">"
         "<div style=\"height:900px\">in</div><p id=\"hit\">word</p>"
         "<div style=\"height:900px\">end</div></div><div style=\"height:1500px\">end</div>"_s);
    EXPECT_EQ(highlight(u"word"_s), 1);
    EXPECT_TRUE(isOnScreen(u"#hit"_s));
    EXPECT_TRUE(
        page.jsBool(u"(() => { const box = note.querySelector('#box').getBoundingClientRect();"
                    "  const hit = note.querySelector('#hit').getBoundingClientRect();"
                    "  return hit.top >= box.top && hit.bottom <= box.bottom; })()"_s));
    EXPECT_TRUE(paints(u"word"_s));
}

TEST_P(PageHighlight, HitsFurtherDownArePaintedWhenTheyAreScrolledTo)
{
    load(u"<p>word 1</p><div style=\"height:5000px\">gap</div><p style=\"font-size:48px\" "
         "id=\"far\">word</p>"_s);
    EXPECT_EQ(highlight(u"word"_s), 2);
    page.js(u"note.querySelector('#far').scrollIntoView()"_s);
    EXPECT_TRUE(waitForPixels(u"#far"_s, kBackground, 500));
    page.js(u"note.scrollingElement.scrollTop = 0"_s);
    EXPECT_TRUE(waitForPixels(u"p"_s, kBackground, 100));
}

TEST_P(PageHighlight, EveryHitOfALargeNoteIsPaintedWhereItIsLookedAt)
{
    QString html;
    for (int i = 0; i < 4000; ++i)
        html +=
            u"<p id=\"p%1\">paragraph %1 with some more text than that and a word in it</p>"_s.arg(
                i);
    load(html);
    EXPECT_EQ(highlight(u"word"_s), 4000);
    for (const int i : {0, 3999, 2000, 1}) {
        const QString selector = u"#p%1"_s.arg(i);
        page.js(
            u"note.querySelector(%1).scrollIntoView({ block: 'center' })"_s.arg(quoted(selector)));
        EXPECT_TRUE(waitForPixels(selector, kBackground, 100)) << i;
    }
    EXPECT_EQ(highlight(u"paragraph 3500 "_s), 1);
    EXPECT_TRUE(waitForPixels(u"#p3500"_s, kBackground, 200));
    EXPECT_TRUE(isOnScreen(u"#p3500"_s));
}

TEST_P(PageHighlight, ANoteThatIsStillLoadingIsSearchedWhole)
{
    QString html;
    for (int i = 0; i < 20000; ++i)
        html += u"<p>paragraph %1 with a word</p>"_s.arg(i);
    page.call(u"SetEditorContent"_s, html);
    chooseWay();
    ASSERT_TRUE(page.jsBool(u"document.documentElement.classList.contains('loading')"_s));
    EXPECT_EQ(highlight(u"word"_s), 20000);
    EXPECT_EQ(page.html(), html);
}

TEST_P(PageHighlight, ExactlyTheNamedSegmentsAreRemoved)
{
    load(u"<p>1word 2word 3word 4word</p><p>rest</p>"_s);
    EXPECT_EQ(highlight(u"word"_s), 4);
    EXPECT_EQ(highlight(u"rest"_s), 1);
    EXPECT_TRUE(paints(u"word|word|word|word|rest"_s));
    EXPECT_TRUE(remove(1, 1, 2));
    EXPECT_TRUE(paints(u"word|word|rest"_s));
    EXPECT_TRUE(remove(1, 1, 1));
    EXPECT_TRUE(remove(7, 0, 100));
    EXPECT_TRUE(paints(u"word|word|rest"_s));
    EXPECT_TRUE(remove(2, 0, 1));
    EXPECT_TRUE(paints(u"word|word"_s));
    EXPECT_TRUE(remove(1, 0, 4));
    EXPECT_TRUE(paints(u""_s));
    EXPECT_TRUE(page.jsBool(u"!document.querySelector('.hits')"_s));
}

TEST_P(PageHighlight, AnotherNoteTakesThePaintAway)
{
    load(u"<p>word</p>"_s);
    EXPECT_EQ(highlight(u"word"_s), 1);
    EXPECT_TRUE(paints(u"word"_s));
    load(u"<p>word of another note</p>"_s);
    EXPECT_TRUE(paints(u""_s));
    EXPECT_TRUE(clear()); // Its handles are still good for the call.
    EXPECT_EQ(highlight(u"word"_s), 1);
    EXPECT_TRUE(paints(u"word"_s));
}

TEST_P(PageHighlight, AReadOnlyNoteIsPaintedToo)
{
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    load(kLarge);
    EXPECT_EQ(highlight(u"HHHH"_s), 1);
    EXPECT_TRUE(waitForPixels(u"span"_s, kBackground, 500));
}

TEST_P(PageHighlight, CellsOfATableArePaintedEachForItself)
{
    load(u"<table border=1><tr><td style=\"font-size:48px\">HHHH</td><td "
         "style=\"font-size:48px\"><b>HHHH</b></td></tr></table>"_s);
    EXPECT_EQ(highlight(u"HHHH"_s), 2);
    EXPECT_TRUE(waitForPixels(u"td"_s, kBackground, 500));
    EXPECT_TRUE(waitForPixels(u"b"_s, kBackground, 500));
}

TEST_P(PageHighlight, AnElementWithoutABoxOfItsOwnIsPaintedToo)
{
    load(u"<div style=\"display:contents\">word</div><p>word</p>"_s);
    EXPECT_EQ(highlight(u"word"_s), 2);
    EXPECT_TRUE(paints(u"word|word"_s));
}

TEST_P(PageHighlight, ASecondHighlightPaintsInTheParagraphsOfTheFirst)
{
    QString html = u"<p>one two</p>"_s;
    for (int i = 0; i < 30; ++i)
        html += u"<p>one</p>"_s;
    load(html + u"<p>one two</p>"_s);
    EXPECT_EQ(highlight(u"one"_s), 32);
    EXPECT_EQ(highlight(u"two"_s), 2);
    page.js(u"note.querySelector('p:last-child').scrollIntoView()"_s);
    EXPECT_TRUE(page.waitFor(painted() + u".endsWith('one|two')"_s));
}

TEST_P(PageHighlight, TextNestedAsDeepAsItGoesIsSearched)
{
    load(u"<p>%1word%2</p>"_s.arg(u"<b>"_s.repeated(5000), u"</b>"_s.repeated(5000)));
    EXPECT_EQ(highlight(u"word"_s), 1);
    load(u"%1word"_s.arg(u"<div style=\"display:block\">"_s.repeated(5000)));
    EXPECT_EQ(highlight(u"word"_s), 1);
}

TEST_P(PageHighlight, AWordThatIsEverywhereHasAMillionHitsAtMost)
{
    const QString html = u"<p>%1</p>"_s.arg(QString(5000, u'a')).repeated(250);
    load(html);
    EXPECT_EQ(highlight(u"a"_s), 1 << 20);
    EXPECT_TRUE(clear());
    EXPECT_TRUE(paints(u""_s));
    EXPECT_EQ(page.html(), html);
}

TEST_P(PageHighlight, ARequestThatIsNoneIsRefused)
{
    load(u"<p>word</p>"_s);
    for (const auto& text :
        {u""_s, u"[]"_s, u"{}"_s, u"{\"painting\":1}"_s, u"{\"painting\":1,\"keyword\":\"\"}"_s,
            u"{\"painting\":\"1\",\"keyword\":\"word\"}"_s})
        EXPECT_FALSE(page.callPrivate(u"highlight"_s, text)[u"result"].toBool())
            << qPrintable(text);
    for (const auto& text : {u""_s, u"{}"_s, u"{\"segments\":1}"_s, u"{\"segments\":[1]}"_s})
        EXPECT_FALSE(page.callPrivate(u"unhighlight"_s, text)[u"result"].toBool())
            << qPrintable(text);
    EXPECT_TRUE(paints(u""_s));
}
