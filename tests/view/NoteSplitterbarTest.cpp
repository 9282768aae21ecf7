#include "view/NoteSplitterbar.h"

#include "view/TestArrows.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr QRgb ground = 0xFF123456; // Where the bar must not draw.

struct Bar : NoteSplitterbar {
    using NoteSplitterbar::m_edgeSide;
    using NoteSplitterbar::m_foldButtonRect;
    using NoteSplitterbar::m_pressed;

    /// Draws it into the middle of an image, one pixel away from each side.
    QImage draw(QSize size, int hot = 0)
    {
        QImage image(size + QSize(2, 2), QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        DrawBar(&painter, QRect(QPoint(1, 1), size), hot);
        return image;
    }
};

struct Look : ::testing::Test {
    QWidget window;
    QWidget* first = new QWidget(&window);
    QWidget* second = new QWidget(&window);
    Bar bar;

    void SetUp() override { window.resize(200, 200); }
    void fold(SPLITBAR_BERTH_POS berth, QSize firstSize, QSize secondSize)
    {
        bar.SetBerthPos(berth);
        bar.SetSplitterWnd(first, second);
        first->resize(firstSize);
        second->resize(secondSize);
        first->show();
        second->show();
    }
};

QRgb shade(int value)
{
    return qRgb(value, value, value);
}

} // namespace

TEST_F(Look, TheBarIsFilledAndStaysInItsRectangle)
{
    const QImage image = bar.draw(QSize(200, 8));
    EXPECT_EQ(image.pixel(0, 4), ground);
    EXPECT_EQ(image.pixel(201, 4), ground);
    EXPECT_EQ(image.pixel(100, 0), ground);
    EXPECT_EQ(image.pixel(100, 9), ground);
    EXPECT_EQ(image.pixel(1, 1), shade(0xF0));
    EXPECT_EQ(image.pixel(20, 8), shade(0xF0));
}

TEST_F(Look, ALineRunsAlongTheSideThatTheEdgeNames)
{
    const QPoint sides[] = {{1, 30}, {8, 30}, {4, 1}, {4, 60}}; // left, right, top, bottom
    EXPECT_EQ(bar.m_edgeSide, 1) << "the right side at the start";
    for (int side = 0; side < 4; ++side) {
        bar.m_edgeSide = side;
        bar.SetBerthPos(side < 2 ? SPLITBAR_BERTH_LEFT : SPLITBAR_BERTH_TOP);
        const QImage image = bar.draw(QSize(8, 60));
        for (int other = 0; other < 4; ++other)
            EXPECT_EQ(image.pixel(sides[other]) == shade(0xDC), other == side)
                << "edge " << side << ", side " << other;
    }
}

TEST_F(Look, TheButtonIsSeventySixPixelsInTheMiddleAndLeavesTheLineAlone)
{
    bar.m_edgeSide = 3;
    const QImage image = bar.draw(QSize(200, 8));
    EXPECT_EQ(bar.m_foldButtonRect, QRect(1 + 62, 1, 76, 7));
    EXPECT_EQ(image.pixel(62, 4), shade(0xF0));
    EXPECT_EQ(image.pixel(63, 4), shade(0xE0));
    EXPECT_EQ(image.pixel(138, 1), shade(0xE0));
    EXPECT_EQ(image.pixel(139, 4), shade(0xF0));
    EXPECT_EQ(image.pixel(100, 7), shade(0xE0));
    EXPECT_EQ(image.pixel(100, 8), shade(0xDC));
}

TEST_F(Look, AnOddExcessLeavesTheButtonOnePixelLonger)
{
    bar.m_edgeSide = 3;
    bar.draw(QSize(201, 8));
    EXPECT_EQ(bar.m_foldButtonRect, QRect(1 + 62, 1, 77, 7));
}

TEST_F(Look, ABarShorterThanItsButtonIsAllButton)
{
    bar.m_edgeSide = 3;
    bar.draw(QSize(76, 8));
    EXPECT_EQ(bar.m_foldButtonRect, QRect(1, 1, 76, 7));
    bar.draw(QSize(10, 8));
    EXPECT_EQ(bar.m_foldButtonRect, QRect(1, 1, 10, 7));
    bar.draw(QSize(0, 0));
}

TEST_F(Look, OnAVerticalBarTheButtonStandsUpright)
{
    bar.SetBerthPos(SPLITBAR_BERTH_LEFT);
    bar.draw(QSize(8, 200));
    EXPECT_EQ(bar.m_foldButtonRect, QRect(1, 1 + 62, 7, 76));
}

TEST_F(Look, TheButtonIsPlainHotOrPressed)
{
    EXPECT_EQ(bar.draw(QSize(200, 8)).pixel(100, 4), shade(0xE0));
    EXPECT_EQ(bar.draw(QSize(200, 8), 1).pixel(100, 4), shade(0xB3));
    bar.m_pressed = true;
    EXPECT_EQ(bar.draw(QSize(200, 8), 1).pixel(100, 4), shade(0xA1));
    EXPECT_EQ(bar.draw(QSize(200, 8), 0).pixel(100, 4), shade(0xA1));
}

TEST_F(Look, TheFrameIsChosenByBerthAndPanes)
{
    const QSize none(0, 0), some(50, 50);
    const struct {
        SPLITBAR_BERTH_POS berth;
        QSize first, second;
        int frame;
    } cases[] = {
        {SPLITBAR_BERTH_BOTTOM, some, some, 3},
        {SPLITBAR_BERTH_BOTTOM, some, none, 2},
        {SPLITBAR_BERTH_BOTTOM, none, some, 3},
        {SPLITBAR_BERTH_TOP, some, some, 2},
        {SPLITBAR_BERTH_TOP, some, none, 2},
        {SPLITBAR_BERTH_TOP, none, some, 3},
        {SPLITBAR_BERTH_LEFT, some, some, 1},
        {SPLITBAR_BERTH_LEFT, none, some, 0},
        {SPLITBAR_BERTH_RIGHT, none, some, 1},
        {SPLITBAR_BERTH_RIGHT, some, some, 0},
        {SPLITBAR_BERTH_RIGHT, some, none, 0},
    };
    bar.SetSkinPic(testArrows());
    for (const auto& [berth, upper, lower, frame] : cases) {
        fold(berth, upper, lower);
        const bool horizontal = berth >= SPLITBAR_BERTH_TOP;
        bar.m_edgeSide = horizontal ? 3 : 1;
        const QImage image = bar.draw(horizontal ? QSize(200, 8) : QSize(8, 200));
        const QRgb seen = image.pixel(bar.m_foldButtonRect.center());
        const QRgb of[] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 0)};
        EXPECT_EQ(seen,
            qRgb(blended(qRed(of[frame]), 255, 0xE0), blended(qGreen(of[frame]), 255, 0xE0),
                blended(qBlue(of[frame]), 255, 0xE0)))
            << berth << ' ' << upper.width() << ' ' << lower.width();
    }
}

TEST_F(Look, APaneThatIsMissingOrHiddenHasNoHeight)
{
    bar.SetSkinPic(testArrows());
    bar.SetBerthPos(SPLITBAR_BERTH_BOTTOM);
    const auto showsUp = [this] {
        const QImage image = bar.draw(QSize(200, 8));
        return qBlue(image.pixel(bar.m_foldButtonRect.center())) > 200;
    };
    EXPECT_TRUE(showsUp());
    fold(SPLITBAR_BERTH_BOTTOM, QSize(9, 9), QSize(9, 9));
    EXPECT_FALSE(showsUp());
    second->hide();
    EXPECT_TRUE(showsUp());
}

TEST_F(Look, TheFrameIsBlendedWithItsAlphaAnd225)
{
    for (const bool premultiplied : {false, true}) {
        QImage arrows = testArrows();
        if (premultiplied)
            arrows = arrows.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        bar.SetSkinPic(arrows);
        fold(SPLITBAR_BERTH_BOTTOM, QSize(9, 9), QSize(9, 9));
        bar.m_edgeSide = 3;
        const QImage image = bar.draw(QSize(200, 8));
        // 76 by 7 at 63, 1: the frame of 5 by 3 begins at 63 + 35, 1 + 2.
        const auto expectPixel = [&](int x, int y, int alpha) {
            const QRgb seen = image.pixel(98 + x, 3 + y);
            EXPECT_NEAR(qRed(seen), blended(255, alpha, 0xE0), 1) << x << ' ' << y;
            EXPECT_NEAR(qGreen(seen), blended(255, alpha, 0xE0), 1) << x << ' ' << y;
            EXPECT_NEAR(qBlue(seen), blended(0, alpha, 0xE0), 1) << x << ' ' << y;
        };
        for (int y = 0; y < 3; ++y) {
            expectPixel(-1, y, 0);
            expectPixel(0, y, 128);
            for (int x = 1; x < 4; ++x)
                expectPixel(x, y, 255);
            expectPixel(4, y, 0);
            expectPixel(5, y, 0);
        }
        expectPixel(2, -1, 0);
        expectPixel(2, 3, 0);
    }
}

TEST_F(Look, WithoutAPictureTheButtonIsPlain)
{
    bar.m_edgeSide = 3;
    for (const QImage& arrows : {QImage(), QImage(3, 7, QImage::Format_ARGB32)}) {
        bar.SetSkinPic(arrows);
        const QImage image = bar.draw(QSize(200, 8));
        for (int x = 63; x <= 138; ++x)
            for (int y = 1; y <= 7; ++y)
                ASSERT_EQ(image.pixel(x, y), shade(0xE0)) << x << ' ' << y;
    }
}

TEST_F(Look, InTheDarkTheBarIsDarkAndTheButtonStandsOut)
{
    bar.SetDark(true);
    const QImage image = bar.draw(QSize(200, 8));
    EXPECT_LT(qGray(image.pixel(5, 4)), 64);
    EXPECT_GT(qGray(image.pixel(100, 4)), 120);
    EXPECT_NE(bar.draw(QSize(200, 8), 1).pixel(100, 4), image.pixel(100, 4));
    bar.SetDark(false);
    EXPECT_EQ(bar.draw(QSize(200, 8)).pixel(5, 4), shade(0xF0));
}
