#pragma once

#include "platform/CNmSplitterbar.h"

#include <QAccessibleWidget>

/// A splitter bar as assistive programs see it: a splitter with a name, the size of its first pane
/// for a value, which they can set, and whether it is expanded or collapsed.
class CNmSplitterbar::Access : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    /// Makes every bar from now on one of these. May be called again.
    static void Install();
    /// Tells that the bar has been moved, folded or expanded.
    static void Announce(CNmSplitterbar& bar);

    explicit Access(CNmSplitterbar& bar);

    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    CNmSplitterbar& m_bar;
};
