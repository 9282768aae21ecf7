// What becomes of a call to the page while it waits: the host may open another note, ask for
// another mode, or end the control.

#include "bridge/PageBridge.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/ScriptedPage.h"

#include <gtest/gtest.h>

namespace {

struct Operation {
    const char* name;
    void (*run)(PageBridge&);
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

/// Those that are meant for the note that is open when they begin.
const Operation ofTheNote[] = {
    {"SetEditorHtml", [](PageBridge& bridge) { bridge.SetEditorHtml(QStringLiteral("<p>a</p>")); }},
    {"GetEditorContent",
        [](PageBridge& bridge) {
            QString html, text;
            bridge.GetEditorContent(html, text);
        }},
    {"SelectedAttach", [](PageBridge& bridge) { bridge.SelectedAttach(QStringLiteral("a")); }},
    {"UpdateHtmlAttachAttr",
        [](PageBridge& bridge) {
            bridge.UpdateHtmlAttachAttr(
                QStringLiteral("a.txt"), QStringLiteral("class"), QStringLiteral("src"));
        }},
    {"AddPicToEditor",
        [](PageBridge& bridge) {
            bridge.AddPicToEditor(QStringLiteral("pic"), QStringLiteral("data"),
                QStringLiteral("{}"), QStringLiteral("txt"));
        }},
    {"RemoveAttach",
        [](PageBridge& bridge) {
            bridge.RemoveAttach(QStringLiteral("file"), QStringLiteral("a.txt"));
        }},
};

const Operation ofThePage[] = {
    {"SetReadOnly", [](PageBridge& bridge) { bridge.SetReadOnly(1); }},
    {"SetEditorMaxChars", [](PageBridge& bridge) { bridge.SetEditorMaxChars(5); }},
};

/// The control's part of it; the page stays behind to tell what reached it.
struct Open {
    OpenNote note;
    PageBridge bridge;

    explicit Open(NotePage& page)
        : bridge(note, page)
    {
    }
};

struct PageBridgeWaits : ::testing::TestWithParam<Operation> {
    ScriptedPage page;
    std::unique_ptr<Open> open = std::make_unique<Open>(page);
    LogLines log;

    void run() { GetParam().run(open->bridge); }
};

class ACallForTheNote : public PageBridgeWaits { };
class AnyCall : public PageBridgeWaits { };

auto nameOf(const ::testing::TestParamInfo<Operation>& info)
{
    return std::string(info.param.name);
}

} // namespace

TEST_P(ACallForTheNote, ThatWaitsForADeadPageNeverReachesANoteThatWasOpenedMeanwhile)
{
    page.onWait = [&] { ++open->note.m_loads; };
    run();
    EXPECT_TRUE(page.calls.empty());
}

TEST_P(ACallForTheNote, ThatIsCutByTheDeathOfThePageIsNotSentAgainIntoAnotherNote)
{
    page.answer(PAGE_CALL_LOST);
    page.onCall = [&] { ++open->note.m_loads; };
    run();
    EXPECT_EQ(page.calls.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Each, ACallForTheNote, ::testing::ValuesIn(ofTheNote), nameOf);

TEST_P(AnyCall, MayLoseItsControlWhileItRuns)
{
    page.answer(PAGE_CALL_LOST);
    page.onCall = [&] { open.reset(); };
    run();
    EXPECT_EQ(page.calls.size(), 1u);
}

TEST_P(AnyCall, MayLoseItsControlWhileItWaitsForTheDeadPage)
{
    page.onWait = [&] { open.reset(); };
    run();
    EXPECT_TRUE(page.calls.empty());
}

TEST_P(AnyCall, ThatIsCutByTheDeathOfThePageGoesAgain)
{
    page.answer(PAGE_CALL_LOST);
    run();
    EXPECT_EQ(page.calls.size(), 2u);
}

TEST_P(AnyCall, ThatIsCutAgainAndAgainEndsInTheLog)
{
    for (int i = 0; i < 10; ++i)
        page.answer(PAGE_CALL_LOST);
    run();
    EXPECT_LE(page.calls.size(), 3u);
    EXPECT_LE(log.take().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(OfTheNote, AnyCall, ::testing::ValuesIn(ofTheNote), nameOf);
INSTANTIATE_TEST_SUITE_P(OfThePage, AnyCall, ::testing::ValuesIn(ofThePage), nameOf);

namespace {

struct PageMode : ::testing::Test {
    ScriptedPage page;
    Open open{page};

    /// The modes that the page was told, in order.
    QStringList told() const
    {
        QStringList modes;
        for (const auto& [method, argument] : page.calls)
            modes << argument;
        return modes;
    }
    /// Runs `act` in the first call alone.
    void during(const std::function<void()>& act)
    {
        page.onCall = [this, act] {
            page.onCall = nullptr;
            act();
        };
    }
};

const QString readOnlyMode = QStringLiteral("{\"readonly\":true }");
const QString editMode = QStringLiteral("{\"readonly\":false }");

} // namespace

TEST_F(PageMode, TheOneAskedForWhileAnotherIsUnderWayIsTheLast)
{
    open.note.m_readOnly = 1;
    during([&] { open.bridge.SetReadOnly(1); });
    open.bridge.SetReadOnly(0);
    EXPECT_EQ(told(), QStringList({editMode, readOnlyMode}));
    EXPECT_EQ(open.note.m_readOnly, 1);
}

TEST_F(PageMode, TheOneThatIsUnderWayNeedsNoSecondCall)
{
    during([&] { open.bridge.SetReadOnly(1); });
    open.bridge.SetReadOnly(1);
    EXPECT_EQ(told(), QStringList{readOnlyMode});
    EXPECT_EQ(open.note.m_readOnly, 1);
}

TEST_F(PageMode, OneThatWaitedForADeadPageGivesWayToALaterOne)
{
    page.onWait = [&] {
        page.onWait = nullptr;
        open.bridge.SetReadOnly(2);
    };
    open.bridge.SetReadOnly(1);
    EXPECT_EQ(told(), QStringList{readOnlyMode});
    EXPECT_EQ(open.note.m_readOnly, 2);
}

TEST_F(PageMode, HoldsForANoteThatWasOpenedMeanwhile)
{
    page.onWait = [&] {
        page.onWait = nullptr;
        open.bridge.SetReadOnly(1); // Under way already.
        open.bridge.SetEditorHtml(QStringLiteral("<p>another</p>"));
    };
    open.bridge.SetReadOnly(1);
    EXPECT_EQ(open.note.m_readOnly, 1);
    EXPECT_EQ(page.calls.back(), std::pair(QStringLiteral("SetEditorMode"), readOnlyMode));
}

TEST_F(PageMode, IsAskedForAgainBehindAFailure)
{
    page.answer(PAGE_CALL_FAILED);
    open.bridge.SetReadOnly(1);
    EXPECT_EQ(open.note.m_readOnly, 0);
    open.bridge.SetReadOnly(1);
    EXPECT_EQ(open.note.m_readOnly, 1);
}

TEST_F(PageMode, OrLimitThatWasAskedForLastIsTheOneThatIsPutBack)
{
    during([&] { open.bridge.SetEditorMaxChars(7); });
    open.bridge.SetEditorMaxChars(5);
    EXPECT_EQ(
        told(), QStringList({QStringLiteral("{\"size\":5 }"), QStringLiteral("{\"size\":7 }")}));
    EXPECT_EQ(open.note.m_maxChars, 7);
    page.onWait = [&] {
        page.onWait = nullptr;
        open.bridge.SetEditorMaxChars(9);
    };
    open.bridge.SetEditorMaxChars(8);
    EXPECT_EQ(page.calls.back().second, QStringLiteral("{\"size\":9 }"));
    EXPECT_EQ(open.note.m_maxChars, 9);
}
