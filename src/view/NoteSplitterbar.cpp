#include "view/NoteSplitterbar.h"

#include "platform/CGdiToolBox.h"

#include <QPainter>

namespace {

constexpr int frames = 4;
constexpr int opacity = 225; ///< Of 255, over all of an arrow.

/// Whether a pane takes up room in its parent.
bool hasSize(const ::QWidget* pane, bool horizontal)
{
    return pane && !pane->isHidden() && (horizontal ? pane->height() : pane->width()) > 0;
}

/// The picture with each of its premultiplied channels lowered. The painter's own opacity would
/// reckon in steps of 1/256.
QImage lowered(QImage picture)
{
    CGdiToolBox::PreMultiplyAlpha(picture);
    for (int y = 0; y < picture.height(); ++y) {
        uchar* const line = picture.scanLine(y);
        for (int x = 0; x < picture.width() * 4; ++x)
            line[x] = uchar((line[x] * opacity + 127) / 255);
    }
    return picture;
}

} // namespace

NoteSplitterbar::NoteSplitterbar()
{
    SetDark(false);
}

void NoteSplitterbar::SetDark(bool dark)
{
    m_barColour = dark ? 0x2B2B2BU : 0xF0F0F0U;
    m_edgeColour = dark ? 0x454545U : 0xDCDCDCU;
    m_buttonColour = dark ? 0x8C8C8CU : 0xE0E0E0U;
    m_buttonHotColour = dark ? 0xA6A6A6U : 0xB3B3B3U;
    m_buttonPressedColour = dark ? 0xBFBFBFU : 0xA1A1A1U;
    if (::QWidget* window = GetSafeHwnd())
        window->update();
}

void NoteSplitterbar::DrawBar(QPainter* dc, QRect rect, int hot)
{
    dc->fillRect(rect, m_barColour);
    QRect line = rect;
    switch (m_edgeSide) {
    case 0:
        line.setWidth(1);
        rect.setLeft(rect.left() + 1);
        break;
    case 1:
        line.setLeft(line.right());
        rect.setRight(rect.right() - 1);
        break;
    case 2:
        line.setHeight(1);
        rect.setTop(rect.top() + 1);
        break;
    default:
        line.setTop(line.bottom());
        rect.setBottom(rect.bottom() - 1);
        break;
    }
    dc->fillRect(line, m_edgeColour);
    DrawFoldButton(dc, rect, hot);
}

void NoteSplitterbar::DrawFoldButton(QPainter* dc, QRect rect, int hot)
{
    const QColor colour = m_pressed ? m_buttonPressedColour
        : hot                       ? m_buttonHotColour
                                    : m_buttonColour;
    const int excess = (m_horizontal ? rect.width() : rect.height()) - m_buttonLength;
    if (excess > 0) {
        const int half = excess / 2;
        if (m_horizontal)
            rect.adjust(half, 0, -half, 0);
        else
            rect.adjust(0, half, 0, -half);
    }
    dc->fillRect(rect, colour);
    m_foldButtonRect = rect;

    const QSize size(m_skinPic.width() / frames, m_skinPic.height());
    if (size.isEmpty())
        return;
    QRect place = rect;
    CGdiToolBox::RectCenter(place, size.width(), size.height());
    dc->drawImage(
        place.topLeft(), lowered(m_skinPic.copy(QRect(QPoint(Frame() * size.width(), 0), size))));
}

int NoteSplitterbar::Frame() const
{
    const bool first = hasSize(m_firstWnd, m_horizontal);
    if (m_horizontal) {
        const bool up = (m_berthPos == SPLITBAR_BERTH_TOP && first)
            || (m_berthPos == SPLITBAR_BERTH_BOTTOM && !hasSize(m_secondWnd, true));
        return up ? 2 : 3;
    }
    // Kept: a bar that folds to the right looks at its first pane, and so shows the same arrow
    // folded and expanded.
    const bool left = (m_berthPos == SPLITBAR_BERTH_RIGHT && !first)
        || (m_berthPos == SPLITBAR_BERTH_LEFT && first);
    return left ? 1 : 0;
}
