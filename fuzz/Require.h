#pragma once

#include <cstdlib>

/// A property that holds for any input; the fuzzer reports an input for which it does not.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}
