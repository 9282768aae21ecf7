#include "capture/WindowAside.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#include <cstdlib>
#include <memory>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>
#endif

namespace {

constexpr int patienceMs = 1000;
constexpr int lookMs = 5;
/// Nobody tells when the windows that come to light have painted themselves, or when an effect of
/// the desktop's is at its end.
constexpr int settleMs = 250;

void runEvents(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

#if QT_CONFIG(xcb)

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

/// The frame that the window manager has put around a window: it is unmapped some time after the
/// window itself, by another program.
class Frame {
public:
    explicit Frame(const QWindow& window)
    {
        if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
            m_connection = x11->connection();
        if (m_connection)
            m_frame = outermost(xcb_window_t(window.winId()));
    }

    bool isOnScreen() const
    {
        if (!m_connection)
            return false;
        const Owned<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, m_frame), nullptr),
            &std::free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

private:
    xcb_window_t outermost(xcb_window_t window) const
    {
        for (;;) {
            const Owned<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr),
                &std::free);
            if (!tree || tree->parent == tree->root || tree->parent == XCB_NONE)
                return window;
            window = tree->parent;
        }
    }

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_frame = XCB_NONE;
};

#else

class Frame {
public:
    explicit Frame(const QWindow&) { }
    bool isOnScreen() const { return false; }
};

#endif

} // namespace

WindowAside::WindowAside(QWidget* window)
    : m_window(window)
{
    if (!window)
        return;
    m_place = window->pos();
    const QPointer<QWindow> handle = window->windowHandle();
    if (!handle || !window->isVisible())
        return;
    const Frame frame(*handle);
    window->hide();
    const QDeadlineTimer deadline(patienceMs);
    while (((handle && handle->isExposed()) || frame.isOnScreen()) && !deadline.hasExpired())
        runEvents(lookMs);
    runEvents(settleMs);
}

WindowAside::~WindowAside()
{
    if (!m_window)
        return;
    // A window manager places a window anew that has no place of its own.
    constexpr Qt::WindowStates placed =
        Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen;
    if (!(m_window->windowState() & placed))
        m_window->move(m_place);
    m_window->show();
    m_window->activateWindow();
}
