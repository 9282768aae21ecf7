// Other programs that die, or hang, while their data are wanted: the owner of the clipboard, the
// source of a drag. On a real screen, with real programs.

#include "kit/Answers.h"
#include "reliability/browser/OpenNoteFixture.h"
#include "tour/TestDisplay.h"

#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

namespace {

class OtherPrograms : public OpenNoteFixture {
protected:
    QTemporaryDir dir;
    QProcess other;
    Answers answers;

    void SetUp() override
    {
        OpenNoteFixture::SetUp();
        bench.window.move(200, 100);
        show(QStringLiteral("<p>before</p>"));
    }
    void TearDown() override
    {
        other.kill();
        other.waitForFinished();
    }

    QString file(const char* name, const QByteArray& content)
    {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    void start(const char* program, const QStringList& arguments)
    {
        other.start(QString::fromLatin1(program), arguments);
        ASSERT_TRUE(waitFor([&] { return other.canReadLine(); }));
        ASSERT_EQ(other.readLine(), "ready\n");
    }

    /// How often the owner of the clipboard was asked. It is the owner no more then: its loss of
    /// the clipboard comes to it behind all requests.
    int requestsUntilNow()
    {
        QGuiApplication::clipboard()->setText(QStringLiteral("another's"));
        int requests = 0;
        const auto isGone = [&] {
            while (other.canReadLine()) {
                const QByteArray line = other.readLine();
                if (line == "gone\n")
                    return true;
                EXPECT_EQ(line, "asked\n");
                ++requests;
            }
            return false;
        };
        EXPECT_TRUE(waitFor(isGone));
        return requests;
    }

    void xdotool(const QStringList& arguments)
    {
        QString error;
        runTool(QStringLiteral("xdotool"), arguments, &error);
        EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    }
    void moveTo(QPoint at)
    {
        xdotool({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())});
    }
    /// Begins a drag of the other program's window at the left upper corner, over to the note.
    void dragOver()
    {
        moveTo({30, 30});
        xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
        const QPoint middle = bench.window.mapToGlobal(QPoint(400, 300));
        int steps = 0;
        ASSERT_TRUE(waitFor([&] {
            ++steps;
            moveTo(steps < 12 ? QPoint(30, 30) + (middle - QPoint(30, 30)) * steps / 12
                              : middle + QPoint(steps % 7, 0));
            return hoverFrame() != nullptr;
        }));
    }
    QWidget* hoverFrame()
    {
        return bench.control->findChild<QWidget*>(QStringLiteral("hoverFrame"));
    }

    void expectUsable()
    {
        focus();
        QTest::keyClicks(bench.input(), QStringLiteral("x"));
        EXPECT_TRUE(waitFor([&] { return noteText().contains(u'x'); })) << noteText().toStdString();
        EXPECT_TRUE(noteText().startsWith(QStringLiteral("before")));
    }
};

} // namespace

TEST_F(OtherPrograms, AClipboardWhoseOwnerIsGonePastesNothing)
{
    for (const char* type : {"text/html", "text/uri-list", "image/png"}) {
        start(NOMAR_TEST_CLIPOWNER,
            {QString::fromLatin1(type), file("content", "file:///no/such\r\n")});
        focus();
        ASSERT_EQ(::kill(pid_t(other.processId()), SIGKILL), 0);
        press(Qt::Key_V);
        ASSERT_TRUE(other.waitForFinished());
        pressLast(Qt::Key_Shift);
        EXPECT_EQ(noteText(), QStringLiteral("before"));
        figures::add("programs that died while their data were wanted");
    }
    expectUsable();
}

TEST_F(OtherPrograms, AClipboardWhoseOwnerHangsHoldsThePasteUpOnce)
{
    start(NOMAR_TEST_CLIPOWNER, {QStringLiteral("text/html"), file("content", "<b>x</b>")});
    focus();
    ASSERT_EQ(::kill(pid_t(other.processId()), SIGSTOP), 0);
    QElapsedTimer time;
    time.start();
    press(Qt::Key_V);
    pressLast(Qt::Key_Shift);
    figures::atLeast("seconds that a clipboard without an answer holds a paste up",
        double(time.elapsed()) / 1000);
    EXPECT_EQ(noteText(), QStringLiteral("before"));
    // Each request without an answer holds everything up, so there was one, of all the paste asks.
    ASSERT_EQ(::kill(pid_t(other.processId()), SIGCONT), 0);
    EXPECT_EQ(requestsUntilNow(), 1);
    expectUsable();
}

TEST_F(OtherPrograms, ADragWhoseSourceDiesLeavesNoFrameAndNoFile)
{
    start(NOMAR_TEST_DRAGSOURCE, {file("a.txt", "content")});
    dragOver();
    other.kill();
    ASSERT_TRUE(other.waitForFinished());
    xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
    const QPoint middle = bench.window.mapToGlobal(QPoint(300, 200));
    int steps = 0;
    EXPECT_TRUE(waitFor([&] {
        moveTo(middle + QPoint(++steps % 9, 0));
        return !hoverFrame();
    })) << "the frame of the drag still stands";
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
    expectUsable();
    figures::add("programs that died while their data were wanted");
}

TEST_F(OtherPrograms, ADropWhoseSourceDiesAtThatMomentHarmsNothing)
{
    start(NOMAR_TEST_DRAGSOURCE, {file("a.txt", "content")});
    dragOver();
    // The files were read when the drag came in; whether the drop still comes is open.
    xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
    other.kill();
    ASSERT_TRUE(other.waitForFinished());
    const QPoint middle = bench.window.mapToGlobal(QPoint(300, 200));
    int steps = 0;
    EXPECT_TRUE(waitFor([&] {
        moveTo(middle + QPoint(++steps % 9, 0));
        return !hoverFrame();
    }));
    const QStringList names = bench.attachmentNames();
    EXPECT_TRUE(names.isEmpty() || names == QStringList{QStringLiteral("a.txt")});
    expectUsable();
    figures::add("programs that died while their data were wanted");
}
