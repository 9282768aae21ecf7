#include "noteattach/AttachList.h"

#include "html/HtmlDocument.h"
#include "noteattach/ExData.h"
#include "support/Log.h"
#include "support/Paths.h"

#include <QHashFunctions>

#include <exception>
#include <optional>
#include <unordered_set>

namespace noteattach {
namespace {

constexpr QLatin1StringView kExData("nm_exdata");
constexpr QLatin1StringView kClass("class");
constexpr QLatin1StringView kSrc("src");

enum FileType { ShownFile = 1, Attachment = 2 };

// Seeded anew in each process: a note cannot be made to have keys that collide.
struct Hash {
    std::size_t operator()(const QString& key) const
    {
        return qHash(key, static_cast<std::size_t>(QHashSeed::globalSeed()));
    }
};

// One reading of a note. Its steps are those of the attachment grammar, in their order.
class Scan {
public:
    explicit Scan(std::vector<NewAttachFile>& records)
        : m_records(records)
    {
    }

    void read(const HtmlDocument& document)
    {
        for (qsizetype i = 0; i < document.elementCount(); ++i) {
            const std::optional<QString> exData = document.attribute(i, kExData);
            if (!exData)
                continue; // a plain picture
            readClass(document.attribute(i, kClass).value_or(QString()), *exData);
            if (const auto src = document.attribute(i, kSrc))
                readSrc(*src);
        }
    }

private:
    void readClass(const QString& path, const QString& exData)
    {
        const QString name = LastComponent(path);
        // Kept: an earlier element's shown file of that name hides this element's original name.
        if (!name.isEmpty() && !m_keys.contains(name))
            addRecord(name, GetOrigNameFromJson(exData), Attachment);
    }

    void readSrc(const QString& path)
    {
        const QString name = LastComponent(path);
        if (!name.isEmpty())
            addRecord(name, QString(), ShownFile);
    }

    void addRecord(const QString& fileName, const QString& origName, FileType type)
    {
        if (!m_keys.insert(fileName + origName).second)
            return;
        NewAttachFile record;
        record.origName = origName;
        record.fileType = type;
        record.fileExt = GetFileExt(fileName);
        record.fileName = fileName;
        record.isSrcFile = type == ShownFile;
        m_records.push_back(std::move(record));
    }

    std::vector<NewAttachFile>& m_records;
    std::unordered_set<QString, Hash> m_keys; // file name and original name, nothing between
};

// Kept: after a failure the list has a row for each picture that was come to, with the path of what
// the note shows of it.
void keepPictures(const std::vector<NewAttachFile>& found, NoteFolder& folder,
    std::vector<NewAttachFile>& attList)
{
    for (const NewAttachFile& record : found) {
        if (record.isSrcFile || !IsPicFileType(record.fileName))
            continue;
        NewAttachFile row;
        row.fileName = record.fileName;
        row.filePath = folder.pathOf(record.fileName, QString());
        row.fileType = ShownFile;
        attList.push_back(std::move(row));
    }
}

void listOrigNames(const HtmlDocument& document, std::vector<QString>& origNames)
{
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        const auto exData = document.attribute(i, kExData);
        const QString name = exData ? GetOrigNameFromJson(*exData) : QString();
        if (!name.isEmpty())
            origNames.push_back(name);
    }
}

void logFailure(const QString& text)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(text);
}

} // namespace

QString LastComponent(const QString& notePath)
{
    qsizetype start = notePath.size();
    while (start > 0 && notePath[start - 1] != u'/' && notePath[start - 1] != u'\\')
        --start;
    return notePath.sliced(start);
}

void ListAttachments(const HtmlDocument& document, std::vector<NewAttachFile>& records)
{
    Scan(records).read(document);
}

int ParseAttList(const QString& noteGuid, const QString& html, std::vector<NewAttachFile>& attList,
    QString* plainText, std::vector<QString>* origNames)
{
    std::vector<NewAttachFile> found;
    NoteFolder folder(noteGuid);
    try {
        using Reading = HtmlDocument::Reading;
        const HtmlDocument document(html, plainText ? Reading::ElementsAndText : Reading::Elements);
        if (plainText && document.hasBody())
            *plainText = document.bodyText();
        ListAttachments(document, found);
        if (origNames)
            listOrigNames(document, *origNames);
        for (NewAttachFile& record : found)
            record.filePath = folder.pathOf(record.fileName, record.origName);
        attList = std::move(found);
        return 1;
    } catch (const std::exception&) {
        logFailure(QStringLiteral("[ERROR] 解析html字串，获取附件列表失败！"));
    }
    try {
        keepPictures(found, folder, attList);
    } catch (const std::exception&) {
        // As many of them as there was memory for.
    }
    return 0;
}

int ParseAttOrigFileNameList(const QString& html, std::vector<QString>& origNames)
{
    try {
        listOrigNames(HtmlDocument(html), origNames);
        return 1;
    } catch (const std::exception&) {
        logFailure(QStringLiteral("[ERROR] 解析html字串，获取附件原文件名列表失败！"));
        return 0;
    }
}

void GetAttachFileFromHtml(const QString& noteGuid, const QString& html,
    std::vector<QString>& filePaths, QString* plainText)
{
    std::vector<NewAttachFile> attList;
    ParseAttList(noteGuid, html, attList, plainText);
    for (const NewAttachFile& record : attList) {
        if (!record.isSrcFile && IsFileExist(record.filePath))
            filePaths.push_back(record.filePath);
    }
}

} // namespace noteattach
