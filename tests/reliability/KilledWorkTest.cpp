#include "notestore/NoteHtmlRW.h"
#include "reliability/Figures.h"
#include "support/FileMd5.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include <cstdio>
#include <random>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

// A process that works on a store, until it is killed.
class Worker {
public:
    Worker(const char* work, const TestStore& store, int firstNumber)
    {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_addclose(&actions, ends[0]);
        ::posix_spawn_file_actions_addclose(&actions, ends[1]);
        std::string program = NOMAR_TEST_WORKER;
        std::string kind = work;
        std::string directory = store.appDir().toStdString();
        std::string number = std::to_string(firstNumber);
        char* arguments[]{program.data(), kind.data(), directory.data(), number.data(), nullptr};
        EXPECT_EQ(
            ::posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments, environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        m_output = ::fdopen(ends[0], "r");
    }

    ~Worker() { std::fclose(m_output); }

    // The name of the next file it made; empty at the end of its output.
    QString next()
    {
        char line[256];
        return std::fgets(line, sizeof line, m_output) ? QString::fromLatin1(line).trimmed()
                                                       : QString();
    }

    // Returns whether the kill is what ended it.
    bool kill()
    {
        int status = 0;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    pid_t m_process = 0;
    std::FILE* m_output;
};

void spin(long microseconds)
{
    timespec start, now;
    ::clock_gettime(CLOCK_MONOTONIC, &start);
    do
        ::clock_gettime(CLOCK_MONOTONIC, &now);
    while ((now.tv_sec - start.tv_sec) * 1'000'000 + (now.tv_nsec - start.tv_nsec) / 1000
        < microseconds);
}

// Kills workers at random moments until `count` pieces are done. What they told as done, in their
// order.
QStringList killWhile(const char* work, const TestStore& store, int count)
{
    std::mt19937 random(2024);
    QStringList done;
    int kills = 0;
    while (done.size() < count) {
        // Numbers far apart: what was in the making when the process was killed is not counted.
        Worker worker(work, store, kills * 10'000);
        for (unsigned left = 1 + random() % 40; left > 0; --left) {
            done += worker.next();
            if (done.back().isEmpty()) {
                ADD_FAILURE() << "the worker stopped by itself";
                return done;
            }
        }
        spin(random() % 2000);
        EXPECT_TRUE(worker.kill());
        ++kills;
        for (QString name = worker.next(); !name.isEmpty(); name = worker.next())
            done += name;
    }
    EXPECT_GT(kills, count / 50);
    figures::add("kills during " + std::string(work) + "s", kills);
    return done;
}

void expectWhole(const TestStore& store, const QString& name)
{
    EXPECT_EQ(FileMd5(store.path(name)), QFileInfo(name).completeBaseName()) << name.toStdString();
    if (!name.endsWith(QStringLiteral(".html")))
        return;
    QString html;
    NOTE_HTML_VER_NUMBER version;
    EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(store.path(name), html, &version), 1);
    EXPECT_EQ(version, NOTE_HTML_VER_2);
    EXPECT_TRUE(html.startsWith(QStringLiteral("<p>第"))) << name.toStdString();
    EXPECT_TRUE(html.endsWith(QStringLiteral("<hr>"))) << name.toStdString();
}

// That all that has a digest for a name has that digest, and that nothing else was left but
// temporaries.
void expectAllWhole(const TestStore& store)
{
    static const QRegularExpression temporary(QStringLiteral("^[0-9a-f]{32}\\.tmp$"));
    for (const QString& name : store.names()) {
        if (!temporary.match(name).hasMatch() && QFileInfo(store.path(name)).isFile())
            expectWhole(store, name);
    }
}

// That `nmnote check` finds nothing wrong in the store, and the temporaries alone to tell of.
void expectTold(const TestStore& store)
{
    QStringList expected;
    for (const QString& name : store.names().filter(QRegularExpression(QStringLiteral("\\.tmp$"))))
        expected += QStringLiteral("leftover: ") + name;
    QProcess check;
    check.start(QStringLiteral(NOMAR_NMNOTE), {QStringLiteral("check"), store.store()});
    ASSERT_TRUE(check.waitForFinished(-1));
    EXPECT_EQ(check.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(check.exitCode(), 0);
    QStringList told = QString::fromUtf8(check.readAllStandardOutput()).split(u'\n');
    ASSERT_GE(told.size(), 2);
    EXPECT_EQ(told.takeLast(), QString());
    const QString sum = told.takeLast();
    EXPECT_TRUE(sum.endsWith(QStringLiteral("; %1 findings").arg(expected.size())))
        << sum.toStdString();
    EXPECT_EQ(told, expected);
    figures::add("leftovers of kills, each told by nmnote check", expected.size());
}

} // namespace

TEST(Killed, EveryNoteFileIsWholeAndNamedByItsDigest)
{
    const TestStore store;
    const QStringList filed = killWhile("save", store, figures::isDeep() ? 2000 : 1000);
    const QStringList names = store.names();
    for (const QString& name : filed)
        EXPECT_TRUE(names.contains(name)) << name.toStdString();
    expectAllWhole(store);
    expectTold(store);
    figures::add("saves held through kills", filed.size());
}

TEST(Killed, EveryAttachmentIsWholeAndTheOnesToldAreThere)
{
    const TestStore store;
    const QStringList done = killWhile("import", store, figures::isDeep() ? 500 : 100);
    for (const QString& name : done) {
        const QByteArray bytes = readFile(store.path(name));
        EXPECT_TRUE(bytes.endsWith("<hr>")) << name.toStdString();
        EXPECT_TRUE(
            bytes.startsWith("<p>第 " + QFileInfo(name).completeBaseName().toUtf8() + " 号</p>"))
            << name.toStdString();
    }
    // Those that nobody was told of are whole too: a name is given to what is on the disk.
    const QDir folder(store.path(QStringLiteral("0123456789abcdef")));
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden))
        EXPECT_TRUE(readFile(folder.filePath(name)).endsWith("<hr>")) << name.toStdString();
    expectAllWhole(store);
    expectTold(store);
    figures::add("imports held through kills", done.size());
}
