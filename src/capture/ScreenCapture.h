#pragma once

#include <QImage>

class Boxes;
class IScreenCaptureNotify;
class QWidget;

/// Where the picture of the screen comes from: the desktop, or a test.
class ScreenSource {
public:
    virtual ~ScreenSource();
    /// A picture of the primary screen in device pixels; null as `GrabPrimaryScreen` gives it.
    virtual QImage grab(QString* error) = 0;
};

/// The screen as it is: `ScreenGrab.h`.
class DesktopScreen : public ScreenSource {
public:
    QImage grab(QString* error) override;
};

/// Runs a screen capture and returns when it has ended: 1, and `notify` has been called if it was
/// completed. `mainWindow`, if not null, steps aside before the picture is taken and is back
/// afterwards, however the capture has ended.
///
/// 0 and no dialog if there is no picture, which is told to the user in a box unless the user
/// refused it; and, quietly, if a capture runs in this process already.
///
/// Nothing is owned. All but `mainWindow` must outlive the capture, in which anything may happen.
int RunScreenCapture(
    ScreenSource& screen, Boxes& boxes, QWidget* mainWindow, IScreenCaptureNotify& notify);
