#include "platform/PageView.h"

#include "platform/EngineFlags.h"
#include "platform/RequestFilter.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPointer>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

QWebEngineProfile* NewPageProfile(QObject* parent)
{
    EnableEngineFeatures(); // The first profile starts the engine.
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
    const auto action = Qt::DropAction(effect);
    // An action that the source does not offer would be replaced by the one it proposes.
    if (result == S_OK && event->possibleActions().testFlag(action)) {
        event->setDropAction(action);
        event->accept();
    } else {
        event->ignore();
    }
}

} // namespace

void PageView::deliver(QDropEvent* event, const std::function<long(unsigned, QPoint, int*)>& step)
{
    // A drop can wait for the page, and the host can end the control meanwhile.
    const QPointer<PageView> self(this);
    QEvent* const outer = std::exchange(m_dragEvent, event);
    int effect = event->possibleActions();
    const long result = step(unsigned(event->modifiers()), event->position().toPoint(), &effect);
    settle(event, result, effect);
    if (self)
        m_dragEvent = outer;
}

void PageView::dragEnterEvent(QDragEnterEvent* event)
{
    m_engineHasDrag = false;
    deliver(event, [&](unsigned keys, QPoint at, int* effect) {
        return dragNotify ? dragNotify->OnDragEnter(event->mimeData(), keys, at, effect)
                          : DragEnter(event->mimeData(), keys, at, effect);
    });
    // Qt sends nothing more of a drag that was not let in, not even that it has gone. Refused are
    // the moves that follow.
    if (!event->isAccepted()) {
        event->setDropAction(Qt::IgnoreAction);
        event->accept();
    }
}

void PageView::dragMoveEvent(QDragMoveEvent* event)
{
    deliver(event, [&](unsigned keys, QPoint at, int* effect) {
        return dragNotify ? dragNotify->OnDragOver(keys, at, effect) : DragOver(keys, at, effect);
    });
}

void PageView::dragLeaveEvent(QDragLeaveEvent* event)
{
    const QScopedValueRollback guard(m_dragEvent, static_cast<QEvent*>(event));
    if (dragNotify)
        dragNotify->OnDragLeave();
    else
        DragLeave();
    m_engineHasDrag = false;
}

void PageView::dropEvent(QDropEvent* event)
{
    deliver(event, [&](unsigned keys, QPoint at, int* effect) {
        return dragNotify ? dragNotify->OnDrop(event->mimeData(), keys, at, effect)
                          : Drop(event->mimeData(), keys, at, effect);
    });
}

DragOrigin PageView::Origin() const
{
    const QObject* source = static_cast<const QDropEvent*>(m_dragEvent)->source();
    if (!source)
        return DragOrigin::OtherProcess;
    for (const QObject* object = source; object; object = object->parent()) {
        if (object == this || object == page())
            return DragOrigin::ThisBrowser;
    }
    return DragOrigin::ThisProcess;
}

long PageView::DragEnter(const QMimeData*, unsigned, QPoint, int* effect)
{
    m_engineHasDrag = true;
    auto* event = static_cast<QDragEnterEvent*>(m_dragEvent);
    QWebEngineView::dragEnterEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}

// The engine knows nothing of a drag that did not enter it, and does not ask whether there is one.

long PageView::DragOver(unsigned, QPoint, int* effect)
{
    if (!m_engineHasDrag)
        return S_FALSE;
    auto* event = static_cast<QDragMoveEvent*>(m_dragEvent);
    QWebEngineView::dragMoveEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}

long PageView::DragLeave()
{
    if (m_engineHasDrag)
        QWebEngineView::dragLeaveEvent(static_cast<QDragLeaveEvent*>(m_dragEvent));
    return S_OK;
}

long PageView::Drop(const QMimeData*, unsigned, QPoint, int* effect)
{
    if (!std::exchange(m_engineHasDrag, false))
        return S_FALSE;
    auto* event = static_cast<QDropEvent*>(m_dragEvent);
    QWebEngineView::dropEvent(event);
    *effect = event->dropAction();
    return event->isAccepted() ? S_OK : S_FALSE;
}
