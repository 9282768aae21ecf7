#pragma once

#include <QHash>

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
///
/// A release may name another key than its press: with a Cyrillic layout, say, a key is C while
/// control is held and a Cyrillic letter without. So the two are matched by the key itself, and
/// what its press named counts until then.
class KeyState {
public:
    void press(const QKeyEvent& event);
    void release(const QKeyEvent& event);
    void clear();
    /// True while the key is held. Control also counts as held when the last event said so.
    bool isDown(int virtualKey) const;

private:
    QHash<quint64, int> m_down; ///< The virtual key numbers, by the physical key.
    bool m_isControlDown = false;
};
