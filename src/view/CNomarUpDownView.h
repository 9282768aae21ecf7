#pragma once

#include "platform/ContainerWnd.h"
#include "platform/INmSplitterbarNotify.h"
#include "support/Export.h"

#include <QWidget>

#include <memory>

/// A child window that stacks two windows of the host above each other, with a splitter bar between
/// them: the upper pane grows with the view, the lower one keeps its height. The user drags the
/// bar, and a button in its middle folds the lower pane away and brings it back; Tab leads to the
/// bar, the arrow keys move it and Enter folds.
///
///     auto* view = new CNomarUpDownView;
///     view->Create(window, window->rect(), 1);
///     view->SetBottomHeight(150);
///     view->SetSplitterWnd(editor, list);
///
/// A drag leaves each pane 40 pixels where there is room. A pane that is folded away is hidden. The
/// picture of the button is `res/splitterbar.png` of the install directory; without it the button
/// has no arrow. Where the window colour of the palette is dark, so is the bar.
class NOMAR_EXPORT CNomarUpDownView : public ContainerWnd, public INmSplitterbarNotify {
    Q_OBJECT
public:
    CNomarUpDownView();
    ~CNomarUpDownView() override;

    /// Makes the view a visible child of `parent` at `rect`; it may stand in a layout from then on.
    /// Returns 0 if `parent` is null or the window exists already, else 1.
    virtual int Create(QWidget* parent, const QRect& rect, unsigned id);
    /// Shows the two panes and puts them into the view, whose children they become. Nothing
    /// happens unless both are given. A pane that was in the view before and is not given again
    /// stays its child, where it is. The host may delete a pane at any time.
    void SetSplitterWnd(QWidget* upper, QWidget* lower);
    /// Sets the height of the lower pane and the bar (8 pixels) together; 218 at the start. A value
    /// that is not positive is ignored. It takes effect when the view gets its first panes and when
    /// it next changes its size. What the user drags replaces it.
    void SetBottomHeight(int height);

protected:
    class Splitterbar2014;

    bool OnSplitterChildWindowSizeChanging() override;
    void OnSplitterChildWindowSizeChanged() override;
    void AdjustLayout(const QRect& rect) override;
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Splitterbar2014> m_bar;
    int m_bottomHeight = 218;
};
