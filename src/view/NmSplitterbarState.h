#pragma once

#include "view/NoteSplitterbar.h"

/// A bar that records how a press on it found it.
class NmSplitterbarState : public NoteSplitterbar {
public:
    void DoLButtonDown(QPoint point) override;

protected:
    int m_pressState = 0; ///< The last press beside the fold button: 1 folded, 2 expanded, 0 none.
};
