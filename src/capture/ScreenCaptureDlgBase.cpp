#include "capture/ScreenCaptureDlgBase.h"

#include "capture/CSTip.h"
#include "capture/CSToolbar.h"
#include "capture/ScreenGrab.h"
#include "capture/ScreenPixels.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>

#include <cmath>

namespace {

constexpr quint32 captureStyle = 81; // solidLine, resizeOutside and a bit of resizeMiddle
constexpr QColor captureColour(10, 100, 130);

bool IsWhole(qreal ratio)
{
    return ratio == std::floor(ratio);
}

QSize SizeOf(const QImage& snapshot)
{
    if (!snapshot.isNull())
        return snapshot.deviceIndependentSize().toSize();
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->size() : QSize();
}

} // namespace

ScreenCaptureDlgBase::ScreenCaptureDlgBase(QString* error)
    : ScreenCaptureDlgBase(capture::GrabPrimaryScreen(error))
{
}

ScreenCaptureDlgBase::ScreenCaptureDlgBase(const QImage& snapshot)
    : m_snapshot(snapshot)
    , m_screen(SizeOf(snapshot))
{
    if (m_snapshot.format() != QImage::Format_RGB32)
        m_snapshot.convertTo(QImage::Format_RGB32);
    m_tracker.style = captureStyle;
    m_tracker.colour = captureColour;
    m_tracker.UpdatePens();
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    // The host's main window may be hidden meanwhile, and then this is the last one.
    setAttribute(Qt::WA_QuitOnClose, false);
    setMouseTracking(true);
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        connect(screen, &QScreen::geometryChanged, this, &ScreenCaptureDlgBase::EndIfShown);
        connect(qApp, &QGuiApplication::screenRemoved, this, [this, screen](QScreen* removed) {
            if (removed == screen)
                EndIfShown();
        });
    }
}

ScreenCaptureDlgBase::~ScreenCaptureDlgBase() = default;

void ScreenCaptureDlgBase::InitToolbar() { }
void ScreenCaptureDlgBase::InitCursors() { }
void ScreenCaptureDlgBase::OnSelectionRightClick(const QPoint&) { }
void ScreenCaptureDlgBase::OnSelectionDoubleClick(const QPoint&) { }

int ScreenCaptureDlgBase::DoModal()
{
    if (m_snapshot.isNull() || isVisible() || !OnInitDialog())
        return -1;
    return exec();
}

bool ScreenCaptureDlgBase::Create(QWidget* parent)
{
    if (m_snapshot.isNull() || isVisible())
        return false;
    setParent(parent, windowFlags());
    if (!OnInitDialog())
        return false;
    show();
    return true;
}

bool ScreenCaptureDlgBase::OnInitDialog()
{
    // Another round with the same picture begins with nothing selected.
    delete m_tip;
    delete m_toolbar;
    m_has = m_dragging = false;
    m_tracker.rect = {};

    m_tip = new CSTip(this, this);
    m_tip->Place();
    m_toolbar = new CSToolbar(this);
    InitToolbar();
    InitCursors();
    setCursor(DefaultCursor());
    for (QWidget* child : {static_cast<QWidget*>(m_tip), static_cast<QWidget*>(m_toolbar)})
        child->setCursor(cursor());

    QScreen* screen = QGuiApplication::primaryScreen();
    setScreen(screen);
    setGeometry(QRect(screen->geometry().topLeft(), m_screen));
    // What lets a window cover panels too, and be placed at all where the desktop places windows.
    // Such a window is as large as the screen, whatever the picture is.
    setWindowState(screen->size() == m_screen ? Qt::WindowFullScreen : Qt::WindowNoState);
    return true;
}

void ScreenCaptureDlgBase::OnCancel()
{
    reject();
}

void ScreenCaptureDlgBase::OnOK()
{
    accept();
}

void ScreenCaptureDlgBase::EndIfShown()
{
    if (isVisible())
        OnCancel();
}

void ScreenCaptureDlgBase::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    raise();
    activateWindow();
}

ScreenCaptureDlgBase::Shown ScreenCaptureDlgBase::ShownNow() const
{
    Shown shown;
    shown.has = m_has;
    if (m_has)
        shown.rect = m_tracker.rect.Normalised();
    return shown;
}

// What two selections have in common looks the same: the inside that they share, and the border of
// a side that did not move.
QRegion ScreenCaptureDlgBase::Changed(const Shown& from, const Shown& to) const
{
    if (from == to)
        return {};
    // How far a handle reaches, out of the rectangle and into it; the line lies in between.
    const int reach = m_tracker.sizeHandle / 2;
    const auto outer = [&](const Shown& shown) {
        return shown.has ? QRegion(shown.rect.Inflated(1).ToQRect()) : QRegion();
    };
    const auto bands = [&](const Shown& shown, const Shown& other) -> QRegion {
        if (!shown.has)
            return {};
        const CaptureRect& r = shown.rect;
        const QRect all = r.Inflated(reach).ToQRect();
        const bool isNew = !other.has;
        const int thick = 2 * reach;
        // A side that stays has a handle in its middle, which moves.
        const int x = (r.left + r.right) / 2 - thick, y = (r.top + r.bottom) / 2 - thick;
        const auto side = [&](bool moved, const QRect& whole, const QRect& middle) {
            return isNew || moved ? whole : middle;
        };
        QRegion region;
        region += side(r.left != other.rect.left, {all.x(), all.y(), thick, all.height()},
            {all.x(), y, thick, 2 * thick});
        region += side(r.right != other.rect.right, {r.right - reach, all.y(), thick, all.height()},
            {r.right - reach, y, thick, 2 * thick});
        region += side(r.top != other.rect.top, {all.x(), all.y(), all.width(), thick},
            {x, all.y(), 2 * thick, thick});
        region +=
            side(r.bottom != other.rect.bottom, {all.x(), r.bottom - reach, all.width(), thick},
                {x, r.bottom - reach, 2 * thick, thick});
        return region;
    };
    const QRegion changed = (outer(from) ^ outer(to)) + bands(from, to) + bands(to, from);
    if (IsWhole(devicePixelRatioF()))
        return changed;
    // Where a unit is no whole number of pixels, an edge shares a pixel with its neighbour.
    QRegion grown;
    for (const QRect& rect : changed)
        grown += rect.adjusted(-1, -1, 1, 1);
    return grown;
}

void ScreenCaptureDlgBase::RepaintCaptureArea()
{
    if (const QRegion region = TakeStale(); !region.isEmpty())
        repaint(region);
}

QRegion ScreenCaptureDlgBase::TakeStale()
{
    const Shown now = ShownNow();
    QRegion region = (m_stale + Changed(m_shown, now)) & rect();
    m_shown = now;
    m_stale = QRegion();
    // These are painted above it, and their ground when they move away.
    for (const QWidget* child : {static_cast<QWidget*>(m_tip), static_cast<QWidget*>(m_toolbar)}) {
        if (child)
            region -= child->geometry();
    }
    return region;
}

void ScreenCaptureDlgBase::PaintScene(QPainter& painter, const QRect& area) const
{
    const QRect visible = area & QRect(QPoint(), m_screen);
    if (visible.isEmpty())
        return;
    painter.save();
    painter.setClipRect(visible, Qt::IntersectClip);
    PaintClipped(painter, visible);
    painter.restore();
}

void ScreenCaptureDlgBase::PaintClipped(QPainter& painter, const QRect& clip) const
{
    // An edge that cuts a pixel takes a pixel more.
    const int more = IsWhole(m_snapshot.devicePixelRatio()) ? 0 : 1;
    const auto dim = [&](const QRect& part) {
        DrawDimmedPixels(painter, m_snapshot,
            ScreenPixelsOf(CaptureRect::Of(part), m_snapshot).adjusted(-more, -more, more, more)
                & m_snapshot.rect());
    };
    // What the selection covers is not dimmed first.
    const QRect covered = m_has ? m_tracker.rect.ToQRect() : QRect();
    if (!covered.intersects(clip)) {
        dim(clip);
    } else if (!covered.contains(clip)) {
        for (const QRect& part : QRegion(clip) - covered)
            dim(part);
    }
    if (m_has)
        m_tracker.Draw(painter);
}

void ScreenCaptureDlgBase::paintEvent(QPaintEvent* event)
{
    // The window system asks for a part of the window: the rest shows what was before.
    if (const Shown now = ShownNow(); now != m_shown) {
        m_stale += Changed(m_shown, now);
        m_shown = now;
    }
    QPainter painter(this);
    const QRect screen(QPoint(), m_screen);
    for (const QRect& outside : event->region() - screen)
        painter.fillRect(outside, Qt::black);
    for (const QRect& part : event->region() & screen) {
        // A painter that is clipped to one rectangle copies, and otherwise goes line by line.
        painter.setClipRect(part);
        PaintClipped(painter, part);
    }
}

QImage ScreenCaptureDlgBase::CopySelectionBitmap(const CaptureRect& selection) const
{
    const CaptureRect clipped{std::max(selection.left, 0), std::max(selection.top, 0),
        std::min(selection.right, m_screen.width()), std::min(selection.bottom, m_screen.height())};
    const QRect pixels = ScreenPixelsOf(clipped, m_snapshot);
    if (pixels.isEmpty())
        return {};
    QImage bitmap = m_snapshot.copy(pixels);
    bitmap.setDevicePixelRatio(1);
    return bitmap;
}

void ScreenCaptureDlgBase::OnSelectionRectChanged(const CaptureRect& rectOld)
{
    const CaptureRect before = rectOld.Normalised(), now = m_tracker.rect.Normalised();
    ShowToolbar(before.Width() == now.Width() && before.Height() == now.Height());
}

void ScreenCaptureDlgBase::ShowToolbar(bool show)
{
    m_toolbar->setGeometry(show ? m_toolbar->PlaceFor(m_tracker.rect) : QRect());
}
