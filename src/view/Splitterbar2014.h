#pragma once

#include "view/CNomarUpDownView.h"
#include "view/NmSplitterbarState.h"

/// The bar of an up-down view.
class CNomarUpDownView::Splitterbar2014 : public NmSplitterbarState {
public:
    /// Expanding never leaves the lower pane without height: where there would be no room for it,
    /// it gets 218 pixels.
    void FoldBar(int fold) override;

    /// The side of the bar with the line.
    void SetEdgeSide(int side) { m_edgeSide = side; }
};
