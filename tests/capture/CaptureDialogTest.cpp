// The states of the capture dialog, and what each input does in each of them.

#include "capture/CaptureKit.h"

using CaptureIdle = CaptureTest;
using CaptureDrawing = CaptureTest;
using CaptureSelected = CaptureTest;
using CaptureTracking = CaptureTest;

TEST_F(CaptureIdle, HasATipAndNoToolbarAndNothingSelected)
{
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
    EXPECT_TRUE(capture.tip().isVisible());
    EXPECT_EQ(capture.tip().geometry(), QRect(10, 10, 260, 200));
}

TEST_F(CaptureIdle, APressBeginsASelectionOfFourByFour)
{
    press(from);
    EXPECT_EQ(capture.Selection(), (CaptureRect{300, 300, 304, 304}));
    EXPECT_FALSE(isToolbarShown());
}

TEST_F(CaptureIdle, APressOnTheHandlesOfTheEmptyRectangleInTheCornerDoesNothing)
{
    for (const QPoint& corner : {QPoint(0, 1), QPoint(1, 1)}) {
        press(corner);
        move({300, 300});
        EXPECT_EQ(capture.Selection(), nothing);
        release({300, 300});
        EXPECT_FALSE(isToolbarShown());
    }
    // In the gap beside them a selection begins.
    press({3, 3});
    EXPECT_EQ(capture.Selection(), (CaptureRect{3, 3, 7, 7}));
}

TEST_F(CaptureIdle, AMoveSelectsNothing)
{
    move({300, 300});
    move({310, 320});
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
}

TEST_F(CaptureIdle, AMoveRepaintsTheTipAtOnce)
{
    move({300, 300});
    const Paints paints(capture.tip());
    moveAlone({310, 310});
    EXPECT_EQ(paints.count, 1);
}

TEST_F(CaptureIdle, AReleaseOfTheLeftButtonChangesNothing)
{
    release(from);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
}

TEST_F(CaptureIdle, ARightClickEndsTheDialog)
{
    rightClick(from);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(capture.cancels, 1);
    EXPECT_TRUE(kept.pictures.empty());
}

TEST_F(CaptureIdle, ADoubleClickDoesNothing)
{
    QMouseEvent event(QEvent::MouseButtonDblClick, QPointF(from), QPointF(from), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&capture, &event);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), nothing);
}

TEST_F(CaptureDrawing, TheRectangleRunsFromFourBehindThePressToTheMouse)
{
    press(from);
    move({404, 384});
    EXPECT_EQ(capture.Selection(), selected);
    move({350, 500});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 350, 500}));
    EXPECT_FALSE(isToolbarShown());
}

TEST_F(CaptureDrawing, IsNotHeldToAMinimumAndMayTurnOver)
{
    press(from);
    move({306, 306});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 306, 306}));
    move({250, 260});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 250, 260}));
}

TEST_F(CaptureDrawing, AReleasePlacesTheToolbarUnderTheSelection)
{
    draw(from, to);
    EXPECT_EQ(capture.toolbarRect(), QRect(404 - 88, 384 + 6, 88, 26));
    move({500, 500});
    EXPECT_EQ(capture.Selection(), selected);
}

TEST_F(CaptureDrawing, ARightReleaseInsideEndsItWithToolbarAndMenu)
{
    MenuUser user;
    press(from);
    move(to);
    release({350, 350}, Qt::RightButton);
    EXPECT_EQ(user.menus, 1);
    EXPECT_TRUE(isToolbarShown());
    move({500, 500});
    EXPECT_EQ(capture.Selection(), selected);
    EXPECT_TRUE(isOpen());
}

TEST_F(CaptureDrawing, ARightReleaseOutsideDiscardsTheSelection)
{
    press(from);
    move(to);
    release({500, 500}, Qt::RightButton);
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
    move({510, 510});
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_TRUE(isOpen());
}

TEST_F(CaptureDrawing, AClickWithoutAMoveLeavesFourByFourWithTheToolbarUnderIt)
{
    press(from);
    release(from);
    EXPECT_EQ(capture.Selection(), (CaptureRect{300, 300, 304, 304}));
    EXPECT_EQ(capture.toolbarRect(), QRect(304 - 88, 304 + 6, 88, 26));
}

TEST_F(CaptureDrawing, ADragOfExactlyFourLeavesAnEmptyRectangle)
{
    draw(from, {304, 304});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 304, 304}));
    capture.OnCommand(captureComplete);
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_TRUE(kept.pictures[0].isNull());
    EXPECT_FALSE(isOpen());
}

TEST_F(CaptureSelected, APressOutsideOrInAGapDoesNothing)
{
    draw(from, to);
    for (const QPoint& outside : {QPoint(600, 600), QPoint(330, 301), QPoint(310, 386)}) {
        press(outside);
        move({650, 650});
        EXPECT_EQ(capture.Selection(), selected);
        release({650, 650});
    }
    EXPECT_TRUE(isToolbarShown());
    EXPECT_TRUE(isOpen());
}

TEST_F(CaptureSelected, AReleasePlacesTheToolbarAgain)
{
    draw(from, to);
    const QRect place = capture.toolbarRect();
    capture.findChild<CSToolbar*>()->setGeometry(0, 0, 0, 0);
    release({600, 600});
    EXPECT_EQ(capture.toolbarRect(), place);
}

TEST_F(CaptureSelected, ADoubleClickInsideCompletesTheCapture)
{
    draw(from, to);
    laterRelease({350, 350}); // The tracking that the first press begins.
    doubleClick({350, 350});
    EXPECT_FALSE(isOpen());
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_EQ(kept.pictures[0], screen.copy(304, 304, 100, 80));
}

TEST_F(CaptureSelected, ADoubleClickOutsideDoesNothing)
{
    draw(from, to);
    doubleClick({600, 600});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
}

TEST_F(CaptureSelected, ARightClickInsideShowsTheMenu)
{
    draw(from, to);
    MenuUser user;
    rightClick({350, 350});
    EXPECT_EQ(user.menus, 1);
    EXPECT_EQ(user.place, capture.mapToGlobal(QPoint(350, 350)));
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
}

TEST_F(CaptureSelected, ARightClickOutsideDiscardsItAndAnotherCanBeDrawn)
{
    draw(from, to);
    rightClick({600, 600});
    EXPECT_EQ(capture.Selection(), nothing);
    EXPECT_FALSE(isToolbarShown());
    EXPECT_TRUE(isOpen());
    draw({400, 400}, {450, 450});
    EXPECT_EQ(capture.Selection(), (CaptureRect{404, 404, 450, 450}));
}

TEST_F(CaptureSelected, EachButtonOfTheToolbarDoesItsCommand)
{
    expectCommands({captureCopy, captureSaveAs, captureExit, captureComplete},
        [this](int index) { click(button(index)); });
}

TEST_F(CaptureTracking, AMoveTakesTheToolbarAlong)
{
    draw(from, to);
    laterMove({360, 370});
    laterDo([this] {
        EXPECT_EQ(capture.Selection(), (CaptureRect{314, 324, 414, 404}));
        EXPECT_EQ(capture.toolbarRect(), QRect(414 - 88, 404 + 6, 88, 26));
    });
    laterRelease({360, 370});
    press({350, 350});
    EXPECT_EQ(capture.Selection(), (CaptureRect{314, 324, 414, 404}));
    EXPECT_EQ(capture.toolbarRect(), QRect(414 - 88, 404 + 6, 88, 26));
}

TEST_F(CaptureTracking, AResizeHidesTheToolbarUntilTheRelease)
{
    draw(from, to);
    laterMove({424, 394});
    laterDo([this] {
        EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 424, 394}));
        EXPECT_FALSE(isToolbarShown());
    });
    laterRelease({424, 394});
    press({404, 384});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 424, 394}));
    EXPECT_EQ(capture.toolbarRect(), QRect(424 - 88, 394 + 6, 88, 26));
}

TEST_F(CaptureTracking, MayTurnTheSelectionOverAndStopsAtEight)
{
    draw(from, to);
    laterMove({302, 302});
    laterRelease({302, 302});
    press({404, 384});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 304, 296, 296}));
}

TEST_F(CaptureTracking, EscRestoresTheRectangleAndTheToolbarStaysAwayUntilTheRelease)
{
    draw(from, to);
    laterMove({424, 394});
    laterKey(Qt::Key_Escape);
    press({404, 384});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
    EXPECT_FALSE(isToolbarShown());
    release({424, 394});
    EXPECT_EQ(capture.toolbarRect(), QRect(404 - 88, 384 + 6, 88, 26));
}

TEST_F(CaptureTracking, ARightPressRestoresTheRectangle)
{
    draw(from, to);
    laterMove({360, 360});
    later(QEvent::MouseButtonPress, {360, 360}, Qt::RightButton);
    press({350, 350});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
}

TEST_F(CaptureTracking, EnterDoesNotEndTheDialog)
{
    draw(from, to);
    laterMove({360, 360});
    laterKey(Qt::Key_Return);
    laterRelease({360, 360});
    press({350, 350});
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), (CaptureRect{314, 314, 414, 394}));
}

TEST_F(CaptureTracking, TheTipReactsToTheMouse)
{
    draw(from, to);
    ASSERT_TRUE(capture.tip().On());
    laterMove({100, 100});
    laterRelease({100, 100});
    press({350, 350});
    EXPECT_FALSE(capture.tip().On());
    EXPECT_EQ(capture.tip().geometry(), QRect(screen.width() - 270, 10, 260, 200));
}

TEST_F(CaptureTracking, ASelectionPartlyOffTheScreenTakesItsToolbarAlong)
{
    draw(from, to);
    laterMove({350, 750});
    laterRelease({350, 750});
    press({350, 350});
    EXPECT_EQ(capture.Selection(), (CaptureRect{304, 704, 404, 784}));
    EXPECT_EQ(capture.toolbarRect(), QRect(404 - 88, 784 + 6, 88, 26));
}
