#pragma once

/// The format version of a note's text. A stored file may carry a number that has no name here; it
/// is kept as it stands.
enum NOTE_HTML_VER_NUMBER : int {
    /// No marker, or one that could not be read. Upgraded like version 1.
    NOTE_HTML_VER_0 = 0,
    /// Attachment elements may lack `nm_exdata`.
    NOTE_HTML_VER_1 = 1,
    /// The current version: every attachment element carries `nm_exdata`.
    NOTE_HTML_VER_2 = 2,
};
