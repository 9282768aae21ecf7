// Notes of any size: the first screen first, and the stored text until the rest is there.

#include "Names.h"
#include "PageHarness.h"

#include <gtest/gtest.h>

namespace {

QString largeNote(int paragraphs)
{
    QString html;
    for (int i = 0; i < paragraphs; ++i) {
        html +=
            u"<P class=c%1>段落 %1 mixed with some English words to fill the line</P>\r\n"_s.arg(i);
        if (i % 10 == 0)
            html += u"<img class='userdata\\attachment\\%1.png' nm_exdata='{\"a\":%1}'>"_s.arg(i);
    }
    return html;
}

const QString kLoading = u"document.documentElement.classList.contains('loading')"_s;

} // namespace

TEST(PageLoading, FirstScreenIsThereWhenTheCallReturns)
{
    PageHarness page;
    const QString html = largeNote(20000);
    page.js(u"window.big = %1"_s.arg(quoted(html)));
    EXPECT_EQ(page.jsText(u"jsProcessor('SetEditorContent', big); JSON.stringify(["
                          u"document.documentElement.classList.contains('loading'), "
                          u"note.body.childNodes.length > 100, note.body.contentEditable, "
                          u"JSON.parse(jsProcessor('GetEditorContent', '{}')).ehtml === big])"_s),
        u"[true,true,\"false\",true]"_s);
    ASSERT_TRUE(page.waitFor(u"!"_s + kLoading));
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_s), u"true"_s);
    EXPECT_TRUE(page.jsBool(u"note.querySelectorAll('p').length === 20000"_s));
    EXPECT_TRUE(page.jsBool(u"JSON.parse(jsProcessor('GetEditorContent', '{}')).ehtml === big"_s));
}

TEST(PageLoading, ClearingTheCacheDoesNotHurryIt)
{
    PageHarness page;
    page.js(u"window.big = %1"_s.arg(quoted(largeNote(20000))));
    EXPECT_TRUE(page.jsBool(u"jsProcessor('SetEditorContent', big);"
                            u"jsProcessor('ClearEditorCache', ''); "_s
        + kLoading));
    ASSERT_TRUE(page.waitFor(u"!"_s + kLoading));
    EXPECT_FALSE(page.jsBool(u"note.queryCommandEnabled('undo')"_s));
}

TEST(PageLoading, SlicesMakeTheSameTreeAsOneParse)
{
    PageHarness page;
    QString html = largeNote(2000) + u"<b>never closed<p>x"_s + largeNote(2000)
        + u"<table><tr><td>cell</table></b>tail"_s;
    page.load(html);
    EXPECT_TRUE(page.jsBool(
        u"note.body.innerHTML === new DOMParser().parseFromString(%1, 'text/html').body.innerHTML"_s
            .arg(quoted(html))));
}

TEST(PageLoading, OneSingleElementIsShownBeforeItIsComplete)
{
    PageHarness page;
    const QString html = u"<div id=all>"_s + largeNote(4000) + u"</div>"_s;
    page.js(u"window.big = %1"_s.arg(quoted(html)));
    EXPECT_TRUE(page.jsBool(
        u"jsProcessor('SetEditorContent', big); note.body.textContent.includes('段落 3 ')"_s));
    ASSERT_TRUE(page.waitFor(u"!"_s + kLoading));
    EXPECT_TRUE(page.jsBool(u"note.body.children.length === 1 && "
                            u"note.querySelectorAll('p').length === 4000"_s));
}

TEST(PageLoading, OneLongTextIsShownBeforeItIsComplete)
{
    PageHarness page;
    page.js(u"window.big = 'word 字 '.repeat(100000)"_s);
    EXPECT_TRUE(page.jsBool(
        u"jsProcessor('SetEditorContent', big); note.body.textContent.length > 1000"_s));
    ASSERT_TRUE(page.waitFor(u"!"_s + kLoading));
    EXPECT_TRUE(page.jsBool(u"note.body.textContent === big"_s));
}

TEST(PageLoading, AnotherNoteEndsTheLoadingOfTheFirst)
{
    PageHarness page;
    page.call(u"SetEditorContent"_s, largeNote(20000));
    page.load(u"<p>small</p>"_s);
    EXPECT_EQ(page.shown(), u"<p>small</p>"_s);
    // What the first loading had left to do would have run by now.
    page.js(u"setTimeout(() => { window.later = true; }, 300)"_s);
    ASSERT_TRUE(page.waitFor(u"window.later"_s));
    EXPECT_EQ(page.shown(), u"<p>small</p>"_s);
    EXPECT_EQ(page.html(), u"<p>small</p>"_s);
}

TEST(PageLoading, NoInputUntilComplete)
{
    PageHarness page;
    page.js(u"window.big = %1"_s.arg(quoted(largeNote(20000))));
    EXPECT_TRUE(page.jsBool(u"jsProcessor('SetEditorContent', big); jsProcessor('SetEditorMode', "
                            u"'{\"readonly\":false }'); note.body.contentEditable === 'false'"_s));
    ASSERT_TRUE(page.waitFor(u"note.body.contentEditable === 'true'"_s));
}

TEST(PageLoading, AttachmentInsertedMeanwhileWaitsForTheWholeNote)
{
    PageHarness page;
    page.js(u"window.big = %1"_s.arg(quoted(largeNote(20000))));
    EXPECT_EQ(
        page.jsText(
            u"jsProcessor('SetEditorContent', big); JSON.stringify([jsProcessor('AddPicToEditor',"
            u" '{\"picpath\":\"../x.png\",\"strData\":\"x.png\",\"exdata\":\"{}\"}').includes("
            u"'true'), note.querySelectorAll('p').length, note.querySelectorAll("
            u"'[data-ke-src]').length])"_s),
        u"[true,20000,1]"_s);
}

TEST(PageLoading, OffScreenBlocksOfALargeNoteAreNotLaidOut)
{
    PageHarness page;
    page.load(largeNote(5000));
    EXPECT_EQ(page.jsText(u"getComputedStyle(note.querySelector('.c4000')).contentVisibility"_s),
        u"auto"_s);
    EXPECT_FALSE(page.html().contains(u"content-visibility"_s));
    page.load(largeNote(5));
    EXPECT_EQ(page.jsText(u"getComputedStyle(note.querySelector('.c4')).contentVisibility"_s),
        u"visible"_s);
}
