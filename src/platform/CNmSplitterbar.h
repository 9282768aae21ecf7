#pragma once

#include <QPointer>
#include <QRect>
#include <QWidget>

class INmSplitterbarNotify;
class QPainter;

/// The side of the parent to which a bar folds. What lies on that side of the bar is the pane that
/// is folded away.
enum SPLITBAR_BERTH_POS {
    SPLITBAR_BERTH_LEFT = 0,
    SPLITBAR_BERTH_RIGHT = 1,
    SPLITBAR_BERTH_TOP = 2,
    SPLITBAR_BERTH_BOTTOM = 3,
};

/// The root of the splitter bars: a bar between two panes of one parent, and their places. What is
/// drawn, how the bar is dragged and what a fold is, the classes derived from it say.
///
/// A horizontal bar lies between an upper (first) and a lower (second) pane and shares out the
/// height; a vertical one between a left and a right pane, and shares out the width. "Size" is the
/// one that is shared out. All are in pixels.
///
/// That the bar is a widget is its own affair: derived classes and users see a bar, and have its
/// window by `GetSafeHwnd`. (So they have to write `::QWidget`.)
class CNmSplitterbar : private QWidget {
    Q_OBJECT
public:
    CNmSplitterbar();
    ~CNmSplitterbar() override;

    // --- What a bar can do, in this order ---

    /// Makes the bar's window as a child of `parent`, which must outlive the bar. `id` is kept as
    /// its property "id". Returns 0 if `parent` is null or the window exists already, else 1.
    virtual int CreateSplitterBar(QWidget* parent, unsigned id);
    /// Places first pane, bar and second pane in the parent's client area, without a gap. The first
    /// has the size that `GetFirstWndWH` tells, as far as there is room, the second has the rest; a
    /// pane that is folded away has none, and is hidden, so that the keyboard does not get into it.
    /// Does nothing before the first `SetFirstWndWH`.
    virtual void AdjustLayout();
    /// Sets the first pane's size for the next layout.
    virtual void SetFirstWndWH(unsigned size) = 0;
    /// The first pane's size as it is to be, expanded or folded.
    virtual int GetFirstWndWH() const = 0;
    /// Gives `window` the cursor that belongs to the mouse's place. `hitTest` tells whether the
    /// mouse is over the window (1) or not (0), `message` is the type of the event. Returns 1 if
    /// the cursor was set, else 0.
    virtual int DoSetCursor(QWidget* window, unsigned hitTest, unsigned message) = 0;
    /// The left mouse button went down, the mouse moved, the button came up; `point` is in the
    /// bar's window.
    virtual void DoLButtonDown(QPoint point) = 0;
    virtual void DoMouseMove(QPoint point) = 0;
    virtual void DoLButtonUp(QPoint point) = 0;
    /// Draws the bar. `hot`: the mouse is over the fold button, and no drag is going on.
    virtual void DrawBar(QPainter* dc, QRect rect, int hot) = 0;
    /// Folds the pane at the berth away, or brings it back.
    virtual void FoldBar(int fold) = 0;
    /// The fold button was clicked.
    virtual void OnClickExpand() = 0;
    /// Whether a drag may bring the bar's upper left corner to `point`, in the parent.
    virtual int IsInLimitWndRect(QPoint point) = 0;
    /// Draws the fold button within `rect`, and sets `m_foldButtonRect`.
    virtual void DrawFoldButton(QPainter* dc, QRect rect, int hot) = 0;

    // --- What it is made of ---

    void SetNotify(INmSplitterbarNotify* notify); ///< Not owned; null is allowed.
    void SetThickness(int size); ///< A negative one is 0.
    int GetThickness() const { return m_thickness; }
    /// Sets the panes, which are children of the parent and not owned, and places them. A pane that
    /// is null, or is deleted later, is left out; its room stays empty.
    void SetSplitterWnd(QWidget* first, QWidget* second);
    void GetSplitterWnd(QWidget*& first, QWidget*& second) const;
    QWidget* GetSafeHwnd(); ///< The bar's window; null before it exists.
    /// Whether `AdjustLayout` places anything: a first `SetFirstWndWH` has been.
    bool IsLaidOut() const { return m_firstWH >= 0; }

protected:
    /// The size of the parent without the bar: what the panes share.
    int Room() const;
    /// The coordinate across the bar, in which it moves.
    int Along(QPoint point) const { return m_horizontal ? point.y() : point.x(); }
    /// To be called when the user has changed the panes' sizes: places them and tells everybody.
    void PanesChanged();
    /// Whether there are both panes, and the notify has nothing against a change.
    bool MayChange() const;

    bool m_horizontal = true;
    QPointer<QWidget> m_parentWnd;
    QPointer<QWidget> m_firstWnd, m_secondWnd;
    int m_firstWH = -1; ///< Of the first pane when expanded; -1 before it is known.
    int m_thickness = 6;
    SPLITBAR_BERTH_POS m_berthPos = SPLITBAR_BERTH_BOTTOM;
    QRect m_foldButtonRect; ///< In the bar; empty before it is first drawn.
    bool m_folded = false;
    bool m_pressed = false; ///< The press that is going on fell on the fold button.
    bool m_dragging = false; ///< It fell beside it, and moves the bar.
    int m_grip = 0; ///< Where in the bar it fell.
    bool m_hot = false;

private:
    class Access;

    QRect Part(int from, int size) const;
    void Place(QWidget* pane, int from, int size);

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    INmSplitterbarNotify* m_notify = nullptr;
    QPointer<QWidget> m_hiddenPane; ///< The one that a fold has hidden.
};
