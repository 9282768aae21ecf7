#include "bridge/PageBridge.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/ScriptedPage.h"
#include "noteattach/ExData.h"
#include "platform/WindowMessage.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

const QString ok = QStringLiteral("{\"result\":true,\"errmsg\":\"\"}");

QString content(const QString& html, const QString& text)
{
    const QJsonObject reply{{QStringLiteral("result"), true}, {QStringLiteral("errmsg"), QString()},
        {QStringLiteral("ehtml"), html}, {QStringLiteral("etext"), text}};
    return QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact));
}

struct PageBridgeTest : ::testing::Test {
    OpenNote note;
    ScriptedPage page;
    PageBridge bridge{note, page};
    LogLines log;

    QString html = QStringLiteral("kept"), text = QStringLiteral("kept too");
    void pull() { EXPECT_EQ(bridge.GetEditorContent(html, text), 1); }
};

} // namespace

TEST_F(PageBridgeTest, TheSameModeTwiceIsOnePageCall)
{
    bridge.SetReadOnly(1);
    bridge.SetReadOnly(1);
    ASSERT_EQ(page.calls.size(), 1u);
    EXPECT_EQ(page.calls[0].first, QStringLiteral("SetEditorMode"));
    EXPECT_EQ(page.calls[0].second, QStringLiteral("{\"readonly\":true }"));
    EXPECT_EQ(note.m_readOnly, 1);
}

TEST_F(PageBridgeTest, AnotherNonZeroModeIsASecondPageCall)
{
    bridge.SetReadOnly(1);
    bridge.SetReadOnly(5);
    ASSERT_EQ(page.calls.size(), 2u);
    EXPECT_EQ(page.calls[1].second, QStringLiteral("{\"readonly\":true }"));
    EXPECT_EQ(note.m_readOnly, 5);
}

TEST_F(PageBridgeTest, EditModeOnANewNoteIsNoPageCall)
{
    bridge.SetReadOnly(0);
    EXPECT_TRUE(page.calls.empty());
}

TEST_F(PageBridgeTest, TheLimitIsKeptWhenThePageAcceptsIt)
{
    EXPECT_EQ(note.m_maxChars, 3000);
    bridge.SetEditorMaxChars(10000);
    EXPECT_EQ(page.calls[0].second, QStringLiteral("{\"size\":10000 }"));
    EXPECT_EQ(note.m_maxChars, 10000);
    page.answer(S_OK, QStringLiteral("{\"result\":false,\"errmsg\":\"no\"}"));
    bridge.SetEditorMaxChars(5);
    EXPECT_EQ(note.m_maxChars, 10000);
}

TEST_F(PageBridgeTest, ANewTextEmptiesTheBooksAndPostsBeforeTheCall)
{
    note.m_attachSizeCache[QStringLiteral("a")] = 1;
    note.m_attachModifyCache[QStringLiteral("a")] = QStringLiteral("t");
    bridge.SetEditorHtml(QStringLiteral("<p class=\"a\\b\">\"</p>"));
    EXPECT_TRUE(note.m_attachSizeCache.empty());
    EXPECT_TRUE(note.m_attachModifyCache.empty());
    EXPECT_EQ(
        page.order, QStringList({QStringLiteral("2258"), QStringLiteral("SetEditorContent")}));
    EXPECT_EQ(page.calls[0].second, QStringLiteral("<p class=\"a\\b\">\"</p>"));
}

TEST_F(PageBridgeTest, AFailedTextEmptiesTheBooksAllTheSame)
{
    note.m_attachSizeCache[QStringLiteral("a")] = 1;
    page.answer(PAGE_CALL_FAILED);
    bridge.SetEditorHtml(QStringLiteral("x"));
    EXPECT_TRUE(note.m_attachSizeCache.empty());
}

TEST_F(PageBridgeTest, APullGivesHtmlAndText)
{
    page.answer(S_OK, content(QStringLiteral("<p>笔记 𝄞</p>"), QStringLiteral("笔记 𝄞")));
    pull();
    EXPECT_EQ(page.calls[0].second, QStringLiteral("{}"));
    EXPECT_EQ(html, QStringLiteral("<p>笔记 𝄞</p>"));
    EXPECT_EQ(text, QStringLiteral("笔记 𝄞"));
}

TEST_F(PageBridgeTest, ARepeatedReplyGivesTheSameAgain)
{
    const QString reply = content(QStringLiteral("<p>a</p>"), QStringLiteral("a"));
    page.answer(S_OK, reply);
    page.answer(S_OK, content(QStringLiteral("<p>b</p>"), QStringLiteral("b")));
    page.answer(S_OK, reply);
    page.answer(S_OK, reply);
    QStringList seen;
    for (int i = 0; i < 4; ++i) {
        pull();
        seen << html << text;
    }
    EXPECT_EQ(seen.join(u' '), QStringLiteral("<p>a</p> a <p>b</p> b <p>a</p> a <p>a</p> a"));
}

TEST_F(PageBridgeTest, ARefusedPullLeavesTheTextsAndReportsSuccess)
{
    page.answer(S_OK, QStringLiteral("{\"result\":false,\"errmsg\":\"busy\"}"));
    pull();
    EXPECT_EQ(html, QStringLiteral("kept"));
    EXPECT_EQ(text, QStringLiteral("kept too"));
    EXPECT_EQ(
        log.take(), QStringList{QStringLiteral("[ERROR] 获取笔记编辑器内容失败，错误信息：busy")});
}

TEST_F(PageBridgeTest, AFailedPullLeavesTheTextsAndReportsSuccess)
{
    page.answer(PAGE_CALL_FAILED);
    pull();
    EXPECT_EQ(html, QStringLiteral("kept"));
    EXPECT_EQ(log.take(),
        QStringList{QStringLiteral(
            "[ERROR] 获取笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")});
}

TEST_F(PageBridgeTest, RubbishIsAParseFailure)
{
    const QString deep = QString(200000, u'[');
    const QStringList rubbish{QString(), QStringLiteral("null"), QStringLiteral("[1]"),
        QStringLiteral("true"), QStringLiteral("{"), QStringLiteral("{\"result\":true"), deep,
        QStringLiteral("{\"ehtml\":\"\\ud800\"}"), QString(QChar(0))};
    for (const QString& reply : rubbish) {
        page.answer(S_OK, reply);
        pull();
        EXPECT_EQ(html, QStringLiteral("kept"));
        EXPECT_EQ(log.take(),
            QStringList{QStringLiteral("[ERROR] 获取笔记编辑器内容，解析js返回json字符串失败！")})
            << qPrintable(reply.left(40));
    }
}

TEST_F(PageBridgeTest, KeysOfAnotherTypeAreNeutral)
{
    page.answer(S_OK, QStringLiteral("{\"result\":{},\"errmsg\":[1]}"));
    pull();
    EXPECT_EQ(
        log.take(), QStringList{QStringLiteral("[ERROR] 获取笔记编辑器内容失败，错误信息：")});
    page.answer(S_OK, QStringLiteral("{\"result\":1,\"ehtml\":{\"a\":1},\"etext\":null}"));
    pull();
    EXPECT_EQ(html, QString());
    EXPECT_EQ(text, QString());
}

TEST_F(PageBridgeTest, MissingKeysCountAsRefusal)
{
    page.answer(S_OK, QStringLiteral("{}"));
    pull();
    EXPECT_EQ(html, QStringLiteral("kept"));
    EXPECT_EQ(
        log.take(), QStringList{QStringLiteral("[ERROR] 获取笔记编辑器内容失败，错误信息：")});
}

TEST_F(PageBridgeTest, AReplyOfFiftyMegabytesIsTaken)
{
    const QString big(50 * 1000 * 1000, u'x');
    page.answer(
        S_OK, QStringLiteral("{\"result\":true,\"ehtml\":\"") + big + QStringLiteral("\"}"));
    pull();
    EXPECT_EQ(html.size(), big.size());
}

TEST_F(PageBridgeTest, ANulInAReplyEndsTheText)
{
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"ehtml\":\"ab\\u0000cd\",\"etext\":\"\"}"));
    pull();
    EXPECT_EQ(html, QStringLiteral("ab"));
}

TEST_F(PageBridgeTest, ALoneSurrogateInAReplyBecomesTheReplacementCharacter)
{
    page.answer(S_OK,
        QStringLiteral("{\"result\":true,\"ehtml\":\"a") + QChar(0xD800)
            + QStringLiteral("b\",\"etext\":\"\"}"));
    pull();
    EXPECT_EQ(html, QStringLiteral("a\uFFFDb"));
}

TEST_F(PageBridgeTest, APullCutByTheDeathOfThePageIsRepeated)
{
    page.answer(PAGE_CALL_LOST);
    page.answer(S_OK, content(QStringLiteral("<p>back</p>"), QStringLiteral("back")));
    pull();
    EXPECT_EQ(html, QStringLiteral("<p>back</p>"));
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(PageBridgeTest, APageThatDoesNotComeBackGivesTheDraft)
{
    bridge.SetEditorHtml(QStringLiteral("<p>old</p>"));
    bridge.takeDraft(QStringLiteral("{\"load\":1,\"html\":\"<p>typed</p><p>so far</p>\"}"));
    page.back = false;
    pull();
    EXPECT_EQ(html, QStringLiteral("<p>typed</p><p>so far</p>"));
    EXPECT_EQ(text, QStringLiteral("typed\nso far"));
}

TEST_F(PageBridgeTest, AnotherNoteOpenedDuringTheWaitIsNotPulledInItsPlace)
{
    bridge.SetEditorHtml(QStringLiteral("<p>first</p>"));
    page.onWait = [&] {
        page.onWait = nullptr;
        bridge.SetEditorHtml(QStringLiteral("<p>second</p>"));
    };
    pull();
    EXPECT_EQ(html, QStringLiteral("<p>first</p>"));
    EXPECT_EQ(text, QStringLiteral("first"));
}

TEST_F(PageBridgeTest, ADraftOfAnEarlierTextIsDropped)
{
    bridge.SetEditorHtml(QStringLiteral("one"));
    bridge.SetEditorHtml(QStringLiteral("two"));
    bridge.takeDraft(QStringLiteral("{\"load\":1,\"html\":\"late\"}"));
    EXPECT_EQ(note.m_draft, QStringLiteral("two"));
    bridge.takeDraft(QStringLiteral("{\"load\":2,\"html\":\"typed\"}"));
    EXPECT_EQ(note.m_draft, QStringLiteral("typed"));
}

TEST_F(PageBridgeTest, ADraftThatArrivesWhileATextIsSentIsDropped)
{
    bridge.SetEditorHtml(QStringLiteral("one"));
    page.onCall = [&] { bridge.takeDraft(QStringLiteral("{\"load\":1,\"html\":\"late\"}")); };
    bridge.SetEditorHtml(QStringLiteral("two"));
    EXPECT_EQ(note.m_draft, QStringLiteral("two"));
}

TEST_F(PageBridgeTest, ADraftThatIsRubbishIsDropped)
{
    bridge.SetEditorHtml(QStringLiteral("one"));
    for (const char* json : {"", "[]", "{\"load\":1}", "{\"html\":\"x\"}", "{\"load\":\"x\"}"})
        bridge.takeDraft(QString::fromLatin1(json));
    EXPECT_EQ(note.m_draft, QStringLiteral("one"));
}

TEST_F(PageBridgeTest, RecoveryPutsModeLimitAndTextBackAndKeepsTheBooks)
{
    bridge.SetReadOnly(1);
    bridge.SetEditorMaxChars(10000);
    bridge.SetEditorHtml(QStringLiteral("<p>a</p>"));
    note.m_attachSizeCache[QStringLiteral("a")] = 1;
    const auto calls = bridge.restoringCalls();
    QStringList flat;
    for (const auto& [function, arguments] : calls) {
        EXPECT_EQ(function, QStringLiteral("jsProcessor"));
        flat << arguments.join(u' ');
    }
    EXPECT_EQ(flat,
        QStringList({QStringLiteral("SetEditorMode {\"readonly\":true }"),
            QStringLiteral("SetEditorMaxChars {\"size\":10000 }"),
            QStringLiteral("SetEditorContent <p>a</p>"), QStringLiteral("ClearEditorCache ")}));
    EXPECT_EQ(note.m_attachSizeCache.size(), 1u);
    bridge.takeDraft(QStringLiteral("{\"load\":1,\"html\":\"typed\"}"));
    EXPECT_EQ(note.m_draft, QStringLiteral("typed"));
}

TEST_F(PageBridgeTest, ClearingTheCacheReadsNoReplyAndLogsNothing)
{
    page.answer(S_OK, QStringLiteral("rubbish"));
    EXPECT_EQ(bridge.HandleClearEditorCacheNotify(), 1);
    page.answer(PAGE_CALL_FAILED);
    EXPECT_EQ(bridge.HandleClearEditorCacheNotify(), 0);
    EXPECT_EQ(page.calls[0], std::pair(QStringLiteral("ClearEditorCache"), QString()));
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(PageBridgeTest, SelectingWithAnEmptyKeywordIsNoPageCall)
{
    EXPECT_EQ(bridge.SelectedAttach(QString()), 0);
    EXPECT_TRUE(page.calls.empty());
}

TEST_F(PageBridgeTest, AKeywordGoesToThePageUnescaped)
{
    EXPECT_EQ(bridge.SelectedAttach(QStringLiteral("a\"b")), 1);
    EXPECT_EQ(page.calls[0].second, QStringLiteral("{\"keyword\":\"a\"b\"}"));
}

TEST_F(PageBridgeTest, AnAttachmentsNewFilesGoToThePage)
{
    EXPECT_EQ(bridge.UpdateHtmlAttachAttr(QStringLiteral("a.txt"), QStringLiteral("u\\\\b.txt"),
                  QStringLiteral("../c.bmp")),
        1);
    EXPECT_EQ(page.calls[0].first, QStringLiteral("ModifyAttachAtrr"));
    EXPECT_EQ(page.calls[0].second,
        QStringLiteral(
            "{\"nm_exdata\":{\"OrigName_B64\":\"YS50eHQ=\"},\"ClassValue\":\"u\\\\b.txt\","
            "\"SrcValue\":\"../c.bmp\"}"));
    page.answer(PAGE_CALL_FAILED);
    EXPECT_EQ(bridge.UpdateHtmlAttachAttr(QString(), QString(), QString()), 1);
}

TEST_F(PageBridgeTest, AnAttachmentGoesToThePageAsStyledJson)
{
    const QString exData = noteattach::FormatOrigNameToJson(QStringLiteral("图.png"));
    EXPECT_EQ(bridge.AddPicToEditor(QStringLiteral("../userdata\\attachment\\a.png"),
                  QStringLiteral("userdata\\attachment\\a.png"), exData, QStringLiteral("png")),
        1);
    const QJsonObject object = QJsonDocument::fromJson(page.calls[0].second.toUtf8()).object();
    EXPECT_EQ(object.keys().join(u' '), QStringLiteral("exdata picpath strData type"));
    EXPECT_EQ(object[QStringLiteral("picpath")].toString(),
        QStringLiteral("../userdata\\attachment\\a.png"));
    EXPECT_EQ(object[QStringLiteral("exdata")].toString(), exData);
    EXPECT_TRUE(page.calls[0].second.contains(u'\n'));
}

TEST_F(PageBridgeTest, ARemovalNamesFileAndOriginalNameAndOutlastsADeathOfThePage)
{
    page.answer(PAGE_CALL_LOST);
    EXPECT_EQ(bridge.RemoveAttach(QStringLiteral("1.txt"), QStringLiteral("报告 \"1\".txt")), 1);
    ASSERT_EQ(page.calls.size(), 2u);
    EXPECT_EQ(page.calls[1].first, QStringLiteral("removeAttachment"));
    const QJsonObject object = QJsonDocument::fromJson(page.calls[1].second.toUtf8()).object();
    EXPECT_EQ(object[QStringLiteral("file")].toString(), QStringLiteral("1.txt"));
    EXPECT_EQ(object[QStringLiteral("name")].toString(), QStringLiteral("报告 \"1\".txt"));
}

// --- The messages of each method ---

struct MethodMessages {
    const char* name;
    std::function<void(PageBridge&)> call;
    QString refused, unparsable, failed;
};

class PageMessages : public PageBridgeTest,
                     public ::testing::WithParamInterface<MethodMessages> { };

TEST_P(PageMessages, OfARefusalAParseFailureAndACallFailure)
{
    page.answer(S_OK, QStringLiteral("{\"result\":false,\"errmsg\":\"原因 %s\"}"));
    page.answer(S_OK, QStringLiteral("rubbish"));
    page.answer(PAGE_CALL_FAILED);
    for (int i = 0; i < 3; ++i)
        GetParam().call(bridge);
    EXPECT_EQ(
        log.take(), QStringList({GetParam().refused, GetParam().unparsable, GetParam().failed}));
}

INSTANTIATE_TEST_SUITE_P(OfEachMethod, PageMessages,
    ::testing::Values(
        MethodMessages{"SetEditorMode", [](PageBridge& b) { b.SetReadOnly(1); },
            QStringLiteral("设置笔记编辑器只读模式失败，错误信息：原因 %s"),
            QStringLiteral("设置笔记编辑器只读模式，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器只读模式，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"SetEditorMaxChars", [](PageBridge& b) { b.SetEditorMaxChars(1); },
            QStringLiteral("设置笔记编辑器最大字符数失败，错误信息：原因 %s"),
            QStringLiteral("设置笔记编辑器最大字符数，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器最大字符数，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"SetEditorContent", [](PageBridge& b) { b.SetEditorHtml(QString()); },
            QStringLiteral("设置笔记编辑器内容失败，错误信息：原因 %s"),
            QStringLiteral("设置笔记编辑器内容，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"GetEditorContent",
            [](PageBridge& b) {
                QString html, text;
                b.GetEditorContent(html, text);
            },
            QStringLiteral("[ERROR] 获取笔记编辑器内容失败，错误信息：原因 %s"),
            QStringLiteral("[ERROR] 获取笔记编辑器内容，解析js返回json字符串失败！"),
            QStringLiteral("[ERROR] 获取笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"AddPicToEditor", [](PageBridge& b) { b.AddPicToEditor({}, {}, {}, {}); },
            QStringLiteral("添加附件到笔记编辑器，错误信息：原因 %s"),
            QStringLiteral("添加附件到笔记编辑器，解析js返回json字符串失败！"),
            QStringLiteral("添加附件到笔记编辑器，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"RemoveAttach",
            [](PageBridge& b) { EXPECT_EQ(b.RemoveAttach(QStringLiteral("a"), {}), 0); },
            QStringLiteral("[ERROR] 从笔记编辑器删除附件失败，错误信息：原因 %s"),
            QStringLiteral("[ERROR] 从笔记编辑器删除附件，解析js返回json字符串失败！"),
            QStringLiteral(
                "[ERROR] 从笔记编辑器删除附件，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"SelectedAttach",
            [](PageBridge& b) { EXPECT_EQ(b.SelectedAttach(QStringLiteral("a")), 0); },
            QStringLiteral("选中笔记附件失败，错误信息：原因 %s"),
            QStringLiteral("选中笔记附件失败，解析js返回json字符串失败！"),
            QStringLiteral("选中笔记附件失败，js方法调用失败！，ErrMsg:unknow error ！")},
        MethodMessages{"ModifyAttachAtrr",
            [](PageBridge& b) { b.UpdateHtmlAttachAttr({}, {}, {}); },
            // The bytes of the reason, two by two.
            QStringLiteral("[ERROR] 修改附件class属性值失败，错误信息：\u8EE5\uE59F\uA09B\u2520s"),
            QStringLiteral("[ERROR] 修改附件class属性值失败，解析js返回json字符串失败！"),
            QStringLiteral(
                "[ERROR] 修改附件class属性值失败，js方法调用失败！，ErrMsg:unknow error ！")}),
    [](const auto& info) { return std::string(info.param.name); });
