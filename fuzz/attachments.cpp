// The attachments of an arbitrary note: what the list reports is what a plain walk over the same
// elements reports, what a rewrite set is what the next reading finds, and a removal takes one
// element and no more.

#include "Require.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/Rewrite.h"
#include "notestore/NoteAttachRemoval.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QRegularExpression>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

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

// The value with another name behind the last separator, if it has one.
std::optional<QString> renamed(std::optional<QString> value, QChar separator, const QString& name)
{
    const qsizetype last = value ? value->lastIndexOf(separator) : -1;
    return last < 0 ? value : value->first(last + 1) + name;
}

void rewriteByRecords(const QString& html, const QString& oldExData)
{
    const QString newExData = noteattach::FormatOrigNameToJson(QStringLiteral("b&\"'>.txt"));
    const QString srcName = QStringLiteral("d\"&<'>.bmp");
    const std::vector<AttachNewAtt> records{{oldExData, newExData, srcName},
        {oldExData, QStringLiteral("never"), QStringLiteral("never")}};
    std::string body;
    if (!noteattach::UpdateAttachAttValue(WideToUtf8(html), records, body))
        return;
    const HtmlDocument before(html);
    const HtmlDocument after(AnsiToWide(body));
    require(after.elementCount() == before.elementCount());
    for (qsizetype i = 0; i < after.elementCount(); ++i) {
        const bool isIt = before.attribute(i, kExData) == oldExData;
        require(after.attribute(i, kClass) == before.attribute(i, kClass));
        require(after.attribute(i, kExData) == (isIt ? newExData : before.attribute(i, kExData)));
        const auto requirePath = [&](QLatin1StringView name, QChar separator) {
            const auto value = before.attribute(i, name);
            require(
                after.attribute(i, name) == (isIt ? renamed(value, separator, srcName) : value));
        };
        requirePath(kSrc, u'/');
        requirePath(QLatin1StringView("data-ke-src"), u'\\');
        requirePath(QLatin1StringView("nmimgsrc"), u'\\');
    }
}

void remove(const QString& html, const QString& origName)
{
    const QString exData = noteattach::FormatOrigNameToJson(origName);
    const HtmlDocument before(html);
    qsizetype first = 0;
    while (first < before.elementCount() && before.attribute(first, kExData) != exData)
        ++first;
    const bool isThere = first < before.elementCount();
    QString body;
    require(notestore::RemoveAttachElement(html, origName, body) == isThere);
    if (!isThere) {
        require(body.isNull());
        return;
    }
    const HtmlDocument after(body);
    require(after.elementCount() == before.elementCount() - 1);
    for (qsizetype i = 0; i < after.elementCount(); ++i) {
        const qsizetype was = i < first ? i : i + 1;
        for (const QLatin1StringView name : {kExData, kClass, kSrc})
            require(after.attribute(i, name) == before.attribute(was, name));
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
            remove(html, record.origName);
            break;
        }
    }
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        const QString exData = document.attribute(i, kExData).value_or(QString());
        // A NUL ends the narrow text.
        if (!exData.isEmpty() && !html.contains(QChar::Null)) {
            rewriteByRecords(html, exData);
            break;
        }
    }
    return 0;
}
