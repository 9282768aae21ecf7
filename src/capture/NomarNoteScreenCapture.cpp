#include "capture/NomarNoteScreenCapture.h"

#include "capture/CSToolbar.h"
#include "capture/CursorFile.h"
#include "capture/IScreenCaptureNotify.h"
#include "capture/IconFile.h"
#include "capture/SaveImageByExtension.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace {

struct Button {
    const char* icon;
    const char* tooltip;
    CaptureCommand command;
};

constexpr std::array<Button, 4> buttons{{
    {"copy.ico", "复制截图", captureCopy},
    {"saveas.ico", "另存为", captureSaveAs},
    {"exit.ico", "退出", captureExit},
    {"complete.ico", "完成截图", captureComplete},
}};

struct Item {
    const char* text;
    CaptureCommand command;
};

constexpr std::array<Item, 4> items{{
    {"退出", captureExit},
    {"另存为", captureSaveAs},
    {"复制截图", captureCopy},
    {"完成截图", captureComplete},
}};

struct CursorOfHits {
    const char* file;
    std::array<TrackerHit, 2> hits;
};

constexpr std::array<CursorOfHits, 5> trackerCursors{{
    {"size2_r.cur", {hitTopLeft, hitBottomRight}},
    {"size1_r.cur", {hitTopRight, hitBottomLeft}},
    {"size4_r.cur", {hitTop, hitBottom}},
    {"size3_r.cur", {hitRight, hitLeft}},
    {"move_r.cur", {hitMiddle, hitMiddle}},
}};

constexpr const char* defaultCursor = "arrow_m.cur";

} // namespace

void NomarNoteScreenCapture::InitToolbar()
{
    for (const Button& button : buttons) {
        Toolbar().AddButton(LoadIconFile(QString::fromLatin1(button.icon)),
            QString::fromUtf8(button.tooltip), button.command);
    }
    connect(&Toolbar(), &CSToolbar::Command, this, [this](int id) { OnCommand(id); });
}

void NomarNoteScreenCapture::InitCursors()
{
    std::array<QCursor, hitMiddle + 1> byHit;
    bool isComplete = true;
    for (const CursorOfHits& cursor : trackerCursors) {
        const std::optional<QCursor> loaded = LoadCursorFile(QString::fromLatin1(cursor.file));
        isComplete = isComplete && loaded;
        for (const TrackerHit hit : cursor.hits)
            byHit[std::size_t(hit)] = loaded.value_or(QCursor());
    }
    if (isComplete)
        CMyTracker::SetSharedCursors(byHit);
    if (const auto loaded = LoadCursorFile(QString::fromLatin1(defaultCursor)))
        SetDefaultCursor(*loaded);
}

void NomarNoteScreenCapture::OnSelectionRightClick(const QPoint& point)
{
    QMenu menu(this);
    for (const Item& item : items)
        menu.addAction(QString::fromUtf8(item.text))->setData(int(item.command));
    if (const QAction* chosen = menu.exec(mapToGlobal(point)))
        OnCommand(chosen->data().toInt());
}

void NomarNoteScreenCapture::OnSelectionDoubleClick(const QPoint&)
{
    OnCommand(captureComplete);
}

void NomarNoteScreenCapture::OnCommand(int id)
{
    // The menu may outlast the capture, and a second click may come with the one that ended it.
    if (!isVisible())
        return;
    switch (id) {
    case captureSaveAs:
        return OnSaveAsCommand();
    case captureExit:
        return OnCancel();
    case captureComplete:
        return OnCompleteCommand();
    case captureCopy:
        return OnCopyCommand();
    default:
        return;
    }
}

QImage NomarNoteScreenCapture::SelectionBitmap() const
{
    const CaptureRect selection = Selection().Normalised();
    return selection.IsEmpty() ? QImage() : CopySelectionBitmap(selection);
}

void NomarNoteScreenCapture::OnCompleteCommand()
{
    const QImage bitmap = SelectionBitmap();
    if (notify)
        notify->OnScreenCaptureComplet(bitmap);
    OnCancel();
}

void NomarNoteScreenCapture::OnCopyCommand()
{
    const QImage bitmap = SelectionBitmap();
    QClipboard* clipboard = QGuiApplication::clipboard();
    // A null picture is what then lies on the clipboard: none.
    if (bitmap.isNull())
        clipboard->clear();
    else
        clipboard->setImage(bitmap);
    OnCancel();
}

void NomarNoteScreenCapture::OnSaveAsCommand()
{
    DesktopSaveImageDialog desktop;
    QString path;
    if (!(saveDialog ? *saveDialog : desktop).choose(path))
        return;
    // The capture may have ended under the dialog, with its screen.
    if (!isVisible())
        return;
    SaveImageByExtension(SelectionBitmap(), path);
    OnCancel();
}
