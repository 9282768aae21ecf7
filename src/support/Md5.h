#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The MD5 message digest of RFC 1321, for a message that comes in pieces.
///
/// Taking the digest does not disturb the message: more may be added afterwards, and the next
/// digest is that of the longer message.
class Md5Context {
public:
    using Digest = std::array<std::uint8_t, 16>;

    void update(const void* data, std::size_t length);
    const Digest& digest();

private:
    void addToBitCount(std::size_t length);
    std::size_t buffered() const { return (m_count[0] >> 3) & 63; }
    void pad();

    std::array<std::uint32_t, 4> m_state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    std::array<std::uint32_t, 2> m_count{}; // bits, low word first
    std::array<std::uint8_t, 64> m_buffer{}; // the tail that does not fill a block yet
    Digest m_digest{};
    bool m_finished = false; // m_digest is that of all that was added
};
