#pragma once

#include "platform/CallQueue.h"
#include "platform/IEWebBrowser.h"
#include "platform/KeyState.h"
#include "platform/PageCall.h"
#include "platform/PageChannel.h"
#include "platform/PageView.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <optional>

/// The engine's side of the control, and the life of its page.
class IEWebBrowser::Private : public QObject {
    Q_OBJECT
public:
    /// The page's life. `Lost` is the time between a death of the render process and the moment
    /// when the page is usable again; `Failed` is a page that kept dying.
    enum class State { Empty, Loading, Ready, Lost, Failed, Closed };

    explicit Private(IEWebBrowser& browser);
    ~Private() override;

    /// Ends the page for good.
    void close();

    /// Starts the engine when the window is on the screen: that takes a while.
    void startSoon();
    void startEngine();
    void load();
    void setInputWidget(QWidget* widget);

    long call(const QString& function, const std::vector<VARIANT>& args, VARIANT& result);
    /// Waits until the page is back; false if it does not come back in time.
    bool waitForPage();

    void onLoadFinished(bool ok);
    void onProcessGone();
    void onPageReady();
    void makeRoomSoon();
    void onCall(const QVariantList& arguments);
    void onUrlChanged(const QUrl& now);
    void killRenderProcess();
    void losePage();
    void reload();
    bool mayNavigate(const QUrl& url);
    PageChannel::Settings settings() const;

    IEWebBrowser& q;
    State state = State::Empty;
    /// After this a page call gives up, and so does the wait for a page that has died.
    int deadlineMs = 10000;
    QUrl url;
    CallQueue queue;
    PageCalls calls;
    KeyState keys;
    std::unique_ptr<BrowserPage> page; // Before the view, which must go first.
    QPointer<PageView> view;
    std::unique_ptr<PageChannel> channel;
    QPointer<QWidget> inputWidget;
    const QMetaObject* inputClass = nullptr;
    /// True for a widget in its destructor, where it is no more of the class it was: the engine
    /// destroys it when its process dies, and no event that it still sends may start a wait.
    bool isDying(const QWidget& widget) const { return widget.metaObject() != inputClass; }
    bool hadFocus = false; ///< When its process died.
    WNDPROC procedure = nullptr;

    IJSCallFunNotify* callNotify = nullptr;
    IIEDragNotify* dragNotify = nullptr;
    IIEUINotify* uiNotify = nullptr;

Q_SIGNALS:
    /// The page came back, or was given up.
    void settled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setState(State next);

    /// While the page is lost, what came in waits as it does during a page call.
    std::optional<CallQueue::Flight> m_lost;
    int m_deaths = 0;
    QElapsedTimer m_sinceDeath;
    bool m_startWaits = false;
    QTimer m_reload; ///< The next load of a page that is lost.
    int m_unheardLoads = 0; ///< Of a lost page that has not said that it is ready.
};
