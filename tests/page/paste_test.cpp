// HTML of other programs, pasted: what stays and what goes.
#include "PasteFixture.h"

namespace {

struct Case {
    const char* name;
    const char* before;
    const char* after;
};

void PrintTo(const Case& sample, std::ostream* out)
{
    *out << sample.name;
}

// What a word processor in a browser puts around an item: a list and a box for each.
#define BOXED(list, level, id, text)                                                               \
    "<div class=\"ListContainerWrapper SCXW1 BCX8\"><" list " role=\"list\"><li data-listid=\"" id \
    "\" data-aria-level=\"" level "\" role=\"listitem\" class=\"OutlineElement Ltr\"><p>" text     \
    "</p></li></" list "></div>"

// What a word processor writes in front of an item.
#define MARKER(text)                                                                               \
    "<![if !supportLists]><span lang=EN-US style='font-family:Symbol;mso-fareast-font-family:"     \
    "Symbol'><span style='mso-list:Ignore'>" text                                                  \
    "<span style='font:7.0pt \"Times New Roman\"'>&nbsp;&nbsp;&nbsp;\n "                           \
    "</span></span></span><![endif]>"

const Case cases[] = {
    {"WordParagraphs",
        "<html xmlns:o=\"urn:schemas-microsoft-com:office:office\"><head>"
        "<meta name=Generator content=\"Microsoft Word 15\"><link rel=File-List "
        "href=\"file:///c/l.xml\">"
        "<!--[if gte mso 9]><xml><w:View>Normal</w:View></xml><![endif]-->"
        "<style><!-- @font-face {font-family:Calibri; panose-1:2 15;} p.MsoNormal {margin:0in;"
        "mso-pagination:none; font-size:11.0pt; font-family:\"Calibri\",sans-serif;} "
        "--></style></head>"
        "<body lang=EN-US style='tab-interval:.5in'><!--StartFragment-->\n\n"
        "<p class=MsoNormal>One<o:p></o:p></p>\n\n<p class=MsoNormal><o:p>&nbsp;</o:p></p>\n\n"
        "<p class=MsoNormal align=center style='text-align:center;mso-margin-top-alt:auto'>"
        "<b><span lang=EN-US\n style='color:red;mso-themecolor:accent1'>two</span></b> "
        "<i>three</i>\nfour"
        "<o:p></o:p></p>\n<!--EndFragment--></body></html>",
        "<p>One</p><p><br></p><p align=\"center\" style=\"text-align: center;\">"
        "<b><span style=\"color: red;\">two</span></b> <i>three</i> four</p>"},
    {"WordListIsNested",
        "<style>@list l0:level1 {mso-level-number-format:bullet;}"
        "@list l0:level2 {mso-level-number-format:alpha-lower;}</style>"
        "<p class=MsoListParagraphCxSpFirst style='margin-left:.5in;text-indent:-.25in;mso-list:l0 "
        "level1 "
        "lfo1'>" MARKER(
            "&middot;") "a<o:p></o:p></p>\n\n"
                        "<p class=MsoListParagraphCxSpMiddle style='mso-list:l0 level2 "
                        "lfo1'>" MARKER(
                            "a.") "<b>b</b></p>\n"
                                  "<p class=MsoListParagraphCxSpMiddle style='mso-list:l0 level2 "
                                  "lfo1'>" MARKER(
                                      "b.") "c</p>\n"
                                            "<p class=MsoListParagraphCxSpLast style='mso-list:l0 "
                                            "level1 lfo1'>" MARKER(
                                                "&middot;") "d</p>\n"
                                                            "<p class=MsoNormal>end</p>",
        "<ul><li>a<ol type=\"a\"><li><b>b</b></li><li>c</li></ol></li><li>d</li></ul><p>end</p>"},
    {"WordNumbersGoOn",
        "<p style='mso-list:l3 level1 lfo2'>" MARKER(
            "3.") "c</p>"
                  "<p style='mso-list:l3 level1 lfo2'>" MARKER(
                      "4.") "d</p><p>x</p>"
                            "<p style='mso-list:l3 level1 lfo2'>" MARKER("5.") "e</p>",
        "<ol start=\"3\"><li>c</li><li>d</li></ol><p>x</p><ol start=\"5\"><li>e</li></ol>"},
    {"WordListsSideBySideStayTwo",
        "<p style='mso-list:l1 level1 lfo1'>" MARKER(
            "1)") "a</p>"
                  "<p style='mso-list:l2 level1 lfo2'>" MARKER(
                      "i)") "b</p>"
                            "<p style='mso-list:l2 level1 lfo2'>" MARKER("ii)") "c</p>",
        "<ol><li>a</li></ol><ol type=\"i\"><li>b</li><li>c</li></ol>"},
    {"WordItemsMaySkipALevel",
        "<p style='mso-list:l0 level3 lfo1'>" MARKER(
            "o") "deep</p>"
                 "<p style='mso-list:l0 level1 lfo1'>" MARKER(
                     "o") "top</p>"
                          "<p style='mso-list:l0 level99999 lfo1'>" MARKER("o") "deeper</p>",
        "<ul><li>deep</li></ul><ul><li>top<ul><li>deeper</li></ul></li></ul>"},
    {"BoxedItemsOfOneListAreJoined",
        BOXED("ul", "1", "1", "a") BOXED("ul", "2", "1", "b") BOXED("ul", "2", "1", "c")
            BOXED("ul", "1", "1", "d"),
        "<ul><li>a<ul><li>b</li><li>c</li></ul></li><li>d</li></ul>"},
    {"BoxedItemsOfTwoListsStayTwo",
        BOXED("ol", "1", "1", "a") BOXED("ol", "1", "2", "b")
            BOXED("ul", "1", "2", "c") "<p>x</p>" BOXED("ul", "1", "2", "d"),
        "<ol><li>a</li></ol><ol><li>b</li></ol><ul><li>c</li></ul><p>x</p><ul><li>d</li></ul>"},
    {"WordHeadings",
        "<h1 style='mso-list:l0 level1 lfo1'>" MARKER(
            "1") "Title</h1>"
                 "<h2 style='margin-left:0in'><span style='font-family:Arial'>Sub</span></h2>"
                 "<p class=MsoTitle>Book</p><p class=Own style='mso-outline-level:3'>Third</p>",
        "<h1>Title</h1><h2>Sub</h2><h1>Book</h1><h3>Third</h3>"},
    {"WordTable",
        "<table class=MsoTableGrid border=1 cellspacing=0 cellpadding=0 "
        "style='border-collapse:collapse;"
        "border:none;mso-border-alt:solid windowtext .5pt;mso-yfti-tbllook:1184'>\n <tr "
        "style='mso-yfti-irow:0;height:15pt'>\n  <td width=100 colspan=2 valign=top "
        "style='width:75.0pt;"
        "border:solid windowtext 1.0pt;background:#FFC000;padding:0in 5.4pt 0in 5.4pt'>\n"
        "  <p class=MsoNormal>a<o:p></o:p></p>\n  </td>\n </tr>\n</table>",
        "<table border=\"1\" cellspacing=\"0\" cellpadding=\"0\" style=\"border-collapse: "
        "collapse;\">"
        "<tbody><tr><td width=\"100\" colspan=\"2\" valign=\"top\" style=\"width: 75.0pt; "
        "border: solid windowtext 1.0pt; background-color: #ffc000;\">a</td></tr></tbody></table>"},
    {"WordSpacesAndTabs",
        "<p class=MsoNormal>a.<span style='mso-spacerun:yes'>&nbsp; </span>b<span "
        "style='mso-tab-count:1'>&nbsp;&nbsp;&nbsp;&nbsp;&nbsp; </span>c</p>",
        "<p>a. b c</p>"},
    {"WordDrawingsAndHiddenText",
        "<p>a<v:shape id=x><v:path o:extrusionok=f></v:path></v:shape><span style='display:none;"
        "mso-hide:all'>secret</span><w:Sdt DocPart=1>b</w:Sdt></p>",
        "<p>ab</p>"},
    {"ExcelLooksAreInClasses",
        "<style>.xl65 {mso-style-parent:style0;color:#C00000;font-weight:700;border:.5pt solid "
        "windowtext;"
        "mso-pattern:black none;white-space:normal;} td {padding-top:1px;color:black;}</style>"
        "<table border=0 cellpadding=0 cellspacing=0 width=64 style='border-collapse:collapse'>"
        "<!--StartFragment--><col width=64 style='width:48pt'><tr height=20 style='height:15.0pt'>"
        "<td height=20 class=xl65 align=right width=64 "
        "x:num>1</td><td></td></tr><!--EndFragment--></table>",
        "<table border=\"0\" cellpadding=\"0\" cellspacing=\"0\" width=\"64\" "
        "style=\"border-collapse: "
        "collapse;\"><colgroup><col width=\"64\" style=\"width: 48pt;\"></colgroup><tbody><tr>"
        "<td align=\"right\" width=\"64\" style=\"color: #c00000; font-weight: 700; border: .5pt "
        "solid "
        "windowtext;\">1</td><td></td></tr></tbody></table>"},
    {"DocsWrapperIsNotBold",
        "<meta charset='utf-8'><b style=\"font-weight:normal;\" id=\"docs-internal-guid-1\"><p "
        "dir=\"ltr\" "
        "style=\"line-height:1.38;margin-top:0pt;\"><span "
        "style=\"font-size:11pt;font-family:Arial;color:"
        "#000000;background-color:transparent;font-weight:400;white-space:pre-wrap;\">plain "
        "</span><span "
        "style=\"font-size:11pt;font-weight:700;white-space:pre-wrap;\">bold</span></p></b>",
        "<p>plain <span style=\"font-weight: 700;\">bold</span></p>"},
    {"DocsListInListGoesIntoItsItem",
        "<ul style=\"margin-top:0\"><li dir=\"ltr\" aria-level=\"1\" "
        "style=\"list-style-type:disc\"><p "
        "role=\"presentation\">a</p></li><ul><li aria-level=\"2\"><p>b</p></li></ul></ul>",
        "<ul><li style=\"list-style-type: disc;\">a<ul><li>b</li></ul></li></ul>"},
    {"WebPage",
        "<html><body>\n<!--StartFragment--><section class=\"c-x\" data-id=7 "
        "style=\"box-sizing:border-box;"
        "font-family:Lato;color:rgb(0, 0, 0);margin:0px;\"><h2 id=t "
        "class=big>Head</h2><div><p>Text "
        "<a class=l href=\"https://example.org/a?b=1&amp;c=2\" onclick=\"x()\" "
        "target=_blank>link</a> and "
        "<a href=\"#there\">jump</a>.</p></div></section><!--EndFragment-->\n</body></html>",
        "<h2>Head</h2><p>Text <a href=\"https://example.org/a?b=1&amp;c=2\">link</a> and "
        "jump.</p>"},
    {"MailWithFontElements",
        "<div class=gmail_quote><font face=Arial size=2 color=navy><span style='font-size:10.0pt;"
        "font-family:Arial;color:navy'>Hi.<u></u></span></font><div><br></div><blockquote "
        "type=cite>"
        "old</blockquote></div>",
        "<div><font color=\"navy\"><span style=\"color: navy;\">Hi.</span></font><div><br></div>"
        "<blockquote>old</blockquote></div>"},
    {"RemotePictureKeepsItsAddress",
        "<p>a<img class=\"x/y\" src=\"https://example.org/p.png\" alt=P width=20 height=10 "
        "srcset=\"q 2x\" "
        "loading=lazy></p>",
        "<p>a<img src=\"https://example.org/p.png\" alt=\"P\" width=\"20\" height=\"10\"></p>"},
    {"TrackingPixelGoes", "<p>a<img src=\"https://example.org/t.gif\" width=1 height=1></p>",
        "<p>a</p>"},
    {"PictureThatNobodyCanShowLeavesItsDescription",
        "<p>a <img src=\"cid:1@x\" alt=\"chart\"> b<img src=\"webkit-fake-url://1/i.png\"></p>",
        "<p>a chart b</p>"},
    {"ConvertedSpacesAreSpaces",
        "<p>a<span class=\"Apple-converted-space\">&nbsp;</span>b</p><br "
        "class=\"Apple-interchange-newline\">",
        "<p>a b</p>"},
    {"EmptySpansGo",
        "<p><span></span><span lang=EN>a</span><span><span><b></b></span></span><span "
        "style='color:red'>b"
        "</span><span style='color: red'>c</span></p>",
        "<p>a<span style=\"color: red;\">bc</span></p>"},
    {"RightToLeftStays", "<p dir=RTL style='direction:rtl;unicode-bidi:embed'>a</p>",
        "<p dir=\"RTL\" style=\"direction: rtl;\">a</p>"},
    {"PreformattedTextStaysAsItIs", "<pre class=hl>a\n  <span class=k>b</span>\n</pre>",
        "<pre>a\n  b\n</pre>"},
};

} // namespace

class PagePasteOf : public PagePaste, public testing::WithParamInterface<Case> { };

TEST_P(PagePasteOf, Reads)
{
    // Behind other text, so that the engine does not join the last paragraph with an empty one.
    start(u"<p>before</p><p id=\"at\"><br></p>"_s);
    page.js(u"note.getSelection().collapse(note.querySelector('#at'), 0)"_s);
    page.js(
        u"window.inserted = []; const exec = note.execCommand; note.execCommand = function (...a) {"
        u"if (a[0] === 'insertHTML') inserted.push(a[2]); return exec.apply(note, a); }; 0"_s);
    paste(QString::fromUtf8(GetParam().before));
    EXPECT_EQ(page.jsText(u"inserted.join('|')"_s), QString::fromUtf8(GetParam().after));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>before</p><p id=\"at\"><br></p>"_s);
}

INSTANTIATE_TEST_SUITE_P(Samples, PagePasteOf, testing::ValuesIn(cases),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(PagePaste, OwnHtmlKeepsItsAttributes)
{
    const QString own = u"<p class=\"mine\" style=\"margin:0in; font-family:Georgia\">a<img "
                        u"class=\"userdata\\attachment\\1.png\" nm_exdata=\"{}\" "
                        u"src=\"../userdata\\attachment\\1.png\"></p>"_s;
    start(u"<p>x</p>"_s);
    page.js(u"note.getSelection().collapse(note.querySelector('p').firstChild, 1)"_s);
    paste(own);
    const QString html = page.html();
    EXPECT_TRUE(html.contains(u"class=\"userdata\\attachment\\1.png\" nm_exdata=\"{}\""_s))
        << html.toStdString();
}

TEST_F(PagePaste, CopyInsideTheEditorIsNotCleaned)
{
    start(u"<p>a<span class=\"own\" style=\"font-family: Georgia;\">b</span>c</p><p>x</p>"_s);
    page.select(u"p"_s, 0, 3);
    page.key(Qt::Key_C, Qt::ControlModifier);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'copied')"_s));
    page.caret(u"p:nth-child(2)"_s, 1);
    page.key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(page.jsText(u"note.querySelectorAll('span.own').length"_s), u"2"_s)
        << page.html().toStdString();
}

TEST_F(PagePaste, PasteBeyondTheLimitIsRefusedWhole)
{
    start(u"<p>abc</p>"_s);
    page.call(u"SetEditorMaxChars"_s, u"{\"size\":6}"_s);
    paste(u"<p>defg</p><img src='data:image/png;base64,AAAA'>"_s);
    EXPECT_EQ(page.html(), u"<p>abc</p>"_s);
    EXPECT_TRUE(page.posts(u"pictures"_s).isEmpty());
}
