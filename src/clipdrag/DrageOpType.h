#pragma once

/// The kind of the drag in progress, as the entering of it found out. A handler that has seen no
/// drag has neither value.
enum DRAGE_OP_TYPE : int {
    DRAGE_OP_DEFAULT = 1, ///< The browser's: text, addresses, what the page drags itself.
    DRAGE_OP_FILE = 2, ///< Files or an image, which become attachments.
};
