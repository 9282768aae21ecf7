#include "capture/CSTip.h"

#include "capture/CaptureOwner.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int tipWidth = 260;
constexpr int tipHeight = 200;
constexpr int margin = 10; ///< From the screen's edges.

constexpr int titleHeight = 24;
constexpr int barHeight = 31;
constexpr int lineHeight = 14;
constexpr int textIndent = 4;
constexpr int cellHeight = 12;
constexpr int crossWidth = 4;

constexpr QColor groundColour(252, 252, 252);
constexpr QColor frameColour(200, 200, 200);
constexpr QColor titleColour(68, 68, 68);
constexpr QColor barColour(55, 173, 223);
constexpr QColor pixelTextColour(250, 250, 250);
constexpr QColor sizeTextColour(255, 255, 132);
constexpr QColor crossColour(250, 0, 0);

/// The desktop's face at the size at which ascent and descent come nearest to the cell's height.
QFont tipFont()
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
    constexpr int large = 1000;
    font.setPixelSize(large);
    const QFontMetricsF metrics(font);
    const qreal cell = (metrics.ascent() + metrics.descent()) / large;
    font.setPixelSize(cell > 0 ? std::max(1, qRound(cellHeight / cell)) : cellHeight);
    return font;
}

/// One line from the left, in the middle of the height, cut with an ellipsis.
void drawLine(QPainter& painter, const CaptureRect& area, const QColor& colour, const QString& text)
{
    const QRect box = area.ToQRect();
    painter.setPen(colour);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(text, Qt::ElideRight, box.width()));
}

} // namespace

CSTip::CSTip(CaptureOwner* owner, QWidget* parent)
    : QWidget(parent)
    , m_title(QStringLiteral("截图"))
    , m_owner(owner)
{
    setGeometry(0, 0, 0, 0);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
}

void CSTip::Place()
{
    const int left = m_left ? margin : m_owner->ScreenSize().width() - margin - tipWidth;
    setGeometry(left, margin, tipWidth, tipHeight);
}

void CSTip::Swap()
{
    m_left = !m_left;
    Place();
}

void CSTip::mouseMoveEvent(QMouseEvent* event)
{
    // A pressed button keeps the events coming after the tip has gone from under the pointer.
    if (rect().contains(event->position().toPoint()))
        Swap();
}

void CSTip::paintEvent(QPaintEvent*)
{
    const qreal ratio = devicePixelRatioF();
    QImage memory(size() * ratio, QImage::Format_RGB32);
    if (memory.isNull())
        return;
    memory.setDevicePixelRatio(ratio);
    {
        QPainter painter(&memory);
        DrawTip(painter, {0, 0, width(), height()});
    }
    QPainter(this).drawImage(0, 0, memory);
    m_painted = memory;
}

void CSTip::DrawTip(QPainter& painter, const CaptureRect& client)
{
    painter.fillRect(client.ToQRect(), groundColour);
    const CaptureRect frame = client.Inflated(-2);
    painter.fillRect(frame.ToQRect(), frameColour);
    painter.fillRect(frame.Inflated(-1).ToQRect(), Qt::white);

    painter.setFont(tipFont());
    const CaptureRect title =
        CaptureRect{frame.left, frame.top, frame.right, frame.top + titleHeight}.Inflated(-1);
    DrawTitle(painter, title);
    const CaptureRect bar{frame.left, frame.bottom - barHeight, frame.right, frame.bottom};
    DrawInformation(painter, bar);
    DrawMagnifier(painter, {frame.left, title.bottom, frame.right, bar.top});
}

void CSTip::DrawTitle(QPainter& painter, const CaptureRect& bar) const
{
    for (int i = 0; i < bar.Height(); ++i) {
        const int grey = 252 - 40 * i / bar.Height();
        painter.fillRect(bar.left, bar.top + i, bar.Width(), 1, QColor(grey, grey, grey));
    }
    drawLine(
        painter, {bar.left + textIndent, bar.top, bar.right, bar.bottom}, titleColour, m_title);
}

void CSTip::DrawInformation(QPainter& painter, const CaptureRect& bar) const
{
    painter.fillRect(bar.ToQRect(), barColour);
    CaptureRect line{bar.left + textIndent, bar.top, bar.right, bar.top + lineHeight};
    const QColor pixel = PixelAt(Cursor());
    // Kept: the third number repeats green, and users quote the line as it is.
    drawLine(painter, line, pixelTextColour,
        QStringLiteral("像素RGB值：(%1,%2,%3)")
            .arg(pixel.red())
            .arg(pixel.green())
            .arg(pixel.green()));
    line.top += lineHeight;
    line.bottom += lineHeight;
    const CaptureRect selection = m_owner->Selection().Normalised();
    drawLine(painter, line, sizeTextColour,
        QStringLiteral("矩形大小：(%1,%2)").arg(selection.Width()).arg(selection.Height()));
}

void CSTip::DrawMagnifier(QPainter& painter, const CaptureRect& area) const
{
    const int halfWidth = area.Width() / 2;
    const int halfHeight = area.Height() / 2;
    const QPoint cursor = Cursor();
    const QImage source = Shown({cursor.x() - halfWidth / 2, cursor.y() - halfHeight / 2,
                                    2 * (halfWidth / 2), 2 * (halfHeight / 2)},
        painter.device()->devicePixelRatioF());
    painter.drawImage(area.ToQRect(), source, source.rect());

    const int x = area.left + halfWidth;
    const int y = area.top + halfHeight;
    constexpr int half = crossWidth / 2;
    // Each pixel keeps only what the pen has: nothing of green and blue, of red what 250 has.
    painter.setCompositionMode(QPainter::RasterOp_SourceAndDestination);
    painter.fillRect(area.left + 1, y - half, area.Width() - 2, crossWidth, crossColour);
    painter.fillRect(x - half, area.top + 1, crossWidth, area.Height() - 2, crossColour);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.fillRect(x - 2, y - 2, 4, 4, Qt::white);
}

QImage CSTip::Shown(const QRect& area, qreal ratio) const
{
    QImage image(area.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.translate(-area.topLeft());
    m_owner->PaintScene(painter, area);
    for (QObject* child : parentWidget()->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (!widget || widget->isWindow() || !widget->isVisible()
            || !widget->geometry().intersects(area))
            continue;
        // Painting itself it cannot paint itself again: it is shown as it was.
        if (widget == this)
            painter.drawImage(pos(), m_painted);
        else
            widget->render(&painter, widget->pos());
    }
    return image;
}

QPoint CSTip::Cursor() const
{
    return parentWidget()->mapFromGlobal(QCursor::pos());
}

QColor CSTip::PixelAt(const QPoint& point) const
{
    const QImage& snapshot = m_owner->Snapshot();
    const QPoint pixel(int(std::floor(point.x() * snapshot.devicePixelRatio())),
        int(std::floor(point.y() * snapshot.devicePixelRatio())));
    return snapshot.valid(pixel) ? QColor(snapshot.pixel(pixel)) : QColor(Qt::white);
}
