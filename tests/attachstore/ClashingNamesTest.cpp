#include "attachstore/ClashingNames.h"

#include "attachstore/LegalName.h"
#include "support/Paths.h"

#include <gtest/gtest.h>

#include <set>

using attachstore::NumberClashingNames;

namespace {

std::vector<DropFileInfo> filesNamed(const std::vector<QString>& names)
{
    std::vector<DropFileInfo> files;
    for (const QString& name : names) {
        files.emplace_back();
        files.back().origName = files.back().fileName = name;
        files.back().fileExt = QStringLiteral("ext");
        files.back().filePath = QStringLiteral("path");
    }
    return files;
}

// The names that new files get in a note with these names.
std::vector<QString> numbered(const std::vector<QString>& inNote, const std::vector<QString>& names)
{
    std::vector<DropFileInfo> files = filesNamed(names);
    NumberClashingNames(inNote, files);
    std::vector<QString> result;
    for (const DropFileInfo& file : files) {
        EXPECT_EQ(file.fileName, file.origName);
        EXPECT_EQ(file.fileExt, QStringLiteral("ext"));
        EXPECT_EQ(file.filePath, QStringLiteral("path"));
        result.push_back(file.origName);
    }
    return result;
}

std::vector<QString> names(std::initializer_list<const char*> list)
{
    std::vector<QString> result;
    for (const char* name : list)
        result.push_back(QString::fromUtf8(name));
    return result;
}

struct Case {
    std::vector<QString> inNote;
    std::vector<QString> files;
    std::vector<QString> expected;
};

void expectAll(const std::vector<Case>& cases)
{
    for (const Case& c : cases)
        EXPECT_EQ(numbered(c.inNote, c.files), c.expected) << c.files.front().toStdString();
}

const QString kLongName = QString(251, u'x') + QStringLiteral(".txt");

} // namespace

TEST(NumberClashingNames, TheHighestNumberOfTheBaseGoesOnWhateverTheExtension)
{
    const std::vector<QString> note = names({"a.txt", "a(3).doc", "b.txt"});
    EXPECT_EQ(numbered(note, names({"a.txt", "a.txt", "a.pdf", "b(9).txt", "c.txt"})),
        names({"a(4).txt", "a(5).txt", "a(6).pdf", "b(1).txt", "c.txt"}));
}

TEST(NumberClashingNames, WithoutANameInTheNoteNothingChanges)
{
    EXPECT_EQ(
        numbered({}, names({"a.txt", "a.txt", "readme"})), names({"a.txt", "a.txt", "readme"}));
    EXPECT_EQ(numbered(names({"", ""}), names({"readme"})), names({"readme"}));
}

TEST(NumberClashingNames, AnEmptyListStaysEmpty)
{
    EXPECT_EQ(numbered(names({"a.txt"}), {}), std::vector<QString>());
}

TEST(NumberClashingNames, TwoNewFilesOfOneNameKeepItUnlessTheNoteHasIt)
{
    EXPECT_EQ(numbered(names({"b.txt"}), names({"a.txt", "a.txt"})), names({"a.txt", "a.txt"}));
}

TEST(NumberClashingNames, WhatIsNoNumberCountsAsZero)
{
    expectAll({
        {names({"a(b).txt"}), names({"a.txt"}), names({"a(1).txt"})},
        {names({"a().txt"}), names({"a.txt"}), names({"a(1).txt"})},
        {names({"a(-).txt"}), names({"a.txt"}), names({"a(1).txt"})},
        {names({"a(- 5).txt"}), names({"a.txt"}), names({"a(1).txt"})},
        {names({"a(+-5).txt"}), names({"a.txt"}), names({"a(1).txt"})},
        {names({"a(x7).txt"}), names({"a.txt"}), names({"a(1).txt"})},
    });
}

TEST(NumberClashingNames, ANumberMayHaveBlanksASignAndATail)
{
    expectAll({
        {names({"a( \t7).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(+7).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(007).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(7x9).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(7 9).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(7.5).txt"}), names({"a.txt"}), names({"a(8).txt"})},
        {names({"a(-5).txt"}), names({"a.txt"}), names({"a(-4).txt"})},
        {names({"a(-5).txt", "a.txt"}), names({"a.txt"}), names({"a(1).txt"})},
    });
}

TEST(NumberClashingNames, OnlyBracketsRightBeforeTheLastDotHoldANumber)
{
    expectAll({
        {names({"a(1)b.txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a(1)b.txt"}), names({"a(1)b.txt"}), names({"a(1)b(1).txt"})},
        {names({"a(1)"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a(1).b.txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a).txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a)(.txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a(1.txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a(1)(2).txt"}), names({"a.txt"}), names({"a.txt"})},
        {names({"a(1)(2).txt"}), names({"a(1)(9).doc"}), names({"a(1)(3).doc"})},
        {names({"a((2).txt"}), names({"a(.txt"}), names({"a((3).txt"})},
        {names({"x.a(b)c"}), names({"x.txt"}), names({"x(1).txt"})},
    });
}

TEST(NumberClashingNames, TheNumberOfANewNameIsIgnored)
{
    EXPECT_EQ(numbered(names({"a.txt"}), names({"a(7).txt"})), names({"a(1).txt"}));
}

TEST(NumberClashingNames, NamesWithoutABaseShareTheEmptyOne)
{
    expectAll({
        {names({"(5).txt"}), names({"(2).txt"}), names({"(6).txt"})},
        {names({"LICENSE"}), names({"readme"}), names({"(1).readme"})},
        {names({"LICENSE"}), names({".bashrc"}), names({"(1).bashrc"})},
        {names({"(4).txt"}), names({"readme"}), names({"(5).readme"})},
        {names({"a.txt"}), names({"readme"}), names({"readme"})},
        {names({"LICENSE"}), names({""}), names({"(1)."})},
    });
}

TEST(NumberClashingNames, CaseCounts)
{
    EXPECT_EQ(numbered(names({"A.txt"}), names({"a.txt", "A.TXT"})), names({"a.txt", "A(1).TXT"}));
}

TEST(NumberClashingNames, TheExtensionIsThatOfTheFileName)
{
    std::vector<DropFileInfo> files = filesNamed(names({"a.txt"}));
    files[0].fileName = QStringLiteral("b.tar.gz");
    NumberClashingNames(names({"a.doc"}), files);
    EXPECT_EQ(files[0].origName, QStringLiteral("a(1).gz"));
    EXPECT_EQ(files[0].fileName, QStringLiteral("a(1).gz"));
}

TEST(NumberClashingNames, PercentSignsAreNoPlaceholders)
{
    EXPECT_EQ(numbered(names({"%1%2%d.txt"}), names({"%1%2%d.%1"})), names({"%1%2%d(1).%1"}));
}

TEST(NumberClashingNames, ANumberThatIsTooLargeIsTheLargestAndGoesOnFromThere)
{
    for (const char* number : {"2147483647", "2147483648", "99999999999999999999999999"}) {
        std::vector<QString> note = names({"a.txt"});
        note.push_back(QStringLiteral("a(%1).txt").arg(QLatin1String(number)));
        const std::vector<QString> given = numbered(note, names({"a.txt", "a.txt"}));
        const bool isTaken = QLatin1String(number) == QLatin1String("2147483648");
        EXPECT_EQ(given,
            isTaken ? names({"a(2147483649).txt", "a(2147483650).txt"})
                    : names({"a(2147483648).txt", "a(2147483649).txt"}));
    }
    const std::vector<QString> digits{QStringLiteral("a(%1).txt").arg(QString(1'000'000, u'9'))};
    EXPECT_EQ(numbered(digits, names({"a.txt"})), names({"a(2147483648).txt"}));
}

TEST(NumberClashingNames, ANumberThatIsTooSmallIsTheSmallest)
{
    EXPECT_EQ(
        numbered(names({"a(-99999999999).txt"}), names({"a.txt"})), names({"a(-2147483647).txt"}));
}

// Each add sees the note that the one before it left.
TEST(NumberClashingNames, RepeatedAddsNeverGiveANameThatTheNoteHas)
{
    for (const QString& name : {QStringLiteral("a.txt"), kLongName, QStringLiteral("README"),
             u'.' + QString(254, u'x'), QString(84, u'笔') + u'.'}) {
        std::vector<QString> note{name, QStringLiteral("a(2147483646).txt")};
        for (int i = 0; i < 20; ++i)
            note.push_back(numbered(note, {name}).front());
        EXPECT_EQ(std::set<QString>(note.begin(), note.end()).size(), note.size())
            << name.toStdString();
    }
}

TEST(NumberClashingNames, ANameThatBecomesTooLongIsShortenedAndKeepsItsExtension)
{
    const std::vector<QString> given = numbered({kLongName}, {kLongName, kLongName});
    EXPECT_NE(given[0], given[1]);
    for (const QString& name : given) {
        EXPECT_TRUE(IsSafeFileName(name));
        EXPECT_TRUE(name.startsWith(QString(200, u'x')));
        EXPECT_TRUE(name.endsWith(QStringLiteral(".txt")));
    }
}

TEST(NumberClashingNames, HostileNamesInTheNoteNeverMakeAnIllegalName)
{
    const QString nul(1, QChar(u'\0'));
    const QString half(1, QChar(0xD800));
    for (const QString& base : {QStringLiteral("../../a"), QStringLiteral("a\\b"), u'a' + nul,
             u'a' + half, QString(1'000'000, u'('), QString(300, u'笔')}) {
        const QString name = base + QStringLiteral(".txt");
        const std::vector<QString> given = numbered({name}, {name, name});
        EXPECT_TRUE(IsSafeFileName(given[0]));
        EXPECT_TRUE(given[0].isValidUtf16());
        EXPECT_NE(given[0], given[1]);
    }
}

TEST(NumberClashingNames, AHundredThousandFilesAreNumberedInTheirOrder)
{
    constexpr int kCount = 100'000; // a search of the list for each file would take minutes
    std::vector<QString> note;
    std::vector<QString> files;
    std::vector<QString> expected;
    for (int i = 0; i < kCount; ++i) {
        note.push_back(QStringLiteral("n%1.txt").arg(i));
        files.push_back(i % 2 ? QStringLiteral("n0.txt") : QStringLiteral("n%1.txt").arg(i + 1));
        expected.push_back(i % 2 ? QStringLiteral("n0(%1).txt").arg(i / 2 + 1)
                                 : QStringLiteral("n%1(1).txt").arg(i + 1));
    }
    EXPECT_TRUE(numbered(note, files) == expected);
    EXPECT_EQ(
        numbered({kLongName}, std::vector<QString>(kCount, kLongName)).size(), std::size_t(kCount));
}
