#include "platform/KeyState.h"

#include <QKeyEvent>

int VirtualKey(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return 0x70 + (qtKey - Qt::Key_F1);
    return qtKey == Qt::Key_Control ? VK_CONTROL : 0;
}

void KeyState::press(const QKeyEvent& event)
{
    if (const int key = VirtualKey(event.key()))
        m_down.insert(key);
    // A control key pressed before the focus came here was never seen as a press.
    if (event.modifiers() & Qt::ControlModifier)
        m_down.insert(VK_CONTROL);
    else if (event.key() != Qt::Key_Control)
        m_down.remove(VK_CONTROL);
}

void KeyState::release(const QKeyEvent& event)
{
    if (!event.isAutoRepeat())
        m_down.remove(VirtualKey(event.key()));
}

void KeyState::clear()
{
    m_down.clear();
}

bool KeyState::isDown(int virtualKey) const
{
    return m_down.contains(virtualKey);
}
