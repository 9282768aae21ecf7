#include "NoteDelegate.h"

#include "NoteList.h"

#include <QPainter>

namespace {

constexpr int gap = 4, padding = 10;

/// Writes one line, cut to its room, and returns its width.
int drawLine(QPainter* painter, const QRect& room, const QString& text, Qt::Alignment side)
{
    const QString shown =
        painter->fontMetrics().elidedText(text.simplified(), Qt::ElideRight, room.width());
    painter->drawText(room, int(side) | Qt::TextDontClip, shown); // Chinese is taller
    return painter->fontMetrics().horizontalAdvance(shown);
}

} // namespace

void NoteDelegate::paint(
    QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const bool selected = option.state & QStyle::State_Selected;
    const bool hovered = option.state & QStyle::State_MouseOver;
    QColor ground = option.palette.color(selected ? QPalette::Highlight : QPalette::Text);
    ground.setAlphaF(selected ? 1.0F : hovered ? 0.06F : 0.0F);
    const QRect card = option.rect.adjusted(6, 2, -6, -2);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ground);
    painter->drawRoundedRect(card, 7, 7);

    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const int height = option.fontMetrics.height();
    const QRect line(
        card.x() + padding, card.y() + padding - 2, card.width() - 2 * padding, height);
    painter->setOpacity(0.65);
    const int day =
        drawLine(painter, line, index.data(NoteList::DayRole).toString(), Qt::AlignRight);
    const QString excerpt = index.data(NoteList::ExcerptRole).toString();
    drawLine(painter, line.translated(0, height + gap), excerpt, Qt::AlignLeft);
    painter->setOpacity(1);
    QFont bold = option.font;
    bold.setWeight(QFont::DemiBold);
    painter->setFont(bold);
    drawLine(
        painter, line.adjusted(0, 0, -day - padding, 0), index.data().toString(), Qt::AlignLeft);
    painter->restore();
}

QSize NoteDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {0, option.fontMetrics.height() * 2 + gap + 2 * padding};
}
