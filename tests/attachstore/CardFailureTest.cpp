#include "attachstore/Card.h"

#include "attachstore/ImageManager.h"
#include "attachstore/TestIcons.h"
#include "kit/Print.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

using attachstore::GenerateFileThumb;

namespace {

const QString kName = QStringLiteral("a.pdf");
const QString kInfo = QStringLiteral("1B");

class CardFailure : public testing::Test {
protected:
    QString path(const QString& name = QStringLiteral("card.bmp")) const
    {
        return m_directory.filePath(name);
    }

    static void expectFailure(const QString& outPath)
    {
        int fileSize = -1;
        EXPECT_EQ(GenerateFileThumb(FT_PDF, kName, kInfo, outPath, &fileSize), 0)
            << outPath.toStdString();
        EXPECT_EQ(fileSize, -1);
    }

    QTemporaryDir m_directory;
};

} // namespace

TEST_F(CardFailure, APathInAMissingDirectoryIsRefusedAndNotLogged)
{
    LoggedLines log; // that is for the caller to do
    expectFailure(path(QStringLiteral("none/card.bmp")));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("none"))));
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(CardFailure, APathThatIsNoneIsRefused)
{
    expectFailure(QString());
    expectFailure(path() + QChar(u'\0') + u'x');
    expectFailure(path(QString(256, u'x')));
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(CardFailure, ADirectoryWithoutTheRightToWriteIsRefused)
{
    ASSERT_EQ(::chmod(QFile::encodeName(m_directory.path()), 0555), 0);
    {
        const WithoutRoot rights;
        expectFailure(path());
    }
    ASSERT_EQ(::chmod(QFile::encodeName(m_directory.path()), 0755), 0);
}

TEST_F(CardFailure, WhatIsNoRegularFileIsLeftAlone)
{
    expectFailure(m_directory.path());
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(QStringLiteral("fifo"))), 0600), 0);
    expectFailure(path(QStringLiteral("fifo")));
    expectFailure(QStringLiteral("/dev/full"));
    EXPECT_TRUE(QFile::exists(QStringLiteral("/dev/full")));
    writeFile(path(QStringLiteral("other")), "kept");
    ASSERT_EQ(::symlink("other", QFile::encodeName(path(QStringLiteral("link")))), 0);
    expectFailure(path(QStringLiteral("link")));
    EXPECT_EQ(readFile(path(QStringLiteral("other"))), "kept");
    ASSERT_EQ(::symlink("none", QFile::encodeName(path(QStringLiteral("dangling")))), 0);
    expectFailure(path(QStringLiteral("dangling")));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("none"))));
}

TEST_F(CardFailure, AWriteThatFailsLeavesNoPartialFile)
{
    // In the file's header, in the bitmap's, and among the pixels.
    for (const rlim_t bytes : {10u, 20u, 1000u}) {
        {
            const FileSizeLimit limit(bytes);
            int fileSize = -1;
            EXPECT_EQ(GenerateFileThumb(FT_PDF, kName, kInfo, path(), &fileSize), 0);
            EXPECT_EQ(fileSize, -1);
        }
        EXPECT_FALSE(QFile::exists(path())) << bytes;
    }
}

TEST_F(CardFailure, WhatAFallbackThrowsEndsHere)
{
    delete SingletonTemplate<ImageManager>::ExistingInstance();
    {
        const TestIcons icons;
        SingletonTemplate<ImageManager>::GetInstance()->SetFallbackSource(
            []() -> QImage { throw std::runtime_error("no picture"); });
        EXPECT_EQ(GenerateFileThumb(FT_UNKNOW, kName, kInfo, path(), nullptr), 0);
    }
    delete SingletonTemplate<ImageManager>::ExistingInstance();
}

TEST_F(CardFailure, WithoutADisplayThereIsNoCard)
{
    QProcess process;
    process.start(QStringLiteral(NOMAR_TEST_UNDISPLAYED_CARD), {path()});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    // Without any application object, with one that knows no display, with one that does.
    EXPECT_EQ(process.readAllStandardOutput(), "0 0\n0 0\n1 1\n");
}
