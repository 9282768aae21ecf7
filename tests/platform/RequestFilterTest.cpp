#include "platform/RequestFilter.h"
#include "kit/Print.h"
#include "support/AppDirs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// An installed page and a store elsewhere, with a secret beside both.
struct RequestFilterTest : ::testing::Test {
    QTemporaryDir root;
    QString app = root.filePath(QStringLiteral("app"));
    QString install = root.filePath(QStringLiteral("install"));
    QString oldApp = GetAppDir(), oldInstall = GetInstallDir();

    void SetUp() override
    {
        for (const QString& dir : {app + QStringLiteral("/userdata/attachment"),
                 install + QStringLiteral("/nmeditor"), install + QStringLiteral("/res")})
            QDir().mkpath(dir);
        for (const QString& file : {app + QStringLiteral("/userdata/attachment/a b#.png"),
                 install + QStringLiteral("/nmeditor/index.html"),
                 root.filePath(QStringLiteral("secret"))}) {
            QFile made(file);
            ASSERT_TRUE(made.open(QIODevice::WriteOnly));
        }
        SetAppDir(app);
        SetInstallDir(install);
    }
    void TearDown() override
    {
        SetAppDir(oldApp);
        SetInstallDir(oldInstall);
    }
};

} // namespace

TEST_F(RequestFilterTest, ThePageItsPicturesAndTheStoreAreReadable)
{
    for (const QString& file : {install + QStringLiteral("/nmeditor/index.html"),
             install + QStringLiteral("/res/missing.png"),
             app + QStringLiteral("/userdata/attachment/a b#.png"),
             app + QStringLiteral("/userdata/attachment/guid/missing")})
        EXPECT_EQ(RequestFilter::allowedFile(file), file) << qPrintable(file);
}

TEST_F(RequestFilterTest, ThePagesRelativePathReachesTheStoreElsewhere)
{
    EXPECT_EQ(RequestFilter::allowedFile(install + QStringLiteral("/userdata/attachment/a b#.png")),
        app + QStringLiteral("/userdata/attachment/a b#.png"));
}

TEST_F(RequestFilterTest, NothingElseOfTheDiskIsReadable)
{
    for (const QString& file : {root.filePath(QStringLiteral("secret")),
             install + QStringLiteral("/nmeditor/../../secret"),
             app + QStringLiteral("/userdata/attachment/../../../secret"),
             app + QStringLiteral("/userdata/attachment"), app + QStringLiteral("/NomarEditor.log"),
             install + QStringLiteral("/nmeditorx/a"), QStringLiteral("/etc/passwd"), QString()})
        EXPECT_EQ(RequestFilter::allowedFile(file), QString()) << qPrintable(file);
}

TEST_F(RequestFilterTest, ALinkThatLeadsOutIsRefused)
{
    const QString link = app + QStringLiteral("/userdata/attachment/link.png");
    ASSERT_TRUE(QFile::link(root.filePath(QStringLiteral("secret")), link));
    EXPECT_EQ(RequestFilter::allowedFile(link), QString());
    const QString inside = app + QStringLiteral("/userdata/attachment/inside.png");
    ASSERT_TRUE(QFile::link(app + QStringLiteral("/userdata/attachment/a b#.png"), inside));
    EXPECT_EQ(RequestFilter::allowedFile(inside), inside);
}
