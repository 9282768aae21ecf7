#include "platform/CNmSplitterbarEx.h"

#include <algorithm>
#include <limits>

void CNmSplitterbarEx::SetBerthPos(SPLITBAR_BERTH_POS pos)
{
    m_berthPos = pos;
    m_horizontal = pos == SPLITBAR_BERTH_TOP || pos == SPLITBAR_BERTH_BOTTOM;
}

void CNmSplitterbarEx::SetFirstWndWH(unsigned size)
{
    m_firstWH = int(std::min(size, unsigned(std::numeric_limits<int>::max())));
}

int CNmSplitterbarEx::GetFirstWndWH() const
{
    if (!m_folded)
        return std::max(m_firstWH, 0);
    const bool atEnd = m_berthPos == SPLITBAR_BERTH_RIGHT || m_berthPos == SPLITBAR_BERTH_BOTTOM;
    return atEnd ? Room() : 0;
}

int CNmSplitterbarEx::DoSetCursor(::QWidget* window, unsigned hitTest, unsigned)
{
    if (!window || !hitTest)
        return 0;
    const bool overButton = !m_dragging && (m_pressed || m_hot);
    window->setCursor(overButton ? Qt::PointingHandCursor
            : m_horizontal       ? Qt::SplitVCursor
                                 : Qt::SplitHCursor);
    return 1;
}

void CNmSplitterbarEx::DoLButtonDown(QPoint point)
{
    m_pressed = m_foldButtonRect.contains(point);
    m_dragging = !m_pressed && MayChange();
    m_grip = Along(point);
    if (::QWidget* window = GetSafeHwnd())
        window->update();
}

void CNmSplitterbarEx::FoldBar(int fold)
{
    m_folded = fold != 0;
    PanesChanged();
}

void CNmSplitterbarEx::OnClickExpand()
{
    if (MayChange())
        FoldBar(!m_folded);
}
