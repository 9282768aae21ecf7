#pragma once

#include "attachstore/DropFileInfo.h"
#include "attachstore/FileType.h"
#include "attachstore/MafResult.h"
#include "bridge/INmEditorNotify.h"
#include "capture/IScreenCaptureNotify.h"
#include "clipdrag/AttachFileInfo.h"
#include "clipdrag/CopyLogicResult.h"
#include "clipdrag/DrageOpType.h"
#include "noteattach/AttachNewAtt.h"
#include "noteattach/NewAttachFile.h"
#include "platform/BrowserNotify.h"
#include "support/Export.h"

#include <QString>

#include <map>
#include <memory>
#include <string>
#include <vector>

class IEWebBrowser;
struct OpenNote;

/// The handler of a control: stands between native code and the page, and holds the record of the
/// open note. Operations on notes and files that need no open note are static.
///
/// All operations belong to the thread of the user interface. Truth values are 1 and 0. Failures go
/// to the log. A handler can be copied: the copy has the same record and works on the same browser.
class NOMAR_EXPORT NmWebNoteHandler : public IJSCallFunNotify,
                                      public IIEDragNotify,
                                      public IIEUINotify,
                                      public IScreenCaptureNotify {
public:
    /// One rewrite of attachment elements in a text.
    using AttachNewAtt = ::AttachNewAtt;
    /// What pasted attachments became.
    using CopyLogicResult = ::CopyLogicResult;

    NmWebNoteHandler();
    NmWebNoteHandler(const NmWebNoteHandler& other);
    NmWebNoteHandler& operator=(const NmWebNoteHandler& other);
    ~NmWebNoteHandler() override;

    /// Makes "CppProcessor" callable, which the constructor has done already.
    void Init();

    // --- The open note ---

    void SetNotify(INmEditorNotify* notify); ///< Not owned.
    void SetIEWebBrowser(IEWebBrowser* browser); ///< Not owned. All page calls go through it.
    void SetCurNoteGuid(const QString& guid);
    QString GetCurNoteGuid() const;
    int IsReadOnly() const;
    /// Sets the page's mode, unless it is the same value already.
    void SetReadOnly(int readOnly);
    /// Sets the limit of characters of the note's text.
    void SetEditorMaxChars(int size);
    /// Puts a text into the page. Empties the books of sizes and times.
    void SetEditorHtml(const QString& html);
    /// Pulls the page's HTML and plain text. Always returns 1; after a failure both stay as given.
    int GetEditorContent(QString& html, QString& text);
    /// Forgets the page's undo history; 1 if the page could be called.
    int HandleClearEditorCacheNotify();
    /// For a host that forwards the browser's private messages by itself: acts on 2258 and 8004.
    void WinMessageNotify(QWidget* hwnd, unsigned message, quintptr wParam, qintptr lParam);

    // --- Books of the open note ---

    /// Adds the stored sizes in bytes under their stored file names; a name that is known keeps its
    /// size.
    void InitAttachFileSize(const std::map<QString, quint64>& sizes);
    /// Notes when an attachment came in or changed, "YYYY-MM-DD hh:mm:ss".
    void RecordAttachModifyTime(
        const QString& fileName, const QString& origName, const QString& modifyTime);
    const std::map<QString, QString>& GetAttachModifyCache() const;

    /// What the note's attachments weigh together in bytes, a shown file counting beside the one
    /// that it stands for, each with one byte less. 1, or 0 if the size of one is not known:
    /// `total` is not to be used then, and nothing can be added to the note.
    int GetExistAttTotalSize(quint64& total);

    // --- Editing of the open note ---

    /// Makes the files attachments at the caret, unless the note is read-only. What may not enter
    /// (folders, empty files, what would bring the note over 10 MiB) is told to the user. Runs
    /// message boxes, and a dialog with a cancel button when it takes long.
    void AddDropFileToEditor(const std::vector<DropFileInfo>& files);
    /// Numbers those of the new names whose base is in the note already: "a.txt" to "a(1).txt".
    void DoAttSameName(std::vector<DropFileInfo>& files);
    /// Paints every hit of a search word over the note, and shows the first. An empty word takes
    /// the paint away. 0 if the page cannot be called, else 1.
    int HighlightText(const QString& keyword);
    int CancleHighlight();
    /// Selects the attachment whose name holds `keyword` and shows it; 1 if there is one.
    int SelectedAttach(const QString& keyword);
    /// Names another stored file (`class`) and shown file (`src`) for the attachments of that
    /// original name. Both values must be valid inside a JSON text. Always returns 1.
    int UpdateHtmlAttachAttr(
        const QString& origName, const QString& classValue, const QString& srcValue);
    /// Takes an attachment out of the open note, wherever it stands in it: `fileName` and
    /// `origName` as in the record of the last save. It is an edit like the user's own: it is filed
    /// with the next save, and the page's undo brings the attachment back, so its file must stay.
    /// 1, or 0 if the note has no such attachment or is read-only.
    int RemoveAttach(const QString& fileName, const QString& origName);

    // --- Files on their way in ---

    /// Imports a file into the store for the open note; the page is not told. 1, or 0 after a
    /// failure, which is logged.
    int MoveAttFile(const DropFileInfo& info, MAF_RESULT& result);
    /// Writes an image to a temporary JPEG file and appends its record; 1, or 0 if it could not.
    int SaveImage(const QImage* image, std::vector<DropFileInfo>& list);
    /// The extension of a name in lower case, "unknow" without one.
    QString GetFileStuffx(const QString& name);
    /// Deletes the source of every record that is a temporary file of the component's own.
    void DelTempFileFromList(const std::vector<DropFileInfo>& list);

    // --- Copy and paste ---

    /// Follows the browser's copy: if it was of attachments and no text, the clipboard gets their
    /// files. Returns at once; the clipboard is looked at when the copy has reached it, and after
    /// 300 ms at the latest.
    void HandleCopyNotify();
    /// Lists the attachments that the clipboard's HTML refers to, as those of the open note, and
    /// reads its plain text.
    void AnalyHtmlDataFromClipboard(std::vector<NewAttachFile>& attList, QString& plainText);
    /// Puts those files on the clipboard that exist.
    void AddAttachToClipboard(const std::vector<AttachFileInfo>& files);
    /// What Ctrl+C, V and D do ahead of the browser. `S_OK`: the browser must not see the key.
    /// DoCtrlV is one of the other two, by what the clipboard holds: files or an image become
    /// attachments, attachments in HTML are taken over into the open note.
    long DoCtrlC();
    long DoCtrlV();
    long DoCtrlD();
    long DoCopyClipboardFile();
    long DoCopyClipboardHtml();
    /// Takes attachments over into the open note's files under names that are free there. 1 if all
    /// were taken over, else 0, and the user may have been told why.
    int DoCopyLogic(const std::vector<NewAttachFile>& attList, CopyLogicResult& result);

    // --- Notes and files, no control needed ---

    /// Puts a note's HTML on the clipboard for other programs, with whole paths to its pictures.
    /// 1, or 0 for an empty text.
    static int OnCopyContent(const QString& noteHtml);
    /// The same for a note file; 0 if it cannot be read or holds no text.
    static int OnCopyHtml(const QString& noteFilePath);
    /// Empties the clipboard.
    static void ClearCopyData();

    /// Lists the files that a note's HTML refers to, in its order: of each attachment its file and
    /// the picture that stands for it. `plainText`, if not null, receives the text. 1 or 0.
    static int ParseAttList(const QString& noteGuid, const QString& html,
        std::vector<NewAttachFile>& attList, QString* plainText);
    static int ParseAttOrigFileNameList(const QString& html, std::vector<QString>& origNames);
    static void GetAttachFileFromHtml(const QString& noteGuid, const QString& html,
        std::vector<QString>& filePaths, QString* plainText);
    /// Returns 0 and changes nothing.
    static int DelAttachFromHtmlFile(
        const QString& noteGuid, const QString& origName, std::vector<NewAttachFile>& attList);
    /// Names another stored file (`class`) and shown file (`src`) for the attachments of that
    /// original name in a note's HTML; whole paths, single backslashes. 1 with the new body and its
    /// plain text, or 0.
    static int UpdateHtmlAttachAttr(const QString& html, const QString& origName,
        const QString& classValue, const QString& srcValue, QString& bodyHtml, QString& bodyText);
    /// Gives elements another original name and another shown file: `oldExData` to `newExData`.
    /// 1 with the new body, or 0.
    static int UpdateAttachAttValue(
        const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml);
    /// Copies the text as it is. 1, or 0 after a failure, which is logged.
    static int UpdateAttachAttValue2(
        const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml);
    /// A note as one MHT file that holds its text alone. Its images stay paths of the store. A file
    /// that is there is replaced once the new one is whole. 1 or 0.
    static int NoteHtmlContentToMhtFile(const QString& html, const QString& mhtPath);
    static int NoteHtmlFileToMhtFile(const QString& htmlPath, const QString& mhtPath);
    /// The same with the pictures and cards that the note shows.
    static int NoteHtmlContentToMhtFileWithPictures(const QString& html, const QString& mhtPath);
    static void UpdateAttModifyTimeField(const QString& noteGuid,
        std::vector<NewAttachFile>& attList, const std::map<QString, QString>& modifyCache);
    static QString GetOrigNameFromJson(const std::string& json);
    static QString FormatOrigNameToJson(const QString& origName);
    static int IsPicFileType(const QString& name);
    /// The present time as "%Y/%m/%d %H:%M".
    static QString FormatCurTime();
    /// The second line of a card: the time (the present one if it is empty) and the size, which is
    /// narrowed to 32 bits with sign.
    static QString FormatFileInfo(long size, const QString& time);
    /// Draws the card of a file and writes it to `outPath`, a BMP file. `fileSize`, if not null,
    /// receives its length. 1, or 0 after a failure.
    static int GenerateFileThumb(FILE_TYPE type, const QString& fileName, const QString& fileInfo,
        const QString& outPath, int* fileSize);
    /// A script value as text.
    static QString Format(VARIANT variant);
    static bool path_is_folder(const QString& path);
    static QString extract_foldername(const QString& path);

    // --- What the browser calls ---

    long OnGetFunId(const QString& name) override;
    long OnExecuteFun(
        long id, const DISPPARAMS& params, VARIANT& result, QString& exception) override;
    long OnCppProcessor(const DISPPARAMS& params, VARIANT& result, QString& exception);
    long OnDragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) override;
    long OnDragOver(unsigned keyState, QPoint pt, int* effect) override;
    long OnDragLeave() override;
    long OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) override;
    long ShowContextMenu() override;
    long ShowMessage(const QString& text) override;
    long OnTranslateAccelerator(const QKeyEvent* msg) override;
    /// Adds the picture as an attachment; a null one adds nothing.
    void OnScreenCaptureComplet(const QImage& bitmap) override;
    /// Opens an attachment of the open note through the host.
    void OnDblClickAttachment(const QString& path, const QString& origName);

    void OnRightClickAttach(
        const QString& fileName, const QString& origName, const QString& rangeHtml);
    void OnWriteEditorLog(const QString& type, const QString& msg);
    void MyAttachMenu();
    void ShareAttachMenu();
    void DoAttachSaveAs();

protected:
    static int HtmlConvert(const QString& html, QString& converted);
    static int HtmlToMht(const QString& html, const QString& mhtPath);
    /// Lets the user choose files and adds them one by one.
    void OnAddAttachment();
    void OnScreenCapture(int hideMainWnd);
    /// Sorts a drag that enters and keeps the list of its files. Only `data` is looked at.
    DRAGE_OP_TYPE PreDrag(const QMimeData* data, unsigned keyState, QPoint pt, int* effect);
    /// Appends a record for each file and folder that a drag or the clipboard offers as a list.
    void GetFileList(const QMimeData* drop, std::vector<DropFileInfo>& files);
    /// The same of the clipboard, or else its image as a temporary file.
    void GetFileListFromClipboard(std::vector<DropFileInfo>& files);

private:
    friend class CNomarEditorImpl;
    struct Rooms;
    std::unique_ptr<Rooms> d;
};
