#pragma once

class QWidget;

/// The widget that a box or dialog of ours stands over, or null if there is none: the active modal
/// widget, so that nothing ever opens under a topmost dialog, else the active window, else, when
/// another program is active (as during a drop), a window of ours that is on the screen.
QWidget* DialogParent();
