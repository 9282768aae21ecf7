#include "platform/CNmSplitterbarV3.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr int leastPane = 40;
constexpr int keyStep = 16;

} // namespace

void CNmSplitterbarV3::SetSkinPic(const QImage& bitmap)
{
    m_skinPic = bitmap;
    if (::QWidget* window = GetSafeHwnd())
        window->update();
}

std::optional<CNmSplitterbarV3::Limits> CNmSplitterbarV3::DragLimits() const
{
    const auto least = [this](const ::QWidget* pane) {
        const int own = !pane ? 0 : m_horizontal ? pane->minimumHeight() : pane->minimumWidth();
        return std::max(own, leastPane);
    };
    const Limits limits{least(m_firstWnd), Room() - least(m_secondWnd)};
    return limits.least <= limits.most ? std::optional(limits) : std::nullopt;
}

int CNmSplitterbarV3::IsInLimitWndRect(QPoint point)
{
    const std::optional<Limits> limits = DragLimits();
    return limits && Along(point) >= limits->least && Along(point) <= limits->most;
}

void CNmSplitterbarV3::MoveTo(int first)
{
    if (!IsInLimitWndRect(m_horizontal ? QPoint(0, first) : QPoint(first, 0))) {
        const std::optional<Limits> limits = DragLimits();
        if (!limits)
            return;
        first = std::clamp(first, limits->least, limits->most);
    }
    if (!m_folded && first == GetFirstWndWH())
        return;
    m_folded = false;
    SetFirstWndWH(unsigned(first));
    PanesChanged();
}

void CNmSplitterbarV3::DoMouseMove(QPoint point)
{
    const bool hot = !m_dragging && m_foldButtonRect.contains(point);
    if (hot != m_hot) {
        m_hot = hot;
        GetSafeHwnd()->update();
    }
    if (!m_dragging)
        return;
    // An unsteady hand does not open a folded bar.
    const int way = Along(point) - m_grip;
    if (m_folded && std::abs(way) < QApplication::startDragDistance())
        return;
    MoveTo(Along(GetSafeHwnd()->pos()) + way);
}

void CNmSplitterbarV3::DoLButtonUp(QPoint point)
{
    const bool clicked = m_pressed && m_foldButtonRect.contains(point);
    m_pressed = m_dragging = false;
    GetSafeHwnd()->update();
    if (clicked)
        OnClickExpand();
}

void CNmSplitterbarV3::keyPressEvent(QKeyEvent* event)
{
    const int back = m_horizontal ? Qt::Key_Up : Qt::Key_Left;
    const int forth = m_horizontal ? Qt::Key_Down : Qt::Key_Right;
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
        if (!event->isAutoRepeat())
            OnClickExpand();
    } else if (key == back || key == forth) {
        const bool atEnd = GetFirstWndWH() > 0;
        if (m_folded && (key == back) == atEnd)
            OnClickExpand();
        else if (!m_folded && MayChange())
            MoveTo(Along(GetSafeHwnd()->pos()) + (key == back ? -keyStep : keyStep));
    } else {
        event->ignore();
    }
}
