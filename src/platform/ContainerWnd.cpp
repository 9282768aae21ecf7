#include "platform/ContainerWnd.h"

ContainerWnd::ContainerWnd() = default;

ContainerWnd::~ContainerWnd() = default;

int ContainerWnd::Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style)
{
    if (!parent || parentWidget())
        return 0;
    setParent(parent);
    setGeometry(rect);
    setProperty("id", id);
    setVisible(style & WS_VISIBLE);
    return 1;
}

void ContainerWnd::AdjustLayout(const QRect&) { }

void ContainerWnd::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    AdjustLayout(rect());
}
