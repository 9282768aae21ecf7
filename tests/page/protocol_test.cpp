#include "Names.h"
#include "PageHarness.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

TEST(PageProtocol, StartsInEditMode)
{
    PageHarness page;
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_s), u"true"_s);
}

TEST(PageProtocol, SaysReadyOnceWhenItCanBeCalled)
{
    PageHarness page;
    EXPECT_EQ(page.posts(u"ready"_s), QStringList{QString()});
    EXPECT_TRUE(page.jsBool(u"typeof jsProcessor === 'function'"_s));
}

TEST(PageProtocol, UnknownMethodIsRefused)
{
    PageHarness page;
    for (const QString& method : {u"seteditormode"_s, u""_s, u"toString"_s, u"__proto__"_s}) {
        const QJsonObject reply = page.call(method);
        EXPECT_EQ(reply[u"result"], QJsonValue(false)) << method.toStdString();
        EXPECT_FALSE(reply[u"errmsg"].toString().isEmpty());
    }
    EXPECT_EQ(page.callPrivate(u"nothing"_s)[u"result"], QJsonValue(false));
}

TEST(PageProtocol, RepliesHaveResultAndErrmsg)
{
    PageHarness page;
    EXPECT_EQ(page.callRaw(u"SetEditorMode"_s, u"{\"readonly\":true }"_s),
        u"{\"result\":true,\"errmsg\":\"\"}"_s);
    EXPECT_EQ(page.callRaw(u"SetEditorMaxChars"_s, u"{\"size\":10000 }"_s),
        u"{\"result\":true,\"errmsg\":\"\"}"_s);
    EXPECT_EQ(
        page.callRaw(u"SetEditorContent"_s, u"<p>a</p>"_s), u"{\"result\":true,\"errmsg\":\"\"}"_s);
    EXPECT_EQ(page.callRaw(u"GetEditorContent"_s, u"{}"_s),
        u"{\"result\":true,\"errmsg\":\"\",\"ehtml\":\"<p>a</p>\",\"etext\":\"a\"}"_s);
    EXPECT_EQ(
        page.callRaw(u"ClearEditorCache"_s, QString()), u"{\"result\":true,\"errmsg\":\"\"}"_s);
}

TEST(PageProtocol, BrokenArgumentsAreRefusedAndChangeNothing)
{
    PageHarness page;
    page.load(u"<p>a</p>"_s);
    const QStringList arguments{QString(), u"null"_s, u"[]"_s, u"{"_s, u"\"x\""_s, u"{}"_s,
        u"{\"readonly\":\"yes\",\"size\":\"5\",\"keyword\":5,\"nm_exdata\":{},\"picpath\":7}"_s,
        u"\\u0000"_s};
    for (const QString& method : {u"SetEditorMode"_s, u"SetEditorMaxChars"_s, u"AddPicToEditor"_s,
             u"SelectedAttach"_s, u"ModifyAttachAtrr"_s}) {
        for (const QString& argument : arguments) {
            EXPECT_EQ(page.call(method, argument)[u"result"], QJsonValue(false))
                << method.toStdString() << ' ' << argument.toStdString();
        }
    }
    EXPECT_EQ(page.html(), u"<p>a</p>"_s);
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_s), u"true"_s);
}

TEST(PageProtocol, ArgumentsOfAnyTypeNeverThrow)
{
    PageHarness page;
    EXPECT_TRUE(page.jsText(u"jsProcessor()"_s).contains(u"\"result\":false"_s));
    EXPECT_TRUE(page.jsText(u"jsProcessor('SetEditorMode', {})"_s).contains(u"false"_s));
    EXPECT_TRUE(page.jsText(u"jsProcessor('GetEditorContent')"_s).contains(u"true"_s));
    EXPECT_TRUE(page.jsText(u"nomarPagePrivate('focus')"_s).contains(u"true"_s));
}

TEST(PageProtocol, NulAndLoneSurrogatesComeBackAsReplacementCharacters)
{
    PageHarness page;
    const QString reply = page.jsText(
        u"JSON.stringify([JSON.parse((jsProcessor('SetEditorContent', 'a\\u0000\\ud800b'), "
        u"jsProcessor('GetEditorContent', '{}'))).ehtml === 'a\\ufffd\\ufffdb'])"_s);
    EXPECT_EQ(reply, u"[true]"_s);
}

TEST(PageProtocol, ErrorsOfThePageAreWrittenToTheLog)
{
    PageHarness page;
    page.js(u"note.queryCommandEnabled = null; "
            u"note.dispatchEvent(new Event('selectionchange'))"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length > 0"_s));
    const QList<NativeCall> calls = page.calls(u"WriteEditorLog"_s);
    ASSERT_FALSE(calls.isEmpty());
    const QJsonObject fields = QJsonDocument::fromJson(calls[0].json.toUtf8()).object();
    EXPECT_EQ(fields[u"type"].toString(), u"error"_s);
    EXPECT_TRUE(fields[u"msg"].toString().contains(u"queryCommandEnabled"_s))
        << calls[0].json.toStdString();
}

TEST(PageProtocol, ReadOnlyHidesTheToolbarAndTakesNoInput)
{
    PageHarness page;
    page.load(u"<p>abc</p>"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    page.focusNote();
    page.type(u"x"_s);
    page.key(Qt::Key_Delete);
    EXPECT_EQ(page.shown(), u"<p>abc</p>"_s);
    EXPECT_EQ(
        page.jsText(u"getComputedStyle(document.querySelector('.toolbar')).display"_s), u"none"_s);
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_s), u"false"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":false }"_s);
    page.focusNote();
    page.caret(u"p"_s, 0);
    page.type(u"x"_s);
    EXPECT_EQ(page.html(), u"<p>xabc</p>"_s);
}

TEST(PageProtocol, CaptureButtonsSendWhetherToHideTheWindow)
{
    PageHarness page;
    page.clickTool(u"Capture screen"_s);
    page.clickTool(u"Capture options"_s);
    page.chooseMenu(u"Hide this window, then capture"_s);
    const QList<NativeCall> calls = page.calls(u"SreenCapture"_s);
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].json, u"{\"hideMainWnd\":false}"_s);
    EXPECT_EQ(calls[1].json, u"{\"hideMainWnd\":true}"_s);
}

TEST(PageProtocol, AttachButtonAsksForFiles)
{
    PageHarness page;
    page.clickTool(u"Attach files"_s);
    EXPECT_EQ(page.calls(u"AddAttachment"_s).size(), 1);
}

TEST(PageProtocol, NoteThatCannotBeShownIsToldInABox)
{
    PageHarness page;
    page.js(
        u"Object.defineProperty(document.implementation, 'createHTMLDocument', { value: null })"_s);
    EXPECT_EQ(page.call(u"SetEditorContent"_s, u"<p>a</p>"_s)[u"result"], QJsonValue(false));
    const QList<NativeCall> calls = page.calls(u"NmMessageBox"_s);
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].json, u"{\"msg\":\"The note cannot be shown.\"}"_s);
    EXPECT_EQ(calls[0].extra, QString());
    // A save must not take the empty page for the note, nor may anybody write into it.
    EXPECT_EQ(page.html(), u"<p>a</p>"_s);
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_s), u"false"_s);
}

TEST(PageProtocol, DraftsCountOnlyTheNotesThatCouldBeShown)
{
    PageHarness page;
    page.load(u"<p>a</p>"_s);
    page.js(u"Object.defineProperty(document.implementation, 'createHTMLDocument', "
            u"{ value: null, configurable: true })"_s);
    ASSERT_EQ(page.call(u"SetEditorContent"_s, u"<p>b</p>"_s)[u"result"], QJsonValue(false));
    page.js(u"delete document.implementation.createHTMLDocument"_s);
    page.load(u"<p>c</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"!"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_s));
    EXPECT_EQ(page.posts(u"draft"_s), QStringList{u"{\"load\":2,\"html\":\"<p>c!</p>\"}"_s});
}

TEST(PageProtocol, FocusPutsTheCaretIntoTheNote)
{
    PageHarness page;
    page.load(u"<p>abc</p>"_s);
    page.focusNote();
    page.type(u"x"_s);
    EXPECT_EQ(page.html(), u"<p>xabc</p>"_s);
}
