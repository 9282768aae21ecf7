#include "support/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr std::ptrdiff_t kRun = 4; // units that are looked at in one word

// Copies units below 0x80 in runs of four.
void copyAsciiRuns(const char16_t*& in, const char16_t* stop, char*& out)
{
    for (; stop - in >= kRun; in += kRun, out += kRun) {
        std::uint64_t units;
        std::memcpy(&units, in, sizeof units);
        if (units & 0xFF80FF80FF80FF80)
            return;
        units |= units >> 8; // the bytes of each pair side by side, then those of all four
        units = (units & 0x0000FFFF) | ((units >> 16) & 0xFFFF0000);
        const auto bytes = static_cast<std::uint32_t>(units);
        std::memcpy(out, &bytes, sizeof bytes);
    }
}

char32_t takeSurrogate(const char16_t*& in, const char16_t* inEnd)
{
    const char16_t unit = *in++;
    const bool isHigh = (unit & 0xFC00) == 0xD800;
    if (!isHigh || in == inEnd || (*in & 0xFC00) != 0xDC00)
        return kReplacement;
    return 0x10000 + ((unit & 0x3FFu) << 10) + (*in++ & 0x3FFu);
}

char tail(char32_t codePoint, int shift)
{
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
}

void putThree(char*& out, char32_t codePoint)
{
    *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
    *out++ = tail(codePoint, 6);
    *out++ = tail(codePoint, 0);
}

void putFour(char*& out, char32_t codePoint)
{
    *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
    *out++ = tail(codePoint, 12);
    *out++ = tail(codePoint, 6);
    *out++ = tail(codePoint, 0);
}

// Encodes up to `stop`; a pair that begins before it is taken whole.
void encode(const char16_t*& in, const char16_t* stop, const char16_t* inEnd, char*& out)
{
    while (in < stop) {
        const char16_t unit = *in;
        if (unit < 0x80) {
            copyAsciiRuns(in, stop, out);
            for (; in < stop && *in < 0x80; ++in)
                *out++ = static_cast<char>(*in);
        } else if (unit < 0x800) {
            *out++ = static_cast<char>(0xC0 | (unit >> 6));
            *out++ = tail(unit, 0);
            ++in;
        } else if ((unit & 0xF800) != 0xD800) {
            do
                putThree(out, *in++);
            while (in < stop && *in >= 0x800 && (*in & 0xF800) != 0xD800);
        } else {
            const char32_t codePoint = takeSurrogate(in, inEnd);
            codePoint == kReplacement ? putThree(out, codePoint) : putFour(out, codePoint);
        }
    }
}

} // namespace

std::size_t EncodeUtf8(QStringView& text, char* buffer, std::size_t capacity)
{
    const char16_t* in = text.utf16();
    const char16_t* const inEnd = in + text.size();
    char* out = buffer;
    const char* const outEnd = buffer + capacity;
    // A unit takes 3 bytes at most, but for a pair at the very end, which takes one more than its
    // first unit was counted for.
    while (in != inEnd && outEnd - out >= 4) {
        const std::ptrdiff_t units = std::min<std::ptrdiff_t>(inEnd - in, (outEnd - out - 1) / 3);
        encode(in, in + units, inEnd, out);
    }
    text = text.sliced(in - text.utf16());
    return static_cast<std::size_t>(out - buffer);
}

QStringView UntilNul(QStringView text)
{
    const qsizetype nul = text.indexOf(QChar(u'\0'));
    return nul < 0 ? text : text.first(nul);
}
