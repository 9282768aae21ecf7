#include "clipformat/HtmlFormat.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <optional>

namespace clipformat {
namespace {

// Kept: the start comment has a blank before its end, the end comment below has none.
constexpr std::string_view kHead = "Version:0.9\r\n"
                                   "StartHTML:00000000\r\n"
                                   "EndHTML:00000000\r\n"
                                   "StartFragment:00000000\r\n"
                                   "EndFragment:00000000\r\n"
                                   "<html><body>\r\n"
                                   "<!--StartFragment -->\r\n";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kTail = "<!--EndFragment-->\r\n</body>\r\n</html>";

constexpr std::size_t kDigits = 8;
constexpr std::size_t kMostBytes = 99'999'999; // what eight digits can say
constexpr std::size_t kMostText = kMostBytes - kHead.size() - kLineEnd.size() - kTail.size();

constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string_view untilZero(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

// Each name's first occurrence is in the header, which stands first.
void fillIn(std::string& block, std::string_view field, std::size_t offset)
{
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%08u", static_cast<unsigned>(offset));
    block.replace(block.find(field) + field.size(), kDigits, digits, kDigits);
}

bool startsWithDigit(std::string_view text)
{
    return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

// As scanf's "%d" reads it: blanks and one sign may precede, 0 if there is no number. A number too
// large for the type is the largest of its sign.
long long leadingNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!startsWithDigit(text))
            return 0;
    }
    long long number = 0;
    const auto end = text.data() + text.size();
    if (std::from_chars(text.data(), end, number).ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<long long>;
        return text.front() == '-' ? Limits::min() : Limits::max();
    }
    return number;
}

// The offset under its field, wherever that first occurs; it may lie behind `text`.
std::optional<std::size_t> offsetIn(std::string_view text, std::string_view field)
{
    const std::size_t at = text.find(field);
    if (at == std::string_view::npos)
        return std::nullopt;
    const long long number = leadingNumber(text.substr(at + field.size()));
    return number < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(number));
}

} // namespace

bool BuildHtmlFormat(std::string_view text, std::string& block)
{
    text = untilZero(text);
    if (text.size() > kMostText)
        return false;
    std::string made;
    made.reserve(kHead.size() + text.size() + kLineEnd.size() + kTail.size());
    made.append(kHead).append(text).append(kLineEnd).append(kTail);

    fillIn(made, "StartHTML:", made.find("<html>"));
    fillIn(made, "EndHTML:", made.size());
    // Kept: the fragment begins with its start comment, not behind it.
    fillIn(made, "StartFragment:", made.find("<!--StartFrag"));
    // Kept: the first end comment counts, even one that the text brought along.
    fillIn(made, "EndFragment:", made.find("<!--EndFrag"));
    block = std::move(made);
    return true;
}

bool CutHtmlFragment(std::string_view block, std::string& fragment)
{
    const std::string_view text = untilZero(block);
    const auto start = offsetIn(text, "StartFragment:");
    const auto end = offsetIn(text, "EndFragment:");
    if (!start || !end || *end < *start || *start > text.size())
        return false;
    // At most to the text's end. A copy, as `block` may be a view of `fragment`.
    fragment = std::string(text.substr(*start, *end - *start));
    return true;
}

} // namespace clipformat
