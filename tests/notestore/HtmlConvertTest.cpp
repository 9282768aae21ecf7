#include "notestore/MhtExport.h"

#include "support/FailingNew.h"
#include "support/TestStore.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using notestore::HtmlConvert;

namespace {

const QString kUntouched = QStringLiteral("untouched");

QString converted(const QString& html)
{
    QString out = kUntouched;
    EXPECT_EQ(HtmlConvert(html, out), 1) << html.toStdString();
    return out;
}

} // namespace

TEST(HtmlConvert, ATextWithoutImagesPassesThroughUnparsed)
{
    const TestStore store;
    for (const QString& html : {QString(), QStringLiteral("<p>text"),
             QStringLiteral("<html><head><title>x</title></head><body>a</body></html>"),
             QStringLiteral("<!-- <img src='a\\b'> --><textarea><img src=x></textarea>"),
             QStringLiteral("<frameset></frameset><img src='a\\b'>"),
             QStringLiteral("a\r\nb\rc") + QChar(u'\0') + QChar(0xD800)})
        EXPECT_EQ(converted(html), html);
}

TEST(HtmlConvert, EachSourceIsTheStoresDirectoryWithTheTextBehindTheLastBackslash)
{
    const TestStore store;
    const QString base = store.store() + u'/';
    const std::vector<std::pair<QString, QString>> cases{
        {QStringLiteral("../userdata\\attachment\\a.png"), base + QStringLiteral("a.png")},
        {QStringLiteral("..\\..\\userdata\\attachment\\a.png"), base + QStringLiteral("a.png")},
        {QStringLiteral("a.png"), base + QStringLiteral("a.png")},
        {QString(), base},
        {QStringLiteral("a\\"), base},
        // The store's root, whatever folder the file lies in.
        {QStringLiteral("..\\userdata\\attachment\\guid\\a.png"), base + QStringLiteral("a.png")},
        // Without a backslash the whole of it.
        {QStringLiteral("https://example.org/a.png"),
            base + QStringLiteral("https://example.org/a.png")},
        {QStringLiteral("../userdata/attachment/a.png"),
            base + QStringLiteral("../userdata/attachment/a.png")},
        {QStringLiteral("a/b\\c/d.png"), base + QStringLiteral("c/d.png")},
        {QStringLiteral("x\\图 &amp; &lt;1&gt;.png"), base + QStringLiteral("图 &amp; <1>.png")},
    };
    for (const auto& [src, wanted] : cases) {
        EXPECT_EQ(converted(QStringLiteral("<p><img src=\"%1\" alt=x></p>").arg(src)),
            QStringLiteral("<p><img src=\"%1\" alt=x></p>").arg(wanted));
    }
}

TEST(HtmlConvert, AnImageWithoutSourceIsLeftAsItIs)
{
    const TestStore store;
    const QString html = QStringLiteral("<IMG CLASS='a\\b'><p>");
    EXPECT_EQ(converted(html), html);
}

TEST(HtmlConvert, WithImagesOnlyTheInsideOfTheBodyIsLeft)
{
    const TestStore store;
    EXPECT_EQ(converted(QStringLiteral("<html><head><title>x</title></head><body class=c>"
                                       "<p>a</p><img src='x\\a.png'></body></html>")),
        QStringLiteral("<p>a</p><img src=\"%1/a.png\">").arg(store.store()));
}

TEST(HtmlConvert, TheStoreIsNotMade)
{
    const TestStore store;
    QDir(store.appDir() + QStringLiteral("userdata")).removeRecursively();
    converted(QStringLiteral("<img src=a>"));
    EXPECT_FALSE(QFileInfo::exists(store.appDir() + QStringLiteral("userdata")));
}

TEST(HtmlConvert, InputAndOutputMayBeTheSameString)
{
    const TestStore store;
    QString html = QStringLiteral("<img src='a\\b'>");
    EXPECT_EQ(HtmlConvert(html, html), 1);
    EXPECT_EQ(html, QStringLiteral("<img src=\"%1/b\">").arg(store.store()));
}

TEST(HtmlConvert, AFailureOnTheWayIsLoggedAndGivesZero)
{
    const TestStore store;
    LoggedLines lines;
    lines.makeRoom();
    QString out = kUntouched;
    int result;
    {
        const FailingNew failing(0);
        result = HtmlConvert(QStringLiteral("<img src=a>"), out);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(out, kUntouched);
    EXPECT_EQ(lines.take(),
        QStringList(
            QStringLiteral("[ERROR] NoteHtmlFileToMhtFile，将图片相对路径转换为绝对路径失败！")));
}
