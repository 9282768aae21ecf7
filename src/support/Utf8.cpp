#include "support/Utf8.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t kLongestSequence = 4;
constexpr char32_t kReplacement = 0xFFFD;

// Copies units below 0x80, four at a time.
void copyAscii(const char16_t*& in, const char16_t* inEnd, char*& out, const char* outEnd)
{
    while (inEnd - in >= 4 && outEnd - out >= 4) {
        std::uint64_t four;
        std::memcpy(&four, in, sizeof four);
        if (four & 0xFF80FF80FF80FF80)
            return;
        for (int i = 0; i < 4; ++i)
            out[i] = static_cast<char>(in[i]);
        in += 4;
        out += 4;
    }
}

char32_t takeCodePoint(const char16_t*& in, const char16_t* inEnd)
{
    const char16_t unit = *in++;
    if ((unit & 0xF800) != 0xD800)
        return unit;
    const bool isHigh = (unit & 0xFC00) == 0xD800;
    if (!isHigh || in == inEnd || (*in & 0xFC00) != 0xDC00)
        return kReplacement;
    return 0x10000 + ((unit & 0x3FFu) << 10) + (*in++ & 0x3FFu);
}

void put(char*& out, char32_t codePoint)
{
    const auto tail = [&](int shift) {
        *out++ = static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0 | (codePoint >> 6));
        tail(0);
    } else if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
        tail(6);
        tail(0);
    } else {
        *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

}

std::size_t EncodeUtf8(QStringView& text, char* buffer, std::size_t capacity)
{
    const char16_t* in = text.utf16();
    const char16_t* const inEnd = in + text.size();
    char* out = buffer;
    const char* const outEnd = buffer + capacity;
    while (in != inEnd && static_cast<std::size_t>(outEnd - out) >= kLongestSequence) {
        if (*in < 0x80)
            copyAscii(in, inEnd, out, outEnd);
        if (in == inEnd || static_cast<std::size_t>(outEnd - out) < kLongestSequence)
            break;
        put(out, takeCodePoint(in, inEnd));
    }
    text = text.sliced(in - text.utf16());
    return static_cast<std::size_t>(out - buffer);
}

QStringView UntilNul(QStringView text)
{
    const qsizetype nul = text.indexOf(QChar(u'\0'));
    return nul < 0 ? text : text.first(nul);
}
