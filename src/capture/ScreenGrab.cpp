#include "capture/ScreenGrab.h"

#include "capture/PortalScreenshot.h"
#include "platform/Language.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <cmath>

namespace capture {
namespace {

QImage grabByWindowSystem()
{
    QScreen* const screen = QGuiApplication::primaryScreen();
    QImage image = screen->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(screen->devicePixelRatio());
    return image;
}

/// An X11 server inside of a Wayland session shows only black where other programs are.
bool isNestedServer()
{
    return QGuiApplication::platformName() == u"xcb"
        && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool haveSameProportions(const QSize& a, const QSize& b)
{
    // Rounding to whole pixels costs one pixel at most.
    const qreal height = qreal(a.width()) * b.height() / b.width();
    return std::abs(height - a.height()) <= 1;
}

} // namespace

QImage CutScreen(const QImage& picture, const QRect& screen, const QRect& desktop)
{
    if (picture.isNull() || screen.isEmpty() || desktop.isEmpty())
        return {};
    const bool isScreen = !haveSameProportions(picture.size(), desktop.size())
        && haveSameProportions(picture.size(), screen.size());
    const QRect whole = isScreen ? screen : desktop;
    const qreal ratio = qreal(picture.width()) / whole.width();
    const QRectF part(
        QPointF(screen.topLeft() - whole.topLeft()) * ratio, QSizeF(screen.size()) * ratio);
    // Of a picture in other proportions what there is.
    const QRect there = part.toRect().intersected(picture.rect());
    if (there.isEmpty())
        return {};
    QImage image = there == picture.rect() ? picture : picture.copy(there);
    image = image.convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    return image;
}

QImage GrabByPortal(QString* error, const QString& connection)
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    const PortalScreenshot shot = TakePortalScreenshot(connection);
    QImage image = CutScreen(shot.image, screen->geometry(), screen->virtualGeometry());
    const bool isRefused = shot.outcome == PortalOutcome::Cancelled;
    *error = !image.isNull() || isRefused
        ? QString()
        : InLanguage("The screen cannot be captured: neither the window system nor the desktop's "
                     "screenshot service gives a picture of it.",
            "无法截屏：窗口系统和桌面的截图服务都没有提供屏幕图像。");
    return image;
}

QImage GrabPrimaryScreen(QString* error)
{
    const QImage own = grabByWindowSystem();
    QString fault;
    QImage image = own.isNull() || isNestedServer() ? GrabByPortal(&fault) : own;
    // Better than nothing: a nested server shows its own windows at least.
    if (!own.isNull() && !fault.isEmpty()) {
        image = own;
        fault.clear();
    }
    if (error)
        *error = fault;
    return image;
}

} // namespace capture
