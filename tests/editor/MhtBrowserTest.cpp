// An exported note as the engine shows it: the file is opened on its own, away from any store.

#include "kit/Print.h"
#include "kit/TestControl.h"

#include "noteattach/ExData.h"
#include "notestore/MhtExport.h"
#include "support/Paths.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

namespace {

const QRgb kCorners[]{qRgb(255, 0, 0), qRgb(0, 200, 0), qRgb(0, 0, 255), qRgb(255, 220, 0)};

/// Four squares of one colour each, on whole pixels.
QImage squares()
{
    QImage image(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x)
            image.setPixel(x, y, kCorners[(y / 32) * 2 + x / 32]);
    }
    return image;
}

class ExportedNote : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(squares().save(GetAttachmentDir() + QStringLiteral("/squares.png")));
        // As a card is: 16 bits a pixel.
        ASSERT_TRUE(squares()
                        .convertToFormat(QImage::Format_RGB16)
                        .save(GetAttachmentDir() + QStringLiteral("/card.bmp")));
        view.resize(400, 300);
        view.show();
    }

    bool opens(const QString& file)
    {
        std::optional<bool> loaded;
        QObject::connect(
            view.page(), &QWebEnginePage::loadFinished, view.page(), [&](bool ok) { loaded = ok; });
        view.load(QUrl::fromLocalFile(file));
        return waitFor([&] { return loaded.has_value(); }) && *loaded;
    }

    QVariant js(const QString& script)
    {
        auto reply = std::make_shared<std::optional<QVariant>>();
        view.page()->runJavaScript(script, 1, [reply](const QVariant& v) { *reply = v; });
        waitFor([&] { return reply->has_value(); });
        return reply->value_or(QVariant());
    }

    /// The picture number `index` as it is painted.
    bool paints(int index, const QImage& wanted)
    {
        const QVariantList at =
            js(QStringLiteral("(() => { const r = document.images[%1]"
                              ".getBoundingClientRect(); return [r.x, r.y]; })()")
                    .arg(index))
                .toList();
        if (at.size() != 2)
            return false;
        const QRect place(QPoint(at[0].toInt(), at[1].toInt()), wanted.size());
        return waitFor([&] {
            return view.grab(place).toImage().convertToFormat(QImage::Format_RGB32) == wanted;
        });
    }

    QTemporaryDir there;
    const QString file = there.filePath(QStringLiteral("note.mht"));
    QWebEngineView view;
};

} // namespace

TEST_F(ExportedNote, ShowsItsTextAndThePicturesThatItCarries)
{
    const QString html = QStringLiteral("<p style=\"margin:0\">笔记 note = 100%</p>"
                                        "<img src=\"../userdata\\attachment\\squares.png\">"
                                        "<img class=\"userdata\\attachment\\d.pdf\" nm_exdata='%1' "
                                        "src=\"../userdata\\attachment\\card.bmp\">")
                             .arg(noteattach::FormatOrigNameToJson(QStringLiteral("报告.pdf")));
    ASSERT_EQ(notestore::NoteHtmlContentToMhtFileWithPictures(html, file), 1);
    QFile::remove(GetAttachmentDir() + QStringLiteral("/squares.png"));
    QFile::remove(GetAttachmentDir() + QStringLiteral("/card.bmp"));

    ASSERT_TRUE(opens(file));
    EXPECT_EQ(js(QStringLiteral("document.querySelector('p').textContent")).toString(),
        QStringLiteral("笔记 note = 100%"));
    EXPECT_TRUE(paints(0, squares()));
    EXPECT_TRUE(paints(
        1, squares().convertToFormat(QImage::Format_RGB16).convertToFormat(QImage::Format_RGB32)));
}

TEST_F(ExportedNote, WithoutItsPicturesShowsItsTextAndNamesTheFilesOfTheStore)
{
    ASSERT_EQ(
        notestore::NoteHtmlContentToMhtFile(
            QStringLiteral("<p>笔记</p><img src=\"../userdata\\attachment\\squares.png\">"), file),
        1);
    ASSERT_TRUE(opens(file));
    EXPECT_EQ(js(QStringLiteral("document.querySelector('p').textContent")).toString(),
        QStringLiteral("笔记"));
    EXPECT_EQ(js(QStringLiteral("document.images[0].src")).toString(),
        QUrl::fromLocalFile(GetAttachmentDir() + QStringLiteral("/squares.png")).toString());
}

TEST_F(ExportedNote, OfAMegabyteShowsItsLastLine)
{
    QString html;
    for (int i = 0; html.size() < (1 << 20); ++i)
        html += QStringLiteral("<p>段落 paragraph number %1</p>\n").arg(i);
    ASSERT_EQ(notestore::NoteHtmlContentToMhtFile(html + QStringLiteral("<p>末行</p>"), file), 1);
    ASSERT_TRUE(opens(file));
    EXPECT_EQ(js(QStringLiteral("document.body.lastElementChild.textContent")).toString(),
        QStringLiteral("末行"));
}

TEST(ExportWord, WritesTheLastSavedTextAndSaysNothing)
{
    const QTemporaryDir there;
    const QString file = there.filePath(QStringLiteral("note.doc"));
    TestControl control;
    control.lastHtml() = QStringLiteral("<p>saved</p>");
    QString error;
    EXPECT_TRUE(control.ExportWord(file, error));
    EXPECT_EQ(error, QString());
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_TRUE(written.readAll().contains("\r\n<p>saved</p>\r\n"));
}

TEST(ExportWord, ThatFailsSaysSo)
{
    const QTemporaryDir there;
    TestControl control;
    control.lastHtml() = QStringLiteral("<p>saved</p>");
    QString error;
    EXPECT_FALSE(control.ExportWord(there.path(), error));
    EXPECT_EQ(error, QStringLiteral("转化为word失败！"));
}
