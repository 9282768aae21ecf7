#include "support/Text.h"

#include "support/Utf8.h"

#include <QUuid>

#include <array>
#include <cstdint>
#include <cstring>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::uint8_t, 256> decodeTable()
{
    std::array<std::uint8_t, 256> table{};
    for (std::uint8_t value = 0; value < 64; ++value)
        table[static_cast<unsigned char>(kAlphabet[value])] = value;
    return table;
}

QString wide(QByteArrayView bytes)
{
    // QString takes a byte-order mark for no character; here it is one.
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QChar(0xFEFF) + QString::fromUtf8(bytes.sliced(3));
    return QString::fromUtf8(bytes);
}

// Never too small: a pair of surrogates needs 4 bytes and is counted as 6.
std::size_t bytesNeeded(QStringView text)
{
    std::size_t bytes = static_cast<std::size_t>(text.size());
    for (const QChar unit : text)
        bytes += (unit.unicode() >= 0x80) + (unit.unicode() >= 0x800);
    return bytes;
}

bool isSkipped(char byte)
{
    return byte == '\x01' || byte == '\x02' || byte == '\n' || byte == '\r';
}

} // namespace

QString Utf8ToWide(const std::string& text)
{
    return wide(QByteArrayView(text.c_str(), static_cast<qsizetype>(std::strlen(text.c_str()))));
}

std::string WideToUtf8(const QString& text)
{
    QStringView rest = UntilNul(text);
    std::string bytes(bytesNeeded(rest) + 4, '\0'); // the encoder wants that much room to spare
    bytes.resize(EncodeUtf8(rest, bytes.data(), bytes.size()));
    return bytes;
}

QString AnsiToWide(const std::string& text)
{
    return Utf8ToWide(text);
}

QString AnsiToWide(const char* text)
{
    return text ? wide(QByteArrayView(text)) : QString();
}

std::string WideToAnsi(const QString& text)
{
    return WideToUtf8(text);
}

void SplitString(const QString& text, const QString& separator, std::vector<QString>& items)
{
    qsizetype start = 0;
    while (!separator.isEmpty()) {
        const qsizetype end = text.indexOf(separator, start);
        if (end < 0)
            break;
        items.push_back(text.sliced(start, end - start));
        start = end + separator.size();
    }
    if (start < text.size())
        items.push_back(text.sliced(start));
}

QString CreateGuidString()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}

std::string Base64Encode(const char* bytes, std::size_t length)
{
    std::string text;
    text.reserve((length + 2) / 3 * 4);
    for (std::size_t i = 0; i < length; i += 3) {
        const std::size_t here = std::min<std::size_t>(3, length - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < here; ++k)
            group |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + k]))
                << (16 - 8 * k);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= here ? kAlphabet[(group >> (18 - 6 * k)) & 0x3F] : '=';
    }
    return text;
}

std::string Base64Decode(std::string_view text)
{
    // Kept: nothing is refused, so that a name in an old note that was damaged still gives one.
    static constexpr auto table = decodeTable();
    const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    const auto value = [&](std::size_t i) -> std::uint32_t {
        return table[static_cast<unsigned char>(at(i))];
    };

    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::size_t i = 0;
    while (i < text.size()) {
        if (isSkipped(text[i])) {
            ++i;
            continue;
        }
        const std::uint32_t group =
            value(i) << 18 | value(i + 1) << 12 | value(i + 2) << 6 | value(i + 3);
        bytes += static_cast<char>(group >> 16);
        if (at(i + 2) != '=') {
            bytes += static_cast<char>(group >> 8);
            if (at(i + 3) != '=')
                bytes += static_cast<char>(group);
        }
        i += 4;
    }
    bytes.resize(std::strlen(bytes.c_str()));
    return bytes;
}
