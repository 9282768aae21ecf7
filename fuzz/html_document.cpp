// HtmlDocument from arbitrary UTF-8: list, read, set, remove, write, and read again what was
// written.

#include "Require.h"

#include "html/HtmlDocument.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr QLatin1StringView kClass("class");
constexpr QLatin1StringView kExData("nm_exdata");

// What is written reads back as what it was written from.
void requireFixedPoint(const HtmlDocument& document)
{
    const QString written = document.bodyInnerHtml();
    const HtmlDocument reread(written);
    require(reread.bodyInnerHtml() == written);
    require(reread.bodyText() == document.bodyText());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString html = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    HtmlDocument document(html);
    const QString untouched = document.bodyInnerHtml();
    const qsizetype count = document.elementCount();
    require(document.hasBody() || count == 0);
    require(HtmlDocument(untouched).elementCount() == count);
    requireFixedPoint(document);
    if (count == 0)
        return 0;

    // The last element goes, the first gets a part of the text as a value.
    const QString value = html.left(64);
    document.setAttribute(0, kExData, value);
    const std::optional<QString> classText = document.attribute(0, kClass);
    requireFixedPoint(document);
    if (count > 1)
        document.remove(count - 1);
    requireFixedPoint(document);

    const HtmlDocument reread(document.bodyInnerHtml());
    require(reread.hasBody());
    require(reread.elementCount() == (count > 1 ? count - 1 : count));
    require(reread.attribute(0, kExData) == document.attribute(0, kExData));
    require(reread.attribute(0, kClass) == classText);
    return 0;
}
