#include "TestShelf.h"

using namespace Qt::StringLiterals;

namespace {

struct SearchCase {
    const char16_t* name;
    const char16_t* text;
    const char16_t* typed;
    bool found;
};

std::ostream& operator<<(std::ostream& out, const SearchCase& c)
{
    return out << qPrintable(QString::fromUtf16(c.name));
}

} // namespace

class ShelfSearchTest : public TestShelf, public testing::WithParamInterface<SearchCase> { };

TEST_P(ShelfSearchTest, FindsExactlyWhatItShould)
{
    const SearchCase& c = GetParam();
    ASSERT_TRUE(save(u"g"_s, QString::fromUtf16(c.text))) << qPrintable(shelf.errorText());
    EXPECT_EQ(!found(QString::fromUtf16(c.typed)).isEmpty(), c.found);
}

INSTANTIATE_TEST_SUITE_P(Cases, ShelfSearchTest,
    testing::Values(SearchCase{u"one Chinese character", u"关系数据库设计", u"库", true},
        SearchCase{u"two Chinese characters", u"关系数据库设计", u"数据", true},
        SearchCase{u"two characters that stand apart", u"关系数据库设计", u"数库", false},
        SearchCase{u"three Chinese characters", u"关系数据库设计", u"据库设", true},
        SearchCase{u"all of the sentence", u"关系数据库设计", u"关系数据库设计", true},
        SearchCase{u"Chinese that is not there", u"关系数据库设计", u"笔记本", false},
        SearchCase{u"Chinese beside English", u"用SQLite数据库", u"sqlite数据", true},
        SearchCase{u"characters beyond the first plane", u"古字𠀀𠀁𠀂。", u"𠀁𠀂", true},
        SearchCase{u"one letter", u"Plan B", u"b", true},
        SearchCase{u"two letters in the other case", u"Go to", u"gO", true},
        SearchCase{u"inside a word", u"NomarEditor", u"edit", true},
        SearchCase{u"two terms, both there", u"milk and 鸡蛋", u"鸡蛋 milk", true},
        SearchCase{u"two terms, one there", u"milk and eggs", u"milk bread", false},
        SearchCase{
            u"short and long terms together", u"关系数据库 and more", u"more 数据 关系数", true},
        SearchCase{u"percent is a character", u"50 percent", u"%", false},
        SearchCase{u"percent that is there", u"50% more", u"0%", true},
        SearchCase{u"underscore is a character", u"ab", u"_", false},
        SearchCase{u"backslash", u"C:\\x", u":\\", true},
        SearchCase{u"quote", u"she said \"hello\" twice", u"\"hello\"", true},
        SearchCase{u"words of the query language", u"cats", u"NOT", false},
        SearchCase{u"words of the query language that are there", u"cats AND dogs", u"AND", true},
        SearchCase{u"star", u"word", u"wor*", false}, SearchCase{u"emoji", u"done 😀", u"😀", true},
        SearchCase{u"symbols", u"C++ notes", u"++", true},
        SearchCase{u"only white space shows all", u"text", u" \t　", true},
        SearchCase{u"across lines", u"first\nsecond", u"second", true}));

using ShelfSearchHostileTest = TestShelf;

TEST_F(ShelfSearchHostileTest, NulAndLoneSurrogatesInTheQueryFindNothingAndDoNoHarm)
{
    ASSERT_TRUE(save(u"g"_s, u"abc"_s));
    EXPECT_EQ(found(u"abc\0zzz"_s), QStringList());
    EXPECT_EQ(found(u"ab"_s + QChar(0xD800)), QStringList());
    EXPECT_EQ(found(u"abc"_s), QStringList{u"g"_s});
}

TEST_F(ShelfSearchHostileTest, ThousandsOfTermsAreAnsweredByTheFirst)
{
    ASSERT_TRUE(save(u"g"_s, u"word"_s));
    EXPECT_EQ(found(u"word "_s.repeated(5000)), QStringList{u"g"_s});
}

TEST_F(ShelfSearchHostileTest, ExcerptShowsTheTextAroundTheHit)
{
    const QString far = u"filler "_s.repeated(200) + u"the needle 在此 here"_s;
    ASSERT_TRUE(save(u"g"_s, far));
    EXPECT_TRUE(
        shelf.notes(Shelf::Place::List, u"在此"_s).front().excerpt.contains(u"needle 在此"_s));
    EXPECT_TRUE(
        shelf.notes(Shelf::Place::List, u"NEEDLE"_s).front().excerpt.contains(u"needle 在此"_s));
}
