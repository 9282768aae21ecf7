#include "html/TagNames.h"

#include <algorithm>
#include <array>

namespace html {
namespace {

constexpr std::size_t kTagCount = std::size_t(Tag::Unknown);

struct Row {
    const char* name;
    quint8 length;
    quint32 flags;
};

constexpr std::array<Row, kTagCount + 1> kRows{{
#define X(id, name, flags) {name, sizeof(name) - 1, flags},
    NOMAR_HTML_TAGS(X)
#undef X
        {"", 0, 0},
}};

constexpr std::size_t kLongestName = 14;
constexpr std::size_t kSlots = 1024;

constexpr std::size_t mix(std::size_t hash, char16_t lower)
{
    return (hash * 31 + lower) & 0xffff;
}
constexpr std::size_t slotOf(std::size_t hash)
{
    return (hash ^ (hash >> 6)) % kSlots;
}

// Open addressing, filled while compiling: a tag of a text costs one hash and, as a rule, one
// comparison.
constexpr std::array<Tag, kSlots> buildSlots()
{
    std::array<Tag, kSlots> result{};
    result.fill(Tag::Unknown);
    for (std::size_t tag = 0; tag < kTagCount; ++tag) {
        std::size_t hash = 0;
        for (const char* c = kRows[tag].name; *c != 0; ++c)
            hash = mix(hash, char16_t(*c));
        std::size_t slot = slotOf(hash);
        while (result[slot] != Tag::Unknown)
            slot = (slot + 1) % kSlots;
        result[slot] = Tag(tag);
    }
    return result;
}
constexpr std::array<Tag, kSlots> kSlotTable = buildSlots();

} // namespace

quint32 tagFlags(Tag tag)
{
    return kRows[std::size_t(tag)].flags;
}

QLatin1StringView tagName(Tag tag)
{
    const Row& row = kRows[std::size_t(tag)];
    return QLatin1StringView(row.name, row.length);
}

bool equalsLower(QStringView text, QLatin1StringView lower)
{
    if (text.size() != lower.size())
        return false;
    const char16_t* units = text.utf16();
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (asciiLower(units[i]) != uchar(lower.data()[i]))
            return false;
    }
    return true;
}

Tag findTag(QStringView name)
{
    const std::size_t length = std::size_t(name.size());
    if (length == 0 || length > kLongestName)
        return Tag::Unknown;
    std::array<char16_t, kLongestName> lower;
    std::size_t hash = 0;
    for (std::size_t i = 0; i < length; ++i) {
        lower[i] = asciiLower(name.utf16()[i]);
        hash = mix(hash, lower[i]);
    }
    for (std::size_t slot = slotOf(hash);; slot = (slot + 1) % kSlots) {
        const Tag tag = kSlotTable[slot];
        const Row& row = kRows[std::size_t(tag)];
        if (tag == Tag::Unknown
            || (row.length == length && std::equal(row.name, row.name + length, lower.begin())))
            return tag;
    }
}

} // namespace html
