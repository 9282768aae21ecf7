// The render process is killed while the user types.

#include "reliability/browser/OpenNoteFixture.h"

#include <csignal>
#include <random>

namespace {

class RenderDeath : public OpenNoteFixture {
protected:
    std::mt19937 random{7};
    QString typed = QStringLiteral("before");
    int words = 0;

    void typeWords(unsigned count)
    {
        for (; count > 0; --count) {
            const QString word = QStringLiteral(".%1").arg(++words);
            QTest::keyClicks(bench.input(), word);
            typed += word;
        }
    }

    /// Until the page has had all keys and told its text, which it does within a second. The
    /// page's own clock counts.
    void waitUntilSafe()
    {
        ASSERT_TRUE(waitFor([&] { return text() == typed; })) << text().toStdString();
        bench.js(QStringLiteral("window.typedAt = performance.now(); 1"));
        ASSERT_TRUE(waitFor([&] {
            return bench.js(QStringLiteral("performance.now() > typedAt + 1200")).toBool();
        }));
    }

    void kill()
    {
        const qint64 pid = bench.page()->renderProcessPid();
        ASSERT_GT(pid, 0);
        ASSERT_EQ(::kill(pid_t(pid), SIGKILL), 0);
        // Half of the time somebody saves before the engine has noticed.
        if (random() % 2)
            control().SaveEditor();
        ASSERT_TRUE(waitFor([&] { return bench.page()->renderProcessPid() != pid; }));
        ASSERT_TRUE(waitFor([&] { return control().WaitForPage(); }));
        ASSERT_TRUE(waitFor([&] { return !text().isEmpty(); }));
    }

    QString text() { return noteText().trimmed(); }
};

} // namespace

TEST_F(RenderDeath, ManyDeathsWhileTypingTakeNoMoreThanTheTailOfTheLastSecond)
{
    show(QStringLiteral("<p>before</p>"));
    focus();
    const int kills = figures::isDeep() ? 100 : 3;
    for (int i = 0; i < kills && !HasFatalFailure(); ++i) {
        typeWords(1 + random() % 4);
        QString safe = QStringLiteral("before");
        if (random() % 2 || i == 0) {
            waitUntilSafe();
            safe = typed;
            typeWords(random() % 4);
        }
        kill();
        const QString standing = text();
        EXPECT_TRUE(typed.startsWith(standing)) << standing.toStdString();
        EXPECT_TRUE(standing.startsWith(safe)) << standing.toStdString() << "\nwithout the end of\n"
                                               << safe.toStdString();
        for (const RecordingHost::Save& save : host().saves)
            EXPECT_TRUE(save.text.startsWith(QStringLiteral("before"))) << save.text.toStdString();
        figures::add("characters lost in the last second before a death",
            long(typed.size() - standing.size()));
        // Goes on behind what is there.
        typed = standing;
        focus();
    }
    control().SaveEditor();
    ASSERT_FALSE(host().saves.empty());
    EXPECT_TRUE(host().saves.back().text.startsWith(QStringLiteral("before")));
    figures::add("deaths of the page while typing, the note came back", kills);
}

TEST_F(RenderDeath, ADeathWhileANoteLoadsBringsThatNote)
{
    const int kills = figures::isDeep() ? 20 : 2;
    for (int i = 0; i < kills; ++i) {
        const QString note = QStringLiteral("<p>note %1</p>").arg(i).repeated(1 + i * 200);
        const qint64 pid = bench.page()->renderProcessPid();
        // Falls into the load, more or less.
        QTimer::singleShot(int(random() % 5), [pid] { ::kill(pid_t(pid), SIGKILL); });
        control().SetEditorText(note, NOTE_HTML_VER_2, 0);
        ASSERT_TRUE(waitFor([&] { return bench.page()->renderProcessPid() != pid; }));
        ASSERT_TRUE(waitFor([&] { return control().WaitForPage(); }));
        EXPECT_EQ(html(), note);
    }
    EXPECT_TRUE(host().saves.empty());
    figures::add("deaths of the page while loading, the note came back", kills);
}
