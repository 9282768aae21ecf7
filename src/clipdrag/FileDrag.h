#pragma once

#include "attachstore/DropFileInfo.h"
#include "clipdrag/DrageOpType.h"

#include <QPoint>

#include <vector>

class Adder;
class DropTarget;
class DropTargetHelper;
class NotePage;
class QMimeData;
enum class DragFate;
struct OpenNote;

/// The drag in progress, or the last one. A plain record, as the open note's is.
struct DragState {
    DRAGE_OP_TYPE m_dragOpType{};
    std::vector<DropFileInfo> m_dropFileList;
};

/// Drags over the page, ahead of the browser: those with files or an image become attachments, any
/// other goes on to the browser untouched. Where the drag is dropped does not matter: the files go
/// to the caret.
///
/// All reading, the decoding of an image and the writing of its temporary file happen once, on
/// entering. A drop brings the files in before it returns, so that the source waits for them; only
/// a drag that began in this process is seen to right after the drop, as its source may stand
/// inside a task of the engine, where no page can be called.
///
/// The arguments and results are those of `IIEDragNotify`. A file drag is taken as a copy, else as
/// a link: a source that moves would delete the user's file. `base`, the browser, may be null: it
/// refuses then.
class FileDrag {
public:
    /// Nothing is owned. `helper` may be null; then nothing shows that a drag hovers.
    FileDrag(DragState& state, const OpenNote& note, NotePage& page, DropTargetHelper* helper);

    /// Sorts a drag that enters and lists its files.
    DRAGE_OP_TYPE PreDrag(const QMimeData& data);

    long OnDragEnter(
        const QMimeData* data, unsigned keyState, QPoint pt, int* effect, DropTarget* base);
    long OnDragOver(unsigned keyState, QPoint pt, int* effect, DropTarget* base);
    long OnDragLeave(DropTarget* base);
    long OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect, DropTarget* base,
        Adder& adder);

private:
    /// The helper, while it has something to show for a file drag.
    DropTargetHelper* helper() const;
    int takenAs(int offered) const;
    DragFate fateOf(int effect) const;
    long refuse(DropTarget* base, DragFate fate);
    void endRefusal();
    void addFiles(Adder& adder, const std::vector<DropFileInfo>& files);
    void addFilesSoon(Adder& adder);

    DragState& m_state;
    const OpenNote& m_note;
    NotePage& m_page;
    DropTargetHelper* m_dropHelper;
    /// The drag in progress came to a read-only note.
    bool m_isRefused = false;
};
