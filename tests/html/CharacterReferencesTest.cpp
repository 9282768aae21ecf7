#include "html/CharacterReferences.h"

#include "html/GumboOracle.h"

#include <gtest/gtest.h>

#include <QByteArrayList>

namespace {

using html::decodeText;
using html::TextPlace;

constexpr char kTable[] =
#include "html/NamedReferences.inc"
    ;

// An attribute value as gumbo reads it.
QString byGumbo(const QString& value)
{
    return gumboImgElements(QStringLiteral("<img src='%1'>").arg(value)).front().src.value();
}

TEST(CharacterReferences, EveryNameReadsAsInAFullParser)
{
    int names = 0;
    int withoutSemicolon = 0;
    for (const QByteArray& entry : QByteArray(kTable).split(' ')) {
        if (entry.isEmpty())
            continue;
        const qsizetype mark = entry.indexOf('!') >= 0 ? entry.indexOf('!') : entry.indexOf(':');
        const QString reference = u'&' + QString::fromLatin1(entry.left(mark));
        for (const QString& text :
            {reference + u';', reference, reference + u'=', reference + u'x', reference + u' '}) {
            EXPECT_EQ(decodeText(text, TextPlace::Attribute), byGumbo(text)) << text.toStdString();
        }
        ++names;
        withoutSemicolon += entry[mark] == '!';
    }
    EXPECT_EQ(names, 2125);
    EXPECT_EQ(withoutSemicolon, 106);
}

TEST(CharacterReferences, NumbersReadAsInAFullParser)
{
    for (const char* text :
        {"&#1;", "&#128;", "&#129;", "&#159;", "&#xA0;", "&#55296;", "&#x10FFFF;", "&#x110000;",
            "&#65", "&#x41g", "&#X41;", "&#;", "&#x;", "&#xg;", "&#065;", "&#xD;"}) {
        const QString value = QString::fromLatin1(text);
        EXPECT_EQ(decodeText(value, TextPlace::Attribute), byGumbo(value)) << text;
    }
    EXPECT_EQ(decodeText(u"&#xfffffffffffffffff;", TextPlace::Data), QStringLiteral(u"\uFFFD"));
}

TEST(CharacterReferences, WithoutSemicolonTextAndAttributesDiffer)
{
    const QString raw = QStringLiteral("&ampx &notit; &copy=");
    EXPECT_EQ(decodeText(raw, TextPlace::Data), QStringLiteral(u"&x \u00acit; \u00a9="));
    EXPECT_EQ(decodeText(raw, TextPlace::Rcdata), QStringLiteral(u"&x \u00acit; \u00a9="));
    EXPECT_EQ(decodeText(raw, TextPlace::Attribute), raw);
    EXPECT_EQ(decodeText(raw, TextPlace::Rawtext), raw);
}

TEST(CharacterReferences, NulIsDroppedBetweenTagsAndReplacedElsewhere)
{
    const QString raw = QStringLiteral("a") + QChar(0) + u'b';
    EXPECT_EQ(decodeText(raw, TextPlace::Data), QStringLiteral("ab"));
    EXPECT_EQ(decodeText(raw, TextPlace::Rawtext), QStringLiteral(u"a\uFFFDb"));
}

} // namespace
