#include "view/CNomarUpDownView.h"

#include "support/AppDirs.h"
#include "support/Paths.h"
#include "view/Splitterbar2014.h"
#include "view/TestArrows.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class View : public CNomarUpDownView {
public:
    using CNomarUpDownView::m_bottomHeight;
    using CNomarUpDownView::OnSplitterChildWindowSizeChanged;
    using CNomarUpDownView::OnSplitterChildWindowSizeChanging;

    Splitterbar2014& bar() { return *m_bar; }
    bool isFolded() { return (*m_bar).*(&OpenBar::m_folded); }
    QPoint button() { return ((*m_bar).*(&OpenBar::m_foldButtonRect)).center(); }

private:
    struct OpenBar : Splitterbar2014 {
        using Splitterbar2014::m_foldButtonRect;
        using Splitterbar2014::m_folded;
    };
};

struct UpDownView : ::testing::Test {
    QTemporaryDir install;
    QWidget window;
    View view;
    QPointer<QWidget> upper, lower;

    void SetUp() override { SetInstallDir(install.path()); }
    void TearDown() override { SetInstallDir(QString()); }

    void writePicture()
    {
        QDir(install.path()).mkdir(QStringLiteral("res"));
        ASSERT_TRUE(testArrows().save(GetResFilePath(QStringLiteral("splitterbar.png"))));
    }
    void make(int height = 400)
    {
        window.resize(300, height);
        ASSERT_EQ(view.Create(&window, QRect(0, 0, 300, height), 5), 1);
        upper = new QWidget(&view);
        lower = new QWidget(&view);
        view.SetSplitterWnd(upper, lower);
        window.show();
        (void)hwnd()->grab(); // Drawn once, so that the button has its place.
    }
    void expectHeights(int first, int second)
    {
        EXPECT_EQ(upper->geometry(), QRect(0, 0, view.width(), first));
        EXPECT_EQ(hwnd()->geometry(), QRect(0, first, view.width(), 8));
        EXPECT_EQ(lower->geometry(), QRect(0, first + 8, view.width(), second));
    }
    QWidget* hwnd() { return view.bar().GetSafeHwnd(); }
    void clickButton()
    {
        (void)hwnd()->grab();
        QTest::mouseClick(hwnd(), Qt::LeftButton, {}, view.button());
    }
    void drag(int way)
    {
        const QPoint from(5, 3);
        QTest::mousePress(hwnd(), Qt::LeftButton, {}, from);
        const QPoint to = from + QPoint(0, way);
        QMouseEvent move(QEvent::MouseMove, to, hwnd()->mapToGlobal(to), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(hwnd(), &move);
        QTest::mouseRelease(hwnd(), Qt::LeftButton, {}, from);
    }
};

} // namespace

TEST_F(UpDownView, IsAVisibleChildWithABarOfItsOwn)
{
    ASSERT_EQ(view.Create(&window, QRect(1, 2, 30, 40), 5), 1);
    EXPECT_EQ(view.parentWidget(), &window);
    EXPECT_EQ(view.geometry(), QRect(1, 2, 30, 40));
    EXPECT_FALSE(view.isHidden());
    EXPECT_EQ(hwnd()->parentWidget(), &view);
    EXPECT_EQ(hwnd()->property("id").toUInt(), 65535U);
    EXPECT_EQ(view.bar().GetThickness(), 8);
}

TEST_F(UpDownView, IsNotMadeWithoutAParentOrTwice)
{
    EXPECT_EQ(view.Create(nullptr, QRect(), 5), 0);
    EXPECT_EQ(view.bar().GetSafeHwnd(), nullptr);
    EXPECT_EQ(view.Create(&window, QRect(), 5), 1);
    EXPECT_EQ(view.Create(&window, QRect(), 5), 0);
}

TEST_F(UpDownView, LowerPaneAndBarTogetherHave218PixelsAtFirst)
{
    make();
    EXPECT_EQ(view.m_bottomHeight, 218);
    expectHeights(182, 210);
}

TEST_F(UpDownView, TheUpperPaneTakesAllThatTheViewGainsOrLoses)
{
    make();
    view.resize(350, 500);
    expectHeights(282, 210);
    view.resize(300, 230);
    expectHeights(12, 210);
}

TEST_F(UpDownView, AViewLowerThanTheBottomHeightLeavesTheUpperPaneNothing)
{
    make();
    for (const int height : {218, 150, 10, 8}) {
        view.resize(300, height);
        expectHeights(0, height - 8);
    }
    view.resize(300, 3);
    expectHeights(0, 0);
    view.resize(300, 400);
    expectHeights(182, 210);
}

TEST_F(UpDownView, AViewWithoutHeightLaysNothingOut)
{
    make();
    view.resize(300, 0);
    EXPECT_EQ(upper->height(), 182);
}

TEST_F(UpDownView, TheBottomHeightTakesEffectAtTheNextLayout)
{
    make();
    view.SetBottomHeight(100);
    expectHeights(182, 210);
    view.resize(300, 401);
    expectHeights(301, 92);
}

TEST_F(UpDownView, ZeroAndNegativeBottomHeightsAreIgnored)
{
    make();
    view.SetBottomHeight(100);
    view.SetBottomHeight(0);
    view.SetBottomHeight(-5);
    EXPECT_EQ(view.m_bottomHeight, 100);
}

TEST_F(UpDownView, ADragChangesTheBottomHeight)
{
    make();
    drag(-50);
    expectHeights(132, 260);
    EXPECT_EQ(view.m_bottomHeight, 268);
    view.resize(300, 500);
    expectHeights(232, 260);
}

TEST_F(UpDownView, FoldingAndExpandingBringsTheEarlierHeightBack)
{
    make();
    drag(60);
    expectHeights(242, 150);
    clickButton();
    EXPECT_TRUE(view.isFolded());
    expectHeights(392, 0);
    EXPECT_EQ(view.m_bottomHeight, 158);
    clickButton();
    EXPECT_FALSE(view.isFolded());
    expectHeights(242, 150);
}

TEST_F(UpDownView, AFoldOutlastsANewSizeAndExpandsToTheSameHeight)
{
    make();
    clickButton();
    view.resize(320, 600);
    expectHeights(592, 0);
    clickButton();
    expectHeights(382, 210);
}

TEST_F(UpDownView, ExpandingWithoutRoomGivesTheLowerPane218PixelsWhateverWasSet)
{
    for (const int bottom : {1, 8}) {
        SCOPED_TRACE(bottom);
        QWidget other;
        View another;
        other.resize(300, 400);
        another.Create(&other, QRect(0, 0, 300, 400), 1);
        auto *above = new QWidget, *below = new QWidget;
        another.SetBottomHeight(bottom);
        another.SetSplitterWnd(above, below);
        other.show();
        EXPECT_EQ(below->height(), 0);
        another.bar().FoldBar(1);
        another.bar().FoldBar(0);
        EXPECT_EQ(below->height(), 218);
        EXPECT_EQ(above->height(), 400 - 8 - 218);
        EXPECT_EQ(another.m_bottomHeight, 226);
    }
}

TEST_F(UpDownView, ExpandingWithoutRoomInALowViewGivesTheLowerPaneAllOfIt)
{
    make(100);
    view.SetBottomHeight(5);
    view.resize(300, 101);
    expectHeights(93, 0);
    view.bar().FoldBar(0);
    expectHeights(0, 93);
    view.resize(300, 4);
    view.bar().FoldBar(1);
    view.bar().FoldBar(0);
    expectHeights(0, 0);
}

TEST_F(UpDownView, BothPanesAreNeeded)
{
    make();
    auto* other = new QWidget(&view);
    other->hide();
    view.SetSplitterWnd(nullptr, other);
    view.SetSplitterWnd(other, nullptr);
    EXPECT_TRUE(other->isHidden());
    expectHeights(182, 210);
}

TEST_F(UpDownView, WithoutPanesItLaysOutItsBar)
{
    window.resize(300, 400);
    view.Create(&window, QRect(0, 0, 300, 400), 5);
    window.show();
    EXPECT_EQ(hwnd()->geometry(), QRect(0, 182, 300, 8));
    clickButton();
    drag(40);
    EXPECT_FALSE(view.isFolded());
    EXPECT_EQ(hwnd()->y(), 182);
}

TEST_F(UpDownView, PanesAreShownAndTakenIntoTheView)
{
    window.resize(300, 400);
    view.Create(&window, QRect(0, 0, 300, 400), 5);
    upper = new QWidget;
    lower = new QWidget;
    upper->hide();
    view.SetSplitterWnd(upper, lower);
    EXPECT_EQ(upper->parentWidget(), &view);
    EXPECT_EQ(lower->parentWidget(), &view);
    window.show();
    EXPECT_TRUE(upper->isVisible());
    EXPECT_TRUE(lower->isVisible());
    expectHeights(182, 210);
}

TEST_F(UpDownView, InAVisibleWindowThePanesHaveTheirPlacesAtOnce)
{
    window.resize(300, 400);
    window.show();
    ASSERT_EQ(view.Create(&window, QRect(0, 0, 300, 400), 5), 1);
    view.SetBottomHeight(108);
    upper = new QWidget;
    lower = new QWidget;
    view.SetSplitterWnd(upper, lower);
    expectHeights(292, 100);
    EXPECT_TRUE(upper->isVisible());
    // A new height waits for the next size all the same, with other panes too.
    view.SetBottomHeight(218);
    expectHeights(292, 100);
    view.SetSplitterWnd(upper, lower);
    expectHeights(292, 100);
}

TEST_F(UpDownView, OtherPanesTakeThePlacesOfTheFirst)
{
    make();
    QWidget* const before = lower;
    lower = new QWidget(&view);
    view.SetSplitterWnd(upper, lower);
    expectHeights(182, 210);
    EXPECT_EQ(before->parentWidget(), &view);
    view.SetSplitterWnd(upper, lower);
    view.resize(300, 500);
    expectHeights(282, 210);
    EXPECT_EQ(before->height(), 210);
}

TEST_F(UpDownView, PanesThatAreDeletedInTheViewLeaveTheOtherInItsPlace)
{
    make();
    delete lower;
    view.resize(300, 450);
    drag(20);
    clickButton();
    view.OnSplitterChildWindowSizeChanged();
    EXPECT_EQ(view.m_bottomHeight, 218);
    EXPECT_EQ(upper->height(), 232);
    delete upper;
    view.resize(300, 500);
    EXPECT_EQ(hwnd()->y(), 282);
}

TEST_F(UpDownView, TheUserMayAlwaysChangeThePanes)
{
    EXPECT_TRUE(view.OnSplitterChildWindowSizeChanging());
}

TEST_F(UpDownView, TheButtonShowsTheFrameOfTheStateThatItIsIn)
{
    writePicture();
    make();
    const auto shown = [this] {
        const QImage image = hwnd()->grab().toImage();
        return image.pixel(view.button());
    };
    const auto over = [](int channel) { return blended(channel, 255, 0xE0); };
    EXPECT_EQ(shown(), qRgb(over(255), over(255), over(0))) << "down while open";
    view.bar().FoldBar(1);
    EXPECT_EQ(shown(), qRgb(over(0), over(0), over(255))) << "up while folded";
}

TEST_F(UpDownView, WithoutThePictureTheButtonHasNoArrow)
{
    make();
    const QImage image = hwnd()->grab().toImage();
    for (int x = 112; x < 188; ++x)
        for (int y = 0; y < 7; ++y)
            ASSERT_EQ(image.pixel(x, y), qRgb(0xE0, 0xE0, 0xE0)) << x << ' ' << y;
    EXPECT_EQ(image.pixel(150, 7), qRgb(0xDC, 0xDC, 0xDC));
    EXPECT_EQ(image.pixel(111, 3), qRgb(0xF0, 0xF0, 0xF0));
}

TEST_F(UpDownView, APressedButtonIsDrawnPressed)
{
    make();
    QTest::mousePress(hwnd(), Qt::LeftButton, {}, view.button());
    EXPECT_EQ(hwnd()->grab().toImage().pixel(120, 3), qRgb(0xA1, 0xA1, 0xA1));
    QTest::mouseRelease(hwnd(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(hwnd()->grab().toImage().pixel(120, 3), qRgb(0xE0, 0xE0, 0xE0));
}

TEST_F(UpDownView, FollowsAPaletteThatTurnsDark)
{
    make();
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x202020));
    window.setPalette(palette);
    EXPECT_LT(qGray(hwnd()->grab().toImage().pixel(5, 3)), 64);
    window.setPalette(QPalette());
    EXPECT_EQ(hwnd()->grab().toImage().pixel(5, 3), qRgb(0xF0, 0xF0, 0xF0));
}

TEST(SplitterbarPicture, HasFourArrowsThatPointRightLeftUpAndDown)
{
    const QImage picture = LoadResBitmap(QStringLiteral("splitterbar.png"));
    ASSERT_FALSE(picture.isNull());
    ASSERT_EQ(picture.width() % 4, 0);
    ASSERT_TRUE(picture.hasAlphaChannel());
    const int side = picture.width() / 4;
    ASSERT_LE(picture.height(), 7) << "fits on the bar above its line";
    /// How much lies in the outer third of a frame at that end.
    const auto weight = [&](int frame, bool sideways, bool atEnd) {
        int sum = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < side; ++x) {
                const int along = sideways ? x : y, all = sideways ? side : picture.height();
                if (atEnd ? along * 2 > all : along * 2 < all - 1)
                    sum += qAlpha(picture.pixel(frame * side + x, y));
            }
        return sum;
    };
    EXPECT_GT(weight(0, true, false), weight(0, true, true)) << "right: broad at its left";
    EXPECT_LT(weight(1, true, false), weight(1, true, true));
    EXPECT_LT(weight(2, false, false), weight(2, false, true)) << "up: broad below";
    EXPECT_GT(weight(3, false, false), weight(3, false, true));
}
