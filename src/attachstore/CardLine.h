#pragma once

#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace attachstore {

/// One line of text on a card, in the desktop's default face at the size at which a line of it is
/// 12 pixels high. Characters that the face lacks come from the desktop's other fonts.
///
/// A card has no second line for a name: line breaks, tabs and other control characters count as
/// spaces. A text of more than 4,096 UTF-16 units, some hundred times what a card can show, is cut
/// there. Any text can be drawn, lone surrogates and marks of writing direction included.
///
/// Needs a QGuiApplication. For the user interface's thread alone.
class CardLine {
public:
    explicit CardLine(const QString& text);

    /// Of the whole text, in pixels, rounded up.
    int width() const { return m_width; }

    /// Draws the text from the left edge of `area`, the top of the line at its top. What does not
    /// fit ends in an ellipsis at the right edge; nothing is drawn outside. The painter's font,
    /// clip and layout direction are changed.
    void draw(QPainter& painter, const QRect& area) const;

private:
    QString m_text;
    int m_width;
};

} // namespace attachstore
