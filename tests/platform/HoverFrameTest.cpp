#include "platform/HoverFrame.h"

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

class Hover : public ::testing::Test {
protected:
    QWidget window;
    QWidget browser{&window};
    HoverFrame helper;

    void SetUp() override
    {
        window.resize(400, 300);
        browser.setGeometry(20, 10, 360, 280);
        window.show();
    }
    QWidget* frame() const { return window.findChild<QWidget*>(QStringLiteral("hoverFrame")); }
    QString label() const { return frame() ? frame()->accessibleName() : QString(); }
};

} // namespace

TEST_F(Hover, CoversTheWidgetAndIsTransparentForTheMouse)
{
    helper.DragEnter(&browser, DragFate::Taken);
    ASSERT_TRUE(frame());
    EXPECT_EQ(frame()->geometry(), browser.geometry());
    EXPECT_TRUE(frame()->isVisible());
    EXPECT_EQ(window.childAt(100, 100), &browser);
    browser.resize(100, 50);
    EXPECT_EQ(frame()->geometry(), browser.geometry());
}

TEST_F(Hover, IsPaintedInTheColourOfHighlights)
{
    QPalette palette;
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::magenta);
    window.setPalette(palette);
    helper.DragEnter(&browser, DragFate::Taken);
    const QImage shot = window.grab().toImage();
    EXPECT_EQ(
        shot.pixelColor(browser.x() + 2, browser.geometry().center().y()), QColor(Qt::magenta));
}

TEST_F(Hover, SaysWhatBecomesOfTheDrag)
{
    helper.DragEnter(&browser, DragFate::Taken);
    const QString taken = label();
    helper.DragOver(DragFate::ReadOnly);
    const QString readOnly = label();
    helper.DragOver(DragFate::Refused);
    EXPECT_FALSE(taken.isEmpty());
    EXPECT_NE(taken, readOnly);
    EXPECT_NE(label(), readOnly);
    EXPECT_NE(label(), taken);
}

TEST_F(Hover, GoesWithTheDrag)
{
    helper.DragEnter(&browser, DragFate::Taken);
    helper.DragLeave();
    EXPECT_FALSE(frame());
    helper.DragEnter(&browser, DragFate::Taken);
    helper.Drop();
    EXPECT_FALSE(frame());
    helper.DragOver(DragFate::Taken);
    EXPECT_FALSE(frame());
}

TEST_F(Hover, GoesWhenTheMouseMovesWithoutADrag)
{
    browser.setMouseTracking(true);
    helper.DragEnter(&browser, DragFate::Taken);
    ASSERT_TRUE(frame());
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), browser.mapToGlobal(QPointF(5, 5)),
        Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&browser, &move);
    EXPECT_FALSE(frame()->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(frame());
    helper.DragOver(DragFate::Taken);
    helper.DragLeave();
}

TEST_F(Hover, WithoutAWindowShowsNothing)
{
    helper.DragEnter(nullptr, DragFate::Taken);
    helper.DragLeave();
    EXPECT_FALSE(frame());
}

TEST_F(Hover, MayOutliveItsWindow)
{
    auto passing = std::make_unique<QWidget>();
    helper.DragEnter(passing.get(), DragFate::Taken);
    passing.reset();
    helper.DragOver(DragFate::Taken);
    helper.DragLeave();
}
