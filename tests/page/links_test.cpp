#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

class PageLinks : public testing::Test {
protected:
    PageHarness page;

    void readOnly() { page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s); }
};

TEST_F(PageLinks, OnlyWebAndMailLeaveAndNothingNavigates)
{
    page.load(u"<p><a id=a href='https://example.org/x?a=1&amp;b'>one</a></p>"
              u"<p><a id=b href='mailto:a@example.org'>two</a></p>"
              u"<p><a id=c href='file:///etc/passwd'>three</a></p>"
              u"<p><a id=d href='javascript:alert(1)'>four</a></p>"
              u"<p><a id=e href='other.html' target=_top>five</a></p>"
              u"<p><a id=f href='HTTP://example.org/y' target=_blank>six</a></p>"
              u"<p><a id=g href='ftp://example.org/'>seven</a></p>"
              u"<p><a id=h href='#top'>eight</a></p>"
              u"<p><a id=i href='data:text/html,x'>nine</a></p>"_s);
    readOnly();
    const QString address = page.jsText(u"location.href + note.location.href"_s);
    for (const QString& text : {u"p:nth-child(1)"_s, u"p:nth-child(2)"_s, u"p:nth-child(3)"_s,
             u"p:nth-child(4)"_s, u"p:nth-child(5)"_s, u"p:nth-child(6)"_s, u"p:nth-child(7)"_s,
             u"p:nth-child(8)"_s, u"p:nth-child(9)"_s})
        page.clickNote(text + u" > *"_s);
    QStringList opened;
    for (const NativeCall& call : page.calls(u"OpenHyperLink"_s))
        opened << call.json;
    EXPECT_EQ(opened,
        (QStringList{u"{\"url\":\"https://example.org/x?a=1&b\"}"_s,
            u"{\"url\":\"mailto:a@example.org\"}"_s, u"{\"url\":\"HTTP://example.org/y\"}"_s}));
    EXPECT_EQ(page.jsText(u"location.href + note.location.href"_s), address);
}

TEST_F(PageLinks, LinkInADrawingNeverNavigates)
{
    const QString note = u"<p>x</p><svg width=\"200\" height=\"60\"><a xlink:href=\"%1\">"
                         u"<rect width=\"200\" height=\"60\"></rect></a></svg>"_s;
    for (const QString& address : {u"https://example.org/"_s, u"about:blank"_s}) {
        page.load(note.arg(address));
        readOnly();
        page.clickNote(u"rect"_s);
        EXPECT_TRUE(page.jsBool(u"note.querySelector('rect') !== null"_s));
    }
    const QList<NativeCall> calls = page.calls(u"OpenHyperLink"_s);
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].json, u"{\"url\":\"https://example.org/\"}"_s);
}

TEST_F(PageLinks, ClickWhileEditingPlacesTheCaretAndOffersToOpen)
{
    page.load(u"<p>text <a href='https://example.org/'>link text</a></p>"_s);
    page.focusNote();
    page.clickNote(u"a"_s);
    EXPECT_TRUE(page.calls(u"OpenHyperLink"_s).isEmpty());
    ASSERT_TRUE(page.waitFor(u"document.querySelector('.link-bubble')?.textContent.includes("
                             u"'https://example.org/')"_s));
    page.clickPage(u".bubble-button[aria-label='Open link']"_s);
    EXPECT_EQ(page.calls(u"OpenHyperLink"_s).size(), 1);
    page.caret(u"p"_s, 1);
    EXPECT_TRUE(page.waitFor(u"!document.querySelector('.link-bubble')"_s));
}

TEST_F(PageLinks, CtrlClickOpensWhileEditing)
{
    page.load(u"<p>text <a href='https://example.org/'>link text</a></p>"_s);
    page.focusNote();
    page.clickNote(u"a"_s, Qt::ControlModifier);
    EXPECT_EQ(page.calls(u"OpenHyperLink"_s).size(), 1);
}

TEST_F(PageLinks, MiddleClickNeverNavigates)
{
    page.load(u"<p><a href='https://example.org/'>link text</a></p>"_s);
    page.clickNote(u"a"_s, Qt::NoModifier, Qt::MiddleButton);
    EXPECT_TRUE(page.jsText(u"location.href"_s).endsWith(u"/nmeditor/index.html"_s));
}

TEST_F(PageLinks, DialogLinksTheSelection)
{
    page.load(u"<p>abcd</p>"_s);
    page.focusNote();
    page.select(u"p"_s, 1, 3);
    page.key(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(page.waitFor(u"document.activeElement.className === 'link-input'"_s));
    page.type(u"example.org/x"_s);
    page.key(Qt::Key_Return);
    EXPECT_EQ(page.shown(), u"<p>a<a href=\"https://example.org/x\">bc</a>d</p>"_s);
    EXPECT_TRUE(page.jsBool(u"note.hasFocus()"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>abcd</p>"_s);
}

TEST_F(PageLinks, DialogChangesAndRemovesALink)
{
    page.load(u"<p>a<a href=\"https://example.org/\">bc</a>d</p>"_s);
    page.focusNote();
    page.caret(u"a"_s, 1);
    page.clickTool(u"Link"_s);
    EXPECT_EQ(
        page.jsText(u"document.querySelector('.link-input').value"_s), u"https://example.org/"_s);
    page.js(u"document.querySelector('.link-input').value = 'me@example.org'"_s);
    page.clickPage(u".link-dialog .primary"_s);
    EXPECT_EQ(page.shown(), u"<p>a<a href=\"mailto:me@example.org\">bc</a>d</p>"_s);
    page.caret(u"a"_s, 1);
    ASSERT_TRUE(page.waitFor(u"!!document.querySelector('.link-bubble')"_s));
    page.clickPage(u".bubble-button[aria-label='Remove link']"_s);
    EXPECT_EQ(page.shown(), u"<p>abcd</p>"_s);
}

TEST_F(PageLinks, DialogRefusesWhatCouldNotBeOpened)
{
    page.load(u"<p>abcd</p>"_s);
    page.focusNote();
    page.select(u"p"_s, 1, 3);
    for (const QString& address :
        {u"javascript:alert(1)"_s, u"file:///etc/passwd"_s, u"  "_s, u"word"_s}) {
        page.clickTool(u"Link"_s);
        page.js(u"document.querySelector('.link-input').value = %1"_s.arg(quoted(address)));
        page.clickPage(u".link-dialog .primary"_s);
        EXPECT_FALSE(
            page.jsText(u"document.querySelector('.link-problem').textContent"_s).isEmpty());
        page.key(Qt::Key_Escape);
    }
    EXPECT_EQ(page.shown(), u"<p>abcd</p>"_s);
}

TEST_F(PageLinks, WithoutASelectionTheAddressItselfIsInserted)
{
    page.load(u"<p>ab</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.clickTool(u"Link"_s);
    page.js(u"document.querySelector('.link-input').value = 'https://example.org/'"_s);
    page.clickPage(u".link-dialog .primary"_s);
    EXPECT_EQ(
        page.shown(), u"<p>a<a href=\"https://example.org/\">https://example.org/</a>b</p>"_s);
}
