#pragma once

#include "bridge/NotePage.h"
#include "bridge/OpenNote.h"
#include "bridge/PageBridge.h"
#include "bridge/PageRequests.h"
#include "editor/NmWebNoteHandler.h"

/// The record of the open note and the rooms that work on it.
struct NmWebNoteHandler::Rooms : PageRequests {
    Rooms(NmWebNoteHandler& handler, const OpenNote& record, IEWebBrowser* control);

    NmWebNoteHandler& q;
    OpenNote note;
    IEWebBrowser* browser;
    BrowserNotePage page;
    PageBridge bridge;
    /// The names that the page's script may call, with their ids.
    std::map<QString, int> funIds;
    /// The drag in progress carries files.
    bool fileDrag = false;

    void dblClickAttachment(const QString& path, const QString& origName) override;
    void addAttachment() override;
    void openHyperLink(const QString& url) override;
    void nmMessageBox(const QString& msg) override;
    void rightClickAttach(
        const QString& fileName, const QString& origName, const QString& rangeHtml) override;
    void writeEditorLog(const QString& type, const QString& msg) override;
    void screenCapture(bool hideMainWnd) override;
};
