#include "editor/NmWebNoteHandler_p.h"

#include "bridge/Format.h"
#include "platform/CHyperLink.h"
#include "platform/MessageBox.h"
#include "platform/WindowMessage.h"

namespace {

constexpr int cppProcessorId = 1;

} // namespace

NmWebNoteHandler::Rooms::Rooms(NmWebNoteHandler& handler)
    : q(handler)
{
}

NmWebNoteHandler::Rooms::Rooms(NmWebNoteHandler& handler, const Rooms& other)
    : q(handler)
    , note(other.note)
    , drag(other.drag)
    , browser(other.browser)
    , funIds(other.funIds)
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
    : d(std::make_unique<Rooms>(*this))
{
    Init();
}

NmWebNoteHandler::NmWebNoteHandler(const NmWebNoteHandler& other)
    : IJSCallFunNotify(other)
    , IIEDragNotify(other)
    , IIEUINotify(other)
    , IScreenCaptureNotify(other)
    , d(std::make_unique<Rooms>(*this, *other.d))
{
}

NmWebNoteHandler& NmWebNoteHandler::operator=(const NmWebNoteHandler& other)
{
    if (this != &other) {
        IIEDragNotify::operator=(other);
        d = std::make_unique<Rooms>(*this, *other.d);
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

int NmWebNoteHandler::HighlightText(const QString& keyword)
{
    return d->highlight.HighlightText(keyword);
}

int NmWebNoteHandler::CancleHighlight()
{
    return d->highlight.CancleHighlight();
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

int NmWebNoteHandler::RemoveAttach(const QString& fileName, const QString& origName)
{
    return d->bridge.RemoveAttach(fileName, origName);
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

long NmWebNoteHandler::ShowContextMenu()
{
    return S_OK;
}

long NmWebNoteHandler::ShowMessage(const QString&)
{
    return E_NOTIMPL;
}

void NmWebNoteHandler::OnDblClickAttachment(const QString& path, const QString& origName)
{
    if (d->note.m_notify)
        d->note.m_notify->OnOpenAttachment(
            d->note.m_curNoteGuid, FileNameOfNotePath(path), origName);
}

QString NmWebNoteHandler::Format(VARIANT variant)
{
    return ::Format(variant);
}

// Kept: these five take their calls and do nothing.
void NmWebNoteHandler::OnRightClickAttach(const QString&, const QString&, const QString&) { }
void NmWebNoteHandler::OnWriteEditorLog(const QString&, const QString&) { }
void NmWebNoteHandler::MyAttachMenu() { }
void NmWebNoteHandler::ShareAttachMenu() { }
void NmWebNoteHandler::DoAttachSaveAs() { }
