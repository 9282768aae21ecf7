#pragma once

#include "capture/CaptureRect.h"

#include <QFont>
#include <QImage>
#include <QWidget>

#include <optional>

class CaptureOwner;

/// The information window of the capture: title, magnifier with a crosshair, the colour under the
/// pointer, the size of the selection. 260 by 200, in an upper corner of the screen, from where it
/// jumps to the other one when the pointer reaches it.
///
/// It shows what holds at the moment of its painting: whoever moves the pointer or the selection
/// calls `update` or `repaint`, or `Compose` where it is painted later, together with more. Mouse
/// events on it do not reach the widget below.
class CSTip : public QWidget {
    Q_OBJECT

public:
    /// A child of `parent`, the dialog's widget, empty until `Place`. `owner` is not owned and
    /// outlives it.
    CSTip(CaptureOwner* owner, QWidget* parent);

    /// Moves to the corner that it is to stand in: 10 below the top, 10 from the side.
    void Place();

    /// Goes to the other corner at once; there is no hysteresis.
    void Swap();

    /// Whether it is to stand in the left corner, as it does at the start.
    [[nodiscard]] bool On() const { return m_left; }

    /// Where the pointer is, in the coordinates of the dialog, so that it need not be asked for:
    /// that is a round trip to the window system. Asked for at each painting until the first call.
    void PointerAt(const QPoint& point) { m_pointer = point; }

    /// Paints it into memory. The next paint event brings that to the screen as it is.
    void Compose();

    /// Paints all of it. `client` is its rectangle in the coordinates of `painter`, which has to
    /// paint on an image: the crosshair is a bitwise operation.
    virtual void DrawTip(QPainter& painter, const CaptureRect& client);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    /// The pointer in the coordinates of the dialog.
    [[nodiscard]] QPoint Cursor() const;
    /// What never changes: ground, frame and the title's shades, at that place in `client`.
    void DrawGround(QPainter& painter, const CaptureRect& client, const CaptureRect& title);
    void DrawInformation(QPainter& painter, const CaptureRect& bar) const;
    void DrawMagnifier(QPainter& painter, const CaptureRect& area) const;
    /// What the screen shows of the dialog there, its children included; black outside.
    [[nodiscard]] QImage Shown(const QRect& area, qreal ratio) const;
    /// Of the frozen screen at full brightness; white outside.
    [[nodiscard]] QColor PixelAt(const QPoint& point) const;

    bool m_left = true;
    QString m_title;
    CaptureOwner* m_owner;
    QFont m_font;
    std::optional<QPoint> m_pointer;
    QImage m_ground; ///< As `DrawGround` left it.
    QImage m_painted; ///< What it shows itself since its last painting.
    QImage m_memory; ///< The one before, to be painted on next.
    bool m_isComposed = false; ///< And not yet on the screen.
};
