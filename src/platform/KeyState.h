#pragma once

#include <QSet>

class QKeyEvent;

/// Numbers of virtual keys as the key operations compare them.
enum : int {
    VK_CONTROL = 0x11,
    VK_F4 = 0x73,
    VK_F5 = 0x74,
};

/// The virtual key number of a Qt key: letters and digits by their upper-case code, function keys
/// from 0x70 on, control; 0 for any other.
int VirtualKey(int qtKey);

/// Which keys are down, by our own track of the browser's key events. Cleared when the focus goes,
/// as releases are then seen by another window.
class KeyState {
public:
    void press(const QKeyEvent& event);
    void release(const QKeyEvent& event);
    void clear();
    /// True while the key is held. Control also counts as held when the last event said so.
    bool isDown(int virtualKey) const;

private:
    QSet<int> m_down;
};
