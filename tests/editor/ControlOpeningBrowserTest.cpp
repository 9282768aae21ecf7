#include "editor/ControlFixture.h"

TEST_F(Control, TheFirstCompletionSendsTheLimitAndTellsTheHostOnce)
{
    start();
    EXPECT_EQ(bench->window.readies, 1);
    EXPECT_EQ(calls(QStringLiteral("SetEditorMaxChars")),
        QStringList{QStringLiteral("{\"size\":10000 }")});
    EXPECT_EQ(control().docComplete(), 1);
    EXPECT_NE(control().oldWndProc(), nullptr);
    EXPECT_EQ(control().monitor().MsgWnd(), &control());
    EXPECT_EQ(control().monitor().MsgId(), 2224u);
    EXPECT_TRUE(calls(QStringLiteral("SetEditorMode")).isEmpty()) << "the page starts in edit mode";
}

TEST_F(Control, ALaterCompletionDoesNotCount)
{
    start();
    Q_EMIT bench->page()->loadFinished(true);
    EXPECT_TRUE(waitFor([&] { return calls(QStringLiteral("SetEditorMaxChars")).size() == 1; }));
    EXPECT_EQ(bench->window.readies, 1);
}

TEST_F(Control, WithoutABrowserWindowNothingIsHooked)
{
    TestControl control;
    control.ModifyIEWndProc();
    EXPECT_EQ(control.oldWndProc(), nullptr);
}

TEST_F(Control, ALoadBeforeReadyLeavesThePageEmptyAndALaterSaveFilesAnEmptyText)
{
    const QString name = stored(QStringLiteral("<p>early</p>"), NOTE_HTML_VER_2);
    fake = std::make_unique<FakePage>(QString::fromUtf8(plainPage));
    bench = std::make_unique<Bench>();
    control().LoadEditor(QStringLiteral("g"), {name}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>early</p>"));
    EXPECT_EQ(log.take(),
        QStringList{
            QStringLiteral("设置笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")});
    ASSERT_TRUE(bench->waitReady());
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(control().lastHtml(), QString());
}

TEST_F(Control, ANewNoteHasAGuidAnEmptyTextAndTheCurrentVersion)
{
    start();
    control().lastHtml() = QStringLiteral("old");
    const QString guid = newNote();
    EXPECT_EQ(guid.size(), 32);
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), guid);
    EXPECT_EQ(control().lastHtml(), QString());
    EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    EXPECT_EQ(calls(QStringLiteral("SetEditorContent")), QStringList{QString()});
}

TEST_F(Control, TheModeReachesThePageBeforeTheText)
{
    start();
    newNote(1);
    const QStringList seen =
        bench->js(QStringLiteral("calls.slice(1).map(c => c.split(' ')[0]).join()"))
            .toString()
            .split(u',');
    EXPECT_EQ(seen.mid(0, 2),
        QStringList({QStringLiteral("SetEditorMode"), QStringLiteral("SetEditorContent")}));
}

TEST_F(Control, ANewTextIsFollowedByClearingThePagesCache)
{
    start();
    newNote();
    EXPECT_TRUE(waitFor([&] { return calls(QStringLiteral("ClearEditorCache")).size() == 1; }));
    EXPECT_TRUE(
        bench->js(QStringLiteral("calls.at(-1)")).toString().startsWith(QStringLiteral("Clear")));
}

TEST_F(Control, PartsAreJoinedInOrderAndTheLastGivesTheVersion)
{
    start();
    const QString one = stored(QStringLiteral("<p>1</p>"), NOTE_HTML_VER_1);
    const QString two = stored(QStringLiteral("<p>2</p>"), NOTE_HTML_VER_2);
    control().LoadEditor(QStringLiteral("g"), {one, two}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>1</p><p>2</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    control().LoadEditor(QStringLiteral("g"), {two, one}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>2</p><p>1</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_1);
}

TEST_F(Control, APartWithoutAMarkerPullsTheVersionDown)
{
    start();
    const QString name = CreateGuidString() + QStringLiteral(".html");
    QFile file(GetAttachmentDir() + u'/' + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<p>plain</p>");
    file.close();
    control().LoadEditor(
        QStringLiteral("g"), {stored(QStringLiteral("<p>2</p>"), NOTE_HTML_VER_2), name}, {}, 0);
    EXPECT_EQ(control().version(), NOTE_HTML_VER_0);
}

TEST_F(Control, NothingToLoadIsAnEmptyNoteOfTheCurrentVersion)
{
    start();
    for (const std::vector<QString>& files :
        {std::vector<QString>{}, {QString()}, {QStringLiteral("missing.html")},
            {stored(QString(), NOTE_HTML_VER_1)}, {QStringLiteral("../../outside.html")}}) {
        control().lastHtml() = QStringLiteral("old");
        control().LoadEditor(QStringLiteral("g"), files, {{QStringLiteral("a"), 1}}, 0);
        EXPECT_EQ(control().lastHtml(), QString());
        EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    }
    EXPECT_EQ(calls(QStringLiteral("SetEditorContent")), QStringList(5, QString()));
}

TEST_F(Control, SetEditorTextTakesTextVersionAndMode)
{
    start();
    control().SetEditorText(QStringLiteral("<p>t</p>"), NOTE_HTML_VER_1, 1);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>t</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_1);
    EXPECT_EQ(control().Handler().IsReadOnly(), 1);
    QString html;
    control().GetLastHtml(html);
    EXPECT_EQ(html, QStringLiteral("<p>t</p>"));
}
