// What the capture dialog shows, to the pixel. All of it is run again on screens of higher density.

#include "capture/CaptureKit.h"
#include "kit/RunAgain.h"

#include <QBackingStore>
#include <QPainter>
#include <QRandomGenerator>

namespace {

constexpr quint32 dialogStyle = 81;
const QRgb borderColour = qRgb(10, 100, 130);
constexpr const char* scaleVariable = "QT_SCALE_FACTOR";

QRgb dimmed(QRgb pixel)
{
    const auto of = [](int value) { return qRound(value * 240 / 255.0); };
    return qRgb(of(qRed(pixel)), of(qGreen(pixel)), of(qBlue(pixel)));
}

QImage dimmed(QImage image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, dimmed(image.pixel(x, y)));
    }
    return image;
}

/// The pixels that the window system has of a window.
QImage contentOf(const QWidget& window)
{
    return dynamic_cast<const QImage&>(*window.backingStore()->paintDevice())
        .convertToFormat(QImage::Format_RGB32)
        .copy();
}

class CapturePaint : public CaptureTest {
protected:
    qreal ratio() const { return screen.devicePixelRatio(); }

    QRect pixelsOf(const QRect& rect) const
    {
        const int left = qRound(rect.left() * ratio()), top = qRound(rect.top() * ratio());
        return {left, top, qRound((rect.left() + rect.width()) * ratio()) - left,
            qRound((rect.top() + rect.height()) * ratio()) - top};
    }

    /// What the window really shows.
    QImage shown() const
    {
        // Only what is to be painted: other events have their turn later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
        return contentOf(capture);
    }

    /// All of the scene painted anew.
    QImage recomposed() const
    {
        QImage image(screen.size(), QImage::Format_RGB32);
        image.fill(Qt::red);
        image.setDevicePixelRatio(ratio());
        QPainter painter(&image);
        capture.PaintScene(painter, capture.rect());
        return image;
    }

    /// Whether a handle of the selection covers the pixel, or comes as near as `nearness` pixels.
    bool isOnHandle(const QPoint& pixel, int nearness) const
    {
        CMyTracker tracker;
        tracker.style = dialogStyle;
        tracker.rect = capture.Selection();
        for (int hit = hitTopLeft; hit < hitMiddle; ++hit) {
            CaptureRect handle;
            tracker.GetHandleRect(TrackerHit(hit), &handle);
            const QRect around =
                pixelsOf(handle.ToQRect()).adjusted(-nearness, -nearness, nearness, nearness);
            if (around.contains(pixel))
                return true;
        }
        return false;
    }

    /// The two pictures differ nowhere but on the tip and the toolbar.
    bool sameScene(QImage one, QImage other)
    {
        for (QImage* image : {&one, &other}) {
            image->setDevicePixelRatio(1);
            QPainter painter(image);
            for (const QRect& child : {capture.tip().geometry(), capture.toolbarRect()})
                painter.fillRect(pixelsOf(child).adjusted(-1, -1, 1, 1), Qt::black);
        }
        // Where the screen is no whole number of units, its last pixels are in no unit.
        const QRect whole(QPoint(), (QSizeF(capture.size()) * ratio()).toSize());
        return one.copy(whole & screen.rect()) == other.copy(whole & screen.rect());
    }
};

} // namespace

TEST_F(CapturePaint, IsTheWholeScreenAt240Of255)
{
    EXPECT_TRUE(sameScene(shown(), dimmed(screen)));
}

TEST_F(CapturePaint, DimsEveryValueByTheSameRule)
{
    QImage values(256, 1, QImage::Format_RGB32);
    for (int i = 0; i < 256; ++i)
        values.setPixel(i, 0, qRgb(i, 255 - i, (i * 31) & 255));
    const OpenCapture one(values);
    QImage image(256, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    one.PaintScene(painter, image.rect());
    painter.end();
    EXPECT_EQ(image, dimmed(values));
}

TEST_F(CapturePaint, TheSelectionIsAtFullBrightnessWithBorderAndHandles)
{
    draw(from, to);
    const QImage now = shown();
    // At any density, each pixel of the inside that no handle covers is the screen's own.
    const QRect inside = pixelsOf(selected.ToQRect()) & screen.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (!isOnHandle(QPoint(x, y), 1)) {
                ASSERT_EQ(now.pixel(x, y), screen.pixel(x, y)) << x << ", " << y;
            }
        }
    }
    if (ratio() != 1)
        return;
    QImage expected = dimmed(screen);
    const QRect border = selected.Inflated(1).ToQRect(), around = border.adjusted(-9, -9, 9, 9);
    for (int y = around.top(); y <= around.bottom(); ++y) {
        for (int x = around.left(); x <= around.right(); ++x) {
            const QPoint point(x, y);
            if (isOnHandle(point, 0) || (border.contains(point) && !inside.contains(point)))
                expected.setPixel(point, borderColour);
            else if (inside.contains(point))
                expected.setPixel(point, screen.pixel(point));
        }
    }
    EXPECT_TRUE(sameScene(now, expected));
}

TEST_F(CapturePaint, AfterAnyChangeTheWindowIsThatOfAFullRepaint)
{
    QRandomGenerator random(7);
    const auto anywhere = [&] {
        return QPoint(random.bounded(capture.width()), random.bounded(capture.height()));
    };
    for (int round = 0; round < 8; ++round) {
        const QPoint begin = anywhere();
        press(begin);
        ASSERT_TRUE(sameScene(shown(), recomposed())) << round;
        for (int step = 0; step < 6; ++step) {
            move(step % 2 ? anywhere() : begin + QPoint(random.bounded(20), random.bounded(20)));
            ASSERT_TRUE(sameScene(shown(), recomposed())) << round << ", step " << step;
        }
        release(anywhere());
        ASSERT_TRUE(sameScene(shown(), recomposed())) << round;

        const QRect chosen = capture.Selection().ToQRect();
        for (const QPoint& grip : {chosen.center(), chosen.topLeft(), chosen.bottomRight()}) {
            const QPoint to = anywhere();
            laterMove(to);
            laterDo([&] { EXPECT_TRUE(sameScene(shown(), recomposed())) << "tracking"; });
            laterMove(to + QPoint(3, -2));
            if (round % 3)
                laterRelease(to + QPoint(3, -2));
            else
                laterKey(Qt::Key_Escape);
            press(grip);
            ASSERT_TRUE(sameScene(shown(), recomposed())) << round << " after a tracking";
            // Of a press that hit nothing, these are left.
            QCoreApplication::sendPostedEvents(&capture);
            release(to);
            ASSERT_TRUE(sameScene(shown(), recomposed())) << round << " after its release";
            reopen();
        }
        if (capture.Selection() != nothing)
            rightClick(capture.Selection().ToQRect().bottomRight() + QPoint(9, 9));
        ASSERT_TRUE(isOpen());
        ASSERT_TRUE(sameScene(shown(), recomposed())) << round << " discarded";
    }
}

TEST_F(CapturePaint, APartThatTheWindowSystemAsksForMeanwhileIsRepaintedWithTheRest)
{
    draw(from, to);
    laterMove({410, 390});
    laterMove({500, 480});
    laterRelease({500, 480});
    // Between the change of the rectangle and its repaint the tip paints itself.
    capture.update(QRect(300, 300, 20, 20));
    press({404, 384});
    EXPECT_TRUE(sameScene(shown(), recomposed()));
}

TEST_F(CapturePaint, ASceneIsPaintedInPartsWithoutSeams)
{
    draw(from, to);
    QImage parts(screen.size(), QImage::Format_RGB32);
    parts.setDevicePixelRatio(ratio());
    QPainter painter(&parts);
    const int width = capture.width(), height = capture.height();
    for (const QRect& part : {QRect(0, 0, 333, height), QRect(333, 0, width - 333, 351),
             QRect(333, 351, width - 333, height - 351)})
        capture.PaintScene(painter, part);
    painter.end();
    EXPECT_EQ(parts, recomposed());
}

TEST_F(CapturePaint, OutsideOfTheScreenASceneIsNotPainted)
{
    QImage image(30, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.translate(10, 10);
    capture.PaintScene(painter, QRect(-10, -10, 20, 20));
    painter.end();
    EXPECT_EQ(image.pixelColor(9, 9), QColor(Qt::red));
    EXPECT_NE(image.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_NE(image.pixelColor(19, 19), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(20, 20), QColor(Qt::red));
}

TEST_F(CapturePaint, WhileASelectionIsDrawnEachMoveBringsTheTipWithTheSelectionOfTheMoveBefore)
{
    CSTip& tip = capture.tip();
    const auto drawn = [&] {
        QImage image(tip.size() * ratio(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio());
        QPainter painter(&image);
        tip.DrawTip(painter, {0, 0, tip.width(), tip.height()});
        return image;
    };
    const QPoint next{500, 450};
    press(from);
    move(to);
    tip.PointerAt(next);
    const QImage expected = drawn();

    const Paints paints(tip);
    moveAlone(next);
    EXPECT_EQ(paints.count, 1);
    ASSERT_EQ(capture.Selection(), (CaptureRect{304, 304, 500, 450}));
    QImage now = contentOf(capture).copy(pixelsOf(tip.geometry()));
    now.setDevicePixelRatio(ratio());
    EXPECT_EQ(now, expected);
    EXPECT_NE(now, drawn()) << "which has the selection of now";
}

TEST_F(CapturePaint, AWindowLargerThanTheScreenIsBlackBeyondIt)
{
    OpenCapture small(patterned(screen.size() / 2, ratio()));
    ASSERT_TRUE(small.Create(nullptr));
    small.setGeometry(QRect(QPoint(), capture.size()));
    QCoreApplication::processEvents();
    const QImage now = contentOf(small);
    EXPECT_EQ(now.pixelColor(screen.width() / 2 + 5, screen.height() - 20), QColor(Qt::black));
    EXPECT_EQ(now.pixel(5, 5), dimmed(small.Snapshot().pixel(5, 5)));
}

TEST(CaptureDensity, ASelectionIsCutFromThePixelsOfTheScreen)
{
    const OwnRes withoutFiles;
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QImage screen = patterned(QSize(1200, 900), ratio);
        KeptPictures kept;
        OpenCapture capture(screen);
        capture.notify = &kept;
        EXPECT_EQ(capture.ScreenSize(), (QSizeF(1200, 900) / ratio).toSize());
        ASSERT_TRUE(capture.Create(nullptr));
        QTest::mousePress(&capture, Qt::LeftButton, Qt::NoModifier, {300, 301});
        QTest::mouseMove(&capture, {403, 386});
        QTest::mouseRelease(&capture, Qt::LeftButton, Qt::NoModifier, {403, 386});
        capture.OnCommand(captureComplete);
        ASSERT_EQ(kept.pictures.size(), 1U);
        const int left = qRound(304 * ratio), top = qRound(305 * ratio);
        QImage expected =
            screen.copy(left, top, qRound(403 * ratio) - left, qRound(386 * ratio) - top);
        expected.setDevicePixelRatio(1);
        EXPECT_EQ(kept.pictures[0], expected) << ratio;
        EXPECT_EQ(kept.pictures[0].devicePixelRatio(), 1);
    }
}

TEST(CaptureDensity, TheEdgeOfTheScreenIsNotLostToRounding)
{
    const OwnRes withoutFiles;
    const QImage screen = patterned(QSize(799, 601), 1.5);
    KeptPictures kept;
    OpenCapture capture(screen);
    capture.notify = &kept;
    ASSERT_TRUE(capture.Create(nullptr));
    QTest::mousePress(&capture, Qt::LeftButton, Qt::NoModifier, {400, 300});
    QTest::mouseMove(&capture, {700, 700});
    QTest::mouseRelease(&capture, Qt::LeftButton, Qt::NoModifier, {700, 700});
    capture.OnCommand(captureComplete);
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_LE(kept.pictures[0].width(), 799 - 606);
    EXPECT_GE(kept.pictures[0].width(), 799 - 606 - 1);
    EXPECT_LE(kept.pictures[0].height(), 601 - 456);
    EXPECT_GE(kept.pictures[0].height(), 601 - 456 - 1);
}

TEST(CaptureDensity, AllPaintingHoldsOnScreensOfHigherDensity)
{
    if (qEnvironmentVariableIsSet(scaleVariable))
        GTEST_SKIP() << "this is such a screen";
    for (const char* scale : {"1.5", "2"}) {
        SCOPED_TRACE(scale);
        runAgain(QStringLiteral("CapturePaint.*"),
            {{QString::fromLatin1(scaleVariable), QString::fromLatin1(scale)}});
    }
}
