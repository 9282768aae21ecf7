// HTML of other programs, pasted: what stays, what goes, and pictures that come in through the
// library.

#include "Names.h"
#include "PageHarness.h"

#include <QApplication>
#include <QClipboard>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>

#include <gtest/gtest.h>

namespace {

class PagePaste : public testing::Test {
protected:
    PageHarness page;

    /// Pastes into an empty line of a note and waits until the page is quiet.
    void paste(const QString& html)
    {
        auto* data = new QMimeData;
        data->setHtml(html);
        QApplication::clipboard()->setMimeData(data);
        page.key(Qt::Key_V, Qt::ControlModifier);
    }
    void start(const QString& note = u"<div><br></div>"_s)
    {
        page.load(note);
        page.focusNote();
    }
    QString pasted(const QString& html)
    {
        start();
        paste(html);
        return page.html();
    }
    /// The sources that the page has asked for, in its last request.
    QStringList asked()
    {
        const QStringList requests = page.posts(u"pictures"_s);
        const auto request =
            QJsonDocument::fromJson(requests.isEmpty() ? "{}" : requests.last().toUtf8()).object();
        return request[u"sources"].toVariant().toStringList();
    }
    void answer(int number, const QStringList& digests)
    {
        const QJsonObject reply{
            {u"paste"_s, number}, {u"digests"_s, QJsonArray::fromStringList(digests)}};
        page.callPrivate(
            u"pictures"_s, QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact)));
    }
    QJsonObject add(const QString& digest)
    {
        const QJsonObject attachment{
            {u"picpath"_s, u"../userdata\\attachment\\%1.png"_s.arg(digest)},
            {u"strData"_s, u"userdata\\attachment\\%1.png"_s.arg(digest)},
            {u"exdata"_s, u"{\"OrigName_B64\":\"YQ==\"}"_s}, {u"type"_s, u"png"_s}};
        return page.call(u"AddPicToEditor"_s,
            QString::fromUtf8(QJsonDocument(attachment).toJson(QJsonDocument::Compact)));
    }
    void finish(int number)
    {
        page.callPrivate(u"picturesDone"_s, u"{\"paste\":%1}"_s.arg(number));
    }
};

QString element(const QString& digest)
{
    return u"class=\"userdata\\attachment\\%1.png\" src=\"../userdata\\attachment\\%1.png\" "
           u"data-ke-src=\"../userdata\\attachment\\%1.png\" "
           u"nmimgsrc=\"../userdata\\attachment\\%1.png\" "
           u"nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YQ==&quot;}\">"_s.arg(digest);
}

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

// --- Pictures ---

TEST_F(PagePaste, PicturesComeInBeforeTheTextAndAreOneStepOfUndo)
{
    start(u"<p>x</p>"_s);
    page.caret(u"p"_s, 1);
    paste(
        u"<p>a<img src='data:image/png;base64,AAAA' width=7 alt=one>b<img src='file:///c:/t/i.png'></p>"_s);
    EXPECT_EQ(asked(), (QStringList{u"data:image/png;base64,AAAA"_s, u"file:///c:/t/i.png"_s}));
    EXPECT_EQ(page.html(), u"<p>x</p>"_s);
    answer(1, {u"d1"_s, u"d2"_s});
    EXPECT_TRUE(add(u"d1"_s)[u"result"].toBool());
    EXPECT_TRUE(add(u"d2"_s)[u"result"].toBool());
    finish(1);
    const QString html = page.html();
    EXPECT_TRUE(html.startsWith(u"<p>xa<img width=\"7\" alt=\"one\" "_s + element(u"d1"_s)
        + u"b<img "_s + element(u"d2"_s)))
        << html.toStdString();
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>x</p>"_s);
}

TEST_F(PagePaste, OnePictureThatStandsTwiceIsAskedForOnce)
{
    start();
    paste(u"<p><img src='data:image/png;base64,AA=='><img src='data:image/png;base64,AA=='></p>"_s);
    EXPECT_EQ(asked().size(), 1);
    answer(1, {u"d1"_s});
    add(u"d1"_s);
    finish(1);
    EXPECT_EQ(page.html().count(u"d1.png\" src="_s), 2);
}

TEST_F(PagePaste, PictureThatDoesNotComeInLeavesItsDescription)
{
    start();
    paste(
        u"<p>a<img alt='a chart' src='data:image/png;base64,%%'>b</p><p>c</p><p><img src='file:///x.png'></p>"_s);
    answer(1, {QString(), u"d2"_s});
    finish(1);
    const QString html = page.html();
    EXPECT_TRUE(html.contains(u"aa chartb"_s)) << html.toStdString();
    EXPECT_FALSE(html.contains(u"<img"_s)) << html.toStdString();
}

TEST_F(PagePaste, AnotherAttachmentMeanwhileGoesToTheCaret)
{
    start(u"<p>x</p>"_s);
    page.caret(u"p"_s, 1);
    paste(u"<p>a<img src='data:image/png;base64,AAAA'></p>"_s);
    answer(1, {u"d1"_s});
    add(u"other"_s);
    EXPECT_TRUE(page.html().contains(u"other.png"_s));
    EXPECT_FALSE(page.html().contains(u"d1.png"_s));
    finish(1);
    EXPECT_FALSE(page.html().contains(u"d1.png"_s));
}

TEST_F(PagePaste, AnotherNoteMeanwhileGetsNothing)
{
    start(u"<p>x</p>"_s);
    paste(u"<p>a<img src='data:image/png;base64,AAAA'></p>"_s);
    page.load(u"<p>other</p>"_s);
    answer(1, {u"d1"_s});
    finish(1);
    EXPECT_EQ(page.html(), u"<p>other</p>"_s);
}

TEST_F(PagePaste, TextTypedMeanwhileStays)
{
    start(u"<p>x</p>"_s);
    page.caret(u"p"_s, 1);
    paste(u"<i>a</i><img src='data:image/png;base64,AAAA'>"_s);
    page.type(u"z"_s);
    answer(1, {u"d1"_s});
    add(u"d1"_s);
    finish(1);
    const QString html = page.html();
    EXPECT_TRUE(html.contains(u"z"_s) && html.contains(u"<i>a</i>"_s) && html.contains(u"d1.png"_s))
        << html.toStdString();
}

// --- Hostile ---

TEST_F(PagePaste, ScriptsGoFromEveryCorner)
{
    const QString html = pasted(
        u"<svg onload=\"top.bad=1\"><script>top.bad=1</script><a "
        u"xlink:href='javascript:top.bad=1'>s</a></svg>"
        u"<math><mtext><table><mglyph><style><img src=x "
        u"onerror='top.bad=1'></style></mglyph></table></mtext></math>"
        u"<p onclick='top.bad=1' "
        u"style='background:url(javascript:1);color:red;width:expression(1)'>t</p>"
        u"<a href=' jav&#x09;ascript:top.bad=1'>j</a><a href='data:text/html,x'>d</a>"
        u"<img src='data:image/svg+xml,<svg onload=top.bad=1>'><iframe "
        u"srcdoc='<script>top.bad=1</script>'>"
        u"</iframe><object data=x></object><form action=javascript:1><button "
        u"formaction=javascript:1>b</button>"
        u"</form><noscript><p title='</noscript><img src=x onerror=top.bad=1>'></noscript>"
        u"<template><script>top.bad=1</script></template><details open "
        u"ontoggle='top.bad=1'>o</details>"
        u"<o:p onmouseover='top.bad=1'>w</o:p><style>@import 'http://127.0.0.1/';*{color:red}</style>"_s);
    finish(1);
    const QString after = page.html();
    for (const QString& word :
        {u"script"_s, u"onload"_s, u"onerror"_s, u"onclick"_s, u"url("_s, u"<svg"_s, u"iframe"_s,
            u"<form"_s, u"ontoggle"_s, u"onmouse"_s, u"@import"_s, u"expression"_s, u"data:"_s})
        EXPECT_FALSE(after.contains(word)) << word.toStdString() << " in " << after.toStdString();
    EXPECT_FALSE(page.jsBool(u"'bad' in window"_s));
    EXPECT_TRUE(after.contains(u"color: red"_s)) << html.toStdString() << after.toStdString();
}

TEST_F(PagePaste, DeepNestingIsTaken)
{
    start();
    for (const QString& tag :
        {u"div"_s, u"span style='color:red'"_s, u"b"_s, u"table><tr><td"_s, u"ul><li"_s}) {
        paste(u"<%1>"_s.arg(tag).repeated(5000) + u"deep"_s);
        EXPECT_TRUE(page.text().contains(u"deep"_s)) << tag.toStdString();
        page.load(u"<div><br></div>"_s);
        page.focusNote();
    }
}

TEST_F(PagePaste, HundredThousandSpansBecomeText)
{
    page.call(u"SetEditorMaxChars"_s, u"{\"size\":1000000}"_s);
    start();
    paste(u"<p>"_s + u"<span lang=EN-US style='mso-bidi-font-size:1pt'>x</span>"_s.repeated(100000)
        + u"</p>"_s);
    EXPECT_EQ(page.jsText(u"note.body.textContent.length"_s), u"100000"_s);
    EXPECT_EQ(page.jsText(u"note.querySelectorAll('span').length"_s), u"0"_s);
}

TEST_F(PagePaste, ManyParagraphsGoInAsOneBlockInOneStep)
{
    page.call(u"SetEditorMaxChars"_s, u"{\"size\":1000000}"_s);
    start(u"<p>x</p>"_s);
    paste(u"<p class=MsoNormal>y</p>"_s.repeated(3000));
    EXPECT_EQ(page.text().count(u'y'), 3000);
    EXPECT_GE(page.js(u"note.querySelectorAll('div > p').length"_s).toInt(), 2999);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>x</p>"_s);
}

TEST_F(PagePaste, UnclosedQuotesAndBracketsInStylesAreTaken)
{
    const QString style = u"color:red;x:"_s + u"(\""_s.repeated(200000);
    EXPECT_TRUE(pasted(u"<p style='"_s + style + u"'>a</p><style>"_s
        + u"@media {"_s.repeated(100000) + u"</style>"_s)
                    .contains(u"a"_s));
}

TEST_F(PagePaste, PictureOfTwentyMegabytesReachesTheLibraryWhole)
{
    start();
    const QString source = u"data:image/png;base64,"_s + QString(20 << 20, u'A');
    paste(u"<p>a<img src='"_s + source + u"'></p>"_s);
    EXPECT_EQ(page.jsText(u"JSON.parse(recorded.posts.find(post => post[0] === 'pictures')[1])"
                          u".sources[0].length"_s),
        QString::number(source.size()));
    finish(1);
    EXPECT_TRUE(page.html().contains(u"a"_s));
    EXPECT_FALSE(page.html().contains(u"<img"_s));
}
