#pragma once

#include <QString>

#include <map>
#include <optional>
#include <string>

/// A JSON object's text without its long strings, which were read straight from the text: a note
/// of a megabyte in a reply of the page then takes no way over the narrow form and the parser.
struct JsonLongStrings {
    /// The text with an empty string in the place of each long one, in the narrow form.
    std::string rest;
    /// The long values of the outermost object, by key.
    std::map<std::string, QString> values;

    /// Nothing when the text is not plain enough to be sure of the same result as the parser's:
    /// comments, repeated keys, escapes that are not whole characters, NUL, lone surrogates, and
    /// whatever is no object. It need not be valid otherwise: `rest` is to be parsed all the same.
    static std::optional<JsonLongStrings> take(const QString& text);
};
