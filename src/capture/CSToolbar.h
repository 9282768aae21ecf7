#pragma once

#include "capture/CaptureRect.h"

#include <QWidget>

#include <vector>

class QImage;
class STIconButton;

/// The strip of buttons under the selection. It counts as hidden while its size is zero, as it is
/// at the start. Mouse events on it do not reach the widget below.
class CSToolbar : public QWidget {
    Q_OBJECT

public:
    explicit CSToolbar(QWidget* parent);

    /// Appends a button that stands for the command `id`. A null `icon` leaves it blank. It gets
    /// its place when the toolbar is next given another size.
    void AddButton(const QImage& icon, const QString& tooltip, int id);

    /// Where the toolbar belongs for a selection, which may be inverted: flush with its right edge,
    /// 6 below it. The edges of the screen have no say, so it may lie outside.
    [[nodiscard]] QRect PlaceFor(const CaptureRect& selection) const;

    /// Puts the buttons side by side, from the left, in the middle of the height.
    void LayoutButtons();

Q_SIGNALS:
    /// A button was clicked.
    void Command(int id);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int m_buttonPitch = 20; ///< From left edge to left edge.
    int m_buttonSize = 18; ///< Width and height.
    std::vector<STIconButton*> m_buttons; ///< Children.
};
