#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// The clipboard's list of files as Windows programs exchange it (CF_HDROP): a header of 20 bytes,
/// then the paths. All numbers are little-endian. docs/clipboard.md shows the bytes.
///
/// Time is linear in the bytes; std::bad_alloc alone is thrown.
namespace clipformat {

/// A list that was read.
struct FileBlock {
    bool wide = false; ///< what the header says of the text: 16-bit units, or narrow (UTF-8 here)
    std::vector<QString> paths; ///< in the block's order, read as the header says
};

/// A block for `paths`, written as 16-bit text under a header that says narrow text, as it always
/// was: a reader that believes the header finds one-character names in it (ReadFileBlock), and
/// ReadFileBlockAsWide the paths. False, with `block` as it was, for an empty list, and for a path
/// that holds U+0000, which would end it early and name another file. An empty path is written like
/// any other, and ends the list for every reader.
bool BuildFileBlock(const std::vector<QString>& paths, std::string& block);

/// Reads a block as its header says. The list ends at its first empty path; what follows is not
/// looked at, since a block may be larger than its content. False, with `files` as it was, if the
/// header is not whole, if the paths would begin inside the header or outside the block, or if a
/// path or the list has no terminator within the block.
bool ReadFileBlock(std::string_view block, FileBlock& files);

/// The same, taking the paths for 16-bit text whatever the header says.
bool ReadFileBlockAsWide(std::string_view block, std::vector<QString>& paths);

/// The content of the format "Preferred DropEffect" that goes with a block: a 32-bit 1, to copy.
std::string CopyDropEffect();

} // namespace clipformat
