#include "view/CNomarUpDownView.h"

#include "platform/CGdiToolBox.h"
#include "support/Paths.h"
#include "view/Splitterbar2014.h"

#include <QEvent>

#include <algorithm>

namespace {

constexpr unsigned barId = 65535;
constexpr int barThickness = 8;
constexpr int bottomEdge = 3;

bool isDark(const QWidget& window)
{
    return window.palette().window().color().lightness() < 128;
}

} // namespace

CNomarUpDownView::CNomarUpDownView()
    : m_bar(std::make_unique<Splitterbar2014>())
{
}

CNomarUpDownView::~CNomarUpDownView() = default;

int CNomarUpDownView::Create(QWidget* parent, const QRect& rect, unsigned id)
{
    const int created = ContainerWnd::Create(parent, rect, id, WS_CHILD | WS_VISIBLE);
    if (!created)
        return created;
    m_bar->SetNotify(this);
    m_bar->CreateSplitterBar(this, barId);
    m_bar->SetThickness(barThickness);
    m_bar->SetBerthPos(SPLITBAR_BERTH_BOTTOM);
    m_bar->SetEdgeSide(bottomEdge);
    m_bar->SetDark(isDark(*this));
    QImage arrows = LoadResBitmap(QStringLiteral("splitterbar.png"));
    CGdiToolBox::PreMultiplyAlpha(arrows);
    m_bar->SetSkinPic(arrows);
    return 1;
}

void CNomarUpDownView::SetSplitterWnd(QWidget* upper, QWidget* lower)
{
    if (!upper || !lower)
        return;
    for (QWidget* pane : {upper, lower}) {
        if (pane->parentWidget() != this)
            pane->setParent(this);
        pane->show();
    }
    m_bar->SetSplitterWnd(upper, lower);
    // In a window that is visible already the view had its size before it had a bar.
    if (!m_bar->IsLaidOut())
        AdjustLayout(rect());
}

void CNomarUpDownView::SetBottomHeight(int height)
{
    if (height > 0)
        m_bottomHeight = height;
}

void CNomarUpDownView::AdjustLayout(const QRect& rect)
{
    if (!m_bar->GetSafeHwnd() || rect.height() <= 0)
        return;
    m_bar->SetFirstWndWH(unsigned(std::max(rect.height() - m_bottomHeight, 0)));
    m_bar->AdjustLayout();
}

bool CNomarUpDownView::OnSplitterChildWindowSizeChanging()
{
    return true;
}

void CNomarUpDownView::OnSplitterChildWindowSizeChanged()
{
    QWidget *upper = nullptr, *lower = nullptr;
    m_bar->GetSplitterWnd(upper, lower);
    // A folded pane is hidden, and may have a height all the same: its minimum.
    if (lower && !lower->isHidden() && lower->height() > 0)
        m_bottomHeight = lower->height() + m_bar->GetThickness();
}

void CNomarUpDownView::changeEvent(QEvent* event)
{
    ContainerWnd::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_bar->SetDark(isDark(*this));
}
