#include "html/TagNames.h"

#include <gtest/gtest.h>

namespace {

using html::findTag;
using html::Tag;
using html::tagName;

TEST(TagNames, EveryNameIsFoundInEitherCase)
{
    for (int i = 0; i < int(Tag::Unknown); ++i) {
        const QString name = tagName(Tag(i));
        EXPECT_EQ(findTag(name), Tag(i)) << name.toStdString();
        EXPECT_EQ(findTag(name.toUpper()), Tag(i)) << name.toStdString();
        EXPECT_EQ(findTag(name + u'x'), Tag::Unknown) << name.toStdString();
    }
}

TEST(TagNames, OtherNamesAreUnknown)
{
    // The Kelvin sign and the long s are letters whose lower case is ASCII, but not for HTML.
    for (const QString& name : {QString(), QStringLiteral("x"), QStringLiteral("annotation-xmlx"),
             QStringLiteral(u"lin\u212A"), QStringLiteral(u"\u017Fpan"), QStringLiteral("img/")})
        EXPECT_EQ(findTag(name), Tag::Unknown) << name.toStdString();
}

} // namespace
