// The control with the page that users see.

#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDesktopServices>
#include <QDir>
#include <QImage>
#include <QInputMethodEvent>
#include <QTcpServer>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <csignal>

namespace {

class RealPage : public ::testing::Test {
protected:
    Bench bench;
    LogLines log;

    void SetUp() override { ASSERT_TRUE(bench.waitReady()); }

    RecordingHost& host() { return bench.host; }
    TestControl& control() { return *bench.control; }

    /// Files a text and opens it as a note.
    void open(QString html, int readOnly = 0)
    {
        GetAttachmentDir();
        NewAttachFile record;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
        ASSERT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
        control().LoadEditor(QStringLiteral("guid"), {record.fileName}, {}, readOnly);
        ASSERT_TRUE(waitFor([&] { return noteText().isValid(); }));
        settle();
    }
    /// Until the posted clearing of the page's cache has been handled.
    void settle()
    {
        bool done = false;
        QTimer::singleShot(0, &control(), [&] { done = true; });
        waitFor([&] { return done; });
    }
    QVariant noteText() { return bench.inNote(QStringLiteral("doc.body.textContent")); }
    /// Puts the caret to the end of the note.
    void focusNote()
    {
        bench.control->activateWindow();
        bench.input()->setFocus();
        bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), "
                                    "doc.getSelection().selectAllChildren(doc.body), "
                                    "doc.getSelection().collapseToEnd(), 1)"));
    }
    void type(const QString& text)
    {
        QTest::keyClicks(bench.input(), text);
        ASSERT_TRUE(waitFor([&] { return noteText().toString().contains(text); }))
            << qPrintable(noteText().toString());
    }
    void killRenderProcess()
    {
        const qint64 pid = bench.page()->renderProcessPid();
        ASSERT_GT(pid, 0);
        ASSERT_EQ(::kill(pid_t(pid), SIGKILL), 0);
        ASSERT_TRUE(waitFor([&] { return bench.page()->renderProcessPid() != pid; }));
        ASSERT_TRUE(control().WaitForPage());
    }
    void loseFocus()
    {
        QFocusEvent out(QEvent::FocusOut, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(bench.input(), &out);
    }
    QPoint centreOf(const QString& selector)
    {
        const QVariantList at =
            bench
                .inNote(QStringLiteral(
                    "(() => { const r = doc.querySelector('%1').getBoundingClientRect();"
                    " const f = "
                    "document.querySelector('iframe.ke-edit-iframe').getBoundingClientRect();"
                    " return [f.x + r.x + r.width / 2, f.y + r.y + r.height / 2]; })()")
                            .arg(selector))
                .toList();
        return at.size() == 2 ? QPoint(at[0].toInt(), at[1].toInt()) : QPoint();
    }
};

} // namespace

TEST_F(RealPage, ANoteThatIsLeftAloneIsNotFiledAgain)
{
    open(QStringLiteral("<P CLASS=a>odd  <b>markup</P><!-- c --><img src=\"x\\y.png\" alt>"));
    loseFocus();
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(RealPage, TypedTextIsFiledWhenTheFocusGoes)
{
    open(QStringLiteral("<p>before</p>"));
    focusNote();
    type(QStringLiteral("typed"));
    loseFocus();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_TRUE(host().saves[0].text.contains(QStringLiteral("typed")));
    QString html;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
    ASSERT_EQ(
        NoteHtmlRW::ReadHtmlTextFromFile(host().saves[0].files[0].filePath, html, &version), 1);
    EXPECT_TRUE(html.contains(QStringLiteral("typed")));
    EXPECT_EQ(version, NOTE_HTML_VER_2);
}

TEST_F(RealPage, ANewNoteTakesText)
{
    QString guid;
    control().NewEditor(guid, 0);
    settle();
    focusNote();
    type(QStringLiteral("first words"));
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].guid, guid);
    EXPECT_EQ(host().saves[0].text, QStringLiteral("first words"));
}

TEST_F(RealPage, TheControlsFocusIsTheCaretInTheNote)
{
    open(QStringLiteral("<p></p>"));
    bench.window.activateWindow();
    control().setFocus();
    ASSERT_TRUE(waitFor([&] { return bench.inNote(QStringLiteral("doc.hasFocus()")).toBool(); }));
    type(QStringLiteral("here"));
}

TEST_F(RealPage, AReadOnlyNoteTakesNoText)
{
    open(QStringLiteral("<p>fixed</p>"), 1);
    focusNote();
    QTest::keyClicks(bench.input(), QStringLiteral("x"));
    control().SetReadOnly(0);
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(noteText().toString(), QStringLiteral("fixed"));
}

TEST_F(RealPage, ClearingTheCacheForgetsTheUndoHistory)
{
    open(QStringLiteral("<p>a</p>"));
    focusNote();
    type(QStringLiteral("typed"));
    QCoreApplication::postEvent(bench.input(), new WindowMessage(WM_CLEAR_EDITOR_CACHE));
    settle();
    QTest::keyClick(bench.input(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(noteText().toString().contains(QStringLiteral("typed")));
}

TEST_F(RealPage, AfterADeathTheNoteIsBackWithItsModeAndItsText)
{
    open(QStringLiteral("<p>there</p>"));
    focusNote();
    type(QStringLiteral("typed"));
    const auto draftHasText = [&] {
        QString html, text;
        killRenderProcess();
        control().Handler().GetEditorContent(html, text);
        return text.contains(QStringLiteral("typed"));
    };
    // The page tells its text at most a second after it changed.
    QString seen;
    ASSERT_TRUE(
        waitFor([&] { return bench.js(QStringLiteral("performance.now() > 1500")).toBool(); }));
    EXPECT_TRUE(draftHasText());
    EXPECT_EQ(bench.window.readies, 1);
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_TRUE(host().saves[0].text.contains(QStringLiteral("typed")));
}

TEST_F(RealPage, ADeathNeverFilesAnEmptyText)
{
    open(QStringLiteral("<p>there</p>"));
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(::kill(pid_t(bench.page()->renderProcessPid()), SIGKILL), 0);
        control().SaveEditor(); // Before the engine has noticed.
    }
    EXPECT_TRUE(host().saves.empty());
    QString html;
    control().GetLastHtml(html);
    EXPECT_EQ(html, QStringLiteral("<p>there</p>"));
}

TEST_F(RealPage, AReadOnlyNoteIsReadOnlyAgainAfterADeath)
{
    open(QStringLiteral("<p>fixed</p>"), 1);
    killRenderProcess();
    ASSERT_TRUE(waitFor([&] { return noteText().toString() == QStringLiteral("fixed"); }));
    EXPECT_NE(bench.inNote(QStringLiteral("doc.body.isContentEditable")), QVariant(true));
}

TEST_F(RealPage, ASaveDuringACompositionLosesNothing)
{
    open(QStringLiteral("<p>x</p>"));
    focusNote();
    QInputMethodEvent compose(QStringLiteral("nihao"), {});
    QCoreApplication::sendEvent(bench.input(), &compose);
    ASSERT_TRUE(waitFor([&] { return noteText().toString().contains(QStringLiteral("nihao")); }));
    control().SaveEditor();
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("你好"));
    QCoreApplication::sendEvent(bench.input(), &commit);
    ASSERT_TRUE(waitFor([&] { return noteText().toString().contains(QStringLiteral("你好")); }));
    EXPECT_FALSE(noteText().toString().contains(QStringLiteral("nihao")));
    control().SaveEditor();
    EXPECT_TRUE(host().saves.back().text.contains(QStringLiteral("你好")));
}

TEST_F(RealPage, PicturesOfTheStoreAreShownThoughThePageStandsElsewhere)
{
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(GetAttachmentDir() + QStringLiteral("/red.png")));
    ASSERT_NE(GetAppDir(), GetInstallDir());
    open(QStringLiteral("<p><img src=\"../userdata\\attachment\\red.png\"></p>"));
    EXPECT_TRUE(waitFor(
        [&] { return bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt() == 3; }));
}

TEST_F(RealPage, ADoubleClickOnAnAttachmentReachesTheHost)
{
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(GetAttachmentDir() + QStringLiteral("/blue.bmp")));
    open(QStringLiteral("<p><img nm_exdata='%1' class=\"userdata\\attachment\\d.pdf\" "
                        "src=\"../userdata\\attachment\\blue.bmp\"></p>")
             .arg(NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("报告.pdf"))));
    ASSERT_TRUE(waitFor(
        [&] { return bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt() == 60; }));
    // Through the window: the widget form of this call keeps its clicks too far apart in time.
    const QPoint at = centreOf(QStringLiteral("img"));
    QTest::mouseDClick(
        bench.window.windowHandle(), Qt::LeftButton, {}, bench.input()->mapTo(&bench.window, at));
    EXPECT_TRUE(waitFor([&] { return !host().opened.isEmpty(); }));
    EXPECT_EQ(host().opened, QStringList{QStringLiteral("guid|d.pdf|报告.pdf")});
}

namespace {

class LinkCatcher : public QObject {
    Q_OBJECT
public:
    QStringList opened;
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }
};

} // namespace

TEST_F(RealPage, ALinkOfAReadOnlyNoteOpensOutside)
{
    LinkCatcher desktop;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &desktop, "open");
    open(QStringLiteral("<p><a href=\"https://example.org/a\">link</a></p>"), 1);
    QTest::mouseClick(bench.input(), Qt::LeftButton, Qt::NoModifier, centreOf(QStringLiteral("a")));
    EXPECT_TRUE(waitFor([&] { return !desktop.opened.isEmpty(); }));
    EXPECT_EQ(desktop.opened, QStringList{QStringLiteral("https://example.org/a")});
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    EXPECT_EQ(noteText().toString(), QStringLiteral("link"));
}

TEST_F(RealPage, NoRequestReachesANetwork)
{
    QTcpServer server;
    int seen = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] { ++seen; });
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QString base = QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort());
    open(QStringLiteral(
        "<img src=\"%1a.png\"><img srcset=\"%1b.png 2x\"><p style=\"background:url(%1c)\">t</p>"
        "<style>@import '%1d'; p { background: url(%1e) }</style>"
        "<link rel=stylesheet href=\"%1f\"><iframe src=\"%1g\"></iframe>"
        "<video src=\"%1h\" poster=\"%1i\"></video><object data=\"%1j\"></object>"
        "<embed src=\"%1k\"><script src=\"%1l\"></script><svg><image href=\"%1m\"/></svg>"
        "<table background=\"%1n\"></table><input type=image src=\"%1o\">"
        "<a id=out href=\"%1p\" ping=\"%1q\">a</a><meta http-equiv=refresh content=\"0;url=%1r\">")
             .arg(base));
    focusNote();
    QTest::mouseClick(bench.input(), Qt::LeftButton, {}, centreOf(QStringLiteral("a")));
    bench.js(QStringLiteral("fetch('%1s').catch(() => 0); new Image().src = '%1t';"
                            "navigator.sendBeacon('%1u'); 1")
                 .arg(base));
    type(QStringLiteral("typed"));
    // Longer than a connection to this machine takes.
    QElapsedTimer elapsed;
    elapsed.start();
    waitFor([&] { return seen > 0 || elapsed.elapsed() > 500; });
    EXPECT_EQ(seen, 0);
}

TEST_F(RealPage, TextThatNoJsonCanHoldLosesNothingElse)
{
    open(QStringLiteral("<p>before</p>"));
    bench.inNote(QStringLiteral("doc.body.append('a\\ud800b\\0c \\\\ud800 d')"));
    QString html, text;
    control().Handler().GetEditorContent(html, text);
    EXPECT_EQ(html, QStringLiteral("<p>before</p>a\uFFFDb\uFFFDc \\ud800 d"));
    EXPECT_EQ(text, QStringLiteral("before\na\uFFFDb\uFFFDc \\ud800 d"));
}

TEST_F(RealPage, ManyNotesInARowStayApart)
{
    for (int i = 0; i < 20; ++i) {
        const QString text = QStringLiteral("note %1").arg(i);
        open(QStringLiteral("<p>%1</p>").arg(text));
        QString html, plain;
        control().Handler().GetEditorContent(html, plain);
        EXPECT_EQ(plain, text);
    }
}

#include "RealPageBrowserTest.moc"
