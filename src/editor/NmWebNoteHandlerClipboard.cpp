// The handler's copy and paste, and the keys that lead to them.

#include "editor/NmWebNoteHandler_p.h"

#include "clipdrag/NoteCopy.h"
#include "notestore/MhtExport.h"
#include "platform/IEWebBrowser.h"

// --- Keys ---

long NmWebNoteHandler::OnTranslateAccelerator(const QKeyEvent* msg)
{
    return d->browser ? d->editKeys.OnTranslateAccelerator(*msg, d->browser->Keys()) : E_NOTIMPL;
}

long NmWebNoteHandler::DoCtrlC()
{
    return d->editKeys.DoCtrlC();
}

long NmWebNoteHandler::DoCtrlV()
{
    return d->paste.DoCtrlV();
}

long NmWebNoteHandler::DoCtrlD()
{
    return d->editKeys.DoCtrlD();
}

void NmWebNoteHandler::Rooms::CancleHighlight()
{
    highlight.CancleHighlight();
}

void NmWebNoteHandler::Rooms::Cut()
{
    if (browser)
        browser->Cut();
}

// --- Paste ---

long NmWebNoteHandler::DoCopyClipboardFile()
{
    return d->paste.DoCopyClipboardFile();
}

long NmWebNoteHandler::DoCopyClipboardHtml()
{
    return d->paste.DoCopyClipboardHtml();
}

int NmWebNoteHandler::DoCopyLogic(
    const std::vector<NewAttachFile>& attList, CopyLogicResult& result)
{
    return d->paste.DoCopyLogic(attList, result);
}

// --- Copy ---

void NmWebNoteHandler::HandleCopyNotify()
{
    d->copyNotify.HandleCopyNotify();
}

void NmWebNoteHandler::AnalyHtmlDataFromClipboard(
    std::vector<NewAttachFile>& attList, QString& plainText)
{
    clipdrag::AnalyHtmlDataFromClipboard(d->note.m_curNoteGuid, attList, plainText);
}

void NmWebNoteHandler::AddAttachToClipboard(const std::vector<AttachFileInfo>& files)
{
    clipdrag::AddAttachToClipboard(files);
}

int NmWebNoteHandler::OnCopyContent(const QString& noteHtml)
{
    return clipdrag::OnCopyContent(noteHtml, notestore::HtmlConvert);
}

int NmWebNoteHandler::OnCopyHtml(const QString& noteFilePath)
{
    return clipdrag::OnCopyHtml(noteFilePath, notestore::HtmlConvert);
}

void NmWebNoteHandler::ClearCopyData()
{
    clipdrag::ClearCopyData();
}
