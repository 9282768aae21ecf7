#include "support/Log.h"

#include "kit/Wait.h"
#include "support/LogWriter.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include <poll.h>
#include <semaphore>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

class LogWriterTest : public testing::Test {
protected:
    QString path() const { return m_directory.filePath(QStringLiteral("NomarEditor.log")); }

    // The messages in the file, without their stamps.
    QStringList messages() const
    {
        QStringList result;
        for (const QString& line :
            QString::fromUtf8(readFile(path())).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
            result += line.section(u' ', 3);
        return result;
    }

    QTemporaryDir m_directory;
    LogWriter m_writer{path()};
};

void truncate(const QString& path, qint64 size)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(size));
}

const QString kFirst = QStringLiteral("first");
const QString kSecond = QStringLiteral("second");

} // namespace

TEST_F(LogWriterTest, ALineHasDateTimeMillisecondsThreadAndMessage)
{
    m_writer.append(QStringLiteral("[ERROR] 失败"));
    m_writer.pass();
    const QString expected =
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d:\\d{3} TID:0x%1 "
                       "\\[ERROR\\] 失败\r\n$")
            .arg(::gettid(), 0, 16);
    const QString line = QString::fromUtf8(readFile(path()));
    EXPECT_TRUE(QRegularExpression(expected).match(line).hasMatch()) << line.toStdString();
}

TEST_F(LogWriterTest, PercentSignsAreWrittenLiterally)
{
    const QString message = QStringLiteral("%s %d %n %1 100%");
    m_writer.append(message);
    m_writer.pass();
    EXPECT_EQ(messages(), QStringList(message));
}

TEST_F(LogWriterTest, AnEmptyMessageQueuesNothing)
{
    m_writer.append(QString());
    m_writer.append(QString(1, QChar(u'\0')));
    m_writer.pass();
    EXPECT_EQ(readFile(path()), QByteArray());
}

TEST_F(LogWriterTest, AMessageEndsAtItsFirstNulAndALoneSurrogateIsReplaced)
{
    m_writer.append(QStringLiteral("ab") + QChar(u'\0') + u'c');
    m_writer.append(QString(QChar(0xD800)));
    m_writer.pass();
    EXPECT_EQ(messages(), (QStringList{QStringLiteral("ab"), QStringLiteral("\uFFFD")}));
}

TEST_F(LogWriterTest, AMessageLongerThanABlockIsWhole)
{
    const QString longOne(200'000, u'笔');
    m_writer.append(kFirst);
    m_writer.append(longOne);
    m_writer.append(kSecond);
    m_writer.pass();
    EXPECT_EQ(messages(), (QStringList{kFirst, longOne, kSecond}));
}

TEST_F(LogWriterTest, EachPassAppends)
{
    m_writer.append(kFirst);
    m_writer.pass();
    m_writer.pass();
    m_writer.append(kSecond);
    m_writer.pass();
    EXPECT_EQ(messages(), (QStringList{kFirst, kSecond}));
}

TEST_F(LogWriterTest, AFileAtTheLimitIsAppendedTo)
{
    writeFile(path(), QByteArray());
    truncate(path(), 10'485'760);
    m_writer.append(kFirst);
    m_writer.pass();
    const QByteArray bytes = readFile(path());
    EXPECT_GT(bytes.size(), 10'485'760);
    EXPECT_TRUE(bytes.endsWith("first\r\n"));
}

TEST_F(LogWriterTest, AFileAboveTheLimitIsDeletedAndBegunAnew)
{
    writeFile(path(), QByteArray());
    truncate(path(), 10'485'761);
    m_writer.append(kFirst);
    m_writer.pass();
    EXPECT_EQ(messages(), QStringList(kFirst));
}

TEST_F(LogWriterTest, OnlyTheLowHalfOfTheSizeIsLookedAt)
{
    writeFile(path(), QByteArray());
    truncate(path(), (qint64(1) << 32) + 5);
    m_writer.append(kFirst);
    m_writer.pass();
    EXPECT_GT(QFile(path()).size(), (qint64(1) << 32) + 5);
}

TEST_F(LogWriterTest, AFileDeletedBetweenPassesIsMadeAgain)
{
    m_writer.append(kFirst);
    m_writer.pass();
    ASSERT_TRUE(QFile::remove(path()));
    m_writer.append(kSecond);
    m_writer.pass();
    EXPECT_EQ(messages(), QStringList(kSecond));
}

TEST_F(LogWriterTest, LinesWaitWhileTheFileCannotBeOpened)
{
    const QString inner = m_directory.filePath(QStringLiteral("later"));
    LogWriter writer(inner + QStringLiteral("/NomarEditor.log"));
    writer.append(kFirst);
    writer.pass();
    writer.append(kSecond);
    writer.pass();
    ASSERT_TRUE(QDir().mkdir(inner));
    writer.pass();
    const QByteArray bytes = readFile(inner + QStringLiteral("/NomarEditor.log"));
    EXPECT_LT(bytes.indexOf("first"), bytes.indexOf("second"));
    EXPECT_EQ(bytes.count('\n'), 2);
}

TEST_F(LogWriterTest, LinesWaitWhileTheOverlongFileCannotBeDeleted)
{
    writeFile(path(), QByteArray());
    truncate(path(), 10'485'761);
    const QByteArray file = QFile::encodeName(path());
    const QByteArray directory = QFile::encodeName(m_directory.path());
    ASSERT_EQ(::chmod(file, 0666), 0);
    ASSERT_EQ(::chmod(directory, 0555), 0);
    {
        const WithoutRoot rights;
        m_writer.append(kFirst);
        m_writer.pass();
        EXPECT_EQ(QFile(path()).size(), 10'485'761);
    }
    ASSERT_EQ(::chmod(directory, 0755), 0);
    m_writer.pass();
    EXPECT_EQ(messages(), QStringList(kFirst));
}

TEST_F(LogWriterTest, LinesOfAFailedWriteAreGone)
{
    ASSERT_EQ(::symlink("/dev/full", QFile::encodeName(path())), 0);
    m_writer.append(kFirst);
    m_writer.pass();
    ASSERT_TRUE(QFile::remove(path()));
    m_writer.append(kSecond);
    m_writer.pass();
    EXPECT_EQ(messages(), QStringList(kSecond));
}

TEST_F(LogWriterTest, LinesOfSeveralThreadsAreWholeAndKeepEachThreadsOrder)
{
    constexpr int threads = 4;
    constexpr int lines = 5'000;
    std::vector<std::thread> crowd;
    for (int t = 0; t < threads; ++t)
        crowd.emplace_back([this, t] {
            for (int i = 0; i < lines; ++i)
                m_writer.append(QStringLiteral("%1:%2").arg(t).arg(i));
        });
    std::thread passes([this] {
        for (int i = 0; i < 50; ++i)
            m_writer.pass();
    });
    for (std::thread& thread : crowd)
        thread.join();
    passes.join();
    m_writer.pass();

    std::vector<int> next(threads, 0);
    const QStringList all = messages();
    ASSERT_EQ(all.size(), threads * lines);
    for (const QString& message : all) {
        const std::size_t thread = message.section(u':', 0, 0).toUInt();
        ASSERT_LT(thread, next.size()) << message.toStdString();
        ASSERT_EQ(message.section(u':', 1).toInt(), next[thread]++);
    }
}

TEST_F(LogWriterTest, LinesOfTwoThreadsStandInTheOrderOfTheirArrival)
{
    constexpr int lines = 500;
    std::binary_semaphore turns[]{std::binary_semaphore(1), std::binary_semaphore(0)};
    const auto write = [&](int self) {
        for (int i = 0; i < lines; ++i) {
            turns[self].acquire();
            m_writer.append(QStringLiteral("%1:%2").arg(i).arg(self));
            turns[1 - self].release();
        }
    };
    std::thread other(write, 1);
    std::thread passes([this] {
        for (int i = 0; i < 20; ++i)
            m_writer.pass();
    });
    write(0);
    other.join();
    passes.join();
    m_writer.pass();

    QStringList expected;
    for (int i = 0; i < lines; ++i)
        expected << QStringLiteral("%1:0").arg(i) << QStringLiteral("%1:1").arg(i);
    EXPECT_EQ(messages(), expected);
}

TEST_F(LogWriterTest, RunPassesUntilItIsStopped)
{
    m_writer.append(kFirst);
    std::thread thread([this] { m_writer.run(); });
    EXPECT_TRUE(waitFor([this] { return QFile(path()).size() > 0; }));
    m_writer.stop();
    EXPECT_TRUE(m_writer.waitForEnd(std::chrono::seconds(30)));
    thread.join();
    EXPECT_EQ(messages(), QStringList(kFirst));
}

TEST_F(LogWriterTest, ALineLoggedAfterTheLastPassAndBeforeTheStopNeverReachesTheFile)
{
    m_writer.append(kFirst);
    m_writer.pass();
    m_writer.append(kSecond);
    m_writer.stop();
    m_writer.run();
    EXPECT_TRUE(m_writer.waitForEnd(std::chrono::seconds(0)));
    EXPECT_EQ(messages(), QStringList(kFirst));
}

TEST_F(LogWriterTest, AStopBeforeTheFirstPassLeavesTheFileAlone)
{
    m_writer.append(kFirst);
    m_writer.stop();
    m_writer.run();
    EXPECT_FALSE(QFile::exists(path()));
}

// The whole logger with its thread: its file lies in the application directory of the moment of its
// construction, and the line gets there by itself.
TEST(CLog4C, ItsThreadWritesWhatIsLogged)
{
    const TestStore store;
    const int watch = ::inotify_init1(IN_CLOEXEC);
    ASSERT_GE(watch, 0);
    ASSERT_GE(::inotify_add_watch(watch, store.appDir().toUtf8(), IN_CLOSE_WRITE), 0);
    CLog4C log;
    log.WriteLog(QStringLiteral("[ERROR] by itself"));
    const QString file = store.appDir() + QStringLiteral("NomarEditor.log");
    do {
        pollfd ready{watch, POLLIN, 0};
        ASSERT_EQ(::poll(&ready, 1, 30'000), 1);
        char events[4096];
        ASSERT_GT(::read(watch, events, sizeof events), 0);
    } while (!readFile(file).endsWith("[ERROR] by itself\r\n"));
    ::close(watch);
}

TEST(CLog4C, IsOneForTheProcessAndReachedByItsTemplate)
{
    const LoggedLines lines;
    EXPECT_EQ(SingletonTemplate<CLog4C>::GetInstance(), CLog4C::ExistingInstance());
}

TEST(CLog4C, WriteQueuedBringsTheLinesToTheFileAtOnce)
{
    LoggedLines lines;
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(kFirst);
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(QString());
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(kSecond);
    EXPECT_EQ(lines.take(), (QStringList{kFirst, kSecond}));
}

TEST(CLog4C, ManyThreadsMayWriteAndFlushAtOnceBesideItsOwn)
{
    LoggedLines lines;
    constexpr int writers = 4;
    constexpr int linesOfEach = 500;
    std::vector<std::thread> threads;
    for (int i = 0; i < writers; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < linesOfEach; ++line)
                SingletonTemplate<CLog4C>::GetInstance()->WriteLog(kFirst);
        });
        threads.emplace_back([] {
            for (int flush = 0; flush < 20; ++flush)
                CLog4C::WriteQueued();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const QStringList all = lines.take();
    EXPECT_EQ(all.size(), writers * linesOfEach);
    EXPECT_EQ(all.count(kFirst), all.size());
}
