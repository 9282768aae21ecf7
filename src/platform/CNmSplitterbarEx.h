#pragma once

#include "platform/CNmSplitterbar.h"

/// A bar that folds to one side of its parent by a button in its middle.
class CNmSplitterbarEx : public CNmSplitterbar {
public:
    /// Sets the side to which the bar folds, and with it the bar's direction: left and right make a
    /// vertical bar, top and bottom a horizontal one.
    void SetBerthPos(SPLITBAR_BERTH_POS pos);

    /// Sets the size of the expanded first pane. A folded bar stays folded.
    void SetFirstWndWH(unsigned size) override;
    /// Expanded: what was set. Folded: all the room, or nothing, as the berth has it.
    int GetFirstWndWH() const override;
    /// A hand over the fold button, the arrows of a splitter beside it.
    int DoSetCursor(::QWidget* window, unsigned hitTest, unsigned message) override;
    /// On the fold button: a press of the button. Beside it: the beginning of a drag, if the panes
    /// may change.
    void DoLButtonDown(QPoint point) override;
    void FoldBar(int fold) override;
    /// Folds an expanded bar and expands a folded one, if the panes may change.
    void OnClickExpand() override;
};
