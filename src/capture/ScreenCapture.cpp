#include "capture/ScreenCapture.h"

#include "capture/NomarNoteScreenCapture.h"
#include "capture/ScreenGrab.h"
#include "capture/WindowAside.h"
#include "platform/Boxes.h"

#include <QScopedValueRollback>

ScreenSource::~ScreenSource() = default;

QImage DesktopScreen::grab(QString* error)
{
    return capture::GrabPrimaryScreen(error);
}

namespace {

/// False and why if there is no picture.
bool capturedWith(
    ScreenSource& screen, QWidget* mainWindow, IScreenCaptureNotify& notify, QString* error)
{
    const WindowAside aside(mainWindow);
    const QImage picture = screen.grab(error);
    if (picture.isNull())
        return false;
    NomarNoteScreenCapture dialog(picture);
    dialog.notify = &notify;
    dialog.DoModal();
    return true;
}

} // namespace

int RunScreenCapture(
    ScreenSource& screen, Boxes& boxes, QWidget* mainWindow, IScreenCaptureNotify& notify)
{
    // There is one screen for all controls of the process.
    static bool isRunning = false;
    if (isRunning)
        return 0;
    const QScopedValueRollback running(isRunning, true);
    QString error;
    if (capturedWith(screen, mainWindow, notify, &error))
        return 1;
    // Over the window, which is back.
    if (!error.isEmpty())
        boxes.show(error);
    return 0;
}
