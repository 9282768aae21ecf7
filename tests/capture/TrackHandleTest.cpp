// The loop in which the tracker's rectangle is moved and resized, with real events.

#include "capture/TrackKit.h"

#include "platform/WindowMessage.h"

#include <QPointer>
#include <QWheelEvent>

TEST_F(TrackHandle, AMoveKeepsTheSizeAndTheFirstStepErasesNothing)
{
    Move({160, 130});
    Move({170, 140});
    Release({170, 140});
    EXPECT_TRUE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, (CaptureRect{120, 120, 220, 170}));
    EXPECT_EQ(tracker.calls,
        Calls({"changed 100", "draw 110", "erase 110", "changed 110", "draw 120", "last 120",
            "changed 120"}));
}

TEST_F(TrackHandle, AReleaseElsewhereThanTheLastMoveStillCounts)
{
    Move({160, 130});
    Release({170, 140});
    EXPECT_TRUE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, (CaptureRect{120, 120, 220, 170}));
    EXPECT_EQ(tracker.calls, Calls({"changed 100", "draw 110", "last 110", "changed 110"}));
}

TEST_F(TrackHandle, APressAndReleaseWithoutAMoveChangesNothing)
{
    Release({150, 120});
    EXPECT_FALSE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, start);
    EXPECT_EQ(tracker.calls, Calls({"changed 100"}));

    // Nor does a release elsewhere that no move came before.
    Release({180, 120});
    EXPECT_FALSE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, start);
}

TEST_F(TrackHandle, AMoveThereAndBackIsNoChange)
{
    Move({160, 130});
    Move({150, 120});
    Release({150, 120});
    EXPECT_FALSE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, start);
}

TEST_F(TrackHandle, EachHandleMovesItsOwnEdgesByWhatTheMouseMoved)
{
    const struct {
        TrackerHit hit;
        CaptureRect after;
    } cases[] = {{hitTopLeft, {110, 120, 200, 150}}, {hitTopRight, {100, 120, 210, 150}},
        {hitBottomRight, {100, 100, 210, 170}}, {hitBottomLeft, {110, 100, 200, 170}},
        {hitTop, {100, 120, 200, 150}}, {hitRight, {100, 100, 210, 150}},
        {hitBottom, {100, 100, 200, 170}}, {hitLeft, {110, 100, 200, 150}},
        {hitMiddle, {110, 120, 210, 170}}};
    for (const auto& expected : cases) {
        tracker.rect = start;
        Move({61, 72});
        Release({61, 72});
        EXPECT_TRUE(Track(expected.hit, {51, 52}));
        EXPECT_EQ(tracker.rect, expected.after) << expected.hit;
    }
}

TEST_F(TrackHandle, AnInvertedRectangleIsMovedAsItIs)
{
    tracker.rect = {200, 150, 100, 100};
    Move({160, 130});
    Release({160, 130});
    EXPECT_TRUE(Track(hitMiddle, {150, 120}));
    EXPECT_EQ(tracker.rect, (CaptureRect{210, 160, 110, 110}));
}

TEST_F(TrackHandle, PulledAcrossTheOppositeEdgeItTurnsOverAndTheHandleStaysUnderTheMouse)
{
    Move({250, 120});
    Do([this] {
        EXPECT_EQ(tracker.rect, (CaptureRect{250, 100, 200, 150}));
        EXPECT_EQ(tracker.HitTest({250, 125}), hitLeft);
        EXPECT_EQ(tracker.CursorAt({250, 125}), std::size_t(hitRight));
    });
    Release({250, 120});
    EXPECT_TRUE(Track(hitLeft, {100, 120}));
    EXPECT_EQ(tracker.rect, (CaptureRect{250, 100, 200, 150}));
}

TEST_F(TrackHandle, AResizeStopsAtEightAlsoAcrossTheInversion)
{
    std::vector<int> lefts;
    for (const int x : {195, 199, 200, 201, 207, 209}) {
        Move({x, 120});
        Do([&] { lefts.push_back(tracker.rect.left); });
    }
    Release({209, 120});
    EXPECT_TRUE(Track(hitLeft, {100, 120}));
    EXPECT_EQ(lefts, (std::vector<int>{192, 192, 192, 208, 208, 209}));
}

TEST_F(TrackHandle, EscRestoresTheRectangle)
{
    Move({140, 130});
    Key(Qt::Key_Escape);
    EXPECT_FALSE(Track(hitTopLeft, {100, 100}));
    EXPECT_EQ(tracker.rect, start);
    // Nothing is drawn at the end of a cancelled tracking.
    EXPECT_EQ(tracker.calls, Calls({"changed 100", "draw 140"}));
}

TEST_F(TrackHandle, APressOfTheRightButtonRestoresTheRectangle)
{
    Move({140, 130});
    Mouse(QEvent::MouseButtonPress, {140, 130}, Qt::RightButton);
    EXPECT_FALSE(Track(hitTopLeft, {100, 100}));
    EXPECT_EQ(tracker.rect, start);
    // The next one begins without a trace of it.
    tracker.calls.clear();
    Move({140, 130});
    Release({140, 130});
    EXPECT_TRUE(Track(hitTopLeft, {100, 100}));
    EXPECT_EQ(tracker.calls, Calls({"changed 100", "draw 140", "last 140", "changed 140"}));
}

TEST_F(TrackHandle, AnyOtherKeyGoesOnAndIsDispatchedOnce)
{
    Move({140, 130});
    Key(Qt::Key_Return);
    Key(Qt::Key_A);
    Release({140, 130});
    EXPECT_TRUE(Track(hitTopLeft, {100, 100}));
    EXPECT_EQ(window->seen[QEvent::KeyPress], 2);
}

TEST_F(TrackHandle, TheWindowSeesEachMessageBeforeTheTrackerFollowsIt)
{
    std::vector<int> lefts;
    window->onEvent = [&](QEvent* event) {
        if (event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonRelease)
            lefts.push_back(tracker.rect.left);
    };
    Move({110, 100});
    Move({120, 100});
    Release({130, 100});
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(lefts, (std::vector<int>{100, 110, 120}));
}

TEST_F(TrackHandle, AMessageOfNoMeaningIsDispatchedTwiceAndThoseOfMeaningOnce)
{
    Move({110, 100});
    Mouse(QEvent::MouseButtonPress, {110, 100}, Qt::MiddleButton);
    Mouse(QEvent::MouseButtonRelease, {110, 100}, Qt::MiddleButton);
    Mouse(QEvent::MouseButtonDblClick, {110, 100}, Qt::LeftButton);
    QCoreApplication::postEvent(
        window.get(), new QKeyEvent(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier));
    QCoreApplication::postEvent(window.get(),
        new QWheelEvent(QPointF(1, 1), QPointF(1, 1), {}, {0, 120}, Qt::LeftButton, Qt::NoModifier,
            Qt::NoScrollPhase, false));
    PostWindowMessage(window.get(), WM_EDITOR_COPY);
    Release({110, 100});
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(window->seen[QEvent::MouseMove], 1);
    EXPECT_EQ(window->seen[QEvent::MouseButtonPress], 2);
    EXPECT_EQ(window->seen[QEvent::MouseButtonRelease], 3);
    EXPECT_EQ(window->seen[QEvent::MouseButtonDblClick], 2);
    EXPECT_EQ(window->seen[QEvent::KeyRelease], 2);
    EXPECT_EQ(window->seen[QEvent::Wheel], 2);
    EXPECT_EQ(window->seen[QEvent::Type(WM_EDITOR_COPY)], 2);
}

TEST_F(TrackHandle, QueuedCallsTimersDeletionsPaintAndOtherWindowsHappenOnce)
{
    int calls = 0, timeouts = 0, paints = 0, otherWheels = 0;
    TrackedWindow other;
    const QPointer<QObject> deleted = new QObject;
    window->onEvent = [&](QEvent* event) { paints += event->type() == QEvent::Paint; };
    Move({110, 100});
    Do([&] {
        ++calls;
        paints = 0;
        window->repaint();
        deleted->deleteLater();
        QCoreApplication::postEvent(&other, new QKeyEvent(QEvent::KeyRelease, 0, Qt::NoModifier));
        QTimer::singleShot(1, &queue, [&] {
            ++timeouts;
            otherWheels = other.seen[QEvent::KeyRelease];
            Release({110, 100});
        });
    });
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(timeouts, 1);
    EXPECT_EQ(paints, 1);
    EXPECT_EQ(otherWheels, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(deleted.isNull());
}

TEST_F(TrackHandle, EventsOfAChildCountAtTheirPlaceInTheWindow)
{
    QWidget child(window.get());
    child.setGeometry(50, 40, 100, 100);
    child.show();
    QCoreApplication::postEvent(&child,
        new QMouseEvent(QEvent::MouseMove, QPointF(60, 60), QPointF(), Qt::NoButton, Qt::LeftButton,
            Qt::NoModifier));
    Release({110, 100});
    EXPECT_TRUE(Track(hitMiddle, {100, 100}));
    EXPECT_EQ(tracker.calls, Calls({"changed 100", "draw 110", "last 110", "changed 110"}));
}

TEST_F(TrackHandle, ShowsADragFrameUntilItsEnd)
{
    class Plain : public CMyTracker {
    } plain;
    plain.rect = start;
    QRect shown;
    Move({110, 110});
    Do([&] {
        const auto* frame = window->findChild<QWidget*>(QStringLiteral("dragFrame"));
        ASSERT_TRUE(frame && frame->isVisible());
        shown = frame->geometry();
    });
    Release({110, 110});
    EXPECT_TRUE(plain.TrackHandle(hitMiddle, window.get(), {100, 100}));
    EXPECT_EQ(shown, QRect(110, 110, 100, 50));
    EXPECT_EQ(window->findChild<QWidget*>(QStringLiteral("dragFrame")), nullptr);
}

TEST_F(TrackHandle, OfNothingDoesNothing)
{
    EXPECT_FALSE(Track(hitNothing, {0, 0}));
    EXPECT_EQ(tracker.rect, start);
}

TEST_F(TrackHandle, TheCursorIsThatOfTheHandleUnderTheMouse)
{
    EXPECT_TRUE(tracker.SetCursor(window.get(), HTCLIENT, {100, 100}));
    EXPECT_EQ(window->cursor().shape(), Qt::SizeFDiagCursor);
    EXPECT_FALSE(tracker.SetCursor(window.get(), HTCLIENT + 1, {150, 120}));
    EXPECT_EQ(window->cursor().shape(), Qt::SizeFDiagCursor);

    EXPECT_TRUE(tracker.SetCursor(window.get(), HTCLIENT, {150, 120}));
    EXPECT_EQ(window->cursor().shape(), Qt::SizeAllCursor);

    EXPECT_FALSE(tracker.SetCursor(window.get(), HTCLIENT, {20, 20}));
    EXPECT_EQ(window->cursor().shape(), Qt::SizeAllCursor);
}
