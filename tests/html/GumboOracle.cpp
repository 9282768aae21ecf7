#include "html/GumboOracle.h"

#include "html/HtmlDocument.h"

#include <gumbo.h>

#include <algorithm>

namespace {

std::optional<QString> attributeOf(const GumboElement& element, const char* name)
{
    const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
    return attribute ? std::optional(QString::fromUtf8(attribute->value)) : std::nullopt;
}

bool isImg(const GumboElement& element)
{
    return element.tag == GUMBO_TAG_IMG && element.tag_namespace == GUMBO_NAMESPACE_HTML;
}

} // namespace

std::vector<ImgElement> imgElements(const QString& html)
{
    const HtmlDocument document(html);
    std::vector<ImgElement> result;
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        result.push_back({document.attribute(i, QLatin1StringView("class")),
            document.attribute(i, QLatin1StringView("src")),
            document.attribute(i, QLatin1StringView("nm_exdata"))});
    }
    return result;
}

std::vector<ImgElement> gumboImgElements(const QString& html)
{
    const QByteArray utf8 = html.toUtf8();
    GumboOutput* output =
        gumbo_parse_with_options(&kGumboDefaultOptions, utf8.constData(), std::size_t(utf8.size()));
    std::vector<std::pair<unsigned, ImgElement>> found;
    std::vector<const GumboNode*> open{output->root};
    while (!open.empty()) {
        const GumboNode* node = open.back();
        open.pop_back();
        if (node->type != GUMBO_NODE_ELEMENT)
            continue;
        const GumboElement& element = node->v.element;
        if (isImg(element)) {
            found.push_back({element.start_pos.offset,
                {attributeOf(element, "class"), attributeOf(element, "src"),
                    attributeOf(element, "nm_exdata")}});
        }
        for (unsigned i = 0; i < element.children.length; ++i)
            open.push_back(static_cast<const GumboNode*>(element.children.data[i]));
    }
    gumbo_destroy_output(&kGumboDefaultOptions, output);
    std::stable_sort(
        found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<ImgElement> result;
    for (auto& entry : found)
        result.push_back(std::move(entry.second));
    return result;
}
