#pragma once

#include "platform/BrowserNotify.h"
#include "platform/WindowMessage.h"
#include "platform/WindowStyle.h"
#include "support/Export.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class KeyState;

/// The procedure that handles an event of the browser's input widget. Returns what the browser
/// returned for it.
using WNDPROC = long (*)(QWidget* hwnd, QEvent* message);

/// The embedded browser as a child widget: shows one local page, calls its script synchronously
/// and takes calls from it. All operations belong to the thread of the user interface.
///
/// `setFocus` on it puts the caret into the page's text.
///
/// What it guarantees:
/// - A page call never hangs: it ends with the reply, with the death of the render process, or at
///   the deadline of 10 seconds, which kills the render process.
/// - Calls from the page and private messages are never delivered inside a page call. They wait and
///   are dispatched in the order of their arrival when no call is in flight.
/// - When the render process dies, the page is loaded again and `OnPageRecovered` puts its state
///   back. Page calls made meanwhile wait for that, 10 seconds at the most.
/// - Nothing is ever fetched from a network, and of the disk only the page, its pictures and the
///   attachment store are readable.
class NOMAR_EXPORT IEWebBrowser : public QWidget {
    Q_OBJECT
public:
    IEWebBrowser();
    ~IEWebBrowser() override;

    /// Makes this a child of `parent` with the geometry `rect` and makes the window of the browser.
    /// `id` is kept as the widget's property "id"; a `style` with `WS_VISIBLE` shows it, else
    /// `show` does.
    /// Returns 0 if `parent` is null or the window exists already, else 1.
    virtual int Create(QWidget* parent, const QRect& rect, unsigned id, unsigned style);
    /// Takes the browser down: calls `OnDestroy`, then deletes the browser's window. The destructor
    /// of a derived class does it at the latest.
    void DestroyWindow();

    /// Calls the page's function `functionName` and waits for its reply. `args` holds the script's
    /// arguments in reverse, the last one first; each goes over as text. Returns `S_OK` when the
    /// call ran, with the reply in `result` (`VT_BSTR` for text, else `VT_EMPTY`);
    /// `PAGE_CALL_FAILED` when there is no page yet or the function is missing or threw;
    /// `PAGE_CALL_LOST` when the render process died during the call; `PAGE_CALL_NOT_BACK` when it
    /// had died before and the page did not come back, when the browser was taken down before or
    /// during the call (this object may be gone then), or when the application quits. A lone
    /// surrogate in an argument or reply arrives as U+FFFD.
    long ExecJSFun(const QString& functionName, const std::vector<VARIANT>& args, VARIANT& result);
    /// Waits for a page whose render process has died, 10 seconds at the most. False if it is not
    /// back by then, or taken down; true at once in any other state. `ExecJSFun` waits by itself;
    /// this is for a caller that must look around before its call is sent.
    bool WaitForPage();
    /// Calls page functions with text arguments, in order and in one piece, without waiting. Used
    /// where no reply is of interest.
    void PostJSFun(const std::vector<std::pair<QString, QStringList>>& calls);

    /// The widget that receives the browser's input and private messages. Null before the first
    /// completion of the page. The engine replaces it when its process dies.
    QWidget* GetWebBrowseHwnd() const;
    /// Replaces the procedure of the browser's widget and returns the former one. Input, focus-out
    /// and private messages pass through it; key presses come after `PreTranslateMessage` and
    /// `IIEUINotify::OnTranslateAccelerator`.
    WNDPROC SetBrowserWndProc(WNDPROC procedure);
    /// Calls a procedure that `SetBrowserWndProc` returned; null stands for the browser's own.
    static long CallWindowProc(WNDPROC procedure, QWidget* hwnd, QEvent* message);

    /// The keys that are held.
    const KeyState& Keys() const;
    /// Gives the engine its cut command for what is selected. Returns at once.
    void Cut();

    void SetJSCallFunNotify(IJSCallFunNotify* notify); ///< Not owned; null takes it away.
    void SetIEDragNotify(IIEDragNotify* notify); ///< Not owned; null takes it away.
    void SetIEUINotify(IIEUINotify* notify); ///< Not owned; null takes it away.

    /// Loads the local page at `path`, an absolute disk path. The load begins when the event loop
    /// runs, so that the window is on the screen first.
    void Navigate(const QString& path);

protected:
    /// The page has completed loading. Page calls work from here on.
    virtual void OnDocumentComplete(const QString& url);
    /// A navigation of the whole view is about to begin; a true `cancel` stops it. Not called for
    /// the reload after a death of the render process.
    virtual void OnBeforeNavigate2(const QString& url, bool& cancel);
    /// A key press, before the browser. True keeps it from the browser.
    virtual bool PreTranslateMessage(const QKeyEvent* msg);
    /// The browser's window is about to go.
    virtual void OnDestroy();
    /// The page stands again after the render process had died; called in no page call. Put its
    /// state back with `PostJSFun`: whatever is called afterwards finds it restored.
    virtual void OnPageRecovered();
    /// Text from our own page on the private channel. May come inside an engine task: store it, do
    /// not call the page.
    virtual void OnPrivateMessage(const QString& kind, const QString& text);

    /// Runs `message` now, or after the calls and messages that wait, in order, if a page call is
    /// in flight.
    void DispatchInOrder(std::function<void()> message);
    /// How long a page call may take, in milliseconds; 10,000 at the start.
    void SetCallDeadline(int milliseconds);
    /// Sends a request to our own page on the private channel, without waiting.
    void PostPrivate(const QString& kind, const QString& text);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    class Private;
    friend class Private;
    std::unique_ptr<Private> d;
};
