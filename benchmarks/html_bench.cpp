// The detached document against what it costs at the least and against a full parser: the img
// elements of a note with their three attributes.

#include "Figure.h"
#include "SampleNote.h"

#include "html/HtmlDocument.h"

#include <gumbo.h>

#include <stdexcept>

namespace {

constexpr qsizetype kMegabyte = 1000 * 1000;

// Keeps what was read from being optimised away, and proves that each side found the same.
struct Sum {
    qsizetype elements = 0;
    qsizetype characters = 0;
    bool operator==(const Sum&) const = default;
};

Sum byDocument(const QString& html)
{
    const HtmlDocument document(html);
    Sum sum;
    for (sum.elements = 0; sum.elements < document.elementCount(); ++sum.elements) {
        for (const char* name : {"class", "src", "nm_exdata"})
            sum.characters += document.attribute(sum.elements, QLatin1StringView(name))->size();
    }
    return sum;
}

// The floor: looks for "<img" and copies the three values as they stand, and knows nothing of HTML.
Sum bySearch(const QString& html)
{
    const QStringView text(html);
    Sum sum;
    for (qsizetype at = text.indexOf(u"<img"); at >= 0; at = text.indexOf(u"<img", at + 4)) {
        ++sum.elements;
        for (const QStringView name :
            {QStringView(u" class=\""), QStringView(u" src=\""), QStringView(u" nm_exdata=\"")}) {
            const qsizetype value = text.indexOf(name, at) + name.size();
            const QString copy = text.mid(value, text.indexOf(u'"', value) - value).toString();
            sum.characters += copy.size();
        }
    }
    return sum;
}

Sum byGumbo(const QByteArray& utf8)
{
    GumboOutput* output =
        gumbo_parse_with_options(&kGumboDefaultOptions, utf8.constData(), std::size_t(utf8.size()));
    Sum sum;
    std::vector<const GumboNode*> open{output->root};
    while (!open.empty()) {
        const GumboNode* node = open.back();
        open.pop_back();
        if (node->type != GUMBO_NODE_ELEMENT)
            continue;
        const GumboElement& element = node->v.element;
        for (unsigned i = 0; i < element.children.length; ++i)
            open.push_back(static_cast<const GumboNode*>(element.children.data[i]));
        if (element.tag != GUMBO_TAG_IMG)
            continue;
        ++sum.elements;
        for (const char* name : {"class", "src", "nm_exdata"})
            sum.characters +=
                QString::fromUtf8(gumbo_get_attribute(&element.attributes, name)->value).size();
    }
    gumbo_destroy_output(&kGumboDefaultOptions, output);
    return sum;
}

std::vector<bench::Figure> listing()
{
    const QString small = bench::sampleNoteText(kMegabyte);
    const QString large = bench::sampleNoteText(10 * kMegabyte);
    if (byDocument(small) != byGumbo(small.toUtf8())
        || byDocument(small).elements != bySearch(small).elements)
        throw std::runtime_error("the three readings of the note differ");

    std::vector<bench::Figure> figures;
    for (const QString& html : {small, large}) {
        const bool isSmall = html.size() == small.size();
        const std::string size = isSmall ? "1 MB" : "10 MB";
        const QByteArray utf8 = html.toUtf8();
        const int calls = isSmall ? 20 : 2;
        const bench::Side ours = bench::timedPerCall(calls, [&] { byDocument(html); });
        figures.push_back(bench::timesFaster(
            "HtmlDocument, img with three attributes, " + size + ", against gumbo", 30, ours,
            bench::timed([&] { byGumbo(utf8); })));
        figures.push_back(bench::atMost(
            "HtmlDocument, img with three attributes, " + size + ", against a search for <img", 4,
            ours, bench::timedPerCall(calls, [&] { bySearch(html); })));
    }
    // Ten notes in turn, so that neither size has its text in a nearer cache than the other.
    std::vector<QString> tenNotes;
    for (int i = 0; i < 10; ++i)
        tenNotes.push_back(QStringView(small).toString());
    std::size_t next = 0;
    constexpr int kManyRounds = 25; // the goal is near, and a round is short
    figures.push_back(bench::atMost("HtmlDocument, 10 MB against 1 MB", 11,
        bench::timedPerCall(2, [&] { byDocument(large); }),
        bench::timedPerCall(20, [&] { byDocument(tenNotes[next++ % tenNotes.size()]); }),
        kManyRounds));
    return figures;
}

// Hostile texts: ten times the length may take little more than ten times as long. A reader that
// looks back or recurses takes a hundred times, or none at all.
std::vector<bench::Figure> hostile()
{
    struct Shape {
        const char* name;
        const char* start;
        const char* repeated;
        int times;
    };
    const Shape shapes[] = {
        {"100,000 nested elements", "", "<div>", 100'000},
        {"100,000 nested elements in svg", "<svg><desc>", "<div>", 100'000},
        {"1,000,000 attributes of one element", "<img ", "a=b ", 1'000'000},
        {"1,000,000 unclosed tags", "", "<a", 1'000'000},
        {"1,000,000 img elements", "", "<img class=a>", 1'000'000},
    };
    std::vector<bench::Figure> figures;
    for (const Shape& shape : shapes) {
        const auto text = [&](int times) {
            return QString::fromLatin1(shape.start)
                + QString::fromLatin1(shape.repeated).repeated(times);
        };
        const QString small = text(shape.times / 10);
        const QString large = text(shape.times);
        const auto read = [](const QString& html) { HtmlDocument(html).elementCount(); };
        figures.push_back(
            bench::atMost(std::string("HtmlDocument, ") + shape.name + ", against a tenth of them",
                15, bench::timedPerCall(10, [&] { read(large); }),
                bench::timedPerCall(100, [&] { read(small); })));
    }
    return figures;
}

const bench::Registration htmlHostile{"HtmlDocument, hostile", hostile};
const bench::Registration htmlDocument{"HtmlDocument", listing};

} // namespace
