#include "view/NmSplitterbarState.h"

void NmSplitterbarState::DoLButtonDown(QPoint point)
{
    NoteSplitterbar::DoLButtonDown(point);
    if (!m_pressed)
        m_pressState = m_folded ? 1 : 2;
}
