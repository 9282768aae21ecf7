// Pasted HTML that means no good: scripts in odd places, and sizes that no person pastes.
#include "PasteFixture.h"

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
