#pragma once

#include "platform/WindowStyle.h"
#include "support/Export.h"

#include <QWidget>

/// A window that places what stands in it by itself, each time that its size changes.
class NOMAR_EXPORT ContainerWnd : public QWidget {
    Q_OBJECT
public:
    ContainerWnd();
    ~ContainerWnd() override;

    /// Makes this a child of `parent` with the geometry `rect`. `id` is kept as the widget's
    /// property "id"; a `style` with `WS_VISIBLE` shows it. Returns 0 if `parent` is null or the
    /// window exists already, else 1.
    int Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style);

protected:
    /// The window has another size: `rect` is its inside, which begins at 0, 0. Does nothing here.
    virtual void AdjustLayout(const QRect& rect);

    void resizeEvent(QResizeEvent* event) override;
};
