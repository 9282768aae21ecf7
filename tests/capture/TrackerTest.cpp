// The geometry of the tracker, with no window.

#include "capture/RectPrint.h"

#include "capture/CMyTracker.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

constexpr quint32 dialogStyle = 81;
constexpr CaptureRect example{100, 100, 200, 150};

void Use(CMyTracker& tracker, quint32 style, const CaptureRect& rect)
{
    tracker.style = style;
    tracker.rect = rect;
}

CaptureRect HandleRect(const CMyTracker& tracker, int hit)
{
    CaptureRect rect;
    tracker.GetHandleRect(TrackerHit(hit), &rect);
    return rect;
}

CaptureRect TrueRect(const CMyTracker& tracker)
{
    CaptureRect rect;
    tracker.GetTrueRect(&rect);
    return rect;
}

CaptureRect TurnedOver(const CaptureRect& rect, bool x, bool y)
{
    return {x ? rect.right : rect.left, y ? rect.bottom : rect.top, x ? rect.left : rect.right,
        y ? rect.top : rect.bottom};
}

/// The hit code where a handle is seen, given the code of the edges that it moves.
TrackerHit SeenAt(TrackerHit hit, bool x, bool y)
{
    static const std::map<TrackerHit, TrackerHit> overX{{hitTopLeft, hitTopRight},
        {hitTopRight, hitTopLeft}, {hitBottomRight, hitBottomLeft}, {hitBottomLeft, hitBottomRight},
        {hitTop, hitTop}, {hitBottom, hitBottom}, {hitLeft, hitRight}, {hitRight, hitLeft}};
    static const std::map<TrackerHit, TrackerHit> overY{{hitTopLeft, hitBottomLeft},
        {hitBottomLeft, hitTopLeft}, {hitTopRight, hitBottomRight}, {hitBottomRight, hitTopRight},
        {hitTop, hitBottom}, {hitBottom, hitTop}, {hitLeft, hitLeft}, {hitRight, hitRight}};
    if (x)
        hit = overX.at(hit);
    return y ? overY.at(hit) : hit;
}

} // namespace

TEST(Tracker, BeginsEmptyWithAHandleOfFourAndAMinimumOfEight)
{
    const CMyTracker tracker;
    EXPECT_EQ(tracker.rect, CaptureRect{});
    EXPECT_EQ(tracker.style, 0U);
    EXPECT_EQ(tracker.colour, QColor(Qt::black));
    EXPECT_EQ(tracker.sizeHandle, 4);
    EXPECT_EQ(tracker.sizeMinimum, QSize(8, 8));
    EXPECT_FALSE(tracker.invertAllow);
}

TEST(Tracker, HandlesOfTheDialogStandHalfOnTheBorder)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, example);
    EXPECT_EQ(TrueRect(tracker), (CaptureRect{96, 96, 204, 154}));
    const std::vector<CaptureRect> places{{98, 98, 102, 102}, {198, 98, 202, 102},
        {198, 148, 202, 152}, {98, 148, 102, 152}, {148, 98, 152, 102}, {198, 123, 202, 127},
        {148, 148, 152, 152}, {98, 123, 102, 127}};
    for (std::size_t hit = 0; hit < places.size(); ++hit)
        EXPECT_EQ(HandleRect(tracker, int(hit)), places[hit]) << hit;
}

TEST(Tracker, EachStyleHasItsOwnPlaceForHandlesAndItsOwnExtent)
{
    const struct {
        quint32 style;
        CaptureRect topLeft, bottomRight, extent;
    } cases[] = {
        {0, {100, 100, 104, 104}, {196, 146, 200, 150}, {100, 100, 200, 150}},
        {solidLine, {99, 99, 103, 103}, {197, 147, 201, 151}, {99, 99, 201, 151}},
        {dottedLine, {99, 99, 103, 103}, {197, 147, 201, 151}, {99, 99, 201, 151}},
        {solidLine | dottedLine, {99, 99, 103, 103}, {197, 147, 201, 151}, {99, 99, 201, 151}},
        {hatchedBorder, {100, 100, 104, 104}, {196, 146, 200, 150}, {97, 97, 203, 153}},
        {resizeInside, {100, 100, 104, 104}, {196, 146, 200, 150}, {100, 100, 200, 150}},
        {resizeInside | solidLine, {99, 99, 103, 103}, {197, 147, 201, 151}, {99, 99, 201, 151}},
        {resizeOutside, {97, 97, 101, 101}, {199, 149, 203, 153}, {97, 97, 203, 153}},
        {resizeOutside | solidLine, {96, 96, 100, 100}, {200, 150, 204, 154}, {96, 96, 204, 154}},
        {resizeOutside | 0x40, {99, 99, 103, 103}, {197, 147, 201, 151}, {97, 97, 203, 153}},
        {hatchInside, {100, 100, 104, 104}, {196, 146, 200, 150}, {100, 100, 200, 150}},
    };
    for (const auto& expected : cases) {
        CMyTracker tracker;
        Use(tracker, expected.style, example);
        EXPECT_EQ(HandleRect(tracker, hitTopLeft), expected.topLeft) << expected.style;
        EXPECT_EQ(HandleRect(tracker, hitBottomRight), expected.bottomRight) << expected.style;
        EXPECT_EQ(TrueRect(tracker), expected.extent) << expected.style;
    }
}

TEST(Tracker, AnyBitOfTheMaskCentresHandlesOnTheBorder)
{
    for (const quint32 bit : {0x40U, 0x200U, 0x4000U, 0x10000U, 0x20000U, 0x40000U, 0x80000U}) {
        CMyTracker tracker;
        Use(tracker, resizeOutside | bit, example);
        EXPECT_EQ(HandleRect(tracker, hitTopLeft), (CaptureRect{99, 99, 103, 103})) << bit;
    }
    for (const quint32 bit : {0x80U, 0x100U, 0x8000U, 0x100000U}) {
        CMyTracker tracker;
        Use(tracker, resizeOutside | bit, example);
        EXPECT_EQ(HandleRect(tracker, hitTopLeft), (CaptureRect{97, 97, 101, 101})) << bit;
    }
}

TEST(Tracker, HandlesShrinkToHalfOfASmallRectangleUnlessTheyStandOutside)
{
    CMyTracker tracker;
    Use(tracker, resizeInside, {0, 0, 20, 7});
    EXPECT_EQ(tracker.GetHandleSize(), 3);
    const CaptureRect inverted{6, 30, 0, 0};
    EXPECT_EQ(tracker.GetHandleSize(&inverted), 3);
    const CaptureRect enough{0, 0, 8, 8};
    EXPECT_EQ(tracker.GetHandleSize(&enough), 4);
    tracker.style = resizeOutside;
    EXPECT_EQ(tracker.GetHandleSize(), 4);
}

TEST(Tracker, SideHandlesAppearFromSeventeenPixels)
{
    const quint32 corners = 0x0F;
    const struct {
        int width, height;
        quint32 mask;
    } cases[] = {{16, 16, corners}, {17, 16, corners | 0x50}, {16, 17, corners | 0xA0},
        {17, 17, 0xFF}, {-16, -16, corners}, {-17, 16, corners | 0x50}, {0, 0, corners},
        {16, -17, corners | 0xA0}};
    for (const auto& expected : cases) {
        CMyTracker tracker;
        Use(tracker, dialogStyle, {50, 50, 50 + expected.width, 50 + expected.height});
        EXPECT_EQ(tracker.GetHandleMask(), expected.mask)
            << expected.width << " by " << expected.height;
    }
}

TEST(Tracker, AHandleOfAnInvertedRectangleIsSeenWhereItsEdgesAre)
{
    for (const bool x : {false, true}) {
        for (const bool y : {false, true}) {
            CMyTracker tracker, upright;
            Use(tracker, dialogStyle, TurnedOver(example, x, y));
            Use(upright, dialogStyle, example);
            EXPECT_EQ(TrueRect(tracker), TrueRect(upright));
            for (int code = hitTopLeft; code < hitMiddle; ++code) {
                const TrackerHit hit = TrackerHit(code), seen = SeenAt(hit, x, y);
                EXPECT_EQ(tracker.NormalizeHit(hit), seen) << code << x << y;
                const CaptureRect place = HandleRect(tracker, hit);
                EXPECT_EQ(place, HandleRect(upright, seen)) << code << x << y;
                const QPoint middle(place.left + 2, place.top + 2);
                EXPECT_EQ(tracker.HitTest(middle), hit);
                EXPECT_EQ(tracker.CursorAt(middle), std::size_t(seen));
            }
            EXPECT_EQ(tracker.NormalizeHit(hitMiddle), hitMiddle);
            EXPECT_EQ(tracker.NormalizeHit(hitNothing), hitNothing);
        }
    }
}

TEST(Tracker, HitsHandlesThenTheInsideAndNothingInTheGapsOutside)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, example);
    const struct {
        QPoint point;
        TrackerHit hit;
    } cases[] = {{{95, 120}, hitNothing}, {{96, 97}, hitNothing}, {{98, 98}, hitTopLeft},
        {{101, 101}, hitTopLeft}, {{102, 102}, hitMiddle}, {{201, 151}, hitBottomRight},
        {{202, 152}, hitNothing}, {{150, 100}, hitTop}, {{150, 150}, hitBottom},
        {{199, 125}, hitRight}, {{99, 125}, hitLeft}, {{150, 125}, hitMiddle},
        // The border itself is inside, a pixel further out is not.
        {{120, 99}, hitMiddle}, {{120, 98}, hitNothing}, {{200, 110}, hitMiddle},
        {{201, 110}, hitNothing}, {{204, 154}, hitNothing}};
    for (const auto& expected : cases) {
        EXPECT_EQ(tracker.HitTest(expected.point), expected.hit)
            << expected.point.x() << ", " << expected.point.y();
        EXPECT_EQ(tracker.HitTestHandles(expected.point), expected.hit);
    }
}

TEST(Tracker, ThreePixelsOutsideBetweenTwoHandlesIsNoHitThoughInTheTrueRect)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, example);
    const QPoint gap(120, 97);
    EXPECT_TRUE(TrueRect(tracker).Contains(gap));
    EXPECT_EQ(tracker.HitTest(gap), hitNothing);
    EXPECT_EQ(tracker.HitTestHandles(gap), hitNothing);
    EXPECT_EQ(tracker.CursorAt(gap), std::nullopt);
}

TEST(Tracker, TheLowerCodeWinsWhereHandlesOverlap)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, {100, 100, 100, 100});
    EXPECT_EQ(HandleRect(tracker, hitTopLeft), HandleRect(tracker, hitBottomRight));
    EXPECT_EQ(tracker.HitTest({100, 100}), hitTopLeft);
}

TEST(Tracker, AHandleThatHasNoRoomIsNotHit)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, {100, 100, 116, 116});
    EXPECT_EQ(tracker.HitTest({108, 99}), hitMiddle);
    tracker.rect.right = 117;
    EXPECT_EQ(tracker.HitTest({108, 99}), hitTop);
}

TEST(Tracker, WithoutHandlesAllOfItIsTheMiddle)
{
    CMyTracker tracker;
    Use(tracker, solidLine, example);
    EXPECT_EQ(tracker.HitTest({99, 99}), hitMiddle);
    EXPECT_EQ(tracker.HitTest({98, 99}), hitNothing);
}

TEST(Tracker, TheGapOfAHatchedBorderMovesAndHasACursorOfItsOwn)
{
    CMyTracker tracker;
    Use(tracker, hatchedBorder | resizeOutside, example);
    const QPoint gap(120, 98);
    EXPECT_EQ(tracker.HitTest(gap), hitMiddle);
    EXPECT_EQ(tracker.CursorAt(gap), 9U);
    EXPECT_EQ(tracker.CursorAt({120, 110}), std::size_t(hitMiddle));
}

TEST(Tracker, AResizeStopsAtTheMinimumOnEverySide)
{
    const struct {
        TrackerHit hit;
        CaptureRect before, after;
    } cases[] = {
        {hitTopLeft, {197, 145, 200, 150}, {192, 142, 200, 150}},
        {hitTopRight, {100, 145, 103, 150}, {100, 142, 108, 150}},
        {hitBottomRight, {100, 100, 107, 107}, {100, 100, 108, 108}},
        {hitBottomLeft, {197, 100, 200, 101}, {192, 100, 200, 108}},
        {hitTop, {100, 148, 103, 150}, {100, 142, 103, 150}},
        {hitRight, {100, 100, 103, 103}, {100, 100, 108, 103}},
        {hitBottom, {100, 100, 103, 103}, {100, 100, 103, 108}},
        {hitLeft, {198, 100, 200, 103}, {192, 100, 200, 103}},
        {hitMiddle, {100, 100, 103, 103}, {100, 100, 103, 103}},
        {hitNothing, {100, 100, 103, 103}, {100, 100, 103, 103}},
        // Large enough, and just large enough.
        {hitBottomRight, {100, 100, 108, 108}, {100, 100, 108, 108}},
        {hitTopLeft, {90, 90, 200, 150}, {90, 90, 200, 150}},
        // No extent at all counts as upright.
        {hitTopLeft, {200, 150, 200, 150}, {192, 142, 200, 150}},
        {hitBottomRight, {100, 100, 100, 100}, {100, 100, 108, 108}},
    };
    for (const bool invert : {false, true}) {
        for (const auto& expected : cases) {
            CMyTracker tracker;
            Use(tracker, dialogStyle, expected.before);
            tracker.invertAllow = invert;
            CaptureRect notRead{1, 2, 3, 4};
            tracker.AdjustRect(expected.hit, &notRead);
            EXPECT_EQ(tracker.rect, expected.after) << expected.hit << invert;
            EXPECT_EQ(notRead, (CaptureRect{1, 2, 3, 4}));
        }
    }
}

TEST(Tracker, AcrossTheInversionTheEdgeJumpsToTheFarSideAtTheMinimum)
{
    const struct {
        TrackerHit hit;
        CaptureRect before, after;
    } cases[] = {
        {hitLeft, {201, 100, 200, 150}, {208, 100, 200, 150}},
        {hitRight, {100, 100, 99, 150}, {100, 100, 92, 150}},
        {hitTop, {100, 151, 200, 150}, {100, 158, 200, 150}},
        {hitBottom, {100, 100, 200, 93}, {100, 100, 200, 92}},
        {hitTopLeft, {203, 155, 200, 150}, {208, 158, 200, 150}},
        {hitBottomRight, {100, 100, 97, 103}, {100, 100, 92, 108}},
        {hitTopLeft, {208, 158, 200, 150}, {208, 158, 200, 150}},
        {hitTopLeft, {300, 300, 200, 150}, {300, 300, 200, 150}},
    };
    for (const auto& expected : cases) {
        CMyTracker tracker;
        Use(tracker, dialogStyle, expected.before);
        tracker.invertAllow = true;
        tracker.AdjustRect(expected.hit, &tracker.rect);
        EXPECT_EQ(tracker.rect, expected.after) << expected.hit;
    }
}

TEST(Tracker, IsNotTurnedOverUnlessAllowed)
{
    CMyTracker tracker;
    Use(tracker, dialogStyle, {260, 100, 200, 150});
    tracker.AdjustRect(hitLeft, &tracker.rect);
    EXPECT_EQ(tracker.rect, (CaptureRect{192, 100, 200, 150}));
}
