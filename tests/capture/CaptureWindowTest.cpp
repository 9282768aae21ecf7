// The capture dialog as a window: keys, cursor, screen, opening and ending.

#include "capture/CaptureKit.h"

#include <QPainter>
#include <QSignalSpy>

using CaptureDialog = CaptureTest;

TEST_F(CaptureDialog, TheTipGoesToTheOtherCornerWhenTheMouseIsDraggedOntoIt)
{
    press(from);
    move({200, 100});
    EXPECT_FALSE(capture.tip().On());
    move({screen.width() - 100, 100});
    EXPECT_TRUE(capture.tip().On());
    EXPECT_EQ(capture.tip().geometry(), QRect(10, 10, 260, 200));
}

TEST_F(CaptureDialog, EscCancelsAndEnterAcceptsAndNeitherDelivers)
{
    const struct {
        Qt::Key key;
        int result;
    } cases[] = {{Qt::Key_Escape, QDialog::Rejected}, {Qt::Key_Return, QDialog::Accepted},
        {Qt::Key_Enter, QDialog::Accepted}};
    for (const auto& expected : cases) {
        for (const bool isSelected : {false, true}) {
            reopen();
            if (isSelected)
                draw(from, to);
            else
                press(from); // Drawing.
            key(expected.key);
            EXPECT_FALSE(isOpen()) << expected.key;
            EXPECT_EQ(capture.result(), expected.result) << expected.key;
        }
    }
    EXPECT_TRUE(kept.pictures.empty());
    EXPECT_EQ(capture.cancels, 2);
    EXPECT_EQ(capture.oks, 4);
}

TEST_F(CaptureDialog, NoOtherKeyDoesAnything)
{
    draw(from, to);
    for (const Qt::Key other : {Qt::Key_Space, Qt::Key_A, Qt::Key_Left, Qt::Key_Delete, Qt::Key_Tab,
             Qt::Key_F1, Qt::Key_F4})
        key(other);
    QTest::keyClick(&capture, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
}

TEST_F(CaptureDialog, KeysWorkWhenAButtonHasTheFocus)
{
    draw(from, to);
    click(button(1)); // The save dialog was cancelled.
    ASSERT_TRUE(isOpen());
    button(1).setFocus();
    QTest::keyClick(&button(1), Qt::Key_Space);
    EXPECT_EQ(saved.asked, 1);
    QTest::keyClick(&button(1), Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(saved.asked, 1);
    EXPECT_EQ(capture.result(), QDialog::Accepted);
}

TEST_F(CaptureDialog, OtherMouseButtonsDoNothing)
{
    press(from, Qt::MiddleButton);
    move(to);
    release(to, Qt::MiddleButton);
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_TRUE(isOpen());
}

TEST_F(CaptureDialog, CoversThePrimaryScreenWithoutABorderAndOnTop)
{
    EXPECT_EQ(capture.geometry(), QGuiApplication::primaryScreen()->geometry());
    EXPECT_TRUE(capture.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_TRUE(capture.windowFlags() & Qt::WindowStaysOnTopHint);
}

TEST_F(CaptureDialog, TheCursorIsTheTrackersOnlyOverASelection)
{
    const auto at = [this](const QPoint& point) {
        QMouseEvent event(QEvent::MouseMove, QPointF(point), QPointF(point), Qt::NoButton,
            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&capture, &event);
        return capture.cursor().shape();
    };
    EXPECT_EQ(at({1, 1}), Qt::ArrowCursor);
    press(from);
    move(to);
    EXPECT_EQ(at({350, 350}), Qt::ArrowCursor);
    release({404, 384});
    EXPECT_EQ(at({350, 330}), Qt::SizeAllCursor);
    EXPECT_EQ(at({304, 304}), Qt::SizeFDiagCursor);
    EXPECT_EQ(at({600, 600}), Qt::ArrowCursor);
    EXPECT_EQ(capture.tip().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CaptureDialog, EndsWhenItsScreenChangesOrGoesAway)
{
    QScreen* primary = QGuiApplication::primaryScreen();
    draw(from, to);
    Q_EMIT primary->geometryChanged(primary->geometry());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(capture.cancels, 1);
    Q_EMIT primary->geometryChanged(primary->geometry());
    EXPECT_EQ(capture.cancels, 1);

    ASSERT_TRUE(capture.Create(nullptr));
    Q_EMIT qApp->screenRemoved(nullptr);
    EXPECT_TRUE(isOpen());
    Q_EMIT qApp->screenRemoved(primary);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(kept.pictures.empty());
}

TEST_F(CaptureDialog, EndsInTheMiddleOfATrackingWithItsScreen)
{
    QScreen* primary = QGuiApplication::primaryScreen();
    draw(from, to);
    laterMove({360, 360});
    laterDo([=] { Q_EMIT primary->geometryChanged(primary->geometry()); });
    press({350, 350});
    EXPECT_FALSE(isOpen());
}

TEST_F(CaptureDialog, OpenedAgainBeginsWithNothingSelected)
{
    draw(from, to);
    EXPECT_FALSE(capture.Create(nullptr));
    EXPECT_EQ(capture.DoModal(), -1);
    EXPECT_EQ(capture.Selection(), selected);
    key(Qt::Key_Escape);
    ASSERT_TRUE(capture.Create(nullptr));
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
    EXPECT_EQ(capture.findChildren<QAbstractButton*>().size(), 4);
}

TEST_F(CaptureDialog, ASecondOneStandsOnTheFirstAndLeavesItAlone)
{
    draw(from, to);
    OpenCapture second(screen);
    QTimer::singleShot(0, &second, [&] {
        QTest::mouseClick(&second, Qt::RightButton, Qt::NoModifier, {500, 500});
    });
    EXPECT_EQ(second.DoModal(), QDialog::Rejected);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
}

TEST(CaptureWithoutAPicture, ShowsNothing)
{
    OpenCapture capture{QImage()};
    EXPECT_EQ(capture.DoModal(), -1);
    EXPECT_FALSE(capture.Create(nullptr));
    EXPECT_FALSE(capture.isVisible());
    capture.RepaintCaptureArea();
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    capture.PaintScene(painter, image.rect());
    EXPECT_EQ(image.pixelColor(5, 5), QColor(Qt::red));
}

TEST(CaptureModal, DoesNotEndAnApplicationWhoseMainWindowIsHidden)
{
    const QSignalSpy lastClosed(qApp, &QGuiApplication::lastWindowClosed);
    const OwnRes withoutFiles;
    OpenCapture capture(patternedScreen());
    QTimer::singleShot(0, &capture, [&] { QTest::keyClick(&capture, Qt::Key_Escape); });
    EXPECT_EQ(capture.DoModal(), QDialog::Rejected);
    QCoreApplication::processEvents();
    EXPECT_EQ(lastClosed.count(), 0);
}

TEST(CaptureModal, RunsTheHooksInOrderBeforeItIsShown)
{
    class Hooks : public ScreenCaptureDlgBase {
    public:
        using ScreenCaptureDlgBase::ScreenCaptureDlgBase;
        std::vector<std::string> calls;

    protected:
        void InitToolbar() override { note("toolbar"); }
        void InitCursors() override { note("cursors"); }
        void OnSelectionRightClick(const QPoint& point) override
        {
            note("right click at " + std::to_string(point.x()));
        }
        void OnSelectionDoubleClick(const QPoint& point) override
        {
            note("double click at " + std::to_string(point.x()));
        }

    private:
        void note(const std::string& call)
        {
            calls.push_back(call + (isVisible() ? "" : ", hidden"));
        }
    } capture(patternedScreen());
    QTimer::singleShot(0, &capture, [&] {
        QTest::mousePress(&capture, Qt::LeftButton, Qt::NoModifier, {300, 300});
        QTest::mouseRelease(&capture, Qt::LeftButton, Qt::NoModifier, {300, 300});
        QTest::mouseRelease(&capture, Qt::RightButton, Qt::NoModifier, {301, 301});
        QMouseEvent event(QEvent::MouseButtonDblClick, QPointF(302, 302), QPointF(), Qt::LeftButton,
            Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&capture, &event);
        QTest::keyClick(&capture, Qt::Key_Return);
    });
    EXPECT_EQ(capture.DoModal(), QDialog::Accepted);
    EXPECT_EQ(capture.calls,
        (std::vector<std::string>{
            "toolbar, hidden", "cursors, hidden", "right click at 301", "double click at 302"}));
}
