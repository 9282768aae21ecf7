#include "Names.h"
#include "PageHarness.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

TEST(PageProtocol, StartsInEditMode)
{
    PageHarness page;
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_qs), u"true"_qs);
}

TEST(PageProtocol, SaysReadyOnceWhenItCanBeCalled)
{
    PageHarness page;
    EXPECT_EQ(page.posts(u"ready"_qs), QStringList {QString()});
    EXPECT_TRUE(page.jsBool(u"typeof jsProcessor === 'function'"_qs));
}

TEST(PageProtocol, UnknownMethodIsRefused)
{
    PageHarness page;
    for (const QString& method : {u"seteditormode"_qs, u""_qs, u"toString"_qs, u"__proto__"_qs}) {
        const QJsonObject reply = page.call(method);
        EXPECT_EQ(reply[u"result"], QJsonValue(false)) << method.toStdString();
        EXPECT_FALSE(reply[u"errmsg"].toString().isEmpty());
    }
    EXPECT_EQ(page.callPrivate(u"nothing"_qs)[u"result"], QJsonValue(false));
}

TEST(PageProtocol, RepliesHaveResultAndErrmsg)
{
    PageHarness page;
    EXPECT_EQ(page.callRaw(u"SetEditorMode"_qs, u"{\"readonly\":true }"_qs),
        u"{\"result\":true,\"errmsg\":\"\"}"_qs);
    EXPECT_EQ(page.callRaw(u"SetEditorMaxChars"_qs, u"{\"size\":10000 }"_qs),
        u"{\"result\":true,\"errmsg\":\"\"}"_qs);
    EXPECT_EQ(page.callRaw(u"SetEditorContent"_qs, u"<p>a</p>"_qs),
        u"{\"result\":true,\"errmsg\":\"\"}"_qs);
    EXPECT_EQ(page.callRaw(u"GetEditorContent"_qs, u"{}"_qs),
        u"{\"result\":true,\"errmsg\":\"\",\"ehtml\":\"<p>a</p>\",\"etext\":\"a\"}"_qs);
    EXPECT_EQ(page.callRaw(u"ClearEditorCache"_qs, QString()),
        u"{\"result\":true,\"errmsg\":\"\"}"_qs);
}

TEST(PageProtocol, BrokenArgumentsAreRefusedAndChangeNothing)
{
    PageHarness page;
    page.load(u"<p>a</p>"_qs);
    const QStringList arguments {QString(), u"null"_qs, u"[]"_qs, u"{"_qs, u"\"x\""_qs, u"{}"_qs,
        u"{\"readonly\":\"yes\",\"size\":\"5\",\"keyword\":5,\"nm_exdata\":{},\"picpath\":7}"_qs,
        u"\\u0000"_qs};
    for (const QString& method : {u"SetEditorMode"_qs, u"SetEditorMaxChars"_qs,
             u"AddPicToEditor"_qs, u"SelectedAttach"_qs, u"ModifyAttachAtrr"_qs}) {
        for (const QString& argument : arguments) {
            EXPECT_EQ(page.call(method, argument)[u"result"], QJsonValue(false))
                << method.toStdString() << ' ' << argument.toStdString();
        }
    }
    EXPECT_EQ(page.html(), u"<p>a</p>"_qs);
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_qs), u"true"_qs);
}

TEST(PageProtocol, ArgumentsOfAnyTypeNeverThrow)
{
    PageHarness page;
    EXPECT_TRUE(page.jsText(u"jsProcessor()"_qs).contains(u"\"result\":false"_qs));
    EXPECT_TRUE(page.jsText(u"jsProcessor('SetEditorMode', {})"_qs).contains(u"false"_qs));
    EXPECT_TRUE(page.jsText(u"jsProcessor('GetEditorContent')"_qs).contains(u"true"_qs));
    EXPECT_TRUE(page.jsText(u"nomarPagePrivate('focus')"_qs).contains(u"true"_qs));
}

TEST(PageProtocol, NulAndLoneSurrogatesComeBack)
{
    PageHarness page;
    const QString reply = page.jsText(
        u"JSON.stringify([JSON.parse((jsProcessor('SetEditorContent', 'a\\u0000\\ud800b'), "
        u"jsProcessor('GetEditorContent', '{}'))).ehtml === 'a\\u0000\\ud800b'])"_qs);
    EXPECT_EQ(reply, u"[true]"_qs);
}

TEST(PageProtocol, ErrorsOfThePageAreWrittenToTheLog)
{
    PageHarness page;
    page.js(u"setTimeout(() => { throw new Error('broken on purpose'); })"_qs);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length > 0"_qs));
    const QList<NativeCall> calls = page.calls(u"WriteEditorLog"_qs);
    ASSERT_EQ(calls.size(), 1);
    const QJsonObject fields = QJsonDocument::fromJson(calls[0].json.toUtf8()).object();
    EXPECT_EQ(fields[u"type"].toString(), u"error"_qs);
    EXPECT_TRUE(fields[u"msg"].toString().contains(u"broken on purpose"_qs));
}

TEST(PageProtocol, ReadOnlyHidesTheToolbarAndTakesNoInput)
{
    PageHarness page;
    page.load(u"<p>abc</p>"_qs);
    page.call(u"SetEditorMode"_qs, u"{\"readonly\":true }"_qs);
    page.focusNote();
    page.type(u"x"_qs);
    page.key(Qt::Key_Delete);
    EXPECT_EQ(page.shown(), u"<p>abc</p>"_qs);
    EXPECT_EQ(page.jsText(u"getComputedStyle(document.querySelector('.toolbar')).display"_qs),
        u"none"_qs);
    EXPECT_EQ(page.jsText(u"note.body.contentEditable"_qs), u"false"_qs);
    page.call(u"SetEditorMode"_qs, u"{\"readonly\":false }"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 0);
    page.type(u"x"_qs);
    EXPECT_EQ(page.html(), u"<p>xabc</p>"_qs);
}

TEST(PageProtocol, CaptureButtonsSendWhetherToHideTheWindow)
{
    PageHarness page;
    page.clickTool(u"Capture screen"_qs);
    page.clickTool(u"Capture options"_qs);
    page.chooseMenu(u"Hide this window, then capture"_qs);
    const QList<NativeCall> calls = page.calls(u"SreenCapture"_qs);
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].json, u"{\"hideMainWnd\":false}"_qs);
    EXPECT_EQ(calls[1].json, u"{\"hideMainWnd\":true}"_qs);
}

TEST(PageProtocol, AttachButtonAsksForFiles)
{
    PageHarness page;
    page.clickTool(u"Attach files"_qs);
    EXPECT_EQ(page.calls(u"AddAttachment"_qs).size(), 1);
}
