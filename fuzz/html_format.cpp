// The "HTML Format" bytes: cut out of anything, and build around anything and cut out again.

#include "Require.h"

#include "clipformat/HtmlFormat.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

constexpr std::string_view kStartComment = "<!--StartFragment -->\r\n";
constexpr std::string_view kAsItWas = "as it was";

// The view ends where the memory ends, so that the sanitizer sees a read behind it.
void cut(std::string_view block)
{
    std::string fragment(kAsItWas);
    if (!clipformat::CutHtmlFragment(block, fragment)) {
        require(fragment == kAsItWas);
        return;
    }
    require(fragment.find('\0') == std::string::npos);
    require(block.substr(0, block.find('\0')).find(fragment) != std::string_view::npos);
}

void buildAndCut(std::string_view text)
{
    std::string block;
    require(clipformat::BuildHtmlFormat(text, block));
    std::string fragment;
    require(clipformat::CutHtmlFragment(block, fragment));
    text = text.substr(0, text.find('\0'));
    const std::size_t end = text.find("<!--EndFrag");
    std::string expected(kStartComment);
    expected += text.substr(0, end);
    if (end == std::string_view::npos)
        expected += "\r\n";
    require(fragment == expected);

    // Cut short in the middle of the fragment, the block still has what comes before.
    const std::size_t half = fragment.size() / 2;
    std::string front;
    require(clipformat::CutHtmlFragment(
        std::string_view(block).substr(0, block.find(kStartComment) + half), front));
    require(front == fragment.substr(0, half));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<char> exact(data, data + size);
    const std::string_view input(exact.data(), exact.size());
    cut(input);
    buildAndCut(input);
    return 0;
}
