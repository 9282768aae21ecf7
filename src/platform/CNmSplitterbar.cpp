#include "platform/CNmSplitterbar.h"

#include "platform/CNmSplitterbarAccess.h"
#include "platform/INmSplitterbarNotify.h"
#include "platform/Language.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

CNmSplitterbar::CNmSplitterbar() = default;

CNmSplitterbar::~CNmSplitterbar() = default;

int CNmSplitterbar::CreateSplitterBar(QWidget* parent, unsigned id)
{
    if (!parent || m_parentWnd)
        return 0;
    Access::Install();
    m_parentWnd = parent;
    setParent(parent);
    setProperty("id", id);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    // A click must not take the keyboard away from what the user writes in.
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(InLanguage("Splitter bar", "分隔条"));
    setAccessibleDescription(InLanguage(
        "The arrow keys move it, Enter folds or expands", "方向键移动，回车键折叠或展开"));
    show();
    return 1;
}

void CNmSplitterbar::SetNotify(INmSplitterbarNotify* notify)
{
    m_notify = notify;
}

void CNmSplitterbar::SetThickness(int size)
{
    m_thickness = std::max(size, 0);
}

void CNmSplitterbar::SetSplitterWnd(QWidget* first, QWidget* second)
{
    m_firstWnd = first;
    m_secondWnd = second;
    raise(); // A pane that is larger than its share must not bury it.
    // Between the panes: behind all that stands in the first.
    if (second && second->previousInFocusChain() != this)
        setTabOrder(second->previousInFocusChain(), this);
    AdjustLayout();
}

void CNmSplitterbar::GetSplitterWnd(QWidget*& first, QWidget*& second) const
{
    first = m_firstWnd;
    second = m_secondWnd;
}

QWidget* CNmSplitterbar::GetSafeHwnd()
{
    return m_parentWnd ? this : nullptr;
}

// --- Places ---

int CNmSplitterbar::Room() const
{
    if (!m_parentWnd)
        return 0;
    const int size = m_horizontal ? m_parentWnd->height() : m_parentWnd->width();
    return std::max(size - m_thickness, 0);
}

QRect CNmSplitterbar::Part(int from, int size) const
{
    return m_horizontal ? QRect(0, from, m_parentWnd->width(), size)
                        : QRect(from, 0, size, m_parentWnd->height());
}

void CNmSplitterbar::Place(QWidget* pane, int from, int size)
{
    if (!pane)
        return;
    const bool atStart = m_berthPos == SPLITBAR_BERTH_LEFT || m_berthPos == SPLITBAR_BERTH_TOP;
    const bool foldedAway = m_folded && pane == (atStart ? m_firstWnd : m_secondWnd);
    pane->setGeometry(Part(from, size));
    // A pane that the host has hidden itself is not shown for it.
    if (foldedAway && !pane->isHidden()) {
        m_hiddenPane = pane;
        pane->hide();
    } else if (!foldedAway && pane == m_hiddenPane) {
        m_hiddenPane = nullptr;
        pane->show();
    }
}

void CNmSplitterbar::AdjustLayout()
{
    if (!m_parentWnd || !IsLaidOut())
        return;
    const int room = Room();
    const int first = std::clamp(GetFirstWndWH(), 0, room);
    Place(m_firstWnd, 0, first);
    setGeometry(Part(first, m_thickness));
    Place(m_secondWnd, first + m_thickness, room - first);
}

bool CNmSplitterbar::MayChange() const
{
    return m_firstWnd && m_secondWnd
        && (!m_notify || m_notify->OnSplitterChildWindowSizeChanging());
}

void CNmSplitterbar::PanesChanged()
{
    AdjustLayout();
    update();
    Access::Announce(*this);
    if (m_notify)
        m_notify->OnSplitterChildWindowSizeChanged();
}

// --- Events ---

void CNmSplitterbar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    DrawBar(&painter, rect(), m_hot);
    if (!hasFocus())
        return;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void CNmSplitterbar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        DoLButtonDown(event->position().toPoint());
}

void CNmSplitterbar::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    // The window can have lost the mouse, and with it the end of the press.
    if (!(event->buttons() & Qt::LeftButton))
        m_pressed = m_dragging = false;
    DoMouseMove(point);
    DoSetCursor(this, rect().contains(point), unsigned(event->type()));
}

void CNmSplitterbar::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        DoLButtonUp(event->position().toPoint());
}

void CNmSplitterbar::leaveEvent(QEvent*)
{
    m_hot = false;
    update();
}

void CNmSplitterbar::focusInEvent(QFocusEvent*)
{
    update();
}

void CNmSplitterbar::focusOutEvent(QFocusEvent*)
{
    update();
}
