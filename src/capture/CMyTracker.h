#pragma once

#include "capture/CaptureRect.h"
#include "capture/TrackerTables.h"

#include <QColor>
#include <QCursor>
#include <QPoint>
#include <QSize>

#include <array>
#include <optional>

class DragFrame;
class QPainter;
class QWidget;

/// Where a question for the cursor comes from: the inside of a window.
constexpr int HTCLIENT = 1;

/// A rectangle with a border and eight handles, by which a user moves and resizes it. The rectangle
/// may be inverted and is kept so; what is drawn and what is hit goes by its normalised copy.
///
/// The geometry needs no window. Coordinates are those of the window that shows the tracker.
/// User-interface thread only.
class CMyTracker {
public:
    CMyTracker();
    virtual ~CMyTracker();
    CMyTracker(const CMyTracker&) = delete;
    CMyTracker& operator=(const CMyTracker&) = delete;

    /// Draws the inside, the border and the handles. The painter's settings stay as they are.
    virtual void Draw(QPainter& dc) const;
    /// Draws the inside, `rect`, which is normalised, and leaves the painter's settings as they
    /// are. Nothing here.
    virtual void DrawInner(QPainter& dc, const CaptureRect& rect) const;
    /// Shows during a tracking where the rectangle is: a drag frame. `rect` may be inverted. With
    /// `clipTo` it is converted from the coordinates of `window` to those of that window. `dc` may
    /// be null if `erase` is set and `eraseFinal` is not, as nothing is drawn then.
    virtual void DrawTrackerRect(
        const CaptureRect& rect, QWidget* clipTo, DragFrame* dc, QWidget* window);
    /// Holds the tracker's rectangle to its minimum size after `hit` moved its edges. The second
    /// argument is not read.
    virtual void AdjustRect(TrackerHit hit, CaptureRect* rect);
    /// The tracking changed the rectangle, which was `rectOld`; also called at its end when there
    /// was no change. Nothing here.
    virtual void OnChangedRect(const CaptureRect& rectOld);
    /// The handles there is room for, one bit per hit code.
    virtual quint32 GetHandleMask() const;
    /// Edge length of a handle of `rect`; null stands for the tracker's own.
    virtual int GetHandleSize(const CaptureRect* rect = nullptr) const;

    /// What the point hits, hitNothing outside of the tracker. A point between two handles and
    /// outside of the border hits nothing.
    TrackerHit HitTest(const QPoint& point) const;
    TrackerHit HitTestHandles(const QPoint& point) const;
    /// The normalised rectangle with border and handles.
    void GetTrueRect(CaptureRect* out) const;
    /// Where the handle `hit` of the rectangle is shown. `hit` must be that of a handle.
    void GetHandleRect(TrackerHit hit, CaptureRect* out) const;
    /// The handle that is shown where handle `hit` of the rectangle as it stands is.
    TrackerHit NormalizeHit(TrackerHit hit) const;

    /// Which of the shared cursors belongs to the point: a hit code, or one more than the last for
    /// the gap between handles on a hatched border. None where nothing is hit.
    std::optional<std::size_t> CursorAt(const QPoint& point) const;
    /// Gives `window` the cursor for `point`, which is where the mouse is in its coordinates: its
    /// event tells, and to ask the window system takes longer than all else here. False, and
    /// nothing set, if `hitTestCode` is not HTCLIENT or nothing is hit.
    bool SetCursor(QWidget* window, int hitTestCode, const QPoint& point) const;
    /// Replaces the cursors of all trackers, one per hit code from 0 to 8.
    static void SetSharedCursors(const std::array<QCursor, hitMiddle + 1>& cursors);

    /// Moves or resizes the rectangle until the left button is released (Esc and a press of the
    /// right button restore it). `hit` is a code from 0 to 8, `point` the place of the press. True
    /// if the rectangle ended up different. False at once when any widget has captured the mouse.
    bool TrackHandle(TrackerHit hit, QWidget* window, const QPoint& point);

    /// Makes the pens of the border in the tracker's colour. All trackers share them: the last
    /// caller's colour holds.
    void UpdatePens() const;

    quint32 style = 0; ///< Flags of TrackerStyle.
    CaptureRect rect;
    QSize sizeMinimum; ///< Twice the handle's at the start.
    int sizeHandle;
    QColor colour = Qt::black; ///< Of the handles, and of the border from `UpdatePens` on.
    bool invertAllow = false; ///< Whether a resize may turn the rectangle over.

protected:
    /// What `DrawTrackerRect` shows.
    struct Feedback {
        CaptureRect rect;
        QSize size; ///< How thick the lines of the frame are.
        bool isDrawn;
    };
    /// The feedback for the arguments of `DrawTrackerRect`, which becomes the last one.
    Feedback NextFeedback(const CaptureRect& rect, const QWidget* clipTo, const QWidget* window);

    CaptureRect rectLast; ///< Of the last feedback.
    QSize sizeLast{0, 0};
    bool erase = false; ///< The feedback is of a rectangle that is about to go.
    bool eraseFinal = false; ///< It is the last one of the tracking.

private:
    struct Sides;
    static Sides SidesOf(TrackerHit hit);
    void MoveSides(TrackerHit hit, const QPoint& to, const QSize& size);
    void DrawHatching(QPainter& dc, const CaptureRect& normalised) const;
    bool HasLine() const { return style & (solidLine | dottedLine); }
    bool HasHandles() const { return style & (resizeInside | resizeOutside); }
};
