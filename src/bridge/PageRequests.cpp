#include "bridge/PageRequests.h"

#include "bridge/Format.h"
#include "noteattach/ExData.h"
#include "support/Json.h"
#include "support/Log.h"
#include "support/Text.h"

#include <functional>

PageRequests::~PageRequests() = default;

namespace {

void log(const QString& line)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(line);
}

/// One method that reads its JSON text.
void decode(const QString& method, const std::string& json,
    const std::function<void(const JsonObject&)>& act)
{
    if (const std::optional<JsonObject> value = JsonObject::parse(json))
        act(*value);
    else
        log(QStringLiteral("[ERROR] 解析%1方法，json参数字串失败！").arg(method));
}

void rightClick(const JsonObject& value, PageRequests& requests)
{
    const JsonObject attach = value.object("current_attach");
    requests.rightClickAttach(FileNameOfNotePath(attach.text("class_value")),
        noteattach::GetOrigNameFromJson(attach.bytes("exdata_value")), value.text("range_html"));
}

} // namespace

QString FileNameOfNotePath(const QString& path)
{
    return path.mid(path.lastIndexOf(u'\\') + 1);
}

long DispatchPageCall(const DISPPARAMS& params, PageRequests& requests)
{
    if (params.cArgs != 3 || params.rgvarg.size() != 3) {
        log(QStringLiteral("[ERROR] js调用OnCppProcessor传递参数个数不正确！"));
        return 0;
    }
    const QString method = Format(params.rgvarg[2]);
    const std::string json = WideToAnsi(Format(params.rgvarg[1]));
    const std::string extra = WideToAnsi(Format(params.rgvarg[0]));

    if (method == u"DbClickAttachment")
        // Kept: the log names the method otherwise than the protocol does.
        decode(QStringLiteral("DblClickAttachment"), json, [&](const JsonObject& value) {
            requests.dblClickAttachment(value.text("path"), noteattach::GetOrigNameFromJson(extra));
        });
    else if (method == u"AddAttachment")
        requests.addAttachment();
    else if (method == u"OpenHyperLink")
        decode(method, json,
            [&](const JsonObject& value) { requests.openHyperLink(value.text("url")); });
    else if (method == u"NmMessageBox")
        decode(method, json,
            [&](const JsonObject& value) { requests.nmMessageBox(value.text("msg")); });
    else if (method == u"OnRightClickAttach")
        decode(method, json, [&](const JsonObject& value) { rightClick(value, requests); });
    else if (method == u"WriteEditorLog")
        decode(method, json, [&](const JsonObject& value) {
            requests.writeEditorLog(value.text("type"), value.text("msg"));
        });
    else if (method == u"SreenCapture")
        decode(method, json,
            [&](const JsonObject& value) { requests.screenCapture(value.boolean("hideMainWnd")); });
    return 0;
}
