// Whose the mouse is in a tracking, and what becomes of the tracking that loses it.

#include "capture/TrackKit.h"

#include <QMessageBox>

TEST_F(TrackHandle, LosingTheCaptureKeepsTheRectangleAsItStands)
{
    Move({110, 110});
    Do([this] { window->releaseMouse(); });
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.rect, (CaptureRect{110, 110, 210, 160}));
}

TEST_F(TrackHandle, LosingTheCaptureToAnotherWindowLeavesItThere)
{
    TrackedWindow other;
    other.show();
    Do([&] { other.grabMouse(); });
    Move({110, 110});
    EXPECT_FALSE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.rect, start);
    EXPECT_EQ(QWidget::mouseGrabber(), &other);
    other.releaseMouse();
}

TEST_F(TrackHandle, AModalBoxHasTheMouseAndKeepsTheRectangleAsItStands)
{
    const auto runBox = [this] {
        QMessageBox box(window.get());
        bool isLookedAt = false;
        QTimer::singleShot(0, &box, [&] {
            isLookedAt = true;
            EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
            EXPECT_EQ(tracker.rect, (CaptureRect{110, 110, 210, 160}));
            box.reject();
        });
        box.exec();
        EXPECT_TRUE(isLookedAt);
    };
    Move({110, 110});
    Do(runBox);
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.rect, (CaptureRect{110, 110, 210, 160}));

    // Opened by the window's own handling of an event of the tracking.
    tracker.rect = start;
    int moves = 0;
    window->onEvent = [&](QEvent* event) {
        if (event->type() == QEvent::MouseMove && ++moves == 2)
            runBox();
    };
    Move({110, 110});
    Move({150, 150});
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.rect, (CaptureRect{110, 110, 210, 160}));
}

TEST_F(TrackHandle, EndsWithItsWindow)
{
    Move({110, 110});
    Do([this] { window->hide(); });
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.rect, (CaptureRect{110, 110, 210, 160}));

    window->show();
    Do([this] { window.reset(); });
    EXPECT_FALSE(Track(hitMiddle, {100, 100}));
}

TEST_F(TrackHandle, ChangesNothingWhileAnyWidgetHoldsTheCapture)
{
    TrackedWindow other;
    other.show();
    other.grabMouse();
    EXPECT_FALSE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(QWidget::mouseGrabber(), &other);
    other.releaseMouse();
    EXPECT_EQ(tracker.rect, start);
    EXPECT_TRUE(tracker.calls.empty());
}

TEST_F(TrackHandle, APressDuringATrackingStartsNoOther)
{
    std::vector<bool> results;
    window->onEvent = [&](QEvent* event) {
        if (event->type() == QEvent::MouseButtonPress)
            results.push_back(tracker.TrackHandle(hitLeft, window.get(), {100, 100}));
    };
    Mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton);
    Release({100, 100});
    EXPECT_FALSE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(results, (std::vector<bool>{false, false}));
}

TEST_F(TrackHandle, APressThatArrivesWithTheReleaseStartsTheNextOne)
{
    bool second = false;
    window->onEvent = [&](QEvent* event) {
        if (event->type() == QEvent::MouseButtonPress)
            second = tracker.TrackHandle(hitMiddle, window.get(), {110, 100});
    };
    Move({110, 100});
    Release({110, 100});
    Mouse(QEvent::MouseButtonPress, {110, 100}, Qt::LeftButton);
    Move({150, 100});
    Release({150, 100});
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_TRUE(second);
    EXPECT_EQ(tracker.rect, (CaptureRect{150, 100, 250, 150}));
}
