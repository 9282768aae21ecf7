#include "notestore/NoteHtmlRW.h"
#include "support/FileMd5.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <cstdio>
#include <random>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr int kSaves = 1000;

// A process that saves notes, until it is killed.
class Saver {
public:
    Saver(const TestStore& store, int firstNumber)
    {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_addclose(&actions, ends[0]);
        ::posix_spawn_file_actions_addclose(&actions, ends[1]);
        std::string program = NOMAR_TEST_SAVER;
        std::string directory = store.appDir().toStdString();
        std::string number = std::to_string(firstNumber);
        char* arguments[]{program.data(), directory.data(), number.data(), nullptr};
        EXPECT_EQ(
            ::posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments, environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        m_output = ::fdopen(ends[0], "r");
    }

    ~Saver() { std::fclose(m_output); }

    // The name of the next file it filed; empty at the end of its output.
    QString nextName()
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

void expectWhole(const TestStore& store, const QString& name)
{
    EXPECT_EQ(FileMd5(store.path(name)) + QStringLiteral(".html"), name);
    QString html;
    NOTE_HTML_VER_NUMBER version;
    EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(store.path(name), html, &version), 1);
    EXPECT_EQ(version, NOTE_HTML_VER_2);
    EXPECT_TRUE(html.startsWith(QStringLiteral("<p>第"))) << name.toStdString();
    EXPECT_TRUE(html.endsWith(QStringLiteral("<hr>"))) << name.toStdString();
}

} // namespace

TEST(KilledSaves, EveryNoteFileIsWholeAndNamedByItsDigest)
{
    const TestStore store;
    std::mt19937 random(2024);
    QStringList filed;
    int kills = 0;
    while (filed.size() < kSaves) {
        // Numbers far apart: what was in the making when the process was killed is not counted.
        Saver saver(store, kills * 10'000);
        for (unsigned left = 1 + random() % 40; left > 0; --left) {
            filed += saver.nextName();
            ASSERT_FALSE(filed.back().isEmpty());
        }
        spin(random() % 2000);
        EXPECT_TRUE(saver.kill());
        ++kills;
        for (QString name = saver.nextName(); !name.isEmpty(); name = saver.nextName())
            filed += name;
    }
    EXPECT_GT(kills, 20);

    const QStringList names = store.names();
    for (const QString& name : filed)
        EXPECT_TRUE(names.contains(name)) << name.toStdString();
    static const QRegularExpression temporary(QStringLiteral("^[0-9a-f]{32}\\.tmp$"));
    for (const QString& name : names) {
        if (!temporary.match(name).hasMatch())
            expectWhole(store, name);
    }
}
