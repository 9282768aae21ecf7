#pragma once

#include "attachfiles/Adder.h"
#include "attachfiles/FileChooser.h"
#include "bridge/NotePage.h"
#include "bridge/OpenNote.h"
#include "bridge/PageBridge.h"
#include "bridge/PageRequests.h"
#include "clipdrag/CopyNotify.h"
#include "clipdrag/EditKeys.h"
#include "clipdrag/FileDrag.h"
#include "clipdrag/Paste.h"
#include "editor/NmWebNoteHandler.h"
#include "highlight/Highlight.h"
#include "platform/Boxes.h"
#include "platform/FileDialog.h"
#include "platform/HoverFrame.h"
#include "platform/ImportProgress.h"

/// The record of the open note and the rooms that work on it.
struct NmWebNoteHandler::Rooms : PageRequests, KeyActs {
    explicit Rooms(NmWebNoteHandler& handler);
    /// Rooms of another handler over a copy of the records.
    Rooms(NmWebNoteHandler& handler, const Rooms& other);

    NmWebNoteHandler& q;

    // The records.
    OpenNote note;
    DragState drag;
    IEWebBrowser* browser = nullptr;
    /// The names that the page's script may call, with their ids.
    std::map<QString, int> funIds;

    // The rooms.
    BrowserNotePage page{browser};
    PageBridge bridge{note, page};
    DesktopBoxes boxes;
    DesktopImportProgress progress;
    DesktopFileDialog fileDialog;
    HoverFrame m_dropHelper;
    Adder adder{note, bridge, boxes, progress};
    FileChooser chooser{page, adder, boxes, fileDialog, progress};
    FileDrag fileDrag{drag, note, page, &m_dropHelper};
    Paste paste{note, adder, boxes};
    CopyNotify copyNotify{note};
    Highlight highlight{page};
    EditKeys editKeys{note, page, copyNotify, paste, *this};

    void dblClickAttachment(const QString& path, const QString& origName) override;
    void addAttachment() override;
    void openHyperLink(const QString& url) override;
    void nmMessageBox(const QString& msg) override;
    void rightClickAttach(
        const QString& fileName, const QString& origName, const QString& rangeHtml) override;
    void writeEditorLog(const QString& type, const QString& msg) override;
    void screenCapture(bool hideMainWnd) override;

    void CancleHighlight() override;
    void Cut() override;
};
