#include "NoteText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(FirstLine, SkipsEmptyLinesAndCollapsesWhiteSpace)
{
    EXPECT_EQ(firstLine(u" \n\t\n  a \t b  \nc"_s), u"a b"_s);
    EXPECT_EQ(firstLine(u"一\n二"_s), u"一"_s);
    EXPECT_EQ(firstLine(u"no break"_s), u"no break"_s);
    EXPECT_EQ(firstLine(u"  \n \n"_s), QString());
    EXPECT_EQ(firstLine({}), QString());
}

TEST(Excerpt, StartsAtTheBeginningWithoutATerm)
{
    EXPECT_EQ(excerpt(u"a  b\nc d"_s, {}, 5), u"a b c"_s);
    EXPECT_EQ(excerpt(u"short"_s, {u"missing"_s}, 100), u"short"_s);
}

TEST(Excerpt, StandsAroundTheFirstTermThatOccurs)
{
    const QString text = QString(100, u'x') + u" needle "_s + QString(100, u'y');
    const QString shown = excerpt(text, {u"missing"_s, u"NEEDLE"_s}, 40);
    EXPECT_TRUE(shown.startsWith(u"…x"_s));
    EXPECT_TRUE(shown.contains(u"needle"_s));
    EXPECT_LE(shown.size(), 41);
}

TEST(Excerpt, NeverCutsASurrogatePair)
{
    const QString faces = u"😀"_s.repeated(100) + u"z"_s + u"😀"_s.repeated(100);
    for (int length = 1; length < 40; ++length) {
        const QString shown = excerpt(faces, {u"z"_s}, length);
        EXPECT_EQ(shown, QString::fromUtf8(shown.toUtf8())) << length;
    }
}

TEST(CountWords, CountsChineseByCharacterAndTheRestByWord)
{
    const std::pair<QString, int> cases[] = {
        {u""_s, 0},
        {u" \n，。!?"_s, 0},
        {u"one"_s, 1},
        {u"one two\nthree"_s, 3},
        {u"don't stop"_s, 2},
        {u"数据库"_s, 3},
        {u"用SQLite做2个"_s, 5},
        {u"カタカナ"_s, 4},
        {u"caf\u0065\u0301 noir"_s, 2},
        {u"𠀀𠀁"_s, 2},
        {u"😀 smile"_s, 1},
    };
    for (const auto& [text, words] : cases)
        EXPECT_EQ(countWords(text), words) << qPrintable(text);
}
