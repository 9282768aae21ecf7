#pragma once

#include <QString>

#include <json/value.h>

#include <map>
#include <optional>
#include <string>

/// A JSON object that came from somewhere else: from the page, from an attribute of a note.
///
/// Nothing here throws. A text that is no object, is not JSON, or nests deeper than the parser goes
/// (1,000 levels) does not parse. Comments are allowed and text behind the object is ignored, as
/// older notes may hold both. A key that is missing, or whose value has no such form, gives the
/// neutral value: false, 0, the empty string. A value of another type is converted where that has a
/// plain meaning (true is 1, 2.7 is 2, 5 is "5").
class JsonObject {
public:
    /// Takes the narrow form (UTF-8).
    static std::optional<JsonObject> parse(const std::string& text);
    /// The same for a wide text. Faster where it holds long strings, as a reply of the page does.
    static std::optional<JsonObject> parse(const QString& text);

    bool has(const char* key) const;
    bool boolean(const char* key) const;
    int integer(const char* key) const;
    qint64 integer64(const char* key) const;
    double number(const char* key) const;
    /// As bytes, whatever they hold, NUL included.
    std::string bytes(const char* key) const;
    /// As text by AnsiToWide, so up to the first NUL.
    QString text(const char* key) const;

    /// The object under the key; one without keys if there is none.
    JsonObject object(const char* key) const;

private:
    Json::Value m_value;
    std::map<std::string, QString> m_longStrings; // empty strings in m_value
};
