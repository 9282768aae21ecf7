#pragma once

class QClipboard;

namespace clipdrag {

/// The desktop's clipboard, or null where there is no QGuiApplication.
QClipboard* DesktopClipboard();

} // namespace clipdrag
