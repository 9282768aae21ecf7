#include "capture/ScreenCapture.h"

#include "capture/NomarNoteScreenCapture.h"
#include "capture/ScreenGrab.h"
#include "capture/WindowAside.h"

#include <QScopedValueRollback>

ScreenSource::~ScreenSource() = default;

QImage DesktopScreen::grab(QString* error)
{
    return capture::GrabPrimaryScreen(error);
}

int RunScreenCapture(
    ScreenSource& screen, QWidget* mainWindow, IScreenCaptureNotify& notify, QString* error)
{
    // There is one screen for all controls of the process.
    static bool isRunning = false;
    error->clear();
    if (isRunning)
        return 0;
    const QScopedValueRollback running(isRunning, true);
    const WindowAside aside(mainWindow);
    const QImage picture = screen.grab(error);
    if (picture.isNull())
        return 0;
    NomarNoteScreenCapture dialog(picture);
    dialog.notify = &notify;
    dialog.DoModal();
    return 1;
}
