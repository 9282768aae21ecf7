#pragma once

#include "capture/CaptureOwner.h"
#include "capture/STRectTracker.h"

#include <QDialog>

#include <optional>

class CSTip;
class CSToolbar;

/// The capture dialog: it freezes the primary screen, and the user cuts a rectangle out of that
/// frozen picture. A borderless, topmost window as large as the primary screen shows the picture
/// dimmed, the selection at full brightness with border and handles, the tip in an upper corner and
/// the toolbar under the selection. Other screens do not exist for it.
///
/// This class has the mechanics: picture, painting, the state of the selection, mouse, Esc (ends
/// it) and Enter (accepts, which delivers nothing). What becomes of a selection is said by the
/// hooks of a class derived from it.
///
/// It shows no message and logs nothing. It ends by itself when the screen changes its geometry or
/// goes away. User-interface thread only.
class ScreenCaptureDlgBase : public QDialog, public CaptureOwner {
public:
    /// Takes the picture of the screen. If there is none, `error` receives why, and `DoModal` shows
    /// nothing.
    explicit ScreenCaptureDlgBase(QString* error = nullptr);
    /// Works on a picture of the screen that was taken before, in device pixels, its device pixel
    /// ratio set.
    explicit ScreenCaptureDlgBase(const QImage& snapshot);
    ~ScreenCaptureDlgBase() override;

    /// Shows the dialog and returns when it has ended: `Accepted` or `Rejected`, which says nothing
    /// about a capture. -1, and nothing is shown, without a picture or while the dialog is open.
    int DoModal();
    /// Shows the dialog and returns. False as above.
    bool Create(QWidget* parent);

    const QImage& Snapshot() const override { return m_snapshot; }
    QSize ScreenSize() const override { return m_screen; }
    CaptureRect Selection() const override { return m_tracker.rect; }
    void PaintScene(QPainter& painter, const QRect& area) const override;
    void RepaintCaptureArea() override;
    /// The toolbar follows a selection that was moved and vanishes from one that was resized.
    void OnSelectionRectChanged(const CaptureRect& rectOld) override;

protected:
    /// Adds the toolbar's buttons. Nothing here.
    virtual void InitToolbar();
    /// Sets the cursors. Nothing here.
    virtual void InitCursors();
    /// The right button was released in the selection. Nothing here.
    virtual void OnSelectionRightClick(const QPoint& point);
    /// The selection was double-clicked. Nothing here.
    virtual void OnSelectionDoubleClick(const QPoint& point);

    /// Builds tip and toolbar and makes the window ready to be shown.
    virtual bool OnInitDialog();
    virtual void OnCancel();
    virtual void OnOK();

    /// The pixels of the snapshot under `rect`, which is normalised. What hangs over the screen's
    /// edge is cut off; null when nothing is left.
    QImage CopySelectionBitmap(const CaptureRect& rect) const;
    CSToolbar& Toolbar() { return *m_toolbar; }
    /// The cursor wherever the tracker has none. Without one it is the desktop's.
    void SetDefaultCursor(const QCursor& cursor) { m_cursorDefault = cursor; }

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    /// What is on the screen of a selection.
    struct Shown {
        bool has = false;
        CaptureRect rect; ///< Normalised.
        bool operator==(const Shown&) const = default;
    };

    Shown ShownNow() const;
    QRegion Changed(const Shown& from, const Shown& to) const;
    /// Where the window does not show what holds now, tip and toolbar excepted; counted as
    /// repainted.
    QRegion TakeStale();
    /// Paints the scene. `clip`, to which the painter is clipped, lies within the screen.
    void PaintClipped(QPainter& painter, const QRect& clip) const;
    void OnLButtonDown(const QPoint& point);
    void OnLButtonUp();
    void OnRButtonUp(const QPoint& point);
    void ShowToolbar(bool show);
    QCursor DefaultCursor() const;
    void ChooseCursor(const QPoint& point);
    void EndIfShown();

    QImage m_snapshot;
    QSize m_screen;
    STRectTracker m_tracker{this};
    bool m_has = false; ///< There is a selection.
    bool m_dragging = false; ///< A new selection is being drawn.
    QPoint m_anchor; ///< Where the press was that began it.
    CSTip* m_tip = nullptr; // A child, from OnInitDialog on.
    CSToolbar* m_toolbar = nullptr; // Likewise.
    std::optional<QCursor> m_cursorDefault;
    Shown m_shown; ///< What the window shows, but for m_stale.
    QRegion m_stale; ///< Where it may show what was before.
};
