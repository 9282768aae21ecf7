#include "bridge/PageRequests.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "noteattach/ExData.h"

#include <gtest/gtest.h>

namespace {

/// Writes down what the page asked for.
class Recorder : public PageRequests {
public:
    QStringList seen;

    void dblClickAttachment(const QString& path, const QString& origName) override
    {
        seen << QStringLiteral("open %1 %2").arg(path, origName);
    }
    void addAttachment() override { seen << QStringLiteral("add"); }
    void openHyperLink(const QString& url) override { seen << QStringLiteral("link ") + url; }
    void nmMessageBox(const QString& msg) override { seen << QStringLiteral("box ") + msg; }
    void rightClickAttach(
        const QString& fileName, const QString& origName, const QString& rangeHtml) override
    {
        seen << QStringLiteral("menu %1 %2 %3").arg(fileName, origName, rangeHtml);
    }
    void writeEditorLog(const QString& type, const QString& msg) override
    {
        seen << QStringLiteral("log %1 %2").arg(type, msg);
    }
    void screenCapture(bool hideMainWnd) override
    {
        seen << (hideMainWnd ? QStringLiteral("capture hidden") : QStringLiteral("capture"));
    }
};

struct PageRequestsTest : ::testing::Test {
    Recorder page;
    LogLines log;

    void call(const QStringList& arguments)
    {
        DISPPARAMS params;
        for (auto text = arguments.rbegin(); text != arguments.rend(); ++text)
            params.rgvarg.push_back(VARIANT::Text(*text));
        params.cArgs = unsigned(params.rgvarg.size());
        EXPECT_EQ(DispatchPageCall(params, page), 0);
    }
    void call(const char* method, const QString& json, const QString& extra = {})
    {
        call({QString::fromUtf8(method), json, extra});
    }
};

} // namespace

TEST_F(PageRequestsTest, EachMethodIsDecoded)
{
    const QString exData = noteattach::FormatOrigNameToJson(QStringLiteral("报告.pdf"));
    call("DbClickAttachment", QStringLiteral(R"({"path":"userdata\\attachment\\a.pdf"})"), exData);
    call("AddAttachment", QStringLiteral("{}"));
    call("OpenHyperLink", QStringLiteral(R"({"url":"https://example.org"})"));
    call("NmMessageBox", QStringLiteral(R"({"msg":"你好"})"));
    call("WriteEditorLog", QStringLiteral(R"({"type":"t","msg":"m"})"));
    call("SreenCapture", QStringLiteral(R"({"hideMainWnd":true})"));
    call("SreenCapture", QStringLiteral(R"({"hideMainWnd":false})"));
    EXPECT_EQ(page.seen,
        QStringList({QStringLiteral("open userdata\\attachment\\a.pdf 报告.pdf"),
            QStringLiteral("add"), QStringLiteral("link https://example.org"),
            QStringLiteral("box 你好"), QStringLiteral("log t m"), QStringLiteral("capture hidden"),
            QStringLiteral("capture")}));
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(PageRequestsTest, ARightClickIsReducedToNames)
{
    QString exData = noteattach::FormatOrigNameToJson(QStringLiteral("b.txt"));
    exData.replace(u'"', QStringLiteral("\\\""));
    call("OnRightClickAttach",
        QStringLiteral(R"({"current_attach":{"class_value":"userdata\\attachment\\d.txt",)"
                       R"("exdata_value":"%1"},"range_html":"<b>"})")
            .arg(exData));
    EXPECT_EQ(page.seen, QStringList{QStringLiteral("menu d.txt b.txt <b>")});
}

TEST_F(PageRequestsTest, ARightClickWithoutAnAttachmentIsNoFailure)
{
    call("OnRightClickAttach", QStringLiteral(R"({"current_attach":5})"));
    EXPECT_EQ(page.seen, QStringList{QStringLiteral("menu   ")});
}

TEST_F(PageRequestsTest, TwoArgumentsAreLoggedAndNothingElse)
{
    call({QStringLiteral("AddAttachment"), QStringLiteral("{}")});
    EXPECT_TRUE(page.seen.isEmpty());
    EXPECT_EQ(log.take(),
        QStringList{QStringLiteral("[ERROR] js调用OnCppProcessor传递参数个数不正确！")});
}

TEST_F(PageRequestsTest, FourArgumentsAreRefusedToo)
{
    call({QStringLiteral("AddAttachment"), QString(), QString(), QString()});
    EXPECT_TRUE(page.seen.isEmpty());
    EXPECT_EQ(log.take().size(), 1);
}

TEST_F(PageRequestsTest, AMisspeltMethodIsDroppedWithoutATrace)
{
    call("addattachment", QStringLiteral("{}"));
    call("ScreenCapture", QStringLiteral("{}"));
    EXPECT_TRUE(page.seen.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(PageRequestsTest, AddAttachmentReadsNoJson)
{
    call("AddAttachment", QStringLiteral("no json"));
    EXPECT_EQ(page.seen, QStringList{QStringLiteral("add")});
    EXPECT_TRUE(log.take().isEmpty());
}

struct Unparsable {
    const char* method;
    const char* named;
};
class UnparsablePageCall : public PageRequestsTest,
                           public ::testing::WithParamInterface<Unparsable> { };

TEST_P(UnparsablePageCall, LogsItsOwnMessageAndDoesNothing)
{
    for (const char* json : {"", "{", "[]", "\"text\"", "7", "{\"a\":\"\\ud800\"}"})
        call(GetParam().method, QString::fromLatin1(json));
    EXPECT_TRUE(page.seen.isEmpty());
    const QString line = QStringLiteral("[ERROR] 解析%1方法，json参数字串失败！")
                             .arg(QLatin1StringView(GetParam().named));
    EXPECT_EQ(log.take(), QStringList({line, line, line, line, line, line}));
}

INSTANTIATE_TEST_SUITE_P(AllThatParse, UnparsablePageCall,
    ::testing::Values(Unparsable{"DbClickAttachment", "DblClickAttachment"},
        Unparsable{"OpenHyperLink", "OpenHyperLink"}, Unparsable{"NmMessageBox", "NmMessageBox"},
        Unparsable{"OnRightClickAttach", "OnRightClickAttach"},
        Unparsable{"WriteEditorLog", "WriteEditorLog"}, Unparsable{"SreenCapture", "SreenCapture"}),
    [](const auto& info) { return std::string(info.param.method); });

TEST(FileNameOfNotePath, IsTheTextBehindTheLastBackslash)
{
    EXPECT_EQ(
        FileNameOfNotePath(QStringLiteral("userdata\\attachment\\a.pdf")), QStringLiteral("a.pdf"));
    EXPECT_EQ(FileNameOfNotePath(QStringLiteral("a/b.pdf")), QStringLiteral("a/b.pdf"));
    EXPECT_EQ(FileNameOfNotePath(QStringLiteral("a\\")), QString());
}
