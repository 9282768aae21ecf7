#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>

/// A window that steps aside for as long as this lives, so that it is not in a picture of the
/// screen.
class WindowAside {
public:
    /// Hides the window and waits, for a second at most, until the window system has taken it off
    /// the screen together with its frame, and then until those below it have had time to paint
    /// themselves. Events run meanwhile, all but the user's input. Null: there is nothing to hide.
    explicit WindowAside(QWidget* window);
    /// Shows it again where it was, and gives it the keyboard. It may be gone by now.
    ~WindowAside();
    WindowAside(const WindowAside&) = delete;
    WindowAside& operator=(const WindowAside&) = delete;

private:
    QPointer<QWidget> m_window;
    QPoint m_place;
};
