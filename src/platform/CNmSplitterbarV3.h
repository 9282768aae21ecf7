#pragma once

#include "platform/CNmSplitterbarEx.h"

#include <QImage>

#include <optional>

/// A bar that moves with the mouse while it is dragged, the panes with it, and by the keys.
///
/// A drag, or an arrow key, leaves each pane at least 40 pixels, or its own minimum if that is
/// more. Where there is no room for both, the bar cannot be moved. A folded bar is pulled open.
///
/// Keys, once Tab has brought the keyboard here: the arrows move the bar by 16 pixels or expand a
/// folded one, Enter and the space bar fold and expand.
class CNmSplitterbarV3 : public CNmSplitterbarEx {
public:
    /// Sets the picture of the fold button, for DrawFoldButton. A null one is allowed.
    void SetSkinPic(const QImage& bitmap);

    void DoMouseMove(QPoint point) override;
    void DoLButtonUp(QPoint point) override;
    int IsInLimitWndRect(QPoint point) override;

protected:
    QImage m_skinPic;

private:
    struct Limits {
        int least, most; ///< Of the first pane's size.
    };
    std::optional<Limits> DragLimits() const;
    void MoveTo(int first);
    void keyPressEvent(QKeyEvent* event) override;
};
