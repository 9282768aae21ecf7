// What the page answers, as arbitrary bytes: the fast reading of a wide text and the parser's
// reading of the narrow one tell the same, key by key.

#include "Require.h"

#include "support/Json.h"
#include "support/Text.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr const char* kKeys[] = {"ret", "html", "text", "ehtml", "etext", "code", ""};

void compare(const JsonObject& wide, const JsonObject& narrow, int depth)
{
    for (const char* key : kKeys) {
        require(wide.has(key) == narrow.has(key));
        require(wide.boolean(key) == narrow.boolean(key));
        require(wide.integer(key) == narrow.integer(key));
        require(wide.integer64(key) == narrow.integer64(key));
        require(wide.text(key) == narrow.text(key));
        if (depth < 3 && wide.has(key))
            compare(wide.object(key), narrow.object(key), depth + 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString reply = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const auto wide = JsonObject::parse(reply);
    // A reply that holds U+0000 ends there in the narrow form only.
    if (reply.contains(QChar::Null))
        return 0;
    const auto narrow = JsonObject::parse(WideToUtf8(reply));
    require(wide.has_value() == narrow.has_value());
    if (wide)
        compare(*wide, *narrow, 0);
    return 0;
}
