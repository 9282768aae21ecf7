#include "platform/PageView.h"

#include "platform/RequestFilter.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

QWebEngineProfile* NewPageProfile(QObject* parent)
{
    auto* profile = new QWebEngineProfile(parent);
    profile->setUrlRequestInterceptor(new RequestFilter(profile));
    profile->setHttpCacheType(QWebEngineProfile::NoCache);
    profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    QWebEngineSettings* settings = profile->settings();
    using S = QWebEngineSettings;
    for (const auto off : {S::LocalContentCanAccessRemoteUrls, S::JavascriptCanOpenWindows,
             S::JavascriptCanAccessClipboard, S::PluginsEnabled, S::FullScreenSupportEnabled,
             S::ScreenCaptureEnabled, S::WebGLEnabled, S::AutoLoadIconsForPage, S::ErrorPageEnabled,
             S::NavigateOnDropEnabled, S::PdfViewerEnabled, S::HyperlinkAuditingEnabled,
             S::DnsPrefetchEnabled})
        settings->setAttribute(off, false);
    settings->setAttribute(S::LocalContentCanAccessFileUrls, true);
    settings->setAttribute(S::FocusOnNavigationEnabled, false);
    return profile;
}

BrowserPage::BrowserPage(QWebEngineProfile* profile, QObject* parent)
    : QWebEnginePage(profile, parent)
{
}

bool BrowserPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool mainFrame)
{
    if (mainFrame)
        return mayNavigate && mayNavigate(url);
    // The note's frame is made by our page; nothing in it goes anywhere else.
    return url.scheme() == u"about";
}

QWebEnginePage* BrowserPage::createWindow(WebWindowType)
{
    return nullptr;
}

void BrowserPage::javaScriptAlert(const QUrl& origin, const QString& text)
{
    if (!showMessage || !showMessage(text))
        QWebEnginePage::javaScriptAlert(origin, text);
}

QStringList BrowserPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&)
{
    // Files enter a note through native code only.
    return {};
}

PageView::PageView(QWidget* parent)
    : QWebEngineView(parent)
{
}

void PageView::setDragNotify(IIEDragNotify* notify)
{
    dragNotify = notify;
    if (notify)
        notify->m_defaultDropTarget = this;
}

bool PageView::event(QEvent* event)
{
    const bool result = QWebEngineView::event(event);
    // The engine makes its input widget as a child, anew after its process has died.
    if (event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved)
        QTimer::singleShot(0, this, &PageView::watchInputWidget);
    return result;
}

void PageView::watchInputWidget()
{
    QWidget* widget = focusProxy();
    if (widget == m_inputWidget)
        return;
    m_inputWidget = widget;
    if (widget)
        Q_EMIT inputWidgetChanged(widget);
}

void PageView::contextMenuEvent(QContextMenuEvent* event)
{
    if (uiNotify && uiNotify->ShowContextMenu() == S_OK)
        event->accept();
    else
        QWebEngineView::contextMenuEvent(event);
}

namespace {

/// Carries the answer of the notify interface over to the event.
void settle(QDropEvent* event, long result, int effect)
{
    if (result == S_OK) {
        event->setDropAction(Qt::DropAction(effect));
        event->accept();
    } else {
        event->ignore();
    }
}

} // namespace

void PageView::dragEnterEvent(QDragEnterEvent* event)
{
    const QScopedValueRollback guard(m_dragEvent, static_cast<QEvent*>(event));
    int effect = event->proposedAction();
    const auto keys = unsigned(event->modifiers());
    const QPoint at = event->position().toPoint();
    const long result = dragNotify ? dragNotify->OnDragEnter(event->mimeData(), keys, at, &effect)
                                   : DragEnter(event->mimeData(), keys, at, &effect);
    settle(event, result, effect);
}

void PageView::dragMoveEvent(QDragMoveEvent* event)
{
    const QScopedValueRollback guard(m_dragEvent, static_cast<QEvent*>(event));
    int effect = event->proposedAction();
    const auto keys = unsigned(event->modifiers());
    const QPoint at = event->position().toPoint();
    const long result =
        dragNotify ? dragNotify->OnDragOver(keys, at, &effect) : DragOver(keys, at, &effect);
    settle(event, result, effect);
}

void PageView::dragLeaveEvent(QDragLeaveEvent* event)
{
    const QScopedValueRollback guard(m_dragEvent, static_cast<QEvent*>(event));
    if (dragNotify)
        dragNotify->OnDragLeave();
    else
        DragLeave();
}

void PageView::dropEvent(QDropEvent* event)
{
    const QScopedValueRollback guard(m_dragEvent, static_cast<QEvent*>(event));
    int effect = event->proposedAction();
    const auto keys = unsigned(event->modifiers());
    const QPoint at = event->position().toPoint();
    const long result = dragNotify ? dragNotify->OnDrop(event->mimeData(), keys, at, &effect)
                                   : Drop(event->mimeData(), keys, at, &effect);
    settle(event, result, effect);
}

long PageView::DragEnter(const QMimeData*, unsigned, QPoint, int* effect)
{
    auto* event = static_cast<QDragEnterEvent*>(m_dragEvent);
    QWebEngineView::dragEnterEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}

long PageView::DragOver(unsigned, QPoint, int* effect)
{
    auto* event = static_cast<QDragMoveEvent*>(m_dragEvent);
    QWebEngineView::dragMoveEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}

long PageView::DragLeave()
{
    QWebEngineView::dragLeaveEvent(static_cast<QDragLeaveEvent*>(m_dragEvent));
    return S_OK;
}

long PageView::Drop(const QMimeData*, unsigned, QPoint, int* effect)
{
    auto* event = static_cast<QDropEvent*>(m_dragEvent);
    QWebEngineView::dropEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}
