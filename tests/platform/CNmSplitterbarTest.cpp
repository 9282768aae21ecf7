#include "platform/SplitterFixture.h"

TEST_F(Splitter, HasNoWindowBeforeItIsMadeAndIsMadeOnce)
{
    EXPECT_EQ(bar.GetSafeHwnd(), nullptr);
    EXPECT_EQ(bar.CreateSplitterBar(nullptr, 7), 0);
    EXPECT_EQ(bar.GetSafeHwnd(), nullptr);
    EXPECT_EQ(bar.CreateSplitterBar(&window, 7), 1);
    ASSERT_NE(bar.GetSafeHwnd(), nullptr);
    EXPECT_EQ(hwnd()->parentWidget(), &window);
    EXPECT_EQ(hwnd()->property("id").toUInt(), 7U);
    EXPECT_EQ(bar.CreateSplitterBar(&window, 8), 0);
    EXPECT_EQ(hwnd()->property("id").toUInt(), 7U);
}

TEST_F(Splitter, PlacesPanesAndBarWithoutAGap)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    EXPECT_EQ(first->geometry(), QRect(0, 0, 200, 100));
    EXPECT_EQ(hwnd()->geometry(), QRect(0, 100, 200, 10));
    EXPECT_EQ(second->geometry(), QRect(0, 110, 200, 190));
}

TEST_F(Splitter, AVerticalBarSharesOutTheWidth)
{
    make(SPLITBAR_BERTH_LEFT, 100);
    EXPECT_EQ(first->geometry(), QRect(0, 0, 100, 200));
    EXPECT_EQ(hwnd()->geometry(), QRect(100, 0, 10, 200));
    EXPECT_EQ(second->geometry(), QRect(110, 0, 190, 200));
}

TEST_F(Splitter, SizesBeyondTheRoomAreCut)
{
    make(SPLITBAR_BERTH_BOTTOM, 4'000'000'000U);
    EXPECT_EQ(first->height(), 290);
    EXPECT_EQ(second->height(), 0);
    EXPECT_EQ(bar.GetFirstWndWH(), std::numeric_limits<int>::max());
    window.resize(200, 4);
    bar.AdjustLayout();
    EXPECT_EQ(first->height(), 0);
    EXPECT_EQ(hwnd()->y(), 0);
    bar.SetThickness(-3);
    EXPECT_EQ(bar.GetThickness(), 0);
}

TEST_F(Splitter, AClickOnTheButtonFoldsAndExpands)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    EXPECT_TRUE(bar.isFolded());
    EXPECT_EQ(first->height(), 290);
    EXPECT_EQ(hwnd()->y(), 290);
    EXPECT_EQ(second->height(), 0);
    EXPECT_TRUE(second->isHidden());
    EXPECT_EQ(notify.changes, 1);
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 100);
    EXPECT_EQ(second->geometry(), QRect(0, 110, 200, 190));
    EXPECT_FALSE(second->isHidden());
    EXPECT_EQ(notify.changes, 2);
}

TEST_F(Splitter, ADoubleClickOnTheButtonFoldsAndExpandsAgain)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    QTest::mouseDClick(hwnd(), Qt::LeftButton, {}, bar.button());
    release(bar.button());
    EXPECT_EQ(notify.changes, 2);
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 100);
}

TEST_F(Splitter, ItFoldsToEachOfTheFourSides)
{
    const struct {
        SPLITBAR_BERTH_POS berth;
        QRect first, second;
    } cases[] = {
        {SPLITBAR_BERTH_TOP, {0, 0, 200, 0}, {0, 10, 200, 290}},
        {SPLITBAR_BERTH_BOTTOM, {0, 0, 200, 290}, {0, 300, 200, 0}},
    };
    make(SPLITBAR_BERTH_TOP, 100);
    for (const auto& [berth, upper, lower] : cases) {
        bar.SetBerthPos(berth);
        bar.FoldBar(1);
        EXPECT_EQ(first->geometry(), upper) << berth;
        EXPECT_EQ(second->geometry(), lower) << berth;
        EXPECT_EQ(first->isHidden(), berth == SPLITBAR_BERTH_TOP);
        EXPECT_EQ(second->isHidden(), berth == SPLITBAR_BERTH_BOTTOM);
        bar.FoldBar(0);
        EXPECT_EQ(first->height(), 100) << berth;
    }
    window.resize(300, 200);
    bar.SetBerthPos(SPLITBAR_BERTH_LEFT);
    bar.FoldBar(1);
    EXPECT_EQ(first->width(), 0);
    EXPECT_EQ(second->geometry(), QRect(10, 0, 290, 200));
    bar.SetBerthPos(SPLITBAR_BERTH_RIGHT);
    bar.FoldBar(1);
    EXPECT_EQ(first->geometry(), QRect(0, 0, 290, 200));
    EXPECT_TRUE(second->isHidden());
    EXPECT_FALSE(first->isHidden());
}

TEST_F(Splitter, FoldedItStaysFoldedWhenTheSizesChange)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    bar.FoldBar(1);
    window.resize(250, 400);
    bar.SetFirstWndWH(150);
    bar.AdjustLayout();
    EXPECT_EQ(first->geometry(), QRect(0, 0, 250, 390));
    bar.FoldBar(0);
    EXPECT_EQ(first->height(), 150);
}

TEST_F(Splitter, TheNotifyMayForbidAnyChange)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    notify.allows = false;
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    drag({20, 4}, {0, 30});
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 100);
    EXPECT_EQ(notify.changes, 0);
}

TEST_F(Splitter, WithoutANotifyItWorksAllTheSame)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    bar.SetNotify(nullptr);
    drag({20, 4}, {0, 30});
    EXPECT_EQ(first->height(), 130);
}

TEST_F(Splitter, PanesThatTheHostDeletesAreLeftOut)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    press({20, 4});
    delete second;
    moveTo({20, 150});
    release({20, 4});
    drag({20, 4}, {0, 30});
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    delete first;
    bar.AdjustLayout();
    EXPECT_FALSE(bar.isFolded());
    QWidget *upper = &window, *lower = &window;
    bar.GetSplitterWnd(upper, lower);
    EXPECT_EQ(upper, nullptr);
    EXPECT_EQ(lower, nullptr);
}

TEST_F(Splitter, APaneThatTheHostHidesStaysHidden)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    second->hide();
    bar.FoldBar(1);
    bar.FoldBar(0);
    EXPECT_TRUE(second->isHidden());
}

TEST_F(Splitter, NewPanesTakeTheFoldedPlaces)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    bar.FoldBar(1);
    auto* other = new QWidget(&window);
    other->show();
    bar.SetSplitterWnd(first, other);
    EXPECT_TRUE(other->isHidden());
    bar.FoldBar(0);
    EXPECT_EQ(other->geometry(), QRect(0, 110, 200, 190));
    EXPECT_FALSE(other->isHidden());
}
