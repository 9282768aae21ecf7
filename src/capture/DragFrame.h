#pragma once

#include <QPointer>
#include <QRect>
#include <QSize>

class QWidget;

/// The frame that shows, while a rectangle is moved over a window, where it will be. A desktop that
/// composes its windows lets nobody draw across them, so the frame is a child of the window, which
/// the mouse does not see.
class DragFrame {
public:
    explicit DragFrame(QWidget* window);
    ~DragFrame();
    DragFrame(const DragFrame&) = delete;
    DragFrame& operator=(const DragFrame&) = delete;

    /// Takes the last frame away and draws that of `rect`, whose lines are as thick as `size` says.
    /// A size of (0, 0) draws none.
    void DrawDragRect(const QRect& rect, const QSize& size);

private:
    class Lines;
    QWidget* const m_window;
    QPointer<Lines> m_lines; // The window's child, which may go with it.
};
