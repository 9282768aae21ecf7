#include "platform/CNmSplitterbarAccess.h"

#include <algorithm>

void CNmSplitterbar::Access::Install()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(
        [](const QString& className, QObject* object) -> QAccessibleInterface* {
            if (className != QLatin1StringView(CNmSplitterbar::staticMetaObject.className()))
                return nullptr;
            return new Access(*static_cast<CNmSplitterbar*>(object));
        });
}

void CNmSplitterbar::Access::Announce(CNmSplitterbar& bar)
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State change;
    change.expanded = change.collapsed = true;
    QAccessibleStateChangeEvent folded(&bar, change);
    QAccessible::updateAccessibility(&folded);
    QAccessibleValueChangeEvent moved(&bar, bar.GetFirstWndWH());
    QAccessible::updateAccessibility(&moved);
}

CNmSplitterbar::Access::Access(CNmSplitterbar& bar)
    : QAccessibleWidget(&bar, QAccessible::Splitter)
    , m_bar(bar)
{
}

QAccessible::State CNmSplitterbar::Access::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = !m_bar.m_folded;
    state.collapsed = m_bar.m_folded;
    return state;
}

void* CNmSplitterbar::Access::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QVariant CNmSplitterbar::Access::currentValue() const
{
    return std::min(m_bar.GetFirstWndWH(), m_bar.Room());
}

void CNmSplitterbar::Access::setCurrentValue(const QVariant& value)
{
    if (!m_bar.MayChange())
        return;
    m_bar.m_folded = false;
    m_bar.SetFirstWndWH(unsigned(std::clamp(value.toInt(), 0, m_bar.Room())));
    m_bar.PanesChanged();
}

QVariant CNmSplitterbar::Access::maximumValue() const
{
    return m_bar.Room();
}

QVariant CNmSplitterbar::Access::minimumValue() const
{
    return 0;
}

QVariant CNmSplitterbar::Access::minimumStepSize() const
{
    return 1;
}
