// The path of a save: from any trigger to the host's OnSaveNote.

#include "editor/CNomarEditorImpl.h"

#include "editor/NmWebNoteHandler_p.h"
#include "noteattach/AttachList.h"
#include "noteattach/ModifyTimes.h"
#include "notestore/NoteHtmlRW.h"
#include "platform/MessageBox.h"
#include "support/Paths.h"

void CNomarEditorImpl::OnSave()
{
    // While a note is being opened the page still holds the one before.
    if (m_handler.IsReadOnly() || m_shown != m_opened)
        return;
    // What is filed is filed under the note as it stands now: while the page is asked, the host may
    // open another one.
    const SameNote same = m_handler.d->bridge.sameNote();
    const noteattach::AttachModifyCache times = m_handler.d->note.m_attachModifyCache;
    const QString lastHtml = m_lastHtml;
    NOTE_HTML_VER_NUMBER version = m_htmlVer;
    const quint64 filings = m_filings;

    QString html, text;
    const int pulled = m_handler.GetEditorContent(html, text);
    if (!same.isAlive())
        return;
    if (!pulled) {
        BCGPMessageBox(QStringLiteral("获取笔记编辑器内容失败！"));
        return;
    }
    // A save that began behind this one and came to its end first has filed a later text.
    const bool isOvertaken = same && m_filings != filings;
    if (html == lastHtml || isOvertaken)
        return;

    // Makes the store: a first note is filed before anything else has come into it.
    GetAttachmentDir();
    NewAttachFile noteFile;
    const int filed = NoteHtmlRW::SaveHtmlTextToFile(html, noteFile, &version);
    if (same)
        m_htmlVer = version; // Raised by an upgrade, also when a later step failed.
    if (!filed)
        return;

    std::vector<NewAttachFile> list;
    noteattach::ParseAttList(same.guid(), html, list, nullptr);
    list.insert(list.begin(), noteFile);
    noteattach::UpdateAttModifyTimeField(same.guid(), list, times);
    if (m_notify && m_notify->OnSaveNote(same.guid(), list, text) && same) {
        m_lastHtml = html;
        ++m_filings;
    }
}
