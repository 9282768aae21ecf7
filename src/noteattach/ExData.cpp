#include "noteattach/ExData.h"

#include "support/Json.h"
#include "support/Text.h"

#include <QStringBuilder>

#include <algorithm>
#include <optional>
#include <string_view>

namespace noteattach {
namespace {

constexpr char kKey[] = "OrigName_B64";
constexpr std::string_view kHead = "{\"OrigName_B64\":\"";
constexpr std::string_view kTail = "\"}";

QLatin1StringView latin1(std::string_view text)
{
    return QLatin1StringView(text.data(), qsizetype(text.size()));
}

bool isBase64Unit(char unit)
{
    return (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z')
        || (unit >= '0' && unit <= '9') || unit == '+' || unit == '/' || unit == '=';
}

// A value of the very shape that FormatOrigNameToJson makes, which nearly every value has, needs no
// JSON parser: its Base64 text holds nothing that JSON would quote.
std::optional<std::string_view> plainShape(std::string_view json)
{
    if (json.size() < kHead.size() + kTail.size() || !json.starts_with(kHead)
        || !json.ends_with(kTail))
        return std::nullopt;
    json.remove_prefix(kHead.size());
    json.remove_suffix(kTail.size());
    if (!std::all_of(json.begin(), json.end(), isBase64Unit))
        return std::nullopt;
    return json;
}

} // namespace

QString GetOrigNameFromJson(const std::string& json)
{
    if (const auto name = plainShape(json))
        return AnsiToWide(Base64Decode(*name));
    const auto object = JsonObject::parse(json);
    return object ? AnsiToWide(Base64Decode(object->bytes(kKey))) : QString();
}

QString GetOrigNameFromJson(const QString& json)
{
    return GetOrigNameFromJson(WideToAnsi(json));
}

QString FormatOrigNameToJson(const QString& origName)
{
    const std::string name = WideToAnsi(origName);
    const std::string coded = Base64Encode(name.data(), name.size());
    return latin1(kHead) + latin1(coded) + latin1(kTail);
}

int IsPicFileType(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString extension = dot < 0 ? QStringLiteral("unknow") : name.sliced(dot + 1).toLower();
    // Kept: a search within the list, so a part of an extension counts as well.
    return QStringLiteral("jpg jpeg gif bmp png").contains(extension) ? 1 : 0;
}

} // namespace noteattach
