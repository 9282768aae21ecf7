#include "clipdrag/ClipFlavours.h"

#include "clipformat/FileBlock.h"
#include "clipformat/HtmlFormat.h"
#include "support/Text.h"

#include <QFileInfo>
#include <QMimeData>
#include <QStringDecoder>
#include <QSysInfo>
#include <QUrl>

#include <algorithm>

namespace clipdrag {
namespace {

constexpr QLatin1StringView kTextHtml("text/html");
constexpr QLatin1StringView kUriList("text/uri-list");

bool canBePath(const QString& path)
{
    return !path.isEmpty() && !path.contains(QChar::Null);
}

QList<QUrl> addresses(const std::vector<QString>& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls += QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    return urls;
}

// No line end behind the last address: file managers take an empty line for a file.
QByteArray gnomeCopiedFiles(const QList<QUrl>& urls)
{
    QByteArray lines("copy");
    for (const QUrl& url : urls)
        lines += '\n' + url.toEncoded();
    return lines;
}

// Empty for what is no file of this machine.
QString localPath(QUrl url)
{
    const QString host = url.host();
    const bool isHere = host.isEmpty() || host == QLatin1StringView("localhost")
        || host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
    if (!url.isLocalFile() || !isHere)
        return {};
    url.setHost({});
    const QString path = url.toLocalFile();
    return canBePath(path) ? path : QString();
}

// Some programs write this flavour in UTF-16, and say so by a byte-order mark. Others mean UTF-8.
std::string utf8OfTextHtml(const QByteArray& bytes)
{
    const auto mark = QStringConverter::encodingForData(bytes);
    const auto encoding = mark.value_or(QStringConverter::Utf8);
    if (encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE)
        return WideToUtf8(QStringDecoder(encoding).decode(bytes));
    const qsizetype markBytes = mark == QStringConverter::Utf8 ? 3 : 0;
    return std::string(bytes.constData() + markBytes); // up to the first zero
}

} // namespace

std::unique_ptr<QMimeData> HtmlFlavours(const std::string& text)
{
    std::string block;
    if (!clipformat::BuildHtmlFormat(text, block))
        return nullptr;
    auto data = std::make_unique<QMimeData>();
    data->setData(kHtmlFormat, QByteArray::fromStdString(block));
    data->setData(kTextHtml, QByteArray(text.c_str())); // up to the first zero
    return data;
}

std::unique_ptr<QMimeData> FileFlavours(const std::vector<QString>& paths)
{
    if (paths.empty() || !std::all_of(paths.begin(), paths.end(), canBePath))
        return nullptr;
    const QList<QUrl> urls = addresses(paths);
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    data->setData(kGnomeCopiedFiles, gnomeCopiedFiles(urls));
    data->setData(kKdeCutSelection, QByteArrayLiteral("0")); // "1" would be cut
    data->setData(kDropEffect, QByteArray::fromStdString(clipformat::CopyDropEffect()));
    return data;
}

bool HasHtml(const QMimeData& data)
{
    return data.hasFormat(kHtmlFormat) || data.hasFormat(kTextHtml);
}

bool HtmlFragment(const QMimeData& data, std::string& fragment)
{
    if (data.hasFormat(kHtmlFormat)
        && clipformat::CutHtmlFragment(data.data(kHtmlFormat).toStdString(), fragment))
        return true;
    if (!data.hasFormat(kTextHtml))
        return false;
    fragment = utf8OfTextHtml(data.data(kTextHtml));
    return true;
}

bool HasTooManyFiles(const QMimeData& data)
{
    // Before any address is taken apart: that alone takes seconds for a million.
    return data.hasFormat(kUriList) && data.data(kUriList).count('\n') > kMostFiles;
}

bool HasFiles(const QMimeData& data)
{
    return !Files(data).empty();
}

std::vector<QString> Files(const QMimeData& data)
{
    std::vector<QString> paths;
    if (HasTooManyFiles(data))
        return paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        const QString path = localPath(url);
        if (!path.isEmpty())
            paths.push_back(path);
    }
    return paths;
}

} // namespace clipdrag
