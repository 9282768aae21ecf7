#include "bridge/PageBridge.h"

#include "html/HtmlDocument.h"
#include "noteattach/ExData.h"
#include "platform/WindowMessage.h"
#include "support/Json.h"
#include "support/Log.h"
#include "support/Text.h"

#include <QScopedValueRollback>

namespace {

void log(const QString& line)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(line);
}

/// Puts the page's message in the place of "%s".
QString withMessage(const QString& format, const QString& message)
{
    QString line = format;
    return line.replace(QLatin1StringView("%s"), message);
}

QString modeArgument(int readOnly)
{
    return readOnly ? QStringLiteral("{\"readonly\":true }")
                    : QStringLiteral("{\"readonly\":false }");
}

QString limitArgument(int size)
{
    return QStringLiteral("{\"size\":%1 }").arg(size);
}

/// A pull that is cut is sent this often.
constexpr int maxPulls = 3;

} // namespace

PageBridge::PageBridge(OpenNote& note, NotePage& page)
    : m_note(note)
    , m_page(page)
{
}

bool PageBridge::perform(const QString& method, const QString& argument, const Messages& messages,
    const std::function<void(const JsonObject&)>& onSuccess)
{
    QString reply;
    const quint64 load = m_note.m_loads;
    long code = m_page.call(method, argument, reply);
    // The page died under this call. It comes back in the state before it: the call goes again,
    // unless the host has opened another text meanwhile, which it is not meant for.
    if (code == PAGE_CALL_LOST && m_note.m_loads == load)
        code = m_page.call(method, argument, reply);
    return evaluate(code, reply, messages, onSuccess);
}

bool PageBridge::evaluate(long code, const QString& reply, const Messages& messages,
    const std::function<void(const JsonObject&)>& onSuccess)
{
    if (code != S_OK) {
        log(messages.failed);
        return false;
    }
    const std::optional<JsonObject> value = JsonObject::parse(reply);
    if (!value) {
        log(messages.unparsable);
        return false;
    }
    if (!value->boolean("result")) {
        log(withMessage(messages.refused, value->text("errmsg")));
        return false;
    }
    if (onSuccess)
        onSuccess(*value);
    return true;
}

void PageBridge::SetReadOnly(int readOnly)
{
    if (readOnly == m_note.m_readOnly)
        return;
    perform(QStringLiteral("SetEditorMode"), modeArgument(readOnly),
        {QStringLiteral("设置笔记编辑器只读模式失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器只读模式，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器只读模式，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) { m_note.m_readOnly = readOnly; });
}

void PageBridge::SetEditorMaxChars(int size)
{
    perform(QStringLiteral("SetEditorMaxChars"), limitArgument(size),
        {QStringLiteral("设置笔记编辑器最大字符数失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器最大字符数，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器最大字符数，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) { m_note.m_maxChars = size; });
}

void PageBridge::SetEditorHtml(const QString& html)
{
    m_note.m_attachSizeCache.clear();
    m_note.m_attachModifyCache.clear();
    m_note.m_draft = html;
    ++m_note.m_loads;
    // Posted, so that the page's cache is cleared after the new text is in.
    m_page.post(WM_CLEAR_EDITOR_CACHE);
    const QScopedValueRollback sending(m_sendingText, true);
    perform(QStringLiteral("SetEditorContent"), html,
        {QStringLiteral("设置笔记编辑器内容失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器内容，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) { ++m_textsSent; });
}

long PageBridge::pull(QString& reply, QString& draft)
{
    const quint64 load = m_note.m_loads;
    draft = m_note.m_draft;
    for (int i = 0; i < maxPulls; ++i) {
        const bool back = m_page.waitUntilBack();
        // While this waited, the host may have opened another note: its text is not the one asked
        // for.
        if (m_note.m_loads != load)
            return PAGE_CALL_NOT_BACK;
        draft = m_note.m_draft;
        if (!back)
            return PAGE_CALL_NOT_BACK;
        const long code =
            m_page.call(QStringLiteral("GetEditorContent"), QStringLiteral("{}"), reply);
        if (code != PAGE_CALL_LOST)
            return code;
    }
    return PAGE_CALL_NOT_BACK;
}

int PageBridge::GetEditorContent(QString& html, QString& text)
{
    const quint64 load = m_note.m_loads;
    QString reply, draft;
    const long code = pull(reply, draft);
    if (code == PAGE_CALL_NOT_BACK) {
        html = draft;
        text = HtmlDocument(draft).bodyText();
        return 1;
    }
    // The page answers the same text while nothing has changed: that need not be taken apart again.
    if (code == S_OK && !reply.isEmpty() && reply == m_lastReply) {
        html = m_lastHtml;
        text = m_lastText;
        return 1;
    }
    evaluate(code, reply,
        {QStringLiteral("[ERROR] 获取笔记编辑器内容失败，错误信息：%s"),
            QStringLiteral("[ERROR] 获取笔记编辑器内容，解析js返回json字符串失败！"),
            QStringLiteral("[ERROR] 获取笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject& value) {
            html = value.text("ehtml");
            text = value.text("etext");
            m_lastReply = reply;
            m_lastHtml = html;
            m_lastText = text;
            if (m_note.m_loads == load)
                m_note.m_draft = html;
        });
    // Kept: a live page that fails still gives success with empty texts.
    return 1;
}

int PageBridge::HandleClearEditorCacheNotify()
{
    QString reply;
    return m_page.call(QStringLiteral("ClearEditorCache"), QString(), reply) == S_OK ? 1 : 0;
}

int PageBridge::SelectedAttach(const QString& keyword)
{
    if (keyword.isEmpty())
        return 0;
    // Kept: the keyword goes in as it is, so that a quote in it makes no valid JSON.
    const bool done = perform(QStringLiteral("SelectedAttach"),
        QStringLiteral("{\"keyword\":\"") + keyword + QStringLiteral("\"}"),
        {QStringLiteral("选中笔记附件失败，错误信息：%s"),
            QStringLiteral("选中笔记附件失败，解析js返回json字符串失败！"),
            QStringLiteral("选中笔记附件失败，js方法调用失败！，ErrMsg:unknow error ！")});
    return done ? 1 : 0;
}

int PageBridge::UpdateHtmlAttachAttr(
    const QString& origName, const QString& classValue, const QString& srcValue)
{
    const QString argument = QStringLiteral("{\"nm_exdata\":")
        + noteattach::FormatOrigNameToJson(origName) + QStringLiteral(",\"ClassValue\":\"")
        + classValue + QStringLiteral("\",\"SrcValue\":\"") + srcValue + QStringLiteral("\"}");
    perform(QStringLiteral("ModifyAttachAtrr"), argument,
        {QStringLiteral("[ERROR] 修改附件class属性值失败，错误信息：%s"),
            QStringLiteral("[ERROR] 修改附件class属性值失败，解析js返回json字符串失败！"),
            QStringLiteral(
                "[ERROR] 修改附件class属性值失败，js方法调用失败！，ErrMsg:unknow error ！")});
    return 1;
}

int PageBridge::AddPicToEditor(
    const QString& picPath, const QString& strData, const QString& exData, const QString& type)
{
    Json::Value object;
    object["picpath"] = WideToAnsi(picPath);
    object["strData"] = WideToAnsi(strData);
    object["exdata"] = WideToAnsi(exData);
    object["type"] = WideToAnsi(type);
    const bool done = perform(QStringLiteral("AddPicToEditor"), AnsiToWide(object.toStyledString()),
        {QStringLiteral("添加附件到笔记编辑器，错误信息：%s"),
            QStringLiteral("添加附件到笔记编辑器，解析js返回json字符串失败！"),
            QStringLiteral("添加附件到笔记编辑器，js方法调用失败！，ErrMsg:unknow error ！")});
    return done ? 1 : 0;
}

int PageBridge::RemoveAttach(const QString& fileName, const QString& origName)
{
    Json::Value object;
    object["file"] = WideToAnsi(fileName);
    object["name"] = WideToAnsi(origName);
    const QString argument = AnsiToWide(object.toStyledString());
    const QString kind = QStringLiteral("removeAttachment");
    QString reply;
    long code = m_page.request(kind, argument, reply);
    // As in perform: it comes back in the state before the call.
    if (code == PAGE_CALL_LOST)
        code = m_page.request(kind, argument, reply);
    const bool done = evaluate(code, reply,
        {QStringLiteral("[ERROR] 从笔记编辑器删除附件失败，错误信息：%s"),
            QStringLiteral("[ERROR] 从笔记编辑器删除附件，解析js返回json字符串失败！"),
            QStringLiteral(
                "[ERROR] 从笔记编辑器删除附件，js方法调用失败！，ErrMsg:unknow error ！")},
        {});
    return done ? 1 : 0;
}

std::vector<std::pair<QString, QStringList>> PageBridge::restoringCalls()
{
    const auto call = [](const char* method, const QString& argument) {
        return std::pair(
            QStringLiteral("jsProcessor"), QStringList{QString::fromLatin1(method), argument});
    };
    m_textsSent = 1;
    return {call("SetEditorMode", modeArgument(m_note.m_readOnly)),
        call("SetEditorMaxChars", limitArgument(m_note.m_maxChars)),
        call("SetEditorContent", m_note.m_draft), call("ClearEditorCache", QString())};
}

void PageBridge::takeDraft(const QString& json)
{
    const std::optional<JsonObject> value = JsonObject::parse(json);
    if (!value || m_sendingText || value->integer("load") != m_textsSent || !value->has("html"))
        return;
    m_note.m_draft = value->text("html");
}
