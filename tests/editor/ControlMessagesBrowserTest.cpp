#include "editor/ControlFixture.h"

#include "attachfiles/SyncFileModifyArg.h"
#include "editor/LiveControl.h"

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>

TEST_F(Control, AChangedAttachmentWithoutARecordIsRefused)
{
    TestControl control;
    EXPECT_EQ(control.OnAttachFileModify(nullptr), 1);
    SyncFileModifyArg arg;
    EXPECT_EQ(control.OnAttachFileModify(&arg), 0);
}

TEST_F(Control, TheCopyMessageReachesItsHandler)
{
    start();
    const QString guid = newNote();
    QFile copy(GetAttachFilePath(guid, QStringLiteral("x"), QStringLiteral("a.txt")));
    ASSERT_TRUE(copy.open(QIODevice::WriteOnly));
    copy.close();
    QGuiApplication::clipboard()->clear();
    QCoreApplication::postEvent(bench->input(), new WindowMessage(WM_EDITOR_COPY));
    auto* data = new QMimeData;
    data->setHtml(QStringLiteral("<img class='userdata\\attachment\\0.txt' nm_exdata='%1'>")
                      .arg(NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("a.txt"))));
    QGuiApplication::clipboard()->setMimeData(data);
    EXPECT_TRUE(waitFor([] { return QGuiApplication::clipboard()->mimeData()->hasUrls(); }));
}

TEST_F(Control, ALinkClickStaysOnThePage)
{
    start();
    bench->js(
        QStringLiteral("document.body.innerHTML += '<a id=a href=\"https://example.org\">x</a>';"
                       "document.getElementById('a').click(); 1"));
    EXPECT_EQ(bench->js(QStringLiteral("location.pathname.split('/').pop()")).toString(),
        QStringLiteral("index.html"));
}

TEST_F(Control, AMessageBoxOfThePageIsModalAndLetsPageCallsIn)
{
    start("window.ask = () => { CppProcessor('NmMessageBox', '{\"msg\":\"<b>你好</b>\"}', '');"
          " CppProcessor('DbClickAttachment', '{\"path\":\"x\"}', ''); }");
    const auto box = [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); };
    QString text;
    QStringList openedMeanwhile;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (!box() || host().opened.isEmpty())
            return;
        text = box()->text();
        openedMeanwhile = host().opened;
        box()->accept();
    });
    watch.start(5);
    bench->js(QStringLiteral("ask(); 1")); // The box opens while this waits.
    EXPECT_TRUE(waitFor([&] { return !text.isEmpty(); }));
    EXPECT_EQ(text, QStringLiteral("<b>你好</b>"));
    EXPECT_EQ(openedMeanwhile, QStringList{QStringLiteral("|x|")});
}

TEST_F(Control, TheHookWithoutALiveControlKeepsInputFromTheBrowser)
{
    start();
    bench->js(QStringLiteral(
        "window.keys = []; document.addEventListener('keydown', e => keys.push(e.key)); 1"));
    {
        TestControl second;
        EXPECT_EQ(g_editorImpl, &second);
    }
    EXPECT_EQ(g_editorImpl, nullptr);
    QTest::keyClick(bench->input(), Qt::Key_A);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, {});
    EXPECT_EQ(TestControl::IEHookWndProc(bench->input(), &key), 1);
    EXPECT_EQ(bench->js(QStringLiteral("keys.length")).toInt(), 0);
    g_editorImpl = bench->control;
}

TEST_F(Control, ExportOfANoteThatWasNeverSavedSaysThatItIsEmpty)
{
    TestControl control;
    QString error;
    EXPECT_FALSE(control.ExportWord(QStringLiteral("/tmp/x.mht"), error));
    EXPECT_EQ(error, QStringLiteral("笔记内容为空！"));
}

TEST_F(Control, RefreshWithoutABrowserDoesNothing)
{
    TestControl control;
    control.RefreshIE();
    start();
    bench->control->RefreshIE();
}
