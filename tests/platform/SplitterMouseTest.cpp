#include "platform/SplitterFixture.h"

#include <QLineEdit>

TEST_F(Splitter, ADragMovesThePanesLiveAndTellsTheNotify)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    press({20, 4});
    moveTo({25, 104 + 30});
    EXPECT_EQ(first->height(), 130);
    EXPECT_EQ(second->geometry(), QRect(0, 140, 200, 160));
    EXPECT_EQ(notify.changes, 1);
    moveTo({25, 104 + 50});
    EXPECT_EQ(first->height(), 150);
    release(hwnd()->mapFromParent(QPoint(25, 154)));
    hover({20, 9});
    EXPECT_EQ(first->height(), 150);
    EXPECT_EQ(notify.changes, 2);
}

TEST_F(Splitter, ADragOfAVerticalBarGoesSideways)
{
    make(SPLITBAR_BERTH_RIGHT, 100);
    drag({3, 20}, {44, 300});
    EXPECT_EQ(first->width(), 144);
}

TEST_F(Splitter, ADragLeavesEachPaneFortyPixels)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    drag({20, 4}, {0, -500});
    EXPECT_EQ(first->height(), 40);
    drag({20, 4}, {0, 1000});
    EXPECT_EQ(second->height(), 40);
    for (const auto& [y, allowed] : {std::pair(39, 0), {40, 1}, {250, 1}, {251, 0}})
        EXPECT_EQ(bar.IsInLimitWndRect({5, y}), allowed) << y;
}

TEST_F(Splitter, ADragRespectsAPanesOwnMinimum)
{
    make(SPLITBAR_BERTH_BOTTOM, 150);
    first->setMinimumHeight(90);
    second->setMinimumHeight(60);
    drag({20, 4}, {0, -500});
    EXPECT_EQ(first->height(), 90);
    drag({20, 4}, {0, 500});
    EXPECT_EQ(second->height(), 60);
}

TEST_F(Splitter, WhereThereIsNoRoomForBothADragDoesNothing)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    window.resize(200, 89);
    bar.AdjustLayout();
    drag({20, 4}, {0, -30});
    EXPECT_EQ(first->height(), 79);
    EXPECT_EQ(notify.changes, 0);
    EXPECT_EQ(bar.IsInLimitWndRect({0, 40}), 0);
    window.resize(200, 90);
    bar.AdjustLayout();
    drag({20, 4}, {0, -30});
    EXPECT_EQ(first->height(), 40);
}

TEST_F(Splitter, ALostReleaseEndsTheDrag)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    press({20, 4});
    hover({20, 40});
    moveTo({20, 200});
    EXPECT_EQ(first->height(), 100);
}

TEST_F(Splitter, AFoldedBarIsPulledOpenAndNotByAnUnsteadyHand)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    bar.FoldBar(1);
    drag({20, 4}, {0, -4});
    EXPECT_TRUE(bar.isFolded());
    drag({20, 4}, {0, -120});
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 170);
    EXPECT_FALSE(second->isHidden());
}

TEST_F(Splitter, CursorsTellWhatTheMouseCanDo)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    hover({20, 4});
    EXPECT_EQ(hwnd()->cursor().shape(), Qt::SplitVCursor);
    hover(bar.button());
    EXPECT_EQ(hwnd()->cursor().shape(), Qt::PointingHandCursor);
    press({20, 4});
    moveTo(hwnd()->mapToParent(bar.button()));
    EXPECT_EQ(hwnd()->cursor().shape(), Qt::SplitVCursor);
    release({20, 4});
    bar.SetBerthPos(SPLITBAR_BERTH_LEFT);
    EXPECT_EQ(bar.DoSetCursor(&window, 0, 0), 0);
    EXPECT_EQ(bar.DoSetCursor(nullptr, 1, 0), 0);
    hover({20, 4});
    EXPECT_EQ(hwnd()->cursor().shape(), Qt::SplitHCursor);
}

TEST_F(Splitter, IsHotWhileTheMouseIsOverTheButton)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    EXPECT_EQ(bar.drawnHot, 0);
    hover(bar.button());
    window.repaint();
    EXPECT_EQ(bar.drawnHot, 1);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(hwnd(), &leave);
    window.repaint();
    EXPECT_EQ(bar.drawnHot, 0);
    hover(bar.button());
    hover({5, 5});
    window.repaint();
    EXPECT_EQ(bar.drawnHot, 0);
}

TEST_F(Splitter, OtherMouseButtonsDoNothing)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QTest::mouseClick(hwnd(), Qt::RightButton, {}, bar.button());
    QTest::mouseClick(hwnd(), Qt::MiddleButton, {}, bar.button());
    EXPECT_EQ(notify.changes, 0);
}

TEST_F(Splitter, APressThatLeavesTheButtonIsNoClick)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    press(bar.button());
    moveTo({100, 200});
    release(hwnd()->mapFromParent(QPoint(100, 200)));
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 100);
    EXPECT_EQ(notify.changes, 0);
}

TEST_F(Splitter, AClickLeavesTheKeyboardWhereItIs)
{
    auto* above = new QLineEdit(first);
    make(SPLITBAR_BERTH_BOTTOM, 100);
    above->setFocus();
    QTest::mouseClick(hwnd(), Qt::LeftButton, {}, bar.button());
    drag({20, 4}, {0, -50});
    EXPECT_EQ(QApplication::focusWidget(), above);
}
