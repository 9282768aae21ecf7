#pragma once

#include "capture/CaptureRect.h"

#include <QAbstractButton>
#include <QBasicTimer>
#include <QImage>

/// A button of the capture's toolbar: an icon that lights up under the pointer.
///
/// The space bar does not click it, and no other key either: keys go on to the dialog. It takes
/// the focus by a click and not by Tab.
class STIconButton : public QAbstractButton {
    Q_OBJECT

public:
    enum State {
        Normal = 0,
        Hover = 1,
        Pressed = 2,
        Focus = 3,
        Disabled = 4,
    };

    explicit STIconButton(QWidget* parent);

    /// Null: the button shows its background alone. The size is the image's, in device-independent
    /// pixels.
    void SetIcon(const QImage& icon);

    /// Shown as the tooltip while the pointer rests on the button.
    void SetTooltipText(const QString& text);

    /// The first that applies of disabled, pressed, hover, focus, normal.
    [[nodiscard]] State CurrentState() const;

    /// Paints what lies over the background. `rect` is the button's in the coordinates of
    /// `painter`. The icon stands in its middle at its own size, on a light ground and, pressed,
    /// one pixel further to the lower right.
    virtual void DrawIcon(QPainter& painter, const CaptureRect& rect, State state);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void StartTracking();
    void OnMouseHover();
    void OnMouseLeave();

    QImage m_icon;
    QSize m_iconSize;
    QString m_tooltipText;
    bool m_tracking = false; ///< Until the pointer leaves.
    bool m_hover = false;
    QBasicTimer m_hoverTimer;
};
