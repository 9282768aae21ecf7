#include "editor/NmWebNoteHandler_p.h"

#include "bridge/Format.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/ModifyTimes.h"
#include "notestore/NoteAttachRemoval.h"
#include "platform/CHyperLink.h"
#include "platform/MessageBox.h"
#include "platform/WindowMessage.h"
#include "support/Log.h"
#include "support/Paths.h"
#include "support/TimeText.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <ctime>

namespace {

constexpr int cppProcessorId = 1;

/// What a later version brings: said in the log, so that nobody waits for an effect.
void logNotBuilt(const char* what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] NmWebNoteHandler::%1 is not available in this version")
            .arg(QLatin1StringView(what)));
}

bool hasLocalFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    return std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

} // namespace

NmWebNoteHandler::Rooms::Rooms(
    NmWebNoteHandler& handler, const OpenNote& record, IEWebBrowser* control)
    : q(handler)
    , note(record)
    , browser(control)
    , page(control)
    , bridge(note, page)
{
}

// --- The page's calls ---

void NmWebNoteHandler::Rooms::dblClickAttachment(const QString& path, const QString& origName)
{
    q.OnDblClickAttachment(path, origName);
}

void NmWebNoteHandler::Rooms::addAttachment()
{
    q.OnAddAttachment();
}

void NmWebNoteHandler::Rooms::openHyperLink(const QString& url)
{
    CHyperLink::OpenLink(url);
}

void NmWebNoteHandler::Rooms::nmMessageBox(const QString& msg)
{
    BCGPMessageBox(msg, 0, nullptr, nullptr);
}

void NmWebNoteHandler::Rooms::rightClickAttach(
    const QString& fileName, const QString& origName, const QString& rangeHtml)
{
    q.OnRightClickAttach(fileName, origName, rangeHtml);
}

void NmWebNoteHandler::Rooms::writeEditorLog(const QString& type, const QString& msg)
{
    q.OnWriteEditorLog(type, msg);
}

void NmWebNoteHandler::Rooms::screenCapture(bool hideMainWnd)
{
    q.OnScreenCapture(hideMainWnd);
}

// --- Life ---

NmWebNoteHandler::NmWebNoteHandler()
    : d(std::make_unique<Rooms>(*this, OpenNote(), nullptr))
{
    Init();
}

NmWebNoteHandler::NmWebNoteHandler(const NmWebNoteHandler& other)
    : IJSCallFunNotify(other)
    , IIEDragNotify(other)
    , IIEUINotify(other)
    , IScreenCaptureNotify(other)
    , d(std::make_unique<Rooms>(*this, other.d->note, other.d->browser))
{
    d->funIds = other.d->funIds;
}

NmWebNoteHandler& NmWebNoteHandler::operator=(const NmWebNoteHandler& other)
{
    if (this != &other) {
        d = std::make_unique<Rooms>(*this, other.d->note, other.d->browser);
        d->funIds = other.d->funIds;
    }
    return *this;
}

NmWebNoteHandler::~NmWebNoteHandler() = default;

void NmWebNoteHandler::Init()
{
    d->funIds[QStringLiteral("CppProcessor")] = cppProcessorId;
}

// --- The open note ---

void NmWebNoteHandler::SetNotify(INmEditorNotify* notify)
{
    d->note.m_notify = notify;
}

void NmWebNoteHandler::SetIEWebBrowser(IEWebBrowser* browser)
{
    d->browser = browser;
    d->page = BrowserNotePage(browser);
}

void NmWebNoteHandler::SetCurNoteGuid(const QString& guid)
{
    d->note.m_curNoteGuid = guid;
}

QString NmWebNoteHandler::GetCurNoteGuid() const
{
    return d->note.m_curNoteGuid;
}

int NmWebNoteHandler::IsReadOnly() const
{
    return d->note.m_readOnly;
}

void NmWebNoteHandler::SetReadOnly(int readOnly)
{
    d->bridge.SetReadOnly(readOnly);
}

void NmWebNoteHandler::SetEditorMaxChars(int size)
{
    d->bridge.SetEditorMaxChars(size);
}

void NmWebNoteHandler::SetEditorHtml(const QString& html)
{
    d->bridge.SetEditorHtml(html);
}

int NmWebNoteHandler::GetEditorContent(QString& html, QString& text)
{
    return d->bridge.GetEditorContent(html, text);
}

int NmWebNoteHandler::HandleClearEditorCacheNotify()
{
    return d->bridge.HandleClearEditorCacheNotify();
}

void NmWebNoteHandler::WinMessageNotify(QWidget*, unsigned message, quintptr, qintptr)
{
    if (message == WM_CLEAR_EDITOR_CACHE)
        HandleClearEditorCacheNotify();
    else if (message == WM_EDITOR_COPY)
        HandleCopyNotify();
}

void NmWebNoteHandler::InitAttachFileSize(const std::map<QString, quint64>& sizes)
{
    d->note.InitAttachFileSize(sizes);
}

void NmWebNoteHandler::RecordAttachModifyTime(
    const QString& fileName, const QString& origName, const QString& modifyTime)
{
    d->note.m_attachModifyCache[fileName + origName] = modifyTime;
}

const std::map<QString, QString>& NmWebNoteHandler::GetAttachModifyCache() const
{
    return d->note.m_attachModifyCache;
}

int NmWebNoteHandler::SelectedAttach(const QString& keyword)
{
    return d->bridge.SelectedAttach(keyword);
}

int NmWebNoteHandler::UpdateHtmlAttachAttr(
    const QString& origName, const QString& classValue, const QString& srcValue)
{
    return d->bridge.UpdateHtmlAttachAttr(origName, classValue, srcValue);
}

// --- Notes and files ---

int NmWebNoteHandler::ParseAttList(const QString& noteGuid, const QString& html,
    std::vector<NewAttachFile>& attList, QString* plainText)
{
    return noteattach::ParseAttList(noteGuid, html, attList, plainText);
}

int NmWebNoteHandler::ParseAttOrigFileNameList(const QString& html, std::vector<QString>& origNames)
{
    return noteattach::ParseAttOrigFileNameList(html, origNames);
}

void NmWebNoteHandler::GetAttachFileFromHtml(const QString& noteGuid, const QString& html,
    std::vector<QString>& filePaths, QString* plainText)
{
    noteattach::GetAttachFileFromHtml(noteGuid, html, filePaths, plainText);
}

int NmWebNoteHandler::DelAttachFromHtmlFile(
    const QString& noteGuid, const QString& origName, std::vector<NewAttachFile>& attList)
{
    return notestore::DelAttachFromHtmlFile(noteGuid, origName, attList);
}

void NmWebNoteHandler::UpdateAttModifyTimeField(const QString& noteGuid,
    std::vector<NewAttachFile>& attList, const std::map<QString, QString>& modifyCache)
{
    noteattach::UpdateAttModifyTimeField(noteGuid, attList, modifyCache);
}

QString NmWebNoteHandler::GetOrigNameFromJson(const std::string& json)
{
    return noteattach::GetOrigNameFromJson(json);
}

QString NmWebNoteHandler::FormatOrigNameToJson(const QString& origName)
{
    return noteattach::FormatOrigNameToJson(origName);
}

int NmWebNoteHandler::IsPicFileType(const QString& name)
{
    return noteattach::IsPicFileType(name);
}

QString NmWebNoteHandler::FormatCurTime()
{
    return FormatTime64(std::time(nullptr), QStringLiteral("%Y/%m/%d %H:%M"));
}

QString NmWebNoteHandler::Format(VARIANT variant)
{
    return ::Format(variant);
}

bool NmWebNoteHandler::path_is_folder(const QString& path)
{
    return ::path_is_folder(path);
}

QString NmWebNoteHandler::extract_foldername(const QString& path)
{
    return ::extract_foldername(path);
}

// --- What the browser calls ---

long NmWebNoteHandler::OnGetFunId(const QString& name)
{
    const auto found = d->funIds.find(name);
    return found == d->funIds.end() ? -1 : found->second;
}

long NmWebNoteHandler::OnExecuteFun(
    long id, const DISPPARAMS& params, VARIANT& result, QString& exception)
{
    return id == cppProcessorId ? OnCppProcessor(params, result, exception) : -1;
}

long NmWebNoteHandler::OnCppProcessor(const DISPPARAMS& params, VARIANT&, QString&)
{
    return DispatchPageCall(params, *d);
}

long NmWebNoteHandler::OnDragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect)
{
    d->fileDrag = hasLocalFile(*data);
    // A file must not reach the engine, which would open it in the page's place.
    return d->fileDrag ? S_FALSE : m_defaultDropTarget->DragEnter(data, keyState, pt, effect);
}

long NmWebNoteHandler::OnDragOver(unsigned keyState, QPoint pt, int* effect)
{
    return d->fileDrag ? S_FALSE : m_defaultDropTarget->DragOver(keyState, pt, effect);
}

long NmWebNoteHandler::OnDragLeave()
{
    return d->fileDrag ? S_FALSE : m_defaultDropTarget->DragLeave();
}

long NmWebNoteHandler::OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect)
{
    return d->fileDrag ? S_FALSE : m_defaultDropTarget->Drop(data, keyState, pt, effect);
}

long NmWebNoteHandler::ShowContextMenu()
{
    return S_OK;
}

long NmWebNoteHandler::ShowMessage(const QString&)
{
    return E_NOTIMPL;
}

long NmWebNoteHandler::OnTranslateAccelerator(const QKeyEvent*)
{
    return E_NOTIMPL;
}

void NmWebNoteHandler::OnScreenCaptureComplet(const QImage&)
{
    logNotBuilt("OnScreenCaptureComplet");
}

void NmWebNoteHandler::OnDblClickAttachment(const QString& path, const QString& origName)
{
    if (d->note.m_notify)
        d->note.m_notify->OnOpenAttachment(
            d->note.m_curNoteGuid, FileNameOfNotePath(path), origName);
}

void NmWebNoteHandler::HandleCopyNotify()
{
    logNotBuilt("HandleCopyNotify");
}

// Kept: these five take their calls and do nothing.
void NmWebNoteHandler::OnRightClickAttach(const QString&, const QString&, const QString&) { }
void NmWebNoteHandler::OnWriteEditorLog(const QString&, const QString&) { }
void NmWebNoteHandler::MyAttachMenu() { }
void NmWebNoteHandler::ShareAttachMenu() { }
void NmWebNoteHandler::DoAttachSaveAs() { }

void NmWebNoteHandler::OnAddAttachment()
{
    logNotBuilt("OnAddAttachment");
}

void NmWebNoteHandler::OnScreenCapture(int)
{
    logNotBuilt("OnScreenCapture");
}
