// What a note may hold: nothing that runs, and nothing that asks a network for anything.

#include "Names.h"
#include "PageHarness.h"

#include <QCoreApplication>
#include <QImage>
#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

namespace {

/** A note that tries everything to reach `address`. */
QString restlessNote(const QString& address)
{
    return u"<style>@import url(%1/1); @font-face{font-family:f;src:url(%1/2)} "
           u"p{background:url(%1/3);"
           u"font-family:f}</style><link rel=stylesheet href=%1/4><link rel=prefetch href=%1/5>"
           u"<link rel=dns-prefetch href=%1/6><meta http-equiv=refresh content='0;url=%1/7'>"
           u"<base href=%1/><img src=%1/8><img srcset='%1/9 2x'><picture><source "
           u"srcset=%1/10><img></picture>"
           u"<video src=%1/11 poster=%1/12 autoplay></video><audio src=%1/13 autoplay></audio>"
           u"<iframe src=%1/14></iframe><object data=%1/15></object><embed src=%1/16>"
           u"<script src=%1/17></script><svg><image href=%1/18 /><use href=%1/19 /></svg>"
           u"<input type=image src=%1/20><body background=%1/21><table "
           u"background=%1/22><tr><td>x</table>"
           u"<p style=\"background-image:url('%1/23');list-style:url(%1/24);content:url(%1/25);"
           u"border-image:url(%1/26);cursor:url(%1/27),auto\">text</p><form action=%1/28><button>b"
           u"</button></form><img src=x onerror=\"fetch('%1/29')\"><a href=%1/30 ping=%1/31>l</a>"_s
               .arg(address);
}

} // namespace

TEST(PageSafety, NoRequestEverReachesANetwork)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int connections = 0;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] { ++connections; });
    const QString address = u"http://127.0.0.1:%1"_s.arg(server.serverPort());

    PageHarness page;
    page.load(restlessNote(address));
    page.focusNote();
    page.type(u"x"_s);
    page.js(u"{ const data = new DataTransfer(); data.setData('text/html', %1); "
            u"note.body.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: "
            u"true, "
            u"cancelable: true })); }"_s.arg(quoted(restlessNote(address))));
    page.load(restlessNote(address));
    // Everything the engine would ask for has been asked for when a picture of its own is there.
    page.js(
        u"{ const i = new Image(); i.onload = i.onerror = () => window.drawn = true; i.src = "
        u"'data:image/gif;base64,R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7'; }"_s);
    ASSERT_TRUE(page.waitFor(u"window.drawn"_s));
    page.grab();
    EXPECT_EQ(connections, 0);

    // The server does hear those who speak to it.
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, server.serverPort());
    ASSERT_TRUE(socket.waitForConnected());
    QCoreApplication::processEvents();
    EXPECT_EQ(connections, 1);
}

TEST(PageSafety, RemotePictureKeepsItsAddressAndSaysSo)
{
    PageHarness page;
    page.load(u"<p>a</p><img src=\"https://example.org/pictures/a.png\" width=\"40\">"_s);
    EXPECT_TRUE(page.jsText(u"getComputedStyle(note.images[0], '::before').content"_s)
                    .contains(u"https://example.org/pictures/a.png"_s));
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"b"_s);
    EXPECT_EQ(
        page.html(), u"<p>ab</p><img src=\"https://example.org/pictures/a.png\" width=\"40\">"_s);
}

TEST(PageSafety, NothingInANoteRuns)
{
    PageHarness page;
    page.js(u"window.alert = () => { window.bad = true; }"_s);
    for (const QString& html :
        {u"<script>top.bad = true</script>"_s, u"<img src=x onerror='top.bad = true'>"_s,
            u"<svg onload='top.bad = true'></svg>"_s, u"<body onload='top.bad = true'>"_s,
            u"<iframe srcdoc='<script>top.bad = 1</script>'></iframe>"_s,
            u"<math><mi xlink:href='javascript:top.bad = 1'>x</mi></math>"_s,
            u"<form id=body><input name=body></form><img name=body>"_s,
            u"<svg><style><img src=x onerror='top.bad = true'></style></svg>"_s,
            u"<noscript><p title='</noscript><img src=x onerror=top.bad=1>'></noscript>"_s}) {
        page.load(html);
        page.focusNote();
        page.key(Qt::Key_End);
        page.type(u"x"_s);
        EXPECT_FALSE(page.jsBool(u"'bad' in window"_s)) << html.toStdString();
        EXPECT_FALSE(page.html().contains(u"onerror=\""_s)) << page.html().toStdString();
        EXPECT_FALSE(page.html().contains(u"<script"_s)) << page.html().toStdString();
    }
}

TEST(PageSafety, HarmlessMarkupAndThoroughSanitisingAgree)
{
    // A note that the quick look lets pass must not change when one suspicious element makes the
    // sanitiser walk all of it.
    const QString plain =
        u"<h1 align=\"center\">t</h1><p class=\"a b\" style=\"color: red; background: url(x.png)\">"
        u"<font size=\"7\" color=\"red\" face=\"x\">f</font><a href=\"https://example.org/\" "
        u"title=\"t\">l</a><a href=\"mailto:a@b\">m</a></p><table border=\"1\" cellpadding=\"2\" "
        u"cellspacing=\"0\" bgcolor=\"#fff\"><caption>c</caption><colgroup><col "
        u"width=\"5\"></colgroup>"
        u"<thead><tr><th colspan=\"2\" valign=\"top\">h</th></tr></thead><tbody><tr><td "
        u"rowspan=\"1\">"
        u"d</td></tr></tbody></table><img class=\"userdata\\attachment\\a.png\" "
        u"src=\"../userdata\\attachment\\a.png\" nm_exdata=\"{&quot;a&quot;:1}\" "
        u"data-ke-src=\"../userdata\\attachment\\a.png\" "
        u"nmimgsrc=\"../userdata\\attachment\\a.png\" "
        u"alt=\"x\" width=\"1\" height=\"2\"><ul><li>i</li></ul><center><b>1</b><strong>2</strong>"
        u"<i>3</i><em>4</em><u>5</u><s>6</s><strike>7</strike><del>8</del><ins>9</ins><sub>a</sub>"
        u"<sup>b</sup><small>c</small><big>d</big><mark>e</mark><code>f</code><kbd>g</kbd></center>"
        u"<pre>p</pre><blockquote>q</blockquote><dl><dt>r</dt><dd>s</dd></dl><hr><br><span>x</span>"_s;
    PageHarness page;
    page.load(plain);
    EXPECT_EQ(page.shown(), plain);
    page.load(plain + u"<object></object>"_s);
    EXPECT_EQ(page.shown(), plain);
}

TEST(PageSafety, StoredNoteKeepsWhatDoesNoHarm)
{
    PageHarness page;
    const QString note =
        u"<p>a</p><!-- comment --><style>p { color: red; }</style><font size=\"5\">f</font>"
        u"<a href=\"file:///home/x\" target=\"_blank\">l</a>"
        u"<img src=\"C:\\pictures\\x.png\"><img src=\"file:///x.png\">"
        u"<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAADs=\">"_s;
    page.load(note);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"b"_s);
    EXPECT_EQ(page.html(), QString(note).replace(u"<p>a"_s, u"<p>ab"_s));
}

TEST(PageSafety, PicturesOfTheStoreAreShown)
{
    PageHarness page;
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    // The store's own names have a backslash only in the note.
    ASSERT_TRUE(picture.save(page.root() + u"/userdata/attachment/a.png"_s));
    page.load(u"<img src='../userdata\\attachment\\a.png'>"_s);
    EXPECT_TRUE(page.waitFor(u"note.images[0].naturalWidth === 3"_s));
}
