#include "capture/CSToolbar.h"

#include "capture/STIconButton.h"
#include "kit/Print.h"
#include "kit/Wait.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class Toolbar : public ::testing::Test {
protected:
    QWidget dialog;
    CSToolbar toolbar{&dialog};

    void SetUp() override
    {
        QCursor::setPos(700, 700);
        dialog.resize(640, 480);
        dialog.show();
    }
    void addFour()
    {
        for (const int id : {1004, 1001, 1002, 1003})
            toolbar.AddButton(QImage(), QStringLiteral("%1").arg(id), id);
    }
    QList<STIconButton*> buttons() { return toolbar.findChildren<STIconButton*>(); }
};

} // namespace

TEST_F(Toolbar, IsHiddenByItsSizeAtFirst)
{
    EXPECT_TRUE(toolbar.size().isEmpty());
    addFour();
    EXPECT_TRUE(toolbar.size().isEmpty());
}

TEST_F(Toolbar, HangsUnderTheSelectionFlushWithItsRightEdge)
{
    addFour();
    const struct {
        const char* what;
        CaptureRect selection;
        QRect place;
    } cases[] = {
        {"plain", {100, 100, 300, 200}, {212, 206, 88, 26}},
        {"inverted", {300, 200, 100, 100}, {212, 206, 88, 26}},
        {"empty", {50, 60, 50, 60}, {-38, 66, 88, 26}},
        {"narrower than the toolbar, at the left edge", {0, 0, 4, 4}, {-84, 10, 88, 26}},
        {"ending at the bottom of the screen", {100, 100, 300, 480}, {212, 486, 88, 26}},
        {"partly below the screen", {100, 100, 300, 460}, {212, 466, 88, 26}},
        {"hanging over the right edge", {600, 100, 700, 200}, {612, 206, 88, 26}},
        {"above the screen", {100, -90, 300, -50}, {212, -44, 88, 26}},
    };
    for (const auto& [what, selection, place] : cases)
        EXPECT_EQ(toolbar.PlaceFor(selection), place) << what;
}

TEST_F(Toolbar, IsAsWideAsItsButtonsNeed)
{
    EXPECT_EQ(toolbar.PlaceFor({0, 0, 100, 100}), QRect(92, 106, 8, 26));
    toolbar.AddButton(QImage(), QString(), 1);
    EXPECT_EQ(toolbar.PlaceFor({0, 0, 100, 100}), QRect(72, 106, 28, 26));
}

TEST_F(Toolbar, ButtonsGetTheirPlacesWhenItIsSized)
{
    addFour();
    for (const STIconButton* button : buttons())
        EXPECT_TRUE(button->size().isEmpty());
    toolbar.setGeometry(toolbar.PlaceFor({100, 100, 300, 200}));
    int left = 4;
    for (const STIconButton* button : buttons()) {
        EXPECT_EQ(button->geometry(), QRect(left, 4, 18, 18));
        EXPECT_TRUE(button->isVisible());
        left += 20;
    }
}

TEST_F(Toolbar, ButtonsStandInTheMiddleOfAHigherOne)
{
    addFour();
    toolbar.resize(88, 46);
    EXPECT_EQ(buttons()[0]->geometry(), QRect(4, 14, 18, 18));
    // An odd difference: half of it, truncated, goes off on each side.
    toolbar.resize(88, 47);
    EXPECT_EQ(buttons()[0]->geometry(), QRect(4, 14, 18, 19));
    toolbar.resize(88, 20);
    EXPECT_EQ(buttons()[0]->geometry(), QRect(4, 4, 18, 12));
}

TEST_F(Toolbar, WithoutButtonsIsLaidOutToo)
{
    toolbar.resize(88, 26);
    toolbar.LayoutButtons();
    EXPECT_TRUE(buttons().isEmpty());
}

TEST_F(Toolbar, ShowsAFrameOfOnePixelAndItsFill)
{
    addFour();
    toolbar.setGeometry(100, 100, 88, 26);
    const QImage shot = toolbar.grab().toImage();
    const QColor frame(80, 141, 191), fill(216, 241, 255);
    for (int y = 0; y < 26; ++y) {
        for (int x = 0; x < 88; ++x) {
            const bool isFrame = x == 0 || y == 0 || x == 87 || y == 25;
            // Buttons without icons show the same ground.
            ASSERT_EQ(shot.pixelColor(x, y), isFrame ? frame : fill) << x << ", " << y;
        }
    }
}

TEST_F(Toolbar, AClickBecomesTheButtonsCommand)
{
    addFour();
    toolbar.setGeometry(100, 100, 88, 26);
    QSignalSpy commands(&toolbar, &CSToolbar::Command);
    for (STIconButton* button : buttons())
        QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_EQ(commands.size(), 4);
    EXPECT_EQ(commands[0][0].toInt(), 1004);
    EXPECT_EQ(commands[1][0].toInt(), 1001);
    EXPECT_EQ(commands[2][0].toInt(), 1002);
    EXPECT_EQ(commands[3][0].toInt(), 1003);
}

TEST_F(Toolbar, TheSpaceBarGivesNoCommand)
{
    addFour();
    toolbar.setGeometry(100, 100, 88, 26);
    QSignalSpy commands(&toolbar, &CSToolbar::Command);
    dialog.activateWindow();
    ASSERT_TRUE(waitFor([&] { return dialog.isActiveWindow(); }));
    buttons()[3]->setFocus();
    QTest::keyClick(buttons()[3], Qt::Key_Space);
    EXPECT_TRUE(commands.isEmpty());
}

TEST_F(Toolbar, KeepsMouseEventsFromTheDialog)
{
    struct Counter : QObject {
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::MouseButtonPress
                || event->type() == QEvent::MouseButtonRelease;
            return false;
        }
    } counter;
    addFour();
    toolbar.setGeometry(100, 100, 88, 26);
    dialog.installEventFilter(&counter);
    QTest::mouseClick(&toolbar, Qt::LeftButton, {}, QPoint(2, 2));
    QTest::mouseClick(&toolbar, Qt::RightButton, {}, QPoint(2, 2));
    QTest::mouseClick(buttons()[0], Qt::RightButton);
    EXPECT_EQ(counter.count, 0);
}
