#include "kit/Print.h"
#include "tools/NmnoteFixture.h"

#include <QFileInfo>
#include <QImageReader>
#include <QJsonObject>

namespace {

class CardVerbTest : public NmnoteTest {
protected:
    Ran card(const QString& name, const QString& info, const QString& path)
    {
        return runHere({QStringLiteral("card"), QStringLiteral("--"), name, info, path});
    }

    QString out() const { return m_other.filePath(QStringLiteral("card.bmp")); }
};

} // namespace

TEST_F(CardVerbTest, CardIsWrittenAndToldAsJson)
{
    const QJsonObject told =
        json(card(QString::fromUtf8("年度报告.DOCX"), QStringLiteral("2024/05/06 1.25KB"), out()))
            .object();
    const QSize size = QImageReader(out()).size();
    EXPECT_EQ(told,
        (QJsonObject{{QStringLiteral("file"), out()},
            {QStringLiteral("icon"), QStringLiteral("word.bmp")},
            {QStringLiteral("width"), size.width()}, {QStringLiteral("height"), 48},
            {QStringLiteral("fileSize"), 54 + 96 * size.width()}}));
    EXPECT_EQ(QFileInfo(out()).size(), 54 + 96 * size.width());
}

TEST_F(CardVerbTest, TheExtensionOfTheNameChoosesTheIcon)
{
    const std::vector<std::pair<QString, QString>> cases{
        {QStringLiteral("a.tar.gz"), QStringLiteral("unknow.bmp")},
        {QStringLiteral("a.7z"), QStringLiteral("zip.bmp")},
        {QStringLiteral("html"), QStringLiteral("unknow.bmp")},
        {QStringLiteral("-x.html"), QStringLiteral("html.bmp")},
        {QString(), QStringLiteral("unknow.bmp")},
    };
    for (const auto& [name, icon] : cases)
        EXPECT_EQ(
            json(card(name, QString(), out())).object()[QStringLiteral("icon")].toString(), icon);
}

TEST_F(CardVerbTest, ACardThatCannotBeWrittenExitsWithOne)
{
    const Ran failed = card(QStringLiteral("a.pdf"), QStringLiteral("1B"),
        m_other.filePath(QStringLiteral("none/card.bmp")));
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, QString());
    EXPECT_TRUE(failed.err.contains(QStringLiteral("cannot write the card")));
    EXPECT_TRUE(failed.err.contains(QStringLiteral("none/card.bmp")));
}
