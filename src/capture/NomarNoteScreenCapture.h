#pragma once

#include "capture/SaveImageDialog.h"
#include "capture/ScreenCaptureDlgBase.h"

class IScreenCaptureNotify;

/// The commands of the toolbar and of the context menu.
enum CaptureCommand : int {
    captureSaveAs = 1001, ///< Asks for a file; what is selected is written there.
    captureExit = 1002, ///< Ends the capture with no result.
    captureComplete = 1003, ///< What is selected goes to the receiver of the capture.
    captureCopy = 1004, ///< What is selected goes to the clipboard.
    captureNothing = 1005, ///< Does nothing.
};

/// The screen capture of the note editor: the capture dialog with its four buttons, its cursors,
/// its context menu and its results. A double click into the selection completes it.
///
/// Every result ends the dialog, also when it came to nothing: a clipboard or a file that cannot be
/// written shows no message. So does 退出, in the toolbar and in the menu, with no result at all.
class NomarNoteScreenCapture : public ScreenCaptureDlgBase {
public:
    using ScreenCaptureDlgBase::ScreenCaptureDlgBase;

    /// Receives a completed capture while the dialog is still on the screen: the selected pixels of
    /// the screen, or a null picture if the selection is empty. Not owned; null for nobody.
    IScreenCaptureNotify* notify = nullptr;
    /// Where to ask for a file, if not in the desktop's dialog. Not owned.
    SaveImageDialog* saveDialog = nullptr;

protected:
    void InitToolbar() override;
    void InitCursors() override;
    void OnSelectionRightClick(const QPoint& point) override;
    void OnSelectionDoubleClick(const QPoint& point) override;
    /// A button of the toolbar or an item of the menu. Other numbers do nothing, and none does
    /// anything once the capture has ended.
    void OnCommand(int id);

private:
    QImage SelectionBitmap() const;
    void OnCompleteCommand();
    void OnCopyCommand();
    void OnSaveAsCommand();
};
