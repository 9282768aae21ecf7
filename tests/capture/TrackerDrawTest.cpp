// How the tracker looks, to the pixel.

#include "capture/CMyTracker.h"
#include "capture/DragFrame.h"
#include "capture/TrackerShared.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

constexpr QRgb ground = 0xff808080, black = 0xff000000, white = 0xffffffff, blue = 0xff0000ff;
constexpr CaptureRect area{20, 20, 60, 50};

class Filling : public CMyTracker {
public:
    void DrawInner(QPainter& dc, const CaptureRect& inner) const override
    {
        dc.fillRect(inner.ToQRect(), Qt::white);
    }
};

QImage Drawn(const CMyTracker& tracker)
{
    QImage image(80, 70, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    tracker.Draw(painter);
    return image;
}

/// Compares each pixel with what `expected` says of its place.
template <typename Expected> void ExpectPixels(const QImage& image, Expected expected)
{
    int wrong = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != expected(QPoint(x, y)) && ++wrong < 5)
                ADD_FAILURE() << x << ", " << y << ": " << std::hex << image.pixel(x, y);
        }
    }
    EXPECT_EQ(wrong, 0);
}

bool IsOnLine(const QPoint& p)
{
    return area.Inflated(1).Contains(p) && !area.Contains(p);
}

/// Diagonals from the lower left to the upper right, four pixels apart.
bool IsHatched(const QPoint& p)
{
    return (p.x() + p.y()) % 4 == 3;
}

} // namespace

TEST(TrackerDraw, TheLineLiesOutsideAndTheHandlesOverAllElse)
{
    for (const CaptureRect& rect : {area, CaptureRect{60, 50, 20, 20}}) {
        Filling tracker;
        tracker.style = 81;
        tracker.rect = rect;
        tracker.colour = Qt::blue;
        tracker.UpdatePens();
        ExpectPixels(Drawn(tracker), [&](const QPoint& p) {
            for (int hit = hitTopLeft; hit < hitMiddle; ++hit) {
                CaptureRect handle;
                tracker.GetHandleRect(TrackerHit(hit), &handle);
                if (handle.Contains(p))
                    return blue;
            }
            return IsOnLine(p) ? blue : area.Contains(p) ? white : ground;
        });
    }
}

TEST(TrackerDraw, HandlesWithoutRoomAreNotDrawn)
{
    CMyTracker tracker;
    tracker.style = resizeInside;
    tracker.rect = {20, 20, 36, 50};
    const QImage image = Drawn(tracker);
    EXPECT_EQ(image.pixel(20, 20), black);
    EXPECT_EQ(image.pixel(28, 20), ground);
    EXPECT_EQ(image.pixel(20, 35), black);
}

TEST(TrackerDraw, ADottedLineWinsOverASolidOne)
{
    CMyTracker tracker;
    tracker.style = solidLine | dottedLine;
    tracker.rect = area;
    tracker.colour = Qt::blue;
    tracker.UpdatePens();
    const QImage image = Drawn(tracker);
    int dots = 0;
    for (int x = area.left; x < area.right; ++x)
        dots += image.pixel(x, area.top - 1) == blue;
    EXPECT_EQ(dots, area.Width() / 2);
    EXPECT_NE(image.pixel(30, area.top - 1) == blue, image.pixel(31, area.top - 1) == blue);
}

TEST(TrackerDraw, ABorderHasTheColourThatAnyTrackerSetLast)
{
    CMyTracker tracker, other;
    tracker.style = solidLine | resizeInside;
    tracker.rect = area;
    tracker.colour = Qt::blue;
    tracker.UpdatePens();
    other.colour = Qt::white;
    other.UpdatePens();
    const QImage image = Drawn(tracker);
    EXPECT_EQ(image.pixel(30, 19), white);
    EXPECT_EQ(image.pixel(20, 20), blue);
}

TEST(TrackerDraw, HatchingCoversTheInsideAndLeavesWhatIsBetweenItsLines)
{
    CMyTracker tracker;
    tracker.style = hatchInside;
    tracker.rect = area;
    ExpectPixels(Drawn(tracker),
        [](const QPoint& p) { return area.Contains(p) && IsHatched(p) ? black : ground; });
}

TEST(TrackerDraw, AHatchedBorderIsABandAroundTheRectangle)
{
    CMyTracker tracker;
    tracker.style = hatchedBorder;
    tracker.rect = area;
    ExpectPixels(Drawn(tracker), [](const QPoint& p) {
        if (!area.Inflated(3).Contains(p) || area.Contains(p))
            return ground;
        return IsHatched(p) ? black : white;
    });
}

TEST(TrackerDraw, WithoutStyleOnlyTheInsideIsDrawn)
{
    Filling tracker;
    tracker.rect = area;
    ExpectPixels(Drawn(tracker), [](const QPoint& p) { return area.Contains(p) ? white : ground; });
}

TEST(TrackerDraw, LeavesThePainterAsItWas)
{
    CMyTracker tracker;
    tracker.style = 81 | hatchInside | hatchedBorder;
    tracker.rect = area;
    QImage image(80, 70, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    painter.setBrush(Qt::green);
    tracker.Draw(painter);
    EXPECT_EQ(painter.pen(), QPen(Qt::red));
    EXPECT_EQ(painter.brush(), QBrush(Qt::green));
    EXPECT_TRUE(painter.transform().isIdentity());
}

namespace {

/// Lets a test say in which phase of a tracking it is.
class Feedback : public CMyTracker {
public:
    using CMyTracker::erase;
    using CMyTracker::eraseFinal;
    using CMyTracker::rectLast;
    using CMyTracker::sizeLast;
};

class TrackerFeedback : public ::testing::Test {
protected:
    TrackerFeedback() { window.resize(200, 200); }

    QWidget* frame() const { return window.findChild<QWidget*>(QStringLiteral("dragFrame")); }

    QWidget window;
    DragFrame dc{&window};
    Feedback tracker;
};

} // namespace

TEST_F(TrackerFeedback, IsAFrameOfOnePixelAroundTheNormalisedRectangle)
{
    window.show();
    tracker.DrawTrackerRect({60, 50, 20, 20}, nullptr, &dc, &window);
    ASSERT_TRUE(frame());
    EXPECT_EQ(frame()->geometry(), QRect(20, 20, 40, 30));
    EXPECT_TRUE(frame()->isVisible());
    EXPECT_EQ(tracker.rectLast, area);
    EXPECT_EQ(tracker.sizeLast, QSize(1, 1));
    window.hide();
}

TEST_F(TrackerFeedback, IsThickerWithAHatchedBorder)
{
    tracker.style = hatchedBorder;
    tracker.DrawTrackerRect(area, nullptr, &dc, &window);
    EXPECT_EQ(tracker.sizeLast, QSize(3, 3));
    EXPECT_EQ(tracker.rectLast, area.Inflated(3));
    // A rectangle so small that its handles vanish still has a frame.
    tracker.DrawTrackerRect({20, 20, 22, 22}, nullptr, &dc, &window);
    EXPECT_EQ(tracker.sizeLast, QSize(1, 1));
}

TEST_F(TrackerFeedback, OfARectangleThatIsAboutToGoDrawsNothing)
{
    tracker.erase = true;
    tracker.DrawTrackerRect(area, nullptr, nullptr, &window);
    EXPECT_FALSE(frame());
    EXPECT_EQ(tracker.rectLast, area);
}

TEST_F(TrackerFeedback, OfTheEndTakesTheFrameAway)
{
    window.show();
    tracker.DrawTrackerRect(area, nullptr, &dc, &window);
    tracker.erase = tracker.eraseFinal = true;
    tracker.DrawTrackerRect(area, nullptr, &dc, &window);
    EXPECT_EQ(tracker.sizeLast, QSize(0, 0));
    EXPECT_FALSE(frame()->isVisible());
    window.hide();
}

TEST_F(TrackerFeedback, IsConvertedToTheWindowThatItIsClippedTo)
{
    QWidget child(&window);
    child.move(10, 5);
    tracker.DrawTrackerRect(area, &child, &dc, &window);
    EXPECT_EQ(tracker.rectLast, (CaptureRect{10, 15, 50, 45}));
}
