#include "platform/KeyState.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

/// The same for the press and the release of one key. Events that no keyboard sent have no scan
/// code.
quint64 physicalKey(const QKeyEvent& event)
{
    constexpr quint64 noScanCode = quint64(1) << 32;
    const quint32 scanCode = event.nativeScanCode();
    return scanCode ? scanCode : noScanCode | quint32(event.key());
}

} // namespace

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
    const int key = VirtualKey(event.key());
    // A control key pressed before the focus came here was never seen as a press.
    m_isControlDown = key == VK_CONTROL || event.modifiers() & Qt::ControlModifier;
    if (key == VK_CONTROL)
        return;
    if (key)
        m_down.insert(physicalKey(event), key);
    else if (!event.isAutoRepeat()) // which may name the key anew, but it is still held
        m_down.remove(physicalKey(event));
}

void KeyState::release(const QKeyEvent& event)
{
    if (event.isAutoRepeat())
        return;
    m_down.remove(physicalKey(event));
    if (event.key() == Qt::Key_Control)
        m_isControlDown = false;
}

void KeyState::clear()
{
    m_down.clear();
    m_isControlDown = false;
}

bool KeyState::isDown(int virtualKey) const
{
    if (virtualKey == VK_CONTROL)
        return m_isControlDown;
    return std::find(m_down.begin(), m_down.end(), virtualKey) != m_down.end();
}
