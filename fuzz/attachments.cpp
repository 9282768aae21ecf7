// The attachments of an arbitrary note: what the list reports is what a plain walk over the same
// elements reports, and what a rewrite set is what the next reading finds.

#include "Require.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/Rewrite.h"
#include "support/Paths.h"

#include <QRegularExpression>

#include <cstddef>
#include <cstdint>
#include <set>

namespace {

constexpr QLatin1StringView kExData("nm_exdata");
constexpr QLatin1StringView kClass("class");
constexpr QLatin1StringView kSrc("src");

QString lastComponent(const QString& path)
{
    return path.section(QRegularExpression(QStringLiteral("[/\\\\]")), -1);
}

// The rules of docs/attachment-element.md, slowly.
std::vector<NewAttachFile> walk(const HtmlDocument& document)
{
    std::vector<NewAttachFile> records;
    std::set<QString> known;
    const auto add = [&](const QString& name, const QString& origName, int type) {
        if (name.isEmpty() || !known.insert(name + origName).second)
            return;
        NewAttachFile record;
        record.fileName = name;
        record.fileExt = GetFileExt(name);
        record.origName = origName;
        record.fileType = type;
        record.isSrcFile = type == 1;
        records.push_back(record);
    };
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        const auto exData = document.attribute(i, kExData);
        if (!exData)
            continue;
        const QString name = lastComponent(document.attribute(i, kClass).value_or(QString()));
        if (!known.contains(name))
            add(name, noteattach::GetOrigNameFromJson(*exData), 2);
        if (const auto src = document.attribute(i, kSrc))
            add(lastComponent(*src), QString(), 1);
    }
    return records;
}

void rewrite(const QString& html, const QString& origName)
{
    const QString classValue = QStringLiteral("userdata\\attachment\\a\"&<'b>.txt");
    const QString srcValue = QStringLiteral("../userdata\\attachment\\c.bmp");
    QString body, text;
    if (!noteattach::UpdateHtmlAttachAttr(html, origName, classValue, srcValue, body, text))
        return;
    const HtmlDocument before(html);
    const HtmlDocument after(body);
    require(after.elementCount() == before.elementCount());
    const QString wanted = noteattach::FormatOrigNameToJson(origName);
    for (qsizetype i = 0; i < after.elementCount(); ++i) {
        const bool isIt = before.attribute(i, kExData) == wanted;
        require(after.attribute(i, kExData) == before.attribute(i, kExData));
        require(after.attribute(i, kClass) == (isIt ? classValue : before.attribute(i, kClass)));
        require(after.attribute(i, kSrc) == (isIt ? srcValue : before.attribute(i, kSrc)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString html = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const HtmlDocument document(html);
    std::vector<NewAttachFile> records;
    noteattach::ListAttachments(document, records);
    require(records == walk(document));
    for (const NewAttachFile& record : records) {
        if (record.fileType == 2) {
            rewrite(html, record.origName);
            break;
        }
    }
    return 0;
}
