#include "clipformat/FileBlock.h"

#include "support/Text.h"

#include <optional>

namespace clipformat {
namespace {

// The header's five fields: pFiles, the two of pt, fNC, fWide.
constexpr std::size_t kHeaderBytes = 20;
constexpr std::size_t kWideAt = 16;
constexpr quint32 kDropEffectCopy = 1;

void append16(std::string& bytes, char16_t value)
{
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8);
}

void append32(std::string& bytes, quint32 value)
{
    append16(bytes, static_cast<char16_t>(value & 0xFFFF));
    append16(bytes, static_cast<char16_t>(value >> 16));
}

char16_t unitAt(std::string_view bytes, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    return static_cast<char16_t>(byte(at) | byte(at + 1) << 8);
}

quint32 numberAt(std::string_view bytes, std::size_t at)
{
    return unitAt(bytes, at) | quint32(unitAt(bytes, at + 2)) << 16;
}

/// Takes a path and its terminator off `bytes`; nothing if the terminator is missing.
using TakePath = std::optional<QString> (*)(std::string_view& bytes);

std::optional<QString> takeNarrow(std::string_view& bytes)
{
    const std::size_t end = bytes.find('\0');
    if (end == std::string_view::npos)
        return std::nullopt;
    const QString path = AnsiToWide(std::string(bytes.substr(0, end)));
    bytes.remove_prefix(end + 1);
    return path;
}

std::optional<QString> takeWide(std::string_view& bytes)
{
    QString path;
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        const char16_t unit = unitAt(bytes, at);
        if (unit == 0) {
            bytes.remove_prefix(at + 2);
            return path;
        }
        path += QChar(unit);
    }
    return std::nullopt;
}

bool takeList(std::string_view bytes, TakePath take, std::vector<QString>& paths)
{
    std::vector<QString> taken;
    while (auto path = take(bytes)) {
        if (path->isEmpty()) {
            paths = std::move(taken);
            return true;
        }
        taken.push_back(std::move(*path));
    }
    return false;
}

/// What lies behind pFiles.
std::optional<std::string_view> listOf(std::string_view block)
{
    if (block.size() < kHeaderBytes)
        return std::nullopt;
    const std::size_t start = numberAt(block, 0);
    if (start < kHeaderBytes || start > block.size())
        return std::nullopt;
    return block.substr(start);
}

} // namespace

bool BuildFileBlock(const std::vector<QString>& paths, std::string& block)
{
    if (paths.empty())
        return false;
    std::size_t units = 1; // the list's own terminator
    for (const QString& path : paths) {
        if (path.contains(QChar::Null))
            return false;
        units += static_cast<std::size_t>(path.size()) + 1;
    }

    std::string made;
    made.reserve(kHeaderBytes + 2 * units);
    append32(made, kHeaderBytes); // pFiles
    append32(made, 0); // pt
    append32(made, 0);
    append32(made, 0); // fNC
    append32(made, 0); // fWide. Kept: it says narrow text, though the paths are 16-bit text
    for (const QString& path : paths) {
        for (const QChar unit : path)
            append16(made, unit.unicode());
        append16(made, 0);
    }
    append16(made, 0);
    block = std::move(made);
    return true;
}

bool ReadFileBlock(std::string_view block, FileBlock& files)
{
    const auto list = listOf(block);
    if (!list)
        return false;
    const bool wide = numberAt(block, kWideAt) != 0;
    if (!takeList(*list, wide ? takeWide : takeNarrow, files.paths))
        return false;
    files.wide = wide;
    return true;
}

bool ReadFileBlockAsWide(std::string_view block, std::vector<QString>& paths)
{
    const auto list = listOf(block);
    return list && takeList(*list, takeWide, paths);
}

std::string CopyDropEffect()
{
    std::string bytes;
    append32(bytes, kDropEffectCopy);
    return bytes;
}

} // namespace clipformat
