// Pictures in pasted HTML, which come in through the library before the text does.
#include "PasteFixture.h"

namespace {

QString element(const QString& digest)
{
    return u"class=\"userdata\\attachment\\%1.png\" src=\"../userdata\\attachment\\%1.png\" "
           u"data-ke-src=\"../userdata\\attachment\\%1.png\" "
           u"nmimgsrc=\"../userdata\\attachment\\%1.png\" "
           u"nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YQ==&quot;}\">"_s.arg(digest);
}

} // namespace

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
