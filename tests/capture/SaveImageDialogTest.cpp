// The desktop's save dialog, as a capture opens it.

#include "capture/SaveImageDialog.h"

#include "kit/Answers.h"
#include "kit/Print.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(SaveImageDialog, HasTitleNameAndFilters)
{
    QString title, name, suffix;
    QStringList filters;
    bool asksToOverwrite = false;
    const Answers user([&](QDialog* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        title = files->windowTitle();
        name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        suffix = files->defaultSuffix();
        filters = files->nameFilters();
        asksToOverwrite = !files->testOption(QFileDialog::DontConfirmOverwrite);
        QTest::keyClick(dialog, Qt::Key_Escape);
        return true;
    });
    QString path = QStringLiteral("as it was");
    EXPECT_FALSE(DesktopSaveImageDialog().choose(path));
    EXPECT_EQ(path, QStringLiteral("as it was"));
    EXPECT_EQ(title, QStringLiteral("另存为图片文件"));
    EXPECT_EQ(name, QStringLiteral("截图未命名"));
    EXPECT_EQ(suffix, QStringLiteral("png"));
    EXPECT_EQ(filters,
        QStringList({QStringLiteral("PNG(*.png)"), QStringLiteral("BMP(*.bmp)"),
            QStringLiteral("JPG(*.jpg *.jpeg)")}));
    EXPECT_TRUE(asksToOverwrite);
}

TEST(SaveImageDialog, ANameWithoutAnExtensionBecomesAPng)
{
    const QTemporaryDir dir;
    ASSERT_TRUE(QFile(dir.filePath(QStringLiteral("other.png"))).open(QIODevice::WriteOnly));
    const Answers user([&](QDialog* dialog) {
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name->clear();
        return Answers::choose(dir.path(), QStringLiteral("picture"))(dialog);
    });
    QString path;
    EXPECT_TRUE(DesktopSaveImageDialog().choose(path));
    EXPECT_EQ(path, dir.filePath(QStringLiteral("picture.png")));
}

TEST(SaveImageDialog, FiltersArePairsOfLabelAndPatterns)
{
    const struct {
        const char* pairs;
        QStringList filters;
    } cases[] = {
        {"PNG(*.png)|*.png|", {QStringLiteral("PNG(*.png)")}},
        {"All|*.*|", {QStringLiteral("All(*.*)")}},
        {"A(x)|*.a;*.b)|||", {QStringLiteral("A(*.a *.b)")}},
        {"lonely", {}},
        {"", {}},
        {"|||", {}},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(NameFiltersOf(QString::fromLatin1(expected.pairs)), expected.filters)
            << expected.pairs;
}
