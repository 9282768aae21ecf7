// Base64 of arbitrary bytes and back, and arbitrary text read as Base64.

#include "Require.h"

#include "support/Text.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The views end where the memory ends, so that the sanitizer sees a read behind it.
    const std::vector<char> exact(data, data + size);
    const std::string_view input(exact.data(), exact.size());
    const std::string decoded = Base64Decode(input);
    require(decoded.size() <= (size + 3) / 4 * 3);
    require(decoded.find('\0') == std::string::npos);

    const std::string encoded = Base64Encode(exact.data(), exact.size());
    require(encoded.size() == (size + 2) / 3 * 4);
    require(Base64Decode(encoded) == input.substr(0, input.find('\0')));
    return 0;
}
