#include "clipdrag/PastedPicture.h"

#include "attachfiles/Adder.h"
#include "attachstore/EntryRules.h"
#include "attachstore/FileRecord.h"
#include "attachstore/ImageFile.h"
#include "clipdrag/ClipFlavours.h"
#include "clipdrag/DesktopClipboard.h"
#include "html/HtmlDocument.h"
#include "noteattach/ExData.h"
#include "platform/CGdiToolBox.h"
#include "support/DiskFile.h"
#include "support/FileMd5.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace clipdrag {
namespace {

constexpr qint64 maxBytes = 64 * 1024 * 1024;

/// What stands behind the comma of a `data:` address; null if it is none of a picture.
QByteArray bytesOfData(const QString& source)
{
    const qsizetype comma = source.indexOf(u',');
    if (comma < 0 || source.size() > maxBytes * 4 / 3 + comma + 4)
        return {};
    const QStringView head = QStringView(source).first(comma);
    const QByteArray body =
        QByteArray::fromPercentEncoding(QStringView(source).sliced(comma + 1).toLatin1());
    if (!head.endsWith(u";base64", Qt::CaseInsensitive))
        return body;
    // Long addresses are wrapped by some programs.
    const QByteArray packed = body.simplified().replace(' ', QByteArray());
    const auto decoded =
        QByteArray::fromBase64Encoding(packed, QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? *decoded : QByteArray();
}

bool isFileAddress(const QString& source)
{
    return source.startsWith(u"file:", Qt::CaseInsensitive);
}

QByteArray bytesOfFile(const QString& source)
{
    const QUrl url(QString(source).replace(u'\\', u'/'));
    const QString path = url.toLocalFile();
    InputFile file;
    if (!url.host().isEmpty() || path.isEmpty() || path.contains(QChar::Null) || file.open(path)
        || file.size() > maxBytes)
        return {};
    QByteArray bytes(file.size(), Qt::Uninitialized);
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 count = file.read(bytes.data() + done, std::size_t(bytes.size() - done));
        if (count <= 0)
            return {};
        done += count;
    }
    return bytes;
}

QByteArray formatOf(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer);
}

bool fitsIntoANote(const QByteArray& bytes)
{
    return quint64(bytes.size()) <= attachstore::attachLimit;
}

// Enough to be refused, aloud, by the rule on sizes.
DropFileInfo recordOfSizeAlone(const QByteArray& bytes)
{
    DropFileInfo record;
    record.fileSize = quint64(bytes.size());
    return record;
}

std::optional<DropFileInfo> temporaryPicture(const QByteArray& bytes, const QByteArray& format)
{
    if (!fitsIntoANote(bytes))
        return recordOfSizeAlone(bytes);
    const QString directory = GetTempDir();
    const QString path = directory + CreateGuidString() + u'.' + QString::fromLatin1(format);
    OutputFile file;
    if (directory.isEmpty() || file.create(path))
        return std::nullopt;
    // Not flushed: after a loss of power nobody would look for it.
    const bool written = !file.write(bytes.constData(), std::size_t(bytes.size()));
    auto record = written ? attachstore::RecordOfPath(path) : std::nullopt;
    if (!record)
        QFile::remove(path);
    else
        record->isTempFile = true;
    return record;
}

QByteArray asPng(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? png : QByteArray();
}

} // namespace

std::set<QString> PicturesOnClipboard()
{
    std::set<QString> sources;
    QClipboard* const board = DesktopClipboard();
    const QMimeData* const data = board ? board->mimeData() : nullptr;
    if (!data || !data->hasHtml())
        return sources;
    const QString html = data->html();
    for (const char* tag : {"img", "v:imagedata"}) {
        const HtmlDocument document(html, QLatin1StringView(tag));
        for (qsizetype i = 0; i < document.elementCount(); ++i) {
            if (const auto source = document.attribute(i, QLatin1StringView("src")))
                sources.insert(source->trimmed());
        }
    }
    return sources;
}

std::optional<DropFileInfo> ReadPastedPicture(const QString& source, const std::set<QString>& named)
{
    QByteArray bytes;
    if (source.startsWith(u"data:image/", Qt::CaseInsensitive))
        bytes = bytesOfData(source);
    else if (isFileAddress(source) && named.contains(source))
        bytes = bytesOfFile(source);
    const QByteArray format = formatOf(bytes);
    if (bytes.isEmpty() || format.isEmpty() || format.startsWith("svg"))
        return std::nullopt;
    const bool staysAsItIs = noteattach::IsPicFileType(u'.' + QString::fromLatin1(format));
    if (staysAsItIs && !fitsIntoANote(bytes))
        return recordOfSizeAlone(bytes); // not worth decoding
    const QImage image = CGdiToolBox::LoadImageFromMemory(bytes);
    if (image.isNull())
        return std::nullopt;
    if (staysAsItIs)
        return temporaryPicture(bytes, format);
    const QByteArray png = asPng(image);
    return png.isEmpty() ? std::nullopt : temporaryPicture(png, "png");
}

PastedPictures::PastedPictures(Adder& adder, IsShown isShown, Post post)
    : m_adder(adder)
    , m_isShown(std::move(isShown))
    , m_post(std::move(post))
{
}

void PastedPictures::import(const QString& request)
{
    const QJsonObject asked = QJsonDocument::fromJson(request.toUtf8()).object();
    const QJsonValue paste = asked.value(u"paste");
    if (!paste.isDouble() || !asked.value(u"sources").isArray()
        || !m_isShown(asked.value(u"load").toInt(-1)))
        return;
    const QJsonArray sources = asked.value(u"sources").toArray();
    const bool anyFile = std::any_of(sources.begin(), sources.end(),
        [](const QJsonValue& source) { return isFileAddress(source.toString()); });
    const std::set<QString> named = anyFile ? PicturesOnClipboard() : std::set<QString>();
    std::vector<DropFileInfo> files;
    QJsonArray digests;
    for (const QJsonValue& source : sources) {
        const bool isRead = digests.size() < kMostFiles;
        const auto picture = isRead ? ReadPastedPicture(source.toString(), named) : std::nullopt;
        const bool hasFile = picture && !picture->filePath.isEmpty();
        digests.append(hasFile ? FileMd5(picture->filePath) : QString());
        if (picture)
            files.push_back(*picture);
    }
    const auto text = [](const QJsonObject& object) {
        return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    };
    const SameNote same = m_adder.sameNote();
    m_post(QStringLiteral("pictures"),
        text({{QStringLiteral("paste"), paste}, {QStringLiteral("digests"), digests}}));
    if (!files.empty())
        m_adder.AddDropFileToEditor(files);
    attachstore::DelTempFileFromList(files);
    if (same.isAlive())
        m_post(QStringLiteral("picturesDone"), text({{QStringLiteral("paste"), paste}}));
}

} // namespace clipdrag
