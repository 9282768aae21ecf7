// The life of the control's page: the engine's start, the first completion, the calls in both
// directions, and the way back after the render process has died.

#include "platform/IEWebBrowser_p.h"
#include "support/Log.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QLocale>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWindow>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

namespace {

/// A page whose process dies this often within a minute is given up.
constexpr int maxDeaths = 5;
constexpr int reloadMs = 3000;
constexpr int unheardMs = 500; ///< A page that is loaded has said so long before.
constexpr int exposureWaitMs = 300;
constexpr int deathWindowMs = 60000;
/// A reply that is asked for ahead of those that count: its length, and how long after the start.
constexpr int roomyReplyLength = 4 << 20;
constexpr int roomyReplyMs = 1000;

VARIANT toVariant(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return VARIANT::Text(value.toString());
    case QMetaType::Bool:
        return VARIANT::Bool(value.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
        return VARIANT::Integer(VT_I4, value.toLongLong());
    case QMetaType::Double: {
        const double number = value.toDouble();
        const auto whole = qint32(number);
        return number == whole ? VARIANT::Integer(VT_I4, whole) : VARIANT::Real(VT_R8, number);
    }
    default: {
        VARIANT empty;
        empty.vt = value.isNull() ? VT_NULL : VT_UNKNOWN;
        return empty;
    }
    }
}

} // namespace

IEWebBrowser::Private::Private(IEWebBrowser& browser)
    : q(browser)
{
    m_reload.setSingleShot(true);
    connect(&m_reload, &QTimer::timeout, this, &Private::load);
}

IEWebBrowser::Private::~Private()
{
    close();
}

void IEWebBrowser::Private::close()
{
    setState(State::Closed);
    // A wait further up this thread's stack must not find the engine gone.
    calls.loseAll();
    Q_EMIT settled();
    setInputWidget(nullptr);
    delete view;
}

void IEWebBrowser::Private::setState(State next)
{
    state = next;
    m_unheardLoads = 0;
    if (next == State::Lost) {
        m_lost.emplace(queue);
    } else {
        m_lost.reset();
        m_reload.stop();
    }
}

void IEWebBrowser::Private::startSoon()
{
    if (state != State::Loading)
        return; // Taken down before it began.
    m_startWaits = true;
    QWindow* const window = q.window()->windowHandle();
    if (view || !window || !q.window()->isVisible() || window->isExposed())
        return startEngine();
    window->installEventFilter(this);
    // A window may be shown where nobody ever exposes it.
    QTimer::singleShot(exposureWaitMs, this, &Private::startEngine);
}

bool IEWebBrowser::Private::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Expose) {
        watched->removeEventFilter(this);
        // Before the window paints itself: meanwhile the engine's processes come up.
        startEngine();
    }
    return false;
}

void IEWebBrowser::Private::startEngine()
{
    if (!std::exchange(m_startWaits, false) || state != State::Loading)
        return; // The other one of exposure and time-out was first, or it is taken down.
    if (view)
        return load();
    page = std::make_unique<BrowserPage>(NewPageProfile(this), nullptr);
    page->mayNavigate = [this](const QUrl& target) { return mayNavigate(target); };
    page->showMessage = [this](const QString& text) {
        return uiNotify && uiNotify->ShowMessage(text) == S_OK;
    };
    page->setBackgroundColor(q.palette().base().color());
    channel = std::make_unique<PageChannel>(*page);
    channel->inject(settings());
    connect(channel.get(), &PageChannel::called, this, &Private::onCall);
    connect(channel.get(), &PageChannel::privateMessage, this,
        [this](const QString& kind, const QString& text) {
            if (kind == u"ready")
                QTimer::singleShot(1, this, &Private::onPageReady);
            else
                q.OnPrivateMessage(kind, text);
        });
    connect(page.get(), &QWebEnginePage::loadFinished, this, &Private::onLoadFinished);
    connect(page.get(), &QWebEnginePage::urlChanged, this, &Private::onUrlChanged);
    connect(page.get(), &QWebEnginePage::renderProcessTerminated, this, &Private::onProcessGone);

    view = new PageView(&q);
    view->setDragNotify(dragNotify);
    view->uiNotify = uiNotify;
    connect(view, &PageView::inputWidgetChanged, this, &Private::setInputWidget);
    view->setPage(page.get());
    q.layout()->addWidget(view);
    if (q.hasFocus())
        view->setFocus(); // The control was given the focus while it was empty.
    load();
}

void IEWebBrowser::Private::load()
{
    if (!view)
        return;
    // Now and then the engine does not give a new process the injected script, and never makes up
    // for it: the page stands there and cannot say so.
    if (m_unheardLoads > 0)
        channel->inject(settings());
    page->load(url);
    // A load can be lost with the process that had just taken it on.
    if (state == State::Lost)
        m_reload.start(reloadMs);
}

PageChannel::Settings IEWebBrowser::Private::settings() const
{
    return {QLocale().bcp47Name(), q.palette().window().color().lightness() < 128};
}

void IEWebBrowser::Private::setInputWidget(QWidget* widget)
{
    if (inputWidget)
        inputWidget->removeEventFilter(&q);
    inputWidget = widget;
    if (!inputWidget)
        return;
    inputClass = widget->metaObject();
    inputWidget->installEventFilter(&q);
}

bool IEWebBrowser::Private::mayNavigate(const QUrl& target)
{
    if (state == State::Lost && target == url)
        return true; // Our own load of a page that is gone passes the freeze.
    bool cancel = false;
    q.OnBeforeNavigate2(target.toString(), cancel);
    return !cancel && target == url;
}

void IEWebBrowser::Private::onLoadFinished(bool ok)
{
    if (state == State::Lost && ok) {
        // Unless the page says so itself in time, it is loaded again; where that was in vain, the
        // machine is given longer.
        m_reload.start(m_unheardLoads++ == 0 ? unheardMs : reloadMs);
    }
    if (state != State::Loading)
        return;
    if (!ok) {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR] IEWebBrowser page could not be loaded: ") + url.toLocalFile());
        return;
    }
    state = State::Ready;
    setInputWidget(view->focusProxy());
    makeRoomSoon();
    q.OnDocumentComplete(url.toString());
}

void IEWebBrowser::Private::makeRoomSoon()
{
    // A long reply is several blocks in the heap of the render process. The C library hands them
    // back to the system behind each reply, which costs as much as the reply does, unless a larger
    // block was freed before (M_TRIM_THRESHOLD in mallopt(3)).
    QTimer::singleShot(roomyReplyMs, this, [this] {
        if (state == State::Ready)
            page->runJavaScript(QStringLiteral("' '.repeat(%1)").arg(roomyReplyLength),
                QWebEngineScript::MainWorld, [](const QVariant&) {});
    });
}

long IEWebBrowser::Private::call(
    const QString& function, const std::vector<VARIANT>& args, VARIANT& result)
{
    result = VARIANT();
    const QPointer<Private> self(this);
    if (!waitForPage())
        return PAGE_CALL_NOT_BACK;
    if (state != State::Ready)
        return PAGE_CALL_FAILED;

    QStringList texts;
    for (auto argument = args.rbegin(); argument != args.rend(); ++argument)
        texts.append(argument->bstrVal);
    const QString script = CallScript(function, texts);
    QVariant reply;
    PageCalls::End end;
    {
        const CallQueue::Flight flight(queue);
        end = calls.run(*page, script, deadlineMs, reply);
    }
    if (!self || state == State::Closed || end == PageCalls::End::Quit)
        return PAGE_CALL_NOT_BACK;
    if (end == PageCalls::End::Deadline)
        killRenderProcess();
    if (end != PageCalls::End::Reply)
        return PAGE_CALL_LOST;
    if (reply.typeId() == QMetaType::QString) {
        result = VARIANT::Text(reply.toString());
        return S_OK;
    }
    // Anything but a text comes in an array, so that an empty reply is a script that did not run.
    const QStringList parts = reply.toStringList();
    const QString kind = parts.value(0);
    if (kind == u"text")
        result = VARIANT::Text(parts.sliced(1).join(QString()));
    return kind == u"text" || kind == u"value" ? S_OK : PAGE_CALL_FAILED;
}

void IEWebBrowser::Private::killRenderProcess()
{
    // A script that never ends survives a reload; only its process can be ended. The page is loaded
    // again when the engine has noticed.
    losePage();
#ifdef Q_OS_UNIX
    const qint64 pid = page->renderProcessPid();
    if (pid > 0)
        ::kill(pid_t(pid), SIGKILL);
#endif
}

void IEWebBrowser::Private::losePage()
{
    if (state == State::Ready)
        setState(State::Lost);
    calls.loseAll();
}

void IEWebBrowser::Private::onProcessGone()
{
    if (state != State::Ready && state != State::Loading && state != State::Lost)
        return;
    losePage();
    if (!m_sinceDeath.isValid() || m_sinceDeath.elapsed() > deathWindowMs) {
        m_deaths = 0;
        m_sinceDeath.start();
    }
    if (++m_deaths <= maxDeaths) {
        m_reload.start(1);
    } else {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR] IEWebBrowser page process keeps dying, given up"));
        setState(State::Failed);
        Q_EMIT settled();
    }
}

void IEWebBrowser::Private::onUrlChanged(const QUrl& now)
{
    // The engine asks nobody before it shows "about:blank".
    if (state != State::Ready || now.matches(url, QUrl::RemoveFragment))
        return;
    losePage();
    m_reload.start(1);
}

void IEWebBrowser::Private::reload()
{
    m_sinceDeath.invalidate();
    setState(State::Lost);
    m_reload.start(1);
}

bool IEWebBrowser::Private::waitForPage()
{
    if (state == State::Failed)
        reload();
    if (state != State::Lost)
        return state != State::Closed;
    const QPointer<Private> self(this);
    QEventLoop loop;
    connect(this, &Private::settled, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(deadlineMs, &loop, &QEventLoop::quit);
    QCoreApplication::postEvent(&loop, new QEvent(QEvent::None));
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return self && state == State::Ready;
}

void IEWebBrowser::Private::onPageReady()
{
    if (state != State::Lost)
        return;
    setState(State::Ready);
    setInputWidget(view->focusProxy());
    if (std::exchange(hadFocus, false) && !q.window()->focusWidget())
        view->setFocus();
    makeRoomSoon();
    q.OnPageRecovered();
    Q_EMIT settled();
}

void IEWebBrowser::Private::onCall(const QVariantList& arguments)
{
    // A script's arguments stand in reverse, as the call interface has them.
    DISPPARAMS params;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument)
        params.rgvarg.push_back(toVariant(*argument));
    params.cArgs = unsigned(params.rgvarg.size());
    queue.post([this, params] {
        const long id = callNotify ? callNotify->OnGetFunId(QStringLiteral("CppProcessor")) : -1;
        if (id == -1)
            return;
        VARIANT result;
        QString exception;
        callNotify->OnExecuteFun(id, params, result, exception);
    });
}
