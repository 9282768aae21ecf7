#pragma once

/// Bits of the style that a `Create` takes.
inline constexpr unsigned WS_CHILD = 0x40000000; ///< Every window here is one anyway.
inline constexpr unsigned WS_VISIBLE = 0x10000000; ///< Shown at once, else by `show`.
