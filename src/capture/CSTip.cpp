#include "capture/CSTip.h"

#include "capture/CaptureOwner.h"
#include "support/CellFont.h"

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

/// The desktop's face.
QFont tipFont()
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
    SetCellHeight(font, cellHeight);
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
    , m_font(tipFont())
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
    PointerAt(mapToParent(event->position().toPoint()));
    // A pressed button keeps the events coming after the tip has gone from under the pointer.
    if (rect().contains(event->position().toPoint()))
        Swap();
}

void CSTip::Compose()
{
    const qreal ratio = devicePixelRatioF();
    if (m_memory.size() != size() * ratio || m_memory.devicePixelRatio() != ratio) {
        m_memory = QImage(size() * ratio, QImage::Format_RGB32);
        m_memory.setDevicePixelRatio(ratio);
    }
    if (m_memory.isNull())
        return;
    {
        QPainter painter(&m_memory);
        DrawTip(painter, {0, 0, width(), height()});
    }
    m_memory.swap(m_painted);
    m_isComposed = true;
}

void CSTip::paintEvent(QPaintEvent*)
{
    if (!m_isComposed)
        Compose();
    m_isComposed = false;
    QPainter(this).drawImage(0, 0, m_painted);
}

void CSTip::DrawTip(QPainter& painter, const CaptureRect& client)
{
    const CaptureRect frame = client.Inflated(-2);
    const CaptureRect title =
        CaptureRect{frame.left, frame.top, frame.right, frame.top + titleHeight}.Inflated(-1);
    DrawGround(painter, client, title);
    painter.setFont(m_font);
    drawLine(painter, {title.left + textIndent, title.top, title.right, title.bottom}, titleColour,
        m_title);
    const CaptureRect bar{frame.left, frame.bottom - barHeight, frame.right, frame.bottom};
    DrawInformation(painter, bar);
    DrawMagnifier(painter, {frame.left, title.bottom, frame.right, bar.top});
}

void CSTip::DrawGround(QPainter& painter, const CaptureRect& client, const CaptureRect& title)
{
    const QRect area = client.ToQRect();
    const qreal ratio = painter.device()->devicePixelRatioF();
    if (m_ground.size() != area.size() * ratio || m_ground.devicePixelRatio() != ratio) {
        m_ground = QImage(area.size() * ratio, QImage::Format_RGB32);
        m_ground.setDevicePixelRatio(ratio);
        if (m_ground.isNull())
            return;
        QPainter ground(&m_ground);
        ground.translate(-area.topLeft());
        ground.fillRect(area, groundColour);
        const CaptureRect frame = client.Inflated(-2);
        ground.fillRect(frame.ToQRect(), frameColour);
        ground.fillRect(frame.Inflated(-1).ToQRect(), Qt::white);
        for (int i = 0; i < title.Height(); ++i) {
            const int grey = 252 - 40 * i / title.Height();
            ground.fillRect(title.left, title.top + i, title.Width(), 1, QColor(grey, grey, grey));
        }
    }
    painter.drawImage(area.topLeft(), m_ground);
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
    // In pieces: from 64 rows on the engine shares the work out among threads that it has to wake.
    constexpr int piece = 32;
    for (int top = area.top + 1; top < area.bottom - 1; top += piece)
        painter.fillRect(
            x - half, top, crossWidth, std::min(piece, area.bottom - 1 - top), crossColour);
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
    return m_pointer ? *m_pointer : parentWidget()->mapFromGlobal(QCursor::pos());
}

QColor CSTip::PixelAt(const QPoint& point) const
{
    const QImage& snapshot = m_owner->Snapshot();
    const QPoint pixel(int(std::floor(point.x() * snapshot.devicePixelRatio())),
        int(std::floor(point.y() * snapshot.devicePixelRatio())));
    return snapshot.valid(pixel) ? QColor(snapshot.pixel(pixel)) : QColor(Qt::white);
}
