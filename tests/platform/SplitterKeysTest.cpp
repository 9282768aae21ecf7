#include "platform/SplitterFixture.h"

#include <QAccessible>
#include <QLineEdit>

TEST_F(Splitter, TabGoesFromTheFirstPaneToTheBarToTheSecond)
{
    auto* above = new QLineEdit(first);
    second = new QWidget(&window); // Behind what stands in the first.
    auto* below = new QLineEdit(second);
    make(SPLITBAR_BERTH_BOTTOM, 100);
    above->setFocus();
    QTest::keyClick(above, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), hwnd());
    key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), below);
    QTest::keyClick(below, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), hwnd());
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), above) << "the keyboard got into a folded pane";
}

TEST_F(Splitter, ArrowKeysMoveItAndEnterFolds)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    key(Qt::Key_Down);
    EXPECT_EQ(first->height(), 116);
    key(Qt::Key_Up);
    key(Qt::Key_Up);
    EXPECT_EQ(first->height(), 84);
    for (int i = 0; i < 10; ++i)
        key(Qt::Key_Up);
    EXPECT_EQ(first->height(), 40);
    key(Qt::Key_Left);
    EXPECT_EQ(first->height(), 40);
    for (const Qt::Key fold : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        key(fold);
        EXPECT_TRUE(bar.isFolded());
        key(fold);
        EXPECT_FALSE(bar.isFolded());
    }
    EXPECT_EQ(first->height(), 40);
}

TEST_F(Splitter, ArrowKeysExpandAFoldedBarTowardsItsPlace)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    bar.FoldBar(1);
    key(Qt::Key_Down);
    EXPECT_TRUE(bar.isFolded());
    key(Qt::Key_Up);
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 100);
    bar.SetBerthPos(SPLITBAR_BERTH_TOP);
    bar.FoldBar(1);
    key(Qt::Key_Up);
    EXPECT_TRUE(bar.isFolded());
    key(Qt::Key_Down);
    EXPECT_FALSE(bar.isFolded());
}

TEST_F(Splitter, AHeldEnterFoldsOnce)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    key(Qt::Key_Return);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
    QApplication::sendEvent(hwnd(), &again);
    EXPECT_TRUE(bar.isFolded());
}

TEST_F(Splitter, KeysThatAreNotItsOwnGoOn)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QKeyEvent other(QEvent::KeyPress, Qt::Key_A, {}, QStringLiteral("a"));
    other.accept();
    QApplication::sendEvent(hwnd(), &other);
    EXPECT_FALSE(other.isAccepted());
}

TEST_F(Splitter, FocusIsShown)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::magenta);
    window.setPalette(palette);
    hwnd()->clearFocus();
    EXPECT_NE(hwnd()->grab().toImage().pixelColor(0, 0), QColor(Qt::magenta));
    hwnd()->setFocus(Qt::TabFocusReason);
    const QImage shot = hwnd()->grab().toImage();
    EXPECT_EQ(shot.pixelColor(0, 0), QColor(Qt::magenta));
    EXPECT_EQ(shot.pixelColor(199, 9), QColor(Qt::magenta));
}

TEST_F(Splitter, IsASplitterToAssistivePrograms)
{
    make(SPLITBAR_BERTH_BOTTOM, 100);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(hwnd());
    ASSERT_TRUE(access);
    EXPECT_EQ(access->role(), QAccessible::Splitter);
    EXPECT_FALSE(access->text(QAccessible::Name).isEmpty());
    EXPECT_FALSE(access->text(QAccessible::Description).isEmpty());
    EXPECT_TRUE(access->state().focusable);
    EXPECT_TRUE(access->state().expanded);
    QAccessibleValueInterface* value = access->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue().toInt(), 100);
    EXPECT_EQ(value->minimumValue().toInt(), 0);
    EXPECT_EQ(value->maximumValue().toInt(), 290);
    bar.FoldBar(1);
    EXPECT_TRUE(access->state().collapsed);
    EXPECT_EQ(value->currentValue().toInt(), 290);
    value->setCurrentValue(120);
    EXPECT_FALSE(bar.isFolded());
    EXPECT_EQ(first->height(), 120);
    notify.allows = false;
    value->setCurrentValue(150);
    EXPECT_EQ(first->height(), 120);
}

TEST_F(Splitter, HasAChineseName)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Chinese));
    bar.CreateSplitterBar(&window, 1);
    QLocale::setDefault(before);
    EXPECT_EQ(hwnd()->accessibleName(), QStringLiteral("分隔条"));
}
