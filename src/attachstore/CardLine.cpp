#include "attachstore/CardLine.h"

#include "support/CellFont.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace attachstore {
namespace {

constexpr int kCellHeight = 12;
constexpr qsizetype kLongest = 4096;

// The regular cut of `face` at the cell's height.
QFont fontOfCell(const QFont& face)
{
    QFont font(face.families());
    font.setStyleStrategy(QFont::NoSubpixelAntialias); // a card is shown on more than one screen
    font.setHintingPreference(QFont::PreferVerticalHinting);
    SetCellHeight(font, kCellHeight);
    return font;
}

struct CardFont {
    explicit CardFont(const QFont& desktopFace)
        : face(desktopFace)
        , font(fontOfCell(face))
        , metrics(font)
    {
    }

    QFont face;
    QFont font;
    QFontMetricsF metrics;
};

// Made once, and anew when the desktop's face has changed.
const CardFont& cardFont()
{
    const QFont face = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    static CardFont current(face);
    if (current.face != face)
        current = CardFont(face);
    return current;
}

bool isControl(QChar unit)
{
    switch (unit.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

// From left to right, as it is drawn: how Arabic letters join depends on it, and so their width.
qreal widthOf(const QString& text)
{
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    return cardFont().metrics.horizontalAdvance(text, option);
}

QString inOneLine(const QString& text)
{
    QString line = text.left(kLongest);
    if (std::any_of(line.cbegin(), line.cend(), isControl))
        std::replace_if(line.begin(), line.end(), isControl, QChar(u' '));
    return line;
}

// Qt cuts by the width in the text's own direction, so the result is measured in ours.
QString elided(const QString& text, qreal width)
{
    qreal room = width;
    for (;;) {
        QString cut = cardFont().metrics.elidedText(text, Qt::ElideRight, room);
        const qreal excess = widthOf(cut) - width;
        if (excess <= 0 || room <= 0)
            return cut;
        room -= std::max(excess, qreal(1));
    }
}

} // namespace

CardLine::CardLine(const QString& text)
    : m_text(inOneLine(text))
    , m_width(static_cast<int>(std::ceil(widthOf(m_text))))
{
}

void CardLine::draw(QPainter& painter, const QRect& area) const
{
    const CardFont& card = cardFont();
    const bool fits = m_width <= area.width();
    painter.setFont(card.font);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setClipRect(area);
    painter.drawText(QPointF(area.left(), area.top() + qRound(card.metrics.ascent())),
        fits ? m_text : elided(m_text, area.width()));
}

} // namespace attachstore
