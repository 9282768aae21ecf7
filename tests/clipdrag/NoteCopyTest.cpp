#include "clipdrag/NoteCopy.h"

#include "clipdrag/Board.h"
#include "kit/Print.h"

#include "support/Text.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

int marked(const QString& html, QString& converted)
{
    converted = QStringLiteral("<i>%1</i>").arg(html);
    return 1;
}

int failing(const QString&, QString& converted)
{
    converted = QStringLiteral("half");
    return 0;
}

class NoteCopy : public ::testing::Test {
protected:
    QTemporaryDir dir;

    void SetUp() override { board::putHtml(QStringLiteral("as it was")); }

    QString noteFile(const QByteArray& content)
    {
        QFile out(dir.filePath(QStringLiteral("note.html")));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return out.fileName();
    }
    static bool clipboardIsAsItWas() { return board::fragment() == u"as it was"; }
};

} // namespace

TEST_F(NoteCopy, ANotesHtmlGoesUpConvertedAndInUtf8)
{
    EXPECT_EQ(clipdrag::OnCopyContent(QStringLiteral("文 <b>x</b>"), marked), 1);
    EXPECT_EQ(board::fragment(), QStringLiteral("<!--StartFragment -->\r\n<i>文 <b>x</b></i>\r\n"));
    EXPECT_TRUE(board::held()->hasFormat(clipdrag::kHtmlFormat));
    EXPECT_EQ(board::held()->data(QStringLiteral("text/html")),
        QStringLiteral("<i>文 <b>x</b></i>").toUtf8());
    EXPECT_FALSE(board::held()->hasFormat(QStringLiteral("text/plain")));
}

TEST_F(NoteCopy, AnEmptyTextReturnsZeroAndTheClipboardKeepsItsContent)
{
    EXPECT_EQ(clipdrag::OnCopyContent(QString(), marked), 0);
    EXPECT_TRUE(clipboardIsAsItWas());
}

TEST_F(NoteCopy, AFailedConversionLeavesTheClipboard)
{
    EXPECT_EQ(clipdrag::OnCopyContent(QStringLiteral("x"), failing), 0);
    EXPECT_TRUE(clipboardIsAsItWas());
}

TEST_F(NoteCopy, ANoteFileGoesUpWithoutItsMarker)
{
    EXPECT_EQ(
        clipdrag::OnCopyHtml(noteFile("<!--{\"ver_number\":2}--><p>\xe6\x96\x87</p>"), marked), 1);
    EXPECT_TRUE(board::fragment().contains(QStringLiteral("<i><p>文</p></i>")))
        << qPrintable(board::fragment());
}

TEST_F(NoteCopy, AFileThatCannotBeReadOrHoldsNoTextReturnsZero)
{
    EXPECT_EQ(clipdrag::OnCopyHtml(dir.filePath(QStringLiteral("gone.html")), marked), 0);
    EXPECT_EQ(clipdrag::OnCopyHtml(dir.path(), marked), 0);
    EXPECT_EQ(clipdrag::OnCopyHtml(QString(), marked), 0);
    EXPECT_EQ(clipdrag::OnCopyHtml(noteFile(QByteArray()), marked), 0);
    EXPECT_EQ(clipdrag::OnCopyHtml(noteFile("<!--{\"ver_number\":2}-->"), marked), 0);
    EXPECT_TRUE(clipboardIsAsItWas());
}

TEST_F(NoteCopy, TheClipboardCanBeEmptied)
{
    clipdrag::ClearCopyData();
    EXPECT_TRUE(!board::held() || board::held()->formats().isEmpty());
    clipdrag::ClearCopyData();
}

TEST_F(NoteCopy, FilesThatExistGoUpByTheirThirdField)
{
    const QString path = noteFile("x");
    clipdrag::AddAttachToClipboard({
        {path, path, QString()},
        {QString(), QString(), dir.filePath(QStringLiteral("gone"))},
        {QStringLiteral("any"), QStringLiteral("thing"), path},
    });
    EXPECT_EQ(board::paths(), QStringList{path});
}

TEST_F(NoteCopy, FilesNamedWithBackslashesGoUpUnderTheirPathsOnDisk)
{
    const QString path = noteFile("x");
    const QString backslashed = QString(path).replace(u'/', u'\\');
    clipdrag::AddAttachToClipboard({{QString(), QString(), backslashed},
        {QString(), QString(), dir.path() + QStringLiteral("\\note.html")}});
    EXPECT_EQ(board::paths(), (QStringList{path, path}));

    const QString odd = dir.filePath(QStringLiteral("a\\b"));
    ASSERT_TRUE(QFile::copy(path, odd));
    clipdrag::AddAttachToClipboard({{QString(), QString(), odd}});
    EXPECT_EQ(board::paths(), QStringList{odd}) << "here it is a part of the name";
}

TEST_F(NoteCopy, WithoutAFileThatExistsTheClipboardKeepsItsContent)
{
    clipdrag::AddAttachToClipboard({});
    clipdrag::AddAttachToClipboard({{QString(), QString(), dir.filePath(QStringLiteral("gone"))}});
    EXPECT_TRUE(clipboardIsAsItWas());
}
