#include "editor/NmWebNoteHandler.h"
#include "kit/LogLines.h"
#include "kit/Print.h"

#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

DISPPARAMS arguments(const QStringList& texts)
{
    DISPPARAMS params;
    for (auto text = texts.rbegin(); text != texts.rend(); ++text)
        params.rgvarg.push_back(VARIANT::Text(*text));
    params.cArgs = unsigned(params.rgvarg.size());
    return params;
}

/// A host that writes down what it was told.
class Host : public INmEditorNotify {
public:
    QString opened;
    int OnSaveNote(const QString&, std::vector<NewAttachFile>&, const QString&) override
    {
        return 1;
    }
    int OnOpenAttachment(const QString& guid, const QString& file, const QString& orig) override
    {
        opened = guid + u'|' + file + u'|' + orig;
        return 0;
    }
};

/// The browser's own drop target.
class Target : public DropTarget {
public:
    int calls = 0;
    long DragEnter(const QMimeData*, unsigned, QPoint, int*) override { return take(); }
    long DragOver(unsigned, QPoint, int*) override { return take(); }
    long DragLeave() override { return take(); }
    long Drop(const QMimeData*, unsigned, QPoint, int*) override { return take(); }

private:
    long take()
    {
        ++calls;
        return S_OK;
    }
};

} // namespace

TEST(NmWebNoteHandler, FunctionNamesMatchExactly)
{
    NmWebNoteHandler handler;
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("cppprocessor")), -1);
    EXPECT_EQ(handler.OnGetFunId(QString()), -1);
    handler.Init();
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
}

TEST(NmWebNoteHandler, OnlyItsOwnFunctionIsExecuted)
{
    NmWebNoteHandler handler;
    VARIANT result = VARIANT::Text(QStringLiteral("as it was"));
    QString exception = QStringLiteral("as it was");
    const DISPPARAMS params =
        arguments({QStringLiteral("WriteEditorLog"), QStringLiteral("{}"), QString()});
    EXPECT_EQ(handler.OnExecuteFun(2, params, result, exception), -1);
    EXPECT_EQ(handler.OnExecuteFun(1, params, result, exception), 0);
    EXPECT_EQ(result.bstrVal, QStringLiteral("as it was"));
    EXPECT_EQ(exception, QStringLiteral("as it was"));
}

TEST(NmWebNoteHandler, WriteEditorLogWithValidJsonWritesNoLine)
{
    NmWebNoteHandler handler;
    LogLines log;
    VARIANT result;
    QString exception;
    handler.OnCppProcessor(arguments({QStringLiteral("WriteEditorLog"),
                               QStringLiteral("{\"type\":\"error\",\"msg\":\"m\"}"), QString()}),
        result, exception);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST(NmWebNoteHandler, ADoubleClickReachesTheHostWithTheStoredAndTheOriginalName)
{
    NmWebNoteHandler handler;
    Host host;
    handler.SetNotify(&host);
    handler.SetCurNoteGuid(QStringLiteral("g"));
    VARIANT result;
    QString exception;
    handler.OnCppProcessor(arguments({QStringLiteral("DbClickAttachment"),
                               QStringLiteral("{\"path\":\"userdata\\\\attachment\\\\d.pdf\"}"),
                               NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("报告.pdf"))}),
        result, exception);
    EXPECT_EQ(host.opened, QStringLiteral("g|d.pdf|报告.pdf"));
}

TEST(NmWebNoteHandler, ADoubleClickWithoutAHostIsIgnored)
{
    NmWebNoteHandler handler;
    handler.OnDblClickAttachment(QStringLiteral("a\\b"), QString());
}

TEST(NmWebNoteHandler, ARecordedTimeIsOverwrittenUnderItsKey)
{
    NmWebNoteHandler handler;
    handler.RecordAttachModifyTime(
        QStringLiteral("f"), QStringLiteral("o"), QStringLiteral("2026-01-01 00:00:00"));
    handler.RecordAttachModifyTime(
        QStringLiteral("f"), QStringLiteral("o"), QStringLiteral("2026-01-02 00:00:00"));
    EXPECT_EQ(handler.GetAttachModifyCache().size(), 1u);
    EXPECT_EQ(handler.GetAttachModifyCache().at(QStringLiteral("fo")),
        QStringLiteral("2026-01-02 00:00:00"));
}

TEST(NmWebNoteHandler, ACopyHasTheSameRecordOfItsOwn)
{
    NmWebNoteHandler handler;
    handler.SetCurNoteGuid(QStringLiteral("one"));
    NmWebNoteHandler copy(handler);
    copy.SetCurNoteGuid(QStringLiteral("two"));
    EXPECT_EQ(handler.GetCurNoteGuid(), QStringLiteral("one"));
    handler = copy;
    EXPECT_EQ(handler.GetCurNoteGuid(), QStringLiteral("two"));
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
}

TEST(NmWebNoteHandler, WithoutABrowserEveryPageCallFails)
{
    NmWebNoteHandler handler;
    LogLines log;
    handler.SetReadOnly(1);
    EXPECT_EQ(handler.IsReadOnly(), 0);
    QString html = QStringLiteral("kept"), text;
    EXPECT_EQ(handler.GetEditorContent(html, text), 1);
    EXPECT_EQ(html, QStringLiteral("kept"));
    EXPECT_EQ(handler.HandleClearEditorCacheNotify(), 0);
    EXPECT_EQ(log.take().size(), 2);
}

TEST(NmWebNoteHandler, MessagesItDoesNotKnowAreIgnored)
{
    NmWebNoteHandler handler;
    LogLines log;
    handler.WinMessageNotify(nullptr, 8, 0, 0);
    handler.WinMessageNotify(nullptr, 8005, 0, 0);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST(NmWebNoteHandler, NativeMenusAreSuppressedAndAlertsLeftToTheBrowser)
{
    NmWebNoteHandler handler;
    EXPECT_EQ(handler.ShowContextMenu(), S_OK);
    EXPECT_EQ(handler.ShowMessage(QStringLiteral("x")), E_NOTIMPL);
}

TEST(NmWebNoteHandler, ADragOfFilesNeverReachesTheBrowser)
{
    NmWebNoteHandler handler;
    Target target;
    handler.m_defaultDropTarget = &target;
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a"))});
    int effect = Qt::CopyAction;
    EXPECT_EQ(handler.OnDragEnter(&files, 0, {}, &effect), S_FALSE);
    EXPECT_EQ(handler.OnDragOver(0, {}, &effect), S_FALSE);
    EXPECT_EQ(handler.OnDrop(&files, 0, {}, &effect), S_FALSE);
    EXPECT_EQ(target.calls, 0);
}

TEST(NmWebNoteHandler, AnyOtherDragIsTheBrowsers)
{
    NmWebNoteHandler handler;
    Target target;
    handler.m_defaultDropTarget = &target;
    QMimeData text;
    text.setText(QStringLiteral("a"));
    int effect = Qt::CopyAction;
    EXPECT_EQ(handler.OnDragEnter(&text, 0, {}, &effect), S_OK);
    EXPECT_EQ(handler.OnDragOver(0, {}, &effect), S_OK);
    EXPECT_EQ(handler.OnDragLeave(), S_OK);
    EXPECT_EQ(handler.OnDrop(&text, 0, {}, &effect), S_OK);
    EXPECT_EQ(target.calls, 4);
}

TEST(NmWebNoteHandler, TheCurrentTimeHasNoSeconds)
{
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d$"))
                    .match(NmWebNoteHandler::FormatCurTime())
                    .hasMatch());
}
