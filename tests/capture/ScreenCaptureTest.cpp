#include "capture/ScreenCapture.h"

#include "capture/IScreenCaptureNotify.h"
#include "capture/IconFiles.h"
#include "capture/ScreenCaptureDlgBase.h"
#include "kit/Print.h"
#include "kit/Recorders.h"
#include "kit/Wait.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

/// A screen that shows one colour, or none.
class ScriptedScreen : public ScreenSource {
public:
    QImage picture{QGuiApplication::primaryScreen()->size(), QImage::Format_RGB32};
    QString error;
    int grabs = 0;
    std::function<void()> onGrab;

    ScriptedScreen() { picture.fill(QColor(1, 2, 3)); }
    QImage grab(QString* fault) override
    {
        ++grabs;
        *fault = error;
        if (onGrab)
            onGrab();
        return picture;
    }
};

class Notified : public IScreenCaptureNotify {
public:
    std::vector<QImage> pictures;
    void OnScreenCaptureComplet(const QImage& bitmap) override { pictures.push_back(bitmap); }
};

class Capturing : public ::testing::Test {
protected:
    const OwnRes withoutFiles; // The tracker's cursors are the process's, and stay as they are.
    ScriptedScreen screen;
    Notified notify;
    RecordedBoxes boxes;

    int run(QWidget* window = nullptr) { return RunScreenCapture(screen, boxes, window, notify); }

    static ScreenCaptureDlgBase* dialog()
    {
        return dynamic_cast<ScreenCaptureDlgBase*>(QApplication::activeModalWidget());
    }
    /// Acts as soon as the dialog is on the screen.
    static void soon(const std::function<void(ScreenCaptureDlgBase&)>& act)
    {
        QTimer::singleShot(0, [act] {
            if (ScreenCaptureDlgBase* open = dialog(); open && open->isVisible())
                act(*open);
            else
                soon(act);
        });
    }
    static void select(ScreenCaptureDlgBase& open)
    {
        QTest::mousePress(&open, Qt::LeftButton, {}, QPoint(300, 300));
        QTest::mouseMove(&open, QPoint(400, 360));
        QTest::mouseRelease(&open, Qt::LeftButton, {}, QPoint(400, 360));
    }
    static void complete(ScreenCaptureDlgBase& open)
    {
        select(open);
        QTest::mouseDClick(&open, Qt::LeftButton, {}, QPoint(350, 330));
    }
    static void escape(ScreenCaptureDlgBase& open) { QTest::keyClick(&open, Qt::Key_Escape); }
};

} // namespace

TEST_F(Capturing, DeliversThePictureOfTheSelection)
{
    soon(complete);
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(boxes.texts.isEmpty());
    ASSERT_EQ(notify.pictures.size(), 1u);
    EXPECT_EQ(notify.pictures[0].size(), QSize(96, 56));
    EXPECT_EQ(notify.pictures[0].pixelColor(0, 0), QColor(1, 2, 3));
}

TEST_F(Capturing, MainWindowIsGoneFromThePictureAndComesBackWhicheverWayItEnds)
{
    const struct {
        const char* what;
        std::function<void(ScreenCaptureDlgBase&)> act;
        std::size_t pictures;
    } cases[] = {
        {"completed", complete, 1},
        {"Esc", escape, 0},
        {"Enter", [](auto& open) { QTest::keyClick(&open, Qt::Key_Return); }, 0},
        {"right click", [](auto& open) { QTest::mouseClick(&open, Qt::RightButton); }, 0},
        {"closed", [](auto& open) { open.close(); }, 0},
        {"screen of another size",
            [](auto&) {
                QScreen* only = QGuiApplication::primaryScreen();
                Q_EMIT only->geometryChanged(only->geometry());
            },
            0},
    };
    for (const auto& [what, act, pictures] : cases) {
        QWidget window;
        window.setGeometry(120, 90, 200, 100);
        window.show();
        const QPoint place = window.pos();
        notify.pictures.clear();
        bool wasVisible = true, wasVisibleBelow = true;
        screen.onGrab = [&] { wasVisible = window.isVisible(); };
        soon([&](ScreenCaptureDlgBase& open) {
            wasVisibleBelow = window.isVisible();
            act(open);
        });
        EXPECT_EQ(run(&window), 1) << what;
        EXPECT_FALSE(wasVisible) << what;
        EXPECT_FALSE(wasVisibleBelow) << what;
        EXPECT_TRUE(window.isVisible()) << what;
        EXPECT_EQ(window.pos(), place) << what;
        EXPECT_EQ(notify.pictures.size(), pictures) << what;
    }
}

TEST_F(Capturing, RunsWithoutAMainWindow)
{
    soon(escape);
    EXPECT_EQ(run(nullptr), 1);
    EXPECT_TRUE(notify.pictures.empty());
}

TEST_F(Capturing, WhereNoScreenCanBeHadItSaysSoAndTheWindowComesBack)
{
    QWidget window;
    window.show();
    screen.picture = QImage();
    screen.error = QStringLiteral("there is no picture");
    bool wasShown = false;
    screen.onGrab = [&] { wasShown = window.isVisible(); };
    bool wasBack = false;
    boxes.onShow = [&] { wasBack = window.isVisible(); };
    EXPECT_EQ(run(&window), 0);
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("there is no picture")});
    EXPECT_TRUE(wasBack);
    EXPECT_FALSE(wasShown);
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(notify.pictures.empty());
}

TEST_F(Capturing, AUserWhoRefusesThePictureIsToldNothing)
{
    screen.picture = QImage();
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(boxes.texts.isEmpty());
}

TEST_F(Capturing, ASecondOneIsRefusedQuietlyWhileOneRuns)
{
    int duringGrab = -1, duringDialog = -1;
    screen.onGrab = [&] { duringGrab = run(); };
    soon([&](ScreenCaptureDlgBase& open) {
        duringDialog = run();
        escape(open);
    });
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(duringGrab, 0);
    EXPECT_EQ(duringDialog, 0);
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_EQ(screen.grabs, 1);
    // Afterwards it can be had again.
    screen.onGrab = nullptr;
    soon(escape);
    EXPECT_EQ(run(), 1);
}

TEST_F(Capturing, MainWindowMayGoMeanwhile)
{
    auto window = std::make_unique<QWidget>();
    window->show();
    soon([&](ScreenCaptureDlgBase& open) {
        window.reset();
        escape(open);
    });
    EXPECT_EQ(run(window.get()), 1);

    auto other = std::make_unique<QWidget>();
    other->show();
    QTimer::singleShot(0, [&] { other.reset(); }); // while it steps aside
    soon(escape);
    EXPECT_EQ(run(other.get()), 1);
}
