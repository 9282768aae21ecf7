#include "noteattach/Rewrite.h"

#include "html/HtmlDocument.h"
#include "noteattach/ExData.h"
#include "support/Log.h"
#include "support/Text.h"

#include <exception>
#include <map>
#include <optional>
#include <utility>

namespace noteattach {
namespace {

constexpr QLatin1StringView kExData("nm_exdata");
constexpr QLatin1StringView kClass("class");
constexpr QLatin1StringView kSrc("src");
const QString kNotRewritten = QStringLiteral("[ERROR] ModifyAttachAttValue 修改附件属性值失败！");

void setClassAndSource(HtmlDocument& document, const QString& wanted, const QString& classValue,
    const QString& srcValue)
{
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        if (document.attribute(i, kExData) != wanted)
            continue;
        document.setAttribute(i, kClass, classValue);
        document.setAttribute(i, kSrc, srcValue);
    }
}

// Kept: a page's path is cut behind its slash, a note's behind its backslash, as they are stored.
void SetAttrFileName(HtmlDocument& document, qsizetype element, QLatin1StringView attrName,
    QChar separator, const QString& fileName)
{
    const std::optional<QString> value = document.attribute(element, attrName);
    if (!value)
        return;
    const qsizetype last = value->lastIndexOf(separator);
    if (last >= 0)
        document.setAttribute(element, attrName, value->first(last + 1) + fileName);
}

void applyRecords(HtmlDocument& document, const std::vector<AttachNewAtt>& attNewList)
{
    std::map<QString, const AttachNewAtt*> byExData;
    for (const AttachNewAtt& record : attNewList)
        byExData.emplace(record.oldExData, &record); // the first of two stays
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        const QString exData = document.attribute(i, kExData).value_or(QString());
        const auto found = exData.isEmpty() ? byExData.end() : byExData.find(exData);
        if (found == byExData.end())
            continue;
        const AttachNewAtt& record = *found->second;
        SetAttrFileName(document, i, kSrc, u'/', record.newSrcName);
        SetAttrFileName(document, i, QLatin1StringView("data-ke-src"), u'\\', record.newSrcName);
        SetAttrFileName(document, i, QLatin1StringView("nmimgsrc"), u'\\', record.newSrcName);
        document.setAttribute(i, kExData, record.newExData);
    }
}

void logFailure(const QString& text)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(text);
}

} // namespace

int UpdateHtmlAttachAttr(const QString& html, const QString& origName, const QString& classValue,
    const QString& srcValue, QString& bodyHtml, QString& bodyText)
{
    try {
        HtmlDocument document(html, HtmlDocument::Reading::ElementsAndText);
        setClassAndSource(document, FormatOrigNameToJson(origName), classValue, srcValue);
        if (!document.hasBody())
            return 0;
        QString newHtml = document.bodyInnerHtml();
        bodyText = document.bodyText();
        bodyHtml = std::move(newHtml);
        return 1;
    } catch (const std::exception&) {
        // Kept: the message of ParseAttOrigFileNameList serves here, too.
        logFailure(QStringLiteral("[ERROR] 解析html字串，获取附件原文件名列表失败！"));
        return 0;
    }
}

int UpdateAttachAttValue(
    const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml)
{
    try {
        HtmlDocument document(AnsiToWide(html));
        applyRecords(document, attNewList);
        if (!document.hasBody())
            return 0;
        outHtml = WideToAnsi(document.bodyInnerHtml());
        return 1;
    } catch (const std::exception&) {
        logFailure(kNotRewritten);
        return 0;
    }
}

int UpdateAttachAttValue2(
    const std::string& html, const std::vector<AttachNewAtt>&, std::string& outHtml)
{
    // Kept: the list is not looked at, so what is pasted keeps the attributes it came with.
    try {
        std::string copy = html;
        outHtml = std::move(copy);
        return 1;
    } catch (const std::exception&) {
        logFailure(kNotRewritten);
        return 0;
    }
}

} // namespace noteattach
