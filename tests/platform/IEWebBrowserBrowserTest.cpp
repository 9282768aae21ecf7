#include "kit/FakePage.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include <QMouseEvent>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>

namespace {

VARIANT text(const QString& value)
{
    return VARIANT::Text(value);
}

/// A control on a page whose script is the test's.
struct Browser : ::testing::Test {
    std::unique_ptr<FakePage> fake;
    std::unique_ptr<Bench> bench;
    LogLines log;

    void start(const char* script)
    {
        bench.reset(); // One control at a time.
        fake.reset();
        fake = std::make_unique<FakePage>(QString::fromUtf8(script));
        bench = std::make_unique<Bench>();
        ASSERT_TRUE(bench->waitReady());
    }
    long call(const char* function, VARIANT& result, const std::vector<VARIANT>& reversed = {})
    {
        return bench->control->ExecJSFun(QString::fromLatin1(function), reversed, result);
    }
    void killRenderProcess()
    {
        const qint64 pid = bench->page()->renderProcessPid();
        ASSERT_GT(pid, 0);
        ASSERT_EQ(::kill(pid_t(pid), SIGKILL), 0);
    }
    QString calls() { return bench->js(QStringLiteral("calls.join('\\n')")).toString(); }
};

} // namespace

TEST_F(Browser, ArgumentsArriveInOrderAndUnharmed)
{
    start("window.echo = (...args) => args.join('|')");
    const QString odd = QStringLiteral("\"'\\\n\r\t\u2028\u0001</script>笔记 𝄞 ${x}");
    VARIANT result;
    EXPECT_EQ(call("echo", result, {text(odd), text(QStringLiteral("first"))}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("first|") + odd);
}

TEST_F(Browser, ALoneSurrogateArrivesAsTheReplacementCharacter)
{
    start("window.echo = (a) => a");
    VARIANT result;
    EXPECT_EQ(call("echo", result, {text(QString(QChar(0xDC00)) + QChar(0xD800) + u'a')}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("\uFFFD\uFFFDa"));
}

TEST_F(Browser, ANulInAnArgumentArrives)
{
    start("window.count = (a) => String(a.length)");
    VARIANT result;
    EXPECT_EQ(call("count", result, {text(QStringLiteral("a") + QChar(0) + u'b')}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("3"));
}

TEST_F(Browser, TenMegabytesGoAndComeBack)
{
    start("window.echo = (a) => a");
    QString big = QStringLiteral("笔记 note \\ \" ").repeated(800000);
    VARIANT result;
    EXPECT_EQ(call("echo", result, {text(big)}), S_OK);
    EXPECT_TRUE(result.bstrVal == big);
}

TEST_F(Browser, AMissingOrThrowingFunctionFails)
{
    start("window.bad = () => { throw new Error('no'); }; window.number = 5");
    VARIANT result;
    EXPECT_EQ(call("missing", result), PAGE_CALL_FAILED);
    EXPECT_EQ(call("bad", result), PAGE_CALL_FAILED);
    EXPECT_EQ(call("number", result), PAGE_CALL_FAILED);
}

TEST_F(Browser, AReplyThatIsNoTextIsEmpty)
{
    start("window.nothing = () => undefined; window.object = () => ({a: 1})");
    VARIANT result;
    for (const char* function : {"nothing", "object"}) {
        EXPECT_EQ(call(function, result), S_OK);
        EXPECT_EQ(result.vt, VT_EMPTY);
    }
}

TEST_F(Browser, AReplyInPartsArrivesAsOneText)
{
    start("window.f = () => 'whole'; f.inParts = (a) => ['笔', a, '', 1];"
          "window.none = () => 'whole'; none.inParts = () => [];"
          "window.bad = () => 'whole'; bad.inParts = () => null;");
    VARIANT result;
    EXPECT_EQ(call("f", result, {text(QStringLiteral("记 "))}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("笔记 1"));
    EXPECT_EQ(call("none", result), S_OK);
    EXPECT_EQ(result.vt, VT_BSTR);
    EXPECT_EQ(result.bstrVal, QString());
    EXPECT_EQ(call("bad", result), PAGE_CALL_FAILED);
}

TEST_F(Browser, ThePageCannotReplaceTheBridge)
{
    start("try { window.nomarCall = () => 'mine'; window.CppProcessor = 1; } catch (e) {}"
          "window.kind = () => typeof CppProcessor");
    VARIANT result;
    EXPECT_EQ(call("kind", result), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("function"));
}

TEST_F(Browser, ACallBeforeThePageFailsAtOnce)
{
    fake = std::make_unique<FakePage>(QString());
    bench = std::make_unique<Bench>();
    VARIANT result;
    EXPECT_EQ(call("jsProcessor", result), PAGE_CALL_FAILED);
    EXPECT_EQ(bench->control->GetWebBrowseHwnd(), nullptr);
    ASSERT_TRUE(bench->waitReady());
    EXPECT_NE(bench->control->GetWebBrowseHwnd(), nullptr);
}

TEST_F(Browser, APageThatIsMissingIsLoggedAndNeverReady)
{
    fake = std::make_unique<FakePage>(QString());
    SetInstallDir(QStringLiteral("/nonexistent"));
    bench = std::make_unique<Bench>();
    QStringList lines;
    EXPECT_TRUE(waitFor([&] { return !(lines += log.take()).isEmpty(); }));
    EXPECT_EQ(lines,
        QStringList{QStringLiteral("[ERROR] IEWebBrowser page could not be loaded: "
                                   "/nonexistent/nmeditor/index.html")});
    EXPECT_EQ(bench->window.readies, 0);
}

TEST_F(Browser, CallsFromThePageKeepTheirOrderAndTheirArguments)
{
    start("const open = (i) => CppProcessor('DbClickAttachment', JSON.stringify({path: 'a\\\\' + "
          "i}), '');"
          "window.go = () => { for (let i = 0; i < 5; ++i) open(i); }");
    bench->control->Handler().SetCurNoteGuid(QStringLiteral("g"));
    VARIANT result;
    EXPECT_EQ(call("go", result), S_OK);
    EXPECT_TRUE(bench->host.opened.isEmpty())
        << "a call from the page never runs inside a page call";
    EXPECT_TRUE(waitFor([&] { return bench->host.opened.size() == 5; }));
    EXPECT_EQ(bench->host.opened.join(u' '), QStringLiteral("g|0| g|1| g|2| g|3| g|4|"));
}

TEST_F(Browser, ACallWithTheWrongNumberOfArgumentsIsRefused)
{
    start("window.two = () => { CppProcessor('AddAttachment', '{}'); CppProcessor(); }");
    VARIANT result;
    EXPECT_EQ(call("two", result), S_OK);
    QStringList lines;
    EXPECT_TRUE(waitFor([&] { return (lines += log.take()).size() == 2; }));
    EXPECT_EQ(lines[0], QStringLiteral("[ERROR] js调用OnCppProcessor传递参数个数不正确！"));
}

TEST_F(Browser, APageCallFromACallOfThePageRuns)
{
    start("window.ask = () => { CppProcessor('DbClickAttachment', '{\"path\":\"x\"}', ''); }");
    class Asking : public RecordingHost {
    public:
        IEWebBrowser* browser = nullptr;
        long code = -1;
        int OnOpenAttachment(const QString&, const QString&, const QString&) override
        {
            VARIANT result;
            return int(code = browser->ExecJSFun(QStringLiteral("jsProcessor"), {}, result));
        }
    } host;
    host.browser = bench->control;
    bench->control->SetNmEditorNotify(&host);
    VARIANT result;
    EXPECT_EQ(call("ask", result), S_OK);
    EXPECT_TRUE(waitFor([&] { return host.code == S_OK; }));
}

TEST_F(Browser, PrivateMessagesWaitWithThePagesCalls)
{
    start("answer = (method) => { if (method === 'slow') CppProcessor('WriteEditorLog', '{}', '');"
          " return ok(); }");
    QCoreApplication::postEvent(bench->input(), new WindowMessage(WM_CLEAR_EDITOR_CACHE));
    VARIANT result;
    call("jsProcessor", result, {text(QString()), text(QStringLiteral("slow"))});
    EXPECT_TRUE(waitFor([&] { return calls().contains(QStringLiteral("ClearEditorCache")); }));
    EXPECT_TRUE(calls().endsWith(QStringLiteral("slow \nClearEditorCache ")))
        << qPrintable(calls());
}

TEST_F(Browser, TheDeathOfTheRenderProcessEndsACallAtOnce)
{
    start("answer = (m) => { if (m === 'hang') for (;;); return ok(); }");
    QTimer::singleShot(50, bench->page(), [this] { killRenderProcess(); });
    VARIANT result;
    EXPECT_EQ(call("jsProcessor", result, {text(QString()), text(QStringLiteral("hang"))}),
        PAGE_CALL_LOST);
}

TEST_F(Browser, AfterADeathThePageIsBackForTheNextCall)
{
    start("window.echo = (a) => a");
    const qint64 pid = bench->page()->renderProcessPid();
    killRenderProcess();
    // Not before the engine has noticed: a call in between ends as lost.
    ASSERT_TRUE(waitFor([&] { return bench->page()->renderProcessPid() != pid; }));
    VARIANT result;
    EXPECT_EQ(call("echo", result, {text(QStringLiteral("again"))}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("again"));
    EXPECT_EQ(bench->window.readies, 1) << "the host is not told again";
}

TEST_F(Browser, AfterADeathTheInputWidgetIsTheNewOneAndStillHooked)
{
    start("");
    bench->input()->setFocus();
    const QPointer<QWidget> before = bench->input();
    killRenderProcess();
    ASSERT_TRUE(waitFor([&] { return !before && bench->input(); }));
    QTest::keyClick(bench->input(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(calls().contains(QStringLiteral("GetEditorContent")));
}

TEST_F(Browser, APageThatHangsIsKilledAtTheDeadlineAndComesBack)
{
    start("answer = (m) => { if (m === 'hang') for (;;); return ok(); }; window.echo = (a) => a");
    bench->control->SetCallDeadline(300);
    VARIANT result;
    EXPECT_EQ(call("jsProcessor", result, {text(QString()), text(QStringLiteral("hang"))}),
        PAGE_CALL_LOST);
    bench->control->SetCallDeadline(10000);
    EXPECT_EQ(call("echo", result, {text(QStringLiteral("again"))}), S_OK);
    EXPECT_EQ(result.bstrVal, QStringLiteral("again"));
}

TEST_F(Browser, APageThatKeepsDyingIsGivenUpAndTriedAgainAtTheNextCall)
{
    start("window.echo = (a) => a");
    QStringList lines;
    for (int i = 0; i < 6; ++i) {
        const qint64 pid = bench->page()->renderProcessPid();
        killRenderProcess();
        ASSERT_TRUE(waitFor([&] {
            lines += log.take();
            const qint64 now = bench->page()->renderProcessPid();
            return !lines.isEmpty() || (now > 0 && now != pid);
        }));
    }
    EXPECT_EQ(lines,
        QStringList{QStringLiteral("[ERROR] IEWebBrowser page process keeps dying, given up")});
    VARIANT result;
    EXPECT_EQ(call("echo", result, {text(QStringLiteral("again"))}), S_OK);
}

TEST_F(Browser, NavigationOfThePageIsCancelled)
{
    start("window.mark = 'first'");
    const QUrl before = bench->page()->url();
    bench->js(QStringLiteral("location.href = 'file:///etc/passwd'; 1"));
    bench->js(QStringLiteral("location.href = 'https://example.org/'; 1"));
    bench->js(QStringLiteral("window.open('file:///etc/passwd'); 1"));
    bench->js(QStringLiteral("location.reload(); 1"));
    EXPECT_EQ(bench->page()->url(), before);
    EXPECT_EQ(bench->js(QStringLiteral("mark")).toString(), QStringLiteral("first"));
}

TEST_F(Browser, APageThatBlanksItselfComesBack)
{
    start("window.echo = (a) => a");
    bench->js(QStringLiteral("location.href = 'about:blank'; 1"));
    VARIANT result;
    EXPECT_TRUE(waitFor([&] {
        return call("echo", result, {text(QStringLiteral("again"))}) == S_OK
            && bench->page()->url().isLocalFile();
    }));
}

TEST_F(Browser, ASecondCreateAndOneWithoutAParentFail)
{
    TestControl orphan;
    EXPECT_EQ(orphan.Create(nullptr, QRect(), 1, 0), 0);
    EXPECT_EQ(orphan.findChild<QWebEngineView*>(), nullptr);
    start("");
    EXPECT_EQ(bench->control->Create(&bench->window, QRect(), 1, 0), 0);
}

TEST_F(Browser, DestroyWindowUnhooksAndEndsThePage)
{
    start("");
    EXPECT_NE(bench->control->oldWndProc(), nullptr);
    bench->control->DestroyWindow();
    EXPECT_EQ(bench->control->oldWndProc(), nullptr);
    VARIANT result;
    EXPECT_EQ(call("jsProcessor", result), PAGE_CALL_NOT_BACK);
    EXPECT_EQ(bench->control->GetWebBrowseHwnd(), nullptr);
}

TEST_F(Browser, TakenDownBeforeTheEngineStartsItNeverHasAPage)
{
    fake = std::make_unique<FakePage>(QString());
    bench = std::make_unique<Bench>();
    bench->control->DestroyWindow();
    QTest::qWait(500); // Longer than the engine's start is ever put off.
    EXPECT_EQ(bench->control->findChild<QWebEngineView*>(), nullptr);
    EXPECT_EQ(bench->window.readies, 0);
}

TEST_F(Browser, AnEventOfAControlBesideASecondOneThatIsNotReadyGoesToTheBrowser)
{
    start("");
    TestControl second; // Takes the process's pointer over.
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), bench->window.mapToGlobal(QPointF(5, 5)),
        Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    EXPECT_TRUE(QCoreApplication::sendEvent(bench->input(), &move));
}

TEST_F(Browser, MayBeTakenDownOrEndedDuringACall)
{
    start("window.answered = () => 'late'");
    VARIANT result;
    QTimer::singleShot(0, bench->control, [&] { bench->control->DestroyWindow(); });
    EXPECT_EQ(call("answered", result), PAGE_CALL_NOT_BACK);
    start("window.answered = () => 'late'");
    QTimer::singleShot(0, bench->control, [&] { delete bench->control; });
    EXPECT_EQ(call("answered", result), PAGE_CALL_NOT_BACK);
}

TEST_F(Browser, TheColourSchemeFollowsTheHostsPalette)
{
    start(
        "window.seen = []; window.nomarPagePrivate = (k, t) => { seen.push(k + t); return ok(); }");
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    bench->window.setPalette(dark);
    EXPECT_TRUE(waitFor([&] {
        return bench->js(QStringLiteral("seen.join()")).toString()
            == QStringLiteral("colorScheme{\"dark\":true}");
    }));
}
