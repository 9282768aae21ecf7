#include "capture/CSToolbar.h"

#include "capture/STIconButton.h"

#include <QPainter>

namespace {

constexpr int padding = 4;
constexpr int distance = 6; ///< From the selection.
constexpr QColor frameColour(80, 141, 191);
constexpr QColor fillColour(216, 241, 255);

} // namespace

CSToolbar::CSToolbar(QWidget* parent)
    : QWidget(parent)
{
    setGeometry(0, 0, 0, 0);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
}

void CSToolbar::AddButton(const QImage& icon, const QString& tooltip, int id)
{
    auto* button = new STIconButton(this);
    button->SetIcon(icon);
    button->SetTooltipText(tooltip);
    connect(button, &QAbstractButton::clicked, this, [this, id] { Q_EMIT Command(id); });
    button->show();
    m_buttons.push_back(button);
}

QRect CSToolbar::PlaceFor(const CaptureRect& selection) const
{
    const CaptureRect chosen = selection.Normalised();
    const int width = int(m_buttons.size()) * m_buttonPitch + 2 * padding;
    // Kept: not held on the screen, where it would hide what is selected; the menu has it all too.
    return {chosen.right - width, chosen.bottom + distance, width, m_buttonSize + 2 * padding};
}

void CSToolbar::LayoutButtons()
{
    CaptureRect band = CaptureRect{0, 0, width(), height()}.Inflated(-padding);
    if (const int excess = band.Height() - m_buttonSize; excess > 0) {
        band.top += excess / 2;
        band.bottom -= excess / 2;
    }
    int left = band.left;
    for (STIconButton* button : m_buttons) {
        button->setGeometry(left, band.top, m_buttonSize, band.Height());
        left += m_buttonPitch;
    }
}

void CSToolbar::resizeEvent(QResizeEvent*)
{
    LayoutButtons();
}

void CSToolbar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), frameColour);
    painter.fillRect(rect().adjusted(1, 1, -1, -1), fillColour);
}
