#include "notestore/StorePictures.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "notestore/StorePath.h"
#include "support/DiskFile.h"
#include "support/Paths.h"

#include <array>
#include <map>
#include <string_view>

namespace notestore {
namespace {

using namespace std::string_view_literals;

constexpr QLatin1StringView kSrc("src");
constexpr QLatin1StringView kExData("nm_exdata");

using Head = std::array<char, 16>; // zeros behind the end of a shorter file

bool hasAt(const Head& head, std::size_t position, std::string_view bytes)
{
    return std::string_view(head.data(), head.size()).substr(position).starts_with(bytes);
}

const char* pictureSubtype(const Head& head)
{
    if (hasAt(head, 0, "\x89PNG\r\n\x1A\n"sv))
        return "png";
    if (hasAt(head, 0, "\xFF\xD8\xFF"sv))
        return "jpeg";
    if (hasAt(head, 0, "GIF87a"sv) || hasAt(head, 0, "GIF89a"sv))
        return "gif";
    // Two letters alone could start a text: the four reserved bytes are zero in every bitmap.
    if (hasAt(head, 0, "BM"sv) && hasAt(head, 6, "\0\0\0\0"sv))
        return "bmp";
    if (hasAt(head, 0, "RIFF"sv) && hasAt(head, 8, "WEBP"sv))
        return "webp";
    return nullptr;
}

// The scheme of an address, empty without one. A single letter is a drive.
QStringView schemeOf(QStringView address)
{
    qsizetype length = 0;
    while (length < address.size()
        && (address[length].isLetterOrNumber() || QStringView(u"+-.").contains(address[length])))
        ++length;
    return length > 1 && length < address.size() && address[length] == u':' ? address.first(length)
                                                                            : QStringView();
}

bool isLocal(QStringView address)
{
    const QStringView scheme = schemeOf(address);
    if (!scheme.isEmpty())
        return scheme.compare(u"file", Qt::CaseInsensitive) == 0;
    return !address.startsWith(u"//") && !address.startsWith(u"\\\\");
}

bool leadsIntoStore(QStringView reference, const QString& name)
{
    QString directory = reference.chopped(name.size()).toString();
    directory.replace(u'\\', u'/');
    return directory.endsWith(QStringLiteral("userdata/attachment/"));
}

} // namespace

QString StoreNameOfReference(const QString& src, bool isAttachment)
{
    const QStringView reference = QStringView(src).trimmed();
    if (!isLocal(reference))
        return {};
    QString name = noteattach::LastComponent(reference.toString());
    if (!IsSafeFileName(name) || (!isAttachment && !leadsIntoStore(reference, name)))
        return {};
    return name;
}

std::optional<StorePicture> FindStorePicture(const QString& name)
{
    if (name.isEmpty() || !IsSafeFileName(name))
        return std::nullopt;
    const QString path = StoreBase() + name;
    InputFile file;
    Head head{};
    if (file.open(path) || file.read(head.data(), head.size()) < 0)
        return std::nullopt;
    if (const char* const subtype = pictureSubtype(head))
        return StorePicture{path, subtype};
    return std::nullopt;
}

std::vector<StorePicture> TakeStorePictures(
    QString& html, const std::function<QString(qsizetype number)>& addressOf)
{
    HtmlDocument document(html);
    std::vector<StorePicture> pictures;
    std::map<QString, std::optional<QString>> addresses; // by name; none for what is no picture
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        const auto src = document.attribute(i, kSrc);
        const QString name = src
            ? StoreNameOfReference(*src, document.attribute(i, kExData).has_value())
            : QString();
        const auto [entry, isNew] = addresses.try_emplace(name);
        if (isNew) {
            if (const auto picture = FindStorePicture(name)) {
                entry->second = addressOf(qsizetype(pictures.size()));
                pictures.push_back(*picture);
            }
        }
        if (entry->second)
            document.setAttribute(i, kSrc, *entry->second);
    }
    if (!pictures.empty())
        html = document.bodyInnerHtml();
    return pictures;
}

} // namespace notestore
