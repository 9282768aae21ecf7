#pragma once

#include <string>
#include <string_view>

/// The clipboard format that is registered as "HTML Format" (CF_HTML): a header of byte offsets,
/// then HTML in UTF-8. docs/clipboard.md shows the bytes.
///
/// Everything here is narrow text that nobody looks into: it should be UTF-8 by the format's rule,
/// and converting it is the caller's business. Offsets count bytes, never characters. A text ends
/// at its first zero byte, or where it ends. Both operations take time linear in the text, and both
/// throw std::bad_alloc alone.
namespace clipformat {

/// Puts `text`, the HTML of a fragment, into a whole block: header, frame, text, frame, without a
/// terminator. The result is false if an offset would need more than the eight digits that the
/// header has for it, that is if the block would be longer than 99,999,999 bytes; `block` is then
/// as it was.
bool BuildHtmlFormat(std::string_view text, std::string& block);

/// Cuts out what lies between the offsets StartFragment and EndFragment; the rest of the header is
/// not looked at. What BuildHtmlFormat made comes back with the start comment in front and a line
/// end behind, and grows by them with every pass.
///
/// An end behind the text, as of a block that was cut short, counts as the end of the text. The
/// result is false, and `fragment` as it was, if one of the two fields is missing or negative, if
/// the end lies before the start, or if the start lies behind the text. A field with no number
/// behind it counts as 0. Two equal offsets give an empty fragment.
bool CutHtmlFragment(std::string_view block, std::string& fragment);

} // namespace clipformat
