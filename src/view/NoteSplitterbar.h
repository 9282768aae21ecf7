#pragma once

#include "platform/CNmSplitterbarV3.h"

#include <QColor>

/// The look of a splitter bar: a grey band with a line along one side and, in the middle, the fold
/// button with an arrow that shows where a click leads.
class NoteSplitterbar : public CNmSplitterbarV3 {
public:
    NoteSplitterbar();

    /// The colours for a window that is light, which are those from the start, or dark. The button
    /// stays lighter than the arrow in both.
    void SetDark(bool dark);

    void DrawBar(QPainter* dc, QRect rect, int hot) override;
    /// The picture of the skin holds four arrows side by side: right, left, up, down. Without a
    /// picture the button is plain.
    void DrawFoldButton(QPainter* dc, QRect rect, int hot) override;

protected:
    QColor m_barColour;
    QColor m_edgeColour; ///< A line of one pixel along one side of the bar.
    int m_edgeSide = 1; ///< Which: 0 left, 1 right, 2 top, 3 bottom.
    int m_buttonLength = 76; ///< Of the fold button, along the bar, in pixels.
    QColor m_buttonColour;
    QColor m_buttonHotColour;
    QColor m_buttonPressedColour;

private:
    int Frame() const;
};
