#include "clipdrag/FileDrag.h"

#include "attachfiles/Adder.h"
#include "bridge/NotePage.h"
#include "bridge/OpenNote.h"
#include "clipdrag/ClipFlavours.h"
#include "clipdrag/DroppedFiles.h"
#include "platform/BrowserNotify.h"
#include "platform/HoverFrame.h"

#include <QCoreApplication>
#include <QTimer>
#include <QWidget>

namespace {

DragOrigin originOf(const DropTarget* base)
{
    return base ? base->Origin() : DragOrigin::OtherProcess;
}

} // namespace

FileDrag::FileDrag(DragState& state, const OpenNote& note, NotePage& page, DropTargetHelper* helper)
    : m_state(state)
    , m_note(note)
    , m_page(page)
    , m_dropHelper(helper)
{
}

DropTargetHelper* FileDrag::helper() const
{
    return m_state.m_dropFileList.empty() ? nullptr : m_dropHelper;
}

int FileDrag::takenAs(int offered) const
{
    if (m_isRefused)
        return Qt::IgnoreAction;
    for (const auto action : {Qt::CopyAction, Qt::LinkAction}) {
        if (offered & action)
            return action;
    }
    return Qt::IgnoreAction;
}

DragFate FileDrag::fateOf(int effect) const
{
    if (m_isRefused)
        return DragFate::ReadOnly;
    return effect == Qt::IgnoreAction ? DragFate::Refused : DragFate::Taken;
}

DRAGE_OP_TYPE FileDrag::PreDrag(const QMimeData& data)
{
    // Kept: the temporary file of an image that was only dragged across is forgotten here, and
    // never deleted before the process ends.
    std::vector<DropFileInfo>& files = m_state.m_dropFileList;
    files.clear();
    clipdrag::GetFileList(data, files);
    if (files.empty())
        clipdrag::GetImage(data, files);
    return files.empty() ? DRAGE_OP_DEFAULT : DRAGE_OP_FILE;
}

long FileDrag::refuse(DropTarget* base, DragFate fate)
{
    m_isRefused = true;
    // What is dragged out of the page itself only passes by.
    if (m_dropHelper && originOf(base) != DragOrigin::ThisBrowser)
        m_dropHelper->DragEnter(m_page.window(), fate);
    return S_FALSE;
}

void FileDrag::endRefusal()
{
    if (m_isRefused && m_dropHelper)
        m_dropHelper->DragLeave();
    m_isRefused = false;
}

long FileDrag::OnDragEnter(
    const QMimeData* data, unsigned keyState, QPoint pt, int* effect, DropTarget* base)
{
    endRefusal();
    // Kept: the kind and the files of the last drag stay, and the events that follow act on them.
    if (m_note.m_readOnly)
        return refuse(base, DragFate::ReadOnly);
    if (clipdrag::HasTooManyFiles(*data)) {
        m_state = {DRAGE_OP_DEFAULT, {}};
        return refuse(base, DragFate::Refused);
    }
    if (originOf(base) == DragOrigin::ThisBrowser) {
        // The engine puts addresses of files on what it drags itself.
        m_state = {DRAGE_OP_DEFAULT, {}};
    } else {
        m_state.m_dragOpType = PreDrag(*data);
    }
    switch (m_state.m_dragOpType) {
    case DRAGE_OP_DEFAULT:
        return base ? base->DragEnter(data, keyState, pt, effect) : S_FALSE;
    case DRAGE_OP_FILE:
        *effect = takenAs(*effect);
        if (helper())
            helper()->DragEnter(m_page.window(), fateOf(*effect));
        return S_OK;
    }
    return S_FALSE;
}

long FileDrag::OnDragOver(unsigned keyState, QPoint pt, int* effect, DropTarget* base)
{
    switch (m_state.m_dragOpType) {
    case DRAGE_OP_DEFAULT:
        return base ? base->DragOver(keyState, pt, effect) : S_FALSE;
    case DRAGE_OP_FILE:
        *effect = takenAs(*effect);
        if (helper())
            helper()->DragOver(fateOf(*effect));
        return S_OK;
    }
    return S_FALSE;
}

long FileDrag::OnDragLeave(DropTarget* base)
{
    endRefusal();
    switch (m_state.m_dragOpType) {
    case DRAGE_OP_DEFAULT:
        return base ? base->DragLeave() : S_FALSE;
    case DRAGE_OP_FILE:
        if (helper())
            helper()->DragLeave();
        return S_OK;
    }
    return S_FALSE;
}

long FileDrag::OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect,
    DropTarget* base, Adder& adder)
{
    const int taken = takenAs(*effect);
    endRefusal();
    switch (m_state.m_dragOpType) {
    case DRAGE_OP_DEFAULT:
        return base ? base->Drop(data, keyState, pt, effect) : S_FALSE;
    case DRAGE_OP_FILE:
        *effect = taken;
        if (helper())
            helper()->Drop();
        if (originOf(base) == DragOrigin::OtherProcess)
            addFiles(adder, m_state.m_dropFileList);
        else
            addFilesSoon(adder);
        return S_OK;
    }
    return S_FALSE;
}

void FileDrag::addFiles(Adder& adder, const std::vector<DropFileInfo>& files)
{
    const SameNote same = adder.sameNote();
    adder.AddDropFileToEditor(files);
    if (!same.isAlive())
        return; // Long in coming: this object may be gone with its control.
    if (QWidget* window = m_page.window())
        window->setFocus();
}

void FileDrag::addFilesSoon(Adder& adder)
{
    // One millisecond, as a zero timer can fire inside a task of the engine.
    QTimer::singleShot(1, Qt::PreciseTimer, qApp,
        [this, &adder, same = adder.sameNote(), files = m_state.m_dropFileList] {
            if (same)
                addFiles(adder, files);
        });
}
