#include "capture/ScreenGrab.h"

#include "capture/ScreenPortal.h"
#include "kit/Print.h"
#include "kit/Wait.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

QImage striped(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, x / 256));
    return image;
}

class PortalGrab : public ::testing::Test {
protected:
    ScreenPortal portal;
    QString error;

    QImage grab() { return capture::GrabByPortal(&error, portal.client); }
    void willShow(const QImage& image)
    {
        const QVariantMap results = portal.picture(image);
        portal.act = [=, this](const QString& path) { portal.answer(path, 0, results); };
    }
};

} // namespace

TEST(ScreenGrab, GivesWhatTheWindowSystemShows)
{
    QWidget window;
    window.setWindowFlag(Qt::FramelessWindowHint);
    window.setPalette(QColor(10, 200, 30));
    window.setGeometry(100, 80, 60, 40);
    window.show();
    const auto shown = [] {
        QString error = QStringLiteral("as it was");
        const QImage image = capture::GrabPrimaryScreen(&error);
        EXPECT_TRUE(error.isEmpty());
        return image;
    };
    EXPECT_TRUE(waitFor([&] { return shown().pixelColor(120, 100) == QColor(10, 200, 30); }));
    const QImage image = shown();
    EXPECT_EQ(image.format(), QImage::Format_RGB32);
    EXPECT_EQ(image.size(), QGuiApplication::primaryScreen()->size());
}

TEST_F(PortalGrab, GivesThePortalsPictureAtTheDensityThatItHas)
{
    const QSize size = QGuiApplication::primaryScreen()->size();
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QImage screen = striped(size * ratio);
        willShow(screen);
        error = QStringLiteral("as it was");
        QImage image = grab();
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        EXPECT_EQ(image.format(), QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        EXPECT_EQ(image, screen);
        EXPECT_TRUE(error.isEmpty());
    }
}

TEST_F(PortalGrab, TellsWhenNobodyGivesAPicture)
{
    portal.die();
    EXPECT_TRUE(grab().isNull());
    EXPECT_FALSE(error.isEmpty());
}

TEST_F(PortalGrab, TellsWhenThePortalGivesRubbish)
{
    portal.act = [this](const QString& path) { portal.answer(path, 0, {}); };
    EXPECT_TRUE(grab().isNull());
    EXPECT_FALSE(error.isEmpty());
}

TEST_F(PortalGrab, SaysNothingWhenTheUserRefused)
{
    portal.act = [this](const QString& path) { portal.answer(path, 1, {}); };
    EXPECT_TRUE(grab().isNull());
    EXPECT_TRUE(error.isEmpty());
}

TEST(CutScreen, TakesThePrimaryScreenOutOfAPictureOfTwo)
{
    const QRect left(0, 0, 200, 100), right(200, 0, 200, 100), desktop(0, 0, 400, 100);
    for (const int ratio : {1, 2}) {
        const QImage picture = striped(desktop.size() * ratio);
        QImage cut = capture::CutScreen(picture, right, desktop);
        EXPECT_EQ(cut.devicePixelRatio(), ratio);
        cut.setDevicePixelRatio(1);
        EXPECT_EQ(cut, picture.copy(200 * ratio, 0, 200 * ratio, 100 * ratio));
        cut = capture::CutScreen(picture, left, desktop);
        cut.setDevicePixelRatio(1);
        EXPECT_EQ(cut, picture.copy(0, 0, 200 * ratio, 100 * ratio));
    }
}

TEST(CutScreen, CountsFromTheDesktopsCorner)
{
    // The second screen stands to the left of the primary one and above it.
    const QRect screen(0, 0, 200, 100), desktop(-200, -50, 400, 150);
    const QImage picture = striped(desktop.size());
    EXPECT_EQ(capture::CutScreen(picture, screen, desktop), picture.copy(200, 50, 200, 100));
}

TEST(CutScreen, TakesAPictureOfTheScreenAloneAsItIs)
{
    const QImage picture = striped(QSize(400, 200));
    const QImage cut = capture::CutScreen(picture, QRect(200, 0, 200, 100), QRect(0, 0, 400, 100));
    EXPECT_EQ(cut.size(), picture.size());
    EXPECT_EQ(cut.devicePixelRatio(), 2);
}

TEST(CutScreen, OfAPictureThatDoesNotReachTheScreenIsNull)
{
    const QRect screen(0, 300, 400, 100), desktop(0, 0, 400, 400);
    EXPECT_TRUE(capture::CutScreen(QImage(), screen, desktop).isNull());
    EXPECT_TRUE(capture::CutScreen(striped(QSize(400, 10)), screen, desktop).isNull());
}
