#pragma once

#include "platform/BrowserNotify.h"

#include <QWebEnginePage>
#include <QWebEngineView>

#include <functional>

class QWebEngineProfile;

/// A profile of its own for one control: nothing kept, nothing fetched.
QWebEngineProfile* NewPageProfile(QObject* parent);

/// The engine's page with every way out closed.
class BrowserPage : public QWebEnginePage {
    Q_OBJECT
public:
    BrowserPage(QWebEngineProfile* profile, QObject* parent);

    /// Asked before a navigation of the main frame; false stops it.
    std::function<bool(const QUrl&)> mayNavigate;
    /// Asked before a script alert is shown; true when it has been handled.
    std::function<bool(const QString&)> showMessage;

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool mainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    QStringList chooseFiles(
        FileSelectionMode mode, const QStringList& old, const QStringList& types) override;
};

/// The engine's view. Shows drags and menus to the notify interfaces before the engine, and tells
/// when the input widget has been replaced.
class PageView : public QWebEngineView, private DropTarget {
    Q_OBJECT
public:
    explicit PageView(QWidget* parent);

    IIEDragNotify* dragNotify = nullptr;
    IIEUINotify* uiNotify = nullptr;
    void setDragNotify(IIEDragNotify* notify);

Q_SIGNALS:
    void inputWidgetChanged(QWidget* widget);

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // The engine's own behaviour, for the event that is being delivered.
    DragOrigin Origin() const override;
    long DragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) override;
    long DragOver(unsigned keyState, QPoint pt, int* effect) override;
    long DragLeave() override;
    long Drop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) override;
    /// Hands a drag event to a step of the notify interface, or to the engine's if there is none.
    void deliver(QDropEvent* event, const std::function<long(unsigned, QPoint, int*)>& step);
    void watchInputWidget();

    QWidget* m_inputWidget = nullptr;
    QEvent* m_dragEvent = nullptr;
    bool m_engineHasDrag = false; ///< The drag in progress has entered the engine.
};
