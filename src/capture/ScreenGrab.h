#pragma once

#include <QImage>
#include <QRect>
#include <QString>

namespace capture {

/// A picture of the primary screen as it is now, in device pixels, its device pixel ratio set.
///
/// From the window system where that gives it (X11), else from the desktop's portal
/// (`PortalScreenshot.h`): then events run, all but the user's input, until the desktop has
/// answered, which it may do only after having asked the user.
///
/// Null with a text for the user in `error` if neither gives a picture, null with an empty text
/// if the user refused. `error` may be null.
QImage GrabPrimaryScreen(QString* error);

/// The same by the portal alone; `error` is not null. `connection` names a connection to a bus that
/// has been made; the default is the session's.
QImage GrabByPortal(QString* error, const QString& connection = QString());

/// The part of a picture of the whole desktop that shows one screen, with the device pixel ratio
/// that the picture has. Both rectangles are in the coordinates of the desktop. A picture that has
/// the proportions of the screen and not those of the desktop shows the screen already. Null for a
/// null picture.
QImage CutScreen(const QImage& picture, const QRect& screen, const QRect& desktop);

} // namespace capture
