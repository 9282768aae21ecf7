#include "support/Json.h"

#include "support/JsonLongStrings.h"
#include "support/Text.h"

#include <json/reader.h>

#include <memory>

namespace {

std::unique_ptr<Json::CharReader> makeReader()
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false; // they are accepted, and nobody reads them
    builder["allowTrailingCommas"] = false;
    builder["skipBom"] = false;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader());
}

template <typename Get> auto orNeutral(Get get) -> decltype(get())
{
    try {
        return get();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

std::optional<JsonObject> JsonObject::parse(const std::string& text)
{
    return orNeutral([&]() -> std::optional<JsonObject> {
        JsonObject object;
        const char* begin = text.data();
        if (!makeReader()->parse(begin, begin + text.size(), &object.m_value, nullptr))
            return std::nullopt;
        if (!object.m_value.isObject())
            return std::nullopt;
        return object;
    });
}

std::optional<JsonObject> JsonObject::parse(const QString& text)
{
    std::optional<JsonLongStrings> strings = JsonLongStrings::take(text);
    if (!strings)
        return parse(WideToAnsi(text));
    std::optional<JsonObject> object = parse(strings->rest);
    if (object)
        object->m_longStrings = std::move(strings->values);
    return object;
}

bool JsonObject::has(const char* key) const
{
    return m_value.isMember(key);
}

bool JsonObject::boolean(const char* key) const
{
    return orNeutral([&] { return m_value[key].asBool(); });
}

int JsonObject::integer(const char* key) const
{
    return orNeutral([&] { return m_value[key].asInt(); });
}

qint64 JsonObject::integer64(const char* key) const
{
    return orNeutral([&] { return static_cast<qint64>(m_value[key].asInt64()); });
}

double JsonObject::number(const char* key) const
{
    return orNeutral([&] { return m_value[key].asDouble(); });
}

std::string JsonObject::bytes(const char* key) const
{
    const auto found = m_longStrings.find(key);
    if (found != m_longStrings.end())
        return WideToAnsi(found->second);
    return orNeutral([&] { return m_value[key].asString(); });
}

QString JsonObject::text(const char* key) const
{
    const auto found = m_longStrings.find(key);
    return found != m_longStrings.end() ? found->second : AnsiToWide(bytes(key));
}

JsonObject JsonObject::object(const char* key) const
{
    JsonObject inner;
    inner.m_value = orNeutral([&] { return m_value[key]; });
    if (!inner.m_value.isObject())
        inner.m_value = Json::Value(Json::objectValue);
    return inner;
}
