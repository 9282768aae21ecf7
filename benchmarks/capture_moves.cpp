// One move of the mouse while a selection is drawn.

#include "Figure.h"

#include "capture/CSTip.h"
#include "capture/NomarNoteScreenCapture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>

#include <cstring>
#include <stdexcept>

namespace {

using namespace bench;

constexpr QSize kFullHd(1920, 1080), kUltraHd(3840, 2160);
constexpr int kMoves = 300;
constexpr int kRoundsOfMoves = 15;
constexpr QPoint kPress(400, 300);
constexpr QPoint kBegin(404, 304); ///< Where the selection begins.

/// There and back, always by the same step.
QPoint moveTo(int move)
{
    const int at = move % kMoves, step = at < kMoves / 2 ? at : kMoves - at;
    return {700 + 4 * step, 500 + 2 * step};
}

QImage pictureOf(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x, y, x ^ y));
    }
    return image;
}

void send(QWidget& window, QEvent::Type type, const QPoint& at, Qt::MouseButton button)
{
    QMouseEvent event(type, at, at, button, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
}

/// Ours: the dialog, drawing.
class Drawing {
public:
    explicit Drawing(const QSize& size)
        : m_capture(pictureOf(size))
    {
        if (!m_capture.Create(nullptr) || !QTest::qWaitForWindowExposed(&m_capture))
            throw std::runtime_error("the capture could not be opened");
        send(m_capture, QEvent::MouseButtonPress, kPress, Qt::LeftButton);
    }
    /// The tip repaints itself whole on each move, whatever the selection does.
    void showTip(bool shown) { m_capture.findChild<CSTip*>()->setVisible(shown); }

    void move() { send(m_capture, QEvent::MouseMove, moveTo(m_move++), Qt::NoButton); }

private:
    NomarNoteScreenCapture m_capture;
    int m_move = 0;
};

/// The least that a move can paint: of a frame in memory, those pixels alone that it changes, out
/// of a snapshot that has been dimmed before.
class ChangedPixels {
public:
    explicit ChangedPixels(const QSize& size)
        : m_snapshot(pictureOf(size))
        , m_dimmed(m_snapshot)
        , m_frame(m_snapshot)
    {
        QPainter(&m_dimmed).fillRect(m_dimmed.rect(), QColor(0, 0, 0, 15));
    }

    void move()
    {
        const QRect before = m_selection;
        m_selection = QRect(kBegin, moveTo(m_move++) - QPoint(1, 1));
        QRegion changed = QRegion(before) ^ QRegion(m_selection);
        changed += frameOf(before);
        changed += frameOf(m_selection);
        QPainter painter(&m_frame);
        for (const QRect& part : changed) {
            for (const QRect& outside : QRegion(part) - m_selection)
                painter.drawImage(outside.topLeft(), m_dimmed, outside);
            const QRect inside = part & m_selection;
            if (!inside.isEmpty())
                painter.drawImage(inside.topLeft(), m_snapshot, inside);
        }
        drawFrame(painter);
    }

private:
    static constexpr int kHandle = 4;

    static QRegion frameOf(const QRect& rect)
    {
        return QRegion(rect.adjusted(-kHandle, -kHandle, kHandle, kHandle))
            - rect.adjusted(kHandle, kHandle, -kHandle, -kHandle);
    }
    void drawFrame(QPainter& painter) const
    {
        constexpr QColor colour(10, 100, 130);
        const QRect line = m_selection.adjusted(-1, -1, 1, 1);
        for (const QRect& band : QRegion(line) - m_selection)
            painter.fillRect(band, colour);
        for (const int x : {line.left(), line.center().x(), line.right()}) {
            for (const int y : {line.top(), line.center().y(), line.bottom()}) {
                if (x != line.center().x() || y != line.center().y())
                    painter.fillRect(x - 2, y - 2, kHandle, kHandle, colour);
            }
        }
    }

    QImage m_snapshot, m_dimmed, m_frame;
    QRect m_selection{kBegin, QSize(kHandle, kHandle)};
    int m_move = 0;
};

Side movesOf(Drawing& drawing, bool tip)
{
    const Side moves = timedPerCall(kMoves, [&drawing] { drawing.move(); });
    return [&drawing, moves, tip] {
        drawing.showTip(tip);
        return moves();
    };
}

Figure againstFrame(const std::string& size, Drawing& drawing, const QSize& frame)
{
    const QImage from = pictureOf(frame);
    QImage to = from.copy();
    return atMost("a move while drawing, " + size + ", against copying the frame", 0.2,
        movesOf(drawing, false),
        timedPerCall(20, [&] { std::memcpy(to.bits(), from.constBits(), from.sizeInBytes()); }),
        kRoundsOfMoves);
}

Figure againstChangedPixels(const std::string& size, Drawing& drawing, const QSize& frame)
{
    ChangedPixels floor(frame);
    return atMost("a move while drawing, " + size + ", against painting what changes", 1.5,
        movesOf(drawing, false), timedPerCall(kMoves, [&] { floor.move(); }), kRoundsOfMoves);
}

const Registration moves{
    "capture, moves", [] {
        Drawing fullHd(kFullHd), ultraHd(kUltraHd);
        return std::vector<Figure>{againstFrame("1920 by 1080", fullHd, kFullHd),
            againstFrame("3840 by 2160", ultraHd, kUltraHd),
            againstChangedPixels("1920 by 1080", fullHd, kFullHd),
            againstChangedPixels("3840 by 2160", ultraHd, kUltraHd),
            atMost("the same moves, tip included, at 3840 by 2160 against 1920 by 1080", 1.3,
                movesOf(ultraHd, true), movesOf(fullHd, true), kRoundsOfMoves)};
    }};

} // namespace
