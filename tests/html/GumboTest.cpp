// HtmlDocument against full tree building.
#include "html/GumboOracle.h"
#include "html/HtmlDocument.h"
#include "html/HtmlGenerator.h"

#include <gtest/gtest.h>

namespace {

constexpr int kDocumentsPerKind = 3000;

struct Kind {
    const char* name;
    QString (HtmlGenerator::*make)();
};

class Generated : public testing::TestWithParam<Kind> { };

TEST_P(Generated, HasTheImgElementsOfTheFullTree)
{
    std::size_t elements = 0;
    for (int seed = 0; seed < kDocumentsPerKind; ++seed) {
        HtmlGenerator generator(quint64(seed) * 7919 + 1);
        const QString html = (generator.*GetParam().make)();
        const std::vector<ImgElement> expected = gumboImgElements(html);
        ASSERT_TRUE(imgElements(html) == expected) << "seed " << seed << ":\n"
                                                   << html.toStdString();
        elements += expected.size();
    }
    EXPECT_GT(elements, std::size_t(kDocumentsPerKind)); // the corpus is worth the name
}

// What a host does to a note: every element gets a value, some go, and the rest reads as before.
TEST_P(Generated, KeepsItsElementsThroughChanges)
{
    for (int seed = 0; seed < kDocumentsPerKind; ++seed) {
        HtmlGenerator generator(quint64(seed) * 104'729 + 2);
        const QString html = (generator.*GetParam().make)();
        std::vector<ImgElement> expected;
        HtmlDocument document(html);
        for (qsizetype i = 0; i < document.elementCount(); ++i) {
            if (i % 3 == 2) {
                document.remove(i);
                continue;
            }
            const QString value = html.left((i * 7) % 40);
            document.setAttribute(i, QLatin1StringView("src"), value);
            expected.push_back({document.attribute(i, QLatin1StringView("class")),
                document.attribute(i, QLatin1StringView("src")),
                document.attribute(i, QLatin1StringView("nm_exdata"))});
        }
        const QString inside = document.bodyInnerHtml();
        ASSERT_TRUE(imgElements(inside) == expected) << "seed " << seed << ":\n"
                                                     << html.toStdString();
        ASSERT_EQ(HtmlDocument(inside).bodyInnerHtml(), inside) << "seed " << seed;
        ASSERT_EQ(HtmlDocument(inside).bodyText(), document.bodyText()) << "seed " << seed;
        const QString untouched = HtmlDocument(html).bodyInnerHtml();
        ASSERT_EQ(HtmlDocument(untouched).bodyText(), HtmlDocument(html).bodyText())
            << "seed " << seed << ":\n"
            << html.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Html, Generated,
    testing::Values(Kind{"Note", &HtmlGenerator::note},
        Kind{"DamagedNote", &HtmlGenerator::damagedNote}, Kind{"Soup", &HtmlGenerator::soup},
        Kind{"ForeignSoup", &HtmlGenerator::foreignSoup},
        Kind{"Attributes", &HtmlGenerator::attributes}),
    [](const auto& info) { return std::string(info.param.name); });

// Where the two knowingly differ, with the number of img elements that each finds. The first group
// is HtmlDocument's own (docs/html-document.md); in the second HtmlDocument follows the standard
// and gumbo 0.10 does not.
TEST(GumboDifference, IsOneOfThese)
{
    struct Difference {
        const char* html;
        std::size_t ours;
        std::size_t gumbos;
        const char* reason;
    };
    const Difference differences[] = {
        {"<p><b></p><svg></b><style><img></style>", 1, 0,
            "formatting elements are not opened again"},

        {"<svg></p><style><img></style>", 0, 1, "</p> and </br> end svg and math since 2018"},
        {"<svg></svg ><style><img></style>", 0, 1,
            "an end tag may hold white space in svg and math"},
        {"<svg></><title></title><style><img></style>", 1, 0, "</> is nothing in svg and math too"},
        {"<p><x><svg></y><style><img></style>", 1, 0, "unknown names differ from each other"},
        {"<svg><select><desc><table><table><img>", 1, 0, "a select of svg is no select"},
        {"<svg><colgroup><desc><table><table><img>", 1, 0,
            "nor is a colgroup of svg part of a table"},
        {"<svg><desc><menuitem></desc><style><img></style>", 0, 1,
            "menuitem is an ordinary element"},
        {"<img alt='&#xfffffffffffffffff;'>", 1, 0, "a number without bounds is U+FFFD"},
    };
    for (const Difference& difference : differences) {
        const QString html = QString::fromLatin1(difference.html);
        EXPECT_EQ(imgElements(html).size(), difference.ours) << difference.html;
        EXPECT_EQ(gumboImgElements(html).size(), difference.gumbos)
            << difference.html << ": " << difference.reason;
    }
}

TEST(GumboDifference, ControlCharactersStay)
{
    const QString html = QStringLiteral("<img src='a\x01\x0b\x7f'>");
    EXPECT_EQ(imgElements(html).front().src, QStringLiteral("a\x01\x0b\x7f"));
    EXPECT_EQ(gumboImgElements(html).front().src, QStringLiteral(u"a\uFFFD\uFFFD\uFFFD"));
}

// Source order is kept where the tree moves things: an img between the rows of a table.
TEST(GumboDifference, MisplacedInATableKeepsItsPlace)
{
    const HtmlDocument document(
        QStringLiteral("<table><td><img src=a></td></tr><img src=b></table>"));
    EXPECT_EQ(document.attribute(0, QLatin1StringView("src")), QStringLiteral("a"));
    EXPECT_EQ(document.attribute(1, QLatin1StringView("src")), QStringLiteral("b"));
}

} // namespace
