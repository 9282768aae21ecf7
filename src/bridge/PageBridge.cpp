#include "bridge/PageBridge.h"

#include "html/HtmlDocument.h"
#include "noteattach/ExData.h"
#include "platform/WindowMessage.h"
#include "support/Json.h"
#include "support/Log.h"
#include "support/Text.h"

#include <utility>

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

/// The narrow form of `text` as a wide placeholder reads it: its bytes two by two, the low one
/// first, up to a zero unit.
QString readAsWide(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    QString units;
    for (qsizetype i = 0; i < bytes.size(); i += 2) {
        const auto low = uchar(bytes[i]);
        const auto high = i + 1 < bytes.size() ? uchar(bytes[i + 1]) : uchar(0);
        if (low == 0 && high == 0)
            break;
        units.append(QChar(ushort(low | high << 8)));
    }
    return units;
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

/// A call that is cut by the death of the page is sent this often at most.
constexpr int maxCalls = 2;
/// A pull rather more: without it a save has only the draft.
constexpr int maxPulls = 3;

} // namespace

PageBridge::PageBridge(OpenNote& note, NotePage& page)
    : m_note(note)
    , m_page(page)
{
}

SameNote PageBridge::sameNote() const
{
    return SameNote(m_note, m_life);
}

std::function<bool()> PageBridge::whileSameNote() const
{
    return [same = sameNote()] { return bool(same); };
}

long PageBridge::send(
    int most, const std::function<bool()>& isWanted, const std::function<long()>& call)
{
    const std::weak_ptr<const void> life = m_life;
    for (int i = 0; i < most; ++i) {
        // Waited for here, as the call itself would do it without looking behind the wait.
        const bool back = m_page.waitUntilBack();
        if (!back || life.expired() || !isWanted())
            return PAGE_CALL_NOT_BACK;
        const long code = call();
        if (life.expired())
            return PAGE_CALL_NOT_BACK;
        // A page that died under the call comes back in the state before it.
        if (code != PAGE_CALL_LOST)
            return code;
    }
    return PAGE_CALL_NOT_BACK;
}

bool PageBridge::perform(const QString& method, const QString& argument, const Messages& messages,
    const std::function<void(const JsonObject&)>& onSuccess, const std::function<bool()>& isWanted)
{
    QString reply;
    const auto call = [&] { return m_page.call(method, argument, reply); };
    const long code = send(maxCalls, isWanted ? isWanted : whileSameNote(), call);
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
        const QString reason = value->text("errmsg");
        log(withMessage(
            messages.refused, messages.readsReasonAsWide ? readAsWide(reason) : reason));
        return false;
    }
    if (onSuccess)
        onSuccess(*value);
    return true;
}

void PageBridge::SetReadOnly(int readOnly)
{
    // A call in flight counts: while it waits, the host may ask for another mode.
    if (readOnly == m_modeInFlight.value_or(m_note.m_readOnly))
        return;
    const std::weak_ptr<const void> life = m_life;
    m_modeInFlight = readOnly;
    const auto isLatest = [this, turn = ++m_modeCalls] { return turn == m_modeCalls; };
    perform(
        QStringLiteral("SetEditorMode"), modeArgument(readOnly),
        {QStringLiteral("设置笔记编辑器只读模式失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器只读模式，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器只读模式，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) {
            if (isLatest())
                m_note.m_readOnly = readOnly;
        },
        isLatest);
    if (!life.expired() && isLatest())
        m_modeInFlight.reset();
}

void PageBridge::SetEditorMaxChars(int size)
{
    // It holds for every note, and the one that was asked for last is the one that stays.
    const auto isLatest = [this, turn = ++m_limitCalls] { return turn == m_limitCalls; };
    perform(
        QStringLiteral("SetEditorMaxChars"), limitArgument(size),
        {QStringLiteral("设置笔记编辑器最大字符数失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器最大字符数，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器最大字符数，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) {
            if (isLatest())
                m_note.m_maxChars = size;
        },
        isLatest);
}

void PageBridge::SetEditorHtml(const QString& html)
{
    m_note.m_attachSizeCache.clear();
    m_note.m_attachModifyCache.clear();
    m_note.m_draft = html;
    ++m_note.m_loads;
    // Posted, so that the page's cache is cleared after the new text is in.
    m_page.post(WM_CLEAR_EDITOR_CACHE);
    const std::weak_ptr<const void> life = m_life;
    const bool wasSending = std::exchange(m_sendingText, true);
    perform(QStringLiteral("SetEditorContent"), html,
        {QStringLiteral("设置笔记编辑器内容失败，错误信息：%s"),
            QStringLiteral("设置笔记编辑器内容，解析js返回json字符串失败！"),
            QStringLiteral("设置笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")},
        [&](const JsonObject&) { ++m_textsSent; });
    if (!life.expired())
        m_sendingText = wasSending;
}

int PageBridge::GetEditorContent(QString& html, QString& text)
{
    const SameNote same = sameNote();
    const quint64 load = m_note.m_loads;
    QString reply;
    QString draft = m_note.m_draft;
    const long code = send(maxPulls, whileSameNote(), [&] {
        draft = m_note.m_draft;
        return m_page.call(QStringLiteral("GetEditorContent"), QStringLiteral("{}"), reply);
    });
    if (code == PAGE_CALL_NOT_BACK) {
        // Of the note that was asked for, also where another one is open by now.
        html = same ? m_note.m_draft : draft;
        text = HtmlDocument(html).bodyText();
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
                "[ERROR] 修改附件class属性值失败，js方法调用失败！，ErrMsg:unknow error ！"),
            // Kept: this line alone was always given the narrow text, and shows it so.
            true});
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
    const long code =
        send(maxCalls, whileSameNote(), [&] { return m_page.request(kind, argument, reply); });
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
    if (value && isOfThisText(value->integer("load")) && value->has("html"))
        m_note.m_draft = value->text("html");
}

bool PageBridge::isOfThisText(int load) const
{
    return !m_sendingText && load == m_textsSent;
}
