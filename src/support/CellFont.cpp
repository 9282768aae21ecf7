#include "support/CellFont.h"

#include <QFontMetricsF>

#include <algorithm>

void SetCellHeight(QFont& font, int cellHeight)
{
    constexpr int large = 1000;
    font.setPixelSize(large);
    const QFontMetricsF metrics(font);
    const qreal cell = (metrics.ascent() + metrics.descent()) / large;
    font.setPixelSize(cell > 0 ? std::max(1, qRound(cellHeight / cell)) : cellHeight);
}
