#pragma once

/// What a splitter bar asks and tells the window that it stands in.
class INmSplitterbarNotify {
public:
    /// Asked before the user moves, folds or expands the bar. False: it stays as it is.
    virtual bool OnSplitterChildWindowSizeChanging() = 0;
    /// The user has moved, folded or expanded the bar, and the panes have their new sizes. Comes
    /// again and again during a drag. Not called when the window itself changes its size.
    virtual void OnSplitterChildWindowSizeChanged() = 0;

protected:
    ~INmSplitterbarNotify() = default;
};
