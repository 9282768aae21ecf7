#include "editor/CNomarEditorImpl.h"

#include "attachfiles/SyncFileModifyArg.h"
#include "clipdrag/PastedPicture.h"
#include "editor/LiveControl.h"
#include "editor/NmWebNoteHandler_p.h"
#include "notestore/NoteHtmlRW.h"
#include "platform/KeyState.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QKeyEvent>
#include <QPointer>
#include <QTimer>

CNomarEditorImpl* g_editorImpl = nullptr;

namespace {

constexpr int maxChars = 10000;

/// A menu or popup takes the keyboard for a while, not the focus.
bool isLossOfFocus(const QEvent& message)
{
    if (message.type() != QEvent::FocusOut)
        return false;
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(message).reason();
    return reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason;
}

} // namespace

CNomarEditorImpl::CNomarEditorImpl()
{
    SetJSCallFunNotify(&m_handler);
    SetIEDragNotify(&m_handler);
    SetIEUINotify(&m_handler);
    m_handler.SetIEWebBrowser(this);
    m_htmlVer = NOTE_HTML_VER_0;
    // Kept: a second control takes the pointer over, and either one's end leaves it null.
    g_editorImpl = this;
}

CNomarEditorImpl::~CNomarEditorImpl()
{
    DestroyWindow();
    g_editorImpl = nullptr;
}

int CNomarEditorImpl::Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style)
{
    if (const int made = IEWebBrowser::Create(parent, rect, id, style); !made)
        return made;
    Navigate(GetInstallDir() + QStringLiteral("nmeditor/index.html"));
    return 1;
}

void CNomarEditorImpl::SetNmEditorNotify(INmEditorNotify* notify)
{
    m_notify = notify;
    m_handler.SetNotify(notify);
}

// --- The page's life ---

void CNomarEditorImpl::OnDocumentComplete(const QString& url)
{
    IEWebBrowser::OnDocumentComplete(url);
    if (m_docComplete)
        return;
    m_docComplete = 1;
    ModifyIEWndProc();
    const QPointer<CNomarEditorImpl> alive(this);
    m_handler.SetEditorMaxChars(maxChars);
    if (!alive)
        return;
    PostWindowMessage(parentWidget(), WM_EDITOR_READY);
    m_monitor.SetMsgReceiver(this, WM_ATTACH_FILE_MODIFY);
}

void CNomarEditorImpl::OnBeforeNavigate2(const QString& url, bool& cancel)
{
    if (m_docComplete)
        cancel = true; // The page stays for good; links leave through the page's own call.
    else
        IEWebBrowser::OnBeforeNavigate2(url, cancel);
}

void CNomarEditorImpl::OnPageRecovered()
{
    PostJSFun(m_handler.d->bridge.restoringCalls());
}

void CNomarEditorImpl::OnPrivateMessage(const QString& kind, const QString& text)
{
    if (kind == u"draft")
        m_handler.d->bridge.takeDraft(text);
    else if (kind == u"copied")
        m_handler.d->copyNotify.pageCopied();
    else if (kind == u"pictures")
        // Later: the import waits for the page, which is not possible inside its own message.
        // The note is that of now, as a page that has died begins to count its texts anew.
        QTimer::singleShot(1, this, [this, text, same = m_handler.d->bridge.sameNote()] {
            DispatchInOrder([this, text, same] {
                NmWebNoteHandler::Rooms& rooms = *m_handler.d;
                const auto isShown = [&](int load) {
                    return same && rooms.bridge.isOfThisText(load);
                };
                const auto post = [this](const QString& reply, const QString& argument) {
                    PostPrivate(reply, argument);
                };
                clipdrag::PastedPictures(rooms.adder, isShown, post).import(text);
            });
        });
}

void CNomarEditorImpl::ModifyIEWndProc()
{
    // Kept: hooked once; a missing window is not tried again.
    if (!m_oldWndProc && GetWebBrowseHwnd())
        m_oldWndProc = SetBrowserWndProc(&CNomarEditorImpl::IEHookWndProc);
}

void CNomarEditorImpl::OnDestroy()
{
    if (m_oldWndProc) {
        SetBrowserWndProc(m_oldWndProc);
        m_oldWndProc = nullptr;
    }
    IEWebBrowser::OnDestroy();
}

// --- Messages ---

long CNomarEditorImpl::IEHookWndProc(QWidget* hwnd, QEvent* message)
{
    CNomarEditorImpl* control = g_editorImpl;
    if (!control) {
        // Input, private messages and loss of the focus come here; all but the last are swallowed.
        return message->type() == QEvent::FocusOut ? static_cast<QObject*>(hwnd)->event(message)
                                                   : 1;
    }
    const int type = int(message->type());
    const bool focusLost = isLossOfFocus(*message);
    const QPointer<CNomarEditorImpl> alive(control);
    const long result = CallWindowProc(control->m_oldWndProc, hwnd, message);
    if (!alive)
        return result;
    if (type == WM_CLEAR_EDITOR_CACHE)
        control->DispatchInOrder([=] { control->m_handler.HandleClearEditorCacheNotify(); });
    else if (type == WM_EDITOR_COPY)
        control->DispatchInOrder([=] { control->m_handler.HandleCopyNotify(); });
    else if (focusLost)
        control->DispatchInOrder([=] { control->OnSave(); });
    return result;
}

bool CNomarEditorImpl::PreTranslateMessage(const QKeyEvent* msg)
{
    // Kept: the second number was meant as a lower-case S and is the F4 key, so Ctrl+F4 saves too.
    const int key = VirtualKey(msg->key());
    if (Keys().isDown(VK_CONTROL) && (key == 83 || key == 115) && g_editorImpl) {
        const QPointer<CNomarEditorImpl> alive(this);
        g_editorImpl->OnSave();
        if (!alive)
            return true;
    }
    return IEWebBrowser::PreTranslateMessage(msg);
}

bool CNomarEditorImpl::event(QEvent* event)
{
    if (int(event->type()) != WM_ATTACH_FILE_MODIFY)
        return IEWebBrowser::event(event);
    // The record is taken off the event here, as the message may have to wait for a page call.
    std::shared_ptr<SyncFileModifyArg> arg =
        static_cast<WindowMessage*>(event)->takeRecord<SyncFileModifyArg>();
    DispatchInOrder([this, arg] { OnAttachFileModify(arg.get()); });
    return true;
}

// --- Notes ---

void CNomarEditorImpl::NewEditor(QString& guid, int readOnly)
{
    guid = CreateGuidString();
    m_handler.SetCurNoteGuid(guid);
    openText(QString(), NOTE_HTML_VER_2, readOnly);
}

void CNomarEditorImpl::LoadEditor(const QString& guid, const std::vector<QString>& htmlFiles,
    const std::map<QString, quint64>& attachSizes, int readOnly)
{
    m_handler.SetCurNoteGuid(guid);
    QString joined;
    NOTE_HTML_VER_NUMBER joinedVersion = NOTE_HTML_VER_0;
    for (const QString& name : htmlFiles) {
        // A name that would lead out of the store has an empty path, which does not exist.
        const QString path =
            name.isEmpty() ? QString() : GetAttachFilePath(QString(), name, QString());
        QString part;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
        if (path.isEmpty() || !IsFileExist(path)
            || !NoteHtmlRW::ReadHtmlTextFromFile(path, part, &version))
            continue;
        joined += part;
        joinedVersion = version;
    }
    // A note without text has nothing to upgrade.
    const NOTE_HTML_VER_NUMBER version = joined.isEmpty() ? NOTE_HTML_VER_2 : joinedVersion;
    // After the text, which empties the book of sizes.
    if (openText(joined, version, readOnly))
        m_handler.InitAttachFileSize(attachSizes);
}

void CNomarEditorImpl::SetEditorText(
    const QString& html, NOTE_HTML_VER_NUMBER version, int readOnly)
{
    openText(html, version, readOnly);
}

bool CNomarEditorImpl::openText(const QString& html, NOTE_HTML_VER_NUMBER version, int readOnly)
{
    m_lastHtml = html;
    m_htmlVer = version;
    const QPointer<CNomarEditorImpl> alive(this);
    const auto isLatest = [&, turn = ++m_opened] { return alive && turn == m_opened; };
    // While the page is asked, the host may open another note: its text is the one that stays.
    m_handler.SetReadOnly(readOnly);
    if (!isLatest())
        return false;
    m_shown = m_opened;
    m_handler.SetEditorHtml(html);
    return isLatest();
}

void CNomarEditorImpl::SaveEditor()
{
    OnSave();
}

void CNomarEditorImpl::SetReadOnly(int readOnly)
{
    m_handler.SetReadOnly(readOnly);
}

void CNomarEditorImpl::GetLastHtml(QString& html)
{
    html = m_lastHtml;
}

void CNomarEditorImpl::RefreshIE()
{
    if (QWidget* browser = GetWebBrowseHwnd()) {
        browser->update();
        browser->repaint();
    }
}

bool CNomarEditorImpl::ExportWord(const QString& path, QString& errorText)
{
    if (m_lastHtml.isEmpty()) {
        errorText = QStringLiteral("笔记内容为空！");
        return false;
    }
    if (NmWebNoteHandler::NoteHtmlContentToMhtFile(m_lastHtml, path))
        return true;
    errorText = QStringLiteral("转化为word失败！");
    return false;
}
