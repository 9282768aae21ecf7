#pragma once

#include "platform/CNmSplitterbarV3.h"
#include "platform/INmSplitterbarNotify.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

/// A bar that draws nothing, with a fold button of 20 pixels in its middle.
class PlainBar : public CNmSplitterbarV3 {
public:
    void DrawBar(QPainter*, QRect rect, int hot) override
    {
        drawnHot = hot;
        m_foldButtonRect = m_horizontal ? QRect(rect.width() / 2 - 10, 0, 20, rect.height())
                                        : QRect(0, rect.height() / 2 - 10, rect.width(), 20);
    }
    void DrawFoldButton(QPainter*, QRect, int) override { }

    int drawnHot = -1;
    bool isFolded() const { return m_folded; }
    QPoint button() const { return m_foldButtonRect.center(); }
};

struct BarNotify : INmSplitterbarNotify {
    bool OnSplitterChildWindowSizeChanging() override { return allows; }
    void OnSplitterChildWindowSizeChanged() override { ++changes; }
    bool allows = true;
    int changes = 0;
};

/// A window of 200 by 300 with a bar of 10 pixels: 290 to share out.
struct Splitter : ::testing::Test {
    QWidget window;
    BarNotify notify;
    PlainBar bar;
    QPointer<QWidget> first = new QWidget(&window);
    QPointer<QWidget> second = new QWidget(&window);

    void make(SPLITBAR_BERTH_POS berth, unsigned firstSize)
    {
        window.resize(berth < SPLITBAR_BERTH_TOP ? QSize(300, 200) : QSize(200, 300));
        bar.SetNotify(&notify);
        ASSERT_EQ(bar.CreateSplitterBar(&window, 7), 1);
        bar.SetThickness(10);
        bar.SetBerthPos(berth);
        bar.SetSplitterWnd(first, second);
        bar.SetFirstWndWH(firstSize);
        bar.AdjustLayout();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        window.repaint();
    }
    QWidget* hwnd() { return bar.GetSafeHwnd(); }
    void press(QPoint at) { QTest::mousePress(hwnd(), Qt::LeftButton, {}, at); }
    void release(QPoint at) { QTest::mouseRelease(hwnd(), Qt::LeftButton, {}, at); }
    /// Moves the mouse by so much from where the bar was pressed; the bar moves under it.
    void moveTo(QPoint inWindow)
    {
        const QPoint at = hwnd()->mapFromParent(inWindow);
        QMouseEvent move(QEvent::MouseMove, at, hwnd()->mapToGlobal(at), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(hwnd(), &move);
    }
    void drag(QPoint from, QPoint way)
    {
        const QPoint start = hwnd()->mapToParent(from);
        press(from);
        moveTo(start + way / 2);
        moveTo(start + way);
        release(hwnd()->mapFromParent(start + way));
    }
    void hover(QPoint at)
    {
        QMouseEvent move(QEvent::MouseMove, at, hwnd()->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
            Qt::NoModifier);
        QApplication::sendEvent(hwnd(), &move);
    }
    void key(Qt::Key key) { QTest::keyClick(hwnd(), key); }
};
