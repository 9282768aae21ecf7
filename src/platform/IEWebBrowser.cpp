#include "platform/IEWebBrowser_p.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QQuickWidget>
#include <QVBoxLayout>

namespace {

/// The browser's own procedure: the widget's event handler, behind every filter.
long DefaultWndProc(QWidget* hwnd, QEvent* message)
{
    return static_cast<QObject*>(hwnd)->event(message) ? 1 : 0;
}

/// Whether an event passes through the replaceable procedure: input, loss of the focus and private
/// messages. Paint, deletion and all else go their own way.
bool passesProcedure(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::FocusOut:
        return true;
    default:
        return IsPrivateMessage(event);
    }
}

/// Whether the engine takes an edit command from this key's override. It keeps the command for the
/// press behind it, and for whatever key comes next if that press is used up. So it is shown such
/// an override only when the press goes on to it.
bool carriesEditCommand(const QKeyEvent& key)
{
    using Q = QKeySequence;
    for (const auto sequence :
        {Q::Paste, Q::Delete, Q::Cut, Q::Copy, Q::Undo, Q::Redo, Q::SelectAll}) {
        if (key.matches(sequence))
            return true;
    }
    return false;
}

QKeyEvent overrideOf(const QKeyEvent& press)
{
    return QKeyEvent(QEvent::ShortcutOverride, press.key(), press.modifiers(),
        press.nativeScanCode(), press.nativeVirtualKey(), press.nativeModifiers(), press.text(),
        press.isAutoRepeat(), quint16(press.count()));
}

} // namespace

IEWebBrowser::IEWebBrowser()
    : d(std::make_unique<Private>(*this))
{
    d->procedure = DefaultWndProc;
    setFocusPolicy(Qt::StrongFocus);
    hide();
}

IEWebBrowser::~IEWebBrowser() = default;

int IEWebBrowser::Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style)
{
    if (!parent || parentWidget())
        return 0;
    setParent(parent);
    setGeometry(rect);
    setProperty("id", id);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    // Qt replaces a native window when the first widget of this kind, such as the engine's, comes
    // into it: with one from the start there is nothing to replace.
    (new QQuickWidget(this))->hide();
    if (style & WS_VISIBLE)
        show();
    return 1;
}

void IEWebBrowser::DestroyWindow()
{
    if (d->state == Private::State::Empty)
        return;
    if (d->view)
        OnDestroy();
    d->close();
}

long IEWebBrowser::ExecJSFun(
    const QString& functionName, const std::vector<VARIANT>& args, VARIANT& result)
{
    return d->call(functionName, args, result);
}

bool IEWebBrowser::WaitForPage()
{
    return d->waitForPage();
}

void IEWebBrowser::PostJSFun(const std::vector<std::pair<QString, QStringList>>& calls)
{
    if (!d->view || d->state != Private::State::Ready)
        return;
    QString script;
    for (const auto& [function, arguments] : calls)
        script += CallScript(function, arguments) + u';';
    d->page->runJavaScript(script);
}

void IEWebBrowser::PostPrivate(const QString& kind, const QString& text)
{
    PostJSFun({{QStringLiteral("nomarPagePrivate"), {kind, text}}});
}

QWidget* IEWebBrowser::GetWebBrowseHwnd() const
{
    const bool hasPage = d->state != Private::State::Empty && d->state != Private::State::Loading;
    return hasPage ? d->inputWidget.data() : nullptr;
}

WNDPROC IEWebBrowser::SetBrowserWndProc(WNDPROC procedure)
{
    return std::exchange(d->procedure, procedure ? procedure : DefaultWndProc);
}

long IEWebBrowser::CallWindowProc(WNDPROC procedure, QWidget* hwnd, QEvent* message)
{
    return (procedure ? procedure : DefaultWndProc)(hwnd, message);
}

void IEWebBrowser::SetJSCallFunNotify(IJSCallFunNotify* notify)
{
    d->callNotify = notify;
}

void IEWebBrowser::SetIEDragNotify(IIEDragNotify* notify)
{
    d->dragNotify = notify;
    if (d->view)
        d->view->setDragNotify(notify);
}

void IEWebBrowser::SetIEUINotify(IIEUINotify* notify)
{
    d->uiNotify = notify;
    if (d->view)
        d->view->uiNotify = notify;
}

void IEWebBrowser::Navigate(const QString& path)
{
    d->url = QUrl::fromLocalFile(path);
    d->state = Private::State::Loading;
    QMetaObject::invokeMethod(d.get(), &Private::startSoon, Qt::QueuedConnection);
}

void IEWebBrowser::OnDocumentComplete(const QString&) { }
void IEWebBrowser::OnBeforeNavigate2(const QString&, bool&) { }
bool IEWebBrowser::PreTranslateMessage(const QKeyEvent*)
{
    return false;
}
void IEWebBrowser::OnDestroy() { }
void IEWebBrowser::OnPageRecovered() { }
void IEWebBrowser::OnPrivateMessage(const QString&, const QString&) { }

void IEWebBrowser::DispatchInOrder(std::function<void()> message)
{
    d->queue.runInOrder(std::move(message));
}

void IEWebBrowser::SetCallDeadline(int milliseconds)
{
    d->deadlineMs = milliseconds;
}

const KeyState& IEWebBrowser::Keys() const
{
    return d->keys;
}

void IEWebBrowser::Cut()
{
    if (d->view)
        d->page->triggerAction(QWebEnginePage::Cut);
}

bool IEWebBrowser::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != d->inputWidget || !passesProcedure(*event))
        return QWidget::eventFilter(watched, event);
    if (d->isDying(*d->inputWidget)) {
        d->hadFocus |= event->type() == QEvent::FocusOut;
        return false;
    }

    const QPointer<IEWebBrowser> self(this);
    const QPointer<QWidget> hwnd(d->inputWidget);
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        d->keys.press(*key);
        // Both may wait for the page, and the world may change meanwhile.
        if (PreTranslateMessage(key) || !self || !hwnd)
            return true;
        if (d->uiNotify && d->uiNotify->OnTranslateAccelerator(key) == S_OK) {
            event->accept();
            return true;
        }
        if (!self || !hwnd)
            return true;
        if (carriesEditCommand(*key)) {
            QKeyEvent heldBack = overrideOf(*key);
            d->procedure(hwnd, &heldBack);
        }
        break;
    }
    case QEvent::ShortcutOverride: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (!carriesEditCommand(*key))
            break;
        // The engine's own answer: it acts on these where text can be edited.
        key->setAccepted(hwnd->inputMethodQuery(Qt::ImEnabled).toBool());
        return true;
    }
    case QEvent::KeyRelease:
        d->keys.release(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::FocusOut:
        d->keys.clear();
        break;
    default:
        break;
    }
    d->procedure(hwnd, event);
    return true;
}

void IEWebBrowser::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && d->channel) {
        const PageChannel::Settings settings = d->settings();
        d->channel->inject(settings);
        PostPrivate(QStringLiteral("colorScheme"),
            settings.dark ? QStringLiteral("{\"dark\":true}") : QStringLiteral("{\"dark\":false}"));
    }
}

void IEWebBrowser::focusInEvent(QFocusEvent* event)
{
    // Not by a focus proxy: the engine's own widget is replaced when its process dies, and Qt 6.4
    // then crashes on a chain of proxies.
    QWidget::focusInEvent(event);
    if (!d->view)
        return;
    d->view->setFocus(event->reason());
    PostPrivate(QStringLiteral("focus"), QStringLiteral("{}"));
}
