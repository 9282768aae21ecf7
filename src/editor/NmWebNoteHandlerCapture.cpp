// The handler's screen capture.

#include "editor/NmWebNoteHandler_p.h"

#include "attachstore/ImageFile.h"
#include "capture/ScreenCapture.h"
#include "platform/IEWebBrowser.h"

namespace {

/// Hands the picture on if the note is still the one in which the capture was begun: while it runs
/// the host may open another one, or end the control.
class Receiver : public IScreenCaptureNotify {
public:
    Receiver(IScreenCaptureNotify& handler, const SameNote& same)
        : m_handler(handler)
        , m_same(same)
    {
    }

    void OnScreenCaptureComplet(const QImage& bitmap) override
    {
        if (m_same)
            m_handler.OnScreenCaptureComplet(bitmap);
    }

private:
    IScreenCaptureNotify& m_handler;
    const SameNote& m_same;
};

} // namespace

void NmWebNoteHandler::OnScreenCapture(int hideMainWnd)
{
    const SameNote same = d->adder.sameNote();
    Receiver receiver(*this, same);
    // Not the handler's own, which may be gone by the end.
    DesktopScreen screen;
    DesktopBoxes boxes;
    RunScreenCapture(
        screen, boxes, hideMainWnd && d->browser ? d->browser->window() : nullptr, receiver);
}

void NmWebNoteHandler::OnScreenCaptureComplet(const QImage& bitmap)
{
    // Kept: without a picture the empty list goes on, whose size query can fail aloud; and the
    // temporary file is left where it is.
    std::vector<DropFileInfo> files;
    attachstore::SaveImage(bitmap, files);
    AddDropFileToEditor(files);
}
