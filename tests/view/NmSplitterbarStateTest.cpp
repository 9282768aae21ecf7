#include "view/NmSplitterbarState.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

struct Bar : NmSplitterbarState {
    using NmSplitterbarState::m_foldButtonRect;
    using NmSplitterbarState::m_pressState;
};

struct PressState : ::testing::Test {
    QWidget window;
    Bar bar;

    void SetUp() override
    {
        window.resize(300, 200);
        bar.CreateSplitterBar(&window, 1);
        bar.SetThickness(8);
        bar.SetBerthPos(SPLITBAR_BERTH_BOTTOM);
        bar.SetSplitterWnd(new QWidget(&window), new QWidget(&window));
        bar.SetFirstWndWH(100);
        bar.AdjustLayout();
        window.show();
        (void)bar.GetSafeHwnd()->grab(); // Drawn once, so that the button has its place.
    }
    void click(QPoint at) { QTest::mouseClick(bar.GetSafeHwnd(), Qt::LeftButton, {}, at); }
};

} // namespace

TEST_F(PressState, IsNoneAtTheStart)
{
    EXPECT_EQ(bar.m_pressState, 0);
}

TEST_F(PressState, APressBesideTheButtonRecordsHowItFoundTheBar)
{
    click({5, 4});
    EXPECT_EQ(bar.m_pressState, 2);
    bar.FoldBar(1);
    click({5, 4});
    EXPECT_EQ(bar.m_pressState, 1);
}

TEST_F(PressState, APressOnTheButtonChangesNothing)
{
    click(bar.m_foldButtonRect.center());
    EXPECT_EQ(bar.m_pressState, 0);
    click({5, 4});
    click(bar.m_foldButtonRect.center());
    EXPECT_EQ(bar.m_pressState, 1);
}
