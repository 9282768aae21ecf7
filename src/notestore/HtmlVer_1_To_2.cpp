#include "notestore/HtmlFileUpgrade.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "support/Log.h"

#include <exception>

namespace {

constexpr QLatin1StringView kExData("nm_exdata");
constexpr QLatin1StringView kClass("class");

// An element of the new form has `nm_exdata`; a picture that is no attachment has no path in its
// class.
bool addExData(HtmlDocument& document)
{
    bool changed = false;
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        if (!document.attribute(i, kExData).value_or(QString()).isEmpty())
            continue;
        const QString path = document.attribute(i, kClass).value_or(QString());
        const QString origName = noteattach::LastComponent(path);
        if (origName.size() == path.size())
            continue; // no separator
        document.setAttribute(i, kExData, noteattach::FormatOrigNameToJson(origName));
        changed = true;
    }
    return changed;
}

} // namespace

int HtmlVer_1_To_2::DoUpgrade(const QString& inHtml, QString& outHtml)
{
    try {
        HtmlDocument document(inHtml);
        if (!addExData(document)) {
            outHtml = inHtml;
            return 1;
        }
        if (!document.hasBody())
            return 0;
        outHtml = document.bodyInnerHtml();
        return 1;
    } catch (const std::exception&) {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR] HtmlVer_1_To_2::DoUpgrade失败！"));
        return 0;
    }
}
