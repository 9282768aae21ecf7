#pragma once

#include <QImage>
#include <QString>

/// A picture of the screen by way of the desktop's portal (interface
/// org.freedesktop.portal.Screenshot of xdg-desktop-portal): for window systems that let no program
/// see the windows of others.
namespace capture {

enum class PortalOutcome {
    Taken,
    Cancelled, ///< The user was asked and said no.
    Failed, ///< There is no portal, it gave no picture, or it did not answer in time.
};

struct PortalScreenshot {
    PortalOutcome outcome = PortalOutcome::Failed;
    QImage image; ///< Of the whole desktop, in device pixels; null unless taken.
};

/// Asks the portal, and waits for its answer with an event loop that leaves out the user's input to
/// this program. Someone may have to answer a question of the desktop's, so there are `patienceMs`
/// for it. The file in which the picture comes is deleted once it has been read; what is no picture
/// stays. `connection` names a connection to a bus that has been made; the default is the
/// session's.
PortalScreenshot TakePortalScreenshot(
    const QString& connection = QString(), int patienceMs = 60'000);

} // namespace capture
