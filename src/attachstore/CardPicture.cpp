#include "attachstore/CardPicture.h"

#include "attachstore/CardLine.h"

#include <QPainter>

#include <algorithm>

namespace attachstore {
namespace {

constexpr int kHeight = 48;
constexpr int kWidest = 800;
constexpr QRect kIcon(6, 8, 32, 32);
constexpr int kTextLeft = kIcon.x() + kIcon.width() + 12;
constexpr int kTextRightMargin = 8;
constexpr int kNameTop = 8;
constexpr int kInfoTop = 26;
constexpr int kLineHeight = 14;

constexpr QColor kFrameColor(200, 200, 200);
constexpr QColor kTextColor(0x44, 0x44, 0x44);

// Rounded by an ellipse of 3 by 3 pixels: all of the edge but the corner pixels.
void drawFrame(QPainter& painter, int width)
{
    const int right = width - 1;
    const int bottom = kHeight - 1;
    painter.fillRect(1, 0, right - 1, 1, kFrameColor);
    painter.fillRect(1, bottom, right - 1, 1, kFrameColor);
    painter.fillRect(0, 1, 1, bottom - 1, kFrameColor);
    painter.fillRect(right, 1, 1, bottom - 1, kFrameColor);
}

} // namespace

QImage PaintCard(const QImage& icon, const QString& fileName, const QString& fileInfo)
{
    const CardLine name(fileName);
    const CardLine info(fileInfo);
    const int textWidth =
        std::min(std::max(name.width(), info.width()), kWidest - kTextLeft - kTextRightMargin);
    const int width = kTextLeft + textWidth + kTextRightMargin;

    QImage card(width, kHeight, QImage::Format_RGB32);
    if (card.isNull())
        return card;
    card.fill(Qt::white);
    QPainter painter(&card);
    drawFrame(painter, width);
    painter.drawImage(kIcon.topLeft(), icon, QRect(QPoint(), kIcon.size()));
    painter.setPen(kTextColor);
    name.draw(painter, QRect(kTextLeft, kNameTop, textWidth, kLineHeight));
    info.draw(painter, QRect(kTextLeft, kInfoTop, textWidth, kLineHeight));
    return card;
}

} // namespace attachstore
