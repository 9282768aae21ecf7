#pragma once

#include "attachfiles/AttachFileMonitor.h"
#include "editor/NmWebNoteHandler.h"
#include "notestore/NoteHtmlVersion.h"
#include "platform/IEWebBrowser.h"
#include "support/Export.h"

#include <QString>

#include <map>
#include <vector>

struct SyncFileModifyArg;

/// The note editor: a child widget that shows the editing page and holds one open note.
///
/// A host drives it in this order, all on the thread of the user interface:
///   1. construct it (one per process);
///   2. `SetNmEditorNotify`, before `Create`, as the page can call from the moment it runs;
///   3. `Create`;
///   4. wait for message 8005 (`WM_EDITOR_READY`), which is posted to the parent; page calls before
///      that fail, so no note may be opened earlier;
///   5. `NewEditor` or `LoadEditor`; before the next note and before the end, `SaveEditor`, since
///      neither of the two saves;
///   6. keep what each `OnSaveNote` brings;
///   7. `DestroyWindow` or simply delete it.
///
/// A file of an attachment that was changed in another program reaches it as message 2224:
/// `AttachFileWatcher.h`. It then names the new content in that note, open or not, and files it.
///
/// It saves by itself when the browser loses the focus and on Ctrl+S and Ctrl+F4. If the engine's
/// render process dies, the page is loaded again with the note as it was, at most the last second
/// of typing missing; an empty text is never filed because of such a death.
class NOMAR_EXPORT CNomarEditorImpl : public IEWebBrowser {
    Q_OBJECT
public:
    CNomarEditorImpl();
    ~CNomarEditorImpl() override;

    /// Makes the control a child of `parent` at `rect` and starts the page `nmeditor/index.html` of
    /// the install directory. Returns 0 if the window cannot be made, else 1.
    int Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style) override;
    /// Sets the host's interface, which is not owned.
    void SetNmEditorNotify(INmEditorNotify* notify);

    /// Opens a new empty note and hands its GUID back.
    void NewEditor(QString& guid, int readOnly);
    /// Opens a stored note: the files named by `htmlFiles`, all in the store, make its text in this
    /// order; what is missing or cannot be read is left out. `attachSizes` maps stored file names
    /// to sizes in bytes.
    void LoadEditor(const QString& guid, const std::vector<QString>& htmlFiles,
        const std::map<QString, quint64>& attachSizes, int readOnly);
    /// Files the note if it has changed: writes its HTML file and calls the host's `OnSaveNote`.
    void SaveEditor();
    /// Sets the mode at any time after 8005.
    void SetReadOnly(int readOnly);
    /// The text that counts as saved.
    void GetLastHtml(QString& html);
    /// Paints the browser anew.
    void RefreshIE();
    /// Exports the text that counts as saved. On failure false, and `errorText` tells why.
    bool ExportWord(const QString& path, QString& errorText);

    /// The handler of this control, for the operations that are reached through it.
    NmWebNoteHandler& Handler() { return m_handler; }

protected:
    void OnSave();
    void OnDestroy() override;
    /// Message 2224. 1 for a null record, else 0. The record stays the caller's.
    long OnAttachFileModify(SyncFileModifyArg* arg);
    /// Carries the change of an attachment's file into the store, the note and the host.
    void DoAttachFileModify(const SyncFileModifyArg& arg);
    /// 1, and `thumbName` is the file that the note is to show from now on; 0 after a failure,
    /// which is logged.
    int GenerateThumbPic(const SyncFileModifyArg& arg, QString& thumbName);
    void ModifyIEWndProc();
    void SetEditorText(const QString& html, NOTE_HTML_VER_NUMBER version, int readOnly);
    static long IEHookWndProc(QWidget* hwnd, QEvent* message);

    void OnDocumentComplete(const QString& url) override;
    void OnBeforeNavigate2(const QString& url, bool& cancel) override;
    bool PreTranslateMessage(const QKeyEvent* msg) override;
    void OnPageRecovered() override;
    void OnPrivateMessage(const QString& kind, const QString& text) override;
    bool event(QEvent* event) override;

    /// The browser's procedure as it stood before the hook; null while unhooked.
    WNDPROC m_oldWndProc = nullptr;
    int m_docComplete = 0; ///< 1 from the first completion of the page on.
    /// The text that counts as saved: set by a load, a new note, and a save that the host accepted.
    QString m_lastHtml;
    /// The version of the note's text; raised to 2 by an upgrade during a save.
    NOTE_HTML_VER_NUMBER m_htmlVer = NOTE_HTML_VER_0;
    INmEditorNotify* m_notify = nullptr;
    NmWebNoteHandler m_handler;
    AttachFileMonitor m_monitor;

private:
    /// False if the control ended or the host opened another note while the page was asked.
    bool openText(const QString& html, NOTE_HTML_VER_NUMBER version, int readOnly);
    void changeNote(const QString& openNote, const SyncFileModifyArg& arg, const QString& thumbName,
        const QString& time);
    void changeOpenNote(
        const SyncFileModifyArg& arg, const QString& thumbName, const QString& time);
    void changeClosedNote(
        const SyncFileModifyArg& arg, const QString& thumbName, const QString& time);

    quint64 m_opened = 0; ///< Notes that the host has opened.
    quint64 m_shown = 0; ///< The one of them whose text went to the page last.
    quint64 m_filings = 0; ///< Saves that the host accepted.
};
