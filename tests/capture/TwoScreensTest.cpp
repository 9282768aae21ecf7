// The capture on a desktop of two screens, which is that of a process of its own.

#include "capture/CaptureKit.h"

#include "capture/ScreenGrab.h"
#include "kit/Print.h"
#include "kit/RunAgain.h"
#include "kit/Wait.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr char twoScreens[] = R"({"screens": [
    {"name": "left", "x": 0, "y": 0, "width": 640, "height": 480,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
    {"name": "right", "x": 640, "y": 0, "width": 800, "height": 600,
     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

/// Runs the current test again where there are two screens.
void runOnTwoScreens()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("screens.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(twoScreens);
    file.close();
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    runAgain(QStringLiteral("%1.%2").arg(
                 QString::fromLatin1(test->test_suite_name()), QString::fromLatin1(test->name())),
        {},
        {QStringLiteral("-platform"), QStringLiteral("offscreen:configfile=") + file.fileName()});
}

/// A window that fills a part of the desktop with a colour.
std::unique_ptr<QWidget> filled(const QRect& area, const QColor& colour)
{
    auto window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    window->setPalette(colour);
    window->setGeometry(area);
    window->show();
    return window;
}

} // namespace

TEST(OnTwoScreens, OnlyThePrimaryOneIsSeenAndCovered)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screens.size() < 2)
        return runOnTwoScreens();
    const QRect primary = QGuiApplication::primaryScreen()->geometry();
    ASSERT_EQ(primary, QRect(0, 0, 640, 480));
    const auto here = filled(primary, Qt::green);
    const auto there = filled(screens[1]->geometry(), Qt::red);
    const auto grabbed = [] { return capture::GrabPrimaryScreen(nullptr); };
    ASSERT_TRUE(waitFor([&] { return grabbed().pixelColor(639, 479) == QColor(Qt::green); }));
    const QImage picture = grabbed();
    EXPECT_EQ(picture.size(), primary.size());
    for (const QPoint& corner : {QPoint(0, 0), QPoint(639, 0), QPoint(0, 479), QPoint(639, 479)})
        EXPECT_EQ(picture.pixelColor(corner), QColor(Qt::green));

    const OwnRes withoutFiles;
    OpenCapture capture;
    EXPECT_EQ(capture.ScreenSize(), primary.size());
    ASSERT_TRUE(capture.Create(nullptr));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&capture));
    EXPECT_EQ(capture.geometry(), primary);
    EXPECT_EQ(capture.screen(), QGuiApplication::primaryScreen());
}
