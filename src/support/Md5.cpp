#include "support/Md5.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

using Word = std::uint32_t;

constexpr std::size_t kBlock = 64;

// The auxiliary functions of RFC 1321. Their first argument is the word that the step before has
// only just made, so each is written to need it as late as can be.
constexpr Word F(Word x, Word y, Word z)
{
    return z ^ (x & (y ^ z));
}
constexpr Word G(Word x, Word y, Word z)
{
    return (y & ~z) + (x & z);
} // no bit in common: + is |
constexpr Word H(Word x, Word y, Word z)
{
    return x ^ (y ^ z);
}
constexpr Word I(Word x, Word y, Word z)
{
    return y ^ (x | ~z);
}

template <Word (*function)(Word, Word, Word), int shift>
inline void step(Word& a, Word b, Word c, Word d, Word word, Word constant)
{
    a = b + std::rotl(a + word + constant + function(b, c, d), shift);
}

Word littleEndian(Word word)
{
    if constexpr (std::endian::native == std::endian::big)
        return __builtin_bswap32(word);
    return word;
}

void transform(std::array<Word, 4>& state, const std::uint8_t* block)
{
    Word x[16];
    std::memcpy(x, block, sizeof x);
    for (Word& word : x)
        word = littleEndian(word);
    auto [a, b, c, d] = state;

    step<F, 7>(a, b, c, d, x[0], 0xd76aa478);
    step<F, 12>(d, a, b, c, x[1], 0xe8c7b756);
    step<F, 17>(c, d, a, b, x[2], 0x242070db);
    step<F, 22>(b, c, d, a, x[3], 0xc1bdceee);
    step<F, 7>(a, b, c, d, x[4], 0xf57c0faf);
    step<F, 12>(d, a, b, c, x[5], 0x4787c62a);
    step<F, 17>(c, d, a, b, x[6], 0xa8304613);
    step<F, 22>(b, c, d, a, x[7], 0xfd469501);
    step<F, 7>(a, b, c, d, x[8], 0x698098d8);
    step<F, 12>(d, a, b, c, x[9], 0x8b44f7af);
    step<F, 17>(c, d, a, b, x[10], 0xffff5bb1);
    step<F, 22>(b, c, d, a, x[11], 0x895cd7be);
    step<F, 7>(a, b, c, d, x[12], 0x6b901122);
    step<F, 12>(d, a, b, c, x[13], 0xfd987193);
    step<F, 17>(c, d, a, b, x[14], 0xa679438e);
    step<F, 22>(b, c, d, a, x[15], 0x49b40821);

    step<G, 5>(a, b, c, d, x[1], 0xf61e2562);
    step<G, 9>(d, a, b, c, x[6], 0xc040b340);
    step<G, 14>(c, d, a, b, x[11], 0x265e5a51);
    step<G, 20>(b, c, d, a, x[0], 0xe9b6c7aa);
    step<G, 5>(a, b, c, d, x[5], 0xd62f105d);
    step<G, 9>(d, a, b, c, x[10], 0x02441453);
    step<G, 14>(c, d, a, b, x[15], 0xd8a1e681);
    step<G, 20>(b, c, d, a, x[4], 0xe7d3fbc8);
    step<G, 5>(a, b, c, d, x[9], 0x21e1cde6);
    step<G, 9>(d, a, b, c, x[14], 0xc33707d6);
    step<G, 14>(c, d, a, b, x[3], 0xf4d50d87);
    step<G, 20>(b, c, d, a, x[8], 0x455a14ed);
    step<G, 5>(a, b, c, d, x[13], 0xa9e3e905);
    step<G, 9>(d, a, b, c, x[2], 0xfcefa3f8);
    step<G, 14>(c, d, a, b, x[7], 0x676f02d9);
    step<G, 20>(b, c, d, a, x[12], 0x8d2a4c8a);

    step<H, 4>(a, b, c, d, x[5], 0xfffa3942);
    step<H, 11>(d, a, b, c, x[8], 0x8771f681);
    step<H, 16>(c, d, a, b, x[11], 0x6d9d6122);
    step<H, 23>(b, c, d, a, x[14], 0xfde5380c);
    step<H, 4>(a, b, c, d, x[1], 0xa4beea44);
    step<H, 11>(d, a, b, c, x[4], 0x4bdecfa9);
    step<H, 16>(c, d, a, b, x[7], 0xf6bb4b60);
    step<H, 23>(b, c, d, a, x[10], 0xbebfbc70);
    step<H, 4>(a, b, c, d, x[13], 0x289b7ec6);
    step<H, 11>(d, a, b, c, x[0], 0xeaa127fa);
    step<H, 16>(c, d, a, b, x[3], 0xd4ef3085);
    step<H, 23>(b, c, d, a, x[6], 0x04881d05);
    step<H, 4>(a, b, c, d, x[9], 0xd9d4d039);
    step<H, 11>(d, a, b, c, x[12], 0xe6db99e5);
    step<H, 16>(c, d, a, b, x[15], 0x1fa27cf8);
    step<H, 23>(b, c, d, a, x[2], 0xc4ac5665);

    step<I, 6>(a, b, c, d, x[0], 0xf4292244);
    step<I, 10>(d, a, b, c, x[7], 0x432aff97);
    step<I, 15>(c, d, a, b, x[14], 0xab9423a7);
    step<I, 21>(b, c, d, a, x[5], 0xfc93a039);
    step<I, 6>(a, b, c, d, x[12], 0x655b59c3);
    step<I, 10>(d, a, b, c, x[3], 0x8f0ccc92);
    step<I, 15>(c, d, a, b, x[10], 0xffeff47d);
    step<I, 21>(b, c, d, a, x[1], 0x85845dd1);
    step<I, 6>(a, b, c, d, x[8], 0x6fa87e4f);
    step<I, 10>(d, a, b, c, x[15], 0xfe2ce6e0);
    step<I, 15>(c, d, a, b, x[6], 0xa3014314);
    step<I, 21>(b, c, d, a, x[13], 0x4e0811a1);
    step<I, 6>(a, b, c, d, x[4], 0xf7537e82);
    step<I, 10>(d, a, b, c, x[11], 0xbd3af235);
    step<I, 15>(c, d, a, b, x[2], 0x2ad7d2bb);
    step<I, 21>(b, c, d, a, x[9], 0xeb86d391);

    state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

} // namespace

void Md5Context::update(const void* data, std::size_t length)
{
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    const std::size_t held = buffered();
    m_finished = false;
    addToBitCount(length);

    if (held + length < kBlock) {
        std::copy_n(bytes, length, m_buffer.begin() + held);
        return;
    }
    if (held > 0) {
        const std::size_t missing = kBlock - held;
        std::copy_n(bytes, missing, m_buffer.begin() + held);
        transform(m_state, m_buffer.data());
        bytes += missing;
        length -= missing;
    }
    for (; length >= kBlock; bytes += kBlock, length -= kBlock)
        transform(m_state, bytes);
    std::copy_n(bytes, length, m_buffer.begin());
}

const Md5Context::Digest& Md5Context::digest()
{
    if (m_finished)
        return m_digest;
    const auto state = m_state;
    const auto count = m_count;
    const auto buffer = m_buffer;
    pad();
    for (std::size_t i = 0; i < m_state.size(); ++i) {
        const Word word = littleEndian(m_state[i]);
        std::memcpy(m_digest.data() + i * sizeof word, &word, sizeof word);
    }
    m_state = state;
    m_count = count;
    m_buffer = buffer;
    m_finished = true;
    return m_digest;
}

void Md5Context::addToBitCount(std::size_t length)
{
    const Word low = static_cast<Word>(length << 3);
    m_count[0] += low;
    if (m_count[0] < low)
        ++m_count[1];
    m_count[1] += static_cast<Word>(length >> 29);
}

// RFC 1321, 3.1 and 3.2: one bit, zeros up to 56 bytes of a block, the count of bits.
void Md5Context::pad()
{
    static constexpr std::array<std::uint8_t, kBlock> padding{0x80};
    const Word bits[2]{littleEndian(m_count[0]), littleEndian(m_count[1])};
    const std::size_t held = buffered();
    update(padding.data(), (held < 56 ? 56 : 120) - held);
    update(bits, sizeof bits);
}
