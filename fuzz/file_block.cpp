// The list of files from arbitrary bytes, by both readings; what was read as 16-bit text is built
// and read again.

#include "Require.h"

#include "clipformat/FileBlock.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The view ends where the memory ends, so that the sanitizer sees a read behind it.
    const std::vector<char> exact(data, data + size);
    const std::string_view input(exact.data(), exact.size());

    clipformat::FileBlock files;
    const bool isRead = clipformat::ReadFileBlock(input, files);
    require(isRead || files.paths.empty());
    std::vector<QString> paths;
    const bool isWideRead = clipformat::ReadFileBlockAsWide(input, paths);
    if (isRead && files.wide)
        require(isWideRead && paths == files.paths);

    std::string block;
    require(clipformat::BuildFileBlock(paths, block) == !paths.empty());
    std::vector<QString> back;
    require(paths.empty() || (clipformat::ReadFileBlockAsWide(block, back) && back == paths));
    return 0;
}
