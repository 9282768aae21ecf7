#include "view/Splitterbar2014.h"

#include <algorithm>

void CNomarUpDownView::Splitterbar2014::FoldBar(int fold)
{
    const bool before = m_folded;
    m_folded = fold != 0; // GetFirstWndWH answers for the state to come.
    if (!fold && m_parentWnd) {
        const QRect client = m_parentWnd->rect();
        const int first = std::min(GetFirstWndWH(), client.height() - m_thickness);
        // Kept: a constant, whatever SetBottomHeight has said.
        if (client.height() - (m_thickness + first) <= 0)
            SetFirstWndWH(unsigned(std::max(first - 218, 0)));
    }
    m_folded = before;
    CNmSplitterbarEx::FoldBar(fold);
}
